// Blobs: values, stored forms, conversion, and damaged records.

#include "ot95/blob.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <random>
#include <string>

#include "bytes_testing.h"
#include "ot95/fault.h"
#include "ot95/memfile.h"
#include "ot95/text.h"
#include "ot95/typemgr.h"

// So that allocations can fail under the sanitizer too.
extern "C" const char* __asan_default_options();
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options() {
  return "allocator_may_return_null=1:max_allocation_size_mb=1500";
}

namespace {

constexpr char kBlob = 18;
constexpr long kLong = 0x7fffffff;

OtBlob Blob(const std::string& bytes) {
  return OtBlob(bytes.data(), static_cast<long>(bytes.size()));
}

OtBlob Null() {
  OtBlob blob;
  blob.SetNullValue();
  return blob;
}

// "" for the empty blob, "null" for the null one.
std::string Show(const OtBlob& blob) {
  if (blob.IsNullValue()) return "null";
  return std::string(reinterpret_cast<char*>(blob.data->bytes),
                     static_cast<std::size_t>(blob.Length()));
}

TEST(Blob, NullAndEmptyAreApart) {
  EXPECT_FALSE(OtBlob().IsNullValue());
  EXPECT_EQ(Show(OtBlob(nullptr, 5)), "");
  EXPECT_EQ(OtBlob(-5).Length(), 0);
  EXPECT_TRUE(OtBlob() == OtBlob());
  EXPECT_TRUE(Null() == Null());
  EXPECT_FALSE(OtBlob() == Null());
  OtBlob a = Null(), b = Blob("xyz");
  a = b;
  EXPECT_EQ(Show(a), "xyz");
  a = Null();
  EXPECT_EQ(Show(a), "null");
  b = *&b;
  EXPECT_EQ(Show(OtBlob(b)), "xyz");
}

TEST(Blob, ComparesThreeWays) {
  const struct {
    const char *a, *b;
    int result;
  } rows[] = {{"ab", "abc", -1},   {"b", "abc", 1},  {"null", "", -2},
              {"", "null", 2},     {"", "", 0},      {"ab", "ab", 0},
              {"null", "null", 0}, {"\x80", "a", 1}, {"abc", "abd", -1}};
  const auto make = [](const std::string& text) { return text == "null" ? Null() : Blob(text); };
  for (const auto& row : rows) {
    EXPECT_EQ(make(row.a) != make(row.b), row.result) << row.a << ' ' << row.b;
    EXPECT_EQ(make(row.a) == make(row.b), row.result == 0) << row.a << ' ' << row.b;
  }
}

TEST(Blob, EditsStayWithinTheBlob) {
  using Edit = void (*)(OtBlob&);
  const struct {
    const char *name, *before;
    Edit edit;
    const char* after;
  } rows[] = {
      {"append", "ab", [](OtBlob& b) { b.Append("cd", 2); }, "abcd"},
      {"append itself", "ab", [](OtBlob& b) { b += b; }, "abab"},
      {"append own bytes", "abc", [](OtBlob& b) { b.Append(b.Seek(1, 2), 2); }, "abcbc"},
      {"append to null", "null", [](OtBlob& b) { b.Append("x", 1); }, "x"},
      {"append nothing to null", "null", [](OtBlob& b) { b.Append(nullptr, 0); }, "null"},
      {"append null", "ab", [](OtBlob& b) { b.Append(Null()); }, "ab"},
      {"append beyond all lengths", "ab", [](OtBlob& b) { b.Append("x", kLong); }, "ab"},
      {"cut", "abcdef", [](OtBlob& b) { b.Cut(1, 2); }, "adef"},
      {"cut to the end", "abcdef", [](OtBlob& b) { b.Cut(2, kLong); }, "ab"},
      {"cut all", "abc", [](OtBlob& b) { b.Cut(0, 3); }, ""},
      {"cut before", "abc", [](OtBlob& b) { b.Cut(-1, 3); }, "abc"},
      {"cut behind", "abc", [](OtBlob& b) { b.Cut(4, 1); }, "abc"},
      {"cut null", "null", [](OtBlob& b) { b.Cut(0, 1); }, "null"},
      {"copy to", "abcdef", [](OtBlob& b) { b.CopyTo(Blob("XYZ"), 4, 3); }, "abcdXY"},
      {"copy to, source short", "abcdef", [](OtBlob& b) { b.CopyTo(Blob("X"), 1, 3); }, "aXcdef"},
      {"copy to before", "abc", [](OtBlob& b) { b.CopyTo(Blob("XY"), -1, 2); }, "abc"},
      {"copy to, wrapping", "abc", [](OtBlob& b) { b.CopyTo(Blob("XY"), 1, kLong); }, "aXY"},
      {"copy from null", "abc", [](OtBlob& b) { b.CopyTo(Null(), 0, 2); }, "abc"},
      {"set to a part of itself", "abcdef", [](OtBlob& b) { b.SetTo(b.Seek(2, 3), 3); }, "cde"},
      {"set null", "null", [](OtBlob& b) { b.SetTo("x", 1); }, "x"},
      {"resize down", "abcdef", [](OtBlob& b) { b.Resize(2); }, "ab"},
      {"resize to nothing", "abc", [](OtBlob& b) { b.Resize(0), b.Resize(0); }, ""},
      {"resize too far", "abc", [](OtBlob& b) { b.Resize(0x80000000UL); }, "abc"},
      {"resize null too far", "null", [](OtBlob& b) { b.Resize(0x80000000UL); }, ""},
      {"expand down", "abc", [](OtBlob& b) { b.Expand(1); }, "a"},
      {"expand below", "abc", [](OtBlob& b) { b.Expand(-1); }, ""},
  };
  for (const auto& row : rows) {
    OtBlob blob = std::string(row.before) == "null" ? Null() : Blob(row.before);
    row.edit(blob);
    EXPECT_EQ(Show(blob), row.after) << row.name;
  }
}

TEST(Blob, RangesAreCutOrRefused) {
  OtBlob blob = Blob("abcd");
  EXPECT_EQ(blob.Seek(0, 4), blob.data->bytes);
  EXPECT_EQ(blob.Seek(1, 3), blob.data->bytes + 1);
  const struct {
    long position, length;
    const char* copied;
  } rows[] = {{0, 0, ""},     {4, 1, ""},  {-1, 2, ""},       {5, 1, ""},
              {0, 5, "abcd"}, {2, -1, ""}, {1, kLong, "bcd"}, {kLong, kLong, ""}};
  for (const auto& row : rows) {
    EXPECT_EQ(blob.Seek(row.position, row.length), nullptr) << row.position << ' ' << row.length;
    EXPECT_EQ(Show(blob.CopyFrom(row.position, row.length)), row.copied) << row.position;
  }
  EXPECT_EQ(Null().Seek(0, 1), nullptr);
  EXPECT_EQ(Show(Null().CopyFrom(0, 1)), "");
}

TEST(Blob, KeepsABlockThatFits) {
  OtBlob blob(100L);
  const void* block = blob.data->bytes;
  blob.SetTo("0123456789", 10);
  EXPECT_EQ(blob.data->bytes, block);
  OtBlob grown = Blob("abcde");
  grown.Expand(300);
  grown.SetTo(grown.Seek(0, 5), 5);
  EXPECT_EQ(Show(grown), "abcde");
}

TEST(Blob, MovesByDestroy) {
  OtBlob a = Blob("old"), b = Blob("new"), null = Null();
  a.Destroy(a);
  a.Destroy(b);
  EXPECT_EQ(Show(a), "new");
  EXPECT_EQ(Show(b), "");
  a.Destroy(null);
  EXPECT_EQ(Show(a) + Show(null), "nullnull");
}

TEST(Blob, SearchAgreesWithTheObviousOne) {
  EXPECT_EQ(Blob("abcd").Search(Blob("bc")), 1);
  EXPECT_EQ(Blob("abcd").Search(Blob("x")), 65535);
  EXPECT_EQ(Blob("abcd").Search(OtBlob()), 0);
  EXPECT_EQ(Blob("abcd").Search(Null()), 65535);
  EXPECT_EQ(Null().Search(OtBlob()), 65535);
  std::mt19937 random(5);
  for (int round = 0; round < 3000; ++round) {
    std::string text(random() % 3000, 'a'), pattern(1 + random() % 40, 'a');
    // Few letters, and long runs of one: what makes searches restart.
    for (char& c : text) c = static_cast<char>('a' + (random() % 13 == 0));
    for (char& c : pattern) c = static_cast<char>('a' + (random() % 13 == 0));
    if (round % 3 == 0 && text.size() > 100) pattern = text.substr(random() % 60, 40);
    if (round % 5 == 0) pattern.insert(0, 30, 'a');
    const std::size_t place = text.find(pattern);
    ASSERT_EQ(Blob(text).Search(Blob(pattern)),
              place == std::string::npos ? 65535 : static_cast<long>(place))
        << text << ' ' << pattern;
  }
}

TEST(Blob, SearchOfALongPatternIsLinear) {
  // Every place fails in its middle: a search that starts over there would take hours.
  std::string text(3000000, 'a'), pattern(1000000, 'a');
  pattern[500000] = 'b';
  EXPECT_EQ(Blob(text).Search(Blob(pattern)), 65535);
  text[1700000] = 'b';
  EXPECT_EQ(Blob(text).Search(Blob(pattern)), 1200000);
}

TEST(Blob, StoredFormsArePinned) {
  OtTypeMgr types;
  OtBlob blobs[3] = {Blob("ab"), Null(), OtBlob()};
  const struct {
    unsigned char format;
    const char* stored;
  } rows[] = {{OT_FORMAT_NATIVE, "0e000000 02000000 6162 ffffffff 00000000"},
              {OT_FORMAT_BIG_ENDIAN, "0000000e 00000002 6162 ffffffff 00000000"}};
  for (const auto& row : rows) {
    const ExactBlock expected(Unhex(row.stored)), disk(18);
    EXPECT_EQ(types.DiskLenGet(kBlob, blobs, row.format, 3, 8), 18U);
    EXPECT_EQ(types.Store(kBlob, disk.data(), blobs, row.format, 3), 18U);
    EXPECT_EQ(Hex(disk.data(), 18), Hex(expected.data(), 18));
    EXPECT_EQ(types.DiskLenGet(kBlob, disk.data(), row.format, 3, row.format), 18U);
    MemFile file(disk.data(), 18), cut(disk.data(), 3);
    EXPECT_EQ(types.DiskLenGetFromMemFile(kBlob, &file, row.format, 3), 18U);
    EXPECT_EQ(types.DiskLenGetFromMemFile(kBlob, &cut, row.format, 3), 0U);
    OtBlob loaded[3] = {Null(), Blob("x"), Blob("y")};
    EXPECT_EQ(types.Load(kBlob, loaded, disk.data(), row.format, 3), 18U);
    EXPECT_EQ(Show(loaded[0]) + '|' + Show(loaded[1]) + '|' + Show(loaded[2]), "ab|null|");
  }
  const ExactBlock none(4);
  EXPECT_EQ(types.Store(kBlob, none.data(), nullptr, 1, 0), 4U);
  EXPECT_EQ(Hex(none.data(), 4), "00000000");
}

TEST(Blob, DamagedRecordsAreRefused) {
  const struct {
    const char* name;
    const char* stored;
    unsigned long count;
    unsigned long loaded;
    int verified;
    unsigned long good;
  } rows[] = {
      {"sound", "06000000 02000000 6162", 1, 10, 0, 10},
      {"length beyond the total", "03000000 0a000000", 1, 0, OT_ERR_BAD_ARGUMENT, 4},
      {"negative total", "00000080 00000000", 1, 0, OT_ERR_BAD_ARGUMENT, 0},
      {"no elements", "00000000", 1, 0, OT_ERR_BAD_ARGUMENT, 4},
      {"negative length", "08000000 000000f0 61626364", 1, 0, OT_ERR_BAD_ARGUMENT, 4},
      {"second missing", "05000000 01000000 61", 2, 0, OT_ERR_BAD_ARGUMENT, 9},
      {"total too great", "07000000 02000000 6162 63", 1, 11, OT_ERR_BAD_ARGUMENT, 10},
  };
  OtTypeMgr types;
  for (const auto& row : rows) {
    const ExactBlock disk(Unhex(row.stored));
    OtBlob blobs[2];
    EXPECT_EQ(types.Load(kBlob, blobs, disk.data(), 1, row.count), row.loaded) << row.name;
    unsigned long consumed = 99;
    EXPECT_EQ(types.VerifyStored(kBlob, disk.data(), disk.size(), 1, row.count, consumed),
              row.verified)
        << row.name;
    EXPECT_EQ(consumed, row.good) << row.name;
  }
  const ExactBlock whole(Unhex("06000000 02000000 6162"));
  for (unsigned long size = 0; size < whole.size(); ++size) {
    const ExactBlock cut(whole.data(), size);
    unsigned long consumed = 0;
    EXPECT_EQ(types.VerifyStored(kBlob, cut.data(), size, 1, 1, consumed), OT_ERR_END_OF_DATA);
  }
}

TEST(Blob, StoredArraysCompareAsTheyAlwaysDid) {
  const char *a = "05000000 01000000 61", *b = "05000000 01000000 62";
  const struct {
    const char* name;
    const char *bytes1, *bytes2;
    unsigned long length1, length2, count;
    long result;
  } rows[] = {
      {"equal", a, a, 0, 0, 1, 0},
      {"byte", a, b, 0, 0, 1, -1},
      {"longer", "06000000 02000000 6162", a, 0, 0, 1, 1},
      {"null first", "04000000 ffffffff", a, 0, 0, 1, -2},
      {"null second", a, "04000000 ffffffff", 0, 0, 1, 2},
      {"nulls, then a byte", "09000000 ffffffff 01000000 61", "09000000 ffffffff 01000000 62", 0, 0,
       2, -1},
      {"length too short for a word", a, b, 3, 3, 1, 0},
      {"cut before the byte", a, b, 8, 8, 1, 0},
      {"cut in the element's length", a, b, 6, 6, 1, 0},
      {"second element passed over", "0c000000 02000000 6162 02000000 6364",
       "0c000000 02000000 6162 02000000 6365", 0, 0, 2, 0},
      {"next length is met", "0a000000 01000000 61 01000000 62",
       "0b000000 01000000 61 02000000 6263", 0, 0, 2, -1},
      {"nothing", "", "", 0, 0, 0, 0},
  };
  OtTypeMgr types;
  for (const auto& row : rows) {
    const ExactBlock bytes1(Unhex(row.bytes1)), bytes2(Unhex(row.bytes2));
    // Exact blocks of the stated lengths: nothing beyond them may be read.
    const ExactBlock cut1(bytes1.data(), row.length1 ? row.length1 : bytes1.size());
    const ExactBlock cut2(bytes2.data(), row.length2 ? row.length2 : bytes2.size());
    int status = -1;
    EXPECT_EQ(types.Cmp(kBlob, row.length1, cut1.data(), row.length2, cut2.data(), 0, row.count, 1,
                        status),
              row.result)
        << row.name;
    EXPECT_EQ(status, 0) << row.name;
  }
}

TEST(Blob, HostileBytesAreNotReadBeyond) {
  std::mt19937 random(7);
  OtTypeMgr types;
  for (int round = 0; round < 20000; ++round) {
    const ExactBlock a(4 + random() % 24), b(4 + random() % 24);
    for (const ExactBlock* bytes : {&a, &b}) {
      for (unsigned long i = 0; i < bytes->size(); ++i) {
        const auto roll = random() % 16;
        bytes->data()[i] = static_cast<unsigned char>(roll == 0 ? 255 : roll < 4 ? roll * 4 : 0);
      }
    }
    int status = 0;
    types.Cmp(kBlob, a.size(), a.data(), b.size(), b.data(), 0, 5, 1, status);
    types.Hash(kBlob, a.size(), a.data(), 5, 1, status);
    unsigned long consumed = 0;
    OtBlob loaded[3];
    if (types.VerifyStored(kBlob, a.data(), a.size(), 1, 3, consumed) == 0) {
      EXPECT_EQ(types.Load(kBlob, loaded, a.data(), 1, 3), consumed);
    }
  }
}

TEST(Blob, HashesLengths) {
  OtTypeMgr types;
  OtBlob blobs[3] = {Blob("abc"), Null(), Blob("x")};
  const unsigned long expected = static_cast<std::uint32_t>(2 * 1103515245U);
  int status = -1;
  EXPECT_EQ(types.Hash(kBlob, 0, blobs, 3, 8, status), expected);
  const ExactBlock disk(20);
  types.Store(kBlob, disk.data(), blobs, 2, 3);
  EXPECT_EQ(types.Hash(kBlob, 0, disk.data(), 3, 2, status), expected);
  EXPECT_EQ(types.Hash(kBlob, 10, disk.data(), 3, 2, status), expected) << "two bytes at hand";
  EXPECT_EQ(status, 0);
}

TEST(Blob, TextTellsTheLengthAlone) {
  OtTypeMgr types;
  OtBlob blob = Blob("12345"), null = Null();
  const struct {
    OtBlob* blob;
    const char *format, *text;
  } rows[] = {{&blob, nullptr, "=[BLOB,len=5]"},
              {&blob, "%L%%%Q%s%", "=5%Qs"},
              {&null, nullptr, "{NULL}"},
              {&blob, "", "="}};
  for (const auto& row : rows) {
    OtString text("=");
    types.PrintToOtString(kBlob, text, row.blob, row.format, 1);
    EXPECT_STREQ(text.StrGet(), row.text);
  }
  OtString text("[BLOB,len=9]"), nullText("{NULL} indeed");
  EXPECT_EQ(types.ScanFromOtString(kBlob, &blob, text, nullptr, 1), &blob);
  EXPECT_EQ(Show(blob), "12345");
  types.ScanFromOtString(kBlob, &blob, nullText, nullptr, 1);
  EXPECT_TRUE(blob.IsNullValue());
}

TEST(Blob, ArraysLiveAndConvert) {
  OtTypeMgr types;
  auto* blobs = static_cast<OtBlob*>(types.Create(kBlob, 3));
  blobs[1] = Blob("abc");
  blobs[2].SetNullValue();
  OtTypeConvertData* data = types.ConvertTo(kBlob, blobs, 3);
  EXPECT_TRUE(data->GetString(1)->IsEmpty());
  EXPECT_TRUE(data->GetString(2)->IsNullValue());
  auto* back = static_cast<OtBlob*>(types.ConvertFrom(kBlob, data, 3));
  EXPECT_EQ(Show(back[1]) + Show(back[2]), "null");
  types.AssignmentPtrGet(kBlob)(back, blobs + 1, 3, 1);
  EXPECT_EQ(Show(back[0]) + Show(back[2]), "abcabc");
  delete data;
  types.Delete(kBlob, back, 3);
  types.Delete(kBlob, blobs, 3);
  void* defaults = types.DefaultValue(kBlob, 2, 1);
  EXPECT_TRUE(static_cast<OtBlob*>(defaults)[1].IsNullValue());
  types.Delete(kBlob, defaults, 2);
}

int asked = 0;
int CountRequests(unsigned long) {
  return ++asked, 0;
}

TEST(Blob, WithoutMemoryItIsEmpty) {
  rlimit before{};
  getrlimit(RLIMIT_AS, &before);
#ifndef __SANITIZE_ADDRESS__
  rlimit tight = before;
  tight.rlim_cur = 1500UL << 20;
  setrlimit(RLIMIT_AS, &tight);
#endif
  OtSetMemoryHandler(CountRequests);
  OtBlob made(2000000000L), resized = Blob("abc"), expanded = Blob("abc"), null = Null();
  resized.Resize(2000000000UL);
  expanded.Expand(2000000000L);
  null.Resize(2000000000UL);
  OtSetMemoryHandler(nullptr);
  setrlimit(RLIMIT_AS, &before);
  EXPECT_EQ(asked, 4);
  for (const OtBlob* blob : {&made, &resized, &expanded, &null}) EXPECT_EQ(blob->Length(), 0);
  EXPECT_FALSE(null.IsNullValue());
}

TEST(Blob, HundredsOfMegabytesWork) {
  OtTypeMgr types;
  const long size = 300000000;
  OtBlob blob(size);
  std::fill_n(blob.data->bytes, size, static_cast<unsigned char>('a'));
  blob.data->bytes[size - 1] = 'b';
  EXPECT_EQ(blob.Search(Blob("b")), size - 1);
  blob.Cut(10, size - 20);
  EXPECT_EQ(blob.Length(), 20);
}

}  // namespace
