// Where a text stands in another one.
#include "c/collation.h"

namespace ot95::c {

namespace {

int Find(const ot95_collation& collation, const ot95_span& utf8, const ot95_span& sought,
         int* found, std::size_t* place) {
  WideText wide, wideSought;
  OtString text, pattern;
  if (const int status = wide.Take(utf8.data, utf8.size)) return status;
  if (const int status = wideSought.Take(sought.data, sought.size)) return status;
  if (const int status = wide.ToString(OT_CS_UNICODE, collation.language, text)) return status;
  if (const int status = wideSought.ToString(OT_CS_UNICODE, collation.language, pattern)) {
    return status;
  }
  const auto op = static_cast<unsigned short>(collation.options | OT_CMP_NO_WILDCARDS);
  const short unit = text.Find(pattern, 0, op);
  *found = unit >= 0;
  *place = unit >= 0 ? Utf8Size(wide.units(), static_cast<std::size_t>(unit)) : 0;
  return OT95_OK;
}

}  // namespace

}  // namespace ot95::c

using namespace ot95::c;

int ot95_collation_find(const ot95_collation* collation, const char* text, size_t size,
                        const char* sought, size_t sought_size, int* found, size_t* place) {
  int isFound = 0;
  size_t bytes = 0;
  if (collation == nullptr || found == nullptr || place == nullptr) return OT95_ERR_ARGUMENT;
  const int status = Guarded([&] {
    return Find(*collation, {text, size}, {sought, sought_size}, &isFound, &bytes);
  });
  if (status != OT95_OK) return status;
  *found = isFound;
  *place = bytes;
  return OT95_OK;
}
