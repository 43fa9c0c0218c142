#include "bytes.h"

#include <fstream>
#include <iostream>
#include <iterator>

#include "answer.h"

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
  if (digits.size() % 2 != 0) throw BadInput("HEX: expected an even number of hex digits");
  Bytes bytes;
  bytes.reserve(digits.size() / 2);
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    const int high = HexValue(digits[i]);
    const int low = HexValue(digits[i + 1]);
    if (high < 0 || low < 0) {
      throw BadInput("HEX: expected hex digits, found '" + digits.substr(i, 2) + "'");
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
  using Input = std::istreambuf_iterator<char>;
  if (argument == "-") return FromHex(std::string(Input(std::cin), Input()));
  if (argument.empty() || argument[0] != '@') return FromHex(argument);
  std::ifstream file(argument.substr(1), std::ios::binary);
  if (!file) throw BadInput(argument.substr(1) + ": expected a file that can be read");
  return Bytes(Input(file), Input());
}

}  // namespace ottm
