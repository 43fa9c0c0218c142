#include "kit/walks.h"

namespace ot95 {

namespace {

// Blocks of equal bytes are passed by memcmp; the one that differs is then searched more finely.
template <std::size_t block>
std::size_t SkipEqualBlocks(const unsigned char* left, const unsigned char* right, std::size_t from,
                            std::size_t length) {
  while (length - from >= block && std::memcmp(left + from, right + from, block) == 0) {
    from += block;
  }
  return from;
}

}  // namespace

std::size_t FirstDifference(const void* left, const void* right, std::size_t length) {
  const auto* a = static_cast<const unsigned char*>(left);
  const auto* b = static_cast<const unsigned char*>(right);
  std::size_t at = SkipEqualBlocks<16384>(a, b, 0, length);
  at = SkipEqualBlocks<512>(a, b, at, length);
  at = SkipEqualBlocks<8>(a, b, at, length);
  while (at < length && a[at] == b[at]) ++at;
  return at;
}

void DestructNothing(void*, unsigned long, unsigned long) {}

int IsNeverNull(void*) {
  return 0;
}

void* DeletePlain(void* value, unsigned long) {
  std::free(value);
  return nullptr;
}

}  // namespace ot95
