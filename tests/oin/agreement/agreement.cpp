// Holds the order of every language against ICU with the CLDR rules of that language: the share of
// neighbours, in ICU's order of real words, that stand in the same order here.
//
//   ot95_agreement [options] FOLDER     FOLDER holds TAG.txt for each language, one word a line
//   ot95_agreement --dictionary NAME    prints a list of words that ICU has
//
// ICU is set to what this system means to do: small letters first, the last accent decides, fixed
// rank of scripts, spaces and symbols last of all. Where a rule of CLDR says otherwise, the
// neighbours that change are counted as classes of their own.

#include <unicode/ucol.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "dictionary.h"
#include "ot95/oin_version.h"
#include "ot95/ot95.h"

namespace {

struct CloseCollator {
  void operator()(UCollator* collator) const { ucol_close(collator); }
};
using Collator = std::unique_ptr<UCollator, CloseCollator>;

// What this system does its own way, and what each is called.
enum Intended { kLastAccent, kSmallFirst, kScriptRank, kSymbolsLast, kIntended };
constexpr const char* kClassNames[] = {"accent", "case", "scripts", "symbols"};

// The rules of CLDR that a language without an own locale of ICU's follows.
std::string LocaleOf(std::string_view tag) {
  constexpr std::pair<std::string_view, const char*> kOthers[] = {
      {"und", ""},
      {"de-phonebook", "de@collation=phonebook"},
      {"es-traditional", "es@collation=traditional"},
      {"sv-traditional", "sv@collation=traditional"},
      {"zh-Hans", "zh@collation=pinyin"},
      {"zh-Hant", "zh_Hant@collation=stroke"},
      {"sr-Latn", "sr_Latn"}};
  for (const auto& [own, locale] : kOthers) {
    if (own == tag) return locale;
  }
  return std::string(tag);
}

// The collator of a locale in this system's manner, but for the one thing `asCldr` names.
Collator Open(const std::string& locale, int asCldr) {
  UErrorCode error = U_ZERO_ERROR;
  Collator collator(ucol_open(locale.c_str(), &error));
  if (U_FAILURE(error)) return nullptr;
  UCollator* opened = collator.get();
  ucol_setStrength(opened, UCOL_TERTIARY);
  ucol_setAttribute(opened, UCOL_NORMALIZATION_MODE, UCOL_ON, &error);
  if (asCldr != kLastAccent) ucol_setAttribute(opened, UCOL_FRENCH_COLLATION, UCOL_ON, &error);
  if (asCldr != kSmallFirst) ucol_setAttribute(opened, UCOL_CASE_FIRST, UCOL_LOWER_FIRST, &error);
  if (asCldr != kScriptRank) {
    const std::int32_t none = UCOL_REORDER_CODE_NONE;
    ucol_setReorderCodes(opened, &none, 1, &error);
  }
  if (asCldr != kSymbolsLast) {
    ucol_setAttribute(opened, UCOL_ALTERNATE_HANDLING, UCOL_SHIFTED, &error);
    ucol_setMaxVariable(opened, UCOL_REORDER_CODE_CURRENCY, &error);
  }
  return U_SUCCESS(error) ? std::move(collator) : nullptr;
}

struct Word {
  std::u16string text;
  std::string key;
};

int Sign(long value) {
  return (value > 0) - (value < 0);
}

const UChar* Units(const Word& word) {
  return word.text.c_str();
}

int Ours(unsigned char language, const Word& a, const Word& b) {
  return Sign(OtStrCmp(OT_CS_UNICODE, language, reinterpret_cast<const char*>(a.text.c_str()),
                       OT_CS_UNICODE, language, reinterpret_cast<const char*>(b.text.c_str()),
                       OT_CMP_NO_WILDCARDS, -1, OT_FORMAT_NATIVE, nullptr));
}

int Theirs(const Collator& collator, const Word& a, const Word& b) {
  return static_cast<int>(ucol_strcoll(collator.get(), Units(a), static_cast<int>(a.text.size()),
                                       Units(b), static_cast<int>(b.text.size())));
}

std::vector<Word> Read(const std::string& path, const Collator& collator) {
  std::vector<Word> words;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    icu::UnicodeString unicode = icu::UnicodeString::fromUTF8(line);
    Word word{{unicode.getBuffer(), static_cast<std::size_t>(unicode.length())}, {}};
    std::array<unsigned char, 4096> key;
    const int size = ucol_getSortKey(collator.get(), Units(word),
                                     static_cast<int>(word.text.size()), key.data(), key.size());
    if (size <= 0 || size > static_cast<int>(key.size())) continue;
    word.key.assign(reinterpret_cast<const char*>(key.data()), static_cast<std::size_t>(size));
    words.push_back(std::move(word));
  }
  std::sort(words.begin(), words.end(), [](const Word& a, const Word& b) { return a.key < b.key; });
  return words;
}

