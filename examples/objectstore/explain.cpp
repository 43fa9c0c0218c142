// Tells what the planner knew, and what came.

#include "explain.h"

#include <algorithm>
#include <cmath>
#include <sstream>

#include "bad_input.h"
#include "keys.h"
#include "ot95/text.h"
#include "utf8text.h"
#include "value.h"

namespace otdb {
namespace {

constexpr const char* kKeyDirective = "%4M";  // order words as the characters they stand for

std::string Percent(double share) {
  char text[32];
  std::snprintf(text, sizeof text, "%.4g%%", share * 100);
  return text;
}

std::string HexOf(View bytes) {
  constexpr const char* digits = "0123456789abcdef";
  std::string hex;
  for (const unsigned char byte : bytes) {
    hex += digits[byte >> 4];
    hex += digits[byte & 15];
  }
  return hex;
}

std::string NameOf(const Query& query, const Range& range) {
  return query.type->name + "." + query.type->members[range.index->member].name;
}

std::string LimitsOf(const Query& query, const Range& range, const KeyKind& kind) {
  const Member& member = query.type->members[range.index->member];
  const auto text = [&](const std::optional<Bytes>& key) {
    return key ? "'" + KeyToText(member, *key, kind) + "'" : std::string("...");
  };
  return text(range.lower) + " to " + text(range.upper);
}

std::size_t ObjectsOf(const Store& store, const Snapshot& snapshot, const Query& query) {
  return StatOf(snapshot, store.TreesOf(*query.type).objects).ms_entries;
}

}  // namespace

std::string KeyToText(const Member& member, View key, const KeyKind& kind) {
  if (kind.byteOrder) return HexOf(key);
  unsigned long consumed = 0;
  if (Types().VerifyStored(member.type, key.data(), key.size(), KeyFormat(member.type, kind.form),
                           1, consumed) != 0) {
    throw ot95::tools::BadInput("a damaged key of " + member.name);
  }
  void* place = Types().Create(member.type, 1);
  Types().Translate(member.type, place, OT_FORMAT_MEMORY, Types().MemLenGet(member.type, 1),
                    Place(key), KeyFormat(member.type, kind.form), key.size(), 1);
  OtString text(OT_CS_UNICODE, 1);
  Types().PrintToOtString(member.type, text, place,
                          member.IsText() ? kKeyDirective : member.Format(), 1);
  Types().Delete(member.type, place, 1);
  std::string readable = ot95::tools::ToUtf8(text);
  // An order that no 8-bit character has renders as a control character.
  std::replace_if(
      readable.begin(), readable.end(), [](unsigned char c) { return c < ' ' || c == 0x7f; }, '?');
  return readable;
}

std::string Explain(const Store& store, const Snapshot& snapshot, const Query& query,
                    const Plan& plan) {
  const KeyKind kind = store.Keys();
  std::ostringstream out;
  for (const TermEstimate& term : plan.terms) {
    out << "term    " << term.text << ": share " << Percent(term.share) << ", "
        << LimitsOf(query, term.range, kind) << "\n";
  }
  if (plan.ranges.empty()) {
    out << "choice  all " << ObjectsOf(store, snapshot, query) << " objects of " << query.type->name
        << "\n";
  }
  for (const Range& range : plan.ranges) {
    out << "choice  index " << NameOf(query, range) << " from " << LimitsOf(query, range, kind)
        << (range.withPartial ? ", and its partial keys" : "") << "\n";
  }
  return out.str();
}

std::string ExplainTally(const Store& store, const Snapshot& snapshot, const Query& query,
                         const Plan& plan, const Tally& tally) {
  const auto objects = static_cast<double>(ObjectsOf(store, snapshot, query));
  std::ostringstream out;
  out << "rows    estimated " << std::llround(plan.share * objects) << ", looked at "
      << tally.looked << ", found " << tally.found << "\n";
  return out.str();
}

}  // namespace otdb
