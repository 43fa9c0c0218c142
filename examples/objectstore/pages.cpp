// Reads the pages of a store's file without trusting one of them.

#include "pages.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <optional>

#include "bad_input.h"

namespace otdb {
namespace {

using ot95::tools::BadInput;

// What the pages say of themselves and of their entries.
constexpr std::uint32_t kMagic = 0xbeefc0de;
constexpr unsigned kBranchPage = 1, kLeafPage = 2, kOverflowPage = 4;
constexpr unsigned kBigData = 1, kSubTree = 2, kDuplicates = 4;
constexpr std::size_t kNodeHeader = 8;
constexpr int kDeepest = 64;

[[noreturn]] void Damaged() {
  throw BadInput("a damaged page in the store");
}

template <class T>
T At(const Bytes& bytes, std::size_t offset) {
  T value;
  if (offset > bytes.size() || bytes.size() - offset < sizeof value) Damaged();
  std::memcpy(&value, bytes.data() + offset, sizeof value);
  return value;
}

View Part(const Bytes& bytes, std::size_t offset, std::size_t length) {
  if (offset > bytes.size() || bytes.size() - offset < length) Damaged();
  return View(bytes).subspan(offset, length);
}

// The description of a tree: pad, flags, depth, three counts of pages, entries, root.
template <class Word>
constexpr std::size_t kTreeSize = 8 + 5 * sizeof(Word);
template <class Word>
constexpr std::size_t kRootInTree = 8 + 4 * sizeof(Word);

// The head of a file: magic, version, address, size of the map, two trees, last page, transaction.
template <class Word>
constexpr std::size_t kTreesInMeta = 8 + 2 * sizeof(Word);

}  // namespace

template <class Word>
bool PageFile<Word>::IsOne(const std::string& path) {
  unsigned char head[kHeader + 4] = {};
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return false;
  const bool whole = pread(file, head, sizeof head, 0) == static_cast<ssize_t>(sizeof head);
  close(file);
  std::uint32_t magic;
  std::memcpy(&magic, head + kHeader, sizeof magic);
  return whole && magic == kMagic;
}

template <class Word>
PageFile<Word>::File::File(const std::string& path)
    : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
  if (descriptor_ < 0) throw BadInput(path + ": can't be read");
}

template <class Word>
PageFile<Word>::File::~File() {
  close(descriptor_);
}

template <class Word>
PageFile<Word>::PageFile(const std::string& path) : file_(path) {
  pageSize_ = kHeader + kTreesInMeta<Word> + 4;
  pageSize_ = At<std::uint32_t>(Read(0), kHeader + kTreesInMeta<Word>);
  if (pageSize_ < 512 || pageSize_ > 65536) Damaged();
  struct stat facts {};
  if (fstat(file_, &facts) != 0) throw BadInput(path + ": can't be read");
  pages_ = static_cast<std::uint64_t>(facts.st_size) / pageSize_;
  root_ = NewestRoot();
}

template <class Word>
Bytes PageFile<Word>::Read(Word page, std::size_t pages) const {
  if (page > (std::uint64_t{1} << 48) / pageSize_) Damaged();
  Bytes bytes(pageSize_ * pages);
  const auto offset = static_cast<off_t>(std::uint64_t{page} * pageSize_);
  if (pread(file_, bytes.data(), bytes.size(), offset) != static_cast<ssize_t>(bytes.size())) {
    Damaged();
  }
  return bytes;
}

// Two heads take turns; the one of the later transaction counts.
template <class Word>
Word PageFile<Word>::NewestRoot() const {
  Word newest = 0;
  Word root = 0;
  for (Word page = 0; page < 2; ++page) {
    const Bytes meta = Read(page);
    const std::size_t trees = kHeader + kTreesInMeta<Word>;
    const auto transaction = At<Word>(meta, trees + 2 * kTreeSize<Word> + sizeof(Word));
    if (At<std::uint32_t>(meta, kHeader) != kMagic || (page == 1 && transaction < newest)) continue;
    newest = transaction;
    root = At<Word>(meta, trees + kTreeSize<Word> + kRootInTree<Word>);
  }
  return root;
}

