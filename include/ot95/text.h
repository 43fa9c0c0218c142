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

#include "ot95/base.h"
#include "ot95/oin.h"

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
  OtChar(const OtChar& other);
  OtChar(unsigned short character, unsigned char codeSet = 0xff, unsigned char language = 0xff);
  OtChar(char character, unsigned char codeSet = 0xff, unsigned char language = 0xff);
  /// The character at `place`, which must outlive this.
  OtChar(const char* place, unsigned char codeSet = 0xff, unsigned char language = 0xff,
         unsigned char format = 0xff);
  OtChar(OtString& text, int byteOffset);

  /// A value becomes a copy; at a place, the character is mapped to its code set and written.
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
  OtStringIterator(const OtStringIterator& other);
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

  /// Characters to deliver before the text goes on; the list must outlive its use.
  void SetOverflow(const OtWCharList* list, unsigned char codeSet);
  /// Writes `op` of every remaining character, and a terminator, through `target`.
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
  char* position_;
  unsigned char codeSet_;
  unsigned char language_;
  unsigned char script_;
  const OtWCharList* overflow_;
  short overflowIndex_;
  unsigned char overflowCodeSet_;
  unsigned char format_;
  unsigned short ownsBuffer_;
};

/// What OtString::Transform does to each character.
class OT95_EXPORT OtCharOperation {
 public:
  virtual OtChar operator()(OtChar c, OtStringIterator* source) = 0;

 protected:
  ~OtCharOperation() = default;
};

/// An owned, terminated text with its code set and language. The null value (of a database) is a
/// state of its own, apart from the empty text. At most 65,532 bytes with the terminator.
class OT95_EXPORT OtString {
 public:
  OtString();
  OtString(unsigned char codeSet, unsigned char language);
  OtString(const OtString& other);
  OtString(char character);
  OtString(unsigned short character);
  OtString(const char* text);
  OtString(const unsigned short* text);
  OtString(const char* text, unsigned short length);  ///< 0xffff: up to the terminator.
  OtString(const unsigned short* text, unsigned short length);
  OtString(short number);
  OtString(int number);
  OtString(unsigned int number);  ///< Signed text: 4294967295 gives "-1".
  OtString(long number);
  OtString(unsigned long number);
  OtString(double number);  ///< Fifteen significant digits.
  ~OtString() { Destroy(); }

  OtString& operator=(const OtString& other);
  OtString& operator=(const char* text);
  OtString& operator=(const unsigned short* text);

  void Init();     ///< Empty, with defaults, freeing nothing: for raw storage.
  void Destroy();  ///< Frees the text; code set and language become 0.
  /// Takes over the text of `other`, which is left without one.
  void Destruct(OtString& other);
  void d_deactivate() { Destroy(); }

  char* StrGet() const;                              ///< The terminated text; never null.
  unsigned short Len() const;                        ///< Characters, by a scan.
  unsigned short MemLen() const { return memLen_; }  ///< Bytes of the buffer.
  int IsEmpty() const;
  int operator!() const { return IsEmpty(); }
  int IsNullValue() const;
  int SetNullValue();
  unsigned char GetCodeSetCode() const { return codeSet_; }
  unsigned char GetLanguageCode() const { return language_; }
  void SetLanguageCode(unsigned char language) { language_ = language; }

  /// Relabels between code sets of one width; OT_ERR_BAD_ARGUMENT otherwise.
  int SetCodeSetCode(unsigned char codeSet);
  /// Relabels, and converts the text only when the width changes.
  void SetCodeSet(unsigned char codeSet);
  /// Converts every character; OT_ERR_BAD_ARGUMENT for 0.
  int MapToCodeSet(unsigned char codeSet);
  /// Takes up to `maxChars` characters (negative: all) of `source`, converted.
  int CopyMapped(const OtString& source, unsigned char codeSet, short maxChars = -1);

  static unsigned char GetDefaultCodeSet();
  static void SetDefaultCodeSet(unsigned char codeSet);
  static unsigned char GetDefaultLanguage();
  static void SetDefaultLanguage(unsigned char language);
  static unsigned short GetDefaultCmpOp();
  static void SetDefaultCmpOp(unsigned short cmpOp);
  static unsigned char GetDefault8CodeSet();
  static unsigned char GetDefault16CodeSet();
  static const OtString& EmptyString();

  operator int() const;
  operator short() const;
  operator long() const;
  operator double() const;
  int Atol(long& out) const;    ///< Decimal; -1 unless a digit or '-' comes first.
  int Strtol(long& out) const;  ///< The same with "0x" and "0" for other bases.

