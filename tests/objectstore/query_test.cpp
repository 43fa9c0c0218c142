// Whatever plan a query is answered by, it finds what a look at every object finds.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <sstream>

#include "execute.h"
#include "objectstore/storetesting.h"
#include "record.h"

namespace {

using Text = std::u32string;

Text Repeat(const Text& text, std::size_t times) {
  Text repeated;
  while (times-- != 0) repeated += text;
  return repeated;
}

std::string Utf8(const Text& text) {
  std::string utf8;
  for (const char32_t c : text) {
    const auto byte = [&](unsigned lead, unsigned shift) {
      utf8 += static_cast<char>(lead | (c >> shift & (shift == 0 && c < 0x80 ? 0x7f : 0x3f)));
    };
    if (c < 0x80) {
      byte(0, 0);
    } else if (c < 0x800) {
      byte(0xc0, 6), byte(0x80, 0);
    } else {
      byte(0xe0, 12), byte(0x80, 6), byte(0x80, 0);
    }
  }
  return utf8;
}

/// Without the characters beyond 16 bits, of which the names have none.
Text FromUtf8(const std::string& utf8) {
  Text text;
  for (const char byte : utf8) {
    const auto bits = static_cast<unsigned char>(byte);
    if (bits < 0x80) {
      text += bits;
    } else if (bits >= 0xc0) {
      text += bits & (bits < 0xe0 ? 0x1fU : 0xfU);
    } else {
      text.back() = text.back() << 6 | (bits & 0x3fU);
    }
  }
  return text;
}

/// Those characters that the base set of one byte has.
Text Latin(Text text) {
  text.erase(std::remove_if(text.begin(), text.end(), [](char32_t c) { return c >= 0x100; }),
             text.end());
  return text;
}

/// Names as people write them, of many scripts.
std::vector<Text> RealNames(Dice& dice, std::size_t count) {
  const std::string languages = "de vi fr ga ru sr el ar he hi bn_BD ja ko zh_CN th ka tr cs";
  std::istringstream lines(OutputOf(OT95_PLACES " " + languages + " 2>/dev/null"));
  std::vector<Text> all;
  for (std::string line; std::getline(lines, line);) {
    const std::size_t comma = line.find(',') + 1;
    const bool quoted = line.compare(comma, 1, "\"") == 0;
    const std::size_t end = line.find(quoted ? '"' : ',', comma + quoted);
    all.push_back(FromUtf8(line.substr(comma + quoted, end - comma - quoted)));
  }
  std::vector<Text> names;
  while (!all.empty() && names.size() < count) names.push_back(dice.Of(all));
  return names;
}

const Text kLetters[] = {U"a", U"A",  U"á", U"Ä",  U"b", U"B", U"e", U"é", U"s", U"ß", U"ss",
                         U"æ", U"ae", U"ﬁ", U"fi", U"z", U"Ž", U"o", U"ø", U"ŉ", U"ĳ", U"œ"};
const Text kOthers[] = {U"я",  U"Б",  U"б",  U"й", U"έ", U"ε", U"Ω", U"か", U"が", U"カ", U"東",
                        U"京", U"가", U"힣", U"א", U"ב", U"ا", U"ب", U"ก",  U"แก", U"क",  U"ა"};
const Text kSymbols[] = {U" ", U"  ", U"-",     U"(",    U"'", U"ʻ",     U"«",
                         U"،", U"、", U"۔",     U"·",    U"1", U"٣",     U"*",
                         U"?", U".",  U"\x301", U"\xa0", U"€", U"\x5f0", U"ー"};

Text Piece(Dice& dice) {
  const std::size_t kind = dice.Below(10);
  return kind < 5 ? dice.Of(kLetters) : kind < 8 ? dice.Of(kOthers) : dice.Of(kSymbols);
}

/// Texts that look alike: short ones of few characters, ones whose key ends before they do, and
/// ones that change their script.
Text HardText(Dice& dice) {
  Text text;
  const std::size_t kind = dice.Below(5);
  if (kind == 0) {  // cut at 254 bytes, with accents and case before it
    for (std::size_t i = 0, length = 117 + dice.Below(14); i < length; ++i) {
      text += dice.Chance(4) ? dice.Of(kLetters) : Text(1, U"abcde"[i % 5]);
    }
  } else if (kind == 1) {  // changes of script behind a prefix that several share
    const bool latinFirst = dice.Chance(50);
    const Text& prefix = latinFirst ? dice.Of(kLetters) : dice.Of(kOthers);
    text = Repeat(prefix, dice.Below(3) == 0 ? dice.Below(130) : dice.Below(4));
    if (dice.Chance(50)) text += dice.Of(kSymbols);
    text += latinFirst ? dice.Of(kOthers) : dice.Of(kLetters);
  } else if (kind == 2) {
    text = Repeat(dice.Of(kSymbols), dice.Below(3));
  }
  for (std::size_t i = dice.Below(5); i != 0; --i) text += Piece(dice);
  return text;
}

/// A store of names and of numbers, every kind of member indexed, and one without an index.
class Names {
 public:
  Names(const StoreKind& kind, unsigned seed, std::size_t real, std::size_t hard) : dice_(seed) {
    otdb::Store::Create(directory_ / "store", otdb::Schema::FromJson("{" + kind.Json() +
                                                                     R"(, "classes": [{
      "name": "Place", "members": [
        {"name": "name", "type": "OtString", "indexed": true},
        {"name": "latin", "type": "OtString", "codeSet": 1, "language": "de", "indexed": true},
        {"name": "short", "type": "short", "indexed": true},
        {"name": "word", "type": "OtNull_ushort", "indexed": true},
        {"name": "share", "type": "double", "indexed": true},
        {"name": "date", "type": "OtDate", "indexed": true},
        {"name": "plain", "type": "OtString"}]}]})"));
    texts_ = RealNames(dice_, real);
    while (hard-- != 0) texts_.push_back(HardText(dice_));
    Fill();
  }

  Dice& Random() { return dice_; }
  otdb::Store& Get() { return *store_; }
  const std::vector<Text>& Texts() const { return texts_; }

 private:
  void Fill() {
    static const std::string numbers[] = {"-32768", "-1", "0", "1", "2", "7", "32767"};
    static const std::string words[] = {"0", "1", "255", "256", "65534", "65535", ""};
    static const std::string shares[] = {"-1e300", "-0.5", "0", "1e-300", "0.1", "3", "1e300"};
    static const std::string dates[] = {
        "1999-12-31", "2000-01-01", "2000-02-29", "2023-07-15", "1600-03-01", "2023-12-31", ""};
    store_.emplace(directory_ / "store");
    const otdb::Class& type = store_->GetSchema().ClassNamed("Place");
    std::vector<otdb::Bytes> records;
    for (const Text& text : texts_) {
      otdb::Object object(type, store_->GetSchema().form);
      const std::string utf8 = Utf8(text);
      const std::string values[] = {utf8,
                                    Utf8(Latin(text)),
                                    dice_.Of(numbers),
                                    dice_.Of(words),
                                    dice_.Of(shares),
                                    dice_.Of(dates),
                                    utf8};
      for (std::size_t i = 0; i < std::size(values); ++i) object.MemberAt(i).Scan(0, values[i]);
      if (text.empty() && dice_.Chance(50)) object.MemberAt(0).SetNull(0);
      records.push_back(object.Stored());
    }
    store_->Add(type, records);
  }

  Scratch directory_;
  Dice dice_;
  std::vector<Text> texts_;
  std::optional<otdb::Store> store_;
};

