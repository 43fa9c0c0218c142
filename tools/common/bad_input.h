#ifndef OT95_TOOLS_BAD_INPUT_H
#define OT95_TOOLS_BAD_INPUT_H

#include <stdexcept>

namespace ot95::tools {

/// Ends a command with one line on standard error and exit status 2. The text names the argument
/// and says what was expected.
class BadInput : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace ot95::tools

#endif
