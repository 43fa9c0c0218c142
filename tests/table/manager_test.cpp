// The table of types as an engine sees it, and the manager that leads to it.
#include "ot95/typemgr.h"

#include <gtest/gtest.h>

#include <set>
#include <utility>

#include "bytes_testing.h"
#include "ot95/ot95.h"

namespace {

constexpr bool k32Bit = sizeof(void*) == 4;

struct TypeFacts {
  const char* name;
  unsigned short memoryLength;
  int isFixed;
  const char* format;
  bool hasNull;
};

constexpr unsigned short kText = 2 * sizeof(void*);

const TypeFacts kTypes[] = {
    {"char", 1, 1, "%c", false},
    {"short", 2, 1, "%hd", false},
    {"long", 4, 1, "%ld", false},
    {"double", 8, 1, "%lf", false},
    {"float", 4, 1, "%f", false},
    {"OtWord", 2, 1, "%hu", false},
    {"OtDWord", 4, 1, "%lu", false},
    {"int", 4, 1, "%d", false},
    {"unsigned", 4, 1, "%u", false},
    {"enum", 4, 1, "%d", false},
    {"OtByte", 1, 1, "%c", false},
    {"OtString", k32Bit ? 8 : kText, 0, "%s", true},
    {"OtDate", 4, 1, "%a %e.%b %Y", true},
    {"OtTime", 3, 1, "%I:%M:%S %p", true},
    {"BlockId", 4, 1, "#%lu", false},
    {"OtObjId", 12, 1, "(%H-%L#%B)", true},
    {"OtClassId", 4, 1, "(%Cv%V)", true},
    {"OtRef", 20, 1, "(%D:%H-%L#%B, %C)", true},
    {"OtBlob", k32Bit ? 4 : sizeof(void*), 0, "[BLOB,len=%L]", true},
    {"OtDateTime", 8, 1, "%a %e.%b %Y %I:%M:%S %p", true},
    {"OtIString", k32Bit ? 8 : kText, 0, "%s", false},
    {"OtCaseIString", k32Bit ? 8 : kText, 0, "%s", false},
    {"d_Date", 4, 1, "%a %b %e", false},
    {"d_Time", 6, 1, "%I:%M:%S %p", false},
    {"d_Timestamp", 10, 1, "%a %b %e %I:%M:%S %p", false},
    {"d_Interval", 4, 1, "%e days, %I hours, %M minutes, %S seconds", false},
    {"OtInt64", 8, 1, "%S", false},
    {"OtBoolean", 1, 1, "noop", true},
    {"OtNull_char", 2, 1, "%c", true},
    {"OtNull_uchar", 2, 1, "%c", true},
    {"OtNull_short", 4, 1, "%hd", true},
    {"OtNull_ushort", 4, 1, "%hu", true},
    {"OtNull_int", 8, 1, "%d", true},
    {"OtNull_unsigned", 8, 1, "%u", true},
    {"OtNull_long", 8, 1, "%ld", true},
    {"OtNull_ulong", 8, 1, "%lu", true},
    {"OtNull_float", 8, 1, "%f", true},
    {"OtNull_double", 16, 1, "%lf", true},
    {"OtNull_OtInt64", 12, 1, "%S", true},
    {"OtSeal", 6, 1, "noop", false},
    {"illegal", 0, 1, "illegal", false},
};

TEST(Table, HasEveryTypeWithItsFacts) {
  OtTypeMgr types;
  for (char id = 0; id < 41; ++id) {
    const TypeFacts& facts = kTypes[static_cast<int>(id)];
    SCOPED_TRACE(facts.name);
    EXPECT_STREQ(types.NameGet(id, nullptr), facts.name);
    EXPECT_EQ(types.MemLenGet(id, 1), facts.memoryLength);
    EXPECT_EQ(types.IsFixed(id), facts.isFixed);
    EXPECT_STREQ(types.ExchangeFormat(id, nullptr), facts.format);
    EXPECT_EQ(types.SupportsNullValue(id), facts.hasNull);
  }
  EXPECT_EQ(CurrentFactory[41], nullptr);
}

TEST(Table, OldOneDiffersInTheStringOnly) {
  for (int id = 0; id < 28; ++id) {
    SCOPED_TRACE(id);
    EXPECT_EQ(LegacyFactory[id] == CurrentFactory[id], id != 11);
  }
  EXPECT_EQ(LegacyFactory[28], nullptr);
  const OtTypeDescriptor& old = *LegacyFactory[11];
  EXPECT_STREQ(old.name, "OtString");
  EXPECT_EQ(old.memoryLength, sizeof(OtString));
  EXPECT_EQ(old.isFixed, 0);
  EXPECT_EQ(old.SetNull, nullptr);
}

// Rows that are one implementation under several names.
enum Member : unsigned {
  kStorage = 1,  // Create, Delete, sizes, conversion, construction, assignment, text, default
  kStore = 2,    // Store and Load
  kTranslate = 4,
  kComparison = 8,  // Compare, EvalAndBound, Hash
};

unsigned SharedMembers(const OtTypeDescriptor& a, const OtTypeDescriptor& b) {
  unsigned shared = 0;
  if (a.Create == b.Create && a.Delete == b.Delete && a.NullSizeGet == b.NullSizeGet &&
      a.SizeGet == b.SizeGet && a.SizeGetFromMemFile == b.SizeGetFromMemFile &&
      a.ConvertTo == b.ConvertTo && a.ConvertFrom == b.ConvertFrom && a.Construct == b.Construct &&
      a.Destruct == b.Destruct && a.Assign == b.Assign && a.Copy == b.Copy &&
      a.IsNull == b.IsNull && a.PrintToString == b.PrintToString &&
      a.ScanFromString == b.ScanFromString && a.DefaultValue == b.DefaultValue) {
    shared |= kStorage;
  }
  if (a.Store == b.Store && a.Load == b.Load) shared |= kStore;
  if (a.Translate == b.Translate) shared |= kTranslate;
  if (a.Compare == b.Compare && a.EvalAndBound == b.EvalAndBound && a.Hash == b.Hash) {
    shared |= kComparison;
  }
  return shared;
}

// Of all members, types may lack the null alone.
unsigned MissingMembers(const OtTypeDescriptor& row) {
  unsigned missing = 0;
  const auto count = [&missing](auto... members) { missing = (0U + ... + (members == nullptr)); };
  count(row.name, row.Create, row.Delete, row.Store, row.Load, row.NullSizeGet, row.SizeGet,
        row.SizeGetFromMemFile, row.Compare, row.EvalAndBound, row.Hash, row.ConvertTo,
        row.ConvertFrom, row.Construct, row.Destruct, row.Assign, row.Copy, row.Translate,
        row.IsNull, row.format, row.PrintToString, row.ScanFromString, row.DefaultValue);
  return missing;
}

TEST(Table, LeavesNoMemberOut) {
  for (int id = 0; id < 41; ++id) EXPECT_EQ(MissingMembers(*CurrentFactory[id]), 0U) << id;
  for (int id = 0; id < 28; ++id) EXPECT_EQ(MissingMembers(*LegacyFactory[id]), 0U) << id;
}

TEST(Table, SharesFunctionsBetweenKindredRows) {
  const struct {
    int first, second;
    unsigned shared;
  } cases[] = {
      {0, 10, kStorage | kStore | kTranslate},                // char, OtByte
      {1, 5, kStorage | kStore | kTranslate},                 // short, OtWord
      {2, 6, kStorage | kStore | kTranslate},                 // long, OtDWord
      {6, 14, kStorage | kStore | kTranslate | kComparison},  // OtDWord, BlockId
      {7, 9, kStorage | kStore | kComparison},                // int, enum
      {7, 8, kStorage},                                       // int, unsigned
  };
  for (const auto& c : cases) {
    EXPECT_EQ(SharedMembers(*CurrentFactory[c.first], *CurrentFactory[c.second]), c.shared)
        << kTypes[c.first].name << " and " << kTypes[c.second].name;
  }
  const OtTypeDescriptor& real = *CurrentFactory[4];
  const OtTypeDescriptor& interval = *CurrentFactory[25];
  EXPECT_TRUE(real.NullSizeGet == interval.NullSizeGet && real.SizeGet == interval.SizeGet &&
              real.SizeGetFromMemFile == interval.SizeGetFromMemFile &&
              real.Compare == interval.Compare && real.Hash == interval.Hash &&
              real.EvalAndBound == interval.EvalAndBound && real.Translate == interval.Translate &&
              real.IsNull == interval.IsNull);
}

// A row lacks a member only where the type has no such operation.
TEST(Table, LacksNoOperation) {
  auto audit = [](const OtTypeDescriptor& row) {
    EXPECT_TRUE(row.Create && row.Delete && row.Store && row.Load && row.NullSizeGet &&
                row.SizeGet && row.SizeGetFromMemFile && row.Compare && row.Hash && row.ConvertTo &&
                row.ConvertFrom && row.Construct && row.Destruct && row.Assign && row.Copy &&
                row.Translate && row.IsNull && row.PrintToString && row.ScanFromString &&
                row.DefaultValue)
        << row.name;
  };
  for (int id = 0; id < 41; ++id) audit(*CurrentFactory[id]);
  audit(*LegacyFactory[11]);
}

TEST(Lookup, LeadsEveryHighIdentifierToIllegal) {
  OtTypeMgr types;
  for (const int id : {40, 100, 101, 127}) {
    EXPECT_STREQ(types.NameGet(static_cast<char>(id), nullptr), "illegal") << id;
  }
  const struct {
    int id, valid;
  } cases[] = {{0, 1}, {40, 1}, {41, 0}, {99, 0}, {100, 1}, {127, 1}, {-1, 1}, {-128, 1}};
  for (const auto& c : cases) {
    EXPECT_EQ(types.IsValidType(static_cast<char>(c.id)), c.valid) << c.id;
    OtTypeMgr old(3);
    EXPECT_EQ(old.IsValidType(static_cast<char>(c.id)), c.valid) << c.id;
  }
}

TEST(Lookup, ChoosesTheTableByVersion) {
  const struct {
    unsigned long version;
    bool old;
    unsigned word;
  } cases[] = {{0, true, 0},    {3, true, 3},  {4, false, 4},  {5, false, 5},
               {10, false, 10}, {11, true, 3}, {12, false, 4}, {1000, false, 4}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.version);
    OtTypeMgr types(c.version);
    EXPECT_EQ(types.SupportsNullValue(11), c.old ? 0 : CurrentFactory[11]->SetNull != nullptr);
    EXPECT_EQ(types.NameGet(28, nullptr) == nullptr, c.old);
    // The version word stands behind the table for the owner of the manager.
    unsigned short word;
    std::memcpy(&word, reinterpret_cast<const char*>(&types) + sizeof(void*), sizeof word);
    EXPECT_EQ(word, c.word);
  }
}

