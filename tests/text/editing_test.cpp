// Editing and searching, named cases first, then against a plain model of text.

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "text/mixedtexts.h"
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

TEST(Edit, NoPairIsCutInHalf) {
  const OtString text = TextOf(OT_CS_UNICODE, u"a\xd840\xdc0b");
  EXPECT_EQ(UnitsOf(text.Left(2)), u"a");
  EXPECT_EQ(UnitsOf(text.Left(3)), u"a\xd840\xdc0b");
  EXPECT_EQ(UnitsOf(text.Right(2)), u"\xd840\xdc0b");
  EXPECT_EQ(text.Right(1).Len(), 0);
  EXPECT_EQ(text.SubStringPos(TextOf(OT_CS_UNICODE, u"\xdc0b")), -1);
  EXPECT_EQ(text.SubStringPos(TextOf(OT_CS_UNICODE, u"\xd840\xdc0b")), 1);
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

OtString In(const char* language, const std::u16string& units) {
  OtString text = TextOf(OT_CS_UNICODE, units);
  text.SetLanguageCode(OtLanguageContext::LanguageOfTag(language));
  return text;
}

/// Puts the default op back that a test changes.
class FindByOrders : public testing::Test {
 protected:
  ~FindByOrders() override { OtString::SetDefaultCmpOp(before_); }

 private:
  unsigned short before_ = OtString::GetDefaultCmpOp();
};

TEST_F(FindByOrders, MatchesWholeCharactersHoweverManyTheyAre) {
  constexpr unsigned short kPlain = OT_CMP_NO_WILDCARDS;
  constexpr unsigned short kNoSymbols = kPlain | OT_CMP_IGNORE_SYMBOLS;
  const struct {
    const char* language;
    std::u16string text, pattern;
    unsigned short op;
    short place;
    std::u16string replaced;  ///< All matches by "X".
  } rows[] = {
      {"de", u"Stra\u00dfburg", u"Stra\u00dfe", kPlain, -1, u"Stra\u00dfburg"},
      {"de", u"Stra\u00dfe", u"Stras", kPlain, -1, u"Stra\u00dfe"},
      {"de", u"die Stra\u00dfe", u"Stra\u00dfe", kPlain, 4, u"die X"},
      {"de", u"Ma\u00dfe", u"MASS", kPlain | OT_CMP_IGNORE_CASE | OT_CMP_IGNORE_ACCENT, 0, u"Xe"},
      {"de", u"Masse", u"a\u00df", kPlain | OT_CMP_IGNORE_CASE | OT_CMP_IGNORE_ACCENT, 1, u"MXe"},
      {"cs", u"chata", u"ch", kPlain, 0, u"Xata"},
      {"cs", u"dech", u"ch", kPlain, 2, u"deX"},
      {"cs", u"chata", u"c", kPlain, -1, u"chata"},
      {"hu", u"anna", u"n", kPlain, 1, u"aXXa"},
      {"hu", u"aly\u0301h", u"al", kPlain, 0, u"Xy\u0301h"},
      {"hu", u"aly\u0301h", u"aly", OT_CMP_IGNORE_ACCENT | kPlain, -1, u"aly\u0301h"},
      {"hu", u"mennyi", u"n", kPlain, -1, u"mennyi"},
      {"da", u"Kaas", u"aa", kPlain, 1, u"KXs"},
      {"da", u"Kaaas", u"aa", kPlain, 1, u"KXas"},
      {"fr", u"caf\u00e9s", u"e\u0301", kPlain, 3, u"cafXs"},
      {"fr", u"cafe\u0301s", u"\u00e9", kPlain, 3, u"cafXs"},
      {"fr", u"cafe\u0301s", u"e", kPlain, -1, u"cafe\u0301s"},
      {"fr", u"cafe\u0301s", u"e", kPlain | OT_CMP_IGNORE_ACCENT, 3, u"cafXs"},
      {"en", u"a-b", u"ab", kNoSymbols, 0, u"X"},
      {"en", u"a-b", u"ab", kPlain, -1, u"a-b"},
      {"en", u"New-York-City", u"York", kNoSymbols, 4, u"New-X-City"},
      {"en", u"New-York-City", u"-York-", kNoSymbols, 3, u"NewXCity"},
      {"en", u"New York City", u"-York-", kNoSymbols, 4, u"New X City"},
      {"en", u"ab--ab", u"-", kNoSymbols, 2, u"abXXab"},
      {"en", u"ab", u"a b c", kPlain | OT_CMP_IGNORE_SPACE, -1, u"ab"},
      {"en", u"xa\u00dfy", u"a?", 0, 1, u"xa\u00dfy"},
      {"de", u"xa\u00dfy", u"a*", 0, 1, u"xX\u00dfy"},
      {"en", u"a-bcd", u"a?c", OT_CMP_IGNORE_SYMBOLS, 0, u"Xd"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.text) + " " + testing::PrintToString(row.pattern));
    OtString text = In(row.language, row.text);
    const OtString pattern = In(row.language, row.pattern);
    EXPECT_EQ(text.SubStringPos(pattern, row.op), row.place);
    OtString::SetDefaultCmpOp(row.op);
    EXPECT_EQ(UnitsOf(text.ReplaceAll(pattern, In(row.language, u"X"))), row.replaced);
  }
}

