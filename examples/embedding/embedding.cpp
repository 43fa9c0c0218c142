// Embedding the table: a record of members that are known by their identifiers and no more.
#include <cstdio>
#include <cstring>
#include <vector>

#include "ot95/ot95.h"
#include "ot95/scanner.h"

namespace {

constexpr unsigned char kForm = OT_FORMAT_BIG_ENDIAN;

/// A member of a record. An engine reads these from its schema.
struct Member {
  const char* name;
  const char* type;
};
constexpr Member kSchema[] = {{"name", "OtString"}, {"people", "long"}, {"since", "OtDate"}};

using Record = std::vector<unsigned char>;

/// Values in memory, made and taken apart by the table.
class Value {
 public:
  Value(OtTypeMgr& types, char id) : types_(types), id_(id), data_(types.Create(id, 1)) {}
  ~Value() { types_.Delete(id_, data_, 1); }
  Value(const Value&) = delete;
  Value& operator=(const Value&) = delete;
  void* get() const { return data_; }

 private:
  OtTypeMgr& types_;
  char id_;
  void* data_;
};

char IdOf(const OtTypeMgr& types, const Member& member) {
  char id = 0;
  types.Name2OtTypeId(member.type, id);
  return id;
}

/// Appends a member's stored form: the table says how long it will be, and writes it.
bool Append(OtTypeMgr& types, const Member& member, const char* text, Record& record) {
  const char id = IdOf(types, member);
  const Value value(types, id);
  OtStrictScanner scanner(types, id);
  if (!scanner.Scan(value.get(), OtString(text), text, std::strlen(text))) {
    std::printf("%s: expected a value of %s, found '%s'\n", member.name, member.type, text);
    return false;
  }
  const std::size_t start = record.size();
  record.resize(start + types.DiskLenGet(id, value.get(), kForm, 1, OT_FORMAT_MEMORY));
  types.Store(id, record.data() + start, value.get(), kForm, 1);
  return true;
}

/// Prints a record. Its bytes are checked member by member, for they may come from anywhere.
void Print(OtTypeMgr& types, Record record) {
  std::size_t at = 0;
  for (const Member& member : kSchema) {
    const char id = IdOf(types, member);
    unsigned long used = 0;
    if (types.VerifyStored(id, record.data() + at, record.size() - at, kForm, 1, used) != 0) {
      std::printf("damaged in %s, good up to offset %zu\n", member.name, at + std::size_t{used});
      return;
    }
    const Value value(types, id);
    types.Load(id, value.get(), record.data() + at, kForm, 1);
    OtString text;
    types.PrintToOtString(id, text, value.get(), nullptr, 1);
    char shown[80] = "";
    OtString2OtMBS(text, shown, sizeof shown - 1);
    std::printf("%s = %s (%lu bytes)\n", member.name, shown, used);
    at += used;
  }
}

}  // namespace

int main() {
  OtTypeMgr types;
  const char* const texts[] = {"Orleans", "116238", "1962-07-01"};
  Record record;
  for (int i = 0; i < 3; ++i) Append(types, kSchema[i], texts[i], record);
  Print(types, record);

  Append(types, kSchema[1], "99999999999", record);  // refused: the record stays as it is
  record.resize(record.size() - 2);
  Print(types, record);
}