// Where there is no row, every operation answers nothing, its target or its value.
TEST(Lookup, AnswersNothingOutsideTheTable) {
  const struct {
    unsigned long version;
    int id;
  } cases[] = {{5, -1}, {5, -128}, {5, 41}, {5, 99}, {3, 28}, {3, 40}, {3, 100}, {3, 127}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << "version " << c.version << ", identifier " << c.id);
    OtTypeMgr types(c.version);
    const char id = static_cast<char>(c.id);
    char value[16] = {};
    int status = 77;
    unsigned short op = OT_OP_EQUAL;
    unsigned long consumed = 5;
    OtString text("kept");
    EXPECT_EQ(types.Create(id, 1), nullptr);
    EXPECT_EQ(types.Delete(id, value, 1), nullptr);
    EXPECT_EQ(types.DefaultValue(id, 1, 1), nullptr);
    EXPECT_EQ(types.Store(id, value, value, 1, 1), 0U);
    EXPECT_EQ(types.Load(id, value, value, 1, 1), 0U);
    EXPECT_EQ(types.DiskLenGet(id, value, 1, 1, 8), 0U);
    EXPECT_EQ(types.DiskLenGetFromMemFile(id, nullptr, 1, 1), 0U);
    EXPECT_EQ(types.EvalAndBound(id, nullptr, op, value, 8, 1, nullptr, nullptr), 0.0F);
    EXPECT_EQ(types.Hash(id, 1, value, 1, 8, status), 0U);
    EXPECT_EQ(types.Translate(id, value, 1, 1, value, 8, 1, 1), 0U);
    EXPECT_EQ(types.Cmp(id, value, value, 0, 1, 8), 0);
    EXPECT_EQ(types.Cmp(id, 1, value, 1, value, 0, 1, 8, status), 0);
    EXPECT_EQ(types.IsNullValue(id, value), 0);
    EXPECT_EQ(types.SetNullValue(id, value), 0);
    EXPECT_EQ(types.ConvertTo(id, value, 1), nullptr);
    EXPECT_EQ(types.ConvertFrom(id, nullptr, 1), nullptr);
    EXPECT_EQ(types.NameGet(id, nullptr), nullptr);
    EXPECT_EQ(types.MemLenGet(id, 3), 0U);
    EXPECT_EQ(types.IsFixed(id), 0U);
    EXPECT_EQ(types.SupportsNullValue(id), 0U);
    EXPECT_EQ(types.GetArrayElement(id, value, 0, 0), nullptr);
    EXPECT_EQ(types.ExchangeFormat(id, "%d"), nullptr);
    EXPECT_EQ(types.ExchangeOtTypeCmpFunc(id, CharCompare), nullptr);
    EXPECT_EQ(types.CmpFuncPtrGet(id), nullptr);
    EXPECT_EQ(&types.PrintToOtString(id, text, value, nullptr, 3), &text);
    EXPECT_STREQ(text.StrGet(), "kept");
    EXPECT_EQ(types.ScanFromOtString(id, value, text, nullptr, 1), value);
    EXPECT_EQ(types.VerifyStored(id, value, 16, 1, 1, consumed), OT_ERR_BAD_ARGUMENT);
    EXPECT_EQ(consumed, 0U);
    EXPECT_EQ(status, 77);
  }
}

