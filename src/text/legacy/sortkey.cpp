// Sort keys of the legacy strings: their collation bytes.
#include "text/legacy/sortkey.h"

#include "ot95/text.h"
#include "text/legacy/record.h"

namespace ot95 {

namespace {

// A text that begins with a wildcard or an escape, where they count, has nothing to show.
int PutText(const SortInput& input, SortKeyWriter& out, const LegacyRules& rules, LegacyText text) {
  const bool wildcards = (input.cmpOp & (OT_CMP_NO_WILDCARDS | OT_CMP_ORDER_ONLY)) == 0;
  const long wildcard = wildcards ? FindLegacyWildcard(text) : -1;
  if (wildcard >= 0) {
    if (!input.isOperand) return OT_ERR_NOT_SUPPORTED;
    text.length = static_cast<std::size_t>(wildcard);
  } else if (text.bytes == nullptr) {
    out.Put(kNullKey);
    return 0;
  }
  CollationWalk walk(rules, text, rules.caseCanCount && (text.flags & OT_ISTR_CASE) != 0);
  for (std::size_t step = 0; step < mostLegacySteps; ++step) {
    const unsigned byte = walk.Next();
    if (byte == 0) break;
    PutTextByte(out, byte);
  }
  if (wildcard >= 0) return kOpenKey;
  out.Put(kEndOfText);
  return 0;
}

int PutStored(const SortInput& input, SortKeyWriter& out, const LegacyRules& rules) {
  LegacyRecord record(input.value, input.length, input.format);
  if (!record.complete || record.IsCut()) return OT_ERR_END_OF_DATA;
  for (unsigned long i = 0; i < input.count; ++i) {
    if (i != 0 && record.left == 0) return OT_ERR_END_OF_DATA;
    if (const int status = PutText(input, out, rules, record.Take())) return status;
  }
  return 0;
}

}  // namespace

template <class String>
int SortKeyOfLegacyStrings(const SortInput& input, SortKeyWriter& out) {
  const LegacyRules& rules = RulesOf<String>;
  if (!IsMemoryForm(input.format)) return PutStored(input, out, rules);
  return PutElements(input, sizeof(String), [&](const unsigned char* element, std::uint64_t) {
    return PutText(input, out, rules, TextOf(*reinterpret_cast<const String*>(element)));
  });
}

template int SortKeyOfLegacyStrings<OtIString>(const SortInput&, SortKeyWriter&);
template int SortKeyOfLegacyStrings<OtCaseIString>(const SortInput&, SortKeyWriter&);

}  // namespace ot95
