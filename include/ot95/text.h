#ifndef OT95_TEXT_H
#define OT95_TEXT_H

/// @file
/// Text: strings that carry their code set and language, their characters and iterators, collation
/// orders, comparison with wildcards, and conversion from and to UTF-8.
///
/// A code set above 0xe0 holds two bytes a character in the machine's order; all others hold one.
/// Positions and lengths count characters.
/// @code
///   OtString city("Orleans");
///   city.Compare("orl*", 0x20);      // 0: ignoring case, the pattern matches
///   city.Insert("New ", 0).ToUpper();
/// @endcode

#include <cstddef>

#include "ot95/base.h"
#include "ot95/oin.h"

namespace ot95 {
struct TextAccess;
struct TextSource;
}  // namespace ot95

class OtChar;
class OtCharOperation;
class OtString;
class OtStringIterator;

/// Bits of the comparison-op word. 0xffff in its place means the default of OtLanguageContext.
enum : unsigned short {
  OT_CMP_NO_WILDCARDS = 0x10,     ///< The second text is no pattern.
  OT_CMP_IGNORE_CASE = 0x20,      ///< Case doesn't count.
  OT_CMP_IGNORE_ACCENT = 0x40,    ///< Accents don't count.
  OT_CMP_IGNORE_SPACE = 0x80,     ///< Spaces are skipped.
  OT_CMP_ORDER_ONLY = 0x100,      ///< Whole keys in one pass: no levels, no skipping, no wildcards.
  OT_CMP_IGNORE_SYMBOLS = 0x200,  ///< Symbols are skipped.
  OT_CMP_DEFAULT = 0xffff
};

/// One character: a value of its own, or a place in a text to which assignment writes.
class OT95_EXPORT OtChar {
 public:
  OtChar(const OtChar& other);  ///< A value, also where `other` is a place.
  // 0xff stands for the default language, and for the default code set of the argument's width.
  OtChar(unsigned short character, unsigned char codeSet = 0xff, unsigned char language = 0xff);
  OtChar(char character, unsigned char codeSet = 0xff, unsigned char language = 0xff);
  /// The character at `place`, which must outlive this.
  OtChar(const char* place, unsigned char codeSet = 0xff, unsigned char language = 0xff,
         unsigned char format = 0xff);
  OtChar(OtString& text, int byteOffset);

  /// A value becomes a copy; at a place, the character is mapped to its code set and written in its
  /// format.
  OtChar& operator=(const OtChar& other);
  OtChar& operator=(char character);
  OtChar& operator=(unsigned short character);

  /// The character in another code set; 0 keeps this one.
  OtChar MapTo(unsigned char codeSet) const;
  /// @param source receives the further characters of a longer capital; null drops them.
  OtChar ToUpper(OtStringIterator* source) const;
  OtChar ToLower(OtStringIterator* source) const;

  int IsSpace() const;   ///< White space, and the zero character.
  int IsSymbol() const;  ///< Punctuation and other signs.
  int IsDigit() const;
  int IsAlpha() const;  ///< A letter of an alphabet.
  int IsHan() const;    ///< An ideograph or another character beyond the alphabets.

  /// Three-way comparison of the two characters alone, by their collation.
  long Compare(const OtChar& other, unsigned short cmpOp = OT_CMP_DEFAULT) const;
  bool operator==(const OtChar& other) const { return Compare(other) == 0; }
  bool operator!=(const OtChar& other) const { return Compare(other) != 0; }
  bool operator<(const OtChar& other) const { return Compare(other) < 0; }
  bool operator>(const OtChar& other) const { return Compare(other) > 0; }
  bool operator<=(const OtChar& other) const { return Compare(other) <= 0; }
  bool operator>=(const OtChar& other) const { return Compare(other) >= 0; }
  bool operator==(char other) const { return *this == OtChar(other); }
  bool operator!=(char other) const { return *this != OtChar(other); }
  bool operator<(char other) const { return *this < OtChar(other); }
  bool operator>(char other) const { return *this > OtChar(other); }
  bool operator<=(char other) const { return *this <= OtChar(other); }
  bool operator>=(char other) const { return *this >= OtChar(other); }
  bool operator==(unsigned short other) const { return *this == OtChar(other); }
  bool operator!=(unsigned short other) const { return *this != OtChar(other); }
  bool operator<(unsigned short other) const { return *this < OtChar(other); }
  bool operator>(unsigned short other) const { return *this > OtChar(other); }
  bool operator<=(unsigned short other) const { return *this <= OtChar(other); }
  bool operator>=(unsigned short other) const { return *this >= OtChar(other); }

