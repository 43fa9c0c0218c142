#ifndef OT95_SQLITE_DEPENDENCE_H
#define OT95_SQLITE_DEPENDENCE_H

/// @file
/// What the order of an index, or what a table keeps, rests on: orders of languages, and functions
/// of this extension.

#include <cstdint>
#include <set>
#include <string>
#include <string_view>

#include "sqlite.h"

namespace ot95::sqlite {

/**
 * Names of what has a version: tags of languages; "functions" for sort keys and case, whatever the
 * language; "*" for the orders of all languages, where an expression doesn't tell which one.
 */
using Dependences = std::set<std::string>;

/// The version that the loaded library has of one. Empty for a name that it doesn't know.
std::string VersionOf(const std::string& dependence);

/// Adds the order of a collation, if it is one of ours.
void AddCollation(std::string_view name, Dependences& to);

/// Adds what the functions and collations rest on that the SQL of an index or table names.
void AddExpressions(std::string_view sql, Dependences& to);

}  // namespace ot95::sqlite

#endif
