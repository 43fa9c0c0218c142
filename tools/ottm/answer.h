#ifndef OTTM_ANSWER_H
#define OTTM_ANSWER_H

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

namespace ottm {

using Json = nlohmann::ordered_json;

/// What a command has to say, for people and for programs.
struct Answer {
  Json json = Json::object();
  std::string human;  ///< Lines, each with its newline.
  int exit = 0;       ///< 1 where a question was answered no.
};

/// Ends a command with one line on standard error and exit status 2. The text names the argument
/// and says what was expected.
class BadInput : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace ottm

#endif
