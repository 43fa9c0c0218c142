// Orders that indexes were built in: ot_record_orders() keeps their versions in the table
// ot_orders, the table-valued function ot_check_orders tells where the loaded library has others.
#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "dependence.h"
#include "result.h"
#include "vtab.h"

namespace ot95::sqlite {

namespace {

/// SQL with identifiers and texts put in by SQLite's own rules (%w, %Q).
template <class... Arguments>
std::string Sql(const char* format, Arguments... arguments) {
  const std::unique_ptr<char, SqliteFree> text(sqlite3_mprintf(format, arguments...));
  if (text == nullptr) throw std::bad_alloc();
  return text.get();
}

using Row = std::vector<std::string>;

class Statement {
 public:
  Statement(sqlite3* db, const std::string& sql, const Row& values = {}) : db_(db) {
    Require(sqlite3_prepare_v2(db, sql.c_str(), -1, &statement_, nullptr) == SQLITE_OK);
    for (std::size_t i = 0; i < values.size(); ++i) {
      sqlite3_bind_text(statement_, static_cast<int>(i) + 1, values[i].c_str(), -1,
                        SQLITE_TRANSIENT);
    }
  }
  ~Statement() { sqlite3_finalize(statement_); }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  bool Next() {
    const int status = sqlite3_step(statement_);
    Require(status == SQLITE_ROW || status == SQLITE_DONE);
    return status == SQLITE_ROW;
  }
  /// A column as text; NULL as the empty one.
  std::string operator[](int column) const {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
    return text == nullptr ? "" : text;
  }

 private:
  void Require(bool isDone) const {
    if (isDone) return;
    const std::string message = sqlite3_errmsg(db_);
    throw Failure("orders: " + message);
  }

  sqlite3* db_;
  sqlite3_stmt* statement_ = nullptr;
};

void Execute(sqlite3* db, const std::string& sql, const Row& values = {}) {
  Statement statement(db, sql, values);
  while (statement.Next()) {
  }
}

/// What is built anew first: other indexes of a table without a rowid take over the order of its
/// rows, and setting a column needs indexes that are in order.
enum class Stage { kPrimaryKey, kIndex, kTable };

/// An index, or a table that keeps what functions answered.
struct Object {
  Stage stage;
  std::string name, table, rebuild;
  Dependences dependences;
};

/// Reads what the objects of one schema of a connection rest on.
class Reader {
 public:
  Reader(sqlite3* db, std::string schema) : db_(db), schema_(std::move(schema)) {}

  std::vector<Object> Objects() {
    Statement tables(db_, Sql("SELECT name, sql FROM \"%w\".sqlite_schema WHERE type = 'table' "
                              "AND sql NOT LIKE 'CREATE VIRTUAL%%'",
                              schema_.c_str()));
    while (tables.Next()) ReadTable(tables[0], tables[1]);
    std::stable_sort(objects_.begin(), objects_.end(),
                     [](const Object& a, const Object& b) { return a.stage < b.stage; });
    return std::move(objects_);
  }

 private:
  void ReadTable(const std::string& table, const std::string& sql) {
    Dependences generated;
    std::string stored;
    Statement columns(db_, "SELECT name, hidden FROM pragma_table_xinfo(?1, ?2)", {table, schema_});
    while (columns.Next()) {
      if (columns[1] != "2" && columns[1] != "3") continue;
      if (generated.empty()) AddExpressions(sql, generated);
      if (columns[1] == "3") stored = columns[0];
    }
    if (!stored.empty()) AddTable(table, generated);
    Statement indexes(
        db_,
        Sql("SELECT l.name, s.sql, l.origin FROM pragma_index_list(?1, ?2) l LEFT JOIN "
            "\"%w\".sqlite_schema s ON s.type = 'index' AND s.name = l.name",
            schema_.c_str()),
        {table, schema_});
    while (indexes.Next()) ReadIndex(indexes, table, generated);
  }

  /// @param row name, SQL, and "pk" for what holds a table in the order of its primary key.
  void ReadIndex(const Statement& row, const std::string& table, Dependences dependences) {
    const std::string index = row[0], sql = row[1];
    // Behind its own columns an index goes by those of the primary key, where that takes the place
    // of a rowid; behind those of the key the table's others stand in no order.
    const bool isPrimary = row[2] == "pk";
    Statement keys(
        db_, Sql("SELECT coll FROM pragma_index_xinfo(?1, ?2) WHERE %s", isPrimary ? "key" : "1"),
        {index, schema_});
    while (keys.Next()) AddCollation(keys[0], dependences);
    AddExpressions(sql, dependences);
    Add(isPrimary ? Stage::kPrimaryKey : Stage::kIndex, index, table,
        Sql("REINDEX \"%w\".\"%w\"", schema_.c_str(), index.c_str()), dependences);
  }

  /// A table's stored columns are worked out anew where any other column is set.
  void AddTable(const std::string& table, const Dependences& dependences) {
    Statement columns(db_, "SELECT name FROM pragma_table_xinfo(?1, ?2) WHERE hidden = 0 LIMIT 1",
                      {table, schema_});
    columns.Next();
    const std::string column = columns[0];
    Add(Stage::kTable, table, table,
        Sql("UPDATE \"%w\".\"%w\" SET \"%w\" = \"%w\"", schema_.c_str(), table.c_str(),
            column.c_str(), column.c_str()),
        dependences);
  }

  void Add(Stage stage, const std::string& name, const std::string& table,
           const std::string& rebuild, const Dependences& dependences) {
    if (dependences.empty()) return;
    const std::string record =
        Sql("; SELECT ot_record_orders(%Q, %Q);", name.c_str(), schema_.c_str());
    objects_.push_back({stage, name, table, rebuild + record, dependences});
  }

