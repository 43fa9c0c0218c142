// What shells and the manual know of a program, made of its command line.
#include "completion.h"

#include "bad_input.h"
#include "message.h"

namespace ot95::tools {
namespace {

using List = std::vector<std::string>;

std::string Joined(const List& list, const char* between = " ") {
  std::string text;
  for (const std::string& word : list) text += (text.empty() ? "" : between) + word;
  return text;
}

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
  return text;
}

/// In single quotes of a shell.
std::string InQuotes(const std::string& text) {
  return "'" + Replaced(text, "'", "'\\''") + "'";
}

/// An option or argument, as all that is written here needs it.
struct Word {
  std::string name;  ///< "--form", or "TYPE".
  std::string text;  ///< What the help says.
  List values;       ///< What it can be, where that is known.
  bool isOption, takesValue, isRequired, isRepeated;
};

/// The words of "{current,legacy}", as the parser tells what it takes.
List ValuesOf(const CLI::Option& option, const std::string& name, const KnownWords& words) {
  if (const auto known = words.find(name); known != words.end()) return known->second;
  const std::string type = option.get_type_name();
  const std::size_t begin = type.find('{'), end = type.find('}');
  if (begin == std::string::npos || end == std::string::npos) return {};
  return CLI::detail::split(type.substr(begin + 1, end - begin - 1), ',');
}

std::vector<Word> WordsOf(const CLI::App& command, const KnownWords& words) {
  std::vector<Word> found;
  for (const CLI::Option* option : command.get_options()) {
    const bool isOption = !option->get_lnames().empty();
    const std::string name = isOption ? "--" + option->get_lnames().front() : option->get_name();
    found.push_back({name, option->get_description(), ValuesOf(*option, name, words), isOption,
                     option->get_items_expected_max() != 0, option->get_required(),
                     option->get_items_expected_max() > 1});
  }
  return found;
}

/// A program as a script of a shell wants it.
struct Program {
  struct Command {
    std::string name, text;
    std::vector<Word> words;

    List Options() const {
      List names;
      for (const Word& word : words)
        if (word.isOption) names.push_back(word.name);
      return names;
    }
    /// What its arguments can be, of all of them.
    List Values() const {
      List values;
      for (const Word& word : words)
        if (!word.isOption) values.insert(values.end(), word.values.begin(), word.values.end());
      return values;
    }
    bool TakesFiles() const {
      for (const Word& word : words)
        if (!word.isOption && word.values.empty() && word.name.starts_with("FILE")) return true;
      return false;
    }
  };

  Program(const CLI::App& app, const KnownWords& words) : name(app.get_name()) {
    for (const CLI::App* command : app.get_subcommands({})) {
      commands.push_back(
          {command->get_name(), command->get_description(), WordsOf(*command, words)});
    }
    options = {"", "", WordsOf(app, words)};
  }

