#ifndef OT95_OIN_ORDER_H
#define OT95_OIN_ORDER_H

/// @file
/// Collation data: from a character to its order word and script byte.
///
/// What an order word says is told in text.h; the field calls it a collation element. A record
/// knows all about one character:
///
/// | It has | Also called | Example |
/// |---|---|---|
/// | an order word and a script byte | collation element, weights | a: letter 3, small |
/// | further orders | expansion | the sharp s: s, s |
/// | characters that sort with it as one | contraction | Czech c, h |
/// | languages that sort it otherwise | tailoring | Swedish a with ring, behind z |
///
/// All of it is constant data without start-up code. The way from a character to its record is
/// one load in the base 8-bit set and two in Unicode; a record whose work() is 0 is the whole
/// answer, otherwise its lists say more:
/// @code
///   const OtOrderTable* table = OtLanguageContext::QueryCodeSet(OT_CS_UNICODE)->orderTable;
///   const OtLanguage* czech =
///       OtLanguageContext::QueryLanguage(OtLanguageContext::LanguageOfTag("cs"));
///   const OtOrderRecord* record = table->Find('c');
///   const unsigned short alone = record->order();
///   if (record->work() != 0 && !czech->Leaves('c', 'h')) {
///     if (const OtOrderRecord* own = record->Tailored(czech)) record = own;
///     if (const OtOrderRecord* pair = record->Contracted('h')) record = pair;
///   }
///   const unsigned short together = record->order();           // together > alone
///   const int more = table->Find(0xdf)->expansion()->count;    // more == 1
/// @endcode
///
/// A *comparable key* is 32 bits of one order, so laid out that masks keep a level of comparison:
///
///     bits   31-24    23-8                       7   6 5    4 3 2 1 0
///            script   class, letter, extension   0   case   accent       of a letter
///            script   order word                 0                       of anything else
///
/// Keys under 0xffffff80 differ at the primary level (letter), under 0xffffff9f also in the accent
/// (secondary), under 0xffffffe0 also in the case (tertiary).

#include <algorithm>

#include "ot95/base.h"

struct OtOrderRecord;
class OtOrderTable;

/// The first of the combining marks. They, and the consonants behind prefixed vowels, are all from
/// here on up; most heads of contractions have no other followers.
inline constexpr unsigned short OT_FIRST_MARK = 0x300;
/// The orders of combining marks, among those of symbols. The first eight are of no character:
/// letters whose words have no accent have them in its place.
inline constexpr unsigned short OT_FIRST_MARK_ORDER = 0x148;
inline constexpr unsigned short OT_LAST_MARK_ORDER = 0x3f7;
/// The most characters that contract into one.
inline constexpr int OT_LONGEST_CONTRACTION = 5;
/// The most order words of a Unicode character; contracted ones have no more than all of them
/// together. Most characters have two at most.
constexpr int OtMostWords(unsigned unicode) {
  constexpr unsigned kLong[][2] = {
      {0x1023, 0x102a}, {0x104c, 0x104f}, {0x17a3, 0x17b3}, {0xfb03, 0xfb04}};
  for (const auto& range : kLong) {
    if (unicode >= range[0] && unicode <= range[1]) return 5;
  }
  return 2;
}

/// A language: its number, the alphabet of its neutral characters, its names.
struct OtLanguage {
  std::uint16_t tailorsOrder;  ///< Non-zero: the language replaces some records by its own.
  unsigned char number;        ///< 1 to 0x7f.
  unsigned char script;        ///< Script byte of characters that have none of their own.
  char tag[16];                ///< "sv", "de-phonebook"; ISO 639-1 in the plain case.
  char name[28];               ///< In English: "Swedish".
  /// Bits of the ASCII characters that it sorts its own way, alone or before another letter.
  std::uint64_t ownAscii[2];
  /// See OtLanguageContext::OrderVersion.
  std::uint64_t orderVersion;
  /// Which of the tables of ideographs it follows; negative: the order of their codes.
  std::int32_t ideographs;

  /// Whether the record of `character` is the whole answer when `next` follows, without a look at
  /// its lists. Only ever true for ASCII; most letters of most texts end here. For null languages
  /// and those that tailor nothing ask ot95::NeutralLanguage().
  bool Leaves(unsigned short character, unsigned short next) const {
    return character < 0x80 && next < OT_FIRST_MARK &&
           (ownAscii[character >> 6] >> (character & 63U) & 1) == 0;
  }
};

/// A constant list of 16-bit units: further order words, further characters. Lists belong to the
/// library and live as long as it; nobody frees one.
class OtWCharList {
 public:
  std::int32_t count;  ///< How many units there are.

