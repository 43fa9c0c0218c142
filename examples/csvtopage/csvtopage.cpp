// A converter from CSV: csvtopage TYPE,TYPE... < FILE.csv > PAGE stores each line as a record.
// A value that its type can't hold is told with its line, and nothing is made up for it.
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "ot95/ot95.h"
#include "ot95/scanner.h"

namespace {

using Fields = std::vector<std::string>;

/// The fields of a line: a quoted one may hold commas, and a doubled quote for one.
Fields Split(const std::string& line) {
  Fields fields(1);
  bool quoted = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const bool doubled = quoted && line.compare(i, 2, "\"\"") == 0;
    if (line[i] == '"' && !doubled) {
      quoted = !quoted;
    } else if (line[i] == ',' && !quoted) {
      fields.emplace_back();
    } else {
      i += doubled ? 1 : 0;
      fields.back() += line[i];
    }
  }
  return fields;
}

/// A column: a value of its type, which takes one text after the other.
class Column {
 public:
  Column(OtTypeMgr& types, char id)
      : types_(types), id_(id), value_(types.Create(id, 1)), scanner_(types, id) {}
  ~Column() { types_.Delete(id_, value_, 1); }
  Column(const Column&) = delete;
  Column& operator=(const Column&) = delete;

  /// Appends what the text says to the record; an empty one is the null. @return whether the type
  /// can hold it: nothing is cut, wrapped or made up.
  bool Append(const std::string& field, std::string& record) {
    const std::string utf8 = field.empty() ? "{NULL}" : field;
    OtString text(OT_CS_UNICODE, OT_LANG_DEFAULT);
    const long size = static_cast<long>(utf8.size());
    if (OtMBS2OtString(utf8.data(), text, size) != size) return false;
    scanner_.Reset(value_);
    if (!scanner_.Scan(value_, text, utf8.data(), utf8.size())) return false;
    const std::size_t start = record.size();
    record.resize(start +
                  types_.DiskLenGet(id_, value_, OT_FORMAT_BIG_ENDIAN, 1, OT_FORMAT_MEMORY));
    types_.Store(id_, record.data() + start, value_, OT_FORMAT_BIG_ENDIAN, 1);
    return true;
  }

 private:
  OtTypeMgr& types_;
  char id_;
  void* value_;
  OtStrictScanner scanner_;
};

int Refuse(std::size_t line, const std::string& what) {
  std::cerr << "csvtopage: line " << line << ": " << what << "\n";
  return 1;
}

}  // namespace

int main(int count, char** arguments) {
  const Fields names = Split(count > 1 ? arguments[1] : "");
  OtTypeMgr types;
  std::vector<std::unique_ptr<Column>> columns;
  for (const std::string& name : names) {
    char id = 0;
    if (types.Name2OtTypeId(name.c_str(), id) != 0) {
      std::cerr << "csvtopage: expected types with commas, found '" << name << "'\n";
      return 2;
    }
    columns.push_back(std::make_unique<Column>(types, id));
  }
  int refused = 0;
  std::string line;
  for (std::size_t number = 1; std::getline(std::cin, line); ++number) {
    const Fields fields = Split(line);
    if (fields.size() != columns.size()) {
      refused = Refuse(number, "expected " + std::to_string(columns.size()) + " fields");
      continue;
    }
    std::string record;
    std::size_t i = 0;
    while (i < fields.size() && columns[i]->Append(fields[i], record)) ++i;
    if (i == fields.size()) {
      std::cout << record;
    } else {
      refused = Refuse(number, "expected a value of " + names[i] + ", found '" + fields[i] + "'");
    }
  }
  return refused;
}
