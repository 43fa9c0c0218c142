// The rows of strings: stored bytes of both forms, moves between them, sizes, hashes, and what
// becomes of bytes that are no such array.

#include <gtest/gtest.h>

#include <random>

#include "bytes_testing.h"
#include "ot95/typemgr.h"
#include "text/texts.h"

namespace {

constexpr char kStringId = 11;
constexpr unsigned char kNative = 1;
constexpr unsigned char kBigEndian = 2;
constexpr unsigned char kMemory = 8;

OtString Labelled(const std::u16string& units, unsigned char codeSet, unsigned char language) {
  OtString text = TextOf(codeSet, units);
  text.SetLanguageCode(language);
  return text;
}

/// An old-form row is reached through a manager of old data.
struct Managers {
  OtTypeMgr current;
  OtTypeMgr legacy{3};
  OtTypeMgr& Of(bool old) { return old ? legacy : current; }
};

TEST(StringRow, StoresLiteralBytes) {
  OtString null;
  null.SetNullValue();
  OtString ab1[2] = {Labelled(u"ab", 1, 2), Labelled(u"", 1, 2)};
  OtString wide[2] = {Labelled(u"ab", OT_CS_UNICODE, 1), Labelled(u"\u20ac", OT_CS_UNICODE, 1)};
  const struct {
    const char* name;
    bool old;
    OtString* strings;
    unsigned long count;
    unsigned char format;
    const char* hex;
  } rows[] = {
      {"8-bit", false, ab1, 1, kNative, "06000102616200ff"},
      {"8-bit, big-endian", false, ab1, 1, kBigEndian, "00060102616200ff"},
      {"wide", false, wide, 1, kNative, "0800fd016100620000ff"},
      {"wide, big-endian", false, wide, 1, kBigEndian, "0008fd010061006200ff"},
      {"empty", false, ab1 + 1, 1, kNative, "0400010200ff"},
      {"null", false, &null, 1, kNative, "040000fe00ff"},
      {"array", false, ab1, 2, kNative, "06000102616200ff0400010200ff"},
      {"old form", true, ab1, 1, kNative, "0300616200"},
      {"old form, array", true, ab1, 2, kBigEndian, "000461620000"},
      {"old form of wide text", true, wide, 2, kNative,
       "050061620080"
       "00"},
  };
  Managers managers;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    OtTypeMgr& types = managers.Of(row.old);
    unsigned char disk[64];
    std::memset(disk, 0xcc, sizeof disk);
    const unsigned long size = types.Store(kStringId, disk, row.strings, row.format, row.count);
    EXPECT_EQ(Hex(disk, size), row.hex);
    EXPECT_EQ(types.DiskLenGet(kStringId, row.strings, row.format, row.count, kMemory), size);
    EXPECT_EQ(types.DiskLenGet(kStringId, disk, row.format, row.count, row.format), size);
    MemFile file(disk, size);
    EXPECT_EQ(types.DiskLenGetFromMemFile(kStringId, &file, row.format, row.count), size);
    OtString loaded[2];
    EXPECT_EQ(types.Load(kStringId, loaded, disk, row.format, row.count), size);
    for (unsigned long i = 0; i < row.count; ++i) {
      EXPECT_EQ(UnitsOf(loaded[i]).size(), UnitsOf(row.strings[i]).size());
      if (row.old) continue;
      EXPECT_EQ(UnitsOf(loaded[i]), UnitsOf(row.strings[i]));
      EXPECT_EQ(loaded[i].GetCodeSetCode(), row.strings[i].GetCodeSetCode());
      EXPECT_EQ(loaded[i].GetLanguageCode(), row.strings[i].GetLanguageCode());
    }
  }
}

TEST(StringRow, SizesFromAFile) {
  Managers managers;
  const auto bytes = Unhex("06000102616200ff0400010200ff");
  const struct {
    const char* name;
    unsigned long available, count, size;
    unsigned char format;
  } rows[] = {
      {"whole", 14, 2, 14, kNative},
      {"as keys: two words a character", 14, 2, 26 + 18, 0x81},
      {"first alone", 14, 1, 8, kNative},
      {"second cut", 13, 2, 0xffff, kNative},
      {"second missing", 8, 2, 0xffff, kNative},
      {"first cut", 7, 2, 2 * 0xffff, kNative},
      {"nothing", 1, 2, 0, kNative},
  };
  for (const auto& row : rows) {
    MemFile file(bytes.data(), row.available);
    EXPECT_EQ(managers.current.DiskLenGetFromMemFile(kStringId, &file, row.format, row.count),
              row.size)
        << row.name;
  }
  const unsigned char large[] = {0xff, 0x8f};
  MemFile file(large, 2);
  EXPECT_EQ(managers.legacy.DiskLenGetFromMemFile(kStringId, &file, kNative, 1), 0xffff9001UL);
}

