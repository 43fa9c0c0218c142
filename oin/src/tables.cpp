// Collation tables: the constants.

#include <algorithm>
#include <array>
#include <iterator>

#include "data.h"

namespace ot95 {

// Outside of any other namespace, because the header's inline functions read most of it.
#include "data/oin_data.inc"

namespace {

constexpr unsigned kLatePlaces = kLateRecords - kNarrowRecords;  // Records that aren't of a page.

// One for each record of a Unicode page.
constexpr auto kKeys = [] {
  std::array<std::uint32_t, std::size(kOrderRecords) - kLatePlaces> keys{};
  for (unsigned i = 0; i < keys.size(); ++i) {
    const OtOrderRecord& record = kOrderRecords[i < kNarrowRecords ? i : i + kLatePlaces];
    const bool joins = (record.flags & OtOrderRecord::kFollows) != 0;
    keys[i] = FinishedKey(record, kLanguageRows[1].script) | (joins ? kJoins | kLook : 0);
  }
  return keys;
}();

static_assert(kLanguageRows[1].tailorsOrder == 0 && kLanguageRows[1].ideographs < 0 &&
              kLanguageRows[1].script == 1);
// The first three pages stand one behind another.
static_assert(kOrderPages[1] == kOrderPages[0] + 1 && kOrderPages[2] == kOrderPages[0] + 2);

}  // namespace

constinit const OrdersOfSet kUnicodeOrders(0, false);
constinit const OrdersOfSet kBaseOrders(kNarrowRecords, true);
constinit const std::uint32_t kTailoringSets = std::size(kTailorings);

const std::uint32_t* NeutralPage(unsigned high) {
  const unsigned record = kOrderPages[high] << 8;
  return &kKeys[record < kNarrowRecords ? record : record - kLatePlaces];
}

const MarkedCharacter* FindMarked(unsigned short unicode) {
  const auto* place = std::lower_bound(
      std::begin(kMarked), std::end(kMarked), unicode,
      [](const MarkedCharacter& row, unsigned short value) { return row.character < value; });
  return place != std::end(kMarked) && place->character == unicode ? place : nullptr;
}

}  // namespace ot95
