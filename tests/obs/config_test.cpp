// Configuration as hosts write it.

#include "ot95/config.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace {

using namespace std::string_view_literals;

const char settingsText[] =
    "\xef\xbb\xbf; order of sections decides\r\n"
    "level=1\r\n"
    "\r\n"
    "  [ debug ]  \r\n"
    "\tlevel = 2 ; three # four\r\n"
    "empty =\r\n"
    "a = b = c\r\n"
    "[Other]\n"
    "level = 5\n"
    "level = 6\n"
    "[debug]\n"
    "late = yes";

struct Lookup {
  const char* name;
  const char* key;
  const char* sections[3];
  const char* text;
};

const Lookup lookups[] = {
    {"named section", "a", {"debug"}, "b = c"},
    {"rest of the line, remarks included", "level", {"debug"}, "2 ; three # four"},
    {"first section that has it", "level", {"Other", "debug"}, "6"},
    {"sections without it are passed", "level", {"none", "Other"}, "6"},
    {"unnamed section in the list", "level", {"none", ""}, "1"},
    {"empty text is a text", "empty", {"debug", "Other"}, ""},
    {"section entered again", "late", {"debug"}, "yes"},
    {"sections by case", "level", {"other"}, nullptr},
    {"unnamed section not by itself", "level", {"none"}, nullptr},
    {"empty list", "level", {}, nullptr},
    {"null key", nullptr, {"debug"}, nullptr},
};

TEST(Config, LooksUpText) {
  OtConfig config;
  ASSERT_EQ(config.ReadText(settingsText), 0);
  for (const Lookup& row : lookups) {
    EXPECT_STREQ(config.GetText(row.key, row.sections), row.text) << row.name;
  }
  EXPECT_STREQ(config.GetText("level", nullptr), "1");
  EXPECT_EQ(OtConfig().GetText("level", nullptr), nullptr);
}

TEST(Config, ReadsSixteenBits) {
  const struct {
    const char* text;
    int status;
    int value;
  } rows[] = {
      {"32767", 0, 32767},
      {"-32768", 0, -32768},
      {"65535", 0, -1},
      {"0XfFfF", 0, -1},
      {"65536", OT_ERR_BAD_ARGUMENT, 77},
      {"-32769", OT_ERR_BAD_ARGUMENT, 77},
      {"0x10000", OT_ERR_BAD_ARGUMENT, 77},
      {"99999999999999999999", OT_ERR_BAD_ARGUMENT, 77},
      {"0x", OT_ERR_BAD_ARGUMENT, 77},
      {"0x-1", OT_ERR_BAD_ARGUMENT, 77},
      {"+1", OT_ERR_BAD_ARGUMENT, 77},
      {"1 2", OT_ERR_BAD_ARGUMENT, 77},
      {"", OT_ERR_BAD_ARGUMENT, 77},
  };
  for (const auto& row : rows) {
    OtConfig config;
    ASSERT_EQ(config.ReadText(("n = " + std::string(row.text)).c_str()), 0);
    short value = 77;
    EXPECT_EQ(config.GetValue("n", &value, nullptr), row.status) << row.text;
    EXPECT_EQ(value, row.value) << row.text;
  }
  OtConfig config;
  config.ReadText("n = 65535\n[bad]\nn = many");
  unsigned short word = 77;
  const char* const badFirst[] = {"bad", "", nullptr};
  EXPECT_EQ(config.GetValue("n", &word, badFirst), OT_ERR_BAD_ARGUMENT);
  EXPECT_EQ(config.GetValue("m", &word, nullptr), OT_ERR_NO_MORE_ITEMS);
  EXPECT_EQ(word, 77);
  EXPECT_EQ(config.GetValue("n", &word, nullptr), 0);
  EXPECT_EQ(word, 65535);
}

TEST(Config, NamesTheMalformedLine) {
  const struct {
    const char* name;
    std::string_view text;
    long line;
  } rows[] = {
      {"nothing", ""sv, 0},
      {"blank lines", "\n\r\n \t\n"sv, 0},
      {"no equals sign", "a = 1\nb 2\nc"sv, 2},
      {"no key", "\n\n = 1"sv, 3},
      {"section closed twice", "[a]]\n"sv, 1},
      {"lone bracket", "a=1\r\n["sv, 2},
      {"text behind a section", "[a] b\n"sv, 1},
      {"section without a name", "; x\n[ ]"sv, 2},
      {"zero byte", "a=1\nb=\0\n"sv, 2},
      {"zero byte in a remark", "# \0"sv, 1},
      {"mark in the middle", "a=1\n\xef\xbb\xbf[b]"sv, 2},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const std::unique_ptr<char[]> exact(new char[row.text.size()]);
    std::memcpy(exact.get(), row.text.data(), row.text.size());
    OtConfig config;
    config.ReadText("kept = 1");
    EXPECT_EQ(config.ReadText(exact.get(), row.text.size()), row.line);
    EXPECT_EQ(config.GetText("kept", nullptr) != nullptr, row.line != 0);
  }
}

TEST(Config, ReadsFiles) {
  const std::string path = testing::TempDir() + "obs_config_test.ini";
  FILE* const file = std::fopen(path.c_str(), "w");
  ASSERT_NE(file, nullptr);
  std::fputs("[debug]\nstringOverflow = 1\n", file);
  std::fclose(file);
  OtConfig config;
  EXPECT_EQ(config.ReadFile(path.c_str()), 0);
  std::remove(path.c_str());
  EXPECT_EQ(config.ReadFile(path.c_str()), OT_ERR_BAD_ARGUMENT);
  EXPECT_EQ(config.ReadFile(nullptr), OT_ERR_BAD_ARGUMENT);
  const char* const sections[] = {"debug", nullptr};
  OtConfig moved(std::move(config));
  EXPECT_STREQ(moved.GetText("stringOverflow", sections), "1");
  EXPECT_EQ(config.GetText("stringOverflow", sections), nullptr);
}

TEST(Config, DefaultIsReplacedAndReturned) {
  OtConfig first, second;
  EXPECT_EQ(DefaultConfig(nullptr), nullptr);
  EXPECT_EQ(DefaultConfig(&first), nullptr);
  EXPECT_EQ(DefaultConfig(&second), &first);
  EXPECT_EQ(DefaultConfig(nullptr), &second);
}

}  // namespace