  /// The character's value in its code set; of a one-byte set, zero-extended.
  unsigned short GetValue() const;
  unsigned char GetCodeSetCode() const { return codeSet_; }
  unsigned char GetLanguageCode() const { return language_; }
  unsigned char GetFormat() const { return format_; }

 private:
  friend class OtString;
  friend class OtStringIterator;
  OtChar(char* place, unsigned short value, unsigned char codeSet, unsigned char language,
         unsigned char format);
  void SetValue(unsigned short character);

  char* place_;  // null: the character is in value_
  unsigned short value_;
  unsigned char codeSet_;
  unsigned char language_;
  unsigned char format_;
};

/// Walks a text of either width, character by character or order by order.
class OT95_EXPORT OtStringIterator {
 public:
  OtStringIterator();
  OtStringIterator(const OtStringIterator& other);  ///< Without what is pending there.
  explicit OtStringIterator(OtString& text);
  OtStringIterator(const char* text, unsigned char codeSet = 0xff, unsigned char language = 0xff,
                   unsigned char format = 0xff);
  OtStringIterator(unsigned short* text, unsigned char codeSet = 0xff,
                   unsigned char language = 0xff, unsigned char format = 0xff);
  /// Over a text of this one character, which the iterator owns.
  explicit OtStringIterator(OtChar& character);
  ~OtStringIterator();
  OtStringIterator& operator=(const OtStringIterator& other);

  OtStringIterator& operator++();
  OtStringIterator operator++(int);
  OtStringIterator& operator--();
  OtStringIterator operator--(int);
  /// One step forward, or back for 0.
  void Step(unsigned short forward);
  /// Same place.
  bool operator==(const OtStringIterator& other) const { return position_ == other.position_; }
  bool operator!=(const OtStringIterator& other) const { return position_ != other.position_; }
  /// At the end of the text, with nothing pending.
  int IsEOS() const;
  /// The character here; reading a pending one uses it up.
  OtChar operator*();

  /// Characters to deliver before the text goes on; the list must outlive its use. Code set 0xff is
  /// the iterator's own. While a list is there, used up or not, IsEOS is false; a step drops a list
  /// that is used up.
  void SetOverflow(const OtWCharList* list, unsigned char codeSet = 0xff);
  /// Writes `op` of every remaining character, and a terminator, through `target`, which must have
  /// the room.
  void Transform(OtStringIterator& target, OtCharOperation& op);

  /// The order word here, stepping past all characters that it stands for; 0 at the end.
  /// @param wantScript non-zero: the script byte is brought up to date as well.
  unsigned short GetNextOrder(unsigned short wantScript);

  const char* GetPosition() const { return position_; }
  unsigned char GetCodeSetCode() const { return codeSet_; }
  unsigned char GetLanguageCode() const { return language_; }
  unsigned char GetScript() const { return script_; }
  void SetScript(unsigned char script) { script_ = script; }

 private:
  friend class OtString;
  OtStringIterator(char* position, unsigned char codeSet, unsigned char language,
                   unsigned char format, unsigned char script);
  OtStringIterator(unsigned char codeSet, unsigned char language, unsigned char format,
                   char* position);
  bool HasPending() const;
  void Move(int characters);

  char* position_;
  unsigned char codeSet_;
  unsigned char language_;
  unsigned char script_;
  const OtWCharList* overflow_;
  short overflowIndex_;
  unsigned char overflowCodeSet_;
  unsigned char format_;
  char* owned_;  // the text of one character, wherever position_ has moved to
};

/// What OtString::Transform does to each character.
class OT95_EXPORT OtCharOperation {
 public:
  virtual OtChar operator()(OtChar c, OtStringIterator* source) = 0;

 protected:
  ~OtCharOperation() = default;
};

/// The operation of OtString::ToUpper: the capital of each character. What a longer one has behind
/// its first character is left to the iterator as pending.
class OT95_EXPORT OtToUpper final : public OtCharOperation {
 public:
  OtChar operator()(OtChar c, OtStringIterator* source) override;
};

