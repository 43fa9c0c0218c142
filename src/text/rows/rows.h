#ifndef OT95_SRC_TEXT_ROWS_ROWS_H
#define OT95_SRC_TEXT_ROWS_ROWS_H

// The row of OtString, and the one that takes its place in the table for old formats.

#include "ot95/typemgr.h"

namespace ot95 {

extern OtTypeDescriptor rowOtString;
extern OtTypeDescriptor rowLegacyOtString;

}  // namespace ot95

#endif
