// Identifiers and references: values, stored forms, text.

#include "ot95/identity.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <set>
#include <string>

#include "bytes_testing.h"
#include "ot95/text.h"
#include "ot95/typemgr.h"

namespace {

constexpr char kObjId = 15, kClassId = 16, kRef = 17;

OtRef MakeRef(unsigned block, unsigned low, int high, int database, int number, int version) {
  OtRef ref;
  ref.blockId = block;
  ref.lowPart = low;
  ref.highPart = static_cast<std::uint16_t>(high);
  ref.databaseId = static_cast<std::uint16_t>(database);
  ref.classNumber = static_cast<std::uint16_t>(number);
  ref.classVersion = static_cast<std::uint16_t>(version);
  return ref;
}

std::string AllFields(const OtRef& ref) {
  std::string text;
  for (const unsigned field :
       {ref.blockId, ref.lowPart, unsigned{ref.highPart}, unsigned{ref.databaseId},
        unsigned{ref.classNumber}, unsigned{ref.classVersion}}) {
    text += std::to_string(field) + ' ';
  }
  return text;
}

OtClassId Class(int number, int version) {
  return {static_cast<std::uint16_t>(number), static_cast<std::uint16_t>(version)};
}

std::string Text(const OtString& text) {
  return text.StrGet();
}

template <class T, class = void>
constexpr bool kTakesNothing = false;
template <class T>
constexpr bool kTakesNothing<T, std::void_t<decltype(std::declval<T&>() = {})>> = true;
static_assert(!kTakesNothing<OtRef> && kTakesNothing<OtClassId>, "nothing isn't database 0");

TEST(Identity, FieldsLieWhereRecordsExpectThem) {
  EXPECT_EQ(offsetof(OtRef, databaseId), 12U);
  EXPECT_EQ(offsetof(OtRef, classNumber), 16U);
  EXPECT_EQ(offsetof(OtRef, classVersion), 18U);
  EXPECT_EQ(offsetof(OtDBOId, databaseId), 12U);
  EXPECT_EQ(offsetof(OtLocalRef, classVersion), 14U);
}

TEST(Identity, SerialNumbersCarryAndBorrow) {
  const struct {
    const char* name;
    unsigned low;
    int high, delta;
    unsigned lowAfter;
    int highAfter;
  } rows[] = {
      {"carry", 0xffffffff, 3, 1, 0, 4},
      {"borrow", 0, 3, -1, 0xffffffff, 2},
      {"plain", 5, 3, -1, 4, 3},
      {"nothing", 7, 7, 0, 7, 7},
      {"wrap up", 0xffffffff, 0xffff, 1, 0, 0},
      {"wrap down", 0, 0, -1, 0xffffffff, 0xffff},
      {"far up", 0xffff9000, 1, 32767, 0x00000fff, 2},
      {"far down", 0x7fff, 1, -32768, 0xffffffff, 0},
  };
  for (const auto& row : rows) {
    OtObjId id{99, row.low, static_cast<std::uint16_t>(row.high)};
    OtObjId stepped = id;
    id += static_cast<short>(row.delta);
    EXPECT_EQ(id.lowPart, row.lowAfter) << row.name;
    EXPECT_EQ(id.highPart, row.highAfter) << row.name;
    EXPECT_EQ(id.blockId, 99U) << row.name;
    if (row.delta == 1) {
      EXPECT_EQ(++stepped, id) << row.name;
    }
    if (row.delta == -1) {
      EXPECT_EQ(--stepped, id) << row.name;
    }
  }
  OtObjId highest{5, 0, 0};
  highest.SetHighestValue();
  EXPECT_EQ(highest, (OtObjId{0, 0xffffffff, 0xffff}));
  EXPECT_EQ(highest.blockId, 0U);
}

TEST(Identity, ComparesThreeWays) {
  const OtObjId a{1, 10, 2}, sameElsewhere{9, 10, 2}, greater{0, 0, 3};
  EXPECT_EQ(a == sameElsewhere, 1);
  EXPECT_EQ(a != sameElsewhere, 0);
  EXPECT_EQ(a != greater, -1);
  EXPECT_EQ(greater != a, 1);

  const OtDBOId home{1, 10, 2, 0}, away{1, 10, 2, 3};
  EXPECT_EQ(a == away, 1);  // An OtObjId ignores the database,
  EXPECT_EQ(away == a, 0);  // an OtDBOId does not.
  EXPECT_EQ(away != greater, 1);
  EXPECT_EQ(home == a, 1);
  EXPECT_EQ(home != greater, -1);
  EXPECT_EQ(away != (OtDBOId{0, 99, 99, 2}), 1);  // The database decides first,

  OtRef low = MakeRef(0, 1, 0, 9, 4, 4), high = MakeRef(0, 2, 0, 1, 4, 4);
  EXPECT_EQ(low != high, -1);  // and in an OtRef last.
  high.lowPart = 1;
  EXPECT_EQ(low != high, 1);
  high.databaseId = 9;
  high.classNumber = 5;
  EXPECT_EQ(low == high, 1);

  OtLocalRef local;
  local = low;
  EXPECT_EQ(local != low, -1);
  EXPECT_EQ(local == low, 0);
  low.databaseId = 0;
  EXPECT_EQ(local == low, 1);
  OtRef back;
  back = local;
  EXPECT_EQ(back.databaseId, 0);
  EXPECT_EQ(back.classVersion, 4);
}

TEST(Identity, SuitsOrderedContainers) {
  const OtObjId serial{0, 1, 1};
  const std::set<OtObjId> objects{{5, 1, 1}, serial, {0, 1, 0}, {0, 0, 1}};
  EXPECT_EQ(objects.size(), 3U);
  EXPECT_EQ(objects.begin()->highPart, 0);
  const std::set<OtDBOId> stored{{0, 9, 9, 1}, {7, 9, 9, 1}, {0, 1, 1, 2}};
  EXPECT_EQ(stored.size(), 2U);
  EXPECT_EQ(stored.begin()->databaseId, 1);
  const std::set<OtClassId> classes{Class(0, 0), Class(0xffff, 0xffff), Class(1, 2), Class(1, 2)};
  EXPECT_EQ(classes.size(), 3U);
  EXPECT_EQ(classes.begin()->classNumber, 0xffff);
  const std::set<OtRef> references{MakeRef(0, 1, 0, 9, 4, 4), MakeRef(3, 1, 0, 9, 5, 5),
                                   MakeRef(0, 2, 0, 1, 4, 4)};
  EXPECT_EQ(references.size(), 2U);
  EXPECT_EQ(references.begin()->lowPart, 1U);
}

TEST(Identity, ANullClassOrdersFirst) {
  const OtClassId null = Class(0xffff, 0xffff), zero, half = Class(0xffff, 1);
  EXPECT_EQ(null != zero, -1);
  EXPECT_EQ(null > zero, 0);
  EXPECT_EQ(zero != null, 1);
  EXPECT_EQ(zero > null, 1);
  EXPECT_EQ(null != null, 0);
  EXPECT_EQ(half != zero, 1);
  EXPECT_EQ(Class(1, 9) != Class(2, 0), -1);
  EXPECT_EQ(Class(2, 9) != Class(2, 0), 1);
}

TEST(Identity, ReferencesKnowWhetherTheyAreValid) {
  const struct {
    const char* name;
    OtRef ref;
    int invalid, invalidOrigin;
  } rows[] = {
      {"empty", MakeRef(1, 0, 0, 0xffff, 3, 3), 1, 1},
      {"plain", MakeRef(1, 2, 0, 1, 3, 3), 0, 0},
      {"without class", MakeRef(1, 2, 0, 1, 0, 3), 1, 1},
      {"origin without class", MakeRef(1, 2, 0, 0xffff, 0, 0), 1, 0},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.ref.IsInvalid(), row.invalid) << row.name;
    EXPECT_EQ(row.ref.IsValid(), !row.invalid) << row.name;
    EXPECT_EQ(row.ref.IsInvalidOriginId(), row.invalidOrigin) << row.name;
    EXPECT_EQ(row.ref.IsValidOriginId(), !row.invalidOrigin) << row.name;
  }
}