struct Agreement {
  std::size_t words = 0, pairs = 0, wrong = 0;
  std::size_t classes[kIntended] = {};

  double Percent() const {
    return pairs == 0 ? 100 : 100 - 100.0 * static_cast<double>(wrong) / static_cast<double>(pairs);
  }
};

std::string Utf8(const Word& word) {
  std::string text;
  return icu::UnicodeString(Units(word), static_cast<int>(word.text.size())).toUTF8String(text);
}

struct Options {
  std::string folder, thresholds, document, dictionary;
  std::vector<std::string> only;
  unsigned char orderAs = 0;  // Take the order of this language for all, to see it refused.
  bool tags = false;          // Only say which languages there are.
  bool accept = false;        // Write the thresholds instead of keeping them.
  std::size_t examples = 0;
};

OtStringIterator Walk(unsigned char language, const Word& word) {
  return {reinterpret_cast<const char*>(word.text.c_str()), OT_CS_UNICODE, language,
          OT_FORMAT_NATIVE};
}

// The next letter or digit of a text without accent and case; its script stays in the iterator.
unsigned NextLetter(OtStringIterator& place) {
  constexpr unsigned kFirstDigit = 0x3f00, kFirstLetter = 0x4000, kFirstHan = 0x8000;
  unsigned order = place.GetNextOrder(1);
  while (order != 0 && order < kFirstDigit) order = place.GetNextOrder(1);
  return order >= kFirstLetter && order < kFirstHan ? order & 0x407f : order;
}

// Whether the first letters that differ are of two scripts: where alphabets meet, this system ranks
// them in its own fixed order, and digits are of the language's own.
bool ScriptsDecide(unsigned char language, const Word& a, const Word& b) {
  OtStringIterator left = Walk(language, a), right = Walk(language, b);
  for (;;) {
    const unsigned one = NextLetter(left), other = NextLetter(right);
    if (one == 0 || other == 0) return false;
    if (left.GetScript() != right.GetScript()) return true;
    if (one != other) return false;
  }
}

Agreement Measure(const OtLanguage& language, const Options& options) {
  Agreement result;
  const std::string locale = LocaleOf(language.tag);
  const Collator collator = Open(locale, kIntended);
  Collator others[kIntended];
  for (int i = 0; i < kIntended; ++i) others[i] = Open(locale, i);
  if (collator == nullptr) return result;
  const std::vector<Word> words = Read(options.folder + "/" + language.tag + ".txt", collator);
  const unsigned char number = options.orderAs != 0 ? options.orderAs : language.number;
  result.words = words.size();
  std::size_t shown = 0;
  for (std::size_t i = 1; i < words.size(); ++i) {
    const Word &a = words[i - 1], &b = words[i];
    if (a.key == b.key) continue;  // What only symbols tell apart has no order there.
    ++result.pairs;
    const int ours = Ours(number, a, b);
    if (ours > 0 && ScriptsDecide(number, a, b)) {
      ++result.classes[kScriptRank];
    } else if (ours >= 0) {
      ++result.wrong;
      if (shown++ < options.examples) {
        std::printf("  %s: %s %c %s\n", language.tag, Utf8(a).c_str(), ours == 0 ? '=' : '>',
                    Utf8(b).c_str());
      }
    }
    for (int k = 0; k < kIntended; ++k) {
      if (others[k] != nullptr && Theirs(others[k], a, b) >= 0) ++result.classes[k];
    }
  }
  return result;
}

