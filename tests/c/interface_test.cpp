// The C interface: what goes in as text or as values of C, and what comes back.
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "c/arrays.h"

namespace {

// ---------------------------------------------------------------------------------------------
// What there is

TEST(Types, AreDescribedByNumberAndFoundByName) {
  size_t count = 0;
  ASSERT_EQ(ot95_type_count(&count), OT95_OK);
  ASSERT_EQ(count, 41u);
  for (int type = 0; type < static_cast<int>(count); ++type) {
    ot95_type description = {};
    description.struct_size = sizeof description;
    ASSERT_EQ(ot95_type_describe(type, &description), OT95_OK);
    EXPECT_EQ(TypeOf(description.name), type);
    EXPECT_EQ(description.stored_size != 0 || type == 40, description.is_fixed != 0) << type;
  }
  ot95_type description = {};
  description.struct_size = sizeof description;
  EXPECT_EQ(ot95_type_describe(41, &description), OT95_ERR_TYPE);
  EXPECT_EQ(ot95_type_describe(-1, &description), OT95_ERR_TYPE);
  EXPECT_EQ(ot95_type_describe(11 | OT95_OLD_TABLE, &description), OT95_OK);
  EXPECT_EQ(ot95_type_describe(28 | OT95_OLD_TABLE, &description), OT95_ERR_TYPE);
}

TEST(Versions, AreThoseOfTheHeaderAndTheTables) {
  ot95_versions versions = {};
  versions.struct_size = sizeof versions;
  ASSERT_EQ(ot95_version(&versions), OT95_OK);
  EXPECT_EQ(versions.library[0], 9u);
  EXPECT_EQ(versions.interface_number, unsigned{OT95C_INTERFACE});
  EXPECT_EQ(versions.sort_key, 1u);
  EXPECT_NE(versions.collation, 0u);
  EXPECT_NE(std::string(versions.unicode).find('.'), std::string::npos);
}

TEST(Types, FillNoMoreThanAnOlderCallersStructure) {
  ot95_type description = {};
  description.struct_size = offsetof(ot95_type, format);
  ASSERT_EQ(ot95_type_describe(12, &description), OT95_OK);
  EXPECT_STREQ(description.name, "OtDate");
  EXPECT_EQ(description.format, nullptr);
  description.struct_size = 0;
  EXPECT_EQ(ot95_type_describe(12, &description), OT95_ERR_ARGUMENT);
}

TEST(Languages, AreDescribedByNumberAndFoundByTag) {
  unsigned number = 0;
  ot95_language language = {};
  language.struct_size = sizeof language;
  ASSERT_EQ(ot95_language_by_tag("SV", &number), OT95_OK);
  ASSERT_EQ(ot95_language_describe(number, &language), OT95_OK);
  EXPECT_STREQ(language.tag, "sv");
  uint64_t version = 0, neutral = 0;
  EXPECT_EQ(ot95_order_version(number, &version), OT95_OK);
  EXPECT_EQ(ot95_order_version(1, &neutral), OT95_OK);
  EXPECT_NE(version, neutral);
  EXPECT_EQ(ot95_language_by_tag("xx-nobody", &number), OT95_ERR_LANGUAGE);
  EXPECT_EQ(ot95_language_describe(256 + 1, &language), OT95_ERR_LANGUAGE);
  ot95_code_set set = {};
  set.struct_size = sizeof set;
  ASSERT_EQ(ot95_code_set_by_name("iso 8859-2", &number), OT95_OK);
  ASSERT_EQ(ot95_code_set_describe(number, &set), OT95_OK);
  EXPECT_EQ(set.width, 1u);
  ASSERT_EQ(ot95_code_set_describe(253, &set), OT95_OK);
  EXPECT_EQ(set.width, 2u);
}

TEST(Statuses, HaveAMeaningEach) {
  std::vector<std::string> meanings;
  for (int status = OT95_OK; status >= OT95_ERR_INTERNAL; --status) {
    const std::string meaning = ot95_strerror(status);
    EXPECT_NE(meaning, ot95_strerror(1));
    EXPECT_EQ(std::count(meanings.begin(), meanings.end(), meaning), 0);
    meanings.push_back(meaning);
  }
  EXPECT_STREQ(ot95_strerror(OT95_ERR_INTERNAL - 1), ot95_strerror(1));
  EXPECT_STREQ(ot95_strerror(INT32_MIN), ot95_strerror(1));
}

// ---------------------------------------------------------------------------------------------
// Text

struct TextRow {
  const char* type;
  std::vector<std::string> texts;
  const char* stored;  // in the big-endian form
};

TEST(Text, IsStoredAndPrinted) {
  const TextRow rows[] = {
      {"short", {"-2", "300"}, "fffe012c"},
      {"OtNull_short", {"5", "{NULL}"}, "000005010000"},
      {"OtInt64", {"-1"}, "ffffffffffffffff"},
      {"OtDate", {"Sun 02.Jan 2000"}, "07d00102"},
      {"OtString", {"\xc3\xa9", ""}, "0006fd0100e900ff0004fd0100ff"},
      {"OtString", {"{NULL}"}, "000400fe00ff"},
      {"OtBlob", {"{NULL}"}, "00000004ffffffff"},
      {"OtIString", {"ab"}, "400003616200"},
      {"OtSeal", {"258"}, "000000000102"},
      {"OtObjId", {"(0-16909060#7)"}, "00000007010203040000"},
  };
  for (const TextRow& row : rows) {
    const int type = TypeOf(row.type);
    const Given stored = Scanned(type, row.texts, OT95_FORM_BIG_ENDIAN);
    ASSERT_EQ(stored.status, OT95_OK) << row.type;
    EXPECT_EQ(stored.Hex(), row.stored) << row.type;
    const ot95_array array = ArrayOf(type, OT95_FORM_BIG_ENDIAN, stored.bytes, row.texts.size());
    for (size_t i = 0; i < row.texts.size(); ++i) {
      int isNull = -1;
      EXPECT_EQ(Printed(array, i).bytes, row.texts[i]) << row.type;
      EXPECT_EQ(ot95_is_null(&array, i, &isNull), OT95_OK);
      EXPECT_EQ(isNull, row.texts[i] == "{NULL}") << row.type;
    }
    EXPECT_EQ(Printed(array, row.texts.size()).status, OT95_ERR_ARGUMENT);
  }
}

TEST(Text, IsRefusedWhereItSaysNoValue) {
  ot95_scan_options latin = {sizeof latin, 1, 1, nullptr, 0};
  EXPECT_EQ(Scanned(TypeOf("short"), {"abc"}, 1).status, OT95_ERR_VALUE);
  EXPECT_EQ(Scanned(TypeOf("OtBlob"), {"abc"}, 1).status, OT95_ERR_VALUE);
  EXPECT_EQ(Scanned(TypeOf("OtString"), {"\xff"}, 1).status, OT95_ERR_TEXT);
  EXPECT_EQ(Scanned(TypeOf("OtString"), {std::string("a\0b", 3)}, 1).status, OT95_ERR_TEXT);
  EXPECT_EQ(Scanned(TypeOf("OtString"), {std::string(32765, 'a')}, 1).status, OT95_OK);
  EXPECT_EQ(Scanned(TypeOf("OtString"), {std::string(32766, 'a')}, 1).status, OT95_ERR_TEXT);
  EXPECT_EQ(Scanned(TypeOf("OtString"), {"\xe6\x97\xa5"}, 1, &latin).status, OT95_ERR_VALUE);
  EXPECT_EQ(Scanned(TypeOf("OtString"), {"\xc3\xa9"}, 1, &latin).Hex(), "05000101e900ff");
  EXPECT_EQ(Scanned(40, {"a"}, 1).status, OT95_ERR_NOT_SUPPORTED);
  EXPECT_EQ(Scanned(TypeOf("short"), {"1"}, 8).status, OT95_ERR_ARGUMENT);
}

TEST(Text, IsHeldToWhatItSays) {
  const ot95_scan_options strict = {sizeof strict, 253, 1, nullptr, OT95_STRICT};
  const struct {
    const char* type;
    const char* text;
    bool isTaken, isTakenStrictly;
  } cases[] = {{"short", "300", true, true},
               {"short", " +0300 ", true, true},
               {"short", "99999", true, false},
               {"short", "7 dogs", true, false},
               {"float", "1e99", true, false},
               {"double", "1e99", true, true},
               {"OtDate", "2000-12-31", true, true},
               {"OtDate", "2000-13-45", true, false},
               {"OtTime", "23:59", true, true},
               {"OtTime", "23:61", true, false},
               {"OtBoolean", "TRUE", true, true},
               {"OtBoolean", "perhaps", true, false},
               {"char", "ab", true, false},
               {"OtString", "ab\xe6\x97\xa5", true, true},
               {"OtIString", "\xe6\x97\xa5", true, false}};
  for (const auto& one : cases) {
    SCOPED_TRACE(std::string(one.type) + " " + one.text);
    EXPECT_EQ(Scanned(TypeOf(one.type), {one.text}, 1).status == OT95_OK, one.isTaken);
    EXPECT_EQ(Scanned(TypeOf(one.type), {one.text}, 1, &strict).status,
              one.isTakenStrictly ? OT95_OK : OT95_ERR_VALUE);
  }
  ot95_scan_options older = strict;  // without flags
  older.struct_size = offsetof(ot95_scan_options, flags);
  EXPECT_EQ(Scanned(TypeOf("short"), {"99999"}, 1, &older).status, OT95_OK);
}

TEST(Text, FollowsFormats) {
  ot95_scan_options iso = {sizeof iso, 253, 1, "%Y-%m-%d", 0};
  const int type = TypeOf("OtDate");
  const Given stored = Scanned(type, {"2000-01-02"}, OT95_FORM_BIG_ENDIAN, &iso);
  EXPECT_EQ(stored.Hex(), "07d00102");
  const ot95_array array = ArrayOf(type, OT95_FORM_BIG_ENDIAN, stored.bytes);
  EXPECT_EQ(Printed(array, 0, "%d/%m %n%s%%").bytes.substr(0, 6), "02/01 ");
}

TEST(Text, OfEachKindOfUtf8ComesBack) {
  const struct {
    std::string text;
    bool isGood;
  } rows[] = {
      {"\x7f", true},
      {"\xc2\x80", true},
      {"\xdf\xbf", true},
      {"\xe0\xa0\x80", true},
      {"\xef\xbf\xbf", true},
      {"\xf0\x90\x80\x80", true},
      {"\xf4\x8f\xbf\xbf", true},
      {"plain eight bytes, and \xc3\xa9 behind", true},
      {"\x80", false},              // continuation alone
      {"\xc1\xbf", false},          // too long a form
      {"\xe0\x9f\xbf", false},      // too long a form
      {"\xf0\x8f\xbf\xbf", false},  // too long a form
      {"\xed\xa0\x80", false},      // a surrogate
      {"\xf4\x90\x80\x80", false},  // beyond the last character
      {"\xf8\x88\x80\x80\x80", false},
      {"\xc3", false},  // cut
      {"\xe6\x97", false},
      {"\xf0\x9f\x98", false},
      {"\xc3g", false},
  };
  const int type = TypeOf("OtString");
  for (const auto& row : rows) {
    const Given stored = Scanned(type, {row.text}, OT95_FORM_NATIVE);
    ASSERT_EQ(stored.status, row.isGood ? OT95_OK : OT95_ERR_TEXT)
        << Hex(row.text.data(), row.text.size());
    if (!row.isGood) continue;
    EXPECT_EQ(Printed(ArrayOf(type, OT95_FORM_NATIVE, stored.bytes), 0).bytes, row.text);
  }
}

// ---------------------------------------------------------------------------------------------
// Values of C

ot95_value Integer(int64_t number) {
  ot95_value value = {};
  value.kind = OT95_KIND_INTEGER;
  value.as.integer = number;
  return value;
}
ot95_value Real(double number) {
  ot95_value value = {};
  value.kind = OT95_KIND_REAL;
  value.as.real = number;
  return value;
}
ot95_value Moment(const ot95_moment& moment) {
  ot95_value value = {};
  value.kind = OT95_KIND_MOMENT;
  value.as.moment = moment;
  return value;
}
ot95_value Identity(const ot95_identity& identity) {
  ot95_value value = {};
  value.kind = OT95_KIND_IDENTITY;
  value.as.identity = identity;
  return value;
}
ot95_value Blob(const char* bytes, size_t size) {
  ot95_value value = {};
  value.kind = OT95_KIND_BYTES;
  value.as.bytes = {bytes, size};
  return value;
}
ot95_value Null(unsigned kind) {
  ot95_value value = {};
  value.kind = kind;
  value.is_null = 1;
  return value;
}

bool Same(const ot95_value& a, const ot95_value& b) {
  if (a.kind != b.kind || a.is_null != b.is_null) return false;
  if (a.is_null != 0) return true;
  if (a.kind == OT95_KIND_BYTES) {
    return a.as.bytes.size == b.as.bytes.size &&
           std::memcmp(a.as.bytes.data, b.as.bytes.data, a.as.bytes.size) == 0;
  }
  const size_t size = a.kind == OT95_KIND_MOMENT     ? sizeof a.as.moment
                      : a.kind == OT95_KIND_IDENTITY ? sizeof a.as.identity
                                                     : sizeof a.as.integer;
  return std::memcmp(&a.as, &b.as, size) == 0;
}

struct NativeRow {
  const char* type;
  std::vector<ot95_value> values;
  const char* stored;  // in the big-endian form; null where the type can't hold them
};

TEST(Native, ValuesAreStoredAndRead) {
  const NativeRow rows[] = {
      {"char", {Integer(-1), Integer(127)}, "ff7f"},
      {"char", {Integer(128)}, nullptr},
      {"short", {Integer(-2)}, "fffe"},
      {"short", {Integer(32768)}, nullptr},
      {"short", {Null(OT95_KIND_INTEGER)}, nullptr},
      {"OtWord", {Integer(65535)}, "ffff"},
      {"OtWord", {Integer(-1)}, nullptr},
      {"long", {Integer(INT32_MIN)}, "80000000"},
      {"OtDWord", {Integer(UINT32_MAX)}, "ffffffff"},
      {"enum", {Integer(7)}, "00000007"},
      {"OtByte", {Integer(255)}, "ff"},
      {"BlockId", {Integer(9)}, "00000009"},
      {"double", {Real(-0.5)}, "bfe0000000000000"},
      {"float", {Real(1.5)}, "3fc00000"},
      {"d_Interval", {Real(60)}, "42700000"},
      {"OtInt64", {Integer(INT64_MIN), Integer(1)}, "00000000800000000000000100000000"},
      {"OtBoolean", {Integer(1), Integer(0), Null(OT95_KIND_INTEGER)}, "0100ff"},
      {"OtBoolean", {Integer(2)}, nullptr},
      {"OtSeal", {Integer(0x010203040506)}, "010203040506"},
      {"OtSeal", {Integer(int64_t{1} << 48)}, nullptr},
      {"OtSeal", {Integer(-1)}, nullptr},
      {"OtNull_char", {Integer(-1), Null(OT95_KIND_INTEGER)}, "00ff0100"},
      {"OtNull_uchar", {Integer(200)}, "00c8"},
      {"OtNull_ushort", {Integer(40000)}, "009c40"},
      {"OtNull_int", {Integer(-3)}, "00fffffffd"},
      {"OtNull_unsigned", {Integer(3)}, "0000000003"},
      {"OtNull_long", {Null(OT95_KIND_INTEGER)}, "0100000000"},
      {"OtNull_ulong", {Integer(4000000000)}, "00ee6b2800"},
      {"OtNull_float", {Real(1.5)}, "003fc00000"},
      {"OtNull_double", {Real(-0.5), Null(OT95_KIND_REAL)}, "00bfe0000000000000010000000000000000"},
      {"OtNull_OtInt64", {Integer(1)}, "000000000100000000"},
      {"OtDate", {Moment({-5, 1, 2, 0, 0, 0, 0, 0, 0})}, "fffb0102"},
      {"OtDate", {Moment({40000, 1, 2, 0, 0, 0, 0, 0, 0})}, nullptr},
      {"OtDate", {Null(OT95_KIND_MOMENT)}, "80008080"},
      {"OtTime", {Moment({0, 0, 0, 23, 59, 58, 0, 0, 0})}, "173b3a"},
      {"OtDateTime", {Moment({2000, 1, 2, 23, 59, 58, 0, 0, 0})}, "07d00102173b3a"},
      {"d_Date", {Moment({1999, 12, 31, 0, 0, 0, 0, 0, 0})}, "07cf0c1f"},
      {"d_Time", {Moment({0, 0, 0, 1, 2, 3, 4, -5, 30})}, "fb1e01020304"},
      {"d_Timestamp", {Moment({1999, 12, 31, 1, 2, 3, 4, 0, 0})}, "07cf0c1f000001020304"},
      {"OtObjId", {Identity({7, 0x01020304, 0x0506, 0, 0, 0})}, "00000007010203040506"},
      {"OtObjId", {Identity({7, 1, 0x10000, 0, 0, 0})}, nullptr},
      {"OtClassId", {Identity({0, 0, 0, 0, 3, 4})}, "00030004"},
      {"OtClassId", {Null(OT95_KIND_IDENTITY)}, "ffffffff"},
      {"OtRef", {Identity({7, 1, 2, 3, 4, 0})}, "0000000700000001000200030004"},
      {"OtBlob",
       {Blob("ab", 2), Null(OT95_KIND_BYTES), Blob("", 0)},
       "0000000e000000026162ffffffff00000000"},
  };
  for (const NativeRow& row : rows) {
    const int type = TypeOf(row.type);
    const Given stored = Give([&](ot95_buffer* out) {
      return ot95_encode(type, row.values.data(), row.values.size(), OT95_FORM_BIG_ENDIAN, out);
    });
    ASSERT_EQ(stored.status, row.stored ? OT95_OK : OT95_ERR_VALUE) << row.type;
    if (row.stored == nullptr) continue;
    EXPECT_EQ(stored.Hex(), row.stored) << row.type;
    std::vector<ot95_value> values(row.values.size());
    const ot95_array array = ArrayOf(type, OT95_FORM_BIG_ENDIAN, stored.bytes, row.values.size());
    ASSERT_EQ(ot95_decode(&array, values.data()), OT95_OK);
    for (size_t i = 0; i < values.size(); ++i) {
      EXPECT_TRUE(Same(values[i], row.values[i])) << row.type << " " << i;
    }
  }
}

TEST(Native, NeedTheKindOfTheType) {
  unsigned char room[8];
  ot95_buffer out = {room, sizeof room, 0};
  const ot95_value real = Real(1);
  EXPECT_EQ(ot95_encode(TypeOf("short"), &real, 1, 1, &out), OT95_ERR_ARGUMENT);
  EXPECT_EQ(ot95_encode(TypeOf("OtString"), &real, 1, 1, &out), OT95_ERR_NOT_SUPPORTED);
  EXPECT_EQ(ot95_encode(TypeOf("double"), &real, 0, 1, &out), OT95_ERR_ARGUMENT);
  EXPECT_EQ(ot95_encode(TypeOf("double"), &real, ~size_t{0}, 1, &out), OT95_ERR_ARGUMENT);
}

// ---------------------------------------------------------------------------------------------
// Stored values

TEST(Stored, MoveToOtherForms) {
  const int type = TypeOf("OtString");
  const Given native = Scanned(type,
                               {"Orl\xc3\xa9"
                                "ans"},
                               OT95_FORM_NATIVE);
  const ot95_array array = ArrayOf(type, OT95_FORM_NATIVE, native.bytes);
  const auto moved = [&](unsigned form) {
    return Give([&](ot95_buffer* out) { return ot95_translate(&array, form, out); });
  };
  EXPECT_EQ(moved(OT95_FORM_BIG_ENDIAN), Scanned(type,
                                                 {"Orl\xc3\xa9"
                                                  "ans"},
                                                 OT95_FORM_BIG_ENDIAN));
  const Given key = moved(OT95_FORM_BIG_ENDIAN | OT95_FORM_KEY);
  EXPECT_EQ(key.bytes.substr(2, 1), "\xfe");
  EXPECT_EQ(key.bytes.size(), native.bytes.size());
  // A key in less room is cut, and still a key.
  unsigned char room[10];
  ot95_buffer out = {room, sizeof room, 0};
  EXPECT_EQ(ot95_translate(&array, OT95_FORM_BIG_ENDIAN | OT95_FORM_KEY, &out), OT95_ERR_ROOM);
  EXPECT_EQ(out.size, key.bytes.size());
  EXPECT_EQ(Hex(room + 2, 8), Hex(key.bytes.data() + 2, 8));
  const ot95_array cut = {type, OT95_FORM_BIG_ENDIAN | OT95_FORM_KEY, room, sizeof room, 1};
  EXPECT_EQ(ot95_verify(&cut, nullptr), OT95_OK);
  EXPECT_EQ(Printed(cut, 0).status, OT95_ERR_ENDS);
}

TEST(Stored, TellTheirSizeInAForm) {
  const Given three = Scanned(TypeOf("OtNull_int"), {"1", "2", "{NULL}"}, OT95_FORM_NATIVE);
  const ot95_array array = ArrayOf(TypeOf("OtNull_int"), OT95_FORM_NATIVE, three.bytes, 3);
  size_t size = 0, end = 0;
  EXPECT_EQ(ot95_size(&array, OT95_FORM_BIG_ENDIAN, &size), OT95_OK);
  EXPECT_EQ(size, 15u);
  ot95_array damaged = array;
  damaged.size = 12;
  EXPECT_EQ(ot95_verify(&damaged, &end), OT95_ERR_ENDS);
  EXPECT_EQ(end, 10u);
}

TEST(Stored, BecomeValuesOfOtherTypes) {
  ot95_scan_options latin = {sizeof latin, 1, 1, nullptr, 0};
  const Given text = Scanned(TypeOf("OtString"), {"-7", "{NULL}"}, OT95_FORM_NATIVE, &latin);
  const ot95_array array = ArrayOf(TypeOf("OtString"), OT95_FORM_NATIVE, text.bytes, 2);
  const Given number = Give([&](ot95_buffer* out) {
    return ot95_convert(&array, TypeOf("OtNull_short"), OT95_FORM_BIG_ENDIAN, out);
  });
  EXPECT_EQ(number.Hex(), "00fff9010000");
}

TEST(Stored, DefaultsAreMade) {
  const auto made = [](const char* type, int nullable) {
    return Give([&](ot95_buffer* out) {
             return ot95_default(TypeOf(type), nullable, OT95_FORM_BIG_ENDIAN, out);
           })
        .Hex();
  };
  EXPECT_EQ(made("OtNull_short", 1), "010000");
  EXPECT_EQ(made("short", 0), "0000");
  EXPECT_EQ(made("OtString", 1), "000400fe00ff");
}

// ---------------------------------------------------------------------------------------------
// Comparison and planning

struct CompareRow {
  const char* type;
  const char* a;
  const char* b;
  unsigned options;
  int sign;
};

TEST(Comparison, FollowsTypeAndOptions) {
  const CompareRow rows[] = {
      {"short", "-2", "1", 0, -1},
      {"OtWord", "65535", "1", 0, 1},
      {"OtString", "abc", "ABC", 0, -1},
      {"OtString", "abc", "ABC", OT95_IGNORE_CASE, 0},
      {"OtString", "\xc3\xa9", "e", OT95_IGNORE_ACCENT, 0},
      {"OtString", "a b", "ab", OT95_IGNORE_SPACE, 0},
      {"OtString", "a-b", "ab", OT95_IGNORE_SYMBOLS, 0},
      {"OtString", "abc", "a*", 0, 1},
      {"OtString", "abc", "a*", OT95_WILDCARDS, 0},
      {"OtNull_int", "{NULL}", "-5", 0, -1},
  };
  for (const CompareRow& row : rows) {
    const int type = TypeOf(row.type);
    const Given a = Scanned(type, {row.a}, 1), b = Scanned(type, {row.b}, 1);
    const ot95_array first = ArrayOf(type, 1, a.bytes), second = ArrayOf(type, 1, b.bytes);
    int sign = 7, matches = 7;
    EXPECT_EQ(ot95_compare(&first, &second, row.options, &sign), OT95_OK);
    EXPECT_EQ(sign, row.sign) << row.type << " " << row.a << " " << row.b;
    EXPECT_EQ(ot95_match(&first, &first, row.options, &matches), OT95_OK);
    EXPECT_EQ(matches, 1);
  }
}

TEST(Comparison, RefusesWhatDoesntGoTogether) {
  const Given word = Scanned(TypeOf("short"), {"1"}, 1);
  ot95_array a = ArrayOf(TypeOf("short"), 1, word.bytes), b = a;
  int sign = 0;
  b.form = OT95_FORM_BIG_ENDIAN;
  EXPECT_EQ(ot95_compare(&a, &b, 0, &sign), OT95_ERR_ARGUMENT);
  b = a;
  b.type = TypeOf("OtWord");
  EXPECT_EQ(ot95_compare(&a, &b, 0, &sign), OT95_ERR_ARGUMENT);
  EXPECT_EQ(ot95_compare(&a, &a, 0x10, &sign), OT95_ERR_ARGUMENT);
  b = a;
  b.size = 1;
  EXPECT_EQ(ot95_compare(&a, &b, 0, &sign), OT95_ERR_ENDS);
  b.count = 0;
  EXPECT_EQ(ot95_compare(&a, &b, 0, &sign), OT95_ERR_ARGUMENT);
}

/// The keys of two values order as the values do, and a value lies in the range of what it matches.
TEST(SortKeys, OrderAsTheValues) {
  const CompareRow rows[] = {
      {"short", "-2", "1", 0, -1},
      {"OtNull_int", "{NULL}", "-5", 0, -1},
      {"OtString", "abd", "abc", 0, 1},
      {"OtString", "abc", "ABC", 0, -1},
      {"OtString", "abc", "ABC", OT95_IGNORE_CASE, 0},
      {"OtIString", "abc", "abd", 0, -1},
  };
  for (const CompareRow& row : rows) {
    const int type = TypeOf(row.type);
    std::string keys[2];
    uint64_t hashes[2] = {};
    for (int side = 0; side < 2; ++side) {
      const Given stored = Scanned(type, {side == 0 ? row.a : row.b}, OT95_FORM_BIG_ENDIAN);
      const ot95_array array = ArrayOf(type, OT95_FORM_BIG_ENDIAN, stored.bytes);
      keys[side] =
          Give([&](ot95_buffer* out) { return ot95_sort_key(&array, row.options, out); }).bytes;
      EXPECT_EQ(ot95_hash64(&array, row.options, 95, &hashes[side]), OT95_OK);
      unsigned char lower[300], upper[300];
      ot95_buffer from = {lower, sizeof lower, 0}, to = {upper, sizeof upper, 0};
      EXPECT_EQ(ot95_sort_range(&array, OT95_EQUAL | row.options, row.options, &from, &to),
                OT95_OK);
      EXPECT_LE(std::string(lower, lower + from.size), keys[side]);
      EXPECT_GT(std::string(upper, upper + to.size), keys[side]);
    }
    const int order = (keys[0] > keys[1]) - (keys[0] < keys[1]);
    EXPECT_EQ(order, row.sign) << row.type << " " << row.a << " " << row.b;
    EXPECT_EQ(hashes[0] == hashes[1], row.sign == 0);
  }
}

TEST(SortKeys, AreCutWhereTheRoomEnds) {
  const Given stored = Scanned(TypeOf("OtString"), {"Orleans"}, OT95_FORM_NATIVE);
  const ot95_array array = ArrayOf(TypeOf("OtString"), OT95_FORM_NATIVE, stored.bytes);
  const Given whole = Give([&](ot95_buffer* out) { return ot95_sort_key(&array, 0, out); });
  char room[3] = {};
  ot95_buffer out = {room, sizeof room, 0};
  EXPECT_EQ(ot95_sort_key(&array, 0, &out), OT95_ERR_ROOM);
  EXPECT_EQ(out.size, whole.bytes.size());
  EXPECT_EQ(Hex(room, sizeof room), whole.Hex().substr(0, 6));
}

TEST(SortKeys, OfANotANumberStandAtOneEnd) {
  const std::string bytes("\x7f\xc0\x00\x00", 4);
  const ot95_array array = ArrayOf(TypeOf("float"), OT95_FORM_BIG_ENDIAN, bytes);
  unsigned char room[8];
  ot95_buffer out = {room, sizeof room, 0};
  uint64_t hash = 0;
  EXPECT_EQ(ot95_sort_key(&array, 0, &out), OT95_ERR_NOT_SUPPORTED);
  EXPECT_EQ(out.size, 4u);
  EXPECT_EQ(ot95_hash64(&array, 0, 0, &hash), OT95_ERR_NOT_SUPPORTED);
}

TEST(Planning, GivesShareAndLimits) {
  const int type = TypeOf("short");
  const Given operand = Scanned(type, {"60"}, OT95_FORM_BIG_ENDIAN);
  const Given low = Scanned(type, {"0"}, OT95_FORM_BIG_ENDIAN);
  const Given high = Scanned(type, {"99"}, OT95_FORM_BIG_ENDIAN);
  const ot95_array array = ArrayOf(type, OT95_FORM_BIG_ENDIAN, operand.bytes);
  const ot95_span ends[] = {Span(low.bytes), Span(high.bytes)};
  ot95_estimate_result result = {};
  result.struct_size = sizeof result;
  ASSERT_EQ(ot95_estimate(&array, OT95_GREATER, &ends[0], &ends[1], &result), OT95_OK);
  EXPECT_NEAR(result.share, 0.39, 0.001);
  EXPECT_EQ(Hex(result.lower, result.lower_size), "003c");
  EXPECT_EQ(result.upper_size, 0u);
  EXPECT_EQ(ot95_estimate(&array, 0, nullptr, nullptr, &result), OT95_ERR_ARGUMENT);
  EXPECT_EQ(ot95_estimate(&array, OT95_LESS, &ends[0], nullptr, &result), OT95_ERR_ARGUMENT);
}

// ---------------------------------------------------------------------------------------------
// Text without a record

class Collation {
 public:
  explicit Collation(const char* tag, unsigned options = 0) {
    EXPECT_EQ(ot95_collation_open(tag, options, &collation_), OT95_OK) << tag;
  }
  ~Collation() { ot95_free(collation_); }
  Collation(const Collation&) = delete;
  Collation& operator=(const Collation&) = delete;

