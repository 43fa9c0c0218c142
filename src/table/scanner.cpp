// Texts into values, as long as the value says what the text did.
#include "ot95/scanner.h"

#include <algorithm>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>

#include "kit/sametext.h"
#include "ot95/fault.h"
#include "text/utf8.h"

namespace ot95 {
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

OtString InCodeSet(const OtString& text, unsigned char codeSet) {
  OtString mapped(text);
  if (mapped.GetCodeSetCode() == OT_CS_NONE) {
    mapped.SetCodeSet(codeSet);
  } else {
    mapped.MapToCodeSet(codeSet);
  }
  return mapped;
}

std::string ToUtf8(const OtString& text) {
  const OtString wide = InCodeSet(text, OT_CS_UNICODE);
  if (wide.GetCodeSetCode() != OT_CS_UNICODE) return {};  // memory was short
  const auto* units = reinterpret_cast<const std::uint16_t*>(wide.StrGet());
  std::string utf8(Utf8Size(units, wide.Len()), 0);
  EncodeUtf8(units, wide.Len(), utf8.data());
  return utf8;
}

void* Converted(OtTypeMgr& manager, char type, const char* text) {
  OtString string(text);
  // Without a manager in it the record leaves the string to us.
  const std::unique_ptr<OtTypeConvertData> data(
      OtTypeConvertData::Make(kStrings, 1, &string, nullptr));
  if (data == nullptr) return nullptr;
  void* value = manager.ConvertFrom(type, data.get(), 1);
  data->manager = nullptr;
  return value;
}

}  // namespace
}  // namespace ot95

using namespace ot95;

class [[gnu::visibility("hidden")]] OtStrictScanner::Impl {
 public:
  Impl(OtTypeMgr & manager, char type, const char* format)
      : manager_(manager), type_(type), rowFormat_(manager.ExchangeFormat(type, nullptr)) {
    if (format != nullptr) format_ = format;
    if (IsText()) return;
    starts_[0] = Converted(manager, type, "0");
    starts_[1] = Converted(manager, type, "1");
  }
  ~Impl() {
    for (void* start : starts_) {
      if (start != nullptr) manager_.Delete(type_, start, 1);
    }
  }
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  struct Source {
    std::string_view utf8;
    const OtString& text;
  };

  bool Takes(void* element, const Source& source) {
    if (IsText()) return TakesAsText(element, source);
    if (type_ == kBlob) return TakesAsBlob(element, source);
    if (const auto iso = AsIso(source.utf8)) {
      const OtString text(iso->text.c_str());
      if (TakesAsFixed(element, {iso->text, text}, iso->format)) return true;
    }
    return TakesAsFixed(element, source, Format());
  }

  void StartFrom(void* element, int start) const {
    const auto assign = manager_.AssignmentPtrGet(type_);
    if (starts_[start] != nullptr && assign) assign(element, starts_[start], 1, 0);
  }

 private:
  struct IsoForm {
    std::string text;
    const char* format;
  };

  const char* Format() const {
    return format_ ? format_->c_str() : nullptr;
  }
  std::string_view Name() const {
    return manager_.NameGet(type_, nullptr);
  }
  bool IsText() const {
    return rowFormat_ == std::string_view("%s");
  }
  static bool IsNullText(std::string_view utf8) {
    return utf8 == ToUtf8(OtTypeMgr::GetNullPrintString());
  }
  bool IsNull(void* element) const {
    return manager_.IsNullPtrGet(type_) != nullptr && manager_.IsNullValue(type_, element) != 0;
  }
  std::string Print(void* element, const char* format) const {
    OtString text(OT_CS_UNICODE, OT_LANG_NEUTRAL);
    manager_.PrintToOtString(type_, text, element, format, 1);
    return ToUtf8(text);
  }
  std::string Stored(void* element) const {
    std::string bytes(manager_.DiskLenGet(type_, element, OT_FORMAT_NATIVE, 1, OT_FORMAT_MEMORY),
                      0);
    manager_.Store(type_, bytes.data(), element, OT_FORMAT_NATIVE, 1);
    return bytes;
  }
  void ScanAs(void* element, const OtString& text, const char* format) {
    OtString copy(text);
    manager_.ScanFromOtString(type_, element, copy, format, 1);
  }

  bool TakesAsFixed(void* element, const Source& source, const char* format);
  bool TakesAsText(void* element, const Source& source);
  bool TakesAsBlob(void* element, const Source& source);
  bool Means(void* element, const Source& source, const char* format) const;
  bool MeansCharacter(void* element, const Source& source) const;
  bool MeansNumber(void* element, std::string_view utf8) const;
  std::optional<IsoForm> AsIso(std::string_view utf8) const;

  OtTypeMgr& manager_;
  char type_;
  std::optional<std::string> format_;
  const char* rowFormat_;
  void* starts_[2] = {};  // what a scan starts from; a type without them has none
};

