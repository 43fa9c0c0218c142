#ifndef OT95_SRC_TEXT_ROWS_SORTKEY_H
#define OT95_SRC_TEXT_ROWS_SORTKEY_H

/// @file
/// Sort keys of the string rows.

#include "text/collation/sortkey.h"

namespace ot95 {

/// The key of one string in memory, answered as OtTypeMgr::SortKey does.
unsigned long SortKeyOfString(const OtString& string, unsigned short cmpOp, void* target,
                              unsigned long room, int& status);

/// @tparam legacy a record that the given length cuts is taken for one of the old form.
template <bool legacy>
int SortKeyOfStrings(const SortInput& input, SortKeyWriter& out);

/// One end of the range of an operand, of which only the first element counts. @return a status.
template <bool legacy>
int SortRangeOfStrings(const SortInput& operand, unsigned short keyOp, bool equal, bool upper,
                       SortKeyWriter& out, TextRange::Kind& kind);

}  // namespace ot95

#endif
