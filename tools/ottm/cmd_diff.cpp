// Two files of records: diff.
#include <unistd.h>

#include <optional>

#include "colour.h"
#include "command.h"
#include "options.h"
#include "recordprinter.h"

namespace ottm {
namespace {

using ot95::tools::Colour;
using ot95::tools::Painted;

/// A file that is walked.
struct Side {
  Side(OtTypeMgr& manager, const Layout& layout, unsigned char format, const std::string& path,
       const char* textFormat)
      : input(path), reader(manager, layout, format, input, textFormat) {}

  ot95::tools::InputFile input;
  RecordReader reader;
};

/// One or more values as a line shows them.
std::string Shown(const Json& value) {
  return value.is_string() ? value.get<std::string>()
                           : value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

class RecordDiff : public Command {
 public:
  const char* Name() const override { return "diff"; }
  const char* Summary() const override { return "Compares two binary files record by record"; }
  const char* Example() const override {
    return "ottm diff old.bin new.bin --layout 'OtString:name,long:people,OtDate:daysx2'";
  }
  void Declare(CLI::App& app) override {
    app.add_option("A", a_, "A file, or - for standard input")->required();
    app.add_option("B", b_, "Another one")->required();
    app.add_option("--layout", layout_, "A record's members: TYPE[:NAME][xCOUNT],...")->required();
    app.add_option("--limit", limit_, "Differing records to print at most")
        ->check(CLI::NonNegativeNumber);
    factory_.Declare(app);
    form_.Declare(app);
    otherForm_.Declare(app, "--form2", "Form of the second file, else that of the first");
    print_.Declare(app);
  }

  Answer Run() override {
    Answer answer;
    Json differences = Json::array();
    answer.exit = Walk([&](const Json& found) { differences.push_back(found); }, answer.json);
    Json total = std::move(answer.json);
    answer.json = {{"differences", std::move(differences)}};
    answer.json.update(total);
    return answer;
  }

  int Print(bool asJson) override {
    Json total;
    const int exit =
        Walk([&](const Json& found) { WriteOut(asJson ? JsonLine(found) : Lines(found)); }, total);
    WriteOut(asJson ? JsonLine(total) : LastLines(total));
    FlushOut();
    return exit;
  }

 private:
  template <class OnDifference>
  int Walk(const OnDifference& onDifference, Json& total) {
    OtTypeMgr manager = factory_.Manager();
    const unsigned char form = form_.Format();
    const unsigned char other = otherForm_.name.empty() ? form : otherForm_.Format();
    const Layout layout = ParseLayout(manager, layout_, form);
    Side a(manager, layout, form, a_, print_.Format());
    Side b(manager, layout, other, b_, print_.Format());
    std::uint64_t records = 0, differing = 0;
    bool hasA = a.reader.Next(), hasB = b.reader.Next();
    for (; hasA && hasB; ++records, hasA = a.reader.Next(), hasB = b.reader.Next()) {
      const Json found = Compare(a.reader, b.reader, records);
      if (!found.is_null() && differing++ < limit_) onDifference(found);
    }
    const std::uint64_t onlyA = Rest(a.reader, hasA), onlyB = Rest(b.reader, hasB);
    total = {
        {"compared", records}, {"differ", differing},           {"onlyA", onlyA},
        {"onlyB", onlyB},      {"damageA", DamageOf(a.reader)}, {"damageB", DamageOf(b.reader)}};
    const bool damaged = a.reader.Found() || b.reader.Found();
    return differing != 0 || onlyA != 0 || onlyB != 0 || damaged ? 1 : 0;
  }

  static std::uint64_t Rest(RecordReader& reader, bool hasOne) {
    std::uint64_t records = 0;
    for (; hasOne; hasOne = reader.Skip()) ++records;
    return records;
  }
  static Json DamageOf(const RecordReader& reader) {
    return reader.Found() ? DamageToJson(*reader.Found())["damage"] : Json(nullptr);
  }

  /// The members that differ, or null.
  static Json Compare(const RecordReader& a, const RecordReader& b, std::uint64_t record) {
    Json members = Json::object(), left, right;
    for (std::size_t i = 0; i < a.Members().size(); ++i) {
      constexpr unsigned char form = OT_FORMAT_BIG_ENDIAN;
      if (a.ValuesOf(i).Store(form) == b.ValuesOf(i).Store(form)) continue;
      if (left.is_null()) left = RecordToJson(a)["values"], right = RecordToJson(b)["values"];
      const std::string& name = a.Members()[i].name;
      members[name] = {{"a", left[name]}, {"b", right[name]}};
    }
    if (members.empty()) return nullptr;
    return {{"record", record},
            {"offsetA", a.Start()},
            {"offsetB", b.Start()},
            {"members", std::move(members)}};
  }

  static std::string Lines(const Json& found) {
    std::string lines = Painted("record " + found["record"].dump() + ", at " +
                                    found["offsetA"].dump() + " and " + found["offsetB"].dump(),
                                Colour::kHeading, STDOUT_FILENO) +
                        "\n";
    for (const auto& [name, values] : found["members"].items()) {
      lines += Line("- ", name, values["a"], Colour::kLess);
      lines += Line("+ ", name, values["b"], Colour::kMore);
    }
    return lines;
  }
  static std::string Line(const char* sign, const std::string& name, const Json& value,
                          Colour colour) {
    const std::string text = sign + name + "  " + ot95::tools::Escaped(Shown(value));
    return Painted(text, colour, STDOUT_FILENO) + "\n";
  }

  static std::string LastLines(const Json& total) {
    std::string lines = total["differ"].dump() + " of " + total["compared"].dump() +
                        " records differ; only in A: " + total["onlyA"].dump() +
                        ", only in B: " + total["onlyB"].dump() + "\n";
    for (const char* side : {"A", "B"}) {
      const Json& damage = total[std::string("damage") + side];
      if (damage.is_null()) continue;
      lines += std::string(side) + " is damaged at offset " + damage["offset"].dump() + ", in " +
               damage["member"].get<std::string>() + " of record " + damage["record"].dump() +
               ": " + damage["reason"].get<std::string>() + "\n";
    }
    return lines;
  }

  std::string a_, b_, layout_;
  std::uint64_t limit_ = ~std::uint64_t{0};
  FactoryOption factory_;
  FormOption form_;
  FormOption otherForm_{"", ""};
  PrintOption print_;
};

}  // namespace

void AddDiffCommands(CommandList& list) {
  list.push_back(std::make_unique<RecordDiff>());
}

}  // namespace ottm
