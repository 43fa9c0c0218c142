// All commands in one program, and one line of a batch.
#include "program.h"

#include <algorithm>

#include "commandline.h"
#include "details.h"

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
  AddDiffCommands(list);
  AddGuessCommands(list);
  AddLanguageCommands(list);
  AddShellCommands(list);
  return list;
}

}  // namespace

Program::Program(const std::string& only)
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
  batch_->footer(Footer("batch", "echo '[\"encode\", \"short\", \"-2\"]' | ottm batch"));
}

void Program::Declare(Command& command) {
  CLI::App* sub = app_.add_subcommand(command.Name(), command.Summary());
  sub->footer(Footer(command.Name(), command.Example()));
  sub->add_flag("--json", json_, "One JSON object on one line");
  command.Declare(*sub);
  sub->callback([this, &command] { chosen_ = &command; });
}

void Program::Parse(const std::vector<std::string>& arguments) {
  ot95::tools::Parse(app_, arguments);
}

namespace {

Json ErrorObject(const std::string& message) {
  return {{"error", message}, {"exit", 2}};
}

}  // namespace

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

}  // namespace ottm
