#ifndef OT95_SRC_KIT_VERIFY_H
#define OT95_SRC_KIT_VERIFY_H

// What VerifyStored asks of a family whose size depends on the value.

#include <cstddef>

#include "ot95/base.h"

namespace ot95 {

/// What VerifyStored looks at.
struct StoredBytes {
  const unsigned char* bytes;
  unsigned long available;  ///< 0 for null bytes.
  unsigned char format;     ///< The whole format byte.
  unsigned long count;      ///< Values that should stand there.
};

/// Checks stored values of one family; `consumed` starts at 0 and moves over every value that is
/// good. Answers as OtTypeMgr::VerifyStored.
using VerifyFunc = int (*)(const StoredBytes& stored, unsigned long& consumed);

int VerifyBlobs(const StoredBytes& stored, unsigned long& consumed);
int VerifyLegacyStrings(const StoredBytes& stored, unsigned long& consumed);

}  // namespace ot95

#endif
