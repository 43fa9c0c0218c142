// Two values or two texts: compare, strcmp.
#include "command.h"
#include "options.h"
#include "values.h"

namespace ottm {
namespace {

const char* SignName(long result) {
  return result < 0 ? "less" : result > 0 ? "greater" : "equal";
}

int Sign(long result) {
  return result < 0 ? -1 : result > 0;
}

class Compare : public Command {
 public:
  const char* Name() const override { return "compare"; }
  const char* Summary() const override { return "Compares two values of a type"; }
  const char* Example() const override { return "ottm compare OtWord 65535 1"; }
  void Declare(CLI::App& app) override {
    app.add_option("TYPE", type_, "Name or number of the type")->required();
    app.add_option("A", a_, "First value, as text; with --hex stored bytes")->required();
    app.add_option("B", b_, "Second value")->required();
    app.add_flag("--hex", hex_, "A and B are stored bytes: hex, - or @FILE");
    app.add_option("--count", count_, "Elements of the stored arrays")->capture_default_str();
    factory_.Declare(app);
    form_.Declare(app);
    op_.Declare(app);
    texts_.Declare(app);
    scan_.Declare(app);
  }

  Answer Run() override {
    OtTypeMgr manager = factory_.Manager();
    const char id = TypeOf(manager, type_);
    int status = 0;
    const long result =
        hex_ ? CompareStored(manager, id, status) : CompareTexts(manager, id, status);
    Answer answer;
    answer.json = {{"result", result}, {"sign", Sign(result)}, {"status", status}};
    answer.human = SignName(result);
    answer.human += status != 0 ? " status " + std::to_string(status) + "\n" : "\n";
    return answer;
  }

 private:
  long CompareStored(OtTypeMgr& manager, char id, int& status) {
    Bytes a = ReadBytes(a_);
    Bytes b = ReadBytes(b_);
    const unsigned char format = form_.DiskFormat();
    if (a.empty() || b.empty()) throw BadInput("HEX: expected at least one byte");
    if (manager.IsFixed(id)) {
      RequireStored(manager, id, a, format, count_);
      RequireStored(manager, id, b, format, count_);
    }
    return manager.Cmp(id, a.size(), a.data(), b.size(), b.data(), op_.Word(), count_, format,
                       status);
  }

  long CompareTexts(OtTypeMgr& manager, char id, int& status) {
    const unsigned char format = form_.ValueFormat();
    Values a(manager, id, 1);
    Values b(manager, id, 1);
    a.Scan({a_}, texts_, scan_, "A");
    b.Scan({b_}, texts_, scan_, "B");
    if (format == OT_FORMAT_MEMORY) {
      return manager.Cmp(id, 0, a.Data(), 0, b.Data(), op_.Word(), 1, format, status);
    }
    Bytes storedA = a.Store(format);
    Bytes storedB = b.Store(format);
    return manager.Cmp(id, 0, storedA.data(), 0, storedB.data(), op_.Word(), 1, format, status);
  }

  std::string type_, a_, b_;
  bool hex_ = false;
  unsigned long count_ = 1;
  FactoryOption factory_;
  FormOption form_;
  OpOption op_;
  TextOptions texts_;
  ScanOptions scan_;
};

class Strcmp : public Command {
 public:
  const char* Name() const override { return "strcmp"; }
  const char* Summary() const override { return "Compares two texts, or a text and a pattern"; }
  const char* Example() const override { return "ottm strcmp axbxbyc 'a*b*c' --op 0"; }
  void Declare(CLI::App& app) override {
    app.add_option("A", a_, "The text")->required();
    app.add_option("B", b_, "The text or pattern to compare with")->required();
    op_.Declare(app);
    app.add_option("--max", max_, "Orders compared on each side; -1: all")
        ->check(CLI::Range(-1, 32767))
        ->capture_default_str();
    first_.Declare(app);
    app.add_option("--code-set2", codeSet2_, "Code set of B; that of A otherwise")
        ->check(CLI::Range(0, 253));
    app.add_option("--language2", language2_, "Language of B; that of A otherwise");
  }

  Answer Run() override {
    TextOptions second = first_;
    if (codeSet2_) second.codeSet = *codeSet2_;
    if (language2_) second.language = *language2_;
    const OtString a = first_.Value(a_);
    const OtString b = second.Value(b_);
    const long result = OtStrCmp(a.GetCodeSetCode(), a.GetLanguageCode(), a.StrGet(),
                                 b.GetCodeSetCode(), b.GetLanguageCode(), b.StrGet(), op_.Word(),
                                 static_cast<short>(max_), OT_FORMAT_NATIVE, nullptr);
    Answer answer;
    answer.json = {{"result", result}, {"sign", Sign(result)}};
    answer.human = std::string(SignName(result)) + "\n";
    return answer;
  }

 private:
  std::string a_, b_;
  OpOption op_;
  int max_ = -1;
  TextOptions first_;
  std::optional<unsigned> codeSet2_;
  std::optional<std::string> language2_;
};

}  // namespace

void AddComparisonCommands(CommandList& list) {
  list.push_back(std::make_unique<Compare>());
  list.push_back(std::make_unique<Strcmp>());
}

}  // namespace ottm
