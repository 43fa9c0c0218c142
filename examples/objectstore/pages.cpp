// Reads the pages of a store's file without trusting one of them.
#include "pages.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "bad_input.h"

namespace otdb {
namespace {

using ot95::tools::BadInput;

// The head of a file: magic, version, address, size of the map, two trees, last page, transaction.
constexpr std::uint32_t kMagic = 0xbeefc0de, kVersion = 1;
template <class Word>
constexpr std::size_t kTreesInHead = Page<Word>::kHeader + 8 + 2 * sizeof(Word);
template <class Word>
constexpr std::size_t kHeadSize = kTreesInHead<Word> + 2 * TreeFacts<Word>::kSize +
                                  2 * sizeof(Word);

// Flags of the tree of free pages, which are the file's, too: its keys are numbers; no directory.
constexpr unsigned kNumberKeys = 8, kNoDirectory = 0x4000;
constexpr std::size_t kSmallestPage = 512;
constexpr int kAttempts = 20;  // to find the heads while nobody writes them

bool IsPageSize(std::size_t size) {
  return size >= kSmallestPage && size <= Page<std::uint64_t>::kLargest && (size & (size - 1)) == 0;
}

}  // namespace

int CompareInTree(View key1, View key2, MDB_cmp_func* order) {
  if (order != nullptr) {
    const MDB_val value1 = {key1.size(), Place(key1)}, value2 = {key2.size(), Place(key2)};
    return order(&value1, &value2);
  }
  const int sign = std::memcmp(key1.data(), key2.data(), std::min(key1.size(), key2.size()));
  if (sign != 0 || key1.size() == key2.size()) return sign;
  return key1.size() < key2.size() ? -1 : 1;
}

template <class Word>
bool PageFile<Word>::IsOne(const std::string& path) {
  unsigned char head[Page<Word>::kHeader + 4] = {};
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return false;
  const bool whole = pread(file, head, sizeof head, 0) == static_cast<ssize_t>(sizeof head);
  close(file);
  return whole && NumberAt<std::uint32_t>(head, Page<Word>::kHeader) == kMagic;
}

template <class Word>
PageFile<Word>::Map::Map(const std::string& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) throw BadInput(path + ": " + std::strerror(errno));
  struct stat facts {};
  const bool known = fstat(file, &facts) == 0;
  const auto size = static_cast<std::size_t>(facts.st_size);
  void* const bytes =
      !known || size == 0 ? MAP_FAILED : mmap(nullptr, size, PROT_READ, MAP_SHARED, file, 0);
  const int error = size == 0 ? EINVAL : errno;
  close(file);
  if (bytes == MAP_FAILED) throw BadInput(path + ": " + std::strerror(error));
  bytes_ = {static_cast<const unsigned char*>(bytes), Unmap{size}};
}

template <class Word>
void PageFile<Word>::Map::Unmap::operator()(const unsigned char* bytes) const {
  munmap(const_cast<unsigned char*>(bytes), size);
}

template <class Word>
PageFile<Word>::Head::Head(View page, std::size_t trees)
    : free(page.subspan(trees)),
      names(page.subspan(trees + Facts::kSize)),
      lastPage(NumberAt<Word>(page, trees + 2 * Facts::kSize)),
      transaction(NumberAt<Word>(page, trees + 2 * Facts::kSize + sizeof(Word))) {}

template <class Word>
PageFile<Word>::PageFile(const std::string& path, std::optional<Word> transaction)
    : path_(path), map_(path), sound_(nullptr, std::free) {
  for (int attempt = 1;; ++attempt) {
    const bool known = TakeHead(transaction);
    if (known && (!head_ || HoldsLastPage())) break;
    if (attempt == kAttempts) RefuseHead(known);
    map_ = Map(path);  // another process writes, and the file may have grown
  }
  if (!head_) return;
  const auto pages = static_cast<std::size_t>(head_->lastPage) + 1;
  sound_.reset(static_cast<TreeKind*>(std::calloc(pages, 1)));
  if (!sound_) throw BadInput(path_ + ": " + std::strerror(ENOMEM));
}

template <class Word>
bool PageFile<Word>::HoldsLastPage() const {
  return head_->lastPage < map_.Bytes().size() / pageSize_;
}

template <class Word>
void PageFile<Word>::RefuseHead(bool known) const {
  if (!known) throw BadInput(path_ + ": the head of the file is damaged");
  throw BadInput(path_ + ": ends before its last page: holds " +
                 std::to_string(map_.Bytes().size() / pageSize_) + " of " +
                 std::to_string(std::uint64_t{head_->lastPage} + 1) + " pages");
}

