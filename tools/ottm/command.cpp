// What all commands share: how an answer is written.
#include "command.h"

namespace ottm {

int Command::Print(bool asJson) {
  const Answer answer = Run();
  WriteOut(asJson ? JsonLine(answer.json) : answer.human);
  FlushOut();
  return answer.exit;
}

std::string JsonLine(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace ottm
