// Formats of callers: one conversion at a time is read and checked, so that none reaches a printf
// that its argument doesn't fit.

#include "kit/checkedformat.h"

#include <algorithm>
#include <cstring>

namespace ot95 {

namespace {

/// Reads decimal digits from `at` on, saturating.
int ReadCount(std::string_view format, std::size_t& at) {
  int value = 0;
  for (; at < format.size() && format[at] >= '0' && format[at] <= '9'; ++at) {
    value = std::min(value * 10 + (format[at] - '0'), formatNumberLimit);
  }
  return value;
}

bool ReadFlag(Conversion& conversion, char flag) {
  switch (flag) {
    case '-':
      return conversion.left = true;
    case '+':
      return conversion.plus = true;
    case ' ':
      return conversion.space = true;
    case '#':
      return conversion.alternate = true;
    case '0':
      return conversion.zero = true;
    default:
      return false;
  }
}

/// Reads what stands behind a '%' at `at`, and moves `at` behind it. The letter stays 0 if that is
/// no conversion of the kind asked for.
Conversion ReadConversion(std::string_view format, std::size_t& at, std::string_view letters) {
  Conversion conversion;
  while (at < format.size() && ReadFlag(conversion, format[at])) ++at;
  conversion.width = ReadCount(format, at);
  if (at < format.size() && format[at] == '.') conversion.precision = ReadCount(format, ++at);
  constexpr std::string_view modifiers = "hlLqjzt";
  int halves = 0;
  for (; at < format.size() && modifiers.find(format[at]) != modifiers.npos; ++at) {
    halves += format[at] == 'h';
  }
  conversion.bits = halves == 0 ? 32 : halves == 1 ? 16 : 8;
  if (at < format.size() && letters.find(format[at]) != letters.npos) {
    conversion.letter = format[at++];
  }
  return conversion;
}

}  // namespace

CheckedFormat ParseFormat(std::string_view format, std::string_view letters) {
  std::size_t percent = format.find('%');
  while (percent != format.npos) {
    std::size_t next = percent + 1;
    if (next < format.size() && format[next] == '%') {
      ++next;
    } else {
      std::size_t behind = next;
      const Conversion conversion = ReadConversion(format, behind, letters);
      if (conversion.letter) {
        return {format.substr(0, percent), conversion, format.substr(behind)};
      }
    }
    percent = format.find('%', next);
  }
  return {format, {}, {}};
}

void BoundedText::Append(std::string_view text) {
  const std::size_t count = std::min(text.size(), room_ - length_);
  if (count != 0) std::memcpy(buffer_ + length_, text.data(), count);
  length_ += count;
}

void BoundedText::Fill(std::size_t count, char c) {
  count = std::min(count, room_ - length_);
  std::memset(buffer_ + length_, c, count);
  length_ += count;
}

void BoundedText::AppendFormatText(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    Append(text[i]);
    if (text.substr(i, 2) == "%%") ++i;
  }
}

void BoundedText::AppendField(const Conversion& conversion, std::string_view sign,
                              std::size_t zeros, std::string_view digits, bool zeroPad) {
  const std::size_t length = sign.size() + zeros + digits.size();
  const auto width = static_cast<std::size_t>(conversion.width);
  const std::size_t padding = width > length ? width - length : 0;
  const bool padWithZeros = zeroPad && conversion.zero && !conversion.left;
  if (!conversion.left && !padWithZeros) Fill(padding, ' ');
  Append(sign);
  Fill(zeros + (padWithZeros ? padding : 0), '0');
  Append(digits);
  if (conversion.left) Fill(padding, ' ');
}

}  // namespace ot95
