// Reading a store: trees and places in them.
#include "snapshot.h"

#include "bad_input.h"

namespace otdb {

const StorePages::Facts* Snapshot::Facts(const Tree& tree) const {
  if (facts_.size() <= tree.number) facts_.resize(tree.number + 1);
  auto& facts = facts_[tree.number];
  if (!facts) facts = pages_.Find(tree.name);
  if (!facts) return nullptr;
  const unsigned expected =
      tree.severalValues ? StorePages::Facts::kSeveralValues | StorePages::Facts::kOneWidth : 0;
  if (facts->flags != expected) {
    throw ot95::tools::BadInput(pages_.Path() + ": the tree " + tree.name + " is damaged");
  }
  return &*facts;
}

const StorePages::Facts& Snapshot::Require(const Tree& tree) const {
  if (const auto* facts = Facts(tree)) return *facts;
  throw ot95::tools::BadInput(pages_.Path() + ": the tree " + tree.name + " is missing");
}

// To the first or the last value of a key.
bool Cursor::Enter(bool last) {
  using Leaf = Page<MachineWord>;
  const StorePages& pages = snapshot_->Pages();
  const Leaf& leaf = keys_.Leaf();
  const unsigned flags = leaf.DataFlags(keys_.Entry());
  values_.reset();
  data_ = pages.Data(leaf, keys_.Entry());
  if ((flags & Leaf::kSubTree) != 0) {
    const StorePages::Facts facts(data_);
    const MachineWord needed = PagesOf(pages, facts);
    if (needed > pagesLeft_) pages.Damaged(leaf.Number());
    pagesLeft_ -= needed;
    values_.emplace(pages, facts, TreeKind::kValues);
  } else if ((flags & Leaf::kValues) != 0) {
    values_.emplace(pages, Leaf(data_));
  }
  if (!values_ || (last ? values_->Last() : values_->First())) return true;
  pages.Damaged(leaf.Number());  // a key without a value
}

bool Cursor::Find(View key, View value) {
  if (!Seek(key) || CompareInTree(Key(), key, order_) != 0) return false;
  if (values_ && !values_->Seek(value, nullptr)) return false;
  return CompareInTree(Data(), value, nullptr) == 0;
}

std::size_t Cursor::Count() const {
  if (!values_) return 1;
  const auto& leaf = keys_.Leaf();
  if ((leaf.DataFlags(keys_.Entry()) & Page<MachineWord>::kSubTree) == 0) {
    return Page<MachineWord>(data_).Count();
  }
  return static_cast<std::size_t>(StorePages::Facts(data_).entries);
}

std::optional<View> Get(const Snapshot& snapshot, const Tree& tree, View key) {
  Cursor cursor(snapshot, tree);
  if (!cursor.Seek(key) || CompareInTree(cursor.Key(), key, tree.order) != 0) return {};
  return cursor.Data();
}

MDB_stat StatOf(const Snapshot& snapshot, const Tree& tree) {
  const auto& facts = snapshot.Require(tree);
  MDB_stat stat{};
  stat.ms_psize = static_cast<unsigned>(snapshot.Pages().PageSize());
  stat.ms_depth = facts.depth;
  stat.ms_branch_pages = facts.branches;
  stat.ms_leaf_pages = facts.leaves;
  stat.ms_overflow_pages = facts.overflows;
  stat.ms_entries = facts.entries;
  return stat;
}

}  // namespace otdb
