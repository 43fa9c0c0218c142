// The rows OtIString and OtCaseIString. Stored: a marker, the bytes of all strings that follow, and
// each string with its terminator. As a key of an index, the strings are collation bytes.

#include "text/legacy/row.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "kit/checkedformat.h"
#include "kit/convert.h"
#include "kit/narrowtext.h"
#include "kit/verify.h"
#include "kit/walks.h"
#include "ot95/bytes.h"
#include "ot95/fault.h"
#include "ot95/memfile.h"
#include "text/legacy/record.h"
#include "text/legacy/rows.h"

namespace ot95 {
namespace {

constexpr unsigned char keyFormat = 0x80;  // Bit of a format byte: the key form.
constexpr unsigned char valueMarker = 0x40;
constexpr unsigned char keyFormatMarker = 1;
constexpr unsigned char keyMarker = 0xc0;
constexpr unsigned long mostBytes = 0xffff;  // of all strings of a record

// ---------------------------------------------------------------------------------------------
// Storing and loading

// Hands out the texts of an array as far as a record can hold them. Returns their stored bytes.
template <class T, class Visit>
unsigned long EachStoredText(const void* memory, unsigned long count, Visit&& visit) {
  const T* strings = static_cast<const T*>(memory);
  unsigned long used = 0;
  for (unsigned long i = 0; i < count && used < mostBytes; ++i) {
    const unsigned long length = std::min(strings[i].Len(), mostBytes - used - 1);
    visit(strings[i].StrGet(), length);
    used += length + 1;
  }
  return used;
}

template <class T>
unsigned long Store(void* disk, const void* memory, unsigned char format, unsigned long count) {
  auto* bytes = static_cast<unsigned char*>(disk);
  unsigned char* place = bytes + legacyHeader;
  const unsigned long total =
      EachStoredText<T>(memory, count, [&place](const char* text, unsigned long length) {
        std::memcpy(place, text, length);
        place[length] = 0;
        place += length + 1;
      });
  bytes[0] = format & keyFormat ? keyFormatMarker : valueMarker;
  StoreAs<OtWord>(bytes + 1, static_cast<OtWord>(total), format);
  return total + legacyHeader;
}

// Strings that the record doesn't hold come out empty.
template <class T>
unsigned long LoadRecord(void* memory, LegacyRecord record, unsigned long count) {
  if (!record.complete) return 0;
  const unsigned long consumed = record.left + legacyHeader;
  T* strings = static_cast<T*>(memory);
  for (unsigned long i = 0; i < count; ++i) {
    const LegacyText text = record.Take();
    strings[i] = T(reinterpret_cast<const char*>(text.bytes), text.length);
    strings[i].flags = text.IsKey() ? text.flags : 0;
  }
  return consumed;
}

template <class T>
unsigned long Load(void* memory, const void* disk, unsigned char format, unsigned long count) {
  return LoadRecord<T>(memory, LegacyRecord(disk, 0, format), count);
}

unsigned long NullSizeGet(unsigned long count) {
  return count + legacyHeader;
}

// A format can't be a memory form and a key form at once.
bool IsNoForm(unsigned char format) {
  return (format & keyFormat) && HasMemoryBit(format);
}

template <class T>
unsigned long SizeGet(const void* value, unsigned char sourceFormat, unsigned char diskFormat,
                      unsigned long count) {
  if (IsNoForm(diskFormat)) return 0;
  if (!HasMemoryBit(sourceFormat)) return LegacyRecord(value, 0, sourceFormat).total + legacyHeader;
  return EachStoredText<T>(value, count, [](const char*, unsigned long) {}) + legacyHeader;
}

unsigned long SizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long) {
  if (IsNoForm(format)) return 0;
  unsigned long length = legacyHeader;
  const unsigned char* bytes = file->Seek(0, 1, &length, 0);
  if (!bytes || length < legacyHeader) return 0;
  return LegacyRecord(bytes, legacyHeader, format).total + legacyHeader;
}

// ---------------------------------------------------------------------------------------------
// Comparison

// With a pattern that holds a wildcard there is no order: 0 for a match, 1 for none.
long CompareTexts(const LegacyRules& rules, const LegacyText& a, const LegacyText& b,
                  unsigned short cmpOp, std::size_t steps) {
  const bool wildcards = (cmpOp & (OT_CMP_NO_WILDCARDS | OT_CMP_ORDER_ONLY)) == 0;
  if (wildcards && FindLegacyWildcard(b) >= 0) return MatchLegacy(rules, a, b) ? 0 : 1;
  return CompareLegacy(rules, a, b, steps);
}

// A cut side counts without its last byte, which is a terminator in a cut key. Returns how many
// bytes do, or no limit for a side that isn't cut.
std::size_t StepsOf(LegacyRecord& record) {
  if (!record.IsCut()) return mostLegacySteps;
  if (record.left > 0) --record.left;
  return record.left;
}

long CompareStored(const LegacyRules& rules, LegacyRecord a, LegacyRecord b, unsigned short cmpOp,
                   unsigned long count, int& status) {
  constexpr std::size_t longestCut = 0xfe;
  if (!a.complete || !b.complete) {
    status = OT_ERR_END_OF_DATA;
    return 0;
  }
  if ((a.IsCut() && a.left >= longestCut) || (b.IsCut() && b.left >= longestCut)) {
    status = OT_ERR_NOT_SUPPORTED;
    return -1;
  }
  if (a.IsCut() || b.IsCut()) {
    status = OT_ERR_END_OF_DATA;
    const std::size_t steps = std::min(StepsOf(a), StepsOf(b));
    return steps > 0 ? CompareTexts(rules, a.Take(), b.Take(), cmpOp, steps) : 0;
  }
  for (;;) {
    const long result = CompareTexts(rules, a.Take(), b.Take(), cmpOp, mostLegacySteps);
    if (--count == 0 || result != 0) return result;
    if (a.left == 0 || b.left == 0) {
      status = OT_ERR_END_OF_DATA;
      return 0;
    }
  }
}

template <class T>
long Compare(unsigned char format, unsigned long length1, void* value1, unsigned long length2,
             void* value2, unsigned short cmpOp, unsigned long count, int& status) {
  const LegacyRules& rules = RulesOf<T>;
  status = 0;
  if (count == 0) return 0;
  if (!IsMemoryForm(format)) {
    return CompareStored(rules, LegacyRecord(value1, length1, format),
                         LegacyRecord(value2, length2, format), cmpOp, count, status);
  }
  const T* a = static_cast<const T*>(value1);
  const T* b = static_cast<const T*>(value2);
  long result = 0;
  for (unsigned long i = 0; i < count && result == 0; ++i) {
    result = CompareTexts(rules, TextOf(a[i]), TextOf(b[i]), cmpOp, mostLegacySteps);
  }
  return result;
}

// Every legacy string hashes to 0, and the status is left alone.
unsigned long Hash(unsigned char, unsigned long, void*, unsigned long, int&) {
  return 0;
}

// ---------------------------------------------------------------------------------------------
// Keys

// Writes key bytes as long as there is room, and counts on beyond it.
struct KeyWriter {
  unsigned char* place;
  std::size_t room;
  std::size_t count = 0;

