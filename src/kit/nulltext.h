#ifndef OT95_SRC_KIT_NULLTEXT_H
#define OT95_SRC_KIT_NULLTEXT_H

#include "kit/narrowtext.h"
#include "ot95/typemgr.h"

namespace ot95 {

/// Whether a terminated text of one-byte characters begins with the one that stands for null,
/// narrowed as every text that is scanned. An empty null text begins every text.
inline bool BeginsWithNullText(const char* text) {
  const NarrowText null(OtTypeMgr::GetNullPrintString());
  const char* expected = null.Bytes();
  while (*expected != 0 && *text == *expected) ++text, ++expected;
  return *expected == 0;
}
inline bool BeginsWithNullText(const NarrowText& text) {
  return BeginsWithNullText(text.Bytes());
}

}  // namespace ot95

#endif
