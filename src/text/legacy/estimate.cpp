// Estimates for the legacy strings. The line is made of the first four bytes of a key, as a number.

#include <algorithm>
#include <cstring>

#include "kit/estimate.h"
#include "ot95/bytes.h"
#include "text/legacy/row.h"

namespace ot95 {
namespace {

constexpr std::size_t numberBytes = 4;

// Up to four bytes as a number, the first most significant; missing ones are 0.
std::int64_t NumberOf(const unsigned char* bytes, std::size_t length) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < numberBytes; ++i) number = number << 8 | (i < length ? bytes[i] : 0U);
  return number;
}

std::int64_t NumberOfKey(const void* key, unsigned char keyLength) {
  const std::size_t length = keyLength > legacyHeader ? keyLength - legacyHeader - 1U : 0U;
  return NumberOf(static_cast<const unsigned char*>(key) + legacyHeader, length);
}

// The key bytes of an operand, or of its prefix before the first wildcard: all are counted, but no
// more kept than a key can hold.
struct KeyBytes {
  unsigned char bytes[OtINDEX_MAX_KEYLEN] = {};
  std::size_t length = 0;
  void operator()(unsigned char byte) {
    if (length < sizeof bytes) bytes[length] = byte;
    ++length;
  }
};

// The text of a stored operand. The record tells more bytes than there are where it is a cut key,
// but such a key ends in a zero.
LegacyText OperandOf(const void* value, unsigned char format) {
  const auto* disk = static_cast<const unsigned char*>(value);
  const std::size_t total = LoadAs<OtWord>(disk + 1, format);
  std::size_t length = 0;
  while (length + 1 < total && disk[legacyHeader + length] != 0) ++length;
  return {disk + legacyHeader, length, disk[0]};
}

// A key of the line's form. A closing zero is counted; a key that is cut has it as its last byte.
void StoreKey(void*& key, unsigned char& keyLength, const KeyBytes& text, std::size_t length,
              unsigned char format) {
  unsigned char* bytes = NewKey(key, keyLength, length + legacyHeader + 1);
  if (!bytes) return;
  bytes[0] = OT_ISTR_KEY | OT_ISTR_TEXT;
  StoreAs<OtWord>(bytes + 1, static_cast<OtWord>(length + 1), format);
  std::memcpy(bytes + legacyHeader, text.bytes,
              std::min<std::size_t>(length, keyLength - legacyHeader - 1U));
}

void StoreLimits(OtIdxBounds* limits, unsigned short op, KeyBytes& text, bool isPrefix,
                 unsigned char format) {
  if (!limits) return;
  if (!limits->lowerKey && !(op & OT_OP_LESS)) {
    StoreKey(limits->lowerKey, limits->lowerKeyLength, text, text.length, format);
  }
  if (!limits->upperKey && !(op & OT_OP_GREATER)) {
    if (isPrefix) text(0xff);  // above all that begins with the prefix
    StoreKey(limits->upperKey, limits->upperKeyLength, text, text.length, format);
  }
}

// How many numbers from `lower` to `upper` qualify, in exact arithmetic.
double Qualifying(unsigned short op, std::int64_t first, std::int64_t last, std::int64_t lower,
                  std::int64_t upper) {
  const auto place = [=](std::int64_t number) {
    return std::min(std::max(number, lower - 1), upper + 1) - lower + 1;
  };
  const std::int64_t a = place(first);
  const std::int64_t b = place(last);
  std::int64_t sum = 0;
  if (op & OT_OP_LESS) sum = a;
  if (op & OT_OP_GREATER) sum += upper - lower + 1 - b;
  if (op & OT_OP_EQUAL) sum += b - a + 1;
  return static_cast<double>(std::max<std::int64_t>(sum, 0));
}

float Estimate(const LegacyRules& rules, const OtIdxBounds* bounds, unsigned short& op,
               const void* value, unsigned char format, OtIdxBounds* limits) {
  op &= operatorMask;
  const bool ranged = HasRange(bounds);
  const std::int64_t upper = ranged ? NumberOfKey(bounds->upperKey, bounds->upperKeyLength) : 0;
  const std::int64_t lower = ranged ? NumberOfKey(bounds->lowerKey, bounds->lowerKeyLength) : 0;
  LegacyText operand = OperandOf(value, format);
  const long wild = FindLegacyWildcard(operand);
  if (wild >= 0) op |= OT_OP_WILDCARD;
  if (wild == 0) return 1.0F;
  if (wild > 0) operand.length = static_cast<std::size_t>(wild);

  KeyBytes text;
  if (operand.IsKey()) {
    std::for_each_n(operand.bytes, operand.length, [&text](unsigned char byte) { text(byte); });
  } else {
    EachKeyByte(rules, operand.bytes, operand.length, text);
  }
  // A text shorter than the number stands for all that begin with it.
  const std::size_t digits = std::min(text.length, numberBytes);
  const std::int64_t fill =
      digits < numberBytes ? std::int64_t{0xff} << 8 * (numberBytes - 1 - digits) : 0;
  const std::int64_t number = NumberOf(text.bytes, digits);
  StoreLimits(limits, op, text, wild > 0, format);
  return static_cast<float>(Qualifying(op, number, number + fill, lower, upper) /
                            static_cast<double>(upper - lower + 1));
}

}  // namespace

float EvalAndBoundIString(OtIdxBounds* bounds, unsigned short& op, void* value,
                          unsigned char format, unsigned long, OtIdxBounds* limits) {
  return Estimate(iStringRules, bounds, op, value, format, limits);
}

float EvalAndBoundCaseIString(OtIdxBounds* bounds, unsigned short& op, void* value,
                              unsigned char format, unsigned long, OtIdxBounds* limits) {
  return Estimate(caseIStringRules, bounds, op, value, format, limits);
}

}  // namespace ot95
