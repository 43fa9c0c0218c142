#ifndef OT95_OIN_H
#define OT95_OIN_H

/// @file
/// Internationalisation: code sets, languages, case data, collation tables.
///
/// Both are one-byte numbers that stored strings carry, so that a number keeps its meaning for
/// ever. Programs look the numbers up by name, once:
/// @code
///   const unsigned char swedish = OtLanguageContext::LanguageOfTag("sv");      // swedish != 0
///   const unsigned char latin2 = OtLanguageContext::CodeSetOfName("ISO-8859-2");  // latin2 != 0
///
///   const OtCodeSet* set = OtLanguageContext::QueryCodeSet(OT_CS_UNICODE);
///   const OtOrderRecord* record = set->orderTable->Find(0xe5);                 // a with a ring
///   const OtOrderRecord* own = record->Tailored(OtLanguageContext::QueryLanguage(swedish));
///   const OtOrderRecord* z = set->orderTable->Find('z');
///   bool behindZ = own != nullptr && own->Key(1) > z->Key(1);                  // behindZ == true
///   bool amongA = record->Key(1) < z->Key(1);                                  // amongA == true
/// @endcode
///
/// The road from a character to what it sorts as:
///
///     code set --> order table --> record --> tailored by the language?
///                                         --> contracted with the next character?
///                                         --> order word, script byte, further orders
///
/// The tables and the defaults are constants: all of it works before main and before
/// ___OtI18NContext. Nothing is read from the environment, because results must not depend on it.

#include "ot95/oin_codeset.h"
#include "ot95/oin_order.h"
#include "ot95/oin_version.h"

/// Language numbers with a meaning of their own.
inline constexpr unsigned char OT_LANG_NEUTRAL = 1;  ///< The default at start.
inline constexpr unsigned char OT_LANG_NULL = 0xfe;  ///< Marks the null string.
inline constexpr unsigned char OT_LANG_DEFAULT =
    0xff;  ///< As an argument or member: the default language.

/// Start (non-zero) and end (0) of the library's use. There is nothing to bring up; the end puts
/// the defaults back, so that a second start begins like the first.
OT95_EXPORT void ___OtI18NContext(int attach);

/// The way to the records, and the process-wide defaults. Setters belong to start-up: they are
/// not synchronised. The defaults are what a string without a code set or language of its own is
/// made with: at start the base 8-bit set and the neutral language.
class OT95_EXPORT OtLanguageContext {
 public:
  /// The record of a code set, never null. 0 answers the native set. A number that nobody knows
  /// is stood in for by OT_CS_BASE8 up to 0xe0, by OT_CS_UNICODE above.
  static const OtCodeSet* QueryCodeSet(unsigned char codeSet);
  /// The record of a language, null for 0 and for a number that nobody knows.
  static const OtLanguage* QueryLanguage(unsigned char language) {
    if (language >= 0x80) return nullptr;
    const OtLanguage* record = ot95::kLanguageRows + language;
    return record->number != 0 ? record : nullptr;
  }

  /// The version of a language's order: a hash over every word, contraction and expansion that its
  /// texts can meet. Never 0. Keys of texts that were made under another version are out of order:
  /// an engine keeps it beside each index and builds the index anew where it differs.
  /// OT_LANG_DEFAULT asks for the default language; a language that nobody knows orders as the
  /// neutral one, and has its version.
  static std::uint64_t OrderVersion(unsigned char language);
  /// What a language orders its own way, in the notation of the tables' generator, as UTF-8: one
  /// item a letter, separated by blanks. Empty for one that orders as all, or that nobody knows.
  static const char* OrderRules(unsigned char language);

  /// The code set of new strings.
  static unsigned char GetDefaultCodeSet() { return defaults_.codeSet; }
  /// Sets the default code set. @return 0, or OT_ERR_BAD_ARGUMENT for 0xfe and 0xff.
  static int SetDefaultCodeSet(unsigned char codeSet);
  /// The language of new strings.
  static unsigned char GetDefaultLanguage() { return defaults_.language; }
  /// Sets the default language. @return 0, or OT_ERR_BAD_ARGUMENT for 0xfe and 0xff.
  static int SetDefaultLanguage(unsigned char language);
  /// The comparison-op word that stands behind 0xffff. At start 0x10: no wildcards, because a
  /// stored "*" must not equal everything.
  static unsigned short GetDefaultCmpOp() { return defaults_.cmpOp; }
  /// Sets the default comparison op. @return 0, or OT_ERR_BAD_ARGUMENT for 0xffff.
  static int SetDefaultCmpOp(unsigned short cmpOp);
  /// The default code set if its characters are one byte wide, else OT_CS_BASE8.
  static unsigned char GetDefault8CodeSet() {
    const unsigned char codeSet = GetDefaultCodeSet();
    return codeSet <= OT_CS_LAST_NARROW ? codeSet : OT_CS_BASE8;
  }
  /// The default code set if its characters are two bytes wide, else OT_CS_UNICODE.
  static unsigned char GetDefault16CodeSet() {
    const unsigned char codeSet = GetDefaultCodeSet();
    return codeSet > OT_CS_LAST_NARROW ? codeSet : OT_CS_UNICODE;
  }
  /// The set of raw 8-bit text: OT_CS_BASE8.
  static unsigned char GetNativeCodeSet() { return OT_CS_BASE8; }

  /// Number of the language with a BCP 47 tag such as "sv", "pt-BR", "zh-Hant-TW", "sr-Latn" or
  /// "de-u-co-phonebk", in any case, '_' for '-' and outdated codes ("iw") allowed; also with this
  /// library's own tags such as "de-phonebook". What a tag says behind a language that is known
  /// counts as far as it leads to another order. 0 for a language that has no number.
  static unsigned char LanguageOfTag(const char* tag);
  /// Number of the code set with a name such as "ISO-8859-2", "latin1", "SJIS" or "IBM037": those
  /// of IANA's registry with their aliases, and this library's own. Case and punctuation don't
  /// matter. A name that stands for part of a set finds the whole, "EUC-KR" that of CP949. 0 for
  /// none, "UTF-8" among them, for its characters are neither one byte nor two.
  static unsigned char CodeSetOfName(const char* name);
  /// Takes what it knows of a locale name such as "de_DE.ISO-8859-1" as defaults: its language,
  /// its code set. UTF-8 leaves the code set alone. @return how many parts it took, 0 to 2.
  static int UseLocale(const char* locale);

 private:
  friend void ::___OtI18NContext(int attach);
  struct Defaults {
    unsigned char codeSet = OT_CS_BASE8;
    unsigned char language = OT_LANG_NEUTRAL;
    unsigned short cmpOp = 0x10;
  };
  static Defaults defaults_;  // in sight, because the making of every string reads it
};

#endif
