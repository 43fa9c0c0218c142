// Bytes on the command line: hex digits, or a file of them.
#include "bytes.h"

#include "answer.h"
#include "files.h"

namespace ottm {
namespace {

int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

Bytes FromHex(std::string digits) {
  std::erase_if(digits, [](char c) { return c == '\n' || c == '\r' || c == ' '; });
  if (digits.size() % 2 != 0) throw BadInput("expected an even number of hex digits");
  Bytes bytes;
  bytes.reserve(digits.size() / 2);
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    const int high = HexValue(digits[i]);
    const int low = HexValue(digits[i + 1]);
    if (high < 0 || low < 0) {
      throw BadInput("expected hex digits, found " + Quoted(digits.substr(i, 2)) + " at digit " +
                     std::to_string(i + 1));
    }
    bytes.push_back(static_cast<unsigned char>(high << 4 | low));
  }
  return bytes;
}

}  // namespace

std::string ToHex(const Bytes& bytes) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  text.reserve(bytes.size() * 2);
  for (unsigned char byte : bytes) {
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}

Bytes ReadBytes(const std::string& argument) {
  using ot95::tools::InputFile;
  return Naming("HEX", [&] {
    if (argument == "-") return FromHex(InputFile(argument).ReadAll());
    if (argument.empty() || argument[0] != '@') return FromHex(argument);
    const std::string bytes = InputFile(argument.substr(1)).ReadAll();
    return Bytes(bytes.begin(), bytes.end());
  });
}

}  // namespace ottm
