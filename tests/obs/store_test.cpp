// Stored forms of scalars, byte by byte.

#include "ot95/store.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;
using Move = unsigned long (*)(void*, const void*, unsigned char, unsigned long);
using Size = unsigned long (*)(const void*, unsigned char, unsigned char, unsigned long);
using NullSize = unsigned long (*)(unsigned long);

struct Primitive {
  const char* name;
  Move store;
  Move load;
  Size size;
  NullSize nullSize;
  unsigned width;
};

void PrintTo(const Primitive& row, std::ostream* out) {
  *out << row.name;
}

const Primitive primitives[] = {
    {"char", CharStore, CharStore, CharSizeGet, CharNullSizeGet, 1},
    {"short", ShortStore, ShortStore, ShortSizeGet, ShortNullSizeGet, 2},
    {"long", LongStore, LongStore, LongSizeGet, LongNullSizeGet, 4},
    {"int", IntStore, IntLoad, IntSizeGet, IntNullSizeGet, 4},
    {"unsigned", UnsignedStore, UnsignedLoad, IntSizeGet, IntNullSizeGet, 4},
    {"float", FloatStore, FloatStore, FloatSizeGet, FloatNullSizeGet, 4},
    {"double", DoubleStore, DoubleStore, DoubleSizeGet, DoubleNullSizeGet, 8},
};

/// Bytes that differ from their neighbours over any distance that a mistake is likely to have.
Bytes Pattern(std::size_t size) {
  Bytes bytes(size);
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<unsigned char>(i * 7 + i / 251);
  return bytes;
}

Bytes ReversedByWords(Bytes bytes, unsigned width) {
  for (std::size_t at = 0; at < bytes.size(); at += width) {
    std::reverse(bytes.data() + at, bytes.data() + at + width);
  }
  return bytes;
}

class Store : public testing::TestWithParam<Primitive> {};

TEST_P(Store, FormChoosesBytesAndSizes) {
  const Primitive& row = GetParam();
  const Bytes memory = Pattern(5 * row.width);
  for (unsigned format = 0; format < 256; ++format) {
    const auto form = static_cast<unsigned char>(format);
    Bytes disk(memory.size());
    ASSERT_EQ(row.store(disk.data(), memory.data(), form, 5), memory.size());
    ASSERT_EQ(disk, (format & 15) == 2 ? ReversedByWords(memory, row.width) : memory) << format;
    Bytes back(memory.size());
    ASSERT_EQ(row.load(back.data(), disk.data(), form, 5), memory.size());
    ASSERT_EQ(back, memory) << format;
    ASSERT_EQ(row.size(nullptr, 8, form, 5), memory.size());
  }
  EXPECT_EQ(row.nullSize(3), 3 * row.width);
  EXPECT_EQ(row.store(nullptr, nullptr, 2, 0), 0u);
}

// Source and target are heap blocks that end with the last byte in use, so that the sanitizer sees
// a byte too many; what stands before the target has to stay.
TEST_P(Store, EveryAlignmentAndLength) {
  const unsigned width = GetParam().width;
  for (const std::size_t count : {1u, 2u, 3u, 15u, 16u, 17u, 31u, 33u, 63u, 64u, 65u, 129u, 300u}) {
    const Bytes memory = Pattern(count * width);
    const Bytes reversed = ReversedByWords(memory, width);
    for (std::size_t offset = 0; offset < 33; ++offset) {
      SCOPED_TRACE(std::to_string(count) + " at " + std::to_string(offset));
      Bytes source(offset + memory.size());
      std::memcpy(source.data() + offset, memory.data(), memory.size());
      Bytes target(32 - offset + memory.size(), 0xee);
      Bytes expected = target;
      std::memcpy(expected.data() + 32 - offset, reversed.data(), reversed.size());
      GetParam().store(target.data() + 32 - offset, source.data() + offset, 2, count);
      ASSERT_EQ(target, expected);
      GetParam().store(source.data() + offset, source.data() + offset, 2, count);
      ASSERT_EQ(std::memcmp(source.data() + offset, reversed.data(), reversed.size()), 0);
    }
  }
}

// Arrays beyond the caches take a way of their own, which depends on the target's alignment.
TEST_P(Store, HugeArrays) {
  const unsigned width = GetParam().width;
  const Bytes memory = Pattern((std::size_t{9} << 20) + 3 * width);
  const Bytes expected = ReversedByWords(memory, width);
  for (const std::size_t offset : {0u, 1u, 8u, 17u}) {
    Bytes target(memory.size() + offset);
    GetParam().store(&target[offset], memory.data(), 2, memory.size() / width);
    ASSERT_EQ(std::memcmp(&target[offset], expected.data(), expected.size()), 0) << offset;
    GetParam().load(&target[offset], &target[offset], 2, memory.size() / width);
    ASSERT_EQ(std::memcmp(&target[offset], memory.data(), memory.size()), 0) << offset;
  }
}

INSTANTIATE_TEST_SUITE_P(Primitives, Store, testing::ValuesIn(primitives),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(StoreInline, ReadsAndWritesFields) {
  const unsigned char field[] = {0xee, 0x80, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07};
  EXPECT_EQ(ot95::LoadAs<short>(field + 1, OT_FORMAT_BIG_ENDIAN), short{-32767});
  EXPECT_EQ(ot95::LoadAs<OtDWord>(field + 1, 0x72), 0x80010203u);
  EXPECT_EQ(ot95::LoadAs<OtDWord>(field + 1, OT_FORMAT_NATIVE), 0x03020180u);
  EXPECT_EQ(ot95::LoadAs<std::uint64_t>(field + 1, 2), 0x8001020304050607u);
  EXPECT_EQ(ot95::LoadAs<signed char>(field + 1, 2), -128);
  unsigned char target[9] = {0xee};
  ot95::StoreAs<double>(target + 1, 1.0, OT_FORMAT_BIG_ENDIAN);
  const unsigned char one[] = {0xee, 0x3f, 0xf0, 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(std::memcmp(target, one, sizeof one), 0);
}

// A signalling NaN passes as it is: it must not travel through a float register.
TEST(StoreFloat, KeepsSignallingNaN) {
  const unsigned char nan[] = {0x7f, 0xa0, 0x00, 0x01};
  float value;
  unsigned char back[4];
  FloatStore(&value, nan, 2, 1);
  FloatStore(back, &value, 2, 1);
  EXPECT_EQ(std::memcmp(back, nan, sizeof nan), 0);
}

}  // namespace
