// Bytes that come from anywhere: every function answers, reads nothing behind them, and gives a
// result only for what verifies.
#include <gtest/gtest.h>

#include <random>
#include <thread>

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

/// Runs mutated arrays of every type through all functions. @return how many were good, and bad.
std::pair<long, long> TryTypes(unsigned seed, int tries) {
  Random random(seed);
  long good = 0, bad = 0;
  for (int type = 0; type < 40; ++type) {
    for (const unsigned form : {1u, 2u, 0x81u, 0x82u}) {
      const std::vector<std::string> seeds = SeedsOf(type, form & 3);
      EXPECT_FALSE(seeds[0].empty()) << type;
      for (int i = 0; i < tries; ++i) {
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
  return {good, bad};
}

TEST(Hostile, BytesOfEveryTypeAreChecked) {
  const auto [good, bad] = TryTypes(95, 150);
  EXPECT_GT(good, 2000);
  EXPECT_GT(bad, 2000);
}

/// Runs texts, good ones and any bytes, through all functions of a collation.
void TryText(const ot95_collation* collation, Random& random, const std::string& a,
             const std::string& b) {
  int answer = 0;
  size_t size = 0, place = Below(random, 20);
  uint64_t hash = 0;
  ot95_order orders[4];
  const ot95_edit edit = {
      sizeof edit,          static_cast<int>(Below(random, 9)), {a.data(), a.size()},
      {b.data(), b.size()}, {b.data(), Below(random, 2)},       Below(random, 9),
      Below(random, 9)};
  char range[2][20];
  ot95_buffer lower = {range[0], sizeof range[0], 0}, upper = {range[1], sizeof range[1], 0};
  const auto give = [&](auto function) {
    return Give([&](ot95_buffer* out) { return function(collation, a.data(), a.size(), out); })
        .status;
  };
  const int statuses[] = {
      ot95_collation_compare(collation, a.data(), a.size(), b.data(), b.size(), &answer),
      ot95_collation_match(collation, a.data(), a.size(), b.data(), b.size(), &answer),
      ot95_collation_find(collation, a.data(), a.size(), b.data(), b.size(), &answer, &size),
      ot95_collation_hash(collation, a.data(), a.size(), 1, &hash),
      ot95_collation_range(collation, a.data(), a.size(), &lower, &upper),
      ot95_collation_orders(collation, a.data(), a.size(), orders, 4, &size),
      give(ot95_collation_key),
      give(ot95_collation_upper),
      give(ot95_collation_lower),
      Give([&](ot95_buffer* out) { return ot95_collation_edit(collation, &edit, out); }).status,
      Give([&](ot95_buffer* out) {
        size_t next = place;
        return ot95_collation_split(collation, a.data(), a.size(), b.data(), b.size(), &next, out);
      }).status,
  };
  for (const int status : statuses) EXPECT_TRUE(IsStatus(status)) << status;
}

/// Texts in exact blocks, so that a read behind one is seen.
void TryTexts(const ot95_collation* collation, unsigned seed, int tries) {
  static const std::string kSeeds[] = {
      "stra\xc3\x9f"
      "e",
      "a*b?c",
      "\xd0\x9f\xd1\x80\xd0\xb8",
      "\xe6\x97\xa5\xe6\x9c\xac",
      "e\xcc\x81\xcc\xa3 x",
      "\xf0\x9f\x98\x80!",
      "1, 2,,3",
      ""};
  Random random(seed);
  const auto pick = [&] {
    std::string text;
    for (unsigned parts = Below(random, 4); parts-- > 0;) {
      text += kSeeds[Below(random, std::size(kSeeds))];
    }
    return Mutated(random, text);
  };
  for (int i = 0; i < tries; ++i) {
    const std::string a = pick(), b = Below(random, 3) == 0 ? Mutated(random, a) : pick();
    const ExactBlock blockA(a.data(), a.size()), blockB(b.data(), b.size());
    int sign = 0;
    TryText(collation, random, a, b);
    ot95_collation_compare(collation, reinterpret_cast<const char*>(blockA.data()), a.size(),
                           reinterpret_cast<const char*>(blockB.data()), b.size(), &sign);
    ot95_collation_match(collation, reinterpret_cast<const char*>(blockA.data()), a.size(),
                         reinterpret_cast<const char*>(blockB.data()), b.size(), &sign);
  }
}

TEST(Hostile, TextsOfAnyBytesAreChecked) {
  for (const char* tag : {"", "cs", "es-traditional", "zh"}) {
    for (const unsigned options : {0u, unsigned{OT95_IGNORE_CASE} | OT95_IGNORE_SPACE}) {
      ot95_collation* collation = nullptr;
      ASSERT_EQ(ot95_collation_open(tag, options, &collation), OT95_OK);
      TryTexts(collation, 15, 1500);
      ot95_free(collation);
    }
  }
}

TEST(Hostile, ThreadsMayTryAllOfItAtOnce) {
  ot95_collation* collation = nullptr;
  ASSERT_EQ(ot95_collation_open("hu", 0, &collation), OT95_OK);
  std::vector<std::thread> threads;
  for (unsigned seed = 0; seed < 4; ++seed) {
    threads.emplace_back([=] {
      TryTexts(collation, seed, 1000);
      const auto [good, bad] = TryTypes(seed, 10);
      EXPECT_GT(good, 100);
      EXPECT_GT(bad, 100);
    });
  }
  for (std::thread& thread : threads) thread.join();
  ot95_free(collation);
}

TEST(Hostile, MomentsOfAnyFieldsAreTaken) {
  Random random(12);
  const auto field = [&random] {
    const int odd[] = {0, -1, 1, 12, 31, 127, -128, 32767, -32768, 1 << 30};
    return Below(random, 3) == 0 ? static_cast<int32_t>(random()) : odd[Below(random, 10)];
  };
  for (int i = 0; i < 20000; ++i) {
    ot95_moment moments[4], result;
    for (ot95_moment& moment : moments) {
      moment = {field(), field(), field(), field(), field(), field(), field(), field(), field()};
    }
    int32_t answer = 0;
    int overlaps = 0;
    double difference = 0;
    const int type = static_cast<int>(Below(random, 26));
    const int statuses[] = {
        ot95_moment_add(type, &moments[0], field(), &result),
        ot95_moment_difference(type, &moments[0], &moments[1], &difference),
        ot95_moment_overlaps(type, &moments[0], &moments[2], &overlaps),
        ot95_moment_ask(type, static_cast<int>(Below(random, 6)), &moments[0], &answer),
        ot95_moment_of_day(field(), &result),
    };
    for (const int status : statuses) EXPECT_TRUE(IsStatus(status)) << status;
  }
}

TEST(Hostile, RecordsEndWhereTheyAreBad) {
  Random random(18);
  const ot95_member members[] = {{1, 2}, {11, 1}, {18, 1}};
  const std::string good =
      Scanned(1, {"7", "8"}, 1).bytes + Scanned(11, {"text"}, 1).bytes + Scanned(18, {""}, 1).bytes;
  ot95_array arrays[3];
  size_t end = 0;
  ASSERT_EQ(ot95_record(members, 3, 1, good.data(), good.size(), arrays, &end), OT95_OK);
  EXPECT_EQ(end, good.size());
  EXPECT_EQ(Printed(arrays[1], 0).bytes, "text");
  for (int i = 0; i < 3000; ++i) {
    const std::string bytes = Mutated(random, good);
    const ExactBlock block(bytes.data(), bytes.size());
    EXPECT_TRUE(IsStatus(ot95_record(members, 3, 1, block.data(), bytes.size(), arrays, &end)));
    EXPECT_LE(end, bytes.size());
  }
  EXPECT_EQ(ot95_record(members, 0, 1, good.data(), good.size(), arrays, &end), OT95_ERR_ARGUMENT);
  const ot95_member none = {40, 1};
  EXPECT_EQ(ot95_record(&none, 1, 1, good.data(), good.size(), arrays, &end),
            OT95_ERR_NOT_SUPPORTED);
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
