#include "command.h"

#include <cstdio>

namespace ottm {
namespace {

void Require(bool taken) {
  if (!taken) throw std::runtime_error("standard output takes no more");
}

}  // namespace

int Command::Print(bool asJson) {
  const Answer answer = Run();
  WriteOut(asJson ? JsonLine(answer.json) : answer.human);
  FlushOut();
  return answer.exit;
}

std::string JsonLine(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

void WriteOut(std::string_view text) {
  Require(std::fwrite(text.data(), 1, text.size(), stdout) == text.size());
}

void FlushOut() {
  Require(std::fflush(stdout) == 0);
}

}  // namespace ottm
