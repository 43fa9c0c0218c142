#ifndef OTTM_COMMAND_H
#define OTTM_COMMAND_H

#include <CLI/CLI.hpp>
#include <memory>
#include <string_view>
#include <vector>

#include "answer.h"
#include "files.h"

namespace ottm {

/// One command of the program. An object serves one call.
class Command {
 public:
  virtual ~Command() = default;
  /// Name, summary and a working example, for the help.
  virtual const char* Name() const = 0;
  virtual const char* Summary() const = 0;
  virtual const char* Example() const = 0;
  virtual void Declare(CLI::App& app) = 0;
  /// The whole answer, as a batch gives it.
  virtual Answer Run() = 0;
  /// Writes the answer to standard output. A command whose answer may outgrow memory writes it
  /// piece by piece instead. @return the exit status.
  virtual int Print(bool asJson);
};

/// An object on a line of its own.
std::string JsonLine(const Json& json);
using ot95::tools::FlushOut;
using ot95::tools::WriteOut;

using CommandList = std::vector<std::unique_ptr<Command>>;

// Each source of commands adds its own.
void AddTableCommands(CommandList& list);
void AddStorageCommands(CommandList& list);
void AddComparisonCommands(CommandList& list);
void AddLineCommands(CommandList& list);
void AddTextCommands(CommandList& list);
void AddOrderCommands(CommandList& list);
void AddInt64Commands(CommandList& list);
void AddDateCommands(CommandList& list);
void AddEstimateCommands(CommandList& list);
void AddGuessCommands(CommandList& list);
void AddDiffCommands(CommandList& list);
void AddInspectCommands(CommandList& list);
void AddLanguageCommands(CommandList& list);
void AddSortKeyCommands(CommandList& list);
void AddShellCommands(CommandList& list);

}  // namespace ottm

#endif