TEST(Identity, StoredFormsArePinned) {
  OtObjId id{0x11223344, 0x01020304, 0x0506};
  OtClassId cls = Class(0x1234, 0x5678);
  OtRef ref = MakeRef(0x11223344, 0x01020304, 0x0506, 0x0708, 0x090a, 7);
  const struct {
    char type;
    void* value;
    unsigned char format;
    const char* stored;
  } rows[] = {
      {kObjId, &id, OT_FORMAT_NATIVE, "44332211040302010605"},
      {kObjId, &id, OT_FORMAT_BIG_ENDIAN, "11223344010203040506"},
      {kObjId, &id, 0xf2, "11223344010203040506"},
      {kClassId, &cls, OT_FORMAT_NATIVE, "34127856"},
      {kClassId, &cls, OT_FORMAT_BIG_ENDIAN, "12345678"},
      {kRef, &ref, OT_FORMAT_NATIVE, "4433221104030201060508070a09"},
      {kRef, &ref, OT_FORMAT_BIG_ENDIAN, "1122334401020304050607 08090a"},
  };
  OtTypeMgr types;
  for (const auto& row : rows) {
    const ExactBlock expected(Unhex(row.stored));
    const ExactBlock disk(expected.size());
    EXPECT_EQ(types.DiskLenGet(row.type, row.value, row.format, 1, OT_FORMAT_MEMORY), disk.size());
    EXPECT_EQ(types.Store(row.type, disk.data(), row.value, row.format, 1), disk.size());
    EXPECT_EQ(Hex(disk.data(), disk.size()), Hex(expected.data(), expected.size()));
    void* loaded = types.Create(row.type, 1);
    EXPECT_EQ(types.Load(row.type, loaded, disk.data(), row.format, 1), disk.size());
    EXPECT_EQ(types.Cmp(row.type, loaded, row.value, 0, 1, OT_FORMAT_MEMORY), 0) << row.stored;
    if (row.type == kRef) {
      EXPECT_EQ(static_cast<OtRef*>(loaded)->classVersion, 0);
    }
    if (row.type == kRef) {
      EXPECT_EQ(static_cast<OtRef*>(loaded)->classNumber, 0x090a);
    }
    types.Delete(row.type, loaded, 1);
  }
}

