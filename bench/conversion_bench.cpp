// Capitals, UTF-8, and 8-bit code sets.
#include <unicode/ucnv.h>
#include <unicode/ustring.h>

#include <memory>

#include "corpus.h"
#include "workload.h"

namespace bench {
namespace {

void Capitals() {
  const Names& names = NamesOf("latin");
  Workload(
      "upper case", 5,
      [cycle = Cycle(names)]() mutable {
        OtString text(cycle.Next().wide);
        benchmark::DoNotOptimize(text.ToUpper().StrGet());
      },
      [cycle = Cycle(names)]() mutable {
        UChar upper[512];
        UErrorCode error = U_ZERO_ERROR;
        const std::u16string& units = cycle.Next().units;
        benchmark::DoNotOptimize(
            u_strToUpper(upper, 512, units.data(), static_cast<int>(units.size()), "", &error));
      });
}

void FromUtf8(const std::string& name, double target, std::vector<std::string> texts) {
  const auto shared = std::make_shared<std::vector<std::string>>(std::move(texts));
  Workload(
      name, target,
      [shared, cycle = Cycle(*shared), target = OtString()]() mutable {
        const std::string& text = cycle.Next();
        benchmark::DoNotOptimize(
            OtMBS2OtString(text.c_str(), target, static_cast<long>(text.size())));
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
  FromUtf8("UTF-8 to 16 bits, a Latin name", 2, latin);
  FromUtf8("UTF-8 to 16 bits, an ASCII name", 5, ascii);
  FromUtf8("UTF-8 to 16 bits, 30 KB of ASCII", 6, {Bulk(ascii, 30000)});
  FromUtf8("UTF-8 to 16 bits, 30 KB of Cyrillic", 1.5, {Bulk(cyrillic, 30000)});
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
  Workload(
      "8-bit code set to 16 bits, 30 KB", 1.7,
      [ourNarrow, text = OtString()]() mutable {
        benchmark::DoNotOptimize(text.CopyMapped(*ourNarrow, OT_CS_UNICODE));
      },
      [peer, narrow] {
        static UChar units[65536];
        UErrorCode status = U_ZERO_ERROR;
        benchmark::DoNotOptimize(ucnv_toUChars(peer.get(), units, 65536, narrow->data(),
                                               static_cast<int>(narrow->size()), &status));
      });
  Workload(
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
