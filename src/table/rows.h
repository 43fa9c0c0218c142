#ifndef OT95_SRC_TABLE_ROWS_H
#define OT95_SRC_TABLE_ROWS_H

/// @file
/// Every row of the table of types. A row is a constant-initialised variable in the source of its
/// family, so that it is complete before any code runs; it is writable for the Exchange operations.

#include "ot95/typemgr.h"

namespace ot95 {

constexpr unsigned kCurrentRows = 41;  ///< Rows of CurrentFactory.
constexpr unsigned kLegacyRows = 28;   ///< Rows of LegacyFactory.

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
extern OtTypeDescriptor rowOtString;
extern OtTypeDescriptor rowOtDate;
extern OtTypeDescriptor rowOtTime;
extern OtTypeDescriptor rowBlockId;
extern OtTypeDescriptor rowOtObjId;
extern OtTypeDescriptor rowOtClassId;
extern OtTypeDescriptor rowOtRef;
extern OtTypeDescriptor rowOtBlob;
extern OtTypeDescriptor rowOtDateTime;
extern OtTypeDescriptor rowOtIString;
extern OtTypeDescriptor rowOtCaseIString;
extern OtTypeDescriptor rowD_Date;
extern OtTypeDescriptor rowD_Time;
extern OtTypeDescriptor rowD_Timestamp;
extern OtTypeDescriptor rowD_Interval;
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
extern OtTypeDescriptor rowOtSeal;
extern OtTypeDescriptor rowIllegal;

/// Takes the place of rowOtString in the table for old formats.
extern OtTypeDescriptor rowLegacyOtString;

}  // namespace ot95

#endif
