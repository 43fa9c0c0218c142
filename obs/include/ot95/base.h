#ifndef OT95_BASE_H
#define OT95_BASE_H

/// @file
/// The words that all three libraries share: integer types of fixed width, format bytes, status
/// codes, and the mark of an exported symbol.
///
/// @code
///   unsigned char page[4];
///   const OtLong height = -413;                     // of the shore, below the sea, in metres
///   LongStore(page, &height, OT_FORMAT_BIG_ENDIAN, 1);   // page[3] == 0x63
/// @endcode
///
/// Stored data was first written by a 32-bit machine: there `long` had 32 bits, and the rows and
/// primitives that are called "long" hold 32 bits on every machine. Values of theirs are OtLong and
/// OtDWord, never `long`, which a 64-bit machine makes twice as wide.
///
/// A *format byte* goes with every stored value:
///
///     bit   7 6 5 4   3 2 1 0
///           flags     form        flags are for texts: 0x80 an index key, 0x40 and 0x20 code sets
///
/// Forms 1 and 2 are those of the machine's byte order and of the other, big-endian one; 8 is the
/// value in memory. All other numbers store as 1 does, but are loaded element by element before
/// they are compared or hashed.

#include <cstdint>

/// Marks what a shared library offers; everything else stays hidden.
#define OT95_EXPORT __attribute__((visibility("default")))
/// The same of constant data. Weak where it is used: programs then read it where it stands, instead
/// of taking a copy of it into themselves when they start.
#ifndef OT95_EXPORT_DATA
#define OT95_EXPORT_DATA __attribute__((visibility("default"), weak))
#endif

using OtByte = unsigned char;        ///< One unsigned byte.
using OtWord = std::uint16_t;        ///< Unsigned 16 bits.
using OtLong = std::int32_t;         ///< The 32-bit value behind every stored or computed `long`.
using OtDWord = std::uint32_t;       ///< The 32-bit value behind every stored `unsigned long`.
using BlockId = std::uint32_t;       ///< Number of a block of the database, a location hint.
using OtFormatByte = unsigned char;  ///< A form in the low four bits, flags of texts above them.

/// The low four bits of a format byte name the form of a value. Whether a value is in memory is
/// told by bit 8 alone where values are moved, and by all four bits where they are compared.
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