/// The operation of OtString::ToLower: the small letter of each character.
class OT95_EXPORT OtToLower final : public OtCharOperation {
 public:
  OtChar operator()(OtChar c, OtStringIterator* source) override;
};

/// An owned, terminated text with its code set and language. The null value (of a database) is a
/// state of its own, apart from the empty text. At most 65,532 bytes with the terminator.
class OT95_EXPORT OtString {
 public:
  /// No text, in the default code set and language.
  OtString() : OtString(GetDefaultCodeSet(), GetDefaultLanguage()) {}
  /// No text. The arguments are kept as they are: 0xff isn't resolved.
  OtString(unsigned char codeSet, unsigned char language)
      : buffer_(nullptr), memLen_(0), codeSet_(codeSet), language_(language) {}
  OtString(const OtString& other);      ///< The text up to its terminator.
  OtString(OtString&& other) noexcept;  ///< As Destruct.
  // All others have the default language, and the default code set of the width that they are
  // given, numbers the one of one byte. Null, the zero character and length 0 give no buffer; ""
  // gives one that holds a terminator.
  OtString(char character);
  OtString(unsigned short character);
  OtString(const char* text);
  OtString(const unsigned short* text);
  /// @param length characters, all of which are taken, zeros too; 0xffff: up to the terminator.
  OtString(const char* text, unsigned short length);
  OtString(const unsigned short* text, unsigned short length);
  OtString(short number);  ///< Numbers are decimal text of the "C" locale.
  OtString(int number);
  OtString(unsigned int number);  ///< Signed text: 4294967295 gives "-1".
  OtString(long number);
  OtString(unsigned long number);
  OtString(long long number);
  OtString(unsigned long long number);
  OtString(double number);  ///< Fifteen significant digits.
  ~OtString() { Destroy(); }

  /// The string becomes what the constructor of the same argument makes; its code set before
  /// doesn't matter. The source may be a part of this string's own text.
  OtString& operator=(const OtString& other);
  OtString& operator=(OtString&& other) noexcept;
  OtString& operator=(const char* text);
  OtString& operator=(const unsigned short* text);

  void Init();     ///< Empty, with defaults, freeing nothing: for raw storage.
  void Destroy();  ///< Frees the text; code set and language become 0.
  /// Takes over text, code set and language of `other`, which is left without a text.
  void Destruct(OtString& other);
  void d_deactivate() { Destroy(); }

  /// The terminated text, of either width; never null. Without a buffer it is a shared empty text,
  /// which must not be written to. Any change of the string ends its validity.
  char* StrGet() const;
  unsigned short Len() const;  ///< Characters, by a scan.
  /// Bytes of the buffer with the terminator, modulo 65,536; 0 without a buffer. More than the text
  /// needs after CopyMapped.
  unsigned short MemLen() const { return memLen_; }
  int IsEmpty() const;
  int operator!() const { return IsEmpty(); }
  /// Language OT_LANG_NULL, or code set OT_CS_ORDER with language 0. An empty text is not null.
  int IsNullValue() const;
  int SetNullValue();  ///< Frees the text. Always 0.
  unsigned char GetCodeSetCode() const { return codeSet_; }
  unsigned char GetLanguageCode() const { return language_; }
  void SetLanguageCode(unsigned char language) { language_ = language; }

  /// Relabels between code sets of one width; OT_ERR_BAD_ARGUMENT otherwise.
  int SetCodeSetCode(unsigned char codeSet);
  /// Relabels, and converts the text only when the width changes; 0 converts to the native set.
  /// When memory is short, text and code set stay as they were; so for MapToCodeSet.
  void SetCodeSet(unsigned char codeSet);
  /// Converts every character; OT_ERR_BAD_ARGUMENT for 0.
  int MapToCodeSet(unsigned char codeSet);
  /// Takes up to `maxChars` characters (negative: all) of `source`, converted, and its language.
  /// The buffer is kept if it has room for `maxChars`, otherwise made so; its rest is zeroed.
  /// @return characters taken, or OT_ERR_BAD_ARGUMENT when `source` is this string.
  int CopyMapped(const OtString& source, unsigned char codeSet, short maxChars = -1);

