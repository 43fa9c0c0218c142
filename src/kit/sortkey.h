#ifndef OT95_SRC_KIT_SORTKEY_H
#define OT95_SRC_KIT_SORTKEY_H

/// @file
/// What the sort keys of all families share: where the bytes go, how numbers and runs of bytes
/// become bytes that order as they do, and the walk over the elements of an array.
/// docs/sort-keys.md draws the result.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "kit/walks.h"

namespace ot95 {

/// What a key is made of: an array in memory or stored, as Cmp gets it.
struct SortInput {
  const unsigned char* value;
  unsigned long length;  ///< Bytes at `value`; 0 means exactly `count` elements.
  unsigned long count;
  unsigned short cmpOp;
  unsigned char format;
  bool isOperand;  ///< Of a range: where it holds an open part, the key ends before that.
};

/// What a family answers besides 0 and the public statuses.
enum : int {
  kOpenKey = 1,      ///< Of an operand: the key is the beginning that all matches share.
  kUnorderedKey = 2  ///< The value has a place, but comparison doesn't always find it there.
};

/// Makes the key of an array. Where the answer is a public status, what was written doesn't count,
/// but for OT_ERR_END_OF_DATA: then it is the key of the elements that are there.
class SortKeyWriter;
using SortKeyFunc = int (*)(const SortInput& input, SortKeyWriter& out);

/// 64 bits of bytes and a seed: SipHash with one round a word and three at the end, whose second
/// half of the key is fixed.
class Hash64State {
 public:
  explicit Hash64State(std::uint64_t seed);
  /// Takes bytes whose number is a multiple of eight.
  void AbsorbWords(const unsigned char* bytes, std::size_t length);
  /// Takes the rest, and answers the hash of all.
  std::uint64_t Finish(const unsigned char* bytes, std::size_t length);

 private:
  void Absorb(std::uint64_t word);
  void Round();

  std::uint64_t v0_, v1_, v2_, v3_;
  std::uint64_t length_ = 0;
};

/// Whether a key was written: an empty one for a status that says there is none.
constexpr bool HasSortKey(int status) {
  return status == 0 || status == OT_ERR_END_OF_DATA || status == kUnorderedKey;
}
/// What OtTypeMgr::SortKey answers. @param keyFunc null: there is no such type.
unsigned long MakeSortKey(SortKeyFunc keyFunc, const SortInput& input, void* target,
                          unsigned long room, int& status);

/// Takes the bytes of a key: into a room that may be too small, or into a hash.
class SortKeyWriter {
 public:
  SortKeyWriter(void* target, std::size_t room)
      : begin_(static_cast<unsigned char*>(target)),
        place_(begin_),
        end_(target != nullptr ? begin_ + room : begin_) {}
  explicit SortKeyWriter(Hash64State& hash)
      : begin_(block_), place_(block_), end_(block_ + sizeof block_), hash_(&hash) {}
  SortKeyWriter(const SortKeyWriter&) = delete;

  void Put(unsigned byte) {
    if (place_ == end_) [[unlikely]]
      Renew();
    *place_++ = static_cast<unsigned char>(byte);
  }
  /// Most significant byte first.
  template <class Word>
  void PutNumber(Word number) {
    static_assert(std::is_unsigned_v<Word>);
    for (int shift = 8 * (int{sizeof number} - 1); shift >= 0; shift -= 8) {
      Put(static_cast<unsigned>(number >> shift & 0xff));
    }
  }
  /// A signed number, with its sign bit turned so that negative ones come first.
  template <class Number>
  void PutSigned(Number number) {
    using Word = WordOf<sizeof number>;
    PutNumber(static_cast<Word>(static_cast<Word>(number) ^ Word{1} << (8 * sizeof number - 1)));
  }

  // For who writes bytes by itself, as far as there is room.
  unsigned char* Place() const { return place_; }
  std::size_t Room() const { return static_cast<std::size_t>(end_ - place_); }
  void SetPlace(unsigned char* place) { place_ = place; }

  /// Bytes so far, also those for which there was no room.
  std::uint64_t Size() const { return before_ + static_cast<std::uint64_t>(place_ - begin_); }
  /// The hash of all bytes, of a writer that was made for one.
  std::uint64_t Finish() {
    return hash_->Finish(begin_, static_cast<std::size_t>(place_ - begin_));
  }

 private:
  void Renew();

  unsigned char* begin_;
  unsigned char* place_;
  unsigned char* end_;
  std::uint64_t before_ = 0;  // bytes before begin_
  Hash64State* hash_ = nullptr;
  unsigned char block_[128];
};

/// Bytes of any value, of any number: a zero byte becomes 00 01, and 00 00 ends them.
void PutBytes(SortKeyWriter& out, const unsigned char* bytes, std::size_t length);

// First bytes of values that may be null.
inline constexpr unsigned kNullKey = 0;
inline constexpr unsigned kPresentKey = 1;

/// Texts of bytes that are never zero, one byte each but for two rare ones: 01 ends them, 02 hides
/// a byte of 01 or 02, and 00 stays free for a null.
inline constexpr unsigned kEndOfText = 1;
inline constexpr unsigned kHiddenByte = 2;
inline void PutTextByte(SortKeyWriter& out, unsigned byte) {
  if (byte <= kHiddenByte) [[unlikely]]
    out.Put(kHiddenByte);
  out.Put(byte);
}

/// Keys of elements of `width` bytes. `put(element, index)` writes one and answers as a
/// SortKeyFunc.
template <class PutElement>
int PutElements(const SortInput& input, std::size_t width, PutElement&& put) {
  const std::uint64_t present = input.value == nullptr ? 0
                                : input.length != 0    ? input.length / width
                                                       : input.count;
  bool unordered = false;
  for (std::uint64_t i = 0; i < std::min<std::uint64_t>(present, input.count); ++i) {
    const int status = put(input.value + i * width, i);
    if (status != 0 && status != kUnorderedKey) return status;
    unordered |= status == kUnorderedKey;
  }
  if (present < input.count) return OT_ERR_END_OF_DATA;
  return unordered ? kUnorderedKey : 0;
}

}  // namespace ot95

#endif
