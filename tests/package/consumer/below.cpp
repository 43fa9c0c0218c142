// Uses the two libraries below the type manager, without it.
#include <cstdio>

#include "ot95/obs.h"
#include "ot95/oin.h"

int main() {
  const int differs = CheckOtVersionNumber(OT_VERSION_MAJOR, OT_VERSION_MINOR, OT_VERSION_REVISION,
                                           OT_VERSION_BUILD, OT_VERSION_PATCH, 0);
  std::puts(OtLanguageContext::LanguageOfTag("sv") != 0 && differs == 0 ? "found" : "lost");
}
