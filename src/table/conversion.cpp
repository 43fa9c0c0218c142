// Conversion from one type to another, by way of texts: the carrier and the facade's operations.

#include <cstdint>
#include <new>

#include "kit/scalartext.h"
#include "kit/statics.h"
#include "ot95/fault.h"
#include "ot95/text.h"
#include "ot95/typemgr.h"
#include "table/rows.h"

// ---------------------------------------------------------------------------------------------
// The carrier

namespace {

constexpr char kStringId = 11;
constexpr char kSealId = 39;
constexpr char kNoType = 100;  // Resolves to the row "illegal".

/// Sets a member of a record that is being destroyed. A plain store the compiler would drop, but
/// who still looks at the record must find it empty.
template <class T>
void Leave(T& member, T value) {
  *static_cast<volatile T*>(&member) = value;
}

}  // namespace

OtTypeConvertData* OtTypeConvertData::Make(char type, unsigned long count, void* data,
                                           OtTypeMgr* manager) {
  return ot95::Noted(new (std::nothrow) OtTypeConvertData(type, count, data, manager));
}

OtTypeConvertData::~OtTypeConvertData() {
  if (manager && data) {
    // Seals put their own tag on a record of strings.
    manager->Delete(type == kSealId ? kStringId : type, data, count);
    Leave<void*>(data, nullptr);
  }
  Leave(count, 0UL);
  Leave(type, kNoType);
}

OtString* OtTypeConvertData::GetString(int index) {
  if (index >= static_cast<OtLong>(count) || type != kStringId || !data) return nullptr;
  // The bound is a signed one, so a negative index passes: its address is formed without a fault,
  // and callers don't follow it.
  const auto offset = static_cast<std::intptr_t>(index) * std::intptr_t{sizeof(OtString)};
  return reinterpret_cast<OtString*>(reinterpret_cast<std::uintptr_t>(data) +
                                     static_cast<std::uintptr_t>(offset));
}

// ---------------------------------------------------------------------------------------------
// Conversion through the manager

OtTypeConvertData* OtTypeMgr::ConvertTo(char id, void* value, unsigned long count) {
  const OtTypeDescriptor* row = Row(id);
  if (!row || !row->ConvertTo) return nullptr;
  OtTypeConvertData* data = row->ConvertTo(value, count);
  if (data) data->manager = this;
  return data;
}

void* OtTypeMgr::ConvertFrom(char id, OtTypeConvertData* data, unsigned long count) {
  if (data) data->manager = this;
  const OtTypeDescriptor* row = Row(id);
  return row && row->ConvertFrom ? row->ConvertFrom(data, count) : nullptr;
}

int OtTypeMgr::SetNullValue(char id, void* value) {
  const OtTypeDescriptor* row = Row(id);
  if (!row) return 0;
  if (row->SetNull) {
    const int answer = row->SetNull(value);
    if (answer != OT_ERR_NOT_SUPPORTED) return answer;
  }
  if (!row->Assign) {
    ScanFromOtString(id, value, ot95::zeroString, nullptr, 1);
    return 0;
  }
  void* text = Create(kStringId, 1);
  OtTypeConvertData* data = text ? OtTypeConvertData::Make(kStringId, 1, text, nullptr) : nullptr;
  if (!data) {
    Delete(kStringId, text, 1);
    return 0;
  }
  void* converted = ConvertFrom(id, data, 1);
  delete data;
  if (!converted) return 0;
  row->Assign(value, converted, 1, 1);
  Delete(id, converted, 1);
  return 0;
}

// ---------------------------------------------------------------------------------------------
// Lists in one text