/// Writes queries that have something to find.
class QueryWriter {
 public:
  QueryWriter(Dice& dice, const std::vector<Text>& texts) : dice_(dice), texts_(texts) {}

  std::string Write() { return "from Place where " + Condition(0); }

 private:
  std::string Condition(int depth) {
    const std::size_t kind = dice_.Below(10);
    if (depth > 2 || kind < 5) return Term();
    if (kind == 5) return "not (" + Condition(depth + 1) + ")";
    const std::string join = kind < 8 ? " and " : " or ";
    std::string joined = "(" + Condition(depth + 1);
    for (std::size_t i = 1 + dice_.Below(2); i != 0; --i) joined += join + Condition(depth + 1);
    return joined + ")";
  }

  std::string Term() {
    static const char* const relations[] = {"=", "=", "<>", "<", "<=", ">", ">="};
    static const char* const kNumbers[][10] = {
        {"short", "-32768", "-32767", "-1", "0", "1", "3", "7", "32766", "32767"},
        {"word", "0", "1", "2", "255", "256", "300", "65534", "65535", "null"},
        {"share", "-1e301", "-1e300", "-0.5", "0", "1e-300", "0.1", "2.5", "3", "1e300"},
        {"date", "1999-12-31", "2000-*-*", "2023-*-*", "*-12-31", "*-*-01", "*-02-*", "2000-02-29",
         "2023-12-*", "null"}};
    const std::string relation = std::string(" ") + dice_.Of(relations) + " ";
    if (dice_.Chance(25)) {
      const auto& member = dice_.Of(kNumbers);
      return member[0] + relation + member[1 + dice_.Below(9)];
    }
    const char* name = dice_.Chance(70) ? "name" : dice_.Chance(80) ? "latin" : "plain";
    if (dice_.Chance(1)) return name + relation + "null";
    const Text operand = Operand();
    const bool isLatin = name[0] == 'l';
    return name + relation + Quoted(isLatin ? Latin(operand) : operand) + Options();
  }

