// Code sets: the constants, mapping by way of Unicode, case data.

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <utility>

#include "data.h"

namespace ot95 {
namespace {

// A one-byte set, and where its reverse table begins.
struct NarrowFacts {
  unsigned char number;
  unsigned char substitute;
  unsigned from;
  char name[24];
};

// A set of two-byte units: where the page numbers of its two tables begin.
struct WideFacts {
  unsigned char number;
  unsigned toPages, fromPages;
  char name[24];
};

// A letter that Windows-1258 spells with two bytes.
struct SpelledLetter {
  std::uint16_t unicode;
  unsigned char letter, mark;
};

}  // namespace

// Outside, because the header's inline functions read some of it.
#include "data/oin_codes.inc"
#include "data/oin_wide.inc"

namespace {

constexpr unsigned short kReplacement = 0xfffd;
constexpr unsigned char kControlSub = 0x1a;
constexpr unsigned char kFirstBeyondAscii = 0x40;
constexpr unsigned char kTurkish = 28;
constexpr unsigned char kAzerbaijani = 29;
constexpr unsigned char kFirstScript = 1;

unsigned char ScriptOf(unsigned char language) {
  const OtLanguage* record = OtLanguageContext::QueryLanguage(language);
  return record == nullptr ? kFirstScript : record->script;
}

unsigned short UnicodeOf(unsigned short value, unsigned char codeSet);

class NarrowCodeSet final : public OtCodeSet {
 public:
  explicit constexpr NarrowCodeSet(unsigned index, const OtOrderTable* orders)
      : OtCodeSet(kNarrowFacts[index].number, kNarrowFacts[index].name,
                  kNarrowFacts[index].substitute, orders, static_cast<std::uint16_t>(index),
                  kNarrowFacts[index].from) {}

  unsigned char DefaultScript(unsigned char language) const override { return ScriptOf(language); }

  unsigned short MapChar(unsigned short value, unsigned char fromCodeSet) const override {
    if (fromCodeSet == number) return value & 0xff;
    return ByteOf(UnicodeOf(value, fromCodeSet));
  }
};

class WideCodeSet final : public OtCodeSet {
 public:
  explicit constexpr WideCodeSet(const WideFacts& facts)
      : OtCodeSet(facts.number, facts.name, kControlSub, nullptr),
        toPages_(facts.toPages),
        fromPages_(facts.fromPages) {}

  unsigned char DefaultScript(unsigned char language) const override { return ScriptOf(language); }

  unsigned short MapChar(unsigned short value, unsigned char fromCodeSet) const override {
    if (fromCodeSet == number) return value;
    const unsigned short unicode = UnicodeOf(value, fromCodeSet);
    if (unicode == 0) return 0;
    const unsigned short unit = Look(fromPages_, unicode);
    return unit != 0 ? unit : substitute;
  }

  unsigned short ToUnicode(unsigned short value) const {
    const unsigned short unicode = Look(toPages_, value);
    return unicode != 0 || value == 0 ? unicode : kReplacement;
  }

 private:
  static unsigned short Look(unsigned pages, unsigned short index) {
    const unsigned page = kWidePages[pages + index / kWidePage];
    return kWideValues[page * kWidePage + index % kWidePage];
  }

  unsigned toPages_, fromPages_;
};

class UnicodeCodeSet final : public OtCodeSet {
 public:
  explicit constexpr UnicodeCodeSet(const OtOrderTable* orders)
      : OtCodeSet(OT_CS_UNICODE, "Unicode", kReplacement, orders) {}

  unsigned char DefaultScript(unsigned char language) const override { return ScriptOf(language); }

  unsigned short MapChar(unsigned short value, unsigned char fromCodeSet) const override {
    return UnicodeOf(value, fromCodeSet);
  }
};

// Order words are no characters: nothing maps to or from them.
class OrderCodeSet final : public OtCodeSet {
 public:
  constexpr OrderCodeSet() : OtCodeSet(OT_CS_ORDER, "Orders", kReplacement, nullptr) {}

  // The language byte of such a text is its script byte.
  unsigned char DefaultScript(unsigned char language) const override { return language; }

