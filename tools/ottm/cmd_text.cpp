// Texts changed and values turned into other values: convert, default, edit.
#include <functional>
#include <map>

#include "command.h"
#include "options.h"
#include "values.h"

namespace ottm {
namespace {

/// Conversion data that owns its strings, as the manager's operations hand it out.
using ConvertData = std::unique_ptr<OtTypeConvertData>;

class Convert : public Command {
 public:
  const char* Name() const override { return "convert"; }
  const char* Summary() const override { return "Converts values of one type to another"; }
  const char* Example() const override { return "ottm convert OtWord long 65535"; }
  void Declare(CLI::App& app) override {
    app.add_option("FROM", from_, "Type to convert from")->required();
    app.add_option("TO", to_, "Type to convert to")->required();
    app.add_option("VALUE", values_, "The values, as text")->required();
    factory_.Declare(app);
    texts_.Declare(app);
    scan_.Declare(app);
  }
  Answer Run() override {
    OtTypeMgr manager = factory_.Manager();
    const char to = TypeOf(manager, to_, "TO");
    Values source(manager, TypeOf(manager, from_, "FROM"), values_.size());
    source.Scan(values_, texts_, scan_);
    const ConvertData data = source.Convert();
    const Values target = Values::Converted(manager, to, values_.size(), *data);
    Answer answer;
    answer.json["values"] = Json::array();
    for (unsigned long i = 0; i < target.Count(); ++i) {
      const std::string text = target.Print(i);
      answer.json["values"].push_back(target.IsNull(i) ? Json(nullptr) : Json(text));
      answer.human += text + "\n";
    }
    return answer;
  }

 private:
  std::string from_, to_;
  std::vector<std::string> values_;
  FactoryOption factory_;
  TextOptions texts_;
  ScanOptions scan_;
};

class Default : public Command {
 public:
  const char* Name() const override { return "default"; }
  const char* Summary() const override { return "Prints the default value of a type"; }
  const char* Example() const override { return "ottm default OtString --nullable"; }
  void Declare(CLI::App& app) override {
    app.add_option("TYPE", type_, "Name or number of the type")->required();
    app.add_flag("--nullable", nullable_, "For a member that may be null");
    factory_.Declare(app);
    print_.Declare(app);
  }
  Answer Run() override {
    OtTypeMgr manager = factory_.Manager();
    const Values value = Values::Default(manager, TypeOf(manager, type_), nullable_);
    Answer answer;
    const std::string text = value.Print(0, print_.Format());
    answer.json = {{"text", text}, {"isNull", value.IsNull(0)}};
    answer.human = text + "\n";
    return answer;
  }

 private:
  std::string type_;
  bool nullable_ = false;
  FactoryOption factory_;
  PrintOption print_;
};

class Edit : public Command {
 public:
  const char* Name() const override { return "edit"; }
  const char* Summary() const override { return "Changes, searches or splits a text"; }
  const char* Example() const override { return "ottm edit replace-all aba a aa"; }
  void Declare(CLI::App& app) override {
    app.add_option("OPERATION", operation_,
                   "upper, lower, trim, cut POS [N], copy POS [N], insert S POS, replace S POS, "
                   "replace-all FROM TO [START], fill N C, expand N C, find PATTERN [START], "
                   "split SEPARATOR")
        ->required();
    app.add_option("TEXT", text_, "The text")->required();
    app.add_option("ARG", arguments_, "Arguments of the operation");
    op_.Declare(app);
    texts_.Declare(app);
  }

  Answer Run() override {
    OtString text = texts_.Text(text_);
    if (operation_ == "find") return Find(text);
    if (operation_ == "split") return Split(text);
    const auto operation = Operations().find(operation_);
    if (operation == Operations().end()) {
      throw BadInput("OPERATION: expected one of those 'ottm edit --help' lists, found " +
                     Quoted(operation_));
    }
    const Shape& shape = operation->second;
    Expect(shape.least, shape.most);
    const OtString result = shape.apply(*this, text);
    Answer answer;
    answer.json = {{"text", ToUtf8(result)}};
    answer.human = ToUtf8(result) + "\n";
    return answer;
  }

