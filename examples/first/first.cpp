#include <cstdio>

#include "ot95/ot95.h"

int main() {
  OtTypeMgr types;
  char id;
  types.Name2OtTypeId("OtString", id);
  OtString city("Orleans"), copy;
  unsigned char page[64];
  types.Store(id, page, &city, OT_FORMAT_BIG_ENDIAN, 1);
  types.Load(id, &copy, page, OT_FORMAT_BIG_ENDIAN, 1);
  std::puts(copy.Compare("orl*", OT_CMP_IGNORE_CASE) == 0 ? "found" : "lost");
}
