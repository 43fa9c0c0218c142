#ifndef OT95_SRC_NUMBERS_NULLABLE_H
#define OT95_SRC_NUMBERS_NULLABLE_H

/// @file
/// How nullable numbers stand in stored bytes.

#include <cstddef>

#include "kit/walks.h"
#include "ot95/nullable.h"

namespace ot95 {

// The flag stands behind the value in memory form and before it in every other.
constexpr std::size_t NullValueAt(unsigned char form) {
  return HasMemoryBit(form) ? 0 : 1;
}
template <class T>
constexpr std::size_t NullFlagAt(unsigned char form) {
  return HasMemoryBit(form) ? sizeof(T) : 0;
}

/// Bytes from one element to the next as comparers, hashes and keys walk them. A record in memory
/// form is read by Load too, which takes value and flag from its first bytes.
template <class Record>
constexpr std::size_t NullWalkWidth(unsigned char form) {
  return IsMemoryForm(form) ? sizeof(Record) : sizeof(typename Record::ValueType) + 1;
}

// A value as it stands in stored bytes, which are as wide as it in every form.
template <class T>
void GetValue(const unsigned char* at, T& value, unsigned char form) {
  value = LoadAs<T>(at, form);
}
inline void GetValue(const unsigned char* at, OtInt64& value, unsigned char form) {
  value.low = LoadAs<std::uint32_t>(at, form);
  value.high = LoadAs<std::int32_t>(at + 4, form);
}

/// The record of stored bytes. Flags other than 1 count as not null.
template <class Record>
Record LoadNullable(const unsigned char* bytes, unsigned char form) {
  using Value = typename Record::ValueType;
  Record record;
  if (bytes[NullFlagAt<Value>(form)] == 1) return record;
  GetValue(bytes + NullValueAt(form), record.value, form);
  record.isNull = 0;
  return record;
}

}  // namespace ot95

#endif
