#ifndef OT95_SRC_IDENTITY_ROWS_H
#define OT95_SRC_IDENTITY_ROWS_H

// The rows of identifiers, and of the seal.

#include "ot95/typemgr.h"

namespace ot95 {

extern OtTypeDescriptor rowOtObjId;
extern OtTypeDescriptor rowOtClassId;
extern OtTypeDescriptor rowOtRef;
extern OtTypeDescriptor rowOtSeal;

}  // namespace ot95

#endif
