#ifndef OT95_SRC_TEXT_COLLATION_POSITION_H
#define OT95_SRC_TEXT_COLLATION_POSITION_H

#include "text/collation/orders.h"

namespace ot95 {

/// A number that rises with the collation rank of the text at `it`, from at most `maxChars` orders.
double OtStrOrderPosition(OtStringIterator& it, unsigned short maxChars);
/// The same of the text behind a walk.
double OrderPosition(OrderWalk walk, unsigned maxChars);
/// The same of raw bytes, which have no orders.
double RawPosition(const TextSpan& text, unsigned maxChars);

}  // namespace ot95

#endif
