// What happens in impossible states and when memory is short: a host's handlers, or the default.

#include "ot95/fault.h"

#include <atomic>
#include <cstdio>

namespace {

void ReportAssertion(const char* expression, const char* file, unsigned long line) {
  std::fprintf(stderr, "%s:%lu: assertion failed: %s\n", file ? file : "(unknown)", line,
               expression ? expression : "(unknown)");
}

int NoMemoryToGive(unsigned long) {
  return 0;
}

std::atomic<OtAssertHandler> assertHandler{ReportAssertion};
std::atomic<OtMemoryHandler> memoryHandler{NoMemoryToGive};
thread_local unsigned long shortages = 0;

}  // namespace

void OTDB_assert(const char* expression, const char* file, unsigned long line) {
  assertHandler.load()(expression, file, line);
}

OtAssertHandler OTDB_SetAssertHandler(OtAssertHandler handler) noexcept {
  return assertHandler.exchange(handler ? handler : ReportAssertion);
}

int OtCallMemoryHandler(unsigned long size) {
  OtNoteMemoryShortage();
  return memoryHandler.load()(size);
}

OtMemoryHandler OtSetMemoryHandler(OtMemoryHandler handler) noexcept {
  return memoryHandler.exchange(handler ? handler : NoMemoryToGive);
}

unsigned long OtMemoryShortages() noexcept {
  return shortages;
}

void OtNoteMemoryShortage() noexcept {
  ++shortages;
}
