// otdb beside SQLite with the peer's collation, on the same rows and with the same durability.
#include <sqlite3.h>
#include <unicode/unistr.h>

#include <cstdlib>
#include <fstream>
#include <memory>

#include "collator.h"
#include "execute.h"
#include "import.h"
#include "plan.h"
#include "scratch.h"
#include "store.h"
#include "workload.h"

namespace bench {
namespace {

constexpr std::size_t kImported = 50'000;
constexpr std::size_t kQueried = 1'000'000;
constexpr std::size_t kBatch = 10'000;

std::string Utf8(const Name& name) {
  std::string utf8;
  icu::UnicodeString(name.units.data(), Length(name)).toUTF8String(utf8);
  return utf8;
}

struct Row {
  std::string name;
  int number;
};

std::vector<Row> RowsOf(std::size_t count) {
  std::vector<Row> rows;
  for (const Name& name : ManyNames(count)) {
    rows.push_back({Utf8(name), static_cast<int>(rows.size() % 1000)});
  }
  return rows;
}

constexpr const char* kSchema =
    R"({"classes": [{"name": "Place", "members": [
      {"name": "name", "type": "OtString", "indexed": true},
      {"name": "number", "type": "long", "indexed": true}]}]})";

/// Rows as the file that an import reads.
std::string CsvOf(const std::vector<Row>& rows, const Scratch& scratch) {
  const std::string path = scratch.Path("rows.csv");
  std::ofstream file(path);
  file << "name,number\n";
  for (const Row& row : rows) file << '"' << row.name << "\"," << row.number << "\n";
  return path;
}

void ImportOurs(const std::string& csv, const std::string& directory) {
  otdb::Store::Create(directory, otdb::Schema::FromJson(kSchema));
  otdb::Store store(directory);
  otdb::Import(store, store.GetSchema().classes[0], csv, {});
}

int ComparePeer(void* collator, int length1, const void* text1, int length2, const void* text2) {
  UErrorCode error = U_ZERO_ERROR;
  return ucol_strcollUTF8(static_cast<UCollator*>(collator), static_cast<const char*>(text1),
                          length1, static_cast<const char*>(text2), length2, &error);
}

class Peer {
 public:
  Peer(const std::string& path, const Collator& collator) : collator_(collator) {
    Require(sqlite3_open(path.c_str(), &db_));
    sqlite3_create_collation(db_, "names", SQLITE_UTF8, collator.get(), ComparePeer);
    Run("create table place (id integer primary key, name text collate names, number integer)");
    Run("create index by_name on place (name)");
    Run("create index by_number on place (number)");
  }
  ~Peer() { sqlite3_close(db_); }
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;

  void Import(const std::vector<Row>& rows) {
    sqlite3_stmt* insert = Prepare("insert into place (name, number) values (?, ?)");
    for (std::size_t i = 0; i < rows.size(); ++i) {
      if (i % kBatch == 0) Run("begin");
      sqlite3_bind_text(insert, 1, rows[i].name.c_str(), -1, SQLITE_STATIC);
      sqlite3_bind_int(insert, 2, rows[i].number);
      if (sqlite3_step(insert) != SQLITE_DONE) std::abort();
      sqlite3_reset(insert);
      if ((i + 1) % kBatch == 0) Run("commit");
    }
    if (rows.size() % kBatch != 0) Run("commit");
    sqlite3_finalize(insert);
  }

  /// Rows whose name begins so: a range of the index, and all columns of its rows.
  std::size_t CountPrefix(const std::string& prefix) {
    sqlite3_stmt* select = Prepare("select name, number from place where name >= ? and name < ?");
    const std::string after = prefix + "\xef\xbf\xbf";
    sqlite3_bind_text(select, 1, prefix.c_str(), -1, SQLITE_STATIC);
    sqlite3_bind_text(select, 2, after.c_str(), -1, SQLITE_STATIC);
    std::size_t rows = 0;
    while (sqlite3_step(select) == SQLITE_ROW) {
      benchmark::DoNotOptimize(sqlite3_column_text(select, 0));
      ++rows;
    }
    sqlite3_finalize(select);
    return rows;
  }

 private:
  static void Require(int status) {
    if (status != SQLITE_OK) std::abort();
  }
  void Run(const char* sql) { Require(sqlite3_exec(db_, sql, nullptr, nullptr, nullptr)); }
  sqlite3_stmt* Prepare(const char* sql) {
    sqlite3_stmt* statement = nullptr;
    Require(sqlite3_prepare_v2(db_, sql, -1, &statement, nullptr));
    return statement;
  }

  sqlite3* db_ = nullptr;
  Collator collator_;
};

struct Imports {
  Scratch scratch;
  std::vector<Row> rows;
  std::string csv;
  int next = 0;
  Collator collator = OpenCollator("");

  std::string Fresh() {
    if (rows.empty()) csv = CsvOf(rows = RowsOf(kImported), scratch);
    return scratch.Path(std::to_string(next++));
  }
};

/// A million rows on both sides, made when the first query runs.
struct Queries {
  static constexpr const char* kPrefix = "San";
  Scratch scratch;
  std::unique_ptr<otdb::Store> ours;
  std::unique_ptr<Peer> peer;

  void Make() {
    if (ours) return;
    const std::vector<Row> rows = RowsOf(kQueried);
    ImportOurs(CsvOf(rows, scratch), scratch.Path("ours"));
    ours = std::make_unique<otdb::Store>(scratch.Path("ours"));
    peer = std::make_unique<Peer>(scratch.Path("peer"), OpenCollator(""));
    peer->Import(rows);
  }
  std::size_t Ours() {
    Make();
    const auto query = otdb::ParseQuery(ours->GetSchema(),
                                        std::string("from Place where name = '") + kPrefix + "*'");
    auto txn = ours->Read();
    const auto plan = otdb::MakePlan(*ours, txn, query);
    return otdb::Execute(*ours, txn, query, plan,
                         [](otdb::View, const otdb::Record& record) {
                           benchmark::DoNotOptimize(record.MemberAt(0).data());
                           return true;
                         })
        .found;
  }
  std::size_t Peers() {
    Make();
    return peer->CountPrefix(kPrefix);
  }
};

}  // namespace

void RegisterStore() {
  const auto imports = std::make_shared<Imports>();
  Add(
      "otdb: import of 50,000 rows", 2,
      [imports] {
        const std::string directory = imports->Fresh();
        ImportOurs(imports->csv, directory);
      },
      [imports] { Peer(imports->Fresh(), imports->collator).Import(imports->rows); });
  const auto queries = std::make_shared<Queries>();
  Add(
      "otdb: 'San*' of a million rows", 5, [queries] { benchmark::DoNotOptimize(queries->Ours()); },
      [queries] { benchmark::DoNotOptimize(queries->Peers()); });
}

}  // namespace bench
