// Comparison of real names, all levels and without case, in four scripts, and in 8 bits.
#include <locale.h>
#include <string.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "collator.h"
#include "workload.h"

namespace bench {
namespace {

constexpr unsigned short kAllLevels = OT_CMP_NO_WILDCARDS;
constexpr unsigned short kNoCase = OT_CMP_NO_WILDCARDS | OT_CMP_IGNORE_CASE;

void CompareWide(const std::string& name, Goal goal, const Pairs& pairs, unsigned short op) {
  const auto shared = std::make_shared<Pairs>(pairs);
  const Collator collator = OpenCollator("", (op & OT_CMP_IGNORE_CASE) != 0);
  Add(
      name, goal,
      [shared, op, cycle = Cycle(*shared)]() mutable {
        const auto& [a, b] = cycle.Next();
        benchmark::DoNotOptimize(a.wide.Compare(b.wide, op));
      },
      [shared, collator, cycle = Cycle(*shared)]() mutable {
        const auto& [a, b] = cycle.Next();
        benchmark::DoNotOptimize(
            ucol_strcoll(collator.get(), Units(a), Length(a), Units(b), Length(b)));
      });
}

struct ScriptGoals {
  Goal random, neighbours, first, capitals;
};

void CompareScript(const std::string& corpus, const ScriptGoals& goals, bool hasCase) {
  const Names& names = NamesOf(corpus);
  CompareWide("compare " + corpus + " random", goals.random, RandomPairs(names), kAllLevels);
  CompareWide("compare " + corpus + " neighbours", goals.neighbours, AdjacentPairs(names),
              kAllLevels);
  if (!hasCase) return;
  CompareWide("compare " + corpus + " first letter's case", goals.first, FirstLetterPairs(names),
              kAllLevels);
  CompareWide("compare " + corpus + " all letters' case", goals.capitals, CapitalPairs(names),
              kAllLevels);
  CompareWide("compare " + corpus + " neighbours, no case", goals.neighbours, AdjacentPairs(names),
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
    narrowed.push_back({ToNarrow(a.wide, kIso8859_1), ToNarrow(b.wide, kIso8859_1)});
  }
  return narrowed;
}

void CompareNarrow(const std::string& name, Goal goal, const Pairs& pairs) {
  const locale_t peer = newlocale(LC_COLLATE_MASK | LC_CTYPE_MASK, "en_US.ISO-8859-1", nullptr);
  if (peer == nullptr) {
    std::fprintf(stderr, "no locale en_US.ISO-8859-1, which scripts/bench makes\n");
    std::exit(2);
  }
  const auto shared = std::make_shared<std::vector<NarrowPair>>(Narrowed(pairs));
  Add(
      name, goal,
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
void CompareLanguage(const std::string& tag, double share) {
  const Pairs pairs = AdjacentPairs(NamesOf("latin"));
  const auto neutral = std::make_shared<std::vector<NarrowPair>>();
  const auto tailored = std::make_shared<std::vector<NarrowPair>>();
  for (const auto& [a, b] : pairs) {
    neutral->push_back({a.wide, b.wide});
    tailored->push_back({a.wide, b.wide});
    tailored->back().a.SetLanguageCode(OtLanguageContext::LanguageOfTag(tag.c_str()));
    tailored->back().b.SetLanguageCode(OtLanguageContext::LanguageOfTag(tag.c_str()));
  }
  const auto compare = [](const auto& list) {
    return [list, cycle = Cycle(*list)]() mutable {
      const NarrowPair& pair = cycle.Next();
      benchmark::DoNotOptimize(pair.a.Compare(pair.b, kAllLevels));
    };
  };
  Add("compare in " + tag + ", peer neutral", 1 / share, compare(tailored), compare(neutral));
}

}  // namespace

void RegisterComparison() {
  const ScriptGoals latin = {{2.5, 110}, {1.6, 180}, {6, 190}, {4, 240}};
  const ScriptGoals other = {{5, 120}, {4, 170}, {11, 210}, {4, 0}};
  CompareScript("latin", latin, true);
  CompareScript("cyrillic", other, true);
  CompareScript("greek", {{5, 120}, {4, 180}, {11, 210}, {4, 0}}, true);
  CompareScript("han", {{5, 130}, {4, 190}, 0, 0}, false);
  for (const char* words : {"french", "german", "spanish", "swedish"}) {
    CompareScript(words, {2.5, 1.6, 6, 4}, true);
  }
  for (const char* words : {"russian", "greek words"}) CompareScript(words, {5, 4, 11, 4}, true);
  CompareScript("japanese", {5, 4, 0, 0}, false);
  const Names& names = NamesOf("latin");
  CompareNarrow("compare 8-bit random", {2.5, 115}, RandomPairs(names));
  CompareNarrow("compare 8-bit neighbours", {4, 230}, AdjacentPairs(names));
  CompareNarrow("compare 8-bit first letter's case", {25, 170}, FirstLetterPairs(names));
  CompareNarrow("compare 8-bit all letters' case", 4, CapitalPairs(names));
  for (const char* tag : {"sv", "pl", "de", "fr", "tr"}) CompareLanguage(tag, 1.05);
  for (const char* tag : {"cs", "es-traditional", "hu"}) CompareLanguage(tag, 1.3);
}

}  // namespace bench