template <class Word>
std::optional<PageFile<Word>> PageFile<Word>::Of(const std::string& path, Word transaction) {
  PageFile file(path, transaction);
  if (!file.head_) return {};
  return file;
}

// Two heads take turns, so that one of the last two transactions each is in the place of its
// number. A head that is older than it should be would hide a transaction.
template <class Word>
bool PageFile<Word>::TakeHead(std::optional<Word> transaction) {
  if (map_.Bytes().size() < kHeadSize<Word>) return false;
  pageSize_ = NumberAt<std::uint32_t>(map_.Bytes(), kTreesInHead<Word>);
  if (!IsPageSize(pageSize_)) return false;
  const auto even = HeadAt(0), odd = HeadAt(1);
  if (!even || !odd) return false;
  const Word first = even->transaction, second = odd->transaction;
  const bool unwritten = first == 0 && second == 0;
  const bool inTurn =
      first % 2 == 0 && second % 2 == 1 && (first + 1 == second || second + 1 == first);
  if (!unwritten && !inTurn) return false;
  head_ = first > second ? even : odd;
  if (transaction) {
    head_ = *transaction % 2 == 0 ? even : odd;
    if (head_->transaction != *transaction) head_.reset();
  }
  return true;
}

template <class Word>
auto PageFile<Word>::HeadAt(Word page) const -> std::optional<Head> {
  const std::size_t start = static_cast<std::size_t>(page) * pageSize_;
  if (start + kHeadSize < Word >> map_.Bytes().size()) return {};
  unsigned char head[kHeadSize<Word>], again[kHeadSize<Word>];
  std::memcpy(head, map_.Bytes().data() + start, sizeof head);
  std::memcpy(again, map_.Bytes().data() + start, sizeof again);
  const Page<Word> described{View(head)};
  const Head read(head, kTreesInHead<Word>);
  const bool isSound = std::memcmp(head, again, sizeof head) == 0 && described.Number() == page &&
                       described.Flags() == Page<Word>::kHead &&
                       NumberAt<std::uint32_t>(head, Page<Word>::kHeader) == kMagic &&
                       NumberAt<std::uint32_t>(head, Page<Word>::kHeader + 4) == kVersion &&
                       read.free.width == pageSize_ &&
                       (read.free.flags & ~kNoDirectory) == kNumberKeys && read.names.flags == 0;
  if (!isSound) return {};
  return read;
}

template <class Word>
void PageFile<Word>::Damaged(Word page) const {
  throw BadInput(path_ + ": page " + std::to_string(page) + " is damaged");
}

template <class Word>
View PageFile<Word>::Bytes(Word page, std::size_t pages) const {
  const Word last = head_->lastPage;
  if (page < 2 || page > last || pages - 1 > last - page) Damaged(page);
  return map_.Bytes().subspan(static_cast<std::size_t>(page) * pageSize_, pages * pageSize_);
}

template <class Word>
Page<Word> PageFile<Word>::At(Word number, TreeKind kind) const {
  const Page<Word> page(Bytes(number));
  TreeKind& sound = sound_[static_cast<std::size_t>(number)];
  if (sound == kind) return page;
  if (sound != TreeKind() || !page.IsSound(number, kind)) Damaged(number);
  sound = kind;
  return page;
}

template <class Word>
View PageFile<Word>::Overflow(Word number, std::size_t length, Word* pages) const {
  const Page<Word> first(Bytes(number));
  const std::size_t needed = (Page<Word>::kHeader + length + pageSize_ - 1) / pageSize_;
  if (first.Number() != number || first.Flags() != Page<Word>::kOverflow ||
      first.Pages() < needed) {
    Damaged(number);
  }
  if (pages != nullptr) *pages = first.Pages();
  return Bytes(number, first.Pages()).subspan(Page<Word>::kHeader, length);
}

template <class Word>
View PageFile<Word>::Data(const Page<Word>& leaf, std::size_t entry) const {
  const View data = leaf.Data(entry);
  if ((leaf.DataFlags(entry) & Page<Word>::kBigData) == 0) return data;
  return Overflow(NumberAt<Word>(data, 0), leaf.DataSize(entry));
}

template <class Word>
auto PageFile<Word>::Find(const std::string& tree) const -> std::optional<Facts> {
  PageCursor<Word> cursor(*this, Names(), TreeKind::kNames);
  const View name(reinterpret_cast<const unsigned char*>(tree.data()), tree.size());
  if (!cursor.Seek(name, nullptr) || CompareInTree(cursor.Key(), name, nullptr) != 0) return {};
  return Facts(cursor.Leaf().Data(cursor.Entry()));
}

