#ifndef OTTM_DETAILS_H
#define OTTM_DETAILS_H

#include <string>
#include <string_view>

namespace ottm {

/// What help and manual say of a command behind its summary: details, then an example that works.
std::string Footer(std::string_view command, std::string_view example);

}  // namespace ottm

#endif
