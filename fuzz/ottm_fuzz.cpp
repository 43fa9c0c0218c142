// Lines of `ottm batch`: command lines, hex, layouts, formats. An answer is JSON, or says what was
// refused; nothing else leaves.
//
// An input is one line.
#include <unistd.h>

#include <filesystem>
#include <string>

#include "fuzzing.h"
#include "program.h"

using namespace fuzzing;

namespace {

/// Commands that read files would find those of the machine; here is nothing to be found.
void GoNowhere() {
  static const bool gone = [] {
    std::string empty = (std::filesystem::temp_directory_path() / "ottm_XXXXXX").string();
    return mkdtemp(empty.data()) != nullptr && chdir(empty.c_str()) == 0 &&
           std::filesystem::remove(empty);
  }();
  Require(gone);
}

/// Whether a line names a place outside: a path from the root or upward, or standard input.
bool LeadsOutside(const std::string& line) {
  return line.find('/') != line.npos || line.find("\\u") != line.npos ||
         line.find("\"-\"") != line.npos || line.find("\"sort\"") != line.npos ||
         line.find("\"match\"") != line.npos;
}

}  // namespace

extern "C" OT95_EXPORT int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Start();
  GoNowhere();
  const std::string line(reinterpret_cast<const char*>(data), size);
  if (LeadsOutside(line)) return 0;
  const ottm::Json answer = ottm::AnswerLine(line);
  Require(!ottm::JsonLine(answer).empty());
  Require(!answer.contains("error") || answer["exit"] == 2);
  return 0;
}
