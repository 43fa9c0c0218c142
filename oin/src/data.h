#ifndef OT95_OIN_DATA_H
#define OT95_OIN_DATA_H

// The constant objects behind the public interface, by number.

#include "ot95/oin.h"

namespace ot95 {

class OrdersOfSet final : public OtOrderTable {
 public:
  using OtOrderTable::OtOrderTable;
};

extern const OrdersOfSet kUnicodeOrders;
extern const OrdersOfSet kBaseOrders;  // Of OT_CS_BASE8.

// The record of a code set, null for a number that nobody knows.
const OtCodeSet* FindCodeSet(unsigned char number);

}  // namespace ot95

#endif
