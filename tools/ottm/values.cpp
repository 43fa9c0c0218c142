#include "values.h"

namespace ottm {
namespace {

/// A scan that finds nothing leaves the value as it was and says nothing. So a text is scanned
/// over two different values: where they stay apart, it was no value of this type.
constexpr const char* kStarts[] = {"0", "1"};

constexpr char kStrings = 11;  // the type of what conversion data carries

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

Values Values::FromTexts(OtTypeMgr& manager, char id, const std::vector<std::string>& texts,
                         const TextOptions& options) {
  std::vector<OtString> strings;
  for (const std::string& text : texts) strings.push_back(options.Value(text));
  // Without a manager in it the record leaves the strings to us.
  const std::unique_ptr<OtTypeConvertData> data(
      OtTypeConvertData::Make(kStrings, strings.size(), strings.data(), nullptr));
  void* values = manager.ConvertFrom(id, data.get(), strings.size());
  data->manager = nullptr;
  return Values(manager, id, strings.size(), values);
}

Values::~Values() {
  manager_.Delete(id_, data_, count_);
}

void* Values::Element(unsigned long index) const {
  return manager_.GetArrayElement(id_, data_, index, 0);
}

void Values::StartFrom(unsigned long index, const char* text) {
  const Values start = FromTexts(manager_, id_, {text}, TextOptions());
  if (const auto assign = manager_.AssignmentPtrGet(id_)) assign(Element(index), start.data_, 1, 0);
}

Bytes Values::StoreOne(unsigned long index) const {
  void* place = Element(index);
  Bytes bytes(manager_.DiskLenGet(id_, place, OT_FORMAT_NATIVE, 1, OT_FORMAT_MEMORY));
  manager_.Store(id_, bytes.data(), place, OT_FORMAT_NATIVE, 1);
  return bytes;
}

/// Scans a text into an element, from each of the starts. @return whether it took.
bool Values::ScanOne(unsigned long index, const std::string& utf8, const TextOptions& options,
                     const char* format) {
  Bytes results[2];
  bool touched = false;
  for (int pass = 0; pass < 2; ++pass) {
    StartFrom(index, kStarts[pass]);
    const Bytes before = StoreOne(index);
    OtString text = options.Text(utf8);
    manager_.ScanFromOtString(id_, Element(index), text, format, 1);
    results[pass] = StoreOne(index);
    touched = touched || results[pass] != before;
  }
  if (manager_.IsFixed(id_)) return results[0] == results[1];
  return touched || utf8.empty();  // a blob takes nothing but the null text
}

void Values::Scan(const std::vector<std::string>& texts, const TextOptions& options,
                  const char* format) {
  for (unsigned long i = 0; i < count_; ++i) {
    if (ScanOne(i, texts[i], options, format)) continue;
    throw BadInput("VALUE: expected a value of " + TypeName(manager_, id_) + ", found '" +
                   texts[i] + "'");
  }
}

bool Values::IsNull(unsigned long index) const {
  return manager_.IsNullPtrGet(id_) != nullptr && manager_.IsNullValue(id_, Element(index)) != 0;
}

// A row prints a text by way of an 8-bit code set; conversion gives it whole.
std::string Values::Print(unsigned long index, const char* format) const {
  const bool isText = manager_.ExchangeFormat(id_, nullptr) == std::string_view("%s");
  if (format == nullptr && isText && !IsNull(index)) {
    const std::unique_ptr<OtTypeConvertData> data(manager_.ConvertTo(id_, Element(index), 1));
    if (data) return ToUtf8(*data->GetString(0));
  }
  OtString text(OT_CS_UNICODE, OT_LANG_DEFAULT);
  manager_.PrintToOtString(id_, text, Element(index), format, 1);
  return ToUtf8(text);
}

Json Values::ToJson(unsigned long index) const {
  if (IsNull(index)) return nullptr;
  const std::string text = Print(index);
  const std::string_view format = manager_.ExchangeFormat(id_, nullptr);
  if (format != "%s" && format != "%c") {  // a text or a character may look like a number
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
