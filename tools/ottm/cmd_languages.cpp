// Languages and code sets: their persistent numbers, and what texts in them follow.
#include <cinttypes>
#include <cstdio>

#include "command.h"
#include "ot95/oin_version.h"
#include "ot95/text.h"

namespace ottm {
namespace {

std::string Hex64(std::uint64_t value) {
  char text[17];
  std::snprintf(text, sizeof text, "%016" PRIx64, value);
  return text;
}

class Languages : public Command {
 public:
  const char* Name() const override { return "languages"; }
  const char* Summary() const override {
    return "Prints the languages: number, tag, script, version of the order, name, and the letters "
           "that each orders its own way";
  }
  const char* Example() const override { return "ottm languages --json"; }
  void Declare(CLI::App&) override {}

  Answer Run() override {
    Answer answer;
    answer.json = Json::array();
    answer.human = "collation " + std::to_string(OtGetTableVersions().collation) + "\n" +
                   "  #  tag             script  order version     name\n";
    for (unsigned number = 1; number < 0x80; ++number) {
      const auto* row = OtLanguageContext::QueryLanguage(static_cast<unsigned char>(number));
      if (row != nullptr) Row(*row, answer);
    }
    return answer;
  }

 private:
  static void Row(const OtLanguage& language, Answer& answer) {
    const std::string rules = OtLanguageContext::OrderRules(language.number);
    const std::string version = Hex64(OtLanguageContext::OrderVersion(language.number));
    answer.json.push_back({{"number", language.number},
                           {"tag", language.tag},
                           {"name", language.name},
                           {"script", language.script},
                           {"rules", rules.empty() ? Json() : Json(rules)},
                           {"orderVersion", version}});
    char line[128];
    std::snprintf(line, sizeof line, "%3d  %-14s  %6d  %s  %s", language.number, language.tag,
                  language.script, version.c_str(), language.name);
    answer.human += line + (rules.empty() ? "" : ": " + rules) + "\n";
  }
};

class CodeSets : public Command {
 public:
  const char* Name() const override { return "codesets"; }
  const char* Summary() const override {
    return "Prints the code sets: number, bytes of a character, and name";
  }
  const char* Example() const override { return "ottm codesets --json"; }
  void Declare(CLI::App&) override {}

  Answer Run() override {
    Answer answer;
    answer.json = Json::array();
    answer.human = "  #  width  name\n";
    for (unsigned number = 1; number < OT_CS_DEFAULT; ++number) {
      const auto* set = OtLanguageContext::QueryCodeSet(static_cast<unsigned char>(number));
      if (set->number == number) Row(*set, answer);
    }
    return answer;
  }

 private:
  static void Row(const OtCodeSet& set, Answer& answer) {
    const int width = set.number > OT_CS_LAST_NARROW ? 2 : 1;
    answer.json.push_back({{"number", set.number}, {"name", set.name}, {"width", width}});
    char line[64];
    std::snprintf(line, sizeof line, "%3d  %5d  %s\n", set.number, width, set.name);
    answer.human += line;
  }
};

}  // namespace

void AddLanguageCommands(CommandList& list) {
  list.push_back(std::make_unique<Languages>());
  list.push_back(std::make_unique<CodeSets>());
}

}  // namespace ottm
