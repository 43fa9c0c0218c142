// Command lines of programs with subcommands: what is unknown, and where help is.
#include "commandline.h"

#include <algorithm>
#include <iterator>

#include "bad_input.h"
#include "message.h"
#include "ot95/oin_version.h"
#include "ot95/typemgr.h"
#include "ot95/version.h"

namespace ot95::tools {
namespace {

/// The parser takes an argument like "[a,b]" for a list. A mark behind it hides that, and every
/// option takes the mark off again.
constexpr char kMark = '\x1f';

std::string Marked(std::string argument) {
  if (argument.starts_with('[') && argument.ends_with(']')) argument += kMark;
  return argument;
}

std::string Unmarked(std::string argument) {
  if (argument.starts_with('[') && argument.ends_with(kMark)) argument.pop_back();
  return argument;
}

/// The command that the arguments have come to.
CLI::App& Deepest(CLI::App& app) {
  const std::vector<CLI::App*> chosen = app.get_subcommands();
  return chosen.empty() ? app : *chosen.front();
}

std::string NameOf(CLI::App& app, const CLI::App& command) {
  return &app == &command ? app.get_name() : app.get_name() + " " + command.get_name();
}

[[noreturn]] void Refuse(CLI::App& app, const std::string& reason) {
  throw BadInput(reason + " (see '" + NameOf(app, Deepest(app)) + " --help')");
}

std::vector<std::string> OptionsOf(const CLI::App& command) {
  std::vector<std::string> names;
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  return names;
}

[[noreturn]] void RefuseOption(CLI::App& app, const std::string& option) {
  const std::string name = option.substr(0, option.find('='));
  Refuse(app, Unknown("option", name, OptionsOf(Deepest(app))));
}

void RequireKnownCommand(CLI::App& app, const std::vector<std::string>& arguments) {
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
  if (arguments.empty()) Refuse(app, "expected a command");
  const std::string& word = arguments.front();
  if (word == "-h") return;
  const bool isOption = word.starts_with('-');
  const std::vector<std::string> known = isOption ? OptionsOf(app) : names;
  if (std::find(known.begin(), known.end(), word) != known.end()) return;
  if (isOption) RefuseOption(app, word);
  Refuse(app, Unknown("command", word, names));
}

/// Tells the first of the arguments that nobody asked for.
[[noreturn]] void RefuseStray(CLI::App& app, const std::vector<std::string>& strays) {
  const auto isOption = [](const std::string& word) { return word.starts_with('-'); };
  const auto option = std::find_if(strays.begin(), strays.end(), isOption);
  if (option != strays.end()) RefuseOption(app, *option);
  Refuse(app, "unexpected argument " + Quoted(strays.empty() ? "" : Unmarked(strays.front())));
}

std::string VersionText() {
  unsigned long numbers[5], compilerVersion = 0;
  const char *library = "", *built = "", *tag = "", *compiler = "", *extra = "";
  const char* description =
      OtDescribeDll(numbers, numbers + 1, numbers + 2, numbers + 3, numbers + 4, &library, &built,
                    &tag, &compilerVersion, &compiler, &extra);
  std::string text = std::string(description) + " ";
  for (const unsigned long number : numbers) text += std::to_string(number) + ".";
  text.pop_back();
  const OtTableVersions& tables = OtGetTableVersions();
  text += "\nrelease   " OT95_RELEASE;
  text += "\nlibrary   " + std::string(library) + ", " + built + ", " + compiler + " " +
          std::to_string(compilerVersion);
  text += "\nUnicode   " + std::string(tables.unicode);
  text += "\nCLDR      " + std::string(tables.cldr);
  text += "\ncollation " + std::to_string(tables.collation);
  return text;
}

}  // namespace

void Parse(CLI::App& app, const std::vector<std::string>& arguments) {
  RequireKnownCommand(app, arguments);
  for (CLI::App* command : app.get_subcommands({})) {
    for (CLI::Option* option : command->get_options()) option->transform(Unmarked);
  }
  std::vector<std::string> last;  // first, as the parser takes them
  std::transform(arguments.rbegin(), arguments.rend(), std::back_inserter(last), Marked);
  try {
    app.parse(std::move(last));
  } catch (const CLI::ExtrasError&) {
    RefuseStray(app, app.remaining(true));
  } catch (const CLI::Success&) {
    throw;
  } catch (const CLI::ParseError& error) {
    Refuse(app, error.what());
  }
}

void DeclareVersion(CLI::App& app) {
  app.set_version_flag("--version", VersionText, "What the library says of itself");
}

}  // namespace ot95::tools
