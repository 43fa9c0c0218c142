#ifndef OT95_SQLITE_SQLITE_H
#define OT95_SQLITE_SQLITE_H

/// @file
/// What all parts of the extension share: SQLite's interface, the way out for errors.

#include <sqlite3ext.h>

#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

#include "ot95c/ot95c.h"

// Every source calls SQLite through the table that it hands to the extension.
SQLITE_EXTENSION_INIT3

namespace ot95::sqlite {

/// What SQLite tells its user.
struct Failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Throws what a status of the library stands for. @param where what was to be done.
inline void Check(int status, const std::string& where) {
  if (status == OT95_ERR_MEMORY) throw std::bad_alloc();
  if (status != OT95_OK) throw Failure(where + ": " + ot95_strerror(status));
}

/// Runs the body of a function that SQLite calls: nothing that is thrown gets to it.
template <class Body>
void Answer(sqlite3_context* context, Body&& body) noexcept {
  try {
    body();
  } catch (const std::bad_alloc&) {
    sqlite3_result_error_nomem(context);
  } catch (const std::exception& failure) {
    sqlite3_result_error(context, failure.what(), -1);
  }
}

inline bool IsNull(sqlite3_value* value) {
  return sqlite3_value_type(value) == SQLITE_NULL;
}
inline bool IsBlob(sqlite3_value* value) {
  return sqlite3_value_type(value) == SQLITE_BLOB;
}
/// A value as UTF-8, good until it is asked for otherwise. Of a blob: its bytes.
inline std::string_view TextOf(sqlite3_value* value) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
  if (text == nullptr) throw std::bad_alloc();
  return {text, static_cast<std::size_t>(sqlite3_value_bytes(value))};
}

/// The table with which SQLite is told of functions: `name` takes `fewest` to `most` arguments.
struct Function {
  const char* name;
  int fewest, most;
  void (*call)(sqlite3_context*, int, sqlite3_value**);
};

/// What parts there are: each registers what it offers. @return SQLite's status.
int RegisterCollations(sqlite3* db);
int RegisterTexts(sqlite3* db);
int RegisterValues(sqlite3* db);
int RegisterRecords(sqlite3* db);
int RegisterCheck(sqlite3* db);

/// Registers pure functions, each with the neutral order as its user data.
int RegisterFunctions(sqlite3* db, const Function* first, std::size_t count);

}  // namespace ot95::sqlite

#endif
