#ifndef OTDB_STATISTICS_H
#define OTDB_STATISTICS_H

#include <functional>
#include <optional>
#include <vector>

#include "store.h"

namespace otdb {

/// A stretch of an index between two of its own keys, both within.
struct Stretch {
  Bytes lower, upper;
  std::uint64_t entries;
};

/// An index in stretches that were about equally filled when it was measured, in its order and
/// without its nulls. They end where neighbours have little in common, so that the range of a
/// prefix, of a year or of a country begins and ends with a stretch more often than within one. A
/// key of many entries is a stretch of its own.
using Statistics = std::vector<Stretch>;

/// Measures all indexes, and keeps the result in the store until the next time.
/// @param report is told of each index; may be empty.
void Analyze(Store& store,
             const std::function<void(const std::string& index, std::size_t stretches)>& report);

/// What is kept of an index. Nothing where it was never measured.
/// @param isDamaged is set where there is something that can't be read; may be null.
std::optional<Statistics> StatisticsOf(const Store& store, const Snapshot& snapshot,
                                       const ClassTrees& trees, const IndexTrees& index,
                                       bool* isDamaged = nullptr);

/// The key of an index's nulls. Nothing where the type has none.
std::optional<Bytes> NullKeyOf(const Member& member, const KeyKind& keys);

}  // namespace otdb

#endif
