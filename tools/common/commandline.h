#ifndef OT95_TOOLS_COMMANDLINE_H
#define OT95_TOOLS_COMMANDLINE_H

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace ot95::tools {

/// Parses the arguments behind the program's name for a program of subcommands. What is wrong with
/// them throws BadInput: an unknown command or option is told with the nearest known one, and every
/// refusal with the page of help that it concerns.
void Parse(CLI::App& app, const std::vector<std::string>& arguments);

/// Adds --version: what the library says of itself, and of its tables.
void DeclareVersion(CLI::App& app);

}  // namespace ot95::tools

#endif
