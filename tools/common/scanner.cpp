// Texts into values, as long as the value says what the text did.
#include "scanner.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "bad_input.h"
#include "message.h"
#include "sametext.h"
#include "utf8text.h"

namespace ot95::tools {
namespace {

constexpr char kStrings = 11;  // the type of what conversion data carries
constexpr char kBlob = 18, kBoolean = 27;

constexpr const char* kIsoDate = "%Y-%m-%d";
constexpr const char* kIsoTime = "%H:%M:%S";
constexpr const char* kIsoBoth = "%Y-%m-%dT%H:%M:%S";

/// The types whose texts can be in the form of ISO 8601, and how theirs looks.
struct IsoType {
  std::string_view name;
  const char* format;
  const char* example;
};
constexpr IsoType kIsoTypes[] = {
    {"OtDate", kIsoDate, "2000-12-31"},
    {"OtTime", kIsoTime, "23:59:58"},
    {"OtDateTime", kIsoBoth, "2000-12-31T23:59:58"},
    {"d_Date", kIsoDate, "2000-12-31"},
    {"d_Time", kIsoTime, "23:59:58"},
    {"d_Timestamp", kIsoBoth, "2000-12-31T23:59:58"},
};

const IsoType* IsoTypeOf(std::string_view name) {
  for (const IsoType& type : kIsoTypes) {
    if (type.name == name) return &type;
  }
  return nullptr;
}

/// Whether a text has a shape in which 0 stands for a digit.
bool HasShape(std::string_view text, std::string_view shape) {
  if (text.size() != shape.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isDigit = text[i] >= '0' && text[i] <= '9';
    if (shape[i] == '0' ? !isDigit : text[i] != shape[i]) return false;
  }
  return true;
}

std::string IsoDateOf(std::string_view text) {
  if (HasShape(text, "0000-00-00")) return std::string(text);
  if (!HasShape(text, "00000000")) return {};
  return std::string(text.substr(0, 4)) + "-" + std::string(text.substr(4, 2)) + "-" +
         std::string(text.substr(6));
}

std::string IsoTimeOf(std::string_view text) {
  if (HasShape(text, "00:00:00")) return std::string(text);
  if (HasShape(text, "00:00")) return std::string(text) + ":00";
  if (!HasShape(text, "000000")) return {};
  return std::string(text.substr(0, 2)) + ":" + std::string(text.substr(2, 2)) + ":" +
         std::string(text.substr(4));
}

std::string IsoBothOf(std::string_view text) {
  const std::size_t between = text.find_first_of("T ");
  if (between == std::string_view::npos) return {};
  const std::string date = IsoDateOf(text.substr(0, between));
  const std::string time = IsoTimeOf(text.substr(between + 1));
  return date.empty() || time.empty() ? "" : date + "T" + time;
}

/// Whether a text surely comes as it goes: Unicode holds all, the base set what is ASCII.
bool CodeSetHolds(unsigned char codeSet, std::string_view utf8) {
  if (utf8.find('\0') != std::string_view::npos) return false;
  const auto isAscii = [](char c) { return (c & 0x80) == 0; };
  return codeSet == OT_CS_UNICODE ||
         (codeSet == OT_CS_BASE8 && std::all_of(utf8.begin(), utf8.end(), isAscii));
}

void* Converted(OtTypeMgr& manager, char type, const char* text) {
  OtString string(text);
  const std::unique_ptr<OtTypeConvertData> data(
      OtTypeConvertData::Make(kStrings, 1, &string, nullptr));
  void* value = manager.ConvertFrom(type, data.get(), 1);
  data->manager = nullptr;  // the string stays ours
  return value;
}

}  // namespace

Scanner::Scanner(OtTypeMgr& manager, char type, std::optional<std::string> format, bool isLenient)
    : manager_(manager),
      type_(type),
      format_(std::move(format)),
      isLenient_(isLenient),
      rowFormat_(manager.ExchangeFormat(type, nullptr)) {
  if (IsText()) return;
  starts_[0] = Converted(manager, type, "0");
  starts_[1] = Converted(manager, type, "1");
}

Scanner::~Scanner() {
  for (void* start : starts_) {
    if (start) manager_.Delete(type_, start, 1);
  }
}

void Scanner::Scan(void* element, const std::string& utf8, unsigned char codeSet,
                   unsigned char language) {
  const Source source{utf8, FromUtf8(utf8, codeSet, language)};
  if (Takes(element, source)) return;
  if (!isLenient_) throw BadInput("expected " + Expected(element) + ", found " + Quoted(utf8));
  StartFrom(element, 0);
  OtString text(source.text);
  manager_.ScanFromOtString(type_, element, text, Format(), 1);
}

bool Scanner::Takes(void* element, const Source& source) {
  if (IsText()) return TakesAsText(element, source);
  if (type_ == kBlob) return TakesAsBlob(element, source);
  if (const auto iso = AsIso(source.utf8)) {
    if (TakesAsFixed(element, {iso->text, OtString(iso->text.c_str())}, iso->format)) return true;
  }
  return TakesAsFixed(element, source, Format());
}

/// A scan that finds nothing leaves a value as it was. So the text is scanned over two different
/// values, which have to become the same.
bool Scanner::TakesAsFixed(void* element, const Source& source, const char* format) {
  std::string results[2];
  for (int pass = 0; pass < 2; ++pass) {
    if (starts_[pass] == nullptr) return false;
    StartFrom(element, pass);
    OtString text(source.text);
    manager_.ScanFromOtString(type_, element, text, format, 1);
    results[pass] = Stored(element);
  }
  return results[0] == results[1] && Means(element, source.utf8, format);
}

bool Scanner::TakesAsText(void* element, const Source& source) {
  OtString text(source.text);
  manager_.ScanFromOtString(type_, element, text, Format(), 1);
  if (IsNull(element)) return IsNullText(source.utf8);
  if (!format_ &&
      CodeSetHolds(type_ == kStrings ? text.GetCodeSetCode() : OT_CS_BASE8, source.utf8))
    return true;
  const std::unique_ptr<OtTypeConvertData> data(manager_.ConvertTo(type_, element, 1));
  if (data && ToUtf8(*data->GetString(0)) == source.utf8) return true;
  return format_ && Print(element, Format()) == source.utf8;
}

/// A blob has no text but its null's and, of an empty one, the empty text or what it prints as.
bool Scanner::TakesAsBlob(void* element, const Source& source) {
  StartFrom(element, 0);
  OtString text(source.text);
  manager_.ScanFromOtString(type_, element, text, Format(), 1);
  if (IsNull(element)) return IsNullText(source.utf8);
  return source.utf8.empty() || Print(element, nullptr) == source.utf8;
}

bool Scanner::Means(void* element, const std::string& utf8, const char* format) const {
  if (IsNull(element)) return IsNullText(utf8);
  const std::string printed = Print(element, format);
  if (printed == utf8) return true;
  const std::string_view row = rowFormat_;
  if (row == "%c") return MeansCharacter(element, utf8);
  if (row == "%lf" || row == "%f") return MeansNumber(element, utf8);
  if (type_ == kBoolean) {
    const std::string_view names = printed == "TRUE" ? "Tt1" : "Ff0";
    if (utf8.size() == 1 && names.find(utf8[0]) != std::string_view::npos) return true;
  }
  const bool hasNames = IsoTypeOf(Name()) != nullptr;
  return SayTheSame(utf8, printed, hasNames);
}

/// A byte may be given by its number, 0x41, and beyond ASCII it is a character of the base set.
bool Scanner::MeansCharacter(void* element, const std::string& utf8) const {
  const auto byte = static_cast<unsigned char>(Stored(element).back());
  const bool isNumber = utf8.starts_with("0x") && (utf8.size() == 3 || utf8.size() == 4);
  if (isNumber) return SayTheSame(utf8, std::to_string(byte), false);
  const OtString base = FromUtf8(utf8, OT_CS_BASE8, 1);
  return base.Len() == 1 && static_cast<unsigned char>(base.StrGet()[0]) == byte &&
         ToUtf8(base) == utf8;
}

/// By the digits that tell a number from its neighbours.
bool Scanner::MeansNumber(void* element, const std::string& utf8) const {
  if (manager_.MemLenGet(type_, 1) >= 2 * sizeof(float) && std::string_view(rowFormat_) == "%lf") {
    return SaysNumber<double>(utf8, Print(element, "%.17g"));
  }
  return SaysNumber<float>(utf8, Print(element, "%.9g"));
}

std::optional<Scanner::IsoForm> Scanner::AsIso(const std::string& utf8) const {
  const IsoType* const type = format_ ? nullptr : IsoTypeOf(Name());
  if (type == nullptr) return {};
  std::string text = type->format == kIsoDate   ? IsoDateOf(utf8)
                     : type->format == kIsoTime ? IsoTimeOf(utf8)
                                                : IsoBothOf(utf8);
  if (text.empty()) return {};
  return IsoForm{std::move(text), type->format};
}

bool Scanner::IsText(OtTypeMgr& manager, char type) {
  return manager.ExchangeFormat(type, nullptr) == std::string_view("%s");
}

bool Scanner::IsNullText(const std::string& utf8) {
  return utf8 == ToUtf8(OtTypeMgr::GetNullPrintString());
}

bool Scanner::IsNull(void* element) const {
  return manager_.IsNullPtrGet(type_) != nullptr && manager_.IsNullValue(type_, element) != 0;
}

std::string Scanner::Print(void* element, const char* format) const {
  OtString text(OT_CS_UNICODE, 1);
  manager_.PrintToOtString(type_, text, element, format, 1);
  return ToUtf8(text);
}

void Scanner::StartFrom(void* element, int start) {
  const auto assign = manager_.AssignmentPtrGet(type_);
  if (starts_[start] != nullptr && assign) assign(element, starts_[start], 1, 0);
}

std::string Scanner::Stored(void* element) const {
  std::string bytes(manager_.DiskLenGet(type_, element, OT_FORMAT_NATIVE, 1, OT_FORMAT_MEMORY), 0);
  manager_.Store(type_, bytes.data(), element, OT_FORMAT_NATIVE, 1);
  return bytes;
}

std::string Scanner::Expected(void* element) {
  const std::string value = "a value of " + Name();
  if (IsText()) return "a text that its code set holds";
  if (type_ == kBlob) return value + ", an empty text";
  if (type_ == kBoolean) return value + ", TRUE or FALSE";
  if (format_) return value + " as " + *format_;
  if (const IsoType* iso = IsoTypeOf(Name())) {
    return value + " as " + iso->example + " or " + rowFormat_;
  }
  const std::string_view row = rowFormat_;
  if (row == "%c") return value + ", one character or 0x and its number";
  if (row == "%lf" || row == "%f") return value + ", a number that it can hold";
  const std::string range = WholeRange(element);
  return range.empty() ? value + " as " + rowFormat_ : value + ", " + range;
}

/// What a type of whole numbers reaches from and to, found by trying; empty for another type.
std::string Scanner::WholeRange(void* element) {
  StartFrom(element, 0);
  std::string prefix = Print(element, nullptr);
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
    if (Takes(element, {text, FromUtf8(text, OT_CS_UNICODE, 1)})) return text;
  }
  return prefix + "0";
}

}  // namespace ot95::tools
