// Stored forms of scalars: moves between memory and disk, and sizes.

#include "ot95/store.h"

#include <cstring>

#include "reverse.h"

namespace {

template <class Word>
inline unsigned long MoveWords(void* target, const void* source, unsigned char format,
                               unsigned long count) {
  // Engines move field by field far more often than array by array.
  if (count == 1) {
    const Word word = ot95::LoadAs<Word>(source, format);
    std::memcpy(target, &word, sizeof word);
  } else if (count != 0) {
    if constexpr (sizeof(Word) > 1) {
      if (ot95::ReversesBytes(format)) {
        ot95::ReverseWords<Word>(target, source, count);
        return count * sizeof(Word);
      }
    }
    std::memmove(target, source, count * sizeof(Word));
  }
  return count * sizeof(Word);
}

}  // namespace

// The moves: one line for each name, which says how wide its scalars are on disk.
#define OT95_STORE(name, Word)                                               \
  unsigned long name(void* target, const void* source, unsigned char format, \
                     unsigned long count) {                                  \
    return MoveWords<Word>(target, source, format, count);                   \
  }
OT95_STORE(ShortStore, std::uint16_t)
OT95_STORE(LongStore, std::uint32_t)
OT95_STORE(IntStore, std::uint32_t)
OT95_STORE(IntLoad, std::uint32_t)
OT95_STORE(UnsignedStore, std::uint32_t)
OT95_STORE(UnsignedLoad, std::uint32_t)
OT95_STORE(FloatStore, std::uint32_t)  // As words: a float register may quiet a signalling NaN.
OT95_STORE(DoubleStore, std::uint64_t)
#undef OT95_STORE

unsigned long CharStore(void* target, const void* source, unsigned char, unsigned long count) {
  return MoveWords<std::uint8_t>(target, source, OT_FORMAT_NATIVE, count);
}

#define OT95_SIZES(Name, width)                                                                 \
  unsigned long Name##SizeGet(const void*, unsigned char, unsigned char, unsigned long count) { \
    return count * width;                                                                       \
  }                                                                                             \
  unsigned long Name##NullSizeGet(unsigned long count) {                                        \
    return count * width;                                                                       \
  }
OT95_SIZES(Char, 1)
OT95_SIZES(Short, 2)
OT95_SIZES(Long, 4)
OT95_SIZES(Int, 4)
OT95_SIZES(Float, 4)
OT95_SIZES(Double, 8)
#undef OT95_SIZES