// Least agreement that is asked for, by language.
std::map<std::string, double> ReadThresholds(const std::string& path) {
  std::map<std::string, double> least;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    const std::size_t blank = line.find(' ');
    if (line[0] != '#' && blank != std::string::npos) {
      least[line.substr(0, blank)] = std::stod(line.substr(blank));
    }
  }
  return least;
}

// The languages that are asked for, all by default.
std::vector<const OtLanguage*> Languages(const Options& options) {
  const auto& only = options.only;
  std::vector<const OtLanguage*> found;
  for (unsigned number = 1; number < 0x80; ++number) {
    const OtLanguage* language =
        OtLanguageContext::QueryLanguage(static_cast<unsigned char>(number));
    if (language != nullptr &&
        (only.empty() || std::find(only.begin(), only.end(), language->tag) != only.end())) {
      found.push_back(language);
    }
  }
  return found;
}

double Share(std::size_t part, std::size_t all) {
  return all == 0 ? 0 : 100.0 * static_cast<double>(part) / static_cast<double>(all);
}

void PrintRow(const OtLanguage& language, const Agreement& row) {
  std::printf("%-15s %3d %8zu %9.3f%% %6zu", language.tag, language.number, row.words,
              row.Percent(), row.wrong);
  for (const std::size_t count : row.classes) std::printf(" %7.3f%%", Share(count, row.pairs));
  std::putchar('\n');
  std::fflush(stdout);
}

// A percentage rounded down, so that 100 means no difference.
std::string Floor(double percent, int places = 2) {
  const double scale = std::pow(10, places);
  char text[32];
  std::snprintf(text, sizeof text, "%.*f", places, std::floor(percent * scale) / scale);
  return text;
}

struct Row {
  const OtLanguage* language;
  Agreement agreement;
};

void WriteThresholds(const std::string& path, const std::vector<Row>& rows) {
  std::ofstream file(path);
  file << "# Percent of neighbours that must stand as ICU has them; see check-orders --accept.\n";
  for (const Row& row : rows) {
    if (row.agreement.pairs > 0) {
      file << row.language->tag << ' ' << Floor(row.agreement.Percent()) << '\n';
    }
  }
}

// Says which languages fall below what they must keep. @return how many.
int Refuse(const std::string& path, const std::vector<Row>& rows) {
  const auto least = ReadThresholds(path);
  int failures = 0;
  for (const Row& row : rows) {
    const auto place = least.find(row.language->tag);
    if (place != least.end() && row.agreement.Percent() < place->second) {
      std::printf("%s: %.3f%% is below the %.2f%% that it must keep\n", row.language->tag,
                  row.agreement.Percent(), place->second);
      ++failures;
    }
  }
  return failures;
}

void PrintHead() {
  std::printf("%-15s %3s %8s %10s %6s", "language", "no", "words", "agreement", "wrong");
  for (const char* name : kClassNames) std::printf(" %8s", name);
  std::putchar('\n');
}

constexpr const char* kDocumentHead =
    R"(# How languages order

Written by `make check-orders`; don't edit.

Each language's order is held against ICU 72 with the CLDR rules of that language, on lists of real
words: the share of neighbours in ICU's order that stand in the same order here. ICU is set to what
this system means to do its own way:

- small letters come before capitals, in every language (Danish and Maltese dictionaries put capitals
  first);
- the last accent that differs decides, not the first;
- alphabets have one fixed rank, and digits are of the language's own alphabet;
- spaces and symbols count last of all, where nothing else differs.

