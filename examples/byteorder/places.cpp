// The places of the world as rows with keys that compare as bytes: reading, filing, finding.

#include "places.h"

#include <algorithm>
#include <cstring>
#include <iostream>
#include <stdexcept>

#include "ot95/temporal.h"
#include "ot95/text.h"
#include "utf8text.h"

namespace places {
namespace {

constexpr unsigned char kForm = OT_FORMAT_BIG_ENDIAN;
constexpr std::size_t kIdBytes = 8;
constexpr unsigned long kKeyRoom = OtINDEX_MAX_KEYLEN;

struct Member {
  const char* name;
  char type;
  const char* format;  ///< Of its text.
  std::size_t column;  ///< Of the CSV.
};
constexpr Member kMembers[] = {
    {"name", 11, nullptr, 1}, {"country", 2, nullptr, 3}, {"revised", 12, "%Y-%m-%d", 8}};

OtTypeMgr& Types() {
  static OtTypeMgr types;
  return types;
}

/// One value of a member in memory.
class Value {
 public:
  explicit Value(const Member& member)
      : member_(member), place_(Types().DefaultValue(member.type, 1, 1)) {}
  ~Value() { Types().Delete(member_.type, place_, 1); }
  Value(const Value&) = delete;

  void Scan(const std::string& utf8) {
    OtString text = ot95::tools::FromUtf8(utf8, OT_CS_UNICODE, 1);
    if (!utf8.empty()) Types().ScanFromOtString(member_.type, place_, text, member_.format, 1);
  }
  std::string Print() const {
    OtString text(OT_CS_UNICODE, 1);
    Types().PrintToOtString(member_.type, text, place_, member_.format, 1);
    return ot95::tools::ToUtf8(text);
  }
  std::string Stored() const {
    std::string bytes(Types().DiskLenGet(member_.type, place_, kForm, 1, OT_FORMAT_MEMORY), '\0');
    Types().Store(member_.type, bytes.data(), place_, kForm, 1);
    return bytes;
  }
  void Load(std::string stored) { Types().Load(member_.type, place_, stored.data(), kForm, 1); }

 private:
  const Member& member_;
  void* place_;
};

/// The stored forms of a record's members, one behind another.
std::vector<std::string> Split(const std::string& record) {
  std::vector<std::string> members;
  std::size_t at = 0;
  for (const Member& member : kMembers) {
    unsigned long length = 0;
    if (Types().VerifyStored(member.type, record.data() + at,
                             static_cast<unsigned long>(record.size() - at), kForm, 1,
                             length) != 0) {
      throw std::runtime_error("a damaged record");
    }
    members.push_back(record.substr(at, length));
    at += length;
  }
  return members;
}

std::string KeyOf(const Member& member, const std::string& stored) {
  std::string key(kKeyRoom, '\0');
  int status = 0;
  const unsigned long length = Types().SortKey(member.type, key.data(), kKeyRoom, stored.data(),
                                               static_cast<unsigned long>(stored.size()),
                                               OT_CMP_NO_WILDCARDS, 1, kForm, status);
  key.resize(std::min(length, kKeyRoom));
  return key;
}

/// Equal names have equal hashes, so that a store can keep them in one place.
std::uint64_t ShardOf(const Member& member, const std::string& stored) {
  int status = 0;
  return Types().Hash64(member.type, stored.data(), static_cast<unsigned long>(stored.size()),
                        OT_CMP_NO_WILDCARDS | OT_CMP_IGNORE_CASE | OT_CMP_IGNORE_ACCENT, 1, kForm,
                        0, status);
}

std::string IdBytes(std::uint64_t id) {
  std::string bytes;
  for (int shift = 56; shift >= 0; shift -= 8) bytes += static_cast<char>(id >> shift);
  return bytes;
}

std::uint64_t IdOf(const std::string& entry) {
  std::uint64_t id = 0;
  for (const char byte : entry.substr(entry.size() - kIdBytes)) {
    id = id << 8 | static_cast<unsigned char>(byte);
  }
  return id;
}

std::vector<std::string> Fields(const std::string& line) {
  std::vector<std::string> fields(1);
  bool quoted = false;
  for (const char c : line) {
    if (c == '"') {
      quoted = !quoted;
    } else if (c == ',' && !quoted) {
      fields.emplace_back();
    } else if (c != '\r') {
      fields.back() += c;
    }
  }
  return fields;
}

/// A query as the operations of the type take it.
struct Comparison {
  explicit Comparison(const Query& query) {
    for (const Member& each : kMembers) {
      if (query.member == each.name) member = &each;
    }
    static constexpr struct {
      const char* name;
      unsigned bits;
    } relations[] = {{"=", OT_OP_EQUAL},
                     {"<", OT_OP_LESS},
                     {">", OT_OP_GREATER},
                     {"<=", OT_OP_LESS | OT_OP_EQUAL},
                     {">=", OT_OP_GREATER | OT_OP_EQUAL}};
    for (const auto& each : relations) {
      if (query.relation == each.name) relation = each.bits;
    }
    if (member == nullptr || relation == 0) {
      throw std::runtime_error("expected name, country or revised, and one of = < <= > >=");
    }
    if (query.ignoreCase) options |= OT_CMP_IGNORE_CASE;
    if (query.ignoreAccent) options |= OT_CMP_IGNORE_ACCENT;
    Value value(*member);
    value.Scan(query.text);
    operand = value.Stored();
  }

