#ifndef OT95_STD_H
#define OT95_STD_H

/// @file
/// The value classes in the standard library: std::ostream << and std::hash for all of them, and
/// what ordered and unordered containers need beside. ot95.h leaves this header out, so that only
/// those pay for <ostream> who use it.
///
/// @code
///   std::ostringstream out;
///   out << OtString("Oslo") << ' ' << OtDate(2000, 1, 31) << ' ' << OtNull_long();
///   bool printed = out.str() == "Oslo 2000-01-31 {NULL}";      // printed == true
///
///   std::unordered_set<OtString> names;
///   names.insert("Oslo");
///   names.insert("Oslo");                       // names.size() == 1
///   std::map<OtObjId, int> visits;
///   ++visits[OtObjId{12, 4711, 0}];
///   ++visits[OtObjId{99, 4711, 0}];             // visits.size() == 1
/// @endcode
///
/// **Printing.** Text goes out as UTF-8 and honours the stream's width. It is what the type's row
/// prints by its own format, with these exceptions:
///
/// | Type | Prints as |
/// |---|---|
/// | OtDate, d_Date | 2000-01-31 |
/// | OtTime, d_Time | 13:05:09 |
/// | OtDateTime, d_Timestamp | 2000-01-31T13:05:09 |
/// | d_Interval | its seconds: 5400 |
/// | OtString | the text; the null string as the null text |
/// | OtIString, OtCaseIString | the text |
/// | OtDBOId, OtLocalRef | as their PrintToOtString |
///
/// **Hashes** go with the equality of the class, for the containers of this process. They are not
/// those that the type manager computes, which are the same in every release. Equal texts can
/// differ in their bytes, and what is equal depends on the default comparison op; the hash of a
/// string therefore takes only what no op ignores, its letters and digits without case and accents.
/// It goes with every default op that has no wildcards.
///
/// **Order.** std::map works with all classes. For OtBlob and OtDateTime, whose three-way `!=` is
/// their only order, std::less is specialised; for OtDateTime and OtClassId, which have no `==`,
/// std::equal_to. A date with wildcards (fields of -1) has no place in an order: don't use one as a
/// key.

#include <cstddef>
#include <functional>
#include <ostream>
#include <string_view>
#include <type_traits>

#include "ot95/ot95.h"

