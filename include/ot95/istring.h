#ifndef OT95_ISTRING_H
#define OT95_ISTRING_H

/// @file
/// OtIString and OtCaseIString, the strings of older schemas: 8-bit text in the Latin code page of
/// western desktops, without code set and language, with a collation of its own.
///
/// New schemas use OtString (text.h). Both classes here are one implementation:
///
/// | | OtIString | OtCaseIString |
/// |---|---|---|
/// | Case of a letter | never counts | never counts |
/// | Accent of a letter | never counts | counts with OT_ISTR_CASE on the left side |
/// | 0x9c, the ligature oe | sorts behind n | sorts as o, e |
/// | Wildcards of the row's comparer match | plain bytes | collation bytes |
/// | A key loads as | its bytes | the text that they stand for |
///
/// @code
///   OtIString name("abc");                        // name == "ABC"
///   name.Insert("x", 1).ToUpper();                // name.Len() == 4
///   char second = name[1];                        // second == 'X'
///   OtCaseIString plain("abc");                   // plain == "\xe1" "bc"
///   plain.flags = OT_ISTR_CASE;                   // plain != "\xe1" "bc"
/// @endcode
///
/// **Collation.** Each byte becomes a collation byte, letters of both cases the same one; some
/// become two: the sharp s sorts as "ss", the ligature oe in OtCaseIString as o, e. A byte that is
/// an accented letter has an accent number beside it, which counts only where OT_ISTR_CASE asks for
/// it.
///
/// **Memory.** A string owns its text, which ends with a zero byte; the text is null when it was
/// never set. There is no null value. Positions count bytes. A position behind the end, or a length
/// of 0, changes nothing unless an operation says otherwise; lengths that go too far are cut. One
/// thread at a time may use a string.
///
/// **Stored form:** a byte 0x40, a 16-bit length of what follows, then the texts of the array, each
/// with its zero byte.

#include "ot95/base.h"

class OtIString;
class OtCaseIString;

/// Bits of the flags of a legacy string.
enum : unsigned char {
  OT_ISTR_CASE = 0x20,  ///< On the left side of a comparison of OtCaseIString: accents count.
  OT_ISTR_TEXT = 0x40,  ///< Plain text, as without any flag.
  OT_ISTR_KEY = 0x80    ///< The bytes are collation bytes already, as in an index key.
};

/// What both classes are; `Self` is the class that stands on it.
template <class Self>
class OT95_EXPORT OtLegacyString {
 public:
  char* text;           ///< The owned, terminated text; null when it was never set, or cut away.
  unsigned char flags;  ///< 0 unless loaded from a key, or set by the user.

  OtLegacyString() : text(nullptr), flags(0) {}
  // A copy of the text; none for a null pointer, the zero character, or length 0.
  OtLegacyString(const char* source);
  OtLegacyString(char character);
  OtLegacyString(const char* source, unsigned long length);  ///< Exactly `length` bytes.
  // Numbers as decimal text.
  OtLegacyString(short number);
  OtLegacyString(int number);
  OtLegacyString(long number);
  OtLegacyString(unsigned long number);
  OtLegacyString(long long number);
  OtLegacyString(unsigned long long number);
  OtLegacyString(double number);                ///< With six digits behind the point.
  OtLegacyString(const OtLegacyString& other);  ///< Text and flags.
  ~OtLegacyString();
  OtLegacyString& operator=(const OtLegacyString& other);

  // Decimal numbers; 0 without text. Integers are cut at the 32-bit range.
  operator int() const;
  operator short() const;
  operator long() const;
  operator double() const;

