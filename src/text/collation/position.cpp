// A number for the place of a text in its collation, from the first of its orders: what estimates
// of ranges interpolate between.

#include "text/collation/position.h"

namespace ot95 {
namespace {

/// Raw bytes have no orders: four of them, in seven bits each. `nextByte` answers 0 at the end.
template <class NextByte>
double PositionOfBytes(unsigned maxChars, NextByte&& nextByte) {
  std::uint32_t number = 0;
  for (unsigned i = 0; i < 4; ++i) {
    const unsigned value = i < maxChars ? nextByte() : 0;
    number = number << 7 | (value > 0x7f ? 0x7f : value);
  }
  return number;
}

/// Three keys of digits and letters. `nextKey` answers 0 at the end.
template <class NextKey>
double PositionOfKeys(unsigned char script, unsigned maxChars, NextKey&& nextKey) {
  std::uint64_t words[3] = {};
  unsigned found = 0;
  for (unsigned step = 0; step < maxChars && found < 3; ++step) {
    const std::uint32_t key = nextKey();
    if (key == 0) break;
    if (OrderOfKey(key) >= kFirstDigit) words[found++] = key >> 8 & 0xffff;
  }
  const std::uint64_t head = script & 0x7fU;
  return static_cast<double>(head << 16 | words[0]) * 4294967296.0 +
         static_cast<double>(words[1] << 16 | words[2]);
}

}  // namespace

double OtStrOrderPosition(OtStringIterator& it, unsigned short maxChars) {
  if (it.GetCodeSetCode() == 0) {
    return PositionOfBytes(maxChars, [&it]() -> unsigned {
      if (it.IsEOS()) return 0;
      const unsigned value = (*it).GetValue();
      ++it;
      return value;
    });
  }
  return PositionOfKeys(it.GetScript(), maxChars, [&it]() -> std::uint32_t {
    if (it.IsEOS()) return 0;
    const unsigned short order = it.GetNextOrder(1);
    return ComposeOrderKey(order, it.GetScript());
  });
}

double OrderPosition(OrderWalk walk, unsigned maxChars) {
  return PositionOfKeys(walk.script(), maxChars, [&walk] { return walk.NextKey(true); });
}

double RawPosition(const TextSpan& text, unsigned maxChars) {
  const char* place = text.text;
  return PositionOfBytes(maxChars, [&]() -> unsigned {
    const unsigned short byte = text.UnitAt(place);
    if (byte != 0) ++place;
    return byte;
  });
}

}  // namespace ot95
