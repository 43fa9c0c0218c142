// Keys for stores that order bytes: sort-key, sort-range, hash64.
#include <charconv>

#include "command.h"
#include "options.h"
#include "values.h"

namespace ottm {
namespace {

constexpr unsigned short kRelations = OT_OP_EQUAL | OT_OP_LESS | OT_OP_GREATER;

/// Commands on one array, which is given as text or as stored bytes.
class KeyCommand : public Command {
 protected:
  void DeclareArray(CLI::App& app, bool several) {
    app.add_option("TYPE", type_, "Name or number of the type")->required();
    CLI::Option* values =
        app.add_option("VALUE", texts_, "The value, as text; with --hex stored bytes")->required();
    if (!several) values->expected(1);
    app.add_flag("--hex", hex_, "VALUE is stored bytes: hex, - or @FILE");
    app.add_option("--count", count_, "Elements of the stored array")->capture_default_str();
    factory_.Declare(app);
    form_.Declare(app, "--form", "Form in which the value is compared");
    options_.Declare(app);
    scan_.Declare(app);
    op_.Declare(app);
  }

  /// Reads the array.
  void Open() {
    manager_ = factory_.Manager();
    id_ = TypeOf(manager_, type_);
    format_ = form_.Format();
    if (hex_) {
      if (texts_.size() != 1) throw BadInput("VALUE: expected one run of bytes with --hex");
      if ((format_ & OT_FORMAT_MEMORY) != 0) {
        throw BadInput("--form: expected a disk form with --hex");
      }
      bytes_ = ReadBytes(texts_[0]);
      if (bytes_.empty()) throw BadInput("HEX: expected at least one byte");
      return;
    }
    count_ = texts_.size();
    values_ = std::make_unique<Values>(manager_, id_, count_);
    values_->Scan(texts_, options_, scan_);
    if ((format_ & 15) != OT_FORMAT_MEMORY) bytes_ = values_->Store(format_);
  }
  const void* Place() const { return bytes_.empty() && values_ ? values_->Data() : bytes_.data(); }

  Bytes KeyInRoom(unsigned long room, unsigned short op, int& status) const {
    Bytes key(room);
    const unsigned long length = manager_.SortKey(id_, key.data(), room, Place(), bytes_.size(), op,
                                                  count_, format_, status);
    key.resize(std::min(room, length));
    return key;
  }

  OtTypeMgr manager_;
  char id_ = 0;
  unsigned char format_ = 0;
  unsigned long count_ = 1;
  Bytes bytes_;
  OpOption op_;

 private:
  std::string type_;
  std::vector<std::string> texts_;
  bool hex_ = false;
  FactoryOption factory_;
  FormOption form_;
  TextOptions options_;
  ScanOptions scan_;
  std::unique_ptr<Values> values_;
};

class SortKey : public KeyCommand {
 public:
  const char* Name() const override { return "sort-key"; }
  const char* Summary() const override {
    return "Prints the key of a value whose bytes order as the values compare";
  }
  const char* Example() const override { return "ottm sort-key OtString 'São Tomé'"; }
  void Declare(CLI::App& app) override {
    DeclareArray(app, false);
    app.add_option("--room", room_, "Bytes at which the key is cut")
        ->check(CLI::Range(0UL, 1UL << 24));
  }
  Answer Run() override {
    Open();
    int status = 0;
    const unsigned long whole = manager_.SortKey(id_, nullptr, 0, Place(), bytes_.size(),
                                                 op_.Word(), count_, format_, status);
    const Bytes key = KeyInRoom(room_.value_or(whole), op_.Word(), status);
    Answer answer;
    answer.json = {{"bytes", ToHex(key)}, {"status", status}};
    answer.human = ToHex(key) + (status != 0 ? " status " + std::to_string(status) : "") + "\n";
    return answer;
  }

 private:
  std::optional<unsigned long> room_;
};

class SortRange : public KeyCommand {
 public:
  const char* Name() const override { return "sort-range"; }
  const char* Summary() const override {
    return "Prints the bytes between which the keys of all values lie that satisfy a comparison";
  }
  const char* Example() const override { return "ottm sort-range OtString 'san*' --op ="; }
  void Declare(CLI::App& app) override {
    op_.relations = true;
    DeclareArray(app, false);
    keyOp_.names = "";
    app.add_option("--key-op", keyOp_.names, "Options of the keys; those of --op otherwise");
  }
  Answer Run() override {
    Open();
    const unsigned short word = op_.Word();
    const unsigned relation = (word & kRelations) != 0 ? word & kRelations : unsigned{OT_OP_EQUAL};
    const unsigned options = word & ~unsigned{kRelations};
    const auto keyOp = static_cast<unsigned short>(
        (keyOp_.names.empty() ? options : keyOp_.Word()) | OT_CMP_NO_WILDCARDS);
    Bytes lower(kRoom), upper(kRoom);
    OtSortRange range;
    range.lower = lower.data();
    range.upper = upper.data();
    range.lowerRoom = range.upperRoom = kRoom;
    const int status =
        manager_.SortRange(id_, range, static_cast<unsigned short>(relation | options), Place(),
                           bytes_.size(), keyOp, count_, format_);
    if (status == OT_ERR_END_OF_DATA) throw BadInput("VALUE: the bytes end too early");
    lower.resize(range.lowerLength);
    upper.resize(range.upperLength);
    Answer answer;
    Add(answer, "lower", lower);
    Add(answer, "upper", upper);
    return answer;
  }

 private:
  static constexpr unsigned long kRoom = 1UL << 17;

  static void Add(Answer& answer, const char* name, const Bytes& end) {
    answer.json[name] = end.empty() ? Json(nullptr) : Json(ToHex(end));
    answer.human += std::string(name) + "  " + (end.empty() ? "none" : ToHex(end)) + "\n";
  }

  OpOption keyOp_;
};

class Hash64 : public KeyCommand {
 public:
  const char* Name() const override { return "hash64"; }
  const char* Summary() const override {
    return "Prints the hash of an array for tables and shards: equal where the arrays compare so";
  }
  const char* Example() const override { return "ottm hash64 OtString Ärger --op ignore-accent"; }
  void Declare(CLI::App& app) override {
    DeclareArray(app, true);
    app.add_option("--seed", seed_, "Any number of 64 bits")->capture_default_str();
  }
  Answer Run() override {
    Open();
    int status = 0;
    const std::uint64_t hash =
        manager_.Hash64(id_, Place(), bytes_.size(), op_.Word(), count_, format_, Seed(), status);
    if (status != 0)
      throw BadInput("VALUE: expected a value that has a key, status " + std::to_string(status));
    Answer answer;
    answer.json = {{"hash", std::to_string(hash)}};
    answer.human = std::to_string(hash) + "\n";
    return answer;
  }

 private:
  std::uint64_t Seed() const {
    const bool hex = seed_.starts_with("0x");
    std::uint64_t seed = 0;
    const char* end = seed_.data() + seed_.size();
    const auto [rest, error] =
        std::from_chars(seed_.data() + (hex ? 2 : 0), end, seed, hex ? 16 : 10);
    if (error != std::errc() || rest != end) {
      throw BadInput("--seed: expected a number of 64 bits, found '" + seed_ + "'");
    }
    return seed;
  }

  std::string seed_ = "0";
};

}  // namespace

void AddSortKeyCommands(CommandList& list) {
  list.push_back(std::make_unique<SortKey>());
  list.push_back(std::make_unique<SortRange>());
  list.push_back(std::make_unique<Hash64>());
}

}  // namespace ottm
