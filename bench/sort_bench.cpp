// Sorting 100,000 names, by comparison and by keys.
#include <algorithm>
#include <memory>
#include <numeric>

#include "collator.h"
#include "ot95/sort.h"
#include "ot95/typemgr.h"
#include "workload.h"

namespace bench {
namespace {

constexpr std::size_t kNames = 100000;
constexpr char kText = 11;
constexpr unsigned long kKeyRoom = OtINDEX_MAX_KEYLEN;
constexpr unsigned char kKeyForm = 0x80 | OT_FORMAT_BIG_ENDIAN;

std::vector<unsigned> Indices() {
  std::vector<unsigned> indices(kNames);
  std::iota(indices.begin(), indices.end(), 0U);
  return indices;
}

template <class Less>
void SortIndices(Less less) {
  std::vector<unsigned> indices = Indices();
  std::sort(indices.begin(), indices.end(), less);
  benchmark::DoNotOptimize(indices.data());
}

std::string OurKey(const Name& name) {
  unsigned char key[kKeyRoom];
  OtString* text = const_cast<OtString*>(&name.wide);
  const unsigned long size = CurrentFactory[11]->Translate(key, kKeyForm, sizeof key, text,
                                                           OT_FORMAT_MEMORY, sizeof *text, 1);
  return std::string(reinterpret_cast<const char*>(key), size);
}

void SortOurKeys(const Names& names) {
  std::vector<std::string> keys;
  keys.reserve(names.size());
  for (const Name& name : names) keys.push_back(OurKey(name));
  SortIndices([&](unsigned a, unsigned b) {
    int status = 0;
    return StringCompare(kKeyForm, keys[a].size(), keys[a].data(), keys[b].size(), keys[b].data(),
                         OT_CMP_NO_WILDCARDS, 1, status) < 0;
  });
}

void SortByteKeys(const Names& names) {
  const OtTypeMgr types;
  std::vector<std::string> keys;
  keys.reserve(names.size());
  for (const Name& name : names) {
    unsigned char key[kKeyRoom];
    int status = 0;
    const unsigned long size = types.SortKey(kText, key, sizeof key, &name.wide, 0,
                                             OT_CMP_NO_WILDCARDS, 1, OT_FORMAT_MEMORY, status);
    keys.emplace_back(reinterpret_cast<const char*>(key), std::min(size, kKeyRoom));
  }
  SortIndices([&](unsigned a, unsigned b) { return keys[a] < keys[b]; });
}

void SortOurTexts(const Names& names) {
  std::vector<const OtString*> texts;
  texts.reserve(names.size());
  for (const Name& name : names) texts.push_back(&name.wide);
  std::vector<unsigned long> order(texts.size());
  OtSortTexts(texts.data(), texts.size(), order.data(), OT_CMP_NO_WILDCARDS);
  benchmark::DoNotOptimize(order.data());
}

void SortPeerKeys(const Names& names, UCollator* collator) {
  std::vector<std::string> keys;
  keys.reserve(names.size());
  for (const Name& name : names) {
    unsigned char key[1024];
    const int size = ucol_getSortKey(collator, Units(name), Length(name), key, sizeof key);
    keys.emplace_back(reinterpret_cast<const char*>(key), static_cast<std::size_t>(size));
  }
  SortIndices([&](unsigned a, unsigned b) { return keys[a] < keys[b]; });
}

}  // namespace

void RegisterSorting() {
  const auto names = std::make_shared<Names>(ManyNames(kNames));
  const Collator collator = OpenCollator("");
  Add(
      "sort 100,000 names, comparing", {1.6, 2500.0 * kNames},
      [names] {
        SortIndices([&](unsigned a, unsigned b) {
          return (*names)[a].wide.Compare((*names)[b].wide, OT_CMP_NO_WILDCARDS) < 0;
        });
      },
      [names, collator] {
        SortIndices([&](unsigned a, unsigned b) {
          const Name& left = (*names)[a];
          const Name& right = (*names)[b];
          return ucol_strcoll(collator.get(), Units(left), Length(left), Units(right),
                              Length(right)) == UCOL_LESS;
        });
      });
  Add(
      "sort 100,000 names, by byte-ordered keys", 2, [names] { SortByteKeys(*names); },
      [names, collator] { SortPeerKeys(*names, collator.get()); });
  Add(
      "sort 100,000 names, by what stands for them", {2, 1000.0 * kNames},
      [names] { SortOurTexts(*names); },
      [names, collator] { SortPeerKeys(*names, collator.get()); });
  Add(
      "sort 100,000 names, by index keys", 1, [names] { SortOurKeys(*names); },
      [names, collator] { SortPeerKeys(*names, collator.get()); });
}

}  // namespace bench
