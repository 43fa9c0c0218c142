/// Strings from numbers and numbers from strings. A text that is read as a whole number gives what
/// a 32-bit `long` gives, on every machine.

#include "kit/numbertext.h"
#include "ot95/text.h"
#include "ot95/typemgr.h"
#include "text/units.h"

using ot95::NumberText;

namespace {

/// Wide text is read unit by unit as if each were a digit. There is no sign.
std::int32_t WideToLong(const char* text) {
  std::uint32_t value = 0;
  for (; std::uint16_t unit = ot95::LoadWide(text); text += 2) value = value * 10 + unit - '0';
  return static_cast<std::int32_t>(value);
}

/// The whole part alone: what stands behind the point adds nothing.
double WideToDouble(const char* text) {
  double value = 0;
  for (; std::uint16_t unit = ot95::LoadWide(text); text += 2) {
    if (unit == '.') break;
    value = value * 10 + (unit - '0');
  }
  return value;
}

std::int32_t ToLong(const OtString& text, int base) {
  if (ot95::IsWide(text.GetCodeSetCode())) return WideToLong(text.StrGet());
  return ot95::ParseLong32(text.StrGet(), base);
}

/// Base of the conversion operators: bit 0 of the options word asks for decimal alone.
int OperatorBase() {
  return (___OtTypeMgrOptions() & 1) != 0 ? 10 : 0;
}

/// For Atol and Strtol, which refuse a text without a digit or a minus at its start.
int ReadNumber(const OtString& text, int base, long& out) {
  out = 0;
  const OtChar first(static_cast<const char*>(text.StrGet()), text.GetCodeSetCode(),
                     text.GetLanguageCode());
  if (!first.IsDigit() && first != '-') return -1;
  out = ToLong(text, base);
  return 0;
}

}  // namespace

OtString::OtString(short number) : OtString(NumberText(number).text) {}
OtString::OtString(int number) : OtString(NumberText(number).text) {}
// Read as signed, as all but `unsigned long` are.
OtString::OtString(unsigned int number) : OtString(NumberText(static_cast<int>(number)).text) {}
OtString::OtString(long number) : OtString(NumberText(number).text) {}
OtString::OtString(unsigned long number) : OtString(NumberText(number).text) {}
OtString::OtString(long long number) : OtString(NumberText(number).text) {}
OtString::OtString(unsigned long long number) : OtString(NumberText(number).text) {}
OtString::OtString(double number) : OtString(NumberText(number).text) {}

OtString::operator int() const {
  return ToLong(*this, OperatorBase());
}
OtString::operator short() const {
  return static_cast<short>(ToLong(*this, OperatorBase()));
}
OtString::operator long() const {
  return ToLong(*this, OperatorBase());
}

OtString::operator double() const {
  return ot95::IsWide(codeSet_) ? WideToDouble(StrGet()) : ot95::ParseDouble(StrGet());
}

int OtString::Atol(long& out) const {
  return ReadNumber(*this, 10, out);
}
int OtString::Strtol(long& out) const {
  return ReadNumber(*this, 0, out);
}
