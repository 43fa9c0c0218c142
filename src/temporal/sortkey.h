#ifndef OT95_SRC_TEMPORAL_SORTKEY_H
#define OT95_SRC_TEMPORAL_SORTKEY_H

#include "kit/sortkey.h"

namespace ot95 {

// The fields that comparison looks at, from the first. A date with open fields has no place in an
// order; as an operand it gives the fields before them.
int SortKeyOfDates(const SortInput& input, SortKeyWriter& out);
int SortKeyOfTimes(const SortInput& input, SortKeyWriter& out);
int SortKeyOfDateTimes(const SortInput& input, SortKeyWriter& out);
int SortKeyOfD_Dates(const SortInput& input, SortKeyWriter& out);
int SortKeyOfD_Times(const SortInput& input, SortKeyWriter& out);
int SortKeyOfD_Timestamps(const SortInput& input, SortKeyWriter& out);

}  // namespace ot95

#endif