  /// The unit at `index`. @return 0, or OT_ERR_NO_MORE_ITEMS with `out` untouched.
  inline int GetAt(int index, unsigned short* out) const;
  /// The units themselves, `count` of them.
  inline const std::uint16_t* begin() const;
  const std::uint16_t* end() const { return begin() + count; }

  constexpr OtWCharList(std::int32_t units, std::int32_t firstUnit)
      : count(units), first_(firstUnit) {}

 private:
  std::int32_t first_;
};

namespace ot95 {

/// Where the lists of a record are; 0 in each place means none.
struct OrderLinks {
  std::uint16_t expansion, contractions, tailorings;
};

/// Followers that contract with a head: sorted characters, beside each the record of the pair.
struct ContractionSet {
  OtWCharList followers;
  std::uint16_t lowest, firstRecord;
};

/// Which languages have a record of their own; those records follow each other from firstRecord.
struct TailoringSet {
  std::uint64_t languages[2];
  std::uint32_t firstRecord;

  bool Has(unsigned char language) const {
    return (languages[language >> 6] >> (language & 63U) & 1) != 0;
  }
  /// The record of a language that has one.
  inline const OtOrderRecord& RecordOf(unsigned char language) const;
};

/// A character that ends in combining marks when it is taken apart, as its canonical decomposition
/// says: what it was without the last of them, and that mark. A mark of 0: another encoding of
/// `front`.
struct MarkedCharacter {
  std::uint16_t character, front, mark;
};

// The collation tables: arrays in read-only memory without addresses in them; indices lead from one
// to another.
OT95_EXPORT_DATA extern const OtOrderRecord kOrderRecords[];
OT95_EXPORT_DATA extern const std::uint16_t kOrderPages[];  ///< Of 256 records, by high byte.
OT95_EXPORT_DATA extern const std::uint16_t kOrderUnits[];
OT95_EXPORT_DATA extern const OtWCharList kOrderLists[];
OT95_EXPORT_DATA extern const OrderLinks kOrderLinks[];
OT95_EXPORT_DATA extern const ContractionSet kContractions[];
OT95_EXPORT_DATA extern const TailoringSet kTailorings[];
OT95_EXPORT_DATA extern const std::uint16_t kRecordNumbers[];
OT95_EXPORT_DATA extern const OtLanguage kLanguageRows[];
OT95_EXPORT_DATA extern const std::uint8_t kClassPages[];
OT95_EXPORT_DATA extern const std::uint8_t kClasses[];          ///< See CombiningClass.
OT95_EXPORT_DATA extern const std::uint16_t kIdeographRanks[];  ///< See RankedKey.

/// A language that tailors nothing, to stand in for null.
inline const OtLanguage& NeutralLanguage() {
  return kLanguageRows[0];
}

/// The canonical combining class of a mark, 0 for all other characters. kDecomposes for a mark that
/// stands for one or two others.
inline unsigned CombiningClass(unsigned short unicode) {
  return kClasses[kClassPages[unicode >> 6] << 6 | (unicode & 63)];
}
inline constexpr unsigned kDecomposes = 255;

// Ideographs of the first plane have words in the order of their codes, unless a language hands
// the same words out in another order.
inline constexpr unsigned kUnifiedHan = 0xad80;  ///< Word of U+4E00.
inline constexpr unsigned kUnifiedHanCount = 0x5200;
inline constexpr unsigned kFurtherHan = 0x8000;  ///< Word of U+3400, beyond the alphabets.
inline constexpr unsigned kFurtherHanCount = 0x19c0;

/// The key of an ideograph as `language` ranks it; any other key as it is.
inline std::uint32_t RankedKey(std::uint32_t key, const OtLanguage& language) {
  constexpr std::uint32_t kHan = 0x800000;  // words of letters and all before them are below
  if ((key & kHan) == 0) return key;
  const bool further = key >> 24 == 0x14;
  const unsigned place = (key >> 8 & 0xffff) - (further ? kFurtherHan : kUnifiedHan);
  if (place >= (further ? kFurtherHanCount : kUnifiedHanCount) || language.ideographs < 0) {
    return key;
  }
  const std::uint16_t* words = kIdeographRanks + static_cast<unsigned>(language.ideographs) *
                                                     (kUnifiedHanCount + kFurtherHanCount);
  const unsigned word = words[place + (further ? kUnifiedHanCount : 0)];
  return (key & 0xff000000) | word << 8;
}

/// How a character comes apart; null if it doesn't end in a mark.
OT95_EXPORT const MarkedCharacter* FindMarked(unsigned short unicode);

}  // namespace ot95

/// A list of records, a view made on request.
class OtOrderRecordList {
 public:
  std::int32_t count;  ///< How many records there are.

