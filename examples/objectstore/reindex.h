#ifndef OTDB_REINDEX_H
#define OTDB_REINDEX_H

#include <functional>
#include <string>
#include <vector>

#include "store.h"

namespace otdb {

struct ReindexOptions {
  std::size_t batch = 10'000;                                       ///< Objects a transaction.
  std::function<void(double share, std::size_t objects)> progress;  ///< Is told after each batch.
};

struct IndexName {
  const ClassTrees* trees;
  const IndexTrees* index;
};

/// "Place.name"
std::string NameOf(const ClassTrees& trees, const IndexTrees& index);
/// The index of such a name. Throws BadInput for a name that none has.
IndexName IndexNamed(const Store& store, const std::string& name);
/// Indexes whose keys were made under another order than that of their language now, and those
/// that are built in part.
std::vector<IndexName> OutdatedIndexes(const Store& store, const Snapshot& snapshot);

/// Builds an index anew from the objects, in transactions: a process that is killed leaves an index
/// that is told to be built in part, and the next call goes on where it ended. @return its entries.
std::size_t Reindex(Store& store, const IndexName& name, const ReindexOptions& options);

}  // namespace otdb

#endif
