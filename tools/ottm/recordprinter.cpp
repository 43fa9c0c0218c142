// Records as a table, as JSON and as CSV.

#include "recordprinter.h"

#ifdef OT95_CSV
#include <csv.h>
#endif

#include <algorithm>
#include <iostream>

#include "command.h"

namespace ottm {
namespace {

using Row = std::vector<std::string>;

void AddTexts(const RecordReader& reader, Row& row) {
  for (std::size_t i = 0; i < reader.Members().size(); ++i) {
    const Values& values = reader.ValuesOf(i);
    for (unsigned long k = 0; k < values.Count(); ++k)
      row.push_back(values.Print(k, reader.TextFormat()));
  }
}

std::string DamageText(const Damage& damage) {
  return "damaged at offset " + std::to_string(damage.offset) + ", in " + damage.member +
         " of record " + std::to_string(damage.record) + ": " + damage.reason + "\n";
}

/// Characters of UTF-8.
std::size_t WidthOf(const std::string& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xc0) != 0x80; }));
}

/// A text of a file neither breaks the table nor speaks to the terminal.
void HideControls(std::string& text) {
  const auto isControl = [](char c) { return (c >= 0 && c < ' ') || c == 0x7f; };
  std::replace_if(text.begin(), text.end(), isControl, '.');
}

class Table : public RecordPrinter {
 public:
  explicit Table(const Layout& layout) {
    Row header = ColumnsOf(layout);
    header.insert(header.begin(), "offset");
    widths_.resize(header.size());
    Add(std::move(header));
  }

  void Record(const RecordReader& reader) override {
    Row row = {std::to_string(reader.Start())};
    AddTexts(reader, row);
    Add(std::move(row));
  }
  void End(const Damage* damage) override {
    WriteMeasured();
    if (damage != nullptr) WriteOut(DamageText(*damage));
  }

 private:
  static constexpr std::size_t kMeasuredCells = 4096;

  void Add(Row row) {
    std::for_each(row.begin(), row.end(), HideControls);
    if (isMeasured_) return Write(row);
    for (std::size_t i = 0; i < row.size(); ++i) widths_[i] = std::max(widths_[i], WidthOf(row[i]));
    measured_.push_back(std::move(row));
    if (measured_.size() * widths_.size() >= kMeasuredCells) WriteMeasured();
  }
  void WriteMeasured() {
    isMeasured_ = true;
    for (const Row& row : measured_) Write(row);
    measured_.clear();
  }
  void Write(const Row& row) const {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      line += row[i];
      if (i + 1 == row.size()) break;
      const std::size_t width = WidthOf(row[i]);
      line.append(2 + (width < widths_[i] ? widths_[i] - width : 0), ' ');
    }
    WriteOut(line + "\n");
  }

  std::vector<std::size_t> widths_;
  std::vector<Row> measured_;  ///< Held back until the widths are known.
  bool isMeasured_ = false;
};

class JsonLines : public RecordPrinter {
 public:
  void Record(const RecordReader& reader) override { WriteOut(JsonLine(RecordToJson(reader))); }
  void End(const Damage* damage) override {
    if (damage != nullptr) WriteOut(JsonLine(DamageToJson(*damage)));
  }
};

#ifdef OT95_CSV
class Csv : public RecordPrinter {
 public:
  explicit Csv(const Layout& layout) { Write(ColumnsOf(layout)); }

  void Record(const RecordReader& reader) override {
    Row row;
    AddTexts(reader, row);
    Write(row);
  }
  void End(const Damage* damage) override {
    if (damage != nullptr) std::cerr << "ottm: " << DamageText(*damage);
  }

 private:
  static void Write(const Row& row) {
    std::string line;
    for (const std::string& field : row) {
      const std::size_t start = line.size();
      line.resize(start + csv_write(nullptr, 0, field.data(), field.size()));
      csv_write(line.data() + start, line.size() - start, field.data(), field.size());
      line += ',';
    }
    line.back() = '\n';
    WriteOut(line);
  }
};
#endif

}  // namespace

Json RecordToJson(const RecordReader& reader) {
  Json values = Json::object();
  for (std::size_t i = 0; i < reader.Members().size(); ++i) {
    const Values& array = reader.ValuesOf(i);
    Json& member = values[reader.Members()[i].name];
    if (array.Count() == 1) {
      member = array.ToJson(0, reader.TextFormat());
      continue;
    }
    for (unsigned long k = 0; k < array.Count(); ++k)
      member.push_back(array.ToJson(k, reader.TextFormat()));
  }
  return {{"offset", reader.Start()}, {"values", std::move(values)}};
}

Json DamageToJson(const Damage& damage) {
  return {{"offset", damage.start},
          {"damage",
           {{"record", damage.record},
            {"member", damage.member},
            {"offset", damage.offset},
            {"reason", damage.reason}}}};
}

std::unique_ptr<RecordPrinter> TablePrinter(const Layout& layout) {
  return std::make_unique<Table>(layout);
}

std::unique_ptr<RecordPrinter> JsonPrinter() {
  return std::make_unique<JsonLines>();
}

#ifdef OT95_CSV
std::unique_ptr<RecordPrinter> CsvPrinter(const Layout& layout) {
  return std::make_unique<Csv>(layout);
}
#endif

}  // namespace ottm
