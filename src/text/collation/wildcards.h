#ifndef OT95_SRC_TEXT_COLLATION_WILDCARDS_H
#define OT95_SRC_TEXT_COLLATION_WILDCARDS_H

#include <atomic>

#include "ot95/oin.h"

namespace ot95 {

/// A wildcard as its order word; 0 until it is set or first asked for. Threads that race on the
/// first use store the same word.
class WildcardWord {
 public:
  /// @param character of the base code set, which stands until another is set.
  constexpr explicit WildcardWord(unsigned char character) : character_(character) {}

  unsigned short Get() {
    const unsigned short word = word_.load(std::memory_order_relaxed);
    return word != 0 ? word : Compute();
  }
  /// The same, 0 if it isn't known yet: costs no call.
  unsigned short Known() const { return word_.load(std::memory_order_relaxed); }
  void Set(unsigned short word) { word_.store(word, std::memory_order_relaxed); }

 private:
  [[gnu::noinline]] unsigned short Compute() {
    const OtOrderTable* table = OtLanguageContext::QueryCodeSet(OT_CS_BASE8)->orderTable;
    const unsigned short word = table->At(character_).order();
    Set(word);
    return word;
  }

  std::atomic<unsigned short> word_{0};
  unsigned char character_;
};

// What matches any characters, any one character, and takes a wildcard's meaning away.
inline constinit WildcardWord asterisk(0x2a);
inline constinit WildcardWord question(0x3f);
inline constinit WildcardWord escape(0x5c);

inline unsigned short AsteriskWord() {
  return asterisk.Get();
}
inline unsigned short QuestionWord() {
  return question.Get();
}

}  // namespace ot95

#endif