TEST(Manager, FindsTypesByName) {
  OtTypeMgr types;
  OtTypeMgr old(3);
  char id = 9;
  for (char expected = 0; expected < 41; ++expected) {
    const char* name = kTypes[static_cast<int>(expected)].name;
    EXPECT_EQ(types.Name2OtTypeId(name, id), 0) << name;
    EXPECT_EQ(id, expected) << name;
    EXPECT_EQ(old.Name2OtTypeId(name, id), expected < 28 ? 0 : 1) << name;
    EXPECT_EQ(id, expected < 28 ? expected : 41) << name;
  }
  for (const char* name :
       {"string", "otstring", "OtString ", "", static_cast<const char*>(nullptr)}) {
    EXPECT_EQ(types.Name2OtTypeId(name, id), 1);
    EXPECT_EQ(id, 41);
  }
}

TEST(Manager, AnswersByItsOwnRules) {
  OtTypeMgr types;
  char buffer[16];
  EXPECT_EQ(types.NameGet(16, buffer), buffer);
  EXPECT_STREQ(buffer, "OtClassId");
  EXPECT_EQ(types.MemLenGet(3, 40000), 57856);  // 320000 in 16 bits
  for (const int id : {-1, 0, 11, 28, 40, 41, 100}) {
    EXPECT_EQ(types.DiskIsNullValue(static_cast<char>(id), nullptr), OT_ERR_NOT_SUPPORTED);
    EXPECT_EQ(types.ComparePtrGet(static_cast<char>(id)), nullptr);
  }
  double values[6];
  EXPECT_EQ(types.GetArrayElement(3, values, 5, 0), values + 5);
  EXPECT_EQ(types.GetArrayElement(3, values, 4, 5), values + 4);
  EXPECT_EQ(types.GetArrayElement(3, values, 5, 5), nullptr);
  const OtTypeDescriptor& row = *CurrentFactory[1];
  EXPECT_TRUE(types.ConstructorPtrGet(1) == row.Construct &&
              types.DestructorPtrGet(1) == row.Destruct &&
              types.AssignmentPtrGet(1) == row.Assign && types.CopyPtrGet(1) == row.Copy &&
              types.LoadPtrGet(1) == row.Load && types.StorePtrGet(1) == row.Store &&
              types.IsNullPtrGet(1) == row.IsNull && types.SetNullPtrGet(1) == nullptr &&
              types.CmpFuncPtrGet(1) == row.Compare);
}

