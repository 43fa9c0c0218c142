// ottm: the type manager on the command line. One process answers one command, or a batch of them.
#include <algorithm>
#include <iostream>

#include "command.h"
#include "commandline.h"
#include "ot95/typemgr.h"

namespace ottm {
namespace {

CommandList AllCommands() {
  CommandList list;
  AddTableCommands(list);
  AddStorageCommands(list);
  AddComparisonCommands(list);
  AddEstimateCommands(list);
  AddSortKeyCommands(list);
  AddTextCommands(list);
  AddOrderCommands(list);
  AddLineCommands(list);
  AddInt64Commands(list);
  AddDateCommands(list);
  AddInspectCommands(list);
  AddLanguageCommands(list);
  return list;
}

/// The command line of one call: the commands as subcommands, and what was asked for.
class Program {
 public:
  /// @param only a command's name: the others are left out, which takes as long as many a command.
  /// Another text stands for all commands.
  explicit Program(const std::string& only = "")
      : app_("Does to values on a command line what an engine does to them in memory."),
        commands_(AllCommands()) {
    app_.name("ottm");
    app_.require_subcommand(1);
    ot95::tools::DeclareVersion(app_);
    const auto isMeant = [&only](const auto& command) { return command->Name() == only; };
    const bool isOne = std::any_of(commands_.begin(), commands_.end(), isMeant);
    for (auto& command : commands_) {
      if (!isOne || isMeant(command)) Declare(*command);
    }
    batch_ = app_.add_subcommand(
        "batch", "Answers one JSON array of arguments per line with one JSON line each");
    batch_->footer("Example: echo '[\"encode\", \"short\", \"-2\"]' | ottm batch");
  }

  CLI::App& App() { return app_; }
  void Parse(const std::vector<std::string>& arguments) { ot95::tools::Parse(app_, arguments); }
  bool IsBatch() const { return batch_->parsed(); }
  Answer Run() { return chosen_->Run(); }
  int Print() { return chosen_->Print(json_); }

 private:
  void Declare(Command& command) {
    CLI::App* sub = app_.add_subcommand(command.Name(), command.Summary());
    sub->footer(std::string("Example: ") + command.Example());
    sub->add_flag("--json", json_, "One JSON object on one line");
    command.Declare(*sub);
    sub->callback([this, &command] { chosen_ = &command; });
  }

  CLI::App app_;
  CommandList commands_;
  Command* chosen_ = nullptr;
  CLI::App* batch_ = nullptr;
  bool json_ = false;
};

Json ErrorObject(const std::string& message) {
  return {{"error", message}, {"exit", 2}};
}

Json AnswerLine(const std::string& line) {
  try {
    const auto arguments = Json::parse(line).get<std::vector<std::string>>();
    Program program(arguments.empty() ? "" : arguments.front());
    program.Parse(arguments);
    if (program.IsBatch()) return ErrorObject("batch: expected another command");
    return program.Run().json;
  } catch (const CLI::Success&) {
    return ErrorObject("expected a command, not a call for help");
  } catch (const Json::exception&) {
    return ErrorObject("expected a JSON array of texts");
  } catch (const std::exception& error) {
    return ErrorObject(ot95::tools::Message(error.what()));
  }
}

int RunBatch() {
  ot95::tools::InputFile input("-");
  input.KeepForItself();
  ot95::tools::LineReader lines(input);
  for (std::string line; lines.Next(line);) {
    WriteOut(JsonLine(AnswerLine(line)));
    FlushOut();
  }
  return 0;
}

/// Help and versions are answers, too.
int PrintHelp(const CLI::App& app, const CLI::Success& help) {
  app.exit(help);
  FlushOut();
  return 0;
}

int Run(int argc, char** argv) {
  Program program;
  try {
    program.Parse(std::vector<std::string>(argv + 1, argv + argc));
  } catch (const CLI::Success& help) {
    return PrintHelp(program.App(), help);
  }
  return program.IsBatch() ? RunBatch() : program.Print();
}

int Main(int argc, char** argv) {
  ot95::tools::TellFileLimits();
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "ottm: " << ot95::tools::Message(error.what()) << "\n";
    return 2;
  }
}

}  // namespace
}  // namespace ottm

int main(int argc, char** argv) {
  ___OtTypemgrContext(1);
  const int status = ottm::Main(argc, argv);
  ___OtTypemgrContext(0);
  return status;
}
