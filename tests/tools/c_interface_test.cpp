// The C interface against the command line: the same cases through both, and the same answers.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <nlohmann/json.hpp>
#include <random>

#include "c/arrays.h"

namespace {

using Json = nlohmann::json;

/// One call of the command line, and what the C interface says to it: null where it refuses. Texts
/// that aren't quite values the command line is told to take as the type does.
struct Case {
  std::vector<std::string> arguments;
  Json answer;
};

constexpr unsigned kForms[] = {OT95_FORM_NATIVE, OT95_FORM_BIG_ENDIAN};
constexpr const char* kLanguages[] = {"sv", "de", "fr", "pl", "tr", "es-traditional"};
const std::vector<std::string> kTexts = {"7",
                                         "-2",
                                         "300",
                                         "{NULL}",
                                         "",
                                         "a",
                                         "Orleans",
                                         "orl*",
                                         "\xc3\x96rebro",
                                         "ab\xe6\x97\xa5",
                                         "1.5",
                                         "TRUE",
                                         "FALSE",
                                         "Sun 02.Jan 2000",
                                         "Sun 02.Jan 2000 03:04:05 AM",
                                         "03:04:05 AM",
                                         "Sun Jan 02",
                                         "(0-16909060#7)",
                                         "(3v4)",
                                         "(1:0-7#2, 5)",
                                         "#9",
                                         "258",
                                         "co-op",
                                         "c\xc3\xb4t\xc3\xa9",
                                         "stra\xc3\x9f"
                                         "e",
                                         "\xf0\x9f\x98\x80 smile",
                                         "a b",
                                         "A B",
                                         "z?"};

class Cases {
 public:
  explicit Cases(unsigned seed) : random_(seed) {}

  Case Next() {
    type_ = static_cast<int>(Below(40));
    form_ = kForms[Below(2)];
    options_ = static_cast<unsigned>(random_()) & 0x2e0;
    using Maker = Case (Cases::*)();
    constexpr Maker makers[] = {
        &Cases::Encode,   &Cases::Decode,    &Cases::Verify,  &Cases::Key,     &Cases::Compare,
        &Cases::Hash,     &Cases::Print,     &Cases::Convert, &Cases::Default, &Cases::Estimate,
        &Cases::SortKey,  &Cases::SortRange, &Cases::Hash64,  &Cases::Strcmp,  &Cases::Match,
        &Cases::EditCase, &Cases::Edit,      &Cases::Edit,    &Cases::Find,    &Cases::Split,
        &Cases::Orders,   &Cases::Int64,     &Cases::Date,    &Cases::Date,    &Cases::Inspect};
    return (this->*makers[Below(std::size(makers))])();
  }

 private:
  unsigned Below(std::size_t limit) { return static_cast<unsigned>(random_() % limit); }
  const std::string& AnyText() { return kTexts[Below(kTexts.size())]; }
  std::string Type() const { return std::to_string(type_); }
  std::string Form() const { return "--form=" + std::to_string(form_); }
  std::string Op(unsigned more = 0x10) const { return "--op=" + std::to_string(options_ | more); }

  /// A stored array, good or damaged.
  std::string Stored(size_t& count, bool maybeDamaged = true) {
    Given given{OT95_ERR_VALUE, ""};
    for (int tries = 0; given.status != OT95_OK && tries < 50; ++tries) {
      std::vector<std::string> texts(1 + Below(2));
      for (std::string& text : texts) text = AnyText();
      given = Scanned(type_, texts, form_);
      count = texts.size();
    }
    if (given.status != OT95_OK) {
      given = Give([&](ot95_buffer* out) { return ot95_default(type_, 0, form_, out); });
      count = 1;
    }
    if (maybeDamaged && Below(4) == 0) given.bytes.resize(1 + Below(given.bytes.size()));
    return given.bytes;
  }
  static std::string HexOf(const std::string& bytes) { return Hex(bytes.data(), bytes.size()); }
  static Json HexOrNull(const void* bytes, size_t size) {
    return size != 0 ? Json(Hex(bytes, size)) : Json();
  }
  Json Values(const ot95_array& array) {
    Json values = Json::array();
    for (size_t i = 0; i < array.count; ++i) {
      int isNull = 0;
      if (ot95_is_null(&array, i, &isNull) != OT95_OK) return Json();
      values.push_back(isNull != 0 ? Json() : Json(Printed(array, i).bytes));
    }
    return values;
  }