long Reverse(unsigned char format, unsigned long length1, void* value1, unsigned long length2,
             void* value2, unsigned short cmpOp, unsigned long count, int& status) {
  return ShortCompare(format, length2, value2, length1, value1, cmpOp, count, status);
}

TEST(Manager, ExchangesMembersForAllManagers) {
  OtTypeMgr one;
  OtTypeMgr other(11);
  short small = 1;
  short large = 2;
  EXPECT_EQ(one.ExchangeOtTypeCmpFunc(1, Reverse), ShortCompare);
  EXPECT_EQ(other.Cmp(1, &small, &large, 0, 1, OT_FORMAT_MEMORY), 1);
  EXPECT_EQ(one.ExchangeOtTypeCmpFunc(1, nullptr), Reverse);
  EXPECT_EQ(one.ExchangeOtTypeCmpFunc(1, ShortCompare), Reverse);
  EXPECT_EQ(one.Cmp(1, &small, &large, 0, 1, OT_FORMAT_MEMORY), -1);
  EXPECT_STREQ(one.ExchangeFormat(1, "<%hd>"), "%hd");
  EXPECT_STREQ(other.ExchangeFormat(1, "%hd"), "<%hd>");
}

// Rows of one C++ type agree in all that touches stored bytes.
void ExpectAlike(const OtTypeDescriptor& row, const OtTypeDescriptor& own) {
  SCOPED_TRACE(row.name);
  EXPECT_EQ(row.memoryLength, own.memoryLength);
  unsigned char value[4] = {1, 2, 3, 0xf4}, other[4] = {1, 2, 3, 4}, disks[2][4];
  EXPECT_EQ(row.Store(disks[0], value, 2, 1), own.Store(disks[1], value, 2, 1));
  EXPECT_EQ(Hex(disks[0], 4), Hex(disks[1], 4));
  int status = 0;
  EXPECT_EQ(row.Compare(8, 0, value, 0, other, 0, 1, status),
            own.Compare(8, 0, value, 0, other, 0, 1, status));
  EXPECT_EQ(row.Hash(8, 0, value, 1, status), own.Hash(8, 0, value, 1, status));
}

