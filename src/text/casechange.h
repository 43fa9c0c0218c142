#ifndef OT95_SRC_TEXT_CASECHANGE_H
#define OT95_SRC_TEXT_CASECHANGE_H

#include <cstddef>
#include <cstdint>

#include "ot95/oin.h"

namespace ot95 {

enum class CaseOp { kUpper, kLower };

/// A character in its other case, or itself.
struct CaseChange {
  std::uint16_t unit;
  const OtWCharList* tail;  ///< The further characters of a longer capital, or null.
};

CaseChange ChangeCase(CaseOp op, std::uint16_t unit, unsigned char codeSet, unsigned char language);

/// Gives the characters of a terminated Unicode text their other case where they stand, up to the
/// terminator or to the first whose other case is longer. @param units readable, with the
/// terminator. @return how many were changed.
std::size_t ChangeCaseInPlace(CaseOp op, unsigned char language, char* text, std::size_t units);

/// Whether a character is the capital sigma, whose small form depends on what stands around it.
bool IsCapitalSigma(std::uint16_t unit, unsigned char codeSet);
/// Its small form in a code set, at the end of a word or within.
std::uint16_t SmallSigma(unsigned char codeSet, bool atEnd);

/// What a character says of the word that it stands in.
enum class InWord { kLetter, kPassed, kOutside };
InWord PartOfWord(std::uint16_t unit, unsigned char codeSet, unsigned char language);

}  // namespace ot95

#endif
