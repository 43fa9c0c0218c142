// Sort keys, ranges and hashes of all types: their bytes, and that these say what comparison says.

#include <gtest/gtest.h>

#include <random>

#include "ot95/blob.h"
#include "ot95/int64.h"
#include "sortkeys.h"
#include "text/texts.h"

namespace {

constexpr unsigned short kPlain = OT_CMP_NO_WILDCARDS;
constexpr char kString = 11, kBlob = 18, kIString = 20, kCaseIString = 21, kIllegal = 40;
constexpr unsigned char kNative = OT_FORMAT_NATIVE, kBig = OT_FORMAT_BIG_ENDIAN,
                        kMemory = OT_FORMAT_MEMORY;

bool IsText(char id) {
  return id == kString || id == kIString || id == kCaseIString;
}

// The layout is a promise: an index that was made with these bytes is read with them.
TEST(SortKey, LiteralBytes) {
  const struct {
    const char* name;
    char id;
    unsigned char format;
    const char* stored;
    unsigned short op;
    const char* key;
    int status;
  } rows[] = {
      {"char", 0, kNative, "ff", kPlain, "7f", 0},
      {"short", 1, kNative, "feff", kPlain, "7ffe", 0},
      {"short, big-endian", 1, kBig, "0102", kPlain, "8102", 0},
      {"long", 2, kBig, "80000000", kPlain, "00000000", 0},
      {"double", 3, kBig, "3ff8000000000000", kPlain, "bff8000000000000", 0},
      {"double, negative", 3, kBig, "bff8000000000000", kPlain, "4007ffffffffffff", 0},
      {"float, -0", 4, kBig, "80000000", kPlain, "80000000", 0},
      {"float, +0", 4, kBig, "00000000", kPlain, "80000000", 0},
      {"float, infinite", 4, kBig, "7f800000", kPlain, "ff800000", 0},
      {"float, not a number", 4, kBig, "ffc00001", kPlain, "00000000", OT_ERR_NOT_SUPPORTED},
      {"OtWord", 5, kNative, "0080", kPlain, "8000", 0},
      {"OtDWord", 6, kNative, "01020304", kPlain, "04030201", 0},
      {"enum", 9, kNative, "ffffffff", kPlain, "7fffffff", 0},
      {"OtByte", 10, kNative, "ff", kPlain, "ff", 0},
      {"OtDate", 12, kBig, "07d00102", kPlain, "87d08182", 0},
      {"OtDate, open, by its bytes", 12, kBig, "07d0ff02", kPlain, "87d07f82", 0},
      {"OtDate, open", 12, kBig, "07d0ff02", 0, "", OT_ERR_NOT_SUPPORTED},
      {"OtTime", 13, kBig, "0d0509", kPlain, "8d8589", 0},
      {"OtObjId", 15, kBig, "aaaaaaaa010203040506", kPlain, "060504030201", 0},
      {"OtObjId, native", 15, kNative, "aaaaaaaa010203040506", kPlain, "060504030201", 0},
      {"OtClassId", 16, kNative, "01020304", kPlain, "02010404", 0},
      {"OtClassId, null", 16, kNative, "ffffffff", kPlain, "00000000", 0},
      {"OtRef", 17, kNative, "aaaaaaaa0102030405060708bbbb", kPlain, "0807060504030201", 0},
      {"OtBlob", 18, kBig, "00000007 00000003 610062", kPlain, "016100016200 00", 0},
      {"OtBlob, empty", 18, kBig, "00000004 00000000", kPlain, "010000", 0},
      {"OtBlob, null", 18, kBig, "00000004 ffffffff", kPlain, "00", 0},
      {"OtDateTime", 19, kBig, "07d001020d0509", kPlain, "87d081828d8589", 0},
      {"OtIString", 20, kBig, "400004 616200 00", kPlain, "545b01", 0},
      {"OtIString, low bytes", 20, kBig, "400004 010203 00", kPlain, "020102020301", 0},
      {"OtCaseIString, a pattern", 21, kBig, "400003 612a 00", 0, "", OT_ERR_NOT_SUPPORTED},
      {"d_Date", 22, kBig, "07d00102", kPlain, "87d08182", 0},
      {"d_Time", 23, kBig, "0100 0c1e0a32", kPlain, "81808c9e8ab2", 0},
      {"d_Timestamp", 24, kBig, "07d001020100 0c1e0a32", kPlain, "87d0818281808c9e8ab2", 0},
      {"d_Interval", 25, kBig, "3f800000", kPlain, "bf800000", 0},
      {"OtInt64", 26, kNative, "0102030405060788", kPlain, "0807060504030201", 0},
      {"OtBoolean, null", 27, kNative, "ff", kPlain, "00", 0},
      {"OtBoolean, false", 27, kNative, "00", kPlain, "01", 0},
      {"OtBoolean, true", 27, kNative, "01", kPlain, "02", 0},
      {"OtBoolean, another", 27, kNative, "02", kPlain, "", OT_ERR_NOT_SUPPORTED},
      {"OtNull_char", 28, kNative, "0041", kPlain, "01c1", 0},
      {"OtNull_short", 30, kNative, "000500", kPlain, "018005", 0},
      {"OtNull_short, null", 30, kNative, "010500", kPlain, "00", 0},
      {"OtNull_float, not a number", 36, kBig, "007fc00000", kPlain, "01ffffffff",
       OT_ERR_NOT_SUPPORTED},
      {"OtNull_OtInt64", 38, kBig, "000000000180000000", kPlain, "010000000000000001", 0},
      {"OtSeal", 39, kNative, "010203040506", kPlain, "010203040506", 0},
      {"illegal", kIllegal, kNative, "00", kPlain, "", 0},
  };
  OtTypeMgr types;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const ExactBlock stored(Unhex(row.stored));
    const KeyValue value{row.id, stored.data(), stored.size(), 1, row.format};
    const Key key = KeyOf(types, value, row.op);
    const std::vector<unsigned char> expected = Unhex(row.key);
    EXPECT_EQ(key.Hex(), Hex(expected.data(), expected.size()));
    EXPECT_EQ(key.status, row.status);
  }
  EXPECT_EQ(OtTypeMgr::SortKeyVersion(), 1U);
}

