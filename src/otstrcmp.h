#ifndef OT95_SRC_OTSTRCMP_H
#define OT95_SRC_OTSTRCMP_H

/// @file
/// Comparison of text, from the inside: with known lengths, and in its plain form.

#include "orders.h"

namespace ot95 {

/// Compares two texts in levels, or matches the second as a pattern. All comparison ends here.
/// @param maxChars orders compared on each side; negative: all.
/// @param primaryOut null, or where the primary difference is reported.
long CompareSpans(const TextSpan& text, const TextSpan& pattern, unsigned short cmpOp,
                  long maxChars = -1, int* primaryOut = nullptr);

/// The same without any short cut: what the others are measured against.
long CompareSpansPlainly(const TextSpan& text, const TextSpan& pattern, unsigned short cmpOp,
                         long maxChars = -1, int* primaryOut = nullptr);

/// Matches raw bytes against a pattern with '*' and '?', by the rules of otbytematch.cpp.
/// @param maxChars bytes of the text that count; negative: all.
long MatchBytes(const TextSpan& text, const TextSpan& pattern, long maxChars);

/// Compares raw bytes; negative `maxBytes`: no limit.
long CompareBytes(const TextSpan& text1, const TextSpan& text2, long maxBytes);

/// Compares two terminated texts as unsigned bytes; null is an empty one. @param n 0: no limit.
long OtByteCompare(const char* a, const char* b, unsigned int n);

/// Orders (bytes in raw text) before the first wildcard of a pattern, or -1.
/// @param ignoreQuestion only the asterisk counts.
/// @param bytesOut null, or where the length of that prefix in bytes goes; 0xffff if there is no
///   wildcard.
long WildcardPlace(const TextSpan& pattern, bool ignoreQuestion, unsigned long maxChars,
                   unsigned short* bytesOut);
short OtStrWildcardPos(unsigned char codeSet, unsigned char language, const char* text,
                       unsigned short ignoreQuestion, unsigned short maxChars,
                       unsigned short* bytesOut, unsigned char format);

}  // namespace ot95

#endif
