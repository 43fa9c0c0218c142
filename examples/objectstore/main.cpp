// otdb: an object store that knows values only through the type manager.
#include <csv.h>
#include <unistd.h>
#include <CLI/CLI.hpp>

#include <csignal>
#include <cstdio>
#include <iostream>
#include <string_view>

#include "bad_input.h"
#include "check.h"
#include "colour.h"
#include "commandline.h"
#include "execute.h"
#include "explain.h"
#include "files.h"
#include "import.h"
#include "message.h"
#include "progress.h"
#include "record.h"
#include "reindex.h"
#include "statistics.h"
#include "store.h"

namespace otdb {
namespace {

using ot95::tools::BadInput;
using ot95::tools::FlushOut;
using ot95::tools::WriteOut;
using Json = nlohmann::ordered_json;

struct Arguments {
  std::string directory, file, className, id, query, index;
  bool json = false, csv = false, explain = false, skipBad = false, byteOrder = false;
  std::size_t batch = ImportOptions().batch;
};

void PrintCsv(const std::vector<std::string>& fields) {
  std::string line;
  for (const std::string& field : fields) {
    const std::size_t start = line.size();
    line.resize(start + csv_write(nullptr, 0, field.data(), field.size()));
    csv_write(line.data() + start, line.size() - start, field.data(), field.size());
    line += ',';
  }
  if (!line.empty()) line.pop_back();
  WriteOut(line + "\n");
}

/// Prints objects as JSON lines, as CSV, or as columns with tabs between them.
class Printer {
 public:
  Printer(const Class& type, unsigned char form, const Arguments& arguments)
      : class_(type), form_(form), arguments_(arguments), object_(type, form) {}

  void Header() {
    if (arguments_.csv) PrintCsv(ColumnsOf(class_));
    if (!arguments_.csv && !arguments_.json) PrintTabbed("id", ColumnsOf(class_));
  }
  void Print(View id, const Record& record) {
    object_.Load(record);
    if (arguments_.csv) {
      PrintCsv(object_.Texts());
    } else if (arguments_.json) {
      Json json = {{"class", class_.name}, {"id", IdToText(id, form_)}};
      json.update(object_.ToJson());
      WriteOut(json.dump() + "\n");
    } else {
      PrintTabbed(IdToText(id, form_), object_.Texts());
    }
  }

 private:
  /// A text neither breaks the columns nor speaks to the terminal.
  static void PrintTabbed(const std::string& id, const std::vector<std::string>& texts) {
    std::string line = id;
    for (const std::string& text : texts) line += "\t" + ot95::tools::Escaped(text);
    WriteOut(line + "\n");
  }