namespace {

constexpr char kDefaultSeparator = ',';
constexpr unsigned short kNotFound = 0xffff;

/// As SubStringPos from `start` on, but exact behind 32,767 too; kNotFound is beyond every text.
unsigned short PositionOf(const OtString& pattern, const OtString& text, unsigned short start) {
  return static_cast<unsigned short>(text.Find(pattern, start));
}

/// Characters from `start` up to `end`, which is beyond what Copy can count.
OtString Stretch(const OtString& text, unsigned short start, unsigned short end) {
  return text.Copy(start).Left(static_cast<unsigned short>(end - start));
}

/// Whether none of the first `count` strings holds the separator; a missing string ends the search.
bool IsFree(const OtString& separator, OtTypeConvertData& data, unsigned long count) {
  for (unsigned long i = 0; i < count; ++i) {
    const OtString* text = data.GetString(static_cast<int>(i));
    if (!text) return true;
    if (PositionOf(separator, *text, 0) != kNotFound) return false;
  }
  return true;
}

OtString FreeSeparator(OtTypeConvertData& data, unsigned long count) {
  constexpr int firstCandidate = 1;
  constexpr int lastCandidate = 254;
  for (int candidate = firstCandidate; candidate <= lastCandidate; ++candidate) {
    OtString separator(static_cast<char>(candidate));
    // One that weighs nothing in its collation would not be found again.
    const bool isFound = PositionOf(separator, separator, 0) != kNotFound;
    if (isFound && IsFree(separator, data, count)) return separator;
  }
  return OtString(kDefaultSeparator);
}

/// The last character of a text, or the default one.
OtString SeparatorOf(const OtString& text) {
  return text.IsEmpty() ? OtString(kDefaultSeparator) : text.Right(1);
}

unsigned long CountParts(const OtString& text, const OtString& separator) {
  unsigned long parts = 1;
  unsigned short start = 0;
  for (unsigned short found; (found = PositionOf(separator, text, start)) != kNotFound; ++parts) {
    start = static_cast<unsigned short>(found + 1);
  }
  return parts;
}

/// Moves the parts of `text` into `strings`, as many as there are separators; the rest stays.
void TakeParts(OtString& text, const OtString& separator, OtString* strings) {
  unsigned short start = 0;
  for (unsigned short found; (found = PositionOf(separator, text, start)) != kNotFound;) {
    *strings++ = Stretch(text, start, found);
    start = static_cast<unsigned short>(found + 1);
  }
  const unsigned short length = text.Len();
  if (start < length) {
    text = text.Copy(start);
  } else {
    text.Cut(0);
  }
}

}  // namespace

OtString* OtTypeMgr::ConvertToOtStringOld(void* value, char id, unsigned long count) {
  OtTypeConvertData* data = ConvertTo(id, value, count);
  if (!data) return nullptr;
  auto* list = static_cast<OtString*>(Create(kStringId, 1));
  if (list) {
    const OtString separator = FreeSeparator(*data, count);
    for (unsigned long i = 0; i < count; ++i) {
      const OtString* text = data->GetString(static_cast<int>(i));
      if (text) *list += *text;
      *list += separator;
    }
  }
  delete data;
  return list;
}

void* OtTypeMgr::ConvertFromOtStringOld(OtString* text, char id, unsigned long count) {
  const OtString separator = SeparatorOf(*text);
  const unsigned long parts = CountParts(*text, separator);
  auto* strings = static_cast<OtString*>(Create(kStringId, parts));
  if (!strings) return nullptr;
  TakeParts(*text, separator, strings);
  OtTypeConvertData* data = OtTypeConvertData::Make(kStringId, parts, strings, this);
  if (!data) {
    Delete(kStringId, strings, parts);
    return nullptr;
  }
  void* values = ConvertFrom(id, data, count);
  delete data;
  return values;
}

// ---------------------------------------------------------------------------------------------
// Printing and scanning through the manager

OtString& OtTypeMgr::PrintToOtString(char id, OtString& target, const void* constValue,
                                     const char* format, unsigned long count) const {
  auto* value = const_cast<void*>(constValue);  // rows take it so, and only read it
  const OtTypeDescriptor* row = Row(id);
  if (!row || !row->PrintToString) return target;
  if (!format) format = row->format;
  if (count < 2 || row->PrintToString == &ot95::CharPrintToString) {
    return row->PrintToString(target, value, format, count);
  }
  for (unsigned long i = 0; i < count; ++i) {
    OtString element;
    target += row->PrintToString(element, GetArrayElement(id, value, i, count), format, 1);
    if (i + 1 < count) target += ",";
  }
  return target;
}

void* OtTypeMgr::ScanFromOtString(char id, void* value, const OtString& text, const char* format,
                                  unsigned long count) const {
  const OtTypeDescriptor* row = Row(id);
  if (!row || !row->ScanFromString) return value;
  return row->ScanFromString(value, const_cast<OtString&>(text), format ? format : row->format,
                             count);
}
