// Conversion between types through arrays of text.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "ot95/text.h"
#include "ot95/typemgr.h"

namespace {

constexpr char kOtString = 11;
constexpr char kNoType = 100;

class Types : public OtTypeMgr {
 public:
  using OtTypeMgr::ConvertFromOtStringOld;
  using OtTypeMgr::ConvertToOtStringOld;
  using OtTypeMgr::OtTypeMgr;

  char Id(const char* name) {
    char id = 0;
    EXPECT_EQ(Name2OtTypeId(name, id), 0) << name;
    return id;
  }
};

using Data = std::unique_ptr<OtTypeConvertData>;

std::vector<unsigned char> Bytes(std::uint64_t value, std::size_t size) {
  std::vector<unsigned char> bytes(16);
  std::memcpy(bytes.data(), &value, sizeof value);  // Little-endian, as the machines we build for.
  bytes.resize(size);
  return bytes;
}

template <class T>
std::uint64_t Bits(T value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof value);
  return bits;
}

/// A data record over these texts; "\1" stands for a null.
OtTypeConvertData* Texts(OtTypeMgr& types, const std::vector<std::string>& texts) {
  auto* strings = static_cast<OtString*>(types.Create(kOtString, texts.size()));
  for (std::size_t i = 0; i < texts.size(); ++i) {
    strings[i] = texts[i].c_str();
    if (texts[i] == "\1") strings[i].SetNullValue();
  }
  return OtTypeConvertData::Make(kOtString, texts.size(), strings, &types);
}

/// The memory of a value made from a text, without what pads it.
std::uint64_t FromText(Types& types, char id, const char* text, std::size_t size) {
  Data data(Texts(types, {text}));
  void* value = types.ConvertFrom(id, data.get(), 1);
  std::uint64_t bits = 0;
  std::memcpy(&bits, value, size);
  types.Delete(id, value, 1);
  return bits;
}

TEST(Conversion, ScalarsBecomeTheirTextsAndComeBack) {
  const struct {
    const char* type;
    std::size_t size;
    std::uint64_t bits;
    const char* text;
  } rows[] = {{"char", 1, 65, "65"},
              {"char", 1, 0xff, "-1"},
              {"OtByte", 1, 0xff, "-1"},
              {"short", 2, 0x8000, "-32768"},
              {"OtWord", 2, 65535, "-1"},
              {"long", 4, 0x7fffffff, "2147483647"},
              {"OtDWord", 4, 0xffffffff, "-1"},
              {"BlockId", 4, 0x80000000, "-2147483648"},
              {"int", 4, 0xfffffffe, "-2"},
              {"unsigned", 4, 0xffffffff, "-1"},
              {"enum", 4, 3, "3"},
              {"float", 4, Bits(0.1f), "0.100000001490116"},
              {"double", 8, Bits(0.1), "0.1"},
              {"double", 8, Bits(-1e300), "-1e+300"},
              {"OtInt64", 8, 0x8000000000000000, "-9223372036854775808"}};
  Types types;
  for (const auto& row : rows) {
    const char id = types.Id(row.type);
    std::vector<unsigned char> value = Bytes(row.bits, row.size);
    Data data(types.ConvertTo(id, value.data(), 1));
    ASSERT_NE(data, nullptr) << row.type;
    EXPECT_EQ(data->manager, &types);
    EXPECT_STREQ(data->GetString(0)->StrGet(), row.text) << row.type;
    EXPECT_EQ(FromText(types, id, row.text, row.size), row.bits) << row.type << ' ' << row.text;
  }
}

TEST(Conversion, TextsBecomeNumbers) {
  const struct {
    const char* type;
    std::size_t size;
    const char* text;
    std::uint64_t bits;
  } rows[] = {{"long", 4, "0x10", 16},
              {"long", 4, "010", 8},
              {"int", 4, "3000000000", 0x7fffffff},
              {"short", 2, "3000000000", 0xffff},
              {"char", 1, "A", 0},
              {"char", 1, "321", 65},
              {"unsigned", 4, "4294967295", 0x7fffffff},
              {"double", 8, "1.5kg", Bits(1.5)},
              {"float", 4, "0.1", Bits(0.1f)},
              {"OtInt64", 8, "0x1f", 31},
              {"OtInt64", 8, "12abc", ~std::uint64_t{0}},
              {"OtInt64", 8, "", 0},
              {"int", 4, "", 0},
              {"double", 8, "\1", 0},
              {"short", 2, "\1", 0},
              {"OtInt64", 8, "\1", 0},
              {"OtNull_char", 1, "A", 0},
              {"OtNull_ushort", 2, "70000", 4464}};
  Types types;
  for (const auto& row : rows) {
    EXPECT_EQ(FromText(types, types.Id(row.type), row.text, row.size), row.bits)
        << row.type << ' ' << row.text;
  }
  ___OtTypeMgrOptions() |= 1;  // Decimal only.
  EXPECT_EQ(FromText(types, types.Id("long"), "0x10", 4), 0u);
  EXPECT_EQ(FromText(types, types.Id("long"), "010", 4), 10u);
  ___OtTypeMgrOptions() &= ~1L;
}

