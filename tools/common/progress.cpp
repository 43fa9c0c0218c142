// Progress on a terminal.

#include "progress.h"

#include <cstdio>
#include <string>

namespace ot95::tools {

void ShowProgress(double share, std::size_t done, const char* what) {
  constexpr int width = 40;
  std::string bar(static_cast<std::size_t>(share * width), '#');
  bar.resize(width, '.');
  std::fprintf(stderr, "\r[%s] %3.0f%% %zu %s", bar.c_str(), share * 100, done, what);
}

}  // namespace ot95::tools
