#ifndef OT95_BYTES_H
#define OT95_BYTES_H

/// @file
/// One scalar at a time between memory and the stored forms, inline: what the exported primitives
/// of store.h do to arrays, for callers that read a field in the middle of their own loop.
///
/// @code
///   unsigned char field[4] = {0x12, 0x34, 0x56, 0x78};
///   OtDWord serial = ot95::LoadAs<OtDWord>(field, OT_FORMAT_BIG_ENDIAN);  // serial == 0x12345678
///   ot95::StoreAs<OtDWord>(field, serial + 1, OT_FORMAT_BIG_ENDIAN);      // field[3] == 0x79
/// @endcode
///
/// Nothing here looks at an address: places need no alignment, and reading a `float` from bytes is
/// no breach of the language's rules. Every bit is kept, those of a not-a-number too. The caller
/// sees to it that the bytes are there.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "ot95/base.h"

namespace ot95 {

/// Whether the bytes of a scalar of this form stand in reverse: only OT_FORMAT_BIG_ENDIAN does
/// that, on a machine of the other order; the other fifteen forms are native. The high four bits
/// say nothing about scalars.
constexpr bool ReversesBytes(unsigned char format) {
  return (format & 15) == OT_FORMAT_BIG_ENDIAN && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__;
}

/// The unsigned integer that is `width` bytes wide: 1, 2, 4 or 8.
template <std::size_t width>
using WordOf = std::conditional_t<
    width == 1, std::uint8_t,
    std::conditional_t<width == 2, std::uint16_t,
                       std::conditional_t<width == 4, std::uint32_t, std::uint64_t>>>;

// The same bytes from the last to the first.
constexpr std::uint8_t Reversed(std::uint8_t word) {
  return word;
}
constexpr std::uint16_t Reversed(std::uint16_t word) {
  return __builtin_bswap16(word);
}
constexpr std::uint32_t Reversed(std::uint32_t word) {
  return __builtin_bswap32(word);
}
constexpr std::uint64_t Reversed(std::uint64_t word) {
  return __builtin_bswap64(word);
}

/// The scalar that stands at `source` in the given form: sizeof(T) bytes, of which none is changed.
template <class T>
inline T LoadAs(const void* source, unsigned char format) {
  static_assert(std::is_arithmetic_v<T> || std::is_enum_v<T>, "scalars only");
  WordOf<sizeof(T)> word;
  std::memcpy(&word, source, sizeof word);
  if (ReversesBytes(format)) word = Reversed(word);
  T value;
  std::memcpy(&value, &word, sizeof value);
  return value;
}

/// Puts `value` at `target` in the given form: sizeof(T) bytes. T has to be named: the argument's
/// own type could choose another width.
template <class T>
inline void StoreAs(void* target, std::common_type_t<T> value, unsigned char format) {
  static_assert(std::is_arithmetic_v<T> || std::is_enum_v<T>, "scalars only");
  WordOf<sizeof(T)> word;
  std::memcpy(&word, &value, sizeof word);
  if (ReversesBytes(format)) word = Reversed(word);
  std::memcpy(target, &word, sizeof word);
}

}  // namespace ot95

#endif
