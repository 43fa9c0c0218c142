// What makes values of texts outside of the rows' own scanners: conversion between types, lists,
// and the text of a configuration.
//
// An input: which of the three, two types or a separator's length, a code set; then the text.
#include <string>

#include "fuzzing.h"
#include "ot95/config.h"
#include "ot95/text.h"

using namespace fuzzing;

namespace {

/// A text of bytes in a code set; of two bytes a character where it has them.
OtString StringOf(std::uint8_t codeSet, View bytes) {
  OtString string(codeSet, 1);
  std::string copy(bytes.begin(), bytes.end());
  copy += std::string(2, '\0');
  if (codeSet > OT_CS_LAST_NARROW) {
    std::u16string units(copy.size() / 2, u'\0');
    std::memcpy(units.data(), copy.data(), units.size() * 2);
    string = reinterpret_cast<const unsigned short*>(units.c_str());
  } else {
    string = copy.c_str();
  }
  string.SetCodeSetCode(codeSet);
  return string;
}

/// By way of texts, and back: whatever comes out is a value that its own row can print.
void Convert(char from, char to, const OtString& text) {
  OtTypeMgr manager(5);
  void* value = manager.DefaultValue(from, 1, 1);
  if (value == nullptr) return;
  manager.ScanFromOtString(from, value, text, nullptr, 1);
  if (OtTypeConvertData* texts = manager.ConvertTo(from, value, 1)) {
    if (void* made = manager.ConvertFrom(to, texts, 1)) {
      OtString printed(OT_CS_UNICODE, 1);
      manager.PrintToOtString(to, printed, made, nullptr, 1);
      manager.Delete(to, made, 1);
    }
    delete texts;
  }
  manager.Delete(from, value, 1);
}

void Split(OtString list, const OtString& separator) {
  OtString item;
  unsigned short pos = 0;
  const unsigned long most = list.Len() + 2;
  unsigned long items = 0;
  while (OtSplitList(list, item, separator, pos) == 0) Require(++items <= most);
}

void Configure(View bytes) {
  const Block block(bytes);
  const auto* text = static_cast<const char*>(block.Data());
  OtConfig config;
  const long line = config.ReadText(text, bytes.size());
  Require(line >= 0 || line == OT_ERR_NOT_SUPPORTED);
  const char* const sections[] = {"debug", "", nullptr};
  short value = 0;
  const int status = config.GetValue("key", &value, sections);
  const char* found = config.GetText("key", sections);
  Require((found == nullptr) == (status == OT_ERR_NO_MORE_ITEMS));
  // A text that is refused changes nothing.
  OtConfig kept;
  kept.ReadText("key = 7");
  if (kept.ReadText(text, bytes.size()) != 0) {
    Require(std::strcmp(kept.GetText("key", nullptr), "7") == 0);
  }
}

}  // namespace

extern "C" OT95_EXPORT int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Start();
  Input in({data, size});
  const std::uint8_t choice = in.Byte();
  const std::uint8_t first = in.Byte();
  const std::uint8_t second = in.Byte();
  const std::uint8_t codeSet = in.Byte();
  if (choice % 3 == 0) {
    Convert(static_cast<char>(first % 41), static_cast<char>(second % 41),
            StringOf(codeSet, in.Rest()));
  } else if (choice % 3 == 1) {
    const OtString separator = StringOf(codeSet, in.Take(first % 8U));
    Split(StringOf(codeSet, in.Rest()), separator);
  } else {
    Configure(in.Rest());
  }
  return 0;
}