  Case Encode() {
    const std::vector<std::string> texts = {AnyText(), AnyText()};
    const bool isStrict = Below(2) != 0;
    ot95_scan_options options = {sizeof options, 253, 1, nullptr, 0};
    if (isStrict) options.flags = OT95_STRICT;
    const Given given = Scanned(type_, texts, form_, &options);
    Case made{{"encode", Type(), Form()}, Json()};
    if (!isStrict) made.arguments.push_back("--lenient");
    made.arguments.insert(made.arguments.end(), {"--", texts[0], texts[1]});
    if (given.status == OT95_OK) made.answer = {{"bytes", given.Hex()}};
    return made;
  }
  Case Decode() {
    size_t count = 0, end = 0;
    const std::string bytes = Stored(count);
    const ot95_array array = ArrayOf(type_, form_, bytes, count);
    Case made{{"decode", Type(), HexOf(bytes), Form(), "--count=" + std::to_string(count)}, Json()};
    if (ot95_verify(&array, &end) == OT95_OK) {
      made.answer = {{"consumed", end}, {"values", Values(array)}};
    }
    return made;
  }
  Case Verify() {
    size_t count = 0, end = 0;
    const std::string bytes = Stored(count);
    const ot95_array array = ArrayOf(type_, form_, bytes, count);
    const bool ok = ot95_verify(&array, &end) == OT95_OK;
    return {{"verify", Type(), HexOf(bytes), Form(), "--count=" + std::to_string(count)},
            {{"ok", ok}, {"consumed", end}}};
  }
  Case Key() {
    type_ = 11;
    size_t count = 0;
    const std::string bytes = Stored(count, false);
    const ot95_array array = ArrayOf(type_, form_, bytes, count);
    const unsigned target = form_ | OT95_FORM_KEY;
    const Given key = Give([&](ot95_buffer* out) { return ot95_translate(&array, target, out); });
    return {{"translate", Type(), HexOf(bytes), "--from=" + std::to_string(form_),
             "--to=" + std::to_string(target), "--count=" + std::to_string(count)},
            {{"bytes", key.Hex()}}};
  }
  Case Compare() {
    size_t count = 0, other = 0;
    const std::string a = Stored(count, false);
    std::string b = Stored(other, false);
    while (other != count) b = Stored(other, false);
    const ot95_array first = ArrayOf(type_, form_, a, count);
    const ot95_array second = ArrayOf(type_, form_, b, count);
    int sign = 0;
    Case made{{"compare", Type(), HexOf(a), HexOf(b), "--hex", Form(), Op(),
               "--count=" + std::to_string(count)},
              Json()};
    if (ot95_compare(&first, &second, options_, &sign) == OT95_OK) made.answer = {{"sign", sign}};
    return made;
  }
  Case Hash() {
    size_t count = 0;
    const std::string bytes = Stored(count, false);
    const ot95_array array = ArrayOf(type_, form_, bytes, count);
    uint32_t hash = 0;
    Case made{{"hash", Type(), HexOf(bytes), "--hex", Form(), "--count=" + std::to_string(count)},
              Json()};
    if (ot95_hash(&array, &hash) == OT95_OK) made.answer = {{"hash", hash}, {"status", 0}};
    return made;
  }
  Case Print() {
    const std::string text = AnyText();
    const Given stored = Scanned(type_, {text}, form_);
    Case made{{"print", Type(), "--lenient", "--", text}, Json()};
    if (stored.status == OT95_OK) {
      made.answer = {{"text", Printed(ArrayOf(type_, form_, stored.bytes), 0).bytes}};
    }
    return made;
  }
  Case Convert() {
    const int target = static_cast<int>(Below(40));
    const std::string text = AnyText();
    const Given source = Scanned(type_, {text}, OT95_FORM_NATIVE);
    const ot95_array array = ArrayOf(type_, OT95_FORM_NATIVE, source.bytes);
    const Given given =
        Give([&](ot95_buffer* out) { return ot95_convert(&array, target, OT95_FORM_NATIVE, out); });
    Case made{{"convert", Type(), std::to_string(target), "--lenient", "--", text}, Json()};
    if (given.status == OT95_OK) {
      made.answer = {{"values", Values(ArrayOf(target, OT95_FORM_NATIVE, given.bytes))}};
    }
    return made;
  }
  Case Default() {
    const bool nullable = Below(2) != 0;
    const Given given =
        Give([&](ot95_buffer* out) { return ot95_default(type_, nullable, form_, out); });
    const ot95_array array = ArrayOf(type_, form_, given.bytes);
    int isNull = 0;
    ot95_is_null(&array, 0, &isNull);
    Case made{{"default", Type()}, {{"text", Printed(array, 0).bytes}, {"isNull", isNull != 0}}};
    if (nullable) made.arguments.push_back("--nullable");
    return made;
  }
  std::string IndexKey(const std::string& bytes) {
    const bool isText = type_ == 11 || type_ == 20 || type_ == 21;
    if (!isText) return bytes.substr(0, OT95_KEY_ROOM);
    const ot95_array array = ArrayOf(type_, form_, bytes);
    return Give(
               [&](ot95_buffer* out) { return ot95_translate(&array, form_ | OT95_FORM_KEY, out); })
        .bytes;
  }
  Case Estimate() {
    const std::string texts[] = {AnyText(), AnyText(), AnyText()};
    std::string stored[3];
    Case made{{"estimate", Type(), texts[0], Form(), "--lenient", "--low=" + texts[1],
               "--high=" + texts[2]},
              Json()};
    const unsigned relation = 1 + Below(7);
    const unsigned wildcards = Below(2) * OT95_WILDCARDS;
    made.arguments.push_back("--op=" + std::to_string(relation | (wildcards != 0 ? 0 : 0x10)));
    for (int i = 0; i < 3; ++i) {
      const Given given = Scanned(type_, {texts[i]}, form_);
      if (given.status != OT95_OK || texts[i].empty()) return Encode();
      stored[i] = given.bytes;
    }
    const std::string low = IndexKey(stored[1]), high = IndexKey(stored[2]);
    const ot95_array operand = ArrayOf(type_, form_, stored[0]);
    const ot95_span ends[] = {Span(low), Span(high)};
    ot95_estimate_result result = {};
    result.struct_size = sizeof result;
    if (ot95_estimate(&operand, relation | wildcards, &ends[0], &ends[1], &result) != OT95_OK) {
      return made;
    }
    made.answer = {{"share", result.share},
                   {"lower", HexOrNull(result.lower, result.lower_size)},
                   {"upper", HexOrNull(result.upper, result.upper_size)}};
    return made;
  }
  Case SortKey() {
    size_t count = 0;
    const std::string bytes = Stored(count, false);
    const ot95_array array = ArrayOf(type_, form_, bytes, count);
    const Given key = Give([&](ot95_buffer* out) { return ot95_sort_key(&array, options_, out); });
    Case made{{"sort-key", Type(), HexOf(bytes), "--hex", Form(), Op(),
               "--count=" + std::to_string(count)},
              Json()};
    if (key.status == OT95_OK) made.answer = {{"bytes", key.Hex()}, {"status", 0}};
    return made;
  }
  Case SortRange() {
    size_t count = 0;
    const std::string bytes = Stored(count, false);
    const ot95_array array = ArrayOf(type_, form_, bytes, count);
    const unsigned relation = 1 + Below(7);
    std::string lower(1 << 17, 0), upper = lower;
    ot95_buffer from = {lower.data(), lower.size(), 0}, to = {upper.data(), upper.size(), 0};
    Case made{{"sort-range", Type(), HexOf(bytes), "--hex", Form(), Op(relation),
               "--count=" + std::to_string(count)},
              Json()};
    const int status =
        ot95_sort_range(&array, relation | options_ | OT95_WILDCARDS, options_, &from, &to);
    if (status == OT95_OK || status == OT95_ERR_NOT_SUPPORTED) {  // without ends, then
      made.answer = {{"lower", HexOrNull(from.data, from.size)},
                     {"upper", HexOrNull(to.data, to.size)}};
    }
    return made;
  }
  Case Hash64() {
    size_t count = 0;
    const std::string bytes = Stored(count, false);
    const ot95_array array = ArrayOf(type_, form_, bytes, count);
    const uint64_t seed = random_();
    uint64_t hash = 0;
    Case made{{"hash64", Type(), HexOf(bytes), "--hex", Form(), Op(),
               "--seed=" + std::to_string(seed), "--count=" + std::to_string(count)},
              Json()};
    if (ot95_hash64(&array, options_, seed, &hash) == OT95_OK) {
      made.answer = {{"hash", std::to_string(hash)}};
    }
    return made;
  }

