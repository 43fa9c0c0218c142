/// One character: held by value, or standing for a place in a text.

#include "ot95/text.h"
#include "text/casechange.h"
#include "text/collation/orders.h"
#include "text/units.h"

namespace {

unsigned char Or(unsigned char given, unsigned char standIn) {
  return given != 0xff ? given : standIn;
}

/// Raw text has no code set to ask: its letters with case are those of ASCII, in every locale.
std::uint16_t ChangeRawCase(ot95::CaseOp op, std::uint16_t c) {
  const char first = op == ot95::CaseOp::kUpper ? 'a' : 'A';
  return static_cast<std::uint16_t>(c >= first && c <= first + 25 ? c ^ 0x20 : c);
}

/// The order of a character alone, without contractions and tailoring.
unsigned short OtOrderOfChar(const OtChar& c) {
  return ot95::OrderOfUnit(c.GetValue(), c.GetCodeSetCode());
}

/// A character alone, terminated, so that a comparison sees nothing of its surroundings.
struct LoneCharacter {
  explicit LoneCharacter(const OtChar& c) {
    ot95::StoreUnit(text, c.GetValue(), ot95::IsWide(c.GetCodeSetCode()));
  }
  alignas(2) char text[4] = {};
};

}  // namespace

OtChar::OtChar(char* place, unsigned short value, unsigned char codeSet, unsigned char language,
               unsigned char format)
    // The text that all strings without a buffer share is no place to write to.
    : place_(place != ot95::EmptyText() ? place : nullptr),
      value_(ot95::IsWide(codeSet) ? value : value & 0xff),
      codeSet_(codeSet),
      language_(Or(language, OtLanguageContext::GetDefaultLanguage())),
      format_(Or(format, OT_FORMAT_NATIVE)) {}

OtChar::OtChar(const OtChar& other)
    : OtChar(nullptr, other.GetValue(), other.codeSet_, other.language_, OT_FORMAT_NATIVE) {}

OtChar::OtChar(unsigned short character, unsigned char codeSet, unsigned char language)
    : OtChar(nullptr, character, Or(codeSet, OtLanguageContext::GetDefault16CodeSet()), language,
             OT_FORMAT_NATIVE) {}

OtChar::OtChar(char character, unsigned char codeSet, unsigned char language)
    : OtChar(nullptr, static_cast<unsigned char>(character),
             Or(codeSet, OtLanguageContext::GetDefault8CodeSet()), language, OT_FORMAT_NATIVE) {}

OtChar::OtChar(const char* place, unsigned char codeSet, unsigned char language,
               unsigned char format)
    : OtChar(const_cast<char*>(place), 0, Or(codeSet, OtLanguageContext::GetDefault8CodeSet()),
             language, format) {}

OtChar::OtChar(OtString& text, int byteOffset)
    : OtChar(text.StrGet(), 0, text.GetCodeSetCode(), text.GetLanguageCode(), OT_FORMAT_NATIVE) {
  if (place_ != nullptr) place_ += byteOffset;
}

unsigned short OtChar::GetValue() const {
  if (place_ == nullptr) return value_;
  return ot95::LoadUnit(place_, ot95::IsWide(codeSet_), ot95::IsReversed(format_));
}

void OtChar::SetValue(unsigned short character) {
  const bool wide = ot95::IsWide(codeSet_);
  if (place_ != nullptr) {
    ot95::StoreUnit(place_, character, wide, ot95::IsReversed(format_));
  } else {
    value_ = wide ? character : character & 0xff;
  }
}

OtChar& OtChar::operator=(const OtChar& other) {
  if (place_ != nullptr) {
    SetValue(other.MapTo(codeSet_).GetValue());
    return *this;
  }
  value_ = other.GetValue();
  codeSet_ = other.codeSet_;
  language_ = other.language_;
  format_ = other.format_;
  return *this;
}

OtChar& OtChar::operator=(char character) {
  SetValue(static_cast<unsigned char>(character));
  return *this;
}

OtChar& OtChar::operator=(unsigned short character) {
  SetValue(character);
  return *this;
}

OtChar OtChar::MapTo(unsigned char codeSet) const {
  if (codeSet == codeSet_ || codeSet == 0) return *this;
  const unsigned char from = codeSet_ != 0 ? codeSet_ : OtLanguageContext::GetNativeCodeSet();
  const OtCodeSet* target = OtLanguageContext::QueryCodeSet(codeSet);
  return OtChar(nullptr, target->MapChar(GetValue(), from), codeSet, language_, OT_FORMAT_NATIVE);
}

