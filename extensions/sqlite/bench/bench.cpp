// Measures the extension beside ICU's collation, registered as SQLite's own extension for ICU does
// it: bench EXTENSION NAMES [WORKLOAD SIDE]. Prints a line a workload, side and repetition, with
// nanoseconds of the processor; with a workload and a side it does that once.
#include <sqlite3.h>
#include <unicode/ucol.h>
#include <unicode/ustring.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <string>
#include <vector>

namespace {

constexpr int kRepetitions = 5;

[[noreturn]] void Fail(const char* message) {
  std::fprintf(stderr, "bench: %s\n", message);
  std::exit(1);
}

// ---------------------------------------------------------------------------------------------
// The peer

// SQLite's extension compares UTF-16, which its texts first have to become; this is the faster way.
int CompareByIcu(void* collator, int aSize, const void* a, int bSize, const void* b) {
  UErrorCode error = U_ZERO_ERROR;
  return ucol_strcollUTF8(static_cast<UCollator*>(collator), static_cast<const char*>(a), aSize,
                          static_cast<const char*>(b), bSize, &error);
}

int CompareWideByIcu(void* collator, int aSize, const void* a, int bSize, const void* b) {
  return ucol_strcoll(static_cast<UCollator*>(collator), static_cast<const UChar*>(a), aSize / 2,
                      static_cast<const UChar*>(b), bSize / 2);
}

// A pattern that ends in %, without case: what LIKE of the extension for ICU does for one.
void LikeByIcu(sqlite3_context* context, int, sqlite3_value** values) {
  const auto* pattern = sqlite3_value_text(values[0]);
  const auto* text = sqlite3_value_text(values[1]);
  int32_t p = 0, t = 0;
  for (;;) {
    UChar32 wanted, found;
    U8_NEXT(pattern, p, -1, wanted);
    if (wanted == '%') return sqlite3_result_int(context, 1);
    U8_NEXT(text, t, -1, found);
    const bool isSame =
        u_foldCase(wanted, U_FOLD_CASE_DEFAULT) == u_foldCase(found, U_FOLD_CASE_DEFAULT);
    if (!isSame || wanted == 0) return sqlite3_result_int(context, isSame);
  }
}

// As lower() of that extension: by way of UTF-16.
void LowerByIcu(sqlite3_context* context, int, sqlite3_value** values) {
  UChar lower[1024];
  UErrorCode error = U_ZERO_ERROR;
  const auto* text = static_cast<const UChar*>(sqlite3_value_text16(values[0]));
  const int32_t size =
      u_strToLower(lower, 1024, text, sqlite3_value_bytes16(values[0]) / 2, "sv", &error);
  if (U_FAILURE(error)) return sqlite3_result_error(context, "lower", -1);
  sqlite3_result_text16(context, lower, size * 2, SQLITE_TRANSIENT);
}

UCollator* OpenCollator(UCollationStrength strength) {
  UErrorCode error = U_ZERO_ERROR;
  UCollator* collator = ucol_open("sv", &error);
  if (U_FAILURE(error)) Fail("no collator");
  ucol_setStrength(collator, strength);
  return collator;
}

// ---------------------------------------------------------------------------------------------
// Workloads

struct Side {
  const char* name;
  const char *prepare, *run, *clear;  ///< SQL; only `run` is measured.
};
struct Workload {
  const char* name;
  int times;  ///< How often `run` runs, with ?1 one of the names after the other.
  Side sides[3];
};

constexpr char kDropIndex[] = "DROP INDEX i";

const Workload kWorkloads[] = {
    {"CREATE INDEX",
     1,
     {{"ours", "", "CREATE INDEX i ON t (name COLLATE ot95_sv)", kDropIndex},
      {"peer", "", "CREATE INDEX i ON t (name COLLATE icu)", kDropIndex},
      {"wide", "", "CREATE INDEX i ON t (name COLLATE icu16)", kDropIndex}}},
    {"CREATE INDEX, no case",
     1,
     {{"ours", "", "CREATE INDEX i ON t (name COLLATE ot95_sv_ci)", kDropIndex},
      {"peer", "", "CREATE INDEX i ON t (name COLLATE icu_ci)", kDropIndex},
      {}}},
    {"CREATE INDEX, of keys",
     1,
     {{"ours", "", "CREATE INDEX i ON t (ot_key(name, 'sv'))", kDropIndex},
      {"peer", "", "CREATE INDEX i ON t (name COLLATE icu)", kDropIndex},
      {}}},
    {"ORDER BY",
     1,
     {{"ours", "", "SELECT name FROM t ORDER BY name COLLATE ot95_sv", ""},
      {"peer", "", "SELECT name FROM t ORDER BY name COLLATE icu", ""},
      {"wide", "", "SELECT name FROM t ORDER BY name COLLATE icu16", ""}}},
    {"look-up in an index",
     10000,
     {{"ours", "CREATE INDEX i ON t (name COLLATE ot95_sv)",
       "SELECT count(*) FROM t WHERE name = ?1 COLLATE ot95_sv", kDropIndex},
      {"peer", "CREATE INDEX i ON t (name COLLATE icu)",
       "SELECT count(*) FROM t WHERE name = ?1 COLLATE icu", kDropIndex},
      {"wide", "CREATE INDEX i ON t (name COLLATE icu16)",
       "SELECT count(*) FROM t WHERE name = ?1 COLLATE icu16", kDropIndex}}},
    {"San* from an index",
     100,
     {{"ours", "CREATE INDEX i ON t (ot_key(name, 'sv_ci'))",
       "SELECT count(*) FROM t WHERE ot_key(name, 'sv_ci') BETWEEN ot_low('San*', 'sv_ci') AND "
       "ot_high('San*', 'sv_ci') AND ot_match(name, 'San*', 'sv_ci')",
       kDropIndex},
      {"peer", "CREATE INDEX i ON t (icu_lower(name))",
       "SELECT count(*) FROM t WHERE icu_lower(name) >= 'san' AND icu_lower(name) < 'sao' AND "
       "icu_like('san%', name)",
       kDropIndex},
      {}}},
    {"San* from all rows",
     1,
     {{"ours", "", "SELECT count(*) FROM t WHERE ot_match(name, 'San*', 'sv_ci')", ""},
      {"peer", "", "SELECT count(*) FROM t WHERE icu_like('san%', name)", ""},
      {}}},
};

class Database {
 public:
  Database(const char* extension, const std::vector<std::string>& names) : names_(names) {
    if (sqlite3_open(":memory:", &db_) != SQLITE_OK) Fail("no database");
    sqlite3_db_config(db_, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 1, nullptr);
    char* message = nullptr;
    if (sqlite3_load_extension(db_, extension, nullptr, &message) != SQLITE_OK) Fail(message);
    RegisterPeer();
    Fill();
  }
  ~Database() { sqlite3_close(db_); }
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  /// @return nanoseconds
  double Measure(const Workload& workload, const Side& side) {
    Execute(side.prepare);
    const double before = Now();
    Run(side.run, workload.times);
    const double taken = Now() - before;
    Execute(side.clear);
    return taken;
  }

