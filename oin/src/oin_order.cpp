// Collation tables: the constants, and what of their reading isn't inline.

#include <algorithm>
#include <array>
#include <iterator>

#include "data.h"

namespace ot95 {
namespace {

#include "data/oin_data.inc"

constexpr std::uint32_t PlainKeyOf(const OtOrderRecord& record) {
  constexpr unsigned kNever = OtOrderRecord::kAbsent | OtOrderRecord::kExpansion |
                              OtOrderRecord::kLowFollowers | OtOrderRecord::kFollows;
  constexpr unsigned kTailored = OtOrderRecord::kTailoring | OtOrderRecord::kFollowsTailored;
  const bool isLetter = record.order() >= 0x4000;
  if ((isLetter && record.script == 0) || (record.flags & kNever) != 0) return 0;
  return record.key | ((record.flags & kTailored) != 0 ? kTailoredKey : 0);
}

constexpr auto kPlainKeysOf = [] {
  std::array<std::uint32_t, kPlainKeys> keys{};
  for (unsigned unit = 0; unit < kPlainKeys; ++unit) {
    keys[unit] = PlainKeyOf(kRecords[unsigned{kPages[unit >> 8]} << 8 | (unit & 0xff)]);
  }
  return keys;
}();

}  // namespace

constinit const OrderTables kOrderTables = {kRecords,        kUnits,
                                            kLists,          kLinks,
                                            kContractions,   kTailorings,
                                            kRecordNumbers,  kLanguages,
                                            &kUnicodeOrders, kPlainKeysOf.data(),
                                            kRules,          kRulePlaces,
                                            kClassPages,     kClasses,
                                            kMarked,         std::size(kMarked),
                                            kIdeographs};
constinit const OrdersOfSet kUnicodeOrders(kRecords, kPages);
constinit const OrdersOfSet kBaseOrders(kRecords + kNarrowRecords, nullptr);

const MarkedCharacter* FindMarked(unsigned short unicode) {
  const auto* place = std::lower_bound(
      std::begin(kMarked), std::end(kMarked), unicode,
      [](const MarkedCharacter& row, unsigned short value) { return row.character < value; });
  return place != std::end(kMarked) && place->character == unicode ? place : nullptr;
}

}  // namespace ot95

using ot95::kOrderTables;

const OtOrderRecord* OtOrderTable::Lookup(unsigned short character) const {
  return Find(character);
}

const OtOrderRecord* OtOrderRecord::SearchContraction(unsigned short next) const {
  const ot95::ContractionSet& set =
      kOrderTables.contractions[kOrderTables.links[link].contractions];
  if (next < set.lowest || next > set.highest) return nullptr;
  const std::uint16_t* first = set.followers.begin();
  const std::uint16_t* place = std::lower_bound(first, set.followers.end(), next);
  if (place == set.followers.end() || *place != next) return nullptr;
  return kOrderTables.records + (kOrderTables.recordNumbers + set.firstRecord)[place - first];
}

namespace {

int CountLanguages(const ot95::TailoringSet& set) {
  return __builtin_popcountll(set.languages[0]) + __builtin_popcountll(set.languages[1]);
}

}  // namespace

OtLanguageList OtOrderRecord::languages() const {
  const ot95::TailoringSet& set = Tailorings();
  return {CountLanguages(set), &set};
}

OtOrderRecordList OtOrderRecord::tailorings() const {
  const ot95::TailoringSet& set = Tailorings();
  return {CountLanguages(set), static_cast<std::int32_t>(set.firstRecord)};
}

int OtLanguageList::GetAt(int index, const OtLanguage** out) const {
  if (index < 0 || index >= count) return OT_ERR_NO_MORE_ITEMS;
  for (unsigned number = 0;; ++number) {
    if ((set_->languages[number >> 6] >> (number & 63U) & 1) != 0 && index-- == 0) {
      *out = kOrderTables.languages + number;
      return 0;
    }
  }
}
