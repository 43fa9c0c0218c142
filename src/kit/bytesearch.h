#ifndef OT95_SRC_KIT_BYTESEARCH_H
#define OT95_SRC_KIT_BYTESEARCH_H

// Search for bytes in bytes, linear for every pattern.

#include <cstddef>

namespace ot95 {

constexpr std::size_t noPlace = ~std::size_t{0};

/// First place of a pattern in a text of bytes, or noPlace; 0 for an empty pattern. Takes time in
/// proportion to the two lengths, whatever they hold, and no memory.
std::size_t FindBytes(const unsigned char* text, std::size_t length, const unsigned char* pattern,
                      std::size_t patternLength);

}  // namespace ot95

#endif