  /// Two texts under a language's collation.
  Case Pair(unsigned op) {
    language_ = kLanguages[Below(std::size(kLanguages))];
    a_ = AnyText() + AnyText() + "x";  // a null has no place in a collation
    b_ = Below(3) == 0 ? a_ : AnyText() + AnyText() + "x";
    ot95_collation_open(language_, options_, &collation_);
    return {{"strcmp", Op(op), std::string("--language=") + language_, "--", a_, b_}, Json()};
  }
  Case Strcmp() {
    Case made = Pair(0x10);
    int sign = 0;
    if (ot95_collation_compare(collation_, a_.data(), a_.size(), b_.data(), b_.size(), &sign) ==
        OT95_OK) {
      made.answer = {{"sign", sign}};
    }
    ot95_free(collation_);
    return made;
  }
  Case Match() {
    Case made = Pair(0);
    int matches = 0;
    if (ot95_collation_match(collation_, a_.data(), a_.size(), b_.data(), b_.size(), &matches) ==
        OT95_OK) {
      made.answer = {{"matches", matches}};
    }
    ot95_free(collation_);
    return made;
  }
  Case EditCase() {
    Pair(0);
    const bool upper = Below(2) != 0;
    const auto change = upper ? ot95_collation_upper : ot95_collation_lower;
    const Given given =
        Give([&](ot95_buffer* out) { return change(collation_, a_.data(), a_.size(), out); });
    ot95_free(collation_);
    return {{"edit", upper ? "upper" : "lower", std::string("--language=") + language_, "--", a_},
            {{"text", given.bytes}}};
  }

