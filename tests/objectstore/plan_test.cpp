// What a plan says of how much it will find.
#include <gtest/gtest.h>

#include "objectstore/storetesting.h"
#include "plan.h"
#include "value.h"

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

otdb::Schema SchemaOf(const EvenCase& even) {
  return otdb::Schema::FromJson(
      R"({"classes": [{"name": "C", "members": [{"name": "a", "type": ")" + std::string(even.type) +
      R"(", "format": ")" + even.format + R"(", "indexed": true}]}]})");
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

TEST(Plans, MeasureValuesWithoutTheNullsInFrontOfThem) {
  for (const EvenCase& even : kEvenCases) {
    const Scratch directory;
    otdb::Store::Create(directory / "store", SchemaOf(even));
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

}  // namespace
