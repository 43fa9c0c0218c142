// The command line from outside: what it prints and how it exits, a row a call.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>

#include "ot95/version.h"
#include "progress.h"

namespace {

struct Outcome {
  std::string out;
  int exit;
};

Outcome Shell(const std::string& command) {
  FILE* pipe = popen(command.c_str(), "r");
  Outcome outcome{"", -1};
  char buffer[4096];
  while (const std::size_t bytes = fread(buffer, 1, sizeof buffer, pipe)) {
    outcome.out.append(buffer, bytes);
  }
  const int status = pclose(pipe);
  outcome.exit = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return outcome;
}

/// Runs `ottm` with arguments as a shell takes them; standard error is part of the output.
Outcome Ottm(const std::string& arguments, const std::string& before = "") {
  return Shell(before + OT95_OTTM " " + arguments + " 2>&1");
}

struct Call {
  const char* arguments;
  const char* out;
  int exit = 0;
};

class OttmCalls : public testing::TestWithParam<Call> {};

TEST_P(OttmCalls, Answer) {
  const Outcome outcome = Ottm(GetParam().arguments);
  EXPECT_EQ(outcome.out, GetParam().out) << GetParam().arguments;
  EXPECT_EQ(outcome.exit, GetParam().exit) << GetParam().arguments;
}

INSTANTIATE_TEST_SUITE_P(
    Storage, OttmCalls,
    testing::Values(
        Call{"encode OtString ab --code-set 1 --language 2", "06000102616200ff\n"},
        Call{"encode OtString ab --code-set 253 --language 2", "0800fd026100620000ff\n"},
        Call{"encode OtString '{NULL}'", "040000fe00ff\n"},
        Call{"encode short -2 --form big-endian", "fffe\n"},
        Call{"encode short --form big-endian -- -2", "fffe\n"},
        Call{"encode OtNull_short 5 '{NULL}'", "000500010000\n"},
        Call{"encode OtNull_OtInt64 7", "000700000000000000\n"},
        Call{"decode OtString 06000102616200ff", "ab\n"},
        Call{"decode short fffe0001 --form big-endian --count 2", "-2\n1\n"},
        Call{"decode OtNull_short 000500010000 --count 2 --json",
             "{\"type\":\"OtNull_short\",\"count\":2,\"consumed\":6,\"values\":[\"5\",null]}\n"},
        Call{"verify OtString 06000102616200ff", "good, ends at offset 8\n"},
        Call{"verify short 01 --json",
             "{\"type\":\"short\",\"ok\":false,\"consumed\":0,\"offset\":0,"
             "\"reason\":\"the bytes end too early\"}\n",
             1},
        Call{"hash OtNull_short '{NULL}'", "fefe7575\n"}, Call{"hash short 1 1", "00000000\n"},
        Call{"print OtInt64 -255 --text-format %x", "-0xff\n"},
        Call{"encode OtDate 'Sun 02.Jan 2000' --form big-endian", "07d00102\n"},
        Call{"print OtDate 'Sat 01.Jan 2000' --text-format '%a %e.%b %Y'", "Sat 01.Jan 2000\n"},
        Call{"print OtObjId '(0-4711#12)' --text-format %H/%L", "0/4711\n"},
        Call{"encode OtObjId '(0-16909060#7)' --form big-endian", "00000007010203040000\n"},
        Call{"compare OtIString abc ABC", "equal\n"},
        Call{"encode OtBlob ''", "0400000000000000\n"},
        Call{"encode OtBlob '{NULL}'", "04000000ffffffff\n"},
        Call{"decode OtBlob 0400000000000000", "[BLOB,len=0]\n"},
        Call{"decode OtBlob 04000000ffffffff", "{NULL}\n"},
        Call{"encode OtString '[a,b]' c --code-set 1 --language 1",
             "09000101"
             "5b612c625d"
             "00ff"
             "05000101"
             "63"
             "00ff\n"},
        Call{"encode OtBoolean T '{NULL}'", "01ff\n"}));

INSTANTIATE_TEST_SUITE_P(
    Text, OttmCalls,
    testing::Values(
        Call{"strcmp axbxbyc 'a*b*c' --op 0", "equal\n"},
        Call{"compare OtWord 65535 1", "greater\n"},
        Call{"compare short 65535 1 --lenient", "less\n"},
        Call{"orders 'É'", "411c  script 1  upper letter E with accent acute\n"},
        Call{"convert OtWord long 65535", "-1\n"}, Call{"convert OtNull_char OtNull_int A", "0\n"},
        Call{"convert char int A", "65\n"}, Call{"convert OtDWord long 4294967295 7", "-1\n7\n"},
        Call{"default OtString --nullable --json", "{\"text\":\"{NULL}\",\"isNull\":true}\n"},
        Call{"edit replace-all aba a aa", "aabaa\n"}, Call{"edit split ',a,, b ' ,", "a\n\nb\n"},
        Call{"edit upper 'straße'", "STRASSE\n"},
        Call{"int64 9223372036854775807 + 1", "-9223372036854775808\n"},
        Call{"int64 -7 % 2", "-1\n"}, Call{"int64 from-double 123456789", "123456800\n"}));

INSTANTIATE_TEST_SUITE_P(
    Calendar, OttmCalls,
    testing::Values(
        Call{"date add 2000-02-28 2", "2000-03-01\n"},
        Call{"date diff 2000-03-01 2000-02-28", "2\n"},
        Call{"date from-days 2451545", "2000-01-01\n"},
        Call{"date weekday 2000-01-01", "Saturday\n"},
        Call{"date add 23:59:59 2 --type OtTime", "00:00:01\n"},
        Call{"date add '1999-12-31 23:59:59' 1 --type OtDateTime", "2000-01-01 00:00:00\n"},
        Call{"date days-in-month 1900-02-01 --type d_Date", "28\n"},
        Call{"date overlaps 2000-01-01 2000-01-09 2000-01-05 2000-01-20 --type d_Date", "yes\n"},
        Call{"date overlaps 2000-01-01 2000-01-02 2000-01-05 2000-01-20 --type d_Date", "no\n", 1},
        Call{"date add 2000-13-01 1",
             "ottm: ARG: expected a value of OtDate as 2000-12-31 or %a %e.%b %Y, found "
             "'2000-13-01'\n",
             2},
        Call{"date add 28.02.2000 2 --text-format %d.%m.%Y", "01.03.2000\n"}));

INSTANTIATE_TEST_SUITE_P(
    SortKeys, OttmCalls,
    testing::Values(
        Call{"sort-key OtString Abc", "25292d0202fd01\n"},
        Call{"sort-key OtString Abc --op ignore-case,no-wildcards", "25292d01\n"},
        Call{"sort-key OtString Abc --room 2 --json", "{\"bytes\":\"2529\",\"status\":2101}\n"},
        Call{"sort-key OtString 'a*' --op 0", " status -2999\n"},
        Call{"sort-key short fe --hex", " status 2101\n"},
        Call{"sort-key short feff0000 --hex --count 2", "7ffe8000\n"},
        Call{"sort-range OtString 'ab*' --op =", "lower  2529\nupper  252a\n"},
        Call{"sort-range OtString 'a' --op =,no-wildcards,ignore-case --key-op no-wildcards",
             "lower  2501\nupper  250203\n"},
        Call{"sort-range long 5 --op '<' --json", "{\"lower\":null,\"upper\":\"80000005\"}\n"},
        Call{"hash64 OtString Abc", "4522970178917143112\n"},
        Call{"hash64 short 1 --seed x", "ottm: --seed: expected a number of 64 bits, found 'x'\n",
             2}));

INSTANTIATE_TEST_SUITE_P(
    Estimates, OttmCalls,
    testing::Values(
        Call{"estimate OtString 'app*' --low apple --high apricot",
             "share  0.0936687\nop     9  stands for a range\n"
             "lower  0a00fe010c704870487000ff  app\n"
             "upper  0c00fe010c7048704870feff00ff  app…\n"},
        Call{"estimate OtString 'a*' --op '>=,ignore-case' --form big-endian --json",
             "{\"share\":0.0,\"op\":13,\"lower\":\"0006fe01700c00ff\",\"upper\":null}\n"},
        Call{"estimate short 49 --op '<' --low 0 --high 99 --form big-endian --json",
             "{\"share\":0.49,\"op\":2,\"lower\":null,\"upper\":\"0031\"}\n"},
        Call{"estimate OtDate --hex 07d0ffff --form big-endian",
             "share  0\nop     9  stands for a range\n"
             "lower  07d00101  Sat 01.Jan 2000\nupper  07d00c1f  Sun 31.Dec 2000\n"},
        Call{"estimate OtString ab --factory legacy",
             "share  0\nop     1\nlower  0300616200  ab\nupper  0300616200  ab\n"},
        Call{"estimate OtBlob --hex 0400000000000000 --op 6",
             "share  1\nop     6\nlower  none\nupper  none\n"},
        Call{"estimate OtString --hex 0600",
             "ottm: HEX: expected 1 stored OtString, at offset 0: the bytes end too early\n", 2},
        Call{"estimate short 1 --low 0",
             "ottm: --low requires --high (see 'ottm estimate --help')\n", 2},
        Call{"estimate short 1 --op '=>'",
             "ottm: --op: expected a number or of < <= <> = > >= default ignore-accent "
             "ignore-case ignore-space ignore-symbols no-wildcards order-only, found '=>'\n",
             2}));

INSTANTIATE_TEST_SUITE_P(
    BadInput, OttmCalls,
    testing::Values(
        Call{"encode nosuch 1",
             "ottm: TYPE: expected a type of this table (see 'ottm types'), found 'nosuch'\n", 2},
        Call{"decode short 0g", "ottm: HEX: expected hex digits, found '0g' at digit 1\n", 2},
        Call{"decode OtString 0600",
             "ottm: HEX: expected 1 stored OtString, at offset 0: the bytes end too early\n", 2},
        Call{"hash OtRef --hex 0000000000000000000000000000 --form memory",
             "ottm: --form: expected a disk form, found 'memory'\n", 2},
        Call{"hash OtBlob '{NULL}' --form 0x88",
             "ottm: --form: expected a disk form, found '0x88'\n", 2},
        Call{"compare OtBlob '{NULL}' '{NULL}' --form 0x1f",
             "ottm: --form: expected a disk form, found '0x1f'\n", 2},
        Call{"encode OtIString 12 --form 0x88",
             "ottm: --form: expected a disk form, found '0x88'\n", 2},
        Call{"decode short 0100 --form memory",
             "ottm: --form: expected a disk form, found 'memory'\n", 2},
        Call{"key abc --form memory --size 1",
             "ottm: --form: expected a disk form, found 'memory'\n", 2},
        Call{"translate short 0100 --to memory",
             "ottm: --to: expected a disk form, found 'memory'\n", 2},
        Call{"verify OtString 0006fe01700c --form 0x82 --factory legacy",
             "damaged at offset 0: the bytes end too early\n", 1},
        Call{"decode OtString 0006fe01700c --form 0x82",
             "ottm: HEX: expected 1 stored OtString, at offset 0: the bytes end too early\n", 2},
        Call{"decode long 00 --count 1000000000",
             "ottm: HEX: expected 1000000000 stored long, at offset 0: the bytes end too early\n",
             2},
        Call{"int64 9223372036854775808 - 1",
             "ottm: EXPR: expected a value of OtInt64, a whole number from -9223372036854775808 to "
             "9223372036854775807, found '9223372036854775808'\n",
             2},
        Call{"int64 1 / 0", "ottm: EXPR: expected a divisor other than 0\n", 2}));

/// What a row would wrap, cut or make up is refused with what was expected; with "--lenient" the
/// row's own answer comes instead, in hex.
struct Refused {
  const char* value;  ///< Type and text.
  const char* expected;
  const char* lenient;
};

TEST(Ottm, RefusesWhatARowWouldWrapCutOrMakeUp) {
  const Refused rows[] = {
      {"short 99999", "short, a whole number from -32768 to 32767", "9f86"},
      {"short -32769", "short, a whole number from -32768 to 32767", "ff7f"},
      {"short abc", "short, a whole number from -32768 to 32767", "0000"},
      {"short 1.5", "short, a whole number from -32768 to 32767", "0100"},
      {"short '1 2'", "short, a whole number from -32768 to 32767", "0100"},
      {"short ''", "short, a whole number from -32768 to 32767", "0000"},
      {"short '{NULL}'", "short, a whole number from -32768 to 32767", "0000"},
      {"OtNull_ushort 65536", "OtNull_ushort, a whole number from 0 to 65535", "000000"},
      {"unsigned -1", "unsigned, a whole number from 0 to 4294967295", "ffffffff"},
      {"BlockId 5", "BlockId, a whole number from #0 to #4294967295", "00000000"},
      {"OtInt64 9223372036854775808",
       "OtInt64, a whole number from -9223372036854775808 to 9223372036854775807", nullptr},
      {"OtSeal 281474976710656", "OtSeal, a whole number from 0 to 281474976710655", nullptr},
      {"char ab", "char, one character or 0x and its number", "61"},
      {"OtByte 0x100", "OtByte, one character or 0x and its number", "00"},
      {"double 1e400", "double, a number that it can hold", nullptr},
      {"double 1,5", "double, a number that it can hold", nullptr},
      {"float 1e-60", "float, a number that it can hold", "00000000"},
      {"OtBoolean yes", "OtBoolean, TRUE or FALSE", "00"},
      {"OtBlob x", "OtBlob, an empty text", "0400000000000000"},
      {"OtDate 2000-13-45", "OtDate as 2000-12-31 or %a %e.%b %Y", "00000101"},
      {"OtDate 2000-02-30", "OtDate as 2000-12-31 or %a %e.%b %Y", nullptr},
      {"OtDate 'Mon 02.Jan 2000'", "OtDate as 2000-12-31 or %a %e.%b %Y", nullptr},
      {"OtDate '{NULL}x'", "OtDate as 2000-12-31 or %a %e.%b %Y", "00808080"},
      {"OtDate 2000-1-5 --text-format %Y-%m-%d", "OtDate as %Y-%m-%d", nullptr},
      {"OtTime 24:00:00", "OtTime as 23:59:58 or %I:%M:%S %p", nullptr},
      {"OtDateTime 2000-01-02", "OtDateTime as 2000-12-31T23:59:58 or %a %e.%b %Y %I:%M:%S %p",
       nullptr},
      {"OtObjId '(0-99999999999#1)'", "OtObjId as (%H-%L#%B)", nullptr},
      {"d_Interval '00 days, 03 hours, 00 minutes, 00 seconds'",
       "d_Interval as %e days, %I hours, %M minutes, %S seconds", nullptr},
  };
  for (const Refused& row : rows) {
    const Outcome outcome = Ottm(std::string("encode ") + row.value);
    EXPECT_EQ(outcome.out.rfind(
                  std::string("ottm: VALUE: expected a value of ") + row.expected + ", found '", 0),
              0U)
        << outcome.out;
    EXPECT_EQ(outcome.exit, 2) << row.value;
    if (row.lenient == nullptr) continue;
    EXPECT_EQ(Ottm(std::string("encode --lenient ") + row.value).out,
              std::string(row.lenient) + "\n")
        << row.value;
  }
  for (const char* call :
       {"compare short 99999 1", "compare short 1 99999", "hash short 99999", "print short 99999",
        "convert short long 99999", "estimate short 99999", "estimate short 1 --low 0 --high 99999",
        "encode OtString 東 --code-set 1", "encode OtIString 東"}) {
    EXPECT_EQ(Ottm(call).exit, 2) << call;
    EXPECT_EQ(Ottm(call + std::string(" --lenient")).exit, 0) << call;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Scans, OttmCalls,
    testing::Values(
        Call{"encode short 007 +5 ' -1 ' --form 2", "00070005ffff\n"},
        Call{"encode short ff 0xFF --text-format %hx --form 2", "00ff00ff\n"},
        Call{"encode OtInt64 0x10 --form 2", "0000001000000000\n"},
        Call{"encode OtByte é 0x07 0x41", "e90741\n"},
        Call{"encode OtBoolean T t TRUE true 1 F f FALSE false 0 '{NULL}'",
             "0101010101"
             "0000000000"
             "ff\n"},
        Call{"encode float 0.1 1e3 inf --form 2", "3dcccccd447a00007f800000\n"},
        Call{"encode OtDate 2000-01-02 20000102 'Sun 02.Jan 2000' 'Sunday 2.January 2000' --form 2",
             "ottm: VALUE: expected a value of OtDate as 2000-12-31 or %a %e.%b %Y, found "
             "'Sunday 2.January 2000'\n",
             2},
        Call{
            "encode OtDate 2000-01-02 20000102 'Sun  2.Jan 2000' 'Sunday 02.January 2000' --form 2",
            "07d0010207d0010207d0010207d00102\n"},
        Call{"encode OtTime 13:05:09 130509 13:05 '01:05:09 PM' --form 2",
             "0d05090d05090d05000d0509\n"},
        Call{"encode OtDateTime 2000-01-02T13:05:09 '2000-01-02 13:05:09' --form 2",
             "07d001020d050907d001020d0509\n"},
        Call{"encode d_Timestamp 2000-01-02T13:05:09 --form 2", "07d0010200000d050900\n"},
        Call{"decode OtDate 07d00102 --form 2 --text-format %Y-%m-%d", "2000-01-02\n"},
        Call{"default OtTime --text-format %H:%M:%S", "00:00:00\n"}));

INSTANTIATE_TEST_SUITE_P(
    Unknown, OttmCalls,
    testing::Values(Call{"", "ottm: expected a command (see 'ottm --help')\n", 2},
                    Call{"encodee",
                         "ottm: unknown command 'encodee'; the nearest is 'encode' "
                         "(see 'ottm --help')\n",
                         2},
                    Call{"--versoin",
                         "ottm: unknown option '--versoin'; the nearest is '--version' "
                         "(see 'ottm --help')\n",
                         2},
                    Call{"sort --revers",
                         "ottm: unknown option '--revers'; the nearest is '--reverse' "
                         "(see 'ottm sort --help')\n",
                         2},
                    Call{"encode short 1 --from=2",
                         "ottm: unknown option '--from'; the nearest is '--form' "
                         "(see 'ottm encode --help')\n",
                         2},
                    Call{"types '[all]'",
                         "ottm: unexpected argument '[all]' (see 'ottm types --help')\n", 2},
                    Call{"encode", "ottm: TYPE is required (see 'ottm encode --help')\n", 2},
                    Call{"encode \"$(printf 'sh\\033[1mort')\" 1",
                         "ottm: TYPE: expected a type of this table (see 'ottm types'), found "
                         "'sh\\x1b[1mort'\n",
                         2}));

TEST(Ottm, SaysWhatTheLibraryIs) {
  const std::string version = Ottm("--version").out;
  EXPECT_EQ(
      version.rfind(
          "Orvane Typemanager 9.5.26.340.0\nrelease   " OT95_RELEASE "\nlibrary   ot95Otms, ", 0),
      0U);
  for (const char* line : {"\nUnicode   15.0.0\n", "\nCLDR      41\n"}) {
    EXPECT_NE(version.find(line), std::string::npos) << version;
  }
}

TEST(Ottm, SortsInTheOrderOfALanguage) {
  struct Row {
    const char* language;
    const char* lines;
  };
  for (const Row& row : {Row{"de", "ähre\nch\nh\nz\n"}, Row{"sv", "ch\nh\nz\nähre\n"},
                         Row{"cs", "ähre\nh\nch\nz\n"}}) {
    const Outcome outcome =
        Ottm(std::string("sort --language ") + row.language, "printf 'z\\nch\\nh\\nähre\\n' | ");
    EXPECT_EQ(outcome.out, row.lines) << row.language;
  }
}

TEST(Ottm, MatchTellsWhetherAnythingWasFound) {
  const std::string lines = "printf 'São Tomé\\nSantiago\\n' | ";
  EXPECT_EQ(Ottm("match 'Sao*' --op ignore-accent", lines).out, "São Tomé\n");
  EXPECT_EQ(Ottm("match 'Sa*' --count", lines).out, "1\n");
  EXPECT_EQ(Ottm("match 'x*'", lines).exit, 1);
}

TEST(Ottm, BatchAnswersALineForALine) {
  const std::string lines =
      "printf '[\"hash\",\"short\",\"1\"]\\nnonsense\\n[\"edit\",\"lower\",\"ABC\"]\\n"
      "[\"estimate\",\"short\",\"5\",\"--op\",\">\",\"--low\",\"0\",\"--high\",\"9\"]\\n' | ";
  EXPECT_EQ(Ottm("batch", lines).out,
            "{\"hash\":1103515245,\"status\":0}\n"
            "{\"error\":\"expected a JSON array of texts\",\"exit\":2}\n"
            "{\"text\":\"abc\"}\n"
            "{\"share\":0.4,\"op\":4,\"lower\":\"0500\",\"upper\":null}\n");
}

TEST(Ottm, TypesHasARowForEachType) {
  const Outcome outcome = Ottm("types");
  EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 1 + 41);
}

TEST(Ottm, ListsLanguagesAndCodeSets) {
  const std::string languages = Ottm("languages --json").out, sets = Ottm("codesets --json").out;
  EXPECT_NE(languages.find(R"("number":5,"tag":"es","name":"Spanish","script":1,"rules":"ñ=n.1",)"),
            std::string::npos);
  EXPECT_NE(sets.find(R"({"number":225,"name":"CP932","width":2})"), std::string::npos);
  EXPECT_NE(Ottm("languages").out.find("collation 1\n"), std::string::npos);
}

TEST(Ottm, KeyIsReadWordByWord) {
  const Outcome outcome = Ottm("key 'Ab1' --form big-endian");
  EXPECT_EQ(outcome.out,
            "000afe01400c70103f0a00ff\n"
            "400c  upper letter A\n"
            "7010  lower letter b\n"
            "3f0a  digit 1\n");
}

// Three records of OtString, long and two shorts: plain, with quotes and an escape, and null.
constexpr std::string_view kPlain("\x08\0\1\1Lima\0\xff\7\0\0\0\1\0\2\0", 18);
constexpr std::string_view kQuoted("\x0a\0\1\1a,\"b\"\x1b\0\xff\xfd\xff\xff\xff\4\0\5\0", 20);
constexpr std::string_view kNull("\4\0\0\xfe\0\xff\0\0\0\0\0\0\0\0", 14);
constexpr char kLayout[] = "OtString:name,long:people,short:dayx2";

struct Inspection {
  const char* name;
  std::string bytes;
  std::string arguments;
  const char* out;
  int exit = 0;
};

class OttmInspects : public testing::TestWithParam<Inspection> {};

TEST_P(OttmInspects, Answer) {
  const std::string path = testing::TempDir() + "ottm_inspect_" + GetParam().name;
  std::ofstream(path, std::ios::binary) << GetParam().bytes;
  const Outcome outcome = Ottm("inspect " + path + " --layout " + GetParam().arguments);
  EXPECT_EQ(outcome.out, GetParam().out);
  EXPECT_EQ(outcome.exit, GetParam().exit);
  std::remove(path.c_str());
}

std::string NameOf(const testing::TestParamInfo<Inspection>& info) {
  return info.param.name;
}

std::string Three() {
  return std::string(kPlain) + std::string(kQuoted) + std::string(kNull);
}

/// The second record's text has no terminator.
std::string Damaged() {
  std::string bytes = Three();
  bytes[kPlain.size() + 10] = 'x';
  return bytes;
}

std::string With(const char* options) {
  return kLayout + std::string(options);
}

INSTANTIATE_TEST_SUITE_P(
    Records, OttmInspects,
    testing::Values(
        Inspection{"table", Three(), kLayout,
                   "offset  name    people  day[0]  day[1]\n"
                   "0       Lima    7       1       2\n"
                   "18      a,\"b\".  -3      4       5\n"
                   "38      {NULL}  0       0       0\n"},
        Inspection{"json", Three(), With(" --json"),
                   "{\"offset\":0,\"values\":{\"name\":\"Lima\",\"people\":7,\"day\":[1,2]}}\n"
                   "{\"offset\":18,\"values\":{\"name\":\"a,\\\"b\\\"\\u001b\",\"people\":-3,"
                   "\"day\":[4,5]}}\n"
                   "{\"offset\":38,\"values\":{\"name\":null,\"people\":0,\"day\":[0,0]}}\n"},
        Inspection{"skip_and_limit", Three(), With(" --skip 1 --limit 1"),
                   "offset  name    people  day[0]  day[1]\n"
                   "18      a,\"b\".  -3      4       5\n"},
        Inspection{"skip_behind_the_end", Three(), With(" --skip 9"),
                   "offset  name  people  day[0]  day[1]\n"},
        Inspection{"empty", "", kLayout, "offset  name  people  day[0]  day[1]\n"},
        Inspection{"damaged", Damaged(), kLayout,
                   "offset  name  people  day[0]  day[1]\n"
                   "0       Lima  7       1       2\n"
                   "damaged at offset 18, in name of record 1: not a stored OtString\n",
                   1},
        Inspection{"damaged_json", Damaged(), With(" --json"),
                   "{\"offset\":0,\"values\":{\"name\":\"Lima\",\"people\":7,\"day\":[1,2]}}\n"
                   "{\"offset\":18,\"damage\":{\"record\":1,\"member\":\"name\",\"offset\":18,"
                   "\"reason\":\"not a stored OtString\"}}\n",
                   1},
        Inspection{"damaged_in_what_is_skipped", Damaged(), With(" --skip 9"),
                   "offset  name  people  day[0]  day[1]\n"
                   "damaged at offset 18, in name of record 1: not a stored OtString\n",
                   1},
        Inspection{"ends_in_an_array", Three().substr(0, 16), kLayout,
                   "offset  name  people  day[0]  day[1]\n"
                   "damaged at offset 16, in day of record 0: the bytes end too early\n",
                   1},
        Inspection{"big_endian_without_names",
                   {"\0\1\0\2\0\3", 6},
                   "short,shortx2 --form 2",
                   "offset  short  short#2[0]  short#2[1]\n"
                   "0       1      2           3\n"},
        // A key that was cut can be compared, but not loaded.
        Inspection{"cut_key",
                   {"\0\6\xfe\1\x70\x0c", 6},
                   "OtString:key --form 0x82 --json",
                   "{\"offset\":0,\"damage\":{\"record\":0,\"member\":\"key\",\"offset\":0,"
                   "\"reason\":\"the bytes end too early\"}}\n",
                   1},
        Inspection{"characters_are_no_numbers",
                   {"57", 2},
                   "char,OtByte --json",
                   "{\"offset\":0,\"values\":{\"char\":\"5\",\"OtByte\":\"7\"}}\n"}),
    NameOf);

#ifdef OT95_CSV
INSTANTIATE_TEST_SUITE_P(Csv, OttmInspects,
                         testing::Values(Inspection{"csv", Three(), With(" --csv"),
                                                    "\"name\",\"people\",\"day[0]\",\"day[1]\"\n"
                                                    "\"Lima\",\"7\",\"1\",\"2\"\n"
                                                    "\"a,\"\"b\"\"\x1b\",\"-3\",\"4\",\"5\"\n"
                                                    "\"{NULL}\",\"0\",\"0\",\"0\"\n"}),
                         NameOf);
#endif

INSTANTIATE_TEST_SUITE_P(
    BadLayout, OttmCalls,
    testing::Values(
        Call{"inspect /dev/null --layout short,nosuch:a",
             "ottm: --layout, member 2: expected a type of this table (see 'ottm types'), found "
             "'nosuch'\n",
             2},
        Call{"inspect /dev/null --layout short,",
             "ottm: --layout, member 2: expected a type of this table (see 'ottm types'), found "
             "''\n",
             2},
        Call{"inspect /dev/null --layout short:a,long:a",
             "ottm: --layout, member 2, NAME: expected one of its own, found 'a'\n", 2},
        Call{"inspect /dev/null --layout short:ax0",
             "ottm: --layout, member 1, COUNT: expected at least 1\n", 2},
        Call{"inspect /dev/null --layout OtString --form memory",
             "ottm: --layout, member 1: expected a type with a stored form 8, found 'OtString'\n",
             2},
        Call{"inspect /nosuch --layout short",
             "ottm: /nosuch: expected a file that can be read (No such file or directory)\n", 2}));

class OttmReadsFiles : public testing::Test {
 protected:
  static std::string Path(const char* name) { return testing::TempDir() + "ottm_files_" + name; }
  static std::string Write(const char* name, const std::string& bytes) {
    std::ofstream(Path(name), std::ios::binary) << bytes;
    return Path(name);
  }
  void TearDown() override {
    for (const char* name : {"a", "b"}) std::remove(Path(name).c_str());
  }
};

TEST_F(OttmReadsFiles, DiffTellsMembersRecordsAndDamage) {
  std::string other = Three();
  other[kPlain.size() - 8] = 9;  // people of the first
  const std::string layout = " --layout " + std::string(kLayout);
  const std::string a = Write("a", Three()), b = Write("b", other + std::string(kPlain));
  EXPECT_EQ(Ottm("diff " + a + " " + a + layout).out,
            "0 of 3 records differ; only in A: 0, only in B: 0\n");
  const Outcome differ = Ottm("diff " + a + " " + b + layout);
  EXPECT_EQ(differ.out,
            "record 0, at 0 and 0\n- people  7\n+ people  9\n"
            "1 of 3 records differ; only in A: 0, only in B: 1\n");
  EXPECT_EQ(differ.exit, 1);
  EXPECT_EQ(
      Ottm("diff " + a + " " + Write("b", Damaged()) + layout + " --json").out,
      "{\"compared\":1,\"differ\":0,\"onlyA\":2,\"onlyB\":0,\"damageA\":null,\"damageB\":{"
      "\"record\":1,\"member\":\"name\",\"offset\":18,\"reason\":\"not a stored OtString\"}}\n");
}

TEST_F(OttmReadsFiles, DiffComparesWhatIsStoredInTwoForms) {
  const std::string a = Write("a", {"\1\0\xff\xff", 4}), b = Write("b", {"\0\1\xff\xff", 4});
  EXPECT_EQ(Ottm("diff " + a + " " + b + " --layout short --form2 big-endian").exit, 0);
  EXPECT_EQ(Ottm("diff " + a + " " + b + " --layout short").exit, 1);
}

TEST_F(OttmReadsFiles, GuessShowsReadingsSideBySide) {
  const std::string date("\x07\xd0\1\2", 4);
  const Outcome found = Ottm("guess " + Write("a", "??" + date + std::string(kPlain) + date));
  for (const char* line : {"OtString       native             1         6    35%  Lima\n",
                           "OtDate         big-endian         3         2    42%  Sun 02.Jan 2000 "
                           "| Wed 01.Jan 2048 | ",
                           "short          native            14         0   100%  16191 | "}) {
    EXPECT_NE(found.out.find(line), std::string::npos) << found.out;
  }
  EXPECT_EQ(Ottm("guess /dev/null").exit, 1);
  EXPECT_NE(Ottm("guess " + Path("a") + " --limit 6 --offset 2")
                .out.find("6 bytes from offset 2, and there are more (see --limit)\n"),
            std::string::npos);
}

/// What completes the program knows each command and option that the help knows.
TEST(Ottm, ShellsCompleteWhatTheHelpSays) {
  const std::string help = Ottm("--help").out;
  const std::string bash = Ottm("completion bash").out, zsh = Ottm("completion zsh").out,
                    fish = Ottm("completion fish").out;
  std::istringstream lines(help.substr(help.find("Subcommands:")));
  std::string line;
  std::getline(lines, line);
  int commands = 0;
  for (std::string name; lines >> name && std::getline(lines, line); ++commands) {
    EXPECT_NE(bash.find("    " + name + ")\n"), std::string::npos) << name;
    EXPECT_NE(zsh.find("    " + name + ") _arguments"), std::string::npos) << name;
    EXPECT_NE(fish.find("-a " + name + " -d"), std::string::npos) << name;
    const std::string part = bash.substr(bash.find("    " + name + ")\n"));
    std::istringstream said(Ottm(name + " --help").out);
    for (std::string option; std::getline(said, option);) {
      if (!option.starts_with("  --")) continue;
      option = option.substr(2, option.find(' ', 2) - 2);
      EXPECT_NE(part.substr(0, part.find("words=")).find(option), std::string::npos)
          << name << option;
    }
  }
  EXPECT_GT(commands, 25);
}

TEST(Ottm, BashCompletes) {
  struct Row {
    const char* words;
    const char* completed;
  };
  const std::string begin = "bash -c 'source <(" OT95_OTTM " completion bash); COMP_WORDS=(";
  for (const Row& row :
       {Row{"ottm insp", "inspect"}, Row{"ottm encode OtDate", "OtDate OtDateTime"},
        Row{"ottm encode --form b", "big-endian"}, Row{"ottm inspect --lay", "--layout"},
        Row{"ottm sort --language sv", "sv sv-traditional"}}) {
    const std::string said =
        Shell(begin + row.words +
              "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _ottm; echo ${COMPREPLY[@]}'")
            .out;
    EXPECT_EQ(said, std::string(row.completed) + "\n") << row.words;
  }
}

TEST(Ottm, ManualSaysWhatTheHelpSays) {
#ifndef OT95_CSV
  GTEST_SKIP() << "the help lacks what needs libcsv";
#endif
  std::ifstream file(OT95_SOURCE "/docs/ottm.1");
  const std::string page{std::istreambuf_iterator<char>(file), {}};
  EXPECT_NE(page.find(".SH COMMANDS\n" + Ottm("manual").out + ".SH OPTIONS\n"), std::string::npos)
      << "docs/ottm.1 is out of date: run scripts/manual";
}

TEST(Ottm, ColoursTerminalsAlone) {
  const std::string error = "\x1b[1;31mottm:\x1b[0m unknown command";
  EXPECT_EQ(Ottm("nothing").out.rfind("ottm: unknown command", 0), 0U);
  if (Shell("script -qec true /dev/null").exit != 0) GTEST_SKIP() << "no pseudo-terminal here";
  const std::string call = "script -qec '" OT95_OTTM " nothing' /dev/null";
  EXPECT_EQ(Shell("TERM=xterm NO_COLOR= " + call).out.rfind(error, 0), 0U);
  for (const char* environment : {"TERM=xterm NO_COLOR=1 ", "TERM=dumb "}) {
    EXPECT_EQ(Shell(environment + call).out.rfind("ottm: unknown command", 0), 0U) << environment;
  }
}

TEST(Progress, TellsRateAndTimeLeft) {
  using ot95::tools::ProgressLine;
  const std::string half = std::string(20, '#') + std::string(20, '.');
  EXPECT_EQ(ProgressLine(0.5, 1200, "records", 0.5), "[" + half + "]  50% 1200 records");
  EXPECT_EQ(ProgressLine(0.5, 1200, "records", 2),
            "[" + half + "]  50% 1200 records, 600 a second, 0:02 left");
  EXPECT_EQ(ProgressLine(0.01, 80, "records", 80).substr(43),
            "  1% 80 records, 1 a second, 2:12:00 left");
  EXPECT_EQ(ProgressLine(1, 80, "records", 80).substr(43), "100% 80 records, 1 a second");
  EXPECT_EQ(ProgressLine(0, 0, "records", 5).substr(43), "  0% 0 records, 0 a second");
}

/// Nothing that couldn't be read or written passes for the end or for done.
INSTANTIATE_TEST_SUITE_P(
    Files, OttmCalls,
    testing::Values(
        Call{"sort /", "ottm: /: expected a file that can be read (Is a directory)\n", 2},
        Call{"match a /", "ottm: /: expected a file that can be read (Is a directory)\n", 2},
        Call{"inspect / --layout short",
             "ottm: /: expected a file that can be read (Is a directory)\n", 2},
        Call{"decode short @/", "ottm: HEX: /: expected a file that can be read (Is a directory)\n",
             2},
        Call{"sort /proc/self/mem",
             "ottm: /proc/self/mem: expected a file that can be read (Input/output error)\n", 2},
        Call{"types 2>&1 >/dev/full", "", 2}, Call{"--help 2>&1 >/dev/full", "", 2},
        Call{"inspect @OT95 --layout short",
             "ottm: @OT95: expected a file that can be read (No such file or directory)\n", 2}));

TEST(Ottm, TellsWhereALineIsNotUtf8) {
  EXPECT_EQ(Ottm("sort", "printf 'ab\\nc\\303\\251\\377\\n' | ").out,
            "ottm: standard input:2: expected UTF-8, found '\\xff' as character 3\n");
}

TEST(Ottm, BatchKeepsItsInputForItself) {
  const std::string lines =
      "printf '[\"decode\",\"short\",\"-\"]\\n[\"sort\"]\\n[\"match\",\"a\",\"-\"]\\n"
      "[\"inspect\",\"-\",\"--layout\",\"short\"]\\n[\"edit\",\"lower\",\"ABC\"]\\n' | ";
  const std::string told = "standard input: expected a file, for it holds the lines of the batch";
  const std::string error = "{\"error\":\"" + told + "\",\"exit\":2}\n";
  EXPECT_EQ(Ottm("batch", lines).out, "{\"error\":\"HEX: " + told + "\",\"exit\":2}\n" + error +
                                          error + error + "{\"text\":\"abc\"}\n");
  EXPECT_EQ(Ottm("batch >/dev/full", lines).exit, 2);
}

// More than the window holds at first, so that records lie across its edges.
TEST(Ottm, InspectsAPipeOfAnyLength) {
  const std::string path = testing::TempDir() + "ottm_inspect_long";
  {
    std::ofstream file(path, std::ios::binary);
    for (int i = 0; i < 40000; ++i) file << Three();
  }
  const Outcome outcome =
      Ottm("inspect - --skip 119999 --layout " + std::string(kLayout), "cat " + path + " | ");
  EXPECT_EQ(outcome.out,
            "offset   name    people  day[0]  day[1]\n"
            "2079986  {NULL}  0       0       0\n");
  std::remove(path.c_str());
}

TEST(Ottm, BatchInspectsIntoOneObject) {
  const std::string path = testing::TempDir() + "ottm_inspect_batch";
  std::ofstream(path, std::ios::binary) << Damaged();
  const std::string line = "[\"inspect\",\"" + path + "\",\"--layout\",\"" + kLayout + "\"]";
  EXPECT_EQ(Ottm("batch", "echo '" + line + "' | ").out,
            "{\"records\":[{\"offset\":0,\"values\":{\"name\":\"Lima\",\"people\":7,"
            "\"day\":[1,2]}}],\"damage\":{\"record\":1,\"member\":\"name\",\"offset\":18,"
            "\"reason\":\"not a stored OtString\"}}\n");
  std::remove(path.c_str());
}

}  // namespace