  const ot95_collation* get() const { return collation_; }
  int Compare(const std::string& a, const std::string& b) const {
    int sign = 7;
    const int status =
        ot95_collation_compare(collation_, a.data(), a.size(), b.data(), b.size(), &sign);
    return status != OT95_OK ? status : sign;
  }
  int Match(const std::string& text, const std::string& pattern) const {
    int matches = 7;
    EXPECT_EQ(ot95_collation_match(collation_, text.data(), text.size(), pattern.data(),
                                   pattern.size(), &matches),
              OT95_OK);
    return matches;
  }
  std::string Key(const std::string& text) const {
    return Give([&](ot95_buffer* out) {
             return ot95_collation_key(collation_, text.data(), text.size(), out);
           })
        .bytes;
  }
  uint64_t Hash(const std::string& text, uint64_t seed) const {
    uint64_t hash = 0;
    EXPECT_EQ(ot95_collation_hash(collation_, text.data(), text.size(), seed, &hash), OT95_OK);
    return hash;
  }
  /// Whether the key of a text lies in the range of a pattern.
  bool Holds(const std::string& pattern, const std::string& text) const {
    char lower[600], upper[600];
    ot95_buffer from = {lower, sizeof lower, 0}, to = {upper, sizeof upper, 0};
    EXPECT_EQ(ot95_collation_range(collation_, pattern.data(), pattern.size(), &from, &to),
              OT95_OK);
    const std::string key = Key(text);
    return key >= std::string(lower, from.size) &&
           (to.size == 0 || key < std::string(upper, to.size));
  }
  /// Bytes before the place; -1 for none.
  long Find(const std::string& text, const std::string& sought) const {
    int found = 7;
    std::size_t place = 7;
    const int status = ot95_collation_find(collation_, text.data(), text.size(), sought.data(),
                                           sought.size(), &found, &place);
    if (status != OT95_OK) return status * 1000;
    return found != 0 ? static_cast<long>(place) : -1;
  }
  std::string Upper(const std::string& text) const {
    return Give([&](ot95_buffer* out) {
             return ot95_collation_upper(collation_, text.data(), text.size(), out);
           })
        .bytes;
  }
  std::string Lower(const std::string& text) const {
    return Give([&](ot95_buffer* out) {
             return ot95_collation_lower(collation_, text.data(), text.size(), out);
           })
        .bytes;
  }

