#ifndef OT95_FUZZ_FUZZING_H
#define OT95_FUZZ_FUZZING_H

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>

#include "ot95/fault.h"
#include "ot95/typemgr.h"

namespace fuzzing {

using View = std::span<const std::uint8_t>;

/// Takes an input apart from the front; behind its end stand zeros.
class Input {
 public:
  explicit Input(View bytes) : bytes_(bytes) {}

  std::uint8_t Byte() { return bytes_.empty() ? std::uint8_t{0} : Take(1)[0]; }
  std::uint16_t Word() { return static_cast<std::uint16_t>(Byte() | Byte() << 8); }
  View Take(std::size_t length) {
    const View taken = bytes_.first(length < bytes_.size() ? length : bytes_.size());
    bytes_ = bytes_.subspan(taken.size());
    return taken;
  }
  View Rest() { return Take(bytes_.size()); }

 private:
  View bytes_;
};

/// Bytes on the heap, not one more than wanted, so that the sanitizer sees an access beyond them.
class Block {
 public:
  explicit Block(std::size_t length) : data_(std::calloc(1, length)), length_(length) {}
  explicit Block(View bytes) : Block(bytes.size()) {
    if (!bytes.empty()) std::memcpy(data_, bytes.data(), bytes.size());
  }
  ~Block() { std::free(data_); }
  Block(const Block&) = delete;
  Block& operator=(const Block&) = delete;

  void* Data() const { return data_; }
  std::size_t Length() const { return length_; }
  View Bytes() const { return {static_cast<const std::uint8_t*>(data_), length_}; }

 private:
  void* data_;
  std::size_t length_;
};

inline void KeepQuiet(const char*, const char*, unsigned long) {}

/// Starts the library, once.
inline void Start() {
  static const bool started = [] {
    ___OtTypemgrContext(1);
    OTDB_SetAssertHandler(KeepQuiet);  // what input brings about isn't a finding
    return true;
  }();
  static_cast<void>(started);
}

/// What doesn't hold is a finding.
inline void Require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace fuzzing

#endif
