#ifndef OT95_SRC_OTTYPEVL_H
#define OT95_SRC_OTTYPEVL_H

/// @file
/// What the estimators of all types share: the core of the numeric estimate, and the limits of a
/// scan.

#include "ot95/typemgr.h"

namespace ot95 {

/// The bits of the operator word that say which values qualify.
constexpr unsigned short operatorMask = 0x800f;

/// Whether `bounds` tells a range: a record without both keys counts as none.
inline bool HasRange(const OtIdxBounds* bounds) {
  return bounds && bounds->lowerKey && bounds->upperKey;
}

/// How much of a line from `lower` to `upper`, on which values are `step` apart, qualifies against
/// an operand that reaches from `first` to `last`.
double EstimateRange(unsigned short op, double first, double last, double lower, double upper,
                     double step);

/// Makes the `size` bytes at `value` the limits that `op` asks for, where `limits` has none yet.
/// Keys end at OtINDEX_MAX_KEYLEN bytes; when memory is short no key is recorded.
void StoreBound(OtIdxBounds* limits, const void* value, unsigned short op, unsigned long size);

/// Records a new key of `size` bytes and returns its zeroed bytes; null when memory is short.
unsigned char* NewKey(void*& key, unsigned char& keyLength, unsigned long size);

}  // namespace ot95

#endif
