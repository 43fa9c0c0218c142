#ifndef OT95_TEXT_H
#define OT95_TEXT_H

/// @file
/// Text: strings that carry their code set and language, their characters and iterators, collation
/// orders, comparison with wildcards, and conversion from and to UTF-8.
///
/// @code
///   OtString city("Orleans");                    // 8-bit text in the default code set
///   city.Insert("New ", 0);                      // city == "New Orleans"
///   short place = city.Find("orl", 0, OT_CMP_NO_WILDCARDS | OT_CMP_IGNORE_CASE);  // place == 4
///   long match = city.Compare("new*", OT_CMP_IGNORE_CASE);    // match == 0
///   OtString wide;
///   OtMBS2OtString("Z\xc3\xbcrich", wide, 7);    // wide.Len() == 6
///   wide.ToUpper();                              // wide.GetCodeSetCode() == OT_CS_UNICODE
///   long plain = wide.Compare("zurich", OT_CMP_NO_WILDCARDS | OT_CMP_IGNORE_CASE |
///                                           OT_CMP_IGNORE_ACCENT);
///   bool alike = plain == 0;                     // alike == true
/// @endcode
///
/// **Code sets and languages** are one-byte numbers (see oin.h). The code set says what the bytes
/// are: above 0xe0 a character is two bytes in the machine's order (a 16-bit unit; what lies beyond
/// U+FFFF takes two), up to 0xe0 one byte. Positions and lengths count characters, not bytes. The
/// language says how the text sorts. Where two texts meet, one is mapped to the code set of the
/// other; a character that isn't there becomes the set's substitute.
///
/// **Orders.** Texts are not compared as characters but as *orders* (collation elements). Each
/// character gives one or more 16-bit order words and a script byte:
///
///     text        s    t    r    a    ß         c  h  a  t  a   (Czech)
///     orders      s    t    r    a    s  s      ch    a  t  a
///                                     expansion contraction
///
/// An *expansion* is one character with several orders; a *contraction* several characters with
/// one; a language *tailors* a character by giving it other orders. The range of an order word is
/// its class:
///
/// | Order | Class | Says |
/// |---|---|---|
/// | 0 | end of the text | |
/// | 0x0001 to 0x004f | space | |
/// | 0x0050 to 0x3eff | symbol | symbol number = order - 0x50 |
/// | 0x3f00 to 0x3fff | digit | digits stand ten apart |
/// | 0x4000 to 0x7fff | letter | bits: case 13-12, accent 11-7, letter 6-2, extension 1-0 |
/// | 0x8000 to 0xffff | Han and the rest | compared as a number |
///
/// The order word and the script byte make a 32-bit key, and the keys of a whole text, cut where
/// its script changes, its *sort key* in an index.
///
/// **Levels.** Comparison looks at four levels; a lower one decides only where all above are equal:
///
/// | Level | Difference | As in | Decided by | Switched off by |
/// |---|---|---|---|---|
/// | 1 | primary: script, letter, digit | a, b | the first one | |
/// | 2 | secondary: accent | e, é | the last one in the text | OT_CMP_IGNORE_ACCENT |
/// | 3 | tertiary: case | a, A | the first one; small before capital | OT_CMP_IGNORE_CASE |
/// | 4 | spaces and symbols | ab, a-b | the last one | OT_CMP_IGNORE_SPACE, ..._SYMBOLS |
///
/// @code
///   const OtString small("cote"), capital("Cote");
///   bool caseLast = small < capital;             // caseLast == true
///   bool letterFirst = capital < OtString("coth");        // letterFirst == true
///   long hyphen = OtString("co-op").Compare("coop");      // hyphen > 0
///   long none = OtString("co-op").Compare("coop", OT_CMP_IGNORE_SYMBOLS);  // none == 0
/// @endcode
///
/// **Patterns.** Where wildcards are on (OT_CMP_NO_WILDCARDS is *not* set), the second text is a
/// pattern: "*" stands for any run of characters, also none, and "?" for one character that isn't
/// skipped. There is no escape. Wildcards are off in the default comparison op, because a stored
/// "*" must not equal everything; an op of one's own, such as OT_CMP_IGNORE_CASE, has them on.
///
/// **Null.** The null value of a database is a state of a string, apart from the empty text. It
/// orders before every text; against a pattern it compares as an empty one.
///
/// **Bad input.** A position behind the end changes nothing, a length that goes too far is cut,
/// null pointers are empty texts. Nothing throws. When memory is short the memory handler is told
/// (fault.h).

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

