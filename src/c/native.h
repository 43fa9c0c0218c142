#ifndef OT95_SRC_C_NATIVE_H
#define OT95_SRC_C_NATIVE_H

namespace ot95::c {

/// How C sees the values of a type: OT95_KIND_...
unsigned KindOf(char id);

}  // namespace ot95::c

#endif