TEST(Conversion, NullablesWriteInTheirOwnWays) {
  const struct {
    const char* type;
    std::size_t size;
    std::uint64_t bits;
    const char* text;  // Null: the record is null.
    unsigned short firstUnit;
  } rows[] = {{"OtNull_char", 1, 65, "A", 'A'},
              {"OtNull_uchar", 1, 255, "255", '2'},
              {"OtNull_short", 2, 0xffff, "-1", '-'},
              {"OtNull_ushort", 2, 0x416, nullptr, 0x416},
              {"OtNull_int", 4, 0xffffffff, "-1", '-'},
              {"OtNull_unsigned", 4, 0xffffffff, "-1", '-'},
              {"OtNull_long", 4, 0xffffffff, "-1", '-'},
              {"OtNull_ulong", 4, 0xffffffff, "4294967295", '4'},
              {"OtNull_float", 4, Bits(0.5f), "0.5", '0'},
              {"OtNull_double", 8, Bits(0.1), "0.1", '0'},
              {"OtNull_OtInt64", 8, 1ull << 32, "4294967296", '4'}};
  Types types;
  for (const auto& row : rows) {
    const char id = types.Id(row.type);
    std::vector<unsigned char> record = Bytes(row.bits, types.MemLenGet(id, 1));
    Data data(types.ConvertTo(id, record.data(), 1));
    OtString& text = *data->GetString(0);
    EXPECT_EQ(text[0].GetValue(), row.firstUnit) << row.type;
    if (row.text) {
      EXPECT_STREQ(text.StrGet(), row.text) << row.type;
    }

    record[row.size] = 1;  // The flag behind the value.
    Data ofNull(types.ConvertTo(id, record.data(), 1));
    EXPECT_TRUE(ofNull->GetString(0)->IsNullValue()) << row.type;
    void* back = types.ConvertFrom(id, ofNull.get(), 1);
    EXPECT_TRUE(types.IsNullValue(id, back)) << row.type;
    types.Delete(id, back, 1);

    Data number(Texts(types, {"7"}));
    back = types.ConvertFrom(id, number.get(), 1);
    EXPECT_FALSE(types.IsNullValue(id, back)) << row.type;
    types.Delete(id, back, 1);
  }
}

TEST(Conversion, CountsThatDisagreeReadAsMissing) {
  Types types;
  const char kInt = types.Id("int");
  Data one(Texts(types, {"5"}));
  auto* values = static_cast<int*>(types.ConvertFrom(kInt, one.get(), 3));
  EXPECT_EQ(std::vector<int>(values, values + 3), (std::vector<int>{5, 0, 0}));
  types.Delete(kInt, values, 3);
  values = static_cast<int*>(types.ConvertFrom(kInt, nullptr, 2));
  EXPECT_EQ(std::vector<int>(values, values + 2), (std::vector<int>{0, 0}));
  types.Delete(kInt, values, 2);
  int other = 9;
  Data ofInts(OtTypeConvertData::Make(kInt, 1, &other, nullptr));
  void* value = CurrentFactory[int{kInt}]->ConvertFrom(ofInts.get(), 1);
  EXPECT_EQ(*static_cast<int*>(value), 0) << "data of another type has no strings";
  types.Delete(kInt, value, 1);
  Data empty(types.ConvertTo(kInt, nullptr, 0));
  EXPECT_EQ(empty->count, 0u);
}

TEST(Conversion, RecordsGiveTheirStringsUntilDestroyed) {
  Types types;
  OtTypeConvertData* data = Texts(types, {"a", "b"});
  auto* strings = static_cast<OtString*>(data->data);
  EXPECT_EQ(data->GetString(1), strings + 1);
  EXPECT_EQ(data->GetString(2), nullptr);
  EXPECT_EQ(reinterpret_cast<char*>(data->GetString(-1)),
            reinterpret_cast<char*>(strings) - sizeof(OtString));
  data->type = 39;
  EXPECT_EQ(data->GetString(0), nullptr);
  data->type = kOtString;
  data->~OtTypeConvertData();
  EXPECT_EQ(data->GetString(0), nullptr);
  EXPECT_EQ(data->count, 0u);
  EXPECT_EQ(data->data, nullptr);
  EXPECT_EQ(data->type, kNoType);
  ::operator delete(data);
}

TEST(Conversion, DefaultValues) {
  Types types;
  for (const char* name : {"char", "OtByte", "short", "OtWord", "int", "unsigned", "enum", "long",
                           "OtDWord", "BlockId", "float", "double", "OtInt64"}) {
    const char id = types.Id(name);
    for (const int nullable : {0, 1}) {
      void* values = types.DefaultValue(id, 3, nullable);
      const std::vector<unsigned char> zeros(types.MemLenGet(id, 3));
      EXPECT_EQ(std::memcmp(values, zeros.data(), zeros.size()), 0) << name;
      types.Delete(id, values, 3);
    }
  }
  const struct {
    const char* type;
    bool nullWhenAsked;
    bool nullOtherwise;
  } rows[] = {{"OtString", true, false},
              {"OtBoolean", true, false},
              {"OtNull_int", true, true},
              {"OtNull_double", true, true},
              {"OtNull_OtInt64", true, true}};
  for (const auto& row : rows) {
    const char id = types.Id(row.type);
    for (const bool nullable : {true, false}) {
      void* values = types.DefaultValue(id, 2, nullable);
      const bool expected = nullable ? row.nullWhenAsked : row.nullOtherwise;
      for (const unsigned long i : {0ul, 1ul}) {
        void* value = types.GetArrayElement(id, values, i, 2);
        EXPECT_EQ(types.IsNullValue(id, value) != 0, expected) << row.type << nullable;
      }
      types.Delete(id, values, 2);
    }
  }
}

