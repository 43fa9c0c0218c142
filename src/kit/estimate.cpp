// Shares and scan limits of all types that a number stands for: the frames of EvalAndBound.

#include "kit/estimate.h"

#include <cmath>
#include <cstdlib>
#include <limits>

#include "ot95/fault.h"

namespace ot95 {
namespace {

// What counts of an amount; a not-a-number doesn't.
double Positive(double amount) {
  return amount > 0 ? amount : 0;
}

// Where the stretches above and below an operand begin and end: outside the range, one step past
// its end.
double StartAbove(double last, double lower, double step) {
  return lower > last ? lower - step : last;
}
double EndBelow(double first, double upper, double step) {
  return upper < first ? upper + step : first;
}

}  // namespace

double Sanitised(double amount) {
  return std::isfinite(amount) ? amount : std::numeric_limits<double>::max();
}

double LineNumber(OtInt64 number) {
  return number.high * 4294967296.0 + number.low;
}

double EstimateRange(unsigned short op, double first, double last, double lower, double upper,
                     double step) {
  double sum = 0;
  if (op & OT_OP_GREATER) sum += Positive(Sanitised(upper - StartAbove(last, lower, step)));
  if (op & OT_OP_LESS) sum += Positive(Sanitised(EndBelow(first, upper, step) - lower));
  if (op & OT_OP_EQUAL) {
    sum += Positive(Sanitised(std::min(last, upper) - std::max(first, lower)) + step);
  }
  return sum;
}

double EstimateInt64(unsigned short op, OtInt64 number, OtInt64 lower, OtInt64 upper) {
  const double place = LineNumber(number);
  const double sum = EstimateRange(op, place, place, LineNumber(lower), LineNumber(upper), 1.0);
  const bool lies =
      ((op & OT_OP_GREATER) || lower <= number) && ((op & OT_OP_LESS) || number <= upper);
  return sum == 0.0 && lies ? 1.0 : sum;
}

double EstimateNullable(unsigned short op, NullableNumber value, NullableNumber lower,
                        NullableNumber upper) {
  // What an end of the range or an operand that is null leaves to guess.
  constexpr double halfOpen = 0.5, equalToOne = 0.1, equalToNull = 0.001;
  double sum = 0;
  if ((op & OT_OP_GREATER) && !upper.isNull) {
    sum += value.isNull || lower.isNull
               ? halfOpen
               : Positive(upper.number - StartAbove(value.number, lower.number, 1.0));
  }
  if ((op & OT_OP_LESS) && !value.isNull && !upper.isNull) {
    sum += lower.isNull ? halfOpen
                        : Positive(EndBelow(value.number, upper.number, 1.0) - lower.number);
  }
  if (!(op & OT_OP_EQUAL)) return sum;
  if (value.isNull) return sum + (lower.isNull ? equalToNull : 0);
  if (upper.isNull) return sum;
  const double overlap =
      std::min(value.number, upper.number) + 1.0 - std::max(value.number, lower.number);
  return sum + (lower.isNull ? equalToOne : Positive(overlap));
}

unsigned char* NewKey(void*& key, unsigned char& keyLength, unsigned long size) {
  if (size == 0) return nullptr;
  const unsigned long kept = std::min<unsigned long>(size, OtINDEX_MAX_KEYLEN);
  key = std::calloc(kept, 1);
  if (!key) {
    OtCallMemoryHandler(kept);
    return nullptr;
  }
  keyLength = static_cast<unsigned char>(kept);
  return static_cast<unsigned char*>(key);
}

void StoreBound(OtIdxBounds* limits, const void* value, unsigned short op, unsigned long size) {
  if (!limits) return;
  const auto store = [&](void*& key, unsigned char& keyLength) {
    unsigned char* bytes = NewKey(key, keyLength, size);
    if (bytes) std::memcpy(bytes, value, keyLength);
  };
  if (!limits->lowerKey && !(op & OT_OP_LESS)) store(limits->lowerKey, limits->lowerKeyLength);
  if (!limits->upperKey && !(op & OT_OP_GREATER)) store(limits->upperKey, limits->upperKeyLength);
}

}  // namespace ot95