  Case Edit() {
    static constexpr struct {
      const char* name;
      int operation;
      const char* arguments;  // t: a text, p: a place, n: a count, c: a character, f: sought
    } kEdits[] = {{"trim", OT95_TRIM, ""},       {"cut", OT95_CUT, "pn"},
                  {"copy", OT95_COPY, "pn"},     {"insert", OT95_INSERT, "tp"},
                  {"replace", OT95_WRITE, "tp"}, {"replace-all", OT95_REPLACE_ALL, "ft"},
                  {"fill", OT95_FILL, "nc"},     {"expand", OT95_EXPAND, "nc"}};
    const auto& chosen = kEdits[Below(std::size(kEdits))];
    Pair(0);
    const std::string texts[] = {AnyText() + "x", Below(2) != 0 ? "o" : "S", "\xc3\xa9"};
    ot95_edit edit = {sizeof edit, chosen.operation, Span(a_), {"", 0}, {"", 0}, 0, OT95_REST};
    Case made{{"edit", chosen.name, std::string("--language=") + language_, "--", a_}, Json()};
    for (const char* kind = chosen.arguments; *kind != 0; ++kind) {
      if (*kind == 'p' || *kind == 'n') {
        (*kind == 'p' ? edit.place : edit.count) = Below(9);
        made.arguments.push_back(std::to_string(*kind == 'p' ? edit.place : edit.count));
      } else {
        const std::string& text = texts[*kind == 't' ? 0 : *kind == 'f' ? 1 : 2];
        (*kind == 'f' ? edit.from : edit.with) = Span(text);
        made.arguments.push_back(text);
      }
    }
    const Given given =
        Give([&](ot95_buffer* out) { return ot95_collation_edit(collation_, &edit, out); });
    ot95_free(collation_);
    if (given.status == OT95_OK) made.answer = {{"text", given.bytes}};
    return made;
  }
  Case Find() {
    options_ &= ~unsigned{OT95_ORDER_ONLY};
    Pair(0);
    const std::string sought = AnyText();
    int found = 0;
    size_t place = 0;
    const int status = ot95_collation_find(collation_, a_.data(), a_.size(), sought.data(),
                                           sought.size(), &found, &place);
    ot95_free(collation_);
    Case made{{"edit", "find", Op(), std::string("--language=") + language_, "--", a_, sought},
              Json()};
    if (status == OT95_OK) made.answer = {{"value", found != 0 ? Units(a_, place) : -1}};
    return made;
  }
  /// 16-bit units of the first bytes of a text.
  static long Units(const std::string& utf8, size_t bytes) {
    long units = 0;
    for (size_t i = 0; i < bytes; ++i) {
      const auto byte = static_cast<unsigned char>(utf8[i]);
      units += (byte & 0xc0) == 0x80 ? 0 : byte >= 0xf0 ? 2 : 1;
    }
    return units;
  }
  Case Split() {
    Pair(0);
    const std::string separator = Below(2) != 0 ? "o" : " ";
    a_ += separator + " " + AnyText() + separator + separator + "y";
    Json items = Json::array();
    Given given;
    for (size_t place = 0; given.status == OT95_OK;) {
      size_t next = place;
      given = Give([&](ot95_buffer* out) {
        next = place;
        return ot95_collation_split(collation_, a_.data(), a_.size(), separator.data(), 1, &next,
                                    out);
      });
      if (given.status == OT95_OK) items.push_back(given.bytes);
      place = next;
    }
    ot95_free(collation_);
    Case made{{"edit", "split", std::string("--language=") + language_, "--", a_, separator},
              Json()};
    if (given.status == OT95_ERR_ENDS) made.answer = {{"items", items}};
    return made;
  }
  Case Orders() {
    Pair(0);
    std::vector<ot95_order> orders(64);
    size_t count = 0;
    ot95_collation_orders(collation_, a_.data(), a_.size(), orders.data(), orders.size(), &count);
    ot95_free(collation_);
    Case made{{"orders", std::string("--language=") + language_, "--", a_}, {{"rows", {}}}};
    for (size_t i = 0; i < count; ++i) {
      made.answer["rows"].push_back({{"order", orders.at(i).word},
                                     {"script", orders.at(i).script},
                                     {"key", orders.at(i).key}});
    }
    return made;
  }

