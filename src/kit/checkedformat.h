#ifndef OT95_SRC_KIT_CHECKEDFORMAT_H
#define OT95_SRC_KIT_CHECKEDFORMAT_H

/// @file
/// Formats in the manner of printf that come from callers, taken apart instead of being trusted: at
/// most one conversion, of a kind that the value has. All else in a format is text.

#include <cstddef>
#include <string_view>

namespace ot95 {

/// One conversion: "%", flags, width, precision, a length modifier and the letter.
struct Conversion {
  char letter = 0;         ///< 0: the format has no conversion of the kind asked for.
  bool left = false;       ///< '-'
  bool plus = false;       ///< '+'
  bool space = false;      ///< ' '
  bool alternate = false;  ///< '#'
  bool zero = false;       ///< '0'
  int bits = 32;           ///< Width of the argument: 8 for "hh", 16 for "h", otherwise 32.
  int width = 0;           ///< 0: none. Saturates at formatNumberLimit.
  int precision = -1;      ///< -1: none. Saturates at formatNumberLimit.
};

/// Widths and precisions saturate here, far beyond every buffer.
constexpr int formatNumberLimit = 1'000'000;

/// A format in three parts; the outer two are text, with "%%" for a percent sign.
struct CheckedFormat {
  std::string_view before;
  Conversion conversion;
  std::string_view behind;
};

/// Finds the first conversion of `format` whose letter is one of `letters`. "*" and everything else
/// that printf or scanf would take more from the caller for is no conversion, but text.
CheckedFormat ParseFormat(std::string_view format, std::string_view letters);

/// Text that grows in a buffer of fixed size; what doesn't fit is dropped.
class BoundedText {
 public:
  /// @param size of `buffer`, with a place for the terminator; at least 1.
  BoundedText(char* buffer, std::size_t size) : buffer_(buffer), room_(size - 1) {}

  void Append(char c) {
    if (length_ < room_) buffer_[length_++] = c;
  }
  void Append(std::string_view text);
  void Fill(std::size_t count, char c);
  /// Appends a part of a format, with "%%" as one percent sign.
  void AppendFormatText(std::string_view text);
  /// Appends `sign`, `zeros` times '0' and `digits` in the field that `conversion` asks for.
  /// @param zeroPad whether the flag '0' may widen the number with zeros instead of spaces.
  void AppendField(const Conversion& conversion, std::string_view sign, std::size_t zeros,
                   std::string_view digits, bool zeroPad);

  std::string_view View() const { return {buffer_, length_}; }
  /// The text with its terminator.
  const char* Terminate() {
    buffer_[length_] = 0;
    return buffer_;
  }

 private:
  char* buffer_;
  std::size_t room_;
  std::size_t length_ = 0;
};

}  // namespace ot95

#endif