namespace ot95 {

CaseChange ChangeCase(CaseOp op, std::uint16_t unit, unsigned char codeSet,
                      unsigned char language) {
  if (codeSet == 0) return {ChangeRawCase(op, unit), nullptr};
  const OtCodeSet* set = OtLanguageContext::QueryCodeSet(codeSet);
  // One-byte characters are asked for sign-extended.
  const auto asked = IsWide(codeSet) ? unit : SignExtended(unit);
  const OtUnicodeProps* props = set->GetUnicodeProps(asked, language);
  if (props == nullptr) return {unit, nullptr};
  const std::uint16_t other = op == CaseOp::kUpper ? props->upper : props->lower;
  if (other == 0) return {unit, nullptr};
  const bool longer = op == CaseOp::kUpper && props->upperTail.count != 0;
  return {codeSet == OT_CS_UNICODE ? other : set->MapChar(other, OT_CS_UNICODE),
          longer ? &props->upperTail : nullptr};
}

namespace {

constexpr std::uint16_t kCapitalSigma = 0x3a3, kSigma = 0x3c3, kFinalSigma = 0x3c2;

std::uint16_t InUnicode(std::uint16_t unit, unsigned char codeSet) {
  return OtLanguageContext::QueryCodeSet(OT_CS_UNICODE)->MapChar(unit, codeSet);
}

// Accents, apostrophes, stops and hyphens within words.
bool IsPassed(std::uint16_t unicode) {
  switch (unicode) {
    case '\'':
    case '.':
    case ':':
    case 0xad:
    case 0xb7:
    case 0x2018:
    case 0x2019:
    case 0x2024:
    case 0x2027:
      return true;
    default:
      return unicode >= 0x300 && unicode < 0x370;
  }
}

}  // namespace

bool IsCapitalSigma(std::uint16_t unit, unsigned char codeSet) {
  return codeSet != 0 && unit != 0 && InUnicode(unit, codeSet) == kCapitalSigma;
}

std::uint16_t SmallSigma(unsigned char codeSet, bool atEnd) {
  const OtCodeSet* set = OtLanguageContext::QueryCodeSet(codeSet);
  const std::uint16_t small = set->MapChar(atEnd ? kFinalSigma : kSigma, OT_CS_UNICODE);
  return small != set->substitute ? small : set->MapChar(kSigma, OT_CS_UNICODE);
}

InWord PartOfWord(std::uint16_t unit, unsigned char codeSet, unsigned char language) {
  if (unit == 0) return InWord::kOutside;
  const std::uint16_t unicode = InUnicode(unit, codeSet);
  if (IsPassed(unicode)) return InWord::kPassed;
  const OtCodeSet* set = OtLanguageContext::QueryCodeSet(OT_CS_UNICODE);
  return set->GetUnicodeProps(unicode, language) != nullptr ? InWord::kLetter : InWord::kOutside;
}

}  // namespace ot95

OtChar OtChar::ToUpper(OtStringIterator* source) const {
  const ot95::CaseChange change =
      ot95::ChangeCase(ot95::CaseOp::kUpper, GetValue(), codeSet_, language_);
  if (source != nullptr && change.tail != nullptr) source->SetOverflow(change.tail, OT_CS_DEFAULT);
  return OtChar(nullptr, change.unit, codeSet_, language_, OT_FORMAT_NATIVE);
}

OtChar OtChar::ToLower(OtStringIterator* source) const {
  if (source != nullptr && ot95::IsCapitalSigma(GetValue(), codeSet_)) {
    OtStringIterator behind(*source);
    auto part = ot95::InWord::kPassed;
    while (part == ot95::InWord::kPassed) {
      part = ot95::PartOfWord((*++behind).GetValue(), codeSet_, language_);
    }
    const bool atEnd = part != ot95::InWord::kLetter;
    return OtChar(nullptr, ot95::SmallSigma(codeSet_, atEnd), codeSet_, language_,
                  OT_FORMAT_NATIVE);
  }
  const ot95::CaseChange change =
      ot95::ChangeCase(ot95::CaseOp::kLower, GetValue(), codeSet_, language_);
  return OtChar(nullptr, change.unit, codeSet_, language_, OT_FORMAT_NATIVE);
}

int OtChar::IsSpace() const {
  return OtOrderOfChar(*this) < ot95::kFirstSymbol;
}

int OtChar::IsSymbol() const {
  const unsigned short order = OtOrderOfChar(*this);
  return order >= ot95::kFirstSymbol && order < ot95::kFirstDigit;
}

int OtChar::IsDigit() const {
  const unsigned short order = OtOrderOfChar(*this);
  return order >= ot95::kFirstDigit && order < ot95::kFirstLetter;
}

int OtChar::IsAlpha() const {
  const unsigned short order = OtOrderOfChar(*this);
  return order >= ot95::kFirstLetter && order < ot95::kFirstHan;
}

int OtChar::IsHan() const {
  return OtOrderOfChar(*this) >= ot95::kFirstHan;
}

long OtChar::Compare(const OtChar& other, unsigned short cmpOp) const {
  if (cmpOp == OT_CMP_DEFAULT) cmpOp = OtLanguageContext::GetDefaultCmpOp();
  const LoneCharacter left(*this);
  const LoneCharacter right(other);
  return OtStrCmp(codeSet_, language_, left.text, other.codeSet_, other.language_, right.text,
                  cmpOp, 1, OT_FORMAT_NATIVE);
}