  unsigned short MapChar(unsigned short value, unsigned char fromCodeSet) const override {
    return fromCodeSet == number || value == 0 ? value : kReplacement;
  }
};

template <std::size_t... Index>
struct NarrowSets {
  explicit constexpr NarrowSets(const OtOrderTable* base)
      : sets{NarrowCodeSet(Index, kNarrowFacts[Index].number == OT_CS_BASE8 ? base : nullptr)...} {}
  NarrowCodeSet sets[sizeof...(Index)];
};

template <std::size_t... Index>
constexpr NarrowSets<Index...> MakeNarrow(const OtOrderTable* base, std::index_sequence<Index...>) {
  return NarrowSets<Index...>(base);
}

constexpr std::size_t kNarrowCount = std::size(kNarrowFacts);
constinit const auto kNarrowSets =
    MakeNarrow(&kBaseOrders, std::make_index_sequence<kNarrowCount>());
template <std::size_t... Index>
constexpr std::array<WideCodeSet, sizeof...(Index)> MakeWide(std::index_sequence<Index...>) {
  return {WideCodeSet(kWideFacts[Index])...};
}

constexpr std::size_t kWideCount = std::size(kWideFacts);
constinit const auto kWideSets = MakeWide(std::make_index_sequence<kWideCount>());
constinit const UnicodeCodeSet kUnicodeSet(&kUnicodeOrders);
constinit const OrderCodeSet kOrderSet;

// Number of a set to its place among those of its width and 1, 0 for none.
template <class Facts>
constexpr std::array<unsigned char, 256> PlacesOf(const Facts& facts) {
  std::array<unsigned char, 256> places{};
  for (std::size_t i = 0; i < std::size(facts); ++i) {
    places[facts[i].number] = static_cast<unsigned char>(i + 1);
  }
  return places;
}
constexpr auto kNarrowPlaces = PlacesOf(kNarrowFacts);
constexpr auto kWidePlaces = PlacesOf(kWideFacts);

const WideCodeSet* FindWide(unsigned char number) {
  const unsigned place = kWidePlaces[number];
  return place == 0 ? nullptr : &kWideSets[place - 1];
}

// The Unicode value of a character, U+FFFD for one without; of a one-byte set the low byte counts.
// For a two-byte set that nobody knows Unicode stands in.
unsigned short UnicodeOf(unsigned short value, unsigned char codeSet) {
  if (codeSet <= OT_CS_LAST_NARROW) {
    return OtLanguageContext::QueryCodeSet(codeSet)->UnicodeValues()[value & 0xff];
  }
  if (const WideCodeSet* wide = FindWide(codeSet)) return wide->ToUnicode(value);
  return codeSet != OT_CS_ORDER || value == 0 ? value : kReplacement;
}

const OtUnicodeProps* CaseRow(unsigned row) {
  return row == 0 ? nullptr : &kCaseRows[row];
}

bool HasDotlessI(unsigned char language) {
  return language == kTurkish || language == kAzerbaijani;
}

const OtUnicodeProps* UnicodeCase(unsigned short unicode, unsigned char language) {
  if (HasDotlessI(language)) {
    if (unicode == 'i') return CaseRow(kTurkishSmallI);
    if (unicode == 'I') return CaseRow(kTurkishCapitalI);
  }
  return CaseRow(kCaseData[kCasePages[unicode >> 6] * 64U + (unicode & 63U)]);
}

}  // namespace

const OtCodeSet* FindCodeSet(unsigned char number) {
  if (number == OT_CS_UNICODE) return &kUnicodeSet;
  if (number == OT_CS_ORDER) return &kOrderSet;
  const unsigned place = kNarrowPlaces[number];
  if (place != 0) return &kNarrowSets.sets[place - 1];
  return FindWide(number);
}

}  // namespace ot95

namespace {

// Whether a set other than Unicode can hold the other case that the row names.
bool Holds(const OtCodeSet& set, const OtUnicodeProps& row) {
  for (const unsigned short other : {row.upper, row.lower}) {
    if (other != 0 && set.MapChar(other, OT_CS_UNICODE) == set.substitute) return false;
  }
  return row.upperTail.count == 0 || *row.upperTail.begin() < 0x80;
}

}  // namespace

const OtUnicodeProps* OtCodeSet::GetUnicodeProps(unsigned short value,
                                                 unsigned char language) const {
  if (number == OT_CS_UNICODE) return ot95::UnicodeCase(value, language);
  if (number == OT_CS_ORDER) return nullptr;
  if (place_ == kNoPlace) {
    const unsigned short unicode = ot95::UnicodeOf(value, number);
    const OtUnicodeProps* row = ot95::UnicodeCase(unicode, language);
    return row != nullptr && Holds(*this, *row) ? row : nullptr;
  }
  const auto byte = static_cast<unsigned char>(value);
  const unsigned short unicode = UnicodeValues()[byte];
  if ((unicode == 'i' || unicode == 'I') && ot95::HasDotlessI(language)) {
    const OtUnicodeProps* row = ot95::UnicodeCase(unicode, language);
    return Holds(*this, *row) ? row : nullptr;
  }
  const unsigned half = ot95::kByteCasePages[place_ * 2U + (byte >> 7)];
  return ot95::CaseRow(ot95::kByteCases[half * 128 + (byte & 127U)]);
}

