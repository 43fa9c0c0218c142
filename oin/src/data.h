#ifndef OT95_OIN_DATA_H
#define OT95_OIN_DATA_H

// The constant objects behind the public interface, by number.

#include <string_view>

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

// Numbers of languages and code sets by the names that people have for them, 0 for none.
unsigned char NumberOfTag(std::string_view tag);
unsigned char NumberOfName(std::string_view name);

}  // namespace ot95

#endif
