// Progress on a terminal.

#include "progress.h"

#include <chrono>
#include <cstdint>
#include <cstdio>

namespace ot95::tools {
namespace {

/// "1:02:03", "2:03".
std::string Clock(double seconds) {
  const auto whole = static_cast<std::uint64_t>(seconds + 0.5);
  const std::uint64_t hours = whole / 3600;
  char text[32];
  if (hours != 0) {
    std::snprintf(text, sizeof text, "%ju:%02ju:%02ju", std::uintmax_t{hours},
                  std::uintmax_t{whole / 60 % 60}, std::uintmax_t{whole % 60});
  } else {
    std::snprintf(text, sizeof text, "%ju:%02ju", std::uintmax_t{whole / 60},
                  std::uintmax_t{whole % 60});
  }
  return text;
}

}  // namespace

std::string ProgressLine(double share, std::size_t done, const char* what, double seconds) {
  constexpr std::size_t width = 40;
  const std::size_t full = share >= 1 ? width : static_cast<std::size_t>(share * width);
  char percent[8];
  std::snprintf(percent, sizeof percent, "%3.0f%%", share * 100);
  std::string line = "[" + std::string(full, '#') + std::string(width - full, '.') + "] " +
                     percent + " " + std::to_string(done) + " " + what;
  if (seconds < 1) return line;
  line += ", " + std::to_string(static_cast<std::uint64_t>(static_cast<double>(done) / seconds)) +
          " a second";
  if (share > 0 && share < 1) line += ", " + Clock(seconds / share * (1 - share)) + " left";
  return line;
}

void ShowProgress(double share, std::size_t done, const char* what) {
  using Time = std::chrono::steady_clock;
  static Time::time_point begin;
  static double before = 2;
  if (share < before) begin = Time::now();
  before = share;
  const std::chrono::duration<double> seconds = Time::now() - begin;
  // The rest of a longer line before is cleared.
  std::fprintf(stderr, "\r%s\x1b[K", ProgressLine(share, done, what, seconds.count()).c_str());
}

}  // namespace ot95::tools
