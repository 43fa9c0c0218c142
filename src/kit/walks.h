#ifndef OT95_SRC_KIT_WALKS_H
#define OT95_SRC_KIT_WALKS_H

/// @file
/// What the rows of all types share: forms, the element walks of comparison and hash, moves between
/// forms, assignment, blocks on the heap. A row's source adds the few facts of its type.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <type_traits>

#include "ot95/base.h"
#include "ot95/bytes.h"
#include "ot95/fault.h"
#include "ot95/memfile.h"

namespace ot95 {

// ---------------------------------------------------------------------------------------------
// Forms

/// The form that a format byte names. Its high bits are flags of the text types.
constexpr unsigned char FormOf(unsigned char format) {
  return format & 15;
}

/// Compare and Hash take exactly form 8 as memory ...
constexpr bool IsMemoryForm(unsigned char format) {
  return FormOf(format) == OT_FORMAT_MEMORY;
}

/// ... but Translate, and Store of nullable types, ask only for the bit: forms 9 to 15 are memory
/// there and disk for the comparers.
constexpr bool HasMemoryBit(unsigned char format) {
  return (format & OT_FORMAT_MEMORY) != 0;
}

// ---------------------------------------------------------------------------------------------
// Places in arrays: offsets of 64 bits, which neither a large count nor a large length wraps

/// `count` times `width`, or the greatest offset where that is too small.
constexpr std::uint64_t SpanOf(std::uint64_t count, std::uint64_t width) {
  std::uint64_t span = 0;
  return __builtin_mul_overflow(count, width, &span) ? ~std::uint64_t{0} : span;
}

/// An array as comparers and hashes get it: a place, and how many bytes may be read there.
struct Side {
  const unsigned char* bytes;
  std::uint64_t end;

  /// A `length` of 0 means exactly `count` elements. Nothing is read through a null pointer.
  Side(const void* value, unsigned long length, unsigned long count, std::size_t width)
      : bytes(static_cast<const unsigned char*>(value)),
        end(value == nullptr ? 0
            : length != 0    ? length
                             : SpanOf(count, width)) {}

  /// Elements that start before the end; the first always counts as one.
  std::uint64_t Elements(std::size_t width) const {
    return end <= width ? 1 : end / width + (end % width != 0);
  }

  /// All `width` bytes of the element at `offset`: where it stands, or in `buffer`, with zeros for
  /// the bytes behind the end.
  const unsigned char* Element(std::uint64_t offset, std::size_t width,
                               unsigned char* buffer) const {
    const std::uint64_t available = end > offset ? end - offset : 0;
    if (available >= width) return bytes + offset;
    std::memset(buffer, 0, width);
    if (available != 0) std::memcpy(buffer, bytes + offset, static_cast<std::size_t>(available));
    return buffer;
  }
};

/// Widest element of any row.
constexpr std::size_t kWidestElement = 32;

/// How far a walk over arrays can go, and what it reports where it stops. The next element is
/// looked for before the result is: a difference in the last element that fits yields the
/// difference and OT_ERR_END_OF_DATA together when `count` asks for more.
struct Walk {
  std::uint64_t elements;  ///< Elements to be visited.
  std::uint64_t count;     ///< Elements asked for.

  Walk(unsigned long asked, std::uint64_t present)
      : elements(std::min<std::uint64_t>(asked, present)), count(asked) {}

