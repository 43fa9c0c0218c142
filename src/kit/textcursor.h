#ifndef OT95_SRC_KIT_TEXTCURSOR_H
#define OT95_SRC_KIT_TEXTCURSOR_H

/// @file
/// Reading numbers from 8-bit text that need not be terminated, as the C locale writes them.
/// Integers saturate at 32 bits, as with a 32-bit `long`.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ot95 {

constexpr char UpperAscii(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

constexpr bool IsSpaceAscii(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

constexpr std::array<unsigned char, 256> MakeDigitValues() {
  std::array<unsigned char, 256> values{};
  for (unsigned char& value : values) value = 99;
  for (unsigned char i = 0; i < 10; ++i) values['0' + i] = i;
  for (unsigned char i = 0; i < 26; ++i) values['a' + i] = values['A' + i] = 10 + i;
  return values;
}
inline constexpr std::array<unsigned char, 256> digitValues = MakeDigitValues();

/// Value of a digit or a letter, from 0 to 35; 99 for everything else.
constexpr unsigned DigitOf(char c) {
  return digitValues[static_cast<unsigned char>(c)];
}

/// A place in a text.
struct TextCursor {
  const char* at;
  const char* end;

  TextCursor(const char* text, std::size_t length) : at(text), end(text + length) {}
  bool AtEnd() const { return at == end; }
  void SkipSpace() {
    while (!AtEnd() && IsSpaceAscii(*at)) ++at;
  }
  /// Passes over a part of a format as sscanf does: white space stands for any amount of it.
  bool MatchFormatText(std::string_view text);
};

/// Read an integer as strtol and strtoul do, white space first.
/// @param base 0 takes it from the prefix "0x" or "0".
/// @return false if there is no number.
bool ReadSigned(TextCursor& text, unsigned base, std::int32_t& value);
bool ReadUnsigned(TextCursor& text, unsigned base, std::uint32_t& value);

/// How much of what only begins like a number is one: "0x" without digits, "infinit".
enum class RealPrefix {
  kReads,  ///< What there is of it, 0 and infinity, as for strtod.
  kFails   ///< Nothing, as for sscanf.
};

/// Read a floating-point number as strtod and strtof do; inf, nan and hexadecimals too.
bool ReadReal(TextCursor& text, double& value, RealPrefix prefix);
bool ReadReal(TextCursor& text, float& value, RealPrefix prefix);

}  // namespace ot95

#endif
