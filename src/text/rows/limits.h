#ifndef OT95_SRC_TEXT_ROWS_LIMITS_H
#define OT95_SRC_TEXT_ROWS_LIMITS_H

/// @file
/// The scan limits of a text: what an operand or pattern says about the stretch of an index, as
/// keys. Keys and operands are only read, and no further than they reach.

#include "kit/estimate.h"
#include "text/rows/stored.h"

namespace ot95 {

/// A count of characters that bounds nothing.
constexpr unsigned noLimit = 0xffff;

/// How the records of a string row are laid out.
struct TextLayout {
  bool legacy;
  unsigned char form;

  std::size_t Header() const { return legacy ? 2 : kHeaderSize; }
  std::size_t Terminator() const { return legacy ? 1 : kTerminatorSize; }
  TextSpan Span(const unsigned char* text, std::size_t bytes, unsigned char codeSet,
                unsigned char language) const;
};

/// A text with the characters of it that count.
struct LineText {
  TextSpan span = TextSpan::Terminated(nullptr, 0, 0);
  unsigned chars = noLimit;
};

/// The text of a key, with the characters that a key of its length has room for.
LineText TextOfKey(const void* key, std::size_t keyLength, const TextLayout& layout);

/// The operand of a comparison, in its stored form.
class TextOperand {
 public:
  /// @param options the comparison options of the operator word.
  TextOperand(const void* value, unsigned char format, const TextLayout& layout,
              unsigned short options);

  unsigned char CodeSet() const { return codeSet_; }
  bool IsRaw() const { return codeSet_ == 0; }
  /// Characters before the first wildcard, or -1.
  long WildChars() const { return wildChars_; }
  bool IsPattern() const { return wildBytes_ >= 0; }
  /// Begins with a wildcard: no key bounds it.
  bool HasNoPrefix() const { return wildBytes_ == 0; }
  bool IgnoresCharacters() const;
  /// The bits of letters that the options ignore.
  unsigned short IgnoredBits() const {
    return static_cast<unsigned short>(caseMask_ | accentMask_);
  }
  LineText Text() const;

  /// Makes the lowest key that any text can have which satisfies the operand. Without memory there
  /// is none.
  void MakeLower(OtIdxBounds& limits) const;
  /// The same for the highest. `text` becomes the text of the key.
  void MakeUpper(OtIdxBounds& limits, LineText& text) const;

 private:
  void FindWildcard();
  bool IsCopied() const { return IsRaw() || codeSet_ == OT_CS_ORDER; }
  std::size_t UnitWidth() const { return IsRaw() ? 1 : 2; }
  std::size_t PrefixBytes() const;
  std::size_t KeyTextBytes() const;
  std::size_t WritePrefix(unsigned char* key, std::size_t end) const;
  std::size_t DropMarks(unsigned char* key, std::size_t textEnd) const;
  bool NeedsTop(const unsigned char* key, std::size_t textEnd) const;
  std::size_t PutTop(unsigned char* key, std::size_t textEnd, std::size_t end) const;
  void Widen(unsigned char* key, std::size_t textEnd, unsigned short clear,
             unsigned short set) const;
  void Finish(unsigned char* key, std::size_t textEnd, std::size_t keyLength) const;

  TextLayout layout_;
  std::size_t recordLength_;
  const unsigned char* text_;
  std::size_t bytes_;
  unsigned char codeSet_ = 0;
  unsigned char language_ = 0;
  unsigned short options_;
  unsigned short caseMask_ = 0;
  unsigned short accentMask_ = 0;
  long wildChars_ = -1;
  long wildBytes_ = -1;  ///< ... and the bytes before it.
};

}  // namespace ot95

#endif
