/// Comparers of the string rows: strings in memory, stored, and in keys that were cut.

#include "text/collation/compare.h"
#include "text/collation/keycompare.h"
#include "text/rows/row.h"
#include "text/rows/stored.h"

namespace ot95 {
namespace {

/// Two strings of which at least one is cut: how far they can be compared, and what follows where
/// they are equal so far.
struct CutPair {
  const StoredText& text1;
  const StoredText& text2;
  unsigned short cmpOp;

  bool IgnoresSpace() const { return (cmpOp & OT_CMP_IGNORE_SPACE) != 0; }

  /// The orders to compare. @param status set when the result rests on what isn't there.
  long Limit(int& status) const {
    const long chars1 = static_cast<long>(text1.chars);
    const long chars2 = static_cast<long>(text2.chars);
    if ((cmpOp & (OT_CMP_NO_WILDCARDS | OT_CMP_ORDER_ONLY)) == 0) {
      const long star = WildcardPlace(text2.text, true, text2.chars, nullptr);
      if (star >= 0) {
        const bool onlyPrefix = !text2.truncated && !IgnoresSpace() && star + 1 == chars2;
        if (!onlyPrefix || chars1 < star) status = OT_ERR_END_OF_DATA;
        return std::min(chars1, star);
      }
    }
    if (text1.truncated && text2.truncated) {
      status = OT_ERR_END_OF_DATA;
      return std::min(chars1, chars2);
    }
    const long cut = text1.truncated ? chars1 : chars2;
    const long whole = text1.truncated ? chars2 : chars1;
    if (whole >= cut || IgnoresSpace()) status = OT_ERR_END_OF_DATA;
    return cut;
  }

  long Adjust(long result, long limit, int primary) const {
    if (IgnoresSpace()) return primary;
    if (result != 0 || text1.chars == text2.chars) return result;
    if (!text2.truncated && limit == static_cast<long>(text2.chars)) return 1;
    if (!text1.truncated && limit == static_cast<long>(text1.chars)) return -1;
    return 0;
  }
};

/// A key that ended at a change of script holds less than the text.
bool ClearMixedScripts(StoredText& key) {
  if (key.text.codeSet != OT_CS_ORDER || (key.text.language & kMixedScripts) == 0) return false;
  key.text.language &= static_cast<unsigned char>(~kMixedScripts);
  return true;
}

long ComparePair(StoredText text1, StoredText text2, unsigned short cmpOp, int& status) {
  const bool wildcards = (cmpOp & (OT_CMP_NO_WILDCARDS | OT_CMP_ORDER_ONLY)) == 0;
  if (ClearMixedScripts(text1)) status = OT_ERR_END_OF_DATA;
  if (ClearMixedScripts(text2)) {
    status = OT_ERR_END_OF_DATA;
    if (wildcards) text2.truncated = true;
  }
  if (!text1.truncated && !text2.truncated) return CompareSpans(text1.text, text2.text, cmpOp);
  const CutPair pair{text1, text2, cmpOp};
  const long limit = pair.Limit(status);
  int primary = 0;
  const long result = CompareSpans(text1.text, text2.text, cmpOp, limit, &primary);
  return pair.Adjust(result, limit, primary);
}

template <bool legacy>
[[gnu::noinline]] long CompareEach(unsigned char format, unsigned long length1, void* value1,
                                   unsigned long length2, void* value2, unsigned short cmpOp,
                                   unsigned long count, int& status) {
  long result = 0;
  StringCursor cursor1(value1, length1, format, legacy);
  StringCursor cursor2(value2, length2, format, legacy);
  for (unsigned long i = 0; i < count && result == 0 && status == 0; ++i) {
    StoredText text1;
    StoredText text2;
    if (!cursor1.Unpack(text1) || !cursor2.Unpack(text2)) {
      status = OT_ERR_END_OF_DATA;
      return 0;
    }
    if (text1.unknowable || text2.unknowable) {
      status = OT_ERR_NOT_SUPPORTED;
      return -1;
    }
    if (text1.present && text2.present) {
      result = ComparePair(text1, text2, cmpOp, status);
    } else {
      result = static_cast<long>(text1.present) - static_cast<long>(text2.present);
    }
    if (i + 1 < count && !(cursor1.Advance() && cursor2.Advance())) status = OT_ERR_END_OF_DATA;
  }
  return result;
}

}  // namespace

template <bool legacy>
[[gnu::noinline]] long CompareStrings(unsigned char format, unsigned long length1, void* value1,
                                      unsigned long length2, void* value2, unsigned short cmpOp,
                                      unsigned long count, int& status) {
  status = 0;
  if (count == 1) {
    if (const auto sign = CompareKeysInStep(format, length1, value1, length2, value2, cmpOp)) {
      return *sign;
    }
  }
  return CompareEach<legacy>(format, length1, value1, length2, value2, cmpOp, count, status);
}

template long CompareStrings<true>(unsigned char, unsigned long, void*, unsigned long, void*,
                                   unsigned short, unsigned long, int&);

}  // namespace ot95

namespace ot95 {
namespace {

/// Of two values, as an index compares its keys.
template <unsigned char format>
[[gnu::always_inline]] inline long CompareTwo(unsigned long length1, void* value1,
                                              unsigned long length2, void* value2,
                                              unsigned short cmpOp, unsigned long count,
                                              int& status) {
  constexpr bool reversed = IsReversed(format);
  const auto* const key1 = static_cast<const char*>(value1);
  const auto* const key2 = static_cast<const char*>(value2);
  if (key1 != nullptr && key2 != nullptr) {
    status = 0;
    const std::size_t end = EndOfKeys<reversed>(length1, key1, length2, key2);
    if (end != 0) return CompareWholeKeys<reversed>(key1, key2, end, cmpOp);
  }
  return CompareStrings<false>(format, length1, value1, length2, value2, cmpOp, count, status);
}

}  // namespace
}  // namespace ot95

long StringCompare(unsigned char format, unsigned long length1, void* value1, unsigned long length2,
                   void* value2, unsigned short cmpOp, unsigned long count, int& status) {
  using namespace ot95;
  constexpr unsigned short way = OT_CMP_NO_WILDCARDS | OT_CMP_ORDER_ONLY;
  constexpr unsigned char bigEndian = kStoreKey | OT_FORMAT_BIG_ENDIAN;
  if ((cmpOp & way) == OT_CMP_NO_WILDCARDS && count == 1 && format == bigEndian) {
    return CompareTwo<bigEndian>(length1, value1, length2, value2, cmpOp, count, status);
  }
  return CompareStrings<false>(format, length1, value1, length2, value2, cmpOp, count, status);
}