  long Compare(const OtString& other, unsigned short cmpOp = OT_CMP_DEFAULT) const;
#define OT95_STRING_RELATION(op)                        \
  bool operator op(const OtString& other) const {       \
    return Compare(other) op 0;                         \
  }                                                     \
  bool operator op(const char* other) const {           \
    return Compare(OtString(other)) op 0;               \
  }                                                     \
  bool operator op(const unsigned short* other) const { \
    return Compare(OtString(other)) op 0;               \
  }
  OT95_STRING_RELATION(==)
  OT95_STRING_RELATION(!=)
  OT95_STRING_RELATION(<)
  OT95_STRING_RELATION(>)
  OT95_STRING_RELATION(<=)
  OT95_STRING_RELATION(>=)
#undef OT95_STRING_RELATION

  OtString& Insert(const OtString& text, unsigned short pos);
  OtString& Replace(const OtString& text, unsigned short pos);
  OtString& Fill(unsigned short n, char c);
  OtString& Fill(unsigned short n, unsigned short c);
  OtString& Expand(unsigned short n, char c);
  OtString& Expand(unsigned short n, unsigned short c);
  OtString& Cut(unsigned short pos, short n = -1);
  OtString Copy(unsigned short pos, short n = -1) const;
  OtString Left(unsigned short n) const;
  OtString Right(unsigned short n) const;
  OtString& LeftTrim();
  OtString& RightTrim();
  OtString& Trim();
  OtString& ToUpper();
  OtString& ToLower();
  OtString& Transform(OtCharOperation& op);
  OtString& operator+=(const OtString& text);
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
  OtString& operator<<(float value);
  OtString& operator<<(double value);
  OtChar operator[](int index);

  short Find(const OtString& pattern, unsigned short start = 0,
             unsigned short cmpOp = OT_CMP_DEFAULT) const;
  short Find(char c, unsigned short start = 0, unsigned short cmpOp = OT_CMP_DEFAULT) const;
  short Find(unsigned short c, unsigned short start = 0,
             unsigned short cmpOp = OT_CMP_DEFAULT) const;
  short SubStringPos(const OtString& pattern, unsigned short cmpOp = OT_CMP_DEFAULT) const;
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
  void SetText(const void* source, unsigned char codeSet, unsigned short length,
               unsigned char format = 0xff);

  char* buffer_;
  unsigned short memLen_;
  unsigned char codeSet_;
  unsigned char language_;
};

static_assert(sizeof(OtString) == 2 * sizeof(void*), "the stride of string arrays");

OT95_EXPORT OtString operator+(const OtString& a, const OtString& b);

/// Compares two texts by collation in levels, the second as a pattern unless `cmpOp` says no.
/// @param maxChars orders compared on each side; negative: all.
/// @param primaryOut may be null.
/// @return negative, zero, positive: only the sign is meant.
OT95_EXPORT long OtStrCmp(unsigned char codeSet1, unsigned char language1, const char* text1,
                          unsigned char codeSet2, unsigned char language2, const char* text2,
                          unsigned short cmpOp, short maxChars = -1, unsigned char format = 0xff,
                          int* primaryOut = nullptr);

/// Comparer of the row OtString, by the contract of OtCompareFunc.
OT95_EXPORT long StringCompare(unsigned char format, unsigned long length1, void* value1,
                               unsigned long length2, void* value2, unsigned short cmpOp,
                               unsigned long count, int& status);

/// Hash of a text by its collation orders: equal in every level, equal hash.
/// @param length orders to take; -1: to the end.
OT95_EXPORT unsigned long HashString(unsigned char codeSet, unsigned char language,
                                     const char* text, long length, unsigned char format);
OT95_EXPORT unsigned long HashOtString(const OtString& text);   ///< Of the raw characters.
OT95_EXPORT unsigned long HashOtString7(const OtString& text);  ///< Of their low seven bits.

/// Store, Load and SizeGet of the row OtString.
OT95_EXPORT unsigned long StringStore(void* disk, const void* memory, unsigned char format,
                                      unsigned long count);
OT95_EXPORT unsigned long StringLoad(void* memory, const void* disk, unsigned char format,
                                     unsigned long count);
OT95_EXPORT unsigned long StringSizeGet(const void* value, unsigned char sourceFormat,
                                        unsigned char diskFormat, unsigned long count);

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
