// The store's files: what a killed process leaves, and what is read of pages that nobody vouches
// for.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <csignal>
#include <cstring>
#include <filesystem>
#include <type_traits>

#include "objectstore/storetesting.h"
#include "pages.h"
#include "record.h"

namespace {

using Word = std::conditional_t<sizeof(void*) == 8, std::uint64_t, std::uint32_t>;
using OtherWord = std::conditional_t<sizeof(void*) == 8, std::uint32_t, std::uint64_t>;
using Pages = otdb::PageFile<Word>;
using Entries = std::vector<std::pair<otdb::Bytes, otdb::Bytes>>;

std::string SchemaOf(const StoreKind& kind) {
  return "{" + kind.Json() + R"(, "classes": [{"name": "Note", "members": [
    {"name": "text", "type": "OtString", "codeSet": 1, "indexed": true},
    {"name": "number", "type": "int", "indexed": true}]}]})";
}

std::vector<otdb::Bytes> Records(const otdb::Store& store, int from, int count,
                                 std::size_t length) {
  const otdb::Class& type = store.GetSchema().ClassNamed("Note");
  std::vector<otdb::Bytes> records;
  for (int i = from; i < from + count; ++i) {
    otdb::Object object(type, store.GetSchema().form);
    object.MemberAt(0).Scan(0, std::string(length, static_cast<char>('a' + i % 26)));
    object.MemberAt(1).Scan(0, std::to_string(i));
    records.push_back(object.Stored());
  }
  return records;
}

void Fill(otdb::Store& store, int from, int count, std::size_t length) {
  store.Add(store.GetSchema().ClassNamed("Note"), Records(store, from, count, length));
}

/// The file of a store of objects with short texts, and some with long ones.
std::string FileOf(const StoreKind& kind, const Scratch& directory, int objects,
                   std::size_t longText) {
  const std::string path = directory / "store";
  otdb::Store::Create(path, otdb::Schema::FromJson(SchemaOf(kind)));
  otdb::Store store(path);
  Fill(store, 0, objects, 30);
  Fill(store, objects, 3, longText);
  return path + "/data.mdb";
}

Entries EntriesOf(const Pages& pages, const std::string& tree) {
  Entries entries;
  EXPECT_TRUE(pages.Visit(tree, [&](otdb::View key, otdb::View value) {
    entries.emplace_back(otdb::Bytes(key.begin(), key.end()),
                         otdb::Bytes(value.begin(), value.end()));
  }));
  return entries;
}

class StorePages : public testing::TestWithParam<StoreKind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, StorePages, testing::Values(kStoreKinds[0], kStoreKinds[2]),
                         NameOfKind);

TEST_P(StorePages, HoldWhatTheStoreHolds) {
  const Scratch directory;
  const std::string file = FileOf(GetParam(), directory, 5000, 30000);
  EXPECT_TRUE(Pages::IsOne(file));
  EXPECT_FALSE(otdb::PageFile<OtherWord>::IsOne(file));
  const otdb::Store store(directory / "store");
  auto txn = store.Read();
  const otdb::Tree& tree = store.Trees().front().objects;
  ASSERT_GE(otdb::StatOf(txn, tree).ms_depth, 2U);
  ASSERT_GE(otdb::StatOf(txn, tree).ms_overflow_pages, 3U * 7);
  Entries expected;
  otdb::Cursor cursor(txn, tree);
  for (bool more = cursor.First(); more; more = cursor.Next()) {
    expected.emplace_back(otdb::Bytes(cursor.Key().begin(), cursor.Key().end()),
                          otdb::Bytes(cursor.Data().begin(), cursor.Data().end()));
  }
  const Pages pages(file);
  EXPECT_TRUE(EntriesOf(pages, "Note") == expected);
  EXPECT_EQ(EntriesOf(pages, "facts").size(), 3U + 2);  // and the orders of two indexes
  EXPECT_FALSE(pages.Visit("Nobody", [](otdb::View, otdb::View) {}));
}

