/// Printing and scanning of strings. A key prints as what its order words say, in one of four modes
/// that the format asks for: "%1M" as plain letters, "%2M" as letters with accents, "%3M" as a
/// phrase a word, "%4M" as the names of letters.

#include <array>
#include <memory>
#include <string_view>

#include "kit/checkedformat.h"
#include "ot95/typemgr.h"
#include "text/collation/compare.h"
#include "text/rows/row.h"

namespace ot95 {
namespace {

/// Room that a format may add to a text.
constexpr std::size_t kSpareBytes = 0x200;

/// An 8-bit text in a format.
OtString Format(std::string_view text, std::string_view format) {
  const std::size_t size = text.size() + format.size() + kSpareBytes;
  const std::unique_ptr<char[]> buffer(NewText(size));
  if (buffer == nullptr) return OtString(OtString::GetDefault8CodeSet(), OT_LANG_NEUTRAL);
  const CheckedFormat parts = ParseFormat(format, "s");
  BoundedText out(buffer.get(), size);
  out.AppendFormatText(parts.before);
  if (parts.conversion.letter != 0) {
    if (parts.conversion.precision >= 0) {
      text = text.substr(0, static_cast<std::size_t>(parts.conversion.precision));
    }
    out.AppendField(parts.conversion, {}, 0, text, false);
    out.AppendFormatText(parts.behind);
  }
  return OtString(out.Terminate());
}

/// The code set for text that must be 8-bit: the first of the target's, the default and the native
/// one that is so.
unsigned char NarrowCodeSet(const OtString& target) {
  for (unsigned char codeSet : {target.GetCodeSetCode(), OtString::GetDefaultCodeSet()}) {
    if (!IsWide(codeSet)) return codeSet;
  }
  return OtLanguageContext::GetNativeCodeSet();
}

OtString& PrintWideText(OtString& target, const OtString& value, const char* format) {
  OtString narrow(NarrowCodeSet(target), 0);
  narrow += value;
  return target = Format(narrow.StrGet(), format);
}

/// The order words of a key text.
class KeyWords {
 public:
  explicit KeyWords(const OtString& key)
      : place_(key.StrGet()), count_(TextAccess::Length(key)), script_(key.GetLanguageCode()) {}
  std::size_t Count() const { return count_; }
  unsigned char Script() const { return script_; }
  unsigned short operator[](std::size_t i) const { return LoadWide(place_ + 2 * i); }

 private:
  const char* place_;
  std::size_t count_;
  unsigned char script_;
};

/// A key as the characters near its words, formatted as one text.
OtString& PrintKeyAsText(OtString& target, const KeyWords& words, std::string_view format,
                         bool accents) {
  const unsigned char codeSet = NarrowCodeSet(target);
  const std::unique_ptr<char[]> text(NewText(words.Count() + 1));
  if (text == nullptr) return target;
  for (std::size_t i = 0; i < words.Count(); ++i) {
    unsigned char character = 0;
    OtConvertOrderToChar(words[i], words.Script(), character, accents, nullptr);
    text[i] = static_cast<char>(character);
  }
  OtString result = Format({text.get(), words.Count()}, format);
  if (!accents || codeSet == OT_CS_BASE8) return target = result;
  result.SetCodeSetCode(OT_CS_BASE8);
  // The native code set stands in where raw text is asked for.
  target.CopyMapped(result, codeSet != 0 ? codeSet : OtLanguageContext::GetNativeCodeSet());
  if (codeSet == 0) target.SetCodeSetCode(0);
  return target;
}

/// A key word by word, each in the format.
OtString& PrintKeyWords(OtString& target, const KeyWords& words, std::string_view format,
                        bool phrases) {
  OtString result(OtString::GetDefault8CodeSet(), OtString::GetDefaultLanguage());
  for (std::size_t i = 0; i < words.Count(); ++i) {
    if (phrases) {
      OtString phrase;
      OtConvertOrderToString(words[i], words.Script(), phrase);
      result += Format(phrase.StrGet(), format);
      continue;
    }
    unsigned char character = 0;
    const char* name = "";
    OtConvertOrderToChar(words[i], words.Script(), character, 1, &name);
    // What has no name stands for itself.
    const OtChar itself(static_cast<char>(character), OT_CS_BASE8);
    const char text[2] = {static_cast<char>(itself.MapTo(result.GetCodeSetCode()).GetValue()), 0};
    result += Format(*name != 0 ? name : text, format);
  }
  if (phrases && (words.Script() & kMixedScripts) != 0) result += Format("[MIX]", format);
  return target = result;
}

/// The directive's two characters behind the '%' become an 's'.
OtString& PrintKey(OtString& target, const OtString& value, std::string_view format) {
  const KeyWords words(value);
  int mode = 0;
  std::size_t directive = std::string_view::npos;
  while (directive == std::string_view::npos && mode < 4) {
    const char sought[] = {'%', static_cast<char>('0' + ++mode), 'M'};
    directive = format.find({sought, sizeof sought});
  }
  if (directive == std::string_view::npos) return PrintKeyAsText(target, words, format, true);
  const std::unique_ptr<char[]> copy(NewText(format.size()));
  if (copy == nullptr) return target;
  const std::size_t behind = directive + 3;
  std::memcpy(copy.get(), format.data(), directive + 1);
  copy[directive + 1] = 's';
  std::memcpy(copy.get() + directive + 2, format.data() + behind, format.size() - behind);
  const std::string_view plain(copy.get(), format.size() - 1);
  if (mode <= 2) return PrintKeyAsText(target, words, plain, mode == 2);
  return PrintKeyWords(target, words, plain, mode == 3);
}

/// Whether a text begins with the one that stands for null.
bool BeginsWithNull(const OtString& text) {
  const OtString& null = OtTypeMgr::GetNullPrintString();
  const std::size_t length = TextAccess::Length(null);
  if (length == 0) return true;
  const std::size_t available = std::min(length, TextAccess::Length(text));
  const unsigned char codeSet = text.GetCodeSetCode();
  const TextSpan begin = TextSpan::Bounded(text.StrGet(), available * CharWidth(codeSet), codeSet,
                                           text.GetLanguageCode(), false);
  return CompareSpans(begin, TextSpan::Of(null), OtString::GetDefaultCmpOp()) == 0;
}

}  // namespace

OtString& PrintString(OtString& target, void* value, const char* format, unsigned long) {
  const OtString& string = *static_cast<const OtString*>(value);
  if (format == nullptr) format = "%s";
  if (string.IsNullValue()) return target = OtTypeMgr::GetNullPrintString();
  if (string.IsEmpty()) return target = string;
  const unsigned char codeSet = string.GetCodeSetCode();
  if (codeSet == OT_CS_ORDER) return PrintKey(target, string, format);
  if (IsWide(codeSet)) return PrintWideText(target, string, format);
  OtString printed = Format(string.StrGet(), format);
  printed.SetCodeSet(codeSet);
  return target = printed;
}

void* ScanString(void* value, OtString& text, const char*, unsigned long) {
  if (value == nullptr) return nullptr;
  auto& string = *static_cast<OtString*>(value);
  if (BeginsWithNull(text)) {
    string.SetNullValue();
  } else {
    string = text;
  }
  return value;
}

}  // namespace ot95