  const Class& class_;
  unsigned char form_;
  const Arguments& arguments_;
  Object object_;
};

int RunCreate(const Arguments& arguments) {
  const std::string json = ot95::tools::InputFile(arguments.file).ReadAll();
  Schema schema = ot95::tools::Naming(ot95::tools::Escaped(arguments.file),
                                      [&] { return Schema::FromJson(json); });
  if (arguments.byteOrder) schema.sortKeyVersion = OtTypeMgr::SortKeyVersion();
  Store::Create(arguments.directory, schema);
  return 0;
}

void ShowProgress(double share, std::size_t objects) {
  ot95::tools::ShowProgress(share, objects, "objects");
}

void Tell(const std::string& text) {
  std::cerr << ot95::tools::Painted("otdb:", ot95::tools::Colour::kError, STDERR_FILENO) << " "
            << ot95::tools::Message(text) << "\n";
}

int RunImport(const Arguments& arguments) {
  Store store(arguments.directory);
  ImportOptions options;
  options.skipBad = arguments.skipBad;
  options.batch = arguments.batch;
  options.report = Tell;
  const bool onTerminal = isatty(STDERR_FILENO) != 0;
  if (onTerminal) options.progress = ShowProgress;
  const Class& type = store.GetSchema().ClassNamed(arguments.className);
  const ImportResult result = Import(store, type, arguments.file, options);
  if (onTerminal) std::cerr << "\n";
  std::string told = std::to_string(result.objects) + " objects added";
  if (result.bad != 0) told += ", " + std::to_string(result.bad) + " bad lines skipped";
  WriteOut(told + "\n");
  return 0;
}

int RunAnalyze(const Arguments& arguments) {
  Store store(arguments.directory);
  Analyze(store, [](const std::string& index, std::size_t stretches) {
    WriteOut(index + ": " + std::to_string(stretches) + " ranges\n");
  });
  return 0;
}

int RunReindex(const Arguments& arguments) {
  Store store(arguments.directory, Access::kReindex);
  std::vector<IndexName> indexes;
  if (arguments.index.empty()) {
    const Snapshot snapshot = store.Read();
    indexes = OutdatedIndexes(store, snapshot);
  } else {
    indexes.push_back(IndexNamed(store, arguments.index));
  }
  if (indexes.empty()) WriteOut("all indexes are in the order of their languages\n");
  ReindexOptions options;
  options.batch = arguments.batch;
  const bool onTerminal = isatty(STDERR_FILENO) != 0;
  if (onTerminal) options.progress = ShowProgress;
  for (const IndexName& name : indexes) {
    const std::size_t entries = Reindex(store, name, options);
    if (onTerminal) std::cerr << "\n";
    WriteOut(NameOf(*name.trees, *name.index) + ": " + std::to_string(entries) + " entries\n");
  }
  if (!indexes.empty()) Analyze(store, {});
  return 0;
}

/// Runs a command that only reads.
template <int (*command)(const Store&, const Snapshot&, const Arguments&)>
int Reading(const Arguments& arguments) {
  const Store store(arguments.directory, Access::kRead);
  const Snapshot snapshot = store.Read();
  const int status = command(store, snapshot, arguments);
  store.RequireUnchanged();
  return status;
}

int RunGet(const Store& store, const Snapshot& snapshot, const Arguments& arguments) {
  const unsigned char form = store.GetSchema().form;
  const Bytes id = IdFromText(arguments.id, form);
  for (const ClassTrees& trees : store.Trees()) {
    const auto bytes = store.Find(snapshot, trees.objects, id);
    if (!bytes) continue;
    Arguments asJson = arguments;
    asJson.json = true;
    Printer(*trees.type, form, asJson).Print(id, Record(*trees.type, *bytes, form));
    return 0;
  }
  Tell("no object " + arguments.id);
  return 1;
}

int RunDump(const Store& store, const Snapshot& snapshot, const Arguments& arguments) {
  if (arguments.csv && arguments.className.empty()) throw BadInput("--csv: expected a CLASS");
  for (const ClassTrees& trees : store.Trees()) {
    if (!arguments.className.empty() &&
        trees.type != &store.GetSchema().ClassNamed(arguments.className)) {
      continue;
    }
    Arguments how = arguments;
    how.json = !how.csv;
    Printer printer(*trees.type, store.GetSchema().form, how);
    printer.Header();
    Cursor cursor(snapshot, trees.objects);
    for (bool more = cursor.First(); more; more = cursor.Next()) {
      const View record = store.Checked(trees.objects, cursor.Key(), cursor.Data());
      printer.Print(cursor.Key(), Record(*trees.type, record, store.GetSchema().form));
    }
  }
  return 0;
}

std::size_t SizeOf(const MDB_stat& stat) {
  return stat.ms_psize * (stat.ms_branch_pages + stat.ms_leaf_pages + stat.ms_overflow_pages);
}

std::string Padded(const std::string& text, int width) {
  const auto room = static_cast<std::size_t>(width < 0 ? -width : width);
  const std::string blanks(text.size() < room ? room - text.size() : 0, ' ');
  return width < 0 ? text + blanks : blanks + text;
}

/// The columns of `stat`: what, how many, and how large.
std::string StatColumns(const std::string& name, const MDB_stat& stat, const char* what) {
  return Padded(name, -24) + " " + Padded(std::to_string(stat.ms_entries), 10) + " " + what + " " +
         Padded(std::to_string(SizeOf(stat)), 12) + " bytes";
}

std::string StatOfIndex(const Store& store, const Snapshot& snapshot, const ClassTrees& trees,
                        const IndexTrees& index) {
  const Member& member = trees.type->members[index.member];
  std::string line = StatColumns("  " + member.name, StatOf(snapshot, index.all), "entries");
  Cursor first(snapshot, index.all), last(snapshot, index.all);
  if (first.First() && last.Last()) {
    line += "  " + KeyToText(member, first.Key(), store.Keys()) + " to " +
            KeyToText(member, last.Key(), store.Keys());
  }
  const std::size_t partial = StatOf(snapshot, index.partial).ms_entries;
  if (partial != 0) line += "  (" + std::to_string(partial) + " partial keys)";
  return line + "\n";
}

int RunStat(const Store& store, const Snapshot& snapshot, const Arguments&) {
  for (const ClassTrees& trees : store.Trees()) {
    WriteOut(StatColumns(trees.type->name, StatOf(snapshot, trees.objects), "objects") + "\n");
    for (const IndexTrees& index : trees.indexes)
      WriteOut(StatOfIndex(store, snapshot, trees, index));
  }
  return 0;
}

int RunCheck(const Store& store, const Snapshot& snapshot, const Arguments&) {
  const CheckResult result =
      Check(store, snapshot, [](const std::string& fault) { WriteOut(fault + "\n"); });
  WriteOut(std::to_string(result.objects) + " objects, " + std::to_string(result.entries) +
           " index entries, " + std::to_string(result.faults) + " faults\n");
  return result.faults == 0 ? 0 : 1;
}

int RunQuery(const Store& store, const Snapshot& snapshot, const Arguments& arguments) {
  const Query query = ParseQuery(store.GetSchema(), arguments.query);
  const Plan plan = MakePlan(store, snapshot, query);
  if (arguments.explain) std::cerr << Explain(store, snapshot, query, plan);
  Printer printer(*query.type, store.GetSchema().form, arguments);
  if (!query.count) printer.Header();
  const Tally tally = Execute(store, snapshot, query, plan, [&](View id, const Record& record) {
    if (!query.count) printer.Print(id, record);
    return true;
  });
  if (query.count) WriteOut(std::to_string(tally.found) + "\n");
  FlushOut();
  if (arguments.explain) std::cerr << ExplainTally(store, snapshot, query, plan, tally);
  return 0;
}

using Command = int (*)(const Arguments&);

CLI::App* AddCommand(CLI::App& app, Arguments& arguments, Command& chosen, const char* name,
                     const char* summary, Command command) {
  CLI::App* sub = app.add_subcommand(name, summary);
  sub->add_option("DIR", arguments.directory, "Directory of the store")->required();
  sub->callback([&chosen, command] { chosen = command; });
  return sub;
}

void Declare(CLI::App& app, Arguments& arguments, Command& chosen) {
  app.require_subcommand(1);
  ot95::tools::DeclareVersion(app);
  const auto add = [&](const char* name, const char* summary, Command command) {
    return AddCommand(app, arguments, chosen, name, summary, command);
  };
  CLI::App* create = add("create", "Makes a store from a schema", RunCreate);
  create->add_option("SCHEMA", arguments.file, "JSON file of classes and members")->required();
  create->add_flag("--byte-order", arguments.byteOrder,
                   "Keep indexes of keys that compare as bytes, without the types' comparison");
  CLI::App* import = add("import", "Adds an object for each line of a CSV file", RunImport);
  import->add_option("CLASS", arguments.className)->required();
  import->add_option("FILE", arguments.file, "CSV with a header line")->required();
  import->add_flag("--skip-bad", arguments.skipBad, "Report bad lines and go on");
  import->add_option("--batch", arguments.batch, "Objects a transaction")
      ->check(CLI::Range(1, 1'000'000))
      ->capture_default_str();
  add("get", "Prints an object", Reading<RunGet>)->add_option("ID", arguments.id)->required();
  CLI::App* dump = add("dump", "Prints all objects, as JSON lines", Reading<RunDump>);
  dump->add_option("CLASS", arguments.className, "Only those of a class");
  dump->add_flag("--csv", arguments.csv, "CSV, as import takes it");
  add("analyze", "Measures how the indexes are filled, to plan queries by", RunAnalyze);
  CLI::App* reindex = add(
      "reindex", "Builds indexes anew whose keys are in another order than texts now", RunReindex);
  reindex->add_option("CLASS.MEMBER", arguments.index, "One index, whatever its order");
  reindex->add_option("--batch", arguments.batch, "Objects a transaction")
      ->check(CLI::Range(1, 1'000'000))
      ->capture_default_str();
  add("stat", "Tells sizes, and what the indexes reach from and to", Reading<RunStat>);
  add("check", "Verifies every record, and every index entry against its object",
      Reading<RunCheck>);
  CLI::App* query = add("query", "Finds objects", Reading<RunQuery>);
  query->add_option("QUERY", arguments.query)->required();
  query->add_flag("--explain", arguments.explain,
                  "Tell on standard error how the query is answered");
  query->add_flag("--json", arguments.json, "JSON lines");
  query->add_flag("--csv", arguments.csv, "CSV");
  query->footer(
      "Example: otdb query DIR \"from City where name = 'san*' ignoring case order by name\"");
}

int Run(int argc, char** argv) {
  CLI::App app("An object store that knows values only through the type manager.", "otdb");
  Arguments arguments;
  Command chosen = nullptr;
  Declare(app, arguments, chosen);
  int status = 0;
  try {
    ot95::tools::Parse(app, std::vector<std::string>(argv + 1, argv + argc));
    status = chosen(arguments);
  } catch (const CLI::Success& help) {
    app.exit(help);
  }
  FlushOut();
  return status;
}

// The store is mapped, so that a page that a device doesn't give, or that someone cut off
// meanwhile, arrives as a signal. What was committed stands.
void OnUnreadablePage(int number, siginfo_t* info, void*) {
  if (info->si_code != BUS_ADRERR) {
    std::signal(number, SIG_DFL);
    return;  // to the same place, and to its end
  }
  constexpr std::string_view kTold = "otdb: expected a store that can be read to its end\n";
  if (write(STDERR_FILENO, kTold.data(), kTold.size()) < 0) _exit(2);
  _exit(2);
}

void TellUnreadablePages() {
  struct sigaction action {};
  action.sa_sigaction = OnUnreadablePage;
  action.sa_flags = SA_SIGINFO;
  sigaction(SIGBUS, &action, nullptr);
}

int Main(int argc, char** argv) {
  ot95::tools::TellFileLimits();
  TellUnreadablePages();
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    std::fflush(stdout);  // what was found comes before what went wrong
    Tell(error.what());
    return 2;
  }
}

}  // namespace
}  // namespace otdb

int main(int argc, char** argv) {
  ___OtTypemgrContext(1);
  const int status = otdb::Main(argc, argv);
  ___OtTypemgrContext(0);
  return status;
}
