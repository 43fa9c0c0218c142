// The twelve scalar rows: stored bytes, moves between forms, comparison.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <random>

#include "bytes_testing.h"
#include "ot95/typemgr.h"

namespace {

enum : char {
  kChar,
  kShort,
  kLong,
  kDouble,
  kFloat,
  kWord,
  kDWord,
  kInt,
  kUnsigned,
  kEnum,
  kByte,
  kBlockId = 14
};
constexpr char kScalars[] = {kChar,  kShort, kLong,     kDouble, kFloat, kWord,
                             kDWord, kInt,   kUnsigned, kEnum,   kByte,  kBlockId};

template <class T>
std::vector<unsigned char> BytesOf(std::initializer_list<T> values) {
  std::vector<unsigned char> bytes(values.size() * sizeof(T));
  std::memcpy(bytes.data(), values.begin(), bytes.size());
  return bytes;
}

TEST(ScalarStore, WritesPinnedBytes) {
  const struct {
    char id;
    std::vector<unsigned char> memory;
    const char* native;
    const char* bigEndian;
  } cases[] = {
      {kChar, BytesOf<signed char>({-2, 65}), "fe41", "fe41"},
      {kByte, BytesOf<unsigned char>({254, 0}), "fe00", "fe00"},
      {kShort, BytesOf<std::int16_t>({-2, 258}), "feff0201", "fffe0102"},
      {kWord, BytesOf<std::uint16_t>({0xfedc}), "dcfe", "fedc"},
      {kLong, BytesOf<OtLong>({-2, 0x01020304}), "feffffff04030201", "fffffffe01020304"},
      {kDWord, BytesOf<OtDWord>({0xfedcba98}), "98badcfe", "fedcba98"},
      {kBlockId, BytesOf<BlockId>({77}), "4d000000", "0000004d"},
      {kInt, BytesOf<int>({-3}), "fdffffff", "fffffffd"},
      {kUnsigned, BytesOf<unsigned>({0x80000001}), "01000080", "80000001"},
      {kEnum, BytesOf<int>({5}), "05000000", "00000005"},
      {kFloat, BytesOf<float>({1.5F, -0.0F}), "0000c03f00000080", "3fc0000080000000"},
      {kDouble, BytesOf<double>({-2.5}), "00000000000004c0", "c004000000000000"},
  };
  OtTypeMgr types;
  for (const auto& c : cases) {
    SCOPED_TRACE(types.NameGet(c.id, nullptr));
    const auto count = static_cast<unsigned long>(c.memory.size() / types.MemLenGet(c.id, 1));
    // Forms without a meaning of their own are native; flags of the text types don't matter.
    for (const int format : {1, 2, 8, 0, 7, 15, 0xe1, 0xe2}) {
      const std::string expected = (format & 15) == 2 ? c.bigEndian : c.native;
      std::vector<unsigned char> memory = c.memory;
      std::vector<unsigned char> disk(memory.size());
      const auto form = static_cast<unsigned char>(format);
      EXPECT_EQ(types.Store(c.id, disk.data(), memory.data(), form, count), disk.size());
      EXPECT_EQ(Hex(disk.data(), disk.size()), expected) << format;
      std::vector<unsigned char> loaded(memory.size(), 0xaa);
      EXPECT_EQ(types.Load(c.id, loaded.data(), disk.data(), form, count), disk.size());
      EXPECT_EQ(loaded, c.memory) << format;
      EXPECT_EQ(types.DiskLenGet(c.id, nullptr, form, count, 8), disk.size());
      EXPECT_EQ(types.DiskLenGetFromMemFile(c.id, nullptr, form, count), disk.size());
      EXPECT_EQ(CurrentFactory[static_cast<int>(c.id)]->NullSizeGet(count), disk.size());
    }
  }
}

TEST(ScalarStorage, ComesAsItsRowSays) {
  OtTypeMgr types;
  for (const char id : kScalars) {
    SCOPED_TRACE(types.NameGet(id, nullptr));
    const OtTypeDescriptor& row = *CurrentFactory[static_cast<int>(id)];
    for (const unsigned long count : {0UL, 1UL, 5UL}) {
      void* block = types.Create(id, count);
      ASSERT_NE(block, nullptr);
      if (id == kChar || id == kByte) {
        EXPECT_EQ(Hex(block, count), std::string(2 * count, '0'));
      }
      row.Construct(block, count, 0);
      EXPECT_EQ(Hex(block, count * row.memoryLength),
                std::string(2 * count * row.memoryLength, '0'));
      row.Destruct(block, count, 0);
      EXPECT_EQ(types.Delete(id, block, count), nullptr);
    }
    EXPECT_EQ(types.Delete(id, nullptr, 1), nullptr);
    EXPECT_EQ(types.Create(id, std::numeric_limits<unsigned long>::max()), nullptr);
    EXPECT_EQ(types.Create(id, std::numeric_limits<unsigned long>::max() / row.memoryLength),
              nullptr);
  }
}

TEST(ScalarAssign, CopiesOrFills) {
  for (const char id : kScalars) {
    const OtTypeDescriptor& row = *CurrentFactory[static_cast<int>(id)];
    SCOPED_TRACE(row.name);
    const std::size_t width = row.memoryLength;
    std::vector<unsigned char> source(3 * width);
    for (std::size_t i = 0; i < source.size(); ++i) source[i] = static_cast<unsigned char>(i + 1);
    for (const OtAssignFunc assign : {row.Assign, row.Copy}) {
      std::vector<unsigned char> target(3 * width);
      assign(target.data(), source.data(), 3, 0);
      EXPECT_EQ(target, source);
      std::vector<unsigned char> middle = source;
      assign(middle.data(), middle.data() + width, 3, 1);  // The source is one of the targets.
      for (std::size_t i = 0; i < middle.size(); ++i) {
        EXPECT_EQ(middle[i], source[width + i % width]) << i;
      }
      assign(nullptr, nullptr, 0, 0);
    }
  }
}

TEST(ScalarTranslate, MovesBetweenForms) {
  OtTypeMgr types;
  const struct {
    const char* what;
    char id;
    const char* source;
    int sourceFormat;
    unsigned long targetLength;
    int targetFormat;
    unsigned long count;
    unsigned long result;
    const char* target;  // Starts as cc bytes.
  } cases[] = {
      {"memory to memory", kShort, "010002000300", 8, 6, 8, 3, 6, "010002000300"},
      {"memory to memory, odd forms", kShort, "01000200", 9, 4, 0x4f, 2, 4, "01000200"},
      {"memory to disk", kShort, "01000200", 8, 4, 2, 2, 4, "00010002"},
      {"disk to memory", kLong, "00000001", 2, 4, 8, 1, 4, "01000000"},
      {"disk to disk keeps the form", kLong, "00000001", 2, 4, 1, 1, 4, "00000001"},
      {"disk to a longer disk", kLong, "01020304", 2, 8, 2, 1, 4, "0102030400000000"},
      {"disk to a shorter disk", kDouble, "0102030405060708", 2, 4, 2, 1, 4, "01020304"},
      {"nothing to disk", kLong, "", 1, 3, 1, 9, 0, "000000"},
      {"disk to nothing", kLong, "01", 1, 0, 1, 9, 0, ""},
  };
  for (const auto& c : cases) {
    // enum has a function of its own.
    for (const char id : {c.id, c.id == kLong ? char{kEnum} : c.id}) {
      SCOPED_TRACE(testing::Message() << c.what << ", " << types.NameGet(id, nullptr));
      ExactBlock source(Unhex(c.source));
      ExactBlock target(std::vector<unsigned char>(c.targetLength, 0xcc));
      EXPECT_EQ(types.Translate(id, target.data(), static_cast<unsigned char>(c.targetFormat),
                                target.size(), source.data(),
                                static_cast<unsigned char>(c.sourceFormat), source.size(), c.count),
                c.result);
      EXPECT_EQ(Hex(target.data(), target.size()), c.target);
    }
  }
  std::vector<unsigned char> shared = Unhex("0102030405060708");
  EXPECT_EQ(types.Translate(kLong, shared.data(), 1, 8, shared.data() + 2, 1, 4, 1), 4U);
  EXPECT_EQ(Hex(shared.data(), 8), "0304050600000000") << "source within the target";
}

struct Comparison {
  long result;
  int status;
  bool operator==(const Comparison&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Comparison& c) {
  return out << "(" << c.result << ", " << c.status << ")";
}

Comparison Compare(char id, int format, ExactBlock& one, ExactBlock& two, unsigned long count) {
  OtTypeMgr types;
  Comparison comparison{99, 99};
  comparison.result = types.Cmp(id, one.size(), one.data(), two.size(), two.data(), 0, count,
                                static_cast<unsigned char>(format), comparison.status);
  return comparison;
}

constexpr int kEnd = OT_ERR_END_OF_DATA;

TEST(ScalarCompare, OrdersByTheRow) {
  const struct {
    const char* what;
    char id;
    const char* one;
    const char* two;  // Big-endian bytes.
    long result;
  } cases[] = {
      {"signed bytes", kChar, "80", "7f", -1},
      {"unsigned bytes", kByte, "80", "7f", 1},
      {"signed words", kShort, "ffff", "0001", -1},
      {"unsigned words", kWord, "ffff", "0001", 1},
      {"low bytes don't lead", kWord, "01ff", "0200", -1},
      {"long", kLong, "80000000", "7fffffff", -1},
      {"OtDWord", kDWord, "80000000", "7fffffff", 1},
      {"BlockId", kBlockId, "ffffffff", "00000000", 1},
      {"int", kInt, "ffffffff", "00000000", -1},
      {"enum", kEnum, "ffffffff", "00000000", -1},
      {"unsigned", kUnsigned, "ffffffff", "00000000", 1},
      {"the first difference decides", kShort, "000100020003", "000100030002", -1},
      {"float", kFloat, "bf800000", "3f800000", -1},
      {"zeros are equal", kFloat, "8000000000000000", "0000000080000000", 0},
      {"behind equal zeros", kFloat, "8000000040000000", "000000003f800000", 1},
      {"infinities are equal", kFloat, "7f800000ff800000", "7f800000ff800000", 0},
      {"NaN first", kFloat, "7fc00000", "3f800000", -1},
      {"NaN second", kFloat, "3f800000", "7fc00000", -1},
      {"NaN and itself", kFloat, "7fc00000", "7fc00000", -1},
      {"double", kDouble, "c000000000000000", "3ff0000000000000", -1},
      {"double zeros", kDouble, "8000000000000000", "0000000000000000", 0},
      {"double NaN and itself", kDouble, "7ff8000000000000", "7ff8000000000000", -1},
  };
  OtTypeMgr types;
  for (const auto& c : cases) {
    for (const int format : {2, 1, 8, 3, 9, 0x82}) {
      SCOPED_TRACE(testing::Message() << c.what << ", form " << format);
      std::vector<unsigned char> one = Unhex(c.one);
      std::vector<unsigned char> two = Unhex(c.two);
      const unsigned long count = one.size() / types.MemLenGet(c.id, 1);
      if ((format & 15) != 2) {
        types.Load(c.id, one.data(), one.data(), 2, count);
        types.Load(c.id, two.data(), two.data(), 2, count);
      }
      ExactBlock first(one);
      ExactBlock second(two);
      EXPECT_EQ(Compare(c.id, format, first, second, count), (Comparison{c.result, 0}));
      EXPECT_EQ(types.Cmp(c.id, first.data(), second.data(), 0xffff, count,
                          static_cast<unsigned char>(format)),
                c.result);
    }
  }
}

TEST(ScalarCompare, ReportsWhereDataEnd) {
  const struct {
    const char* what;
    char id;
    const char* one;
    const char* two;
    unsigned long count;
    Comparison expected;
  } cases[] = {
      {"equal as far as they go", kShort, "00010002", "000100020003", 3, {0, kEnd}},
      {"a difference in the last that fits", kShort, "0001", "00020005", 2, {-1, kEnd}},
      {"a difference before it", kShort, "00010002", "00030005", 2, {-1, 0}},
      {"only the second ends", kShort, "00050001", "0001", 2, {1, kEnd}},
      {"more than asked for", kShort, "000100020003", "000100020004", 2, {0, 0}},
      {"a partial element counts", kLong, "0000000101", "0000000102", 2, {-1, 0}},
      {"a partial element reads zeros", kLong, "0000000101", "0000000101000000", 2, {0, 0}},
      {"and then the end", kLong, "0000000101", "0000000101000001", 3, {-1, kEnd}},
      {"a first partial element", kDouble, "3f", "4000000000000000", 1, {-1, 0}},
      {"partial NaN", kFloat, "7fc0", "7fc00000", 1, {-1, 0}},
      {"a byte too many", kByte, "01", "01", 5, {0, kEnd}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    ExactBlock one(Unhex(c.one));
    ExactBlock two(Unhex(c.two));
    EXPECT_EQ(Compare(c.id, OT_FORMAT_BIG_ENDIAN, one, two, c.count), c.expected);
  }
  OtTypeMgr types;
  OtLong values[3] = {1, 2, 3};
  int status = 5;
  for (const char id : kScalars) {
    EXPECT_EQ(types.Cmp(id, 0, nullptr, 0, nullptr, 0, 0, 8, status), 0);
    EXPECT_EQ(status, 0);
  }
  EXPECT_EQ(types.Cmp(kLong, 8, values, 0, values, 0, 3, 8, status), 0);
  EXPECT_EQ(status, kEnd);
  // Counts of which the bytes don't fit in a machine word.
  EXPECT_EQ(types.Cmp(kLong, 12, values, 12, values, 0, ~0UL, 8, status), 0);
  EXPECT_EQ(status, kEnd);
  EXPECT_EQ(types.Cmp(kLong, 12, values, 0, values, 0, 2 + ~0UL / 4, 8, status), 0);
  EXPECT_EQ(status, kEnd);
}

// The walk, told element by element: what the comparer, which looks for the first difference in
// large steps, has to agree with.
template <class T>
Comparison ModelOfCompare(const std::vector<T>& one, const std::vector<T>& two, std::size_t count) {
  Comparison model{0, 0};
  for (std::size_t i = 0; i < count && model.result == 0 && model.status == 0; ++i) {
    const bool below = std::is_floating_point_v<T> ? !(one[i] >= two[i]) : one[i] < two[i];
    model.result = below ? -1 : one[i] > two[i] ? 1 : 0;
    if (i + 1 < count && (i + 1 >= one.size() || i + 1 >= two.size())) model.status = kEnd;
  }
  return model;
}

template <class T>
ExactBlock Stored(char id, std::vector<T> values, int format) {
  OtTypeMgr types;
  types.Store(id, values.data(), values.data(), static_cast<unsigned char>(format), values.size());
  return ExactBlock(values.data(), values.size() * sizeof(T));
}

template <class T>
void AgreeOnLongArrays(char id, std::initializer_list<T> samples) {
  std::mt19937 random(static_cast<unsigned>(id) + 7);
  const std::vector<T> pool(samples);
  auto sample = [&] { return pool[random() % pool.size()]; };
  for (int round = 0; round < 150; ++round) {
    std::vector<T> one(1 + random() % 9000 / (1 + random() % 64));
    for (T& value : one) value = static_cast<T>(random() % 100);
    std::vector<T> two = one;
    two.resize(std::max<std::size_t>(two.size(), 3) - random() % 3, T(1));
    // Few enough differences that most walks go far.
    for (unsigned change = 0; change < random() % 4; ++change) {
      one[random() % one.size()] = sample();
      two[random() % two.size()] = sample();
    }
    if (random() % 2 != 0) one[random() % two.size() % one.size()] = two[0];
    const std::size_t count = one.size() + random() % 3;
    for (const int format : {1, 2, 8}) {
      ExactBlock first = Stored(id, one, format);
      ExactBlock second = Stored(id, two, format);
      EXPECT_EQ(Compare(id, format, first, second, count), ModelOfCompare(one, two, count))
          << "round " << round << ", form " << format;
    }
  }
}

TEST(ScalarCompare, AgreesWithTheElementWalk) {
  constexpr float infinity = std::numeric_limits<float>::infinity();
  const float nan = std::nanf("");
  AgreeOnLongArrays<signed char>(kChar, {-1, 0, 1});
  AgreeOnLongArrays<unsigned char>(kByte, {255, 0, 1});
  AgreeOnLongArrays<std::int16_t>(kShort, {-1, 0, 256});
  AgreeOnLongArrays<std::uint16_t>(kWord, {65535, 0, 256});
  AgreeOnLongArrays<OtLong>(kLong, {-1, 0, 65536});
  AgreeOnLongArrays<OtDWord>(kDWord, {0xffffffff, 0, 65536});
  AgreeOnLongArrays<float>(kFloat, {0.0F, -0.0F, 0.0F, -0.0F, infinity, -infinity, nan});
  AgreeOnLongArrays<double>(kDouble, {0.0, -0.0, 0.0, -0.0, infinity, -infinity, std::nan("")});
}

}  // namespace
