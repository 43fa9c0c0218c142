// Keys: literal words in both byte orders, where they end, and that they compare as the texts that
// they come from, as far as they go.

#include <gtest/gtest.h>

#include "bytes_testing.h"
#include "ot95/memfile.h"
#include "ot95/typemgr.h"
#include "text/mixedtexts.h"
#include "text/texts.h"

namespace {

constexpr char kStringId = 11;
constexpr unsigned char kMemory = 8;
constexpr unsigned char kKey = 0x81;
constexpr unsigned char kKeyBigEndian = 0x82;

std::string KeyOf(OtString* strings, unsigned long count, unsigned char format,
                  unsigned long room) {
  ExactBlock target{std::vector<unsigned char>(room, 0xcc)};
  OtTypeMgr types;
  const unsigned long size =
      types.Translate(kStringId, target.data(), format, room, strings, kMemory, 0, count);
  return Hex(target.data(), size);
}

TEST(StringKey, LiteralBytes) {
  OtString null;
  null.SetNullValue();
  OtString ab = "ab";
  OtString texts[3] = {"ab", "", "b"};
  OtString sharp = "\xdf";
  OtString mixed = TextOf(OT_CS_UNICODE, u"ab1\u03b1\u03b2");
  OtString greek = TextOf(OT_CS_UNICODE, u"\u03b1");
  OtString digitFirst = TextOf(OT_CS_UNICODE, u"1\u03b1");
  const struct {
    const char* name;
    OtString* strings;
    unsigned long count;
    unsigned char format;
    unsigned long room;
    const char* hex;
  } rows[] = {
      {"native", &ab, 1, kKey, 64, "0800fe010c70107000ff"},
      {"big-endian", &ab, 1, kKeyBigEndian, 64, "0008fe01700c701000ff"},
      {"exactly its size", &ab, 1, kKey, 10, "0800fe010c70107000ff"},
      {"without terminator", &ab, 1, kKey, 9, "0800fe010c701070"},
      {"cut", &ab, 1, kKey, 7, "0600fe010c70"},
      {"header alone", &ab, 1, kKey, 4, "0400fe01"},
      {"nothing", &ab, 1, kKey, 3, ""},
      {"empty", texts + 1, 1, kKey, 64, "0400fe0100ff"},
      {"null", &null, 1, 0xc1, 64, "0400fe0000ff"},
      {"null, raw", &null, 1, kKey, 64, "040000fe00ff"},
      {"array", texts, 3, kKey, 64, "0800fe010c70107000ff0400fe0100ff0600fe01107000ff"},
      {"array, cut in its second", texts, 3, kKey, 15, "0800fe010c70107000ff0400fe01"},
      {"array, no more room", texts, 3, kKey, 14, "0800fe010c70107000ff"},
      {"expansion", &sharp, 1, kKey, 64, "0800fe01d477547000ff"},
      {"another script at first", &greek, 1, kKey, 64, "0600fe02007000ff"},
      {"a change of script", &mixed, 1, kKey, 64, "0a00fe810c7010700a3f00ff"},
      {"a change behind a digit", &digitFirst, 1, kKey, 64, "0600fe810a3f00ff"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(KeyOf(row.strings, row.count, row.format, row.room), row.hex) << row.name;
  }
}

TEST(StringKey, FitsTheRoomThatIsToldForIt) {
  OtTypeMgr types;
  const struct {
    unsigned char language;
    char16_t unit;
  } rows[] = {{1, 0xdf}, {1, 0xfb03}, {1, 0x1ec7}, {75, 0x17b2}, {75, 0x17aa}, {74, 0x104c}};
  for (const auto& row : rows) {
    const std::u16string units(30, row.unit);
    OtString text = TextOf(OT_CS_UNICODE, units.c_str());
    text.SetLanguageCode(row.language);
    const unsigned long size = types.DiskLenGet(kStringId, &text, kKey, 1, kMemory);
    EXPECT_EQ(KeyOf(&text, 1, kKey, size), KeyOf(&text, 1, kKey, 0x400))
        << std::hex << unsigned{row.unit};
    ExactBlock stored(types.DiskLenGet(kStringId, &text, 2, 1, kMemory));
    types.Store(kStringId, stored.data(), &text, 2, 1);
    MemFile file(stored.data(), stored.size());
    EXPECT_GE(types.DiskLenGetFromMemFile(kStringId, &file, 0x82, 1), size);
  }
}

TEST(StringKey, ALargeTargetAlwaysEndsTheKey) {
  OtString text(std::string(300, 'a').c_str());
  const std::string cut = KeyOf(&text, 1, kKey, 0x100);
  EXPECT_EQ(cut.size() / 2, 0x100u);
  EXPECT_EQ(cut.substr(0, 8), "0001fe01");
  EXPECT_EQ(cut.substr(cut.size() - 4), "0c70");
  const std::string ended = KeyOf(&text, 1, kKey, 0x102);
  EXPECT_EQ(ended.size() / 2, 0x102u);
  EXPECT_EQ(ended.substr(0, 8), "0001fe01");
  EXPECT_EQ(ended.substr(ended.size() - 8), "0c7000ff");
}

TEST(StringKey, FromStoredStrings) {
  const struct {
    const char* name;
    const char* source;
    unsigned char sourceFormat, targetFormat;
    unsigned long count;
    const char* hex;
  } rows[] = {
      {"8-bit", "06000101616200ff", 1, kKey, 1, "0800fe010c70107000ff"},
      {"wide, big-endian", "0008fd010061006200ff", 2, kKeyBigEndian, 1, "0008fe01700c701000ff"},
      {"to another byte order", "06000101616200ff", 1, kKeyBigEndian, 1, "0008fe01700c701000ff"},
      {"wide array", "0600fd01610000ff0600fd01620000ff", 1, kKey, 2,
       "0600fe010c7000ff0600fe01107000ff"},
      {"old form", "0300616200", 1, 0xc1, 1, "0800fe010c70107000ff"},
      {"old array",
       "0400610062"
       "00",
       1, 0xc1, 2, "0600fe010c7000ff0600fe01107000ff"},
      {"a prefix of a record", "060001016162", 1, kKey, 1, "0800fe010c701070"},
      {"a key stays", "0800fe010c70107000ff", 1, kKey, 1, "0800fe010c70107000ff"},
      {"raw stays", "06000000616200ff", 1, kKey, 1, "06000000616200ff"},
  };
  OtTypeMgr types;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    ExactBlock source(Unhex(row.source));
    unsigned char target[64];
    const unsigned long size =
        types.Translate(kStringId, target, row.targetFormat, sizeof target, source.data(),
                        row.sourceFormat, source.size(), row.count);
    EXPECT_EQ(Hex(target, size), row.hex);
  }
}

TEST(StringKey, LoadsCutKeys) {
  OtTypeMgr types;
  const struct {
    const char* name;
    const char* source;
    unsigned long count, read;
    std::u16string texts[2];
  } rows[] = {
      {"whole", "0800fe010c70107000ff", 1, 10, {u"\u700c\u7010"}},
      {"cut", "0800fe010c701070", 1, 8, {u"\u700c\u7010"}},
      {"cut further", "0800fe010c70", 1, 6, {u"\u700c"}},
      {"second missing", "0600fe010c7000ff", 2, 14, {u"\u700c", u""}},
      {"second cut", "0600fe010c7000ff0800fe011070", 2, 14, {u"\u700c", u"\u7010"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    ExactBlock source(Unhex(row.source));
    OtString keys[2];
    EXPECT_EQ(
        types.Translate(kStringId, keys, kMemory, 0, source.data(), kKey, source.size(), row.count),
        row.read);
    for (unsigned long i = 0; i < row.count; ++i) {
      EXPECT_EQ(UnitsOf(keys[i]), row.texts[i]);
      EXPECT_EQ(keys[i].GetCodeSetCode(), OT_CS_ORDER);
      EXPECT_EQ(keys[i].GetLanguageCode(), 1);
    }
  }
}

const char* const kNames[] = {"",          "a",       "A",         "ab",      "Aachen", "\xc5land",
                              "Bern",      "c\xf4te", "cot\xe9",   "C\xf4te", "D-Town", "d town",
                              "stra\337e", "strasse", "Z\xfcrich", "42",      "7"};

TEST(StringKey, ComparesAsItsText) {
  OtTypeMgr types;
  for (unsigned char format : {kKey, kKeyBigEndian}) {
    for (const char* name1 : kNames) {
      for (const char* name2 : kNames) {
        SCOPED_TRACE(std::string(name1) + " ~ " + name2);
        OtString text1 = name1;
        OtString text2 = name2;
        unsigned char key1[64];
        unsigned char key2[64];
        const unsigned long size1 =
            types.Translate(kStringId, key1, format, 64, &text1, kMemory, 0, 1);
        const unsigned long size2 =
            types.Translate(kStringId, key2, format, 64, &text2, kMemory, 0, 1);
        const unsigned char form = format & 15;
        int status = 7;
        const long keys = types.Cmp(kStringId, size1, key1, size2, key2, 0x10, 1, form, status);
        const long texts = text1.Compare(text2, 0x10);
        EXPECT_EQ(keys < 0, texts < 0);
        EXPECT_EQ(keys > 0, texts > 0);
        EXPECT_EQ(status, 0);
        // A cut key never contradicts: it may only be silent, and then says so.
        for (unsigned long room = 4; room < size1; room += 2) {
          unsigned char cut[64];
          const unsigned long size =
              types.Translate(kStringId, cut, format, room, &text1, kMemory, 0, 1);
          ExactBlock block(cut, size);
          const long result =
              types.Cmp(kStringId, size, block.data(), size2, key2, 0x70, 1, form, status);
          const long whole = text1.Compare(text2, 0x70);
          if (status != 0) continue;
          EXPECT_EQ(result < 0, whole < 0) << room;
          EXPECT_EQ(result > 0, whole > 0) << room;
        }
      }
    }
  }
}

TEST(StringKey, AreTheSameFromStoredTexts) {
  OtTypeMgr types;
  MixedTexts texts;
  for (int i = 0; i < 5000; ++i) {
    OtString text = TextOf(OT_CS_UNICODE, texts.Text(24));
    const unsigned char languages[] = {1, 15, 17, 23, 59, 0x61};
    text.SetLanguageCode(languages[texts.Number() % std::size(languages)]);
    const unsigned long room = texts.Number() % 4 == 0 ? 12 : OtINDEX_MAX_KEYLEN;
    const std::string key = KeyOf(&text, 1, kKeyBigEndian, room);
    for (const unsigned char form : {OT_FORMAT_NATIVE, OT_FORMAT_BIG_ENDIAN}) {
      std::vector<unsigned char> stored(types.DiskLenGet(kStringId, &text, form, 1, kMemory));
      types.Store(kStringId, stored.data(), &text, form, 1);
      ExactBlock source(stored), target{std::vector<unsigned char>(room, 0xcc)};
      const unsigned long size = types.Translate(kStringId, target.data(), kKeyBigEndian, room,
                                                 source.data(), form, source.size(), 1);
      ASSERT_EQ(Hex(target.data(), size), key)
          << Hex(stored.data(), stored.size()) << " form " << int{form} << " room " << room;
    }
  }
}

TEST(StringKey, AMixedKeyIsTruncated) {
  OtTypeMgr types;
  ExactBlock mixed(Unhex("0600fe810c7000ff"));
  ExactBlock plain(Unhex("0600fe010c7000ff"));
  int status = 0;
  EXPECT_EQ(types.Cmp(kStringId, 8, mixed.data(), 8, plain.data(), 0x10, 1, 1, status), 0);
  EXPECT_EQ(status, OT_ERR_END_OF_DATA);
  EXPECT_EQ(types.Cmp(kStringId, 8, plain.data(), 8, mixed.data(), 0x10, 1, 1, status), 0);
  EXPECT_EQ(status, OT_ERR_END_OF_DATA);
  EXPECT_EQ(types.Hash(kStringId, 8, mixed.data(), 1, 1, status),
            types.Hash(kStringId, 8, plain.data(), 1, 1, status));
  EXPECT_EQ(status, 0);
}

}  // namespace
