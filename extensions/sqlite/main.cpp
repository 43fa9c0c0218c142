// The type manager in SQLite: what `.load` calls.
#include <sqlite3ext.h>
SQLITE_EXTENSION_INIT1

#include "sqlite.h"

/// Found by the name of the file: the letters of "ot95".
extern "C" __attribute__((visibility("default"))) int sqlite3_ot_init(
    sqlite3* db, char** message, const sqlite3_api_routines* api) {
  SQLITE_EXTENSION_INIT2(api);
  using namespace ot95::sqlite;
  try {
    for (const auto part :
         {RegisterCollations, RegisterTexts, RegisterValues, RegisterRecords, RegisterCheck}) {
      if (const int status = part(db)) return status;
    }
    return SQLITE_OK;
  } catch (const std::exception& failure) {
    *message = sqlite3_mprintf("ot95: %s", failure.what());
    return SQLITE_ERROR;
  }
}