template <std::size_t id>
void ExpectTypeOfRow() {
  using Type = typename OtTypeAt<static_cast<char>(id)>::Type;
  constexpr std::size_t own = OtTypeOf<Type>::id;
  EXPECT_EQ(sizeof(Type), kTypes[id].memoryLength) << id;
  if (own != id) {
    EXPECT_EQ(std::set<std::size_t>({2, 6, 9, 14}).count(id), 1U) << id;
    ExpectAlike(*CurrentFactory[id], *CurrentFactory[own]);
  }
}

template <std::size_t... ids>
void ExpectTypesOfRows(std::index_sequence<ids...>) {
  (ExpectTypeOfRow<ids>(), ...);
}

TEST(Typed, EveryRowHoldsTheTypeThatTheHeaderSays) {
  ExpectTypesOfRows(std::make_index_sequence<40>());
}

template <class T, class = void>
constexpr bool isStored = false;
template <class T>
constexpr bool isStored<T, std::void_t<decltype(std::declval<const OtTypeMgr&>().Store(
                               nullptr, std::declval<const T*>(), 1, 1))>> = true;

TEST(Typed, RefusesWhatNoRowHolds) {
  static_assert(isStored<OtLong> && isStored<OtString> && isStored<OtNull_long>);
  static_assert(!isStored<long> && !isStored<unsigned long> && !isStored<long long>);
  static_assert(!isStored<bool> && !isStored<OtDBOId> && !isStored<OtNull<OtLong, 35>>);
}

TEST(Typed, DoesWhatTheIdentifierDoes) {
  const OtTypeMgr types;
  const OtString cities[2] = {"Orleans", "Z\xfcrich"};
  OtString back[2];
  unsigned char typed[40] = {}, plain[40] = {};
  EXPECT_EQ(types.Store(typed, cities, 2, 2), types.Store(11, plain, cities, 2, 2));
  EXPECT_EQ(Hex(typed, 40), Hex(plain, 40));
  types.Load(back, typed, 2, 2);
  EXPECT_EQ(types.Cmp(cities, back, OT_CMP_NO_WILDCARDS, 2), 0);
  EXPECT_GT(types.Cmp(cities + 1, back, OT_CMP_NO_WILDCARDS), 0);
}

