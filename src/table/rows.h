#ifndef OT95_SRC_TABLE_ROWS_H
#define OT95_SRC_TABLE_ROWS_H

/// @file
/// Every row of the table of types. A row is a constant-initialised variable in the room of its
/// family, so that it is complete before any code runs; it is writable for the Exchange operations.

#include "blob/rows.h"
#include "identity/rows.h"
#include "numbers/rows.h"
#include "temporal/rows.h"
#include "text/legacy/rows.h"
#include "text/rows/rows.h"

namespace ot95 {

constexpr unsigned kCurrentRows = 41;  ///< Rows of CurrentFactory.
constexpr unsigned kLegacyRows = 28;   ///< Rows of LegacyFactory.

extern OtTypeDescriptor rowIllegal;

}  // namespace ot95

#endif
