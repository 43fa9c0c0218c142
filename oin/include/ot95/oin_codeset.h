#ifndef OT95_OIN_CODESET_H
#define OT95_OIN_CODESET_H

/// @file
/// Code sets: what their characters are in Unicode, their case data, and their order table.

#include <cstddef>

#include "ot95/oin_order.h"

/// Numbers of code sets with a name of their own. Up to OT_CS_LAST_NARROW a character is one
/// byte, above it two bytes in the machine's order.
inline constexpr unsigned char OT_CS_NONE =
    0;  ///< Raw 8-bit text; the native set stands in where one is needed.
inline constexpr unsigned char OT_CS_BASE8 = 1;  ///< Windows-1252, the base 8-bit set.
inline constexpr unsigned char OT_CS_LAST_NARROW =
    0xe0;  ///< The greatest number of a set of one-byte characters.
inline constexpr unsigned char OT_CS_UNICODE =
    0xfd;  ///< 16-bit Unicode; every other set can be mapped to it.
inline constexpr unsigned char OT_CS_ORDER =
    0xfe;  ///< Not characters but order words: a string inside an index key.
inline constexpr unsigned char OT_CS_DEFAULT =
    0xff;  ///< As an argument: the default. Never stored.

/// Case data of a character. `upper` and `lower` are in Unicode, 0 for none.
struct OtUnicodeProps {
  std::uint16_t upper;    ///< The capital, or its first character.
  OtWCharList upperTail;  ///< The rest of the capital, at most one unit, in the asked set's units.
  std::uint16_t lower;    ///< The small letter.
};

/// A code set. Records are constant; they live as long as the library.
class OT95_EXPORT OtCodeSet {
 public:
  /// Script byte of a character that has none of its own: the language's, 1 for a language that
  /// nobody knows; never 0. OT_CS_ORDER returns its argument.
  virtual unsigned char DefaultScript(unsigned char language) const = 0;
  /// The value in this set of a value of another. 0 gives 0; a value without a counterpart gives
  /// `substitute`. Of a one-byte source the low byte counts.
  virtual unsigned short MapChar(unsigned short value, unsigned char fromCodeSet) const = 0;

  const OtOrderTable* orderTable;  ///< Null: characters go through Unicode to their orders.
  const char* name;                ///< "ISO-8859-2".
  unsigned char number;            ///< The set's own number.
  /// What stands for a character that the set doesn't have: the SUB control, in Unicode U+FFFD.
  /// Never '?', which would become a wildcard, and never 0, which would end the text.
  unsigned short substitute;

  /// Case data of a character; null if there is none, or if the set can't hold the other case.
  /// A one-byte value counts modulo 256, for it may arrive sign-extended.
  const OtUnicodeProps* GetUnicodeProps(unsigned short value, unsigned char language) const;

  /// The Unicode values of the 256 bytes, 0xfffd for a byte without meaning; null for a wide set.
  const std::uint16_t* UnicodeValues() const { return toUnicode_; }
  /// The byte of a Unicode value in a one-byte set, `substitute` for none.
  unsigned char ByteOf(unsigned short unicode) const {
    return fromUnicode_[static_cast<unsigned>(fromPages_[unicode >> 8]) << 8 | (unicode & 0xffU)];
  }
  /// Maps `count` bytes of a one-byte set to Unicode in the machine's order, zeros too.
  void BytesToUnicode(const unsigned char* bytes, std::size_t count, std::uint16_t* target) const;
  /// Maps `count` Unicode values to bytes of a one-byte set, `substitute` where there is none.
  void UnicodeToBytes(const std::uint16_t* source, std::size_t count, unsigned char* bytes) const;

 protected:
  constexpr OtCodeSet(unsigned char setNumber, const char* setName, unsigned short setSubstitute,
                      const OtOrderTable* orders)
      : orderTable(orders), name(setName), number(setNumber), substitute(setSubstitute) {}
  ~OtCodeSet() = default;

  const std::uint16_t* toUnicode_ = nullptr;
  const std::uint8_t* fromUnicode_ = nullptr;
  const std::uint8_t* fromPages_ = nullptr;
  const std::uint16_t* caseData_ = nullptr;  ///< Per byte the index of its case data.
};

#endif
