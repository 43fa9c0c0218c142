#ifndef OT95_SRC_BLOB_ROWS_H
#define OT95_SRC_BLOB_ROWS_H

// The row of blobs.

#include "ot95/typemgr.h"

namespace ot95 {

extern OtTypeDescriptor rowOtBlob;

}  // namespace ot95

#endif
