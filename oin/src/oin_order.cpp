// What of the reading of collation tables isn't inline.

#include "ot95/oin_order.h"

const OtOrderRecord* OtOrderTable::Lookup(unsigned short character) const {
  return Find(character);
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
      *out = ot95::kLanguageRows + number;
      return 0;
    }
  }
}
