// What the programs say of texts that are no values.
#include "scanner.h"

#include <cstdint>
#include <string_view>

#include "bad_input.h"
#include "message.h"
#include "utf8text.h"

namespace ot95::tools {
namespace {

constexpr char kBlob = 18, kBoolean = 27;

}  // namespace

Scanner::Scanner(OtTypeMgr& manager, char type, std::optional<std::string> format, bool isLenient)
    : manager_(manager),
      type_(type),
      format_(std::move(format)),
      isLenient_(isLenient),
      strict_(manager, type, Format()) {}

void Scanner::Scan(void* element, const std::string& utf8, unsigned char codeSet,
                   unsigned char language) {
  OtString text = FromUtf8(utf8, codeSet, language);
  if (strict_.Scan(element, text, utf8.data(), utf8.size())) return;
  if (!isLenient_) throw BadInput("expected " + Expected(element) + ", found " + Quoted(utf8));
  strict_.Reset(element);
  manager_.ScanFromOtString(type_, element, text, Format(), 1);
}

bool Scanner::IsText(OtTypeMgr& manager, char type) {
  return manager.ExchangeFormat(type, nullptr) == std::string_view("%s");
}

std::string Scanner::Expected(void* element) {
  const std::string value = std::string("a value of ") + manager_.NameGet(type_, nullptr);
  const std::string row = manager_.ExchangeFormat(type_, nullptr);
  if (IsText(manager_, type_)) return "a text that its code set holds";
  if (type_ == kBlob) return value + ", an empty text";
  if (type_ == kBoolean) return value + ", TRUE or FALSE";
  if (format_) return value + " as " + *format_;
  if (const char* example = OtStrictScanner::IsoExample(manager_, type_)) {
    return value + " as " + example + " or " + row;
  }
  if (row == "%c") return value + ", one character or 0x and its number";
  if (row == "%lf" || row == "%f") return value + ", a number that it can hold";
  const std::string range = WholeRange(element);
  return range.empty() ? value + " as " + row : value + ", " + range;
}

/// What a type of whole numbers reaches from and to, found by trying; empty for another type.
std::string Scanner::WholeRange(void* element) {
  strict_.Reset(element);
  OtString zero(OT_CS_UNICODE, 1);
  manager_.PrintToOtString(type_, zero, element, nullptr, 1);
  std::string prefix = ToUtf8(zero);
  if (!prefix.ends_with('0') || prefix.size() > 2) return {};
  prefix.pop_back();
  return "a whole number from " + FurthestTaken(element, prefix, true) + " to " +
         FurthestTaken(element, prefix, false);
}

std::string Scanner::FurthestTaken(void* element, const std::string& prefix, bool isLowest) {
  for (const int bits : {64, 63, 48, 47, 32, 31, 16, 15, 8, 7}) {
    const std::uint64_t most = ~std::uint64_t{0} >> (64 - bits);
    if (isLowest && bits == 64) continue;
    const std::string number = isLowest ? "-" + std::to_string(most + 1) : std::to_string(most);
    const std::string text = prefix + number;
    if (strict_.Scan(element, OtString(text.c_str()), text.data(), text.size())) return text;
  }
  return prefix + "0";
}

}  // namespace ot95::tools
