#ifndef OT95_FAULT_H
#define OT95_FAULT_H

/// @file
/// What the libraries do when something can't be: states that are impossible, and memory that has
/// run out. A program may put its own handlers in place, from any thread.
///
/// @code
///   static int reports = 0;
///   const OtAssertHandler before =
///       OTDB_SetAssertHandler([](const char*, const char*, unsigned long) { ++reports; });
///   OtInt64 quotient = OtInt64(1) / OtInt64(0);     // quotient == OtInt64(0)
///   OTDB_SetAssertHandler(before);                  // reports == 1
/// @endcode
///
/// Neither is a way to report bad input: for that there are status codes, and the answers that each
/// operation names.

#include "ot95/base.h"

/// Told of an impossible state: what was expected, the source file without its extension, and the
/// line there. The library goes on when it returns.
using OtAssertHandler = void (*)(const char* expression, const char* file, unsigned long line);

/// Asked for help after an allocation of `size` bytes failed. The answer is non-zero when it freed
/// something; the libraries ask once and don't try again.
using OtMemoryHandler = int (*)(unsigned long size);

/// Reports an impossible state to the handler. The one that stands at first writes one line on
/// standard error and returns. Null texts are named as unknown.
OT95_EXPORT void OTDB_assert(const char* expression, const char* file, unsigned long line);

/// Puts `handler` in place of what OTDB_assert does and returns the handler before; null restores
/// the one that stood at first. The result may be handed back later to restore it.
OT95_EXPORT OtAssertHandler OTDB_SetAssertHandler(OtAssertHandler handler) noexcept;

/// Asks the memory handler. The one that stands at first frees nothing and answers 0.
OT95_EXPORT int OtCallMemoryHandler(unsigned long size);

/// Puts `handler` in place and returns the one before; null restores the one that stood at first.
OT95_EXPORT OtMemoryHandler OtSetMemoryHandler(OtMemoryHandler handler) noexcept;

/// How often an allocation of the libraries has failed on this thread. A string that could not be
/// built is an empty one, or what it was before; who has to know compares this before and after.
OT95_EXPORT unsigned long OtMemoryShortages() noexcept;

/// Counts one; the memory handler isn't asked.
OT95_EXPORT void OtNoteMemoryShortage() noexcept;

namespace ot95 {

/// What was allocated; a null is counted.
template <class T>
T* Noted(T* allocated) {
  if (allocated == nullptr) OtNoteMemoryShortage();
  return allocated;
}

}  // namespace ot95

#endif