TEST(Identity, StoredBytesCompareFromTheLastToTheFirst) {
  const char* a = "aaaaaaaa 04030201 0605";
  const struct {
    const char* name;
    char type;
    unsigned char format;
    unsigned long length1, length2, count;
    const char *bytes1, *bytes2;
    long result;
    int status;
  } rows[] = {
      {"other block", kObjId, 1, 0, 0, 1, a, "bbbbbbbb 04030201 0605", 0, 0},
      {"last byte decides", kObjId, 1, 0, 0, 1, a, "aaaaaaaa ffffffff 0604", 1, 0},
      {"raw difference", kObjId, 1, 0, 0, 1, "00000000 00000000 00ff", "00000000 00000000 0000",
       255, 0},
      {"big-endian bytes too", kObjId, 2, 0, 0, 1, "00000000 00000001 0000",
       "00000000 01000000 0000", 1, 0},
      {"database first", kRef, 1, 0, 0, 1, "00000000 09000000 0000 0100 0500",
       "00000000 01000000 0000 0200 0100", -1, 0},
      {"class ignored", kRef, 1, 0, 0, 1, "00000000 09000000 0000 0100 0500",
       "00000000 09000000 0000 0100 0600", 0, 0},
      {"number before version", kClassId, 1, 0, 0, 1, "0100ffff", "02000000", -1, 0},
      {"version", kClassId, 1, 0, 0, 1, "01000300", "01000200", 1, 0},
      {"null class first", kClassId, 1, 0, 0, 1, "ffffffff", "01000100", -1, 0},
      {"null class second", kClassId, 1, 0, 0, 1, "01000100", "ffffffff", 1, 0},
      {"null classes", kClassId, 1, 0, 0, 1, "ffffffff", "ffffffff", 0, 0},
      {"nulls first, more behind", kClassId, 1, 0, 0, 2, "ffffffff 02000000", "ffffffff 01000000",
       -1, 0},
      {"nulls first, in reverse", kClassId, 1, 0, 0, 2, "ffffffff 01000000", "ffffffff 02000000",
       -1, 0},
      {"first array ends", kClassId, 1, 4, 0, 2, "01000000", "01000000 01000000", 0, 2101},
      {"difference at the end", kClassId, 1, 4, 4, 2, "01000000", "02000000", -1, 2101},
      {"cut in the first", kObjId, 1, 3, 10, 1, "aaaaaa", "00000000 00000000 0000", 0, 0},
      {"cut in the number", kObjId, 1, 5, 10, 1, "aaaaaaaa 07", "aaaaaaaa 07000000 0000", 0, 0},
      {"cut in the second element", kClassId, 1, 5, 8, 2, "01000000 05", "01000000 05000000", 0, 0},
      {"nothing", kObjId, 1, 0, 0, 0, "", "", 0, 0},
  };
  OtTypeMgr types;
  for (const auto& row : rows) {
    const ExactBlock bytes1(Unhex(row.bytes1)), bytes2(Unhex(row.bytes2));
    int status = -1;
    EXPECT_EQ(types.Cmp(row.type, row.length1, bytes1.data(), row.length2, bytes2.data(), 0,
                        row.count, row.format, status),
              row.result)
        << row.name;
    EXPECT_EQ(status, row.status) << row.name;
  }
}

