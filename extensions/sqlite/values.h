#ifndef OT95_SQLITE_VALUES_H
#define OT95_SQLITE_VALUES_H

/// @file
/// Stored values: the arguments that say what bytes hold, and values as SQL and JSON have them.

#include <string>
#include <utility>
#include <vector>

#include "sqlite.h"

namespace ot95::sqlite {

/// Reads the name of a type, or its number with 256 added for the old table. Throws Failure.
int ParseType(const std::string& name);

struct Form {
  unsigned form = OT95_FORM_NATIVE;
  unsigned table = 0;  ///< OT95_OLD_TABLE or 0.
};
/// Reads "native", "big-endian", "old" or the number of a form, several with commas between them.
Form ParseForm(std::string_view names);

ot95_type DescribeType(int type);

/// How the bytes of an argument are to be read.
struct ValueArguments {
  int type;
  unsigned form;
  unsigned options;

  /// The one value of the argument. Throws Failure where bytes are left over.
  ot95_array ArrayOf(sqlite3_value* bytes) const;
};
/// Takes type, form and options from the arguments that begin at an index.
ValueArguments TakeValueArguments(int count, sqlite3_value** values, int first);

/// The elements of an array, which has been verified, as SQL and JSON have them. The bytes stay
/// where they are.
class Elements {
 public:
  explicit Elements(const ot95_array& array);

  /// Gives an element as SQL's own value.
  void Give(sqlite3_context* context, std::size_t index) const;
  /// Adds an element to a text in JSON.
  void AddJson(std::string& json, std::size_t index) const;

 private:
  /// Exactly one of these.
  struct Decoded {
    enum { kNull, kInteger, kReal, kText, kBytes } kind = kNull;
    sqlite3_int64 integer = 0;
    double real = 0;
    std::string text;  ///< Also for bytes.
  };

  void Split();
  Decoded Decode(std::size_t index) const;
  std::string Print(std::size_t index) const;
  bool IsNullAt(std::size_t index) const;
  /// An array that has an element, and its place in it.
  std::pair<const ot95_array*, std::size_t> PlaceOf(std::size_t index) const;

  ot95_array array_;
  ot95_type type_;
  std::vector<ot95_value> values_;  ///< Of a type that has values of C.
  std::vector<ot95_array> parts_;   ///< One element each, where they stand by themselves.
};

void AddQuoted(std::string& json, std::string_view text);

}  // namespace ot95::sqlite

#endif
