#ifndef OT95_SRC_NUMBERS_SORTKEY_H
#define OT95_SRC_NUMBERS_SORTKEY_H

/// @file
/// Sort keys of numbers, of those that can be null, and of booleans.

#include <cmath>

#include "kit/sortkey.h"
#include "numbers/nullable.h"
#include "ot95/int64.h"

namespace ot95 {

template <class T>
int PutScalar(SortKeyWriter& out, T number, bool /*nanIsHigh*/) {
  if constexpr (std::is_signed_v<T>) {
    out.PutSigned(number);
  } else {
    out.PutNumber(number);
  }
  return 0;
}

inline int PutScalar(SortKeyWriter& out, OtInt64 number, bool) {
  out.PutSigned(number.high);
  out.PutNumber(number.low);
  return 0;
}

/// The bits of a float order like a signed number but for those below zero, which are turned. Both
/// zeros are one. A not-a-number stands at one end, where its row has it as the left operand; as
/// the right one the rows have it at the other end.
template <class Word, class Float>
int PutFloat(SortKeyWriter& out, Float number, bool nanIsHigh) {
  if (std::isnan(number)) {
    out.PutNumber(static_cast<Word>(nanIsHigh ? ~Word{0} : Word{0}));
    return kUnorderedKey;
  }
  if (number == 0) number = 0;
  Word bits;
  std::memcpy(&bits, &number, sizeof bits);
  constexpr Word sign = Word{1} << (8 * sizeof bits - 1);
  out.PutNumber(static_cast<Word>((bits & sign) != 0 ? ~bits : bits | sign));
  return 0;
}
inline int PutScalar(SortKeyWriter& out, float number, bool nanIsHigh) {
  return PutFloat<std::uint32_t>(out, number, nanIsHigh);
}
inline int PutScalar(SortKeyWriter& out, double number, bool nanIsHigh) {
  return PutFloat<std::uint64_t>(out, number, nanIsHigh);
}

template <class T>
int SortKeyOfScalars(const SortInput& input, SortKeyWriter& out) {
  const unsigned char form = FormOf(input.format);
  return PutElements(input, sizeof(T), [&](const unsigned char* element, std::uint64_t) {
    T number(0);
    GetValue(element, number, form);
    return PutScalar(out, number, false);
  });
}

template <class Record>
int SortKeyOfNullables(const SortInput& input, SortKeyWriter& out) {
  const unsigned char form = FormOf(input.format);
  return PutElements(input, NullWalkWidth<Record>(form),
                     [&](const unsigned char* element, std::uint64_t) {
                       const Record record = LoadNullable<Record>(element, form);
                       out.Put(record.IsNull() ? kNullKey : kPresentKey);
                       return record.IsNull() ? 0 : PutScalar(out, record.value, true);
                     });
}

/// Null, false, true. Other bytes equal true from one side only.
inline int SortKeyOfBooleans(const SortInput& input, SortKeyWriter& out) {
  return PutElements(input, 1, [&](const unsigned char* element, std::uint64_t) -> int {
    const unsigned rank = (*element + 1U) & 0xff;
    if (rank > 2) return OT_ERR_NOT_SUPPORTED;
    out.Put(rank);
    return 0;
  });
}

}  // namespace ot95

#endif
