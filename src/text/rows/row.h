#ifndef OT95_SRC_TEXT_ROWS_ROW_H
#define OT95_SRC_TEXT_ROWS_ROW_H

/// @file
/// Members of the rows OtString and LegacyOtString, which stand in several sources. By `Legacy` are
/// named those that write the old form.

#include "ot95/typemgr.h"
#include "text/collation/orders.h"

namespace ot95 {

/// @tparam legacy a record that the given length cuts is taken for one of the old form.
template <bool legacy>
long CompareStrings(unsigned char format, unsigned long length1, void* value1,
                    unsigned long length2, void* value2, unsigned short cmpOp, unsigned long count,
                    int& status);
template <bool legacy>
unsigned long HashStrings(unsigned char format, unsigned long length, void* value,
                          unsigned long count, int& status);

unsigned long TranslateStrings(void* target, unsigned char targetFormat, unsigned long targetLength,
                               void* source, unsigned char sourceFormat, unsigned long sourceLength,
                               unsigned long count);
unsigned long TranslateLegacyStrings(void* target, unsigned char targetFormat,
                                     unsigned long targetLength, void* source,
                                     unsigned char sourceFormat, unsigned long sourceLength,
                                     unsigned long count);

OtString& PrintString(OtString& target, void* value, const char* format, unsigned long count);
void* ScanString(void* value, OtString& text, const char* format, unsigned long count);

/// Stores strings in the old form.
unsigned long LegacyStringStore(void* disk, const void* memory, unsigned char format,
                                unsigned long count);

/// Load that reads no more than `available` bytes. Strings for which there are none become empty.
/// @param keys the records are keys: each cut to what remains, and never of the old form.
/// @return bytes read.
unsigned long LoadStrings(void* memory, const void* disk, std::size_t available,
                          unsigned char format, unsigned long count, bool keys);

/// A text to make a key of, and what is known of its end.
struct KeySource {
  TextSpan text;
  bool cut;  ///< The text goes on where its bytes end.
};

/// Writes the key of a text into at most `room` bytes, which are at least four. @return its bytes.
std::size_t BuildKey(unsigned char* target, std::size_t room, unsigned char targetFormat,
                     const KeySource& source);

/// The same for most strings: Unicode whose finished keys are the whole answer. @return 0 for
/// others.
std::size_t BuildPlainKey(unsigned char* target, std::size_t room, unsigned char targetFormat,
                          const OtString& string);

}  // namespace ot95

#endif
