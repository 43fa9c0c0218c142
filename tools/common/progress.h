#ifndef OT95_TOOLS_PROGRESS_H
#define OT95_TOOLS_PROGRESS_H

#include <cstddef>
#include <string>

namespace ot95::tools {

/// "[####....]  50% 1200 records, 600 a second, 0:02 left": the share from 0 to 1, how many of what
/// are done, and the seconds that this took. The rate is left out of the first second.
std::string ProgressLine(double share, std::size_t done, const char* what, double seconds);

/// Draws the line on standard error over the one before. A share below that of the call before
/// begins something new, and so does the first call.
void ShowProgress(double share, std::size_t done, const char* what);

}  // namespace ot95::tools

#endif