TEST(SortKey, LiteralBytesOfTexts) {
  constexpr unsigned short ignoreAll =
      OT_CMP_IGNORE_CASE | OT_CMP_IGNORE_ACCENT | OT_CMP_IGNORE_SPACE | OT_CMP_IGNORE_SYMBOLS;
  // 60 letters passed over: 8 steps of 7 at once, and 4.
  std::string far = "35";
  for (int i = 0; i < 60; ++i) far += " 25";
  far += " 02 03 4a 01";
  const struct {
    const char* name;
    unsigned char codeSet;
    std::u16string text;
    unsigned op;
    const char* key;
    int status;
  } rows[] = {
      {"empty", OT_CS_UNICODE, u"", kPlain, "01", 0},
      {"letters", OT_CS_UNICODE, u"abc", kPlain, "25 29 2d 01", 0},
      {"a capital", OT_CS_UNICODE, u"Abc", kPlain, "25 29 2d 02 02 fd 01", 0},
      {"two capitals", OT_CS_UNICODE, u"AbC", kPlain, "25 29 2d 02 02 fd fa 01", 0},
      {"an accent", OT_CS_UNICODE, u"\u00e9a", kPlain, "35 25 02 a7 01", 0},
      {"accent and capital", OT_CS_UNICODE, u"\u00c9a", kPlain, "35 25 02 a7 02 fd 01", 0},
      {"an accent far before the end", OT_CS_UNICODE, u"\u00e9" + std::u16string(60, 'a'), kPlain,
       far.c_str(), 0},
      {"all ignored", OT_CS_UNICODE, u"\u00c9 -a", kPlain | ignoreAll, "35 25 01", 0},
      {"a space", OT_CS_UNICODE, u"a b", kPlain, "25 29 02 02 02 f3 01", 0},
      {"comma and space", OT_CS_UNICODE, u"a, b", kPlain, "25 29 02 02 02 f7 06 75 01", 0},
      {"digits", OT_CS_UNICODE, u"a10", kPlain, "25 06 04 01", 0},
      {"another script", OT_CS_UNICODE, u"a\u0430a", kPlain, "25 ff 03 19 03 01 25 01", 0},
      {"Han", OT_CS_UNICODE, u"\u4e00", kPlain, "ff 13 9b 80 01", 0},
      {"order only", OT_CS_UNICODE, u"Ab-", OT_CMP_ORDER_ONLY, "44 0c 00 44 10 60 04 74 01", 0},
      {"a pattern", OT_CS_UNICODE, u"a*", 0, "", OT_ERR_NOT_SUPPORTED},
      {"no pattern", OT_CS_UNICODE, u"a", 0, "25 01", 0},
      {"8-bit", OT_CS_BASE8, u"Abc", kPlain, "25 29 2d 02 02 fd 01", 0},
      {"raw", 0, u"A\x1\x2\u00ff", kPlain, "41 0201 0202 ff 01", 0},
  };
  OtTypeMgr types;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    OtString text = TextOf(row.codeSet, row.text);
    const KeyValue value{kString, &text, 0, 1, OT_FORMAT_MEMORY};
    const Key key = KeyOf(types, value, static_cast<unsigned short>(row.op));
    const std::vector<unsigned char> expected = Unhex(row.key);
    EXPECT_EQ(key.Hex(), Hex(expected.data(), expected.size()));
    EXPECT_EQ(key.status, row.status);
  }
}