  /// The record at `index`. @return 0, or OT_ERR_NO_MORE_ITEMS with `out` untouched.
  inline int GetAt(int index, const OtOrderRecord** out) const;

  constexpr OtOrderRecordList(std::int32_t records, std::int32_t first)
      : count(records), first_(first) {}

 private:
  std::int32_t first_;
};

/// The languages that tailor a character, in the order of their numbers; a view made on request.
class OT95_EXPORT OtLanguageList {
 public:
  std::int32_t count;  ///< How many languages there are.

  /// The language at `index`. @return 0, or OT_ERR_NO_MORE_ITEMS with `out` untouched.
  int GetAt(int index, const OtLanguage** out) const;

  OtLanguageList(std::int32_t languages, const ot95::TailoringSet* set)
      : count(languages), set_(set) {}

 private:
  const ot95::TailoringSet* set_;
};

/// What a character, a contraction or a tailored letter sorts as.
struct OtOrderRecord {
  /// Bits of `flags`.
  enum : unsigned char {
    kContractions = 1,        ///< Heads a contraction.
    kTailoring = 2,           ///< Some language has a record of its own.
    kExpansion = 4,           ///< More order words follow the first, or there are none.
    kWork = 7,                ///< None of these: the record is the whole answer.
    kLowFollowers = 8,        ///< Some follower is below OT_FIRST_MARK.
    kFollows = 0x10,          ///< The character may stand behind a head, in any language.
    kFollowsTailored = 0x20,  ///< The same, behind a head of a language that tailors.
    kCombines = 0x40,         ///< A combining mark, or a character that has one in it.
    kAbsent = 0x80            ///< There is no record: a place in the table only.
  };
  std::uint32_t key;    ///< The comparable key; bits 31 to 24 are 0 where script is.
  std::uint16_t link;   ///< Index of the lists.
  std::uint8_t flags;   ///< See above.
  std::uint8_t script;  ///< Script byte, 0 when it takes DefaultScript of the language.

  /// The order word; 0 only for the terminator.
  constexpr unsigned short order() const {
    return static_cast<unsigned short>((key >> 8 & 0xffffU) | (key & 0x7fU) << 7);
  }
  /// The comparable key where neutral characters take `defaultScript`; 0 for order 0.
  constexpr std::uint32_t Key(unsigned char defaultScript) const {
    return script != 0 || key == 0 ? key : key | static_cast<std::uint32_t>(defaultScript) << 24;
  }
  /// The script byte, or null when the record takes DefaultScript.
  const unsigned char* scriptRef() const { return script != 0 ? &script : nullptr; }
  constexpr bool absent() const { return (flags & kAbsent) != 0; }
  /// 0: neither contractions nor tailoring nor expansion.
  constexpr unsigned char work() const { return flags & kWork; }
  constexpr unsigned short hasContractions() const { return flags & kContractions; }
  constexpr unsigned short hasTailoring() const { return flags & kTailoring; }
  constexpr unsigned short hasExpansion() const { return flags & kExpansion; }
  /// Whether the character may be the second or later one of a contraction, so that a walk can't
  /// begin at it. @param tailoring whether the language tailors.
  constexpr bool Follows(bool tailoring) const {
    return (flags & (tailoring ? kFollows | kFollowsTailored : kFollows)) != 0;
  }

  /// Whether this is the record of a combining mark alone.
  constexpr bool IsMark() const {
    return (flags & (kCombines | kFollows)) == (kCombines | kFollows);
  }

  /// Whether a walk passes over the character: soft hyphens, joiners, variation selectors and their
  /// like only tell how others are drawn. The order serves OtOrderOfChar alone then.
  bool WeighsNothing() const { return hasExpansion() != 0 && expansion()->count == 0; }

  /// Order words behind the first; a stable list, empty when there are none.
  inline const OtWCharList* expansion() const;
  /// Characters that contract with this one, rising; a stable list, empty when there are none.
  inline const OtWCharList* contractionChars() const;
  /// Parallel to contractionChars: the record of the pair.
  inline OtOrderRecordList contractionRecords() const;
  /// The languages that tailor this character.
  OT95_EXPORT OtLanguageList languages() const;
  /// Parallel to languages: the record to use instead.
  OT95_EXPORT OtOrderRecordList tailorings() const;

  /// The record that `language` (may be null) puts in the place of this one; null: keep it.
  inline const OtOrderRecord* Tailored(const OtLanguage* language) const;
  /// Whether there is one.
  inline bool IsTailored(const OtLanguage& language) const;
  /// The record of this and the character `next` together; null: they don't contract.
  inline const OtOrderRecord* Contracted(unsigned short next) const;

 private:
  const ot95::TailoringSet& Tailorings() const {
    return ot95::kTailorings[ot95::kOrderLinks[link].tailorings];
  }
  const ot95::ContractionSet& Contractions() const {
    return ot95::kContractions[ot95::kOrderLinks[link].contractions];
  }
};

