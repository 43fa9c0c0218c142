#ifndef OT95_SRC_KIT_STATICS_H
#define OT95_SRC_KIT_STATICS_H

/// @file
/// The library's static data that code must initialise, all in one source so that the order is
/// certain.

#include "ot95/text.h"

namespace ot95 {

extern const OtString emptyString;  ///< What OtString::EmptyString answers.
extern OtString nullPrintString;    ///< What a null value of an OtNull_ type prints as.
extern OtString zeroString;  ///< What makes a null of a type with neither null nor assignment.

}  // namespace ot95

#endif
