#ifndef OTDB_PAGES_H
#define OTDB_PAGES_H

#include <lmdb.h>

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "page.h"

namespace otdb {

/// Reads the pages of a storage file of a given machine word, as the storage engine documents and
/// writes them. Nothing in the file is trusted: each page is verified when it is first come to, and
/// whatever doesn't fit ends in BadInput that names the file and the page.
/// @tparam Word an unsigned integer of the word's size.
template <class Word>
class PageFile {
 public:
  using Facts = TreeFacts<Word>;
  using Visitor = std::function<void(View key, View value)>;

  /// Whether a file begins with pages of this word.
  static bool IsOne(const std::string& path);

  /// As the last transaction left it.
  explicit PageFile(const std::string& path) : PageFile(path, {}) {}
  /// As a transaction left it. @return nothing where later ones took its head.
  static std::optional<PageFile> Of(const std::string& path, Word transaction);
  PageFile(PageFile&&) = default;

  const std::string& Path() const { return path_; }
  /// The trees of free pages and of the descriptions of all others.
  const Facts& Free() const { return head_->free; }
  const Facts& Names() const { return head_->names; }
  std::size_t PageSize() const { return pageSize_; }
  Word LastPage() const { return head_->lastPage; }
  Word Transaction() const { return head_->transaction; }

  /// The description of a named tree.
  std::optional<Facts> Find(const std::string& tree) const;
  /// Walks a named tree of plain values in the order of its keys. @return whether there is one.
  bool Visit(const std::string& tree, const Visitor& visitor) const;

  /// A page of a tree.
  Page<Word> At(Word number, TreeKind kind) const;
  /// The first of the pages that hold long data. @return all of them.
  View Overflow(Word number, std::size_t length, Word* pages = nullptr) const;
  /// The data of a leaf's entry, wherever they are.
  View Data(const Page<Word>& leaf, std::size_t entry) const;
  [[noreturn]] void Damaged(Word page) const;

 private:
  struct Head {
    Head(View page, std::size_t trees);

    Facts free, names;
    Word lastPage, transaction;
  };
  /// A mapping, as long as the file was.
  class Map {
   public:
    explicit Map(const std::string& path);
    View Bytes() const { return {bytes_.get(), bytes_.get_deleter().size}; }

   private:
    struct Unmap {
      std::size_t size = 0;
      void operator()(const unsigned char* bytes) const;
    };
    std::unique_ptr<const unsigned char, Unmap> bytes_;
  };

  PageFile(const std::string& path, std::optional<Word> transaction);

  bool TakeHead(std::optional<Word> transaction);
  bool HoldsLastPage() const;
  [[noreturn]] void RefuseHead(bool known) const;
  std::optional<Head> HeadAt(Word page) const;
  View Bytes(Word page, std::size_t pages = 1) const;

  std::string path_;
  Map map_;
  std::size_t pageSize_ = 0;
  std::optional<Head> head_;
  /// For which kind of tree each page was found sound; made by calloc, which takes memory only for
  /// the part that is used.
  std::unique_ptr<TreeKind[], void (*)(void*)> sound_;
};

/// Branches and leaves of a tree, of which it can't have more than the file.
template <class Word>
Word PagesOf(const PageFile<Word>& file, const TreeFacts<Word>& tree);

/// A place in a tree, or in the values of a key.
template <class Word>
class PageCursor {
 public:
  PageCursor(const PageFile<Word>& file, const TreeFacts<Word>& tree, TreeKind kind);
  /// Within values that stand in a leaf, which was found sound.
  PageCursor(const PageFile<Word>& file, const Page<Word>& values);

  /// @return whether there is an entry at the new place.
  bool First() { return Begin() && Descend(0, false); }
  bool Last() { return Begin() && Descend(0, true); }
  bool Next();
  /// To the first entry whose key isn't below `key`. @param order null for that of bytes.
  bool Seek(View key, MDB_cmp_func* order);

  View Key() const { return Leaf().Key(Entry()); }
  const Page<Word>& Leaf() const { return steps_[depth_ - 1].page; }
  std::size_t Entry() const { return steps_[depth_ - 1].entry; }

 private:
  static constexpr unsigned kDeepest = 32;
  struct Step {
    Page<Word> page;
    std::size_t entry;
  };

  bool Begin();
  void Enter(unsigned level, Word page);
  bool Descend(unsigned level, bool last);

  const PageFile<Word>* file_;
  std::optional<Page<Word>> values_;
  Word root_ = 0;
  unsigned depth_ = 1;
  TreeKind kind_;
  std::uint32_t width_ = 0;
  Word pages_ = 0;      ///< The tree has so many.
  Word pagesLeft_ = 0;  ///< That a walk may still take: one that goes round ends there.
  std::array<Step, kDeepest> steps_;
};

/// The order of two keys; null for that of their bytes, the shorter first on a tie.
int CompareInTree(View key1, View key2, MDB_cmp_func* order);

extern template class PageFile<std::uint32_t>;
extern template class PageFile<std::uint64_t>;
extern template class PageCursor<std::uint32_t>;
extern template class PageCursor<std::uint64_t>;

}  // namespace otdb

#endif
