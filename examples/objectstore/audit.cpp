// All pages of a store, one after another.
#include "audit.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "bad_input.h"

namespace otdb {
namespace {

using ot95::tools::BadInput;
using Facts = StorePages::Facts;
using StorePage = Page<MachineWord>;

// A page is sound in the tree of free pages only with keys of a word.
int CompareNumbers(const MDB_val* key1, const MDB_val* key2) {
  MachineWord number1, number2;
  std::memcpy(&number1, key1->mv_data, sizeof number1);
  std::memcpy(&number2, key2->mv_data, sizeof number2);
  return (number1 > number2) - (number1 < number2);
}

class Auditor {
 public:
  explicit Auditor(const StorePages& pages)
      : pages_(pages), used_(static_cast<std::size_t>(pages.LastPage()) + 1) {}

  /// Walks a tree. @param leaf is told of each entry of a leaf.
  template <class Leaf>
  void Walk(const Facts& facts, TreeKind kind, std::optional<MDB_cmp_func*> order,
            const Leaf& leaf) {
    if (facts.IsEmpty()) {
      if (facts.depth + facts.branches + facts.leaves + facts.overflows + facts.entries != 0) {
        throw BadInput("an empty tree with pages");
      }
      return;
    }
    if (facts.depth == 0 || facts.depth > 32) pages_.Damaged(facts.root);
    Tree tree{kind, facts.width, order, Facts(facts)};
    WalkPage(tree, facts.root, facts.depth, {}, leaf);
    const Facts& left = tree.left;
    if ((left.branches | left.leaves | left.overflows | left.entries) != 0) {
      throw BadInput("another number of pages or entries than it says");
    }
  }

  /// A key's values, in a leaf or in a tree of their own. @return how many.
  MachineWord WalkValues(const StorePage& leaf, std::size_t entry, bool inOrder) {
    const unsigned flags = leaf.DataFlags(entry);
    if (flags == 0) return 1;
    const View data = leaf.Data(entry);
    if ((flags & StorePage::kSubTree) == 0) {
      const StorePage values(data);
      if (inOrder) RequireOrder(values, 0, {}, nullptr);
      return static_cast<MachineWord>(values.Count());
    }
    const Facts facts(data);
    if (facts.flags != Facts::kOneWidth || facts.IsEmpty()) pages_.Damaged(leaf.Number());
    Walk(facts, TreeKind::kValues, inOrder ? std::optional<MDB_cmp_func*>(nullptr) : std::nullopt,
         [](const StorePage&, std::size_t) { return MachineWord{1}; });
    return facts.entries;
  }

  /// Numbers of free pages: their count, and they from the highest down.
  void TakeFree(View numbers) {
    constexpr std::size_t size = sizeof(MachineWord);
    const auto at = [&](std::size_t i) { return NumberAt<MachineWord>(numbers, i * size); };
    const std::size_t count = numbers.size() / size;
    if (count == 0 || numbers.size() % size != 0 || at(0) != count - 1) {
      throw BadInput("a list that isn't one");
    }
    for (std::size_t i = 1; i < count; ++i) {
      if (i > 1 && at(i) >= at(i - 1)) throw BadInput("a list that is out of order");
      Use(at(i), 1);
    }
  }

 private:
  struct Tree {
    TreeKind kind;
    std::uint32_t width;
    std::optional<MDB_cmp_func*> order;  ///< Nothing where order isn't asked for.
    Facts left;                          ///< Pages and entries that the walk hasn't come to.
  };
  /// What all keys below a branch's entry lie between: not below the first, below the second.
  struct Between {
    std::optional<View> low, high;
  };

  void Use(MachineWord page, MachineWord pages) {
    for (; pages != 0; ++page, --pages) {
      if (page < 2 || page > pages_.LastPage()) pages_.Damaged(page);
      auto used = used_[static_cast<std::size_t>(page)];
      if (used) throw BadInput("page " + std::to_string(page) + " is in use twice");
      used = true;
    }
  }

  void Count(MachineWord& left, MachineWord count, const StorePage& page) const {
    if (left < count) pages_.Damaged(page.Number());
    left -= count;
  }

  void RequireOrder(const StorePage& page, std::size_t first, const Between& between,
                    MDB_cmp_func* order) const {
    for (std::size_t i = first; i < page.Count(); ++i) {
      const View key = page.Key(i);
      const bool isIn = i > first ? CompareInTree(page.Key(i - 1), key, order) < 0
                                  : !between.low || CompareInTree(*between.low, key, order) <= 0;
      if (!isIn) throw BadInput("page " + std::to_string(page.Number()) + " is out of order");
    }
    if (between.high && CompareInTree(page.Key(page.Count() - 1), *between.high, order) >= 0) {
      throw BadInput("page " + std::to_string(page.Number()) + " is out of order");
    }
  }

