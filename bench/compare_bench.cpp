// Comparison of real names, all levels and without case, in four scripts, and in 8 bits.
#include <locale.h>
#include <string.h>

#include <memory>

#include "collator.h"
#include "workload.h"

namespace bench {
namespace {

constexpr unsigned short kAllLevels = OT_CMP_NO_WILDCARDS;
constexpr unsigned short kNoCase = OT_CMP_NO_WILDCARDS | OT_CMP_IGNORE_CASE;

void CompareWide(const std::string& name, double target, const Pairs& pairs, unsigned short op) {
  const auto shared = std::make_shared<Pairs>(pairs);
  const Collator collator = OpenCollator("", (op & OT_CMP_IGNORE_CASE) != 0);
  Workload(
      name, target,
      [shared, op, cycle = Cycle(*shared)]() mutable {
        const auto& [a, b] = cycle.Next();
        benchmark::DoNotOptimize(a->wide.Compare(b->wide, op));
      },
      [shared, collator, cycle = Cycle(*shared)]() mutable {
        const auto& [a, b] = cycle.Next();
        benchmark::DoNotOptimize(
            ucol_strcoll(collator.get(), Units(*a), Length(*a), Units(*b), Length(*b)));
      });
}

void CompareScript(const std::string& script, double random, double adjacent, double caseOnly) {
  const Names& names = NamesOf(script);
  CompareWide("compare " + script + " random", random, RandomPairs(names), kAllLevels);
  CompareWide("compare " + script + " neighbours", adjacent, AdjacentPairs(names), kAllLevels);
  if (caseOnly != 0) {
    CompareWide("compare " + script + " case only", caseOnly, CasePairs(names), kAllLevels);
  }
  CompareWide("compare " + script + " neighbours, no case", adjacent, AdjacentPairs(names),
              kNoCase);
}

/// Names as both sides hold them in ISO-8859-1.
struct NarrowPair {
  OtString a, b;
};

std::vector<NarrowPair> Narrowed(const Pairs& pairs) {
  constexpr unsigned char kIso8859_1 = 2;
  std::vector<NarrowPair> narrowed;
  for (const auto& [a, b] : pairs) {
    narrowed.push_back({ToNarrow(a->wide, kIso8859_1), ToNarrow(b->wide, kIso8859_1)});
  }
  return narrowed;
}

void CompareNarrow(const std::string& name, double target, const Pairs& pairs) {
  const locale_t peer = newlocale(LC_COLLATE_MASK | LC_CTYPE_MASK, "en_US.ISO-8859-1", nullptr);
  if (peer == nullptr) return;  // the locale isn't installed
  const auto shared = std::make_shared<std::vector<NarrowPair>>(Narrowed(pairs));
  Workload(
      name, target,
      [shared, cycle = Cycle(*shared)]() mutable {
        const NarrowPair& pair = cycle.Next();
        benchmark::DoNotOptimize(pair.a.Compare(pair.b, kAllLevels));
      },
      [shared, peer, cycle = Cycle(*shared)]() mutable {
        const NarrowPair& pair = cycle.Next();
        benchmark::DoNotOptimize(strcoll_l(pair.a.StrGet(), pair.b.StrGet(), peer));
      });
}

/// A language with letters of its own against the neutral one, both ours.
void CompareLanguage(const std::string& tag) {
  const Pairs pairs = AdjacentPairs(NamesOf("latin"));
  const auto neutral = std::make_shared<std::vector<NarrowPair>>();
  const auto tailored = std::make_shared<std::vector<NarrowPair>>();
  for (const auto& [a, b] : pairs) {
    neutral->push_back({a->wide, b->wide});
    tailored->push_back({a->wide, b->wide});
    tailored->back().a.SetLanguageCode(OtLanguageContext::LanguageOfTag(tag.c_str()));
    tailored->back().b.SetLanguageCode(OtLanguageContext::LanguageOfTag(tag.c_str()));
  }
  const auto compare = [](const auto& list) {
    return [list, cycle = Cycle(*list)]() mutable {
      const NarrowPair& pair = cycle.Next();
      benchmark::DoNotOptimize(pair.a.Compare(pair.b, kAllLevels));
    };
  };
  Workload("compare in " + tag + ", peer neutral", 1 / 1.3, compare(tailored), compare(neutral));
}

}  // namespace

void RegisterComparison() {
  CompareScript("latin", 2.5, 2, 5);
  CompareScript("cyrillic", 5, 4, 10);
  CompareScript("greek", 5, 4, 10);
  CompareScript("han", 5, 4, 0);
  const Names& latin = NamesOf("latin");
  CompareNarrow("compare 8-bit random", 2.5, RandomPairs(latin));
  CompareNarrow("compare 8-bit neighbours", 7, AdjacentPairs(latin));
  CompareNarrow("compare 8-bit case only", 20, CasePairs(latin));
  for (const char* tag : {"cs", "sv", "es-traditional"}) CompareLanguage(tag);
}

}  // namespace bench
