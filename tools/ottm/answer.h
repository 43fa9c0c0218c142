#ifndef OTTM_ANSWER_H
#define OTTM_ANSWER_H

#include <nlohmann/json.hpp>
#include <string>

#include "bad_input.h"
#include "message.h"

namespace ottm {

using Json = nlohmann::ordered_json;

/// What a command has to say, for people and for programs.
struct Answer {
  Json json = Json::object();
  std::string human;  ///< Lines, each with its newline.
  int exit = 0;       ///< 1 where a question was answered no.
};

using ot95::tools::BadInput;
using ot95::tools::Naming;
using ot95::tools::Quoted;

}  // namespace ottm

#endif
