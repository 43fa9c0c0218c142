#ifndef OT95_SRC_TEXT_UTF8_H
#define OT95_SRC_TEXT_UTF8_H

/// @file
/// UTF-8 to the 16-bit units of a text, and back, pairs and all.

#include <cstddef>
#include <cstdint>

namespace ot95 {

/// Bytes of the units in UTF-8; an unpaired surrogate counts as U+FFFD.
std::size_t Utf8Size(const std::uint16_t* units, std::size_t count);
void EncodeUtf8(const std::uint16_t* units, std::size_t count, char* utf8);

/// @param to room for as many units as there are bytes. @return behind the last; null for what
/// isn't
///   UTF-8, or holds a zero.
std::uint16_t* DecodeUtf8(const unsigned char* at, const unsigned char* end, std::uint16_t* to);

}  // namespace ot95

#endif