/// Bits of the comparison-op word. 0xffff in its place means the default of OtLanguageContext, at
/// start OT_CMP_NO_WILDCARDS. Only the classes of this header know 0xffff: operations that take
/// stored values, and OtStrCmp, take it as all bits set. Without any bit, 0: all four levels, and
/// the second text is a pattern.
///
/// Text without a code set (OT_CS_NONE) on both sides is compared byte by byte and knows only the
/// wildcards; all other bits have no effect on it.
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
/// @code
///   OtString text("cat");
///   text[0] = OtChar('b');                       // text == "bat"
///   OtChar place = text[0];                      // still the place
///   OtChar copy(place);                          // a value
///   copy = 'r';                                  // text == "bat"
///   place = 'r';                                 // text == "rat"
/// @endcode
/// A place is good as long as the text isn't changed otherwise. A character of two 16-bit units (a
/// surrogate pair) is two of these.
class OT95_EXPORT OtChar {
 public:
  OtChar(const OtChar& other);  ///< A value, also where `other` is a place; default language.
  // 0xff stands for the default language, and for the default code set of the argument's width.
  OtChar(unsigned short character, unsigned char codeSet = 0xff, unsigned char language = 0xff);
  OtChar(char character, unsigned char codeSet = 0xff, unsigned char language = 0xff);
  /// The character at `place`, which must outlive this. Though it is `const` here, assignment
  /// writes there.
  /// @param format byte order of two-byte characters: OT_FORMAT_BIG_ENDIAN, or the machine's.
  OtChar(const char* place, unsigned char codeSet = 0xff, unsigned char language = 0xff,
         unsigned char format = 0xff);
  /// The character of `text` that starts at that byte; the offset isn't checked.
  OtChar(OtString& text, int byteOffset);

  /// A value becomes a copy; at a place, the character is mapped to its code set and written in its
  /// format.
  OtChar& operator=(const OtChar& other);
  // Writes the bare unit: at a place, too, it isn't mapped.
  OtChar& operator=(char character);
  OtChar& operator=(unsigned short character);

  /// The character in another code set, or its substitute there; 0 keeps this one.
  OtChar MapTo(unsigned char codeSet) const;
  /// The capital, or this character where there is none.
  /// @param source receives the further characters of a longer capital (of "ß" the second S) as
  ///   pending ones; null drops them.
  OtChar ToUpper(OtStringIterator* source) const;
  /// The small letter, or this character.
  /// @param source stands at the character and tells what follows, by which a capital sigma finds
  ///   its small form; may be null.
  OtChar ToLower(OtStringIterator* source) const;

  // The class of the character's order, 1 or 0. No language and no neighbour plays a part.
  int IsSpace() const;   ///< White space, and the zero character.
  int IsSymbol() const;  ///< Punctuation and other signs.
  int IsDigit() const;
  int IsAlpha() const;  ///< A letter of an alphabet.
  int IsHan() const;    ///< An ideograph or another character beyond the alphabets.