  /// The status of a walk that stopped behind element `index`.
  int StatusAt(std::uint64_t index) const {
    return index + 1 >= elements && elements < count ? OT_ERR_END_OF_DATA : 0;
  }
};

/// Compares two arrays of elements of `width` bytes. `compareElement(e1, e2)` answers the
/// three-way result of two complete elements; the first that differs decides. A partial last
/// element is completed with zeros.
template <class CompareElement>
long WalkPairs(std::size_t width, unsigned long length1, const void* value1, unsigned long length2,
               const void* value2, unsigned long count, int& status,
               CompareElement&& compareElement) {
  status = 0;
  if (count == 0) return 0;
  const Side side1(value1, length1, count, width);
  const Side side2(value2, length2, count, width);
  const Walk walk(count, std::min(side1.Elements(width), side2.Elements(width)));
  unsigned char buffer1[kWidestElement];
  unsigned char buffer2[kWidestElement];
  long result = 0;
  std::uint64_t index = 0;
  for (;; ++index) {
    result = compareElement(side1.Element(index * width, width, buffer1),
                            side2.Element(index * width, width, buffer2));
    if (result != 0 || index + 1 >= walk.elements) break;
  }
  status = walk.StatusAt(index);
  return result;
}

/// Offset of the first byte that differs, or `length`. As fast as memcmp.
std::size_t FirstDifference(const void* left, const void* right, std::size_t length);

/// Steps to the next field or element of a value: advances `position` and answers 0, or leaves it
/// and answers OT_ERR_END_OF_DATA when that would reach `limit`.
inline int BoundedAdvance(std::uint64_t& position, std::uint64_t limit, std::uint64_t step) {
  if (step >= limit || position >= limit - step) return OT_ERR_END_OF_DATA;
  position += step;
  return 0;
}

/// -1, 0 or 1 by the operators < and >.
template <class T>
constexpr long ThreeWay(const T& left, const T& right) {
  return left < right ? -1 : left > right ? 1 : 0;
}

// ---------------------------------------------------------------------------------------------
// Hashes

constexpr std::uint32_t kHashMultiplier = 1103515245;

/// The one multiplication behind the fold of all elements.
constexpr unsigned long FinishHash(std::uint32_t folded) {
  return static_cast<std::uint32_t>(folded * kHashMultiplier);
}

/// Folds the contributions of `count` elements of `width` bytes by exclusive-or.
/// `contribution(element)` answers the 32 bits of one complete element; a partial last one is
/// completed with zeros. FinishHash is the caller's.
template <class Contribution>
std::uint32_t FoldElements(std::size_t width, unsigned long length, const void* value,
                           unsigned long count, int& status, Contribution&& contribution) {
  status = 0;
  if (count == 0) return 0;
  const Side side(value, length, count, width);
  const Walk walk(count, side.Elements(width));
  unsigned char buffer[kWidestElement];
  std::uint32_t folded = 0;
  for (std::uint64_t index = 0; index < walk.elements; ++index) {
    folded ^= contribution(side.Element(index * width, width, buffer));
  }
  status = walk.StatusAt(walk.elements - 1);
  return folded;
}

/// Exclusive-or of all 8-byte lanes of `length` bytes, the last completed with zeros: the fold of
/// elements of 1, 2, 4 and 8 bytes in any byte order comes from it.
std::uint64_t XorLanes(const void* bytes, std::size_t length);

// ---------------------------------------------------------------------------------------------
// Moves between forms

/// Moves stored bytes as they stand; a longer target ends in zeros. Returns the bytes moved.
inline unsigned long MoveStored(void* target, unsigned long targetLength, const void* source,
                                unsigned long sourceLength) {
  const unsigned long moved = std::min(targetLength, sourceLength);
  // The rest is cleared last, because the two may overlap.
  if (moved != 0) std::memmove(target, source, moved);
  if (targetLength > moved) {
    std::memset(static_cast<unsigned char*>(target) + moved, 0, targetLength - moved);
  }
  return moved;
}

/// Member SizeGetFromMemFile where the width is a primitive's to say; `mask` is what it gets to see
/// of the format.
template <auto sizeGet, unsigned char mask>
unsigned long PrimitiveFileSize(MemFile*, unsigned char format, unsigned long count) {
  return sizeGet(nullptr, OT_FORMAT_MEMORY, format & mask, count);
}

/// Member Translate of a fixed-size type. Load receives the whole source format and Store only the
/// low four bits of the target's.
template <auto load, auto store, auto assign, std::size_t memoryLength>
unsigned long TranslateFixed(void* target, unsigned char targetFormat, unsigned long targetLength,
                             void* source, unsigned char sourceFormat, unsigned long sourceLength,
                             unsigned long count) {
  if (HasMemoryBit(targetFormat)) {
    if (!HasMemoryBit(sourceFormat)) return load(target, source, sourceFormat, count);
    assign(target, source, count, 0);
    return count * memoryLength;
  }
  if (HasMemoryBit(sourceFormat)) return store(target, source, FormOf(targetFormat), count);
  return MoveStored(target, targetLength, source, sourceLength);
}

// ---------------------------------------------------------------------------------------------
// Assignment and construction in arrays

/// Members Assign and Copy of types whose values are plain bytes.
template <std::size_t width>
void AssignBytes(void* target, void* source, unsigned long count, int fill) {
  if (target == nullptr || count == 0) return;
  if (fill == 0) {
    std::memmove(target, source, count * width);
    return;
  }
  unsigned char value[width];  // The source may be one of the targets.
  std::memcpy(value, source, width);
  auto* bytes = static_cast<unsigned char*>(target);
  for (unsigned long i = 0; i < count; ++i) std::memcpy(bytes + i * width, value, width);
}

/// Member Assign of a value class.
template <class T>
void AssignValues(void* target, void* source, unsigned long count, int fill) {
  T* to = static_cast<T*>(target);
  T* from = static_cast<T*>(source);
  for (unsigned long i = 0; i < count; ++i) to[i] = from[fill != 0 ? 0 : i];
}

/// Member Copy of a value class: copies into raw storage.
template <class T>
void CopyValues(void* target, void* source, unsigned long count, int fill) {
  T* to = static_cast<T*>(target);
  T* from = static_cast<T*>(source);
  if (to == nullptr) return;
  for (unsigned long i = 0; i < count; ++i) new (to + i) T(from[fill != 0 ? 0 : i]);
}

/// Member Construct of types that start as zero bytes.
template <std::size_t width>
void ConstructZero(void* memory, unsigned long count, unsigned long) {
  if (memory != nullptr && count != 0) std::memset(memory, 0, count * width);
}

/// Member Construct of a value class.
template <class T>
void ConstructValues(void* memory, unsigned long count, unsigned long) {
  if (memory == nullptr) return;
  T* values = static_cast<T*>(memory);
  for (unsigned long i = 0; i < count; ++i) new (values + i) T();
}

/// Member Destruct of a value class, from the last element to the first.
template <class T>
void DestroyValues(void* memory, unsigned long count, unsigned long) {
  T* values = static_cast<T*>(memory);
  while (count != 0) values[--count].~T();
}

/// Member Destruct of types that own nothing.
void DestructNothing(void* memory, unsigned long count, unsigned long);

/// Member IsNull of types without a null value.
int IsNeverNull(void* value);

// ---------------------------------------------------------------------------------------------
// Blocks on the heap

/// Storage for `count` elements, at least one byte; null when there is none.
inline void* AllocateElements(unsigned long count, std::size_t width) {
  const std::uint64_t bytes = std::max<std::uint64_t>(SpanOf(count, width), 1);
  if (bytes > PTRDIFF_MAX) return nullptr;
  return Noted(std::malloc(static_cast<std::size_t>(bytes)));
}

/// Member Create of plain types: the storage isn't cleared.
template <std::size_t width>
void* CreatePlain(unsigned long count) {
  return AllocateElements(count, width);
}

/// Member Delete of what AllocateElements, CreatePlain or CreateZero made.
void* DeletePlain(void* value, unsigned long count);

/// Member Create of types that start as zero bytes.
template <std::size_t width>
void* CreateZero(unsigned long count) {
  void* block = AllocateElements(count, width);
  if (block != nullptr) std::memset(block, 0, std::max(count * width, 1UL));
  return block;
}

/// Member Create of value classes that own nothing: default-constructed, `count` 0 makes one.
/// DeletePlain is its counterpart.
template <class T>
void* CreateValues(unsigned long count) {
  static_assert(std::is_trivially_destructible_v<T>);
  count = std::max(count, 1UL);
  void* block = AllocateElements(count, sizeof(T));
  if (block != nullptr) ConstructValues<T>(block, count, 0);
  return block;
}

/// Bytes before the first element of a counted block. They keep the element aligned and end in
/// the 32-bit count.
template <class T>
constexpr std::size_t kCountHeader = std::max(sizeof(std::uint32_t), alignof(T));

/// Storage for `count` elements with their count before them; null when there is none.
template <class T>
void* AllocateCounted(unsigned long count) {
  if (count > UINT32_MAX) return nullptr;
  const std::uint64_t bytes = SpanOf(count, sizeof(T)) + kCountHeader<T>;
  if (bytes > PTRDIFF_MAX) return nullptr;
  auto* block = static_cast<unsigned char*>(Noted(std::malloc(static_cast<std::size_t>(bytes))));
  if (block == nullptr) return nullptr;
  const auto stored = static_cast<std::uint32_t>(count);
  std::memcpy(block + kCountHeader<T> - sizeof stored, &stored, sizeof stored);
  return block + kCountHeader<T>;
}

/// The count before the first element.
inline std::uint32_t StoredCount(const void* value) {
  std::uint32_t count;
  std::memcpy(&count, static_cast<const unsigned char*>(value) - sizeof count, sizeof count);
  return count;
}

/// Member Create of value classes that own something: `count` 0 and 1 make a single value, more a
/// counted block.
template <class T>
void* CreateCounted(unsigned long count) {
  void* values = count < 2 ? Noted(std::malloc(sizeof(T))) : AllocateCounted<T>(count);
  if (values != nullptr) ConstructValues<T>(values, std::max(count, 1UL), 0);
  return values;
}

/// The same for values that start as zero bytes.
template <class T>
void* CreateCountedZero(unsigned long count) {
  void* values = count < 2 ? Noted(std::malloc(sizeof(T))) : AllocateCounted<T>(count);
  if (values != nullptr) std::memset(values, 0, std::max(count, 1UL) * sizeof(T));
  return values;
}

/// Member Delete of what CreateCounted and CreateCountedZero made; the block's own count tells how
/// many to destroy.
template <class T>
void* DeleteCounted(void* value, unsigned long count) {
  if (value == nullptr) return nullptr;
  if (count < 2) {
    static_cast<T*>(value)->~T();
    std::free(value);
  } else {
    DestroyValues<T>(value, StoredCount(value), 0);
    std::free(static_cast<unsigned char*>(value) - kCountHeader<T>);
  }
  return nullptr;
}

}  // namespace ot95

#endif
