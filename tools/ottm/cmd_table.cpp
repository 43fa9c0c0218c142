// The table itself: types.
#include <cstdio>

#include "command.h"
#include "options.h"

namespace ottm {
namespace {

class Types : public Command {
 public:
  const char* Name() const override { return "types"; }
  const char* Summary() const override { return "Prints the table of types, a row a type"; }
  const char* Example() const override { return "ottm types --factory legacy"; }
  void Declare(CLI::App& app) override { factory_.Declare(app); }

  Answer Run() override {
    Answer answer;
    answer.json = Json::array();
    answer.human = Line("id", "name", "memory", "fixed", "null", "null size", "format");
    OtTypeFactory table = factory_.name == "legacy" ? LegacyFactory : CurrentFactory;
    for (int id = 0; table[id] != nullptr; ++id) Row(id, *table[id], answer);
    return answer;
  }

 private:
  static std::string Line(const std::string& id, const std::string& name, const std::string& memory,
                          const std::string& fixed, const std::string& null,
                          const std::string& nullSize, const std::string& format) {
    char line[128];
    std::snprintf(line, sizeof line, "%2s  %-16s %6s  %5s  %4s  %9s  ", id.c_str(), name.c_str(),
                  memory.c_str(), fixed.c_str(), null.c_str(), nullSize.c_str());
    return line + format + "\n";
  }

  static void Row(int id, const OtTypeDescriptor& row, Answer& answer) {
    const bool fixed = row.isFixed != 0;
    const bool nullable = row.SetNull != nullptr;
    const unsigned long nullSize = row.NullSizeGet != nullptr ? row.NullSizeGet(1) : 0;
    answer.json.push_back({{"id", id},
                           {"name", row.name},
                           {"memoryLength", row.memoryLength},
                           {"fixed", fixed},
                           {"format", row.format},
                           {"nullable", nullable},
                           {"nullSize", nullSize}});
    answer.human +=
        Line(std::to_string(id), row.name, std::to_string(row.memoryLength), fixed ? "yes" : "no",
             nullable ? "yes" : "no", std::to_string(nullSize), row.format);
  }

  FactoryOption factory_;
};

}  // namespace

void AddTableCommands(CommandList& list) {
  list.push_back(std::make_unique<Types>());
}

}  // namespace ottm
