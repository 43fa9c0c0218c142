#ifndef OT95_SRC_IDENTITY_IDENTIFIERS_H
#define OT95_SRC_IDENTITY_IDENTIFIERS_H

#include "ot95/identity.h"

namespace ot95 {

/// The 48-bit serial number of any identifier or reference.
template <class T>
std::uint64_t SerialNumber(const T& id) {
  return std::uint64_t{id.highPart} << 32 | id.lowPart;
}

/// Class and version as one number.
inline std::uint32_t ClassKey(const OtClassId& id) {
  return std::uint32_t{id.classNumber} << 16 | id.classVersion;
}

}  // namespace ot95

#endif
