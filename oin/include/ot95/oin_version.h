#ifndef OT95_OIN_VERSION_H
#define OT95_OIN_VERSION_H

/// @file
/// What the tables of this library were made from. Index keys hold words of these tables, so that
/// an engine does well to keep the versions beside its indexes.

#include "ot95/base.h"

/// Zero-terminated texts that live as long as the library.
struct OtTableVersions {
  const char* unicode;  ///< Of the Unicode Character Database and its collation table: "15.0.0".
  const char* cldr;     ///< Of the Common Locale Data Repository: "41".
};

/// The versions of the tables that are loaded.
OT95_EXPORT const OtTableVersions& OtGetTableVersions() noexcept;

#endif
