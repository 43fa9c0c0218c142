#ifndef OT95_SRC_KIT_SCALARTEXT_H
#define OT95_SRC_KIT_SCALARTEXT_H

/// @file
/// Members PrintToString and ScanFromString of the scalar rows. Rows of one family share them: the
/// family's type T is signed char, short, OtLong, float or double. A null format stands for the
/// family's own.

#include "ot95/base.h"
#include "ot95/text.h"

namespace ot95 {

/// The one printer that takes an array as a whole.
OtString& CharPrintToString(OtString& target, void* value, const char* format, unsigned long count);
void* CharScanFromString(void* value, OtString& text, const char* format, unsigned long count);

/// For short, OtLong, float and double.
template <class T>
OtString& NumberPrintToString(OtString& target, void* value, const char* format,
                              unsigned long count);
template <class T>
void* NumberScanFromString(void* value, OtString& text, const char* format, unsigned long count);

}  // namespace ot95

#endif
