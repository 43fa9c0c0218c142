// The C interface is a header for C++17 as well.
#include "ot95c/ot95c.h"

static_assert(sizeof(ot95_span) == 2 * sizeof(void*), "a pointer and a size");
