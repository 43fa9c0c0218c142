// Shares and scan limits of strings.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "estimating.h"
#include "ot95/text.h"
#include "texts.h"

namespace {

constexpr unsigned short eq = OT_OP_EQUAL, lt = OT_OP_LESS, gt = OT_OP_GREATER;
constexpr unsigned short wild = OT_OP_WILDCARD;
constexpr unsigned short noWild = OT_CMP_NO_WILDCARDS, noCase = OT_CMP_IGNORE_CASE,
                         noAccent = OT_CMP_IGNORE_ACCENT, noSpace = OT_CMP_IGNORE_SPACE,
                         noSymbols = OT_CMP_IGNORE_SYMBOLS;
constexpr char kString = 11;
constexpr unsigned char kKey = 0x80;

Bytes Stored(OtString text, unsigned char format, unsigned short version = 5) {
  OtTypeMgr types(version);
  Bytes bytes(types.DiskLenGet(kString, &text, format, 1, OT_FORMAT_MEMORY));
  bytes.resize(types.Store(kString, bytes.data(), &text, format, 1));
  return bytes;
}

// The key that an index holds.
Bytes KeyOfStored(OtTypeMgr& types, char id, Bytes stored, unsigned char format,
                  unsigned short version) {
  if (version < 5) return stored.resize(std::min<std::size_t>(stored.size(), 254)), stored;
  Bytes key(OtINDEX_MAX_KEYLEN);
  key.resize(types.Translate(id, key.data(), format | kKey, key.size(), stored.data(), format,
                             stored.size(), 1));
  return key;
}
Bytes KeyOf(const OtString& text, unsigned char format, unsigned short version = 5) {
  OtTypeMgr types(version);
  return KeyOfStored(types, kString, Stored(text, format, version), format, version);
}

OtString Text(const char16_t* units, unsigned char codeSet) {
  return TextOf(codeSet, units);
}

constexpr unsigned char raw = OT_CS_NONE, latin = OT_CS_BASE8, wide = OT_CS_UNICODE;

TEST(EstimateText, LimitsOfOperandsAndPatterns) {
  const struct {
    const char* name;
    unsigned char codeSet;
    const char16_t* operand;
    unsigned op;
    const char *lower, *upper;
    unsigned short opAfter;
  } rows[] = {
      {"raw text", raw, u"abc", eq, "070000016162 6300ff", "070000016162 6300ff", eq},
      {"raw pattern", raw, u"abc*", eq, "0700000161626300ff", "08000001616263ff00ff", eq | wild},
      {"raw star without wildcards", raw, u"a*", eq | noWild, "06000001612a00ff",
       "06000001612a00ff", eq},
      {"raw, nothing but ignored characters", raw, u"", eq | noSpace, "0400000100ff",
       "05000001ff00ff00", eq},
      {"raw, ignored characters may end it", raw, u"ab", eq | noSpace, "060000016162 00ff",
       "0600000161ff00ff", eq},
      {"text", latin, u"abc", eq, "0a00fe010c70107014 7000ff", "0a00fe010c701070147000ff", eq},
      {"pattern", latin, u"ab*", eq, "0800fe010c70107000ff", "0a00fe010c701070feff00ff", eq | wild},
      {"question mark", latin, u"a?c", eq, "0600fe010c7000ff", "0800fe010c70feff00ff", eq | wild},
      {"an expansion takes more than its bytes", latin, u"a\u00df", eq, "0a00fe010c70d477547000ff",
       "0a00fe010c70d477547000ff", eq},
      {"below a pattern", wide, u"a*", lt, "-", "0800fe010c70feff00ff", lt | wild},
      {"above a pattern", wide, u"a*", gt, "0600fe010c7000ff", "-", gt | wild},
      {"not equal", wide, u"a", lt | gt, "-", "-", lt | gt},
      {"star first", wide, u"*abc", eq, "-", "-", eq | wild},
      {"ignoring case and accents", latin, u"A\u00e9", eq | noCase | noAccent,
       "0800fe010c701c7000ff", "0800fe018c4f9c4f00ff", eq},
      {"another alphabet behind the prefix", wide, u"\u03b1a*", eq, "0600fe82007000ff0000",
       "0800fe820070feff00ff0000", eq | wild},
      {"another alphabet, all of it", wide, u"\u03b1*", eq, "0600fe02007000ff",
       "0800fe020070feff00ff", eq | wild},
      {"empty, ignoring spaces", wide, u"", eq | noSpace, "0400fe0100ff", "0600fe01feff00ff", eq},
  };
  for (const auto& row : rows) {
    for (const unsigned char format : {OT_FORMAT_NATIVE, OT_FORMAT_BIG_ENDIAN}) {
      Bounds limits;
      const Bytes operand = Stored(Text(row.operand, row.codeSet), format);
      const Estimate estimate(kString, operand, static_cast<unsigned short>(row.op), format,
                              nullptr, &limits);
      EXPECT_EQ(estimate.op, row.opAfter) << row.name;
      EXPECT_EQ(estimate.operand, operand) << row.name;
      if (format == OT_FORMAT_BIG_ENDIAN) continue;
      const auto hex = [](const std::string& text) {
        const Bytes bytes = Unhex(text);
        return text == "-" ? text : Hex(bytes.data(), bytes.size());
      };
      EXPECT_EQ(limits.Lower(), hex(row.lower)) << row.name;
      EXPECT_EQ(limits.Upper(), hex(row.upper)) << row.name;
    }
  }
}

TEST(EstimateText, Shares) {
  const struct {
    const char* name;
    unsigned char codeSet;
    const char16_t *low, *high, *operand;
    unsigned op;
    double least, most;
  } rows[] = {
      {"star first", wide, u"a", u"z", u"*abc", eq, 1, 1},
      {"star first, less", wide, u"a", u"z", u"*abc", lt, 1, 1},
      {"star first, not equal", wide, u"a", u"z", u"*abc", lt | gt, 2, 2},
      {"one letter of the alphabet", latin, u"a", u"z", u"d*", eq, 0.0099, 0.0101},
      {"half of it", latin, u"a", u"z", u"m", lt, 0.479, 0.481},
      {"behind what all begin with", latin, u"prefixa", u"prefixz", u"prefixm", lt, 0.479, 0.481},
      {"all that begin so", latin, u"apple", u"apricot", u"app*", eq, 0.0936, 0.0937},
      {"below the range", latin, u"m", u"z", u"a", eq, 0, 0},
      {"greater than the lowest", latin, u"m", u"z", u"a", gt, 1, 1},
      {"symbols don't show: less", latin, u"ab", u"ab-", u"ab-", lt, 1, 1},
      {"symbols don't show: greater", latin, u"ab", u"ab-", u"ab", gt, 1, 1},
      {"symbols don't show: none greater", latin, u"ab", u"ab-", u"ab--", gt, 0, 0},
      {"raw", raw, u"a", u"z", u"m", lt, 0.479, 0.481},
      {"raw, clipped to one number", raw, u"\u00a1", u"\u00ff", u"\u00b0", eq, 1, 1},
  };
  for (const auto& row : rows) {
    for (const unsigned char format : {OT_FORMAT_NATIVE, OT_FORMAT_BIG_ENDIAN}) {
      Bounds bounds(KeyOf(Text(row.low, row.codeSet), format),
                    KeyOf(Text(row.high, row.codeSet), format));
      Bounds limits;
      const Bytes operand = Stored(Text(row.operand, row.codeSet), format);
      const auto op = static_cast<unsigned short>(row.op);
      const float share = Estimate(kString, operand, op, format, &bounds, &limits).share;
      EXPECT_GE(share, static_cast<float>(row.least)) << row.name << " form " << +format;
      EXPECT_LE(share, static_cast<float>(row.most)) << row.name << " form " << +format;
      EXPECT_EQ(Estimate(kString, operand, op, format, &bounds, nullptr).share, 0.0F) << row.name;
      if (!limits.lowerKey || !limits.upperKey) continue;
      // A second term finds both limits there, and measures between them.
      void* const before = limits.lowerKey;
      const Bytes other = Stored(Text(u"zz", row.codeSet), format);
      const float again = Estimate(kString, other, op, format, &bounds, &limits).share;
      EXPECT_EQ(limits.lowerKey, before) << row.name;
      EXPECT_NEAR(again, share, 0.03) << row.name;
    }
  }
  Bounds limits;
  const Bytes operand = Stored(Text(u"abc", latin), 1);
  EXPECT_EQ(Estimate(kString, operand, lt, 1, nullptr, &limits).share, 1.0F);
}

TEST(EstimateText, OperandsOfOtherForms) {
  const struct {
    const char *name, *operand;
    unsigned short version, op;
    const char *lower, *upper;
  } rows[] = {
      {"old form under the current table", "03 00 6162 00", 5, eq, "060000006162 00ff",
       "06000000616200ff"},
      {"old form, pattern", "03 00 612a 00", 5, eq, "0500000061 00ff", "0600000061ff00ff"},
      {"old table", "03 00 6162 00", 3, eq, "0300616200", "0300616200"},
      {"old table, one letter", "03 00 612a 00", 3, eq, "03006100", "030061ff00"},
      {"old table, empty", "01 00 00", 3, eq, "010000", "010000"},
      {"old table, ignoring spaces", "01 00 00", 3, eq | noSpace, "010000", "0100ff0000"},
      {"no bytes at all", "00 00", 5, eq, "0400000000ff", "0400000000ff"},
      {"null", "0400 00fe 00ff", 5, eq, "-", "-"},
      {"null, no pattern", "0400 00fe 00ff", 5, eq | noWild, "040000fe00ff", "040000fe00ff"},
      {"key", "0800 fe01 0c701070 00ff", 5, eq, "0800fe010c70107000ff", "0800fe010c70107000ff"},
      {"key that ended at another alphabet", "0600 fe82 0070 00ff", 5, eq, "0600fe82007000ff",
       "0800fe820070feff00ff"},
      {"length below a header", "0200 fd01", 5, eq, "0400fe0100ff", "0400fe0100ff"},
  };
  for (const auto& row : rows) {
    Bounds limits;
    const Bytes operand = Unhex(row.operand);
    const Estimate estimate(kString, operand, row.op, 1, nullptr, &limits, row.version);
    const auto hex = [](const std::string& text) {
      const Bytes bytes = Unhex(text);
      return text == "-" ? text : Hex(bytes.data(), bytes.size());
    };
    EXPECT_EQ(limits.Lower(), hex(row.lower)) << row.name;
    EXPECT_EQ(limits.Upper(), hex(row.upper)) << row.name;
  }
}

TEST(EstimateText, LongOperandsMakeCutKeys) {
  for (const unsigned char codeSet : {raw, latin, wide}) {
    for (const std::size_t length : {123U, 124U, 125U, 126U, 247U, 248U, 249U, 250U, 300U}) {
      for (const bool pattern : {false, true}) {
        const OtString text =
            TextOf(codeSet, std::u16string(length, u'a') + (pattern ? u"*" : u""));
        Bounds limits;
        Estimate(kString, Stored(text, 2), eq, 2, nullptr, &limits);
        Bytes value = KeyOf(TextOf(codeSet, std::u16string(length + 3, u'a')), 2);
        if (!pattern) value = KeyOf(text, 2);
        OtTypeMgr types;
        for (const bool upper : {false, true}) {
          int status = 0;
          const long sign =
              types.Cmp(kString, value.size(), value.data(),
                        upper ? limits.upperKeyLength : limits.lowerKeyLength,
                        upper ? limits.upperKey : limits.lowerKey, noWild, 1, 2, status);
          EXPECT_TRUE(upper ? sign <= 0 : sign >= 0)
              << +codeSet << ' ' << length << ' ' << pattern << ' ' << upper;
        }
        if (length >= 250) {
          EXPECT_EQ(limits.lowerKeyLength, OtINDEX_MAX_KEYLEN);
        }
      }
    }
  }
}

// Keys of every length from none to a whole one, with hostile headers, in blocks of that length.
TEST(EstimateText, ReadsNoFurtherThanAKey) {
  const FaultCount quiet;  // of ranges that can't be
  std::mt19937 random(7);
  const auto byte = [&random](unsigned limit) {
    return static_cast<unsigned char>(random() % limit);
  };
  const unsigned char sets[] = {raw, latin, wide, OT_CS_ORDER, OT_CS_DEFAULT, 0x35};
  for (int round = 0; round < 2000; ++round) {
    const auto block = [&](std::size_t length) {
      Bytes bytes(length);
      for (auto& b : bytes) b = byte(byte(2) ? 256 : 4);
      if (length > 2) bytes[2] = sets[byte(std::size(sets))];
      if (length > 1 && byte(2)) bytes[0] = static_cast<unsigned char>(length - 2), bytes[1] = 0;
      return bytes;
    };
    const std::size_t length = byte(3) ? byte(12) : byte(255);
    Bytes operand = block(2 + length);
    operand[0] = static_cast<unsigned char>(length), operand[1] = 0;
    Bounds bounds(block(byte(3) ? byte(12) : byte(255)), block(byte(12)));
    Bounds limits;
    if (byte(3) == 0) Bounds::Set(limits.lowerKey, limits.lowerKeyLength, block(byte(12)));
    if (byte(3) == 0) Bounds::Set(limits.upperKey, limits.upperKeyLength, block(byte(12)));
    const std::string before = bounds.Lower() + bounds.Upper();
    const auto op = static_cast<unsigned short>(random());
    const Estimate estimate(kString, operand, op, 1, &bounds, &limits, byte(2) ? 5 : 3);
    EXPECT_EQ(estimate.operand, operand);
    EXPECT_EQ(bounds.Lower() + bounds.Upper(), before);
    EXPECT_LE(limits.lowerKeyLength, OtINDEX_MAX_KEYLEN);
    EXPECT_EQ(estimate.op & 0x7ff0, 0);
  }
}

}  // namespace
