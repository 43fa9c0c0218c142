#ifndef OTDB_BYTES_H
#define OTDB_BYTES_H

#include <span>
#include <vector>

#include "ot95/text.h"
#include "ot95/typemgr.h"

namespace otdb {

using Bytes = std::vector<unsigned char>;
/// Bytes that belong to someone else: to a page of the store, most often.
using View = std::span<const unsigned char>;

/// The operations of all types. A manager owns nothing and costs nothing to ask.
inline OtTypeMgr& Types() {
  static OtTypeMgr types;
  return types;
}

/// The operations take places that could be written; none of those used here writes to a source.
inline void* Place(View bytes) {
  return const_cast<unsigned char*>(bytes.data());
}

}  // namespace otdb

#endif
