// Shares and scan limits of the types that aren't text.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "ot95/text.h"
#include "table/estimating.h"

namespace {

constexpr unsigned short eq = OT_OP_EQUAL, lt = OT_OP_LESS, gt = OT_OP_GREATER;
constexpr char kStrings = 11;
constexpr unsigned char big = OT_FORMAT_BIG_ENDIAN;

char Id(const char* name) {
  OtTypeMgr types;
  char id = 0;
  EXPECT_EQ(types.Name2OtTypeId(name, id), 0) << name;
  return id;
}

// The stored form of a value given as text; "null" is the null value, "0x" begins the form itself.
Bytes Stored(char id, const std::string& value) {
  if (value.starts_with("0x")) return Unhex(value.substr(2));
  OtTypeMgr types;
  OtString text(value.c_str());
  if (value == "null") text.SetNullValue();
  OtTypeConvertData* data = OtTypeConvertData::Make(kStrings, 1, &text, nullptr);
  void* memory = types.ConvertFrom(id, data, 1);
  data->manager = nullptr;
  delete data;
  Bytes bytes(types.DiskLenGet(id, memory, big, 1, OT_FORMAT_MEMORY));
  types.Store(id, bytes.data(), memory, big, 1);
  types.Delete(id, memory, 1);
  return bytes;
}

TEST(Estimate, OfNumbersIsARatioOfDistances) {
  constexpr double floor = 0x1p-23;
  const struct {
    const char *name, *type, *low, *high, *value;
    unsigned short op;
    double share;
  } rows[] = {
      {"inside", "short", "0", "99", "49", lt, 0.49},
      {"inside, equal", "short", "0", "99", "49", eq, 0.01},
      {"inside, greater", "short", "0", "99", "49", gt, 0.5},
      {"inside, at most", "short", "0", "99", "49", lt | eq, 0.5},
      {"inside, at least", "short", "0", "99", "49", gt | eq, 0.51},
      {"inside, not equal", "short", "0", "99", "49", lt | gt, 0.99},
      {"text options are ignored", "short", "0", "99", "49", lt | 0x7ff0, 0.49},
      {"below, less", "short", "10", "19", "5", lt, 0},
      {"below, greater", "short", "10", "19", "5", gt, 1},
      {"above, less", "short", "10", "19", "25", lt, 1},
      {"above, greater", "short", "10", "19", "25", gt, 0},
      {"above, equal", "short", "10", "19", "25", eq, 0},
      {"just above, equal", "short", "10", "19", "20", eq, 0},
      {"signed", "short", "-32768", "32767", "0", lt, 0.5},
      {"unsigned", "OtWord", "0", "65535", "32768", lt, 0.5},
      {"signed byte", "char", "-128", "127", "0", lt, 0.5},
      {"unsigned byte", "OtByte", "0", "255", "128", lt, 0.5},
      {"whole range", "int", "-2147483648", "2147483647", "0", lt, 0.5},
      {"whole range, unsigned", "unsigned", "0", "0xffffffff", "0x80000000", lt, 0.5},
      {"long", "long", "-2147483648", "2147483647", "0", gt, 0.5},
      {"DWord", "OtDWord", "0", "0xffffffff", "0x80000000", lt, 0.5},
      {"keys in reverse order", "short", "1", "0", "1", gt, NAN},
      {"float", "float", "0", "3", "1", lt, 0.25},
      {"float, tiny", "float", "0", "1e30", "1", eq, floor},
      {"float, overflowing range", "float", "-3e38", "3e38", "0", lt, floor},
      {"interval is a float", "d_Interval", "0", "3", "1", lt, 0.25},
      {"double", "double", "0", "3", "1", lt, 0.25},
      {"double, tiny", "double", "0", "1e300", "1", lt, floor},
      {"double, nothing", "double", "0", "1e300", "-1", lt, 0},
      {"double, overflowing range", "double", "-1.7e308", "1.7e308", "1.7e308", lt, 1},
      {"double, infinite operand", "double", "0", "9", "inf", lt, 1},
      {"boolean", "OtBoolean", "0", "1", "1", lt, 1.0 / 3},
      {"int64", "OtInt64", "-4294967296", "4294967295", "0", lt, 0.5},
      {"int64, lost in rounding", "OtInt64", "9223372036854775800", "9223372036854775807",
       "9223372036854775801", gt, 1},
      {"int64, outside", "OtInt64", "10", "19", "25", gt, 0},
      {"int64, below", "OtInt64", "10", "19", "5", eq, 0},
      {"nullable", "OtNull_int", "0", "99", "49", lt, 0.49},
      {"nullable, equal", "OtNull_int", "0", "99", "49", eq, 0.01},
      {"nullable, not equal", "OtNull_uchar", "0", "99", "49", lt | gt, 0.99},
      {"above a range that begins with null", "OtNull_int", "null", "9", "4", gt, 0.05},
      {"below a range that begins with null", "OtNull_int", "null", "9", "4", lt, 0.05},
      {"in a range that begins with null", "OtNull_int", "null", "9", "4", eq, 0.01},
      {"null in such a range", "OtNull_int", "null", "9", "null", eq, 0.0001},
      {"nullable signed byte", "OtNull_char", "-128", "127", "0", lt, 0.5},
      {"null in another range", "OtNull_int", "1", "9", "null", eq, 0},
      {"above null", "OtNull_int", "1", "10", "null", gt, 0.05},
      {"below null", "OtNull_int", "1", "10", "null", lt, 0},
      {"only nulls", "OtNull_int", "null", "null", "5", lt | eq | gt, 0},
      {"nullable double, tiny", "OtNull_double", "0", "1e300", "1", eq, floor},
      {"nullable float has no floor", "OtNull_float", "0", "1e30", "1", eq, 1e-30F},
      {"nullable double, not sanitised", "OtNull_double", "0", "inf", "1", gt, NAN},
      {"nullable int64 counts", "OtNull_OtInt64", "0", "99", "49", lt, 49},
      {"nullable int64, null", "OtNull_OtInt64", "1", "99", "null", eq, 1},
      {"nullable int64, nothing", "OtNull_OtInt64", "10", "19", "25", eq, 0},
      {"nullable int64, rescued", "OtNull_OtInt64", "10", "19", "5", lt, 0},
      {"nullable int64, above", "OtNull_OtInt64", "10", "19", "25", gt, 0},
  };
  for (const auto& row : rows) {
    const char id = Id(row.type);
    Bounds bounds(Stored(id, row.low), Stored(id, row.high));
    const Estimate estimate(id, Stored(id, row.value), row.op, big, &bounds, nullptr);
    const auto share = static_cast<float>(row.share);
    if (std::isnan(row.share)) {
      EXPECT_TRUE(std::isnan(estimate.share)) << row.name;
    } else {
      EXPECT_EQ(estimate.share, share) << row.type << ": " << row.name;
    }
    EXPECT_EQ(estimate.op, row.op) << row.name;
  }
}

TEST(Estimate, LimitsAreTheOperandWhereTheOperatorAsks) {
  const char id = Id("int");
  const Bytes value = Stored(id, "258"), other = Stored(id, "7");
  const struct {
    const char* name;
    unsigned short op;
    bool hasLower, hasUpper;
    const char *lower, *upper;
  } rows[] = {
      {"equal", eq, false, false, "00000102", "00000102"},
      {"less", lt, false, false, "-", "00000102"},
      {"greater", gt | eq, false, false, "00000102", "-"},
      {"not equal", lt | gt, false, false, "-", "-"},
      {"text options", static_cast<unsigned short>(eq | 0xfff0), false, false, "00000102",
       "00000102"},
      {"a lower key stays", eq, true, false, "00000007", "00000102"},
      {"an upper key stays", eq, false, true, "00000102", "00000007"},
  };
  for (const auto& row : rows) {
    Bounds limits;
    if (row.hasLower) Bounds::Set(limits.lowerKey, limits.lowerKeyLength, other);
    if (row.hasUpper) Bounds::Set(limits.upperKey, limits.upperKeyLength, other);
    const Estimate estimate(id, value, row.op, big, nullptr, &limits);
    EXPECT_EQ(estimate.share, 0.0F) << row.name;
    EXPECT_EQ(limits.Lower(), row.lower) << row.name;
    EXPECT_EQ(limits.Upper(), row.upper) << row.name;
  }
}

TEST(Estimate, KeysOfArraysEndWhereAKeyMust) {
  const char id = Id("int");
  Bounds limits;
  Estimate(id, Bytes(400, 3), eq, big, nullptr, &limits, 5, 100);
  EXPECT_EQ(limits.lowerKeyLength, OtINDEX_MAX_KEYLEN);
  EXPECT_EQ(limits.Upper(), Hex(Bytes(254, 3).data(), 254));
  Bounds none;
  Estimate(id, Bytes(4), eq, big, nullptr, &none, 5, 0);
  EXPECT_EQ(none.lowerKey, nullptr);
}

// Rows of the table whose stored values are of one length.
std::vector<char> FixedTypes() {
  OtTypeMgr types;
  std::vector<char> ids;
  for (char id = 0; id < 40; ++id) {
    if (types.IsFixed(id)) ids.push_back(id);
  }
  return ids;
}

class RandomValues {
 public:
  explicit RandomValues(char id) : id_(id), name_(types_.NameGet(id, nullptr)) {
    width_ = types_.DiskLenGet(id, nullptr, big, 1, OT_FORMAT_MEMORY);
  }
  std::size_t Width() const { return width_; }

