#ifndef OT95_OIN_DATA_H
#define OT95_OIN_DATA_H

// The constant objects behind the public interface, by number.

#include <string_view>

// The tables themselves are in the sources that include this.
#define OT95_EXPORT_DATA OT95_EXPORT

#include "ot95/oin.h"
#include "ot95/oin_keys.h"

namespace ot95 {

// Keys below, script apart, are those of spaces and symbols; scripts from kBeyondAll on have none.
inline constexpr std::uint32_t kFirstRealKey = 0x3f0000;
inline constexpr unsigned kBeyondAll = 0x14;

extern const OrdersOfSet kBaseOrders;       // Of OT_CS_BASE8.
extern const std::uint32_t kTailoringSets;  // How many there are.

// How each language orders, where kRulePlaces says.
extern const char kRules[];
extern const std::uint16_t kRulePlaces[];

// The finished keys of 256 units in the neutral language, and in those that sort as it does.
const std::uint32_t* NeutralPage(unsigned high);

// The finished key of a record with its own flags: what is said of its character alone.
constexpr std::uint32_t FinishedKey(const OtOrderRecord& record, unsigned char script) {
  if (record.absent()) return kJoins | kOpens | kLook;
  if (record.hasExpansion() != 0) {
    // What weighs nothing has no real order: behind it a script goes on from before.
    const bool weighs = (record.key & 0xffffff) >= kFirstRealKey;
    return kOpens | kLook | (weighs ? 0 : kJoins);
  }
  const std::uint32_t key = record.Key(script);
  const bool stands = (key & 0xffffff) >= kFirstRealKey || key >> 24 >= kBeyondAll;
  const bool opens = (record.flags & OtOrderRecord::kLowFollowers) != 0;
  return key | (opens ? kOpens | kLook : 0) | (stands ? 0 : kLook);
}

// The record of a code set, null for a number that nobody knows.
const OtCodeSet* FindCodeSet(unsigned char number);

// Numbers of languages and code sets by the names that people have for them, 0 for none.
unsigned char NumberOfTag(std::string_view tag);
unsigned char NumberOfName(std::string_view name);

}  // namespace ot95

#endif