  bool Holds(std::string stored) {
    const long sign = Types().Cmp(member->type, stored.data(), operand.data(),
                                  static_cast<unsigned short>(options), 1, kForm);
    return (relation & (sign == 0 ? OT_OP_EQUAL : sign < 0 ? OT_OP_LESS : OT_OP_GREATER)) != 0;
  }

  const Member* member = nullptr;
  unsigned relation = 0, options = 0;
  std::string operand;
};

std::string Shown(const std::vector<std::string>& members) {
  std::string line;
  for (std::size_t i = 0; i < members.size(); ++i) {
    Value value(kMembers[i]);
    value.Load(members[i]);
    line += (line.empty() ? "" : "\t") + value.Print();
  }
  return line;
}

}  // namespace

std::uint64_t Places::Import(std::istream& csv) {
  std::uint64_t id = 0;
  std::string line;
  std::getline(csv, line);  // the names of the columns
  while (std::getline(csv, line)) {
    const std::vector<std::string> fields = Fields(line);
    std::string record;
    ++id;
    for (const Member& member : kMembers) {
      Value value(member);
      value.Scan(fields.at(member.column));
      const std::string stored = value.Stored();
      record += stored;
      store_.PutEntry(member.name, ShardOf(member, stored), KeyOf(member, stored) + IdBytes(id));
    }
    store_.PutRecord(id, record);
  }
  store_.Flush();
  return id;
}

std::vector<std::string> Places::Find(const Query& query) {
  Comparison comparison(query);
  std::string lower(kKeyRoom, '\0'), upper(kKeyRoom, '\0');
  OtSortRange range;
  range.lower = lower.data();
  range.upper = upper.data();
  range.lowerRoom = range.upperRoom = kKeyRoom;
  Types().SortRange(comparison.member->type, range,
                    static_cast<unsigned short>(comparison.relation | comparison.options),
                    comparison.operand.data(),
                    static_cast<unsigned long>(comparison.operand.size()), OT_CMP_NO_WILDCARDS, 1,
                    kForm);
  lower.resize(range.lowerLength);
  upper.resize(range.upperLength);
  std::vector<std::string> found;
  lookedAt_ = 0;
  const std::size_t index = static_cast<std::size_t>(comparison.member - kMembers);
  for (const std::string& entry : store_.Entries(comparison.member->name, lower, upper)) {
    ++lookedAt_;
    const auto members = Split(store_.Record(IdOf(entry)).value());
    if (comparison.Holds(members[index])) found.push_back(Shown(members));
  }
  return found;
}

std::vector<std::string> Places::FindSlowly(const Query& query) {
  Comparison comparison(query);
  std::vector<std::string> found;
  const std::size_t index = static_cast<std::size_t>(comparison.member - kMembers);
  for (std::uint64_t id = 1; const auto record = store_.Record(id); ++id) {
    const auto members = Split(*record);
    if (comparison.Holds(members[index])) found.push_back(Shown(members));
  }
  return found;
}

namespace {

Query QueryFrom(int argc, char** argv) {
  if (argc < 3) throw std::runtime_error("expected MEMBER RELATION TEXT [case] [accent]");
  Query query{argv[0], argv[1], argv[2]};
  for (int i = 3; i < argc; ++i) {
    query.ignoreCase |= std::strcmp(argv[i], "case") == 0;
    query.ignoreAccent |= std::strcmp(argv[i], "accent") == 0;
  }
  return query;
}

/// Holds what ranges find against what a look at every record finds.
int Check(Places& places) {
  const Query queries[] = {{"name", "=", "san*", true, true},
                           {"name", "=", "S?o*", false, true},
                           {"name", "=", "*burg", true, false},
                           {"name", "<", "Aar", false, false},
                           {"name", ">=", "Zu", true, false},
                           {"name", "=", "Санкт*", false, false},
                           {"country", "<=", "40", false, false},
                           {"country", "=", "276", false, false},
                           {"revised", ">=", "2022-01-01", false, false}};
  int faults = 0;
  for (const Query& query : queries) {
    auto found = places.Find(query);
    auto all = places.FindSlowly(query);
    std::sort(found.begin(), found.end());
    std::sort(all.begin(), all.end());
    const bool same = found == all;
    faults += !same;
    std::cout << query.member << " " << query.relation << " " << query.text << ": found "
              << found.size() << ", looked at " << places.LookedAt()
              << (same ? "" : ", but there are " + std::to_string(all.size())) << "\n";
  }
  return faults == 0 ? 0 : 1;
}

}  // namespace

int Run(ByteStore& store, int argc, char** argv) {
  Places places(store);
  const std::string command = argc > 0 ? argv[0] : "";
  if (command == "import") {
    std::cout << places.Import(std::cin) << " places\n";
  } else if (command == "find") {
    for (const std::string& line : places.Find(QueryFrom(argc - 1, argv + 1))) {
      std::cout << line << "\n";
    }
  } else if (command == "check") {
    return Check(places);
  } else {
    throw std::runtime_error("expected import, find or check");
  }
  return 0;
}

}  // namespace places
