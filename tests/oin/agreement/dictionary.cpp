// Word lists that ICU brings along.

#include "dictionary.h"

#include <unicode/bytestrie.h>
#include <unicode/udata.h>
#include <unicode/unistr.h>

#include <cstdint>
#include <cstdio>
#include <memory>

namespace {

struct CloseData {
  void operator()(UDataMemory* data) const { udata_close(data); }
};

// The head of a dictionary: where its words begin, what kind they are of, and the character that
// is byte 0 in a dictionary of bytes.
enum Head { kWordsAt = 0, kKind = 4, kOffset = 5 };
constexpr std::int32_t kKindBits = 7;
constexpr std::int32_t kOfBytes = 0;
constexpr UChar32 kOffsetBits = 0x1fffff;

// Joiners, which are in no block of letters.
UChar32 CharacterOf(unsigned char byte, std::int32_t offset) {
  if (byte >= 0xfe) return byte == 0xff ? 0x200d : 0x200c;
  return (offset & kOffsetBits) + byte;
}

}  // namespace

bool PrintDictionary(const std::string& name) {
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<UDataMemory, CloseData> data(
      udata_open(U_ICUDATA_NAME "-brkitr", "dict", name.c_str(), &error));
  if (U_FAILURE(error)) return false;
  const auto* head = static_cast<const std::int32_t*>(udata_getMemory(data.get()));
  if ((head[kKind] & kKindBits) != kOfBytes) return false;
  const char* words = reinterpret_cast<const char*>(head) + head[kWordsAt];
  icu::BytesTrie::Iterator iterator(words, 0, error);
  while (iterator.next(error)) {
    icu::UnicodeString word;
    const icu::StringPiece bytes = iterator.getString();
    for (int i = 0; i < bytes.length(); ++i) {
      word.append(CharacterOf(static_cast<unsigned char>(bytes.data()[i]), head[kOffset]));
    }
    std::string text;
    std::puts(word.toUTF8String(text).c_str());
  }
  return U_SUCCESS(error) != 0;
}
