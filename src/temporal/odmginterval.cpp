// d_Interval as a value: a float of seconds.

#include <cstdlib>

#include "temporal/odmgseconds.h"

namespace {

float Magnitude(int count, float seconds) {
  return static_cast<float>(std::llabs(count)) * seconds;
}

}  // namespace

d_Interval::d_Interval(int day, int hour, int minute, float second) {
  const float magnitude = second < 0 ? -second : second;
  seconds = Magnitude(day, 86400.0f) + Magnitude(hour, 3600.0f);
  seconds = seconds + Magnitude(minute, 60.0f);
  seconds = seconds + magnitude;
  if (day < 0 || hour < 0 || minute < 0 || second < 0) seconds = -seconds;
}

d_Interval operator+(const d_Interval& a, const d_Interval& b) {
  return d_Interval::Of(a.seconds + b.seconds);
}

d_Interval operator-(const d_Interval& a, const d_Interval& b) {
  return d_Interval::Of(a.seconds - b.seconds);
}

d_Interval operator*(const d_Interval& interval, int factor) {
  return d_Interval::Of(interval.seconds * static_cast<float>(factor));
}

d_Interval operator*(int factor, const d_Interval& interval) {
  return interval * factor;
}

d_Interval operator/(const d_Interval& interval, int divisor) {
  if (divisor == 0) return interval;
  return d_Interval::Of(interval.seconds / static_cast<float>(divisor));
}
