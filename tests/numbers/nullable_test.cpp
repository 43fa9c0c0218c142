// The eleven nullable scalars.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "bytes_testing.h"
#include "ot95/int64.h"
#include "ot95/nullable.h"
#include "ot95/text.h"
#include "ot95/typemgr.h"

namespace {

enum : char {
  kChar = 28,
  kUchar,
  kShort,
  kUshort,
  kInt,
  kUnsigned,
  kLong,
  kUlong,
  kFloat,
  kDouble,
  kInt64
};

template <class T>
struct Record {
  T value;
  char isNull;
};

const OtTypeDescriptor& Row(char id) {
  return *CurrentFactory[static_cast<int>(id)];
}

TEST(Nullable, IsNullFromTheStart) {
  for (char id = kChar; id <= kInt64; ++id) {
    const OtTypeDescriptor& row = Row(id);
    SCOPED_TRACE(row.name);
    for (const unsigned long count : {0UL, 1UL, 3UL}) {
      for (void* records :
           {row.Create(count), row.DefaultValue(count, 0), row.DefaultValue(count, 1)}) {
        ASSERT_NE(records, nullptr);
        for (unsigned long i = 0; i < std::max(count, 1UL); ++i) {
          auto* record = static_cast<char*>(records) + i * row.memoryLength;
          EXPECT_EQ(row.IsNull(record), 1);
          std::vector<unsigned char> stored(16);
          const unsigned long bytes = row.Store(stored.data(), record, 1, 1);
          EXPECT_EQ(Hex(stored.data(), bytes), "01" + std::string(2 * (bytes - 1), '0'));
        }
        EXPECT_EQ(row.Delete(records, count), nullptr);
      }
    }
    EXPECT_EQ(row.Delete(nullptr, 5), nullptr);
    EXPECT_EQ(row.Create(std::numeric_limits<unsigned long>::max()), nullptr);
  }
}

template <class T>
void StoresPinnedBytes(char id, T value, const char* native, const char* bigEndian,
                       const char* memory) {
  const OtTypeDescriptor& row = Row(id);
  SCOPED_TRACE(row.name);
  std::vector<unsigned char> record(row.memoryLength);
  std::memcpy(record.data(), &value, sizeof value);
  const struct {
    int format;
    const char* bytes;
  } cases[] = {{1, native},    {2, bigEndian},    {8, memory},
               {0x41, native}, {0x82, bigEndian}, {15, memory}};
  for (const auto& c : cases) {
    const auto format = static_cast<unsigned char>(c.format);
    std::vector<unsigned char> disk(32, 0xcc);
    const unsigned long bytes = row.Store(disk.data(), record.data(), format, 1);
    EXPECT_EQ(Hex(disk.data(), bytes), c.bytes) << c.format;
    for (const OtByte other : {OtByte{1}, OtByte{2}, OtByte{8}}) {
      EXPECT_EQ(row.SizeGet(nullptr, 8, other, 4), 4 * bytes);
      EXPECT_EQ(row.SizeGetFromMemFile(nullptr, other, 4), 4 * bytes);
    }
    EXPECT_EQ(row.NullSizeGet(4), 4 * bytes);
    std::vector<unsigned char> loaded(row.memoryLength, 0xcc);
    EXPECT_EQ(row.Load(loaded.data(), disk.data(), format, 1), bytes);
    EXPECT_EQ(Hex(loaded.data(), sizeof value), Hex(&value, sizeof value)) << c.format;
    EXPECT_EQ(row.IsNull(loaded.data()), 0);
  }
}

TEST(Nullable, StoresPinnedBytes) {
  StoresPinnedBytes<signed char>(kChar, -2, "00fe", "00fe", "fe00");
  StoresPinnedBytes<unsigned char>(kUchar, 255, "00ff", "00ff", "ff00");
  StoresPinnedBytes<std::int16_t>(kShort, 5, "000500", "000005", "050000");
  StoresPinnedBytes<std::uint16_t>(kUshort, 0xfedc, "00dcfe", "00fedc", "dcfe00");
  StoresPinnedBytes<int>(kInt, -2, "00feffffff", "00fffffffe", "feffffff00");
  StoresPinnedBytes<unsigned>(kUnsigned, 0xffffffff, "00ffffffff", "00ffffffff", "ffffffff00");
  StoresPinnedBytes<OtLong>(kLong, 1, "0001000000", "0000000001", "0100000000");
  StoresPinnedBytes<OtDWord>(kUlong, 0xfedcba98, "0098badcfe", "00fedcba98", "98badcfe00");
  StoresPinnedBytes<float>(kFloat, 1.5F, "000000c03f", "003fc00000", "0000c03f00");
  StoresPinnedBytes<double>(kDouble, -2.5, "0000000000000004c0", "00c004000000000000",
                            "00000000000004c000");
  StoresPinnedBytes<OtInt64>(kInt64, OtInt64(2UL, 1L), "000200000001000000", "000000000200000001",
                             "020000000100000000");
}

TEST(Nullable, TakesOnlyTheFlagOneForNull) {
  const OtTypeDescriptor& row = Row(kShort);
  const struct {
    const char* stored;
    int isNull;
    int value;
  } cases[] = {{"000005", 0, 5}, {"010005", 1, 0}, {"020005", 0, 5}, {"ff0005", 0, 5}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.stored);
    Record<std::int16_t> record{9, 7};
    ExactBlock stored(Unhex(c.stored));
    EXPECT_EQ(row.Load(&record, stored.data(), 2, 1), 3U);
    EXPECT_EQ(row.IsNull(&record), c.isNull);
    EXPECT_EQ(record.value, c.value);
  }
  // Any flag but 0 is a null in memory, is told as it is, and is stored as 1, with its value.
  Record<std::int16_t> odd{5, static_cast<char>(-3)};
  unsigned char disk[3];
  EXPECT_EQ(row.IsNull(&odd), -3);
  row.Store(disk, &odd, 2, 1);
  EXPECT_EQ(Hex(disk, 3), "010005");
  EXPECT_EQ(row.SetNull(&odd), 0);
  EXPECT_EQ(odd.value, 0);
  EXPECT_EQ(odd.isNull, 1);
}

