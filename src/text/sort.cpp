/// Sorting of texts. Each gets a head, a number that holds the ranks of its first letters; heads
/// are sorted by their bytes. Texts of equal heads get the heads of what follows, and those that
/// have no more letters, which few do, are compared.

#include "ot95/sort.h"
#include "ot95/fault.h"

#include <algorithm>
#include <memory>
#include <new>
#include <numeric>

#include "text/collation/compare.h"
#include "text/collation/walk.h"

namespace ot95 {
namespace {

/// A text by its number, with its head.
struct Item {
  std::uint64_t head;
  std::uint32_t number;
  std::uint32_t letters;  ///< That the head holds, where the text goes on behind them; else 0.
};

/// Puts the ranks of keys into a head, so that heads order as the keys do on the first level, as
/// far as they reach: in front the script and whether it is ideographs that come first, then a byte
/// for each letter or digit, or two for each ideograph. What has no rank of its own ends the head:
/// the rest stays zero.
class HeadBuilder {
 public:
  /// @return whether the head has room for another key.
  bool Add(std::uint32_t key) {
    const unsigned word = key >> 8 & 0xffff;
    if (left_ == kBits) {
      script_ = key >> 24;
      wide_ = word >= kFirstHan || script_ >= kBeyondAlphabets;
      left_ = kBits - 8;
      head_ = std::uint64_t{script_ << 1 | (wide_ ? 1U : 0U)} << left_;
    }
    bool exact = false;
    const unsigned rank = wide_ ? WideRank(key, word, exact) : Rank(key, word, exact);
    const int bits = wide_ ? 16 : 8;
    left_ -= bits;
    head_ |= std::uint64_t{rank} << left_;
    letters_ = exact ? letters_ + 1 : 0;
    return exact && left_ >= bits;
  }

  /// Adds the letters of the same alphabet that come next, which is most of most texts.
  /// @return whether there is room left.
  template <class Unit>
  [[gnu::always_inline]] bool AddLetters(KeysOf<Unit> keys, const char*& place,
                                         std::uintptr_t end) {
    const std::uint32_t alphabet = wide_ ? 0 : script_ << 9 | 0x80;  // in front of their ranks
    int left = left_;
    for (; left >= 8; place += sizeof(Unit)) {
      const std::uint32_t key = keys.At(UnitOf<Unit>(place, end));
      if (key >> 15 != alphabet || (key & kLook) != 0 || (key & 0x7f00) == 0x7f00) break;
      left -= 8;
      head_ |= std::uint64_t{kLetters | (key >> 8 & 0x7f)} << left;
      ++letters_;
    }
    left_ = left;
    return left >= (wide_ ? 16 : 8);
  }
  std::uint64_t head() const { return head_; }
  std::uint32_t letters() const { return letters_; }

 private:
  static constexpr int kBits = 64;
  static constexpr unsigned kBelow = 1;   // what ranks before all of the script
  static constexpr unsigned kDigits = 2;  // the first of them
  static constexpr unsigned kOtherDigits = 0x5d;
  static constexpr unsigned kLetters = 0x80;
  static constexpr unsigned kAbove = 0xff;  // what ranks behind

  unsigned Rank(std::uint32_t key, unsigned word, bool& exact) const {
    const unsigned script = key >> 24;
    if (script != script_) return script < script_ ? kBelow : kAbove;
    if (word >= kFirstHan) return kAbove;
    if (word < kFirstLetter) {
      exact = word - kFirstDigit < kOtherDigits - kDigits;
      return exact ? word - kFirstDigit + kDigits : kOtherDigits;
    }
    const unsigned letter = word & 0x7f;
    exact = letter < kAbove - kLetters;
    return kLetters + letter;
  }
  unsigned WideRank(std::uint32_t key, unsigned word, bool& exact) const {
    const unsigned script = key >> 24;
    if (script != script_) return script < script_ ? kBelow : 0xffff;
    exact = word != 0xffff;
    return word;
  }

  std::uint64_t head_ = 0;
  int left_ = kBits;
  unsigned script_ = 0;
  bool wide_ = false;
  std::uint32_t letters_ = 0;
};

/// The head of a text behind `skip` letters and digits, by its finished keys. @return whether these
/// tell it.
bool HeadByKeys(Item& item, const TextSpan& text, unsigned skip) {
  return WithKeys(text, false, [&](auto first, auto keys) {
    using Unit = decltype(first);
    HeadBuilder head;
    const char* place = text.text;
    for (bool room = true; room;) {
      const unsigned unit = UnitOf<Unit>(place, text.end);
      if (unit == 0) {
        item.head = head.head();
        return true;
      }
      const std::uint32_t key = keys.At(unit);
      if ((key & (kJoins | kOpens)) != 0) {
        keys.Make(unit);
        return false;
      }
      place += sizeof(Unit);
      if (!IsReal(key & kKeyBits)) continue;
      if (skip == 0) {
        room = head.Add(key & kKeyBits) && head.AddLetters<Unit>(keys, place, text.end);
      } else {
        --skip;
      }
    }
    const unsigned next = UnitOf<Unit>(place, text.end);
    item.head = head.head();
    item.letters = head.letters();
    return !JoinsEither<Unit>(keys, next, next);
  });
}

void HeadByWalk(Item& item, const TextSpan& text, unsigned skip) {
  HeadBuilder head;
  OrderWalk walk(text);
  for (bool room = true; room;) {
    const std::uint32_t key = walk.NextKey(true);
    if (key == 0) {
      item = {head.head(), item.number, 0};
      return;
    }
    if (!IsReal(key)) continue;
    if (skip == 0) {
      room = head.Add(key);
    } else {
      --skip;
    }
  }
  item = {head.head(), item.number, head.letters()};
}

class Sorter {
 public:
  Sorter(const OtString* const* texts, unsigned short cmpOp) : texts_(texts), cmpOp_(cmpOp) {}

