// Values of which the program knows the identifier of their type and no more.
#include "values.h"

#include "scanner.h"

namespace ottm {
namespace {

std::string TypeName(const OtTypeMgr& manager, char id) {
  return manager.NameGet(id, nullptr);
}

}  // namespace

Values::Values(OtTypeMgr& manager, char id, unsigned long count, void* data)
    : manager_(manager), id_(id), count_(count), data_(data) {
  if (data_ == nullptr) {
    throw BadInput("TYPE: values of " + TypeName(manager_, id_) + " can't be made so");
  }
}

Values::Values(OtTypeMgr& manager, char id, unsigned long count)
    : Values(manager, id, count, manager.Create(id, count)) {
  if (const auto construct = manager.ConstructorPtrGet(id); construct && manager.IsFixed(id)) {
    construct(data_, count, 0);  // a scalar comes from Create as the allocator left it
  }
}

Values Values::Default(OtTypeMgr& manager, char id, bool nullable) {
  return Values(manager, id, 1, manager.DefaultValue(id, 1, nullable));
}

Values Values::Converted(OtTypeMgr& manager, char id, unsigned long count,
                         OtTypeConvertData& data) {
  return Values(manager, id, count, manager.ConvertFrom(id, &data, count));
}

Values::~Values() {
  manager_.Delete(id_, data_, count_);
}

void* Values::Element(unsigned long index) const {
  return manager_.GetArrayElement(id_, data_, index, 0);
}

void Values::Scan(const std::vector<std::string>& texts, const TextOptions& options,
                  const ScanOptions& scan, const char* argument) {
  ot95::tools::Scanner scanner(manager_, id_, scan.textFormat, scan.lenient);
  for (unsigned long i = 0; i < count_; ++i) {
    Naming(argument, [&] {
      scanner.Scan(Element(i), texts[i], options.CodeSet(), options.LanguageNumber());
    });
  }
}

bool Values::IsNull(unsigned long index) const {
  return manager_.IsNullPtrGet(id_) != nullptr && manager_.IsNullValue(id_, Element(index)) != 0;
}

// A row prints a text by way of an 8-bit code set; conversion gives it whole.
std::string Values::Print(unsigned long index, const char* format) const {
  const bool isText = ot95::tools::Scanner::IsText(manager_, id_);
  if (format == nullptr && isText && !IsNull(index)) {
    const std::unique_ptr<OtTypeConvertData> data(manager_.ConvertTo(id_, Element(index), 1));
    if (data) return ToUtf8(*data->GetString(0));
  }
  OtString text(OT_CS_UNICODE, OT_LANG_DEFAULT);
  manager_.PrintToOtString(id_, text, Element(index), format, 1);
  return ToUtf8(text);
}

Json Values::ToJson(unsigned long index, const char* format) const {
  if (IsNull(index)) return nullptr;
  const std::string text = Print(index, format);
  const std::string_view own = manager_.ExchangeFormat(id_, nullptr);
  if (own != "%s" && own != "%c") {  // a text or a character may look like a number
    Json number = Json::parse(text, nullptr, false);
    if (number.is_number()) return number;
  }
  return text;
}

std::unique_ptr<OtTypeConvertData> Values::Convert() const {
  std::unique_ptr<OtTypeConvertData> data(manager_.ConvertTo(id_, data_, count_));
  if (data == nullptr) {
    throw BadInput("TYPE: values of " + TypeName(manager_, id_) + " have no text to convert");
  }
  return data;
}

Bytes Values::Store(unsigned char format) const {
  Bytes bytes(manager_.DiskLenGet(id_, data_, format, count_, OT_FORMAT_MEMORY));
  const unsigned long written = manager_.Store(id_, bytes.data(), data_, format, count_);
  bytes.resize(written);
  return bytes;
}

unsigned long Values::Load(const Bytes& bytes, unsigned char format) {
  const unsigned long consumed = RequireStored(manager_, id_, bytes, FormToLoad(format), count_);
  Bytes copy(bytes);
  LoadVerified(copy.data(), format);
  return consumed;
}

void Values::LoadVerified(unsigned char* bytes, unsigned char format) {
  manager_.Load(id_, data_, bytes, format, count_);
}

Verdict VerifyBytes(OtTypeMgr& manager, char id, std::span<const unsigned char> bytes,
                    unsigned char format, unsigned long count) {
  Verdict verdict;
  verdict.status =
      manager.VerifyStored(id, bytes.data(), bytes.size(), format, count, verdict.consumed);
  if (verdict.status == OT_ERR_END_OF_DATA) verdict.reason = "the bytes end too early";
  if (verdict.status == OT_ERR_BAD_ARGUMENT) {
    verdict.reason = "not a stored " + TypeName(manager, id);
  }
  return verdict;
}

unsigned long RequireStored(OtTypeMgr& manager, char id, const Bytes& bytes, unsigned char format,
                            unsigned long count) {
  const Verdict verdict = VerifyBytes(manager, id, bytes, format, count);
  if (verdict.status == 0) return verdict.consumed;
  throw BadInput("HEX: expected " + std::to_string(count) + " stored " + TypeName(manager, id) +
                 ", at offset " + std::to_string(verdict.consumed) + ": " + verdict.reason);
}

}  // namespace ottm
