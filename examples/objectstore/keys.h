#ifndef OTDB_KEYS_H
#define OTDB_KEYS_H

#include <lmdb.h>

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <optional>
#include <vector>

#include "bytes.h"
#include "schema.h"

namespace otdb {

/// How the keys of a store are made, and what orders them: the type's own comparison, or, where
/// they are sort keys, their bytes.
struct KeyKind {
  unsigned char form;
  bool byteOrder = false;

  KeyKind(unsigned char stored, bool bytes = false) : form(stored), byteOrder(bytes) {}
};

/// Whether the type's estimates make scan limits, without which an index serves nobody.
bool CanBeIndexed(const Member& member);

/// The key under which an index files a stored value: the order words of a text, the stored form
/// of anything else, or the sort key; never more than OtINDEX_MAX_KEYLEN bytes.
Bytes KeyOf(const Member& member, View stored, const KeyKind& kind);

/// The format byte of a type's keys.
unsigned char KeyFormat(char type, unsigned char form);

/// The beginning of a stored value's sort key as a number: values with different heads order like
/// these, which spares comparing them.
struct Head {
  std::uint64_t number = 0;
  bool whole = false;  ///< That is all of the key: equal heads are equal values.
};
/// Nothing for a value without a sort key.
std::optional<Head> HeadOf(const Member& member, View stored, unsigned char form);

/// The order of as many things by their heads, and by `compare` of their numbers where these don't
/// tell; what compares equal keeps its order. @param heads made by HeadOf, or empty: none has one.
template <class Compare>
std::vector<std::size_t> OrderByHeads(const std::vector<Head>& heads, std::size_t count,
                                      Compare&& compare) {
  std::vector<std::size_t> order(count);
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    if (!heads.empty()) {
      if (heads[a].number != heads[b].number) return heads[a].number < heads[b].number;
      if (heads[a].whole && heads[b].whole) return a < b;
    }
    const long sign = compare(a, b);
    return sign != 0 ? sign < 0 : a < b;
  });
  return order;
}

/// Three-way comparison of two keys.
int CompareKeys(char type, View key1, View key2, const KeyKind& kind);
/// Whether a key lies behind the upper limit of a scan, which a range of sort keys doesn't hold.
bool IsBehind(char type, View key, View upper, const KeyKind& kind);

/// Whether a key tells all of its value. One that doesn't, a long text or one that goes on in
/// another script, says where the value begins and no more. Sort keys may be cut, too, but the
/// range of every comparison allows for that.
bool IsWhole(char type, View key, const KeyKind& kind);

/// How many letters of a text, or bytes of another value, two keys begin with in common. Case and
/// accents don't count: they decide only between equal letters, and stand behind them in sort keys.
std::size_t CommonStart(const Member& member, View key1, View key2, const KeyKind& kind);

/// The order of the trees: CompareKeys, as the store calls it; null for that of bytes.
MDB_cmp_func* KeyComparer(char type, const KeyKind& kind);

}  // namespace otdb

#endif