TEST(Identity, HashesTheSerialNumberAlone) {
  OtTypeMgr types;
  const auto hash = [&types](char type, void* value, unsigned long count, unsigned char format) {
    int status = -1;
    const unsigned long result = types.Hash(type, 0, value, count, format, status);
    EXPECT_EQ(status, 0);
    return result;
  };
  const std::uint32_t multiplier = 1103515245;
  OtObjId ids[] = {{1, 0x10000, 3}, {2, 0x10000, 3}};
  EXPECT_EQ(hash(kObjId, ids, 1, 8), static_cast<std::uint32_t>(0x10003U * multiplier));
  EXPECT_EQ(hash(kObjId, ids, 2, 8), 0U);
  EXPECT_EQ(hash(kObjId, nullptr, 0, 1), 0U);
  unsigned char disk[14];
  types.Store(kObjId, disk, ids, 1, 1);
  EXPECT_EQ(hash(kObjId, disk, 1, 1), hash(kObjId, ids, 1, 8));
  // A big-endian record is read least significant byte first all the same.
  types.Store(kObjId, disk, ids, 2, 1);
  EXPECT_EQ(hash(kObjId, disk, 1, 2), static_cast<std::uint32_t>(0x0200U * multiplier));
  OtRef ref = MakeRef(1, 5, 2, 9, 77, 78);
  EXPECT_EQ(hash(kRef, &ref, 1, 8), static_cast<std::uint32_t>((5U ^ 2U ^ 9U) * multiplier));
  OtClassId cls = Class(6, 3);
  EXPECT_EQ(hash(kClassId, &cls, 1, 8), static_cast<std::uint32_t>(5U * multiplier));
}

TEST(Identity, MovesBetweenForms) {
  OtTypeMgr types;
  OtObjId source[2] = {{1, 2, 3}, {4, 5, 6}}, target[2];
  unsigned char disk[24];
  EXPECT_EQ(types.Translate(kObjId, target, 8, 0, source, 8, 0, 2), 24U);
  EXPECT_EQ(target[1], source[1]);
  EXPECT_EQ(types.Translate(kObjId, disk, 2, 20, source, 8, 0, 2), 20U);
  EXPECT_EQ(types.Translate(kObjId, target, 8, 0, disk, 1, 20, 1), 10U);
  EXPECT_EQ(target[0].lowPart, 0x02000000U);
  std::memset(disk, 0xee, sizeof disk);
  const ExactBlock ten(Unhex("01020304050607080900"));
  EXPECT_EQ(types.Translate(kObjId, disk, 1, 14, ten.data(), 2, 10, 1), 10U);
  EXPECT_EQ(Hex(disk, 15), "0102030405060708090000000000ee");
}

