#ifndef OT95_SRC_KIT_HASH_H
#define OT95_SRC_KIT_HASH_H

#include "kit/walks.h"

namespace ot95 {

/// Member Hash of rows whose elements are one number: a contribution is the number's bits, narrow
/// ones extended by the signedness of T, wide ones as the exclusive-or of their two halves. T is an
/// integer of 8 to 64 bits, float or double.
template <class T>
unsigned long ScalarHash(unsigned char format, unsigned long length, void* value,
                         unsigned long count, int& status);

}  // namespace ot95

#endif