  // Comparison by collation, as far as the flags let it. There are no patterns here: "*" is a
  // character. A string without text comes before every other.
  // Friends, so that both sides convert alike: as members they would be ambiguous in C++20.
  friend bool operator==(const Self& a, const Self& b) { return a.Compare(b) == 0; }
  friend bool operator!=(const Self& a, const Self& b) { return a.Compare(b) != 0; }
  friend bool operator<(const Self& a, const Self& b) { return a.Compare(b) < 0; }
  friend bool operator>(const Self& a, const Self& b) { return a.Compare(b) > 0; }
  friend bool operator<=(const Self& a, const Self& b) { return a.Compare(b) <= 0; }
  friend bool operator>=(const Self& a, const Self& b) { return a.Compare(b) >= 0; }
  friend bool operator==(const Self& a, const char* b) { return a.Compare(Self(b)) == 0; }
  friend bool operator!=(const Self& a, const char* b) { return a.Compare(Self(b)) != 0; }
  friend bool operator<(const Self& a, const char* b) { return a.Compare(Self(b)) < 0; }
  friend bool operator>(const Self& a, const char* b) { return a.Compare(Self(b)) > 0; }
  friend bool operator<=(const Self& a, const char* b) { return a.Compare(Self(b)) <= 0; }
  friend bool operator>=(const Self& a, const char* b) { return a.Compare(Self(b)) >= 0; }
  /// True without a text and with an empty one.
  bool operator!() const { return text == nullptr || *text == 0; }

  /// The byte at `index`, which is not checked.
  char& operator[](int index) { return text[index]; }
  unsigned long Len() const;                               ///< Bytes before the terminator.
  const char* StrGet() const { return text ? text : ""; }  ///< The text; never null.

  // Appending; the operand may be this string itself.
  Self& operator+=(const Self& other);
  Self operator+(const Self& other) const;
  Self operator+(const char* other) const { return *this + Self(other); }
  /// Puts `other` before position `pos`, or at the end when that is behind it.
  Self& Insert(const Self& other, unsigned long pos);
  /// Overwrites from `pos` on, never beyond the end.
  Self& Replace(const Self& other, unsigned long pos);
  /// Sets the first `n` bytes to `c`, and grows for it.
  Self& Fill(unsigned long n, char c);
  /// Appends `c` up to a length of `n`.
  Self& Expand(unsigned long n, char c);
  /// Removes up to `n` bytes from `pos` on; what is left without any has no text.
  Self& Cut(unsigned long pos, unsigned long n = ~0UL);
  /// Up to `n` bytes from `pos` on; behind the end, a string without text.
  Self Copy(unsigned long pos, unsigned long n = ~0UL) const;
  Self& ToUpper();  ///< Letters of the code page, accented ones included.
  Self& ToLower();
  Self& SpaceToZero();  ///< Each blank becomes the digit 0.
  Self& ZeroToSpace();  ///< Each digit 0 becomes a blank.
  /// First position of these very bytes, or -1; -1 also for an empty `other`.
  long SubStringPos(const Self& other) const;

 private:
  long Compare(const Self& other) const;
  Self& self() { return static_cast<Self&>(*this); }
};

extern template class OtLegacyString<OtIString>;
extern template class OtLegacyString<OtCaseIString>;

/// The plain string of older schemas: case and accents don't count.
class OT95_EXPORT OtIString : public OtLegacyString<OtIString> {
 public:
  using OtLegacyString::OtLegacyString;
  OtIString() = default;
};

/// Its sibling, in which accents can count.
class OT95_EXPORT OtCaseIString : public OtLegacyString<OtCaseIString> {
 public:
  using OtLegacyString::OtLegacyString;
  OtCaseIString() = default;
};

static_assert(sizeof(OtIString) == 2 * sizeof(void*) && sizeof(OtCaseIString) == sizeof(OtIString),
              "the stride of string arrays");

/// Comparers of the two rows, by the contract of OtCompareFunc (typemgr.h). With wildcards on
/// (neither bit 0x10 nor 0x100 in `cmpOp`), the second value is a pattern of "*" for any run, "?"
/// for one byte, and the escape "\", behind which "n", "r" and "t" are control characters; a match
/// answers 0 and no match 1. The hash of both rows is 0 for every text, because equal texts can
/// differ in all their bytes.
OT95_EXPORT long OtIStringCompare(unsigned char format, unsigned long length1, void* value1,
                                  unsigned long length2, void* value2, unsigned short cmpOp,
                                  unsigned long count, int& status);
OT95_EXPORT long OtCaseIStringCompare(unsigned char format, unsigned long length1, void* value1,
                                      unsigned long length2, void* value2, unsigned short cmpOp,
                                      unsigned long count, int& status);

#endif
