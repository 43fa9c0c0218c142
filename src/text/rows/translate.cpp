/// Moves of strings between memory, their stored forms, and keys.

#include <atomic>
#include <bit>
#include <memory>

#include "kit/walks.h"
#include "ot95/config.h"
#include "ot95/fault.h"
#include "text/rows/row.h"
#include "text/rows/stored.h"

namespace ot95 {
namespace {

/// One side of a move.
struct Place {
  unsigned char* bytes;
  unsigned char format;
  std::size_t length;

  bool IsMemory() const { return HasMemoryBit(format); }
  void Clear() const {
    if (length != 0) std::memset(bytes, 0, length);
  }
};

unsigned long BuildOneKey(const Place& target, const OtString& string, unsigned char codeSet) {
  if (target.length < kHeaderSize) return 0;
  TextSpan text = TextSpan::Of(string);
  text.codeSet = codeSet;
  return BuildKey(target.bytes, target.length, target.format, {text, false});
}

/// Keys of as many strings as there is room for. The first gets one even if its header fills the
/// target.
unsigned long BuildKeys(Place target, const Place& source, unsigned long count) {
  const unsigned char form = source.IsMemory() ? +OT_FORMAT_MEMORY : FormOf(source.format);
  StringCursor cursor(source.bytes, source.IsMemory() ? 0 : source.length, form, false);
  unsigned long total = 0;
  for (unsigned long i = 0; i < count; ++i) {
    StoredText text;
    if (target.length < kHeaderSize + (i != 0) || (i != 0 && !cursor.Advance()) ||
        !cursor.Unpack(text)) {
      break;
    }
    text.text.codeSet = TargetCodeSet(text.text.codeSet, target.format);
    const std::size_t size =
        BuildKey(target.bytes, target.length, target.format, {text.text, text.truncated});
    target.bytes += size;
    target.length -= size;
    total += size;
  }
  return total;
}

/// A record of the old form becomes a current one. The result counts one byte less than are
/// written when all fits: comparison knows a record that lacks its last byte.
unsigned long OldFormToRecord(const Place& target, const Place& source, unsigned char codeSet) {
  target.Clear();
  if (target.length < kHeaderSize) return 0;
  const std::size_t texts = LoadLength(source.bytes, source.format);
  const std::size_t result = std::min(source.length + 2, target.length);
  StoreLength(target.bytes, texts + 3, target.format);
  target.bytes[2] = codeSet;
  target.bytes[3] = 0;
  std::memcpy(target.bytes + kHeaderSize, source.bytes + 2, result - kHeaderSize);
  if (source.length + 3 <= target.length) target.bytes[kHeaderSize + texts] = 0xff;
  return result;
}

/// Whether Unicode text loses its high bytes where a code set of one byte is asked for; the
/// configuration can forbid it, and is asked once.
bool NarrowsUnicode() {
  static std::atomic<int> oldOrder{-1};
  int known = oldOrder.load(std::memory_order_relaxed);
  if (known < 0) {
    unsigned short value = 0;
    const OtConfig* config = DefaultConfig(nullptr);
    if (config != nullptr) config->GetValue("oldIndexUnicodeOrder", &value, nullptr);
    known = value;
    oldOrder.store(known, std::memory_order_relaxed);
  }
  return known == 0;
}

/// A Unicode record with the low bytes of its characters alone. Pages rely on its language byte
/// being the code set once more.
unsigned long NarrowRecord(const Place& target, const Place& record, unsigned char codeSet) {
  const std::size_t length = LoadLength(record.bytes, record.format);
  const std::size_t count = length < kHeaderSize ? 0 : (length - kHeaderSize) / 2;
  const std::size_t whole = kHeaderSize + count + kTerminatorSize;
  if (whole < target.length) target.Clear();
  if (target.length < kHeaderSize) return 0;
  StoreLength(target.bytes, kHeaderSize + count, target.format);
  target.bytes[2] = codeSet;
  target.bytes[3] = codeSet;
  const std::size_t fitting = std::min(count, target.length - kHeaderSize);
  const bool lowFirst = (std::endian::native == std::endian::little) != IsReversed(record.format);
  const std::size_t low = lowFirst ? 0 : 1;
  for (std::size_t i = 0; i < fitting; ++i) {
    const std::size_t at = kHeaderSize + 2 * i;
    target.bytes[kHeaderSize + i] = at + 2 <= record.length ? record.bytes[at + low] : 0;
  }
  if (whole <= target.length) {
    target.bytes[whole - 2] = 0;
    target.bytes[whole - 1] = 0xff;
  } else if (whole - 1 == target.length) {
    target.bytes[whole - 2] = 0;
  }
  return std::min(whole, target.length);
}

unsigned long MoveRecord(const Place& target, const Place& record, unsigned char codeSet) {
  if (record.length < kHeaderSize) return 0;
  if (record.bytes[2] == OT_CS_UNICODE && !IsWide(codeSet) && NarrowsUnicode()) {
    return NarrowRecord(target, record, codeSet);
  }
  const unsigned long moved = MoveStored(target.bytes, target.length, record.bytes, record.length);
  if (moved > 2) target.bytes[2] = codeSet;
  return moved < kHeaderSize ? 0 : moved;
}

unsigned long MoveFromMemory(const Place& target, const Place& source, unsigned char codeSet,
                             unsigned long count) {
  const unsigned char form = FormOf(target.format);
  const std::size_t size = StringSizeGet(source.bytes, OT_FORMAT_MEMORY, form, count);
  const std::unique_ptr<unsigned char[]> record(Noted(new (std::nothrow) unsigned char[size]));
  if (record == nullptr) return 0;
  StringStore(record.get(), source.bytes, form, count);
  return MoveRecord(target, {record.get(), form, size}, codeSet);
}

unsigned long MoveStoredStrings(const Place& target, const Place& source, unsigned long count) {
  if ((target.format & kStoreKey) == 0 && FormOf(target.format) != FormOf(source.format)) {
    OTDB_assert("format combination not supported", "ottypes", 1530);
    return 0;
  }
  if (source.length < 2) return 0;
  const std::size_t length = LoadLength(source.bytes, source.format);
  const bool oldForm = source.length >= length + 2 && IsOldForm(source.bytes, length);
  if (!oldForm && source.length < kHeaderSize) return 0;
  const unsigned char codeSet = TargetCodeSet(oldForm ? 0 : source.bytes[2], target.format);
  if ((target.format & kStoreKey) != 0 && codeSet != 0 && codeSet != OT_CS_ORDER) {
    return BuildKeys(target, source, count);
  }
  return oldForm ? OldFormToRecord(target, source, codeSet) : MoveRecord(target, source, codeSet);
}

unsigned long StoreStrings(const Place& target, const Place& source, unsigned long count) {
  if ((target.format & kStoreKey) == 0) {
    target.Clear();
    return StringStore(target.bytes, source.bytes, FormOf(target.format), count);
  }
  if (count == 0) return 0;
  const auto* strings = reinterpret_cast<const OtString*>(source.bytes);
  const unsigned char codeSet = TargetCodeSet(strings->GetCodeSetCode(), target.format);
  if (codeSet != 0 && codeSet != OT_CS_ORDER) {
    return count == 1 ? BuildOneKey(target, *strings, codeSet) : BuildKeys(target, source, count);
  }
  return MoveFromMemory(target, source, codeSet, count);
}

/// To memory, from memory or from stored strings.
unsigned long MoveToMemory(void* target, const Place& source, unsigned long count) {
  if (source.IsMemory()) {
    AssignValues<OtString>(target, source.bytes, count, 0);
    return count * sizeof(OtString);
  }
  bool keys = (source.format & kStoreKey) != 0;
  if (keys && count <= 1 && source.length >= 2) {
    // A single complete key is a record like others.
    keys = source.length < std::size_t{LoadLength(source.bytes, source.format)} + 2;
  }
  return LoadStrings(target, source.bytes, source.length, source.format, count, keys);
}

/// A stored record of either form becomes an old one.
unsigned long MoveToOldForm(const Place& target, const Place& source) {
  if (source.length < 2 || target.length < 2) return 0;
  std::size_t length = LoadLength(source.bytes, source.format);
  std::size_t dropped = 0;
  std::size_t available = source.length;
  if (source.length >= length + 2 && source.bytes[length + 1] == 0xff) {
    dropped = std::min<std::size_t>(2, available - 2);
    length = length < 3 ? 0 : length - 3;
    available -= std::min<std::size_t>(3, available - 2);
  }
  const std::size_t result = std::min(available, target.length);
  if (result < target.length) target.Clear();
  StoreLength(target.bytes, length, target.format);
  std::memcpy(target.bytes + 2, source.bytes + 2 + dropped, result - 2);
  return result;
}

}  // namespace

unsigned long TranslateStrings(void* target, unsigned char targetFormat, unsigned long targetLength,
                               void* source, unsigned char sourceFormat, unsigned long sourceLength,
                               unsigned long count) {
  constexpr unsigned kMemory = OT_FORMAT_MEMORY;
  constexpr unsigned kKeyForm = kStoreKey | kStoreRaw | kMemory;
  if (count == 1 && (targetFormat & kKeyForm) == kStoreKey && (sourceFormat & kMemory) != 0) {
    const auto& string = *static_cast<const OtString*>(source);
    auto* const key = static_cast<unsigned char*>(target);
    const std::size_t size = BuildPlainKey(key, targetLength, targetFormat, string);
    if (size != 0) return size;
  }
  const Place to{static_cast<unsigned char*>(target), targetFormat, targetLength};
  const Place from{static_cast<unsigned char*>(source), sourceFormat, sourceLength};
  if (to.IsMemory()) return MoveToMemory(target, from, count);
  return from.IsMemory() ? StoreStrings(to, from, count) : MoveStoredStrings(to, from, count);
}

unsigned long TranslateLegacyStrings(void* target, unsigned char targetFormat,
                                     unsigned long targetLength, void* source,
                                     unsigned char sourceFormat, unsigned long sourceLength,
                                     unsigned long count) {
  const Place to{static_cast<unsigned char*>(target), targetFormat, targetLength};
  const Place from{static_cast<unsigned char*>(source), sourceFormat, sourceLength};
  if (to.IsMemory() && from.IsMemory()) return MoveToMemory(target, from, count);
  if (to.IsMemory()) {
    return LoadStrings(target, source, sourceLength, sourceFormat, count, false);
  }
  if (!from.IsMemory()) return MoveToOldForm(to, from);
  to.Clear();
  return LegacyStringStore(target, source, FormOf(targetFormat), count);
}

}  // namespace ot95
