/// The rows of strings: construction, and the stored forms with their sizes.

#include "text/rows/row.h"
#include "kit/convert.h"
#include "kit/walks.h"
#include "ot95/memfile.h"
#include "text/rows/estimate.h"
#include "text/rows/rows.h"
#include "text/rows/stored.h"

namespace ot95 {
namespace {

unsigned long NullStringSize(unsigned long count) {
  return count * kEmptyRecordSize;
}

/// Order words of a text beyond two for each character.
std::size_t FurtherWords(const char* text, std::size_t bytes, unsigned char format) {
  std::size_t words = 0;
  for (std::size_t i = 0; i + 2 <= bytes; i += 2) {
    words +=
        static_cast<std::size_t>(OtMostWords(LoadUnit(text + i, true, IsReversed(format))) - 2);
  }
  return words;
}

/// Bytes that `size` bytes of a string take under a format that may ask for a key: then two words
/// for each character, and those that `textBytes` bytes of text have beyond.
std::size_t ScaledSize(std::size_t size, unsigned char codeSet, unsigned char targetFormat,
                       const char* text, std::size_t textBytes, unsigned char textFormat) {
  const unsigned char target = TargetCodeSet(codeSet, targetFormat);
  const bool becomesKey = (targetFormat & kStoreKey) != 0 && target != 0 && target != OT_CS_ORDER;
  if (!becomesKey) return size;
  const bool isUnicode = codeSet == OT_CS_UNICODE;
  const std::size_t further = isUnicode ? FurtherWords(text, textBytes, textFormat) : 0;
  return 2 / CharWidth(codeSet) * size * 2 + 2 * further;
}

/// The sum of the sizes of stored records. `at(offset, bytes)` answers the record there, or null
/// when it hasn't as many bytes; the number of strings not found goes to `missing`.
template <class At>
unsigned long RecordSizes(At&& at, unsigned char sourceFormat, unsigned char targetFormat,
                          unsigned long count, unsigned long& missing) {
  unsigned long sum = 0;
  std::size_t offset = 0;
  for (missing = count; missing != 0; --missing) {
    const char* record = at(offset, 2);
    if (record == nullptr) break;
    const std::size_t length = LoadLength(record, sourceFormat);
    record = at(offset, length + 2);
    if (record == nullptr) break;
    if ((targetFormat & kStoreKey) == 0 && IsOldForm(record, length)) {
      missing = 0;
      return sum + length + 2;
    }
    const auto codeSet = static_cast<unsigned char>(length != 0 ? record[2] : 0);
    const std::size_t around = kHeaderSize - 2 + kTerminatorSize;
    sum += ScaledSize(length, codeSet, targetFormat, record + kHeaderSize,
                      length < around ? 0 : length - around, sourceFormat) +
           2;
    offset += length + 2;
  }
  return sum;
}

/// A string that isn't there is larger than any record, so that the caller fetches more.
unsigned long StringSizeInFile(MemFile* file, unsigned char format, unsigned long count) {
  const auto at = [file](std::size_t offset, std::size_t bytes) -> const char* {
    unsigned long length = offset + bytes;
    const unsigned char* found = file->Seek(0, MemFile::FROM_POSITION, &length, 0);
    return length < offset + bytes ? nullptr : reinterpret_cast<const char*>(found) + offset;
  };
  if (file == nullptr || at(0, 2) == nullptr) return 0;
  unsigned long missing = 0;
  const unsigned long sum = RecordSizes(at, format, format, count, missing);
  return missing == 0 ? sum : missing * 0xffff;
}

unsigned long LegacySize(const void* value, unsigned char sourceFormat, unsigned char,
                         unsigned long count) {
  if (!HasMemoryBit(sourceFormat)) return LoadLength(value, sourceFormat) + 2UL;
  const auto* strings = static_cast<const OtString*>(value);
  unsigned long sum = count + 2;
  for (unsigned long i = 0; i < count; ++i) sum += strings[i].Len();
  return sum;
}

/// The size is a signed 16-bit value, and counts as one in 32 bits.
unsigned long LegacySizeInFile(MemFile* file, unsigned char format, unsigned long) {
  unsigned long length = 2;
  const void* record =
      file != nullptr ? file->Seek(0, MemFile::FROM_POSITION, &length, 0) : nullptr;
  if (record == nullptr || length < 2) return 0;
  const auto size = static_cast<std::int16_t>(LoadLength(record, format) + 2);
  const auto extended = static_cast<std::uint32_t>(size);
  return extended;
}

/// Reads the 8-bit texts of an old form, as many as there are.
void LoadOldForm(OtString* strings, const char* texts, std::size_t bytes, unsigned long count) {
  for (unsigned long i = 0; i < count; ++i) {
    const char* end = std::find(texts, texts + bytes, '\0');
    const std::size_t length = std::min<std::size_t>(static_cast<std::size_t>(end - texts), 0xfffe);
    if (end == texts + bytes) {
      // Without a terminator of its own, or missing altogether.
      strings[i] = bytes == 0 ? OtString("") : OtString(texts, static_cast<unsigned short>(length));
    } else {
      strings[i] = texts;
    }
    const std::size_t passed = std::min(length + 1, bytes);
    texts += passed;
    bytes -= passed;
  }
}

void LoadText(OtString& string, const char* text, std::size_t bytes, unsigned char codeSet,
              unsigned char language, unsigned char format) {
  string.Destroy();
  TextAccess::SetLabels(string, codeSet, language);
  TextAccess::SetText(string, text, codeSet,
                      static_cast<unsigned short>(bytes / CharWidth(codeSet)), FormOf(format));
}

OtTypeConvertData* StringsToTexts(void* value, unsigned long count) {
  return ConvertToTexts<OtString, [](OtString& text, const OtString& string) { text = string; }>(
      value, count);
}

void TakeText(OtString& value, OtString* text) {
  if (text != nullptr) {
    value = *text;
  } else {
    value.SetNullValue();
  }
}

int IsNullString(void* value) {
  return static_cast<OtString*>(value)->IsNullValue();
}
int SetNullString(void* value) {
  return static_cast<OtString*>(value)->SetNullValue();
}
int IsNeverNull(void*) {
  return 0;
}

constexpr auto TextsToStrings = ConvertFromTexts<OtString, CreateCounted<OtString>, TakeText>;

/// What both rows have in common.
constexpr OtTypeDescriptor StringRow() {
  OtTypeDescriptor row = {};
  row.name = "OtString";
  row.Create = CreateCounted<OtString>;
  row.Delete = DeleteCounted<OtString>;
  row.Load = StringLoad;
  row.NullSizeGet = NullStringSize;
  row.ConvertTo = StringsToTexts;
  row.ConvertFrom = TextsToStrings;
  row.Construct = ConstructValues<OtString>;
  row.Destruct = DestroyValues<OtString>;
  row.Assign = AssignValues<OtString>;
  row.Copy = CopyValues<OtString>;
  row.format = "%s";
  row.PrintToString = PrintString;
  row.ScanFromString = ScanString;
  row.memoryLength = sizeof(OtString);
  row.isFixed = 0;
  row.DefaultValue =
      DefaultOrNull<OtString, CreateCounted<OtString>, SetNullString, TextsToStrings>;
  return row;
}

constexpr OtTypeDescriptor CurrentRow() {
  OtTypeDescriptor row = StringRow();
  row.Store = StringStore;
  row.SizeGet = StringSizeGet;
  row.SizeGetFromMemFile = StringSizeInFile;
  row.Compare = StringCompare;
  row.EvalAndBound = EvalString<0>;
  row.Hash = HashStrings<false>;
  row.Translate = TranslateStrings;
  row.IsNull = IsNullString;
  row.SetNull = SetNullString;
  return row;
}

/// Under the old table a string is never null.
constexpr OtTypeDescriptor LegacyRow() {
  OtTypeDescriptor row = StringRow();
  row.Store = LegacyStringStore;
  row.SizeGet = LegacySize;
  row.SizeGetFromMemFile = LegacySizeInFile;
  row.Compare = CompareStrings<true>;
  row.EvalAndBound = EvalString<1>;
  row.Hash = HashStrings<true>;
  row.Translate = TranslateLegacyStrings;
  row.IsNull = IsNeverNull;
  return row;
}

}  // namespace

constinit OtTypeDescriptor rowOtString = CurrentRow();
constinit OtTypeDescriptor rowLegacyOtString = LegacyRow();

unsigned long LegacyStringStore(void* disk, const void* memory, unsigned char format,
                                unsigned long count) {
  const auto* strings = static_cast<const OtString*>(memory);
  char* const record = static_cast<char*>(disk);
  char* place = record + 2;
  for (unsigned long i = 0; i < count; ++i) {
    const OtString* string = &strings[i];
    OtString narrow(OtString::GetDefault8CodeSet(), string->GetLanguageCode());
    if (IsWide(string->GetCodeSetCode())) {
      narrow.CopyMapped(*string, narrow.GetCodeSetCode());
      string = &narrow;
    }
    const std::size_t bytes = string->Len();
    std::memcpy(place, string->StrGet(), bytes);
    place += bytes;
    *place++ = 0;
  }
  const auto total = static_cast<std::size_t>(place - record) - 2;
  StoreLength(record, total, format);
  return total + 2;
}

unsigned long LoadStrings(void* memory, const void* disk, std::size_t available,
                          unsigned char format, unsigned long count, bool keys) {
  auto* strings = static_cast<OtString*>(memory);
  const char* place = static_cast<const char*>(disk);
  if (count == 0 || available < 2) return 0;
  const std::size_t first = LoadLength(place, format);
  if (!keys && available >= first + 2 && IsOldForm(place, first)) {
    LoadOldForm(strings, place + 2, first, count);
    return first + 2;
  }
  unsigned char codeSet = 0;
  unsigned char language = 0;
  unsigned long read = 0;
  for (unsigned long i = 0; i < count; ++i) {
    std::size_t bytes = 0;
    std::size_t passed = 0;
    const char* record = place;
    if (available > kHeaderSize || (available == kHeaderSize && i == 0)) {
      // A key that was cut counts its length word, so that L is all that there is of it.
      const std::size_t length = std::min<std::size_t>(LoadLength(record, format), available);
      codeSet = static_cast<unsigned char>(record[2]);
      language = static_cast<unsigned char>(record[3]);
      bytes = length < kHeaderSize ? 0 : length - kHeaderSize;
      passed = std::min(length + 2, available);
      read += passed;
    } else if (keys) {
      read += kEmptyRecordSize;
    }
    LoadText(strings[i], record + kHeaderSize, bytes, codeSet, language, format);
    place += passed;
    available -= passed;
  }
  return read;
}

}  // namespace ot95