/// A file's pages, to damage.
class Hostile {
 public:
  explicit Hostile(std::string bytes) : bytes_(std::move(bytes)) {}

  template <class T>
  T At(std::size_t place) const {
    T value;
    std::memcpy(&value, bytes_.data() + place, sizeof value);
    return value;
  }
  template <class T>
  void Put(std::size_t place, T value) {
    std::memcpy(bytes_.data() + place, &value, sizeof value);
  }
  void Cut(std::size_t length) { bytes_.resize(length); }
  std::size_t Size() const { return bytes_.size(); }
  std::size_t PageCount() const { return bytes_.size() / kPage; }

  /// Every child of every branch becomes one page.
  template <class Choice>
  void PointAllBranchesTo(const Choice& choice) {
    for (std::size_t page = 0; page < PageCount(); ++page) {
      const std::size_t start = page * kPage;
      if (At<std::uint16_t>(start + sizeof(Word) + 2) != 1) continue;
      const std::size_t end = At<std::uint16_t>(start + sizeof(Word) + 4);
      for (std::size_t at = sizeof(Word) + 8; at < end; at += 2) {
        Put(start + At<std::uint16_t>(start + at), static_cast<std::uint32_t>(choice(page)));
      }
    }
  }

  void Write(const Scratch& directory, const std::string& name) const {
    directory.File(name, bytes_);
  }

  /// Reads its objects and facts. @return the entries seen, or none when it was refused.
  std::size_t Walk(const Scratch& directory) const {
    const std::string path = directory.File("hostile", bytes_);
    std::size_t entries = 0;
    const std::string refusal = RefusalOf([&] {
      const Pages pages(path);
      for (const char* tree : {"facts", "Note"}) {
        pages.Visit(tree, [&](otdb::View key, otdb::View value) {
          entries += key.size() + value.size() <= bytes_.size();
        });
      }
    });
    return refusal.empty() ? entries : 0;
  }

  static constexpr std::size_t kPage = 4096;

 private:
  std::string bytes_;
};

TEST_P(StorePages, EndWhereTheyGoRoundOrAreShared) {
  const Scratch directory;
  const Hostile good(ReadWhole(FileOf(GetParam(), directory, 3000, 10)));
  ASSERT_GT(good.PageCount(), 20U);
  Hostile round = good;
  round.PointAllBranchesTo([](std::size_t page) { return page; });
  EXPECT_EQ(round.Walk(directory), 0U);
  Hostile crossed = good;
  crossed.PointAllBranchesTo([&](std::size_t page) { return (page + 1) % good.PageCount(); });
  EXPECT_LT(crossed.Walk(directory), good.Size() / 2);
}

TEST_P(StorePages, OfAnIndexAreRefused) {
  const Scratch directory;
  const Pages pages(FileOf(GetParam(), directory, 40, 10));
  const auto visit = [&] { pages.Visit("Note.text", [](otdb::View, otdb::View) {}); };
  EXPECT_NE(RefusalOf(visit), "");
}

TEST_P(StorePages, EndInRefusalOrAResultWhateverTheyHold) {
  const Scratch directory;
  const Hostile good(ReadWhole(FileOf(GetParam(), directory, 40, 5000)));
  ASSERT_EQ(good.Walk(directory), 5U + 43);
  Dice dice(1);
  std::size_t refused = 0;
  for (int round = 0; round < 4000; ++round) {
    Hostile bad = good;
    for (std::size_t i = 1 + dice.Below(4); i != 0; --i) {
      // Most often the heads of pages and what they say of their entries.
      const std::size_t page = dice.Below(good.PageCount()) * Hostile::kPage;
      const std::size_t place = page + dice.Below(dice.Chance(70) ? 80 : Hostile::kPage);
      const unsigned char values[] = {0, 1, 0xff, 0x7f,
                                      static_cast<unsigned char>(dice.Below(256))};
      bad.Put(place, dice.Of(values));
    }
    if (dice.Chance(10)) bad.Cut(dice.Below(bad.Size()));
    const std::size_t entries = bad.Walk(directory);
    EXPECT_LT(entries, good.Size() / 2) << "round " << round;
    refused += entries == 0;
  }
  EXPECT_GT(refused, 400U);
  EXPECT_LT(refused, 3600U);
}