/// The records of one code set's characters.
class OT95_EXPORT OtOrderTable {
 public:
  /// The record of a character; null if it has none. Characters below 0x200 always have one.
  virtual const OtOrderRecord* Lookup(unsigned short character) const;

  /// The same, without the call.
  const OtOrderRecord* Find(unsigned short character) const {
    const OtOrderRecord& record = At(character);
    return record.absent() ? nullptr : &record;
  }
  /// The place of a character: a record that may be absent(). Of a one-byte set the low byte
  /// counts.
  const OtOrderRecord& At(unsigned short character) const {
    return isNarrow_ ? AtByte(static_cast<unsigned char>(character)) : AtWide(character);
  }
  /// At for a table that is known to be of one-byte characters: never absent.
  const OtOrderRecord& AtByte(unsigned char character) const {
    return ot95::kOrderRecords[first_ + character];
  }
  /// At for a table that is known to be of two-byte characters: two loads.
  const OtOrderRecord& AtWide(unsigned short character) const {
    return ot95::kOrderRecords[static_cast<unsigned>(ot95::kOrderPages[character >> 8]) << 8 |
                               (character & 0xffU)];
  }
  /// Whether characters are bytes.
  bool IsNarrow() const { return isNarrow_; }

  /// @param first number of the first record.
  constexpr OtOrderTable(std::uint32_t first, bool isNarrow) : first_(first), isNarrow_(isNarrow) {}

 protected:
  ~OtOrderTable() = default;

 private:
  std::uint32_t first_;
  bool isNarrow_;
};

namespace ot95 {

class OrdersOfSet final : public OtOrderTable {
 public:
  using OtOrderTable::OtOrderTable;
};
/// The table of OT_CS_UNICODE, for those who can't afford to ask for it.
OT95_EXPORT_DATA extern const OrdersOfSet kUnicodeOrders;

}  // namespace ot95

inline const std::uint16_t* OtWCharList::begin() const {
  return ot95::kOrderUnits + first_;
}

inline int OtWCharList::GetAt(int index, unsigned short* out) const {
  if (index < 0 || index >= count) return OT_ERR_NO_MORE_ITEMS;
  *out = begin()[index];
  return 0;
}

inline int OtOrderRecordList::GetAt(int index, const OtOrderRecord** out) const {
  if (index < 0 || index >= count) return OT_ERR_NO_MORE_ITEMS;
  *out = ot95::kOrderRecords + ot95::kRecordNumbers[first_ + index];
  return 0;
}

inline const OtWCharList* OtOrderRecord::expansion() const {
  return ot95::kOrderLists + ot95::kOrderLinks[link].expansion;
}

inline const OtWCharList* OtOrderRecord::contractionChars() const {
  return &Contractions().followers;
}

inline OtOrderRecordList OtOrderRecord::contractionRecords() const {
  const ot95::ContractionSet& set = Contractions();
  return {set.followers.count, static_cast<std::int32_t>(set.firstRecord)};
}

inline const OtOrderRecord& ot95::TailoringSet::RecordOf(unsigned char language) const {
  const std::uint64_t bit = std::uint64_t{1} << (language & 63U);
  const int own = __builtin_popcountll(languages[language >> 6] & (bit - 1));
  const int low = language >= 64 ? __builtin_popcountll(languages[0]) : 0;
  const std::uint32_t index = firstRecord + static_cast<std::uint32_t>(own + low);
  return kOrderRecords[kRecordNumbers[index]];
}

inline bool OtOrderRecord::IsTailored(const OtLanguage& language) const {
  return hasTailoring() != 0 && language.tailorsOrder != 0 &&
         Tailorings().Has(language.number & 0x7fU);
}

inline const OtOrderRecord* OtOrderRecord::Tailored(const OtLanguage* language) const {
  if (language == nullptr || !IsTailored(*language)) return nullptr;
  return &Tailorings().RecordOf(language->number & 0x7fU);
}

inline const OtOrderRecord* OtOrderRecord::Contracted(unsigned short next) const {
  if (hasContractions() == 0) return nullptr;
  if (next < OT_FIRST_MARK && (flags & kLowFollowers) == 0) return nullptr;
  const ot95::ContractionSet& set = Contractions();
  if (next < set.lowest) return nullptr;
  const std::uint16_t* const first = set.followers.begin();
  const std::uint16_t* const place = std::lower_bound(first, set.followers.end(), next);
  if (place == set.followers.end() || *place != next) return nullptr;
  return ot95::kOrderRecords + (ot95::kRecordNumbers + set.firstRecord)[place - first];
}

#endif