  static unsigned char GetDefaultCodeSet() { return OtLanguageContext::GetDefaultCodeSet(); }
  static void SetDefaultCodeSet(unsigned char codeSet);
  static unsigned char GetDefaultLanguage() { return OtLanguageContext::GetDefaultLanguage(); }
  static void SetDefaultLanguage(unsigned char language);
  static unsigned short GetDefaultCmpOp() { return OtLanguageContext::GetDefaultCmpOp(); }
  static void SetDefaultCmpOp(unsigned short cmpOp);
  static unsigned char GetDefault8CodeSet() { return OtLanguageContext::GetDefault8CodeSet(); }
  static unsigned char GetDefault16CodeSet() { return OtLanguageContext::GetDefault16CodeSet(); }
  static const OtString& EmptyString();

  // Numbers at the start of the text. Whole ones are cut to the range of 32 bits, then to the type.
  // One-byte text is read as the C library does in its "C" locale, "0x" and "0" beginning other
  // bases unless bit 0 of ___OtTypeMgrOptions is set. Two-byte text is taken unit by unit as if
  // each were a digit, without sign, modulo 2^32; as a double, up to the first '.'.
  operator int() const;
  operator short() const;
  operator long() const;
  operator double() const;
  /// Decimal. @return 0, or -1 with `out` 0 unless a digit or '-' comes first.
  int Atol(long& out) const;
  int Strtol(long& out) const;  ///< The same with "0x" and "0" for other bases.

  /// Three-way comparison by collation; only the sign is meant. Bare texts have the default
  /// language and code set of their width.
  long Compare(const OtString& other, unsigned short cmpOp = OT_CMP_DEFAULT) const;
  long Compare(const char* other, unsigned short cmpOp = OT_CMP_DEFAULT) const;
  long Compare(const unsigned short* other, unsigned short cmpOp = OT_CMP_DEFAULT) const;
#define OT95_STRING_RELATION(op)                        \
  bool operator op(const OtString& other) const {       \
    return Compare(other) op 0;                         \
  }                                                     \
  bool operator op(const char* other) const {           \
    return Compare(other) op 0;                         \
  }                                                     \
  bool operator op(const unsigned short* other) const { \
    return Compare(other) op 0;                         \
  }
  OT95_STRING_RELATION(==)
  OT95_STRING_RELATION(!=)
  OT95_STRING_RELATION(<)
  OT95_STRING_RELATION(>)
  OT95_STRING_RELATION(<=)
  OT95_STRING_RELATION(>=)
#undef OT95_STRING_RELATION

  // Editing. What is given in another code set is converted; it may be this string itself. What
  // can't be done leaves the text as it was. A text that grows beyond the limit is reported, not
  // cut.
  OtString& Insert(const OtString& text, unsigned short pos);   ///< `pos` may be the length.
  OtString& Replace(const OtString& text, unsigned short pos);  ///< Writes over; never grows.
  OtString& Fill(unsigned short n, char c);                     ///< `n` times `c`, nothing else.
  OtString& Fill(unsigned short n, unsigned short c);
  OtString& Expand(unsigned short n, char c);  ///< Pads on the right up to `n` characters.
  OtString& Expand(unsigned short n, unsigned short c);
  /// Removes `n` characters at `pos`; -1, or too many: all from there. Other negatives: none.
  OtString& Cut(unsigned short pos, short n = -1);
  /// The characters that Cut would remove; at or past the end an empty string in the default code
  /// set and language, otherwise one in those of this string.
  OtString Copy(unsigned short pos, short n = -1) const;
  OtString Left(unsigned short n) const;
  OtString Right(unsigned short n) const;
  OtString& LeftTrim();  ///< Removes what IsSpace at the start.
  OtString& RightTrim();
  OtString& Trim();
  OtString& ToUpper();  ///< A capital may be longer than its letter.
  OtString& ToLower();
  /// Every character becomes what `op` makes of it. Pending characters that `op` gives to its
  /// iterator follow, each passed through `op`; the text grows as it has to.
  OtString& Transform(OtCharOperation& op);
  OtString& operator+=(const OtString& text);
  // Append the text of a value. An `unsigned short` is a character to a wide string, and a number
  // to a narrow one.
  OtString& operator<<(char value);
  OtString& operator<<(const char* value);
  OtString& operator<<(const unsigned short* value);
  OtString& operator<<(const OtString& value);
  OtString& operator<<(short value);
  OtString& operator<<(unsigned short value);
  OtString& operator<<(int value);
  OtString& operator<<(unsigned int value);
  OtString& operator<<(long value);
  OtString& operator<<(unsigned long value);
  OtString& operator<<(long long value);
  OtString& operator<<(unsigned long long value);
  OtString& operator<<(float value);
  OtString& operator<<(double value);
  /// The place of a character or of the terminator, to read or to write through; elsewhere, and
  /// without a buffer, a zero character.
  OtChar operator[](int index);

