// Words of real languages to measure on, read into the forms that each side wants.

#include "corpus.h"

#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <numeric>
#include <random>
#include <set>

namespace bench {
namespace {

std::string corpusFolder;

Name MakeName(const std::string& line) {
  const icu::UnicodeString text = icu::UnicodeString::fromUTF8(line);
  const std::u16string units(text.getBuffer(), static_cast<std::size_t>(text.length()));
  return {line, units, ToWide(units)};
}

Names Read(const std::string& script) {
  std::ifstream file(corpusFolder + "/" + script);
  std::set<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.insert(line);
  if (lines.empty()) {
    std::fprintf(stderr, "no corpus %s/%s\n", corpusFolder.c_str(), script.c_str());
    std::exit(2);
  }
  std::vector<std::string> shuffled(lines.begin(), lines.end());
  std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(1));
  Names names;
  for (const std::string& line : shuffled) names.push_back(MakeName(line));
  return names;
}

}  // namespace

void SetCorpusFolder(const std::string& folder) {
  corpusFolder = folder;
}

OtString ToWide(const std::u16string& units) {
  std::vector<unsigned short> text(units.begin(), units.end());
  text.push_back(0);
  return OtString(text.data());
}

OtString ToNarrow(const OtString& text, unsigned char codeSet) {
  OtString narrow(text);
  narrow.MapToCodeSet(codeSet);
  return narrow;
}

const Names& NamesOf(const std::string& script) {
  static std::map<std::string, Names> read;
  const auto found = read.find(script);
  return found != read.end() ? found->second : read.emplace(script, Read(script)).first->second;
}

Names ManyNames(std::size_t count) {
  const Names& corpus = NamesOf("latin");
  Names names(corpus);
  for (std::size_t i = 0; names.size() < count; ++i) {
    const std::u16string units = corpus[i % corpus.size()].units + u' ' +
                                 corpus[(i * 7919 + i / corpus.size()) % corpus.size()].units;
    names.push_back({{}, units, ToWide(units)});
  }
  names.resize(count);
  return names;
}

Pairs RandomPairs(const Names& names) {
  std::mt19937 random(2);
  std::uniform_int_distribution<std::size_t> any(0, names.size() - 1);
  Pairs pairs;
  for (int i = 0; i < 4096; ++i) pairs.emplace_back(names[any(random)], names[any(random)]);
  return pairs;
}

Pairs AdjacentPairs(const Names& names) {
  std::vector<const Name*> sorted;
  for (const Name& name : names) sorted.push_back(&name);
  std::sort(sorted.begin(), sorted.end(), [](const Name* a, const Name* b) {
    return a->wide.Compare(b->wide, OT_CMP_NO_WILDCARDS) < 0;
  });
  std::vector<std::size_t> order(sorted.size() - 1);
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::shuffle(order.begin(), order.end(), std::mt19937(3));
  Pairs pairs;
  for (const std::size_t i : order) pairs.emplace_back(*sorted[i], *sorted[i + 1]);
  return pairs;
}

namespace {

template <class Change>
Pairs ChangedPairs(const Names& names, Change change) {
  Pairs pairs;
  for (const Name& name : names) {
    icu::UnicodeString text(name.units.data(), static_cast<int>(name.units.size()));
    change(text);
    std::string utf8;
    text.toUTF8String(utf8);
    pairs.emplace_back(name, MakeName(utf8));
  }
  return pairs;
}

}  // namespace

Pairs CapitalPairs(const Names& names) {
  return ChangedPairs(names, [](icu::UnicodeString& text) { text.toUpper(); });
}

Pairs FirstLetterPairs(const Names& names) {
  return ChangedPairs(names, [](icu::UnicodeString& text) {
    const UChar32 first = text.char32At(0);
    const UChar32 lower = u_tolower(first);
    text.replace(0, U16_LENGTH(first), lower != first ? lower : u_toupper(first));
  });
}

}  // namespace bench
