// Collations, made when a statement names them.
#include <algorithm>
#include <cstring>

#include "order.h"
#include "utf8.h"

namespace ot95::sqlite {

namespace {

/// What SQLite calls a collation by.
struct Comparison {
  Collation order;
  sqlite3* db;
};

/// Runs of bytes that are no texts stand behind all texts, in the order of their bytes: whatever
/// SQLite compares has to have one order.
int CompareStrays(std::string_view a, std::string_view b) {
  const bool isText = IsText(a);
  if (isText == IsText(b)) return a.compare(b);
  return isText ? -1 : 1;
}

int CompareTexts(const Comparison& comparison, std::string_view a, std::string_view b) {
  int sign = 0;
  const int status =
      ot95_collation_compare(comparison.order.get(), a.data(), a.size(), b.data(), b.size(), &sign);
  // A comparison can't fail, and a wrong answer would put an index out of order: so the statement
  // ends.
  if (status != OT95_OK) sqlite3_interrupt(comparison.db);
  return sign;
}

/// SQLite may have no address for an empty text.
std::string_view Bytes(const void* data, int size) {
  if (size == 0) return "";
  return {static_cast<const char*>(data), static_cast<std::size_t>(size)};
}

// The library may tell two texts apart before it comes to what is none.
int Compare(void* data, int aSize, const void* aData, int bSize, const void* bData) {
  const std::string_view a = Bytes(aData, aSize), b = Bytes(bData, bSize);
  if (!IsText(a) || !IsText(b)) return CompareStrays(a, b);
  return CompareTexts(*static_cast<const Comparison*>(data), a, b);
}

void Forget(void* comparison) {
  delete static_cast<Comparison*>(comparison);
}

/// Names of other extensions are left to SQLite, which says that there is no such collation.
void Needed(void*, sqlite3* db, int, const char* name) {
  try {
    if (sqlite3_strnicmp(name, "ot95", 4) != 0) return;
    const std::optional<Order> order = ParseOrder(name);
    if (!order) return;
    auto comparison = std::make_unique<Comparison>(Comparison{Open(*order), db});
    const int status =
        sqlite3_create_collation_v2(db, name, SQLITE_UTF8, comparison.get(), Compare, Forget);
    if (status == SQLITE_OK) comparison.release();  // on an error SQLite leaves it to us
  } catch (const std::exception& failure) {
    sqlite3_log(SQLITE_ERROR, "%s: %s", name, failure.what());
  }
}

}  // namespace

int RegisterCollations(sqlite3* db) {
  return sqlite3_collation_needed(db, nullptr, Needed);
}

}  // namespace ot95::sqlite
