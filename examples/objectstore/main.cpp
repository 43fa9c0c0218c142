// otdb: an object store that knows values only through the type manager.
#include <csv.h>
#include <unistd.h>
#include <CLI/CLI.hpp>

#include <cstdio>
#include <fstream>
#include <iostream>
#include <sstream>

#include "bad_input.h"
#include "check.h"
#include "execute.h"
#include "explain.h"
#include "import.h"
#include "progress.h"
#include "record.h"
#include "store.h"

namespace otdb {
namespace {

using ot95::tools::BadInput;
using Json = nlohmann::ordered_json;

struct Arguments {
  std::string directory, file, className, id, query;
  bool json = false, csv = false, explain = false, skipBad = false;
  std::size_t batch = ImportOptions().batch;
};

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw BadInput(path + ": can't be read");
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

void PrintCsv(const std::vector<std::string>& fields) {
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (i != 0) std::putchar(',');
    csv_fwrite(stdout, fields[i].data(), fields[i].size());
  }
  std::putchar('\n');
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
      std::puts(json.dump().c_str());
    } else {
      PrintTabbed(IdToText(id, form_), object_.Texts());
    }
  }

 private:
  static void PrintTabbed(const std::string& id, const std::vector<std::string>& texts) {
    std::fputs(id.c_str(), stdout);
    for (const std::string& text : texts) std::printf("\t%s", text.c_str());
    std::putchar('\n');
  }

  const Class& class_;
  unsigned char form_;
  const Arguments& arguments_;
  Object object_;
};

int RunCreate(const Arguments& arguments) {
  Store::Create(arguments.directory, Schema::FromJson(ReadFile(arguments.file)));
  return 0;
}

void ShowProgress(double share, std::size_t objects) {
  ot95::tools::ShowProgress(share, objects, "objects");
}

int RunImport(const Arguments& arguments) {
  Store store(arguments.directory);
  ImportOptions options;
  options.skipBad = arguments.skipBad;
  options.batch = arguments.batch;
  options.report = [](const std::string& text) { std::cerr << "otdb: " << text << "\n"; };
  const bool onTerminal = isatty(STDERR_FILENO) != 0;
  if (onTerminal) options.progress = ShowProgress;
  const Class& type = store.GetSchema().ClassNamed(arguments.className);
  const ImportResult result = Import(store, type, arguments.file, options);
  if (onTerminal) std::cerr << "\n";
  std::cout << result.objects << " objects added";
  if (result.bad != 0) std::cout << ", " << result.bad << " bad lines skipped";
  std::cout << "\n";
  return 0;
}

int RunGet(const Arguments& arguments) {
  const Store store(arguments.directory);
  const unsigned char form = store.GetSchema().form;
  const Bytes id = IdFromText(arguments.id, form);
  auto txn = store.Read();
  for (const ClassTrees& trees : store.Trees()) {
    const auto bytes = Get(txn, trees.objects, id);
    if (!bytes) continue;
    Arguments asJson = arguments;
    asJson.json = true;
    Printer(*trees.type, form, asJson).Print(id, Record(*trees.type, *bytes, form));
    return 0;
  }
  std::cerr << "otdb: no object " << arguments.id << "\n";
  return 1;
}

int RunDump(const Arguments& arguments) {
  const Store store(arguments.directory);
  auto txn = store.Read();
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
    Cursor cursor(txn, trees.objects);
    for (bool more = cursor.First(); more; more = cursor.Next()) {
      printer.Print(cursor.Key(), Record(*trees.type, cursor.Data(), store.GetSchema().form));
    }
  }
  return 0;
}

