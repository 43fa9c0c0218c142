// UTF-8 against a slow reference that knows nothing of blocks and buffers.

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

#include "text/texts.h"

namespace {

using Bytes = std::string;

/// Numbers of 32 bits, the same in every run.
struct Random {
  explicit Random(unsigned seed) : engine(seed) {}
  unsigned operator()() { return static_cast<unsigned>(engine()); }
  std::mt19937 engine;
};

/// One sequence from the front of `bytes`: its length and unit; length -1 for a bad one.
struct Sequence {
  int length;
  char16_t unit;
};

Sequence Reference(const Bytes& bytes) {
  constexpr std::uint64_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000, 0x200000, 0x4000000};
  if (bytes.empty()) return {-1, 0};
  const unsigned first = static_cast<unsigned char>(bytes[0]);
  if (first < 0x80) return {1, static_cast<char16_t>(first)};
  int ones = 0;
  while (ones < 8 && (first >> (7 - ones) & 1) != 0) ++ones;
  if (ones < 2 || ones > 6 || bytes.size() < static_cast<std::size_t>(ones)) return {-1, 0};
  std::uint64_t value = first & (0x7fu >> ones);
  for (int i = 1; i < ones; ++i) {
    const unsigned next = static_cast<unsigned char>(bytes[static_cast<std::size_t>(i)]);
    if (next >> 6 != 2) return {-1, 0};
    value = value * 64 + next % 64;
  }
  if (value < kLeast[ones]) return {-1, 0};
  return {ones, static_cast<char16_t>(value)};
}

/// What the functions on whole texts must answer.
struct Expected {
  std::u16string units;
  long bytes = 0;
  bool bad = false;
};

Expected ReferenceText(const Bytes& bytes, bool stopAtZero, std::size_t limit) {
  Expected all;
  while (static_cast<std::size_t>(all.bytes) < std::min(bytes.size(), limit)) {
    const Sequence next = Reference(bytes.substr(static_cast<std::size_t>(all.bytes)));
    all.bad = next.length < 0;
    if (all.bad || (stopAtZero && next.unit == 0)) break;
    all.units.push_back(next.unit);
    all.bytes += next.length;
  }
  return all;
}

/// The bytes alone on the heap, so that a read beyond them is found.
struct Exact {
  explicit Exact(const Bytes& bytes) : data(new char[bytes.size()]) {
    std::copy(bytes.begin(), bytes.end(), data.get());
  }
  std::unique_ptr<char[]> data;
};

void ExpectOne(const Bytes& bytes) {
  const Exact exact(bytes);
  unsigned short unit = 0xbeef;
  const Sequence expected = Reference(bytes);
  ASSERT_EQ(OtMultiByte2WChar(&unit, exact.data.get(), static_cast<unsigned>(bytes.size())),
            expected.length)
      << testing::PrintToString(bytes);
  ASSERT_EQ(unit, expected.length < 0 ? 0xbeef : expected.unit) << testing::PrintToString(bytes);
}

void ExpectText(const Bytes& bytes) {
  SCOPED_TRACE(bytes.size() < 100 ? testing::PrintToString(bytes) : "long");
  const Exact exact(bytes);
  const int n = static_cast<int>(bytes.size());
  const Expected plain = ReferenceText(bytes, false, bytes.size());
  const int count = plain.bad ? -1 : static_cast<int>(plain.units.size());
  ASSERT_EQ(OtMultiByteStr2WCharStr(nullptr, 0, exact.data.get(), n), count);
  const std::size_t size = plain.units.size();
  for (std::size_t room : {size, size / 2, size + 40}) {
    std::u16string units(room, u'#');  // what isn't decoded into stays as it was
    ASSERT_EQ(OtMultiByteStr2WCharStr(reinterpret_cast<unsigned short*>(units.data()),
                                      static_cast<int>(room), exact.data.get(), n),
              count);
    std::u16string expected = plain.units.substr(0, room);
    expected.resize(room, u'#');
    ASSERT_EQ(units, expected);
  }
  const Expected stopped = ReferenceText(bytes, true, 32768);
  const long result = stopped.bad ? -1 : stopped.bytes >= 32768 ? -2 : stopped.bytes;
  OtString target("before");
  target.SetLanguageCode(9);
  ASSERT_EQ(OtMBS2OtString(exact.data.get(), target, n), result);
  ASSERT_EQ(UnitsOf(target), stopped.units);
  ASSERT_EQ(target.GetCodeSetCode(), OT_CS_UNICODE);
  ASSERT_EQ(target.GetLanguageCode(), 9);
}

