#ifndef OT95_TESTS_TOOLS_CASES_H
#define OT95_TESTS_TOOLS_CASES_H

// What all makers of cases for both interfaces share.

#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <vector>

#include "c/arrays.h"

using Json = nlohmann::json;

/// One call of the command line, and what the C interface says to it: null where it refuses. Texts
/// that aren't quite values the command line is told to take as the type does.
struct Case {
  std::vector<std::string> arguments;
  Json answer;
};

inline constexpr unsigned kForms[] = {OT95_FORM_NATIVE, OT95_FORM_BIG_ENDIAN};
inline constexpr const char* kLanguages[] = {"sv", "de", "fr", "pl", "tr", "es-traditional"};
inline const std::vector<std::string> kTexts = {"7",
                                                "-2",
                                                "300",
                                                "{NULL}",
                                                "",
                                                "a",
                                                "Orleans",
                                                "orl*",
                                                "\xc3\x96rebro",
                                                "ab\xe6\x97\xa5",
                                                "1.5",
                                                "TRUE",
                                                "FALSE",
                                                "Sun 02.Jan 2000",
                                                "Sun 02.Jan 2000 03:04:05 AM",
                                                "03:04:05 AM",
                                                "Sun Jan 02",
                                                "(0-16909060#7)",
                                                "(3v4)",
                                                "(1:0-7#2, 5)",
                                                "#9",
                                                "258",
                                                "co-op",
                                                "c\xc3\xb4t\xc3\xa9",
                                                "stra\xc3\x9f"
                                                "e",
                                                "\xf0\x9f\x98\x80 smile",
                                                "a b",
                                                "A B",
                                                "z?"};

/// Random choices for one case after another.
class CaseMaker {
 protected:
  explicit CaseMaker(unsigned seed) : random_(seed) {}
  ~CaseMaker() = default;

  void Choose() {
    type_ = static_cast<int>(Below(40));
    form_ = kForms[Below(2)];
    options_ = static_cast<unsigned>(random_()) & 0x2e0;
  }
  unsigned Below(std::size_t limit) { return static_cast<unsigned>(random_() % limit); }
  const std::string& AnyText() { return kTexts[Below(kTexts.size())]; }
  int64_t AnyNumber() {
    const uint64_t number = uint64_t{random_()} << 32 | random_();
    return static_cast<int64_t>(number) >> Below(64);
  }
  std::string Type() const { return std::to_string(type_); }
  std::string Form() const { return "--form=" + std::to_string(form_); }
  std::string Op(unsigned more = 0x10) const { return "--op=" + std::to_string(options_ | more); }

  std::mt19937 random_;
  int type_ = 0;
  unsigned form_ = 0, options_ = 0;
};

#endif
