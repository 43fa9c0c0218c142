// The characters that act as wildcards, as an application sets them.

#include "text/collation/wildcards.h"

#include "ot95/text.h"
#include "text/units.h"

namespace {

int SetTo(ot95::WildcardWord& wildcard, const OtChar& c) {
  alignas(2) char text[4] = {};
  ot95::StoreUnit(text, c.GetValue(), ot95::IsWide(c.GetCodeSetCode()));
  const char* place = text;
  OtStringIterator it(place, c.GetCodeSetCode(), c.GetLanguageCode(), OT_FORMAT_NATIVE);
  wildcard.Set(it.GetNextOrder(0));
  return 0;
}

}  // namespace

int OtString::SetAsterisk(const OtChar& c) {
  return SetTo(ot95::asterisk, c);
}
int OtString::SetQuestion(const OtChar& c) {
  return SetTo(ot95::question, c);
}
int OtString::SetEscape(const OtChar& c) {
  return SetTo(ot95::escape, c);
}
unsigned short OtString::GetAsterisk() {
  return ot95::asterisk.Get();
}
unsigned short OtString::GetQuestion() {
  return ot95::question.Get();
}
unsigned short OtString::GetEscape() {
  return ot95::escape.Get();
}