  int64_t AnyNumber() {
    const uint64_t number = uint64_t{random_()} << 32 | random_();
    return static_cast<int64_t>(number) >> Below(64);
  }
  Case Int64() {
    static constexpr const char* kOperators[] = {"+", "-", "*", "/", "%", "<<", ">>", "neg", "abs"};
    const int operation = static_cast<int>(Below(std::size(kOperators) + 1));
    const int64_t a = AnyNumber();
    int64_t b = AnyNumber(), result = 0;
    Case made{{"int64", "--"}, Json()};
    auto& words = made.arguments;
    int status = OT95_OK;
    if (operation == std::size(kOperators)) {
      const double real = static_cast<double>(a) / (1 + Below(1000));
      char text[40];
      std::snprintf(text, sizeof text, "%.17g", real);
      words.insert(words.end(), {"from-double", text});
      status = ot95_int64_from_real(real, &result);
    } else {
      if (operation == OT95_SHIFT_LEFT || operation == OT95_SHIFT_RIGHT) b = Below(70);
      if (Below(20) == 0) b = Below(3) - 1;
      const bool isUnary = operation >= OT95_NEGATE;
      if (!isUnary) words.push_back(std::to_string(a));
      words.push_back(kOperators[operation]);
      words.push_back(std::to_string(isUnary ? a : b));
      status = ot95_int64(operation, a, b, &result);
    }
    if (status != OT95_ERR_ARGUMENT) made.answer = {{"text", std::to_string(result)}};
    return made;
  }

