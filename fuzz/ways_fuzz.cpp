// The fast ways of text against the plain ones: comparison, matching, hash, index key, sort key.
// Two texts that share most of their units go in, so that the ways part where neighbours do.
//
// An input: language, op (2 bytes), code set, length of the shared head, of the first tail; then
// the head, the first tail and, to the end, the second, as units of two bytes (code sets of one
// byte take the low ones).
#include <string>
#include <vector>

#include "fuzzing.h"
#include "ot95/text.h"
#include "text/collation/compare.h"
#include "text/rows/stored.h"

using namespace fuzzing;
using ot95::TextSpan;

namespace {

constexpr char kStringId = 11;
constexpr unsigned long kRoom = 4096;

int Sign(long value) {
  return (value > 0) - (value < 0);
}

/// A text in one code set, in either order of bytes, each in a block of exactly its size.
class Text {
 public:
  Text(unsigned char codeSet, unsigned char language, const std::u16string& units)
      : codeSet_(codeSet),
        language_(language),
        width_(codeSet > OT_CS_LAST_NARROW ? 2 : 1),
        terminated_((units.size() + 1) * width_),
        bounded_(units.size() * width_),
        turned_(units.size() * width_) {
    for (std::size_t i = 0; i < units.size(); ++i) {
      Set(terminated_, i, units[i]);
      Set(bounded_, i, units[i]);
      Set(turned_, i, static_cast<char16_t>(units[i] << 8 | units[i] >> 8));
    }
  }

  const char* Chars() const { return static_cast<const char*>(terminated_.Data()); }
  TextSpan Terminated() const { return TextSpan::Terminated(Chars(), codeSet_, language_); }
  TextSpan Bounded() const { return SpanOf(bounded_, false); }
  TextSpan Turned() const { return SpanOf(width_ == 2 ? turned_ : bounded_, width_ == 2); }
  OtString String() const {
    OtString string(codeSet_, language_);
    if (width_ == 2) {
      string = reinterpret_cast<const unsigned short*>(Chars());
    } else {
      string = Chars();
    }
    string.SetCodeSetCode(codeSet_);
    string.SetLanguageCode(language_);
    return string;
  }

 private:
  void Set(const Block& block, std::size_t index, char16_t unit) const {
    char* place = static_cast<char*>(block.Data()) + index * width_;
    if (width_ == 2) {
      std::memcpy(place, &unit, 2);
    } else {
      *place = static_cast<char>(unit);
    }
  }
  TextSpan SpanOf(const Block& block, bool reversed) const {
    return TextSpan::Bounded(static_cast<const char*>(block.Data()), block.Length(), codeSet_,
                             language_, reversed);
  }