TEST(StringRow, LoadsOldRecordsInTheCurrentRow) {
  OtTypeMgr types;
  const struct {
    const char* name;
    const char* hex;
    unsigned long bytes;
    const char* texts[2];
  } rows[] = {
      {"two",
       "050061006200"
       "00",
       7,
       {"a", "b"}},
      {"one of two", "0300616200", 5, {"ab", ""}},
      {"none at all", "0000", 2, {"", ""}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    ExactBlock disk(Unhex(row.hex));
    OtString loaded[2] = {"x", "y"};
    EXPECT_EQ(types.Load(kStringId, loaded, disk.data(), kNative, 2), row.bytes);
    for (int i = 0; i < 2; ++i) EXPECT_STREQ(loaded[i].StrGet(), row.texts[i]);
  }
}

TEST(StringRow, MovesStoredStrings) {
  const struct {
    const char* name;
    bool old;
    const char* source;
    unsigned char sourceFormat, targetFormat;
    unsigned long targetLength, result;
    const char* target;
  } rows[] = {
      {"plain", false, "06000102616200ff", 1, 1, 10, 8, "06000102616200ff0000"},
      {"plain, cut", false, "06000102616200ff", 1, 1, 5, 5, "0600010261"},
      {"raw", false, "06000102616200ff", 1, 0x21, 8, 8, "06000002616200ff"},
      {"raw becomes native", false, "06000002616200ff", 1, 0x41, 8, 8, "06000102616200ff"},
      {"old becomes current", false, "0300616200", 1, 1, 8, 7, "06000000616200ff"},
      {"old becomes native", false, "0300616200", 1, 0x41, 8, 7, "06000100616200ff"},
      {"old, no room", false, "0300616200", 1, 1, 3, 0, "000000"},
      {"wide stays", false, "0800fd016100620000ff", 1, 1, 10, 10, "0800fd016100620000ff"},
      {"wide made raw", false, "0800fd016100620000ff", 1, 0x21, 8, 8, "06000000616200ff"},
      {"wide made raw, big-endian", false, "0008fd010061006200ff", 2, 0x22, 9, 8,
       "00060000616200ff00"},
      {"wide made raw, cut", false, "0800fd016100620000ff", 1, 0x21, 5, 5, "0600000061"},
      {"wide made raw, cut inside a character", false, "0800fd01610062", 1, 0x21, 8, 8,
       "06000000610000ff"},
      {"wide made raw, cut inside one, big-endian", false, "0008fd01006100", 2, 0x22, 8, 8,
       "00060000610000ff"},
      {"less than a header", false, "0600", 1, 1, 4, 0, "cccccccc"},
      {"current becomes old", true, "06000102616200ff", 1, 1, 6, 5, "030061620000"},
      {"current becomes old, cut", true, "06000102616200ff", 1, 1, 4, 4, "03006162"},
      {"old stays", true, "0300616200", 1, 1, 6, 5, "030061620000"},
      {"a length below its header", true, "0100ff", 1, 1, 4, 2, "00000000"},
  };
  Managers managers;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    ExactBlock source(Unhex(row.source));
    ExactBlock target(std::vector<unsigned char>(row.targetLength, 0xcc));
    EXPECT_EQ(
        managers.Of(row.old).Translate(kStringId, target.data(), row.targetFormat, row.targetLength,
                                       source.data(), row.sourceFormat, source.size(), 1),
        row.result);
    EXPECT_EQ(Hex(target.data(), target.size()), row.target);
  }
}

int reports;
void CountReport(const char* expression, const char* file, unsigned long line) {
  reports += std::string("format combination not supported") == expression &&
             std::string("ottypes") == file && line == 1530;
}

