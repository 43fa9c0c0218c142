#ifndef OT95_SRC_NUMBERS_NULLABLE_H
#define OT95_SRC_NUMBERS_NULLABLE_H

#include <cstddef>

namespace ot95 {

/// A scalar that can be null. A null record holds 0.
template <class T>
struct NullRecord {
  T value;
  char isNull;
};

/// 16 bytes on every machine: a 32-bit one would align a double to 4 by itself.
template <>
struct alignas(8) NullRecord<double> {
  double value;
  char isNull;
};

}  // namespace ot95

#endif