TEST(Illegal, DoesNothing) {
  OtTypeMgr types;
  unsigned char value[4] = {1, 2, 3, 4};
  unsigned char target[4] = {5, 6, 7, 8};
  int status = 77;
  unsigned short op = OT_OP_LESS;
  unsigned long consumed = 9;
  OtString text("kept");
  const OtTypeDescriptor& row = *CurrentFactory[40];
  EXPECT_EQ(types.Create(100, 1), nullptr);
  EXPECT_EQ(types.Store(100, target, value, 1, 1), 0U);
  EXPECT_EQ(types.Cmp(100, 4, value, 4, target, 0, 1, 8, status), 0);
  EXPECT_EQ(types.Hash(100, 4, value, 1, 8, status), 0U);
  EXPECT_EQ(status, 77);
  EXPECT_EQ(types.EvalAndBound(100, nullptr, op, value, 8, 1, nullptr, nullptr), 0.0F);
  EXPECT_EQ(types.Translate(100, target, 1, 4, value, 1, 4, 1), 0U);
  row.Construct(target, 1, 0);
  row.Assign(target, value, 1, 0);
  row.Copy(target, value, 1, 1);
  row.Destruct(target, 1, 0);
  EXPECT_EQ(Hex(target, 4), "05060708");
  EXPECT_EQ(&types.PrintToOtString(100, text, value, nullptr, 1), &text);
  EXPECT_STREQ(text.StrGet(), "kept");
  EXPECT_EQ(types.ScanFromOtString(100, value, text, nullptr, 1), nullptr);
  EXPECT_EQ(types.VerifyStored(100, value, 4, 1, 3, consumed), 0);
  EXPECT_EQ(consumed, 0U);
}

TEST(Library, ComesUpAndDown) {
  EXPECT_EQ(DefaultTypeMgr(nullptr), nullptr);
  ___OtTypemgrContext(1);
  OtTypeMgr* types = DefaultTypeMgr(nullptr);
  ASSERT_NE(types, nullptr);
  EXPECT_STREQ(types->NameGet(40, nullptr), "illegal");
  OtTypeMgr* mine = new OtTypeMgr(3);
  EXPECT_EQ(DefaultTypeMgr(mine), types);
  EXPECT_EQ(DefaultTypeMgr(nullptr), mine);
  delete types;
  ___OtTypemgrContext(0);  // Deletes the manager that was put in.
  EXPECT_EQ(DefaultTypeMgr(nullptr), nullptr);
  ___OtTypemgrContext(0);

  EXPECT_EQ(___OtTypeMgrOptions(), 0);
  ___OtTypeMgrOptions() = 6;
  EXPECT_EQ(___OtTypeMgrOptions(), 6);
  ___OtTypeMgrOptions() = 0;
}

TEST(Library, TellsWhoItIs) {
  EXPECT_EQ(OtCheckDll(0), 0);
  unsigned long numbers[5];
  unsigned long compilerVersion = 0;
  const char *library, *built, *tag, *compiler, *extra;
  EXPECT_STREQ(OtDescribeDll(&numbers[0], &numbers[1], &numbers[2], &numbers[3], &numbers[4],
                             &library, &built, &tag, &compilerVersion, &compiler, &extra),
               "Orvane Typemanager");
  const unsigned long expected[5] = {9, 5, 26, 340, 0};
  EXPECT_TRUE(std::equal(numbers, numbers + 5, expected));
  EXPECT_STREQ(library, "ot95Otms");
  EXPECT_STREQ(tag, "unknown");
  EXPECT_STREQ(extra, "");

  GetOtTypeMgrInfo(nullptr, nullptr, nullptr, nullptr, nullptr);
  const char *name = nullptr, *description = nullptr, *date = nullptr, *again = nullptr;
  unsigned long version = 0;
  GetOtTypeMgrInfo(&name, &version, &description, &date, &library);
  GetOtTypeMgrInfo(nullptr, nullptr, &again, nullptr, nullptr);
  EXPECT_STREQ(description, "Orvane Typemanager 9.5.26.340.0 ");
  EXPECT_EQ(again, description);
  EXPECT_STREQ(name, compiler);
  EXPECT_EQ(version, compilerVersion);
  EXPECT_EQ(std::string(built).rfind(std::string(date) + " ", 0), 0U);
}

