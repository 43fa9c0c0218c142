// What programs tell: words of others shown safely and shortly, and the nearest known word.
#include "message.h"

#include <utf8.h>

#include <algorithm>
#include <numeric>

namespace ot95::tools {
namespace {

constexpr std::size_t kShownOfWord = 60;
constexpr std::size_t kShownOfMessage = 1000;
constexpr std::size_t kComparedOfWord = 64;

std::string EscapedByte(unsigned char byte) {
  static constexpr char kDigits[] = "0123456789abcdef";
  switch (byte) {
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    default:
      return {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 15]};
  }
}

/// Bytes of the character that a text begins with; 0 where that isn't UTF-8.
std::size_t WholeCharacter(std::string_view text) {
  const char* next = text.data();
  try {
    utf8::next(next, text.data() + text.size());
  } catch (const utf8::exception&) {
    return 0;
  }
  return static_cast<std::size_t>(next - text.data());
}

/// U+0080 to U+009F, which some terminals act on.
bool IsControl(std::string_view text) {
  return text[0] == '\xc2' && static_cast<unsigned char>(text[1]) < 0xa0;
}

/// The first characters of a text, escaped. Moves the text behind them.
std::string TakeEscaped(std::string_view& text, std::size_t most) {
  std::string shown;
  for (; !text.empty() && most != 0; --most) {
    const std::size_t bytes = WholeCharacter(text);
    const bool isPlain = bytes > 1 ? !IsControl(text) : text[0] >= ' ' && text[0] != 0x7f;
    const std::string_view character = text.substr(0, std::max(bytes, std::size_t{1}));
    for (const char c : character) {
      shown += isPlain ? std::string(1, c) : EscapedByte(static_cast<unsigned char>(c));
    }
    text.remove_prefix(character.size());
  }
  return shown;
}

/// How many letters have to be put, taken, changed or swapped with their neighbour.
std::size_t Distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> before, row(b.size() + 1), next(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    next[0] = i + 1;
    for (std::size_t k = 0; k < b.size(); ++k) {
      next[k + 1] = std::min({row[k] + (a[i] != b[k]), row[k + 1] + 1, next[k] + 1});
      if (i > 0 && k > 0 && a[i] == b[k - 1] && a[i - 1] == b[k]) {
        next[k + 1] = std::min(next[k + 1], before[k - 1] + 1);
      }
    }
    before = row;
    std::swap(row, next);
  }
  return row[b.size()];
}

}  // namespace

std::string Escaped(std::string_view text) {
  return TakeEscaped(text, text.size());
}

std::string Quoted(std::string_view text) {
  const std::size_t bytes = text.size();
  std::string shown = "'" + TakeEscaped(text, kShownOfWord);
  if (text.empty()) return shown + "'";
  return shown + "...' (" + std::to_string(bytes) + " bytes)";
}

std::string Message(std::string_view text) {
  std::string shown = TakeEscaped(text, kShownOfMessage);
  return text.empty() ? shown : shown + "...";
}

const std::string& Nearest(std::string_view word, const std::vector<std::string>& known) {
  word = word.substr(0, kComparedOfWord);
  return *std::min_element(known.begin(), known.end(),
                           [&](const std::string& a, const std::string& b) {
                             return Distance(word, a) < Distance(word, b);
                           });
}

std::string Unknown(const std::string& kind, std::string_view word,
                    const std::vector<std::string>& known) {
  return "unknown " + kind + " " + Quoted(word) + "; the nearest is '" + Nearest(word, known) + "'";
}

}  // namespace ot95::tools
