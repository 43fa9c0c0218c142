// Bytes that come from anywhere: every function answers, reads nothing behind them, and gives a
// result only for what verifies.
#include <gtest/gtest.h>

#include <random>

#include "c/arrays.h"

namespace {

using Random = std::mt19937;

unsigned Below(Random& random, unsigned limit) {
  return static_cast<unsigned>(random() % limit);
}

/// Good stored arrays of a type to begin with.
std::vector<std::string> SeedsOf(int type, unsigned form) {
  const Given made = Give([&](ot95_buffer* out) { return ot95_default(type, 0, form, out); });
  std::vector<std::string> seeds = {made.bytes, made.bytes + made.bytes};
  for (const char* text : {"{NULL}", "", "7", "ab\xc3\xa9 \xe6\x97\xa5", "(1-2#3)", "a*b"}) {
    const Given one = Scanned(type, {text}, form);
    if (one.status == OT95_OK) seeds.push_back(one.bytes);
    const Given two = Scanned(type, {text, text}, form);
    if (two.status == OT95_OK) seeds.push_back(two.bytes);
  }
  return seeds;
}

std::string Mutated(Random& random, std::string bytes) {
  const unsigned changes = Below(random, 4);
  for (unsigned i = 0; i < changes && !bytes.empty(); ++i) {
    const char noise[] = {0, 1, '\x7f', '\xff', '\xfe', '\xfd', static_cast<char>(random())};
    bytes[Below(random, static_cast<unsigned>(bytes.size()))] = noise[Below(random, sizeof noise)];
  }
  const unsigned length = static_cast<unsigned>(bytes.size()) + 1;
  if (Below(random, 3) == 0) bytes.resize(Below(random, length));
  return bytes;
}

bool IsStatus(int status) {
  return status <= OT95_OK && status > OT95_ERR_INTERNAL;
}

/// Runs every function on one array beside another. @return whether the array is good.
bool TryAll(const ot95_array& array, const ot95_array& other, unsigned options, int target) {
  int answer = 0;
  uint32_t hash = 0;
  size_t size = 0;
  std::vector<ot95_value> values(array.count);
  ot95_estimate_result result = {};
  result.struct_size = sizeof result;
  const ot95_span key = {static_cast<const char*>(other.bytes), other.size};
  const int verdict = ot95_verify(&array, &size);
  EXPECT_LE(size, array.size);
  uint64_t hash64 = 0;
  char range[2][40];
  ot95_buffer lower = {range[0], sizeof range[0], 0}, upper = {range[1], sizeof range[1], 0};
  const int statuses[] = {
      verdict,
      ot95_size(&array, OT95_FORM_NATIVE, &size),
      ot95_decode(&array, values.data()),
      ot95_compare(&array, &other, options, &answer),
      ot95_match(&other, &array, 0, &answer),
      ot95_hash(&array, &hash),
      ot95_hash64(&array, options & 0x3e0, 95, &hash64),
      ot95_sort_range(&array, OT95_EQUAL | options, 0, &lower, &upper),
      Give([&](ot95_buffer* out) { return ot95_sort_key(&array, options & 0x3e0, out); }).status,
      ot95_is_null(&array, 0, &answer),
      ot95_estimate(&array, OT95_EQUAL | OT95_LESS | (options & OT95_WILDCARDS), &key, &key,
                    &result),
      Printed(array, array.count - 1).status,
      Printed(array, 0, "%d%n%s%5M%L%x").status,
      Give([&](ot95_buffer* out) { return ot95_convert(&array, target, 1, out); }).status,
      Give([&](ot95_buffer* out) { return ot95_translate(&array, options & 0xff, out); }).status,
      Give([&](ot95_buffer* out) { return ot95_translate(&array, 0x82, out); }).status,
  };
  for (const int status : statuses) {
    EXPECT_TRUE(IsStatus(status)) << status;
    EXPECT_TRUE(verdict == OT95_OK || status != OT95_OK);
  }
  return verdict == OT95_OK;
}

TEST(Hostile, BytesOfEveryTypeAreChecked) {
  Random random(95);
  long good = 0, bad = 0;
  for (int type = 0; type < 40; ++type) {
    for (const unsigned form : {1u, 2u, 0x81u, 0x82u}) {
      const std::vector<std::string> seeds = SeedsOf(type, form & 3);
      ASSERT_FALSE(seeds[0].empty()) << type;
      for (int i = 0; i < 150; ++i) {
        const auto pick = [&] {
          return Mutated(random, seeds[Below(random, static_cast<unsigned>(seeds.size()))]);
        };
        const std::string a = pick(), b = pick();
        const ExactBlock blockA(a.data(), a.size()), blockB(b.data(), b.size());
        const size_t count = 1 + Below(random, 3);
        const ot95_array array = {type, form, blockA.data(), a.size(), count};
        const ot95_array other = {type, form, blockB.data(), b.size(), count};
        const unsigned options = Below(random, 2) * OT95_WILDCARDS | (random() & 0x3e0);
        ++(TryAll(array, other, options, static_cast<int>(Below(random, 40))) ? good : bad);
      }
    }
  }
  EXPECT_GT(good, 2000);
  EXPECT_GT(bad, 2000);
}

TEST(Hostile, CountsAndNullPointersAreRefused) {
  const short word = 7;
  uint32_t hash = 0;
  for (const size_t count : {size_t{0}, size_t{2}, ~size_t{0}, ~size_t{0} / 2 + 1}) {
    for (const int type : {1, 11, 18, 20}) {
      const ot95_array array = {type, 1, &word, sizeof word, count};
      EXPECT_LT(ot95_hash(&array, &hash), 0);
      const ot95_array none = {type, 1, nullptr, 0, count};
      EXPECT_LT(ot95_hash(&none, &hash), 0);
    }
  }
  const ot95_array missing = {1, 1, nullptr, 2, 1};
  EXPECT_EQ(ot95_hash(&missing, &hash), OT95_ERR_ARGUMENT);
  EXPECT_EQ(ot95_hash(nullptr, &hash), OT95_ERR_ARGUMENT);
  const ot95_array array = {1, 1, &word, sizeof word, 1};
  EXPECT_EQ(ot95_hash(&array, nullptr), OT95_ERR_ARGUMENT);
  EXPECT_EQ(ot95_print(&array, 0, nullptr, nullptr), OT95_ERR_ARGUMENT);
  ot95_buffer lying = {nullptr, 10, 0};
  EXPECT_EQ(ot95_print(&array, 0, nullptr, &lying), OT95_ERR_ARGUMENT);
  EXPECT_EQ(ot95_collation_open("sv", 0, nullptr), OT95_ERR_ARGUMENT);
  int sign = 0;
  EXPECT_EQ(ot95_collation_compare(nullptr, "a", 1, "b", 1, &sign), OT95_ERR_ARGUMENT);
  ot95_free(nullptr);
}

}  // namespace
