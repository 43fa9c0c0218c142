#ifndef OT95_POSTGRESQL_STORED_H
#define OT95_POSTGRESQL_STORED_H

/**
 * @file
 * Stored values of the library as arguments of functions: bytes, the name of a type, the name of a
 * form. A file includes postgres.h before it.
 */

#include "fmgr.h"
#include "lib/stringinfo.h"
#include "ot95c/ot95c.h"

/** A type by its name, or its number as text. */
extern int OtTypeNamed(const char* name);
/** A form by its name: native, big-endian, or a number with flags. */
extern unsigned OtFormNamed(const char* name);
extern ot95_type OtDescribe(int type);
/** The array of one element that three arguments of a function name, from `first` on: bytea, type,
 * form. */
extern ot95_array OtArrayOf(FunctionCallInfo fcinfo, int first);

/** Runs a function of the library whose result goes to a buffer: first into a small one, again
   where that has no room. The text or bytes are in memory of the current context, with a zero
   behind them. */
typedef int (*OtGive)(const void* what, ot95_buffer* out);
extern ot95_buffer OtTake(OtGive give, const void* what, const char* doing);

/** One element of an array, printed as its type does. */
extern char* OtPrint(const ot95_array* array, size_t index);

#endif
