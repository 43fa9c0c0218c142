#ifndef OT95_SRC_TEXT_COLLATION_SORTKEY_H
#define OT95_SRC_TEXT_COLLATION_SORTKEY_H

/// @file
/// Sort keys of texts: the levels of comparison one behind another. They are made from the keys of
/// the order walk, as comparison is, so that the two can't differ.

#include "kit/sortkey.h"
#include "text/collation/orders.h"

namespace ot95 {

/// Writes the key of a text, which is not one that was cut. Answers as a SortKeyFunc.
/// @param cmpOp where it allows wildcards, a text that holds one has no place in an order.
int PutTextKey(const TextSpan& text, unsigned short cmpOp, SortKeyWriter& out);

/// The ends of the range in which the keys of all texts lie that stand in a relation to an operand.
struct TextRange {
  const TextSpan& operand;
  unsigned short cmpOp;  ///< How it is compared; where wildcards count it can be a pattern.
  unsigned short keyOp;  ///< How the keys were made.
  bool equal;            ///< The relation is equality alone.

  /// What was written for an end.
  enum Kind {
    kNothing,  ///< No end.
    kPrefix,   ///< What the keys of all equal texts begin with.
    kWhole,    ///< The key of all equal texts.
    kEnd       ///< The lowest key of an equal text can be this, or every key of one is below it.
  };
  Kind Put(bool upper, SortKeyWriter& out) const;
};

}  // namespace ot95

#endif