  /// Three-way comparison of the two characters alone, by their collation. The operators compare
  /// with the default op and have the default language for a bare `other`.
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
  /// The numbers that it was made with, defaults resolved.
  unsigned char GetCodeSetCode() const { return codeSet_; }
  unsigned char GetLanguageCode() const { return language_; }
  /// The byte order of a place; OT_FORMAT_NATIVE for a value.
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

/// Walks a text of either width, character by character or order by order. The text must be
/// terminated, and outlive the iterator unchanged; only the one over an OtChar owns its text.
/// @code
///   OtString text("\xc6\x62");                    // "Æb" in the base 8-bit set
///   int orders = 0;
///   for (OtStringIterator it(text); it.GetNextOrder(0) != 0;) ++orders;   // an expansion: A, E
///   bool expanded = orders == 3;                 // expanded == true
///   int letters = 0;
///   for (OtStringIterator it(text); !it.IsEOS(); ++it) letters += (*it).IsAlpha();
///   bool both = letters == 2;                    // both == true
/// @endcode
/// *Pending* characters (SetOverflow) come before the text goes on: the rest of a capital that is
/// longer than its letter, or further orders of an expansion.
class OT95_EXPORT OtStringIterator {
 public:
  OtStringIterator();                               ///< At the end of no text.
  OtStringIterator(const OtStringIterator& other);  ///< Without what is pending there.
  explicit OtStringIterator(OtString& text);
  OtStringIterator(const char* text, unsigned char codeSet = 0xff, unsigned char language = 0xff,
                   unsigned char format = 0xff);
  OtStringIterator(unsigned short* text, unsigned char codeSet = 0xff,
                   unsigned char language = 0xff, unsigned char format = 0xff);
  /// Over a text of this one character, which the iterator owns.
  explicit OtStringIterator(OtChar& character);
  ~OtStringIterator();
  /// The same place, with what is pending there. A text of its own is given up.
  OtStringIterator& operator=(const OtStringIterator& other);

  // One character on or back. On: nothing moves while characters are pending, and the end isn't
  // looked for: ask IsEOS before. Back: what is pending isn't looked at, nor is the beginning.
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
  /// The character here, a place that can be assigned to; reading a pending one uses it up.
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

  /// The byte at which the current character starts; null without a text.
  const char* GetPosition() const { return position_; }
  unsigned char GetCodeSetCode() const { return codeSet_; }
  unsigned char GetLanguageCode() const { return language_; }
  /// Script byte of the last order that was asked for with it; before, that of the language. It
  /// ranks alphabets against each other; 0x14 is what has none.
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
  /// What stands in the place of `c`. Further characters go to `source` as pending ones.
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

/// An owned, terminated text with its code set and language. It is two pointers wide, the stride of
/// string arrays; the text lies on the heap, in exactly the bytes that it needs.
///
/// | State | IsEmpty | IsNullValue | StrGet |
/// |---|---|---|---|
/// | a text | 0 | 0 | the text |
/// | no text, with or without a buffer | 1 | 0 | "" |
/// | null | 1 | 1 | "" |
///
/// **Limit.** At most 65,532 bytes with the terminator: 65,531 characters of one byte, 32,765 of
/// two. A text that grows beyond it is reported to OTDB_assert ("String overflow", unless the
/// setting stringOverflow in the section [debug] is 0), not cut; MemLen then wraps, and the string
/// can't be stored.
///
/// One thread at a time may use a string.
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
  OtString(short number);  ///< Numbers are decimal text, with a point, in every locale.
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

  // What engines do with strings in raw storage.
  void Init();     ///< Empty, with defaults, freeing nothing: for raw storage.
  void Destroy();  ///< Frees the text; code set and language become 0.
  /// Takes over text, code set and language of `other`, which is left without a text.
  void Destruct(OtString& other);
  /// Destroy, as an object that leaves memory calls it.
  void d_deactivate() { Destroy(); }

