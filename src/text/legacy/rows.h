#ifndef OT95_SRC_TEXT_LEGACY_ROWS_H
#define OT95_SRC_TEXT_LEGACY_ROWS_H

// The rows of the old 8-bit strings.

#include "ot95/typemgr.h"

namespace ot95 {

extern OtTypeDescriptor rowOtIString;
extern OtTypeDescriptor rowOtCaseIString;

}  // namespace ot95

#endif
