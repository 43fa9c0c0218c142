#ifndef OT95_SRC_KIT_FLOATSCAN_H
#define OT95_SRC_KIT_FLOATSCAN_H

#include <cstddef>

namespace ot95 {

/// Index of the first pair of floating-point numbers for which `==` doesn't hold, or `count`; T is
/// float or double.
template <class T>
std::size_t FirstUnequalFloat(const unsigned char* left, const unsigned char* right,
                              std::size_t count, unsigned char form);

}  // namespace ot95

#endif
