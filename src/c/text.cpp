// Values as text in UTF-8: scan, print, nulls, defaults.
#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "c/bridge.h"
#include "c/utf8.h"
#include "ot95/scanner.h"

namespace ot95::c {

namespace {

constexpr char kStrings = 11;  // the type of what conversion data carries

/// What every scan of a type starts from. A scan that finds nothing leaves the value as it was and
/// says nothing. So a text is scanned over two different values: where they stay apart, it was no
/// value of this type.
class Starts {
 public:
  int Make(const Type& type) {
    if (const int status = From(type, "0", values_[0])) return status;
    return From(type, "1", values_[1]);
  }
  void Assign(int start, void* element) {
    const OtAssignFunc assign = values_[start].type().row->Assign;
    if (assign != nullptr) assign(element, values_[start].data(), 1, 0);
  }

 private:
  static int From(Type type, const char* text, Values& values) {
    OtString string(text);
    // Without a manager in it the record leaves the string to us.
    const std::unique_ptr<OtTypeConvertData> data(
        OtTypeConvertData::Make(kStrings, 1, &string, nullptr));
    if (data == nullptr) return OT95_ERR_MEMORY;
    void* made = type.manager.ConvertFrom(type.id, data.get(), 1);
    data->manager = nullptr;
    return values.Adopt(type, made, 1);
  }

  Values values_[2];
};

/// Scans texts into elements of one array.
class Scanner {
 public:
  int Open(const Type& type, const ot95_scan_options* options) {
    type_ = type;
    if (options != nullptr) {
      if (const int status = Take(*options)) return status;
    }
    return strict_ ? OT95_OK : starts_.Make(type);
  }

  int Scan(const ot95_span& utf8, void* element) {
    WideText wide;
    OtString text;
    if (const int status = wide.Take(utf8.data, utf8.size)) return status;
    if (const int status = wide.ToString(codeSet_, language_, text)) return status;
    if (strict_) {
      return strict_->Scan(element, text, utf8.data, utf8.size) ? OT95_OK : OT95_ERR_VALUE;
    }
    std::vector<unsigned char> results[2];
    bool isTouched = false;
    for (int start = 0; start < 2; ++start) {
      starts_.Assign(start, element);
      const auto before = Bytes(element);
      OtString source(text);
      type_.manager.ScanFromOtString(type_.id, element, source, format_, 1);
      results[start] = Bytes(element);
      isTouched = isTouched || results[start] != before;
    }
    // A blob takes nothing but the null text.
    const bool isTaken = type_.IsFixed() ? results[0] == results[1] : isTouched || utf8.size == 0;
    return isTaken ? OT95_OK : OT95_ERR_VALUE;
  }

 private:
  /// A structure that is as an older caller knows it ends before the flags.
  int Take(const ot95_scan_options& options) {
    if (options.struct_size < offsetof(ot95_scan_options, flags)) return OT95_ERR_ARGUMENT;
    const bool isKnown = options.code_set <= OT_CS_UNICODE && options.language < OT_LANG_NULL;
    if (!isKnown) return OT95_ERR_LANGUAGE;
    codeSet_ = static_cast<unsigned char>(options.code_set);
    language_ = static_cast<unsigned char>(options.language);
    format_ = options.format;
    const unsigned flags = options.struct_size >= sizeof options ? options.flags : 0;
    if ((flags & ~unsigned{OT95_STRICT}) != 0) return OT95_ERR_ARGUMENT;
    if (flags != 0) strict_.emplace(type_.manager, type_.id, format_);
    return OT95_OK;
  }

  std::vector<unsigned char> Bytes(void* element) {
    std::vector<unsigned char> bytes(
        type_.manager.DiskLenGet(type_.id, element, OT_FORMAT_NATIVE, 1, OT_FORMAT_MEMORY));
    type_.manager.Store(type_.id, bytes.data(), element, OT_FORMAT_NATIVE, 1);
    return bytes;
  }

  Type type_;
  Starts starts_;
  unsigned char codeSet_ = OT_CS_UNICODE;
  unsigned char language_ = OT_LANG_NEUTRAL;
  const char* format_ = nullptr;
  std::optional<OtStrictScanner> strict_;
};

int ScanAll(int number, const ot95_span* texts, std::size_t count, const ot95_scan_options* options,
            unsigned form, ot95_buffer* out) {
  Type type;
  Scanner scanner;
  Values values;
  unsigned char format = 0;
  if (texts == nullptr || count == 0) return OT95_ERR_ARGUMENT;
  if (const int status = OpenForm(form, format)) return status;
  if (const int status = type.Open(number)) return status;
  if (const int status = scanner.Open(type, options)) return status;
  if (const int status = values.Make(type, count)) return status;
  for (std::size_t i = 0; i < count; ++i) {
    if (const int status = scanner.Scan(texts[i], values.Element(i))) return status;
  }
  return values.Store(format, out);
}

/// A row prints a text by way of an 8-bit code set; conversion gives it whole.
int Print(Values& values, std::size_t index, const char* format, ot95_buffer* out) {
  Type& type = values.type();
  void* element = values.Element(index);
  if (format == nullptr && type.IsText() && !values.IsNull(index)) {
    const std::unique_ptr<OtTypeConvertData> data(type.manager.ConvertTo(type.id, element, 1));
    if (data == nullptr) return OT95_ERR_MEMORY;
    return GiveText(out, *data->GetString(0));
  }
  OtString text(OT_CS_UNICODE, OT_LANG_NEUTRAL);
  type.manager.PrintToOtString(type.id, text, element, format, 1);
  return GiveText(out, text);
}

/// Loads an array of which one element is asked for.
int LoadFor(const ot95_array* array, std::size_t index, Values& values) {
  Stored stored;
  if (const int status = stored.OpenWhole(array)) return status;
  if (index >= stored.count()) return OT95_ERR_ARGUMENT;
  return values.Load(stored);
}

}  // namespace

}  // namespace ot95::c

using namespace ot95::c;

int ot95_scan(int type, const ot95_span* texts, size_t count, const ot95_scan_options* options,
              unsigned form, ot95_buffer* out) {
  return GuardedFor(out, [&] { return ScanAll(type, texts, count, options, form, out); });
}

int ot95_print(const ot95_array* array, size_t index, const char* format, ot95_buffer* out) {
  return GuardedFor(out, [&] {
    Values values;
    if (const int status = LoadFor(array, index, values)) return status;
    return Print(values, index, format, out);
  });
}

int ot95_is_null(const ot95_array* array, size_t index, int* is_null) {
  return GuardedResult(is_null, [&](int& made) -> int {
    Values values;
    if (const int status = LoadFor(array, index, values)) return status;
    made = values.IsNull(index);
    return OT95_OK;
  });
}

int ot95_default(int type, int nullable, unsigned form, ot95_buffer* out) {
  return GuardedFor(out, [&] {
    Type opened;
    Values values;
    unsigned char format = 0;
    if (const int status = OpenForm(form, format)) return status;
    if (const int status = opened.Open(type)) return status;
    void* made = opened.manager.DefaultValue(opened.id, 1, nullable != 0);
    if (const int status = values.Adopt(opened, made, 1)) return status;
    return values.Store(format, out);
  });
}
