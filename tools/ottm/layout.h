#ifndef OTTM_LAYOUT_H
#define OTTM_LAYOUT_H

#include <string>
#include <vector>

#include "ot95/typemgr.h"

namespace ottm {

/// One member of a record: an array of values whose stored forms stand one behind another.
struct LayoutMember {
  char type;
  std::string name;
  unsigned long count;
};

using Layout = std::vector<LayoutMember>;

/// Reads TYPE[:NAME][xCOUNT],... for records in a form. A member without a name has its type's,
/// with its place behind it where that was taken. Throws BadInput that names the place.
Layout ParseLayout(const OtTypeMgr& manager, const std::string& list, unsigned char format);

/// What a record's values are headed with: an array has a column for each element.
std::vector<std::string> ColumnsOf(const Layout& layout);

}  // namespace ottm

#endif
