#ifndef OT95_SRC_KIT_ESTIMATE_H
#define OT95_SRC_KIT_ESTIMATE_H

/// @file
/// What the estimators of all types share: the core of the numeric estimate, and the limits of a
/// scan.

#include <algorithm>
#include <cstring>

#include "ot95/int64.h"
#include "ot95/typemgr.h"

namespace ot95 {

/// The bits of the operator word that say which values qualify.
constexpr unsigned short operatorMask = 0x800f;

/// Whether `bounds` tells a range: a record without both keys counts as none.
inline bool HasRange(const OtIdxBounds* bounds) {
  return bounds && bounds->lowerKey && bounds->upperKey;
}

/// A key of an index in `width` bytes, with zeros for those that it lacks. A length of 0 stands for
/// a whole element, as it does in comparisons.
template <std::size_t width>
struct WholeKey {
  unsigned char bytes[width] = {};
  WholeKey(const void* key, unsigned char length) {
    std::memcpy(bytes, key, length == 0 ? width : std::min<std::size_t>(length, width));
  }
};

template <std::size_t width>
WholeKey<width> LowerKey(const OtIdxBounds& bounds) {
  return {bounds.lowerKey, bounds.lowerKeyLength};
}
template <std::size_t width>
WholeKey<width> UpperKey(const OtIdxBounds& bounds) {
  return {bounds.upperKey, bounds.upperKeyLength};
}

/// The amount itself; NaN and infinities count as the greatest number there is.
double Sanitised(double amount);

/// How much of a line from `lower` to `upper`, on which values are `step` apart, qualifies against
/// an operand that reaches from `first` to `last`.
double EstimateRange(unsigned short op, double first, double last, double lower, double upper,
                     double step);

/// The same for whole numbers of 64 bits, which a `double` may fail to tell apart: where nothing
/// seems to qualify and something does, the answer is 1.
double EstimateInt64(unsigned short op, OtInt64 number, OtInt64 lower, OtInt64 upper);

/// A 64-bit number on the line.
double LineNumber(OtInt64 number);

/// A nullable number on the line; a null one stands at 0.
struct NullableNumber {
  double number;
  bool isNull;
};

/// How much of an index of nullable numbers qualifies. Nulls lie below all numbers: where the upper
/// key is null, nothing else is there.
double EstimateNullable(unsigned short op, NullableNumber value, NullableNumber lower,
                        NullableNumber upper);

/// Makes the `size` bytes at `value` the limits that `op` asks for, where `limits` has none yet.
/// Keys end at OtINDEX_MAX_KEYLEN bytes; when memory is short no key is recorded.
void StoreBound(OtIdxBounds* limits, const void* value, unsigned short op, unsigned long size);

/// Records a new key of `size` bytes and returns its zeroed bytes; null when memory is short.
unsigned char* NewKey(void*& key, unsigned char& keyLength, unsigned long size);

}  // namespace ot95

#endif
