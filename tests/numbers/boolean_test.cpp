// The boolean with its null.

#include "ot95/boolean.h"

#include <gtest/gtest.h>

#include <string>

#include "ot95/text.h"
#include "ot95/typemgr.h"

namespace {

constexpr char kId = 27;
constexpr unsigned char kNull = 255;

OtBoolean Byte(int value) {
  OtBoolean boolean(0);
  boolean.value = static_cast<unsigned char>(value);
  return boolean;
}

TEST(Boolean, TakesAnyNumberAsATruth) {
  EXPECT_EQ(OtBoolean(0).value, 0);
  EXPECT_EQ(OtBoolean(-1).value, 1);
  EXPECT_EQ(OtBoolean(255).value, 1);
  EXPECT_FALSE(OtBoolean(255).IsNullValue());
  EXPECT_TRUE(OtBoolean(1) == 5L);
  OtBoolean value(1);
  EXPECT_EQ(value.SetNullValue(), 0);
  EXPECT_TRUE(value.IsNullValue());
  EXPECT_FALSE(value == 1L);
}

TEST(Boolean, Orders) {
  const struct {
    const char* name;
    int a, b;
    bool equal, greater, less;
    long compared;
  } rows[] = {
      {"nulls", 255, 255, true, false, false, 0},
      {"null and false", 255, 0, false, false, true, -1},
      {"true and null", 1, 255, false, true, false, 1},
      {"true and false", 1, 0, false, true, false, 1},
      {"false and true", 0, 1, false, false, true, -1},
      {"a high byte is negative", 128, 0, false, false, true, -1},
      {"null below a high byte", 255, 128, false, false, true, -1},
      {"two is above one", 2, 1, true, true, false, 1},
      {"but one isn't below two", 1, 2, true, false, false, 0},
  };
  OtTypeMgr types;
  for (const auto& row : rows) {
    OtBoolean a = Byte(row.a);
    OtBoolean b = Byte(row.b);
    EXPECT_EQ(a == b, row.equal) << row.name;
    EXPECT_EQ(a != b, !row.equal) << row.name;
    EXPECT_EQ(a > b, row.greater) << row.name;
    EXPECT_EQ(a < b, row.less) << row.name;
    for (const unsigned char format : {OT_FORMAT_MEMORY, OT_FORMAT_NATIVE, OT_FORMAT_BIG_ENDIAN}) {
      EXPECT_EQ(types.Cmp(kId, &a, &b, 0, 1, format), row.compared) << row.name;
    }
  }
}

TEST(Boolean, PrintsWithoutAFormat) {
  OtTypeMgr types;
  for (const auto& [value, text] :
       {std::pair(0, "FALSE"), {1, "TRUE"}, {2, "FALSE"}, {kNull, "{NULL}"}}) {
    OtString target("abc");
    OtBoolean boolean = Byte(value);
    EXPECT_STREQ(types.PrintToOtString(kId, target, &boolean, "%d %s", 1).StrGet(), text);
  }
}

TEST(Boolean, Scans) {
  const struct {
    const char* text;
    int value;
  } rows[] = {{"T", 1},        {"t", 1},         {"TRUE", 1}, {"true", 1}, {"1", 1},
              {"True", 0},     {"yes", 0},       {"", 0},     {"1 ", 0},   {"FALSE", 0},
              {"{NULL}", 255}, {"{NULL}x", 255}, {"{NUL", 0}, {"TRUEX", 0}};
  OtTypeMgr types;
  for (const auto& row : rows) {
    for (const bool wide : {false, true}) {
      OtString text(row.text);
      if (wide) text.MapToCodeSet(0xfd);
      OtBoolean value(row.value != 1);
      EXPECT_EQ(types.ScanFromOtString(kId, &value, text, nullptr, 1), &value);
      EXPECT_EQ(value.value, row.value) << row.text << (wide ? " wide" : "");
    }
    OtString text(row.text);
    EXPECT_EQ(types.ScanFromOtString(kId, nullptr, text, nullptr, 1), nullptr);
  }
}

TEST(Boolean, FollowsTheNullText) {
  const OtString before = OtTypeMgr::GetNullPrintString();
  OtTypeMgr types;
  OtString text("-");
  OtString target;
  OtBoolean value(1);
  OtTypeMgr::SetNullPrintString(text);
  types.ScanFromOtString(kId, &value, text, nullptr, 1);
  EXPECT_TRUE(value.IsNullValue());
  EXPECT_STREQ(types.PrintToOtString(kId, target, &value, nullptr, 1).StrGet(), "-");
  OtTypeMgr::SetNullPrintString(OtString(""));  // Begins every text.
  OtString truth("TRUE");
  value = 1;
  types.ScanFromOtString(kId, &value, truth, nullptr, 1);
  EXPECT_TRUE(value.IsNullValue());
  OtTypeMgr::SetNullPrintString(before);
}

TEST(Boolean, Converts) {
  const struct {
    int value;
    const char* text;
    int back;
  } rows[] = {{0, "0", 0}, {1, "1", 1}, {2, "0", 0}, {255, nullptr, 255}};
  OtTypeMgr types;
  for (const auto& row : rows) {
    OtBoolean value = Byte(row.value);
    OtTypeConvertData* data = types.ConvertTo(kId, &value, 1);
    OtString* text = data->GetString(0);
    EXPECT_EQ(text->IsNullValue() != 0, row.text == nullptr);
    EXPECT_STREQ(text->StrGet(), row.text ? row.text : "");
    auto* back = static_cast<OtBoolean*>(types.ConvertFrom(kId, data, 1));
    EXPECT_EQ(back->value, row.back);
    types.Delete(kId, back, 1);
    delete data;
  }
}

TEST(Boolean, CreatesFalseAndHashesSigned) {
  OtTypeMgr types;
  auto* values = static_cast<OtBoolean*>(types.Create(kId, 3));
  for (int i = 0; i < 3; ++i) EXPECT_EQ(values[i].value, 0);
  values[1].SetNullValue();
  unsigned char disk[3] = {9, 9, 9};
  EXPECT_EQ(types.Store(kId, disk, values, OT_FORMAT_BIG_ENDIAN, 3), 3u);
  EXPECT_EQ(disk[1], 0xff);
  int status = -1;
  EXPECT_EQ(types.Hash(kId, 0, disk, 3, OT_FORMAT_BIG_ENDIAN, status),
            static_cast<std::uint32_t>(0xffffffffu * 1103515245u));
  EXPECT_EQ(status, 0);
  types.Delete(kId, values, 3);
}

}  // namespace
