/// The key of a text: its order words, for as long as its script stays the same.

#include <bit>

#include "ot95/fault.h"
#include "text/collation/finished.h"
#include "text/rows/row.h"
#include "text/rows/stored.h"

namespace ot95 {
namespace {

/// The script byte in a finished key.
constexpr std::uint32_t kScriptBits = 0x1f000000;

/// A key of more room than this always gets its terminator, at the cost of its last word.
constexpr std::size_t kMaxCutKey = 0x100;

/// The words of a key, behind its header.
struct Words {
  std::size_t bytes = 0;
  unsigned char script = 0;  ///< Of all of them.
  bool complete = false;     ///< The text ended with them, or its script.
};

/// By finished keys, where these are the whole answer and all of one script.
/// @param turns the bits by which a word is rotated to be in the order that is asked for.
/// @param takeKeys hands the keys of the text to its argument, and tells whether they are that.
/// @return no words where they aren't.
template <class Take>
[[gnu::always_inline]] inline Words WriteByKeys(char* target, int turns, Take&& takeKeys) {
  char* place = target;
  std::uint32_t any = 0;
  std::uint32_t all = kScriptBits;
  const bool whole = takeKeys([&](std::uint32_t key) {
    any |= key;
    all &= key;
    StoreWide(place, std::rotl(OrderOfKey(key), turns));
    place += 2;
  });
  if (!whole || ((any ^ all) & kScriptBits) != 0) return {};
  return {static_cast<std::size_t>(place - target), static_cast<unsigned char>(all >> 24), true};
}

/// Writes what stands around the words of a key. @return its bytes.
[[gnu::always_inline]] inline std::size_t Frame(unsigned char* target, int turns,
                                                const Words& words) {
  const std::size_t size = kHeaderSize + words.bytes;
  StoreWide(target, std::rotl(static_cast<std::uint16_t>(size), turns));
  target[2] = OT_CS_ORDER;
  target[3] = words.script;
  if (!words.complete) return size;
  target[size] = 0;
  target[size + 1] = 0xff;
  return size + kTerminatorSize;
}

int TurnsOf(unsigned char format) {
  return IsReversed(format) ? 8 : 0;
}

/// By the walk.
Words WriteByWalk(char* target, std::size_t room, int turns, const KeySource& source) {
  OrderWalk walk(source.text);
  Words words;
  if (!source.text.IsNullValue()) words.script = walk.script();
  while (words.bytes < room && !words.complete) {
    unsigned short order = OrderOfKey(walk.NextKey(true));
    if (order == 0 && source.cut) break;
    if (walk.script() != words.script) {
      if (words.bytes != 0) {
        words.script |= kMixedScripts;
        order = 0;
      } else if (order != 0) {
        words.script = walk.script();
      }
    }
    words.complete = order == 0;
    if (words.complete) break;
    StoreWide(target + words.bytes, std::rotl(order, turns));
    words.bytes += 2;
  }
  return words;
}

}  // namespace

std::size_t BuildKey(unsigned char* target, std::size_t room, unsigned char targetFormat,
                     const KeySource& source) {
  room &= ~std::size_t{1};
  char* const begin = reinterpret_cast<char*>(target) + kHeaderSize;
  const int turns = TurnsOf(targetFormat);
  Words words;
  // A terminator, if it is one, needs as much room as a word.
  const std::size_t most = source.text.readable * 2 / CharWidth(source.text.codeSet);
  if (!source.cut && most < room - kHeaderSize && source.text.EndsInSight()) {
    words =
        WriteByKeys(begin, turns, [&source](auto&& take) { return TakeKeys(source.text, take); });
  }
  if (words.bytes == 0) words = WriteByWalk(begin, room - kHeaderSize, turns, source);
  if (!words.complete && room > kMaxCutKey) {
    if (words.bytes != 0) words.bytes -= 2;
    words.complete = true;
  }
  if (kHeaderSize + words.bytes > 0xffff) OTDB_assert("(OtDWord)_nLen == nLen", "ottypes", 1356);
  return Frame(target, turns, words);
}

std::size_t BuildPlainKey(unsigned char* target, std::size_t room, unsigned char targetFormat,
                          const OtString& string) {
  const FinishedKeys* const keys = FinishedKeys::Known(string.GetLanguageCode());
  const std::size_t bytes = string.MemLen();
  if (string.GetCodeSetCode() != OT_CS_UNICODE || keys == nullptr || bytes == 0) return 0;
  if (room < bytes + kHeaderSize + kTerminatorSize) return 0;
  const int turns = TurnsOf(targetFormat);
  const auto text = TextSpan::Terminated(TextAccess::Buffer(string), OT_CS_UNICODE, 0);
  if (LoadWide(text.text + bytes - 2) != 0) return 0;  // longer than its member says
  const Words words = WriteByKeys(
      reinterpret_cast<char*>(target) + kHeaderSize, turns,
      [&](auto&& take) { return TakeKeysOf<std::uint16_t, false, false>({keys}, text, take); });
  return words.bytes == 0 ? 0 : Frame(target, turns, words);
}

}  // namespace ot95