TEST(StringRow, RefusesToChangeTheByteOrder) {
  OtTypeMgr types;
  ExactBlock source(Unhex("06000102616200ff"));
  unsigned char target[16];
  reports = 0;
  const OtAssertHandler before = OTDB_SetAssertHandler(&CountReport);
  EXPECT_EQ(types.Translate(kStringId, target, 2, 16, source.data(), 1, source.size(), 1), 0u);
  EXPECT_EQ(types.Translate(kStringId, target, 0x21, 16, source.data(), 1, source.size(), 1), 8u);
  OTDB_SetAssertHandler(before);
  EXPECT_EQ(reports, 1);
}

TEST(StringRow, Hashes) {
  OtString null;
  null.SetNullValue();
  OtString texts[2] = {"ab", "ba"};
  OtTypeMgr types;
  int status = 7;
  const auto hash = [&types, &status](OtString* value, unsigned long count) {
    return types.Hash(kStringId, 0, value, count, kMemory, status);
  };
  constexpr std::uint32_t kMultiplier = 0x41c64e6d;
  EXPECT_EQ(HashString(0, OT_LANG_NULL, "x", -1, 1), 0xfefe7575u);
  EXPECT_EQ(hash(&null, 1), std::uint32_t{0xfefe7575u * kMultiplier});
  EXPECT_EQ(HashString(0, 1, "ab", -1, 1), 'a' * 9u + 'b');
  EXPECT_EQ(HashString(0, 1, "ab", 3, 1), ('a' * 9u + 'b') * 9u) << "steps behind the end";
  EXPECT_EQ(HashString(1, 1, "ab", 0, 1), 0u);
  EXPECT_EQ(HashString(1, 1, "ab", -1, 1), std::uint32_t{0x01400c60u * 9 + 0x01401060u});
  EXPECT_EQ(hash(texts, 1), std::uint32_t{(0x01400c60u * 9 + 0x01401060u) * kMultiplier});
  const unsigned long both = hash(texts, 2);
  std::swap(texts[0], texts[1]);
  EXPECT_EQ(hash(texts, 2), both) << "the order of elements doesn't matter";
  EXPECT_EQ(HashOtString(OtString("\xe9")), 0xffffffe9u);
  EXPECT_EQ(HashOtString7(OtString("\xe9")), 0x69u);
  EXPECT_EQ(HashOtString(TextOf(OT_CS_UNICODE, u"\u20ac")), 0x20acu);
  EXPECT_EQ(HashOtString(TextOf(0xe1, u"\u3042")), HashOtString(OtString("\x42\x30")))
      << "byte by byte in other wide sets";
}

TEST(StringRow, EqualInCollationHashesEqual) {
  OtString narrow("caf\xe9");
  OtString wide = TextOf(OT_CS_UNICODE, u"caf\u00e9");
  OtString apart = TextOf(OT_CS_UNICODE, u"cafe\u0301");
  OtTypeMgr types;
  int status = 0;
  const unsigned long hash = types.Hash(kStringId, 0, &narrow, 1, kMemory, status);
  EXPECT_EQ(types.Hash(kStringId, 0, &wide, 1, kMemory, status), hash);
  EXPECT_EQ(types.Hash(kStringId, 0, &apart, 1, kMemory, status), hash);
  unsigned char disk[32];
  for (unsigned char format : {kNative, kBigEndian}) {
    types.Store(kStringId, disk, &wide, format, 1);
    EXPECT_EQ(types.Hash(kStringId, 0, disk, 1, format, status), hash);
  }
}