TEST(SortKey, Hash64IsTheSameOnAllMachines) {
  OtTypeMgr types;
  OtString text = TextOf(OT_CS_UNICODE, u"Abc");
  std::string longText(500, 'x');
  OtString longer = TextOf(OT_CS_UNICODE, std::u16string(longText.begin(), longText.end()));
  OtInt64 number(-2L);
  const struct {
    const char* name;
    char id;
    void* value;
    unsigned op;
    std::uint64_t seed, hash;
  } rows[] = {
      {"text", kString, &text, kPlain, 0, 0x3ec4d169fc0a9248},
      {"seeded", kString, &text, kPlain, 7, 0x26afa2d2857193b3},
      {"ignoring case", kString, &text, kPlain | OT_CMP_IGNORE_CASE, 0, 0xbcde478ef01264a5},
      {"long", kString, &longer, kPlain, 0, 0x5b1c39b9dbd811c0},
      {"number", 26, &number, 0, 0, 0xcb05c3ebabe688ce},
  };
  for (const auto& row : rows) {
    int status = -1;
    EXPECT_EQ(types.Hash64(row.id, row.value, 0, static_cast<unsigned short>(row.op), 1,
                           OT_FORMAT_MEMORY, row.seed, status),
              row.hash)
        << row.name;
    EXPECT_EQ(status, 0);
  }
}

// Random values of one row in one form: stored bytes, of few different ones so that many are equal.
class Values {
 public:
  Values(OtTypeMgr& types, char id, unsigned char format, std::mt19937& random)
      : types_(types), id_(id), format_(format), random_(random) {}

  /// An array of `count`, kept until the next with this index.
  KeyValue Make(unsigned index, unsigned long count) {
    std::vector<unsigned char> bytes = Stored(count);
    const bool inMemory = format_ == OT_FORMAT_MEMORY;
    if (!inMemory) {
      kept_[index].stored = ExactBlock(bytes);
      return {id_, kept_[index].stored.data(), kept_[index].stored.size(), count, format_};
    }
    types_.Delete(id_, kept_[index].value, kept_[index].count);
    kept_[index].value = types_.Create(id_, count);
    kept_[index].count = count;
    types_.Load(id_, kept_[index].value, bytes.data(), kNative, count);
    return {id_, kept_[index].value, 0, count, format_};
  }
  ~Values() {
    for (auto& kept : kept_) types_.Delete(id_, kept.value, kept.count);
  }
  Values(const Values&) = delete;

