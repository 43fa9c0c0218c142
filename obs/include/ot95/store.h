#ifndef OT95_STORE_H
#define OT95_STORE_H

/// @file
/// The primitives of the stored form: arrays of scalars moved between memory and disk, and their
/// sizes there.
///
/// @code
///   short prices[3] = {100, 250, 399};
///   unsigned char page[6];
///   ShortStore(page, prices, OT_FORMAT_BIG_ENDIAN, 3);  // page[3] == 0xfa
///   short back[3];
///   ShortStore(back, page, OT_FORMAT_BIG_ENDIAN, 3);    // back[1] == 250
/// @endcode

#include "ot95/base.h"
#include "ot95/bytes.h"

/// @name Store primitives
/// Move `count` scalars from `source` to `target` and return the bytes moved. The low four bits of
/// `format` choose the form: 2 reverses the bytes of each scalar, every other number copies them.
/// Reversal undoes itself, so one function serves both directions: to store, `target` is the disk
/// place; to load, it is the memory place. Neither place needs alignment. They may be one and the
/// same place; otherwise they must not overlap. With a `count` of 0 neither pointer is used.
/// @{
OT95_EXPORT unsigned long CharStore(void* target, const void* source, unsigned char format,
                                    unsigned long count = 1);  ///< 1 byte each: always a copy.
OT95_EXPORT unsigned long ShortStore(void* target, const void* source, unsigned char format,
                                     unsigned long count = 1);  ///< 2 bytes each.
OT95_EXPORT unsigned long LongStore(void* target, const void* source, unsigned char format,
                                    unsigned long count = 1);  ///< OtLong or OtDWord, 4 bytes each.
OT95_EXPORT unsigned long FloatStore(void* target, const void* source, unsigned char format,
                                     unsigned long count = 1);  ///< 4 bytes each, every bit kept.
OT95_EXPORT unsigned long DoubleStore(void* target, const void* source, unsigned char format,
                                      unsigned long count = 1);  ///< 8 bytes each, every bit kept.
/// @}

/// @name Integers of the machine
/// As above, for `int` and `unsigned`, which are 4 bytes wide in every form. Store and load are
/// apart because a form with another width would widen in one and cut in the other.
/// @{
OT95_EXPORT unsigned long IntStore(void* target, const void* source, unsigned char format,
                                   unsigned long count = 1);
OT95_EXPORT unsigned long IntLoad(void* target, const void* source, unsigned char format,
                                  unsigned long count = 1);
OT95_EXPORT unsigned long UnsignedStore(void* target, const void* source, unsigned char format,
                                        unsigned long count = 1);
OT95_EXPORT unsigned long UnsignedLoad(void* target, const void* source, unsigned char format,
                                       unsigned long count = 1);
/// @}

/// @name Size primitives
/// Bytes that `count` scalars take on disk in the form `diskFormat`. Neither the values nor the
/// forms matter to a scalar's size; `value` may be null.
/// @{
OT95_EXPORT unsigned long CharSizeGet(const void* value, unsigned char sourceFormat,
                                      unsigned char diskFormat, unsigned long count = 1);
OT95_EXPORT unsigned long ShortSizeGet(const void* value, unsigned char sourceFormat,
                                       unsigned char diskFormat, unsigned long count = 1);
OT95_EXPORT unsigned long LongSizeGet(const void* value, unsigned char sourceFormat,
                                      unsigned char diskFormat, unsigned long count = 1);
OT95_EXPORT unsigned long IntSizeGet(const void* value, unsigned char sourceFormat,
                                     unsigned char diskFormat, unsigned long count = 1);
OT95_EXPORT unsigned long FloatSizeGet(const void* value, unsigned char sourceFormat,
                                       unsigned char diskFormat, unsigned long count = 1);
OT95_EXPORT unsigned long DoubleSizeGet(const void* value, unsigned char sourceFormat,
                                        unsigned char diskFormat, unsigned long count = 1);
/// @}

/// @name Null size primitives
/// Bytes that `count` null values take on disk: as many as any others.
/// @{
OT95_EXPORT unsigned long CharNullSizeGet(unsigned long count = 1);
OT95_EXPORT unsigned long ShortNullSizeGet(unsigned long count = 1);
OT95_EXPORT unsigned long LongNullSizeGet(unsigned long count = 1);
OT95_EXPORT unsigned long IntNullSizeGet(unsigned long count = 1);
OT95_EXPORT unsigned long FloatNullSizeGet(unsigned long count = 1);
OT95_EXPORT unsigned long DoubleNullSizeGet(unsigned long count = 1);
/// @}

#endif
