#ifndef OT95_BENCH_COLLATOR_H
#define OT95_BENCH_COLLATOR_H

#include <unicode/ucol.h>

#include <memory>

#include "corpus.h"

namespace bench {

struct CloseCollator {
  void operator()(UCollator* collator) const { ucol_close(collator); }
};
using Collator = std::shared_ptr<UCollator>;

/// The peer's collator of a locale; all three levels, or accents but not case.
inline Collator OpenCollator(const char* locale, bool ignoreCase = false) {
  UErrorCode error = U_ZERO_ERROR;
  Collator collator(ucol_open(locale, &error), CloseCollator());
  ucol_setStrength(collator.get(), ignoreCase ? UCOL_SECONDARY : UCOL_TERTIARY);
  return collator;
}

inline const UChar* Units(const Name& name) {
  return name.units.data();
}
inline int Length(const Name& name) {
  return static_cast<int>(name.units.size());
}

}  // namespace bench

#endif
