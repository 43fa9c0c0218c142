// Objects from CSV.
#include "import.h"

#include <csv.h>

#include <algorithm>
#include <memory>
#include <string_view>

#include "bad_input.h"
#include "files.h"
#include "message.h"
#include "record.h"
#include "statistics.h"

namespace otdb {
namespace {

using ot95::tools::BadInput;

/// Where a column goes.
struct Target {
  std::size_t member;
  unsigned long element;
};

std::vector<Target> TargetsOf(const Class& type) {
  std::vector<Target> targets;
  for (std::size_t i = 0; i < type.members.size(); ++i) {
    for (unsigned long e = 0; e < type.members[i].count; ++e) targets.push_back({i, e});
  }
  return targets;
}

/// Makes objects of lines, and adds them in batches.
class Importer {
 public:
  Importer(Store& store, const Class& type, const std::string& file, const ImportOptions& options)
      : store_(store),
        type_(type),
        file_(file),
        options_(options),
        object_(type, store.GetSchema().form) {}

  void Field(const char* text, std::size_t length) {
    fields_.emplace_back(text, length);
    newlines_ += static_cast<std::size_t>(std::count(text, text + length, '\n'));
  }

  void EndOfLine() {
    const std::size_t number = line_ - std::exchange(newlines_, 0);
    rowsEnd_ = line_;
    const std::vector<std::string> fields = std::exchange(fields_, {});
    try {
      if (columns_.empty()) {
        ReadHeader(fields);
      } else {
        Take(fields);
      }
    } catch (const BadInput& error) {
      Refuse(number, error.what());
    }
    if (batch_.size() >= options_.batch) Flush();
  }

  void Refuse(std::size_t line, const std::string& reason) {
    if (!options_.skipBad || columns_.empty()) Stop(line, reason);
    ++result_.bad;
    if (options_.report) options_.report(At(line) + reason);
  }

  /// Ends the import, bad lines skipped or not.
  [[noreturn]] void Stop(std::size_t line, const std::string& reason) {
    Flush();
    throw BadInput(At(line) + reason + Added());
  }

  void RequireHeader() {
    if (columns_.empty()) Stop(line_, "expected a header line with members of " + type_.name);
  }

  void Flush() {
    TellingAdded([this] {
      if (!batch_.empty()) store_.Add(type_, batch_);
    });
    result_.objects += batch_.size();
    batch_.clear();
    if (options_.progress) options_.progress(share_, result_.objects);
  }

  /// What the next queries are planned by.
  void Measure() {
    TellingAdded([this] { Analyze(store_, {}); });
  }

  /// @return the bytes read, 0 at the end. A file that can't be read to its end ends the import.
  std::size_t Read(ot95::tools::InputFile& input, std::vector<char>& block) {
    try {
      return input.Read(block.data(), block.size());
    } catch (const BadInput& error) {
      Flush();
      throw BadInput(error.what() + Added());
    }
  }

  void SetShare(double share) { share_ = share; }
  /// The lines of the file are counted here: the CSV library is silent about empty ones.
  void NextLine() { ++line_; }
  std::size_t Line() const { return line_; }
  /// Where the row begins that isn't complete.
  std::size_t OpenLine() const { return rowsEnd_ + 1; }
  const ImportResult& Result() const { return result_; }

 private:
  /// What an action refuses is told with the number of objects that are in.
  template <class Action>
  void TellingAdded(const Action& action) const {
    try {
      action();
    } catch (const BadInput& error) {
      throw BadInput(error.what() + Added());
    }
  }
  std::string Added() const {
    return " (" + std::to_string(result_.objects) + " objects were added)";
  }
  std::string At(std::size_t line) const { return file_ + ":" + std::to_string(line) + ": "; }

  void ReadHeader(const std::vector<std::string>& names) {
    const std::vector<std::string> known = ColumnsOf(type_);
    const std::vector<Target> targets = TargetsOf(type_);
    std::vector<Target> columns;  // all of them or none
    for (const std::string& name : names) {
      const auto found = std::find(known.begin(), known.end(), name);
      if (found == known.end()) {
        throw BadInput("expected members of " + type_.name + " in the header, found " +
                       ot95::tools::Quoted(name));
      }
      columns.push_back(targets[static_cast<std::size_t>(found - known.begin())]);
    }
    columns_ = std::move(columns);
  }

