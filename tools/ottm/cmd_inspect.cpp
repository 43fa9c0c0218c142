// Files of records: inspect.
#include <unistd.h>

#include <iostream>
#include <optional>

#include "command.h"
#include "options.h"
#include "progress.h"
#include "recordprinter.h"

namespace ottm {
namespace {

/// Draws how far a file has been read, now and then: on a terminal that the records don't go to.
class Progress {
 public:
  /// @param size 0 where it isn't known.
  explicit Progress(std::uint64_t size)
      : size_(size), shows_(size > 0 && isatty(STDERR_FILENO) != 0 && isatty(STDOUT_FILENO) == 0) {}
  ~Progress() {
    if (next_ > 0) std::cerr << "\n";
  }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void Tell(std::uint64_t offset, std::uint64_t records) {
    if (!shows_ || (offset < next_ && offset < size_)) return;
    ot95::tools::ShowProgress(static_cast<double>(offset) / static_cast<double>(size_),
                              static_cast<std::size_t>(records), "records");
    next_ = offset + size_ / 100 + 1;
  }

 private:
  std::uint64_t size_;
  bool shows_;
  std::uint64_t next_ = 0;
};

class Inspect : public Command {
 public:
  const char* Name() const override { return "inspect"; }
  const char* Summary() const override { return "Prints the records of a binary file"; }
  const char* Example() const override {
    return "ottm inspect places.bin --layout 'OtString:name,long:people,OtDate:daysx2' --limit 9";
  }
  void Declare(CLI::App& app) override {
    app.add_option("FILE", file_, "The file, or - for standard input")->required();
    app.add_option("--layout", layout_, "A record's members: TYPE[:NAME][xCOUNT],...")->required();
    app.add_option("--skip", skip_, "Records to leave out first")->check(CLI::NonNegativeNumber);
    app.add_option("--limit", limit_, "Records to print at most")->check(CLI::NonNegativeNumber);
#ifdef OT95_CSV
    app.add_flag("--csv", csv_, "CSV: a header line and the values")
        ->excludes(app.get_option("--json"));
#endif
    factory_.Declare(app);
    form_.Declare(app);
    print_.Declare(app);
  }

  Answer Run() override {
    RecordReader reader = Open();
    Answer answer;
    Json records = Json::array();
    Walk(reader, 0, [&] { records.push_back(RecordToJson(reader)); });
    const auto& damage = reader.Found();
    answer.json = {{"records", std::move(records)},
                   {"damage", damage ? DamageToJson(*damage)["damage"] : Json(nullptr)}};
    answer.exit = damage ? 1 : 0;
    return answer;
  }

  int Print(bool asJson) override {
    RecordReader reader = Open();
    const std::unique_ptr<RecordPrinter> printer = MakePrinter(asJson, reader.Members());
    Walk(reader, size_, [&] { printer->Record(reader); });
    printer->End(reader.Found() ? &*reader.Found() : nullptr);
    FlushOut();
    return reader.Found() ? 1 : 0;
  }

 private:
  RecordReader Open() {
    manager_ = factory_.Manager();
    Layout layout = ParseLayout(manager_, layout_, form_.Format());
    input_.emplace(file_);
    size_ = input_->Size();
    return RecordReader(manager_, std::move(layout), form_.Format(), *input_, print_.Format());
  }

  std::unique_ptr<RecordPrinter> MakePrinter(bool asJson, const Layout& layout) const {
#ifdef OT95_CSV
    if (csv_) return CsvPrinter(layout);
#endif
    return asJson ? JsonPrinter() : TablePrinter(layout);
  }

  template <class OnRecord>
  void Walk(RecordReader& reader, std::uint64_t size, const OnRecord& onRecord) const {
    Progress progress(size);
    std::uint64_t records = 0;
    for (; records < skip_ && reader.Skip(); ++records) progress.Tell(reader.Offset(), records);
    if (records < skip_) return;
    for (; records - skip_ < limit_ && reader.Next(); ++records) {
      onRecord();
      progress.Tell(reader.Offset(), records + 1);
    }
  }

  std::string file_;
  std::string layout_;
  std::uint64_t skip_ = 0;
  std::uint64_t limit_ = ~std::uint64_t{0};
  bool csv_ = false;
  FactoryOption factory_;
  FormOption form_;
  PrintOption print_;
  OtTypeMgr manager_;
  std::optional<ot95::tools::InputFile> input_;
  std::uint64_t size_ = 0;
};

}  // namespace

void AddInspectCommands(CommandList& list) {
  list.push_back(std::make_unique<Inspect>());
}

}  // namespace ottm
