#ifndef OTDB_EXECUTE_H
#define OTDB_EXECUTE_H

#include <functional>

#include "plan.h"

namespace otdb {

/// What answering a query took.
struct Tally {
  std::size_t looked = 0;  ///< Entries or objects that were looked at.
  std::size_t found = 0;   ///< Those that qualified.
};

/// Sees an object that qualifies. @return whether to go on.
using Visitor = std::function<bool(View id, const Record& record)>;

/// Answers a query along a plan: every candidate is held against the whole condition. Without
/// "order by" objects come as the plan meets them; with it, the identifiers and sort members of all
/// that qualify are held in memory.
Tally Execute(const Store& store, const Snapshot& snapshot, const Query& query, const Plan& plan,
              const Visitor& visitor);

}  // namespace otdb

#endif
