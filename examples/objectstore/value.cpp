#include "value.h"

#include <memory>

#include "bad_input.h"
#include "ot95/text.h"
#include "utf8text.h"

namespace otdb {
namespace {

using ot95::tools::BadInput;

constexpr char kStrings = 11;  // the type of what conversion data carries

bool HasDigit(const std::string& text) {
  return text.find_first_of("0123456789") != std::string::npos;
}

/// A whole number as it prints: no sign but a minus, no needless zero.
bool IsPlainNumber(const std::string& text) {
  const std::size_t first = text.starts_with('-') ? 1 : 0;
  return text.size() > first && text.find_first_not_of("0123456789", first) == std::string::npos &&
         (text[first] != '0' || text.size() == 1);
}

/// Whether a value can be what a text says. Scans take what they find and wrap what is too large.
bool CanMean(const std::string& text, const std::string& printed) {
  if (IsPlainNumber(text) && IsPlainNumber(printed)) return text == printed;
  return HasDigit(text) || !HasDigit(printed);
}

void* Converted(char type, const char* text) {
  OtString string(text);
  const std::unique_ptr<OtTypeConvertData> data(
      OtTypeConvertData::Make(kStrings, 1, &string, nullptr));
  void* value = Types().ConvertFrom(type, data.get(), 1);
  data->manager = nullptr;  // the string stays ours
  return value;
}

}  // namespace

Value::Value(const Member& member)
    : member_(member), data_(Types().DefaultValue(member.type, member.count, 1)) {
  if (data_ == nullptr) throw BadInput(member.name + ": no value of this type can be made");
  if (!member.IsText()) {
    starts_[0] = Converted(member.type, "0");
    starts_[1] = Converted(member.type, "1");
  }
}

Value::~Value() {
  Types().Delete(member_.type, data_, member_.count);
  for (void* start : starts_) {
    if (start) Types().Delete(member_.type, start, 1);
  }
}

void* Value::Element(unsigned long element) const {
  return Types().GetArrayElement(member_.type, data_, element, 0);
}

void Value::Assign(unsigned long element, void* source) {
  Types().AssignmentPtrGet(member_.type)(Element(element), source, 1, 0);
}

void Value::Reset() {
  void* fresh = Types().DefaultValue(member_.type, 1, 1);
  Types().AssignmentPtrGet(member_.type)(data_, fresh, member_.count, 1);
  Types().Delete(member_.type, fresh, 1);
}

bool Value::SetNull(unsigned long element) {
  if (Types().SetNullPtrGet(member_.type) == nullptr) return false;
  Types().SetNullValue(member_.type, Element(element));
  return true;
}

// A scan that finds nothing leaves a value as it was and doesn't say so. So the text is scanned
// over two different values: where they stay apart, it wasn't a value of the type.
bool Value::ScanOver(unsigned long element, OtString& text) {
  Bytes results[2];
  for (int pass = 0; pass < 2; ++pass) {
    if (starts_[pass] == nullptr) return false;
    Assign(element, starts_[pass]);
    OtString copy(text);
    Types().ScanFromOtString(member_.type, Element(element), copy, member_.Format(), 1);
    results[pass].resize(
        Types().DiskLenGet(member_.type, Element(element), OT_FORMAT_NATIVE, 1, OT_FORMAT_MEMORY));
    Types().Store(member_.type, results[pass].data(), Element(element), OT_FORMAT_NATIVE, 1);
  }
  return results[0] == results[1];
}

void Value::Scan(unsigned long element, const std::string& utf8) {
  if (utf8.empty() && !member_.IsText() && SetNull(element)) return;
  OtString text = ot95::tools::FromUtf8(utf8, member_.codeSet, member_.language);
  if (member_.IsText()) {  // takes any
    Types().ScanFromOtString(member_.type, Element(element), text, member_.Format(), 1);
  } else if (!ScanOver(element, text) || !(IsNull(element) || CanMean(utf8, Print(element)))) {
    throw BadInput(member_.name + ": expected a value of " +
                   Types().NameGet(member_.type, nullptr) + ", found '" + utf8 + "'");
  }
}

bool Value::IsNull(unsigned long element) const {
  return Types().IsNullPtrGet(member_.type) != nullptr &&
         Types().IsNullValue(member_.type, Element(element)) != 0;
}

// A row prints a text by way of an 8-bit code set; conversion gives it whole.
std::string Value::Print(unsigned long element) const {
  if (member_.IsText() && !IsNull(element)) {
    const std::unique_ptr<OtTypeConvertData> data(
        Types().ConvertTo(member_.type, Element(element), 1));
    if (data) return ot95::tools::ToUtf8(*data->GetString(0));
  }
  OtString text(OT_CS_UNICODE, member_.language);
  Types().PrintToOtString(member_.type, text, Element(element), member_.Format(), 1);
  return ot95::tools::ToUtf8(text);
}

void Value::AppendTo(Bytes& record, unsigned char form) const {
  const std::size_t start = record.size();
  record.resize(start +
                Types().DiskLenGet(member_.type, data_, form, member_.count, OT_FORMAT_MEMORY));
  const unsigned long written =
      Types().Store(member_.type, record.data() + start, data_, form, member_.count);
  record.resize(start + written);
}

Bytes Value::Stored(unsigned char form) const {
  Bytes stored;
  AppendTo(stored, form);
  return stored;
}

void Value::Load(View stored, unsigned char form) {
  Types().Load(member_.type, data_, Place(stored), form, member_.count);
}

}  // namespace otdb
