// Scalars as text: the format of each row, and what a text makes of a value.

#include "kit/scalartext.h"

#include <type_traits>

#include "kit/narrowtext.h"
#include "kit/numbertext.h"

namespace ot95 {

namespace {

/// The family's own format.
template <class T>
constexpr const char* builtInFormat = "%f";
template <>
constexpr const char* builtInFormat<char> = "%c";
template <>
constexpr const char* builtInFormat<short> = "%hd";
template <>
constexpr const char* builtInFormat<OtLong> = "%ld";

template <class T>
const char* FormatOr(const char* format) {
  return format ? format : builtInFormat<T>;
}

}  // namespace

OtString& CharPrintToString(OtString& target, void* value, const char* format,
                            unsigned long count) {
  return PrintChar(target, value, FormatOr<char>(format), count);
}

void* CharScanFromString(void* value, OtString& text, const char* format, unsigned long count) {
  if (!value) return nullptr;
  const NarrowText narrow(text);
  ScanChar(value, narrow.Bytes(), narrow.Length(), FormatOr<char>(format), count);
  return value;
}

template <class T>
OtString& NumberPrintToString(OtString& target, void* value, const char* format,
                              unsigned long /*count*/) {
  const T number = *static_cast<const T*>(value);
  if constexpr (std::is_same_v<T, double>) {
    return PrintDouble(target, number, FormatOr<T>(format));
  } else {
    return PrintNumber(target, number, FormatOr<T>(format));
  }
}

template <class T>
void* NumberScanFromString(void* value, OtString& text, const char* format,
                           unsigned long /*count*/) {
  if (!value) return nullptr;
  const NarrowText narrow(text);
  ScanNumber(*static_cast<T*>(value), narrow.Bytes(), narrow.Length(), FormatOr<T>(format));
  return value;
}

template OtString& NumberPrintToString<short>(OtString&, void*, const char*, unsigned long);
template void* NumberScanFromString<short>(void*, OtString&, const char*, unsigned long);
template OtString& NumberPrintToString<OtLong>(OtString&, void*, const char*, unsigned long);
template void* NumberScanFromString<OtLong>(void*, OtString&, const char*, unsigned long);
template OtString& NumberPrintToString<float>(OtString&, void*, const char*, unsigned long);
template void* NumberScanFromString<float>(void*, OtString&, const char*, unsigned long);
template OtString& NumberPrintToString<double>(OtString&, void*, const char*, unsigned long);
template void* NumberScanFromString<double>(void*, OtString&, const char*, unsigned long);

}  // namespace ot95
