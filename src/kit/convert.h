#ifndef OT95_SRC_KIT_CONVERT_H
#define OT95_SRC_KIT_CONVERT_H

/// @file
/// Frames of the members ConvertTo, ConvertFrom and DefaultValue. All types meet in arrays of
/// OtString; a type adds what one element becomes and how it is read back.

#include <algorithm>

#include "ot95/text.h"
#include "ot95/typemgr.h"

namespace ot95 {

/// A new record over an array of `count` empty strings, which no manager owns yet; null when memory
/// is short.
OtTypeConvertData* MakeTextData(unsigned long count);

/// Destroys a record together with its array of strings that no manager owns. Null is ignored.
void DeleteTextData(OtTypeConvertData* data);

/// The string at `index`; null if there is none, or if it is a null value.
OtString* PresentText(OtTypeConvertData* data, unsigned long index);

/// Member ConvertTo. `write(text, value)` puts a value into an empty string.
template <class T, auto write>
OtTypeConvertData* ConvertToTexts(void* value, unsigned long count) {
  OtTypeConvertData* data = MakeTextData(count);
  if (data == nullptr) return nullptr;
  auto* values = static_cast<T*>(value);
  auto* texts = static_cast<OtString*>(data->data);
  for (unsigned long i = 0; i < count; ++i) write(texts[i], values[i]);
  return data;
}

/// Member ConvertFrom. `read(value, text)` fills a value that `create` made; `text` is null where a
/// string is missing or null.
template <class T, auto create, auto read>
void* ConvertFromTexts(OtTypeConvertData* data, unsigned long count) {
  auto* values = static_cast<T*>(create(count));
  if (values == nullptr) return nullptr;
  for (unsigned long i = 0; i < count; ++i) read(values[i], PresentText(data, i));
  return values;
}

/// Member DefaultValue of a row without null: what empty strings convert to.
template <auto convertFrom>
void* DefaultFromText(unsigned long count, int /*nullable*/) {
  OtTypeConvertData* data = MakeTextData(count);
  void* values = convertFrom(data, count);
  DeleteTextData(data);
  return values;
}

/// Member DefaultValue of a row of type T with a null: null values if `nullable` asks for them.
template <class T, auto create, auto setNull, auto convertFrom>
void* DefaultOrNull(unsigned long count, int nullable) {
  if (nullable == 0) return DefaultFromText<convertFrom>(count, nullable);
  auto* values = static_cast<T*>(create(count));
  for (unsigned long i = 0; values != nullptr && i < count; ++i) setNull(values + i);
  return values;
}

}  // namespace ot95

#endif
