// 64-bit arithmetic as the system does it: int64.
#include <charconv>
#include <functional>
#include <map>

#include "command.h"
#include "options.h"
#include "ot95/int64.h"
#include "scanner.h"
#include "texts.h"

namespace ottm {
namespace {

OtInt64 Operand(const std::string& text) {
  OtTypeMgr manager;
  OtInt64 value(0);
  ot95::tools::Scanner scanner(manager, TypeOf(manager, "OtInt64"), {});
  Naming("EXPR", [&] { scanner.Scan(&value, text, OT_CS_UNICODE, OT_LANG_NEUTRAL); });
  return value;
}

unsigned ShiftCount(const std::string& text) {
  unsigned count = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, count);
  if (error != std::errc() || rest != end) {
    throw BadInput("EXPR: expected a number of positions, found " + Quoted(text));
  }
  return count;
}

class Int64 : public Command {
 public:
  const char* Name() const override { return "int64"; }
  const char* Summary() const override {
    return "64-bit arithmetic: A OP B, neg A, abs A, from-double X";
  }
  const char* Example() const override { return "ottm int64 9223372036854775807 + 1"; }
  void Declare(CLI::App& app) override {
    app.add_option("EXPR", words_, "A OP B with + - * / % << >>, neg A, abs A, from-double X")
        ->required();
  }

  Answer Run() override {
    OtString text;
    Result().PrintToOtString(text, "%S");
    Answer answer;
    answer.json = {{"text", ToUtf8(text)}};
    answer.human = ToUtf8(text) + "\n";
    return answer;
  }

 private:
  OtInt64 Result() const {
    if (words_.size() == 2) return Unary();
    if (words_.size() != 3) throw BadInput("EXPR: expected A OP B, neg A, abs A or from-double X");
    if (words_[1] == "<<") return Operand(words_[0]) << ShiftCount(words_[2]);
    if (words_[1] == ">>") return Operand(words_[0]) >> ShiftCount(words_[2]);
    return Binary(Operand(words_[0]), words_[1], Operand(words_[2]));
  }

  OtInt64 Unary() const {
    if (words_[0] == "neg") return -Operand(words_[1]);
    if (words_[0] == "abs") return Operand(words_[1]).Abs();
    if (words_[0] != "from-double") {
      throw BadInput("EXPR: expected neg, abs or from-double, found " + Quoted(words_[0]));
    }
    double number = 0;
    const char* end = words_[1].data() + words_[1].size();
    const auto [rest, error] = std::from_chars(words_[1].data(), end, number);
    if (error != std::errc() || rest != end) {
      throw BadInput("EXPR: expected a number, found " + Quoted(words_[1]));
    }
    return OtInt64(number);
  }

  static OtInt64 Binary(const OtInt64& a, const std::string& op, const OtInt64& b) {
    if (op == "+") return a + b;
    if (op == "-") return a - b;
    if (op == "*") return a * b;
    const bool quotient = op == "/";
    if (!quotient && op != "%") {
      throw BadInput("EXPR: expected one of + - * / % << >>, found " + Quoted(op));
    }
    if (b == OtInt64(0)) throw BadInput("EXPR: expected a divisor other than 0");
    return quotient ? a / b : a % b;
  }

  std::vector<std::string> words_;
};

}  // namespace

void AddInt64Commands(CommandList& list) {
  list.push_back(std::make_unique<Int64>());
}

}  // namespace ottm