TEST(MultiByte, NamedSequences) {
  const struct {
    const char* name;
    Bytes bytes;
    int length;
    unsigned short unit;
  } rows[] = {
      {"zero", Bytes(1, '\0'), 1, 0},
      {"overlong zero", "\xc0\x80", -1, 0},
      {"cut", "\xe2\x82", -1, 0},
      {"euro", "\xe2\x82\xac", 3, 0x20ac},
      {"surrogate", "\xed\xa0\x80", 3, 0xd800},
      {"four bytes", "\xf0\x90\x80\x80", 4, 0},
      {"five bytes", "\xf8\x88\x80\x80\x81", 5, 1},
      {"six bytes", "\xfd\xbf\xbf\xbf\xbf\xbf", 6, 0xffff},
      {"six bytes, overlong", "\xfc\x83\xbf\xbf\xbf\xbf", -1, 0},
      {"continuation first", "\x80", -1, 0},
      {"no first byte", "\xfe\x80\x80\x80\x80\x80\x80", -1, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    unsigned short unit = 0;
    const Exact exact(row.bytes);
    EXPECT_EQ(OtMultiByte2WChar(&unit, exact.data.get(), static_cast<unsigned>(row.bytes.size())),
              row.length);
    EXPECT_EQ(unit, row.unit);
    for (std::size_t cut = 0; cut <= row.bytes.size(); ++cut) ExpectOne(row.bytes.substr(0, cut));
  }
  unsigned short unit = 7;
  EXPECT_EQ(OtMultiByte2WChar(&unit, nullptr, 3), 0);
  EXPECT_EQ(OtWChar2MultiByte(nullptr, 'a'), 0);
}

TEST(MultiByte, EveryUnitThereAndBack) {
  for (unsigned unit = 0; unit < 0x10000; ++unit) {
    char out[3];
    const int length = OtWChar2MultiByte(out, static_cast<unsigned short>(unit));
    ASSERT_EQ(length, unit < 0x80 ? 1 : unit < 0x800 ? 2 : 3);
    const Sequence back = Reference(Bytes(out, static_cast<std::size_t>(length)));
    ASSERT_EQ(back.length, length);
    ASSERT_EQ(back.unit, unit);
  }
}

TEST(MultiByte, EveryPairOfBytesAndEveryFirstWithRandomTails) {
  Random random(1);
  for (unsigned first = 0; first < 256; ++first) {
    ExpectOne(Bytes(1, static_cast<char>(first)));
    for (unsigned second = 0; second < 256; ++second) {
      Bytes bytes{static_cast<char>(first), static_cast<char>(second)};
      ExpectOne(bytes);
      for (int more = second % 8 == 0 ? 4 : 1; more != 0; --more) {
        bytes.push_back(static_cast<char>(random() % 8 != 0 ? 0x80 | random() % 64 : random()));
        ExpectOne(bytes);
      }
    }
  }
}

TEST(MultiByte, RandomTextsAtEverySplit) {
  Random random(2);
  for (int round = 0; round < 120; ++round) {
    Bytes bytes;
    const unsigned kind = random() % 4;
    const std::size_t size = random() % 60;
    while (bytes.size() < size) {
      char out[3];
      const unsigned top[] = {0x7f, 0x7ff, 0xffff, 0x7f};
      const unsigned unit = 1 + random() % top[kind];
      bytes.append(
          out, static_cast<std::size_t>(OtWChar2MultiByte(out, static_cast<unsigned short>(unit))));
      if (random() % 40 == 0) bytes.push_back(static_cast<char>(random()));
      if (kind == 3 && random() % 8 == 0) bytes.append("\xf0\x90\x80\x81");
    }
    for (std::size_t cut = 0; cut <= bytes.size(); ++cut) ExpectText(bytes.substr(0, cut));
  }
}

TEST(MultiByte, OneStrangeByteAtEveryPlaceOfAPlainText) {
  for (std::size_t size = 0; size < 70; ++size) {
    Bytes bytes(size, 'x');
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(1 + (7 * i) % 127);
    ExpectText(bytes);
    for (std::size_t place = 0; place < size; ++place) {
      for (const char* strange : {"\0", "\x80", "\xc3", "\xff"}) {
        ExpectText(Bytes(bytes).replace(place, 1, strange, 1));
      }
    }
  }
}

TEST(MultiByte, LongTextsEndAtTheirLimit) {
  FaultCount faults;
  const Bytes ascii(32767, 'x');
  ExpectText(ascii);
  ExpectText(ascii + "\xc3\xa4" + "more");
  ExpectText(ascii + Bytes(1, '\0'));
  ExpectText(ascii.substr(0, 32000) + Bytes(1, '\0') + "y");
  ExpectText(ascii + "x");
  ExpectText(ascii + "\xc3");
  ExpectText(ascii.substr(0, 32766));
  ExpectText(ascii.substr(0, 32765));
  EXPECT_EQ(faults.Get(), 6) << "32,766 characters and a terminator are 65,534 bytes";
}

TEST(MultiByte, OddArguments) {
  unsigned short unit = 0;
  char text[] = "ab";
  EXPECT_EQ(OtMultiByteStr2WCharStr(&unit, 1, nullptr, 5), 0);
  EXPECT_EQ(OtMultiByteStr2WCharStr(&unit, 1, text, -1), 0);
  EXPECT_EQ(OtMultiByteStr2WCharStr(&unit, -1, text, 2), 2);
  EXPECT_EQ(unit, 0);
  OtString target("before");
  EXPECT_EQ(OtMBS2OtString(text, target, 0), 0);
  EXPECT_EQ(UnitsOf(target), u"");
  EXPECT_EQ(OtMBS2OtString(nullptr, target, 4), -1);
  OtString own("\xc3\xa4");
  EXPECT_EQ(OtMultiByteString2OtString(own, own), 2);
  EXPECT_EQ(UnitsOf(own), u"\u00e4");
  EXPECT_EQ(OtString2OtMBS(own, nullptr, 10), 0);
}

TEST(MultiByte, StringsIntoBuffers) {
  const OtString wide = TextOf(OT_CS_UNICODE, u"a\u20acb");
  const struct {
    const char* name;
    OtString text;
    long room, result;
    Bytes out;  ///< Of eight bytes that were '#' before.
  } rows[] = {
      {"ASCII with room", OtString("abc"), 6, 3, {"abc\0\0\0##", 8}},
      {"ASCII and its terminator", OtString("abc"), 4, 3, {"abc\0####", 8}},
      {"ASCII without terminator", OtString("abc"), 3, 3, "abc#####"},
      {"ASCII cut", OtString("abc"), 2, -3, "ab######"},
      {"no room", OtString("abc"), 0, -3, "########"},
      {"negative room", OtString("abc"), -5, -3, "########"},
      {"empty", OtString(), 2, 0, {"\0\0######", 8}},
      {"empty without room", OtString(), 0, 0, "########"},
      {"accent in a byte", OtString("a\xe9"), 8, 3, {"a\xc3\xa9\0####", 8}},
      {"accent cut", OtString("a\xe9"), 2, -1, "a#######"},
      {"accent without room", OtString("\xe9"), 1, 0, "########"},
      {"wide",
       wide,
       8,
       5,
       {"a\xe2\x82\xac"
        "b\0##",
        8}},
      {"wide fills it",
       wide,
       5,
       5,
       {"a\xe2\x82\xac"
        "b###",
        8}},
      {"wide cut", wide, 3, -1, "a#######"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Bytes out(8, '#');
    EXPECT_EQ(OtString2OtMBS(row.text, out.data(), row.room), row.result);
    EXPECT_EQ(out, row.out);
  }
}

TEST(MultiByte, StringsIntoNewBuffers) {
  Random random(3);
  for (std::size_t length : {0u, 1u, 7u, 100u, 2047u, 2048u, 2049u, 32765u}) {
    for (unsigned top : {0x7fu, 0xffffu}) {
      SCOPED_TRACE(testing::Message() << length << " up to " << top);
      std::u16string units;
      Bytes expected;
      for (std::size_t i = 0; i < length; ++i) {
        char one[3];
        units.push_back(static_cast<char16_t>(1 + random() % top));
        expected.append(one, static_cast<std::size_t>(OtWChar2MultiByte(one, units.back())));
      }
      const OtString text = TextOf(OT_CS_UNICODE, units);
      const long size = static_cast<long>(expected.size());
      char* out = nullptr;
      long room = 77;
      EXPECT_EQ(OtString2MultiByteString(text, out, room), size);
      EXPECT_EQ(room, size + 1);
      EXPECT_EQ(Bytes(out), expected);
      EXPECT_EQ(OtString2MultiByteString(text, out, room), size);
      long small = size - 1;
      if (size > 1) {
        EXPECT_EQ(OtString2MultiByteString(text, out, small), -1);
        EXPECT_EQ(small, size);
      }
      EXPECT_EQ(OtMBSLength(text, 0xffff), size);
      delete[] out;
    }
  }
  EXPECT_EQ(OtMBSLength(OtString("abc"), 0), 0);
  EXPECT_EQ(OtMBSLength(OtString("abc"), 1), 3) << "plain bytes are counted to the end";
  EXPECT_EQ(OtMBSLength(OtString("a\xe9z"), 2), 3);
  EXPECT_EQ(OtMBSLength(TextOf(10, u"abc"), 1), 1) << "this set isn't trusted to be ASCII";
}

}  // namespace
