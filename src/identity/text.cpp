// Identifiers as text: a small format language whose directives name fields.

#include <charconv>
#include <cstring>

#include "identity/identifiers.h"
#include "identity/rows.h"
#include "kit/checkedformat.h"
#include "kit/convert.h"
#include "kit/nulltext.h"
#include "kit/numbertext.h"
#include "kit/textcursor.h"
#include "kit/walks.h"

namespace {

// All fields there are. The language works on this record, whatever the type.
using Fields = OtRef;

// What the types differ in. A letter names its field; "%h" and "%l" name the letter at their number
// in `half` and `full`, where '.' and the end stand for no field.
struct Language {
  const char* letters;
  const char* half;
  const char* full;  // null: the type doesn't know "%l".
};

constexpr Language objectLanguage = {"BLH", "H", ".LB"};
constexpr Language classLanguage = {"CV", "CV", nullptr};
constexpr Language referenceLanguage = {"BLHDCV", "DH..C", "..LB"};

std::uint32_t Number(const Fields& fields, char letter) {
  switch (letter) {
    case 'B':
      return fields.blockId;
    case 'L':
      return fields.lowPart;
    case 'H':
      return fields.highPart;
    case 'D':
      return fields.databaseId;
    case 'C':
      return fields.classNumber;
    case 'V':
      return fields.classVersion;
    default:
      return 0;
  }
}

// Numbers too great for a field of 16 bits are cut, by the scan's saturation to 65535 at least.
void SetNumber(Fields& fields, char letter, std::uint32_t number) {
  const auto half = static_cast<std::uint16_t>(number);
  switch (letter) {
    case 'B':
      fields.blockId = number;
      break;
    case 'L':
      fields.lowPart = number;
      break;
    case 'H':
      fields.highPart = half;
      break;
    case 'D':
      fields.databaseId = half;
      break;
    case 'C':
      fields.classNumber = half;
      break;
    case 'V':
      fields.classVersion = half;
      break;
    default:
      break;
  }
}

// Walks a format: yields literal characters and fields, one after the other.
class FormatWalk {
 public:
  enum class Kind { end, literal, field, positional };
  struct Step {
    Kind kind;
    char letter;  // the character, or the field's letter
  };

  FormatWalk(const char* format, const Language& language) : at_(format), language_(language) {}

  Step Next() {
    if (*at_ == 0) return {Kind::end, 0};
    if (*at_ != '%') return {Kind::literal, *at_++};
    ++at_;
    if (*at_ == 0) return {Kind::end, 0};
    const char letter = *at_++;
    if (letter == 'h') return Positional(language_.half);
    if (letter == 'l' && language_.full) return Positional(language_.full);
    return {Knows(letter) ? Kind::field : Kind::literal, letter};
  }

 private:
  bool Knows(char letter) const { return std::strchr(language_.letters, letter) != nullptr; }
  Step Positional(const char* slots) {
    if (*at_ != 0) ++at_;  // the "u" of "%hu"
    const unsigned slot = positionals_++;
    return {Kind::positional, slot < std::strlen(slots) ? slots[slot] : '.'};
  }