  std::string name;
  std::vector<Command> commands;
  Command options;  ///< Of the program itself.
};

// ---------------------------------------------------------------------------------------------
// The shells

std::string Bash(const Program& program) {
  List names = program.options.Options();
  std::string cases;
  for (const Program::Command& command : program.commands) {
    names.push_back(command.name);
    std::string values;
    for (const Word& word : command.words) {
      if (!word.isOption || !word.takesValue) continue;
      values += "        " + word.name + ") words=" + InQuotes(Joined(word.values)) + " ;;\n";
    }
    cases += "    " + command.name + ")\n      options=" + InQuotes(Joined(command.Options())) +
             "\n      words=" + InQuotes(Joined(command.Values())) +
             (command.TakesFiles() ? " files=1" : "") + "\n      case $previous in\n" + values +
             "      esac ;;\n";
  }
  return "# Completes " + program.name + " in bash.\n_" + program.name +
         "() {\n"
         "  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}\n"
         "  local options='' words='' files=''\n"
         "  if ((COMP_CWORD == 1)); then\n"
         "    mapfile -t COMPREPLY < <(compgen -W " +
         InQuotes(Joined(names)) +
         " -- \"$current\")\n"
         "    return\n"
         "  fi\n"
         "  case ${COMP_WORDS[1]} in\n" +
         cases +
         "  esac\n"
         "  [[ $current != -* ]] || words=$options files=''\n"
         "  mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$current\")\n"
         "  [[ -z $files ]] || mapfile -t -O \"${#COMPREPLY[@]}\" COMPREPLY < "
         "<(compgen -f -- \"$current\")\n"
         "}\n"
         "complete -F _" +
         program.name + " " + program.name + "\n";
}

/// A text in a description of zsh's.
std::string ForZsh(const std::string& text) {
  std::string escaped = text;
  for (const char* sign : {"[", "]", ":"})
    escaped = Replaced(escaped, sign, "\\" + std::string(sign));
  return escaped;
}

std::string ZshWords(const List& values) {
  return values.empty() ? " " : "(" + Joined(values) + ")";
}

std::string Zsh(const Program& program) {
  std::string names, cases;
  for (const Program::Command& command : program.commands) {
    names += "    " + InQuotes(ForZsh(command.name) + ":" + command.text) + "\n";
    cases += "    " + command.name + ") _arguments";
    for (const Word& word : command.words) {
      if (!word.isOption) continue;
      std::string spec = word.name + "[" + ForZsh(word.text) + "]";
      if (word.takesValue) spec += ":value:" + ZshWords(word.values);
      cases += " \\\n      " + InQuotes(spec);
    }
    const std::string values = command.TakesFiles() ? "_files" : ZshWords(command.Values());
    cases += " \\\n      " + InQuotes("*:argument:" + values) + " ;;\n";
  }
  return "#compdef " + program.name + "\n# Completes " + program.name +
         " in zsh.\nlocal -a commands=(\n" + names +
         ")\n"
         "if ((CURRENT == 2)); then\n  _describe command commands\n  return\nfi\n"
         "local chosen=${words[2]}\nshift words\n((CURRENT--))\n"
         "case $chosen in\n" +
         cases + "esac\n";
}

std::string Fish(const Program& program) {
  const std::string start = "complete -c " + program.name + " ";
  std::string script = "# Completes " + program.name + " in fish.\n" + start + "-f\n";
  for (const Program::Command& command : program.commands) {
    script += start + "-n __fish_use_subcommand -a " + command.name + " -d " +
              InQuotes(command.text) + "\n";
    const std::string in = start + "-n '__fish_seen_subcommand_from " + command.name + "' ";
    for (const Word& word : command.words) {
      if (!word.isOption) continue;
      script += in + "-l " + word.name.substr(2) + (word.takesValue ? " -x" : "");
      if (!word.values.empty()) script += " -a " + InQuotes(Joined(word.values));
      script += " -d " + InQuotes(word.text) + "\n";
    }
    if (const List values = command.Values(); !values.empty()) {
      script += in + "-a " + InQuotes(Joined(values)) + "\n";
    }
    if (command.TakesFiles()) script += in + "-F\n";
  }
  return script;
}

// ---------------------------------------------------------------------------------------------
// The manual

std::string ForMan(const std::string& text) {
  std::string escaped = Replaced(Replaced(text, "\\", "\\e"), "-", "\\-");
  return escaped.starts_with('.') || escaped.starts_with('\'') ? "\\&" + escaped : escaped;
}

std::string Arguments(const std::vector<Word>& words) {
  std::string text;
  for (const Word& word : words) {
    if (word.isOption) continue;
    const std::string name = word.name + (word.isRepeated ? "..." : "");
    text += " " + (word.isRequired ? name : "[" + name + "]");
  }
  return text;
}

}  // namespace

std::string Completion(const CLI::App& app, const std::string& shell, const KnownWords& words) {
  const Program program(app, words);
  if (shell == "bash") return Bash(program);
  if (shell == "zsh") return Zsh(program);
  if (shell == "fish") return Fish(program);
  throw BadInput("SHELL: expected bash, zsh or fish, found " + Quoted(shell));
}

std::string ManualOfCommands(const CLI::App& app) {
  std::string page;
  for (const CLI::App* command : app.get_subcommands({})) {
    const std::vector<Word> words = WordsOf(*command, {});
    page += ".SS \"" + ForMan(command->get_name() + Arguments(words)) + "\"\n";
    page += ForMan(command->get_description()) + ".\n";
    for (const Word& word : words) {
      if (word.name == "--help") continue;
      page += ".TP\n.B " + ForMan(word.name) + "\n" + ForMan(word.text) + "\n";
    }
    const std::string footer = Replaced(command->get_footer(), "\nExample: ", "\n.PP\nExample: ");
    page += ".PP\n" + ForMan(footer) + "\n";
  }
  return page;
}

}  // namespace ot95::tools
