#ifndef OT95_BASE_H
#define OT95_BASE_H

/// @file
/// The words that all three libraries share: integer types of fixed width, format bytes, status
/// codes, and the mark of an exported symbol.

#include <cstdint>

/// Marks what a shared library offers; everything else stays hidden.
#define OT95_EXPORT __attribute__((visibility("default")))

using OtByte = unsigned char;        ///< One unsigned byte.
using OtWord = std::uint16_t;        ///< Unsigned 16 bits.
using OtLong = std::int32_t;         ///< The 32-bit value behind every stored or computed `long`.
using OtDWord = std::uint32_t;       ///< The 32-bit value behind every stored `unsigned long`.
using BlockId = std::uint32_t;       ///< Number of a block of the database, a location hint.
using OtFormatByte = unsigned char;  ///< A form in the low four bits, flags of texts above them.

/// The low four bits of a format byte name the form of a value.
enum : unsigned char {
  OT_FORMAT_NATIVE = 1,      ///< Disk form whose scalar bytes equal those in memory.
  OT_FORMAT_BIG_ENDIAN = 2,  ///< Disk form, most significant byte first.
  OT_FORMAT_MEMORY = 8       ///< The form that a value has in memory.
};

/// Status codes, returned or set through an `int&`.
enum : int {
  OT_ERR_END_OF_DATA = 2101,     ///< The data ended before the operation did.
  OT_ERR_BAD_ARGUMENT = -2002,   ///< An argument that has no meaning here.
  OT_ERR_NO_MORE_ITEMS = -2005,  ///< A list is exhausted.
  OT_ERR_NOT_SUPPORTED = -2999   ///< There is no answer for this value.
};

#endif