The columns behind the agreement say how many neighbours the rule of CLDR itself orders otherwise
because of each. A rule lists the letters that a language orders its own way, in the notation of
`oin/generate/languages.py`; a language without one orders as all do. The order version is a hash over
all words that texts of the language can meet: keys made under another version have to be made anew.

)";

std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char c : text) escaped += c == '|' ? "\\|" : std::string(1, c);
  return escaped;
}

// A share as the document tells it; nothing for none.
std::string Cell(std::size_t part, std::size_t all) {
  if (part == 0) return "";
  char text[32];
  std::snprintf(text, sizeof text, "%.3f", Share(part, all));
  return text;
}

void WriteDocument(const std::string& path, const std::vector<Row>& rows) {
  std::ofstream file(path);
  file << kDocumentHead << "Collation " << OtGetTableVersions().collation << ".\n\n"
       << "| Language | Number | Tag | Words | Agreement, % | Accent | Case | Scripts | Symbols "
          "| Order version | Rule |\n|---|---|---|---|---|---|---|---|---|---|---|\n";
  for (const Row& row : rows) {
    const OtLanguage& language = *row.language;
    const std::string rule = OtLanguageContext::OrderRules(language.number);
    char version[17];
    std::snprintf(version, sizeof version, "%016" PRIx64, language.orderVersion);
    file << "| " << language.name << " | " << int{language.number} << " | `" << language.tag
         << "` | " << row.agreement.words << " | " << Floor(row.agreement.Percent(), 3);
    for (const std::size_t count : row.agreement.classes) {
      file << " | " << Cell(count, row.agreement.pairs);
    }
    file << " | `" << version << "` | " << (rule.empty() ? "" : "`" + Escaped(rule) + "`")
         << " |\n";
  }
}

bool Parse(int count, char** arguments, Options& options) {
  for (int i = 1; i < count; ++i) {
    const std::string argument = arguments[i];
    const bool hasValue = i + 1 < count;
    if (argument == "--tags") {
      options.tags = true;
    } else if (argument == "--accept") {
      options.accept = true;
    } else if (argument == "--thresholds" && hasValue) {
      options.thresholds = arguments[++i];
    } else if (argument == "--dictionary" && hasValue) {
      options.dictionary = arguments[++i];
    } else if (argument == "--document" && hasValue) {
      options.document = arguments[++i];
    } else if (argument == "--examples" && hasValue) {
      options.examples = static_cast<std::size_t>(std::stoul(arguments[++i]));
    } else if (argument == "--order-as" && hasValue) {
      options.orderAs = OtLanguageContext::LanguageOfTag(arguments[++i]);
      if (options.orderAs == 0) return false;
    } else if (options.folder.empty() && argument[0] != '-') {
      options.folder = argument;
    } else if (argument[0] != '-') {
      options.only.push_back(argument);
    } else {
      return false;
    }
  }
  return options.tags || !options.dictionary.empty() || !options.folder.empty();
}

}  // namespace

int main(int count, char** arguments) {
  Options options;
  if (!Parse(count, arguments, options)) {
    std::fputs(
        "usage: ot95_agreement [--thresholds FILE [--accept]] [--document FILE] "
        "[--examples N] [--order-as TAG] FOLDER [TAG...]\n",
        stderr);
    return 2;
  }
  if (!options.dictionary.empty()) return PrintDictionary(options.dictionary) ? 0 : 1;
  const std::vector<const OtLanguage*> languages = Languages(options);
  if (options.tags) {
    for (const OtLanguage* language : languages) std::puts(language->tag);
    return 0;
  }
  PrintHead();
  std::vector<Row> rows;
  for (const OtLanguage* language : languages) {
    rows.push_back({language, Measure(*language, options)});
    PrintRow(*language, rows.back().agreement);
  }
  if (!options.document.empty()) WriteDocument(options.document, rows);
  if (options.accept) WriteThresholds(options.thresholds, rows);
  return Refuse(options.thresholds, rows) == 0 ? 0 : 1;
}
