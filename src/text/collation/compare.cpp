/// Comparison of text: what kind of walk two texts take, and the walk by whole keys.

#include "text/collation/compare.h"

#include "text/collation/walk.h"

namespace ot95 {
namespace {

int CompareWholeKeys(OrderWalk walk1, OrderWalk walk2, long maxChars) {
  for (long step = 0; maxChars < 0 || step < maxChars; ++step) {
    const std::uint32_t key1 = walk1.NextKey(true);
    const std::uint32_t key2 = walk2.NextKey(true);
    if (key1 != key2) return Sign(key1, key2);
    if (key1 == 0) break;
  }
  return 0;
}

int ComparePlain(LevelWalk& walk, int* primaryOut) {
  bool goesOn = true;
  while (goesOn) {
    goesOn = walk.Pass();
    if (primaryOut != nullptr && walk.Reports()) *primaryOut = walk.Primary();
  }
  return walk.Decide();
}

/// A raw text that meets one of characters is one of the native set.
TextSpan AsCharacters(const TextSpan& span) {
  TextSpan text = span;
  if (text.codeSet == 0) text.codeSet = OtLanguageContext::GetNativeCodeSet();
  return text;
}

[[gnu::noinline]] long CompareWalking(const TextSpan& text, const TextSpan& pattern,
                                      unsigned short cmpOp, long maxChars, int* primaryOut,
                                      bool shortcuts) {
  const OrderWalk walk1(AsCharacters(text));
  const OrderWalk walk2(AsCharacters(pattern));
  if ((cmpOp & OT_CMP_ORDER_ONLY) != 0) return CompareWholeKeys(walk1, walk2, maxChars);
  const bool keyText = text.codeSet == OT_CS_ORDER || pattern.codeSet == OT_CS_ORDER;
  LevelWalk walk(walk1, walk2, Levels(cmpOp), keyText, maxChars);
  if ((cmpOp & OT_CMP_NO_WILDCARDS) == 0) return MatchPattern(walk, shortcuts, primaryOut);
  return ComparePlain(walk, primaryOut);
}

long Compare(const TextSpan& text, const TextSpan& pattern, unsigned short cmpOp, long maxChars,
             int* primaryOut, bool shortcuts) {
  const bool plainText = (cmpOp & (OT_CMP_NO_WILDCARDS | OT_CMP_ORDER_ONLY)) != 0;
  if (pattern.IsNullValue()) return text.IsNullValue() ? 0 : 1;
  if (text.IsNullValue() && plainText) return -1;
  if (maxChars == 0) return 0;
  if (text.codeSet == 0 && pattern.codeSet == 0) {
    return plainText ? CompareBytes(text, pattern, maxChars) : MatchBytes(text, pattern, maxChars);
  }
  return CompareWalking(text, pattern, cmpOp, maxChars, primaryOut, shortcuts);
}

}  // namespace

long WalkSpans(const TextSpan& text, const TextSpan& pattern, unsigned short cmpOp) {
  return Compare(text, pattern, cmpOp, -1, nullptr, true);
}

long CompareSpans(const TextSpan& text, const TextSpan& pattern, unsigned short cmpOp,
                  long maxChars, int* primaryOut) {
  if (maxChars < 0 && (cmpOp & OT_CMP_ORDER_ONLY) == 0 && RunInStep(text, pattern)) {
    const long sign = (cmpOp & OT_CMP_NO_WILDCARDS) != 0 ? CompareInStep(text, pattern, cmpOp)
                                                         : MatchInStep(text, pattern, cmpOp);
    if (sign != kUndecided) return sign;
  }
  return Compare(text, pattern, cmpOp, maxChars, primaryOut, true);
}

long CompareSpansPlainly(const TextSpan& text, const TextSpan& pattern, unsigned short cmpOp,
                         long maxChars, int* primaryOut) {
  return Compare(text, pattern, cmpOp, maxChars, primaryOut, false);
}

long WildcardPlace(const TextSpan& pattern, bool ignoreQuestion, unsigned long maxChars,
                   unsigned short* bytesOut) {
  unsigned short bytes = 0;
  long place = -1;
  if (pattern.codeSet == 0) {
    for (unsigned long i = 0; i < maxChars && place < 0; ++i) {
      const unsigned short byte = pattern.UnitAt(pattern.text + i);
      if (byte == 0) break;
      if (byte == '*' || (byte == '?' && !ignoreQuestion)) place = static_cast<long>(i);
    }
    bytes = static_cast<unsigned short>(place);
  } else {
    OrderWalk walk(pattern);
    for (unsigned long i = 0; i < maxChars && place < 0; ++i) {
      const unsigned short order = OrderOfKey(walk.NextKey(true));
      if (order == 0) break;
      if (order == AsteriskWord() || (order == QuestionWord() && !ignoreQuestion)) {
        place = static_cast<long>(i);
      } else {
        bytes = static_cast<unsigned short>(walk.position() - pattern.text);
      }
    }
  }
  if (bytesOut != nullptr) *bytesOut = place < 0 ? static_cast<unsigned short>(0xffff) : bytes;
  return place;
}

short OtStrWildcardPos(unsigned char codeSet, unsigned char language, const char* text,
                       unsigned short ignoreQuestion, unsigned short maxChars,
                       unsigned short* bytesOut, unsigned char format) {
  const bool reversed = codeSet != OT_CS_ORDER && IsReversed(format);
  return static_cast<short>(WildcardPlace(TextSpan::Terminated(text, codeSet, language, reversed),
                                          ignoreQuestion != 0, maxChars, bytesOut));
}

}  // namespace ot95

namespace ot95 {
namespace {

/// One of the two texts that OtStrCmp is given.
struct LabelledText {
  unsigned char codeSet;
  unsigned char language;
  const char* text;

  TextSpan Span(bool reversed) const {
    const unsigned char set =
        codeSet != OT_CS_DEFAULT ? codeSet : OtLanguageContext::GetDefault8CodeSet();
    return TextSpan::Terminated(text, set, language, reversed && set != OT_CS_ORDER);
  }
};

[[gnu::noinline]] long CompareLabelled(LabelledText text1, LabelledText text2, unsigned short cmpOp,
                                       short maxChars, unsigned char format, int* primaryOut) {
  const bool reversed = format != 0xff && IsReversed(format);
  return CompareSpans(text1.Span(reversed), text2.Span(reversed), cmpOp, maxChars, primaryOut);
}

}  // namespace
}  // namespace ot95

/// Matching raw bytes is little work, and no more is done for it.
long OtStrCmp(unsigned char codeSet1, unsigned char language1, const char* text1,
              unsigned char codeSet2, unsigned char language2, const char* text2,
              unsigned short cmpOp, short maxChars, unsigned char format, int* primaryOut) {
  constexpr unsigned kPlainText = OT_CMP_NO_WILDCARDS | OT_CMP_ORDER_ONLY;
  const bool matches = (cmpOp & kPlainText) == 0 && maxChars != 0;
  if (matches && (codeSet1 | codeSet2) == 0 && language2 != OT_LANG_NULL) {
    // Where there is no text at all, not even a star matches.
    if (text1 == nullptr) return text2 == nullptr || *text2 == 0 ? 0 : -1;
    if (maxChars < 0 && text2 != nullptr) return ot95::MatchRaw(text1, text2);
  }
  return ot95::CompareLabelled({codeSet1, language1, text1}, {codeSet2, language2, text2}, cmpOp,
                               maxChars, format, primaryOut);
}
