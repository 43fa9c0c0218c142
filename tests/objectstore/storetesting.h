#ifndef OT95_TESTS_OBJECTSTORE_STORETESTING_H
#define OT95_TESTS_OBJECTSTORE_STORETESTING_H

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "bad_input.h"
#include "check.h"
#include "store.h"

/// A directory that goes when its test does.
class Scratch {
 public:
  Scratch() {
    std::string made = (std::filesystem::temp_directory_path() / "otdb_XXXXXX").string();
    if (mkdtemp(made.data()) == nullptr) std::abort();
    path_ = made;
  }
  ~Scratch() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  std::string operator/(const std::string& name) const { return path_ + "/" + name; }
  /// Writes a file. @return where.
  std::string File(const std::string& name, const std::string& bytes) const {
    const std::string path = *this / name;
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
  }

 private:
  std::string path_;
};

inline std::string ReadWhole(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// What a shell command prints.
inline std::string OutputOf(const std::string& command) {
  std::string out;
  FILE* pipe = popen(command.c_str(), "r");
  char buffer[4096];
  while (const std::size_t bytes = fread(buffer, 1, sizeof buffer, pipe)) out.append(buffer, bytes);
  pclose(pipe);
  return out;
}

/// What a shell command prints, also on standard error, and how it ends.
struct Outcome {
  std::string out;
  int exit;  ///< -1 behind a signal.
};

inline Outcome OutcomeOf(const std::string& command) {
  std::string out = OutputOf("( " + command + " ) 2>&1; echo $?");
  out.pop_back();
  const std::size_t line = out.rfind('\n') + 1;
  const int status = std::stoi(out.substr(line));
  return {out.substr(0, line), status < 128 ? status : -1};
}

/// The faults that a check of a store tells, a line each.
inline std::string FaultsOf(const otdb::Store& store) {
  std::string faults;
  auto txn = store.Read();
  otdb::Check(store, txn, [&](const std::string& fault) { faults += fault + "\n"; });
  return faults;
}

/// What an action says when it refuses its input; empty if it doesn't.
template <class Action>
std::string RefusalOf(const Action& action) {
  try {
    action();
  } catch (const ot95::tools::BadInput& error) {
    return error.what();
  }
  return "";
}

/// The forms in which a store can keep its values, and both kinds of its indexes.
struct StoreKind {
  const char* name;
  const char* form;
  bool byteOrder;

  /// What a schema says of it.
  std::string Json() const {
    return std::string(R"("form": ")") + form + R"(", "sortKeyVersion": )" +
           std::to_string(byteOrder ? OtTypeMgr::SortKeyVersion() : 0);
  }
  /// The same on the command line, but for the form.
  std::string Option() const { return byteOrder ? " --byte-order" : ""; }
};
inline constexpr StoreKind kStoreKinds[] = {{"BigEndian", "big-endian", false},
                                            {"Native", "native", false},
                                            {"BigEndianByteOrder", "big-endian", true},
                                            {"NativeByteOrder", "native", true}};
/// The name of a test over one of them.
inline std::string NameOfKind(const testing::TestParamInfo<StoreKind>& kind) {
  return kind.param.name;
}

/// Random choices, the same in every run of a seed.
class Dice {
 public:
  explicit Dice(unsigned seed) : engine_(seed) {}

  /// A number below `count`.
  std::size_t Below(std::size_t count) { return engine_() % count; }
  bool Chance(unsigned percent) { return Below(100) < percent; }
  template <class Choices>
  const auto& Of(const Choices& choices) {
    return choices[Below(std::size(choices))];
  }

 private:
  std::mt19937 engine_;
};

#endif
