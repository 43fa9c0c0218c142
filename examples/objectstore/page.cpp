// Whether the entries of a page lie within it.
#include "page.h"

#include <algorithm>

namespace otdb {
namespace {

constexpr std::size_t kLongestKey = 511;

constexpr std::size_t Even(std::size_t size) {
  return (size + 1) & ~std::size_t{1};
}

}  // namespace

template <class Word>
bool Page<Word>::IsSound(Word number, TreeKind kind) const {
  if (Number() != number || !HasSoundBounds()) return false;
  if (Flags() == kBranch) return Count() >= (kind == TreeKind::kFree ? 1 : 2) && HoldsNodes(kind);
  if (kind == TreeKind::kValues) return Flags() == (kLeaf | kOneWidth) && HoldsValues();
  return Flags() == kLeaf && HoldsNodes(kind);
}

// Places of nodes grow from the head, the nodes from the end.
template <class Word>
bool Page<Word>::HasSoundBounds() const {
  return bytes_.size() >= kHeader && bytes_.size() <= kLargest && Lower() > kHeader &&
         Lower() % 2 == 0 && Lower() <= Upper() && Upper() <= bytes_.size();
}

// The values stand behind the head, but are accounted for as if each had a place there, too.
template <class Word>
bool Page<Word>::HoldsValues() const {
  const std::size_t room = bytes_.size() - kHeader;
  return Width() != 0 && Count() * Width() <= room && Upper() - Lower() == room - Count() * Width();
}

// Nodes begin where their places say, and where the one before ends.
template <class Word>
bool Page<Word>::HoldsNodes(TreeKind kind) const {
  constexpr std::size_t kBits = 64;
  std::uint64_t starts[kLargest / 2 / kBits + 1];
  std::fill_n(starts, bytes_.size() / 2 / kBits + 1, 0);
  const auto bit = [](std::size_t at) { return std::uint64_t{1} << (at / 2 % kBits); };
  for (std::size_t entry = 0; entry < Count(); ++entry) {
    const std::size_t at = NodeAt(entry);
    if (at % 2 != 0 || at < Upper() || at >= bytes_.size()) return false;
    starts[at / 2 / kBits] |= bit(at);
  }
  std::size_t nodes = 0;
  for (std::size_t at = Upper(); at < bytes_.size(); ++nodes) {
    const std::size_t size = SoundNodeSize(at, kind);
    if ((starts[at / 2 / kBits] & bit(at)) == 0 || size == 0) return false;
    at += size;
  }
  return nodes == Count() && (!IsBranch() || AllKeysBehindTheFirst());
}

// The first child of a branch takes all that is below the second, whatever its own key.
template <class Word>
bool Page<Word>::AllKeysBehindTheFirst() const {
  for (std::size_t entry = 1; entry < Count(); ++entry) {
    if (KeySizeAt(NodeAt(entry)) == 0) return false;
  }
  return true;
}

/// @return 0 for a node that doesn't fit its page or its tree.
template <class Word>
std::size_t Page<Word>::SoundNodeSize(std::size_t at, TreeKind kind) const {
  if (bytes_.size() - at < kNode) return 0;
  const std::size_t keySize = KeySizeAt(at);
  const bool isFirst = IsBranch() && keySize == 0;
  if (kind == TreeKind::kFree && keySize != sizeof(Word) && !isFirst) return 0;
  if (keySize > kLongestKey || keySize > bytes_.size() - at - kNode) return 0;
  if (IsBranch()) return Even(kNode + keySize);
  const std::size_t size = kNode + keySize + DataSizeAt(at);
  if (keySize == 0 || size > bytes_.size() - at || !HasSoundData(at, keySize, kind)) return 0;
  return Even(size);
}

template <class Word>
bool Page<Word>::HasSoundData(std::size_t at, std::size_t keySize, TreeKind kind) const {
  const unsigned flags = FlagsAt(at);
  const std::size_t size = DataSizeAt(at);
  if (kind == TreeKind::kNames) return flags == kSubTree && size == TreeFacts<Word>::kSize;
  if (kind != TreeKind::kDuplicates) return (flags & ~kBigData) == 0;
  if (flags == 0) return size != 0;
  if (flags == (kValues | kSubTree)) return size == TreeFacts<Word>::kSize;
  const Page values(bytes_.subspan(at + kNode + keySize, size));
  return flags == kValues && values.HasSoundBounds() &&
         (values.Flags() & ~kDirty) == (kLeaf | kOneWidth | kSubPage) && values.HoldsValues();
}

template class Page<std::uint32_t>;
template class Page<std::uint64_t>;

}  // namespace otdb
