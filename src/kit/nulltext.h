#ifndef OT95_SRC_KIT_NULLTEXT_H
#define OT95_SRC_KIT_NULLTEXT_H

#include <cstring>

#include "kit/narrowtext.h"
#include "ot95/typemgr.h"

namespace ot95 {

/// Whether a text begins with the one that stands for null, as bytes. An empty null text begins
/// every text.
inline bool BeginsWithNullText(const NarrowText& text) {
  const NarrowText null(OtTypeMgr::GetNullPrintString());
  return text.Length() >= null.Length() &&
         std::memcmp(text.Bytes(), null.Bytes(), null.Length()) == 0;
}

}  // namespace ot95

#endif
