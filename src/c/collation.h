#ifndef OT95_SRC_C_COLLATION_H
#define OT95_SRC_C_COLLATION_H

#include "c/bridge.h"
#include "c/utf8.h"
#include "ot95/oin_keys.h"

struct ot95_collation {
  unsigned char language;
  unsigned short options;          ///< An op word, without wildcards.
  const ot95::FinishedKeys* keys;  ///< Null where bytes aren't compared by them.
};

#endif
