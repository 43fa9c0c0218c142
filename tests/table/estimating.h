#ifndef OT95_TESTS_TABLE_ESTIMATING_H
#define OT95_TESTS_TABLE_ESTIMATING_H

#include <string>
#include <utility>
#include <vector>

#include "bytes_testing.h"
#include "ot95/typemgr.h"

using Bytes = std::vector<unsigned char>;

/// Keys of a record, owned by the test.
class Bounds : public OtIdxBounds {
 public:
  Bounds() : OtIdxBounds{nullptr, nullptr, 0, 0} {}
  Bounds(const Bytes& lower, const Bytes& upper) : Bounds() {
    Set(lowerKey, lowerKeyLength, lower);
    Set(upperKey, upperKeyLength, upper);
  }
  ~Bounds() {
    std::free(lowerKey);
    std::free(upperKey);
  }
  Bounds(const Bounds&) = delete;
  Bounds& operator=(const Bounds&) = delete;

  static void Set(void*& key, unsigned char& length, const Bytes& bytes) {
    key = std::malloc(bytes.empty() ? 1 : bytes.size());
    if (!bytes.empty()) std::memcpy(key, bytes.data(), bytes.size());
    length = static_cast<unsigned char>(bytes.size());
  }
  std::string Lower() const { return lowerKey ? Hex(lowerKey, lowerKeyLength) : "-"; }
  std::string Upper() const { return upperKey ? Hex(upperKey, upperKeyLength) : "-"; }
};

/// One call: the operand in a block of its own, and what is seen afterwards.
struct Estimate {
  float share;
  unsigned short op;
  Bytes operand;

  Estimate(char id, const Bytes& value, unsigned short wanted, unsigned char format,
           OtIdxBounds* bounds, OtIdxBounds* limits, unsigned short version = 5,
           unsigned long count = 1)
      : op(wanted) {
    OtTypeMgr types(version);
    const ExactBlock block(value);
    share = types.EvalAndBound(id, bounds, op, block.data(), format, count, limits, nullptr);
    operand.assign(block.data(), block.data() + block.size());
  }
};

/// Whether a comparison result satisfies the operator.
inline bool Satisfies(long result, unsigned short op) {
  return (op & (result < 0 ? OT_OP_LESS : result > 0 ? OT_OP_GREATER : OT_OP_EQUAL)) != 0;
}

inline const std::pair<const char*, unsigned short> relations[] = {
    {"=", OT_OP_EQUAL},
    {"<", OT_OP_LESS},
    {">", OT_OP_GREATER},
    {"<=", OT_OP_LESS | OT_OP_EQUAL},
    {">=", OT_OP_GREATER | OT_OP_EQUAL},
    {"<>", OT_OP_LESS | OT_OP_GREATER}};

#endif
