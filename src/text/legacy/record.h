#ifndef OT95_SRC_TEXT_LEGACY_RECORD_H
#define OT95_SRC_TEXT_LEGACY_RECORD_H

#include <algorithm>
#include <cstring>

#include "ot95/bytes.h"
#include "text/legacy/row.h"

namespace ot95 {

/// A stored record, cut to the bytes at hand.
struct LegacyRecord {
  unsigned char marker = 0;
  const unsigned char* strings = nullptr;
  std::size_t left = 0;   // bytes at hand
  std::size_t total = 0;  // bytes that the record tells of
  bool complete = true;   // the header is there

  /// A `length` of 0 means all that the record tells of. A null value is an empty record.
  LegacyRecord(const void* value, unsigned long length, unsigned char format) {
    const auto* bytes = static_cast<const unsigned char*>(value);
    if (!bytes) return;
    complete = length == 0 || length >= legacyHeader;
    if (!complete) return;
    marker = bytes[0];
    total = LoadAs<OtWord>(bytes + 1, format);
    strings = bytes + legacyHeader;
    left = length == 0 ? total : std::min<std::size_t>(total, length - legacyHeader);
  }

  bool IsCut() const { return left < total; }
  /// The string here, which ends with the bytes at hand at the latest, and a step behind it.
  LegacyText Take() {
    const void* end = left > 0 ? std::memchr(strings, 0, left) : nullptr;
    const std::size_t length =
        end ? static_cast<std::size_t>(static_cast<const unsigned char*>(end) - strings) : left;
    const LegacyText text = {reinterpret_cast<const unsigned char*>(left > 0 ? strings : emptyText),
                             length, marker};
    const std::size_t step = std::min(length + 1, left);
    strings += step;
    left -= step;
    return text;
  }

  static constexpr unsigned char emptyText[1] = {0};
};

/// Collation bytes that count in a comparison.
constexpr std::size_t mostLegacySteps = 0xffff;

}  // namespace ot95

#endif