 private:
  ot95_collation* collation_ = nullptr;
};

TEST(Collations, CompareByLanguageAndOptions) {
  const std::string umlaut = "\xc3\xa4";
  EXPECT_EQ(Collation("sv").Compare(umlaut, "z"), 1);
  EXPECT_EQ(Collation("de").Compare(umlaut, "z"), -1);
  EXPECT_EQ(Collation(nullptr).Compare("a", "A"), -1);
  EXPECT_EQ(Collation("", OT95_IGNORE_CASE).Compare("a", "A"), 0);
  EXPECT_EQ(Collation("de", OT95_IGNORE_ACCENT).Compare(umlaut, "a"), 0);
  EXPECT_EQ(Collation("de").Compare("", ""), 0);
  EXPECT_EQ(Collation("de").Compare("a*", "abc"), Collation("de").Compare("a", "abc"));
  EXPECT_EQ(Collation("de").Compare("\xff", "a"), OT95_ERR_TEXT);
  const std::string longText(5000, 'x');
  EXPECT_EQ(Collation("de").Compare(longText + "a", longText + "b"), -1);
  ot95_collation* none = nullptr;
  EXPECT_EQ(ot95_collation_open("xx-nobody", 0, &none), OT95_ERR_LANGUAGE);
  EXPECT_EQ(ot95_collation_open("sv", OT95_WILDCARDS, &none), OT95_ERR_ARGUMENT);
}

TEST(Collations, MakeKeysRangesAndHashes) {
  const Collation swedish("sv", OT95_IGNORE_CASE), german("de");
  const std::string umlaut = "\xc3\xa4";
  EXPECT_GT(swedish.Key(umlaut), swedish.Key("z"));
  EXPECT_LT(german.Key(umlaut), german.Key("z"));
  EXPECT_EQ(swedish.Key("ORSA"), swedish.Key("Orsa"));
  EXPECT_NE(german.Key("ORSA"), german.Key("Orsa"));
  EXPECT_EQ(swedish.Hash("ORSA", 1), swedish.Hash("Orsa", 1));
  EXPECT_NE(swedish.Hash("Orsa", 2), swedish.Hash("Orsa", 1));
  EXPECT_TRUE(swedish.Holds("or*", "Orsa"));
  EXPECT_FALSE(swedish.Holds("or*", "Osra"));
  EXPECT_FALSE(swedish.Key("").empty());
  // A key is the one of the same text as a stored value.
  ot95_scan_options options = {sizeof options, 253, 0, nullptr, 0};
  ot95_language_by_tag("de", &options.language);
  const std::string name =
      "Stra\xc3\x9f"
      "e";
  const Given stored = Scanned(TypeOf("OtString"), {name}, OT95_FORM_NATIVE, &options);
  const ot95_array array = ArrayOf(TypeOf("OtString"), OT95_FORM_NATIVE, stored.bytes);
  EXPECT_EQ(german.Key(name),
            Give([&](ot95_buffer* out) { return ot95_sort_key(&array, 0, out); }).bytes);
}

TEST(Collations, MatchPatterns) {
  EXPECT_EQ(Collation("en", OT95_IGNORE_CASE).Match("Orleans", "orl*"), 1);
  EXPECT_EQ(Collation("en").Match("Orleans", "Orl?ans"), 1);
  EXPECT_EQ(Collation("en").Match("Orleans", "orl*x"), 0);
}

TEST(Collations, FindTexts) {
  const unsigned letters = OT95_IGNORE_CASE | OT95_IGNORE_ACCENT;
  const std::string text =
      "Stra\xc3\x9f"
      "e am \xc3\x84rger";
  EXPECT_EQ(Collation("de", letters).Find(text, "arger"), 11);
  EXPECT_EQ(Collation("sv", letters).Find(text, "arger"), -1);
  EXPECT_EQ(Collation("de", letters).Find(text, "SSE"), 4);
  EXPECT_EQ(Collation("de").Find(text, "strasse"), -1);
  EXPECT_EQ(Collation("de").Find(text, "a*"), -1);
  EXPECT_EQ(Collation("de").Find(text, ""), -1);
  EXPECT_EQ(Collation("de").Find("\xff", "a"), OT95_ERR_TEXT * 1000);
  int found = 0;
  EXPECT_EQ(ot95_collation_find(nullptr, "a", 1, "a", 1, &found, nullptr), OT95_ERR_ARGUMENT);
}

TEST(Collations, ChangeCaseByLanguage) {
  EXPECT_EQ(Collation("de").Upper("stra\xc3\x9f"
                                  "e"),
            "STRASSE");
  EXPECT_EQ(Collation("de").Lower("\xc3\x84RGER"), "\xc3\xa4rger");
  EXPECT_EQ(Collation("tr").Upper("i"), "\xc4\xb0");
  EXPECT_EQ(Collation("de").Upper(""), "");
  const std::string sharps(3000, '\x9f');
  std::string text;
  for (char c : sharps) text += std::string("\xc3") + c;
  EXPECT_EQ(Collation("de").Upper(text), std::string(6000, 'S'));
}

TEST(Collations, EditsAreRefusedThatHaveNoMeaning) {
  const Collation collation("de");
  const std::string text = "text";
  const ot95_edit good = {sizeof good, OT95_EXPAND, Span(text), {"x", 1}, {"", 0}, 0, 6};
  const auto status = [&](const ot95_edit& edit) {
    return Give([&](ot95_buffer* out) { return ot95_collation_edit(collation.get(), &edit, out); })
        .status;
  };
  EXPECT_EQ(status(good), OT95_OK);
  ot95_edit bad[] = {good, good, good, good, good, good};
  bad[0].operation = OT95_EXPAND + 1;
  bad[1].place = 65536;
  bad[2].count = 40000;
  bad[3].count = OT95_REST;
  bad[4].with = {"xy", 2};
  bad[5].struct_size = 8;
  for (const ot95_edit& edit : bad) EXPECT_EQ(status(edit), OT95_ERR_ARGUMENT);
  bad[0] = good;
  bad[0].text = {"\xff", 1};
  EXPECT_EQ(status(bad[0]), OT95_ERR_TEXT);
}

TEST(Arithmetic, TellsOfOverflow) {
  constexpr int64_t kLeast = INT64_MIN, kMost = INT64_MAX;
  const struct {
    int operation;
    int64_t a, b;
    int status;
    int64_t result;
  } cases[] = {{OT95_ADD, kMost, 1, OT95_ERR_VALUE, kLeast},
               {OT95_ADD, kMost, -1, OT95_OK, kMost - 1},
               {OT95_SUBTRACT, kLeast, 1, OT95_ERR_VALUE, kMost},
               {OT95_MULTIPLY, kMost, 2, OT95_ERR_VALUE, -2},
               {OT95_MULTIPLY, 1 << 20, -(1 << 20), OT95_OK, -(int64_t{1} << 40)},
               {OT95_DIVIDE, kLeast, -1, OT95_ERR_VALUE, kLeast},
               {OT95_DIVIDE, -7, 2, OT95_OK, -3},
               {OT95_DIVIDE, 1, 0, OT95_ERR_ARGUMENT, 5},
               {OT95_REMAINDER, kLeast, -1, OT95_OK, 0},
               {OT95_REMAINDER, -7, 2, OT95_OK, -1},
               {OT95_SHIFT_LEFT, 1, 62, OT95_OK, int64_t{1} << 62},
               {OT95_SHIFT_LEFT, 1, 63, OT95_ERR_VALUE, kLeast},
               {OT95_SHIFT_LEFT, 0, 100, OT95_OK, 0},
               {OT95_SHIFT_LEFT, -1, 63, OT95_OK, kLeast},
               {OT95_SHIFT_LEFT, 1, 64, OT95_ERR_VALUE, 0},
               {OT95_SHIFT_LEFT, 1, -1, OT95_ERR_ARGUMENT, 5},
               {OT95_SHIFT_RIGHT, -8, 200, OT95_OK, -1},
               {OT95_NEGATE, kLeast, 0, OT95_ERR_VALUE, kLeast},
               {OT95_ABSOLUTE, -9, 0, OT95_OK, 9},
               {OT95_ABSOLUTE, kLeast, 0, OT95_ERR_VALUE, kLeast},
               {OT95_ABSOLUTE + 1, 1, 1, OT95_ERR_ARGUMENT, 5}};
  for (const auto& one : cases) {
    int64_t result = 5;
    EXPECT_EQ(ot95_int64(one.operation, one.a, one.b, &result), one.status);
    EXPECT_EQ(result, one.result) << one.operation << " " << one.a << " " << one.b;
  }
}

TEST(Collations, AreSharedByThreads) {
  const Collation collation("fr");
  const auto work = [&collation] {
    for (int i = 0; i < 2000; ++i) {
      const std::string a = "c\xc3\xb4t\xc3\xa9 " + std::to_string(i);
      const std::string b = "cot\xc3\xa9 " + std::to_string(i);
      const int type = TypeOf("OtString");
      const Given stored = Scanned(type, {a, b}, OT95_FORM_NATIVE);
      const ot95_array array = ArrayOf(type, OT95_FORM_NATIVE, stored.bytes, 2);
      if (collation.Compare(a, b) != 1 || Printed(array, 1).bytes != b ||
          collation.Upper(b) != "COT\xc3\x89 " + std::to_string(i)) {
        ADD_FAILURE() << i;
      }
    }
  };
  std::thread threads[] = {std::thread(work), std::thread(work), std::thread(work)};
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
