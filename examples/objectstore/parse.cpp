// Queries from text.
#include <cctype>
#include <charconv>
#include <type_traits>

#include "bad_input.h"
#include "message.h"
#include "query.h"
#include "value.h"

namespace otdb {
namespace {

using ot95::tools::BadInput;

struct Token {
  enum Kind { kWord, kText, kSign, kEnd };
  Kind kind = kEnd;
  std::string text;
  std::size_t place = 0;
  std::size_t end = 0;
};

class Lexer {
 public:
  explicit Lexer(const std::string& text) : text_(text) {}

  Token Next() {
    while (at_ < text_.size() && std::isspace(Char())) ++at_;
    Token token;
    token.place = at_;
    if (at_ == text_.size()) return token;
    if (Char() == '\'') {
      token.kind = Token::kText;
      token.text = Quoted();
    } else if (IsSign()) {
      token.kind = Token::kSign;
      token.text = Sign();
    } else {
      token.kind = Token::kWord;
      while (at_ < text_.size() && !std::isspace(Char()) && !IsSign() && Char() != '\'') {
        token.text += text_[at_++];
      }
    }
    token.end = at_;
    return token;
  }

 private:
  unsigned char Char() const { return static_cast<unsigned char>(text_[at_]); }
  bool IsSign() const { return std::string_view("=<>(),").find(text_[at_]) != std::string::npos; }

  std::string Sign() {
    const std::string two = text_.substr(at_, 2);
    const std::size_t length = two == "<=" || two == ">=" || two == "<>" ? 2 : 1;
    at_ += length;
    return two.substr(0, length);
  }

  std::string Quoted() {
    const std::size_t start = at_++;
    std::string quoted;
    for (;; ++at_) {
      if (at_ == text_.size()) {
        throw BadInput("query: the quote at " + std::to_string(start + 1) + " isn't closed");
      }
      if (text_[at_] != '\'') {
        quoted += text_[at_];
      } else if (text_.compare(at_, 2, "''") == 0) {
        quoted += text_[at_++];
      } else {
        ++at_;
        return quoted;
      }
    }
  }

  const std::string& text_;
  std::size_t at_ = 0;
};

class Parser {
 public:
  Parser(const Schema& schema, const std::string& text)
      : schema_(schema), text_(text), lexer_(text) {
    Step();
  }

  Query Run() {
    Query query;
    Require("from");
    if (token_.kind != Token::kWord) Fail("a class");
    query.type = type_ = &Here([&]() -> auto& { return schema_.ClassNamed(token_.text); });
    Step();
    if (Take("where")) query.where = Either(false);
    if (Take("order")) {
      Require("by");
      do {
        const std::size_t member = MemberHere();
        query.orders.push_back({member, Take("desc")});
      } while (Take(","));
    }
    if (Take("limit")) query.limit = Number();
    query.count = Take("count");
    if (token_.kind != Token::kEnd) Fail("the end of the query");
    return query;
  }

 private:
  static constexpr int kDeepest = 200;

  void Step() {
    last_ = token_.end;
    token_ = lexer_.Next();
  }
  [[noreturn]] void Fail(const std::string& expected) const {
    const std::string found =
        token_.kind == Token::kEnd ? "its end" : ot95::tools::Quoted(token_.text);
    throw BadInput("query, at " + std::to_string(token_.place + 1) + ": expected " + expected +
                   ", found " + found);
  }
  bool Is(const char* word) const { return token_.kind != Token::kText && token_.text == word; }
  bool Take(const char* word) {
    if (!Is(word)) return false;
    Step();
    return true;
  }
  void Require(const char* word) {
    if (!Take(word)) Fail(std::string("'") + word + "'");
  }
  /// Tells the place of what an action refuses.
  template <class Action>
  std::invoke_result_t<Action> Here(const Action& action) const {
    try {
      return action();
    } catch (const BadInput& error) {
      throw BadInput("query, at " + std::to_string(token_.place + 1) + ": " + error.what());
    }
  }
  std::size_t Number() {
    std::size_t number = 0;
    const char* end = token_.text.data() + token_.text.size();
    const auto [rest, error] = std::from_chars(token_.text.data(), end, number);
    if (error != std::errc() || rest != end || token_.text.empty()) Fail("a number");
    Step();
    return number;
  }
  std::size_t MemberHere() {
    if (token_.kind != Token::kWord) Fail("a member of " + type_->name);
    const std::size_t member = Here([&] { return type_->MemberNamed(token_.text); });
    if (type_->members[member].count != 1) Fail("a member of one element");
    Step();
    return member;
  }