  const char* at_;
  const Language& language_;
  unsigned positionals_ = 0;
};

void Print(OtString& target, const Fields& fields, const char* format, const Language& language) {
  using Kind = FormatWalk::Kind;
  char buffer[ot95::printBufferSize];
  ot95::BoundedText text(buffer, sizeof buffer);
  FormatWalk walk(format, language);
  for (auto step = walk.Next(); step.kind != Kind::end; step = walk.Next()) {
    if (step.kind == Kind::literal) {
      text.Append(step.letter);
    } else {
      char digits[10];
      const auto end = std::to_chars(digits, digits + sizeof digits, Number(fields, step.letter));
      text.Append({digits, static_cast<std::size_t>(end.ptr - digits)});
    }
  }
  target = text.Terminate();
}

Fields Scan(const char* bytes, std::size_t length, const char* format, const Language& language) {
  using Kind = FormatWalk::Kind;
  Fields fields;
  ot95::TextCursor text(bytes, length);
  FormatWalk walk(format, language);
  for (auto step = walk.Next(); step.kind != Kind::end && !text.AtEnd(); step = walk.Next()) {
    if (step.kind == Kind::literal) {
      ++text.at;
      continue;
    }
    ot95::TextCursor number = text;
    std::uint32_t value;
    if (ot95::ReadUnsigned(number, 10, value)) SetNumber(fields, step.letter, value);
    // The place moves over digits alone, neither over the white space before them nor at all for a
    // positional directive: texts printed by "%hu" and "%lu" have never read back.
    if (step.kind == Kind::field) {
      while (!text.AtEnd() && ot95::DigitOf(*text.at) < 10) ++text.at;
    }
  }
  return fields;
}

constexpr const char* localFormat = "(%H-%L#%B,%C)";

// What the rows differ in: language, formats, and how the record of all fields becomes a value.
template <class T>
struct Text;

template <>
struct Text<OtObjId> {
  static constexpr const Language& language = objectLanguage;
  static constexpr const char* format = "(%H-%L#%B)";
  static constexpr const char* bareFormat = format;
  static bool IsNull(const OtObjId& id) { return ot95::SerialNumber(id) == 0; }
  static void SetNull(OtObjId& id) { id = OtObjId(); }
  static Fields Widen(const OtObjId& id) { return Fields() = id; }
  static void Take(OtObjId& id, const Fields& fields) {
    id.blockId = fields.blockId;
    id.lowPart = fields.lowPart;
    id.highPart = fields.highPart;
  }
};

template <>
struct Text<OtClassId> {
  static constexpr const Language& language = classLanguage;
  static constexpr const char* format = "(%Cv%V)";
  static constexpr const char* bareFormat = format;
  static bool IsNull(const OtClassId& id) { return ot95::ClassKey(id) == 0xffffffff; }
  static void SetNull(OtClassId& id) { id.classNumber = id.classVersion = 0xffff; }
  static Fields Widen(const OtClassId& id) { return Fields() = id; }
  static void Take(OtClassId& id, const Fields& fields) {
    id.classNumber = fields.classNumber;
    id.classVersion = fields.classVersion;
  }
};

template <>
struct Text<OtRef> {
  static constexpr const Language& language = referenceLanguage;
  static constexpr const char* format = "(%D:%H-%L#%B, %C)";
  // Where a printer of the row gets no format: alone in printing the version, and without a blank.
  static constexpr const char* bareFormat = "(%D:%H-%L#%B,%Cv%V)";
  static bool IsNull(const OtRef& id) { return ot95::SerialNumber(id) == 0; }
  static void SetNull(OtRef& id) { id = OtObjId(); }  // Database and class stay.
  static const Fields& Widen(const OtRef& id) { return id; }
  static void Take(OtRef& id, const Fields& fields) { id = fields; }
};

template <class T>
OtString& PrintId(OtString& target, const T& id, const char* format) {
  if (Text<T>::IsNull(id)) return target = OtTypeMgr::GetNullPrintString();
  Print(target, Text<T>::Widen(id), format ? format : Text<T>::bareFormat, Text<T>::language);
  return target;
}

template <class T>
void ScanId(T& id, const OtString& text, const char* format) {
  const ot95::NarrowText narrow(text);
  if (ot95::BeginsWithNullText(narrow)) return Text<T>::SetNull(id);
  Text<T>::Take(id, Scan(narrow.Bytes(), narrow.Length(), format ? format : Text<T>::format,
                         Text<T>::language));
}

template <class T>
int IsNullId(void* value) {
  return Text<T>::IsNull(*static_cast<const T*>(value));
}

template <class T>
int SetNullId(void* value) {
  Text<T>::SetNull(*static_cast<T*>(value));
  return 0;
}

template <class T>
void WriteId(OtString& text, const T& id) {
  if (Text<T>::IsNull(id)) {
    text.SetNullValue();
  } else {
    PrintId(text, id, Text<T>::format);
  }
}

template <class T>
void ReadId(T& id, const OtString* text) {
  if (text) {
    ScanId(id, *text, Text<T>::format);
  } else {
    Text<T>::SetNull(id);
  }
}

template <class T>
constexpr OtTypeDescriptor IdentityRow(const char* name) {
  using namespace ot95;
  constexpr auto convertFrom = ConvertFromTexts<T, T::Create, ReadId<T>>;
  return {.name = name,
          .Create = T::Create,
          .Delete = T::Delete,
          .Store = T::Store,
          .Load = T::Load,
          .NullSizeGet = T::NullSizeGet,
          .SizeGet = T::SizeGet,
          .SizeGetFromMemFile = T::SizeGetFromMemFile,
          .Compare = T::Compare,
          .EvalAndBound = T::EvalAndBound,
          .Hash = T::Hash,
          .ConvertTo = ConvertToTexts<T, WriteId<T>>,
          .ConvertFrom = convertFrom,
          .Construct = ConstructZero<sizeof(T)>,
          .Destruct = DestructNothing,
          .Assign = AssignBytes<sizeof(T)>,
          .Copy = AssignBytes<sizeof(T)>,
          .Translate = T::Translate,
          .IsNull = IsNullId<T>,
          .SetNull = SetNullId<T>,
          .format = Text<T>::format,
          .PrintToString = T::PrintToString,
          .ScanFromString = T::ScanFromString,
          .memoryLength = sizeof(T),
          .isFixed = 1,
          .DefaultValue = DefaultOrNull<T, T::Create, SetNullId<T>, convertFrom>};
}

}  // namespace