TEST(Conversion, SetNullValue) {
  Types types;
  std::int32_t number = 5;
  EXPECT_EQ(types.SetNullValue(types.Id("long"), &number), 0);
  EXPECT_EQ(number, 0);
  OtString text("a");
  EXPECT_EQ(types.SetNullValue(kOtString, &text), 0);
  EXPECT_TRUE(text.IsNullValue());
  Types old(3);
  text = "a";
  EXPECT_EQ(old.SetNullValue(kOtString, &text), 0);
  EXPECT_FALSE(text.IsNullValue()) << "an old table knows no null string";
  EXPECT_TRUE(text.IsEmpty());
  EXPECT_EQ(types.SetNullValue(41, &number), 0);
}

TEST(Conversion, SetNullValueWithoutMeansOfConversion) {
  Types types;
  const char kLong = types.Id("long");
  OtTypeDescriptor& row = *CurrentFactory[int{kLong}];
  const OtTypeDescriptor before = row;
  std::int32_t number = 5;
  row.ConvertFrom = nullptr;
  EXPECT_EQ(types.SetNullValue(kLong, &number), 0);
  EXPECT_EQ(number, 5) << "nothing to assign";
  EXPECT_EQ(types.ConvertFrom(kLong, nullptr, 1), nullptr);
  row.Assign = nullptr;
  EXPECT_EQ(types.SetNullValue(kLong, &number), 0);
  EXPECT_EQ(number, 0) << "scanned from the zero text";
  row.ConvertTo = nullptr;
  EXPECT_EQ(types.ConvertTo(kLong, &number, 1), nullptr);
  EXPECT_EQ(types.ConvertToOtStringOld(&number, kLong, 1), nullptr);
  row = before;
}

TEST(Conversion, ListsInOneTextAndBack) {
  Types types;
  const char kInt = types.Id("int");
  int numbers[] = {1, -20, 300};
  OtString* list = types.ConvertToOtStringOld(numbers, kInt, 3);
  ASSERT_NE(list, nullptr);
  const std::string text = list->StrGet();
  ASSERT_EQ(text.size(), 10u);
  EXPECT_EQ(text, "1" + text.substr(9) + "-20" + text.substr(9) + "300" + text.substr(9));
  EXPECT_EQ(text.find_first_of("0123456789-", 9), std::string::npos);
  auto* back = static_cast<int*>(types.ConvertFromOtStringOld(list, kInt, 3));
  EXPECT_EQ(std::vector<int>(back, back + 3), (std::vector<int>{1, -20, 300}));
  EXPECT_TRUE(list->IsEmpty()) << "the text is used up";
  types.Delete(kInt, back, 3);
  types.Delete(kOtString, list, 1);

  list = types.ConvertToOtStringOld(numbers, kInt, 0);
  EXPECT_TRUE(list->IsEmpty());
  types.Delete(kOtString, list, 1);
}

TEST(Conversion, ListsFallBackOnAComma) {
  Types types;
  std::string all;
  for (int code = 1; code < 255; ++code) all += static_cast<char>(code);
  auto* strings = static_cast<OtString*>(types.Create(kOtString, 2));
  strings[0] = strings[1] = all.c_str();
  OtString* list = types.ConvertToOtStringOld(strings, kOtString, 2);
  EXPECT_EQ(std::string(list->StrGet()), all + "," + all + ",");
  types.Delete(kOtString, list, 1);
  types.Delete(kOtString, strings, 2);
}

TEST(Conversion, ListTexts) {
  const struct {
    std::string text;
    std::vector<std::string> parts;
  } rows[] = {{"", {""}},
              {",", {"", ""}},
              {"a;", {"a", ""}},
              {"a;b;;c;", {"a", "b", "", "c", ""}},
              {std::string(40000, 'x') + ";y;", {std::string(40000, 'x'), "y", ""}}};
  Types types;
  for (const auto& row : rows) {
    OtString text(row.text.c_str());
    auto* strings =
        static_cast<OtString*>(types.ConvertFromOtStringOld(&text, kOtString, row.parts.size()));
    for (std::size_t i = 0; i < row.parts.size(); ++i) {
      EXPECT_EQ(strings[i].StrGet(), row.parts[i]) << row.text.substr(0, 20) << ' ' << i;
    }
    EXPECT_TRUE(text.IsEmpty());
    types.Delete(kOtString, strings, row.parts.size());
  }
}

}  // namespace
