#ifndef OT95_SRC_NUMBERS_ESTIMATE_H
#define OT95_SRC_NUMBERS_ESTIMATE_H

/// @file
/// Member EvalAndBound of plain numbers. Rows of one number type share one function.

#include "kit/estimate.h"
#include "kit/walks.h"

namespace ot95 {

/// The smallest share that a floating-point row answers when anything qualifies.
constexpr double smallestShare = 0x1p-23;

/// `share`, but no less than the smallest where `estimate` found something.
inline double Floored(double share, double estimate) {
  return estimate != 0.0 && share < smallestShare ? smallestShare : share;
}

/// The share of what EstimateRange found from `lower` to `upper`.
template <class T>
double ShareOf(double estimate, T lower, T upper) {
  return estimate / (static_cast<double>(upper) - static_cast<double>(lower) + 1.0);
}
/// Two floats are subtracted as such: their difference may be infinite.
template <>
inline double ShareOf(double estimate, float lower, float upper) {
  const float distance = upper - lower;
  return Floored(estimate / (static_cast<double>(distance) + 1.0), estimate);
}
template <>
inline double ShareOf(double estimate, double lower, double upper) {
  const double sane = Sanitised(estimate);
  return Floored(sane / (Sanitised(upper - lower) + 1.0), sane);
}

/// The whole member for numbers of type T, which are stored as they stand in memory but for their
/// byte order.
template <class T>
float EvalNumber(OtIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                 unsigned long count, OtIdxBounds* limits) {
  StoreBound(limits, value, op, count * sizeof(T));
  if (!HasRange(bounds)) return 0.0F;
  const T number = LoadAs<T>(value, format);
  const T lower = LoadAs<T>(LowerKey<sizeof(T)>(*bounds).bytes, format);
  const T upper = LoadAs<T>(UpperKey<sizeof(T)>(*bounds).bytes, format);
  const auto place = static_cast<double>(number);
  const double estimate =
      EstimateRange(op, place, place, static_cast<double>(lower), static_cast<double>(upper), 1.0);
  return static_cast<float>(ShareOf(estimate, lower, upper));
}

}  // namespace ot95

#endif
