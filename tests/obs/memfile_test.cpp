// Files in memory, at and beyond their ends.

#include "ot95/memfile.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <utility>

namespace {

/// A file of the test's own, removed at the end of the scope.
class TempFile {
 public:
  explicit TempFile(const std::string& content)
      : path_(testing::TempDir() + "obs_memfile_" +
              testing::UnitTest::GetInstance()->current_test_info()->name()) {
    std::ofstream(path_, std::ios::binary) << content;
  }
  ~TempFile() { std::remove(path_.c_str()); }
  const char* Path() const { return path_.c_str(); }

 private:
  std::string path_;
};

struct Step {
  const char* name;
  unsigned long start;  // Position before.
  long offset;
  unsigned short origin;
  unsigned long wanted;
  long place;  // Offset of the bytes handed out; -1 for null.
  unsigned long got;
  unsigned long position;  // Position after.
};

const Step steps[] = {
    {"bytes here", 2, 0, 1, 4, 2, 4, 2},
    {"the most one can want", 9, 0, 1, ULONG_MAX, 9, 1, 9},
    {"from the start", 5, 3, 0, 2, 3, 2, 3},
    {"forward", 5, 3, 1, 2, 8, 2, 8},
    {"back", 5, -5, 1, 2, 0, 2, 0},
    {"from the end", 0, -1, 2, 2, 9, 1, 9},
    {"nothing wanted", 0, 4, 0, 0, 4, 0, 4},
    {"to the end", 3, 0, 2, 5, -1, 0, 10},
    {"behind the end", 3, 1, 2, 5, -1, 0, 3},
    {"before the start", 3, -4, 1, 5, -1, 0, 3},
    {"farthest back", 3, LONG_MIN, 2, 5, -1, 0, 3},
    {"no such origin", 3, 0, 3, 5, -1, 0, 3},
    {"position set outside", ULONG_MAX, 0, 1, 5, -1, 0, ULONG_MAX},
    {"wrapping round from outside", ULONG_MAX, 2, 1, 5, -1, 0, ULONG_MAX},
};

TEST(MemFile, SeekStaysInside) {
  const std::unique_ptr<char[]> block(new char[10]());
  for (const Step& step : steps) {
    SCOPED_TRACE(step.name);
    MemFile file(block.get(), 10);
    file.position = step.start;
    unsigned long length = step.wanted;
    const void* const bytes = file.Seek(step.offset, step.origin, &length, 0);
    EXPECT_EQ(bytes, step.place < 0 ? nullptr : block.get() + step.place);
    EXPECT_EQ(length, step.got);
    EXPECT_EQ(file.position, step.position);
    EXPECT_EQ(file.length, 10u);
  }
}

TEST(MemFile, LengthFieldOnlyShortens) {
  const char block[10] = {};
  MemFile file(block, 10);
  unsigned long length = 100;
  file.length = 4;
  file.Seek(1, 0, &length, 0);
  EXPECT_EQ(length, 3u);
  file.length = length = 100;
  file.Seek(1, 0, &length, 0);
  EXPECT_EQ(length, 9u);
  EXPECT_NE(file.Seek(0, 0, nullptr, 0), nullptr);
}

TEST(MemFile, NoBytes) {
  MemFile files[] = {MemFile(), MemFile(nullptr, 0), MemFile(nullptr, 9), MemFile("", 0)};
  for (MemFile& file : files) {
    for (const unsigned short origin :
         {MemFile::FROM_START, MemFile::FROM_POSITION, MemFile::FROM_END}) {
      unsigned long length = 1;
      EXPECT_EQ(file.Seek(0, origin, &length, 0), nullptr);
      EXPECT_EQ(length, 0u);
    }
  }
}

TEST(MemFile, MapsAFileForItsLastOwner) {
  const TempFile stored("stored bytes");
  int error = -1;
  MemFile file = MemFile::Map(stored.Path(), error);
  ASSERT_EQ(error, 0);
  ASSERT_EQ(file.length, 12u);
  file.position = 7;
  MemFile owner = std::move(file);
  EXPECT_EQ(file.length, 0u);
  MemFile other(stored.Path(), 3);
  other = std::move(owner);
  unsigned long length = 100;
  const unsigned char* const bytes = other.Seek(0, 1, &length, 0);
  ASSERT_EQ(length, 5u);
  EXPECT_EQ(std::memcmp(bytes, "bytes", 5), 0);
  length = 1;
  EXPECT_EQ(file.Seek(0, 0, &length, 0), nullptr);
  EXPECT_EQ(length, 0u);
}

TEST(MemFile, MapReportsWhatItCannotMap) {
  const TempFile empty("");
  const std::string missing = std::string(empty.Path()) + ".missing";
  const struct {
    const char* name;
    const char* path;
    int error;
  } rows[] = {
      {"null", nullptr, EINVAL},  {"missing", missing.c_str(), ENOENT},
      {"directory", "/", EISDIR}, {"device", "/dev/null", ENODEV},
      {"empty", empty.Path(), 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    int error = -1;
    MemFile file = MemFile::Map(row.path, error);
    EXPECT_EQ(error, row.error);
    EXPECT_EQ(file.length, 0u);
    unsigned long length = 1;
    EXPECT_EQ(file.Seek(0, 1, &length, 0), nullptr);
    EXPECT_EQ(length, 0u);
  }
}

}  // namespace
