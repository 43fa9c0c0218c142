#include "kit/statics.h"

namespace ot95 {

// Null dates and times are constants of their classes, and the rows are constants of their
// families; only the strings run code. They are made in this order and destroyed in reverse.
const OtString emptyString;
OtString nullPrintString("{NULL}");
OtString zeroString("0");

}  // namespace ot95