  // Dates and times, by number: with a day, with a time of it, with both.
  static bool HasDay(int type) { return type != 13 && type != 23; }
  static bool HasTime(int type) { return type != 12 && type != 22; }
  ot95_moment AnyMoment(int type) {
    ot95_moment moment = {};
    if (HasDay(type)) {
      moment.year = static_cast<int>(1000 + Below(8000));
      moment.month = static_cast<int>(1 + Below(12));
      moment.day = static_cast<int>(1 + Below(28));
    }
    if (HasTime(type)) {
      moment.hour = static_cast<int>(Below(24));
      moment.minute = static_cast<int>(Below(60));
      moment.second = static_cast<int>(Below(60));
    }
    return moment;
  }
  static std::string TextOf(int type, const ot95_moment& moment) {
    ot95_value value = {OT95_KIND_MOMENT, 0, {}};
    value.as.moment = moment;
    const std::string stored =
        Give([&](ot95_buffer* out) { return ot95_encode(type, &value, 1, 1, out); }).bytes;
    const char* format = !HasTime(type)  ? "%Y-%m-%d"
                         : !HasDay(type) ? "%H:%M:%S"
                                         : "%Y-%m-%d %H:%M:%S";
    return Printed(ArrayOf(type, 1, stored), 0, format).bytes;
  }
  Case Date() {
    static constexpr int kTypes[] = {12, 13, 19, 22, 23, 24};
    static constexpr const char* kNames[] = {"OtDate", "OtTime", "OtDateTime",
                                             "d_Date", "d_Time", "d_Timestamp"};
    static constexpr const char* kQuestions[] = {"days", "weekday", "day-of-year", "days-in-month",
                                                 "valid"};
    static constexpr const char* kWeekdays[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                "Thursday", "Friday", "Saturday"};
    const unsigned which = Below(std::size(kTypes));
    const int type = kTypes[which];
    ot95_moment moments[4], result = {};
    for (ot95_moment& moment : moments) moment = AnyMoment(type);
    const auto amount = static_cast<int32_t>(AnyNumber() % 100000);
    const std::string option = std::string("--type=") + kNames[which];
    const auto text = [&](int i) { return TextOf(type, moments[i]); };
    switch (Below(6)) {
      case 0: {
        Case made{{"date", "add", option, "--", text(0), std::to_string(amount)}, Json()};
        if (ot95_moment_add(type, &moments[0], amount, &result) == OT95_OK) {
          made.answer = {{"text", TextOf(type, result)}};
        }
        return made;
      }
      case 1: {
        double difference = 0;
        Case made{{"date", "diff", option, "--", text(0), text(1)}, Json()};
        const int status = ot95_moment_difference(type, &moments[0], &moments[1], &difference);
        if (status != OT95_OK) return made;
        if (type == 13) {
          const auto seconds = static_cast<int>(difference);
          result.hour = seconds / 3600;
          result.minute = seconds / 60 % 60;
          result.second = seconds % 60;
          made.answer = {{"text", TextOf(type, result)}};
        } else {
          made.answer = {{"value", difference}};
        }
        return made;
      }
      case 2: {
        int overlaps = 0;
        Case made{{"date", "overlaps", option, "--", text(0), text(1), text(2), text(3)}, Json()};
        if (ot95_moment_overlaps(type, &moments[0], &moments[2], &overlaps) == OT95_OK) {
          made.answer = {{"value", overlaps != 0}};
        }
        return made;
      }
      case 3: {
        const int32_t day = 1800000 + amount * 5;
        ot95_moment_of_day(day, &result);
        return {{"date", "from-days", "--", std::to_string(day)}, {{"text", TextOf(12, result)}}};
      }
      default: {
        const int question = static_cast<int>(Below(std::size(kQuestions)));
        int32_t answer = 0;
        Case made{{"date", kQuestions[question], option, "--", text(0)}, Json()};
        const int status = ot95_moment_ask(type, question, &moments[0], &answer);
        if (status != OT95_OK) return made;
        if (question == OT95_WEEKDAY)
          made.answer = {{"text", kWeekdays[answer]}};
        else if (question == OT95_IS_DATE)
          made.answer = {{"value", answer != 0}};
        else
          made.answer = {{"value", answer}};
        return made;
      }
    }
  }