 private:
  static double Now() {
    timespec now;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
  }

  // Counted by callgrind under this name.
  __attribute__((noinline)) void Run(const char* sql, int times) {
    sqlite3_stmt* statement = Prepare(sql);
    const std::size_t step = names_.size() / static_cast<std::size_t>(times) + 1;
    for (int i = 0; i < times; ++i) {
      const std::string& name = names_[static_cast<std::size_t>(i) * step % names_.size()];
      sqlite3_bind_text(statement, 1, name.data(), static_cast<int>(name.size()), SQLITE_STATIC);
      while (sqlite3_step(statement) == SQLITE_ROW) {
      }
      if (sqlite3_reset(statement) != SQLITE_OK) Fail(sqlite3_errmsg(db_));
    }
    sqlite3_finalize(statement);
  }

  sqlite3_stmt* Prepare(const char* sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(db_, sql, -1, &statement, nullptr) != SQLITE_OK) {
      Fail(sqlite3_errmsg(db_));
    }
    return statement;
  }

  void Execute(const char* sql) {
    if (sqlite3_exec(db_, sql, nullptr, nullptr, nullptr) != SQLITE_OK) Fail(sqlite3_errmsg(db_));
  }

  void RegisterPeer() {
    const int pure = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
    UCollator* tertiary = OpenCollator(UCOL_TERTIARY);
    sqlite3_create_collation(db_, "icu", SQLITE_UTF8, tertiary, CompareByIcu);
    sqlite3_create_collation(db_, "icu16", SQLITE_UTF16, tertiary, CompareWideByIcu);
    sqlite3_create_collation(db_, "icu_ci", SQLITE_UTF8, OpenCollator(UCOL_SECONDARY),
                             CompareByIcu);
    sqlite3_create_function(db_, "icu_like", 2, pure, nullptr, LikeByIcu, nullptr, nullptr);
    sqlite3_create_function(db_, "icu_lower", 1, pure, nullptr, LowerByIcu, nullptr, nullptr);
  }

  void Fill() {
    Execute("CREATE TABLE t (name TEXT); BEGIN");
    sqlite3_stmt* insert = Prepare("INSERT INTO t VALUES (?1)");
    for (const std::string& name : names_) {
      sqlite3_bind_text(insert, 1, name.data(), static_cast<int>(name.size()), SQLITE_STATIC);
      sqlite3_step(insert);
      sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    Execute("COMMIT");
  }

  const std::vector<std::string>& names_;
  sqlite3* db_ = nullptr;
};

std::vector<std::string> ReadNames(const char* path) {
  std::vector<std::string> names;
  std::ifstream file(path);
  for (std::string name; std::getline(file, name);) names.push_back(name);
  if (names.empty()) Fail("no names");
  return names;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3 && count != 5) Fail("expected EXTENSION NAMES [WORKLOAD SIDE]");
  const std::vector<std::string> names = ReadNames(arguments[2]);
  Database database(arguments[1], names);
  const bool isOne = count == 5;
  for (const Workload& workload : kWorkloads) {
    for (int i = 0; i < (isOne ? 1 : kRepetitions); ++i) {
      for (const Side& side : workload.sides) {
        if (side.name == nullptr) continue;
        if (isOne && (std::strcmp(workload.name, arguments[3]) != 0 ||
                      std::strcmp(side.name, arguments[4]) != 0)) {
          continue;
        }
        std::printf("%s\t%s\t%.0f\n", workload.name, side.name, database.Measure(workload, side));
      }
    }
  }
  return 0;
}
