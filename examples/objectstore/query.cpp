// Queries in their parts: what is true of an object, and what a negation turns around.

#include "query.h"

#include <algorithm>

#include "bad_input.h"
#include "ot95/temporal.h"
#include "value.h"

namespace otdb {
namespace {

// A date with "*" for some of its parts, which no scan reads: year, month, day.
std::optional<OtDate> OpenDate(const std::string& literal) {
  if (literal.find('*') == std::string::npos) return {};
  int parts[3] = {-1, -1, -1};
  std::size_t at = 0;
  for (int i = 0; i < 3; ++i) {
    const std::size_t end = i == 2 ? literal.size() : literal.find('-', at + 1);
    if (end == std::string::npos) return {};
    const std::string part = literal.substr(at, end - at);
    at = end + 1;
    if (part == "*") continue;
    if (part.empty() || part.size() > 4 ||
        part.find_first_not_of("0123456789") != std::string::npos) {
      return {};
    }
    parts[i] = std::stoi(part);
  }
  return OtDate(parts[0], parts[1], parts[2]);
}

bool IsDate(char type) {
  const std::string name = Types().NameGet(type, nullptr);
  return name == "OtDate" || name == "d_Date";
}

}  // namespace

Bytes OperandFor(const Member& member, const std::string& literal, unsigned char form) {
  if (IsDate(member.type)) {
    // Both calendars store a date alike.
    if (auto date = OpenDate(literal)) {
      char type = 0;
      Types().Name2OtTypeId("OtDate", type);
      Bytes stored(Types().DiskLenGet(type, &*date, form, 1, OT_FORMAT_MEMORY));
      Types().Store(type, stored.data(), &*date, form, 1);
      return stored;
    }
  }
  Value value(member);
  value.Scan(0, literal);
  return value.Stored(form);
}

long CompareStored(const Member& member, View value, View operand, unsigned short options,
                   unsigned char form) {
  int status = 0;
  return Types().Cmp(member.type, value.size(), Place(value), operand.size(), Place(operand),
                     options, 1, form, status);
}

bool Condition::Holds(const Class& type, const Record& record, unsigned char form) const {
  const auto holds = [&](const Condition& child) { return child.Holds(type, record, form); };
  if (kind == kAnd) return std::all_of(children.begin(), children.end(), holds);
  if (kind == kOr) return std::any_of(children.begin(), children.end(), holds);
  const View value = record.MemberAt(term->member);
  if (value.data() == nullptr) throw ot95::tools::BadInput(type.name + ": a damaged record");
  return Satisfies(
      CompareStored(type.members[term->member], value, term->operand, term->options, form),
      term->relation);
}

}  // namespace otdb
