// A store of every type; what a check finds; what bad input is told.
#include <gtest/gtest.h>

#include "import.h"
#include "keys.h"
#include "objectstore/storetesting.h"
#include "query.h"
#include "record.h"

namespace {

/// A type, the format of its texts if not the type's own, and texts that come back as they went.
struct Kind {
  const char* name;
  const char* format;
  bool indexed;
  std::vector<std::string> texts;
};

const char* const kDay = "%Y-%m-%d";
const char* const kClock = "%H:%M:%S";
const char* const kMoment = "%Y-%m-%d %H:%M:%S";

const Kind kind_s[] = {
    {"char", "", true, {"a", "~"}},
    {"short", "", true, {"-32768", "32767"}},
    {"long", "", true, {"-2147483648", "2147483647"}},
    {"double", "", true, {"-0.500000", "1000000.250000"}},
    {"float", "", true, {"-0.500000", "1024.250000"}},
    {"OtWord", "", true, {"0", "65535"}},
    {"OtDWord", "", true, {"0", "4294967295"}},
    {"int", "", true, {"-2147483648", "2147483647"}},
    {"unsigned", "", true, {"0", "4294967295"}},
    {"enum", "", true, {"0", "77"}},
    {"OtByte", "", true, {"a", "~"}},
    {"OtString", "", true, {"Ærø, \"東京\"\nб", "", "{NULL}"}},
    {"OtDate", kDay, true, {"2000-02-29", "{NULL}"}},
    {"OtTime", kClock, true, {"23:59:58", "{NULL}"}},
    {"BlockId", "", true, {"#0", "#4294967295"}},
    {"OtObjId", "", true, {"(1-2#3)", "{NULL}"}},
    {"OtClassId", "", false, {"(5v1)", "{NULL}"}},
    {"OtRef", "", true, {"(1:1-2#3, 0)", "{NULL}"}},
    {"OtBlob", "", false, {"[BLOB,len=0]", "{NULL}"}},
    {"OtDateTime", kMoment, true, {"2000-02-29 23:59:58", "{NULL}"}},
    {"OtIString", "", true, {"Straße", ""}},
    {"OtCaseIString", "", true, {"Straße", ""}},
    {"d_Date", kDay, true, {"2000-02-29", "1999-12-31"}},
    {"d_Time", kClock, true, {"23:59:58", "00:00:00"}},
    {"d_Timestamp", kMoment, true, {"2000-02-29 23:59:58", "1999-12-31 00:00:00"}},
    {"d_Interval", "", true, {"03 days, 04 hours, 05 minutes, 06 seconds"}},
    {"OtInt64", "", true, {"-9223372036854775808", "9223372036854775807"}},
    {"OtBoolean", "", true, {"TRUE", "FALSE", "{NULL}"}},
    {"OtNull_char", "", true, {"a", "{NULL}"}},
    {"OtNull_uchar", "", true, {"a", "{NULL}"}},
    {"OtNull_short", "", true, {"-32768", "{NULL}"}},
    {"OtNull_ushort", "", true, {"65535", "{NULL}"}},
    {"OtNull_int", "", true, {"-2147483648", "{NULL}"}},
    {"OtNull_unsigned", "", true, {"4294967295", "{NULL}"}},
    {"OtNull_long", "", true, {"-2147483648", "{NULL}"}},
    {"OtNull_ulong", "", true, {"4294967295", "{NULL}"}},
    {"OtNull_float", "", true, {"0.500000", "{NULL}"}},
    {"OtNull_double", "", true, {"-0.250000", "{NULL}"}},
    {"OtNull_OtInt64", "", true, {"-9223372036854775808", "{NULL}"}},
    {"OtSeal", "", true, {"0", "12345678901234"}},
};

std::string OneMember(const std::string& member) {
  return R"({"classes": [{"name": "C", "members": [)" + member + "]}]}";
}

std::string SchemaOfKinds(const StoreKind& kindOfStore) {
  std::string members;
  for (const Kind& kind : kind_s) {
    members += std::string(members.empty() ? "" : ",") + R"({"name": "m_)" + kind.name +
               R"(", "type": ")" + kind.name + R"(", "format": ")" + kind.format +
               R"(", "indexed": )" + (kind.indexed ? "true}" : "false}");
  }
  return std::string(R"({"form": ")") + kindOfStore.form +
         R"(", "classes": [{"name": "All", "members": [)" + members +
         R"(, {"name": "several", "type": "short", "count": 2}]}]})";
}

class StoreOfAllTypes : public testing::TestWithParam<StoreKind> {};

TEST_P(StoreOfAllTypes, GivesBackWhatItTook) {
  const Scratch directory;
  const std::string schema = directory.File("schema.json", SchemaOfKinds(GetParam()));
  std::string lines;
  for (const Kind& kind : kind_s) lines += std::string(lines.empty() ? "m_" : ",m_") + kind.name;
  lines += ",several[0],several[1]\n";
  for (std::size_t row = 0; row < 3; ++row) {
    for (const Kind& kind : kind_s) {
      std::string text = kind.texts[row % kind.texts.size()];
      for (std::size_t at = 0; (at = text.find('"', at)) != std::string::npos; at += 2) {
        text.insert(at, 1, '"');
      }
      lines += "\"" + text + "\",";
    }
    lines += "\"-1\",\"" + std::to_string(row) + "\"\n";
  }
  const auto otdb = [&](const std::string& arguments) {
    return OutputOf(OT95_OTDB " " + arguments + " 2>&1");
  };
  const std::string first = directory / "first", second = directory / "second";
  EXPECT_EQ(otdb("create " + first + " " + schema + GetParam().Option()) +
                otdb("create " + second + " " + schema + GetParam().Option()),
            "");
  EXPECT_EQ(otdb("import " + first + " All " + directory.File("in.csv", lines)),
            "3 objects added\n");
  const std::string csv = otdb("dump " + first + " All --csv");
  EXPECT_EQ(csv.substr(csv.find('\n')), lines.substr(lines.find('\n')));
  otdb("import " + second + " All " + directory.File("out.csv", csv));
  EXPECT_EQ(otdb("dump " + second + " All --csv"), csv);
  EXPECT_EQ(otdb("dump " + second), otdb("dump " + first));
  EXPECT_EQ(otdb("check " + second), otdb("check " + first));
  EXPECT_EQ(FaultsOf(otdb::Store(second)), "");
}

INSTANTIATE_TEST_SUITE_P(Kinds, StoreOfAllTypes, testing::ValuesIn(kStoreKinds), NameOfKind);

TEST(Indexes, AreMadeOfEveryTypeThatMakesLimits) {
  ASSERT_EQ(std::size(kind_s), 40U);
  for (char type = 0; type < 40; ++type) {
    const Kind& kind = kind_s[static_cast<int>(type)];
    EXPECT_STREQ(otdb::Types().NameGet(type, nullptr), kind.name);
    otdb::Member member;
    member.type = type;
    EXPECT_EQ(otdb::CanBeIndexed(member), kind.indexed) << kind.name;
  }
}

/// A store of three objects whose trees are changed behind its back.
class Damage : public testing::TestWithParam<StoreKind> {
 protected:
  Damage() {
    otdb::Schema schema = otdb::Schema::FromJson(
        OneMember(R"({"name": "text", "type": "OtString", "codeSet": 1, "indexed": true})"));
    schema.form = kind_.form;
    schema.sortKeyVersion = kind_.byteOrder ? OtTypeMgr::SortKeyVersion() : 0;
    otdb::Store::Create(path_, schema);
    otdb::Store store(path_);
    type_ = store.GetSchema().classes.front();
    for (const std::string& text : {std::string("abc"), std::string(200, 'l'), std::string("x")}) {
      otdb::Object object(type_, form_);
      object.MemberAt(0).Scan(0, text);
      records_.push_back(object.Stored());
      keys_.push_back(otdb::KeyOf(type_.members[0], records_.back(), kind_));
      ids_.push_back(otdb::IdFromText(std::to_string(ids_.size() + 1), form_));
    }
    store.Add(store.GetSchema().classes.front(), records_);
  }

  struct Trees {
    lmdb::txn& txn;
    lmdb::dbi objects, all, partial;

    static lmdb::val Val(const otdb::Bytes& bytes) { return {bytes.data(), bytes.size()}; }
    void Put(lmdb::dbi& tree, const otdb::Bytes& key, const otdb::Bytes& value) {
      lmdb::dbi_put(txn, tree, Val(key), Val(value), 0);
    }
    void Remove(lmdb::dbi& tree, const otdb::Bytes& key, const otdb::Bytes& value) {
      const lmdb::val data = Val(value);
      EXPECT_TRUE(lmdb::dbi_del(txn, tree, Val(key), data));
    }
  };

  /// @return what a check tells afterwards.
  template <class Action>
  std::string After(const Action& action) {
    {
      auto env = lmdb::env::create();
      env.set_max_dbs(10);
      env.open(path_.c_str(), 0, 0644);
      auto txn = lmdb::txn::begin(env);
      Trees trees{txn, lmdb::dbi::open(txn, "C"), lmdb::dbi::open(txn, "C.text"),
                  lmdb::dbi::open(txn, "C.text~")};
      MDB_cmp_func* const bySerial = otdb::KeyComparer(15, form_);
      if (form_ == OT_FORMAT_NATIVE) trees.objects.set_compare(txn, bySerial);
      for (lmdb::dbi* tree : {&trees.all, &trees.partial}) {
        MDB_cmp_func* const order = otdb::KeyComparer(type_.members[0].type, kind_);
        if (order != nullptr) tree->set_compare(txn, order);
      }
      action(trees);
      txn.commit();
    }
    return FaultsOf(otdb::Store(path_));
  }

  const unsigned char form_ = GetParam().form[0] == 'n' ? OT_FORMAT_NATIVE : OT_FORMAT_BIG_ENDIAN;
  const otdb::KeyKind kind_{form_, GetParam().byteOrder};
  Scratch directory_;
  std::string path_ = directory_ / "store";
  otdb::Class type_;
  std::vector<otdb::Bytes> records_, keys_, ids_;
};

TEST_P(Damage, NoneIsToldOfAGoodStore) {
  EXPECT_EQ(After([](Trees&) {}), "");
}

TEST_P(Damage, MissingEntry) {
  EXPECT_EQ(After([&](Trees& trees) { trees.Remove(trees.all, keys_[0], ids_[0]); }),
            "index C.text: another number of entries than of objects\n");
}

TEST_P(Damage, StrayEntry) {
  const otdb::Bytes nobody = otdb::IdFromText("99", form_);
  EXPECT_EQ(After([&](Trees& trees) { trees.Put(trees.all, keys_[0], nobody); }),
            "index C.text: another number of entries than of objects\n"
            "index C.text: an entry without its object, C 99\n");
}

TEST_P(Damage, EntryUnderAnotherKey) {
  EXPECT_EQ(After([&](Trees& trees) {
              trees.Remove(trees.all, keys_[0], ids_[0]);
              trees.Put(trees.all, keys_[2], ids_[0]);
            }),
            "index C.text: another key than that of C 1\n");
}

TEST_P(Damage, RecordCutByAByteOrLongerByOne) {
  otdb::Bytes cut = records_[0], longer = records_[2];
  cut.pop_back();
  longer.push_back(0);
  EXPECT_EQ(After([&](Trees& trees) {
              trees.Put(trees.objects, ids_[0], otdb::Sealed(otdb::SeedOf("C"), ids_[0], cut));
              trees.Put(trees.objects, ids_[2], otdb::Sealed(otdb::SeedOf("C"), ids_[2], longer));
            }),
            "C 1: a damaged record\nC 3: a damaged record\n");
}

TEST_P(Damage, MissingAndStrayPartialEntries) {
  if (kind_.byteOrder) return;  // There the range of a comparison allows for keys that were cut.
  EXPECT_EQ(After([&](Trees& trees) { trees.Remove(trees.partial, keys_[1], ids_[1]); }),
            "index C.text: C 2 isn't among the partial keys\n"
            "index C.text: another number of partial entries than of partial keys\n");
  EXPECT_EQ(After([&](Trees& trees) {
              trees.Put(trees.partial, keys_[1], ids_[1]);
              trees.Put(trees.partial, keys_[0], ids_[0]);
            }),
            "index C.text: another number of partial entries than of partial keys\n");
}

TEST_P(Damage, ObjectUnderWhatIsNoIdentifier) {
  EXPECT_EQ(After([&](Trees& trees) {
              trees.Put(trees.objects, {1, 2, 3}, records_[0]);
            }),
            "C with a damaged identifier\n"
            "index C.text: another number of entries than of objects\n");
}

INSTANTIATE_TEST_SUITE_P(Kinds, Damage, testing::ValuesIn(kStoreKinds), NameOfKind);

struct BadCsv {
  const char* name;
  std::string bytes;
  std::string told;       ///< Behind the file's name and a colon.
  std::size_t taken = 0;  ///< With bad lines skipped; one with them is then told in full.
  bool fatal = false;     ///< Also when they are skipped.
};

TEST(BadInputs, OfCsvAreToldByLine) {
  const BadCsv rows[] = {
      {"too few fields", "a,b\n1,x\n2\n3,y\n", "3: expected 2 fields, found 1", 2},
      {"too many fields", "a,b\n1,x,z\n", "2: expected 2 fields, found 3"},
      {"unknown column", "a,c\n1,x\n", "1: expected members of C in the header, found 'c'", 0,
       true},
      {"bad value", "a,b\n1,x\nq,y\n",
       "3: a: expected a value of short, a whole number from -32768 to 32767, found 'q'", 1},
      {"a number beyond the type", "a,b\n99999,x\n",
       "2: a: expected a value of short, a whole number from -32768 to 32767, found '99999'"},
      {"behind empty lines", "a,b\n\n\n1,x\n\nq,y\n",
       "6: a: expected a value of short, a whole number from -32768 to 32767, found 'q'", 1},
      {"behind lines in quotes", "a,b\n1,\"x\n\ny\"\nq,\"\n\"\n1,z\n",
       "5: a: expected a value of short, a whole number from -32768 to 32767, found 'q'", 2},
      {"with carriage returns", "a,b\r\n1,x\r\nq,y\r\n",
       "3: a: expected a value of short, a whole number from -32768 to 32767, found 'q'", 1},
      {"null where there is none", "a,b\n,y\n",
       "2: a: expected a value of short, a whole number from -32768 to 32767, found ''"},
      {"not UTF-8", "a,b\n1,x\n2,\xff\n", "3: b: expected UTF-8, found '\\xff' as character 1", 1},
      {"half a character", "a,b\n1,\xe6\x9d\n",
       "2: b: expected UTF-8, found '\\xe6' as character 1"},
      {"a long word with an escape", "a,b\n\x1b" + std::string(30000, 'x') + ",y\n",
       "2: a: expected a value of short, a whole number from -32768 to 32767, found '\\x1b" +
           std::string(59, 'x') + "...' (30001 bytes)"},
      {"too long", "a,b\n1," + std::string(40000, 'x') + "\n",
       "2: b: expected a text of at most 32765 characters"},
      {"open quote", "a,b\n1,x\n2,\"y\n3,z\n", "3: not CSV: ", 1, true},
      {"quote within", "a,b\n1,x\n2,y\"z\n", "3: not CSV: ", 1, true},
      {"empty file", "", "1: expected a header line with members of C", 0, true},
      {"no more than empty lines", "\n\n", "3: expected a header line with members of C", 0, true},
  };
  for (const BadCsv& row : rows) {
    const Scratch directory;
    otdb::Store::Create(directory / "store",
                        otdb::Schema::FromJson(OneMember(R"({"name": "a", "type": "short"},
                                                            {"name": "b", "type": "OtString"})")));
    otdb::Store store(directory / "store");
    const otdb::Class& type = store.GetSchema().classes.front();
    const std::string file = directory.File("in.csv", row.bytes);
    const std::string told = file + ":" + row.told;
    otdb::ImportOptions options;
    const auto import = [&] { otdb::Import(store, type, file, options); };
    EXPECT_EQ(RefusalOf(import).substr(0, told.size()), told) << row.name;
    options.skipBad = true;
    std::string reported;
    options.report = [&](const std::string& text) { reported += text + "\n"; };
    if (row.fatal) {
      EXPECT_EQ(RefusalOf(import).substr(0, told.size()), told) << row.name;
      continue;
    }
    const otdb::ImportResult result = otdb::Import(store, type, file, options);
    EXPECT_EQ(reported, told + "\n") << row.name;
    EXPECT_EQ(result.bad, 1U) << row.name;
    EXPECT_EQ(result.objects, row.taken) << row.name;
  }
}

TEST(BadInputs, OfSchemasAreToldByMember) {
  const std::string member = R"({"name": "a", "type": "short")";
  const std::pair<std::string, const char*> rows[] = {
      {"", "schema: "},
      {"[]", "schema: "},
      {std::string(100000, '['), "schema: "},
      {R"({"classes": 5})", "schema: "},
      {R"({"form": "middle", "classes": []})",
       "schema: form: expected big-endian or native, found 'middle'"},
      {R"({"form": "native, version 3: needs a newer otdb", "classes": []})",
       "schema: form: expected a store of version 2 or less, found 'native, version 3"},
      {R"({"classes": [{"name": "C"}]})", "schema: "},
      {R"({"clases": []})", "schema: unknown key 'clases'; the nearest is 'classes'"},
      {R"({"classes": [{"name": "C", "member": []}]})",
       "schema: C: unknown key 'member'; the nearest is 'members'"},
      {OneMember(member + R"(, "index": true})"),
       "schema: C.a: unknown key 'index'; the nearest is 'indexed'"},
      {R"({"classes": [{"name": "C", "members": []}, {"name": "C", "members": []}]})",
       "schema: the name 'C' is taken"},
      {R"({"classes": [{"name": "facts", "members": []}]})", "schema: the name 'facts' is taken"},
      {R"({"classes": [{"name": "C.x", "members": []}]})", "schema: expected a name of letters"},
      {OneMember(R"({"name": "", "type": "short"})"), "schema: expected a name of letters"},
      {OneMember(R"({"name": "1a", "type": "short"})"), "schema: expected a name of letters"},
      {OneMember(member + "}," + member + "}"), "schema: C: two members have the name 'a'"},
      {OneMember(R"({"name": "a", "type": "SHORT"})"), "schema: C.a: expected the name of a type"},
      {OneMember(R"({"name": "a", "type": "illegal"})"),
       "schema: C.a: expected the name of a type"},
      {OneMember(R"({"name": "a", "type": 5})"), "schema: "},
      {OneMember(member + R"(, "count": 0})"), "schema: C.a: expected a count of 1 to 10000"},
      {OneMember(member + R"(, "count": -1})"), "schema: C.a: expected a count of 1 to 10000"},
      {OneMember(member + R"(, "count": 4294967297})"), "schema: C.a: expected a count"},
      {OneMember(member + R"(, "codeSet": 254})"), "schema: C.a: expected a code set of 0 to 253"},
      {OneMember(member + R"(, "codeSet": 4294967297})"), "schema: C.a: expected a code set"},
      {OneMember(member + R"(, "language": "xx"})"), "schema: C.a: language: expected"},
      {OneMember(member + R"(, "count": 2, "indexed": true})"),
       "schema: C.a: there is no index over short of several elements"},
      {OneMember(R"({"name": "a", "type": "OtBlob", "indexed": true})"),
       "schema: C.a: there is no index over OtBlob"},
  };
  for (const auto& [json, told] : rows) {
    const std::string refusal = RefusalOf([&json = json] { otdb::Schema::FromJson(json); });
    EXPECT_EQ(refusal.substr(0, std::strlen(told)), told) << json.substr(0, 200);
  }
}

TEST(BadInputs, OfQueriesAreToldByPlace) {
  const otdb::Schema schema = otdb::Schema::FromJson(
      OneMember(R"({"name": "a", "type": "short"}, {"name": "t", "type": "OtString"},
                   {"name": "d", "type": "OtNull_short"},
                   {"name": "n", "type": "short", "count": 2})"));
  const auto times = [](std::size_t count, const std::string& text) {
    std::string repeated;
    while (count-- != 0) repeated += text;
    return repeated;
  };
  const std::pair<std::string, const char*> rows[] = {
      {"", "query, at 1: expected 'from', found its end"},
      {"from", "query, at 5: expected a class, found its end"},
      {"from 'C'", "query, at 6: expected a class, found 'C'"},
      {"from X", "query, at 6: expected a class of the store, found 'X'"},
      {"from C where", "query, at 13: expected a member of C, found its end"},
      {"from C where x = 1", "query, at 14: expected a member of C, found 'x'"},
      {"from C where n = 1", "query, at 14: expected a member of one element, found 'n'"},
      {"from C where a", "query, at 15: expected = <> < <= > or >=, found its end"},
      {"from C where a ! 1", "query, at 16: expected = <> < <= > or >=, found '!'"},
      {"from C where a = ", "query, at 18: expected a value, found its end"},
      {"from C where a = )", "query, at 18: expected a value, found ')'"},
      {"from C where a = q",
       "query, at 18: a: expected a value of short, a whole number from -32768 to 32767, found "
       "'q'"},
      {"from C where a = 70000",
       "query, at 18: a: expected a value of short, a whole number from -32768 to 32767, found "
       "'70000'"},
      {"from C where a = null", "query, at 18: a has no null"},
      {"from C where t = '\xff'", "query, at 18: t: expected UTF-8"},
      {"from C where t = 'x", "query: the quote at 18 isn't closed"},
      {"from C where t = 'x''", "query: the quote at 18 isn't closed"},
      {"from C where t = x ignoring", "query, at 28: expected case, accent, space or symbols"},
      {"from C where t = x ignoring case,", "query, at 34: expected case, accent"},
      {"from C where (a = 1", "query, at 20: expected ')', found its end"},
      {"from C where a = 1)", "query, at 19: expected the end of the query, found ')'"},
      {"from C where a = 1 and", "query, at 23: expected a member of C"},
      {"from C order a", "query, at 14: expected 'by', found 'a'"},
      {"from C order by q", "query, at 17: expected a member of C, found 'q'"},
      {"from C limit -1", "query, at 14: expected a number, found '-1'"},
      {"from C limit 1x", "query, at 14: expected a number, found '1x'"},
      {"from C limit 99999999999999999999999", "query, at 14: expected a number"},
      {"from C where " + times(100000, "(") + "a = 1", "query, at 214: expected less nesting"},
      {"from C where " + times(100000, "not ") + "a = 1", "query, at 814: expected less nesting"},
  };
  for (const auto& [text, told] : rows) {
    const std::string refusal = RefusalOf([&, &text = text] { otdb::ParseQuery(schema, text); });
    EXPECT_EQ(refusal.substr(0, std::strlen(told)), told) << text.substr(0, 200);
  }
  const std::string deep = times(199, "(") + "a = 1" + times(199, ")");
  const std::string wide = "a = 1" + times(20000, " or a = 1");
  for (const std::string& condition : {deep, wide, deep + " and " + deep}) {
    EXPECT_EQ(RefusalOf([&] { otdb::ParseQuery(schema, "from C where " + condition); }), "");
  }
}

}  // namespace
