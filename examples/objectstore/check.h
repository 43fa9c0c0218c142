#ifndef OTDB_CHECK_H
#define OTDB_CHECK_H

#include <functional>
#include <string>

#include "store.h"

namespace otdb {

struct CheckResult {
  std::size_t objects = 0;
  std::size_t entries = 0;
  std::size_t faults = 0;
};

/// Verifies every identifier and record, and holds every entry of every index against its object.
/// @param report is told of each fault.
CheckResult Check(const Store& store, const Snapshot& snapshot,
                  const std::function<void(const std::string&)>& report);

}  // namespace otdb

#endif
