#ifndef OT95_OBS_H
#define OT95_OBS_H

/// @file
/// The base services: all of libot95Obs.

#include "ot95/base.h"
#include "ot95/bytes.h"
#include "ot95/clock.h"
#include "ot95/config.h"
#include "ot95/fault.h"
#include "ot95/memfile.h"
#include "ot95/store.h"
#include "ot95/version.h"

#endif
