// Collation orders and index keys, made readable: orders, key.
#include <cstdio>
#include <memory>

#include "bytes.h"
#include "command.h"
#include "options.h"
#include "texts.h"
#include "values.h"

namespace ottm {
namespace {

constexpr unsigned char kKeyForm = 0x80;
constexpr unsigned kKeyHeader = 4;  // length, 0xfe, script

std::string Hex4(unsigned word) {
  char text[8];
  std::snprintf(text, sizeof text, "%04x", word);
  return text;
}

std::string Phrase(unsigned short order, unsigned char script) {
  OtString text;
  OtConvertOrderToString(order, script, text);
  std::string phrase = ToUtf8(text);
  if (!phrase.empty() && phrase.back() == '\n') phrase.pop_back();
  return phrase;
}

const char* ClassName(unsigned short order, unsigned char script) {
  if (order >= 0x8000 || (script & 0x7f) >= 0x14) return "han";
  if (order < 0x50) return "space";
  if (order < 0x3f00) return "symbol";
  return order < 0x4000 ? "digit" : "letter";
}

std::string Character(unsigned short order, unsigned char script) {
  unsigned char character = 0;
  OtConvertOrderToChar(order, script, character, 1);
  const unsigned char text[] = {character, 0};
  OtString base(OT_CS_BASE8, 1);
  base = reinterpret_cast<const char*>(text);
  return ToUtf8(base);
}

/// The key that ComposeOrderKey defines: a letter's case and accent rank below all else.
unsigned long OrderKey(unsigned order, unsigned script) {
  if (order == 0) return 0;
  const bool letter = script != 0x14 && (order & 0xc000) == 0x4000;
  const unsigned low = letter ? (order & 0x407f) << 8 | ((order >> 7) & 0x7f) : order << 8;
  return (static_cast<unsigned long>(script) << 24 | low) & 0xffffffffUL;
}

class Orders : public Command {
 public:
  const char* Name() const override { return "orders"; }
  const char* Summary() const override { return "Prints each order word of a text"; }
  const char* Example() const override { return "ottm orders É"; }
  void Declare(CLI::App& app) override {
    app.add_option("TEXT", text_, "The text")->required();
    texts_.Declare(app);
  }
  Answer Run() override {
    const OtString text = texts_.Text(text_);
    OtStringIterator it(text.StrGet(), text.GetCodeSetCode(), text.GetLanguageCode(),
                        OT_FORMAT_NATIVE);
    Answer answer;
    answer.json = Json::array();
    while (const unsigned short order = it.GetNextOrder(1)) {
      const unsigned char script = it.GetScript();
      const std::string phrase = Phrase(order, script);
      answer.json.push_back({{"order", order},
                             {"script", script},
                             {"key", OrderKey(order, script)},
                             {"class", ClassName(order, script)},
                             {"phrase", phrase},
                             {"character", Character(order, script)}});
      answer.human += Hex4(order) + "  script " + std::to_string(script) + "  " + phrase + "\n";
    }
    return answer;
  }

 private:
  std::string text_;
  TextOptions texts_;
};

class Key : public Command {
 public:
  const char* Name() const override { return "key"; }
  const char* Summary() const override { return "Prints the index key of a text, and reads it"; }
  const char* Example() const override { return "ottm key Żółw --language pl --size 254"; }
  void Declare(CLI::App& app) override {
    app.add_option("TEXT", text_, "The text")->required();
    app.add_option("--size", size_, "Bytes of room for the key")
        ->check(CLI::Range(0, 65536))
        ->capture_default_str();
    form_.Declare(app, "--form", "Form of the key");
    texts_.Declare(app);
  }
  Answer Run() override {
    OtTypeMgr manager;
    const char id = TypeOf(manager, "OtString");
    OtString text = texts_.Value(text_);
    Bytes key(size_);
    const unsigned long used =
        manager.Translate(id, key.data(), form_.DiskFormat() | kKeyForm, key.size(), &text,
                          OT_FORMAT_MEMORY, sizeof text, 1);
    key.resize(std::min<std::size_t>(used, key.size()));
    return Describe(key);
  }

 private:
  Answer Describe(const Bytes& key) const {
    Answer answer;
    Json orders = Json::array();
    Json phrases = Json::array();
    const bool bigEndian = (form_.Format() & 15) == OT_FORMAT_BIG_ENDIAN;
    const unsigned char script = key.size() >= kKeyHeader ? key[3] : 0;
    answer.human = ToHex(key) + "\n";
    for (std::size_t i = kKeyHeader; i + 1 < key.size(); i += 2) {
      if (key[i] == 0 && key[i + 1] == 0xff) break;  // the terminator
      const unsigned low = bigEndian ? key[i + 1] : key[i];
      const unsigned high = bigEndian ? key[i] : key[i + 1];
      const auto order = static_cast<unsigned short>(high << 8 | low);
      orders.push_back(order);
      phrases.push_back(Phrase(order, script));
      answer.human += Hex4(order) + "  " + Phrase(order, script) + "\n";
    }
    if ((script & 0x80) != 0) answer.human += "ends at a change of script\n";
    answer.json = {
        {"bytes", ToHex(key)}, {"orders", orders}, {"script", script}, {"phrase", phrases}};
    return answer;
  }

  std::string text_;
  unsigned size_ = 254;
  FormOption form_;
  TextOptions texts_;
};

}  // namespace

void AddOrderCommands(CommandList& list) {
  list.push_back(std::make_unique<Orders>());
  list.push_back(std::make_unique<Key>());
}

}  // namespace ottm