  /// A value as the command line shows it: a number where it reads like one.
  static Json Shown(const ot95_array& array, size_t index) {
    int isNull = 0;
    ot95_is_null(&array, index, &isNull);
    if (isNull != 0) return Json();
    const std::string text = Printed(array, index).bytes;
    ot95_type type = {};
    type.struct_size = sizeof type;
    ot95_type_describe(array.type, &type);
    if (std::string(type.format) == "%s" || std::string(type.format) == "%c") return text;
    const Json number = Json::parse(text, nullptr, false);
    return number.is_number() ? number : Json(text);
  }
  Case Inspect() {
    std::vector<ot95_member> members(1 + Below(3));
    std::string layout, bytes;
    const size_t records = 1 + Below(3);
    std::vector<int> types;
    for (ot95_member& member : members) {
      member = {static_cast<int>(Below(40)), 1};
      layout += (layout.empty() ? "" : ",") + std::to_string(member.type) + ":m" +
                std::to_string(&member - members.data());
    }
    for (size_t i = 0; i < records; ++i) {
      for (const ot95_member& member : members) {
        type_ = member.type;
        size_t count = 0;
        std::string stored = Stored(count, false);
        const ot95_array array = ArrayOf(type_, form_, stored, count);
        bytes += count == 1 ? stored : stored.substr(0, 0) + One(array);
      }
    }
    if (Below(3) == 0) bytes.resize(1 + Below(bytes.size()));
    const std::string path =
        testing::TempDir() + "/c_interface_records" + std::to_string(files_.size());
    std::ofstream(path, std::ios::binary) << bytes;
    files_.push_back(path);
    return {{"inspect", path, "--layout=" + layout, Form()}, Records(members, bytes)};
  }
  /// The default value, stored.
  std::string One(const ot95_array& array) {
    return Give([&](ot95_buffer* out) { return ot95_default(array.type, 0, form_, out); }).bytes;
  }
  Json Records(const std::vector<ot95_member>& members, const std::string& bytes) const {
    Json answer = {{"records", Json::array()}, {"damage", Json()}};
    for (size_t at = 0, record = 0; at < bytes.size(); ++record) {
      std::vector<ot95_array> arrays(members.size());
      size_t end = 0;
      if (ot95_record(members.data(), members.size(), form_, bytes.data() + at, bytes.size() - at,
                      arrays.data(), &end) != OT95_OK) {
        answer["damage"] = {{"record", record}, {"offset", at + end}};
        break;
      }
      Json values = Json::object();
      for (size_t i = 0; i < arrays.size(); ++i) {
        values["m" + std::to_string(i)] = Shown(arrays[i], 0);
      }
      answer["records"].push_back({{"offset", at}, {"values", values}});
      at += end;
    }
    return answer;
  }

 public:
  ~Cases() {
    for (const std::string& path : files_) std::remove(path.c_str());
  }
  Cases(const Cases&) = delete;
  Cases& operator=(const Cases&) = delete;

 private:
  std::vector<std::string> files_;
  std::mt19937 random_;
  int type_ = 0;
  unsigned form_ = 0, options_ = 0;
  const char* language_ = nullptr;
  std::string a_, b_;
  ot95_collation* collation_ = nullptr;
};

/// The answers of one run of `ottm batch`.
std::vector<Json> Batch(const std::vector<Case>& cases) {
  const std::string path = testing::TempDir() + "/c_interface_cases";
  std::ofstream file(path);
  for (const Case& one : cases) file << Json(one.arguments).dump() << "\n";
  file.close();
  std::string text;
  FILE* pipe = popen((std::string(OT95_OTTM) + " batch < " + path).c_str(), "r");
  char buffer[4096];
  while (const size_t size = fread(buffer, 1, sizeof buffer, pipe)) text.append(buffer, size);
  EXPECT_EQ(pclose(pipe), 0);
  std::remove(path.c_str());
  std::vector<Json> answers;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) answers.push_back(Json::parse(line));
  return answers;
}

