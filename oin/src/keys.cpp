// Finished keys of languages that the constant ones don't serve. Threads that make the same thing
// at once each make it; the first one's stays.

#include <algorithm>
#include <cstdlib>
#include <new>

#include "data.h"

namespace ot95 {
namespace {

/// Pages one behind another.
struct Block {
  std::uint32_t* keys;
  unsigned first;
  unsigned count;

  void Flag(unsigned unit, std::uint32_t flags) const {
    if (unit - first < count) keys[unit - first] |= flags | kLook;
  }
};

/// Flags what contracts behind the character of a record, however far.
void FlagFollowers(const Block& block, const OtOrderRecord& record) {
  if (!record.hasContractions()) return;
  const OtWCharList& followers = *record.contractionChars();
  const OtOrderRecordList pairs = record.contractionRecords();
  for (int i = 0; i < followers.count; ++i) {
    const OtOrderRecord* pair = nullptr;
    pairs.GetAt(i, &pair);
    const unsigned unit = followers.begin()[i];
    if (unit < OT_FIRST_MARK) block.Flag(unit, kJoinsOpener);
    if ((pair->flags & OtOrderRecord::kLowFollowers) != 0) block.Flag(unit, kOpens);
    FlagFollowers(block, *pair);
  }
}

/// The key of each unit of a block in a language, with its flags.
void Fill(const Block& block, const OtLanguage& language) {
  const bool tailors = language.tailorsOrder != 0;
  for (unsigned i = 0; i < block.count; ++i) {
    const unsigned unit = block.first + i;
    const OtOrderRecord& common = kUnicodeOrders.AtWide(static_cast<std::uint16_t>(unit));
    const OtOrderRecord* own = common.Tailored(&language);
    std::uint32_t key = FinishedKey(own != nullptr ? *own : common, language.script);
    if (own == nullptr && (key & kLook) == 0) key = RankedKey(key, language);
    block.keys[i] = key;
    if (unit >= OT_FIRST_MARK && common.Follows(tailors)) block.Flag(unit, kJoins);
  }
  for (unsigned i = 0; i < kTailoringSets; ++i) {
    const TailoringSet& set = kTailorings[i];
    if (set.Has(language.number)) FlagFollowers(block, set.RecordOf(language.number));
  }
}

}  // namespace

constinit FinishedKeys FinishedKeys::neutral_;
constinit std::array<std::atomic<const FinishedKeys*>, FinishedKeys::kLanguages>
    FinishedKeys::sheets_{};
constinit std::array<std::array<FinishedKeys::Page, FinishedKeys::kLanguages>,
                     FinishedKeys::kByteSets>
    FinishedKeys::byteSheets_{};

constinit const std::array<std::uint32_t, kFirstKeys> FinishedKeys::kUnmadePages = [] {
  std::array<std::uint32_t, kFirstKeys> keys{};
  keys.fill(kUnmade);
  return keys;
}();

FinishedKeys::FinishedKeys(const OtLanguage* language)
    : language_(language), tailors_(language->tailorsOrder != 0), script_(language->script) {
  for (unsigned high = 0; high < pages_.size(); ++high) {
    const unsigned place = std::min(high << 8, kFirstKeys - 0x100);
    pages_[high].store(&kUnmadePages[place], std::memory_order_relaxed);
  }
}

const FinishedKeys* FinishedKeys::MakeSheet(unsigned char number) {
  const OtLanguage* language = OtLanguageContext::QueryLanguage(number);
  if (language == nullptr) return nullptr;
  const bool neutral = language->tailorsOrder == 0 && language->ideographs < 0;
  if (neutral && language->script == kLanguageRows[OT_LANG_NEUTRAL].script) {
    const FinishedKeys* const keys = MakeNeutral();
    sheets_[number].store(keys, std::memory_order_release);
    return keys;
  }
  void* const memory = std::malloc(sizeof(FinishedKeys));
  if (memory == nullptr) return nullptr;
  auto* const made = new (memory) FinishedKeys(language);
  const FinishedKeys* before = nullptr;
  if (sheets_[number].compare_exchange_strong(before, made)) return made;
  std::free(made);
  return before;
}

/// The pages of all are constant; only where they are isn't, so that the library has no addresses
/// to relocate. Whoever comes second stores the same.
const FinishedKeys* FinishedKeys::MakeNeutral() {
  for (unsigned high = 0; high < neutral_.pages_.size(); ++high) {
    neutral_.pages_[high].store(NeutralPage(high), std::memory_order_relaxed);
  }
  return &neutral_;
}

bool FinishedKeys::MakePage(unsigned high) const {
  constexpr unsigned kFirstPages = kFirstKeys >> 8;
  const unsigned page = high < kFirstPages ? 0 : high;
  const unsigned pages = high < kFirstPages ? kFirstPages : 1;
  const unsigned count = pages << 8;
  auto* const keys = static_cast<std::uint32_t*>(std::malloc(count * sizeof(std::uint32_t)));
  if (keys == nullptr) return false;
  Fill({keys, page << 8, count}, *language_);
  const std::uint32_t* const neutral = NeutralPage(page);
  const bool same = std::equal(keys, keys + count, neutral);
  const std::uint32_t* unmade = pages_[page].load(std::memory_order_acquire);
  const std::uint32_t* made = same ? neutral : keys;
  const bool first = unmade[0] == kUnmade && pages_[page].compare_exchange_strong(unmade, made);
  if (!first) made = unmade;
  if (made != keys) std::free(keys);
  for (unsigned i = 1; i < pages; ++i) {
    pages_[page + i].store(made + 256 * i, std::memory_order_release);
  }
  return true;
}

const std::uint32_t* FinishedKeys::MakeByteSheet(unsigned char codeSet, unsigned char language) {
  const OtCodeSet* const set = OtLanguageContext::QueryCodeSet(codeSet);
  const FinishedKeys* const wide = Of(language);
  if (set->number != codeSet || wide == nullptr) return nullptr;
  auto* const keys = static_cast<std::uint32_t*>(std::malloc(256 * sizeof(std::uint32_t)));
  if (keys == nullptr) return nullptr;
  for (unsigned byte = 0; byte < 256; ++byte) {
    const unsigned unit = set->UnicodeValues()[byte];
    if (!wide->Make(unit)) {
      std::free(keys);
      return nullptr;
    }
    keys[byte] = wide->At(unit);
  }
  const std::uint32_t* before = nullptr;
  if (byteSheets_[codeSet][language].compare_exchange_strong(before, keys)) return keys;
  std::free(keys);
  return before;
}

}  // namespace ot95
