// Collation tables: the constants, and what of their reading isn't inline.

#include <algorithm>
#include <array>
#include <iterator>

#include "data.h"

namespace ot95 {
namespace {

#include "data/oin_data.inc"

// One for each record of a Unicode page.
constexpr auto kKeys = [] {
  std::array<std::uint32_t, kNarrowRecords> keys{};
  for (unsigned i = 0; i < keys.size(); ++i) {
    const bool joins = (kRecords[i].flags & OtOrderRecord::kFollows) != 0;
    keys[i] = FinishedKey(kRecords[i], kLanguages[1].script) | (joins ? kJoins | kLook : 0);
  }
  return keys;
}();

static_assert(kLanguages[1].tailorsOrder == 0 && kLanguages[1].ideographs < 0);
// The first three pages stand one behind another.
static_assert(kPages[1] == kPages[0] + 1 && kPages[2] == kPages[0] + 2);

}  // namespace

constinit const OrderTables kOrderTables = {kRecords,        kUnits,
                                            kLists,          kLinks,
                                            kContractions,   kTailorings,
                                            kRecordNumbers,  kLanguages,
                                            &kUnicodeOrders, std::size(kTailorings),
                                            kRules,          kRulePlaces,
                                            kClassPages,     kClasses,
                                            kMarked,         std::size(kMarked),
                                            kIdeographs};
constinit const FinishedKeys kNeutralKeys(kLanguages + 1, kKeys.data(), kPages,
                                          std::make_index_sequence<256>());
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
