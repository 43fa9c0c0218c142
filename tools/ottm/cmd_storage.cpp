// Values and their stored forms: encode, decode, verify, translate, print, hash.
#include <cstdio>

#include "command.h"
#include "options.h"
#include "values.h"

namespace ottm {
namespace {

std::string Hex8(unsigned long word) {
  char text[16];
  std::snprintf(text, sizeof text, "%08lx", word);
  return text;
}

/// What the commands on typed values have in common.
class TypedCommand : public Command {
 protected:
  void DeclareType(CLI::App& app) {
    app.add_option("TYPE", type_, "Name or number of the type")->required();
    factory_.Declare(app);
  }
  void DeclareCount(CLI::App& app) {
    app.add_option("--count", count_, "Elements of the array")
        ->check(CLI::Range(0UL, 1000000000UL))
        ->capture_default_str();
  }
  char Open() {
    manager_ = factory_.Manager();
    return TypeOf(manager_, type_);
  }

  std::string type_;
  FactoryOption factory_;
  FormOption form_;
  TextOptions texts_;
  ScanOptions scan_;
  unsigned long count_ = 1;
  OtTypeMgr manager_;
};

class Encode : public TypedCommand {
 public:
  const char* Name() const override { return "encode"; }
  const char* Summary() const override { return "Prints the stored form of values"; }
  const char* Example() const override { return "ottm encode short -2 --form big-endian"; }
  void Declare(CLI::App& app) override {
    DeclareType(app);
    app.add_option("VALUE", values_, "The elements, as text")->required();
    form_.Declare(app);
    texts_.Declare(app);
    scan_.Declare(app);
  }
  Answer Run() override {
    const char id = Open();
    Values values(manager_, id, values_.size());
    values.Scan(values_, texts_, scan_);
    const unsigned char format = form_.DiskFormat();
    const std::string hex = ToHex(values.Store(format));
    Answer answer;
    answer.json = {{"type", manager_.NameGet(id, nullptr)},
                   {"count", values_.size()},
                   {"format", format},
                   {"bytes", hex}};
    answer.human = hex + "\n";
    return answer;
  }

 private:
  std::vector<std::string> values_;
};

class Decode : public TypedCommand {
 public:
  const char* Name() const override { return "decode"; }
  const char* Summary() const override { return "Verifies and loads stored bytes, prints values"; }
  const char* Example() const override { return "ottm decode OtString 06000102616200ff"; }
  void Declare(CLI::App& app) override {
    DeclareType(app);
    app.add_option("HEX", hex_, "The stored bytes: hex, - or @FILE")->required();
    DeclareCount(app);
    form_.Declare(app);
    print_.Declare(app);
  }
  Answer Run() override {
    const char id = Open();
    const Bytes bytes = ReadBytes(hex_);
    const unsigned char format = form_.DiskFormat();
    RequireStored(manager_, id, bytes, FormToLoad(format), count_);
    Values values(manager_, id, count_);
    const unsigned long consumed = values.Load(bytes, format);
    Answer answer;
    Json texts = Json::array();
    for (unsigned long i = 0; i < count_; ++i) {
      const std::string text = values.Print(i, print_.Format());
      texts.push_back(values.IsNull(i) ? Json(nullptr) : Json(text));
      answer.human += text + "\n";
    }
    answer.json = {{"type", manager_.NameGet(id, nullptr)},
                   {"count", count_},
                   {"consumed", consumed},
                   {"values", texts}};
    return answer;
  }

 private:
  std::string hex_;
  PrintOption print_;
};

class Verify : public TypedCommand {
 public:
  const char* Name() const override { return "verify"; }
  const char* Summary() const override { return "Says whether bytes hold a stored array"; }
  const char* Example() const override { return "ottm verify OtString 0600010261620000"; }
  void Declare(CLI::App& app) override {
    DeclareType(app);
    app.add_option("HEX", hex_, "The bytes: hex, - or @FILE")->required();
    DeclareCount(app);
    form_.Declare(app);
  }
  Answer Run() override {
    const char id = Open();
    const Bytes bytes = ReadBytes(hex_);
    const Verdict verdict = VerifyBytes(manager_, id, bytes, form_.Format(), count_);
    const bool ok = verdict.status == 0;
    Answer answer;
    answer.json = {{"type", manager_.NameGet(id, nullptr)},
                   {"ok", ok},
                   {"consumed", verdict.consumed},
                   {"offset", ok ? Json(nullptr) : Json(verdict.consumed)},
                   {"reason", ok ? Json(nullptr) : Json(verdict.reason)}};
    const std::string place = std::to_string(verdict.consumed);
    answer.human = ok ? "good, ends at offset " + place + "\n"
                      : "damaged at offset " + place + ": " + verdict.reason + "\n";
    answer.exit = ok ? 0 : 1;
    return answer;
  }