TEST(Nullable, ArraysMoveThroughEveryForm) {
  Record<std::int16_t> records[3] = {{5, 0}, {0, 1}, {-7, 0}};
  Record<std::int16_t> back[3] = {};
  unsigned char disk[9];
  OtTypeMgr types;
  EXPECT_EQ(types.Translate(kShort, disk, 2, 9, records, 8, 12, 3), 9U);
  EXPECT_EQ(Hex(disk, 9), "00000501000000fff9");
  EXPECT_EQ(types.Translate(kShort, back, 8, 12, disk, 2, 9, 3), 9U);
  EXPECT_EQ(types.Cmp(kShort, records, back, 0, 3, 8), 0);
  EXPECT_EQ(types.Translate(kShort, back, 8, 12, records, 8, 12, 3), 12U);
  Row(kShort).Assign(back, records + 1, 3, 1);
  EXPECT_TRUE(back[0].isNull && back[1].isNull && back[2].isNull);
}

template <class T>
long CompareIn(char id, int format, T left, bool leftNull, T right, bool rightNull) {
  const OtTypeDescriptor& row = Row(id);
  std::vector<unsigned char> sides[2];
  for (int side = 0; side < 2; ++side) {
    std::vector<unsigned char> record(row.memoryLength);
    const T value = side == 0 ? left : right;
    std::memcpy(record.data(), &value, sizeof value);
    record[sizeof value] = side == 0 ? leftNull : rightNull;
    sides[side] = record;
    if (format != 8) {
      sides[side].resize(sizeof value + 1);
      row.Store(sides[side].data(), record.data(), static_cast<unsigned char>(format), 1);
    }
  }
  ExactBlock one(sides[0]);
  ExactBlock two(sides[1]);
  int status = 99;
  const long result = row.Compare(static_cast<unsigned char>(format), one.size(), one.data(),
                                  two.size(), two.data(), 0, 1, status);
  EXPECT_EQ(status, 0);
  return result;
}

