/// Raw text: comparison and matching of bytes that have no code set, and so no collation.
///
/// The matcher has two habits of its own, which data relies on. A '?' directly behind a star is
/// looked for as the byte it is. And a text of which only `maxChars` bytes count matches as soon
/// as these are used up.

#include <algorithm>
#include <cstring>

#include "text/collation/compare.h"

namespace ot95 {
namespace {

/// Bytes up to a terminator, or to the end that a span knows.
class Bytes {
 public:
  explicit Bytes(const TextSpan& span)
      : bytes_(reinterpret_cast<const unsigned char*>(span.text)),
        length_(span.end - reinterpret_cast<std::uintptr_t>(span.text)),
        bounded_(span.end != kUnbounded) {}
  unsigned operator[](std::size_t place) const { return place < length_ ? bytes_[place] : 0; }
  std::size_t Length() const {
    if (!bounded_) return std::strlen(reinterpret_cast<const char*>(bytes_));
    const void* const zero = std::memchr(bytes_, 0, length_);
    return zero == nullptr
               ? length_
               : static_cast<std::size_t>(static_cast<const unsigned char*>(zero) - bytes_);
  }
  /// The last byte, 0 of an empty text.
  unsigned Last() const {
    const std::size_t length = Length();
    return length == 0 ? 0 : bytes_[length - 1];
  }

 private:
  const unsigned char* bytes_;
  std::size_t length_;
  bool bounded_;
};

class ByteMatch {
 public:
  ByteMatch(const TextSpan& text, const TextSpan& pattern, long maxChars)
      : text_(text),
        pattern_(pattern),
        limit_(maxChars < 0 ? SIZE_MAX : static_cast<std::size_t>(maxChars)) {}

  long Run() {
    for (;;) {
      const unsigned sought = pattern_[inPattern_];
      if (sought == 0 && !star_) {
        return inText_ >= limit_ ? 0 : static_cast<long>(Byte());
      }
      if (inText_ >= limit_) return 0;
      if (sought == '*') {
        while (pattern_[inPattern_] == '*') ++inPattern_;
        if (pattern_[inPattern_] == 0) return 0;
        if (!star_ && CantEnd()) return -1;
        if (!Scan()) return -1;
      } else if (sought == '?' ? Byte() != 0 : Byte() == sought) {
        Step();
      } else if (sought == '?') {
        return -1;
      } else if (matched_ == 0) {
        return static_cast<long>(Byte()) - static_cast<long>(sought);
      } else {
        inText_ = restart_;
        inPattern_ -= matched_;
        if (!Scan()) return -1;
      }
    }
  }

 private:
  unsigned Byte() const { return text_[inText_]; }
  /// Whether the last bytes of the text and of a pattern with a star keep them from matching.
  bool CantEnd() const {
    const unsigned last = pattern_.Last();
    return limit_ == SIZE_MAX && last != '*' && last != '?' && last != text_.Last();
  }

  /// Takes the pattern's byte behind the star to the first place from here on that has it. Another
  /// try can begin behind that place at once: all before it fail alike.
  bool Scan() {
    star_ = true;
    matched_ = 0;
    while (inText_ < limit_ && Byte() != 0 && Byte() != pattern_[inPattern_]) ++inText_;
    if (inText_ >= limit_ || Byte() == 0) return false;
    restart_ = inText_ + 1;
    Step();
    return true;
  }

  /// Both sides go on behind equal bytes.
  void Step() {
    if (pattern_[inPattern_] != 0) ++inPattern_;
    if (Byte() == 0) {
      star_ = false;
      return;
    }
    ++inText_;
    if (star_) ++matched_;
  }

  Bytes text_;
  Bytes pattern_;
  std::size_t limit_;
  std::size_t inText_ = 0;
  std::size_t inPattern_ = 0;
  std::size_t restart_ = 0;
  std::size_t matched_ = 0;  // pattern bytes since the last star
  bool star_ = false;
};

/// From a star on. Letters that end the pattern stand at the end of the text, or don't. Kept apart,
/// so that the loop before needs no frame.
[[gnu::noinline]] long MatchTail(const char* text, const char* pattern) {
  const char* end = pattern + 1;
  while (*end != 0 && *end != '*' && *end != '?') ++end;
  if (*end != 0) {
    return ByteMatch(TextSpan::Terminated(text, 0, 0), TextSpan::Terminated(pattern, 0, 0), -1)
        .Run();
  }
  const auto sought = static_cast<std::size_t>(end - pattern - 1);
  const std::size_t length = sought == 0 ? 0 : std::strlen(text);
  if (length < sought) return -1;
  text += length - sought;
  for (const char* at = pattern + 1; at != end; ++at, ++text) {
    if (*at != *text) return -1;
  }
  return 0;
}

}  // namespace

long MatchRaw(const char* text, const char* pattern) {
  for (;; ++text, ++pattern) {
    const long byte = static_cast<unsigned char>(*text);
    const long sought = static_cast<unsigned char>(*pattern);
    if (sought == '*') return MatchTail(text, pattern);
    if (sought == '?') {
      if (byte == 0) return -1;
    } else if (byte != sought || byte == 0) {
      return byte - sought;
    }
  }
}

long MatchBytes(const TextSpan& text, const TextSpan& pattern, long maxChars) {
  if (maxChars < 0 && text.end == kUnbounded && pattern.end == kUnbounded) {
    return MatchRaw(text.text, pattern.text);
  }
  return ByteMatch(text, pattern, maxChars).Run();
}

long CompareBytes(const TextSpan& text1, const TextSpan& text2, long maxBytes) {
  const Bytes bytes1(text1);
  const Bytes bytes2(text2);
  const std::size_t limit = maxBytes < 0 ? SIZE_MAX : static_cast<std::size_t>(maxBytes);
  for (std::size_t i = 0; i < limit; ++i) {
    const unsigned byte1 = bytes1[i];
    const unsigned byte2 = bytes2[i];
    if (byte1 != byte2) return static_cast<long>(byte1) - static_cast<long>(byte2);
    if (byte1 == 0) break;
  }
  return 0;
}

long OtByteCompare(const char* a, const char* b, unsigned int n) {
  return CompareBytes(TextSpan::Terminated(a, 0, 0), TextSpan::Terminated(b, 0, 0),
                      n == 0 ? -1 : static_cast<long>(n & 0x7fffffffU));
}

}  // namespace ot95
