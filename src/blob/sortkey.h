#ifndef OT95_SRC_BLOB_SORTKEY_H
#define OT95_SRC_BLOB_SORTKEY_H

// Sort keys of blobs.

#include "kit/sortkey.h"

namespace ot95 {

int SortKeyOfBlobs(const SortInput& input, SortKeyWriter& out);

}  // namespace ot95

#endif
