#ifndef PLACES_H
#define PLACES_H

#include <cstdint>
#include <functional>
#include <istream>
#include <optional>
#include <string>
#include <vector>

#include "ot95/typemgr.h"

namespace places {

/// What a store has to offer that knows nothing but bytes: records by their number, and indexes of
/// byte strings, in their order.
class ByteStore {
 public:
  virtual ~ByteStore() = default;
  virtual void PutRecord(std::uint64_t id, const std::string& record) = 0;
  virtual std::optional<std::string> Record(std::uint64_t id) = 0;
  /// @param shard any number that is the same for equal keys.
  virtual void PutEntry(const std::string& index, std::uint64_t shard,
                        const std::string& entry) = 0;
  /// The entries not below `lower` and below `upper`, in order. An empty end is none.
  virtual std::vector<std::string> Entries(const std::string& index, const std::string& lower,
                                           const std::string& upper) = 0;
  /// Behind the last of many changes.
  virtual void Flush() {}
};

/// A comparison of a member with a text: "name = 'san*'".
struct Query {
  std::string member;
  std::string relation;  ///< = < <= > >=
  std::string text;
  bool ignoreCase = false, ignoreAccent = false;
};

/// Places with a name, the number of their country and a date, each indexed by its sort keys.
class Places {
 public:
  explicit Places(ByteStore& store) : store_(store) {}

  /// Takes the lines of scripts/places. @return how many.
  std::uint64_t Import(std::istream& csv);
  /// Finds places by the range of an index, in its order. @return a line each.
  std::vector<std::string> Find(const Query& query);
  /// The same by a look at every record, in any order.
  std::vector<std::string> FindSlowly(const Query& query);
  /// Entries that the last Find looked at.
  std::size_t LookedAt() const { return lookedAt_; }

 private:
  ByteStore& store_;
  std::size_t lookedAt_ = 0;
};

/// Runs `import`, `find` or `check` as the command line of a program tells. @return the exit
/// status.
int Run(ByteStore& store, int argc, char** argv);

}  // namespace places

#endif
