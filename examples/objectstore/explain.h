#ifndef OTDB_EXPLAIN_H
#define OTDB_EXPLAIN_H

#include <string>

#include "execute.h"

namespace otdb {

/// A key as a person reads it: order words by what they stand for, other values as they print, sort
/// keys by their digits.
std::string KeyToText(const Member& member, View key, const KeyKind& kind);

/// Each estimate, and what was chosen.
std::string Explain(const Store& store, const Snapshot& snapshot, const Query& query,
                    const Plan& plan);
/// What was estimated, beside what came.
std::string ExplainTally(const Store& store, const Snapshot& snapshot, const Query& query,
                         const Plan& plan, const Tally& tally);

}  // namespace otdb

#endif
