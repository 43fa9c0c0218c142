// The C interface against the command line: the same cases through both, and the same answers.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>

#include "tools/arithmeticcases.h"

namespace {

class Cases : public ArithmeticCases {
 public:
  explicit Cases(unsigned seed) : ArithmeticCases(seed) {}

  Case Next() {
    Choose();
    using Maker = Case (Cases::*)();
    constexpr Maker makers[] = {
        &Cases::Encode,       &Cases::Decode,   &Cases::Verify,  &Cases::Key,
        &Cases::Compare,      &Cases::Hash,     &Cases::Print,   &Cases::Convert,
        &Cases::DefaultValue, &Cases::Estimate, &Cases::SortKey, &Cases::SortRange,
        &Cases::Hash64,       &Cases::Strcmp,   &Cases::Match,   &Cases::EditCase,
        &Cases::Edit,         &Cases::Edit,     &Cases::Find,    &Cases::Split,
        &Cases::Orders,       &Cases::Int64,    &Cases::Date,    &Cases::Date,
        &Cases::Inspect};
    return (this->*makers[Below(std::size(makers))])();
  }
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
