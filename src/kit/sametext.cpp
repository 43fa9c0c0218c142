// Whether what a value prints is what a text said.
#include "kit/sametext.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>

namespace ot95 {
namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::size_t kAbbreviated = 3;

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool IsHexDigit(char c) {
  return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool StartsHex(std::string_view text) {
  return text.size() > 2 && text[0] == '0' && Lower(text[1]) == 'x' && IsHexDigit(text[2]);
}

/// What a text says, without what doesn't count.
std::string Plain(std::string_view text, bool abbreviates) {
  std::string plain;
  std::size_t letters = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char before = i == 0 ? ' ' : text[i - 1];
    const char after = i + 1 == text.size() ? ' ' : text[i + 1];
    letters = IsLetter(text[i]) ? letters + 1 : 0;
    if (kBlanks.find(text[i]) != std::string_view::npos) continue;
    if (text[i] == '+' && !IsDigit(before) && IsDigit(after)) continue;
    if (!IsDigit(before) && StartsHex(text.substr(i))) {
      ++i;
      continue;
    }
    const bool isNeedless = text[i] == '0' && IsDigit(after) && before != '.' &&
                            (plain.empty() || !IsDigit(plain.back()) || !IsDigit(before));
    if (isNeedless || (abbreviates && letters > kAbbreviated)) continue;
    plain += Lower(text[i]);
  }
  return plain;
}

struct WholeNumber {
  bool isNegative;
  std::uint64_t size;

  bool operator==(const WholeNumber&) const = default;
};

std::optional<WholeNumber> WholeNumberOf(std::string_view text) {
  WholeNumber number{text.substr(0, 1) == "-", 0};
  if (number.isNegative || text.substr(0, 1) == "+") text.remove_prefix(1);
  const bool isHex = StartsHex(text);
  if (isHex) text.remove_prefix(2);
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number.size, isHex ? 16 : 10);
  if (error != std::errc() || rest != end) return {};
  return number;
}

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

float Read(const char* text, char** end, float) {
  return std::strtof(text, end);
}

double Read(const char* text, char** end, double) {
  return std::strtod(text, end);
}

template <class Real>
std::optional<Real> RealOf(std::string_view text) {
  const std::string whole(Trimmed(text));
  char* end = nullptr;
  const Real real = Read(whole.c_str(), &end, Real());
  if (whole.empty() || end != whole.c_str() + whole.size()) return {};
  return real;
}

}  // namespace

bool SayTheSame(std::string_view a, std::string_view b, bool abbreviates) {
  if (Plain(a, abbreviates) == Plain(b, abbreviates)) return true;
  const auto number = WholeNumberOf(Trimmed(a));
  return number && number == WholeNumberOf(Trimmed(b));
}

template <class Real>
bool SaysNumber(std::string_view text, std::string_view value) {
  const auto said = RealOf<Real>(text);
  const auto held = RealOf<Real>(value);
  if (!said || !held) return false;
  if (std::isnan(*said)) return std::isnan(*held);
  const bool hasDigits = text.find_first_of("0123456789") != std::string_view::npos;
  const std::string_view mantissa = text.substr(0, text.find_first_of("eEpP"));
  const bool isNothing = mantissa.find_first_of("123456789") == std::string_view::npos;
  if ((std::isinf(*said) && hasDigits) || (*said == 0 && !isNothing)) return false;
  return *said == *held;
}

template bool SaysNumber<float>(std::string_view text, std::string_view value);
template bool SaysNumber<double>(std::string_view text, std::string_view value);

}  // namespace ot95
