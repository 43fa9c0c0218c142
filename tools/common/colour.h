#ifndef OT95_TOOLS_COLOUR_H
#define OT95_TOOLS_COLOUR_H

#include <string>

namespace ot95::tools {

enum class Colour { kHeading, kError, kLess, kMore };

/// The text in a colour, where the descriptor is a terminal that has some and NO_COLOR isn't set
/// in the environment; else as it is.
std::string Painted(const std::string& text, Colour colour, int descriptor);

}  // namespace ot95::tools

#endif
