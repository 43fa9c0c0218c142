#ifndef OTDB_SNAPSHOT_H
#define OTDB_SNAPSHOT_H

#include <lmdb++.h>

#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "bytes.h"
#include "checksum.h"
#include "pages.h"

namespace otdb {

using MachineWord = std::conditional_t<sizeof(void*) == 8, std::uint64_t, std::uint32_t>;
using StorePages = PageFile<MachineWord>;

/// A tree of the store.
struct Tree {
  Tree(const std::string& called, unsigned among, MDB_cmp_func* ordered = nullptr,
       bool several = false)
      : name(called), number(among), order(ordered), severalValues(several), seed(SeedOf(called)) {}

  std::string name;
  unsigned number;      ///< Among the trees of the store.
  MDB_cmp_func* order;  ///< Of its keys; null for that of their bytes.
  bool severalValues;   ///< For a key, all of one width.
  std::uint64_t seed;   ///< Of checksums.
  MDB_dbi handle = 0;   ///< For writers.

  TreeKind Kind() const { return severalValues ? TreeKind::kDuplicates : TreeKind::kPlain; }
};

/// What a reader sees: the store as a transaction left it, whatever others write meanwhile. Its
/// pages are read where they are mapped, and verified when they are come to; what is damaged ends
/// in BadInput. Views of them live as long as the snapshot.
class Snapshot {
 public:
  /// @param transaction keeps writers from taking pages away.
  Snapshot(lmdb::txn transaction, StorePages pages)
      : transaction_(std::move(transaction)), pages_(std::move(pages)) {}

  const StorePages& Pages() const { return pages_; }
  /// The description of a tree; nothing for one that isn't there.
  const StorePages::Facts* Facts(const Tree& tree) const;
  /// The same, where the store can't be without it.
  const StorePages::Facts& Require(const Tree& tree) const;

 private:
  lmdb::txn transaction_;
  StorePages pages_;
  mutable std::vector<std::optional<StorePages::Facts>> facts_;  ///< By numbers of trees.
};

/// A walk over a tree of a snapshot.
class Cursor {
 public:
  Cursor(const Snapshot& snapshot, const Tree& tree)
      : snapshot_(&snapshot),
        order_(tree.order),
        keys_(snapshot.Pages(), snapshot.Require(tree), tree.Kind()) {}

  /// @return whether there is an entry at the new place.
  bool First() { return Begin() && keys_.First() && Enter(false); }
  bool Last() { return Begin() && keys_.Last() && Enter(true); }
  bool Next() { return NextValue() || NextKey(); }
  /// Of the same key.
  bool NextValue() { return values_ && values_->Next(); }
  bool NextKey() { return keys_.Next() && Enter(false); }
  /// To the first entry whose key isn't below `key`.
  bool Seek(View key) { return Begin() && keys_.Seek(key, order_) && Enter(false); }
  /// To the entry of exactly this key and value, of a tree with several values for a key.
  bool Find(View key, View value);

  /// Entries of the key at this place, as far as the store can be believed.
  std::size_t Count() const;
  View Key() const { return keys_.Key(); }
  View Data() const { return values_ ? values_->Key() : data_; }

 private:
  using Pages = PageCursor<MachineWord>;

  bool Begin() {
    pagesLeft_ = snapshot_->Pages().LastPage();
    return true;
  }
  bool Enter(bool last);

  const Snapshot* snapshot_;
  MDB_cmp_func* order_;
  Pages keys_;
  std::optional<Pages> values_;
  MachineWord pagesLeft_ = 0;  ///< That the trees of keys' values may have together.
  View data_;
};

std::optional<View> Get(const Snapshot& snapshot, const Tree& tree, View key);
MDB_stat StatOf(const Snapshot& snapshot, const Tree& tree);

}  // namespace otdb

#endif
