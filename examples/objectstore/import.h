#ifndef OTDB_IMPORT_H
#define OTDB_IMPORT_H

#include <functional>
#include <string>

#include "store.h"

namespace otdb {

struct ImportOptions {
  bool skipBad = false;                                             ///< Goes on behind a bad line.
  std::size_t batch = 10'000;                                       ///< Objects a transaction.
  std::function<void(const std::string&)> report;                   ///< Is told of bad lines.
  std::function<void(double share, std::size_t objects)> progress;  ///< Is told after each batch.
};

struct ImportResult {
  std::size_t objects = 0;
  std::size_t bad = 0;
};

/// Adds an object for each line of a CSV file behind its header, which names columns as ColumnsOf
/// does; members without a column keep their default. A bad line ends the import unless bad lines
/// are skipped: throws BadInput with its number, and what was added before it stays. So does what
/// can't be read or stored. The store is analyzed at the end.
ImportResult Import(Store& store, const Class& type, const std::string& file,
                    const ImportOptions& options);

}  // namespace otdb

#endif
