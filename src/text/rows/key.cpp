/// The key of a text: its order words, for as long as its script stays the same.

#include "ot95/fault.h"
#include "text/collation/plainkeys.h"
#include "text/rows/row.h"
#include "text/rows/stored.h"

namespace ot95 {
namespace {

/// A key of more room than this always gets its terminator, at the cost of its last word.
constexpr std::size_t kMaxCutKey = 0x100;

/// The words of a key that is being written, and the script that all of them are of.
class KeyWords {
 public:
  KeyWords(char* key, std::size_t room, bool reversed)
      : key_(key), room_(room), reversed_(reversed) {}

  bool IsEmpty() const { return size_ == kHeaderSize; }
  bool IsFull() const { return size_ >= room_; }
  std::size_t size() const { return size_; }
  unsigned char script() const { return static_cast<unsigned char>(script_); }

  void SetScript(unsigned char script) { script_ = script; }
  void Store(unsigned short order) {
    StoreUnit(key_ + size_, order, true, reversed_);
    size_ += 2;
  }
  void DropLast() {
    if (!IsEmpty()) size_ -= 2;
  }
  /// Takes a plain key if there is room and its script is that of the words.
  bool Take(std::uint32_t plain) {
    if (IsFull() || plain >> 24 != script_) return false;
    Store(OrderOfKey(plain));
    return true;
  }
  /// The same, where the first one tells the script.
  bool TakeOrBegin(std::uint32_t plain) {
    if (IsFull()) return false;
    if (plain >> 24 != script_) [[unlikely]] {
      if (!IsEmpty()) return false;
      script_ = plain >> 24;
    }
    Store(OrderOfKey(plain));
    return true;
  }

 private:
  char* key_;
  std::size_t size_ = kHeaderSize;
  std::size_t room_;
  bool reversed_;
  std::uint32_t script_ = 0;
};

/// Adds the words of a text behind those of a stretch. @return whether they are all.
[[gnu::noinline]] bool AddByWalk(KeyWords& target, const KeySource& source,
                                 const PlainStretch& stretch) {
  KeyWords words = target;
  OrderWalk walk(source.text);
  walk.GoOnBehind(stretch);
  if (words.IsEmpty() && !source.text.IsNullValue()) words.SetScript(walk.script());
  bool complete = false;
  while (!words.IsFull() && !complete) {
    walk.TakePlain([&words](std::uint32_t plain) { return words.Take(plain); });
    if (words.IsFull()) break;
    unsigned short order = OrderOfKey(walk.NextKey(true));
    if (order == 0 && source.cut) break;
    if (walk.script() != words.script()) {
      if (!words.IsEmpty()) {
        words.SetScript(words.script() | kMixedScripts);
        order = 0;
      } else if (order != 0) {
        words.SetScript(walk.script());
      }
    }
    complete = order == 0;
    if (!complete) words.Store(order);
  }
  target = words;
  return complete;
}

/// Adds the words of a text. @return whether they are all.
[[gnu::always_inline]] inline bool AddText(KeyWords& words, const KeySource& source) {
  const PlainStretch stretch =
      RunFromStart(source.text, [&words](std::uint32_t plain) { return words.TakeOrBegin(plain); });
  if (stretch.all && !words.IsEmpty() && !words.IsFull()) return !source.cut;
  KeyWords more = words;
  const bool complete = AddByWalk(more, source, stretch);
  words = more;
  return complete;
}

}  // namespace

std::size_t BuildKey(unsigned char* target, std::size_t room, unsigned char targetFormat,
                     const KeySource& source) {
  room &= ~std::size_t{1};
  char* const key = reinterpret_cast<char*>(target);
  KeyWords words(key, room, IsReversed(targetFormat));
  bool complete = AddText(words, source);
  if (!complete && room > kMaxCutKey) {
    words.DropLast();
    complete = true;
  }
  const std::size_t size = words.size();
  if (size > 0xffff) OTDB_assert("(OtDWord)_nLen == nLen", "ottypes", 1356);
  StoreLength(key, size, targetFormat);
  target[2] = OT_CS_ORDER;
  target[3] = words.script();
  if (!complete) return size;
  target[size] = 0;
  target[size + 1] = 0xff;
  return size + kTerminatorSize;
}

}  // namespace ot95
