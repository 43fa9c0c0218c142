// Editing and searching, named cases first, then against a plain model of text.

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "text/texts.h"

namespace {

TEST(Edit, NamedCases) {
  const struct {
    const char* name;
    OtString result;
    std::u16string units;
  } rows[] = {
      {"insert at the end", OtString("abc").Insert("x", 3), u"abcx"},
      {"insert past the end", OtString("abc").Insert("x", 4), u"abc"},
      {"insert nothing", OtString("abc").Insert("", 1), u"abc"},
      {"insert into none", OtString().Insert("x", 0), u"x"},
      {"replace past the end", OtString("ab").Replace("xyz", 1), u"ax"},
      {"replace behind the end", OtString("ab").Replace("x", 2), u"ab"},
      {"replace by nothing", OtString("ab").Replace("", 0), u"ab"},
      {"cut the rest", OtString("abc").Cut(1, -1), u"a"},
      {"cut at the end", OtString("abc").Cut(3, 1), u"abc"},
      {"cut too many", OtString("abc").Cut(1, 9), u"a"},
      {"cut a negative number", OtString("abc").Cut(1, -2), u"abc"},
      {"copy a negative number", OtString("abc").Copy(1, -2), u""},
      {"expand", OtString("ab").Expand(5, '.'), u"ab..."},
      {"expand a long one", OtString("ab").Expand(2, '.'), u"ab"},
      {"expand by a wide one", OtString("ab").Expand(3, static_cast<unsigned short>(0xe9)),
       u"ab\xe9"},
      {"fill", OtString("hello").Fill(3, 'x'), u"xxx"},
      {"fill wide", TextOf(OT_CS_UNICODE, u"ab").Fill(2, 'x'), u"xx"},
      {"fill none", OtString("hello").Fill(0, 'x'), u""},
      {"trim", OtString(" \t a b  ").Trim(), u"a b"},
      {"trim all", OtString("   ").Trim(), u""},
      {"trim none", OtString().Trim(), u""},
      {"trim wide", TextOf(OT_CS_UNICODE, u"\u3000a\u00a0").Trim(), u"a"},
      {"left", OtString("abc").Left(2), u"ab"},
      {"left of all", OtString("abc").Left(9), u"abc"},
      {"right", OtString("abc").Right(2), u"bc"},
      {"append itself", OtString("ab").Insert(OtString("ab"), 1), u"aabb"},
      {"append a code set", OtString("a") += TextOf(OT_CS_UNICODE, u"\u00e9"), u"a\xe9"},
      {"sum", TextOf(OT_CS_UNICODE, u"a") + "\xe9", u"a\u00e9"},
      {"number to narrow", OtString("a") << static_cast<unsigned short>(65), u"a65"},
      {"number to wide", TextOf(OT_CS_UNICODE, u"a") << static_cast<unsigned short>(65), u"aA"},
      {"numbers", OtString() << 'c' << "-" << -1 << 4294967295u << 7L << 8UL << short{3},
       u"c--1-1783"},
      {"a float shows its tail", OtString() << 0.1f, u"0.100000001490116"},
      {"a double doesn't", OtString() << 0.1, u"0.1"},
      {"replace all", OtString("aba").ReplaceAll("a", "aa"), u"aabaa"},
      {"replace all from", OtString("aba").ReplaceAll('a', 'x', 1), u"abx"},
      {"replace all by nothing", OtString("abab").ReplaceAll("a", ""), u"bb"},
      {"replace what is empty", OtString("aba").ReplaceAll("", "x"), u"aba"},
  };
  for (const auto& row : rows) EXPECT_EQ(UnitsOf(row.result), row.units) << row.name;
}

TEST(Edit, PartsKeepTheirLabelsUnlessNothingIsThere) {
  OtString text = TextOf(OT_CS_UNICODE, u"abc");
  text.SetLanguageCode(9);
  EXPECT_EQ(text.Copy(1, 1).GetCodeSetCode(), OT_CS_UNICODE);
  EXPECT_EQ(text.Copy(1, 1).GetLanguageCode(), 9);
  EXPECT_EQ(text.Copy(1, 0).GetCodeSetCode(), OT_CS_UNICODE);
  EXPECT_EQ(text.Copy(3, 1).GetCodeSetCode(), OtString::GetDefaultCodeSet());
  EXPECT_EQ(text.Right(0).GetCodeSetCode(), OtString::GetDefaultCodeSet());
  EXPECT_EQ(text.Left(0).GetCodeSetCode(), OT_CS_UNICODE);
  EXPECT_EQ(OtString("hello").Fill(0, 'x').MemLen(), 1);
}

TEST(Edit, ArgumentsMayBeTheStringItself) {
  OtString text("abc");
  text += text;
  text.Insert(text, 1);
  EXPECT_EQ(UnitsOf(text), u"aabcabcbcabc");
  text.Replace(text, 6);
  EXPECT_EQ(UnitsOf(text), u"aabcabaabcab");
  text.ReplaceAll(text, text + "!");
  EXPECT_EQ(UnitsOf(text), u"aabcabaabcab!");
  OtString list("a,b"), comma(",");
  unsigned short pos = 0;
  EXPECT_EQ(OtSplitList(list, comma, comma, pos), 0);
  EXPECT_EQ(UnitsOf(comma), u"a");
}

TEST(Find, NamedCases) {
  const struct {
    const char* name;
    OtString text, pattern;
    unsigned short start, cmpOp;
    short place;
  } rows[] = {
      {"plain", "abc", "b", 0, OT_CMP_NO_WILDCARDS, 1},
      {"default", "abc", "b", 0, OT_CMP_DEFAULT, 1},
      {"at the end", "abc", "bc", 1, OT_CMP_DEFAULT, 1},
      {"too long", "abc", "abcd", 0, OT_CMP_DEFAULT, -1},
      {"longer by its width only", "abcd", TextOf(OT_CS_UNICODE, u"bcd"), 0, OT_CMP_DEFAULT, 1},
      {"start at the end", "abc", "c", 3, OT_CMP_DEFAULT, -1},
      {"start past the end", "abc", "c", 4, OT_CMP_DEFAULT, -1},
      {"question mark", "abc", "a?c", 0, 0, 0},
      {"star that stands for nothing", "ac", "a*c", 0, 0, 0},
      {"rest after a match", "xabcd", "ab", 0, 0, 1},
      {"empty pattern", "abc", "", 0, OT_CMP_DEFAULT, -1},
      {"empty pattern with wildcards", "abc", "", 0, 0, 0},
      {"in nothing", "", "a", 0, OT_CMP_DEFAULT, -1},
      {"ignoring case", "xAbC", "abc", 0, OT_CMP_NO_WILDCARDS | OT_CMP_IGNORE_CASE, 1},
      {"a star as itself", "a*b", "*", 0, OT_CMP_NO_WILDCARDS, 1},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.text.Find(row.pattern, row.start, row.cmpOp), row.place) << row.name;
  }
  EXPECT_EQ(OtString("abc").Find('c'), 2);
  EXPECT_EQ(TextOf(OT_CS_UNICODE, u"ab").SubStringPos("b"), 1);
}

