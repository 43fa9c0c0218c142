#ifndef OT95_TESTS_OIN_WALK_H
#define OT95_TESTS_OIN_WALK_H

// A slow, obvious walk over collation records by their lists alone: what the fast forms and the
// walk of the type manager have to agree with.

#include <cstdint>
#include <string>
#include <vector>

#include "ot95/oin.h"

namespace oin_walk {

inline const OtOrderRecord* Tailor(const OtOrderRecord* record, const OtLanguage* language) {
  if (record->hasTailoring() == 0 || language == nullptr || language->tailorsOrder == 0) {
    return record;
  }
  const OtLanguageList languages = record->languages();
  for (int i = 0; i < languages.count; ++i) {
    const OtLanguage* member = nullptr;
    languages.GetAt(i, &member);
    if (member == language) record->tailorings().GetAt(i, &record);
  }
  return record;
}

inline const OtOrderRecord* Contract(const OtOrderRecord* record, unsigned short next) {
  if (record->hasContractions() == 0) return nullptr;
  const OtWCharList* chars = record->contractionChars();
  for (int i = 0; i < chars->count; ++i) {
    unsigned short follower = 0;
    const OtOrderRecord* pair = nullptr;
    if (chars->GetAt(i, &follower) == 0 && follower == next &&
        record->contractionRecords().GetAt(i, &pair) == 0) {
      return pair;
    }
  }
  return nullptr;
}

// The keys of a text, whose units belong to a set with an order table.
inline std::vector<std::uint32_t> Keys(const std::u16string& text, const OtCodeSet& set,
                                       unsigned char language) {
  std::vector<std::uint32_t> keys;
  const OtLanguage* speech = OtLanguageContext::QueryLanguage(language);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const OtOrderRecord* record = set.orderTable->Lookup(text[i]);
    if (record == nullptr) {
      keys.push_back(0x14000000U | static_cast<std::uint32_t>(text[i]) << 8);
      continue;
    }
    if (record->WeighsNothing()) continue;
    record = Tailor(record, speech);
    while (i + 1 < text.size()) {
      const OtOrderRecord* pair = Contract(record, text[i + 1]);
      if (pair == nullptr) break;
      record = pair;
      ++i;
    }
    const unsigned char script =
        record->scriptRef() != nullptr ? *record->scriptRef() : set.DefaultScript(language);
    const std::uint32_t key = record->Key(set.DefaultScript(language));
    keys.push_back(speech != nullptr ? ot95::RankedKey(key, *speech) : key);
    const OtWCharList* more = record->expansion();
    for (int j = 0; j < more->count && record->hasExpansion() != 0; ++j) {
      unsigned short word = 0;
      more->GetAt(j, &word);
      const bool letter = script != 0x14 && (word & 0xc000) == 0x4000;
      const std::uint32_t body =
          letter ? (word & 0x407fU) << 8 | (word >> 7 & 0x7fU) : std::uint32_t{word} << 8;
      keys.push_back(std::uint32_t{script} << 24 | body);
    }
  }
  return keys;
}

inline std::vector<std::uint32_t> Masked(std::vector<std::uint32_t> keys, std::uint32_t mask) {
  for (std::uint32_t& key : keys) key &= mask;
  return keys;
}

constexpr std::uint32_t kPrimary = 0xffffff80;
constexpr std::uint32_t kNoCase = 0xffffff9f;

}  // namespace oin_walk

#endif