namespace ot95 {

constinit OtTypeDescriptor rowOtObjId = IdentityRow<OtObjId>("OtObjId");
constinit OtTypeDescriptor rowOtClassId = IdentityRow<OtClassId>("OtClassId");
constinit OtTypeDescriptor rowOtRef = IdentityRow<OtRef>("OtRef");

}  // namespace ot95

#define OT95_IDENTITY_TEXT(T)                                                                    \
  OtString& T::PrintToString(OtString& target, void* value, const char* format, unsigned long) { \
    return PrintId(target, *static_cast<const T*>(value), format);                               \
  }                                                                                              \
  void* T::ScanFromString(void* value, OtString& text, const char* format, unsigned long) {      \
    if (value) ScanId(*static_cast<T*>(value), text, format);                                    \
    return value;                                                                                \
  }                                                                                              \
  OtString& T::PrintToOtString(OtString& target, const char* format) const {                     \
    return PrintId(target, *this, format ? format : Text<T>::format);                            \
  }                                                                                              \
  void T::ScanFromOtString(const OtString& text, const char* format) {                           \
    ScanId(*this, text, format);                                                                 \
  }

OT95_IDENTITY_TEXT(OtObjId)
OT95_IDENTITY_TEXT(OtClassId)
OT95_IDENTITY_TEXT(OtRef)
#undef OT95_IDENTITY_TEXT

OtString& OtDBOId::PrintToOtString(OtString& target, const char* format) const {
  OtObjId id;
  return (id = *this).PrintToOtString(target, format);
}

void OtDBOId::ScanFromOtString(const OtString& text, const char* format) {
  OtObjId id;
  id.ScanFromOtString(text, format);
  *this = id;
}

OtString& OtLocalRef::PrintToOtString(OtString& target, const char* format) const {
  OtRef ref;
  return (ref = *this).PrintToOtString(target, format ? format : localFormat);
}

void OtLocalRef::ScanFromOtString(const OtString& text, const char* format) {
  OtRef ref;
  ref.ScanFromOtString(text, format ? format : localFormat);
  *this = ref;
}
