#ifndef OT95_SRC_TEMPORAL_ROW_H
#define OT95_SRC_TEMPORAL_ROW_H

// What the rows of both calendars share: stored forms, walks of comparison and hash, and the frame
// of a row. The rows' sources add how a value becomes text and hash.

#include <array>
#include <bit>
#include <cstring>

#include "kit/convert.h"
#include "kit/walks.h"
#include "ot95/odmg.h"
#include "ot95/temporal.h"

namespace ot95 {

/// The stored form of a type is that of its fields in memory, without padding; only the year, where
/// it begins with one, has a byte order.
struct StoredForm {
  std::size_t width;
  bool startsWithYear;
};
template <class T>
constexpr StoredForm storedForm{};
template <>
inline constexpr StoredForm storedForm<OtDate>{4, true};
template <>
inline constexpr StoredForm storedForm<OtTime>{3, false};
template <>
inline constexpr StoredForm storedForm<OtDateTime>{7, true};
template <>
inline constexpr StoredForm storedForm<d_Date>{4, true};
template <>
inline constexpr StoredForm storedForm<d_Time>{6, false};
template <>
inline constexpr StoredForm storedForm<d_Timestamp>{10, true};

/// Bytes of one element in an array of the form.
template <class T>
constexpr std::size_t ElementWidth(bool inMemory) {
  return inMemory ? sizeof(T) : storedForm<T>.width;
}

/// Moves the fields of elements, either way.
template <class T>
unsigned long MoveFields(void* target, std::size_t targetWidth, const void* source,
                         std::size_t sourceWidth, unsigned char format, unsigned long count) {
  auto* to = static_cast<unsigned char*>(target);
  auto* from = static_cast<const unsigned char*>(source);
  const bool reversed = storedForm<T>.startsWithYear && ReversesBytes(format);
  for (unsigned long i = 0; i < count; ++i, to += targetWidth, from += sourceWidth) {
    std::memmove(to, from, storedForm<T>.width);
    if (reversed) std::swap(to[0], to[1]);
  }
  return count * storedForm<T>.width;
}

template <class T>
unsigned long StoreFields(void* disk, const void* memory, unsigned char format,
                          unsigned long count) {
  return MoveFields<T>(disk, storedForm<T>.width, memory, sizeof(T), format, count);
}

template <class T>
unsigned long LoadFields(void* memory, const void* disk, unsigned char format,
                         unsigned long count) {
  return MoveFields<T>(memory, sizeof(T), disk, storedForm<T>.width, format, count);
}

template <class T>
unsigned long StoredSize(unsigned long count) {
  return count * storedForm<T>.width;
}
template <class T>
unsigned long StoredSizeOf(const void*, unsigned char, unsigned char, unsigned long count) {
  return StoredSize<T>(count);
}
template <class T>
unsigned long StoredSizeInFile(MemFile*, unsigned char, unsigned long count) {
  return StoredSize<T>(count);
}

// ---------------------------------------------------------------------------------------------
// Contributions to a hash, from elements in either form

/// Year, month and day of `bytes`, the latter two sign-extended to the type `Small`.
template <class Small>
std::uint32_t DateBits(const unsigned char* bytes, unsigned char form) {
  const auto year = static_cast<std::uint32_t>(LoadAs<std::int16_t>(bytes, form));
  const auto small = [&](int at) {
    return static_cast<std::uint32_t>(static_cast<Small>(static_cast<signed char>(bytes[at])));
  };
  return (year * 256 + small(2)) * 256 + small(3);
}

/// Member Hash. `contribution(element, form)` answers for one complete element.
template <class T, auto contribution>
unsigned long HashFields(unsigned char format, unsigned long length, void* value,
                         unsigned long count, int& status) {
  const unsigned char form = FormOf(format);
  return FinishHash(
      FoldElements(ElementWidth<T>(form == OT_FORMAT_MEMORY), length, value, count, status,
                   [form](const unsigned char* element) { return contribution(element, form); }));
}

// ---------------------------------------------------------------------------------------------
// Text

/// How a type becomes text and returns from it. Each type has a specialisation in its row's source:
/// Write fills an empty string and Read takes it back (null: there is none), for conversion; Print
/// and Scan follow a format, which may be null.
template <class T>
struct TextOf;

/// Where the first ':' of `text` stands, in characters; -1 without one.
int FindColon(const OtString& text);

/// Reads "<day number>:<seconds>" into a date and a time, each as for its own row. Without ':' the
/// time stays as it is; before a leading ':' the date becomes `noDate`. The text is cut behind the
/// ':', so that its owner sees what is left of it.
template <class Date, class Time>
void ReadStamp(OtString& text, Date& date, Time& time, const Date& noDate) {
  TextOf<Date>::Read(date, &text);
  const int colon = FindColon(text);
  if (colon < 0) return;
  if (colon == 0) date = noDate;
  text = text.Right(static_cast<unsigned short>(text.Len() - colon - 1));
  if (!text.IsEmpty()) TextOf<Time>::Read(time, &text);
}

/// Renders "<day number>:<seconds>".
inline void WriteStamp(OtString& text, long dayNumber, long seconds) {
  text = OtString(dayNumber);
  text << ":" << seconds;
}

// ---------------------------------------------------------------------------------------------
// The frame of a row

/// The value of an element that may be anywhere.
template <class T>
T ValueAt(const unsigned char* bytes) {
  std::array<unsigned char, sizeof(T)> image;
  std::memcpy(image.data(), bytes, sizeof(T));
  return std::bit_cast<T>(image);
}

/// Comparison in memory form, by the class's operator!=.
template <class T>
long CompareInMemory(unsigned long length1, void* value1, unsigned long length2, void* value2,
                     unsigned long count, int& status) {
  return WalkPairs(sizeof(T), length1, value1, length2, value2, count, status,
                   [](const unsigned char* a, const unsigned char* b) -> long {
                     return ValueAt<T>(a) != ValueAt<T>(b);
                   });
}

template <class T>
int IsNullMember(void* value) {
  return static_cast<const T*>(value)->IsNullValue();
}
template <class T>
int SetNullMember(void* value) {
  return static_cast<T*>(value)->SetNullValue();
}
template <class T>
OtTypeConvertData* ToTexts(void* value, unsigned long count) {
  return ConvertToTexts<T, TextOf<T>::Write>(value, count);
}
template <class T>
void* FromTexts(OtTypeConvertData* data, unsigned long count) {
  return ConvertFromTexts<T, CreateCounted<T>, TextOf<T>::Read>(data, count);
}
template <class T>
OtString& PrintMember(OtString& out, void* value, const char* format, unsigned long) {
  TextOf<T>::Print(out, *static_cast<const T*>(value), format);
  return out;
}
template <class T>
void* ScanMember(void* value, OtString& text, const char* format, unsigned long) {
  if (value != nullptr) TextOf<T>::Scan(*static_cast<T*>(value), text, format);
  return value;
}

/// What one type brings to its row, besides storedForm and TextOf.
struct RowFacts {
  const char* name;
  const char* format;
  OtCompareFunc compare;
  OtEvalFunc evaluate;
  OtHashFunc hash;
};

/// The row of a type without null.
template <class T>
constexpr OtTypeDescriptor RowWithoutNull(const RowFacts& facts) {
  return {.name = facts.name,
          .Create = CreateCounted<T>,
          .Delete = DeleteCounted<T>,
          .Store = StoreFields<T>,
          .Load = LoadFields<T>,
          .NullSizeGet = StoredSize<T>,
          .SizeGet = StoredSizeOf<T>,
          .SizeGetFromMemFile = StoredSizeInFile<T>,
          .Compare = facts.compare,
          .EvalAndBound = facts.evaluate,
          .Hash = facts.hash,
          .ConvertTo = ToTexts<T>,
          .ConvertFrom = FromTexts<T>,
          .Construct = ConstructValues<T>,
          .Destruct = DestructNothing,
          .Assign = AssignValues<T>,
          .Copy = CopyValues<T>,
          .Translate = TranslateFixed<LoadFields<T>, StoreFields<T>, AssignValues<T>, sizeof(T)>,
          .IsNull = IsNeverNull,
          .SetNull = nullptr,
          .format = facts.format,
          .PrintToString = PrintMember<T>,
          .ScanFromString = ScanMember<T>,
          .memoryLength = sizeof(T),
          .isFixed = 1,
          .DefaultValue = DefaultFromText<FromTexts<T>>};
}

/// The row of a type with IsNullValue and SetNullValue.
template <class T>
constexpr OtTypeDescriptor RowWithNull(const RowFacts& facts) {
  OtTypeDescriptor row = RowWithoutNull<T>(facts);
  row.IsNull = IsNullMember<T>;
  row.SetNull = SetNullMember<T>;
  row.DefaultValue = DefaultOrNull<T, CreateCounted<T>, SetNullMember<T>, FromTexts<T>>;
  return row;
}

}  // namespace ot95

#endif