bool OtCodeSet::SpellsWithMarks() const {
  return number == ot95::kVietnamese;
}

unsigned short OtCodeSet::Spelled(unsigned char letter, unsigned char mark) const {
  if (!SpellsWithMarks()) return 0;
  const auto bytes = [](const ot95::SpelledLetter& row) { return row.letter << 8 | row.mark; };
  const auto* place = std::lower_bound(
      std::begin(ot95::kSpelledLetters), std::end(ot95::kSpelledLetters), letter << 8 | mark,
      [&](const ot95::SpelledLetter& row, int wanted) { return bytes(row) < wanted; });
  const bool found =
      place != std::end(ot95::kSpelledLetters) && place->letter == letter && place->mark == mark;
  return found ? place->unicode : 0;
}

bool OtCodeSet::Spelling(unsigned short unicode, unsigned char& letter, unsigned char& mark) const {
  if (!SpellsWithMarks() || ByteOf(unicode) != substitute) return false;
  const auto* place = std::lower_bound(
      std::begin(ot95::kSpellings), std::end(ot95::kSpellings), unicode,
      [](const ot95::SpelledLetter& row, unsigned short wanted) { return row.unicode < wanted; });
  if (place == std::end(ot95::kSpellings) || place->unicode != unicode) return false;
  letter = place->letter;
  mark = place->mark;
  return true;
}

namespace {

constexpr std::size_t kBlock = 16;

// The bits that any unit of a block has.
template <class Unit>
std::uint64_t AnyBits(const Unit* units) {
  std::uint64_t words[kBlock * sizeof(Unit) / 8], all = 0;
  std::memcpy(words, units, sizeof words);
  for (const std::uint64_t word : words) all |= word;
  return all;
}

// Copies one block that keeps its values; a loop that compilers turn into vector instructions.
template <class Source, class Target>
inline void CopyBlock(const Source* source, Target* __restrict target) {
  for (std::size_t i = 0; i < kBlock; ++i) target[i] = static_cast<Target>(source[i]);
}

// Maps one block; unrolled it is half as fast again.
template <class Source, class Target, class Map>
inline void MapBlock(const Source* source, Target* __restrict target, Map map) {
#pragma GCC unroll 16
  for (std::size_t i = 0; i < kBlock; ++i) target[i] = map(source[i]);
}

constexpr std::uint64_t kBeyondAsciiBytes = 0x8080808080808080;
constexpr std::uint64_t kBeyondAscii = 0xff80ff80ff80ff80;
// The reverse tables of all but the old sets begin with the pages up to here as they are.
constexpr std::uint64_t kBeyondKeptPages = 0xf800f800f800f800;

}  // namespace

void OtCodeSet::BytesToUnicode(const unsigned char* bytes, std::size_t count,
                               std::uint16_t* target) const {
  const std::uint64_t beyond =
      number < ot95::kFirstBeyondAscii ? kBeyondAsciiBytes : ~std::uint64_t{0};
  const auto map = [table = UnicodeValues()](unsigned char byte) { return table[byte]; };
  std::size_t i = 0;
  for (; i + kBlock <= count; i += kBlock) {
    if ((AnyBits(bytes + i) & beyond) == 0) {
      CopyBlock(bytes + i, target + i);
    } else {
      MapBlock(bytes + i, target + i, map);
    }
  }
  for (; i < count; ++i) target[i] = map(bytes[i]);
}

void OtCodeSet::UnicodeToBytes(const std::uint16_t* source, std::size_t count,
                               unsigned char* bytes) const {
  const std::uint64_t beyond = number < ot95::kFirstBeyondAscii ? kBeyondAscii : ~std::uint64_t{0};
  const auto map = [table = Bytes(), pages = Pages()](std::uint16_t unicode) {
    return table[static_cast<unsigned>(pages[unicode >> 8]) << 8 | (unicode & 0xffU)];
  };
  const auto near = [table = Bytes()](std::uint16_t unicode) { return table[unicode]; };
  const std::uint64_t far = number < ot95::kFirstOldSet ? kBeyondKeptPages : ~std::uint64_t{0};
  std::size_t i = 0;
  for (; i + kBlock <= count; i += kBlock) {
    const std::uint64_t bits = AnyBits(source + i);
    if ((bits & beyond) == 0) {
      CopyBlock(source + i, bytes + i);
    } else if ((bits & far) == 0) {
      MapBlock(source + i, bytes + i, near);
    } else {
      MapBlock(source + i, bytes + i, map);
    }
  }
  for (; i < count; ++i) bytes[i] = map(source[i]);
}
