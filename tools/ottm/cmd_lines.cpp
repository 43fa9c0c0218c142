// Lines of files by collation: sort, match.
#include <algorithm>

#include "command.h"
#include "options.h"
#include "ot95/sort.h"
#include "texts.h"

namespace ottm {
namespace {

/// Calls an action with each line of some files, or of standard input. What it refuses is told
/// with the line's place.
template <class Action>
void ForEachLine(std::vector<std::string> files, const Action& action) {
  if (files.empty()) files.emplace_back("-");
  for (const std::string& name : files) {
    ot95::tools::InputFile file(name);
    ot95::tools::LineReader lines(file);
    for (std::string line; lines.Next(line);) Naming(lines.Place(), [&] { action(line); });
  }
}

class Sort : public Command {
 public:
  const char* Name() const override { return "sort"; }
  const char* Summary() const override { return "Sorts lines in collation order, stably"; }
  const char* Example() const override { return "printf 'z\\na\\n' | ottm sort --language sv"; }
  void Declare(CLI::App& app) override {
    app.add_option("FILE", files_, "Files, or standard input");
    op_.Declare(app);
    app.add_flag("--reverse", reverse_, "Last first");
    app.add_flag("--unique", unique_, "One line of those that compare equal");
    texts_.Declare(app);
  }

  Answer Run() override {
    std::vector<Entry> entries;
    ForEachLine(files_, [&](const std::string& line) {
      entries.push_back({texts_.Text(line), line});
    });
    const unsigned short op = op_.Word() | OT_CMP_NO_WILDCARDS;
    // Backwards both ways, so that lines that compare equal keep their order.
    if (reverse_) std::reverse(entries.begin(), entries.end());
    std::vector<const OtString*> texts;
    for (const Entry& entry : entries) texts.push_back(&entry.text);
    std::vector<unsigned long> order(texts.size());
    OtSortTexts(texts.data(), texts.size(), order.data(), op);
    if (reverse_) std::reverse(order.begin(), order.end());
    if (unique_) {
      const auto same = [&](unsigned long a, unsigned long b) {
        return texts[a]->Compare(*texts[b], op) == 0;
      };
      order.erase(std::unique(order.begin(), order.end(), same), order.end());
    }
    Answer answer;
    Json sorted = Json::array();
    for (const unsigned long number : order) {
      answer.human += entries[number].line + "\n";
      sorted.push_back(entries[number].line);
    }
    answer.json = {{"lines", sorted}};
    return answer;
  }

 private:
  struct Entry {
    OtString text;
    std::string line;
  };
  std::vector<std::string> files_;
  OpOption op_;
  bool reverse_ = false;
  bool unique_ = false;
  TextOptions texts_;
};

class Match : public Command {
 public:
  const char* Name() const override { return "match"; }
  const char* Summary() const override {
    return "Prints the lines that a wildcard pattern matches";
  }
  const char* Example() const override { return "ls | ottm match 'a*' --op ignore-case"; }
  void Declare(CLI::App& app) override {
    op_.names = "0";
    app.add_option("PATTERN", pattern_, "'*' stands for any run, '?' for one character")
        ->required();
    app.add_option("FILE", files_, "Files, or standard input");
    op_.Declare(app);
    app.add_flag("--count", count_, "Only the number of lines");
    texts_.Declare(app);
  }

  Answer Run() override {
    const OtString pattern = texts_.Text(pattern_);
    const unsigned short op = op_.Word();
    Answer answer;
    Json matches = Json::array();
    ForEachLine(files_, [&](const std::string& line) {
      if (texts_.Text(line).Compare(pattern, op) != 0) return;
      if (!count_) answer.human += line + "\n";
      matches.push_back(line);
    });
    if (count_) answer.human = std::to_string(matches.size()) + "\n";
    answer.exit = matches.empty() ? 1 : 0;
    answer.json = {{"count", matches.size()}};
    if (!count_) answer.json["lines"] = matches;
    return answer;
  }

 private:
  std::string pattern_;
  std::vector<std::string> files_;
  OpOption op_;
  bool count_ = false;
  TextOptions texts_;
};

}  // namespace

void AddLineCommands(CommandList& list) {
  list.push_back(std::make_unique<Sort>());
  list.push_back(std::make_unique<Match>());
}

}  // namespace ottm