  // Searching, by collation: a match is a stretch of whole characters that equals the pattern, as
  // long as that takes ("ss" finds a sharp s). What `cmpOp` skips belongs to it between characters
  // that count, and at an end as far as the pattern has the like there. Without OT_CMP_NO_WILDCARDS
  // in `cmpOp` the pattern has to match all of the text from a place on, with a star behind it. An
  // empty pattern is nowhere.
  // @return the place, cut to 16 signed bits; -1 for none.
  short Find(const OtString& pattern, unsigned short start = 0,
             unsigned short cmpOp = OT_CMP_DEFAULT) const;
  short Find(char c, unsigned short start = 0, unsigned short cmpOp = OT_CMP_DEFAULT) const;
  short Find(unsigned short c, unsigned short start = 0,
             unsigned short cmpOp = OT_CMP_DEFAULT) const;
  short SubStringPos(const OtString& pattern, unsigned short cmpOp = OT_CMP_DEFAULT) const;
  /// Every place of `from`, found by the default comparison op, becomes `to`. What was put in isn't
  /// searched again.
  OtString& ReplaceAll(const OtString& from, const OtString& to, unsigned short start = 0);
  OtString& ReplaceAll(char from, char to, unsigned short start = 0);
  OtString& ReplaceAll(unsigned short from, unsigned short to, unsigned short start = 0);

  /// Wildcards are order words: every character of the same word acts as the wildcard.
  static int SetAsterisk(const OtChar& c);
  static int SetQuestion(const OtChar& c);
  static int SetEscape(const OtChar& c);  ///< Kept, but patterns have no escape.
  static unsigned short GetAsterisk();
  static unsigned short GetQuestion();
  static unsigned short GetEscape();

 private:
  friend struct ot95::TextAccess;
  enum class SpliceMode { kReplace = 1, kInsert = 2, kAssign = 3 };

  void SetText(const void* source, unsigned char codeSet, unsigned short length,
               unsigned char format = 0xff);
  void Adopt(char* buffer, std::size_t bytes);
  void Splice(SpliceMode mode, const ot95::TextSource& source, std::size_t position,
              std::size_t repeat = 1);
  void SpliceUnits(SpliceMode mode, const ot95::TextSource& source, std::size_t position,
                   std::size_t repeat);
  void Join(std::size_t head, const char* piece, std::size_t bytes);
  bool TakesUnitsOf(const ot95::TextSource& source) const;
  bool TakesBytesOf(const ot95::TextSource& source) const;
  void Convert(unsigned char codeSet);
  std::size_t Length() const;
  void InsertAt(const OtString& text, std::size_t pos);
  void CutAt(std::size_t pos, std::size_t n);
  OtString CopyAt(std::size_t pos, std::size_t n) const;
  OtString& PadTo(std::size_t n, const ot95::TextSource& character);
  OtString& Append(const ot95::TextSource& source);
  bool IsSpaceAt(std::size_t pos) const;
  long CompareText(unsigned char codeSet, unsigned char language, const char* text,
                   unsigned short cmpOp) const;

  char* buffer_;
  unsigned short memLen_;
  unsigned char codeSet_;
  unsigned char language_;
};

static_assert(sizeof(OtString) == 2 * sizeof(void*), "the stride of string arrays");

/// The second text behind the first, in the code set and language of the first.
OT95_EXPORT OtString operator+(const OtString& a, const OtString& b);
// A string also converts to numbers, which makes these sums ambiguous without a form of their own.
inline OtString operator+(const OtString& a, const char* b) {
  return a + OtString(b);
}
inline OtString operator+(const char* a, const OtString& b) {
  return OtString(a) + b;
}

