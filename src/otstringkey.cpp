/// The key of a text: its order words, for as long as its script stays the same.

#include "ot95/fault.h"
#include "plainkeys.h"
#include "storedtext.h"
#include "stringrow.h"

namespace ot95 {
namespace {

/// A key of more room than this always gets its terminator, at the cost of its last word.
constexpr std::size_t kMaxCutKey = 0x100;

}  // namespace

std::size_t BuildKey(unsigned char* target, std::size_t room, unsigned char targetFormat,
                     const KeySource& source) {
  room &= ~std::size_t{1};
  char* const key = reinterpret_cast<char*>(target);
  const bool reversed = IsReversed(targetFormat);
  OrderWalk walk(source.text);
  unsigned char script = source.text.IsNullValue() ? 0 : walk.script();
  std::size_t size = kHeaderSize;
  bool complete = false;
  const auto store = [&](unsigned short order) {
    StoreUnit(key + size, order, true, reversed);
    size += 2;
  };
  while (size < room && !complete) {
    walk.TakePlain([&](std::uint32_t plain) {
      if (size >= room || plain >> 24 != script) return false;
      store(OrderOfKey(plain));
      return true;
    });
    if (size >= room) break;
    unsigned short order = OrderOfKey(walk.NextKey(true));
    if (order == 0 && source.cut) break;
    if (walk.script() != script) {
      if (size != kHeaderSize) {
        script |= kMixedScripts;
        order = 0;
      } else if (order != 0) {
        script = walk.script();
      }
    }
    if (order == 0) {
      complete = true;
    } else {
      store(order);
    }
  }
  if (!complete && room > kMaxCutKey) {
    if (size != kHeaderSize) size -= 2;
    complete = true;
  }
  if (size > 0xffff) OTDB_assert("(OtDWord)_nLen == nLen", "ottypes", 1356);
  StoreLength(key, size, targetFormat);
  target[2] = OT_CS_ORDER;
  target[3] = script;
  if (!complete) return size;
  target[size] = 0;
  target[size + 1] = 0xff;
  return size + kTerminatorSize;
}

}  // namespace ot95