  Bytes Next() {
    Bytes bytes(width_);
    for (auto& byte : bytes) byte = static_cast<unsigned char>(Below(Below(2) ? 256 : 3));
    if (name_.starts_with("OtNull_")) bytes[0] = Below(4) == 0;
    if (IsReal()) Stored(id_, std::to_string(static_cast<int>(Below(2000)) - 1000)).swap(bytes);
    if (name_ == "OtDate" || name_ == "d_Date") {
      bytes = {7, static_cast<unsigned char>(208 + Below(3)), Part(12), Part(28)};
    }
    return bytes;
  }
  /// Of dates, now and then a month.
  Bytes NextOperand() {
    Bytes bytes = Next();
    if ((name_ == "OtDate" || name_ == "d_Date") && Below(3) == 0) bytes[3] = 0xff;
    return bytes;
  }

 private:
  bool IsReal() const {
    return name_.ends_with("float") || name_.ends_with("double") || name_ == "d_Interval";
  }
  unsigned Below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }
  unsigned char Part(unsigned most) { return static_cast<unsigned char>(1 + Below(most)); }

  OtTypeMgr types_;
  char id_;
  std::string name_;
  std::size_t width_ = 0;
  std::mt19937 random_{95};
};

// Whatever satisfies the operator lies between the limits, by the row's own order.
TEST(Estimate, LimitsContainAllThatQualifies) {
  constexpr unsigned short noWildcards = 0x10;
  OtTypeMgr types;
  for (const char id : FixedTypes()) {
    SCOPED_TRACE(types.NameGet(id, nullptr));
    RandomValues values(id);
    int checked = 0;
    const auto compare = [&](Bytes& a, void* b, unsigned short cmpOp) {
      int status = 0;
      return types.Cmp(id, a.size(), a.data(), a.size(), b, cmpOp, 1, big, status);
    };
    for (int round = 0; round < 300; ++round) {
      Bytes operand = values.NextOperand();
      for (const auto& [name, op] : relations) {
        Bounds limits;
        Estimate(id, operand, op, big, nullptr, &limits);
        for (int i = 0; i < 10; ++i) {
          Bytes value = values.Next();
          if (i == 0 && operand.back() != 0xff) value = operand;
          if (!Satisfies(compare(value, operand.data(), 0), op)) continue;
          ++checked;
          if (limits.lowerKey) {
            EXPECT_GE(compare(value, limits.lowerKey, noWildcards), 0)
                << name << ' ' << Hex(operand.data(), operand.size()) << ' '
                << Hex(value.data(), value.size());
          }
          if (limits.upperKey) {
            EXPECT_LE(compare(value, limits.upperKey, noWildcards), 0)
                << name << ' ' << Hex(operand.data(), operand.size()) << ' '
                << Hex(value.data(), value.size());
          }
        }
      }
    }
    EXPECT_GT(checked, 1000);
  }
}