template <class Word>
bool PageFile<Word>::Visit(const std::string& tree, const Visitor& visitor) const {
  const auto facts = Find(tree);
  if (!facts) return false;
  if (facts->flags != 0) throw BadInput(path_ + ": the tree " + tree + " is damaged");
  PageCursor<Word> cursor(*this, *facts, TreeKind::kPlain);
  for (bool more = cursor.First(); more; more = cursor.Next()) {
    visitor(cursor.Key(), Data(cursor.Leaf(), cursor.Entry()));
  }
  return true;
}

template <class Word>
Word PagesOf(const PageFile<Word>& file, const TreeFacts<Word>& tree) {
  const Word all = file.LastPage() + 1;
  return tree.branches >= all || tree.leaves >= all ? all
                                                    : std::min(all, tree.branches + tree.leaves);
}

template <class Word>
PageCursor<Word>::PageCursor(const PageFile<Word>& file, const TreeFacts<Word>& tree, TreeKind kind)
    : file_(&file),
      root_(tree.root),
      depth_(tree.IsEmpty() ? 0 : tree.depth),
      kind_(kind),
      width_(tree.width),
      pages_(PagesOf(file, tree)) {
  if (depth_ > kDeepest || (depth_ == 0 && !tree.IsEmpty())) file.Damaged(root_);
}

template <class Word>
PageCursor<Word>::PageCursor(const PageFile<Word>& file, const Page<Word>& values)
    : file_(&file), values_(values), kind_(TreeKind::kValues) {}

template <class Word>
bool PageCursor<Word>::Begin() {
  if (depth_ == 0) return false;
  pagesLeft_ = pages_;
  if (values_) {
    steps_[0] = {*values_, 0};
  } else {
    Enter(0, root_);
  }
  return true;
}

template <class Word>
void PageCursor<Word>::Enter(unsigned level, Word number) {
  const Page<Word> page = file_->At(number, kind_);
  const bool isLeaf = level + 1 == depth_;
  const bool hasWidth = kind_ != TreeKind::kValues || !isLeaf || page.Width() == width_;
  if (pagesLeft_ == 0 || page.IsBranch() == isLeaf || !hasWidth) file_->Damaged(number);
  --pagesLeft_;
  steps_[level] = {page, 0};
}

/// From a page down to a leaf.
template <class Word>
bool PageCursor<Word>::Descend(unsigned level, bool last) {
  for (;; ++level) {
    Step& step = steps_[level];
    step.entry = last ? step.page.Count() - 1 : 0;
    if (level + 1 == depth_) return true;
    Enter(level + 1, step.page.Child(step.entry));
  }
}

template <class Word>
bool PageCursor<Word>::Next() {
  for (unsigned level = depth_; level-- != 0;) {
    Step& step = steps_[level];
    if (step.entry + 1 >= step.page.Count()) continue;
    ++step.entry;
    if (level + 1 == depth_) return true;
    Enter(level + 1, step.page.Child(step.entry));
    return Descend(level + 1, false);
  }
  return false;
}

template <class Word>
bool PageCursor<Word>::Seek(View key, MDB_cmp_func* order) {
  if (!Begin()) return false;
  for (unsigned level = 0;; ++level) {
    Step& step = steps_[level];
    const bool isLeaf = level + 1 == depth_;
    // The first entry whose key isn't below; on a branch, the last whose key isn't above.
    std::size_t low = isLeaf ? 0 : 1, high = step.page.Count();
    while (low < high) {
      const std::size_t middle = (low + high) / 2;
      const int sign = CompareInTree(step.page.Key(middle), key, order);
      if (sign < 0 || (sign == 0 && !isLeaf)) {
        low = middle + 1;
      } else {
        high = middle;
      }
    }
    step.entry = isLeaf ? low : low - 1;
    if (!isLeaf) {
      Enter(level + 1, step.page.Child(step.entry));
      continue;
    }
    if (low < step.page.Count()) return true;
    step.entry = step.page.Count() - 1;
    return Next();
  }
}

template std::uint32_t PagesOf(const PageFile<std::uint32_t>&, const TreeFacts<std::uint32_t>&);
template std::uint64_t PagesOf(const PageFile<std::uint64_t>&, const TreeFacts<std::uint64_t>&);
template class PageFile<std::uint32_t>;
template class PageFile<std::uint64_t>;
template class PageCursor<std::uint32_t>;
template class PageCursor<std::uint64_t>;

}  // namespace otdb
