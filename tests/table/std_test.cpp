// The value classes in streams and containers of the standard library.
#include "ot95/std.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <map>
#include <sstream>
#include <unordered_map>
#include <vector>

namespace {

template <class T>
std::string Printed(const T& value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

OtString Wide(const char* text) {
  OtString wide(text);
  wide.SetCodeSet(OT_CS_UNICODE);
  return wide;
}

TEST(Streams, PrintValues) {
  OtDBOId far;
  far.lowPart = 9;
  const struct {
    std::string printed;
    const char* expected;
  } rows[] = {
      {Printed(OtString("Z\xfcrich")), "Z\xc3\xbcrich"},
      {Printed(Wide("Z\xfcrich")), "Z\xc3\xbcrich"},
      {Printed(OtString("")), ""},
      {Printed(OtIString("\x80 5")), "\xe2\x82\xac 5"},
      {Printed(OtCaseIString()), ""},
      {Printed(OtDate(2000, 1, 31)), "2000-01-31"},
      {Printed(OtTime(13, 5, 9)), "13:05:09"},
      {Printed(OtDateTime(OtDate(2000, 1, 31), OtTime(13, 5, 9))), "2000-01-31T13:05:09"},
      {Printed(d_Date(1582, 10, 4)), "1582-10-04"},
      {Printed(d_Time(13, 5, 9.5F)), "13:05:09"},
      {Printed(d_Interval(0, 1, 30)), "5400"},
      {Printed(OtInt64(-7)), "-7"},
      {Printed(OtBoolean(1)), "TRUE"},
      {Printed(OtBlob("abc", 3)), "[BLOB,len=3]"},
      {Printed(OtObjId{12, 4711, 0}), "(0-4711#12)"},
      {Printed(far), "(0-9#0)"},
      {Printed(OtSeal{0, 1, 0}), "65536"},
      {Printed(OtNull_ushort(65535)), "65535"},
      {Printed(OtNull_double()), "{NULL}"},
  };
  for (const auto& row : rows) EXPECT_EQ(row.printed, row.expected);
  OtString null;
  null.SetNullValue();
  EXPECT_EQ(Printed(null), "{NULL}");
  std::ostringstream out;
  out << std::setw(8) << OtString("Oslo") << '|';
  EXPECT_EQ(out.str(), "    Oslo|");
}

// Values that are equal though they are not the same, and one that is another.
template <class T>
void HashesAsItEquals(const T& a, const T& alike, const T& other) {
  const std::equal_to<T> equal;
  EXPECT_TRUE(equal(a, alike)) << a << " and " << alike;
  EXPECT_EQ(std::hash<T>()(a), std::hash<T>()(alike)) << a << " and " << alike;
  EXPECT_FALSE(equal(a, other)) << a << " and " << other;
  EXPECT_NE(std::hash<T>()(a), std::hash<T>()(other)) << a << " and " << other;
}

TEST(Hashes, GoWithEquality) {
  OtString raw("Z\xfcrich");
  raw.SetCodeSetCode(OT_CS_NONE);
  HashesAsItEquals(OtString("Z\xfcrich"), raw, OtString("Zurigo"));
  HashesAsItEquals(OtString("a-b"), Wide("a-b"), OtString("a-c"));
  HashesAsItEquals(OtIString("STRA\xdf"
                             "E"),
                   OtIString("strasse"), OtIString("strase"));
  HashesAsItEquals(OtCaseIString("\x8cuvre"), OtCaseIString("oeuvre"), OtCaseIString("euvre"));
  HashesAsItEquals(OtBlob("ab", 2), OtBlob("ab", 2), OtBlob("abc", 3));
  OtBoolean odd(1);
  odd.value = 2;
  HashesAsItEquals(OtBoolean(1), odd, OtBoolean(0));
  HashesAsItEquals(OtInt64(-1), OtInt64(-1), OtInt64(1));
  OtNull_double null;
  null.value = 5;
  HashesAsItEquals(null, OtNull_double(), OtNull_double(5));
  HashesAsItEquals(OtNull_double(0.0), OtNull_double(-0.0), OtNull_double(1.0));
  const OtDateTime noon(OtDate(2000, 1, 1), OtTime(12, 0, 0));
  HashesAsItEquals(noon, noon, OtDateTime(OtDate(2000, 1, 1), OtTime(12, 0, 1)));
  HashesAsItEquals(d_Date(1582, 10, 10), d_Date(1582, 10, 20), d_Date(1582, 10, 21));
  HashesAsItEquals(d_Time(10, 0, 0, 1, 0), d_Time(10, 0, 0, 5, 30), d_Time(10, 0, 0.5F));
  HashesAsItEquals(d_Interval(1), d_Interval(0, 24), d_Interval(0, 23));
  HashesAsItEquals(OtObjId{1, 2, 3}, OtObjId{9, 2, 3}, OtObjId{1, 2, 4});
  HashesAsItEquals(OtClassId{1, 2}, OtClassId{1, 2}, OtClassId{2, 1});
}

TEST(Hashes, HoldWithADefaultThatIgnores) {
  const unsigned short before = OtString::GetDefaultCmpOp();
  OtString::SetDefaultCmpOp(OT_CMP_NO_WILDCARDS | OT_CMP_IGNORE_CASE | OT_CMP_IGNORE_ACCENT |
                            OT_CMP_IGNORE_SYMBOLS | OT_CMP_IGNORE_SPACE);
  HashesAsItEquals(OtString("Co-op \xe9"), OtString("coop e"), OtString("coop"));
  OtString::SetDefaultCmpOp(before);
}

TEST(Containers, TakeValuesAsKeys) {
  std::unordered_map<OtClassId, int> classes;
  ++classes[OtClassId{1, 2}];
  ++classes[OtClassId{1, 2}];
  EXPECT_EQ(classes.size(), 1U);
  std::map<OtDateTime, int> moments;
  std::map<OtBlob, int> blobs;
  for (const int second : {5, 3, 5}) {
    ++moments[OtDateTime(OtDate(2000, 1, 1), OtTime(0, 0, second))];
    ++blobs[OtBlob("abcdef", second)];
  }
  EXPECT_EQ(moments.begin()->first.time.second, 3);
  EXPECT_EQ(blobs.begin()->first.Length(), 3);
  EXPECT_EQ(moments.size() + blobs.size(), 4U);
}

}  // namespace
