// Stored values in SQL: ot_decode, ot_encode, ot_verify, and values as SQL and JSON have them.
#include "values.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

#include "moment.h"
#include "order.h"
#include "result.h"

namespace ot95::sqlite {

namespace {

std::optional<unsigned> NumberOf(std::string_view text) {
  unsigned number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return {};
  return number;
}

void ParseFormWord(std::string_view word, Form& form) {
  constexpr unsigned kMostForm = 255;
  const std::optional<unsigned> number = NumberOf(word);
  if (word == "native") {
    form.form = OT95_FORM_NATIVE;
  } else if (word == "big-endian") {
    form.form = OT95_FORM_BIG_ENDIAN;
  } else if (word == "old") {
    form.table = OT95_OLD_TABLE;
  } else if (number && *number <= kMostForm) {
    form.form = *number;
  } else {
    throw Failure("expected a form: native, big-endian, old or a number, found '" +
                  std::string(word) + "'");
  }
}

}  // namespace

int ParseType(const std::string& name) {
  int type = 0;
  if (const std::optional<unsigned> number = NumberOf(name)) {
    type = static_cast<int>(*number);
  } else if (ot95_type_by_name(name.c_str(), &type) != OT95_OK) {
    throw Failure("expected a type such as OtDate, found '" + name + "'");
  }
  DescribeType(type);
  return type;
}

Form ParseForm(std::string_view names) {
  Form form;
  while (!names.empty()) {
    const std::size_t end = std::min(names.find(','), names.size());
    ParseFormWord(names.substr(0, end), form);
    names.remove_prefix(std::min(end + 1, names.size()));
  }
  return form;
}

ot95_type DescribeType(int type) {
  ot95_type description = {};
  description.struct_size = sizeof description;
  Check(ot95_type_describe(type, &description), "type " + std::to_string(type));
  return description;
}

ot95_array ValueArguments::ArrayOf(sqlite3_value* bytes) const {
  const ot95_array array = {type, form, sqlite3_value_blob(bytes),
                            static_cast<std::size_t>(sqlite3_value_bytes(bytes)), 1};
  std::size_t end = 0;
  Check(ot95_verify(&array, &end), DescribeType(type).name);
  if (end != array.size) {
    throw Failure(std::string(DescribeType(type).name) + ": the value ends at offset " +
                  std::to_string(end) + " of " + std::to_string(array.size));
  }
  return array;
}

ValueArguments TakeValueArguments(int count, sqlite3_value** values, int first) {
  if (first >= count || IsNull(values[first])) throw Failure("expected the type of a stored value");
  Form form;
  unsigned options = 0;
  if (first + 1 < count) form = ParseForm(TextOf(values[first + 1]));
  if (first + 2 < count) {
    const std::optional<unsigned> parsed = ParseOptions(TextOf(values[first + 2]));
    if (!parsed) throw Failure("expected options such as 'ci_ai'");
    options = *parsed;
  }
  const int type = ParseType(std::string(TextOf(values[first])));
  return {type | static_cast<int>(form.table), form.form, options};
}

Elements::Elements(const ot95_array& array) : array_(array), type_(DescribeType(array.type)) {
  if (type_.kind != OT95_KIND_TEXT && type_.kind != OT95_KIND_NONE) {
    values_.resize(array.count);
    Check(ot95_decode(&array_, values_.data()), type_.name);
  } else if (array.count > 1) {
    Split();
  }
}

// Every question about an array checks all of it, which a long one can't afford for each element.
void Elements::Split() {
  ot95_array part = array_;
  part.count = 1;
  for (std::size_t i = 0; i < array_.count; ++i) {
    std::size_t end = 0;
    if (ot95_verify(&part, &end) != OT95_OK) break;
    parts_.push_back(part);
    part.bytes = static_cast<const char*>(part.bytes) + end;
    part.size -= end;
  }
  if (parts_.size() != array_.count) parts_.clear();  // they share what the array begins with
}

std::pair<const ot95_array*, std::size_t> Elements::PlaceOf(std::size_t index) const {
  if (parts_.empty()) return {&array_, index};
  return {&parts_[index], 0};
}

std::string Elements::Print(std::size_t index) const {
  const auto [array, place] = PlaceOf(index);
  Result printed;
  printed.Take(type_.name, [array = array, place = place](ot95_buffer* out) {
    return ot95_print(array, place, nullptr, out);
  });
  return {printed.data(), printed.size()};
}

bool Elements::IsNullAt(std::size_t index) const {
  if (!values_.empty()) return values_[index].is_null != 0;
  const auto [array, place] = PlaceOf(index);
  int isNull = 0;
  Check(ot95_is_null(array, place, &isNull), type_.name);
  return isNull != 0;
}

Elements::Decoded Elements::Decode(std::size_t index) const {
  Decoded decoded;
  if (IsNullAt(index)) return decoded;
  if (type_.kind == OT95_KIND_INTEGER) {
    decoded.kind = Decoded::kInteger;
    decoded.integer = values_[index].as.integer;
  } else if (type_.kind == OT95_KIND_REAL) {
    decoded.kind = Decoded::kReal;
    decoded.real = values_[index].as.real;
  } else if (type_.kind == OT95_KIND_BYTES) {
    const ot95_span& bytes = values_[index].as.bytes;
    decoded.kind = Decoded::kBytes;
    decoded.text.assign(bytes.data, bytes.size);
  } else {
    std::optional<std::string> iso;
    if (type_.kind == OT95_KIND_MOMENT) {
      iso = FormatMoment(values_[index].as.moment, MomentParts::Of(type_.name));
    }
    decoded.kind = Decoded::kText;
    decoded.text = iso ? *iso : Print(index);
  }
  return decoded;
}

namespace {

// ---------------------------------------------------------------------------------------------
// From SQL to bytes

[[noreturn]] void Refuse(const ot95_type& type, std::string_view text) {
  throw Failure(std::string(type.name) + " can't hold '" + std::string(text) + "'");
}

/// Stores what a text says, if it then says the same: types make what they can of any text.
void Scan(sqlite3_value* value, const ValueArguments& how, const ot95_type& type, Result& stored) {
  const std::string_view text = TextOf(value);
  const ot95_span span = {text.data(), text.size()};
  stored.Take(type.name, [&](ot95_buffer* out) {
    return ot95_scan(how.type, &span, 1, nullptr, how.form, out);
  });
  const ot95_array array = {how.type, how.form, stored.data(), stored.size(), 1};
  int isNull = 0;
  Check(ot95_is_null(&array, 0, &isNull), type.name);
  if (isNull != 0) return;
  Result printed;
  printed.Take(type.name, [&](ot95_buffer* out) { return ot95_print(&array, 0, nullptr, out); });
  if (std::string_view(printed.data(), printed.size()) != text) Refuse(type, text);
}

/// Reads a value of SQL as one of C. @return false where only the type can read it.
bool ToC(sqlite3_value* value, const ot95_type& type, ot95_value& c) {
  const int sql = sqlite3_value_numeric_type(value);
  c.kind = type.kind;
  if (type.kind == OT95_KIND_MOMENT) {
    const auto moment = ParseMoment(TextOf(value), MomentParts::Of(type.name));
    if (moment) c.as.moment = *moment;
    return moment.has_value();
  }
  if (type.kind == OT95_KIND_BYTES) {
    const auto* bytes = static_cast<const char*>(sqlite3_value_blob(value));
    c.as.bytes = {bytes == nullptr ? "" : bytes,
                  static_cast<std::size_t>(sqlite3_value_bytes(value))};
    return true;
  }
  if (type.kind == OT95_KIND_REAL && (sql == SQLITE_FLOAT || sql == SQLITE_INTEGER)) {
    c.as.real = sqlite3_value_double(value);
    return true;
  }
  if (type.kind == OT95_KIND_INTEGER && sql == SQLITE_INTEGER) {
    c.as.integer = sqlite3_value_int64(value);
    return true;
  }
  if (type.kind == OT95_KIND_INTEGER || type.kind == OT95_KIND_REAL) Refuse(type, TextOf(value));
  return false;
}

void EncodeValue(sqlite3_value* value, const ValueArguments& how, Result& stored) {
  const ot95_type type = DescribeType(how.type);
  ot95_value c = {};
  if (IsNull(value)) {
    if (type.is_nullable == 0) Refuse(type, "NULL");
    stored.Take(type.name,
                [&](ot95_buffer* out) { return ot95_default(how.type, 1, how.form, out); });
  } else if (ToC(value, type, c)) {
    stored.Take(type.name,
                [&](ot95_buffer* out) { return ot95_encode(how.type, &c, 1, how.form, out); });
  } else {
    Scan(value, how, type, stored);
  }
}

// ---------------------------------------------------------------------------------------------
// Functions

void Encode(sqlite3_context* context, int count, sqlite3_value** values) {
  Answer(context, [&] {
    Result stored;
    EncodeValue(values[0], TakeValueArguments(count, values, 1), stored);
    stored.GiveBlob(context);
  });
}

void DecodeFunction(sqlite3_context* context, int count, sqlite3_value** values) {
  Answer(context, [&] {
    if (IsNull(values[0])) return;
    Elements(TakeValueArguments(count, values, 1).ArrayOf(values[0])).Give(context, 0);
  });
}

void Verify(sqlite3_context* context, int count, sqlite3_value** values) {
  Answer(context, [&] {
    if (IsNull(values[0])) return;
    const ValueArguments how = TakeValueArguments(count, values, 1);
    const ot95_array array = {how.type, how.form, sqlite3_value_blob(values[0]),
                              static_cast<std::size_t>(sqlite3_value_bytes(values[0])), 1};
    std::size_t end = 0;
    const int status = ot95_verify(&array, &end);
    const bool isVerdict = status == OT95_ERR_ENDS || status == OT95_ERR_DAMAGED;
    if (!isVerdict) Check(status, "ot_verify");
    sqlite3_result_int(context, status == OT95_OK && end == array.size);
  });
}

constexpr Function kFunctions[] = {
    {"ot_encode", 2, 3, Encode},
    {"ot_decode", 2, 3, DecodeFunction},
    {"ot_verify", 2, 3, Verify},
};

void AddHex(std::string& json, std::string_view bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  json += '"';
  for (const char c : bytes) {
    json += kDigits[static_cast<unsigned char>(c) >> 4];
    json += kDigits[c & 15];
  }
  json += '"';
}

void AddReal(std::string& json, double real) {
  char text[32];
  // What is no number has none in JSON.
  if (!std::isfinite(real)) {
    json += std::isnan(real) ? "null" : real < 0 ? "-9e999" : "9e999";
    return;
  }
  json.append(text, std::to_chars(text, text + sizeof text, real).ptr);
}

}  // namespace

void Elements::Give(sqlite3_context* context, std::size_t index) const {
  const Decoded decoded = Decode(index);
  const std::string& text = decoded.text;
  switch (decoded.kind) {
    case Decoded::kNull:
      return sqlite3_result_null(context);
    case Decoded::kInteger:
      return sqlite3_result_int64(context, decoded.integer);
    case Decoded::kReal:
      return sqlite3_result_double(context, decoded.real);
    case Decoded::kBytes:
      return sqlite3_result_blob64(context, text.data(), text.size(), SQLITE_TRANSIENT);
    case Decoded::kText:
      return sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT,
                                   SQLITE_UTF8);
  }
}

void AddQuoted(std::string& json, std::string_view text) {
  constexpr char kDigits[] = "0123456789abcdef";
  json += '"';
  for (const char c : text) {
    if (c == '"' || c == '\\') {
      json += '\\';
      json += c;
    } else if (c >= 0 && c < ' ') {
      json += "\\u00";
      json += kDigits[c >> 4];
      json += kDigits[c & 15];
    } else {
      json += c;
    }
  }
  json += '"';
}

void Elements::AddJson(std::string& json, std::size_t index) const {
  const Decoded decoded = Decode(index);
  switch (decoded.kind) {
    case Decoded::kNull:
      json += "null";
      return;
    case Decoded::kInteger:
      json += std::to_string(decoded.integer);
      return;
    case Decoded::kReal:
      return AddReal(json, decoded.real);
    case Decoded::kBytes:
      return AddHex(json, decoded.text);
    case Decoded::kText:
      return AddQuoted(json, decoded.text);
  }
}

int RegisterValues(sqlite3* db) {
  return RegisterFunctions(db, kFunctions, std::size(kFunctions));
}

}  // namespace ot95::sqlite
