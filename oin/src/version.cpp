// Says what the tables were made from.
#include "ot95/oin_version.h"

namespace {
#include "../data/oin_versions.inc"
}  // namespace

const OtTableVersions& OtGetTableVersions() noexcept {
  return kTableVersions;
}
