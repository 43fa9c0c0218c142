// Indexes whose keys are in another order than texts are now: refused, and built anew.
#include "reindex.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <csignal>

#include "objectstore/storetesting.h"
#include "record.h"

namespace {

constexpr int kObjects = 2000;

const char* const kClasses = R"(, "classes": [{"name": "Note", "members": [
  {"name": "text", "type": "OtString", "language": "sv", "indexed": true},
  {"name": "number", "type": "int", "indexed": true}]}]})";

std::string StoreIn(const Scratch& directory, const StoreKind& kind) {
  const std::string path = directory / "store";
  otdb::Store::Create(path, otdb::Schema::FromJson("{" + kind.Json() + kClasses));
  otdb::Store store(path);
  const otdb::Class& type = store.GetSchema().ClassNamed("Note");
  std::vector<otdb::Bytes> records;
  for (int i = 0; i < kObjects; ++i) {
    otdb::Object object(type, store.GetSchema().form);
    object.MemberAt(0).Scan(0, "å" + std::to_string(i * 7 % 100));
    object.MemberAt(1).Scan(0, std::to_string(i));
    records.push_back(object.Stored());
  }
  store.Add(type, records);
  return path;
}

// What a library with another Swedish leaves: another version, and entries that aren't ours.
void Outdate(const std::string& path) {
  auto env = lmdb::env::create();
  env.set_max_dbs(10);
  env.open(path.c_str(), 0, 0644);
  auto txn = lmdb::txn::begin(env);
  auto facts = lmdb::dbi::open(txn, "facts");
  const std::string key = "order Note.text", version = "12345678";
  const auto view = [](const std::string& text) {
    return otdb::View(reinterpret_cast<const unsigned char*>(text.data()), text.size());
  };
  const otdb::Bytes other = otdb::Sealed(otdb::SeedOf("facts"), view(key), view(version));
  lmdb::val before;
  ASSERT_TRUE(facts.get(txn, lmdb::val(key), before)) << "a version stands beside the index";
  ASSERT_EQ(before.size(), other.size());
  lmdb::dbi_put(txn, facts, lmdb::val(key), lmdb::val(other.data(), other.size()), 0);
  auto index = lmdb::dbi::open(txn, "Note.text", MDB_DUPSORT | MDB_DUPFIXED);
  lmdb::dbi_drop(txn, index, false);
  txn.commit();
}

std::size_t Rebuild(const std::string& path, const otdb::ReindexOptions& options) {
  otdb::Store store(path, otdb::Access::kReindex);
  return otdb::Reindex(store, otdb::IndexNamed(store, "Note.text"), options);
}

std::string OpeningRefusal(const std::string& path, otdb::Access access) {
  return RefusalOf([&] { otdb::Store(path, access); });
}

class Reindex : public testing::TestWithParam<StoreKind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, Reindex, testing::ValuesIn(kStoreKinds), NameOfKind);

TEST_P(Reindex, AnotherOrderIsRefusedUntilTheIndexIsBuiltAnew) {
  const Scratch directory;
  const std::string path = StoreIn(directory, GetParam());
  EXPECT_EQ(OpeningRefusal(path, otdb::Access::kRead), "");
  Outdate(path);
  for (const auto access : {otdb::Access::kRead, otdb::Access::kWrite}) {
    EXPECT_NE(OpeningRefusal(path, access).find("Note.text"), std::string::npos);
    EXPECT_NE(OpeningRefusal(path, access).find("otdb reindex " + path), std::string::npos);
  }
  EXPECT_EQ(Rebuild(path, {}), std::size_t{kObjects});
  EXPECT_EQ(OpeningRefusal(path, otdb::Access::kRead), "");
  EXPECT_EQ(FaultsOf(otdb::Store(path)), "");
}

TEST_P(Reindex, KilledAnywhereItGoesOnWhereItEnded) {
  const Scratch directory;
  const std::string path = StoreIn(directory, GetParam());
  Outdate(path);
  const std::size_t batch = 300;
  for (std::size_t killed = 1; killed <= 4; ++killed) {
    const pid_t child = fork();
    if (child == 0) {
      Rebuild(path, {batch, [](double, std::size_t) { std::raise(SIGKILL); }});
      std::_Exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_NE(OpeningRefusal(path, otdb::Access::kRead).find("built in part"), std::string::npos);
  }
  std::vector<std::size_t> told;
  EXPECT_EQ(Rebuild(path, {batch, [&](double, std::size_t done) { told.push_back(done); }}),
            std::size_t{kObjects});
  EXPECT_EQ(told, (std::vector<std::size_t>{5 * batch, 6 * batch, kObjects}));
  EXPECT_EQ(FaultsOf(otdb::Store(path)), "");
}

TEST_P(Reindex, OnTheCommandLine) {
  const Scratch directory;
  const std::string path = StoreIn(directory, GetParam());
  const auto run = [](const std::string& arguments) {
    std::string command = OT95_OTDB " ";
    command += arguments;
    command += " 2>&1";
    return OutputOf(command);
  };
  EXPECT_EQ(run("reindex " + path), "all indexes are in the order of their languages\n");
  Outdate(path);
  EXPECT_NE(run("query " + path + " \"from Note count\"").find("reindex"), std::string::npos);
  EXPECT_EQ(run("reindex " + path + " --batch 100"), "Note.text: 2000 entries\n");
  EXPECT_EQ(run("query " + path + " \"from Note where text = 'å7*' count\""), "220\n");
  EXPECT_EQ(run("reindex " + path + " Note.number"), "Note.number: 2000 entries\n");
  EXPECT_NE(run("reindex " + path + " Note.txt").find("'Note.text'"), std::string::npos);
  EXPECT_EQ(run("check " + path), "2000 objects, 4000 index entries, 0 faults\n");
  EXPECT_EQ(run("analyze " + path).find("error"), std::string::npos);
  EXPECT_EQ(run("query " + path + " \"from Note where text = 'å7*' count\""), "220\n");
  EXPECT_EQ(run("check " + path), "2000 objects, 4000 index entries, 0 faults\n");
}

}  // namespace