TEST(Find, EndsAtTheTextAndNotAtItsBuffer) {
  OtString text;
  text.CopyMapped(OtString("aba"), 1, 100);
  EXPECT_EQ(text.Find("b", 2), -1);
  EXPECT_EQ(UnitsOf(text.ReplaceAll("a", "")), u"b");
  OtString pattern;
  pattern.CopyMapped(OtString("b"), 1, 100);
  EXPECT_EQ(OtString("abc").Find(pattern), 1);
}

TEST(Find, PlacesPast32767) {
  OtString text((std::string(40000, 'x') + ",abc").c_str());
  EXPECT_EQ(text.Find("abc"), static_cast<short>(40001));
  EXPECT_EQ(text.Left(40001).Len(), 40001);
  EXPECT_EQ(UnitsOf(text.Right(4)), u",abc");
  EXPECT_EQ(text.Right(40003).Len(), 40003);
  OtString item;
  unsigned short pos = 0;
  EXPECT_EQ(OtSplitList(text, item, ",", pos), 0);
  EXPECT_EQ(item.Len(), 40000);
  EXPECT_EQ(OtSplitList(text, item, ",", pos), 0);
  EXPECT_EQ(UnitsOf(item), u"abc");
  EXPECT_EQ(OtSplitList(text, item, ",", pos), OT_ERR_NO_MORE_ITEMS);
  EXPECT_EQ(text.Find(OtString(std::string(39999, 'x').c_str()), 1), 1);
  EXPECT_EQ(UnitsOf(text.ReplaceAll("abc", "d").Right(2)), u",d");
}

TEST(Find, ReplacementsThatPassTheLimitEnd) {
  OtString text(std::string(1000, 'a').c_str());
  const std::string wide = std::string(99, 'b') + "a";
  FaultCount faults;
  text.ReplaceAll("a", wide.c_str());
  EXPECT_GT(faults.Get(), 0);
  EXPECT_EQ(UnitsOf(text).size(), 100000u);
  OtString list((std::string(65534, 'x') + ",y,z").c_str()), item;
  unsigned short pos = 0;
  int items = 0;
  while (items < 5 && OtSplitList(list, item, ",", pos) == 0) ++items;
  EXPECT_EQ(items, 1) << "what a place can't reach is not delivered again and again";
}