TEST(VerifyStored, ChecksEveryForm) {
  constexpr int kEnd = OT_ERR_END_OF_DATA;
  constexpr int kBad = OT_ERR_BAD_ARGUMENT;
  const struct {
    const char* what;
    char id;
    const char* bytes;
    int format;
    unsigned long count;
    int status;
    unsigned long consumed;
  } cases[] = {
      {"shorts", 1, "000100020003", 2, 3, 0, 6},
      {"shorts, one more byte", 1, "00010002000300", 2, 3, 0, 6},
      {"shorts, half of the last", 1, "0001000200", 2, 3, kEnd, 4},
      {"no shorts wanted", 1, "", 1, 0, 0, 0},
      {"nullable long long", 38, "000102030405060708", 1, 1, 0, 9},
      {"nullable short, cut", 30, "0001", 1, 1, kEnd, 0},
      {"a string", 11, "06000102616200ff", 1, 1, 0, 8},
      {"a string, big-endian", 11, "00060102616200ff", 2, 1, 0, 8},
      {"two strings", 11,
       "06000102616200ff0500010262"
       "00ff",
       1, 2, 0, 15},
      {"the second is missing", 11, "06000102616200ff", 1, 2, kEnd, 8},
      {"the second is cut", 11, "06000102616200ff0500010262", 1, 2, kEnd, 8},
      {"an empty string", 11, "0400010200ff", 1, 1, 0, 6},
      {"a lone length byte", 11, "06", 1, 1, kEnd, 0},
      {"nothing", 11, "", 1, 1, kEnd, 0},
      {"no room for a header", 11, "03000102ff", 1, 1, kBad, 0},
      {"not terminated", 11, "0600010261626363", 1, 1, kBad, 0},
      {"half a terminator", 11, "06000102616263ff", 1, 1, kBad, 0},
      {"wide text", 11, "0800fd026100620000ff", 1, 1, 0, 10},
      {"wide text with half a character", 11, "0700fd0261006200ff", 1, 1, kBad, 0},
      {"a longer text than there is", 11, "ffff0102616200ff", 1, 1, kEnd, 0},
      {"old form", 11,
       "06006162006300"
       "00",
       1, 3, 0, 8},
      {"old form, too few", 11, "0600616200636400", 1, 3, kBad, 0},
      {"old form, too many", 11, "0600616200636400", 1, 1, kBad, 0},
      {"a key", 11,
       "0800fe0110201130"
       "00ff",
       0x81, 1, 0, 10},
      {"a key cut at its place", 11, "0800fe0110201130", 0x81, 1, 0, 8},
      {"the same, where keys aren't expected", 11, "0800fe0110201130", 1, 1, kEnd, 0},
      {"a key with half an order", 11,
       "0700fe011020"
       "1100ff",
       0x81, 1, kBad, 0},
      {"handles", 11, "06000102616200ff", 8, 1, kBad, 0},
      {"numbers in memory", 1, "000100020003", 8, 3, kBad, 0},
      {"nullable numbers in memory", 38, "000000000000000000", 0x8c, 1, kBad, 0},
      {"none in memory", 1, "", 9, 0, kBad, 0},
      {"no blobs", 18, "00000000", 1, 0, 0, 4},
      {"no blobs, but the bytes of one", 18, "0400000000000000", 1, 0, kBad, 4},
      {"no blobs, and half a total", 18, "0000", 1, 0, kEnd, 0},
      {"no legacy strings", 20, "400000", 1, 0, 0, 3},
  };
  OtTypeMgr types;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    ExactBlock stored(Unhex(c.bytes));
    unsigned long consumed = 99;
    EXPECT_EQ(types.VerifyStored(c.id, stored.data(), stored.size(),
                                 static_cast<unsigned char>(c.format), c.count, consumed),
              c.status);
    EXPECT_EQ(consumed, c.consumed);
  }
  unsigned long consumed = 1;
  EXPECT_EQ(types.VerifyStored(2, nullptr, 0, 1, 1, consumed), kEnd);
}

}  // namespace
