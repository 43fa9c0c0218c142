#ifndef OT95_SQLITE_VTAB_H
#define OT95_SQLITE_VTAB_H

/// @file
/// Tables that are functions: read only, there without CREATE, made of rows that a class answers.

#include <memory>

#include "sqlite.h"

namespace ot95::sqlite {

/**
 * A module of SQLite around a class of rows:
 * @code
 *   struct Rows {
 *     static constexpr const char* kSchema = "CREATE TABLE x(...)";
 *     static int Plan(sqlite3_index_info* info);  // a status
 *     explicit Rows(sqlite3* db);
 *     void Filter(const char* plan, int count, sqlite3_value** values);
 *     bool AtEnd() const;
 *     void Next();
 *     void Column(sqlite3_context* context, int column) const;
 *     sqlite3_int64 Id() const;
 *   };
 * @endcode
 * What Filter, Next and Column throw becomes the statement's error.
 */
template <class Rows>
class Module {
 public:
  static int Register(sqlite3* db, const char* name) {
    return sqlite3_create_module_v2(db, name, &kModule, nullptr, nullptr);
  }

 private:
  struct Table : sqlite3_vtab {
    sqlite3* db;
  };
  struct Cursor : sqlite3_vtab_cursor {
    std::unique_ptr<Rows> rows;
  };

  template <class Body>
  static int Run(sqlite3_vtab* table, Body&& body) noexcept {
    try {
      body();
      return SQLITE_OK;
    } catch (const std::bad_alloc&) {
      return SQLITE_NOMEM;
    } catch (const std::exception& failure) {
      sqlite3_free(table->zErrMsg);
      table->zErrMsg = sqlite3_mprintf("%s", failure.what());
      return SQLITE_ERROR;
    }
  }

  static int Connect(sqlite3* db, void*, int, const char* const*, sqlite3_vtab** out, char**) {
    // It reads files or the schema: not for a view or trigger that came with a database.
    sqlite3_vtab_config(db, SQLITE_VTAB_DIRECTONLY);
    const int status = sqlite3_declare_vtab(db, Rows::kSchema);
    if (status != SQLITE_OK) return status;
    auto* table = new (std::nothrow) Table{};
    if (table == nullptr) return SQLITE_NOMEM;
    table->db = db;
    *out = table;
    return SQLITE_OK;
  }
  static int Disconnect(sqlite3_vtab* table) {
    delete static_cast<Table*>(table);
    return SQLITE_OK;
  }
  static int BestIndex(sqlite3_vtab* table, sqlite3_index_info* info) {
    int status = SQLITE_OK;
    const int run = Run(table, [&] { status = Rows::Plan(info); });
    return run != SQLITE_OK ? run : status;
  }
  static int Open(sqlite3_vtab* table, sqlite3_vtab_cursor** out) {
    return Run(table, [&] {
      auto cursor = std::make_unique<Cursor>();
      cursor->rows = std::make_unique<Rows>(static_cast<Table*>(table)->db);
      *out = cursor.release();
    });
  }
  static int Close(sqlite3_vtab_cursor* cursor) {
    delete static_cast<Cursor*>(cursor);
    return SQLITE_OK;
  }
  static Rows& RowsOf(sqlite3_vtab_cursor* cursor) { return *static_cast<Cursor*>(cursor)->rows; }
  static int Filter(sqlite3_vtab_cursor* cursor, int, const char* plan, int count,
                    sqlite3_value** values) {
    return Run(cursor->pVtab, [&] { RowsOf(cursor).Filter(plan, count, values); });
  }
  static int Next(sqlite3_vtab_cursor* cursor) {
    return Run(cursor->pVtab, [&] { RowsOf(cursor).Next(); });
  }
  static int AtEnd(sqlite3_vtab_cursor* cursor) { return RowsOf(cursor).AtEnd(); }
  static int Column(sqlite3_vtab_cursor* cursor, sqlite3_context* context, int column) {
    Answer(context, [&] { RowsOf(cursor).Column(context, column); });
    return SQLITE_OK;
  }
  static int Id(sqlite3_vtab_cursor* cursor, sqlite3_int64* id) {
    *id = RowsOf(cursor).Id();
    return SQLITE_OK;
  }

  static constexpr sqlite3_module Make() {
    sqlite3_module module = {};
    module.xConnect = Connect;  // and no xCreate: there is nothing to create
    module.xBestIndex = BestIndex;
    module.xDisconnect = Disconnect;
    module.xOpen = Open;
    module.xClose = Close;
    module.xFilter = Filter;
    module.xNext = Next;
    module.xEof = AtEnd;
    module.xColumn = Column;
    module.xRowid = Id;
    return module;
  }
  static constexpr sqlite3_module kModule = Make();
};

}  // namespace ot95::sqlite

#endif
