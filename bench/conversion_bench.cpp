// Capitals, UTF-8, and 8-bit code sets.
#include <unicode/locid.h>
#include <unicode/ucnv.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>

#include <memory>

#include "corpus.h"
#include "workload.h"

namespace bench {
namespace {

/// Each side changes texts of its own in place: to capitals, and back in the next round.
template <class Text, class Upper, class Lower>
auto ChangeInPlace(std::vector<Text> texts, Upper upper, Lower lower) {
  const auto shared = std::make_shared<std::vector<Text>>(std::move(texts));
  return [shared, upper, lower, next = std::size_t{0}]() mutable {
    Text& text = (*shared)[next % shared->size()];
    if (next++ / shared->size() % 2 == 0) {
      upper(text);
    } else {
      lower(text);
    }
    benchmark::DoNotOptimize(text);
  };
}

void Capitals() {
  const Names& names = NamesOf("latin");
  const icu::Locale& root = icu::Locale::getRoot();
  std::vector<OtString> strings;
  std::vector<icu::UnicodeString> units;
  for (const Name& name : names) {
    strings.push_back(name.wide);
    units.emplace_back(name.units.data(), static_cast<int>(name.units.size()));
  }
  Add("upper and lower case in place", {3, 220},
      ChangeInPlace(
          strings, [](OtString& text) { text.ToUpper(); }, [](OtString& text) { text.ToLower(); }),
      ChangeInPlace(
          units, [&root](icu::UnicodeString& text) { text.toUpper(root); },
          [&root](icu::UnicodeString& text) { text.toLower(root); }));
  Add(
      "upper case of a copy", {1.5, 400},
      [cycle = Cycle(names)]() mutable {
        OtString text(cycle.Next().wide);
        benchmark::DoNotOptimize(text.ToUpper().StrGet());
      },
      [cycle = Cycle(names), &root]() mutable {
        const std::u16string& source = cycle.Next().units;
        icu::UnicodeString text(source.data(), static_cast<int>(source.size()));
        benchmark::DoNotOptimize(text.toUpper(root).getBuffer());
      });
}

void Utf8ToBuffer(const std::string& name, Goal goal, std::vector<std::string> texts) {
  const auto shared = std::make_shared<std::vector<std::string>>(std::move(texts));
  Add(
      name, goal,
      [shared, cycle = Cycle(*shared)]() mutable {
        static unsigned short units[65536];
        const std::string& text = cycle.Next();
        benchmark::DoNotOptimize(OtMultiByteStr2WCharStr(
            units, 65536, const_cast<char*>(text.c_str()), static_cast<int>(text.size())));
      },
      [shared, cycle = Cycle(*shared)]() mutable {
        static UChar units[65536];
        const std::string& text = cycle.Next();
        UErrorCode error = U_ZERO_ERROR;
        int length = 0;
        benchmark::DoNotOptimize(u_strFromUTF8(units, 65536, &length, text.c_str(),
                                               static_cast<int>(text.size()), &error));
      });
}

void Utf8ToString(const std::string& name, Goal goal, std::vector<std::string> texts) {
  const auto shared = std::make_shared<std::vector<std::string>>(std::move(texts));
  Add(
      name, goal,
      [shared, cycle = Cycle(*shared)]() mutable {
        const std::string& text = cycle.Next();
        OtString target(OT_CS_UNICODE, OT_LANG_NEUTRAL);
        benchmark::DoNotOptimize(
            OtMBS2OtString(text.c_str(), target, static_cast<long>(text.size())));
      },
      [shared, cycle = Cycle(*shared)]() mutable {
        const std::string& text = cycle.Next();
        const auto target = icu::UnicodeString::fromUTF8(text);
        benchmark::DoNotOptimize(target.getBuffer());
      });
}

std::string Bulk(const std::vector<std::string>& texts, std::size_t size) {
  std::string bulk;
  for (std::size_t i = 0; bulk.size() + texts[i % texts.size()].size() < size; ++i) {
    bulk += texts[i % texts.size()];
  }
  return bulk;
}

void Utf8() {
  std::vector<std::string> latin, ascii, cyrillic;
  for (const Name& name : NamesOf("latin")) {
    (name.utf8.size() == name.units.size() ? ascii : latin).push_back(name.utf8);
  }
  for (const Name& name : NamesOf("cyrillic")) cyrillic.push_back(name.utf8);
  Utf8ToBuffer("UTF-8 to a buffer, Latin name", {2, 140}, latin);
  Utf8ToBuffer("UTF-8 to a buffer, ASCII name", {2.5, 105}, ascii);
  Utf8ToBuffer("UTF-8 to a buffer, 30 KB of ASCII", 10, {Bulk(ascii, 30000)});
  Utf8ToBuffer("UTF-8 to a buffer, 30 KB of Cyrillic", 1.5, {Bulk(cyrillic, 30000)});
  Utf8ToString("UTF-8 to a string, Latin name", {1.2, 290}, latin);
  Utf8ToString("UTF-8 to a string, ASCII name", {1.2, 270}, ascii);
}

struct CloseConverter {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};

void CodeSets() {
  UErrorCode error = U_ZERO_ERROR;
  const std::shared_ptr<UConverter> peer(ucnv_open("windows-1252", &error), CloseConverter());
  std::vector<std::string> texts;
  for (const Name& name : NamesOf("latin")) {
    if (name.utf8.size() == name.units.size()) texts.push_back(name.utf8);
  }
  const auto narrow = std::make_shared<std::string>(Bulk(texts, 30000));
  const auto wide = std::make_shared<std::u16string>(narrow->begin(), narrow->end());
  const auto ourNarrow = std::make_shared<OtString>(narrow->c_str());
  const auto ourWide = std::make_shared<OtString>(ToWide(*wide));
  Add(
      "8-bit code set to 16 bits, 30 KB", 5,
      [ourNarrow, text = OtString()]() mutable {
        benchmark::DoNotOptimize(text.CopyMapped(*ourNarrow, OT_CS_UNICODE));
      },
      [peer, narrow] {
        static UChar units[65536];
        UErrorCode status = U_ZERO_ERROR;
        benchmark::DoNotOptimize(ucnv_toUChars(peer.get(), units, 65536, narrow->data(),
                                               static_cast<int>(narrow->size()), &status));
      });
  Add(
      "16 bits to 8-bit code set, 30 KB", 4,
      [ourWide, text = OtString()]() mutable {
        benchmark::DoNotOptimize(text.CopyMapped(*ourWide, OT_CS_BASE8));
      },
      [peer, wide] {
        static char bytes[65536];
        UErrorCode status = U_ZERO_ERROR;
        benchmark::DoNotOptimize(ucnv_fromUChars(peer.get(), bytes, 65536, wide->data(),
                                                 static_cast<int>(wide->size()), &status));
      });
}

}  // namespace

void RegisterConversion() {
  Capitals();
  Utf8();
  CodeSets();
}

}  // namespace bench