  void operator()(unsigned char byte) {
    if (count < room) place[count] = byte;
    ++count;
  }
};

// A key always ends in a byte of zero, which isn't part of its room.
std::size_t KeyRoom(unsigned long targetLength) {
  return targetLength > legacyHeader ? targetLength - legacyHeader - 1 : 0;
}

void WriteKeyHeader(unsigned char* target, unsigned char marker, std::size_t total,
                    unsigned char format) {
  target[0] = marker;
  StoreAs<OtWord>(target + 1, static_cast<OtWord>(total), format);
}

template <class T>
unsigned long KeyFromMemory(unsigned char* target, unsigned char format, unsigned long targetLength,
                            const T& string) {
  std::memset(target, 0, targetLength);
  KeyWriter writer{target + legacyHeader, KeyRoom(targetLength)};
  EachKeyByte(RulesOf<T>, reinterpret_cast<const unsigned char*>(string.StrGet()), string.Len(),
              writer);
  const std::size_t total = std::min(writer.count, writer.room) + 1;
  WriteKeyHeader(target, keyMarker, total, format);
  return std::min<unsigned long>(total + legacyHeader, targetLength);
}

// The length is that of the whole key, also where it is cut; so comparers know.
unsigned long KeyFromStored(const LegacyRules& rules, unsigned char* target, unsigned char format,
                            unsigned long targetLength, const unsigned char* source,
                            unsigned long sourceLength) {
  const unsigned char marker = source[0];
  if (marker & OT_ISTR_KEY) return MoveStored(target, targetLength, source, sourceLength);
  if (sourceLength < targetLength) std::memset(target, 0, targetLength);
  KeyWriter writer{target + legacyHeader, KeyRoom(targetLength)};
  EachKeyByte(rules, source + legacyHeader, sourceLength - legacyHeader, writer);
  if (targetLength > legacyHeader) target[legacyHeader + writer.room] = 0;
  WriteKeyHeader(target, marker | keyMarker, writer.count, format);
  return std::min(writer.count, writer.room) + legacyHeader;
}

// Of an array in memory, the first string alone becomes a key.
template <class T>
unsigned long MakeKey(void* target, unsigned char targetFormat, unsigned long targetLength,
                      const void* source, unsigned char sourceFormat, unsigned long sourceLength,
                      unsigned long count) {
  if (HasMemoryBit(targetFormat) || count == 0 || targetLength < legacyHeader) return 0;
  auto* key = static_cast<unsigned char*>(target);
  if (HasMemoryBit(sourceFormat)) {
    return KeyFromMemory(key, targetFormat, targetLength, *static_cast<const T*>(source));
  }
  if (sourceLength < legacyHeader) return 0;
  return KeyFromStored(RulesOf<T>, key, targetFormat, targetLength,
                       static_cast<const unsigned char*>(source), sourceLength);
}

// A key as text again, in capitals and without accents.
template <class T>
unsigned long DecodeKey(T& target, const LegacyRecord& key) {
  if (!key.complete) return 0;
  T text(reinterpret_cast<const char*>(key.strings), key.left);
  std::size_t length = 0;
  for (std::size_t i = 0; i < key.left && text.text; ++i) {
    bool usedSecond = false;
    const unsigned char second = i + 1 < key.left ? key.strings[i + 1] : 0;
    text.text[length++] =
        static_cast<char>(DecodeChar(RulesOf<T>, key.strings[i], second, usedSecond));
    if (usedSecond) ++i;
  }
  if (text.text) text.text[length] = 0;
  target = text.StrGet();
  return key.left + legacyHeader;
}

// What comes from a record ends with the source, if its length is told.
template <class T>
unsigned long Translate(void* target, unsigned char targetFormat, unsigned long targetLength,
                        void* source, unsigned char sourceFormat, unsigned long sourceLength,
                        unsigned long count) {
  if (targetFormat & keyFormat) {
    return MakeKey<T>(target, targetFormat, targetLength, source, sourceFormat, sourceLength,
                      count);
  }
  if (HasMemoryBit(targetFormat) && !HasMemoryBit(sourceFormat)) {
    const LegacyRecord record(source, sourceLength, sourceFormat);
    if (RulesOf<T>.decodesKeys && (sourceFormat & keyFormat)) {
      return count > 0 ? DecodeKey(*static_cast<T*>(target), record) : 0;
    }
    return LoadRecord<T>(target, record, count);
  }
  if (!HasMemoryBit(targetFormat) && HasMemoryBit(sourceFormat) && targetLength > 0) {
    std::memset(target, 0, targetLength);
  }
  return TranslateFixed<Load<T>, Store<T>, AssignValues<T>, sizeof(T)>(
      target, targetFormat, targetLength, source, sourceFormat, sourceLength, count);
}

// ---------------------------------------------------------------------------------------------
// Text

constexpr const char* defaultFormat = "%s";

// Prints through the one "%s" of a format, into the room that has always been given.
OtString& PrintThrough(OtString& target, std::string_view text, std::string_view format) {
  const std::size_t size = text.size() + format.size() + 0x200;
  auto* buffer = static_cast<char*>(std::malloc(size));
  if (!buffer) {
    OtCallMemoryHandler(size);
    return target;
  }
  const CheckedFormat parts = ParseFormat(format, "s");
  BoundedText out(buffer, size);
  out.AppendFormatText(parts.before);
  if (parts.conversion.letter != 0) {
    const int precision = parts.conversion.precision;
    if (precision >= 0) text = text.substr(0, static_cast<std::size_t>(precision));
    out.AppendField(parts.conversion, {}, 0, text, false);
  }
  out.AppendFormatText(parts.behind);
  target = out.Terminate();
  std::free(buffer);
  return target;
}

template <class T>
OtString& PrintToString(OtString& target, void* value, const char* format, unsigned long) {
  const T& string = *static_cast<const T*>(value);
  if (!string) return target = "";
  return PrintThrough(target, string.StrGet(), format ? format : defaultFormat);
}

template <class T>
void* ScanFromString(void* value, OtString& text, const char*, unsigned long) {
  if (value) *static_cast<T*>(value) = NarrowText(text).Bytes();
  return value;
}

// The bytes go over as they are, under the machine's own code set.
template <class T>
void Write(OtString& text, const T& string) {
  text.SetCodeSet(OtLanguageContext::GetNativeCodeSet());
  OtString bytes(string.StrGet());
  bytes.SetCodeSet(0);
  text += bytes;
}

template <class T>
void Read(T& string, const OtString* text) {
  if (text) {
    string = NarrowText(*text).Bytes();
  } else {
    string = T();
  }
}

template <class T>
constexpr OtTypeDescriptor LegacyStringRow(const char* name, OtCompareFunc compare,
                                           OtEvalFunc evalAndBound) {
  constexpr auto create = CreateCounted<T>;
  constexpr auto convertFrom = ConvertFromTexts<T, create, Read<T>>;
  return {.name = name,
          .Create = create,
          .Delete = DeleteCounted<T>,
          .Store = Store<T>,
          .Load = Load<T>,
          .NullSizeGet = NullSizeGet,
          .SizeGet = SizeGet<T>,
          .SizeGetFromMemFile = SizeGetFromMemFile,
          .Compare = compare,
          .EvalAndBound = evalAndBound,
          .Hash = Hash,
          .ConvertTo = ConvertToTexts<T, Write<T>>,
          .ConvertFrom = convertFrom,
          .Construct = ConstructValues<T>,
          .Destruct = DestroyValues<T>,
          .Assign = AssignValues<T>,
          .Copy = CopyValues<T>,
          .Translate = Translate<T>,
          .IsNull = IsNeverNull,
          .format = defaultFormat,
          .PrintToString = PrintToString<T>,
          .ScanFromString = ScanFromString<T>,
          .memoryLength = sizeof(T),
          .isFixed = 0,
          .DefaultValue = DefaultFromText<convertFrom>};
}

}  // namespace