/// Whether an answer has what is expected of it, and maybe more.
bool Has(const Json& answer, const Json& expected) {
  if (expected.is_array()) {
    bool all = answer.is_array() && answer.size() == expected.size();
    for (size_t i = 0; all && i < expected.size(); ++i) all = Has(answer[i], expected[i]);
    return all;
  }
  if (!expected.is_object()) return answer == expected;
  if (!answer.is_object()) return false;
  return std::all_of(expected.items().begin(), expected.items().end(), [&](const auto& item) {
    return answer.contains(item.key()) && Has(answer[item.key()], item.value());
  });
}

/// Whether an answer of the command line says what the C interface said.
bool Agree(const Case& one, Json answer) {
  const Json& expected = one.answer;
  if (answer.is_array()) answer = {{"rows", answer}};
  if (expected.is_null()) {
    const auto& words = one.arguments;
    const bool isLenient = std::find(words.begin(), words.end(), "--lenient") != words.end();
    return isLenient || answer.contains("error") || answer.value("status", 0) != 0;
  }
  if (expected.contains("matches")) answer["matches"] = answer.value("sign", 7) == 0 ? 1 : 0;
  for (const auto& [name, value] : expected.items()) {
    if (!answer.contains(name)) return false;
    const Json& said = answer[name];
    const bool isSame = name != "share"  ? Has(said, value)
                        : said.is_null() ? !std::isfinite(value.get<float>())
                                         : value.get<float>() == said.get<float>();
    if (!isSame) return false;
  }
  return true;
}

TEST(CInterface, AnswersAsTheCommandLine) {
  constexpr size_t count = 25000;
  std::vector<Case> cases;
  Cases maker(1504);
  while (cases.size() < count) cases.push_back(maker.Next());
  const std::vector<Json> answers = Batch(cases);
  ASSERT_EQ(answers.size(), count);
  size_t answered = 0;
  for (size_t i = 0; i < count; ++i) {
    answered += !cases[i].answer.is_null();
    EXPECT_TRUE(Agree(cases[i], answers[i]))
        << Json(cases[i].arguments).dump() << "\nC: " << cases[i].answer.dump()
        << "\nottm: " << answers[i].dump();
  }
  EXPECT_GT(answered, 15000u);
}

TEST(CInterface, KnowsTheSameTypesLanguagesAndCodeSets) {
  Json types = Json::array(), languages = Json::array(), codeSets = Json::array();
  size_t count = 0;
  ot95_type_count(&count);
  for (size_t i = 0; i < count; ++i) {
    ot95_type type = {};
    type.struct_size = sizeof type;
    ot95_type_describe(static_cast<int>(i), &type);
    types.push_back({{"id", i},
                     {"name", type.name},
                     {"memoryLength", type.memory_size},
                     {"nullable", type.is_nullable != 0},
                     {"nullSize", type.null_size}});
  }
  for (unsigned number = 0; number < 0x100; ++number) {
    ot95_language language = {};
    language.struct_size = sizeof language;
    if (ot95_language_describe(number, &language) == OT95_OK && language.number == number) {
      languages.push_back({{"number", number}, {"tag", language.tag}, {"name", language.name}});
    }
    ot95_code_set set = {};
    set.struct_size = sizeof set;
    if (ot95_code_set_describe(number, &set) == OT95_OK) {
      codeSets.push_back({{"number", number}, {"name", set.name}});
    }
  }
  codeSets.push_back({{"number", 254}, {"name", "Orders"}});  // of keys: no text has it
  const std::vector<Case> cases = {{{"types"}, {{"rows", types}}},
                                   {{"languages"}, {{"rows", languages}}},
                                   {{"codesets"}, {{"rows", codeSets}}}};
  const std::vector<Json> answers = Batch(cases);
  for (size_t i = 0; i < cases.size(); ++i) {
    EXPECT_TRUE(Agree(cases[i], answers.at(i)))
        << cases[i].answer.dump() << "\nottm: " << answers[i].dump();
  }
}

}  // namespace
