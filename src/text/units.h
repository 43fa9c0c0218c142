#ifndef OT95_SRC_TEXT_UNITS_H
#define OT95_SRC_TEXT_UNITS_H

/// @file
/// What all sources of text share: the width of a character, reading and writing units in either
/// byte order, lengths, and the bulk conversion between code sets.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>

#include "ot95/bytes.h"
#include "ot95/fault.h"
#include "ot95/text.h"

/// A function whose callers know nothing of its body.
#if __has_cpp_attribute(gnu::noipa)
#define OT95_KEPT_APART [[gnu::noipa]]
#else
#define OT95_KEPT_APART [[gnu::noinline]]
#endif

namespace ot95 {

/// The most bytes of a text, with its terminator.
inline constexpr std::size_t kMaxTextBytes = 0xfffc;

constexpr bool IsWide(unsigned char codeSet) {
  return codeSet > OT_CS_LAST_NARROW;
}
constexpr std::size_t CharWidth(unsigned char codeSet) {
  return IsWide(codeSet) ? 2 : 1;
}
/// Whether two-byte characters of this format are byte-reversed on this machine.
constexpr bool IsReversed(unsigned char format) {
  return ReversesBytes(format);
}
constexpr std::uint16_t SwapBytes(std::uint16_t unit) {
  return static_cast<std::uint16_t>(unit << 8 | unit >> 8);
}

inline std::uint16_t LoadWide(const void* place) {
  std::uint16_t unit;
  std::memcpy(&unit, place, sizeof unit);
  return unit;
}
inline void StoreWide(void* place, std::uint16_t unit) {
  std::memcpy(place, &unit, sizeof unit);
}

/// Whether a place in a text, not its first, lies between the halves of a character beyond the
/// first plane.
inline bool SplitsPair(const char* place, unsigned char codeSet) {
  return codeSet == OT_CS_UNICODE && (LoadWide(place) & 0xfc00) == 0xdc00 &&
         (LoadWide(place - 2) & 0xfc00) == 0xd800;
}

/// One unit; a one-byte unit is zero-extended.
inline std::uint16_t LoadUnit(const char* place, bool wide, bool reversed = false) {
  if (!wide) return static_cast<unsigned char>(*place);
  std::uint16_t unit = LoadWide(place);
  return reversed ? SwapBytes(unit) : unit;
}
inline void StoreUnit(char* place, std::uint16_t unit, bool wide, bool reversed = false) {
  if (wide) {
    StoreWide(place, reversed ? SwapBytes(unit) : unit);
  } else {
    *place = static_cast<char>(unit);
  }
}

/// A one-byte character as the case data are asked for it.
constexpr std::uint16_t SignExtended(std::uint16_t unit) {
  return static_cast<std::uint16_t>(static_cast<signed char>(unit));
}

/// The shared text of all strings without a buffer: zero in either width. Never written.
extern const char kEmptyText[8];
inline const char* EmptyText() {
  return kEmptyText;
}

/// Characters before the terminator.
std::size_t TextLength(const char* text, unsigned char codeSet);

/// Reports a text above kMaxTextBytes as an impossible state, unless the configuration wants no
/// report. Nothing is shortened.
void ReportTextSize();
inline void CheckTextSize(std::size_t bytes) {
  if (bytes > kMaxTextBytes) [[unlikely]]
    ReportTextSize();
}

/// Uninitialised memory for a text; null after a failure.
inline char* NewText(std::size_t bytes) {
  return Noted(new (std::nothrow) char[bytes]);
}

/// How many units ConvertUnits makes of `count`: as many, but where a set spells letters with marks
/// behind them (see OtCodeSet::SpellsWithMarks).
std::size_t ConvertedUnits(const char* source, unsigned char from, bool reversed, std::size_t count,
                           unsigned char to);
/// Maps `count` units between code sets, 0 standing for the native one. The result equals that of
/// mapping character by character, letters that are spelled with marks taken as one. @param room
/// units that may be written; a letter whose mark has no room is left out. @return units written.
std::size_t ConvertUnits(const char* source, unsigned char from, bool reversed, std::size_t count,
                         char* target, unsigned char to, std::size_t room = SIZE_MAX);

/// Copies two-byte units, turning each.
void CopyReversed(const char* source, std::size_t count, char* target);
/// Copies units of one width, turning those of a reversed source into the machine's order.
inline void CopyUnits(const char* source, bool reversed, std::size_t count, char* target,
                      bool wide) {
  if (wide && reversed) return CopyReversed(source, count, target);
  if (count != 0) std::memcpy(target, source, count << (wide ? 1 : 0));
}
/// Writes `count` times the first unit of `source`.
void FillUnits(const char* source, std::size_t count, char* target, bool wide);

/// Characters for a string, told to its splice engine.
struct TextSource {
  const char* text;
  unsigned char codeSet;
  std::size_t length;
  bool reversed = false;  ///< Two-byte characters, the other byte first.
};

/// The way of the library's own functions into a string.
struct TextAccess {
  /// The text becomes `buffer`, from NewText, of `bytes` bytes; the old one is freed.
  static void Adopt(OtString& text, char* buffer, std::size_t bytes) { text.Adopt(buffer, bytes); }
  /// For a string without a buffer: takes `length` characters in the given code set.
  static void SetText(OtString& text, const void* source, unsigned char codeSet,
                      unsigned short length, unsigned char format) {
    text.SetText(source, codeSet, length, format);
  }
  /// The characters of `source` behind those of `text`, exactly as large as both. A source in
  /// another code set must be terminated.
  static OtString& Append(OtString& text, const TextSource& source) { return text.Append(source); }
  static void SetLabels(OtString& text, unsigned char codeSet, unsigned char language) {
    text.codeSet_ = codeSet;
    text.language_ = language;
  }
  /// The text, of MemLen bytes; null where these are none.
  static const char* Buffer(const OtString& text) { return text.buffer_; }
  /// Characters, also where they are more than Len can say.
  static std::size_t Length(const OtString& text) { return text.Length(); }
  static OtString Copy(const OtString& text, std::size_t pos, std::size_t n) {
    return text.CopyAt(pos, n);
  }
};

}  // namespace ot95

#endif
