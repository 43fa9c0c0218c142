#ifndef OT95_OT95_H
#define OT95_OT95_H

/// @file
/// All public headers of the type manager.

#include "ot95/blob.h"
#include "ot95/boolean.h"
#include "ot95/identity.h"
#include "ot95/int64.h"
#include "ot95/istring.h"
#include "ot95/nullable.h"
#include "ot95/odmg.h"
#include "ot95/scanner.h"
#include "ot95/sort.h"
#include "ot95/temporal.h"
#include "ot95/text.h"
#include "ot95/typemgr.h"

#endif