  /// The terminated text, of either width; never null. Without a buffer it is a shared empty text,
  /// which must not be written to. Any change of the string ends its validity.
  char* StrGet() const;
  /// Characters before the terminator, found by a scan.
  unsigned short Len() const;
  /// Bytes of the buffer with the terminator, modulo 65,536; 0 without a buffer. More than the text
  /// needs after CopyMapped.
  unsigned short MemLen() const { return memLen_; }
  int IsEmpty() const;  ///< 1 without a text or with an empty one.
  int operator!() const { return IsEmpty(); }
  /// Language OT_LANG_NULL, or code set OT_CS_ORDER with language 0. An empty text is not null.
  int IsNullValue() const;
  int SetNullValue();  ///< Makes it null, freeing the text. Always 0.
  unsigned char GetCodeSetCode() const { return codeSet_; }
  unsigned char GetLanguageCode() const { return language_; }
  /// Another language for the same text; OT_LANG_NULL makes the string null.
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

  // The process-wide defaults (OtLanguageContext in oin.h). Setting them belongs to start-up; a
  // number that can't be a default is ignored.
  static unsigned char GetDefaultCodeSet() { return OtLanguageContext::GetDefaultCodeSet(); }
  static void SetDefaultCodeSet(unsigned char codeSet);
  static unsigned char GetDefaultLanguage() { return OtLanguageContext::GetDefaultLanguage(); }
  static void SetDefaultLanguage(unsigned char language);
  static unsigned short GetDefaultCmpOp() { return OtLanguageContext::GetDefaultCmpOp(); }
  static void SetDefaultCmpOp(unsigned short cmpOp);
  static unsigned char GetDefault8CodeSet() { return OtLanguageContext::GetDefault8CodeSet(); }
  static unsigned char GetDefault16CodeSet() { return OtLanguageContext::GetDefault16CodeSet(); }
  /// One empty string for the whole process, to return by reference.
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

  /// Three-way comparison by collation: negative when this comes first; only the sign is meant. It
  /// goes by levels, see the top of this file. With wildcards on, `other` is a pattern, and 0 means
  /// that it matches. Bare texts have the default language and code set of their width.
  ///
  /// The relations compare with the default op. A default op that ignores case thus makes "a" equal
  /// to "A", also for `==` and `<`.
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
  /// The first or the last `n` characters, or all; of none, an empty string as by Copy. A surrogate
  /// pair that would be cut in half is left out.
  OtString Left(unsigned short n) const;
  OtString Right(unsigned short n) const;
  OtString& LeftTrim();  ///< Removes what IsSpace at the start.
  OtString& RightTrim();
  OtString& Trim();
  OtString&
  ToUpper();  ///< Capitals, by the language. One may be longer than its letter: "ß", "SS".
  /// Small letters, by the language. A capital sigma at the end of a word becomes the final one.
  OtString& ToLower();
  /// Every character becomes what `op` makes of it. Pending characters that `op` gives to its
  /// iterator follow, each passed through `op`; the text grows as it has to.
  OtString& Transform(OtCharOperation& op);
  OtString& operator+=(const OtString& text);  ///< Appends, in this string's code set.
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
  // empty pattern is nowhere, nor is one of characters that weigh nothing.
  // @return the place, cut to 16 signed bits; -1 for none.
  short Find(const OtString& pattern, unsigned short start = 0,
             unsigned short cmpOp = OT_CMP_DEFAULT) const;
  short Find(char c, unsigned short start = 0, unsigned short cmpOp = OT_CMP_DEFAULT) const;
  short Find(unsigned short c, unsigned short start = 0,
             unsigned short cmpOp = OT_CMP_DEFAULT) const;
  /// Find from the start.
  short SubStringPos(const OtString& pattern, unsigned short cmpOp = OT_CMP_DEFAULT) const;
  /// Every place of `from`, found by the default comparison op, becomes `to`. What was put in isn't
  /// searched again.
  OtString& ReplaceAll(const OtString& from, const OtString& to, unsigned short start = 0);
  OtString& ReplaceAll(char from, char to, unsigned short start = 0);
  OtString& ReplaceAll(unsigned short from, unsigned short to, unsigned short start = 0);

