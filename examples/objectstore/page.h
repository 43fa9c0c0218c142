#ifndef OTDB_PAGE_H
#define OTDB_PAGE_H

#include <cstdint>
#include <cstring>

#include "bytes.h"

namespace otdb {

/// What the pages of a tree hold: numbers of free pages, plain values, descriptions of trees,
/// several values for a key, or, in the tree of such a key, nothing but values of one width.
enum class TreeKind : std::uint8_t { kFree = 1, kPlain, kNames, kDuplicates, kValues };

/// Bytes as a number, wherever they lie. The caller vouches for their being there.
template <class T>
T NumberAt(View bytes, std::size_t at) {
  T value;
  std::memcpy(&value, bytes.data() + at, sizeof value);
  return value;
}

/// The description of a tree, as it is stored: width of its values if they have one, flags, depth,
/// three counts of pages, entries, root.
template <class Word>
struct TreeFacts {
  static constexpr std::size_t kSize = 8 + 5 * sizeof(Word);
  static constexpr Word kNowhere = static_cast<Word>(-1);        ///< The root of an empty tree.
  static constexpr unsigned kSeveralValues = 4, kOneWidth = 16;  ///< Flags.

  /// @param bytes at least kSize.
  explicit TreeFacts(View bytes)
      : width(NumberAt<std::uint32_t>(bytes, 0)),
        flags(NumberAt<std::uint16_t>(bytes, 4)),
        depth(NumberAt<std::uint16_t>(bytes, 6)),
        branches(NumberAt<Word>(bytes, 8)),
        leaves(NumberAt<Word>(bytes, 8 + sizeof(Word))),
        overflows(NumberAt<Word>(bytes, 8 + 2 * sizeof(Word))),
        entries(NumberAt<Word>(bytes, 8 + 3 * sizeof(Word))),
        root(NumberAt<Word>(bytes, 8 + 4 * sizeof(Word))) {}

  bool IsEmpty() const { return root == kNowhere; }

  std::uint32_t width;
  unsigned flags, depth;
  Word branches, leaves, overflows, entries, root;
};

/// A page of a storage file of a given machine word: a branch, or a leaf. Ask IsSound before
/// anything else: then everything that the page says of its entries lies within it.
/// @tparam Word an unsigned integer of the word's size.
template <class Word>
class Page {
 public:
  static constexpr std::size_t kHeader = sizeof(Word) + 8;
  static constexpr std::size_t kLargest = 32768;
  static constexpr unsigned kBranch = 1, kLeaf = 2, kOverflow = 4, kHead = 8;
  /// Where the data of a node are: on overflow pages, or a tree or a page of values of its own.
  static constexpr unsigned kBigData = 1, kSubTree = 2, kValues = 4;

  Page() = default;
  explicit Page(View bytes) : bytes_(bytes) {}

  /// Whether the page is what a tree of a kind has in a place, and its entries fill it without
  /// gap or overlap.
  bool IsSound(Word number, TreeKind kind) const;

  Word Number() const { return NumberAt<Word>(bytes_, 0); }
  /// Of values that all have one.
  std::size_t Width() const { return NumberAt<std::uint16_t>(bytes_, sizeof(Word)); }
  unsigned Flags() const { return NumberAt<std::uint16_t>(bytes_, sizeof(Word) + 2); }
  /// Of an overflow page.
  std::uint32_t Pages() const { return NumberAt<std::uint32_t>(bytes_, sizeof(Word) + 4); }
  bool IsBranch() const { return (Flags() & kBranch) != 0; }
  std::size_t Count() const { return (Lower() - kHeader) / 2; }

  /// The key of an entry; on a page of values, the value.
  View Key(std::size_t entry) const {
    if ((Flags() & kOneWidth) != 0) return bytes_.subspan(kHeader + entry * Width(), Width());
    const std::size_t at = NodeAt(entry);
    return bytes_.subspan(at + kNode, KeySizeAt(at));
  }
  /// Of a branch.
  Word Child(std::size_t entry) const {
    const std::size_t at = NodeAt(entry);
    Word child = static_cast<Word>(NumberAt<std::uint32_t>(bytes_, at));
    if constexpr (sizeof(Word) == 8) child |= Word{FlagsAt(at)} << 32;
    return child;
  }
  /// Of a leaf.
  unsigned DataFlags(std::size_t entry) const { return FlagsAt(NodeAt(entry)); }
  std::size_t DataSize(std::size_t entry) const {
    return NumberAt<std::uint32_t>(bytes_, NodeAt(entry));
  }
  /// Data in their place, or the number of the page where they are.
  View Data(std::size_t entry) const {
    const std::size_t at = NodeAt(entry);
    return bytes_.subspan(at + kNode + KeySizeAt(at), DataSizeAt(at));
  }

 private:
  static constexpr std::size_t kNode = 8;
  static constexpr unsigned kOneWidth = 32, kSubPage = 64, kDirty = 16;

  std::size_t Lower() const { return NumberAt<std::uint16_t>(bytes_, sizeof(Word) + 4); }
  std::size_t Upper() const { return NumberAt<std::uint16_t>(bytes_, sizeof(Word) + 6); }
  std::size_t NodeAt(std::size_t entry) const {
    return NumberAt<std::uint16_t>(bytes_, kHeader + 2 * entry);
  }
  unsigned FlagsAt(std::size_t at) const { return NumberAt<std::uint16_t>(bytes_, at + 4); }
  std::size_t KeySizeAt(std::size_t at) const { return NumberAt<std::uint16_t>(bytes_, at + 6); }
  std::size_t DataSizeAt(std::size_t at) const {
    return (FlagsAt(at) & kBigData) != 0 ? sizeof(Word) : NumberAt<std::uint32_t>(bytes_, at);
  }

  bool HasSoundBounds() const;
  bool HoldsValues() const;
  bool HoldsNodes(TreeKind kind) const;
  bool AllKeysBehindTheFirst() const;
  std::size_t SoundNodeSize(std::size_t at, TreeKind kind) const;
  bool HasSoundData(std::size_t at, std::size_t keySize, TreeKind kind) const;

  View bytes_;
};

extern template class Page<std::uint32_t>;
extern template class Page<std::uint64_t>;

}  // namespace otdb

#endif
