#ifndef OT95_OIN_VERSION_H
#define OT95_OIN_VERSION_H

/// @file
/// What the tables of this library were made from. Index keys hold words of these tables, so that
/// an engine does well to keep the versions beside its indexes.

#include "ot95/base.h"

/// Lives as long as the library.
struct OtTableVersions {
  char unicode[12];    ///< Of the Unicode Character Database and its collation table: "15.0.0".
  char cldr[12];       ///< Of the Common Locale Data Repository: "41".
  unsigned collation;  ///< The number of the collation, from 1: it rises whenever an order word
                       ///< changes anywhere. OtLanguageContext::OrderVersion tells of a language.
};

/// The versions of the tables that are loaded.
OT95_EXPORT const OtTableVersions& OtGetTableVersions() noexcept;

#endif
