// Functions and collations of this extension in the text of a schema.
#include "dependence.h"

#include <cinttypes>
#include <cstdio>
#include <vector>

#include "order.h"
#include "values.h"

namespace ot95::sqlite {

namespace {

constexpr const char* kFunctions = "functions";
constexpr const char* kAllOrders = "*";

struct Token {
  enum Kind { kName, kString, kSymbol } kind;
  std::string text;  ///< Of names and strings without their quotes.

  bool Is(char symbol) const { return kind == kSymbol && text[0] == symbol; }
};

bool IsNameCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         c == '$' || c < 0;
}

/// Splits SQL that SQLite has accepted. Comments and blanks are left out.
class Lexer {
 public:
  explicit Lexer(std::string_view sql) : sql_(sql) {}

  std::vector<Token> Tokens() {
    std::vector<Token> tokens;
    while (at_ < sql_.size()) {
      const char c = sql_[at_];
      if (Starts("--")) {
        SkipBehind("\n");
      } else if (Starts("/*")) {
        SkipBehind("*/");
      } else if (c == '\'' || c == '"' || c == '`' || c == '[') {
        tokens.push_back({c == '\'' ? Token::kString : Token::kName, Quoted(c == '[' ? ']' : c)});
      } else if (IsNameCharacter(c)) {
        tokens.push_back({Token::kName, Name()});
      } else {
        if (c > ' ') tokens.push_back({Token::kSymbol, std::string(1, c)});
        ++at_;
      }
    }
    return tokens;
  }

 private:
  bool Starts(std::string_view text) const { return sql_.substr(at_, text.size()) == text; }
  void SkipBehind(std::string_view end) {
    const std::size_t found = sql_.find(end, at_ + 2);
    at_ = found == std::string_view::npos ? sql_.size() : found + end.size();
  }
  std::string Name() {
    std::string name;
    for (; at_ < sql_.size() && IsNameCharacter(sql_[at_]); ++at_) name += sql_[at_];
    return name;
  }
  /// Two quotes in it stand for one.
  std::string Quoted(char quote) {
    std::string text;
    for (++at_; at_ < sql_.size(); ++at_) {
      if (sql_[at_] == quote) {
        const bool isDoubled = at_ + 1 < sql_.size() && sql_[at_ + 1] == quote;
        if (quote == ']' || !isDoubled) break;
        ++at_;
      }
      text += sql_[at_];
    }
    ++at_;
    return text;
  }

  std::string_view sql_;
  std::size_t at_ = 0;
};

/// Where the order stands among the arguments of a function; with stored values their type.
struct Ordered {
  const char* name;
  std::size_t place;
};
constexpr Ordered kOrdered[] = {
    {"ot_key", 1},   {"ot_hash", 1},  {"ot_low", 1},     {"ot_high", 1},
    {"ot_upper", 1}, {"ot_lower", 1}, {"ot_compare", 2}, {"ot_match", 2},
};

using Argument = std::vector<Token>;

/// The arguments of a call whose parenthesis is at an index.
std::vector<Argument> ArgumentsAt(const std::vector<Token>& tokens, std::size_t at) {
  std::vector<Argument> arguments(1);
  int depth = 0;
  for (; at < tokens.size(); ++at) {
    const Token& token = tokens[at];
    const bool isOpening = token.Is('('), isClosing = token.Is(')');
    depth += isOpening - isClosing;
    if (depth == 0) break;
    if (depth == 1 && token.Is(',')) {
      arguments.emplace_back();
    } else if (depth > 1 || !isOpening) {
      arguments.back().push_back(token);
    }
  }
  return arguments;
}

/// Adds what an order, or the type of a stored value, rests on.
void AddNamed(const Argument& argument, Dependences& to) {
  const bool isLiteral = argument.size() == 1 && argument[0].kind == Token::kString;
  const std::optional<Order> order = isLiteral ? ParseOrder(argument[0].text) : std::nullopt;
  int type = 0;
  if (order) {
    to.insert(TagOf(order->language));
  } else if (!isLiteral || ot95_type_by_name(argument[0].text.c_str(), &type) != OT95_OK ||
             DescribeType(type).kind == OT95_KIND_TEXT) {
    to.insert(kAllOrders);  // a stored text has a language of its own
  }
}

void AddCall(const Ordered& function, const std::vector<Argument>& arguments, Dependences& to) {
  to.insert(kFunctions);
  if (function.place < arguments.size()) {
    AddNamed(arguments[function.place], to);
  } else {
    to.insert(TagOf(Order().language));
  }
}

std::string Hex(uint64_t number) {
  char text[17];
  std::snprintf(text, sizeof text, "%016" PRIx64, number);
  return text;
}

}  // namespace

std::string VersionOf(const std::string& dependence) {
  ot95_versions versions = {};
  versions.struct_size = sizeof versions;
  Check(ot95_version(&versions), "version");
  if (dependence == kAllOrders) return "collation " + std::to_string(versions.collation);
  if (dependence == kFunctions) {
    return "keys " + std::to_string(versions.sort_key) + ", Unicode " + versions.unicode;
  }
  unsigned language = 0;
  uint64_t version = 0;
  if (ot95_language_by_tag(dependence.c_str(), &language) != OT95_OK) return {};
  Check(ot95_order_version(language, &version), dependence);
  return Hex(version);
}

void AddCollation(std::string_view name, Dependences& to) {
  if (name.size() < 4 || sqlite3_strnicmp(name.data(), "ot95", 4) != 0) return;
  if (const std::optional<Order> order = ParseOrder(name)) to.insert(TagOf(order->language));
}

void AddExpressions(std::string_view sql, Dependences& to) {
  const std::vector<Token> tokens = Lexer(sql).Tokens();
  for (std::size_t i = 0; i + 1 < tokens.size(); ++i) {
    if (tokens[i].kind != Token::kName) continue;
    if (sqlite3_stricmp(tokens[i].text.c_str(), "collate") == 0) {
      AddCollation(tokens[i + 1].text, to);
    }
    if (!tokens[i + 1].Is('(')) continue;
    for (const Ordered& function : kOrdered) {
      if (sqlite3_stricmp(tokens[i].text.c_str(), function.name) == 0) {
        AddCall(function, ArgumentsAt(tokens, i + 1), to);
      }
    }
  }
}

}  // namespace ot95::sqlite