  sqlite3* db_;
  std::string schema_;
  std::vector<Object> objects_;
};

using Recorded = std::map<std::pair<std::string, std::string>, std::string>;

Recorded ReadRecorded(sqlite3* db, const std::string& schema) {
  Recorded recorded;
  Statement exists(db, Sql("SELECT 1 FROM \"%w\".sqlite_schema WHERE type = 'table' AND "
                           "name = 'ot_orders'",
                           schema.c_str()));
  if (!exists.Next()) return recorded;
  Statement rows(db, Sql("SELECT name, \"order\", version FROM \"%w\".ot_orders", schema.c_str()));
  while (rows.Next()) recorded[{rows[0], rows[1]}] = rows[2];
  return recorded;
}

// ---------------------------------------------------------------------------------------------
// ot_record_orders([name [, schema]])

/// Writes the versions of what isn't recorded yet; of a named object all, it was built just now.
int Record(sqlite3* db, const std::string& named, const std::string& schema) {
  int written = 0;
  Execute(db, Sql("CREATE TABLE IF NOT EXISTS \"%w\".ot_orders (name TEXT, \"order\" TEXT, "
                  "version TEXT NOT NULL, PRIMARY KEY (name, \"order\")) WITHOUT ROWID",
                  schema.c_str()));
  const Recorded before = ReadRecorded(db, schema);
  const std::string insert =
      Sql("INSERT OR REPLACE INTO \"%w\".ot_orders VALUES (?1, ?2, ?3)", schema.c_str());
  Recorded stale = before;
  for (const Object& object : Reader(db, schema).Objects()) {
    for (const std::string& dependence : object.dependences) {
      stale.erase({object.name, dependence});
      const bool isKnown = before.count({object.name, dependence}) != 0;
      if (named.empty() ? isKnown : named != object.name) continue;
      Execute(db, insert, {object.name, dependence, VersionOf(dependence)});
      ++written;
    }
  }
  for (const auto& entry : stale) {
    Execute(db,
            Sql("DELETE FROM \"%w\".ot_orders WHERE name = ?1 AND \"order\" = ?2", schema.c_str()),
            {entry.first.first, entry.first.second});
  }
  return written;
}

void RecordFunction(sqlite3_context* context, int count, sqlite3_value** values) {
  Answer(context, [&] {
    const auto argument = [&](int index, const char* otherwise) {
      return std::string(index < count && !IsNull(values[index]) ? TextOf(values[index])
                                                                 : otherwise);
    };
    sqlite3_result_int(
        context, Record(sqlite3_context_db_handle(context), argument(0, ""), argument(1, "main")));
  });
}

// ---------------------------------------------------------------------------------------------
// ot_check_orders([schema])

class CheckRows {
 public:
  static constexpr const char* kSchema =
      "CREATE TABLE x(name TEXT, \"table\" TEXT, \"order\" TEXT, recorded TEXT, loaded TEXT, "
      "rebuild TEXT, \"schema\" TEXT HIDDEN)";

  static int Plan(sqlite3_index_info* info) {
    for (int i = 0; i < info->nConstraint; ++i) {
      const auto& constraint = info->aConstraint[i];
      if (constraint.iColumn != kSchemaColumn || constraint.op != SQLITE_INDEX_CONSTRAINT_EQ) {
        continue;
      }
      if (constraint.usable == 0) return SQLITE_CONSTRAINT;
      info->aConstraintUsage[i].argvIndex = 1;
      info->aConstraintUsage[i].omit = 1;
      break;  // of a second one SQLite itself takes care
    }
    return SQLITE_OK;
  }

  explicit CheckRows(sqlite3* db) : db_(db) {}

  void Filter(const char*, int count, sqlite3_value** values) {
    const std::string schema(count > 0 && !IsNull(values[0]) ? TextOf(values[0]) : "main");
    const Recorded recorded = ReadRecorded(db_, schema);
    rows_.clear();
    at_ = 0;
    for (const Object& object : Reader(db_, schema).Objects()) {
      for (const std::string& dependence : object.dependences) {
        const auto found = recorded.find({object.name, dependence});
        const std::string known = found == recorded.end() ? "" : found->second;
        const std::string loaded = VersionOf(dependence);
        if (known == loaded) continue;
        rows_.push_back(
            {object.name, object.table, dependence, known, loaded, object.rebuild, schema});
      }
    }
  }
  bool AtEnd() const { return at_ == rows_.size(); }
  void Next() { ++at_; }
  void Column(sqlite3_context* context, int column) const {
    const std::string& text = rows_[at_][static_cast<std::size_t>(column)];
    if (column == kRecordedColumn && text.empty()) return;  // NULL
    sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
  }
  sqlite3_int64 Id() const { return static_cast<sqlite3_int64>(at_); }

 private:
  static constexpr int kRecordedColumn = 3, kSchemaColumn = 6;

  sqlite3* db_;
  std::vector<Row> rows_;
  std::size_t at_ = 0;
};

}  // namespace

int RegisterCheck(sqlite3* db) {
  for (int arguments = 0; arguments <= 2; ++arguments) {
    const int status = sqlite3_create_function_v2(db, "ot_record_orders", arguments,
                                                  SQLITE_UTF8 | SQLITE_DIRECTONLY, nullptr,
                                                  RecordFunction, nullptr, nullptr, nullptr);
    if (status != SQLITE_OK) return status;
  }
  return Module<CheckRows>::Register(db, "ot_check_orders");
}

}  // namespace ot95::sqlite
