// Whether bytes at hand can be a stored array: what the handlers themselves take on trust.
#include <algorithm>

#include "kit/verify.h"
#include "kit/walks.h"
#include "ot95/bytes.h"
#include "ot95/typemgr.h"
#include "table/rows.h"

namespace ot95 {

namespace {

constexpr unsigned long kLengthField = 2;
constexpr unsigned long kHeader = 4;  // Length, code set, language.
constexpr unsigned char kOrderCodeSet = 0xfe;
constexpr unsigned char kLastNarrowCodeSet = 0xe0;
constexpr unsigned char kKeyForm = 0x80;

// One string as it stands: the length field, and the bytes behind it that it counts.
struct StoredString {
  unsigned long length;     // As the record says.
  unsigned long remaining;  // Bytes at hand from the length field on.
  const unsigned char* bytes;

  StoredString(const StoredBytes& stored, unsigned long offset)
      : length(LoadAs<std::uint16_t>(stored.bytes + offset, stored.format)),
        remaining(stored.available - offset),
        bytes(stored.bytes + offset) {}

  bool IsWhole() const { return length + kLengthField <= remaining; }
  unsigned char LastByte() const { return bytes[length + 1]; }
  bool IsTerminated() const { return bytes[length] == 0 && LastByte() == 0xff; }
  unsigned long TextLength() const { return length - kHeader; }

  // Two-byte characters and order words come in pairs of bytes.
  bool HasWholeCharacters() const {
    return bytes[2] <= kLastNarrowCodeSet || TextLength() % 2 == 0;
  }

  // A key that was cut at the end of its place lacks the terminator, which its length still counts.
  bool IsCutKey(unsigned char format) const {
    return (format & kKeyForm) != 0 && remaining >= kHeader && length == remaining &&
           bytes[2] == kOrderCodeSet && HasWholeCharacters();
  }
};

// The old form has one length for all strings, each of which ends in a zero byte.
int VerifyOldStrings(const StoredString& record, unsigned long count, unsigned long& consumed) {
  const unsigned char* text = record.bytes + kLengthField;
  const auto strings = std::count(text, text + record.length, 0);
  if (static_cast<unsigned long>(strings) != count) return OT_ERR_BAD_ARGUMENT;
  consumed = record.length + kLengthField;
  return 0;
}

int VerifyString(const StoredString& record, unsigned char format, unsigned long& consumed) {
  if (record.length < kHeader) return OT_ERR_BAD_ARGUMENT;
  if (record.IsCutKey(format)) {
    consumed += record.length;
    return 0;
  }
  if (!record.IsWhole()) return OT_ERR_END_OF_DATA;
  if (!record.IsTerminated() || !record.HasWholeCharacters()) return OT_ERR_BAD_ARGUMENT;
  consumed += record.length + kLengthField;
  return 0;
}

int VerifyStrings(const StoredBytes& stored, unsigned long& consumed) {
  for (unsigned long i = 0; i < stored.count; ++i) {
    if (stored.available - consumed < kLengthField) return OT_ERR_END_OF_DATA;
    const StoredString record(stored, consumed);
    // As in loading, the first record's last byte tells the form of the array.
    if (i == 0 && record.IsWhole() && record.LastByte() == 0) {
      return VerifyOldStrings(record, stored.count, consumed);
    }
    const int status = VerifyString(record, stored.format, consumed);
    if (status != 0) return status;
  }
  return 0;
}

// The row of old strings has no keys of order words, so that none can have been cut.
int VerifyStringsOfOldRow(const StoredBytes& stored, unsigned long& consumed) {
  StoredBytes whole = stored;
  whole.format &= static_cast<unsigned char>(~kKeyForm);
  return VerifyStrings(whole, consumed);
}

// All values of a fixed size are good; there only have to be enough of them.
int VerifyFixed(const OtTypeDescriptor& row, const StoredBytes& stored, unsigned long& consumed) {
  if (row.SizeGet == nullptr) return OT_ERR_BAD_ARGUMENT;
  const unsigned long width = row.SizeGet(nullptr, OT_FORMAT_MEMORY, stored.format, 1);
  if (width == 0) return 0;
  const unsigned long present = std::min(stored.count, stored.available / width);
  consumed = present * width;
  return present == stored.count ? 0 : OT_ERR_END_OF_DATA;
}

// Rows whose values tell their own size. They have no member for this check, because the table of
// members is part of the interface.
constexpr struct {
  const OtTypeDescriptor* row;
  VerifyFunc verify;
} kVerifiers[] = {
    {&rowOtString, VerifyStrings},
    {&rowLegacyOtString, VerifyStringsOfOldRow},
    {&rowOtBlob, VerifyBlobs},
    {&rowOtIString, VerifyLegacyStrings},
    {&rowOtCaseIString, VerifyLegacyStrings},
};

int VerifyVariable(const OtTypeDescriptor* row, const StoredBytes& stored,
                   unsigned long& consumed) {
  for (const auto& verifier : kVerifiers) {
    if (verifier.row == row) return verifier.verify(stored, consumed);
  }
  return OT_ERR_BAD_ARGUMENT;
}

}  // namespace

}  // namespace ot95

int OtTypeMgr::VerifyStored(char id, const void* disk, unsigned long available,
                            unsigned char format, unsigned long count,
                            unsigned long& consumed) const {
  consumed = 0;
  const OtTypeDescriptor* row = Row(id);
  if (row == nullptr || ot95::HasMemoryBit(format)) return OT_ERR_BAD_ARGUMENT;
  const ot95::StoredBytes stored = {static_cast<const unsigned char*>(disk),
                                    disk != nullptr ? available : 0, format, count};
  return row->isFixed != 0 ? ot95::VerifyFixed(*row, stored, consumed)
                           : ot95::VerifyVariable(row, stored, consumed);
}
