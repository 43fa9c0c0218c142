#ifndef OT95_OIN_CODESET_H
#define OT95_OIN_CODESET_H

/// @file
/// Code sets: what their characters are in Unicode, their case data, and their order table.
///
/// | Number | Name | Characters |
/// |---|---|---|
/// | 0 | OT_CS_NONE | raw bytes |
/// | 1 | OT_CS_BASE8 | one byte: Windows-1252 |
/// | 2 to 0xe0 | sets of other scripts, by CodeSetOfName | one byte |
/// | 0xe1 to 0xfc | reserved; OT_CS_UNICODE stands in | two bytes |
/// | 0xfd | OT_CS_UNICODE | two bytes |
/// | 0xfe | OT_CS_ORDER | two bytes: order words, not characters |
/// | 0xff | OT_CS_DEFAULT | as an argument: the default |
///
/// @code
///   const OtCodeSet* base = OtLanguageContext::QueryCodeSet(OT_CS_BASE8);
///   unsigned short euro = base->MapChar(0x20ac, OT_CS_UNICODE);          // euro == 0x80
///   unsigned short alpha = base->MapChar(0x3b1, OT_CS_UNICODE);
///   bool lost = alpha == base->substitute;                               // lost == true
///   const OtUnicodeProps* props = base->GetUnicodeProps(0xe9, OT_LANG_NEUTRAL);
///   unsigned short capital = props->upper;                               // capital == 0xc9
/// @endcode

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

namespace ot95 {
/// The tables of all one-byte sets, one behind another: see UnicodeValues and ByteOf.
OT95_EXPORT_DATA extern const std::uint16_t kCodeSetUnicode[];
OT95_EXPORT_DATA extern const std::uint8_t kCodeSetPages[];
OT95_EXPORT_DATA extern const std::uint8_t kCodeSetBytes[];
}  // namespace ot95

/// Case data of a character. `upper` and `lower` are in Unicode, 0 for none. Records are constant.
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
  char name[24];                   ///< "ISO-8859-2".
  unsigned char number;            ///< The set's own number.
  /// What stands for a character that the set doesn't have: the SUB control, in Unicode U+FFFD.
  /// Never '?', which would become a wildcard, and never 0, which would end the text.
  unsigned short substitute;

  /// Case data of a character; null if there is none, or if the set can't hold the other case.
  /// A one-byte value counts modulo 256, for it may arrive sign-extended.
  const OtUnicodeProps* GetUnicodeProps(unsigned short value, unsigned char language) const;

  /// The Unicode values of the 256 bytes, 0xfffd for a byte without meaning; null for a wide set.
  const std::uint16_t* UnicodeValues() const {
    return place_ == kNoPlace ? nullptr : ot95::kCodeSetUnicode + place_ * std::size_t{256};
  }
  /// The byte of a Unicode value in a one-byte set, `substitute` for none.
  unsigned char ByteOf(unsigned short unicode) const {
    const std::size_t page = Pages()[unicode >> 8];
    return Bytes()[page << 8 | (unicode & 0xffU)];
  }
  /// Maps `count` bytes of a one-byte set to Unicode in the machine's order, zeros too.
  void BytesToUnicode(const unsigned char* bytes, std::size_t count, std::uint16_t* target) const;
  /// Maps `count` Unicode values to bytes of a one-byte set, `substitute` where there is none.
  void UnicodeToBytes(const std::uint16_t* source, std::size_t count, unsigned char* bytes) const;

  /// Whether the set spells some letters with a mark of its own behind them, as Windows-1258 does:
  /// then the Unicode form of a text may be shorter, and the text longer than its Unicode form.
  bool SpellsWithMarks() const;
  /// The Unicode value of the letter that two bytes spell, 0 for none.
  unsigned short Spelled(unsigned char letter, unsigned char mark) const;
  /// The letter and the mark that spell a Unicode value which has no byte of its own. @return
  /// whether there are such.
  bool Spelling(unsigned short unicode, unsigned char& letter, unsigned char& mark) const;

 protected:
  static constexpr std::uint16_t kNoPlace = 0xffff;

  constexpr OtCodeSet(unsigned char setNumber, const char* setName, unsigned short setSubstitute,
                      const OtOrderTable* orders, std::uint16_t place = kNoPlace,
                      std::uint32_t bytes = 0)
      : orderTable(orders),
        name{},
        number(setNumber),
        substitute(setSubstitute),
        place_(place),
        bytes_(bytes) {
    for (std::size_t i = 0; i + 1 < sizeof name && setName[i] != 0; ++i) name[i] = setName[i];
  }
  ~OtCodeSet() = default;

  const std::uint8_t* Pages() const { return ot95::kCodeSetPages + place_ * std::size_t{256}; }
  const std::uint8_t* Bytes() const { return ot95::kCodeSetBytes + bytes_; }

  std::uint16_t place_;  ///< Among the one-byte sets.
  std::uint32_t bytes_;  ///< Where its way from Unicode begins.
};

#endif
