// What a plan says of how much it will find.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "objectstore/storetesting.h"
#include "plan.h"
#include "record.h"
#include "statistics.h"

namespace {

struct EvenCase {
  const char* type;
  const char* format;
  std::string (*text)(int);  ///< Of the i-th of a hundred values that stand at even distances.
  const char* middle;
};

std::string Number(int i) {
  return std::to_string(1000 + 10 * i);
}
std::string Day(int i) {
  char text[16];
  std::snprintf(text, sizeof text, "20%02d-01-01", i);
  return text;
}

const EvenCase kEvenCases[] = {
    {"OtDate", "%Y-%m-%d", Day, "2050-01-01"}, {"OtNull_int", "", Number, "1500"},
    {"OtNull_double", "", Number, "1500"},     {"OtNull_float", "", Number, "1500"},
    {"OtNull_ushort", "", Number, "1500"},     {"OtNull_OtInt64", "", Number, "1500"}};

otdb::Schema SchemaOf(const EvenCase& even, const StoreKind& kind) {
  return otdb::Schema::FromJson(
      "{" + kind.Json() + R"(, "classes": [{"name": "C", "members": [{"name": "a", "type": ")" +
      even.type + R"(", "format": ")" + even.format + R"(", "indexed": true}]}]})");
}

/// A hundred values, and as many nulls as values.
void Fill(otdb::Store& store, const EvenCase& even) {
  const otdb::Class& type = store.GetSchema().classes.front();
  std::vector<otdb::Bytes> records;
  for (int i = 0; i < 200; ++i) {
    otdb::Value value(type.members[0]);
    value.Scan(0, i < 100 ? even.text(i) : "");
    records.push_back(value.Stored(store.GetSchema().form));
  }
  store.Add(type, records);
}

class Plans : public testing::TestWithParam<StoreKind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, Plans, testing::ValuesIn(kStoreKinds), NameOfKind);

TEST_P(Plans, MeasureValuesWithoutTheNullsInFrontOfThem) {
  for (const EvenCase& even : kEvenCases) {
    const Scratch directory;
    otdb::Store::Create(directory / "store", SchemaOf(even, GetParam()));
    otdb::Store store(directory / "store");
    Fill(store, even);
    auto txn = store.Read();
    const auto share = [&](const std::string& condition) {
      const auto query = otdb::ParseQuery(store.GetSchema(), "from C where a " + condition);
      return otdb::MakePlan(store, txn, query).share;
    };
    const std::string middle = std::string("'") + even.middle + "'";
    EXPECT_NEAR(share(">= " + middle), 0.25, 0.01) << even.type;
    EXPECT_NEAR(share("< " + middle), 0.75, 0.01) << even.type << ": nulls are below";
    EXPECT_NEAR(share("= null"), 0.5, 0.01) << even.type;
  }
}

/// Rows of skewed columns, and what a condition lets through of them.
struct Row {
  std::string name, number, big, flag;
};

std::vector<Row> SkewedRows() {
  Dice dice(7);
  std::vector<Row> rows;
  for (int i = 0; i < 4000; ++i) {
    std::string name = dice.Chance(30) ? "San " : "";
    for (int k = 0; k < 6; ++k) name += static_cast<char>('a' + dice.Below(26));
    if (dice.Chance(10)) name = "\xce\xa9" + name;  // an omega: the index ends in another script
    const std::size_t size = dice.Below(9);
    const std::string number = dice.Chance(25) ? "7" : std::to_string(dice.Below(10 << (2 * size)));
    const std::string big = dice.Chance(20) ? "" : "1000000000000" + number;
    rows.push_back({name, number, big, dice.Chance(85) ? "TRUE" : "FALSE"});
  }
  return rows;
}

const char* const kSkewed = R"(, "classes": [{"name": "C", "members": [
  {"name": "name", "type": "OtString", "indexed": true},
  {"name": "number", "type": "long", "indexed": true},
  {"name": "big", "type": "OtNull_OtInt64", "indexed": true},
  {"name": "flag", "type": "OtBoolean", "indexed": true}]}]})";

