#ifndef OT95_TESTS_SORTKEYS_H
#define OT95_TESTS_SORTKEYS_H

// Sort keys and ranges as the tests ask for them, and how many random cases they try.

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "bytes_testing.h"
#include "ot95/text.h"
#include "ot95/typemgr.h"

constexpr unsigned kMostKeyBytes = 5000;

/// Random cases of a property: `usual`, or what OT95_CASES says.
inline long CasesOf(long usual) {
  const char* wanted = std::getenv("OT95_CASES");
  return wanted != nullptr ? std::atol(wanted) : usual;
}

inline int Sign(long result) {
  return (result > 0) - (result < 0);
}

/// One array as the operations of keys take it.
struct KeyValue {
  char id;
  const void* value;
  unsigned long length;
  unsigned long count;
  unsigned char format;
};

struct Key {
  std::vector<unsigned char> bytes;  ///< What there was room for.
  unsigned long length = 0;
  int status = 0;

  bool operator<(const Key& other) const { return bytes < other.bytes; }
  int Against(const Key& other) const { return (bytes > other.bytes) - (bytes < other.bytes); }
  std::string Hex() const { return ::Hex(bytes.data(), bytes.size()); }
};

inline Key KeyOf(const OtTypeMgr& types, const KeyValue& of, unsigned short cmpOp,
                 unsigned long room = kMostKeyBytes) {
  Key key;
  const ExactBlock target(room);
  key.length = types.SortKey(of.id, target.data(), room, of.value, of.length, cmpOp, of.count,
                             of.format, key.status);
  key.bytes.assign(target.data(), target.data() + std::min(room, key.length));
  return key;
}

struct Range {
  std::vector<unsigned char> lower, upper;
  int status = 0;

  bool Holds(const Key& key) const {
    return !(key.bytes < lower) && (upper.empty() || key.bytes < upper);
  }
  std::string Text() const {
    return ::Hex(lower.data(), lower.size()) + " to " + ::Hex(upper.data(), upper.size());
  }
};

inline Range RangeOf(const OtTypeMgr& types, const KeyValue& operand, unsigned op,
                     unsigned short keyOp, unsigned long room = kMostKeyBytes) {
  const ExactBlock lower(room), upper(room);
  OtSortRange ends;
  ends.lower = lower.data();
  ends.upper = upper.data();
  ends.lowerRoom = ends.upperRoom = room;
  Range range;
  range.status = types.SortRange(operand.id, ends, static_cast<unsigned short>(op), operand.value,
                                 operand.length, keyOp, operand.count, operand.format);
  range.lower.assign(lower.data(), lower.data() + ends.lowerLength);
  range.upper.assign(upper.data(), upper.data() + ends.upperLength);
  return range;
}

/// Whether a sign is one of a relation.
inline bool IsIn(int sign, unsigned relation) {
  return (relation & (sign == 0 ? OT_OP_EQUAL : sign < 0 ? OT_OP_LESS : OT_OP_GREATER)) != 0;
}

inline long Compare(OtTypeMgr& types, const KeyValue& a, const KeyValue& b, unsigned short cmpOp,
                    int& status) {
  return types.Cmp(a.id, a.length, const_cast<void*>(a.value), b.length, const_cast<void*>(b.value),
                   cmpOp, a.count, a.format, status);
}

#endif