namespace ot95 {

/// Whether T is a value class of this library, for which `<<` below is meant.
template <class T, class = void>
constexpr bool isValueClass = std::is_same_v<T, OtDBOId> || std::is_same_v<T, OtLocalRef>;
template <class T>
constexpr bool isValueClass<T, std::void_t<decltype(OtTypeOf<T>::id)>> = std::is_class_v<T>;

/// The format that a type is printed by; null for its row's own.
template <class T>
constexpr const char* streamFormat = nullptr;
template <>
inline constexpr const char* streamFormat<OtDate> = "%Y-%m-%d";
template <>
inline constexpr const char* streamFormat<OtTime> = "%H:%M:%S";
template <>
inline constexpr const char* streamFormat<OtDateTime> = "%Y-%m-%dT%H:%M:%S";
template <>
inline constexpr const char* streamFormat<d_Date> = streamFormat<OtDate>;
template <>
inline constexpr const char* streamFormat<d_Time> = streamFormat<OtTime>;
template <>
inline constexpr const char* streamFormat<d_Timestamp> = streamFormat<OtDateTime>;

/// @name Texts of values
/// @{
template <class T>
OtString StreamText(const T& value) {
  OtString text;
  OtTypeMgr().PrintToOtString(OtTypeOf<T>::id, text, &value, streamFormat<T>, 1);
  return text;
}
inline OtString StreamText(const OtString& value) {
  return value.IsNullValue() ? OtTypeMgr::GetNullPrintString() : value;
}
// The bytes are those of the base 8-bit set, whatever set is the default.
template <class Self>
OtString StreamText(const OtLegacyString<Self>& value) {
  OtString text(value.StrGet());
  text.SetCodeSetCode(OT_CS_BASE8);
  return text;
}
inline OtString StreamText(const OtIString& value) {
  return StreamText<OtIString>(static_cast<const OtLegacyString<OtIString>&>(value));
}
inline OtString StreamText(const OtCaseIString& value) {
  return StreamText<OtCaseIString>(static_cast<const OtLegacyString<OtCaseIString>&>(value));
}
inline OtString StreamText(const d_Interval& value) {
  return OtString(static_cast<double>(value.seconds));
}
inline OtString StreamText(const OtDBOId& value) {
  OtString text;
  return value.PrintToOtString(text, nullptr);
}
inline OtString StreamText(const OtLocalRef& value) {
  OtString text;
  return value.PrintToOtString(text, nullptr);
}
/// @}

/// Folds a number into a hash.
constexpr std::size_t HashWith(std::size_t hash, std::size_t number) {
  return (hash ^ number) * 16777619U;
}
template <class... Numbers>
constexpr std::size_t HashOfAll(Numbers... numbers) {
  std::size_t hash = 2166136261U;
  ((hash = HashWith(hash, static_cast<std::size_t>(numbers))), ...);
  return hash;
}

/// @name Hashes of values, each by what the equality of its class looks at
/// @{
inline std::size_t HashOf(const OtString& text) {
  constexpr unsigned short firstDigit = 0x3f00, letterBits = 0x407f;
  if (text.IsNullValue()) return 0;
  const unsigned char own = text.GetCodeSetCode();
  OtStringIterator walk(text.StrGet(), own != 0 ? own : OtLanguageContext::GetNativeCodeSet(),
                        text.GetLanguageCode());
  std::size_t hash = HashOfAll();
  for (unsigned short order; (order = walk.GetNextOrder(0)) != 0;) {
    const bool letter = order >= 0x4000 && order < 0x8000;
    if (order >= firstDigit) hash = HashWith(hash, letter ? order & letterBits : order);
  }
  return hash;
}
/// The collation bytes of a character of a legacy string, of both classes alike.
inline unsigned LegacyKey(unsigned char character) {
  struct Keys {
    unsigned char bytes[256][8] = {};
    Keys() {
      for (unsigned c = 1; c < 256; ++c) {
        OtCaseIString text(static_cast<char>(c));
        OtTypeMgr().Translate(OtTypeOf<OtCaseIString>::id, bytes[c], 0x80 | OT_FORMAT_NATIVE, 8,
                              &text, OT_FORMAT_MEMORY, 0, 1);
      }
    }
  };
  static const Keys keys;
  const unsigned char* key = keys.bytes[character] + 3;
  return key[0] | key[1] * 256U;
}
template <class Self>
std::size_t HashOf(const OtLegacyString<Self>& value) {
  std::size_t hash = HashOfAll();
  for (const char* at = value.StrGet(); *at != 0; ++at) {
    const auto byte = static_cast<unsigned char>(*at);
    const unsigned key = (value.flags & OT_ISTR_KEY) != 0 ? byte : LegacyKey(byte);
    hash = HashWith(hash, key & 0xff);
    if (key > 0xff) hash = HashWith(hash, key >> 8);
  }
  return hash;
}
inline std::size_t HashOf(const OtBlob& blob) {
  if (blob.IsNullValue()) return 0;
  const auto size = static_cast<std::size_t>(blob.Length());
  return std::hash<std::string_view>()(
      {reinterpret_cast<const char*>(blob.data->bytes), blob.data->bytes != nullptr ? size : 0});
}
inline std::size_t HashOf(const OtInt64& number) {
  return HashOfAll(number.low, number.high);
}
inline std::size_t HashOf(const OtBoolean& truth) {
  return truth.IsNullValue() ? 2 : truth.value != 0;
}
template <class T, char typeId>
std::size_t HashOf(const OtNull<T, typeId>& record) {
  return record.IsNull() ? 0xfefe7575U : std::hash<T>()(record.value);
}
inline std::size_t HashOf(const OtDate& date) {
  return HashOfAll(date.year, date.month, date.day);
}
inline std::size_t HashOf(const OtTime& time) {
  return HashOfAll(time.hour, time.minute, time.second);
}
inline std::size_t HashOf(const OtDateTime& value) {
  return HashOfAll(HashOf(value.date), HashOf(value.time));
}
inline std::size_t HashOf(const d_Date& date) {
  return HashOfAll(date != d_Date(2000, 1, 1));  // fields that name one day in two ways are equal
}
inline std::size_t HashOf(const d_Time& time) {
  return HashOfAll(static_cast<std::uint16_t>(time.hour - time.tzHour),
                   static_cast<std::uint16_t>(time.minute - time.tzMinute),
                   time.second * 100 + time.hundredths);
}
inline std::size_t HashOf(const d_Timestamp& stamp) {
  return HashOfAll(HashOf(stamp.date), HashOf(stamp.time));
}
inline std::size_t HashOf(const d_Interval& interval) {
  return std::hash<float>()(interval.seconds);
}
inline std::size_t HashOf(const OtObjId& id) {
  return HashOfAll(id.lowPart, id.highPart);
}
inline std::size_t HashOf(const OtDBOId& id) {
  return HashOfAll(id.lowPart, id.highPart, id.databaseId);
}
inline std::size_t HashOf(const OtClassId& id) {
  return HashOfAll(id.classNumber, id.classVersion);
}
inline std::size_t HashOf(const OtRef& ref) {
  return HashOfAll(ref.lowPart, ref.highPart, ref.databaseId);
}
inline std::size_t HashOf(const OtLocalRef& ref) {
  return HashOfAll(ref.lowPart, ref.highPart);
}
inline std::size_t HashOf(const OtSeal& seal) {
  return HashOfAll(seal.sealHigh, seal.sealMiddle, seal.sealLow);
}
/// @}

}  // namespace ot95

