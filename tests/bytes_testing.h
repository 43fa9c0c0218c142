#ifndef OT95_TESTS_BYTES_TESTING_H
#define OT95_TESTS_BYTES_TESTING_H

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

/// Bytes as lower-case hexadecimal digits.
inline std::string Hex(const void* bytes, std::size_t length) {
  std::string hex;
  for (std::size_t i = 0; i < length; ++i) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02x", static_cast<const unsigned char*>(bytes)[i]);
    hex += digits;
  }
  return hex;
}

/// The bytes of hexadecimal digits; blanks between bytes are skipped.
inline std::vector<unsigned char> Unhex(const std::string& hex) {
  std::vector<unsigned char> bytes;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
    while (hex[i] == ' ') ++i;
    bytes.push_back(static_cast<unsigned char>(std::stoul(hex.substr(i, 2), nullptr, 16)));
  }
  return bytes;
}

/// A block of exactly so many bytes, so that the address sanitizer sees a read beyond them.
class ExactBlock {
 public:
  ExactBlock(const void* bytes, std::size_t length)
      : block_(static_cast<unsigned char*>(std::malloc(length == 0 ? 1 : length))), size_(length) {
    if (length != 0) std::memcpy(block_.get(), bytes, length);
  }
  /// So many zero bytes.
  explicit ExactBlock(std::size_t length) : ExactBlock(std::vector<unsigned char>(length)) {}
  explicit ExactBlock(const std::vector<unsigned char>& bytes)
      : ExactBlock(bytes.data(), bytes.size()) {}

  /// Behind a length of 0 stands one byte more.
  unsigned char* data() const { return block_.get(); }
  unsigned long size() const { return static_cast<unsigned long>(size_); }

 private:
  struct Free {
    void operator()(unsigned char* block) const { std::free(block); }
  };
  std::unique_ptr<unsigned char, Free> block_;
  std::size_t size_;
};

#endif
