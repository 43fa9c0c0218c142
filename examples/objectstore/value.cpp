// A member in memory.
#include "value.h"

#include "bad_input.h"
#include "ot95/text.h"
#include "utf8text.h"

namespace otdb {
namespace {

using ot95::tools::BadInput;

}  // namespace

Value::Value(const Member& member)
    : member_(member), data_(Types().DefaultValue(member.type, member.count, 1)) {
  if (data_ == nullptr) throw BadInput(member.name + ": no value of this type can be made");
}

Value::~Value() {
  Types().Delete(member_.type, data_, member_.count);
}

void* Value::Element(unsigned long element) const {
  return Types().GetArrayElement(member_.type, data_, element, 0);
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

void Value::Scan(unsigned long element, const std::string& utf8) {
  if (utf8.empty() && !member_.IsText() && SetNull(element)) return;
  if (!scanner_) {
    std::optional<std::string> format;
    if (!member_.format.empty()) format = member_.format;
    scanner_ = std::make_unique<ot95::tools::Scanner>(Types(), member_.type, std::move(format));
  }
  ot95::tools::Naming(member_.name, [&] {
    scanner_->Scan(Element(element), utf8, member_.codeSet, member_.language);
  });
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