/// Compares two texts by collation in levels, the second as a pattern unless `cmpOp` says no.
/// @param cmpOp as it stands: here 0xffff is no default, but all of its bits, hence whole keys.
/// @param maxChars orders compared on each side; negative: all.
/// @param primaryOut may be null.
/// @return negative, zero, positive: only the sign is meant.
OT95_EXPORT long OtStrCmp(unsigned char codeSet1, unsigned char language1, const char* text1,
                          unsigned char codeSet2, unsigned char language2, const char* text2,
                          unsigned short cmpOp = 0xffff, short maxChars = -1,
                          unsigned char format = 0xff, int* primaryOut = nullptr);

/// Comparer of the row OtString, by the contract of OtCompareFunc.
OT95_EXPORT long StringCompare(unsigned char format, unsigned long length1, void* value1,
                               unsigned long length2, void* value2, unsigned short cmpOp,
                               unsigned long count, int& status);

/// Hash of a text by its collation orders: equal in every level, equal hash.
/// @param length orders to take; -1: to the end.
OT95_EXPORT unsigned long HashString(unsigned char codeSet, unsigned char language,
                                     const char* text, long length, unsigned char format = 0xff);
OT95_EXPORT unsigned long HashOtString(const OtString& text);   ///< Of the raw characters.
OT95_EXPORT unsigned long HashOtString7(const OtString& text);  ///< Of their low seven bits.

/// Store, Load and SizeGet of the row OtString.
OT95_EXPORT unsigned long StringStore(void* disk, const void* memory, unsigned char format,
                                      unsigned long count = 1);
OT95_EXPORT unsigned long StringLoad(void* memory, const void* disk, unsigned char format,
                                     unsigned long count = 1);
OT95_EXPORT unsigned long StringSizeGet(const void* value, unsigned char sourceFormat,
                                        unsigned char diskFormat, unsigned long count = 1);

/// Takes the next item of a list apart, trimmed, from `pos` on.
/// @return 0, or OT_ERR_NO_MORE_ITEMS with `item` untouched.
OT95_EXPORT int OtSplitList(OtString& list, OtString& item, const OtString& separator,
                            unsigned short& pos);

/// Take an order word apart; OT_ERR_BAD_ARGUMENT for a word of another class.
OT95_EXPORT int OtExtractSymbolFromOrder(unsigned short order, unsigned short& symbol);
OT95_EXPORT int OtExtractDigitFromOrder(unsigned short order, unsigned short& digit,
                                        unsigned short& expand);
OT95_EXPORT int OtExtractLetterFromOrder(unsigned short order, unsigned short& caseField,
                                         unsigned short& accent, unsigned short& letter,
                                         unsigned short& extension);
/// Render an order word as a phrase, or as a character near it. Always 0.
OT95_EXPORT int OtConvertOrderToString(unsigned short order, unsigned char script, OtString& text);
OT95_EXPORT int OtConvertOrderToChar(unsigned short order, unsigned char script,
                                     unsigned char& character, int searchAccented,
                                     const char** name = nullptr);

/// UTF-8 in its early form, with sequences of up to six bytes; characters are 16-bit units.
/// @return bytes read; 0 for a null `s`; -1 for bad or incomplete input.
OT95_EXPORT int OtMultiByte2WChar(unsigned short* out, char* s, unsigned int n);
/// @return bytes written, 1 to 3; 0 for a null `out`. No terminator.
OT95_EXPORT int OtWChar2MultiByte(char* out, unsigned short wc);
/// @return units decoded, also beyond `outMax`; -1 for bad input.
OT95_EXPORT int OtMultiByteStr2WCharStr(unsigned short* out, int outMax, char* s, int n);
OT95_EXPORT long OtMultiByteString2OtString(const OtString& source, OtString& target);
OT95_EXPORT long OtMultiByteString2OtString(const char* s, OtString& target, long n);
/// @return bytes read; -1 for bad input, -2 for too long: `target` then holds what came before.
OT95_EXPORT long OtMBS2OtString(const char* s, OtString& target, long n);
/// @return bytes written; negative when `out` is too small.
OT95_EXPORT long OtString2OtMBS(const OtString& source, char* out, long outMax);
/// @param out a buffer of `outLen` bytes, or null: then allocated with `new[]` for the caller.
OT95_EXPORT long OtString2MultiByteString(const OtString& source, char*& out, long& outLen);
/// Bytes that up to `maxChars` characters need; -1 on failure.
OT95_EXPORT long OtMBSLength(const OtString& source, unsigned short maxChars);

#endif
