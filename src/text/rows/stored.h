#ifndef OT95_SRC_TEXT_ROWS_STORED_H
#define OT95_SRC_TEXT_ROWS_STORED_H

/// @file
/// Stored strings. The current form is a record for each string: length L of what follows it (16
/// bits), code set, language, text, and the bytes 00 ff; L is four more than the text has. The old
/// form is one record for a whole array: length T of what follows it, then 8-bit texts with a zero
/// byte each. The last byte of a record tells them apart. A key is of the current form; one that
/// was cut by its size has no 00 ff, and L says so.

#include <algorithm>
#include <cstdint>

#include "ot95/typemgr.h"
#include "text/collation/orders.h"

namespace ot95 {

// High bits of a text's format byte: what a stored string is to become.
inline constexpr unsigned char kStoreRaw = 0x20;     ///< Code set 0, unless it is a key.
inline constexpr unsigned char kStoreNative = 0x40;  ///< The native code set instead of 0.
inline constexpr unsigned char kStoreKey = 0x80;     ///< Order words.

inline constexpr std::size_t kHeaderSize = 4;      ///< Length, code set and language.
inline constexpr std::size_t kTerminatorSize = 2;  ///< 00 ff.
inline constexpr std::size_t kEmptyRecordSize = kHeaderSize + kTerminatorSize;
/// The most bytes of text whose record has a length of 16 bits.
inline constexpr std::size_t kMaxStoredText = 0xffff - kHeaderSize;

/// The 16-bit length that begins a record.
inline std::uint16_t LoadLength(const void* record, unsigned char format) {
  return LoadUnit(static_cast<const char*>(record), true, IsReversed(format));
}
inline void StoreLength(void* record, std::size_t length, unsigned char format) {
  StoreUnit(static_cast<char*>(record), static_cast<std::uint16_t>(length), true,
            IsReversed(format));
}

/// Whether a complete record is of the old form.
inline bool IsOldForm(const void* record, std::size_t length) {
  return static_cast<const char*>(record)[length + 1] == 0;
}

/// The code set that a format makes of a string's.
unsigned char TargetCodeSet(unsigned char codeSet, unsigned char format);

/// Bytes of text that a string is stored with: its buffer's but for the terminator.
inline std::size_t StoredTextBytes(const OtString& text) {
  const std::size_t width = CharWidth(text.GetCodeSetCode());
  if (text.MemLen() < width) return 0;
  const std::size_t bytes = std::min(text.MemLen() - width, kMaxStoredText);
  return bytes - bytes % width;
}

/// One string as comparison and hash find it.
struct StoredText {
  TextSpan text;
  bool present;         ///< There is a value at all.
  bool truncated;       ///< The given length cuts its record before the terminator.
  bool unknowable;      ///< The text is cut, and too long to have been cut as a key.
  unsigned long chars;  ///< Characters of its text, the given length counted in.
};

/// Walks the strings of an array, in memory or stored, within the length given for it.
class StringCursor {
 public:
  /// @param length 0: as much as the records say.
  /// @param legacy take a record that `length` cuts for one of the old form.
  StringCursor(const void* value, unsigned long length, unsigned char format, bool legacy)
      : place_(static_cast<const char*>(value)),
        left_(length),
        limited_(length != 0),
        format_(format),
        legacy_(legacy) {}

  /// The current string. @return false for less than a header.
  bool Unpack(StoredText& out);
  /// To the next string. @return false when nothing can be left.
  bool Advance();

 private:
  bool IsMemory() const { return (format_ & 15) == OT_FORMAT_MEMORY; }
  bool Covers(std::size_t length) const { return !limited_ || left_ >= length + 2; }
  bool EntersOldForm(std::size_t length) const;
  bool UnpackOldForm(StoredText& out);
  bool UnpackRecord(std::size_t length, StoredText& out);

  const char* place_;
  std::uint64_t left_;
  bool limited_;
  unsigned char format_;
  bool legacy_;
  bool oldForm_ = false;
  bool oldFormCut_ = false;
  std::size_t oldLeft_ = 0;    // bytes that an old form still has, as its record says
  std::size_t oldAtHand_ = 0;  // ... and as the given length leaves of them
};

}  // namespace ot95

#endif
