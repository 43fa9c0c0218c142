#ifndef OT95_VERSION_H
#define OT95_VERSION_H

/// @file
/// The versions of this library, and the check that a library built on it was built for it.
///
/// @code
///   int same = CheckOtVersionNumber(OT_VERSION_MAJOR, OT_VERSION_MINOR, OT_VERSION_REVISION,
///                                   OT_VERSION_BUILD, OT_VERSION_PATCH, 0);  // same == 0
///   int older = CheckOtVersionNumber(9, 4, 0, 0, 0, 0);                      // older == 2
/// @endcode
///
/// The numbers are those that a program was compiled with; the function is that of the library
/// which is loaded when it runs.

#include "ot95/base.h"

/// The release of the package that this header came with. Unlike the five numbers, which stand for
/// what an engine is built for, it rises with every release.
#define OT95_RELEASE "9.6.0"

/// The five numbers that the library is asked for: 9.5.26.340.0. Stored forms, keys and hashes are
/// the same in all releases.
enum : unsigned long {
  OT_VERSION_MAJOR = 9,
  OT_VERSION_MINOR = 5,
  OT_VERSION_REVISION = 26,
  OT_VERSION_BUILD = 340,
  OT_VERSION_PATCH = 0
};

/// 0 when the five numbers are those of the library that is loaded; otherwise 1 to 5, which of them
/// differs first. `flags` names the caller's kind and has no effect on the answer.
OT95_EXPORT int CheckOtVersionNumber(unsigned long major, unsigned long minor,
                                     unsigned long revision, unsigned long build,
                                     unsigned long patch, int flags) noexcept;

#endif