TEST(Identity, PrintsByLetterAndByPlace) {
  OtObjId id{12, 4711, 0}, null{12, 0, 0};
  OtClassId cls = Class(7, 2), nullClass = Class(0xffff, 0xffff), half = Class(0xffff, 0);
  OtRef ref = MakeRef(1, 9, 0, 3, 22, 2);
  const struct {
    char type;
    void* value;
    const char *format, *text;
  } rows[] = {
      {kObjId, &id, nullptr, "(0-4711#12)"},
      {kObjId, &id, "%H/%L", "0/4711"},
      {kObjId, &id, "%%%H%X%C%", "%0XC"},
      {kObjId, &id, "%hu-%lu-%lu-%lu-%hu", "0-4711-12-0-0"},
      {kObjId, &id, "%lu", "0"},
      {kObjId, &id, "x%h", "x0"},
      {kObjId, &id, "", ""},
      {kObjId, &null, nullptr, "{NULL}"},
      {kClassId, &cls, nullptr, "(7v2)"},
      {kClassId, &cls, "%hu.%hu.%hu%l", "7.2.0l"},
      {kClassId, &nullClass, nullptr, "{NULL}"},
      {kClassId, &half, nullptr, "(65535v0)"},
      {kRef, &ref, nullptr, "(3:0-9#1, 22)"},
      {kRef, &ref, "(%hu:%hu-%lu#%lu, %hu)", "(3:0-9#1, 22)"},
      {kRef, &ref, "%V %n %s", "2 n s"},
  };
  OtTypeMgr types;
  for (const auto& row : rows) {
    OtString text("before");
    types.PrintToOtString(row.type, text, row.value, row.format, 1);
    EXPECT_EQ(Text(text), row.text) << (row.format ? row.format : "null");
  }
  OtString text;
  EXPECT_EQ(Text(OtRef::PrintToString(text, &ref, nullptr, 1)), "(3:0-9#1,22v2)");
  EXPECT_EQ(Text(ref.PrintToOtString(text, nullptr)), "(3:0-9#1, 22)");
  OtLocalRef local;
  EXPECT_EQ(Text((local = ref).PrintToOtString(text, nullptr)), "(0-9#1,22)");
  OtDBOId away{12, 4711, 0, 5};
  EXPECT_EQ(Text(away.PrintToOtString(text, nullptr)), "(0-4711#12)");
  const std::string wide(600, 'x');
  EXPECT_EQ(Text(id.PrintToOtString(text, wide.c_str())), std::string(511, 'x'));
}

TEST(Identity, ScansWhatItPrints) {
  const struct {
    const char* name;
    char type;
    const char *text, *format;
    OtRef fields;
  } rows[] = {
      {"object", kObjId, "(0-4711#12)", "(%H-%L#%B)", MakeRef(12, 4711, 0, 0, 0, 0)},
      {"any literal passes", kObjId, "x1y2z3", "(%H-%L#%B)", MakeRef(3, 2, 1, 0, 0, 0)},
      {"short text", kObjId, "(7", "(%H-%L#%B)", MakeRef(0, 0, 7, 0, 0, 0)},
      {"no numbers", kObjId, "abcdef", "(%H-%L#%B)", OtRef()},
      {"saturates", kObjId, "99999999999/99999999999", "%L/%H",
       MakeRef(0, 0xffffffff, 0xffff, 0, 0, 0)},
      {"white space isn't skipped behind", kObjId, " 5/6", "%L/%H", MakeRef(0, 5, 5, 0, 0, 0)},
      {"named twice, the second not a number", kObjId, "5x", "%L%L", MakeRef(0, 5, 0, 0, 0, 0)},
      {"reference", kRef, "(3:0-9#1, 22)", "(%D:%H-%L#%B, %C)", MakeRef(1, 9, 0, 3, 22, 0)},
      {"a blank wants a character", kRef, "(1:0-5#2,7)", "(%D:%H-%L#%B, %C)",
       MakeRef(2, 5, 0, 1, 0, 0)},
      {"places slip", kRef, "(31:2-9#1)", "(%hu:%hu-%lu)", MakeRef(0, 0, 1, 31, 0, 0)},
      {"place at the end", kObjId, "42", "%h", MakeRef(0, 0, 42, 0, 0, 0)},
      {"unknown letter skips", kObjId, "x9", "%V%L", MakeRef(0, 9, 0, 0, 0, 0)},
      {"percent skips", kObjId, "x9", "%%%L", MakeRef(0, 9, 0, 0, 0, 0)},
      {"class", kClassId, "(7v2)", "(%Cv%V)", MakeRef(0, 0, 0, 0, 7, 2)},
  };
  OtTypeMgr types;
  for (const auto& row : rows) {
    OtString text(row.text);
    OtObjId id{9, 9, 9};
    OtClassId cls = Class(9, 9);
    OtRef ref = MakeRef(9, 9, 9, 9, 9, 9);
    void* value = row.type == kObjId ? &id : row.type == kClassId ? static_cast<void*>(&cls) : &ref;
    EXPECT_EQ(types.ScanFromOtString(row.type, value, text, row.format, 1), value);
    if (row.type == kObjId) ref = OtRef(), ref = id;
    if (row.type == kClassId) ref = OtRef(), ref = cls;
    EXPECT_EQ(AllFields(ref), AllFields(row.fields)) << row.name;
  }
}