void PrintStat(const Store& store, lmdb::txn& txn, const ClassTrees& trees) {
  const MDB_stat objects = StatOf(txn, trees.objects);
  const auto size = [](const MDB_stat& stat) {
    return stat.ms_psize * (stat.ms_branch_pages + stat.ms_leaf_pages + stat.ms_overflow_pages);
  };
  std::printf("%-24s %10zu objects %12zu bytes\n", trees.type->name.c_str(), objects.ms_entries,
              size(objects));
  for (const IndexTrees& index : trees.indexes) {
    const Member& member = trees.type->members[index.member];
    const MDB_stat all = StatOf(txn, index.all);
    std::printf("  %-22s %10zu entries %12zu bytes", member.name.c_str(), all.ms_entries,
                size(all));
    Cursor first(txn, index.all), last(txn, index.all);
    if (first.First() && last.Last()) {
      const unsigned char form = store.GetSchema().form;
      std::printf("  %s to %s", KeyToText(member, first.Key(), form).c_str(),
                  KeyToText(member, last.Key(), form).c_str());
    }
    const std::size_t partial = StatOf(txn, index.partial).ms_entries;
    if (partial != 0) std::printf("  (%zu partial keys)", partial);
    std::putchar('\n');
  }
}

int RunStat(const Arguments& arguments) {
  const Store store(arguments.directory);
  auto txn = store.Read();
  for (const ClassTrees& trees : store.Trees()) PrintStat(store, txn, trees);
  return 0;
}

int RunCheck(const Arguments& arguments) {
  const Store store(arguments.directory);
  auto txn = store.Read();
  const CheckResult result =
      Check(store, txn, [](const std::string& fault) { std::cout << fault << "\n"; });
  std::cout << result.objects << " objects, " << result.entries << " index entries, "
            << result.faults << " faults\n";
  return result.faults == 0 ? 0 : 1;
}

int RunQuery(const Arguments& arguments) {
  const Store store(arguments.directory);
  const Query query = ParseQuery(store.GetSchema(), arguments.query);
  auto txn = store.Read();
  const Plan plan = MakePlan(store, txn, query);
  if (arguments.explain) std::cerr << Explain(store, txn, query, plan);
  Printer printer(*query.type, store.GetSchema().form, arguments);
  if (!query.count) printer.Header();
  const Tally tally = Execute(store, txn, query, plan, [&](View id, const Record& record) {
    if (!query.count) printer.Print(id, record);
    return true;
  });
  if (query.count) std::printf("%zu\n", tally.found);
  std::fflush(stdout);
  if (arguments.explain) std::cerr << ExplainTally(store, txn, query, plan, tally);
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
  const auto add = [&](const char* name, const char* summary, Command command) {
    return AddCommand(app, arguments, chosen, name, summary, command);
  };
  add("create", "Makes a store from a schema", RunCreate)
      ->add_option("SCHEMA", arguments.file, "JSON file of classes and members")
      ->required();
  CLI::App* import = add("import", "Adds an object for each line of a CSV file", RunImport);
  import->add_option("CLASS", arguments.className)->required();
  import->add_option("FILE", arguments.file, "CSV with a header line")->required();
  import->add_flag("--skip-bad", arguments.skipBad, "Report bad lines and go on");
  import->add_option("--batch", arguments.batch, "Objects a transaction")
      ->check(CLI::Range(1, 1'000'000))
      ->capture_default_str();
  add("get", "Prints an object", RunGet)->add_option("ID", arguments.id)->required();
  CLI::App* dump = add("dump", "Prints all objects, as JSON lines", RunDump);
  dump->add_option("CLASS", arguments.className, "Only those of a class");
  dump->add_flag("--csv", arguments.csv, "CSV, as import takes it");
  add("stat", "Tells sizes, and what the indexes reach from and to", RunStat);
  add("check", "Verifies every record, and every index entry against its object", RunCheck);
  CLI::App* query = add("query", "Finds objects", RunQuery);
  query->add_option("QUERY", arguments.query)->required();
  query->add_flag("--explain", arguments.explain,
                  "Tell on standard error how the query is answered");
  query->add_flag("--json", arguments.json, "JSON lines");
  query->add_flag("--csv", arguments.csv, "CSV");
  query->footer(
      "Example: otdb query DIR \"from City where name = 'san*' ignoring case order by name\"");
}

int Main(int argc, char** argv) {
  CLI::App app("An object store that knows values only through the type manager.", "otdb");
  Arguments arguments;
  Command chosen = nullptr;
  Declare(app, arguments, chosen);
  try {
    app.parse(argc, argv);
    return chosen(arguments);
  } catch (const CLI::Success& help) {
    return app.exit(help);
  } catch (const std::exception& error) {
    std::cout << std::flush;
    std::cerr << "otdb: " << error.what() << "\n";
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
