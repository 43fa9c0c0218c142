#ifndef OTDB_CHECKSUM_H
#define OTDB_CHECKSUM_H

#include <cstdint>
#include <optional>
#include <string>

#include "bytes.h"

namespace otdb {

/// What tells the checksums of trees apart.
std::uint64_t SeedOf(const std::string& tree);
/// Eight bytes that tell a value and its key from all that a damage makes of them; the same on
/// every machine.
Bytes ChecksumOf(std::uint64_t seed, View key, View value);
/// A value with its checksum behind it.
Bytes Sealed(std::uint64_t seed, View key, View value);
/// The value; nothing where the checksum is another's.
std::optional<View> Unsealed(std::uint64_t seed, View key, View sealed);

}  // namespace otdb

#endif
