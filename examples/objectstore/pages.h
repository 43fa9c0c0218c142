#ifndef OTDB_PAGES_H
#define OTDB_PAGES_H

#include <cstdint>
#include <functional>
#include <string>

#include "bytes.h"

namespace otdb {

/// Reads the pages of a storage file of a given machine word, as the storage engine documents and
/// writes them. Nothing in the file is trusted: whatever doesn't fit ends in BadInput, and a walk
/// that takes more pages than the file has, round a circle or into a shared part, doesn't fit.
/// @tparam Word an unsigned integer of the word's size.
template <class Word>
class PageFile {
 public:
  using Visitor = std::function<void(View key, View value)>;

  /// Whether a file begins with pages of this word.
  static bool IsOne(const std::string& path);

  explicit PageFile(const std::string& path);

  /// Walks a named tree in the order of its keys. @return whether there is one.
  bool Visit(const std::string& tree, const Visitor& visitor) const;

 private:
  static constexpr std::size_t kHeader = sizeof(Word) + 8;

  class File {
   public:
    explicit File(const std::string& path);
    ~File();
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    operator int() const { return descriptor_; }

   private:
    int descriptor_;
  };
  /// Where a walk is, and how many pages it may still take.
  struct Place {
    int depth;
    std::uint64_t& pagesLeft;
  };

  Bytes Read(Word page, std::size_t pages = 1) const;
  Word NewestRoot() const;
  template <class Leaf>
  void WalkTree(Word root, const Leaf& leaf) const;
  template <class Leaf>
  void Walk(Word page, Place place, const Leaf& leaf) const;
  template <class Leaf>
  void WalkNode(const Bytes& page, std::size_t at, bool isLeaf, Place place,
                const Leaf& leaf) const;
  Bytes Overflow(Word page, std::size_t length, Place place) const;
  static void Take(Place place, std::uint64_t pages);

  File file_;
  std::uint64_t pages_ = 0;  ///< Of the whole file.
  std::size_t pageSize_ = 0;
  Word root_ = 0;
};

extern template class PageFile<std::uint32_t>;
extern template class PageFile<std::uint64_t>;

}  // namespace otdb

#endif
