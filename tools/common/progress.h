#ifndef OT95_TOOLS_PROGRESS_H
#define OT95_TOOLS_PROGRESS_H

#include <cstddef>

namespace ot95::tools {

/// Draws a bar on standard error over the one before: the share from 0 to 1, and how many of what
/// are done.
void ShowProgress(double share, std::size_t done, const char* what);

}  // namespace ot95::tools

#endif
