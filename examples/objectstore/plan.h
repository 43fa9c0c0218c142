#ifndef OTDB_PLAN_H
#define OTDB_PLAN_H

#include <optional>
#include <string>
#include <vector>

#include "bytes.h"
#include "query.h"
#include "store.h"

namespace otdb {

/// A stretch of an index.
struct Range {
  const IndexTrees* index;
  std::optional<Bytes> lower, upper;  ///< Keys within; open where there is none.
  /// Also all entries whose key doesn't tell all of the text, wherever they are filed.
  bool withPartial = false;
  double share = 0;  ///< Estimated, of the index's entries.
};

/// What an estimate said of a term.
struct TermEstimate {
  std::string text;
  double share;
  Range range;
};

/// How a query is going to be answered: by ranges whose union holds all that qualifies, or, without
/// any, by a look at every object.
struct Plan {
  std::vector<Range> ranges;
  double share = 1;                 ///< Estimated, of the objects that will be looked at.
  std::vector<TermEstimate> terms;  ///< Of all terms on indexed members, also those not taken.
};

Plan MakePlan(const Store& store, const Snapshot& snapshot, const Query& query);

}  // namespace otdb

#endif
