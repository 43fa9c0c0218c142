#ifndef OT95_TOOLS_COMPLETION_H
#define OT95_TOOLS_COMPLETION_H

#include <CLI/CLI.hpp>
#include <map>
#include <string>
#include <vector>

namespace ot95::tools {

/// What the arguments and options of a name can be: "TYPE", "--form". One that isn't listed and is
/// called FILE is a file.
using KnownWords = std::map<std::string, std::vector<std::string>>;

/// Completes the program's commands, options and words in a shell: bash, zsh or fish. It is made of
/// what the program's help is made of. Throws BadInput for another shell.
std::string Completion(const CLI::App& app, const std::string& shell, const KnownWords& words);

/// The part of the program's manual page that is about its commands, in the language of man: a
/// section a command with what its help says.
std::string ManualOfCommands(const CLI::App& app);

}  // namespace ot95::tools

#endif