constinit OtTypeDescriptor rowOtIString =
    LegacyStringRow<OtIString>("OtIString", OtIStringCompare, EvalAndBoundIString);
constinit OtTypeDescriptor rowOtCaseIString =
    LegacyStringRow<OtCaseIString>("OtCaseIString", OtCaseIStringCompare, EvalAndBoundCaseIString);

int VerifyLegacyStrings(const StoredBytes& stored, unsigned long& consumed) {
  if (stored.available < legacyHeader) return OT_ERR_END_OF_DATA;
  const unsigned char marker = stored.bytes[0];
  const bool isKey = (marker & keyMarker) == keyMarker;
  if (!isKey && marker != valueMarker && marker != keyFormatMarker) return OT_ERR_BAD_ARGUMENT;
  LegacyRecord record(stored.bytes, stored.available, stored.format);
  consumed = legacyHeader;
  std::size_t left = record.total;
  for (unsigned long i = 0; i < stored.count; ++i) {
    const std::size_t length = record.Take().length;
    if (length >= left) return OT_ERR_BAD_ARGUMENT;  // No terminator within the total.
    if (consumed + length >= stored.available) return OT_ERR_END_OF_DATA;
    consumed += length + 1;
    left -= length + 1;
  }
  return left == 0 ? 0 : OT_ERR_BAD_ARGUMENT;
}

}  // namespace ot95

long OtIStringCompare(unsigned char format, unsigned long length1, void* value1,
                      unsigned long length2, void* value2, unsigned short cmpOp,
                      unsigned long count, int& status) {
  return ot95::Compare<OtIString>(format, length1, value1, length2, value2, cmpOp, count, status);
}

long OtCaseIStringCompare(unsigned char format, unsigned long length1, void* value1,
                          unsigned long length2, void* value2, unsigned short cmpOp,
                          unsigned long count, int& status) {
  return ot95::Compare<OtCaseIString>(format, length1, value1, length2, value2, cmpOp, count,
                                      status);
}