template <class T>
void OrdersAsValuesWithNullFirst(char id, T low, T high) {
  for (const int format : {8, 1, 2}) {
    SCOPED_TRACE(testing::Message() << Row(id).name << ", form " << format);
    EXPECT_EQ(CompareIn<T>(id, format, low, false, high, false), -1);
    EXPECT_EQ(CompareIn<T>(id, format, high, false, low, false), 1);
    EXPECT_EQ(CompareIn<T>(id, format, high, false, high, false), 0);
    EXPECT_EQ(CompareIn<T>(id, format, T(0), true, low, false), -1);
    EXPECT_EQ(CompareIn<T>(id, format, low, false, T(0), true), 1);
    EXPECT_EQ(CompareIn<T>(id, format, low, true, high, true), 0);
  }
}

TEST(Nullable, OrdersAsValuesWithNullFirst) {
  OrdersAsValuesWithNullFirst<signed char>(kChar, -128, 1);
  OrdersAsValuesWithNullFirst<unsigned char>(kUchar, 1, 128);
  OrdersAsValuesWithNullFirst<std::int16_t>(kShort, -32768, 256);
  OrdersAsValuesWithNullFirst<std::uint16_t>(kUshort, 1, 0xff00);
  OrdersAsValuesWithNullFirst<int>(kInt, std::numeric_limits<int>::min(), 65536);
  OrdersAsValuesWithNullFirst<unsigned>(kUnsigned, 1, 0xff000000);
  OrdersAsValuesWithNullFirst<OtLong>(kLong, -1, 256);
  OrdersAsValuesWithNullFirst<OtDWord>(kUlong, 255, 0x80000000);
  OrdersAsValuesWithNullFirst<float>(kFloat, -1.0F, 0.5F);
  OrdersAsValuesWithNullFirst<double>(kDouble, -1.0, 0.5);
  OrdersAsValuesWithNullFirst<OtInt64>(kInt64, OtInt64(5UL, -1L), OtInt64(0UL, 1L));
  for (const int format : {8, 1, 2}) {
    const float nan = std::nanf("");
    EXPECT_EQ(CompareIn<float>(kFloat, format, nan, false, 1.0F, false), 1);
    EXPECT_EQ(CompareIn<float>(kFloat, format, 1.0F, false, nan, false), 1);
    EXPECT_EQ(CompareIn<double>(kDouble, format, std::nan(""), false, 1.0, false), 1);
    EXPECT_EQ(CompareIn<double>(kDouble, format, -0.0, false, 0.0, false), 0);
  }
}

// The public record and the row, which works on it, say the same of every value.
template <class Record>
void RecordAgreesWithItsRow() {
  const char id = OtTypeOf<Record>::id;
  SCOPED_TRACE(Row(id).name);
  using Value = typename Record::ValueType;
  const Record records[] = {Record(), Value(0), Value(5), static_cast<Value>(-1), Value(5)};
  const OtTypeMgr types;
  for (const Record& a : records) {
    EXPECT_EQ(types.IsNullValue(id, &a), a.IsNull());
    for (const Record& b : records) {
      const long order = types.Cmp(&a, &b, 0);
      EXPECT_EQ(a == b, order == 0);
      EXPECT_EQ(a < b, order < 0);
      EXPECT_EQ(a >= b, order >= 0);
    }
  }
  Record record = Value(5);
  EXPECT_EQ(Row(id).SetNull(&record), 0);
  EXPECT_TRUE(record.IsNull() && record.Value() == Value(0) &&
              record.ValueOr(Value(7)) == Value(7));
}

TEST(Nullable, RecordsAgreeWithTheirRows) {
  RecordAgreesWithItsRow<OtNull_char>();
  RecordAgreesWithItsRow<OtNull_uchar>();
  RecordAgreesWithItsRow<OtNull_short>();
  RecordAgreesWithItsRow<OtNull_ushort>();
  RecordAgreesWithItsRow<OtNull_int>();
  RecordAgreesWithItsRow<OtNull_unsigned>();
  RecordAgreesWithItsRow<OtNull_long>();
  RecordAgreesWithItsRow<OtNull_ulong>();
  RecordAgreesWithItsRow<OtNull_float>();
  RecordAgreesWithItsRow<OtNull_double>();
  RecordAgreesWithItsRow<OtNull_OtInt64>();
}

