#ifndef OT95_SRC_TEXT_COLLATION_KEYCOMPARE_H
#define OT95_SRC_TEXT_COLLATION_KEYCOMPARE_H

#include <optional>

namespace ot95 {

/// Compares two keys of order words as an index does at every step down its tree: word by word.
/// @return what the level walk gives; nothing where these aren't two whole keys of one script, or
///   where wildcards or whole orders are asked for.
std::optional<int> CompareKeysInStep(unsigned char format, unsigned long length1,
                                     const void* value1, unsigned long length2, const void* value2,
                                     unsigned short cmpOp);

}  // namespace ot95

#endif