  template <class Leaf>
  void WalkPage(Tree& tree, MachineWord number, unsigned depth, const Between& between,
                const Leaf& leaf) {
    const StorePage page = pages_.At(number, tree.kind);
    Use(number, 1);
    if (page.IsBranch() != (depth > 1)) pages_.Damaged(number);
    if (tree.order) RequireOrder(page, page.IsBranch() ? 1 : 0, between, *tree.order);
    if (!page.IsBranch()) return WalkLeaf(tree, page, leaf);
    Count(tree.left.branches, 1, page);
    for (std::size_t i = 0; i < page.Count(); ++i) {
      Between inner = between;
      if (i != 0) inner.low = page.Key(i);
      if (i + 1 < page.Count()) inner.high = page.Key(i + 1);
      WalkPage(tree, page.Child(i), depth - 1, inner, leaf);
    }
  }

  template <class Leaf>
  void WalkLeaf(Tree& tree, const StorePage& page, const Leaf& leaf) {
    Count(tree.left.leaves, 1, page);
    if (tree.kind == TreeKind::kValues) {
      if (page.Width() != tree.width) pages_.Damaged(page.Number());
      return Count(tree.left.entries, static_cast<MachineWord>(page.Count()), page);
    }
    for (std::size_t i = 0; i < page.Count(); ++i) {
      if ((page.DataFlags(i) & StorePage::kBigData) != 0) {
        const auto first = NumberAt<MachineWord>(page.Data(i), 0);
        MachineWord pages = 0;
        pages_.Overflow(first, page.DataSize(i), &pages);
        Use(first, pages);
        Count(tree.left.overflows, pages, page);
      }
      Count(tree.left.entries, leaf(page, i), page);
    }
  }

  const StorePages& pages_;
  std::vector<bool> used_;
};

using Report = std::function<void(const std::string&)>;

/// Runs a step; what it refuses is told with the tree's name.
template <class Step>
void Telling(const Report& report, const std::string& name, const Step& step) {
  try {
    step();
  } catch (const BadInput& error) {
    report("tree " + name + ": " + error.what());
  }
}

void Audit(const StorePages& pages, const std::map<std::string, const Tree*>* trees,
           const Report& report) {
  Auditor auditor(pages);
  const auto tree = [&](const std::string& name, const Facts& facts) {
    const bool several = facts.flags == (Facts::kSeveralValues | Facts::kOneWidth);
    if (!several && facts.flags != 0) throw BadInput("is of a kind that no store has");
    std::optional<MDB_cmp_func*> order;
    if (trees) {
      const auto known = trees->find(name);
      if (known == trees->end()) throw BadInput("isn't of the schema");
      order = known->second->order;
    }
    auditor.Walk(facts, several ? TreeKind::kDuplicates : TreeKind::kPlain, order,
                 [&](const StorePage& leaf, std::size_t entry) {
                   return several ? auditor.WalkValues(leaf, entry, order.has_value()) : 1;
                 });
  };
  Telling(report, "of names", [&] {
    auditor.Walk(pages.Names(), TreeKind::kNames, nullptr,
                 [&](const StorePage& leaf, std::size_t entry) -> MachineWord {
                   const std::string name(leaf.Key(entry).begin(), leaf.Key(entry).end());
                   Telling(report, name, [&] { tree(name, Facts(leaf.Data(entry))); });
                   return 1;
                 });
  });
  Telling(report, "of free pages", [&] {
    auditor.Walk(pages.Free(), TreeKind::kFree, CompareNumbers,
                 [&](const StorePage& leaf, std::size_t entry) -> MachineWord {
                   if (NumberAt<MachineWord>(leaf.Key(entry), 0) > pages.Transaction()) {
                     throw BadInput("a key that is no transaction's");
                   }
                   auditor.TakeFree(pages.Data(leaf, entry));
                   return 1;
                 });
  });
}

}  // namespace

void RequireSoundPages(const StorePages& pages) {
  std::string first;
  Audit(pages, nullptr, [&](const std::string& fault) {
    if (first.empty()) first = fault;
  });
  if (!first.empty()) throw BadInput(pages.Path() + ": " + first + " (see otdb check)");
}

void AuditPages(const StorePages& pages, const std::map<std::string, const Tree*>& trees,
                const Report& report) {
  Audit(pages, &trees, report);
}

}  // namespace otdb
