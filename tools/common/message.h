#ifndef OT95_TOOLS_MESSAGE_H
#define OT95_TOOLS_MESSAGE_H

#include <string>
#include <string_view>
#include <vector>

namespace ot95::tools {

/// A text on one line, with escapes for what a terminal would act on and for what isn't UTF-8.
std::string Escaped(std::string_view text);

/// A word of the user's or of a file as a message shows it: in single quotes, escaped, and no more
/// of it than a person reads.
std::string Quoted(std::string_view text);

/// A whole message, escaped and cut to what a person reads.
std::string Message(std::string_view text);

/// The one that takes the fewest changes of letters; the first of several. `known` isn't empty.
const std::string& Nearest(std::string_view word, const std::vector<std::string>& known);

/// "unknown command 'bogus'; the nearest is 'batch'"
std::string Unknown(const std::string& kind, std::string_view word,
                    const std::vector<std::string>& known);

}  // namespace ot95::tools

#endif