/// What a store that passes its check holds, by its own walk; what else it says, otherwise.
std::string HeldBy(const std::string& path, Entries& held) {
  return RefusalOf([&] {
    const otdb::Store store(path, otdb::Access::kRead);
    const std::string faults = FaultsOf(store);
    if (!faults.empty()) throw ot95::tools::BadInput(faults);
    const otdb::Snapshot snapshot = store.Read();
    const otdb::Tree& tree = store.Trees().front().objects;
    otdb::Cursor cursor(snapshot, tree);
    for (bool more = cursor.First(); more; more = cursor.Next()) {
      const otdb::View record = store.Checked(tree, cursor.Key(), cursor.Data());
      held.emplace_back(otdb::Bytes(cursor.Key().begin(), cursor.Key().end()),
                        otdb::Bytes(record.begin(), record.end()));
    }
  });
}

/// Of the objects that FileOf makes, from what it makes them of.
Entries ExpectedOf(const otdb::Store& store, int objects, std::size_t longText) {
  std::vector<otdb::Bytes> records = Records(store, 0, objects, 30);
  for (auto& record : Records(store, objects, 3, longText)) records.push_back(record);
  Entries expected;
  for (auto& record : records) {
    const std::string id = std::to_string(expected.size() + 1);
    expected.emplace_back(otdb::IdFromText(id, store.GetSchema().form), std::move(record));
  }
  return expected;
}

class DamagedStores : public testing::TestWithParam<StoreKind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, DamagedStores, testing::ValuesIn(kStoreKinds), NameOfKind);

TEST_P(DamagedStores, AreToldOrHoldWhatTheyHeld) {
  const Scratch directory;
  const Hostile good(ReadWhole(FileOf(GetParam(), directory, 700, 9000)));
  Entries expected;
  {
    const otdb::Store store(directory / "store");
    expected = ExpectedOf(store, 700, 9000);
  }
  std::filesystem::create_directory(directory / "bad");
  Dice dice(7);
  std::size_t clean = 0, told = 0, written = 0;
  for (int round = 0; round < 300; ++round) {
    Hostile bad = good;
    const std::size_t page = dice.Below(good.PageCount()) * Hostile::kPage;
    const std::size_t place = page + dice.Below(dice.Chance(50) ? 120 : Hostile::kPage);
    bad.Put(place, static_cast<unsigned char>(bad.At<unsigned char>(place) ^ 1U << dice.Below(8)));
    if (dice.Chance(10)) bad.Cut(dice.Below(bad.Size()));
    bad.Write(directory, "bad/data.mdb");
    Entries held;
    const std::string refusal = HeldBy(directory / "bad", held);
    told += !refusal.empty();
    clean += refusal.empty();
    ASSERT_TRUE(!refusal.empty() || held == expected) << "round " << round << " at " << place;
    if (!dice.Chance(20)) continue;
    const std::string second = RefusalOf([&] {
      otdb::Store store(directory / "bad");
      Fill(store, 0, 40, 700);
    });
    written += second.empty();
    ASSERT_TRUE(!refusal.empty() || second.empty()) << "round " << round << ": " << second;
    if (!refusal.empty()) continue;
    EXPECT_EQ(FaultsOf(otdb::Store(directory / "bad")), "");
  }
  EXPECT_GT(told, 60U);
  EXPECT_GT(clean, 20U);
  EXPECT_GT(written, 6U);
}

