#ifndef OTDB_SCANLIMITS_H
#define OTDB_SCANLIMITS_H

#include <cstdlib>
#include <cstring>
#include <optional>

#include "bytes.h"

namespace otdb {

/// A pair of keys as EvalAndBound takes and makes them: allocated by malloc, freed here.
class Limits : public OtIdxBounds {
 public:
  Limits() = default;
  ~Limits() {
    std::free(lowerKey);
    std::free(upperKey);
  }
  Limits(const Limits&) = delete;
  Limits& operator=(const Limits&) = delete;

  /// Fills a fresh pair with copies.
  void Set(View lower, View upper) {
    lowerKey = Copy(lower);
    upperKey = Copy(upper);
    lowerKeyLength = static_cast<unsigned char>(lower.size());
    upperKeyLength = static_cast<unsigned char>(upper.size());
  }
  /// Nothing where the range is open.
  std::optional<Bytes> Lower() const { return BytesOf(lowerKey, lowerKeyLength); }
  std::optional<Bytes> Upper() const { return BytesOf(upperKey, upperKeyLength); }

 private:
  static void* Copy(View key) {
    void* copy = std::malloc(key.size());
    if (copy) std::memcpy(copy, key.data(), key.size());
    return copy;
  }
  static std::optional<Bytes> BytesOf(const void* key, std::size_t length) {
    if (key == nullptr) return {};
    const auto* bytes = static_cast<const unsigned char*>(key);
    return Bytes(bytes, bytes + length);
  }
};

}  // namespace otdb

#endif
