// Whether the libraries that were loaded belong together.

#include "ot95/version.h"

int CheckOtVersionNumber(unsigned long major, unsigned long minor, unsigned long revision,
                         unsigned long build, unsigned long patch, int) noexcept {
  const unsigned long asked[] = {major, minor, revision, build, patch};
  const unsigned long here[] = {OT_VERSION_MAJOR, OT_VERSION_MINOR, OT_VERSION_REVISION,
                                OT_VERSION_BUILD, OT_VERSION_PATCH};
  for (int i = 0; i < 5; ++i) {
    if (asked[i] != here[i]) return i + 1;
  }
  return 0;
}