// A store of the first version has no checksums; programs of the first version say of one that has
// them what stands in its form.
TEST_P(DamagedStores, OfTheFirstVersionOpenAndStayOfIt) {
  const Scratch directory;
  const std::string path = directory / "store";
  otdb::Schema schema = otdb::Schema::FromJson(SchemaOf(GetParam()));
  EXPECT_NE(schema.ToJson().find(std::string("\"form\":\"") + GetParam().form +
                                 ", version 2: needs a newer otdb\""),
            std::string::npos);
  schema.version = 1;
  EXPECT_NE(schema.ToJson().find(std::string("\"form\":\"") + GetParam().form + "\""),
            std::string::npos);
  otdb::Store::Create(path, schema);
  {
    otdb::Store store(path);
    Fill(store, 0, 20, 30);
    Fill(store, 20, 3, 5000);
  }
  const otdb::Store store(path);
  EXPECT_EQ(FaultsOf(store), "");
  const Entries expected = ExpectedOf(store, 20, 5000);
  EXPECT_TRUE(EntriesOf(Pages(path + "/data.mdb"), "Note") == expected);  // as they are
  Entries held;
  EXPECT_EQ(HeldBy(path, held), "");
  EXPECT_TRUE(held == expected);
}

/// Starts an import and kills it after a while. @return whether it was still running.
bool ImportAndKill(const std::string& store, const std::string& csv, useconds_t after) {
  const pid_t child = fork();
  if (child == 0) {
    if (std::freopen("/dev/null", "w", stdout) == nullptr) _exit(1);
    execl(OT95_OTDB, "otdb", "import", store.c_str(), "Note", csv.c_str(), "--batch", "10",
          static_cast<char*>(nullptr));
    _exit(1);
  }
  usleep(after);
  kill(child, SIGKILL);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0);
  return WIFSIGNALED(status);
}

/// Notes as an import takes them.
std::string NotesFile(const Scratch& directory, int count, std::size_t length) {
  std::string lines = "number,text\n";
  for (int i = 0; i < count; ++i) {
    lines += std::to_string(i * 7919 % count) + "," + std::string(length, 'q') + "\n";
  }
  return directory.File("notes.csv", lines);
}

// A file that may not grow stands for a disk without room: the storage engine is told so in the
// same calls.
class StoreUnderFire : public testing::TestWithParam<StoreKind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, StoreUnderFire, testing::Values(kStoreKinds[0], kStoreKinds[2]),
                         NameOfKind);

TEST_P(StoreUnderFire, IsWholeWhereThereIsNoRoom) {
  const Scratch directory;
  const std::string schema = directory.File("schema.json", SchemaOf(GetParam()));
  const std::string csv = NotesFile(directory, 2000, 100);
  std::size_t created = 0, partly = 0;
  for (int kilobytes = 4; kilobytes < 3000; kilobytes += 4 + kilobytes / 3) {
    const std::string path = directory / std::to_string(kilobytes);
    const std::string limit = "ulimit -f " + std::to_string(2 * kilobytes) + "; ";
    const Outcome create = OutcomeOf(limit + OT95_OTDB " create " + path + " " + schema);
    ASSERT_TRUE(create.exit == 0 || create.exit == 2) << create.out;
    if (create.exit != 0) {
      EXPECT_NE(create.out.find("otdb: " + path), std::string::npos) << create.out;
      EXPECT_EQ(OutcomeOf(OT95_OTDB " create " + path + " " + schema).exit, 0);
    }
    created += create.exit == 0;
    const Outcome import =
        OutcomeOf(limit + OT95_OTDB " import " + path + " Note " + csv + " --batch 100");
    ASSERT_TRUE(import.exit == 0 || import.exit == 2) << import.out;
    const otdb::Store store(path);
    auto txn = store.Read();
    const auto result =
        otdb::Check(store, txn, [](const std::string& fault) { ADD_FAILURE() << fault; });
    const std::string added = std::to_string(result.objects) + " objects ";
    EXPECT_NE(import.out.find(import.exit == 0 ? added : "(" + added + "were added)"),
              std::string::npos)
        << import.out;
    partly += result.objects > 0 && result.objects < 2000;
  }
  EXPECT_GT(created, 3U);
  EXPECT_GT(partly, 3U);
}

