// Texts of any kind: UTF-8 in and out, comparison with patterns, and printing and scanning of every
// type with formats that nobody would write.
//
// An input: code sets and languages of two texts (4 bytes), op (2 bytes), most characters, type,
// lengths of the format and of the first text; then the format, the first text and, to the end, the
// second.
#include <string>

#include "fuzzing.h"
#include "ot95/text.h"
#include "text/collation/compare.h"

using namespace fuzzing;

namespace {

/// A text of bytes up to their terminator; two bytes a character where the code set has them.
class Text {
 public:
  Text(unsigned char codeSet, unsigned char language, View bytes)
      : codeSet_(codeSet), language_(language), buffer_(bytes.size() + 2) {
    if (!bytes.empty()) std::memcpy(buffer_.Data(), bytes.data(), bytes.size());
  }
  unsigned char CodeSet() const { return codeSet_; }
  unsigned char Language() const { return language_; }
  const char* Chars() const { return static_cast<const char*>(buffer_.Data()); }

 private:
  unsigned char codeSet_;
  unsigned char language_;
  Block buffer_;
};

/// Without an odd byte at the end, which would make half a terminator with the first zero.
View Even(View bytes) {
  return bytes.first(bytes.size() / 2 * 2);
}

OtString StringOf(const Text& text) {
  OtString string(text.CodeSet(), text.Language());
  if (text.CodeSet() > 0xe0) {
    string = reinterpret_cast<const unsigned short*>(text.Chars());
  } else {
    string = text.Chars();
  }
  string.SetCodeSet(text.CodeSet());
  string.SetLanguageCode(text.Language());
  return string;
}

void Compare(const Text& a, const Text& b, unsigned short op, short most) {
  OtStrCmp(a.CodeSet(), a.Language(), a.Chars(), b.CodeSet(), b.Language(), b.Chars(), op, most);
  const OtString x = StringOf(a);
  const OtString y = StringOf(b);
  x.Compare(y, op);
  // The short ways give what the walk does.
  const auto sign = [](long value) { return (value > 0) - (value < 0); };
  for (const unsigned short way : {op, static_cast<unsigned short>(op | OT_CMP_NO_WILDCARDS)}) {
    if (way == OT_CMP_DEFAULT) continue;
    const long plain = ot95::CompareSpansPlainly(ot95::TextSpan::Of(x), ot95::TextSpan::Of(y), way);
    Require(sign(x.Compare(y, way)) == sign(plain));
  }
  // What ignores patterns tells a text from itself nowhere.
  Require(x.Compare(x, OT_CMP_NO_WILDCARDS) == 0);
}

void DecodeUtf8(View bytes, unsigned short room) {
  const Block block(bytes);
  const auto length = static_cast<int>(bytes.size());
  auto* chars = static_cast<char*>(block.Data());
  if (length == 0) return;
  unsigned short unit = 0;
  OtMultiByte2WChar(&unit, chars, static_cast<unsigned>(length));
  const Block units(std::size_t{2} * room);
  OtMultiByteStr2WCharStr(static_cast<unsigned short*>(units.Data()), room, chars, length);
  OtString target(OT_CS_UNICODE, 1);
  OtMultiByteString2OtString(chars, target, length);
  OtMBS2OtString(chars, target, length);
}

void EncodeUtf8(const OtString& text, unsigned short room) {
  const Block out(room);
  OtString2OtMBS(text, static_cast<char*>(out.Data()), room);
  char* made = nullptr;
  long length = 0;
  OtString2MultiByteString(text, made, length);
  delete[] made;
  OtMBSLength(text, room);
}

void PrintAndScan(char id, OtString text, const std::string& format) {
  OtTypeMgr manager;
  void* value = manager.DefaultValue(id, 1, 1);
  if (value == nullptr) return;
  for (const char* with : {static_cast<const char*>(nullptr), format.c_str()}) {
    manager.ScanFromOtString(id, value, text, with, 1);
    for (const char* printed : {static_cast<const char*>(nullptr), format.c_str()}) {
      OtString target(OT_CS_UNICODE, 1);
      manager.PrintToOtString(id, target, value, printed, 1);
    }
  }
  manager.Delete(id, value, 1);
}

}  // namespace

extern "C" OT95_EXPORT int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Start();
  Input in({data, size});
  const std::uint8_t codeSets[] = {in.Byte(), in.Byte()};
  const std::uint8_t languages[] = {in.Byte(), in.Byte()};
  const std::uint16_t op = in.Word();
  const std::uint8_t most = in.Byte();
  const char id = static_cast<char>(in.Byte() % 41);
  const std::size_t formatLength = in.Byte() % 64;
  const std::size_t length = in.Byte();
  const View format = in.Take(formatLength);
  const View bytes = in.Take(length);
  const Text a(codeSets[0], languages[0], Even(bytes));
  const Text b(codeSets[1], languages[1], Even(in.Rest()));
  Compare(a, b, op, static_cast<short>(most < 255 ? most : -1));
  DecodeUtf8(bytes, most);
  EncodeUtf8(StringOf(b), most);
  PrintAndScan(id, StringOf(a), std::string(format.begin(), format.end()));
  return 0;
}