  // A negation goes down with the parse, and turns conditions and relations over as it meets them.
  Condition Join(Condition::Kind kind, const char* word, bool negated,
                 Condition (Parser::*part)(bool)) {
    Condition first = (this->*part)(negated);
    if (!Is(word)) return first;
    Condition joined;
    joined.kind = (kind == Condition::kAnd) != negated ? Condition::kAnd : Condition::kOr;
    joined.children.push_back(std::move(first));
    while (Take(word)) joined.children.push_back((this->*part)(negated));
    return joined;
  }
  Condition Either(bool negated) { return Join(Condition::kOr, "or", negated, &Parser::Both); }
  Condition Both(bool negated) { return Join(Condition::kAnd, "and", negated, &Parser::Single); }

  Condition Single(bool negated) {
    if (++depth_ > kDeepest) Fail("less nesting");
    Condition condition;
    if (Take("not")) {
      condition = Single(!negated);
    } else if (Take("(")) {
      condition = Either(negated);
      Require(")");
    } else {
      condition.kind = Condition::kTerm;
      condition.term = ReadTerm(negated);
    }
    --depth_;
    return condition;
  }

  Term ReadTerm(bool negated) {
    const std::size_t start = token_.place;
    Term term{MemberHere(), Relation(), 0, {}, {}};
    if (negated) term.relation ^= OT_OP_EQUAL | OT_OP_LESS | OT_OP_GREATER;
    term.operand = Literal(type_->members[term.member]);
    if (Take("ignoring")) {
      do term.options |= Ignored();
      while (Take(","));
    }
    if (Take("literally")) term.options |= OT_CMP_NO_WILDCARDS;
    term.text = (negated ? "not " : "") + text_.substr(start, last_ - start);
    return term;
  }

  unsigned short Relation() {
    static constexpr std::pair<const char*, unsigned> kRelations[] = {
        {"=", OT_OP_EQUAL},
        {"<", OT_OP_LESS},
        {">", OT_OP_GREATER},
        {"<=", OT_OP_LESS | OT_OP_EQUAL},
        {">=", OT_OP_GREATER | OT_OP_EQUAL},
        {"<>", OT_OP_LESS | OT_OP_GREATER}};
    for (const auto& [sign, relation] : kRelations) {
      if (Take(sign)) return static_cast<unsigned short>(relation);
    }
    Fail("= <> < <= > or >=");
  }

  unsigned short Ignored() {
    if (Take("case")) return OT_CMP_IGNORE_CASE;
    if (Take("accent")) return OT_CMP_IGNORE_ACCENT;
    if (Take("space")) return OT_CMP_IGNORE_SPACE;
    if (Take("symbols")) return OT_CMP_IGNORE_SYMBOLS;
    Fail("case, accent, space or symbols");
  }

  Bytes Literal(const Member& member) {
    if (token_.kind != Token::kWord && token_.kind != Token::kText) Fail("a value");
    Bytes operand = Here([&] {
      if (!Is("null")) return OperandFor(member, token_.text, schema_.form);
      Value value(member);
      if (!value.SetNull(0)) throw BadInput(member.name + " has no null");
      return value.Stored(schema_.form);
    });
    Step();
    return operand;
  }

  const Schema& schema_;
  const std::string& text_;
  const Class* type_ = nullptr;
  Lexer lexer_;
  Token token_;
  std::size_t last_ = 0;  ///< Where the token before this one ended.
  int depth_ = 0;
};

}  // namespace

Query ParseQuery(const Schema& schema, const std::string& text) {
  return Parser(schema, text).Run();
}

}  // namespace otdb
