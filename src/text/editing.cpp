/// Editing: what changes or takes apart a text. Places and counts are wider here than in the
/// signatures, so that all of a long text can be reached.

#include <algorithm>
#include <cstring>

#include "kit/numbertext.h"
#include "ot95/text.h"
#include "text/units.h"

using ot95::IsWide;
using ot95::TextSource;

namespace {

/// All characters from a place on, as the count of Cut and Copy.
constexpr short kToTheEnd = -1;

TextSource SourceOf(const OtString& text) {
  return {text.StrGet(), text.GetCodeSetCode(), ot95::TextAccess::Length(text)};
}

/// How many of the characters behind `pos` a signed count means; negative ones but -1 mean none.
std::size_t Clip(std::size_t available, short n) {
  if (n == kToTheEnd) return available;
  return n < 0 ? 0 : std::min(available, static_cast<std::size_t>(n));
}

}  // namespace

OtString& OtString::Insert(const OtString& text, unsigned short pos) {
  InsertAt(text, pos);
  return *this;
}

void OtString::InsertAt(const OtString& text, std::size_t pos) {
  if (pos <= Length()) Splice(SpliceMode::kInsert, SourceOf(text), pos);
}

OtString& OtString::Replace(const OtString& text, unsigned short pos) {
  const std::size_t length = Length();
  TextSource source = SourceOf(text);
  if (pos >= length || source.length == 0) return *this;
  source.length = std::min(source.length, length - pos);
  Splice(SpliceMode::kReplace, source, pos);
  return *this;
}

OtString& OtString::Fill(unsigned short n, char c) {
  const char source[] = {c, 0};
  Splice(SpliceMode::kAssign, {source, GetDefault8CodeSet(), 1}, 0, n);
  return *this;
}

OtString& OtString::Fill(unsigned short n, unsigned short c) {
  const unsigned short source[] = {c, 0};
  Splice(SpliceMode::kAssign, {reinterpret_cast<const char*>(source), GetDefault16CodeSet(), 1}, 0,
         n);
  return *this;
}

OtString& OtString::Expand(unsigned short n, char c) {
  const char source[] = {c, 0};
  return PadTo(n, {source, GetDefault8CodeSet(), 1});
}

OtString& OtString::Expand(unsigned short n, unsigned short c) {
  const unsigned short source[] = {c, 0};
  return PadTo(n, {reinterpret_cast<const char*>(source), GetDefault16CodeSet(), 1});
}

OtString& OtString::PadTo(std::size_t n, const TextSource& character) {
  const std::size_t length = Length();
  if (length < n) Splice(SpliceMode::kAssign, character, length, n - length);
  return *this;
}

OtString& OtString::Cut(unsigned short pos, short n) {
  const std::size_t length = Length();
  if (pos < length) CutAt(pos, Clip(length - pos, n));
  return *this;
}

void OtString::CutAt(std::size_t pos, std::size_t n) {
  if (n == 0) return;
  const std::size_t tail = pos + n;
  Splice(SpliceMode::kAssign,
         {buffer_ + tail * ot95::CharWidth(codeSet_), codeSet_, Length() - tail}, pos);
}

OtString OtString::Copy(unsigned short pos, short n) const {
  const std::size_t length = Length();
  return CopyAt(pos, pos < length ? Clip(length - pos, n) : 0);
}

OtString OtString::CopyAt(std::size_t pos, std::size_t n) const {
  if (pos >= Length()) return OtString();
  OtString part(codeSet_, language_);
  if (n != 0) {
    part.Splice(SpliceMode::kAssign, {buffer_ + pos * ot95::CharWidth(codeSet_), codeSet_, n}, 0);
  }
  return part;
}

OtString OtString::Left(unsigned short n) const {
  std::size_t count = std::min<std::size_t>(n, Length());
  if (count != 0 && ot95::SplitsPair(buffer_ + count * ot95::CharWidth(codeSet_), codeSet_))
    --count;
  return CopyAt(0, count);
}

OtString OtString::Right(unsigned short n) const {
  const std::size_t length = Length();
  std::size_t count = std::min<std::size_t>(n, length);
  if (count != 0 && count != length &&
      ot95::SplitsPair(buffer_ + (length - count) * ot95::CharWidth(codeSet_), codeSet_)) {
    --count;
  }
  return CopyAt(length - count, count);
}

/// Whether the character at a place counts as white space, by its order and not by its code.
bool OtString::IsSpaceAt(std::size_t pos) const {
  return OtChar(const_cast<OtString&>(*this), static_cast<int>(pos * ot95::CharWidth(codeSet_)))
      .IsSpace();
}

OtString& OtString::LeftTrim() {
  const std::size_t length = Length();
  std::size_t count = 0;
  while (count < length && IsSpaceAt(count)) ++count;
  CutAt(0, count);
  return *this;
}

OtString& OtString::RightTrim() {
  const std::size_t length = Length();
  std::size_t end = length;
  while (end != 0 && IsSpaceAt(end - 1)) --end;
  CutAt(end, length - end);
  return *this;
}

OtString& OtString::Trim() {
  return LeftTrim().RightTrim();
}

OtString& OtString::operator+=(const OtString& text) {
  return Append(SourceOf(text));
}

OtString& OtString::operator<<(char value) {
  const char text[] = {value, 0};
  return *this << text;
}

OtString& OtString::operator<<(const char* value) {
  if (value == nullptr) value = ot95::EmptyText();
  return Append({value, GetDefault8CodeSet(), std::strlen(value)});
}

OtString& OtString::operator<<(const unsigned short* value) {
  return *this += OtString(value);
}
OtString& OtString::operator<<(const OtString& value) {
  return *this += value;
}
OtString& OtString::operator<<(short value) {
  return *this << static_cast<int>(value);
}

// To a wide string the value is a character, to a narrow one a number.
OtString& OtString::operator<<(unsigned short value) {
  return IsWide(codeSet_) ? *this += OtString(value) : *this << static_cast<int>(value);
}

OtString& OtString::operator<<(int value) {
  return *this << ot95::NumberText(value).text;
}
OtString& OtString::operator<<(unsigned int value) {
  return *this << static_cast<int>(value);
}
OtString& OtString::operator<<(long value) {
  return *this << ot95::NumberText(value).text;
}
OtString& OtString::operator<<(unsigned long value) {
  return *this << ot95::NumberText(value).text;
}
OtString& OtString::operator<<(long long value) {
  return *this << ot95::NumberText(value).text;
}
OtString& OtString::operator<<(unsigned long long value) {
  return *this << ot95::NumberText(value).text;
}
OtString& OtString::operator<<(float value) {
  return *this << static_cast<double>(value);
}
OtString& OtString::operator<<(double value) {
  return *this << ot95::NumberText(value).text;
}

OtString operator+(const OtString& a, const OtString& b) {
  OtString sum(a);
  sum += b;
  return sum;
}

OtChar OtString::operator[](int index) {
  if (index < 0 || static_cast<std::size_t>(index) > Length()) {
    return OtChar('\0', GetDefaultCodeSet());
  }
  return OtChar(*this, index * static_cast<int>(ot95::CharWidth(codeSet_)));
}
