// Shares and scan limits of strings.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "ot95/text.h"
#include "table/estimating.h"
#include "text/texts.h"

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
      {"below a change of script", wide, u"a\u03b1", lt, "-", "0600fe810c7000ff0000", lt},
      {"a space that is ignored", latin, u"a b", eq | noSpace, "0a00fe010c700600107000ff",
       "0a00fe010c700600feff00ff", eq},
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
      // The walk along an operand starts in the script of its language, below all others.
      {"a script that isn't the language's", wide, u"\u03b1", u"\u03c9", u"\u03b3", eq, 0.05, 0.2},
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
      EXPECT_NEAR(again, share, 0.06) << row.name;
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

struct Alphabet {
  const char* name;
  unsigned char codeSet;
  std::u16string letters;
  char id = kString;
  unsigned short version = 5;
  const char* language = nullptr;
  std::u16string head = {};  ///< What all texts begin with.
};

class RandomTexts {
 public:
  explicit RandomTexts(const Alphabet& alphabet) : alphabet_(alphabet), types_(alphabet.version) {}

  std::u16string Next(bool pattern) {
    std::u16string units = alphabet_.head;
    for (unsigned left = Below(5); left > 0; --left) {
      units += alphabet_.letters[Below(static_cast<unsigned>(alphabet_.letters.size()))];
      if (pattern && Below(4) == 0) units += Below(2) ? u'*' : u'?';
    }
    return units;
  }
  Bytes Record(const std::u16string& units, unsigned char format) const {
    OtString text = TextOf(alphabet_.codeSet, units);
    if (alphabet_.language) {
      text.SetLanguageCode(OtLanguageContext::LanguageOfTag(alphabet_.language));
    }
    if (alphabet_.id == kString) return Stored(text, format, alphabet_.version);
    Bytes bytes = {0x40, 0, 0};
    bytes[format == OT_FORMAT_NATIVE ? 1 : 2] = static_cast<unsigned char>(units.size() + 1);
    for (const char16_t unit : units) bytes.push_back(static_cast<unsigned char>(unit));
    bytes.push_back(0);
    return bytes;
  }
  Bytes Key(Bytes stored, unsigned char format) {
    return KeyOfStored(types_, alphabet_.id, std::move(stored), format, alphabet_.version);
  }
  bool IsBetween(Bytes key, const Bounds& limits, unsigned char format) {
    const auto compare = [&](void* limit, unsigned long length) {
      int status = 0;
      return types_.Cmp(alphabet_.id, key.size(), key.data(), length, limit, noWild, 1, format,
                        status);
    };
    if (limits.lowerKey && compare(limits.lowerKey, limits.lowerKeyLength) < 0) return false;
    return !limits.upperKey || compare(limits.upperKey, limits.upperKeyLength) <= 0;
  }
  bool Satisfies(Bytes value, Bytes operand, unsigned short op, unsigned char format) {
    int status = 0;
    return ::Satisfies(types_.Cmp(alphabet_.id, value.size(), value.data(), operand.size(),
                                  operand.data(), op & 0x7ff0, 1, format, status),
                       op);
  }
  unsigned Below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }

 private:
  const Alphabet& alphabet_;
  OtTypeMgr types_;
  std::mt19937 random_{95};
};

// What a key or a pattern doesn't tell decides an inequality; and characters that are ignored can
// put a key anywhere. An engine has to look for such texts beside the limits.
bool MayEscape(const Alphabet& alphabet, const Bytes& key, const Bounds& limits, int op) {
  if (op & (noSpace | noSymbols)) return alphabet.id == kString;
  if ((op & (lt | gt)) == 0) return false;
  if (op & wild) return alphabet.id == kString;
  const auto isPartial = [](const void* bytes, std::size_t length) {
    const auto* k = static_cast<const unsigned char*>(bytes);
    return k && length > 3 && ((k[2] == OT_CS_ORDER && (k[3] & 0x80)) || length == 254);
  };
  return isPartial(key.data(), key.size()) || isPartial(limits.lowerKey, limits.lowerKeyLength) ||
         isPartial(limits.upperKey, limits.upperKeyLength);
}

// Every text that satisfies the operator has its key between the limits.
TEST(EstimateText, LimitsContainAllThatQualifies) {
  const Alphabet alphabets[] = {
      {"raw", raw, u"ab\u00e9 "},
      {"old table", raw, u"ab\u00e9 ", kString, 3},
      {"old table, cut", raw, u"ab", kString, 3, nullptr, std::u16string(249, u'a')},
      {"latin", latin, u"abAB\u00e9E\u00df1 -"},
      {"latin, cut", latin, u"abA\u00e9\u00df", kString, 5, nullptr, std::u16string(123, u'a')},
      {"contractions", wide, u"cChHdzsl ", kString, 5, "hu"},
      {"greek", wide, u"\u03b1\u03b2\u0391\u03ac -1", kString, 5, "el"},
      {"two scripts and beyond", wide, u"a\u03b1\u4e00b1 -"},
      {"many scripts", wide,
       u"A\u0301\u0410\u05d0\u3042\u0e01\u20ac\u2014\uac00\ufb01\u01c6\uf123"},
      {"legacy", raw, u"abA\u00e9\u00df\u009c", 20},
      {"legacy with cases", raw, u"abA\u00e9\u00df\u009c", 21},
  };
  const unsigned short options[] = {0,
                                    noWild,
                                    noCase,
                                    noAccent,
                                    noCase | noAccent | noWild,
                                    noSpace | noWild,
                                    noSymbols | noWild,
                                    noSymbols | noSpace,
                                    noSpace | noCase};
  for (const Alphabet& alphabet : alphabets) {
    SCOPED_TRACE(alphabet.name);
    RandomTexts texts(alphabet);
    int checked = 0, missed = 0;
    for (int round = 0; round < 2000; ++round) {
      const unsigned char format = texts.Below(2) ? OT_FORMAT_NATIVE : OT_FORMAT_BIG_ENDIAN;
      const unsigned short option = options[texts.Below(std::size(options))];
      const auto& [name, relation] = relations[texts.Below(6)];
      const auto op = static_cast<unsigned short>(relation | option);
      // Legacy strings that don't match a pattern are neither less nor greater.
      const bool pattern = !(option & noWild) && (alphabet.id == kString || relation == eq);
      const Bytes operand = texts.Record(texts.Next(pattern), format);
      Bounds limits;
      const unsigned short opAfter =
          Estimate(alphabet.id, operand, op, format, nullptr, &limits, alphabet.version).op;
      for (int i = 0; i < 8; ++i) {
        const Bytes value = texts.Record(texts.Next(false), format);
        if (!texts.Satisfies(value, operand, op, format)) continue;
        ++checked;
        const Bytes key = texts.Key(value, format);
        if (texts.IsBetween(key, limits, format) || MayEscape(alphabet, key, limits, op | opAfter))
          continue;
        if (++missed > 5) continue;
        ADD_FAILURE() << name << " options " << std::hex << option << " form " << +format
                      << "\noperand " << Hex(operand.data(), operand.size()) << "\nvalue   "
                      << Hex(value.data(), value.size()) << "\nkey     "
                      << Hex(key.data(), key.size()) << "\nlimits  " << limits.Lower() << ' '
                      << limits.Upper();
      }
    }
    EXPECT_GT(checked, 1000);
    EXPECT_EQ(missed, 0) << "of " << checked;
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