TEST_P(StoreUnderFire, ReadersDontWaitForAWriter) {
  const Scratch directory;
  FileOf(GetParam(), directory, 20, 10);
  auto env = lmdb::env::create();
  env.open((directory / "store").c_str(), 0, 0644);
  auto writing = lmdb::txn::begin(env);
  const Outcome count =
      OutcomeOf("timeout 60 " OT95_OTDB " query " + (directory / "store") + " 'from Note count'");
  EXPECT_EQ(count.out, "23\n");
  for (const char* command : {"check ", "stat ", "dump ", "get "}) {
    const std::string rest = command[0] == 'g' ? " 1" : "";
    EXPECT_EQ(
        OutcomeOf("timeout 60 " OT95_OTDB " " + (command + (directory / "store")) + rest).exit, 0)
        << command;
  }
}

TEST_P(StoreUnderFire, IsReadWithoutThePermissionToWrite) {
  const Scratch directory;
  const std::string path = directory / "store";
  FileOf(GetParam(), directory, 20, 10);
  namespace fs = std::filesystem;
  const auto all = fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read;
  const auto enter = all | fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec;
  for (const char* file : {"/data.mdb", "/lock.mdb"}) fs::permissions(path + file, all);
  fs::permissions(path, enter);
  fs::permissions(fs::path(path).parent_path(), enter);
  const pid_t child = fork();
  if (child == 0) {
    if (geteuid() == 0 && setuid(65534) != 0) _exit(3);  // whom permissions don't bind
    try {
      const otdb::Store store(path, otdb::Access::kRead);
      auto txn = store.Read();
      const bool isWhole = otdb::Check(store, txn, [](const std::string&) {}).objects == 23;
      store.RequireUnchanged();
      const bool isRefused = RefusalOf([&] { otdb::Store writer(path); }).find(path) == 0;
      _exit(isWhole && isRefused ? 0 : 1);
    } catch (const std::exception&) {
      _exit(2);
    }
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(WEXITSTATUS(status), 0);
  fs::permissions(fs::path(path).parent_path(), fs::perms::owner_all);
  fs::permissions(path, fs::perms::owner_all);
}

TEST_P(StoreUnderFire, TwoWritersGoOnWhenTheStoreGrows) {
  const Scratch directory;
  const std::string path = directory / "store";
  FileOf(GetParam(), directory, 20, 10);
  otdb::Store store(path);
  EXPECT_EQ(
      OutcomeOf(OT95_OTDB " import " + path + " Note " + NotesFile(directory, 700, 30000)).out,
      "700 objects added\n");
  ASSERT_GT(std::filesystem::file_size(path + "/data.mdb"), std::size_t{16} << 20);
  {
    auto txn = store.Read();
    EXPECT_EQ(otdb::StatOf(txn, store.Trees()[0].objects).ms_entries, 723U);
  }
  EXPECT_EQ(
      OutcomeOf(OT95_OTDB " import " + path + " Note " + NotesFile(directory, 900, 30000)).out,
      "900 objects added\n");
  Fill(store, 0, 5, 30);
  EXPECT_EQ(FaultsOf(store), "");
  auto txn = store.Read();
  EXPECT_EQ(otdb::StatOf(txn, store.Trees()[0].objects).ms_entries, 1628U);
}

/// A call of the program and what it says, the scratch directory being "@".
struct Told {
  const char* call;
  const char* out;
};

class StoreFiles : public testing::TestWithParam<StoreKind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, StoreFiles, testing::Values(kStoreKinds[0], kStoreKinds[2]),
                         NameOfKind);

