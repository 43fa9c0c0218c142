// The legacy strings as values.

#include "ot95/fault.h"
#include "ot95/istring.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <new>
#include <string_view>

#include "kit/bytesearch.h"
#include "kit/textcursor.h"
#include "text/legacy/collation.h"

namespace {

// A new terminated buffer for `length` bytes; null for none, and when memory is short.
char* NewText(unsigned long length) {
  if (length == 0 || length == ~0UL) return nullptr;
  char* text = ot95::Noted(new (std::nothrow) char[length + 1]);
  if (text) text[length] = 0;
  return text;
}

char* CopyOf(const char* source, unsigned long length) {
  char* text = NewText(length);
  if (text) std::memcpy(text, source, length);
  return text;
}

unsigned long LengthOf(const char* text) {
  return text ? std::strlen(text) : 0;
}

// Two stretches and what lies between them, in a new buffer.
char* Joined(std::string_view a, std::string_view b, std::string_view c) {
  char* text = NewText(a.size() + b.size() + c.size());
  if (!text) return nullptr;
  char* place = text;
  for (const std::string_view part : {a, b, c}) place = std::copy(part.begin(), part.end(), place);
  return text;
}

void Adopt(char*& text, char* replacement) {
  delete[] text;
  text = replacement;
}

template <class T>
std::string_view ViewOf(const T& string) {
  return {string.StrGet(), string.Len()};
}

template <class Number, class... Style>
char* TextOfNumber(Number number, Style... style) {
  char buffer[400];  // Room for the digits of the greatest double.
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, number, style...);
  return CopyOf(buffer, static_cast<unsigned long>(end.ptr - buffer));
}

unsigned char Upper(unsigned char c) {
  if ((c >= 0x61 && c <= 0x7a) || (c >= 0xe0 && c <= 0xfe && c != 0xf7)) {
    return static_cast<unsigned char>(c - 0x20);
  }
  if (c == 0x9f) return 0xff;
  return c == 0x9c ? 0x8c : c;
}

unsigned char Lower(unsigned char c) {
  if ((c >= 0x41 && c <= 0x5a) || (c >= 0xc0 && c <= 0xde && c != 0xd7)) {
    return static_cast<unsigned char>(c + 0x20);
  }
  if (c == 0xff) return 0x9f;
  return c == 0x8c ? 0x9c : c;
}

template <class Change>
void EachByte(char* text, Change change) {
  for (; text && *text != 0; ++text) {
    *text = static_cast<char>(change(static_cast<unsigned char>(*text)));
  }
}

}  // namespace

template <class Self>
OtLegacyString<Self>::OtLegacyString(const char* source)
    : text(CopyOf(source, LengthOf(source))), flags(0) {}

template <class Self>
OtLegacyString<Self>::OtLegacyString(char character)
    : text(CopyOf(&character, character != 0)), flags(0) {}

template <class Self>
OtLegacyString<Self>::OtLegacyString(const char* source, unsigned long length)
    : text(source ? CopyOf(source, length) : nullptr), flags(0) {}

template <class Self>
OtLegacyString<Self>::OtLegacyString(short number) : text(TextOfNumber(number)), flags(0) {}

template <class Self>
OtLegacyString<Self>::OtLegacyString(int number) : text(TextOfNumber(number)), flags(0) {}

template <class Self>
OtLegacyString<Self>::OtLegacyString(long number) : text(TextOfNumber(number)), flags(0) {}

template <class Self>
OtLegacyString<Self>::OtLegacyString(unsigned long number) : text(TextOfNumber(number)), flags(0) {}

template <class Self>
OtLegacyString<Self>::OtLegacyString(long long number) : text(TextOfNumber(number)), flags(0) {}

template <class Self>
OtLegacyString<Self>::OtLegacyString(unsigned long long number)
    : text(TextOfNumber(number)), flags(0) {}

template <class Self>
OtLegacyString<Self>::OtLegacyString(double number)
    : text(TextOfNumber(number, std::chars_format::fixed, 6)), flags(0) {}

template <class Self>
OtLegacyString<Self>::OtLegacyString(const OtLegacyString& other)
    : text(CopyOf(other.text, other.Len())), flags(other.flags) {}

template <class Self>
OtLegacyString<Self>::~OtLegacyString() {
  Adopt(text, nullptr);
}

template <class Self>
OtLegacyString<Self>& OtLegacyString<Self>::operator=(const OtLegacyString& other) {
  if (this == &other) return *this;
  Adopt(text, CopyOf(other.text, other.Len()));
  flags = other.flags;
  return *this;
}