/// Writes a value as UTF-8 text. It takes the value classes alone, so that nothing else is drawn
/// into it by a conversion.
template <class T, class = std::enable_if_t<ot95::isValueClass<T>>>
std::ostream& operator<<(std::ostream& out, const T& value) {
  char* bytes = nullptr;
  long size = 0;
  const long length = OtString2MultiByteString(ot95::StreamText(value), bytes, size);
  out << std::string_view(bytes, length > 0 ? static_cast<std::size_t>(length) : 0);
  delete[] bytes;
  return out;
}

#define OT95_HASH(T)                                                             \
  template <>                                                                    \
  struct std::hash<T> {                                                          \
    std::size_t operator()(const T& value) const { return ot95::HashOf(value); } \
  };
OT95_HASH(OtString)
OT95_HASH(OtIString)
OT95_HASH(OtCaseIString)
OT95_HASH(OtBlob)
OT95_HASH(OtInt64)
OT95_HASH(OtBoolean)
OT95_HASH(OtDate)
OT95_HASH(OtTime)
OT95_HASH(OtDateTime)
OT95_HASH(d_Date)
OT95_HASH(d_Time)
OT95_HASH(d_Timestamp)
OT95_HASH(d_Interval)
OT95_HASH(OtObjId)
OT95_HASH(OtDBOId)
OT95_HASH(OtClassId)
OT95_HASH(OtRef)
OT95_HASH(OtLocalRef)
OT95_HASH(OtSeal)
#undef OT95_HASH
template <class T, char typeId>
struct std::hash<OtNull<T, typeId>> {
  std::size_t operator()(const OtNull<T, typeId>& value) const { return ot95::HashOf(value); }
};

// Where a class has no operator of its own that a container could use.
template <>
struct std::equal_to<OtClassId> {
  bool operator()(const OtClassId& a, const OtClassId& b) const { return (a != b) == 0; }
};
template <>
struct std::equal_to<OtDateTime> {
  bool operator()(const OtDateTime& a, const OtDateTime& b) const {
    return a.date == b.date && a.time == b.time;
  }
};
template <>
struct std::less<OtDateTime> {
  bool operator()(const OtDateTime& a, const OtDateTime& b) const { return (a != b) < 0; }
};
template <>
struct std::less<OtBlob> {
  bool operator()(const OtBlob& a, const OtBlob& b) const { return (a != b) < 0; }
};

#endif
