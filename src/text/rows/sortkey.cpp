#include "text/rows/sortkey.h"

#include "text/collation/shortkey.h"
#include "text/rows/stored.h"

namespace ot95 {

namespace {

/// The next text, if it is there and whole.
bool TakeWhole(StringCursor& cursor, StoredText& text) {
  if (!cursor.Unpack(text) || !text.present || text.truncated || text.unknowable) return false;
  // A key that ended at a change of script is a text that was cut.
  return text.text.codeSet != OT_CS_ORDER || (text.text.language & kMixedScripts) == 0;
}

}  // namespace

template <bool legacy>
int SortKeyOfStrings(const SortInput& input, SortKeyWriter& out) {
  if (input.count == 1 && FormOf(input.format) == OT_FORMAT_MEMORY && input.value != nullptr) {
    const OtString& string = *reinterpret_cast<const OtString*>(input.value);
    const TextSpan text = TextSpan::Of(string);
    if (text.codeSet != OT_CS_ORDER) return PutTextKey(text, input.cmpOp, out);
  }
  StringCursor cursor(input.value, input.length, input.format, legacy);
  for (unsigned long i = 0; i < input.count; ++i) {
    StoredText text;
    if ((i != 0 && !cursor.Advance()) || !TakeWhole(cursor, text)) return OT_ERR_END_OF_DATA;
    if (const int status = PutTextKey(text.text, input.cmpOp, out)) return status;
  }
  return 0;
}

template <bool legacy>
int SortRangeOfStrings(const SortInput& operand, unsigned short keyOp, bool equal, bool upper,
                       SortKeyWriter& out, TextRange::Kind& kind) {
  StringCursor cursor(operand.value, operand.length, operand.format, legacy);
  StoredText text;
  if (!TakeWhole(cursor, text)) return OT_ERR_END_OF_DATA;
  kind = TextRange{text.text, operand.cmpOp, keyOp, equal}.Put(upper, out);
  return 0;
}

namespace {

[[gnu::noinline]] unsigned long SortKeyOfAnyString(const OtString& string, unsigned short cmpOp,
                                                   void* target, unsigned long room, int& status) {
  const auto* const value = reinterpret_cast<const unsigned char*>(&string);
  return MakeSortKey(SortKeyOfStrings<false>, {value, 0, 1, cmpOp, OT_FORMAT_MEMORY, false}, target,
                     room, status);
}

}  // namespace

unsigned long SortKeyOfString(const OtString& string, unsigned short cmpOp, void* target,
                              unsigned long room, int& status) {
  constexpr unsigned short way = OT_CMP_NO_WILDCARDS | OT_CMP_ORDER_ONLY;
  const FinishedKeys* const keys = FinishedKeys::Known(string.GetLanguageCode());
  const bool plain = (cmpOp & way) == OT_CMP_NO_WILDCARDS;
  if (plain && string.GetCodeSetCode() == OT_CS_UNICODE && keys != nullptr) {
    const std::size_t size = PutShortKey(TextAccess::Buffer(string), string.MemLen(), *keys, cmpOp,
                                         static_cast<unsigned char*>(target), room);
    status = 0;
    if (size != 0) return size;
  }
  return SortKeyOfAnyString(string, cmpOp, target, room, status);
}

template int SortKeyOfStrings<false>(const SortInput&, SortKeyWriter&);
template int SortKeyOfStrings<true>(const SortInput&, SortKeyWriter&);
template int SortRangeOfStrings<false>(const SortInput&, unsigned short, bool, bool, SortKeyWriter&,
                                       TextRange::Kind&);
template int SortRangeOfStrings<true>(const SortInput&, unsigned short, bool, bool, SortKeyWriter&,
                                      TextRange::Kind&);

}  // namespace ot95
