/// Hashes of strings.

#include "kit/walks.h"
#include "text/collation/finished.h"
#include "text/rows/row.h"
#include "text/rows/stored.h"

namespace ot95 {
namespace {

constexpr std::uint32_t kNullHash = 0xfefe7575;

/// @param length orders to take, however many there are; negative: all.
std::uint32_t HashText(const TextSpan& text, long length) {
  if (text.IsNullValue()) return kNullHash;
  const bool all = length < 0;
  std::uint32_t hash = 0;
  if (text.codeSet == 0) {
    const char* place = text.text;
    for (long i = 0; all || i < length; ++i) {
      const unsigned short byte = text.UnitAt(place);
      if (byte != 0) {
        ++place;
      } else if (all) {
        break;
      }
      hash = hash * 9 + byte;
    }
    return hash;
  }
  const auto take = [&hash](std::uint32_t key) { hash = hash * 9 + (key & kKeyBits); };
  if (all && TakeKeys(text, take)) return hash;
  hash = 0;
  OrderWalk walk(text);
  for (long i = 0; all || i < length; ++i) {
    const std::uint32_t key = walk.NextKey(true);
    if (key == 0 && all) break;
    take(key);
  }
  return hash;
}

/// @param mask of what counts of each unit.
std::uint32_t HashUnits(const OtString& text, std::uint32_t mask) {
  const unsigned char codeSet = text.GetCodeSetCode();
  const std::size_t length = TextAccess::Length(text);
  const char* place = text.StrGet();
  std::uint32_t hash = 0;
  if (codeSet == OT_CS_UNICODE) {
    for (std::size_t i = 0; i < length; ++i) hash = hash * 9 + (LoadWide(place + 2 * i) & mask);
    return hash;
  }
  for (std::size_t i = 0; i < length * CharWidth(codeSet); ++i) {
    const auto byte = static_cast<std::int32_t>(static_cast<signed char>(place[i]));
    hash = hash * 9 + (static_cast<std::uint32_t>(byte) & mask);
  }
  return hash;
}

}  // namespace

template <bool legacy>
unsigned long HashStrings(unsigned char format, unsigned long length, void* value,
                          unsigned long count, int& status) {
  status = 0;
  std::uint32_t folded = 0;
  StringCursor cursor(value, length, format, legacy);
  for (unsigned long i = 0; i < count && status == 0; ++i) {
    StoredText text;
    if (!cursor.Unpack(text)) {
      status = OT_ERR_END_OF_DATA;
      break;
    }
    if (text.unknowable) {
      status = OT_ERR_NOT_SUPPORTED;
      return 0;
    }
    if (text.text.codeSet == OT_CS_ORDER) {
      text.text.language &= static_cast<unsigned char>(~kMixedScripts);
    }
    if (text.present) {
      folded ^= HashText(text.text, text.truncated ? static_cast<long>(text.chars) : -1);
    }
    if (i + 1 < count && !cursor.Advance()) status = OT_ERR_END_OF_DATA;
  }
  return FinishHash(folded);
}

template unsigned long HashStrings<false>(unsigned char, unsigned long, void*, unsigned long, int&);
template unsigned long HashStrings<true>(unsigned char, unsigned long, void*, unsigned long, int&);

}  // namespace ot95

namespace ot95 {
namespace {

[[gnu::noinline]] unsigned long HashAnyText(unsigned char codeSet, unsigned char language,
                                            const char* text, long length, unsigned char format) {
  if (codeSet == OT_CS_DEFAULT) codeSet = OtLanguageContext::GetDefault8CodeSet();
  const bool reversed = format != 0xff && IsReversed(format) && codeSet != OT_CS_ORDER;
  return HashText(TextSpan::Terminated(text, codeSet, language, reversed), length);
}

}  // namespace
}  // namespace ot95

/// Most are asked for of whole Unicode texts in the machine's order, which need no more than keys.
unsigned long HashString(unsigned char codeSet, unsigned char language, const char* text,
                         long length, unsigned char format) {
  const bool reversed = (format != 0xff) & ot95::IsReversed(format);
  const ot95::FinishedKeys* keys = ot95::FinishedKeys::Known(language);
  if (codeSet == OT_CS_UNICODE && keys != nullptr && text != nullptr && length < 0 && !reversed) {
    std::uint32_t hash = 0;
    const auto span = ot95::TextSpan::Terminated(text, codeSet, language);
    const bool whole = ot95::TakeKeysOf<std::uint16_t, false, false>(
        {keys}, span, [&](std::uint32_t key) { hash = hash * 9 + (key & ot95::kKeyBits); });
    if (whole) return hash;
  }
  return ot95::HashAnyText(codeSet, language, text, length, format);
}

unsigned long HashOtString(const OtString& text) {
  return ot95::HashUnits(text, 0xffffffff);
}

unsigned long HashOtString7(const OtString& text) {
  return ot95::HashUnits(text, 0x7f);
}
