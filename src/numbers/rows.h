#ifndef OT95_SRC_NUMBERS_ROWS_H
#define OT95_SRC_NUMBERS_ROWS_H

// The rows of numbers: scalars, their nullable kin, the 64-bit integer, the boolean.

#include "ot95/typemgr.h"

namespace ot95 {

extern OtTypeDescriptor rowChar;
extern OtTypeDescriptor rowShort;
extern OtTypeDescriptor rowLong;
extern OtTypeDescriptor rowDouble;
extern OtTypeDescriptor rowFloat;
extern OtTypeDescriptor rowOtWord;
extern OtTypeDescriptor rowOtDWord;
extern OtTypeDescriptor rowInt;
extern OtTypeDescriptor rowUnsigned;
extern OtTypeDescriptor rowEnum;
extern OtTypeDescriptor rowOtByte;
extern OtTypeDescriptor rowBlockId;
extern OtTypeDescriptor rowOtInt64;
extern OtTypeDescriptor rowOtBoolean;
extern OtTypeDescriptor rowOtNull_char;
extern OtTypeDescriptor rowOtNull_uchar;
extern OtTypeDescriptor rowOtNull_short;
extern OtTypeDescriptor rowOtNull_ushort;
extern OtTypeDescriptor rowOtNull_int;
extern OtTypeDescriptor rowOtNull_unsigned;
extern OtTypeDescriptor rowOtNull_long;
extern OtTypeDescriptor rowOtNull_ulong;
extern OtTypeDescriptor rowOtNull_float;
extern OtTypeDescriptor rowOtNull_double;
extern OtTypeDescriptor rowOtNull_OtInt64;

}  // namespace ot95

#endif
