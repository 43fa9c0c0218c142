#ifndef OT95_SRC_TEXT_COLLATION_COMPARE_H
#define OT95_SRC_TEXT_COLLATION_COMPARE_H

/// @file
/// Comparison of text, from the inside: with known lengths, and in its plain form.

#include "text/collation/instep.h"

namespace ot95 {

/// Whether two texts run through the same records, unit by unit.
inline bool RunInStep(const TextSpan& text1, const TextSpan& text2) {
  if (text1.codeSet != text2.codeSet || text1.language != text2.language) return false;
  if (text1.reversed != text2.reversed || text1.language == OT_LANG_NULL) return false;
  return text1.codeSet != OT_CS_ORDER && text1.codeSet != 0;
}

/// Matches two texts that run in step. @return kUndecided if there are no keys for them.
long MatchInStep(const TextSpan& text, const TextSpan& pattern, unsigned short cmpOp);
/// The same of terminated Unicode in the machine's order. @param labels those of the text.
long MatchWide(WideKeys keys, const char* text, const char* pattern, TextLabels labels,
               unsigned short cmpOp);
/// The same by the walk.
long WalkSpans(const TextSpan& text, const TextSpan& pattern, unsigned short cmpOp);

/// Compares two texts in levels, or matches the second as a pattern. All comparison ends here.
/// @param maxChars orders compared on each side; negative: all.
/// @param primaryOut null, or where the primary difference is reported.
long CompareSpans(const TextSpan& text, const TextSpan& pattern, unsigned short cmpOp,
                  long maxChars = -1, int* primaryOut = nullptr);

/// The same without any short cut: what the others are measured against.
long CompareSpansPlainly(const TextSpan& text, const TextSpan& pattern, unsigned short cmpOp,
                         long maxChars = -1, int* primaryOut = nullptr);

/// Matches raw bytes against a pattern with '*' and '?', by the rules of bytematch.cpp.
/// @param maxChars bytes of the text that count; negative: all.
long MatchBytes(const TextSpan& text, const TextSpan& pattern, long maxChars);
/// The same of terminated texts.
long MatchRaw(const char* text, const char* pattern);

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
