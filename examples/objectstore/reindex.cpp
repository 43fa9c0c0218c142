// Indexes and the orders that their keys were made under.
#include "reindex.h"

#include <algorithm>

#include "bad_input.h"
#include "message.h"

namespace otdb {
namespace {

using ot95::tools::BadInput;

constexpr std::size_t kVersionBytes = 8;

// Big-endian, as everything that machines exchange.
Bytes VersionOf(const Member& member) {
  const std::uint64_t version =
      member.IsText() ? OtLanguageContext::OrderVersion(member.language) : 0;
  Bytes bytes;
  for (int shift = 56; shift >= 0; shift -= 8) {
    bytes.push_back(static_cast<unsigned char>(version >> shift));
  }
  return bytes;
}

bool BeginsWith(View bytes, View start) {
  return bytes.size() >= start.size() && std::equal(start.begin(), start.end(), bytes.begin());
}

View ViewOf(const MDB_val* value) {
  return {static_cast<const unsigned char*>(value->mv_data), value->mv_size};
}

std::string OrderFact(const std::string& index) {
  return "order " + index;
}
std::string ProgressFact(const std::string& index) {
  return "reindex " + index;
}

}  // namespace

std::string NameOf(const ClassTrees& trees, const IndexTrees& index) {
  return trees.type->name + "." + trees.type->members[index.member].name;
}

IndexName IndexNamed(const Store& store, const std::string& name) {
  std::vector<std::string> known;
  for (const ClassTrees& trees : store.Trees()) {
    for (const IndexTrees& index : trees.indexes) {
      if (NameOf(trees, index) == name) return {&trees, &index};
      known.push_back(NameOf(trees, index));
    }
  }
  if (known.empty()) throw BadInput("CLASS.MEMBER: the store has no index");
  throw BadInput("CLASS.MEMBER: " + ot95::tools::Unknown("index", name, known));
}

std::vector<IndexName> OutdatedIndexes(const Store& store, const Snapshot& snapshot) {
  std::vector<IndexName> found;
  for (const ClassTrees& trees : store.Trees()) {
    for (const IndexTrees& index : trees.indexes) {
      const Member& member = trees.type->members[index.member];
      const std::string name = NameOf(trees, index);
      const auto kept = store.Fact(snapshot, OrderFact(name));
      const Bytes version = VersionOf(member);
      const bool isCurrent = kept && kept->size() == version.size() && BeginsWith(*kept, version);
      if ((member.IsText() && !isCurrent) || store.Fact(snapshot, ProgressFact(name))) {
        found.push_back({&trees, &index});
      }
    }
  }
  return found;
}

void Store::KeepOrder(lmdb::txn& txn, const ClassTrees& trees, const IndexTrees& index) {
  SetFact(txn, OrderFact(NameOf(trees, index)), VersionOf(trees.type->members[index.member]));
}

void Store::RequireOrders() const {
  const Snapshot snapshot = Read();
  const auto outdated = OutdatedIndexes(*this, snapshot);
  if (outdated.empty()) return;
  const auto& [trees, index] = outdated.front();
  const Member& member = trees->type->members[index->member];
  const std::string name = NameOf(*trees, *index);
  const std::string why = Fact(snapshot, ProgressFact(name))
                              ? "is built in part"
                              : "holds keys in another order than that of language " +
                                    std::to_string(member.language) + " now";
  throw BadInput(path_ + ": the index " + name + " " + why + "; build it anew: otdb reindex " +
                 path_);
}

/// The steps of building an index anew, each a transaction.
class Reindexer {
 public:
  Reindexer(Store& store, const IndexName& name)
      : store_(store),
        trees_(*name.trees),
        index_(*name.index),
        name_(NameOf(trees_, index_)),
        version_(VersionOf(trees_.type->members[index_.member])) {}

  /// Empties the index, unless a call under the same order ended within.
  void Begin() {
    store_.Write([&](lmdb::txn& txn) {
      const auto progress = store_.Fact(txn, ProgressFact(name_));
      if (progress && BeginsWith(*progress, version_)) return;
      lmdb::dbi_drop(txn, index_.all.handle, false);
      lmdb::dbi_drop(txn, index_.partial.handle, false);
      store_.DropStatistics(txn, name_);
      store_.SetFact(txn, ProgressFact(name_), version_);
    });
  }

  /// Enters the objects behind those that were. @return whether there were any.
  bool Step(std::size_t batch) {
    bool any = false;
    store_.Write([&](lmdb::txn& txn) {
      std::vector<Bytes> ids, records;
      Read(txn, batch, ids, records);
      any = !ids.empty();
      if (!any) return Finish(txn);
      store_.PutEntries(txn, trees_, index_, ids, records);
      Bytes progress = version_;
      progress.insert(progress.end(), ids.back().begin(), ids.back().end());
      store_.SetFact(txn, ProgressFact(name_), progress);
    });
    return any;
  }

  std::size_t Entries() const { return Count(index_.all); }
  std::size_t Objects() const { return Count(trees_.objects); }

 private:
  std::size_t Count(const Tree& tree) const { return StatOf(store_.Read(), tree).ms_entries; }

  void Read(lmdb::txn& txn, std::size_t batch, std::vector<Bytes>& ids,
            std::vector<Bytes>& records) const {
    const View progress = store_.Fact(txn, ProgressFact(name_)).value_or(View());
    if (progress.size() < kVersionBytes) throw BadInput(name_ + ": damaged progress of reindex");
    const View last = progress.subspan(kVersionBytes);
    auto cursor = lmdb::cursor::open(txn, trees_.objects.handle);
    lmdb::val id(last.data(), last.size()), kept;
    bool more = lmdb::cursor_get(cursor, id, kept, last.empty() ? MDB_FIRST : MDB_SET_RANGE);
    if (more && std::ranges::equal(last, ViewOf(id))) {
      more = lmdb::cursor_get(cursor, id, kept, MDB_NEXT);
    }
    for (; more && ids.size() < batch; more = lmdb::cursor_get(cursor, id, kept, MDB_NEXT)) {
      const View record = store_.Checked(trees_.objects, ViewOf(id), ViewOf(kept));
      ids.emplace_back(ViewOf(id).begin(), ViewOf(id).end());
      records.emplace_back(record.begin(), record.end());
    }
  }

  void Finish(lmdb::txn& txn) {
    store_.KeepOrder(txn, trees_, index_);
    store_.DropFact(txn, ProgressFact(name_));
  }

  Store& store_;
  const ClassTrees& trees_;
  const IndexTrees& index_;
  std::string name_;
  Bytes version_;
};

std::size_t Reindex(Store& store, const IndexName& name, const ReindexOptions& options) {
  Reindexer steps(store, name);
  steps.Begin();
  const auto objects = static_cast<double>(steps.Objects());
  while (steps.Step(options.batch)) {
    const std::size_t done = steps.Entries();
    if (options.progress) options.progress(static_cast<double>(done) / objects, done);
  }
  return steps.Entries();
}

}  // namespace otdb