// Keys of any length, in blocks of just that length: what a key lacks counts as zero.
TEST(Estimate, ReadsNoFurtherThanAKey) {
  OtTypeMgr types;
  for (const char id : FixedTypes()) {
    SCOPED_TRACE(types.NameGet(id, nullptr));
    RandomValues values(id);
    for (std::size_t length = 1; length < values.Width(); ++length) {
      const Bytes whole = values.Next();
      Bytes lower(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
      Bounds cut(lower, lower);
      lower.resize(values.Width());
      Bounds complete(lower, lower);
      const Bytes operand = values.Next();
      const Estimate of(id, operand, eq | lt, big, &cut, nullptr);
      const Estimate same(id, operand, eq | lt, big, &complete, nullptr);
      EXPECT_TRUE(of.share == same.share || (std::isnan(of.share) && std::isnan(same.share)));
      EXPECT_EQ(of.operand, operand);
    }
  }
}

TEST(Estimate, WithoutBothKeysOfARangeThereIsNone) {
  const char id = Id("short");
  Bounds half({0, 1}, {0, 9});
  std::free(std::exchange(half.upperKey, nullptr));
  EXPECT_EQ(Estimate(id, {0, 5}, lt, big, &half, nullptr).share, 0.0F);
  EXPECT_EQ(Estimate(Id("OtBoolean"), {1}, lt, big, &half, nullptr).share, 0.0F);
}

}  // namespace