TEST_F(FindByOrders, RawBytesCountAsTheyStand) {
  OtString text("abc-abd"), pattern("ab?");
  text.SetCodeSetCode(OT_CS_NONE);
  pattern.SetCodeSetCode(OT_CS_NONE);
  EXPECT_EQ(text.Find(pattern), -1);
  OtString::SetDefaultCmpOp(0);
  EXPECT_EQ(text.Find(pattern, 1), 4);
  EXPECT_EQ(UnitsOf(text.ReplaceAll(pattern, "x")), u"x-x");
}

std::u16string OrdersOf(OtString text) {
  std::u16string orders;
  OtStringIterator it(text);
  while (const unsigned short order = it.GetNextOrder(1)) orders += order;
  return orders;
}

/// Marks that stand by themselves before the first character that counts.
std::size_t MarksBefore(const std::u16string& orders) {
  std::size_t marks = 0;
  while (marks < orders.size() && orders[marks] >= OT_FIRST_MARK_ORDER &&
         orders[marks] <= OT_LAST_MARK_ORDER) {
    ++marks;
  }
  return marks;
}

/// By the comparison of every stretch that begins at a place with what stands there. Where it would
/// tear a character, its orders are others.
short ReferencePlace(const std::u16string& units, const OtString& pattern, const char* language,
                     unsigned short op) {
  if (OrdersOf(pattern).empty()) return -1;
  for (std::size_t at = 0; at < units.size(); ++at) {
    const bool insidePair =
        at != 0 && (units[at] & 0xfc00) == 0xdc00 && (units[at - 1] & 0xfc00) == 0xd800;
    if (insidePair) continue;
    const std::u16string rest = OrdersOf(In(language, units.substr(at)));
    for (std::size_t length = 1; at + length <= units.size(); ++length) {
      const OtString stretch = In(language, units.substr(at, length));
      const std::u16string orders = OrdersOf(stretch);
      if (MarksBefore(orders) > MarksBefore(OrdersOf(pattern))) continue;
      const bool whole = rest.rfind(orders, 0) == 0;
      if (whole && stretch.Compare(pattern, op) == 0) return static_cast<short>(at);
    }
  }
  return -1;
}

TEST_F(FindByOrders, AgreesWithTheComparisonOfEveryStretch) {
  MixedTexts texts;
  int found = 0;
  for (int i = 0; i < 30000; ++i) {
    const char* const languages[] = {"en", "de", "cs", "da", "hu"};
    const char* const language = languages[texts.Number() % std::size(languages)];
    const std::u16string units = texts.Text(8);
    const std::u16string piece = units.substr(units.size() / 3, texts.Number() % 4);
    const unsigned short ops[] = {0x10, 0x30, 0x50, 0x70};
    const unsigned short op = ops[texts.Number() % std::size(ops)];
    const OtString pattern = In(language, texts.Recased(piece));
    // Where accents are ignored, marks alone meet as many orders of whatever kind.
    const std::u16string sought = OrdersOf(pattern);
    if ((op & OT_CMP_IGNORE_ACCENT) && MarksBefore(sought) == sought.size()) continue;
    const short expected = ReferencePlace(units, pattern, language, op);
    found += expected >= 0;
    ASSERT_EQ(In(language, units).Find(pattern, 0, op), expected)
        << testing::PrintToString(units) << ' ' << testing::PrintToString(UnitsOf(pattern)) << ' '
        << language << ' ' << op;
  }
  EXPECT_GT(found, 5000);
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
              {"a; b", "; ", {u"a", u"b"}},        {"a b", "", {u"a b"}},
              {"--a--b", "--", {u"a", u"b"}}};
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