/// A scan that finds nothing leaves a value as it was. So the text is scanned over two different
/// values, which have to become the same.
bool OtStrictScanner::Impl::TakesAsFixed(void* element, const Source& source, const char* format) {
  std::string results[2];
  for (int pass = 0; pass < 2; ++pass) {
    if (starts_[pass] == nullptr) return false;
    StartFrom(element, pass);
    ScanAs(element, source.text, format);
    results[pass] = Stored(element);
  }
  return results[0] == results[1] && Means(element, source, format);
}

bool OtStrictScanner::Impl::TakesAsText(void* element, const Source& source) {
  ScanAs(element, source.text, Format());
  if (IsNull(element)) return IsNullText(source.utf8);
  const unsigned char codeSet = type_ == kStrings ? source.text.GetCodeSetCode() : OT_CS_BASE8;
  if (!format_ && CodeSetHolds(codeSet, source.utf8)) return true;
  const std::unique_ptr<OtTypeConvertData> data(manager_.ConvertTo(type_, element, 1));
  if (data && ToUtf8(*data->GetString(0)) == source.utf8) return true;
  return format_ && Print(element, Format()) == source.utf8;
}

/// A blob has no text but its null's and, of an empty one, the empty text or what it prints as.
bool OtStrictScanner::Impl::TakesAsBlob(void* element, const Source& source) {
  StartFrom(element, 0);
  ScanAs(element, source.text, Format());
  if (IsNull(element)) return IsNullText(source.utf8);
  return source.utf8.empty() || Print(element, nullptr) == source.utf8;
}

bool OtStrictScanner::Impl::Means(void* element, const Source& source, const char* format) const {
  const std::string_view utf8 = source.utf8;
  if (IsNull(element)) return IsNullText(utf8);
  const std::string printed = Print(element, format);
  if (printed == utf8) return true;
  const std::string_view row = rowFormat_;
  if (row == "%c") return MeansCharacter(element, source);
  if (row == "%lf" || row == "%f") return MeansNumber(element, utf8);
  if (type_ == kBoolean) {
    const std::string_view names = printed == "TRUE" ? "Tt1" : "Ff0";
    if (utf8.size() == 1 && names.find(utf8[0]) != std::string_view::npos) return true;
  }
  const bool hasNames = IsoTypeOf(Name()) != nullptr;
  return SayTheSame(utf8, printed, hasNames);
}

/// A byte may be given by its number, 0x41, and beyond ASCII it is a character of the base set.
bool OtStrictScanner::Impl::MeansCharacter(void* element, const Source& source) const {
  const std::string_view utf8 = source.utf8;
  const auto byte = static_cast<unsigned char>(Stored(element).back());
  const bool isNumber = utf8.starts_with("0x") && (utf8.size() == 3 || utf8.size() == 4);
  if (isNumber) return SayTheSame(utf8, std::to_string(byte), false);
  const OtString base = InCodeSet(source.text, OT_CS_BASE8);
  return base.Len() == 1 && static_cast<unsigned char>(base.StrGet()[0]) == byte &&
         ToUtf8(base) == utf8;
}

/// By the digits that tell a number from its neighbours.
bool OtStrictScanner::Impl::MeansNumber(void* element, std::string_view utf8) const {
  if (manager_.MemLenGet(type_, 1) >= 2 * sizeof(float) && std::string_view(rowFormat_) == "%lf") {
    return SaysNumber<double>(utf8, Print(element, "%.17g"));
  }
  return SaysNumber<float>(utf8, Print(element, "%.9g"));
}

std::optional<OtStrictScanner::Impl::IsoForm> OtStrictScanner::Impl::AsIso(
    std::string_view utf8) const {
  const IsoType* const type = format_ ? nullptr : IsoTypeOf(Name());
  if (type == nullptr) return {};
  std::string text = type->format == kIsoDate   ? IsoDateOf(utf8)
                     : type->format == kIsoTime ? IsoTimeOf(utf8)
                                                : IsoBothOf(utf8);
  if (text.empty()) return {};
  return IsoForm{std::move(text), type->format};
}

OtStrictScanner::OtStrictScanner(OtTypeMgr& manager, char type, const char* format)
    : impl_(nullptr) {
  try {
    impl_ = new Impl(manager, type, format);
  } catch (const std::bad_alloc&) {
    OtNoteMemoryShortage();
  }
}

OtStrictScanner::~OtStrictScanner() {
  delete impl_;
}

bool OtStrictScanner::Scan(void* element, const OtString& text, const char* utf8,
                           std::size_t size) {
  if (impl_ == nullptr) {
    OtNoteMemoryShortage();
    return false;
  }
  try {
    return impl_->Takes(element, {{utf8, size}, text});
  } catch (const std::bad_alloc&) {
    OtNoteMemoryShortage();
    return false;
  }
}

void OtStrictScanner::Reset(void* element) const {
  if (impl_ != nullptr) impl_->StartFrom(element, 0);
}

const char* OtStrictScanner::IsoExample(OtTypeMgr& manager, char type) {
  const IsoType* iso = IsoTypeOf(manager.NameGet(type, nullptr));
  return iso != nullptr ? iso->example : nullptr;
}