  std::string Options() {
    std::vector<std::string> ignored;
    for (const char* what : {"case", "accent", "space", "symbols"}) {
      if (dice_.Chance(18)) ignored.push_back(what);
    }
    std::string options;
    for (const std::string& what : ignored)
      options += (options.empty() ? " ignoring " : ", ") + what;
    return options + (dice_.Chance(15) ? " literally" : "");
  }

  /// A text that is there, or one a little beside it, or a pattern of it.
  Text Operand() {
    Text text = dice_.Of(texts_);
    if (dice_.Chance(50)) text.resize(dice_.Below(text.size() + 1));
    for (std::size_t i = dice_.Below(3); i != 0 && dice_.Chance(50); --i) {
      const std::size_t at = dice_.Below(text.size() + 1);
      const Text piece = dice_.Chance(40) ? Text(1, U"*?"[dice_.Below(2)]) : Piece(dice_);
      text.replace(at, dice_.Below(2), piece);
    }
    if (dice_.Chance(30)) text += dice_.Chance(80) ? U'*' : U'?';
    return text;
  }

  static std::string Quoted(const Text& text) {
    std::string quoted = "'";
    for (const char c : Utf8(text)) quoted += c == '\'' ? "''" : std::string(1, c);
    return quoted + "'";
  }

  Dice& dice_;
  const std::vector<Text>& texts_;
};

/// Identifiers as often as they are found, in order of their bytes.
std::vector<std::string> Found(const otdb::Store& store, const otdb::Snapshot& txn,
                               const otdb::Query& query, const otdb::Plan& plan) {
  std::vector<std::string> ids;
  otdb::Execute(store, txn, query, plan, [&](otdb::View id, const otdb::Record&) {
    ids.push_back(otdb::IdToText(id, store.GetSchema().form));
    return true;
  });
  std::sort(ids.begin(), ids.end());
  return ids;
}

/// What one list has and the other hasn't, with the names of the objects.
std::string Beyond(const std::vector<std::string>& ids, const std::vector<std::string>& others,
                   const std::vector<Text>& texts) {
  std::vector<std::string> beyond;
  std::set_difference(ids.begin(), ids.end(), others.begin(), others.end(),
                      std::back_inserter(beyond));
  std::string told;
  for (std::size_t i = 0; i < std::min<std::size_t>(beyond.size(), 3); ++i) {
    told += " " + beyond[i] + " '" + Utf8(texts[std::stoul(beyond[i]) - 1]) + "'";
  }
  return told;
}

class Queries : public testing::TestWithParam<StoreKind> {
 protected:
  /// Other queries come with --gtest_shuffle --gtest_random_seed=N.
  static unsigned Seed() {
    return 1 + static_cast<unsigned>(testing::UnitTest::GetInstance()->random_seed());
  }

  static void Compare(Names& names, std::size_t queries) {
    const otdb::Store& store = names.Get();
    auto txn = store.Read();
    QueryWriter writer(names.Random(), names.Texts());
    std::size_t found = 0, withIndex = 0;
    for (std::size_t i = 0; i < queries; ++i) {
      const std::string text = writer.Write();
      const otdb::Query query = otdb::ParseQuery(store.GetSchema(), text);
      const otdb::Plan plan = otdb::MakePlan(store, txn, query);
      const auto ids = Found(store, txn, query, plan);
      found += !ids.empty();
      withIndex += !plan.ranges.empty();
      const auto all = plan.ranges.empty() ? ids : Found(store, txn, query, {});
      EXPECT_TRUE(ids == all) << text << "\nmissing" << Beyond(all, ids, names.Texts())
                              << "\nbeyond" << Beyond(ids, all, names.Texts());
    }
    EXPECT_GT(found, queries / 4) << "queries that find nothing tell little";
    EXPECT_GT(withIndex, queries / 4);
  }
};

TEST_P(Queries, OverManyNames) {
  Names names(GetParam(), Seed(), 1500, 300);
  EXPECT_EQ(FaultsOf(names.Get()), "");
  Compare(names, 500);
}

TEST_P(Queries, OverHardTexts) {
  for (unsigned i = 0; i < 5; ++i) {
    Names names(GetParam(), Seed() * 1000 + i, 20, 150);
    EXPECT_EQ(FaultsOf(names.Get()), "");
    Compare(names, 500);
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, Queries, testing::ValuesIn(kStoreKinds), NameOfKind);

}  // namespace
