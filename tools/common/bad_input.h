#ifndef OT95_TOOLS_BAD_INPUT_H
#define OT95_TOOLS_BAD_INPUT_H

#include <stdexcept>
#include <string>

namespace ot95::tools {

/// Ends a command with one line on standard error and exit status 2. The text names the argument
/// and says what was expected.
class BadInput : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Runs an action, and puts what it was about, and a colon, in front of what it refuses.
template <class Action>
auto Naming(const std::string& subject, const Action& action) {
  try {
    return action();
  } catch (const BadInput& error) {
    throw BadInput(subject + ": " + error.what());
  }
}

}  // namespace ot95::tools

#endif
