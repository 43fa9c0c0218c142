// What a query planner asks of a comparison: estimate.
#include <charconv>
#include <cstdlib>

#include "command.h"
#include "options.h"
#include "values.h"

namespace ottm {
namespace {

constexpr char kStrings = 11, kLegacyStrings = 20, kLegacyCaseStrings = 21;
constexpr unsigned char kKeyForm = 0x80;

bool IsText(char id) {
  return id == kStrings || id == kLegacyStrings || id == kLegacyCaseStrings;
}

/// The fewest digits that tell the number from its neighbours.
std::string Shortest(float number) {
  char text[32];
  const auto [end, error] = std::to_chars(text, text + sizeof text, number);
  return std::string(text, end);
}

/// What has no letter in a key is printed as 0x7f, the top of a range among it.
std::string WithoutControls(const std::string& text) {
  std::string shown;
  for (const char c : text) shown += c == '\x7f' ? std::string("…") : std::string(1, c);
  return shown;
}

/// Keys that a call made.
struct Limits : OtIdxBounds {
  Limits() : OtIdxBounds{nullptr, nullptr, 0, 0} {}
  ~Limits() {
    std::free(lowerKey);
    std::free(upperKey);
  }
  Limits(const Limits&) = delete;
  Limits& operator=(const Limits&) = delete;

  Bytes Lower() const { return Copy(lowerKey, lowerKeyLength); }
  Bytes Upper() const { return Copy(upperKey, upperKeyLength); }

 private:
  static Bytes Copy(const void* key, unsigned char length) {
    const auto* bytes = static_cast<const unsigned char*>(key);
    return key != nullptr ? Bytes(bytes, bytes + length) : Bytes();
  }
};

class Estimate : public Command {
 public:
  const char* Name() const override { return "estimate"; }
  const char* Summary() const override {
    return "Estimates which share of an index satisfies a comparison, and the limits of the scan";
  }
  const char* Example() const override {
    return "ottm estimate OtString 'app*' --op = --low apple --high apricot";
  }
  void Declare(CLI::App& app) override {
    app.add_option("TYPE", type_, "Name or number of the type")->required();
    app.add_option("VALUE", value_, "The operand, as text; with --hex stored bytes")->required();
    app.add_flag("--hex", hex_, "VALUE is stored bytes: hex, - or @FILE");
    CLI::Option* low = app.add_option("--low", low_, "The lowest value in the index");
    app.add_option("--high", high_, "The highest value in the index")->needs(low);
    low->needs("--high");
    op_.names = "=";
    op_.relations = true;
    op_.Declare(app);
    factory_.Declare(app);
    form_.Declare(app, "--form", "Form of the operand and the keys");
    texts_.Declare(app);
    scan_.Declare(app);
  }

  Answer Run() override {
    OtTypeMgr manager = factory_.Manager();
    const char id = TypeOf(manager, type_);
    const unsigned char format = form_.DiskFormat();
    Bytes operand = hex_ ? ReadBytes(value_) : Stored(manager, id, value_, "VALUE");
    RequireStored(manager, id, operand, format, 1);
    Bytes low, high;
    if (low_) low = Key(manager, id, *low_, "--low");
    if (high_) high = Key(manager, id, *high_, "--high");
    OtIdxBounds bounds{low.data(), high.data(), static_cast<unsigned char>(low.size()),
                       static_cast<unsigned char>(high.size())};
    Limits limits;
    unsigned short op = op_.Word();
    const float share = manager.EvalAndBound(id, low_ ? &bounds : nullptr, op, operand.data(),
                                             format, 1, &limits, nullptr);
    Answer answer;
    const std::string digits = Shortest(share);
    answer.json = {{"share", std::strtod(digits.c_str(), nullptr)}, {"op", op}};
    answer.human = "share  " + digits + "\nop     " + std::to_string(op) +
                   ((op & OT_OP_WILDCARD) != 0 ? "  stands for a range\n" : "\n");
    Add(answer, manager, id, "lower", limits.Lower());
    Add(answer, manager, id, "upper", limits.Upper());
    return answer;
  }

 private:
  Bytes Stored(OtTypeMgr& manager, char id, const std::string& text, const char* argument) const {
    Values values(manager, id, 1);
    values.Scan({text}, texts_, scan_, argument);
    return values.Store(form_.Format());
  }

  /// As an index holds it: texts in the key form, nothing longer than a key can be.
  Bytes Key(OtTypeMgr& manager, char id, const std::string& text, const char* argument) const {
    Bytes stored = Stored(manager, id, text, argument);
    if (!IsText(id)) {
      stored.resize(std::min<std::size_t>(stored.size(), OtINDEX_MAX_KEYLEN));
      return stored;
    }
    Bytes key(OtINDEX_MAX_KEYLEN);
    const auto form = static_cast<unsigned char>(form_.Format() | kKeyForm);
    key.resize(manager.Translate(id, key.data(), form, key.size(), stored.data(), form_.Format(),
                                 stored.size(), 1));
    return key;
  }

  void Add(Answer& answer, OtTypeMgr& manager, char id, const char* name, const Bytes& key) const {
    answer.json[name] = key.empty() ? Json(nullptr) : Json(ToHex(key));
    const std::string text = key.empty() ? "" : Readable(manager, id, key);
    answer.human += std::string(name) + "  " + (key.empty() ? "none" : ToHex(key));
    answer.human += (text.empty() ? "" : "  " + text) + "\n";
  }

  /// A limit for people; legacy strings can't be read back from their keys.
  std::string Readable(OtTypeMgr& manager, char id, Bytes key) const {
    Values values(manager, id, 1);
    if (!IsText(id)) {
      if (VerifyBytes(manager, id, key, form_.Format(), 1).status != 0) return "";
      values.Load(key, form_.Format());
      return values.Print(0);
    }
    if (id != kStrings) return "";
    auto* text = static_cast<OtString*>(values.Data());
    manager.Translate(id, text, OT_FORMAT_MEMORY, sizeof *text, key.data(),
                      static_cast<unsigned char>(form_.Format() | kKeyForm), key.size(), 1);
    if (text->GetCodeSetCode() != OT_CS_ORDER) return values.Print(0);
    return WithoutControls(values.Print(0, "%4M"));
  }

  std::string type_, value_;
  bool hex_ = false;
  std::optional<std::string> low_, high_;
  OpOption op_;
  FactoryOption factory_;
  FormOption form_;
  TextOptions texts_;
  ScanOptions scan_;
};

}  // namespace

void AddEstimateCommands(CommandList& list) {
  list.push_back(std::make_unique<Estimate>());
}

}  // namespace ottm