 private:
  unsigned Number(unsigned below) { return static_cast<unsigned>(random_() % below); }
  unsigned char Byte() {
    constexpr unsigned char few[] = {0, 0, 0, 1, 2, 0x7f, 0x80, 0xff, 0xff, 0x41};
    return Number(4) == 0 ? static_cast<unsigned char>(Number(256)) : few[Number(std::size(few))];
  }
  std::string Text() {
    std::string text;
    for (unsigned n = Number(4); n != 0; --n) {
      text +=
          Number(3) == 0 ? static_cast<char>(std::max(1U, unsigned{Byte()})) : "aAbB*?"[Number(6)];
    }
    return text;
  }

  std::vector<unsigned char> Stored(unsigned long count) {
    const unsigned char format = format_ == OT_FORMAT_MEMORY ? kNative : format_;
    if (IsText(id_) || id_ == kBlob) return StoredOf(format, count);
    std::vector<unsigned char> bytes(types_.DiskLenGet(id_, nullptr, format, count, 8));
    for (unsigned char& byte : bytes) byte = Byte();
    return bytes;
  }
  std::vector<unsigned char> StoredOf(unsigned char format, unsigned long count) {
    void* values = types_.Create(id_, count);
    for (unsigned long i = 0; i < count; ++i) {
      void* element = types_.GetArrayElement(id_, values, i, count);
      const std::string text = Text();
      if (id_ == kBlob) {
        *static_cast<OtBlob*>(element) = OtBlob(text.data(), static_cast<long>(text.size()));
        if (Number(6) == 0) types_.SetNullValue(id_, element);
      } else {
        OtString source(text.c_str());
        types_.ScanFromOtString(id_, element, source, nullptr, 1);
      }
    }
    std::vector<unsigned char> bytes(types_.DiskLenGet(id_, values, format, count, 8));
    types_.Store(id_, bytes.data(), values, format, count);
    types_.Delete(id_, values, count);
    return bytes;
  }

  struct Kept {
    ExactBlock stored{0};
    void* value = nullptr;
    unsigned long count = 1;
  };
  OtTypeMgr& types_;
  char id_;
  unsigned char format_;
  std::mt19937& random_;
  Kept kept_[2];
};

template <class Law>
void ForEveryForm(Law&& law) {
  std::mt19937 random(20240303);
  for (const unsigned long version : {5UL, 3UL}) {
    OtTypeMgr types(version);
    for (char id = 0; id < kIllegal; ++id) {
      if (version == 3 && id != kString) continue;  // The others are shared.
      for (const unsigned char format : {kNative, kBig, kMemory}) {
        SCOPED_TRACE(testing::Message() << types.NameGet(id, nullptr) << ", version " << version
                                        << ", form " << int{format});
        Values values(types, id, format, random);
        law(types, values, random);
      }
    }
  }
}

TEST(SortKey, OrdersAsComparisonDoes) {
  ForEveryForm([](OtTypeMgr& types, Values& values, std::mt19937& random) {
    long keyed = 0;
    for (long i = CasesOf(2000); i > 0; --i) {
      const unsigned long count = random() % 4 == 0 ? 1 + random() % 3 : 1;
      const KeyValue value1 = values.Make(0, count), value2 = values.Make(1, count);
      const auto op = static_cast<unsigned short>(random() % 3 == 0 ? 0 : kPlain);
      const Key key1 = KeyOf(types, value1, op), key2 = KeyOf(types, value2, op);
      if (key1.status != 0 || key2.status != 0) {
        ASSERT_TRUE(key1.status == OT_ERR_NOT_SUPPORTED || key2.status == OT_ERR_NOT_SUPPORTED);
        continue;
      }
      ++keyed;
      int status = 0;
      const long result = Compare(types, value1, value2, op, status);
      ASSERT_EQ(Sign(result), key1.Against(key2)) << key1.Hex() << " " << key2.Hex();
      const auto hash = [&](const KeyValue& of) {
        return types.Hash64(of.id, of.value, of.length, op, count, of.format, 1, status);
      };
      ASSERT_EQ(hash(value1) == hash(value2), result == 0);
      // No key begins another, so that more can stand behind them.
      const std::size_t common = std::min(key1.bytes.size(), key2.bytes.size());
      ASSERT_EQ(std::memcmp(key1.bytes.data(), key2.bytes.data(), common) == 0, result == 0);
    }
    EXPECT_GT(keyed, CasesOf(2000) / 50);
  });
}

