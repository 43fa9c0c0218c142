#ifndef OTTM_BYTES_H
#define OTTM_BYTES_H

#include <string>
#include <vector>

namespace ottm {

using Bytes = std::vector<unsigned char>;

std::string ToHex(const Bytes& bytes);

/// Bytes of a command-line argument: hex digits, "-" for hex digits on standard input, or "@FILE"
/// for the raw bytes of a file. Throws BadInput.
Bytes ReadBytes(const std::string& argument);

}  // namespace ottm

#endif
