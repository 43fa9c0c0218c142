#ifndef OT95_SRC_TEMPORAL_CUT_H
#define OT95_SRC_TEMPORAL_CUT_H

// How the results of temporal arithmetic reach their fields: cut to the low bits, and floats by
// way of 32 bits.

#include <cstdint>

#include "ot95/base.h"

namespace ot95 {

constexpr signed char Cut8(std::int64_t value) {
  return static_cast<signed char>(value);
}
constexpr std::int16_t Cut16(std::int64_t value) {
  return static_cast<std::int16_t>(value);
}
constexpr OtLong Cut32(std::int64_t value) {
  return static_cast<OtLong>(value);
}

/// The value toward zero. What doesn't fit into 32 bits, NaN too, gives the smallest number.
constexpr OtLong TruncateToLong(double value) {
  return value > -2147483649.0 && value < 2147483648.0 ? static_cast<OtLong>(value) : INT32_MIN;
}

}  // namespace ot95

#endif