  unsigned char codeSet_, language_;
  std::size_t width_;
  Block terminated_, bounded_, turned_;
};

void Compare(const Text& a, const Text& b, unsigned short op) {
  const int plain = Sign(ot95::CompareSpansPlainly(a.Terminated(), b.Terminated(), op));
  Require(Sign(ot95::CompareSpans(a.Terminated(), b.Terminated(), op)) == plain);
  Require(Sign(ot95::CompareSpans(a.Bounded(), b.Bounded(), op)) == plain);
  Require(Sign(ot95::CompareSpans(a.Turned(), b.Turned(), op)) == plain);
  Require(Sign(ot95::CompareSpans(a.Bounded(), b.Turned(), op)) == plain);
  if (op != OT_CMP_DEFAULT) Require(Sign(a.String().Compare(b.String(), op)) == plain);
}

/// A character and its script at a time, and nothing known beforehand.
template <class Take>
void WalkOrders(const Text& text, unsigned char codeSet, unsigned char language, Take&& take) {
  OtStringIterator it(text.Chars(), codeSet, language, 1);
  while (const unsigned short order = it.GetNextOrder(1)) {
    if (!take(order, it.GetScript())) return;
  }
}

void Hash(const Text& text, unsigned char codeSet, unsigned char language) {
  std::uint32_t walked = 0;
  WalkOrders(text, codeSet, language, [&walked](unsigned short order, unsigned char script) {
    walked = walked * 9 + ot95::ComposeOrderKey(order, script);
    return true;
  });
  Require(HashString(codeSet, language, text.Chars(), -1, 0xff) == walked);
}

/// The key of a whole text holds its order words up to where the script changes.
void Key(const OtString& string, const Text& text, unsigned char codeSet, unsigned char language) {
  const OtTypeMgr manager(5);
  const Block key(kRoom);
  const unsigned long size = manager.Translate(kStringId, key.Data(), OT_FORMAT_NATIVE | 0x80,
                                               kRoom, &string, OT_FORMAT_MEMORY, 0, 1);
  std::vector<unsigned short> words;
  unsigned char script = 0;
  WalkOrders(text, codeSet, language, [&](unsigned short order, unsigned char itsScript) {
    if (words.empty()) script = itsScript;
    if (itsScript != script) return false;
    words.push_back(order);
    return true;
  });
  Require(size >= ot95::kHeaderSize + 2 * words.size());
  const char* bytes = static_cast<const char*>(key.Data()) + ot95::kHeaderSize;
  Require(words.empty() || std::memcmp(bytes, words.data(), 2 * words.size()) == 0);
}

struct SortKey {
  explicit SortKey(const OtString& string, unsigned short op) : bytes(kRoom) {
    length = OtTypeMgr(5).SortKey(kStringId, bytes.Data(), kRoom, &string, 0, op, 1,
                                  OT_FORMAT_MEMORY, status);
  }
  Block bytes;
  unsigned long length = 0;
  int status = 0;
};

void SortKeys(const OtString& a, const OtString& b, unsigned short op) {
  if ((op & OT_CMP_NO_WILDCARDS) == 0 || op == OT_CMP_DEFAULT) return;
  const SortKey left(a, op), right(b, op);
  if (left.status != 0 || right.status != 0 || left.length > kRoom || right.length > kRoom) return;
  const auto less = left.length < right.length ? left.length : right.length;
  int order = std::memcmp(left.bytes.Data(), right.bytes.Data(), less);
  if (order == 0) order = Sign(static_cast<long>(left.length) - static_cast<long>(right.length));
  int status = 0;
  const long compared =
      OtTypeMgr(5).Cmp(kStringId, 0, const_cast<OtString*>(&a), 0, const_cast<OtString*>(&b), op, 1,
                       OT_FORMAT_MEMORY, status);
  Require(Sign(order) == Sign(compared));
}

std::u16string UnitsOf(View bytes) {
  std::u16string units;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    // A zero would end the text in one way of keeping it and not in the other.
    const auto unit = static_cast<char16_t>(bytes[i] | bytes[i + 1] << 8);
    if ((unit & 0xff) != 0) units += unit;
  }
  return units;
}

}  // namespace

extern "C" OT95_EXPORT int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Start();
  Input in({data, size});
  std::uint8_t language = in.Byte();
  if (language == OT_LANG_NULL) language = 1;  // the null has no way of its own
  const std::uint16_t op = in.Word();
  constexpr std::uint8_t kCodeSets[] = {OT_CS_UNICODE, OT_CS_UNICODE, 1, 2, 0x0f, 0x12};
  const std::uint8_t codeSet = kCodeSets[in.Byte() % std::size(kCodeSets)];
  const std::size_t headLength = in.Byte() % 96U;
  const std::size_t tailLength = in.Byte() % 64U;
  const std::u16string head = UnitsOf(in.Take(headLength));
  const Text a(codeSet, language, head + UnitsOf(in.Take(tailLength)));
  const Text b(codeSet, language, head + UnitsOf(in.Rest()));
  Compare(a, b, op);
  Compare(b, a, op | OT_CMP_NO_WILDCARDS);
  Hash(a, codeSet, language);
  const OtString string = a.String();
  Key(string, a, codeSet, language);
  SortKeys(string, b.String(), op);
  return 0;
}
