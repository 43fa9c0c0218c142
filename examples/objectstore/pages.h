#ifndef OTDB_PAGES_H
#define OTDB_PAGES_H

#include <cstdint>
#include <functional>
#include <string>

#include "bytes.h"

namespace otdb {

/// Reads the pages of a storage file of a given machine word, as the storage engine documents and
/// writes them. Nothing in the file is trusted: whatever doesn't fit ends in BadInput.
/// @tparam Word an unsigned integer of the word's size.
template <class Word>
class PageFile {
 public:
  using Visitor = std::function<void(View key, View value)>;

  /// Whether a file begins with pages of this word.
  static bool IsOne(const std::string& path);

  explicit PageFile(const std::string& path);
  ~PageFile();
  PageFile(const PageFile&) = delete;
  PageFile& operator=(const PageFile&) = delete;

  /// Walks a named tree in the order of its keys. @return whether there is one.
  bool Visit(const std::string& tree, const Visitor& visitor) const;

 private:
  static constexpr std::size_t kHeader = sizeof(Word) + 8;

  Bytes Read(Word page, std::size_t pages = 1) const;
  Word NewestRoot() const;
  template <class Leaf>
  void Walk(Word page, int depth, const Leaf& leaf) const;
  template <class Leaf>
  void WalkNode(const Bytes& page, std::size_t at, bool isLeaf, int depth, const Leaf& leaf) const;
  Bytes Overflow(Word page, std::size_t length) const;

  int file_;
  std::size_t pageSize_ = 0;
  Word root_ = 0;
};

extern template class PageFile<std::uint32_t>;
extern template class PageFile<std::uint64_t>;

}  // namespace otdb

#endif
