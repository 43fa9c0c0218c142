#ifndef OTTM_PROGRAM_H
#define OTTM_PROGRAM_H

#include <string>
#include <vector>

#include "command.h"

namespace ottm {

/// The command line of one call: the commands as subcommands, and what was asked for.
class Program {
 public:
  /// @param only a command's name: the others are left out, which takes as long as many a command.
  /// Another text stands for all commands.
  explicit Program(const std::string& only = "");

  CLI::App& App() { return app_; }
  /// Throws what the arguments are refused with, or CLI::Success for a call for help.
  void Parse(const std::vector<std::string>& arguments);
  bool IsBatch() const { return batch_->parsed(); }
  Answer Run() { return chosen_->Run(); }
  int Print() { return chosen_->Print(json_); }

 private:
  void Declare(Command& command);

  CLI::App app_;
  CommandList commands_;
  Command* chosen_ = nullptr;
  CLI::App* batch_ = nullptr;
  bool json_ = false;
};

/// Answers a line of a batch: a JSON array of arguments. What is refused is an answer, too.
Json AnswerLine(const std::string& line);

}  // namespace ottm

#endif
