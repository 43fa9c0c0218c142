// The old 8-bit strings: values, order, stored form.

#include "ot95/istring.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <random>
#include <string>

#include "bytes_testing.h"
#include "ot95/memfile.h"
#include "ot95/text.h"
#include "ot95/typemgr.h"

namespace {

constexpr char kString = 20, kCase = 21;
constexpr unsigned short kPlain = OT_CMP_NO_WILDCARDS;

template <class T>
class LegacyString : public testing::Test {};
using Classes = testing::Types<OtIString, OtCaseIString>;
TYPED_TEST_SUITE(LegacyString, Classes);

template <class T>
constexpr char kIdOf = std::is_same_v<T, OtIString> ? kString : kCase;

TYPED_TEST(LegacyString, EditsItsText) {
  using Text = TypeParam;
  using Edit = void (*)(Text&);
  const struct {
    const char *name, *before;
    Edit edit;
    const char* after;  // null: no text
  } rows[] = {
      {"append", "ab", [](Text& s) { s += "cd"; }, "abcd"},
      {"append itself", "ab", [](Text& s) { s += s; }, "abab"},
      {"sum", "ab", [](Text& s) { s = s + s + "c"; }, "ababc"},
      {"insert", "abc", [](Text& s) { s.Insert("XY", 1); }, "aXYbc"},
      {"insert far behind", "abc", [](Text& s) { s.Insert("X", 99); }, "abcX"},
      {"insert into none", nullptr, [](Text& s) { s.Insert("X", 5); }, "X"},
      {"insert nothing", nullptr, [](Text& s) { s.Insert("", 0); }, nullptr},
      {"insert itself", "ab", [](Text& s) { s.Insert(s, 1); }, "aabb"},
      {"replace", "abcd", [](Text& s) { s.Replace("XYZ", 2); }, "abXY"},
      {"replace behind", "ab", [](Text& s) { s.Replace("X", 2); }, "ab"},
      {"fill within", "abcd", [](Text& s) { s.Fill(2, 'x'); }, "xxcd"},
      {"fill beyond", "ab", [](Text& s) { s.Fill(4, 'x'); }, "xxxx"},
      {"fill none", nullptr, [](Text& s) { s.Fill(2, 'x'); }, "xx"},
      {"expand", "ab", [](Text& s) { s.Expand(4, '.'); }, "ab.."},
      {"expand down", "abc", [](Text& s) { s.Expand(1, '.'); }, "abc"},
      {"cut", "abcd", [](Text& s) { s.Cut(1, 2); }, "ad"},
      {"cut to the end", "abcd", [](Text& s) { s.Cut(1); }, "a"},
      {"cut all", "abcd", [](Text& s) { s.Cut(0, 9); }, nullptr},
      {"cut nothing", "abcd", [](Text& s) { s.Cut(2, 0), s.Cut(5, 1); }, "abcd"},
      {"copy", "abcd", [](Text& s) { s = s.Copy(1, 2); }, "bc"},
      {"copy behind", "abcd", [](Text& s) { s = s.Copy(5, 2); }, nullptr},
      {"blanks to zeros", "a b", [](Text& s) { s.SpaceToZero(); }, "a0b"},
      {"zeros to blanks", "a0b", [](Text& s) { s.ZeroToSpace(); }, "a b"},
      {"upper", "az\xe0\xfe\xf7\x9f\x9c", [](Text& s) { s.ToUpper(); }, "AZ\xc0\xde\xf7\xff\x8c"},
      {"lower", "AZ\xc0\xde\xd7\xff\x8c", [](Text& s) { s.ToLower(); }, "az\xe0\xfe\xd7\x9f\x9c"},
  };
  for (const auto& row : rows) {
    Text text(row.before);
    row.edit(text);
    EXPECT_EQ(text.text == nullptr, row.after == nullptr) << row.name;
    EXPECT_STREQ(text.StrGet(), row.after ? row.after : "") << row.name;
  }
}

TYPED_TEST(LegacyString, IsMadeFromAndBecomesNumbers) {
  using Text = TypeParam;
  EXPECT_STREQ(Text(short{-5}).StrGet(), "-5");
  EXPECT_STREQ(Text(4000000000UL).StrGet(), "4000000000");
  EXPECT_STREQ(Text(-9223372036854775807LL).StrGet(), "-9223372036854775807");
  EXPECT_STREQ(Text(~0ULL).StrGet(), "18446744073709551615");
  EXPECT_STREQ(Text(1.5).StrGet(), "1.500000");
  EXPECT_EQ(Text(1e308).Len(), 316U);
  EXPECT_STREQ(Text("abc", 2).StrGet(), "ab");
  EXPECT_STREQ(Text('x').StrGet(), "x");
  EXPECT_EQ(Text('\0').text, nullptr);
  EXPECT_EQ(static_cast<int>(Text(" 12x")), 12);
  EXPECT_EQ(static_cast<long>(Text("3000000000")), 2147483647);
  EXPECT_EQ(static_cast<short>(Text("65537")), 1);
  EXPECT_EQ(static_cast<double>(Text("-2.5e1z")), -25.0);
  EXPECT_EQ(static_cast<double>(Text("0xinf")), 0.0);
  EXPECT_TRUE(std::signbit(static_cast<double>(Text("-0x"))));
  EXPECT_EQ(static_cast<int>(Text()), 0);
  EXPECT_EQ(Text("banana").SubStringPos("nan"), 2);
  EXPECT_EQ(Text("banana").SubStringPos("NAN"), -1);
  EXPECT_EQ(Text("banana").SubStringPos(""), -1);
}

TYPED_TEST(LegacyString, ComparesByItsOwnCollation) {
  using Text = TypeParam;
  const struct {
    const char *a, *b;
    int sign;
  } rows[] = {
      {"abc", "ABC", 0}, {"a", "b", -1},        {"e", "\xe9", 0},  // e, e acute
      {"\xdf", "ss", 0},                                           // sharp s is two letters
      {"o", "\x8c", -1}, {"\x8c", "oe", 0},     {"", "a", -1},       {nullptr, "", -1},
      {"", nullptr, 1},  {nullptr, nullptr, 0}, {"ab", "abc", -1},   {"[", "a", -1},
      {"\xc5", "z", 1},  {"\xe7", "d", -1},     {"\x80", "\xff", 1}, {"Y", "\xff", 0},
  };
  OtTypeMgr types;
  for (const auto& row : rows) {
    Text a(row.a), b(row.b);
    if (row.a && !*row.a) a.text = new char[1]();  // an empty text apart from none
    if (row.b && !*row.b) b.text = new char[1]();
    const long result = types.Cmp(kIdOf<Text>, &a, &b, kPlain, 1, 8);
    EXPECT_EQ((result > 0) - (result < 0), row.sign) << (row.a ? row.a : "none");
    EXPECT_EQ(a == b, row.sign == 0);
    EXPECT_EQ(a < b, row.sign < 0);
    EXPECT_EQ(a >= b, row.sign >= 0);
  }
}

TEST(CaseIString, LetsAccentsCountByAFlagOnTheLeft) {
  OtCaseIString accented("\xe9"), plain("e"), sharp("\xdf"), letters("s");
  EXPECT_TRUE(accented == plain);
  accented.flags = OT_ISTR_CASE;
  EXPECT_TRUE(accented > plain);
  EXPECT_TRUE(plain == accented);
  sharp.flags = OT_ISTR_CASE;
  EXPECT_TRUE(sharp < letters);
  OtIString never("\xe9");
  never.flags = OT_ISTR_CASE;
  EXPECT_TRUE(never == OtIString("e"));
  EXPECT_TRUE(OtIString("\x9c") != OtIString("oe"));
  EXPECT_TRUE(OtCaseIString("\x9c") == OtCaseIString("oe"));
}

TEST(LegacyStrings, MatchPatterns) {
  const struct {
    const char *text, *pattern;
    bool plain, collated;
  } rows[] = {
      {"abc", "a*", true, true},
      {"abc", "*c", true, true},
      {"abc", "?bc", true, true},
      {"abc", "a?", false, false},
      {"axbxbyc", "a*b*c", true, true},
      {"abc", "A*", false, true},
      {"", "*", true, true},
      {"", "?", false, false},
      {"a*b", "a\\*b", true, true},
      {"axb", "a\\*b", false, false},
      {"a\nb", "a\\nb", true, true},
      {"ab", "ab\\", false, false},
      {"mississippi", "*iss*ip*", true, true},
      {"mississippi", "*iss?ip*x", false, false},
      {"caf\xe9", "cafe*", false, false},
      {"abc", "**c", true, true},
  };
  OtTypeMgr types;
  for (const auto& row : rows) {
    OtIString text(row.text), pattern(row.pattern);
    EXPECT_EQ(types.Cmp(kString, &text, &pattern, 0, 1, 8), row.plain ? 0 : 1) << row.pattern;
    OtCaseIString text2(row.text), pattern2(row.pattern);
    EXPECT_EQ(types.Cmp(kCase, &text2, &pattern2, 0, 1, 8), row.collated ? 0 : 1) << row.pattern;
  }
  // A key holds less than its text: what it can't tell counts as a match.
  OtCaseIString key("\x5e\x54"), accent("\xe7*"), any("?z*"), two("\x9c*"), keyOe("\x90");
  key.flags = keyOe.flags = OT_ISTR_KEY;
  EXPECT_EQ(types.Cmp(kCase, &key, &accent, 0, 1, 8), 0);
  EXPECT_EQ(types.Cmp(kCase, &key, &any, 0, 1, 8), 0);
  EXPECT_EQ(types.Cmp(kCase, &keyOe, &two, 0, 1, 8), 0);
  EXPECT_EQ(types.Cmp(kCase, &key, &two, 0, 1, 8), 1);
}

TYPED_TEST(LegacyString, StoredFormsArePinned) {
  using Text = TypeParam;
  OtTypeMgr types;
  Text texts[3] = {"ab", "", "\xe9"};
  const struct {
    unsigned char format;
    const char* stored;
  } rows[] = {{OT_FORMAT_NATIVE, "40 0600 616200 00 e900"},
              {OT_FORMAT_BIG_ENDIAN, "40 0006 616200 00 e900"},
              {OT_FORMAT_NATIVE | 0x80, "01 0600 616200 00 e900"}};
  for (const auto& row : rows) {
    const ExactBlock expected(Unhex(row.stored)), disk(9);
    EXPECT_EQ(types.DiskLenGet(kIdOf<Text>, texts, row.format, 3, 8), 9U);
    EXPECT_EQ(types.Store(kIdOf<Text>, disk.data(), texts, row.format, 3), 9U);
    EXPECT_EQ(Hex(disk.data(), 9), Hex(expected.data(), 9));
    EXPECT_EQ(types.DiskLenGet(kIdOf<Text>, disk.data(), row.format, 3, row.format), 9U);
    MemFile file(disk.data(), 9), cut(disk.data(), 2);
    EXPECT_EQ(types.DiskLenGetFromMemFile(kIdOf<Text>, &file, row.format, 3), 9U);
    EXPECT_EQ(types.DiskLenGetFromMemFile(kIdOf<Text>, &cut, row.format, 3), 0U);
    Text loaded[3];
    EXPECT_EQ(types.Load(kIdOf<Text>, loaded, disk.data(), row.format, 3), 9U);
    EXPECT_STREQ(loaded[0].StrGet(), "ab");
    EXPECT_EQ(loaded[1].text, nullptr);
    EXPECT_STREQ(loaded[2].StrGet(), "\xe9");
  }
  const ExactBlock none(3);
  EXPECT_EQ(types.Store(kIdOf<Text>, none.data(), nullptr, 1, 0), 3U);
  EXPECT_EQ(Hex(none.data(), 3), "400000");
  EXPECT_EQ(types.DiskLenGet(kIdOf<Text>, texts, 0x88, 3, 8), 0U);
}

TYPED_TEST(LegacyString, KeysNeverLeaveTheirTarget) {
  using Text = TypeParam;
  OtTypeMgr types;
  Text text("A\xdf\xe9");  // A, sharp s, e acute: four key bytes
  const ExactBlock stored(Unhex("40 0400 41dfe900"));
  const struct {
    unsigned long room;
    unsigned long fromMemory;
    const char* memoryKey;
    unsigned long fromStored;
    const char* storedKey;
  } rows[] = {
      {0, 0, "", 0, ""},
      {2, 0, "", 0, ""},
      {3, 3, "c00100", 3, "c00500"},
      {4, 4, "c0010000", 3, "c0050000"},
      {6, 6, "c00300549d00", 5, "c00500549d00"},
      {8, 8, "c00500549d9d6900", 7, "c00500549d9d6900"},
      {9, 8, "c00500549d9d690000", 8, "c00500549d9d690000"},
  };
  for (const auto& row : rows) {
    const ExactBlock key(row.room);
    EXPECT_EQ(types.Translate(kIdOf<Text>, key.data(), 0x81, row.room, &text, 8, 0, 1),
              row.fromMemory);
    if (row.fromMemory > 0) {
      EXPECT_EQ(Hex(key.data(), row.room), row.memoryKey);
    }
    const ExactBlock other(row.room);
    EXPECT_EQ(types.Translate(kIdOf<Text>, other.data(), 0x81, row.room, stored.data(), 1,
                              stored.size(), 1),
              row.fromStored);
    if (row.fromStored > 0) {
      EXPECT_EQ(Hex(other.data(), row.room), row.storedKey);
    }
  }
  unsigned char key[16];
  EXPECT_EQ(types.Translate(kIdOf<Text>, key, 0x88, 16, &text, 8, 0, 1), 0U);
  EXPECT_EQ(types.Translate(kIdOf<Text>, key, 0x82, 16, &text, 8, 0, 1), 8U);
  EXPECT_EQ(Hex(key, 5), "c00005549d");
  // A key goes over as it is.
  const ExactBlock again(20);
  EXPECT_EQ(types.Translate(kIdOf<Text>, again.data(), 0x82, 20, key, 2, 8, 1), 8U);
  EXPECT_EQ(Hex(again.data(), 9), "c00005549d9d690000");
  EXPECT_EQ(types.Translate(kIdOf<Text>, again.data(), 0x81, 20, key, 1, 2, 1), 0U);
}

TEST(LegacyStrings, KeysGoBackToMemory) {
  OtTypeMgr types;
  const ExactBlock key(Unhex("c0 0800 549d9d90696941 00"));
  OtCaseIString text("before");
  EXPECT_EQ(types.Translate(kCase, &text, 8, 0, key.data(), 0x81, key.size(), 1), 11U);
  EXPECT_STREQ(text.StrGet(),
               "A\xdf\x8c"
               "E`");
  EXPECT_EQ(text.flags, 0);
  const ExactBlock cut(key.data(), 5);
  EXPECT_EQ(types.Translate(kCase, &text, 8, 0, cut.data(), 0x81, cut.size(), 1), 5U);
  EXPECT_STREQ(text.StrGet(), "AS");
  // The other class keeps the bytes, and remembers that they are a key's.
  OtIString raw;
  EXPECT_EQ(types.Translate(kString, &raw, 8, 0, key.data(), 0x81, key.size(), 1), 11U);
  EXPECT_STREQ(raw.StrGet(), "\x54\x9d\x9d\x90\x69\x69\x41");
  EXPECT_TRUE(raw == OtIString("A\xdf"
                               "oee`"));
  const ExactBlock header(key.data(), 2);
  EXPECT_EQ(types.Translate(kString, &raw, 8, 0, header.data(), 1, 2, 1), 0U);
}

TYPED_TEST(LegacyString, StoredRecordsCompareWithinTheirBytes) {
  using Text = TypeParam;
  const std::string longKey = "c0 2c01" + [] {
    std::string bytes;
    for (int i = 0; i < 0xfe; ++i) bytes += "54";
    return bytes;
  }();
  const struct {
    const char* name;
    std::string bytes1, bytes2;
    bool given1, given2;  // lengths are given, not 0
    unsigned short cmpOp;
    unsigned long count;
    long sign;
    int status;
  } rows[] = {
      {"equal but for case", "40 0300 616200", "40 0300 414200", true, true, kPlain, 1, 0, 0},
      {"without lengths", "40 0300 616200", "40 0300 616300", false, false, kPlain, 1, -1, 0},
      {"text and key", "40 0300 616200", "c0 0300 545b00", true, true, kPlain, 1, 0, 0},
      {"two keys, plain bytes", "c0 0300 545b00", "c0 0300 545c00", true, true, kPlain, 1, -1, 0},
      {"cut key", "40 0500 6162636400", "c0 0500 545b00", true, true, kPlain, 1, 0, 2101},
      {"cut key, other", "40 0500 6163636400", "c0 0500 545b00", true, true, kPlain, 1, 1, 2101},
      {"header alone", "c0 0500", "40 0300 616200", true, true, kPlain, 1, 0, 2101},
      {"no header", "c0", "40 0300 616200", true, true, kPlain, 1, 0, 2101},
      {"empty record", "40 0000", "40 0100 00", true, true, kPlain, 1, 0, 0},
      {"pattern", "40 0400 61626300", "40 0300 612a00", true, true, 0, 1, 0, 0},
      {"pattern that fails", "40 0400 61626300", "40 0300 622a00", true, true, 0, 1, 1, 0},
      {"pattern as text", "40 0400 61626300", "40 0300 612a00", true, true, kPlain, 1, 1, 0},
      {"array", "40 0400 61006200", "40 0400 61006300", true, true, kPlain, 2, -1, 0},
      {"array too short", "40 0200 6100", "40 0400 61006300", true, true, kPlain, 2, 0, 2101},
      {"unterminated", "40 0200 6162", "40 0300 616200", true, true, kPlain, 1, 0, 0},
      {"long cut", longKey, longKey, true, true, kPlain, 1, -1, OT_ERR_NOT_SUPPORTED},
      {"nothing", "", "", true, true, kPlain, 0, 0, 0},
  };
  OtTypeMgr types;
  for (const auto& row : rows) {
    const ExactBlock bytes1(Unhex(row.bytes1)), bytes2(Unhex(row.bytes2));
    int status = -1;
    const long result =
        types.Cmp(kIdOf<Text>, row.given1 ? bytes1.size() : 0, bytes1.data(),
                  row.given2 ? bytes2.size() : 0, bytes2.data(), row.cmpOp, row.count, 1, status);
    EXPECT_EQ((result > 0) - (result < 0), row.sign) << row.name;
    EXPECT_EQ(status, row.status) << row.name;
  }
  int status = 77;
  EXPECT_EQ(types.Hash(kIdOf<Text>, 0, nullptr, 1, 1, status), 0U);
  EXPECT_EQ(status, 77);
}

TYPED_TEST(LegacyString, HostileBytesAreNotReadBeyond) {
  using Text = TypeParam;
  const char id = kIdOf<Text>;
  std::mt19937 random(9);
  OtTypeMgr types;
  for (int round = 0; round < 8000; ++round) {
    const ExactBlock a(1 + random() % 12), b(1 + random() % 12), target(random() % 14);
    for (const ExactBlock* bytes : {&a, &b}) {
      for (unsigned long i = 0; i < bytes->size(); ++i) {
        static const unsigned char likely[] = {0,   1,   2,    5,   0x40, 0xc0,
                                               '*', '?', '\\', 'a', 0xdf, 0x9d};
        bytes->data()[i] = likely[random() % sizeof likely];
      }
    }
    const auto format = static_cast<unsigned char>(random() % 2 ? 1 : 0x81);
    int status = 0;
    types.Cmp(id, a.size(), a.data(), b.size(), b.data(), static_cast<unsigned short>(random()), 3,
              format, status);
    types.Translate(id, target.data(), 0x81, target.size(), a.data(), 1, a.size(), 1);
    Text texts[2];
    types.Translate(id, texts, 8, 0, a.data(), format, a.size(), 2);
    types.Translate(id, target.data(), 0x82, target.size(), texts, 8, 0, 2);
    unsigned long consumed = 0;
    if (types.VerifyStored(id, a.data(), a.size(), 1, 2, consumed) == 0) {
      EXPECT_EQ(types.Load(id, texts, a.data(), 1, 2), consumed);
    }
  }
}

TYPED_TEST(LegacyString, PrintsThroughACheckedFormat) {
  using Text = TypeParam;
  OtTypeMgr types;
  Text text("abc"), none;
  const struct {
    const char *format, *printed;
  } rows[] = {{nullptr, "abc"},  {"<%s>", "<abc>"}, {"%5s|", "  abc|"}, {"%-5.2s|", "ab   |"},
              {"%n%s", "%nabc"}, {"%s%s", "abc%s"}, {"%d%%", "%d%"}};
  for (const auto& row : rows) {
    OtString out("before");
    types.PrintToOtString(kIdOf<Text>, out, &text, row.format, 1);
    EXPECT_STREQ(out.StrGet(), row.printed);
  }
  OtString out("before");
  EXPECT_STREQ(types.PrintToOtString(kIdOf<Text>, out, &none, "<%s>", 1).StrGet(), "");
  OtString wide("xyz");
  wide.SetCodeSet(OT_CS_UNICODE);
  types.ScanFromOtString(kIdOf<Text>, &none, wide, nullptr, 1);
  EXPECT_STREQ(none.StrGet(), "xyz");
}

TYPED_TEST(LegacyString, ArraysLiveAndConvert) {
  using Text = TypeParam;
  OtTypeMgr types;
  auto* texts = static_cast<Text*>(types.Create(kIdOf<Text>, 3));
  texts[1] = "caf\xe9";
  OtTypeConvertData* data = types.ConvertTo(kIdOf<Text>, texts, 3);
  EXPECT_STREQ(data->GetString(1)->StrGet(), "caf\xe9");
  EXPECT_TRUE(data->GetString(2)->IsEmpty());
  auto* back = static_cast<Text*>(types.ConvertFrom(kIdOf<Text>, data, 3));
  EXPECT_STREQ(back[1].StrGet(), "caf\xe9");
  types.AssignmentPtrGet(kIdOf<Text>)(back, texts + 1, 3, 1);
  EXPECT_TRUE(back[0] == back[2]);
  EXPECT_NE(back[0].text, back[2].text);
  EXPECT_EQ(types.IsNullValue(kIdOf<Text>, back), 0);
  delete data;
  types.Delete(kIdOf<Text>, back, 3);
  types.Delete(kIdOf<Text>, texts, 3);
}

TYPED_TEST(LegacyString, EstimatesOnTheFirstFourBytes) {
  using Text = TypeParam;
  // Keys 00000000 and ffffffff: the widest range, which 32 bits can't count.
  unsigned char whole[2][8] = {{0xc0, 5, 0, 0, 0, 0, 0, 0}, {0xc0, 5, 0, 255, 255, 255, 255, 0}};
  unsigned char middle[2][8] = {{0xc0, 5, 0, 0x54, 0, 0, 0, 0},
                                {0xc0, 5, 0, 0x54, 255, 255, 255, 0}};
  const struct {
    const char* name;
    const char* operand;
    unsigned char (*range)[8];
    unsigned short op;
    double share;
    int opAfter;
    const char *lower, *upper;
  } rows[] = {
      {"equal to a prefix", "40 0300 616200", whole, OT_OP_EQUAL, (0xff00 + 1) / 4294967296.0,
       OT_OP_EQUAL, "c00300545b00", "c00300545b00"},
      {"pattern", "40 0400 61622a00", whole, OT_OP_EQUAL | 0x20, (0xff00 + 1) / 4294967296.0,
       OT_OP_EQUAL | OT_OP_WILDCARD, "c00300545b00", "c00400545bff00"},
      {"star first", "40 0300 2a6100", whole, OT_OP_EQUAL, 1.0, OT_OP_EQUAL | OT_OP_WILDCARD,
       nullptr, nullptr},
      {"less", "40 0200 6100", whole, OT_OP_LESS, (0x54000000 + 1.0) / 4294967296.0, OT_OP_LESS,
       nullptr, "c002005400"},
      {"less than the lowest", "40 0200 2000", middle, OT_OP_LESS, 0.0, OT_OP_LESS, nullptr,
       "c002002000"},
      {"greater than the highest", "40 0200 7a00", middle, OT_OP_GREATER, 0.0, OT_OP_GREATER,
       "c00200b700", nullptr},
      {"empty record", "40 0000", whole, OT_OP_EQUAL, (0xff000000 + 1.0) / 4294967296.0,
       OT_OP_EQUAL, "c0010000", "c0010000"},
      {"key operand", "c0 0600 54545b5d5e00", whole, OT_OP_EQUAL, 1 / 4294967296.0, OT_OP_EQUAL,
       "c0060054545b5d5e00", "c0060054545b5d5e00"},
      {"no range", "40 0200 6100", nullptr, OT_OP_GREATER, 0.0, OT_OP_GREATER, "c002005400",
       nullptr},
  };
  OtTypeMgr types;
  for (const auto& row : rows) {
    const ExactBlock operand(Unhex(row.operand));
    OtIdxBounds bounds{row.range ? row.range[0] : nullptr, row.range ? row.range[1] : nullptr, 8,
                       8};
    OtIdxBounds limits;
    unsigned short op = row.op;
    const float share = types.EvalAndBound(kIdOf<Text>, row.range ? &bounds : nullptr, op,
                                           operand.data(), 1, 1, &limits, nullptr);
    EXPECT_EQ(share, static_cast<float>(row.share)) << row.name;
    EXPECT_EQ(op, row.opAfter) << row.name;
    EXPECT_EQ(Hex(limits.lowerKey, limits.lowerKeyLength), row.lower ? row.lower : "") << row.name;
    EXPECT_EQ(Hex(limits.upperKey, limits.upperKeyLength), row.upper ? row.upper : "") << row.name;
    std::free(limits.lowerKey);
    std::free(limits.upperKey);
  }
  Text text(std::string(300, 'a').c_str());
  const ExactBlock operand(304);
  types.Store(kIdOf<Text>, operand.data(), &text, 1, 1);
  OtIdxBounds limits;
  unsigned short op = OT_OP_EQUAL;
  types.EvalAndBound(kIdOf<Text>, nullptr, op, operand.data(), 1, 1, &limits, nullptr);
  EXPECT_EQ(limits.lowerKeyLength, OtINDEX_MAX_KEYLEN);
  EXPECT_EQ(Hex(limits.lowerKey, 4), "c02d0154");
  int status = 0;
  EXPECT_EQ(types.Cmp(kIdOf<Text>, operand.size(), operand.data(), limits.lowerKeyLength,
                      limits.lowerKey, kPlain, 1, 1, status),
            0);
  EXPECT_EQ(status, OT_ERR_END_OF_DATA);
  std::free(limits.lowerKey);
  std::free(limits.upperKey);
}

}  // namespace