  void Take(const std::vector<std::string>& fields) {
    if (fields.size() != columns_.size()) {
      throw BadInput("expected " + std::to_string(columns_.size()) + " fields, found " +
                     std::to_string(fields.size()));
    }
    for (std::size_t i = 0; i < fields.size(); ++i) {
      object_.MemberAt(columns_[i].member).Scan(columns_[i].element, fields[i]);
    }
    batch_.push_back(object_.Stored());
  }

  Store& store_;
  const Class& type_;
  const std::string& file_;
  const ImportOptions& options_;
  Object object_;
  std::vector<Target> columns_;
  std::vector<std::string> fields_;
  std::vector<Bytes> batch_;
  std::size_t line_ = 1;
  std::size_t rowsEnd_ = 0;   ///< The line in which the last row ended.
  std::size_t newlines_ = 0;  ///< In the fields of this row.
  double share_ = 0;
  ImportResult result_;
};

/// The CSV library is C: no exception may cross it, so the first one waits until it has returned.
struct Feed {
  Importer& importer;
  std::exception_ptr error;

  template <class Action>
  void Guarded(const Action& action) {
    if (error) return;
    try {
      action();
    } catch (...) {
      error = std::current_exception();
    }
  }
  static void OnField(void* text, std::size_t length, void* self) {
    auto& feed = *static_cast<Feed*>(self);
    feed.Guarded([&] { feed.importer.Field(static_cast<const char*>(text), length); });
  }
  static void OnLine(int, void* self) {
    auto& feed = *static_cast<Feed*>(self);
    feed.Guarded([&] { feed.importer.EndOfLine(); });
  }
  void Check() const {
    if (error) std::rethrow_exception(error);
  }
};

class CsvParser {
 public:
  CsvParser() { csv_init(&parser_, CSV_STRICT | CSV_STRICT_FINI | CSV_APPEND_NULL); }
  ~CsvParser() { csv_free(&parser_); }
  CsvParser(const CsvParser&) = delete;
  CsvParser& operator=(const CsvParser&) = delete;

  void Parse(std::string_view bytes, Feed& feed) {
    while (!bytes.empty()) {
      const std::size_t length = std::min(bytes.find('\n'), bytes.size() - 1) + 1;
      if (csv_parse(&parser_, bytes.data(), length, Feed::OnField, Feed::OnLine, &feed) != length) {
        Fail(feed, feed.importer.Line());
      }
      feed.Check();
      if (bytes[length - 1] == '\n') feed.importer.NextLine();
      bytes.remove_prefix(length);
    }
  }
  void Finish(Feed& feed) {
    if (csv_fini(&parser_, Feed::OnField, Feed::OnLine, &feed) != 0) {
      Fail(feed, feed.importer.OpenLine());
    }
    feed.Check();
  }

 private:
  [[noreturn]] void Fail(Feed& feed, std::size_t line) {
    feed.Check();
    feed.importer.Stop(line, std::string("not CSV: ") + csv_strerror(csv_error(&parser_)));
  }

  csv_parser parser_;
};

}  // namespace

ImportResult Import(Store& store, const Class& type, const std::string& file,
                    const ImportOptions& options) {
  ot95::tools::InputFile input(file);
  const auto size = static_cast<double>(input.Size());
  Importer importer(store, type, file, options);
  Feed feed{importer, nullptr};
  CsvParser parser;
  std::vector<char> block(1 << 16);
  double done = 0;
  while (const std::size_t length = importer.Read(input, block)) {
    done += static_cast<double>(length);
    if (size > 0) importer.SetShare(done / size);
    parser.Parse({block.data(), length}, feed);
  }
  parser.Finish(feed);
  importer.RequireHeader();
  importer.Flush();
  importer.Measure();
  return importer.Result();
}

}  // namespace otdb