TEST_P(StoreFiles, ErrorsOfReadingAndWritingAreTold) {
  const Scratch directory;
  FileOf(GetParam(), directory, 20, 10);
  directory.File("schema.json", "{\"classes\": 5}");
  directory.File("half.csv", "number,text\n1,\"a\n");
  std::filesystem::create_directory(directory / "empty");
  directory.File("empty/data.mdb", "");
  const Told rows[] = {
      {"dump @/store 2>&1 >/dev/full", ""},
      {"query @/store 'from Note' 2>&1 >/dev/full", ""},
      {"stat @/store 2>&1 >/dev/full", ""},
      {"--help 2>&1 >/dev/full", ""},
      {"import @/store Note /",
       "/: expected a file that can be read (Is a directory)"
       " (0 objects were added)"},
      {"import @/store Note /proc/self/mem",
       "/proc/self/mem: expected a file that can be read (Input/output error)"
       " (0 objects were added)"},
      {"import @/store Note @/none.csv",
       "@/none.csv: expected a file that can be read (No such file or directory)"},
      {"create @/new @/schema.json", "@/schema.json: schema: "},
      {"create @/new /", "/: expected a file that can be read (Is a directory)"},
      {"stat @/empty", "@/empty/data.mdb: expected a store's file, found an empty one"},
      {"stat @/none", "@/none: expected a store (data.mdb: No such file or directory)"},
      {"querry @/store", "unknown command 'querry'; the nearest is 'query' (see 'otdb --help')"},
      {"query @/store x --explian",
       "unknown option '--explian'; the nearest is '--explain' "
       "(see 'otdb query --help')"},
      {"get @/store", "ID is required (see 'otdb get --help')"},
  };
  for (const Told& row : rows) {
    const auto placed = [&](std::string text) {
      const std::string path = directory / "";
      for (std::size_t at; (at = text.find("@/")) != std::string::npos;) text.replace(at, 2, path);
      return text;
    };
    const Outcome outcome = OutcomeOf(placed(OT95_OTDB " " + std::string(row.call)));
    const std::string told = row.out[0] == 0 ? "" : "otdb: " + placed(row.out);
    EXPECT_EQ(outcome.out.substr(0, told.size()), told) << row.call;
    EXPECT_EQ(outcome.exit, 2) << row.call;
  }
  EXPECT_EQ(OutcomeOf(OT95_OTDB " --version").out.rfind("Orvane Typemanager 9.5.26.340.0\n", 0),
            0U);
}

TEST_P(StoreFiles, ColumnsOfAQueryHoldNoControls) {
  const Scratch directory;
  const std::string path = directory / "store";
  otdb::Store::Create(path, otdb::Schema::FromJson(SchemaOf(GetParam())));
  const std::string csv = directory.File("in.csv", "number,text\n1,\"a\tb\nc\x1b[1m\"\n");
  OutputOf(OT95_OTDB " import " + path + " Note " + csv);
  EXPECT_EQ(OutcomeOf(OT95_OTDB " query " + path + " 'from Note'").out,
            "id\ttext\tnumber\n1\ta\\tb\\nc\\x1b[1m\t1\n");
}

TEST_P(StoreUnderFire, IsWholeAfterEveryKill) {
  const Scratch directory;
  const std::string path = directory / "store";
  otdb::Store::Create(path, otdb::Schema::FromJson(SchemaOf(GetParam())));
  std::string lines = "number,text\n";
  for (int i = 0; i < 1000; ++i) {
    lines += std::to_string(i * 7919 % 1000) + "," +
             std::string(1 + static_cast<unsigned>(i) % 150, 'q') + "\n";
  }
  const std::string csv = directory.File("notes.csv", lines);
  Dice dice(1);
  std::size_t before = 0, killed = 0;
  for (int round = 0; round < 50; ++round) {
    killed += ImportAndKill(path, csv, static_cast<useconds_t>(dice.Below(90'000)));
    const otdb::Store store(path);
    auto txn = store.Read();
    const otdb::CheckResult result =
        otdb::Check(store, txn, [](const std::string& fault) { ADD_FAILURE() << fault; });
    EXPECT_EQ(result.objects % 10, 0U) << "round " << round;
    EXPECT_GE(result.objects, before) << "round " << round;
    before = result.objects;
  }
  EXPECT_GT(killed, 0U);
  const std::string last = OutputOf(OT95_OTDB " import " + path + " Note " + csv);
  EXPECT_EQ(last, "1000 objects added\n");
  EXPECT_EQ(FaultsOf(otdb::Store(path)), "");
}

}  // namespace