TEST(StringRow, ComparesStoredStrings) {
  const struct {
    const char* name;
    bool old;
    const char *value1, *value2;
    unsigned long length1, length2;
    unsigned short op;
    unsigned long count;
    int sign, status;
  } rows[] = {
      {"equal, complete", false, "06000101616200ff", "06000101616200ff", 8, 8, 0x10, 1, 0, 0},
      {"narrow and wide", false, "06000101616200ff", "0800fd016100620000ff", 8, 10, 0x10, 1, 0, 0},
      {"old and current", false, "0300616200", "06000000616200ff", 5, 8, 0x10, 1, 0, 0},
      {"second elements", false, "0600616200636400", "0600616200636500", 8, 8, 0x10, 2, -1, 0},
      {"an old array that ends", false, "0300616200", "0600616200636500", 5, 8, 0x10, 2, 0, 2101},
      {"an array that ends", false, "06000101616200ff", "06000101616200ff", 8, 8, 0x10, 2, 0, 2101},
      {"a difference where it ends", false, "06000101616200ff", "06000101616300ff", 8, 8, 0x10, 2,
       -1, 2101},
      {"without its last byte", false, "06000101616200", "06000101616200ff", 7, 8, 0x10, 1, 0, 0},
      {"first cut", false, "060001016162", "06000101616300ff", 5, 8, 0x10, 1, 0, 2101},
      {"first cut, second ends before", false, "07000101616263", "06000101616200ff", 7, 8, 0x10, 1,
       1, 0},
      {"second cut", false, "06000101616200ff", "0600010161", 8, 5, 0x10, 1, 0, 2101},
      {"both cut", false, "0600010161", "0700010161", 5, 5, 0x10, 1, 0, 2101},
      {"cut, a star at the end of the pattern", false, "070001016162", "06000101612a00ff", 6, 8, 0,
       1, 0, 0},
      {"cut before the star's place", false, "0700010161",
       "07000101"
       "61622a00ff",
       5, 9, 0, 1, 0, 2101},
      {"header cut", false, "060001", "06000101616200ff", 3, 8, 0x10, 1, 0, 2101},
      {"length cut", false, "06", "06000101616200ff", 1, 8, 0x10, 1, 0, 2101},
      {"old, cut", true, "05006162",
       "0500616263"
       "6400",
       4, 7, 0x10, 1, 0, 2101},
      {"odd wide text", false, "0700fd0161006200ff", "0600fd01610000ff", 9, 8, 0x10, 1, 0, 0},
      {"length below its header", false, "01000100ff", "0400010000ff", 5, 6, 0x10, 1, 0, 0},
  };
  Managers managers;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    ExactBlock value1(Unhex(row.value1));
    ExactBlock value2(Unhex(row.value2));
    int status = 7;
    const long result = managers.Of(row.old).Cmp(kStringId, row.length1, value1.data(), row.length2,
                                                 value2.data(), row.op, row.count, kNative, status);
    EXPECT_EQ(result < 0 ? -1 : result > 0, row.sign);
    EXPECT_EQ(status, row.status);
  }
}

TEST(StringRow, ALongTextThatIsCutHasNoAnswer) {
  OtTypeMgr types;
  OtString text(std::string(400, 'a').c_str());
  unsigned char disk[500];
  const unsigned long size = types.Store(kStringId, disk, &text, kNative, 1);
  int status = 0;
  EXPECT_EQ(types.Cmp(kStringId, 0x100, disk, size, disk, 0x10, 1, kNative, status), -1);
  EXPECT_EQ(status, OT_ERR_NOT_SUPPORTED);
  EXPECT_EQ(types.Hash(kStringId, 0x100, disk, 1, kNative, status), 0u);
  EXPECT_EQ(status, OT_ERR_NOT_SUPPORTED);
  EXPECT_EQ(types.Cmp(kStringId, 0xff, disk, size, disk, 0x10, 1, kNative, status), 0);
  EXPECT_EQ(status, OT_ERR_END_OF_DATA);
}

/// Everything that takes lengths, on bytes that may be anything; the sanitizers judge.
void Exercise(Managers& managers, const std::vector<unsigned char>& bytes,
              const std::vector<unsigned char>& other, unsigned char format, unsigned short op) {
  ExactBlock block(bytes);
  ExactBlock sound(other);
  int status = 0;
  for (bool old : {false, true}) {
    OtTypeMgr& types = managers.Of(old);
    // A length of 0 would mean as much as the record says.
    if (block.size() == 0) continue;
    for (unsigned long count : {1ul, 3ul}) {
      types.Cmp(kStringId, block.size(), block.data(), sound.size(), sound.data(), op, count,
                format, status);
      types.Cmp(kStringId, sound.size(), sound.data(), block.size(), block.data(), op, count,
                format, status);
      types.Hash(kStringId, block.size(), block.data(), count, format, status);
      OtString strings[3];
      types.Translate(kStringId, strings, kMemory, 0, block.data(), format, block.size(), count);
      for (unsigned long room : {0ul, 3ul, 4ul, 9ul, 300ul}) {
        ExactBlock target{std::vector<unsigned char>(room)};
        for (unsigned flags : {0u, 0x20u, 0x40u, 0x80u, 0xa0u, 0xc0u}) {
          const auto form = static_cast<unsigned char>((format & 15u) | flags);
          types.Translate(kStringId, target.data(), form, room, block.data(), format, block.size(),
                          count);
        }
      }
    }
    MemFile file(block.data(), block.size());
    types.DiskLenGetFromMemFile(kStringId, &file, format, 2);
  }
}