  bool Before(std::uint32_t a, std::uint32_t b) const {
    const long sign = texts_[a]->Compare(*texts_[b], cmpOp_);
    return sign < 0 || (sign == 0 && a < b);
  }

  /// @param spare room for as many items. @param skip letters that all texts have in common.
  void Sort(Item* first, Item* last, Item* spare, unsigned skip) const {
    constexpr std::ptrdiff_t kFew = 6;  // are compared sooner than they get heads
    constexpr unsigned kMostLetters = 28;
    if (last - first < kFew || skip > kMostLetters) {
      std::sort(first, last,
                [this](const Item& a, const Item& b) { return Before(a.number, b.number); });
      return;
    }
    for (Item* item = first; item != last; ++item) SetHead(*item, skip);
    SortHeads(first, last, spare);
    while (first != last) {
      Item* const run = first;
      while (first != last && first->head == run->head) ++first;
      if (first - run < 2) continue;
      Sort(run, first, spare, run->letters != 0 ? skip + run->letters : kMostLetters + 1);
    }
  }

 private:
  void SetHead(Item& item, unsigned skip) const {
    const TextSpan text = TextSpan::Of(*texts_[item.number]);
    item = {0, item.number, 0};
    if (text.IsNullValue() || HeadByKeys(item, text, skip)) return;
    HeadByWalk(item, text, skip);
  }

  static void SortHeads(Item* first, Item* last, Item* spare) {
    constexpr std::ptrdiff_t kManyItems = 256;
    if (last - first < kManyItems) {
      std::sort(first, last, [](const Item& a, const Item& b) {
        return a.head != b.head ? a.head < b.head : a.number < b.number;
      });
      return;
    }
    std::uint64_t differing = 0;
    for (const Item* item = first; item != last; ++item) differing |= item->head ^ first->head;
    const std::ptrdiff_t count = last - first;
    Item* from = first;
    Item* to = spare;
    for (int shift = 0; shift < 64; shift += 8) {
      if ((differing >> shift & 0xff) == 0) continue;
      SortByByte(from, count, to, shift);
      std::swap(from, to);
    }
    if (from != first) std::copy(from, from + count, first);
  }

  /// One pass of a radix sort, which leaves the order of items with the same byte.
  static void SortByByte(const Item* from, std::ptrdiff_t count, Item* to, int shift) {
    Item* places[256];
    std::ptrdiff_t counts[256] = {};
    for (std::ptrdiff_t i = 0; i < count; ++i) ++counts[from[i].head >> shift & 0xff];
    for (unsigned byte = 0; byte < 256; ++byte) {
      places[byte] = to;
      to += counts[byte];
    }
    for (std::ptrdiff_t i = 0; i < count; ++i) {
      *places[from[i].head >> shift & 0xff]++ = from[i];
    }
  }

  const OtString* const* texts_;
  unsigned short cmpOp_;
};

/// Whether heads order texts as comparison does: raw bytes and order words have none.
bool HaveHeads(const OtString* const* texts, unsigned long count, unsigned short cmpOp) {
  if ((cmpOp & OT_CMP_ORDER_ONLY) != 0 || count > UINT32_MAX) return false;
  return std::all_of(texts, texts + count, [](const OtString* text) {
    return text->GetCodeSetCode() != 0 && text->GetCodeSetCode() != OT_CS_ORDER;
  });
}

}  // namespace
}  // namespace ot95

void OtSortTexts(const OtString* const* texts, unsigned long count, unsigned long* order,
                 unsigned short cmpOp) noexcept {
  if (cmpOp == OT_CMP_DEFAULT) cmpOp = OtString::GetDefaultCmpOp();
  cmpOp |= OT_CMP_NO_WILDCARDS;
  std::iota(order, order + count, 0UL);
  std::unique_ptr<ot95::Item[]> items;
  if (ot95::HaveHeads(texts, count, cmpOp)) {
    items.reset(ot95::Noted(new (std::nothrow) ot95::Item[2 * std::size_t{count}]));
  }
  if (items == nullptr) {
    std::sort(order, order + count, [=](unsigned long a, unsigned long b) {
      const long sign = texts[a]->Compare(*texts[b], cmpOp);
      return sign < 0 || (sign == 0 && a < b);
    });
    return;
  }
  for (unsigned long i = 0; i < count; ++i) items[i].number = static_cast<std::uint32_t>(i);
  ot95::Item* const end = items.get() + count;
  ot95::Sorter(texts, cmpOp).Sort(items.get(), end, end, 0);
  for (unsigned long i = 0; i < count; ++i) order[i] = items[i].number;
}
