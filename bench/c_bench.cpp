// Texts in UTF-8 by the C interface: compared, keyed, matched, hashed, in the other case.
#include <fnmatch.h>
#include <locale.h>
#include <unicode/ucasemap.h>

#include <memory>

#include "collator.h"
#include "ot95c/ot95c.h"
#include "workload.h"

namespace bench {
namespace {

struct FreeCollation {
  void operator()(ot95_collation* collation) const { ot95_free(collation); }
};
using Collation = std::shared_ptr<ot95_collation>;

Collation OpenCollation(const char* tag = "") {
  ot95_collation* collation = nullptr;
  ot95_collation_open(tag, 0, &collation);
  return Collation(collation, FreeCollation());
}

int Size(const std::string& text) {
  return static_cast<int>(text.size());
}

/// @param tag of the language, for both sides.
void Compare(const std::string& name, Goal goal, const Pairs& pairs, const char* tag = "") {
  const auto shared = std::make_shared<Pairs>(pairs);
  Add(
      name, goal,
      [shared, collation = OpenCollation(tag), cycle = Cycle(*shared)]() mutable {
        const auto& [a, b] = cycle.Next();
        int sign = 0;
        ot95_collation_compare(collation.get(), a.utf8.data(), a.utf8.size(), b.utf8.data(),
                               b.utf8.size(), &sign);
        benchmark::DoNotOptimize(sign);
      },
      [shared, collator = OpenCollator(tag), cycle = Cycle(*shared)]() mutable {
        const auto& [a, b] = cycle.Next();
        UErrorCode error = U_ZERO_ERROR;
        benchmark::DoNotOptimize(ucol_strcollUTF8(collator.get(), a.utf8.data(), Size(a.utf8),
                                                  b.utf8.data(), Size(b.utf8), &error));
      });
}

struct ScriptGoals {
  Goal random, neighbours, first, capitals;
};

void CompareScript(const std::string& corpus, const ScriptGoals& goals) {
  const Names& names = NamesOf(corpus);
  const std::string name = "compare UTF-8 " + corpus;
  Compare(name + " random", goals.random, RandomPairs(names));
  Compare(name + " neighbours", goals.neighbours, AdjacentPairs(names));
  if (corpus == "han") return;
  Compare(name + " first letter's case", goals.first, FirstLetterPairs(names));
  Compare(name + " all letters' case", goals.capitals, CapitalPairs(names));
}

/// What a peer of 16-bit units has to do first. @return the units.
int ToUnits(const std::string& utf8, UChar (&units)[512]) {
  UErrorCode error = U_ZERO_ERROR;
  int length = 0;
  u_strFromUTF8(units, 512, &length, utf8.data(), Size(utf8), &error);
  return length;
}

void Keys(const Names& names) {
  Add(
      "key of a UTF-8 name", {7, 510},
      [collation = OpenCollation(), cycle = Cycle(names)]() mutable {
        unsigned char key[1024];
        ot95_buffer out = {key, sizeof key, 0};
        const std::string& text = cycle.Next().utf8;
        ot95_collation_key(collation.get(), text.data(), text.size(), &out);
        benchmark::DoNotOptimize(key);
      },
      [collator = OpenCollator(""), cycle = Cycle(names)]() mutable {
        unsigned char key[1024];
        UChar units[512];
        const int length = ToUnits(cycle.Next().utf8, units);
        benchmark::DoNotOptimize(ucol_getSortKey(collator.get(), units, length, key, sizeof key));
      });
  Add(
      "hash of a UTF-8 name", 3,
      [collation = OpenCollation(), cycle = Cycle(names)]() mutable {
        uint64_t hash = 0;
        const std::string& text = cycle.Next().utf8;
        ot95_collation_hash(collation.get(), text.data(), text.size(), 1, &hash);
        benchmark::DoNotOptimize(hash);
      },
      [collator = OpenCollator(""), cycle = Cycle(names)]() mutable {
        unsigned char key[1024];
        UChar units[512];
        const int length = ToUnits(cycle.Next().utf8, units);
        const int size = ucol_getSortKey(collator.get(), units, length, key, sizeof key);
        benchmark::DoNotOptimize(std::hash<std::string_view>()(
            {reinterpret_cast<const char*>(key), static_cast<std::size_t>(size)}));
      });
}

void Match(const std::string& pattern) {
  const locale_t utf8 = newlocale(LC_ALL_MASK, "C.UTF-8", nullptr);
  Add(
      "match UTF-8 " + pattern, 2,
      [pattern, collation = OpenCollation(), cycle = Cycle(NamesOf("latin"))]() mutable {
        int matches = 0;
        const std::string& text = cycle.Next().utf8;
        ot95_collation_match(collation.get(), text.data(), text.size(), pattern.data(),
                             pattern.size(), &matches);
        benchmark::DoNotOptimize(matches);
      },
      [pattern, utf8, cycle = Cycle(NamesOf("latin"))]() mutable {
        uselocale(utf8);
        benchmark::DoNotOptimize(fnmatch(pattern.c_str(), cycle.Next().utf8.c_str(), 0));
        uselocale(LC_GLOBAL_LOCALE);
      });
}

struct CloseCaseMap {
  void operator()(UCaseMap* map) const { ucasemap_close(map); }
};

void UpperCase(const Names& names) {
  UErrorCode error = U_ZERO_ERROR;
  const std::shared_ptr<UCaseMap> map(ucasemap_open("", 0, &error), CloseCaseMap());
  Add(
      "upper case of a UTF-8 name", 1.5,
      [collation = OpenCollation(), cycle = Cycle(names)]() mutable {
        char upper[1024];
        ot95_buffer out = {upper, sizeof upper, 0};
        const std::string& text = cycle.Next().utf8;
        ot95_collation_upper(collation.get(), text.data(), text.size(), &out);
        benchmark::DoNotOptimize(upper);
      },
      [map, cycle = Cycle(names)]() mutable {
        char upper[1024];
        UErrorCode status = U_ZERO_ERROR;
        const std::string& text = cycle.Next().utf8;
        benchmark::DoNotOptimize(
            ucasemap_utf8ToUpper(map.get(), upper, sizeof upper, text.data(), Size(text), &status));
      });
}

}  // namespace

// The ratios are those of 16-bit texts, the counts 1.3 times theirs.
void RegisterCInterface() {
  CompareScript("latin", {{2.5, 143}, {1.6, 234}, {6, 247}, {4, 312}});
  CompareScript("cyrillic", {{5, 156}, {4, 221}, {11, 273}, 4});
  CompareScript("greek", {{5, 156}, {4, 234}, {11, 273}, 4});
  CompareScript("han", {{5, 169}, {4, 247}, 0, 0});
  Compare("compare UTF-8 latin neighbours in sv", 1.6, AdjacentPairs(NamesOf("latin")), "sv");
  const Names& names = NamesOf("latin");
  Keys(names);
  for (const char* pattern : {"*ing", "a*b*c"}) Match(pattern);
  UpperCase(names);
}

}  // namespace bench