unsigned long StringStore(void* disk, const void* memory, unsigned char format,
                          unsigned long count) {
  const auto* strings = static_cast<const OtString*>(memory);
  char* place = static_cast<char*>(disk);
  for (unsigned long i = 0; i < count; ++i) {
    const unsigned char codeSet = strings[i].GetCodeSetCode();
    const bool wide = ot95::IsWide(codeSet);
    const std::size_t bytes = ot95::StoredTextBytes(strings[i]);
    ot95::StoreLength(place, bytes + ot95::kHeaderSize, format);
    place[2] = static_cast<char>(codeSet);
    place[3] = static_cast<char>(strings[i].GetLanguageCode());
    place += ot95::kHeaderSize;
    ot95::CopyUnits(strings[i].StrGet(), ot95::IsReversed(format), bytes / (wide ? 2 : 1), place,
                    wide);
    place += bytes;
    *place++ = 0;
    *place++ = static_cast<char>(0xff);
  }
  return static_cast<unsigned long>(place - static_cast<char*>(disk));
}

unsigned long StringLoad(void* memory, const void* disk, unsigned char format,
                         unsigned long count) {
  return ot95::LoadStrings(memory, disk, SIZE_MAX, format, count, false);
}

unsigned long StringSizeGet(const void* value, unsigned char sourceFormat, unsigned char diskFormat,
                            unsigned long count) {
  if (value == nullptr) return ot95::NullStringSize(count);
  if (!ot95::HasMemoryBit(sourceFormat)) {
    unsigned long missing = 0;
    const auto at = [value](std::size_t offset, std::size_t) {
      return static_cast<const char*>(value) + offset;
    };
    return ot95::RecordSizes(at, sourceFormat, diskFormat, count, missing);
  }
  const auto* strings = static_cast<const OtString*>(value);
  unsigned long sum = 0;
  for (unsigned long i = 0; i < count; ++i) {
    const std::size_t bytes = ot95::StoredTextBytes(strings[i]);
    sum += ot95::ScaledSize(bytes + ot95::kTerminatorSize, strings[i].GetCodeSetCode(), diskFormat,
                            strings[i].StrGet(), bytes, OT_FORMAT_NATIVE) +
           ot95::kHeaderSize;
  }
  return sum;
}