void Fill(otdb::Store& store, const std::vector<Row>& rows) {
  const otdb::Class& type = store.GetSchema().classes.front();
  std::vector<otdb::Bytes> records;
  for (const Row& row : rows) {
    otdb::Object object(type, store.GetSchema().form);
    const std::string* const texts[] = {&row.name, &row.number, &row.big, &row.flag};
    for (std::size_t i = 0; i < std::size(texts); ++i) object.MemberAt(i).Scan(0, *texts[i]);
    records.push_back(object.Stored());
  }
  store.Add(type, records);
}

TEST_P(Plans, KnowHowAnIndexIsFilled) {
  const std::vector<Row> rows = SkewedRows();
  const auto number = [](const Row& row) { return std::stol(row.number); };
  const std::pair<const char*, std::function<bool(const Row&)>> conditions[] = {
      {"name = 'san*' ignoring case",
       [](const Row& row) { return row.name.rfind("San ", 0) == 0; }},
      {"name = 'a*'", [](const Row& row) { return row.name[0] == 'a'; }},
      {"name >= 'n'",
       [](const Row& row) {
         const auto first = static_cast<unsigned char>(row.name[0]);
         return first == 'S' || first >= 'n';
       }},
      {"number = 7", [&](const Row& row) { return number(row) == 7; }},
      {"number < 7", [&](const Row& row) { return number(row) < 7; }},
      {"number >= 7", [&](const Row& row) { return number(row) >= 7; }},
      {"number > 1000", [&](const Row& row) { return number(row) > 1000; }},
      {"number <> 7", [&](const Row& row) { return number(row) != 7; }},
      {"big = 10000000000007", [](const Row& row) { return row.big == "10000000000007"; }},
      {"big > 10000000000007",
       [&](const Row& row) {
         return !row.big.empty() && (row.big.size() > 14 || number(row) > 7);
       }},
      {"big = null", [](const Row& row) { return row.big.empty(); }},
      {"flag = TRUE", [](const Row& row) { return row.flag == "TRUE"; }},
  };
  const Scratch directory;
  otdb::Store::Create(directory / "store",
                      otdb::Schema::FromJson("{" + GetParam().Json() + kSkewed));
  otdb::Store store(directory / "store");
  Fill(store, rows);
  otdb::Analyze(store, {});
  EXPECT_EQ(FaultsOf(store), "");
  auto txn = store.Read();
  for (const auto& [condition, holds] : conditions) {
    const auto query =
        otdb::ParseQuery(store.GetSchema(), std::string("from C where ") + condition);
    const auto count = std::count_if(rows.begin(), rows.end(), holds);
    const double truth = static_cast<double>(count) / static_cast<double>(rows.size());
    EXPECT_NEAR(otdb::MakePlan(store, txn, query).terms.at(0).share, truth, 0.01) << condition;
  }
}

TEST_P(Plans, DoWithoutStatisticsThatAreDamaged) {
  const Scratch directory;
  otdb::Store::Create(directory / "store",
                      otdb::Schema::FromJson("{" + GetParam().Json() + kSkewed));
  otdb::Store store(directory / "store");
  Fill(store, SkewedRows());
  otdb::Analyze(store, {});
  otdb::Bytes kept;
  {
    auto txn = store.Read();
    const auto view = store.KeptStatistics(txn, "C.name");
    ASSERT_TRUE(view);
    kept.assign(view->begin(), view->end());
  }
  Dice dice(1);
  std::size_t told = 0;
  for (int round = 0; round < 60; ++round) {
    otdb::Bytes bad = kept;
    bad[dice.Below(bad.size())] = static_cast<unsigned char>(dice.Below(256));
    if (dice.Chance(30)) bad.resize(dice.Below(bad.size()));
    store.KeepStatistics({{"C.name", bad}});
    told += FaultsOf(store) == "index C.name: damaged statistics\n";
    auto txn = store.Read();
    const auto query = otdb::ParseQuery(store.GetSchema(), "from C where name = 'san*'");
    const double share = otdb::MakePlan(store, txn, query).share;
    EXPECT_TRUE(share >= 0 && share <= 1) << share;
  }
  EXPECT_GT(told, 10U);
}

}  // namespace