TEST(HostileStrings, StayWithinTheirLengths) {
  Managers managers;
  const char* const records[] = {"06000102616200ff",
                                 "0800fd016100620000ff",
                                 "0300616200",
                                 "0600616200636400",
                                 "0800fe010c701070"
                                 "00ff",
                                 "0800fe810c701070",
                                 "08000161636863680"
                                 "0ff",
                                 "0500ff01610000ff",
                                 "0800e1016100620000ff"};
  for (const char* record : records) {
    std::vector<unsigned char> whole = Unhex(record);
    for (unsigned form = 0; form < 0x100; ++form) {
      if ((form & 8) != 0) continue;
      const auto format = static_cast<unsigned char>(form);
      for (std::size_t size = 1; size <= whole.size(); ++size) {
        // Every truncation under a few forms, the whole under all of them.
        if (size != whole.size() && form != 1 && form != 2 && form != 0x81) continue;
        Exercise(managers, {whole.begin(), whole.begin() + static_cast<long>(size)}, whole, format,
                 (form & 16) != 0 ? 0x10 : 0);
      }
    }
    for (unsigned length : {0u, 1u, 2u, 3u, 0xfeu, 0xffffu, 0xfffdu}) {
      std::vector<unsigned char> lying = whole;
      lying[0] = static_cast<unsigned char>(length);
      lying[1] = static_cast<unsigned char>(length >> 8);
      for (unsigned char format : {kNative, kBigEndian}) {
        Exercise(managers, lying, whole, format, 0);
        Exercise(managers, lying, whole, format, 0x2f0);
      }
    }
  }
}

TEST(HostileStrings, RandomBytes) {
  Managers managers;
  std::mt19937 random(11);
  const std::vector<unsigned char> sound = Unhex("0800fd016100620000ff");
  for (int i = 0; i < 4000; ++i) {
    std::vector<unsigned char> bytes(random() % 40 + 1);
    for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(random());
    // Mostly a length that could be right.
    if (random() % 4 != 0) bytes[0] = static_cast<unsigned char>(random() % 44);
    if (bytes.size() > 1 && random() % 4 != 0) bytes[1] = 0;
    const auto format = static_cast<unsigned char>((random() % 2 + 1) | (random() & 0xf0));
    Exercise(managers, bytes, sound, format, static_cast<unsigned short>(random()));
  }
}

TEST(StringRow, NullPointersAreNullTexts) {
  OtTypeMgr types;
  ExactBlock text(Unhex("06000102616200ff"));
  int status = 7;
  for (unsigned long length : {0ul, 8ul}) {
    EXPECT_LT(types.Cmp(kStringId, length, nullptr, 0, text.data(), 0x10, 1, kNative, status), 0);
    EXPECT_GT(types.Cmp(kStringId, 0, text.data(), length, nullptr, 0x10, 1, kNative, status), 0);
    EXPECT_EQ(types.Cmp(kStringId, length, nullptr, length, nullptr, 0x10, 2, kNative, status), 0);
    EXPECT_EQ(types.Hash(kStringId, length, nullptr, 2, kNative, status), 0u);
    EXPECT_EQ(status, 0);
  }
}

TEST(StringRow, DefaultsAndNulls) {
  OtTypeMgr types;
  OtTypeMgr legacy(3);
  EXPECT_EQ(types.SupportsNullValue(kStringId), 1);
  EXPECT_EQ(legacy.SupportsNullValue(kStringId), 0);
  auto* strings = static_cast<OtString*>(types.DefaultValue(kStringId, 3, 1));
  EXPECT_TRUE(strings[2].IsNullValue());
  EXPECT_TRUE(types.IsNullValue(kStringId, strings));
  EXPECT_FALSE(legacy.IsNullValue(kStringId, strings));
  types.Delete(kStringId, strings, 3);
  strings = static_cast<OtString*>(types.DefaultValue(kStringId, 1, 0));
  EXPECT_FALSE(strings->IsNullValue());
  EXPECT_TRUE(strings->IsEmpty());
  types.Delete(kStringId, strings, 1);
}

}  // namespace