 private:
  std::string hex_;
};

class Translate : public TypedCommand {
 public:
  const char* Name() const override { return "translate"; }
  const char* Summary() const override { return "Moves stored bytes from one form to another"; }
  const char* Example() const override {
    return "ottm translate OtString 06000101616200ff --from native --to 0x81";
  }
  void Declare(CLI::App& app) override {
    DeclareType(app);
    app.add_option("HEX", hex_, "The stored bytes: hex, - or @FILE")->required();
    from_.Declare(app, "--from", "Form of the bytes");
    to_.Declare(app, "--to", "Form of the target");
    app.add_option("--length", length_, "Bytes of room in the target")
        ->check(CLI::Range(0UL, 1UL << 24));
    DeclareCount(app);
  }
  Answer Run() override {
    const char id = Open();
    Bytes source = ReadBytes(hex_);
    const unsigned char from = from_.DiskFormat();
    const unsigned char to = to_.DiskFormat();
    if (manager_.IsFixed(id)) RequireStored(manager_, id, source, from, count_);
    Bytes target(length_ != kNoLength ? length_ : source.size() * 4 + 64);
    const unsigned long result = manager_.Translate(id, target.data(), to, target.size(),
                                                    source.data(), from, source.size(), count_);
    target.resize(std::min<std::size_t>(result, target.size()));
    Answer answer;
    answer.json = {
        {"type", manager_.NameGet(id, nullptr)}, {"result", result}, {"bytes", ToHex(target)}};
    answer.human = ToHex(target) + "\n";
    return answer;
  }

 private:
  static constexpr unsigned long kNoLength = ~0UL;
  std::string hex_;
  FormOption from_;
  FormOption to_;
  unsigned long length_ = kNoLength;
};

class Print : public TypedCommand {
 public:
  const char* Name() const override { return "print"; }
  const char* Summary() const override { return "Scans a value and prints it with a format"; }
  const char* Example() const override { return "ottm print OtInt64 255 --text-format %x"; }
  void Declare(CLI::App& app) override {
    DeclareType(app);
    app.add_option("VALUE", value_, "The value, as text")->required();
    print_.Declare(app);
    scan_.Declare(app, "--scan-format");
    texts_.Declare(app);
  }
  Answer Run() override {
    const char id = Open();
    Values values(manager_, id, 1);
    values.Scan({value_}, texts_, scan_);
    const std::string text = values.Print(0, print_.Format());
    Answer answer;
    answer.json = {{"text", text}};
    answer.human = text + "\n";
    return answer;
  }

 private:
  std::string value_;
  PrintOption print_;
};

class Hash : public TypedCommand {
 public:
  const char* Name() const override { return "hash"; }
  const char* Summary() const override { return "Prints the hash of an array"; }
  const char* Example() const override { return "ottm hash short 1 2 3"; }
  void Declare(CLI::App& app) override {
    DeclareType(app);
    app.add_option("VALUE", values_, "The elements, as text; with --hex stored bytes")->required();
    app.add_flag("--hex", hex_, "The one VALUE is stored bytes: hex, - or @FILE");
    DeclareCount(app);
    form_.Declare(app);
    texts_.Declare(app);
    scan_.Declare(app);
  }
  Answer Run() override {
    const char id = Open();
    const unsigned char format = hex_ ? form_.DiskFormat() : form_.ValueFormat();
    Bytes bytes;
    int status = 0;
    unsigned long hash = 0;
    if (hex_) {
      if (values_.size() != 1) throw BadInput("VALUE: expected one run of bytes with --hex");
      bytes = ReadBytes(values_[0]);
      if (manager_.IsFixed(id)) RequireStored(manager_, id, bytes, format, count_);
      hash = manager_.Hash(id, bytes.size(), bytes.data(), count_, format, status);
    } else {
      Values values(manager_, id, values_.size());
      values.Scan(values_, texts_, scan_);
      bytes = format == OT_FORMAT_MEMORY ? Bytes() : values.Store(format);
      void* place = bytes.empty() ? values.Data() : bytes.data();
      hash = manager_.Hash(id, 0, place, values_.size(), format, status);
    }
    Answer answer;
    answer.json = {{"hash", hash}, {"status", status}};
    answer.human = Hex8(hash) + (status != 0 ? " status " + std::to_string(status) : "") + "\n";
    return answer;
  }

 private:
  std::vector<std::string> values_;
  bool hex_ = false;
};

}  // namespace

void AddStorageCommands(CommandList& list) {
  list.push_back(std::make_unique<Encode>());
  list.push_back(std::make_unique<Decode>());
  list.push_back(std::make_unique<Verify>());
  list.push_back(std::make_unique<Translate>());
  list.push_back(std::make_unique<Print>());
  list.push_back(std::make_unique<Hash>());
}

}  // namespace ottm