TEST(Nullable, ComparesNothingBehindTheLength) {
  const struct {
    const char* one;
    const char* two;
    unsigned long count;
    long result;
    int status;
  } cases[] = {
      {"000005", "000005000006", 2, 0, OT_ERR_END_OF_DATA},
      {"000005000007", "000005000006", 2, 1, 0},
      {"00", "000005", 1, -1, 0},  // The missing bytes of the value read as 0.
      {"0000050000", "000005000000", 2, 0, 0},
      {"000005", "000005", 0, 0, 0},
  };
  OtTypeMgr types;
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.one << " " << c.two);
    ExactBlock one(Unhex(c.one));
    ExactBlock two(Unhex(c.two));
    int status = 99;
    EXPECT_EQ(
        types.Cmp(kShort, one.size(), one.data(), two.size(), two.data(), 0, c.count, 2, status),
        c.result);
    EXPECT_EQ(status, c.status);
  }
}

// A value of each type from a text, and the text of that value.
TEST(Nullable, PrintsAndScans) {
  OtTypeMgr types;
  const struct {
    char id;
    const char* text;
    const char* printed;
  } cases[] = {{kChar, "A", "A"},
               {kShort, "-7", "-7"},
               {kUshort, "65535", "65535"},
               {kInt, "7", "7"},
               {kUnsigned, "4294967295", "4294967295"},
               {kLong, "-2147483648", "-2147483648"},
               {kUlong, "99999999999", "4294967295"},
               {kFloat, "0.5", "0.500000"},
               {kDouble, "-2.25", "-2.250000"}};
  for (const auto& c : cases) {
    const OtTypeDescriptor& row = Row(c.id);
    SCOPED_TRACE(row.name);
    void* record = row.Create(1);
    OtString printed("before");
    EXPECT_STREQ(types.PrintToOtString(c.id, printed, record, nullptr, 1).StrGet(), "{NULL}");
    OtString text(c.text);
    EXPECT_EQ(types.ScanFromOtString(c.id, record, text, nullptr, 1), record);
    EXPECT_EQ(row.IsNull(record), 0);
    EXPECT_STREQ(types.PrintToOtString(c.id, printed, record, nullptr, 1).StrGet(), c.printed);
    for (const char* null : {"", "{NULL}", "{NULL}x"}) {
      OtString nullText(null);
      types.ScanFromOtString(c.id, record, text, nullptr, 1);
      types.ScanFromOtString(c.id, record, nullText, nullptr, 1);
      EXPECT_EQ(row.IsNull(record), 1) << null;
    }
    EXPECT_EQ(types.ScanFromOtString(c.id, nullptr, text, nullptr, 1), nullptr);
    row.Delete(record, 1);
  }
}

TEST(Nullable, ScanKeepsWhatDoesNotMatch) {
  OtTypeMgr types;
  Record<int> number{5, 0};
  OtString word("abc");
  types.ScanFromOtString(kInt, &number, word, nullptr, 1);
  EXPECT_EQ(number.value, 5);
  EXPECT_EQ(number.isNull, 0);
  // The wide integer alone stays null when a value is scanned.
  Record<OtInt64> wide{OtInt64(0), 1};
  OtString seven("7");
  types.ScanFromOtString(kInt64, &wide, seven, nullptr, 1);
  EXPECT_TRUE(wide.value == OtInt64(7));
  EXPECT_EQ(wide.isNull, 1);
}

TEST(Nullable, FollowsTheNullPrintString) {
  OtTypeMgr types;
  const OtString before = OtTypeMgr::GetNullPrintString();
  OtTypeMgr::SetNullPrintString("n/a");
  Record<int> number{5, 1};
  OtString printed;
  EXPECT_STREQ(types.PrintToOtString(kInt, printed, &number, nullptr, 1).StrGet(), "n/a");
  number = {5, 0};
  OtString text("n/a!");
  types.ScanFromOtString(kInt, &number, text, nullptr, 1);
  EXPECT_EQ(number.isNull, 1);
  // An empty one begins every text.
  OtTypeMgr::SetNullPrintString("");
  number = {5, 0};
  OtString seven("7");
  types.ScanFromOtString(kInt, &number, seven, nullptr, 1);
  EXPECT_EQ(number.isNull, 1);
  OtTypeMgr::SetNullPrintString(before);
}

}  // namespace
