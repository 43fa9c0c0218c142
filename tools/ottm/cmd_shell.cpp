// What the program says of its own command line: to a shell, and to the manual.
#include "completion.h"
#include "options.h"
#include "ot95/oin.h"
#include "program.h"

namespace ottm {
namespace {

/// What arguments and options of these names can be.
ot95::tools::KnownWords Words() {
  ot95::tools::KnownWords words;
  const OtTypeMgr types;
  for (char id = 0; id < kTypes; ++id) words["TYPE"].push_back(types.NameGet(id, nullptr));
  words["FROM"] = words["TO"] = words["TYPE"];
  for (unsigned number = 1; number <= 0xff; ++number) {
    const auto* language = OtLanguageContext::QueryLanguage(static_cast<unsigned char>(number));
    if (language != nullptr) words["--language"].push_back(language->tag);
  }
  words["--language2"] = words["--language"];
  for (const char* option : {"--form", "--form2", "--from", "--to"}) {
    words[option] = {"native", "big-endian", "memory"};
  }
  return words;
}

class Completion : public Command {
 public:
  const char* Name() const override { return "completion"; }
  const char* Summary() const override { return "Prints what completes ottm in a shell"; }
  const char* Example() const override { return "ottm completion bash"; }
  void Declare(CLI::App& app) override {
    app.add_option("SHELL", shell_, "The shell")
        ->required()
        ->check(CLI::IsMember({"bash", "zsh", "fish"}));
  }
  Answer Run() override {
    Program program;
    const std::string script = ot95::tools::Completion(program.App(), shell_, Words());
    return {{{"text", script}}, script};
  }

 private:
  std::string shell_;
};

class Manual : public Command {
 public:
  const char* Name() const override { return "manual"; }
  const char* Summary() const override { return "Prints what the manual page says of commands"; }
  const char* Example() const override { return "ottm manual | man -l -"; }
  void Declare(CLI::App&) override {}
  Answer Run() override {
    Program program;
    const std::string page = ot95::tools::ManualOfCommands(program.App());
    return {{{"text", page}}, page};
  }
};

}  // namespace

void AddShellCommands(CommandList& list) {
  list.push_back(std::make_unique<Completion>());
  list.push_back(std::make_unique<Manual>());
}

}  // namespace ottm