template <class Self>
OtLegacyString<Self>::operator int() const {
  ot95::TextCursor cursor(StrGet(), Len());
  std::int32_t number = 0;
  ot95::ReadSigned(cursor, 10, number);
  return number;
}

template <class Self>
OtLegacyString<Self>::operator short() const {
  return static_cast<short>(static_cast<int>(*this));
}

template <class Self>
OtLegacyString<Self>::operator long() const {
  return static_cast<int>(*this);
}

template <class Self>
OtLegacyString<Self>::operator double() const {
  ot95::TextCursor cursor(StrGet(), Len());
  double number = 0;
  ot95::ReadReal(cursor, number, ot95::RealPrefix::kReads);
  return number;
}

template <class Self>
long OtLegacyString<Self>::Compare(const Self& other) const {
  constexpr std::size_t mostSteps = 0xffff;
  return ot95::CompareLegacy(ot95::RulesOf<Self>, ot95::TextOf(*this), ot95::TextOf(other),
                             mostSteps);
}

template <class Self>
unsigned long OtLegacyString<Self>::Len() const {
  return LengthOf(text);
}

template <class Self>
Self& OtLegacyString<Self>::operator+=(const Self& other) {
  return Insert(other, Len());
}

template <class Self>
Self OtLegacyString<Self>::operator+(const Self& other) const {
  Self sum(static_cast<const Self&>(*this));
  sum += other;
  return sum;
}

template <class Self>
Self& OtLegacyString<Self>::Insert(const Self& other, unsigned long pos) {
  if (!other) return self();
  const std::string_view whole = ViewOf(*this);
  pos = std::min<unsigned long>(pos, whole.size());
  Adopt(text, Joined(whole.substr(0, pos), ViewOf(other), whole.substr(pos)));
  return self();
}

template <class Self>
Self& OtLegacyString<Self>::Replace(const Self& other, unsigned long pos) {
  const unsigned long length = Len();
  if (pos < length && !!other) {
    std::memmove(text + pos, other.text, std::min(other.Len(), length - pos));
  }
  return self();
}

template <class Self>
Self& OtLegacyString<Self>::Fill(unsigned long n, char c) {
  if (n > Len()) Adopt(text, NewText(n));
  if (text) std::memset(text, c, n);
  return self();
}

template <class Self>
Self& OtLegacyString<Self>::Expand(unsigned long n, char c) {
  const unsigned long length = Len();
  if (n <= length) return self();
  char* longer = NewText(n);
  if (!longer) return self();
  std::copy_n(StrGet(), length, longer);
  std::memset(longer + length, c, n - length);
  Adopt(text, longer);
  return self();
}

template <class Self>
Self& OtLegacyString<Self>::Cut(unsigned long pos, unsigned long n) {
  const std::string_view whole = ViewOf(*this);
  if (pos >= whole.size() || n == 0) return self();
  n = std::min<unsigned long>(n, whole.size() - pos);
  Adopt(text, Joined(whole.substr(0, pos), whole.substr(pos + n), {}));
  return self();
}

template <class Self>
Self OtLegacyString<Self>::Copy(unsigned long pos, unsigned long n) const {
  const unsigned long length = Len();
  if (pos >= length) return Self();
  return Self(text + pos, std::min(n, length - pos));
}

template <class Self>
Self& OtLegacyString<Self>::ToUpper() {
  EachByte(text, Upper);
  return self();
}

template <class Self>
Self& OtLegacyString<Self>::ToLower() {
  EachByte(text, Lower);
  return self();
}

template <class Self>
Self& OtLegacyString<Self>::SpaceToZero() {
  EachByte(text, [](unsigned char c) { return c == ' ' ? '0' : c; });
  return self();
}

template <class Self>
Self& OtLegacyString<Self>::ZeroToSpace() {
  EachByte(text, [](unsigned char c) { return c == '0' ? ' ' : c; });
  return self();
}

template <class Self>
long OtLegacyString<Self>::SubStringPos(const Self& other) const {
  if (!other) return -1;
  const std::size_t place =
      ot95::FindBytes(reinterpret_cast<const unsigned char*>(StrGet()), Len(),
                      reinterpret_cast<const unsigned char*>(other.text), other.Len());
  return place == ot95::noPlace ? -1 : static_cast<long>(place);
}

template class OtLegacyString<OtIString>;
template class OtLegacyString<OtCaseIString>;
