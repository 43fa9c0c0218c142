// Colour, for people alone: what a program reads of another one holds none.
#include "colour.h"

#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace ot95::tools {
namespace {

bool HasColours(int descriptor) {
  const char* unwanted = std::getenv("NO_COLOR");
  const char* terminal = std::getenv("TERM");
  return (unwanted == nullptr || *unwanted == '\0') && terminal != nullptr &&
         std::string_view(terminal) != "dumb" && isatty(descriptor) != 0;
}

const char* Begin(Colour colour) {
  switch (colour) {
    case Colour::kHeading:
      return "\x1b[1m";
    case Colour::kError:
      return "\x1b[1;31m";
    case Colour::kLess:
      return "\x1b[31m";
    case Colour::kMore:
      return "\x1b[32m";
  }
  return "";
}

}  // namespace

std::string Painted(const std::string& text, Colour colour, int descriptor) {
  return HasColours(descriptor) ? Begin(colour) + text + "\x1b[0m" : text;
}

}  // namespace ot95::tools
