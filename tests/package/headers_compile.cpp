// Compiled as C++17 without exceptions: every public header, each from its users' side.
#include "ot95/obs.h"
#include "ot95/oin.h"
#include "ot95/ot95.h"
