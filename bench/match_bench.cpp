// Wildcard patterns over words of 16 bits, and over raw bytes.
#include <fnmatch.h>
#include <locale.h>

#include <memory>

#include "corpus.h"
#include "workload.h"

namespace bench {
namespace {

void MatchWide(const std::string& pattern, Goal goal) {
  const Names& names = NamesOf("latin");
  const locale_t utf8 = newlocale(LC_ALL_MASK, "C.UTF-8", nullptr);
  const OtString ours = ToWide(std::u16string(pattern.begin(), pattern.end()));
  Add(
      "match " + pattern, goal,
      [ours, cycle = Cycle(names)]() mutable {
        benchmark::DoNotOptimize(cycle.Next().wide.Compare(ours, 0));
      },
      [pattern, utf8, cycle = Cycle(names)]() mutable {
        uselocale(utf8);
        benchmark::DoNotOptimize(fnmatch(pattern.c_str(), cycle.Next().utf8.c_str(), 0));
        uselocale(LC_GLOBAL_LOCALE);
      });
}

void MatchRaw(const std::string& pattern, Goal goal) {
  const Names& names = NamesOf("latin");
  Add(
      "match " + pattern + ", raw bytes", goal,
      [pattern, cycle = Cycle(names)]() mutable {
        benchmark::DoNotOptimize(
            OtStrCmp(0, 1, cycle.Next().utf8.c_str(), 0, 1, pattern.c_str(), 0));
      },
      [pattern, cycle = Cycle(names)]() mutable {
        benchmark::DoNotOptimize(fnmatch(pattern.c_str(), cycle.Next().utf8.c_str(), 0));
      });
}

}  // namespace

void RegisterMatching() {
  MatchWide("*ing", {5, 180});
  for (const char* pattern : {"a*", "a*b*c", "?bc*"}) MatchWide(pattern, {5, 130});
  MatchRaw("*ing", {2, 150});
  for (const char* pattern : {"a*", "a*b*c", "?bc*"}) MatchRaw(pattern, {2, 55});
}

}  // namespace bench
