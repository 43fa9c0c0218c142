#ifndef OT95_POSTGRESQL_NATIVE_H
#define OT95_POSTGRESQL_NATIVE_H

/**
 * @file
 * Values of the library from texts as the server reads them. A file includes postgres.h before it.
 */

#include "ot95c/ot95c.h"

/** Stores what a text says to the server: a number, a date, a time, bytes. Ends the statement where
   it says nothing that the type can hold. */
extern ot95_buffer OtEncodeNative(int type, unsigned form, char* text);

#endif
