#ifndef OT95_SRC_C_COLLATION_H
#define OT95_SRC_C_COLLATION_H

#include "c/bridge.h"
#include "c/utf8.h"

struct ot95_collation {
  unsigned char language;
  unsigned short options;  ///< An op word, without wildcards.
};

#endif
