#ifndef OT95_SRC_IDENTITY_SORTKEY_H
#define OT95_SRC_IDENTITY_SORTKEY_H

#include "kit/sortkey.h"

namespace ot95 {

// What comparison looks at of identifiers: not where the object was last seen, nor its class.
int SortKeyOfObjIds(const SortInput& input, SortKeyWriter& out);
int SortKeyOfClassIds(const SortInput& input, SortKeyWriter& out);
int SortKeyOfRefs(const SortInput& input, SortKeyWriter& out);
int SortKeyOfSeals(const SortInput& input, SortKeyWriter& out);

}  // namespace ot95

#endif
