#ifndef OT95_SRC_TEXT_LEGACY_SORTKEY_H
#define OT95_SRC_TEXT_LEGACY_SORTKEY_H

#include "kit/sortkey.h"

namespace ot95 {

/// @tparam String OtIString or OtCaseIString.
template <class String>
int SortKeyOfLegacyStrings(const SortInput& input, SortKeyWriter& out);

}  // namespace ot95

#endif