 private:
  struct Shape {
    std::size_t least, most;  // arguments
    std::function<OtString(const Edit&, OtString&)> apply;
  };

  static const std::map<std::string, Shape>& Operations() {
    static const std::map<std::string, Shape> operations = {
        {"upper", {0, 0, [](const Edit&, OtString& t) { return t.ToUpper(); }}},
        {"lower", {0, 0, [](const Edit&, OtString& t) { return t.ToLower(); }}},
        {"trim", {0, 0, [](const Edit&, OtString& t) { return t.Trim(); }}},
        {"cut", {1, 2, [](const Edit& e, OtString& t) { return t.Cut(e.Place(0), e.Count(1)); }}},
        {"copy", {1, 2, [](const Edit& e, OtString& t) { return t.Copy(e.Place(0), e.Count(1)); }}},
        {"insert",
         {2, 2, [](const Edit& e, OtString& t) { return t.Insert(e.Text(0), e.Place(1)); }}},
        {"replace",
         {2, 2, [](const Edit& e, OtString& t) { return t.Replace(e.Text(0), e.Place(1)); }}},
        {"replace-all",
         {2, 3,
          [](const Edit& e, OtString& t) {
            return t.ReplaceAll(e.Text(0), e.Text(1), e.Place(2));
          }}},
        {"fill", {2, 2, [](const Edit& e, OtString& t) { return t.Fill(e.Place(0), e.Unit(1)); }}},
        {"expand",
         {2, 2, [](const Edit& e, OtString& t) { return t.Expand(e.Place(0), e.Unit(1)); }}}};
    return operations;
  }

  void Expect(std::size_t least, std::size_t most) const {
    if (arguments_.size() >= least && arguments_.size() <= most) return;
    throw BadInput("ARG: expected " + std::to_string(least) + " to " + std::to_string(most) +
                   " arguments of " + operation_ + ", found " + std::to_string(arguments_.size()));
  }
  OtString Text(std::size_t i) const { return texts_.Text(arguments_[i]); }
  unsigned short Place(std::size_t i) const {
    if (i >= arguments_.size()) return 0;
    return static_cast<unsigned short>(NumberOf(arguments_[i], 0xffff, "ARG"));
  }
  short Count(std::size_t i) const {
    if (i >= arguments_.size() || arguments_[i] == "-1") return -1;
    return static_cast<short>(NumberOf(arguments_[i], 0x7fff, "ARG"));
  }
  unsigned short Unit(std::size_t i) const {
    TextOptions wide = texts_;
    wide.codeSet = OT_CS_UNICODE;
    const OtString text = wide.Text(arguments_[i]);
    if (text.Len() != 1)
      throw BadInput("ARG: expected one character, found " + Quoted(arguments_[i]));
    return OtChar(text.StrGet(), OT_CS_UNICODE).GetValue();
  }

  Answer Find(const OtString& text) const {
    Expect(1, 2);
    const short place = text.Find(Text(0), Place(1), op_.Word());
    Answer answer;
    answer.json = {{"value", place}};
    answer.human = std::to_string(place) + "\n";
    return answer;
  }

  Answer Split(OtString& text) const {
    Expect(1, 1);
    const OtString separator = Text(0);
    if (separator.IsEmpty()) throw BadInput("ARG: expected a separator");
    Answer answer;
    answer.json["items"] = Json::array();
    unsigned short pos = 0;
    for (OtString item; OtSplitList(text, item, separator, pos) == 0;) {
      answer.json["items"].push_back(ToUtf8(item));
      answer.human += ToUtf8(item) + "\n";
    }
    return answer;
  }

  std::string operation_, text_;
  std::vector<std::string> arguments_;
  OpOption op_;
  TextOptions texts_;
};

}  // namespace

void AddTextCommands(CommandList& list) {
  list.push_back(std::make_unique<Convert>());
  list.push_back(std::make_unique<Default>());
  list.push_back(std::make_unique<Edit>());
}

}  // namespace ottm
