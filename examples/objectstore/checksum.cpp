// Checksums of what the store keeps.
#include "checksum.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <cstring>
#include <iterator>

namespace otdb {
namespace {

XXH64_canonical_t Digest(std::uint64_t seed, View key, View value) {
  const std::uint64_t ofKey = XXH3_64bits_withSeed(key.data(), key.size(), seed);
  XXH64_canonical_t bytes;
  XXH64_canonicalFromHash(&bytes, XXH3_64bits_withSeed(value.data(), value.size(), ofKey));
  return bytes;
}

}  // namespace

std::uint64_t SeedOf(const std::string& tree) {
  return XXH3_64bits(tree.data(), tree.size());
}

Bytes ChecksumOf(std::uint64_t seed, View key, View value) {
  const XXH64_canonical_t bytes = Digest(seed, key, value);
  return {std::begin(bytes.digest), std::end(bytes.digest)};
}

Bytes Sealed(std::uint64_t seed, View key, View value) {
  const XXH64_canonical_t bytes = Digest(seed, key, value);
  Bytes sealed;
  sealed.reserve(value.size() + sizeof bytes);
  sealed.assign(value.begin(), value.end());
  sealed.insert(sealed.end(), std::begin(bytes.digest), std::end(bytes.digest));
  return sealed;
}

std::optional<View> Unsealed(std::uint64_t seed, View key, View sealed) {
  XXH64_canonical_t bytes;
  if (sealed.size() < sizeof bytes) return {};
  const View value = sealed.first(sealed.size() - sizeof bytes);
  bytes = Digest(seed, key, value);
  if (std::memcmp(bytes.digest, sealed.data() + value.size(), sizeof bytes) != 0) return {};
  return value;
}

}  // namespace otdb