template <class Word>
void PageFile<Word>::Take(Place place, std::uint64_t pages) {
  if (pages > place.pagesLeft) Damaged();
  place.pagesLeft -= pages;
}

template <class Word>
Bytes PageFile<Word>::Overflow(Word page, std::size_t length, Place place) const {
  const Bytes first = Read(page);
  const auto pages = At<std::uint32_t>(first, sizeof(Word) + 4);
  const std::uint64_t needed = (std::uint64_t{kHeader} + length + pageSize_ - 1) / pageSize_;
  if ((At<std::uint16_t>(first, sizeof(Word) + 2) & kOverflowPage) == 0 || pages < needed) {
    Damaged();
  }
  Take(place, needed);
  return Read(page, static_cast<std::size_t>(needed));
}

template <class Word>
template <class Leaf>
void PageFile<Word>::WalkNode(const Bytes& page, std::size_t at, bool isLeaf, Place place,
                              const Leaf& leaf) const {
  const std::uint64_t low =
      At<std::uint16_t>(page, at) | std::uint64_t{At<std::uint16_t>(page, at + 2)} << 16;
  const unsigned flags = At<std::uint16_t>(page, at + 4);
  const std::size_t keySize = At<std::uint16_t>(page, at + 6);
  if (!isLeaf) {
    Word child = static_cast<Word>(low);
    if constexpr (sizeof(Word) == 8) child |= Word{flags} << 32;
    Walk(child, {place.depth + 1, place.pagesLeft}, leaf);
    return;
  }
  const View key = Part(page, at + kNodeHeader, keySize);
  const auto length = static_cast<std::size_t>(low);
  const std::size_t value = at + kNodeHeader + keySize;
  if (flags & kBigData) {
    const Bytes pages = Overflow(At<Word>(page, value), length, place);
    leaf(flags, key, Part(pages, kHeader, length));
  } else {
    leaf(flags, key, Part(page, value, length));
  }
}

template <class Word>
template <class Leaf>
void PageFile<Word>::WalkTree(Word root, const Leaf& leaf) const {
  if (root == static_cast<Word>(-1)) return;  // an empty tree
  std::uint64_t pagesLeft = pages_;
  Walk(root, {0, pagesLeft}, leaf);
}

template <class Word>
template <class Leaf>
void PageFile<Word>::Walk(Word number, Place place, const Leaf& leaf) const {
  if (place.depth > kDeepest) Damaged();
  Take(place, 1);
  const Bytes page = Read(number);
  const unsigned flags = At<std::uint16_t>(page, sizeof(Word) + 2);
  const std::size_t end = At<std::uint16_t>(page, sizeof(Word) + 4);
  if ((flags & (kBranchPage | kLeafPage)) == 0 || end < kHeader) Damaged();
  for (std::size_t at = kHeader; at + 1 < end; at += 2) {
    WalkNode(page, At<std::uint16_t>(page, at), (flags & kLeafPage) != 0, place, leaf);
  }
}

template <class Word>
bool PageFile<Word>::Visit(const std::string& tree, const Visitor& visitor) const {
  std::optional<Word> root;
  WalkTree(root_, [&](unsigned flags, View key, View value) {
    const std::string name(key.begin(), key.end());
    if ((flags & kSubTree) == 0 || name != tree) return;
    root = At<Word>(Bytes(value.begin(), value.end()), kRootInTree<Word>);
  });
  if (!root) return false;
  WalkTree(*root, [&](unsigned flags, View key, View value) {
    if (flags & (kDuplicates | kSubTree)) Damaged();
    visitor(key, value);
  });
  return true;
}

template class PageFile<std::uint32_t>;
template class PageFile<std::uint64_t>;

}  // namespace otdb
