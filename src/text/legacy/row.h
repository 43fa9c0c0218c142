#ifndef OT95_SRC_TEXT_LEGACY_ROW_H
#define OT95_SRC_TEXT_LEGACY_ROW_H

#include "ot95/typemgr.h"
#include "text/legacy/collation.h"

namespace ot95 {

/// Bytes before the strings of a stored record: a marker and a length.
constexpr unsigned legacyHeader = 3;

/// Estimators of the two rows, by the contract of OtEvalFunc.
float EvalAndBoundIString(OtIdxBounds* bounds, unsigned short& op, void* value,
                          unsigned char format, unsigned long count, OtIdxBounds* limits);
float EvalAndBoundCaseIString(OtIdxBounds* bounds, unsigned short& op, void* value,
                              unsigned char format, unsigned long count, OtIdxBounds* limits);

}  // namespace ot95

#endif