TEST(Find, Lists) {
  const struct {
    const char *list, *separator;
    std::vector<std::u16string> items;
  } rows[] = {{",a,, b ", ",", {u"a", u"", u"b"}}, {"", ",", {}},
              {",,,a", ",", {u"", u"", u"a"}},     {"a,", ",", {u"a"}},
              {"a; b", "; ", {u"a", u"b"}},        {"a b", "", {u"a b"}}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.list);
    OtString list(row.list), item("untouched");
    unsigned short pos = 0;
    std::vector<std::u16string> items;
    while (OtSplitList(list, item, row.separator, pos) == 0) items.push_back(UnitsOf(item));
    EXPECT_EQ(items, row.items);
    EXPECT_GE(pos, list.Len());
    EXPECT_EQ(UnitsOf(item), items.empty() ? u"untouched" : items.back());
  }
}

/// The operations on a plain text, told as shortly as they can be.
struct Model {
  std::u16string text;

  void Apply(int op, const std::u16string& other, std::size_t pos, int n) {
    const std::size_t size = text.size();
    const std::size_t rest = pos < size ? size - pos : 0;
    const std::size_t count =
        n == -1 ? rest : std::min(rest, static_cast<std::size_t>(std::max(n, 0)));
    if (op == 0 && pos <= size) text.insert(pos, other);
    if (op == 1)
      text.replace(std::min(pos, size), std::min(rest, other.size()), other.substr(0, rest));
    if (op == 2) text.erase(std::min(pos, size), count);
    if (op == 3) text = text.substr(std::min(pos, size), count);
    if (op == 4) text += other;
    if (op == 5 && size < pos) text.append(pos - size, u'q');
    if (op == 6) text = text.substr(0, pos);
    if (op == 7) text = text.substr(size - std::min(pos, size));
    if (op == 8) text.assign(pos % 50, u'b');
    if (op == 9) ReplaceAll(other.substr(0, 2), other, pos);
  }

  void ReplaceAll(const std::u16string& from, const std::u16string& to, std::size_t at) {
    while (!from.empty() && (at = text.find(from, at)) != text.npos) {
      text.replace(at, from.size(), to);
      at += to.size();
    }
  }
};

void Apply(OtString& text, int op, const OtString& other, unsigned short pos, short n) {
  if (op == 0) text.Insert(other, pos);
  if (op == 1) text.Replace(other, pos);
  if (op == 2) text.Cut(pos, n);
  if (op == 3) text = text.Copy(pos, n);
  if (op == 4) text += other;
  if (op == 5) text.Expand(pos, 'q');
  if (op == 6) text = text.Left(pos);
  if (op == 7) text = text.Right(pos);
  if (op == 8) text.Fill(static_cast<unsigned short>(pos % 50), 'b');
  if (op == 9) text.ReplaceAll(other.Left(2), other, pos);
}

TEST(Edit, RandomOperationsAgreeWithAModel) {
  std::mt19937 engine(4);
  const auto random = [&engine] { return static_cast<unsigned>(engine()); };
  OtString text;
  Model model;
  for (int step = 0; step < 20000; ++step) {
    if (step % 500 == 0) {
      model.text.clear();
      text = OtString(random() % 2 != 0 ? OT_CS_UNICODE : OT_CS_BASE8, OT_LANG_NEUTRAL);
    }
    std::u16string other;
    for (std::size_t i = random() % 6; i != 0; --i) {
      other.push_back(static_cast<char16_t>("abc\xe9"[random() % 4] & 0xff));
    }
    const int op = static_cast<int>(random() % 10);
    const unsigned pos = static_cast<unsigned>(random() % (model.text.size() + 4));
    const int n = static_cast<int>(random() % 12) - 2;
    const std::u16string before = model.text;
    model.Apply(op, other, pos, n);
    Apply(text, op, TextOf(random() % 2 != 0 ? OT_CS_UNICODE : OT_CS_BASE8, other),
          static_cast<unsigned short>(pos), static_cast<short>(n));
    ASSERT_EQ(UnitsOf(text), model.text)
        << "operation " << op << " at " << pos << ", " << n << " on "
        << testing::PrintToString(before) << " with " << testing::PrintToString(other);
    if (model.text.size() > 2000) model.text.clear(), text = "";
  }
}

}  // namespace
