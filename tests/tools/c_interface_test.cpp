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
        &Cases::Encode,  &Cases::Decode,   &Cases::Verify,  &Cases::Key,
        &Cases::Compare, &Cases::Hash,     &Cases::Print,   &Cases::Convert,
        &Cases::Default, &Cases::Estimate, &Cases::SortKey, &Cases::SortRange,
        &Cases::Hash64,  &Cases::Strcmp,   &Cases::Match,   &Cases::EditCase};
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

/// Whether an answer of the command line says what the C interface said.
bool Agree(const Case& one, Json answer) {
  const Json& expected = one.answer;
  if (expected.is_null()) {
    const auto& words = one.arguments;
    const bool isLenient = std::find(words.begin(), words.end(), "--lenient") != words.end();
    return isLenient || answer.contains("error") || answer.value("status", 0) != 0;
  }
  if (expected.contains("matches")) answer["matches"] = answer.value("sign", 7) == 0 ? 1 : 0;
  for (const auto& [name, value] : expected.items()) {
    if (!answer.contains(name)) return false;
    const Json& said = answer[name];
    const bool isSame = name != "share"  ? value == said
                        : said.is_null() ? !std::isfinite(value.get<float>())
                                         : value.get<float>() == said.get<float>();
    if (!isSame) return false;
  }
  return true;
}

TEST(CInterface, AnswersAsTheCommandLine) {
  constexpr size_t count = 16000;
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
  EXPECT_GT(answered, 10000u);
}

}  // namespace