TEST(SortKey, EveryMatchLiesInItsRange) {
  ForEveryForm([](OtTypeMgr& types, Values& values, std::mt19937& random) {
    for (long i = CasesOf(2000); i > 0; --i) {
      const unsigned long count = random() % 6 == 0 ? 2 : 1;
      const KeyValue value = values.Make(0, count), operand = values.Make(1, count);
      const auto op = static_cast<unsigned short>(random() % 2 == 0 ? 0 : kPlain);
      const auto relation = static_cast<unsigned>(1 + random() % 7);
      const unsigned long room = random() % 3 == 0 ? 1 + random() % 6 : kMostKeyBytes;
      const Key key = KeyOf(types, value, kPlain, room);
      const Range range = RangeOf(types, operand, relation | op, kPlain, room);
      if (key.length == 0 || range.status != 0) continue;
      int status = 0;
      const int sign = Sign(Compare(types, value, operand, op, status));
      if (!IsIn(sign, relation)) continue;
      ASSERT_TRUE(range.Holds(key))
          << key.Hex() << " in " << range.Text() << ", op " << op << " relation " << relation;
    }
  });
}

// Bytes at hand that end too early, or that are no such array, are read no further than they go.
TEST(SortKey, NothingBehindALengthIsRead) {
  ForEveryForm([](OtTypeMgr& types, Values& values, std::mt19937& random) {
    for (long i = 0; i < 50; ++i) {
      const KeyValue whole = values.Make(0, 2);
      if (whole.format == OT_FORMAT_MEMORY) continue;
      // A text that lacks its last byte alone is still whole.
      const unsigned long needed = whole.length - (whole.id == kString ? 1 : 0);
      for (unsigned long length = 1; length < needed; ++length) {
        ExactBlock cut(whole.value, length);
        KeyValue value = whole;
        value.value = cut.data();
        value.length = length;
        const Key key = KeyOf(types, value, kPlain);
        EXPECT_TRUE(key.status == OT_ERR_END_OF_DATA || key.status == OT_ERR_NOT_SUPPORTED)
            << length << " of " << whole.length << ", status " << key.status;
        cut.data()[random() % length] = static_cast<unsigned char>(random());
        KeyOf(types, value, kPlain);
        RangeOf(types, value, OT_OP_EQUAL, kPlain);
      }
    }
  });
}

TEST(SortKey, TellsWhatItCannotDo) {
  OtTypeMgr types, old(3);
  unsigned char byte = 0;
  int status = 0;
  EXPECT_EQ(types.SortKey(41, nullptr, 0, &byte, 1, kPlain, 1, kNative, status), 0U);
  EXPECT_EQ(status, OT_ERR_BAD_ARGUMENT);
  EXPECT_EQ(old.SortKey(28, nullptr, 0, &byte, 1, kPlain, 1, kNative, status), 0U);
  EXPECT_EQ(status, OT_ERR_BAD_ARGUMENT);
  EXPECT_EQ(types.SortKey(0, nullptr, 0, &byte, 1, kPlain, 1, kNative, status), 1U);
  EXPECT_EQ(status, OT_ERR_END_OF_DATA) << "no room";
  EXPECT_EQ(types.SortKey(0, nullptr, 0, nullptr, 0, kPlain, 0, kNative, status), 0U);
  EXPECT_EQ(status, 0) << "no elements";
  EXPECT_EQ(types.Hash64(0, nullptr, 0, kPlain, 1, kNative, 0, status), 0U);
  EXPECT_EQ(status, OT_ERR_END_OF_DATA) << "no value";
}

}  // namespace
