#include "ottypevl.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "ot95/fault.h"

namespace ot95 {
namespace {

// NaN and infinities count as the greatest number there is.
double Sanitised(double amount) {
  return std::isfinite(amount) ? amount : std::numeric_limits<double>::max();
}

double Qualifying(double amount) {
  const double sane = Sanitised(amount);
  return sane > 0 ? sane : 0;
}

}  // namespace

double EstimateRange(unsigned short op, double first, double last, double lower, double upper,
                     double step) {
  double sum = 0;
  if (op & OT_OP_GREATER) sum += Qualifying(upper - (lower > last ? lower - step : last));
  if (op & OT_OP_LESS) sum += Qualifying((upper < first ? upper + step : first) - lower);
  if (op & OT_OP_EQUAL) {
    const double overlap = Sanitised(std::min(last, upper) - std::max(first, lower)) + step;
    if (overlap > 0) sum += overlap;
  }
  return sum;
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
