#ifndef OTDB_KEYS_H
#define OTDB_KEYS_H

#include <lmdb.h>

#include "bytes.h"
#include "schema.h"

namespace otdb {

/// Whether the type's estimates make scan limits, without which an index serves nobody.
bool CanBeIndexed(const Member& member);

/// The key under which an index files a stored value: the order words of a text, the stored form
/// of anything else, and never more than OtINDEX_MAX_KEYLEN bytes.
Bytes KeyOf(const Member& member, View stored, unsigned char form);

/// The format byte of a type's keys.
unsigned char KeyFormat(char type, unsigned char form);

/// Three-way comparison of two keys by the type's own Compare.
int CompareKeys(char type, View key1, View key2, unsigned char form);

/// Whether a key tells all of its value. One that doesn't, a long text or one that goes on in
/// another script, says where the value begins and no more.
bool IsWhole(char type, View key, unsigned char form);

/// How many letters of a text, or bytes of another value, two keys begin with in common. Case and
/// accents don't count: they decide only between equal letters.
std::size_t CommonStart(const Member& member, View key1, View key2, unsigned char form);

/// The order of the trees: CompareKeys, as the store calls it.
MDB_cmp_func* KeyComparer(char type, unsigned char form);

}  // namespace otdb

#endif
