// The seal: values, stored form, text.

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "bytes_testing.h"
#include "ot95/identity.h"
#include "ot95/int64.h"
#include "ot95/text.h"
#include "ot95/typemgr.h"

namespace {

constexpr char kSeal = 39;

OtSeal Seal(unsigned long long number) {
  return {static_cast<std::uint16_t>(number >> 32), static_cast<std::uint16_t>(number >> 16),
          static_cast<std::uint16_t>(number)};
}

TEST(Seal, TakesAndGivesNumbers) {
  OtSeal seal;
  seal.ConvertFrom(OtObjId{7, 0x56789abc, 0x1234});
  EXPECT_EQ(seal.sealHigh, 0x1234);
  EXPECT_EQ(seal.sealMiddle, 0x5678);
  EXPECT_EQ(seal.sealLow, 0x9abc);
  seal.ConvertFrom(OtInt64(2UL, 0x00010000L));  // Bit 48 is lost.
  OtInt64 number(-1);
  seal.ConvertTo(number);
  EXPECT_EQ(number, OtInt64(2));
  Seal(0xffffffffffff).ConvertTo(number);
  EXPECT_EQ(number.high, 0xffff);
  EXPECT_EQ(number.low, 0xffffffffU);
}

TEST(Seal, AnswersTheDifferenceOfWords) {
  const struct {
    unsigned long long a, b;
    int difference;
  } rows[] = {{0x000100000000, 0x0000ffffffff, 1},
              {0, 0xffff, -65535},
              {0xffff00000000, 0, 65535},
              {0x000100020003, 0x000100020003, 0},
              {0x00010000, 0x00030000, -2}};
  for (const auto& row : rows) {
    EXPECT_EQ(Seal(row.a) != Seal(row.b), row.difference) << row.a;
    EXPECT_EQ(Seal(row.a) == Seal(row.b), row.difference == 0) << row.a;
  }
}

TEST(Seal, IsStoredMostSignificantByteFirst) {
  OtTypeMgr types;
  OtSeal seals[2] = {Seal(0x123456789abc), Seal(1)};
  for (const unsigned char format : {OT_FORMAT_NATIVE, OT_FORMAT_BIG_ENDIAN}) {
    const ExactBlock disk(12);
    EXPECT_EQ(types.Store(kSeal, disk.data(), seals, format, 2), 12U);
    EXPECT_EQ(Hex(disk.data(), 12), "123456789abc000000000001");
    OtSeal loaded[2];
    EXPECT_EQ(types.Load(kSeal, loaded, disk.data(), format, 2), 12U);
    EXPECT_EQ(loaded[0] == seals[0] && loaded[1] == seals[1], true);
  }
  EXPECT_EQ(types.DiskLenGet(kSeal, nullptr, 1, 3, 8), 18U);
}

TEST(Seal, ComparesBytesWhateverTheLengthsSay) {
  OtTypeMgr types;
  const ExactBlock a(Unhex("000000000001 000000000102"));
  const ExactBlock b(Unhex("000000000001 000000000303"));
  int status = -1;
  EXPECT_EQ(types.Cmp(kSeal, 6, a.data(), 6, b.data(), 0, 2, 1, status), -2);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(types.Cmp(kSeal, 6, a.data(), 6, b.data(), 0, 1, 1, status), 0);
  EXPECT_EQ(types.Cmp(kSeal, 0, nullptr, 0, nullptr, 0, 0, 2, status), 0);
  OtSeal seals[2] = {Seal(5), Seal(5)}, others[2] = {Seal(5), Seal(4)};
  EXPECT_EQ(types.Cmp(kSeal, seals, others, 0, 2, 8), 1);
}

TEST(Seal, HashesWords) {
  OtTypeMgr types;
  int status = -1;
  OtSeal seals[2] = {Seal(0x000100020004), Seal(0x000800000000)};
  const auto multiplied = [](std::uint32_t folded) {
    return static_cast<std::uint32_t>(folded * 1103515245U);
  };
  EXPECT_EQ(types.Hash(kSeal, 0, seals, 2, 8, status), multiplied(15));
  EXPECT_EQ(status, 0);
  const ExactBlock disk(12);
  types.Store(kSeal, disk.data(), seals, 2, 2);
  EXPECT_EQ(types.Hash(kSeal, 0, disk.data(), 2, 2, status), multiplied(15));
  EXPECT_EQ(types.Hash(kSeal, 6, disk.data(), 2, 2, status), multiplied(7));
  EXPECT_EQ(status, OT_ERR_END_OF_DATA);
  // Form 1 reads the big-endian record in the machine's order.
  EXPECT_EQ(types.Hash(kSeal, 0, disk.data(), 1, 1, status), multiplied(0x0700));
  EXPECT_EQ(types.Hash(kSeal, 0, nullptr, 0, 8, status), 0U);
  const ExactBlock partial(disk.data(), 8);
  EXPECT_EQ(types.Hash(kSeal, 8, partial.data(), 2, 2, status), multiplied(7 ^ 8));
}

TEST(Seal, HasTheTextOfItsNumber) {
  OtTypeMgr types;
  OtSeal seal = Seal(4711);
  OtString text("=");
  EXPECT_STREQ(types.PrintToOtString(kSeal, text, &seal, nullptr, 1).StrGet(), "=4711");
  OtString hexadecimal("0x1ffffffffffff");
  types.ScanFromOtString(kSeal, &seal, hexadecimal, nullptr, 1);
  EXPECT_EQ(seal == Seal(0xffffffffffff), 1);
  seal.ScanFromOtString(OtString());
  EXPECT_EQ(seal == OtSeal(), 1);
  EXPECT_EQ(types.IsNullValue(kSeal, &seal), 0);
}

TEST(Seal, ConvertsUnderItsOwnTag) {
  OtTypeMgr types;
  OtSeal seals[3] = {Seal(1), Seal(2), Seal(3)};
  OtTypeConvertData* data = types.ConvertTo(kSeal, seals, 3);
  EXPECT_EQ(data->type, kSeal);
  EXPECT_EQ(data->GetString(0), nullptr);  // Nobody reads strings of that tag;
  data->type = 11;
  auto* back = static_cast<OtSeal*>(types.ConvertFrom(kSeal, data, 3));
  EXPECT_EQ(back[2] == seals[2], 1);
  types.Delete(kSeal, back, 3);
  data->type = kSeal;
  delete data;  // but they are freed as the strings that they are.
  void* value = types.DefaultValue(kSeal, 2, 1);
  EXPECT_EQ(*static_cast<OtSeal*>(value) == OtSeal(), 1);
  types.Delete(kSeal, value, 2);
}

TEST(Seal, EstimatesOnItsLine) {
  const struct {
    const char* name;
    unsigned long long lower, upper, value;
    unsigned short op;
    float share;
  } rows[] = {
      {"less", 0, 99, 49, OT_OP_LESS, 0.49F},
      {"equal", 0, 99, 49, OT_OP_EQUAL, 0.01F},
      {"greater, below the range", 10, 19, 5, OT_OP_GREATER, 1.0F},
      {"equal, outside", 10, 19, 25, OT_OP_EQUAL, 0.0F},
      {"less, at the lowest", 10, 19, 10, OT_OP_LESS, 0.1F},
      {"less, below", 10, 19, 5, OT_OP_LESS, 0.0F},
      {"greater, at the highest", 10, 19, 19, OT_OP_GREATER, 0.1F},
  };
  OtTypeMgr types;
  unsigned char lower[6], upper[6], value[6];
  const auto store = [&types](unsigned char* disk, unsigned long long number) {
    OtSeal seal = Seal(number);
    types.Store(kSeal, disk, &seal, 1, 1);
  };
  for (const auto& row : rows) {
    store(lower, row.lower);
    store(upper, row.upper);
    store(value, row.value);
    OtIdxBounds bounds{lower, upper, 6, 6};
    unsigned short op = row.op;
    EXPECT_FLOAT_EQ(types.EvalAndBound(kSeal, &bounds, op, value, 1, 1, nullptr, nullptr),
                    row.share)
        << row.name;
    EXPECT_EQ(types.EvalAndBound(kSeal, nullptr, op, value, 1, 1, nullptr, nullptr), 0.0F);
  }
  OtIdxBounds limits;
  unsigned short op = OT_OP_GREATER;
  types.EvalAndBound(kSeal, nullptr, op, value, 1, 1, &limits, nullptr);
  EXPECT_EQ(Hex(limits.lowerKey, limits.lowerKeyLength), "000000000013");
  EXPECT_EQ(limits.upperKey, nullptr);
  std::free(limits.lowerKey);
}

}  // namespace