TEST(Identity, NullTextScansToNull) {
  OtRef ref = MakeRef(1, 2, 3, 4, 5, 6);
  ref.ScanFromOtString("{NULL}xyz", nullptr);
  EXPECT_EQ(ref.lowPart + ref.highPart + ref.blockId, 0U);
  EXPECT_EQ(ref.databaseId, 4);
  EXPECT_EQ(ref.classVersion, 6);
  OtClassId cls;
  cls.ScanFromOtString("{NULL}", nullptr);
  EXPECT_EQ(cls.classNumber & cls.classVersion, 0xffff);
  OtString wide("(1-2#3)");
  wide.SetCodeSet(OT_CS_UNICODE);
  OtObjId id;
  EXPECT_EQ(OtObjId::ScanFromString(&id, wide, nullptr, 1), &id);
  EXPECT_EQ(id.lowPart, 2U);
  EXPECT_EQ(OtObjId::ScanFromString(nullptr, wide, nullptr, 1), nullptr);
}

TEST(Identity, ConvertsThroughText) {
  OtTypeMgr types;
  OtClassId classes[2] = {Class(7, 2), Class(0xffff, 0xffff)};
  OtTypeConvertData* data = types.ConvertTo(kClassId, classes, 2);
  EXPECT_EQ(Text(*data->GetString(0)), "(7v2)");
  EXPECT_TRUE(data->GetString(1)->IsNullValue());
  auto* back = static_cast<OtClassId*>(types.ConvertFrom(kClassId, data, 2));
  EXPECT_EQ(back[0] != classes[0], 0);
  EXPECT_EQ(back[1].classVersion, 0xffff);
  types.Delete(kClassId, back, 2);
  delete data;
  for (const int nullable : {0, 1}) {
    void* value = types.DefaultValue(kClassId, 3, nullable);
    EXPECT_EQ(types.IsNullValue(kClassId, static_cast<OtClassId*>(value) + 2), nullable);
    types.Delete(kClassId, value, 3);
  }
}

TEST(Identity, EstimatesReferencesOnAFixedLine) {
  OtTypeMgr types;
  unsigned short op = OT_OP_EQUAL | 0x20;
  OtRef ref = MakeRef(1, 2, 3, 4, 5, 6);
  unsigned char disk[14];
  types.Store(kRef, disk, &ref, OT_FORMAT_NATIVE, 1);
  OtIdxBounds limits;
  EXPECT_EQ(types.EvalAndBound(kRef, nullptr, op, disk, OT_FORMAT_NATIVE, 1, &limits, nullptr),
            static_cast<float>(1 / 1.8446744065119617e19));
  EXPECT_EQ(op, OT_OP_EQUAL);
  EXPECT_EQ(limits.lowerKeyLength, 14);
  EXPECT_EQ(std::memcmp(limits.upperKey, disk, 14), 0);
  std::free(limits.lowerKey);
  std::free(limits.upperKey);
  op = OT_OP_LESS;
  EXPECT_EQ(types.EvalAndBound(kClassId, nullptr, op, disk, 1, 1, nullptr, nullptr), 1.0F);
  OtObjId low{0, 0, 0}, high{0, 99, 0}, middle{7, 49, 0};
  unsigned char lower[10], upper[10];
  OtObjId::Store(lower, &low, 2, 1);
  OtObjId::Store(upper, &high, 2, 1);
  OtObjId::Store(disk, &middle, 2, 1);
  OtIdxBounds bounds{lower, upper, 10, 10};
  EXPECT_FLOAT_EQ(types.EvalAndBound(kObjId, &bounds, op, disk, 2, 1, nullptr, nullptr), 0.49F);
}

}  // namespace