  /// Wildcards are order words: every character of the same word acts as the wildcard. Setting them
  /// belongs to start-up; always 0. Text without a code set has "*" and "?" whatever is set here.
  static int SetAsterisk(const OtChar& c);
  static int SetQuestion(const OtChar& c);
  static int SetEscape(const OtChar& c);  ///< Kept, but patterns have no escape.
  // The order words that are set; at start those of "*", "?" and "\".
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

/// Compares two terminated texts by collation in levels, the second as a pattern unless `cmpOp`
/// says no. A null text is an empty one.
/// @param cmpOp as it stands: here 0xffff is no default, but all of its bits, hence whole keys.
/// @param maxChars orders compared on each side; negative: all; 0: the answer is 0.
/// @param format byte order of two-byte characters: OT_FORMAT_BIG_ENDIAN, or the machine's.
/// @param primaryOut receives the primary difference where OT_CMP_IGNORE_SPACE is set and maxChars
///   isn't reached; may be null.
/// @return negative, zero, positive: only the sign is meant.
OT95_EXPORT long OtStrCmp(unsigned char codeSet1, unsigned char language1, const char* text1,
                          unsigned char codeSet2, unsigned char language2, const char* text2,
                          unsigned short cmpOp = 0xffff, short maxChars = -1,
                          unsigned char format = 0xff, int* primaryOut = nullptr);

/// Comparer of the row OtString, by the contract of OtCompareFunc (typemgr.h). It takes strings in
/// memory, stored records of both forms, and index keys, whole or cut by their lengths. Where a cut
/// leaves the answer open, `status` becomes OT_ERR_END_OF_DATA, and the answer says what the bytes
/// at hand say; a record that is cut at 254 bytes or more can't be judged: OT_ERR_NOT_SUPPORTED and
/// -1.
OT95_EXPORT long StringCompare(unsigned char format, unsigned long length1, void* value1,
                               unsigned long length2, void* value2, unsigned short cmpOp,
                               unsigned long count, int& status);

/// Hash of a text by its collation orders: equal in every level, equal hash, also in another code
/// set. It is finer than a comparison that ignores case. The null string has 0xfefe7575. Text
/// without a code set is hashed by its bytes.
/// @param length orders to take; -1: to the end.
OT95_EXPORT unsigned long HashString(unsigned char codeSet, unsigned char language,
                                     const char* text, long length, unsigned char format = 0xff);
OT95_EXPORT unsigned long HashOtString(const OtString& text);   ///< Of the raw characters.
OT95_EXPORT unsigned long HashOtString7(const OtString& text);  ///< Of their low seven bits.

/// Store, Load and SizeGet of the row OtString, by the contracts of OtTypeDescriptor (typemgr.h).
///
///     | length (2) | code set (1) | language (1) | text | 00 ff |    length: of what follows
///
/// Load also knows the old form, `| total (2) | text 00 | text 00 | ... |`, whose last byte is 0.
OT95_EXPORT unsigned long StringStore(void* disk, const void* memory, unsigned char format,
                                      unsigned long count = 1);
OT95_EXPORT unsigned long StringLoad(void* memory, const void* disk, unsigned char format,
                                     unsigned long count = 1);
OT95_EXPORT unsigned long StringSizeGet(const void* value, unsigned char sourceFormat,
                                        unsigned char diskFormat, unsigned long count = 1);

/// Takes the next item of a list apart, trimmed, from `pos` on, which moves behind it. A separator
/// at the very start is passed over; elsewhere two in a row enclose an empty item.
/// @code
///   OtString list("red, green,,blue"), item;
///   unsigned short pos = 0;
///   int items = 0;
///   while (OtSplitList(list, item, ",", pos) == 0) ++items;
///   bool four = items == 4;                      // four == true
/// @endcode
/// @return 0, or OT_ERR_NO_MORE_ITEMS with `item` untouched.
OT95_EXPORT int OtSplitList(OtString& list, OtString& item, const OtString& separator,
                            unsigned short& pos);

/// Take an order word apart: 0, or OT_ERR_BAD_ARGUMENT for a word of another class. A case field of
/// 0 is a capital; letter 3 is "A"; an extension that isn't 0 marks a letter beyond the base
/// alphabet, such as "þ".
OT95_EXPORT int OtExtractSymbolFromOrder(unsigned short order, unsigned short& symbol);
OT95_EXPORT int OtExtractDigitFromOrder(unsigned short order, unsigned short& digit,
                                        unsigned short& expand);
OT95_EXPORT int OtExtractLetterFromOrder(unsigned short order, unsigned short& caseField,
                                         unsigned short& accent, unsigned short& letter,
                                         unsigned short& extension);
/// Render an order word as a phrase ("lower letter e with accent acute"), or as a character near it
/// in the base 8-bit set: 0x07 for what can't be rendered, 0x7f for Han. They are for people who
/// read index keys. Always 0.
/// @param searchAccented non-zero: look for the accented letter, not its plain one.
/// @param name receives the letter's name if it was looked for and found, or null; may be null.
OT95_EXPORT int OtConvertOrderToString(unsigned short order, unsigned char script, OtString& text);
OT95_EXPORT int OtConvertOrderToChar(unsigned short order, unsigned char script,
                                     unsigned char& character, int searchAccented,
                                     const char** name = nullptr);

/// @name UTF-8
/// In its early form, with sequences of up to six bytes. Characters on the other side are 16-bit
/// units: of a sequence of four bytes and more only the low 16 bits are kept, and a surrogate is
/// written as three bytes of its own. Bytes that are no UTF-8 end an operation; overlong forms are
/// refused.
/// @{

/// Decodes the character at `s`, of which `n` bytes are at hand.
/// @return bytes read; 0 for a null `s`; -1 for bad or incomplete input.
OT95_EXPORT int OtMultiByte2WChar(unsigned short* out, char* s, unsigned int n);
/// Encodes one unit; `out` has room for three bytes.
/// @return bytes written, 1 to 3; 0 for a null `out`. No terminator.
OT95_EXPORT int OtWChar2MultiByte(char* out, unsigned short wc);
/// Decodes `n` bytes into up to `outMax` units, without a terminator.
/// @return units decoded, also beyond `outMax`, so that a call with 0 measures; -1 for bad input.
OT95_EXPORT int OtMultiByteStr2WCharStr(unsigned short* out, int outMax, char* s, int n);
/// As OtMBS2OtString, from a string that holds the bytes, or from `n` bytes.
OT95_EXPORT long OtMultiByteString2OtString(const OtString& source, OtString& target);
OT95_EXPORT long OtMultiByteString2OtString(const char* s, OtString& target, long n);
/// Decodes up to `n` bytes, or up to a zero byte. `target` becomes 16-bit Unicode and keeps its
/// language.
/// @return bytes read; -1 for bad input, -2 for 32,768 bytes and more: `target` then holds what
/// came
///   before.
OT95_EXPORT long OtMBS2OtString(const char* s, OtString& target, long n);
/// Encodes into `outMax` bytes at `out`, with a terminator if there is room for one: a text that
/// fills `out` exactly has none.
/// @return bytes written; negative when `out` is too small.
OT95_EXPORT long OtString2OtMBS(const OtString& source, char* out, long outMax);
/// The same with a terminator and of any length.
/// @param out a buffer of `outLen` bytes, or null: then allocated with `new[]` for the caller, who
///   frees it with `delete[]`; `outLen` becomes its size.
/// @return bytes without the terminator; -1 when the buffer is too small, with the need in
/// `outLen`.
OT95_EXPORT long OtString2MultiByteString(const OtString& source, char*& out, long& outLen);
/// Bytes that up to `maxChars` characters need; -1 on failure.
OT95_EXPORT long OtMBSLength(const OtString& source, unsigned short maxChars);
/// @}

#endif
