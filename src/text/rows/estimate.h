#ifndef OT95_SRC_TEXT_ROWS_ESTIMATE_H
#define OT95_SRC_TEXT_ROWS_ESTIMATE_H

// Member EvalAndBound of the rows of strings.

#include "ot95/typemgr.h"

namespace ot95 {

/// Estimates a text or pattern against an index of keys and makes its scan limits.
/// @param legacy not 0 for the row that stores the old form: then all texts are raw.
float StringEvalAndBound(OtIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                         unsigned long count, OtIdxBounds* limits, unsigned short legacy);

/// @tparam legacy as above.
template <unsigned short legacy>
float EvalString(OtIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                 unsigned long count, OtIdxBounds* limits) {
  return StringEvalAndBound(bounds, op, value, format, count, limits, legacy);
}

}  // namespace ot95

#endif
