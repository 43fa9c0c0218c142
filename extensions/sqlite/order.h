#ifndef OT95_SQLITE_ORDER_H
#define OT95_SQLITE_ORDER_H

/// @file
/// Orders of texts by name: "ot95_sv_ci_ai" is Swedish without case and accents.

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "sqlite.h"

namespace ot95::sqlite {

struct FreeCollation {
  void operator()(ot95_collation* collation) const { ot95_free(collation); }
};
using Collation = std::unique_ptr<ot95_collation, FreeCollation>;

struct Order {
  unsigned language = 1;
  unsigned options = 0;  ///< OT95_IGNORE_...
};

/**
 * Reads "ot95_TAG_OPTION...", where the tag is one of BCP 47 with '-' or '_' and the options are ci
 * ai wi si oo; "ot95" and either part may be missing. Case doesn't count.
 */
std::optional<Order> ParseOrder(std::string_view name);
/// Reads options alone: "ci_ai"; also with blanks or commas between them.
std::optional<unsigned> ParseOptions(std::string_view names);

/// The tag of a language, as ot_orders holds it.
std::string TagOf(unsigned language);
Collation Open(const Order& order);

/// The order that an argument of a function names, the neutral one where it has none.
const ot95_collation* OrderArgument(sqlite3_context* context, int count, sqlite3_value** values,
                                    int index);

}  // namespace ot95::sqlite

#endif
