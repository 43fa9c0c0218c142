#ifndef OT95_SRC_KIT_WIDE_H
#define OT95_SRC_KIT_WIDE_H

/// @file
/// Functions for machines with vectors of 32 bytes, beside those for every machine of the
/// architecture. The caller chooses at run time.

#if defined(__x86_64__) || defined(__i386__)
#define OT95_HAVE_WIDE 1
#define OT95_WIDE __attribute__((target("avx2")))
#include <immintrin.h>
#endif

namespace ot95 {

/// Whether functions marked OT95_WIDE can run here.
inline bool HasWideVectors() {
#ifdef OT95_HAVE_WIDE
  return __builtin_cpu_supports("avx2") != 0;
#else
  return false;
#endif
}

}  // namespace ot95

#endif
