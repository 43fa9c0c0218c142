/* Compiled as C11: the C interface from its users' side. */
#include "ot95c/ot95c.h"

_Static_assert(OT95_ERR_INTERNAL < 0, "statuses are negative");

int Describe(int type, ot95_type* out);
int Describe(int type, ot95_type* out) {
  *out = (ot95_type){.struct_size = sizeof *out};
  return ot95_type_describe(type, out);
}
