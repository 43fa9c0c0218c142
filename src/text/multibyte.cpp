/// UTF-8 in its early form: sequences of up to six bytes, of whose value the low 16 bits count.
/// Surrogates are units like others; an overlong form is refused.

#include <algorithm>
#include <array>
#include <bit>
#include <memory>
#include <type_traits>

#include "ot95/text.h"
#include "text/units.h"

namespace {

using Byte = unsigned char;

/// What marks the first byte of a sequence, and the values that the sequence is for.
struct SequenceForm {
  Byte mask, mark;         ///< First bytes are those with `mark` under `mask`.
  unsigned shift;          ///< How far up in the value the first byte's bits stand.
  std::uint32_t greatest;  ///< All bits that the sequence can hold.
  std::uint32_t least;     ///< Below it a shorter sequence would do.
};

constexpr SequenceForm kForms[] = {
    {0x80, 0x00, 0, 0x7f, 0},
    {0xe0, 0xc0, 6, 0x7ff, 0x80},
    {0xf0, 0xe0, 12, 0xffff, 0x800},
    {0xf8, 0xf0, 18, 0x1fffff, 0x10000},
    {0xfc, 0xf8, 24, 0x3ffffff, 0x200000},
    {0xfe, 0xfc, 30, 0x7fffffff, 0x4000000},
};

// Eight bytes, or four units, in one word: of every byte the high bit, or 1, and so on.
constexpr std::uint64_t kHighBits = 0x8080808080808080u;
constexpr std::uint64_t kOnes = 0x0101010101010101u;
constexpr std::uint64_t kUnitOnes = 0x0001000100010001u;
constexpr std::size_t kBlock = 8;  ///< Bytes or units that the fast paths take at once.
/// Units that decoding a block may write: four pairs, of which most don't count, behind seven.
constexpr std::size_t kBlockUnits = 11;

/// The same marks in every 16-bit part of a word.
constexpr std::uint64_t InEachUnit(std::uint64_t unit) {
  return unit * kUnitOnes;
}

/// The paths that look for the first mark of a word want the first byte to be its lowest.
constexpr bool kWordsFitThisMachine = std::endian::native == std::endian::little;

/// How many bytes or units of a word, from the first, lie before the first with a mark.
constexpr std::size_t BeforeMark(std::uint64_t marks, int bitsOfOne) {
  return static_cast<std::size_t>(std::countr_zero(marks) / bitsOfOne);
}

using TwoWords [[gnu::vector_size(2 * kBlock)]] = std::uint64_t;
using SixteenBytes [[gnu::vector_size(2 * kBlock)]] = std::uint8_t;
using EightBytes [[gnu::vector_size(kBlock)]] = std::uint8_t;
using EightUnits [[gnu::vector_size(2 * kBlock)]] = std::uint16_t;

/// Puts a zero byte to each, which compilers make one instruction of.
inline void Widen(const void* bytes, void* units) {
  std::uint64_t block;
  std::memcpy(&block, bytes, sizeof block);
  const SixteenBytes narrow = reinterpret_cast<SixteenBytes>(TwoWords{block, 0});
  const SixteenBytes zeros{};
  const SixteenBytes wide = kWordsFitThisMachine
                                ? __builtin_shufflevector(narrow, zeros, 0, 16, 1, 17, 2, 18, 3, 19,
                                                          4, 20, 5, 21, 6, 22, 7, 23)
                                : __builtin_shufflevector(zeros, narrow, 0, 16, 1, 17, 2, 18, 3, 19,
                                                          4, 20, 5, 21, 6, 22, 7, 23);
  std::memcpy(units, &wide, sizeof wide);
}

inline void Narrow(const char* units, char* bytes) {
  EightUnits block;
  std::memcpy(&block, units, sizeof block);
  const EightBytes narrow = __builtin_convertvector(block, EightBytes);
  std::memcpy(bytes, &narrow, sizeof narrow);
}

/// One sequence of at most `n` bytes, n not 0. @return its bytes, or -1.
inline int DecodeOne(const Byte* s, std::size_t n, std::uint16_t& unit) {
  const std::uint32_t first = s[0];
  std::uint32_t value = first;
  std::size_t length = 1;
  for (const SequenceForm& form : kForms) {
    if ((first & form.mask) == form.mark) {
      value &= form.greatest;
      if (value < form.least) return -1;
      unit = static_cast<std::uint16_t>(value);
      return static_cast<int>(length);
    }
    if (length >= n) return -1;
    const std::uint32_t next = s[length++] ^ 0x80u;
    if ((next & 0xc0) != 0) return -1;
    value = value << 6 | next;
  }
  return -1;
}

/// The same, with the frequent short forms first.
inline int DecodeFast(const Byte* s, std::size_t n, std::uint16_t& unit) {
  const unsigned first = s[0];
  if (first < 0x80) {
    unit = static_cast<std::uint16_t>(first);
    return 1;
  }
  if (n >= 2 && first >= 0xc2 && first < 0xe0) {
    const unsigned second = s[1] ^ 0x80u;
    if (second >= 0x40) return -1;
    unit = static_cast<std::uint16_t>((first & 0x1f) << 6 | second);
    return 2;
  }
  if (n >= 3 && (first & 0xf0) == 0xe0) {
    const unsigned second = s[1] ^ 0x80u;
    const unsigned third = s[2] ^ 0x80u;
    unit = static_cast<std::uint16_t>(first << 12 | second << 6 | third);
    return (second | third) < 0x40 && unit >= 0x800 ? 3 : -1;
  }
  return DecodeOne(s, n, unit);
}

/// How far the decoding of a text went.
struct Decoded {
  std::size_t bytes = 0;
  std::size_t units = 0;
  bool bad = false;
};

enum class AtZero { kGoOn, kStop };

/// Eight bytes from `at` on. Those from `end` on, if they are fewer, are 0xff, which nothing
/// decodes. What is in memory before `end` are at least eight bytes.
inline std::uint64_t LoadBlock(const Byte* at, const Byte* end) {
  const auto rest = static_cast<std::size_t>(end - at);
  std::uint64_t word;
  if (rest >= kBlock) {
    std::memcpy(&word, at, sizeof word);
    return word;
  }
  std::memcpy(&word, end - kBlock, sizeof word);
  return word >> 8 * (kBlock - rest) | ~std::uint64_t{0} << 8 * rest;
}

/// Takes what is plain or of two-byte sequences from a block, with room for kBlockUnits.
/// @return false if neither begins here; the bytes are then decoded one by one.
template <AtZero atZero>
inline bool DecodeBlock(std::uint64_t word, std::uint16_t* out, Decoded& at) {
  std::uint64_t marks = word & kHighBits;
  if (atZero == AtZero::kStop) marks |= (word - kOnes) & ~word & kHighBits;
  if (marks == 0) {
    Widen(&word, out);
    at.bytes += kBlock;
    at.units += kBlock;
    return true;
  }
  // What is plain may be followed by pairs.
  const std::size_t plain = BeforeMark(marks, 8);
  if (plain != 0) {
    Widen(&word, out);
    out += plain;
    at.bytes += plain;
    at.units += plain;
    word >>= 8 * plain;
  }
  // Marked is a pair that doesn't look like 110xxxxx 10xxxxxx, or is an overlong form.
  const std::uint64_t pairs = word ^ InEachUnit(0x80c0);
  const std::uint64_t first = word & InEachUnit(0x1e);
  marks = (pairs & InEachUnit(0xc0e0)) | ((first - kUnitOnes) & InEachUnit(0x8000));
  const std::size_t good = marks == 0 ? 4 : BeforeMark(marks, 16);
  if (good == 0) return plain != 0;
  const std::uint64_t units = (word & InEachUnit(0x1f)) << 6 | (word >> 8 & InEachUnit(0x3f));
  std::memcpy(out, &units, sizeof units);
  at.bytes += 2 * good;
  at.units += good;
  return true;
}

/// Decodes one sequence, of which there may be room for the unit.
/// @return false at the end of what can be decoded.
template <AtZero atZero>
inline bool DecodeNext(const Byte* s, std::size_t n, std::uint16_t* out, std::size_t room,
                       Decoded& at) {
  std::uint16_t unit = 0;
  const int length = DecodeFast(s + at.bytes, n - at.bytes, unit);
  at.bad = length < 1;
  if (at.bad || (atZero == AtZero::kStop && unit == 0)) return false;
  if (at.units < room) out[at.units] = unit;
  at.bytes += static_cast<std::size_t>(length);
  ++at.units;
  return true;
}

/// Decodes from `s`, of `n` bytes, until `limit` or more bytes are read. The first `room` units go
/// to `out`, all are counted.
template <AtZero atZero>
Decoded DecodeText(const Byte* s, std::size_t n, std::size_t limit, std::uint16_t* out,
                   std::size_t room) {
  Decoded at;
  const bool inBlocks = kWordsFitThisMachine && limit >= kBlock;
  while (at.bytes < limit) {
    if (inBlocks && at.units <= room && room - at.units >= kBlockUnits &&
        DecodeBlock<atZero>(LoadBlock(s + at.bytes, s + limit), out + at.units, at)) {
      continue;
    }
    if (!DecodeNext<atZero>(s, n, out, room, at)) break;
    // Three-byte sequences follow their like.
    while (at.bytes < limit && s[at.bytes] >= 0xe0) {
      if (!DecodeNext<atZero>(s, n, out, room, at)) return at;
    }
  }
  return at;
}

/// Texts up to this size are worth a loop without preparations.
constexpr std::size_t kShortText = 64;
using ShortUnits = std::array<std::uint16_t, kShortText + kBlock>;

/// Takes a sequence of two or three bytes, and moves behind it. @return false where there is none.
[[gnu::always_inline]] inline bool DecodeMarked(const Byte*& s, const Byte* end,
                                                std::uint16_t*& out) {
  const unsigned first = s[0];
  if (end - s < 2 || first < 0xc2 || first >= 0xf0) return false;
  const unsigned second = s[1] ^ 0x80u;
  if (second >= 0x40) return false;
  unsigned unit = (first & 0x1f) << 6 | second;
  s += 2;
  if (first >= 0xe0) [[unlikely]] {
    if (s == end) return false;
    const unsigned third = *s++ ^ 0x80u;
    unit = (unit & 0x3ff) << 6 | third;
    if (third >= 0x40 || unit < 0x800) return false;
  }
  *out++ = static_cast<std::uint16_t>(unit);
  return true;
}

/// Decodes a short text of ASCII and sequences of two or three bytes. @return its units, 0 for any
/// other text.
template <AtZero atZero>
[[gnu::always_inline]] inline std::size_t DecodeShort(const Byte* s, std::size_t n,
                                                      ShortUnits& units) {
  const Byte* const end = s + n;
  std::uint16_t* out = units.data();
  if (!kWordsFitThisMachine || n < kBlock) {
    while (s < end) {
      if (*s >= 0x80) {
        if (!DecodeMarked(s, end, out)) return 0;
      } else {
        if (atZero == AtZero::kStop && *s == 0) return 0;
        *out++ = *s++;
      }
    }
    return static_cast<std::size_t>(out - units.data());
  }
  while (s < end) {
    const std::uint64_t word = LoadBlock(s, end);
    std::uint64_t marks = word & kHighBits;
    if (atZero == AtZero::kStop) marks |= (word - kOnes) & ~word & kHighBits;
    Widen(&word, out);
    if (marks == 0) {
      s += kBlock;
      out += kBlock;
      continue;
    }
    const std::size_t plain = BeforeMark(marks, 8);
    s += plain;
    out += plain;
    if (s == end) break;
    do {  // what follows such a letter is often one, too
      if (!DecodeMarked(s, end, out)) return 0;
    } while (s < end && *s >= 0x80);
  }
  return static_cast<std::size_t>(out - units.data());
}

/// Bytes of one unit: 1 to 3.
constexpr std::size_t EncodedLength(std::uint16_t unit) {
  return unit < 0x80 ? 1 : unit < 0x800 ? 2 : 3;
}

inline std::size_t EncodeOne(char* out, std::uint16_t unit) {
  const auto tail = [](unsigned bits) { return static_cast<char>(0x80 | (bits & 0x3f)); };
  if (unit < 0x80) {
    out[0] = static_cast<char>(unit);
    return 1;
  }
  if (unit < 0x800) {
    out[0] = static_cast<char>(0xc0 | unit >> 6);
    out[1] = tail(unit);
    return 2;
  }
  out[0] = static_cast<char>(0xe0 | unit >> 12);
  out[1] = tail(unit >> 6u);
  out[2] = tail(unit);
  return 3;
}

/// Takes eight ASCII units over to `out`; false if they aren't.
inline bool EncodeBlock(char* out, const char* units) {
  std::uint64_t words[2];
  std::memcpy(words, units, sizeof words);
  if (((words[0] | words[1]) & InEachUnit(0xff80)) != 0) return false;
  Narrow(units, out);
  return true;
}

/// A string's characters in Unicode: its own, or those of a mapped copy.
class UnicodeForm {
 public:
  explicit UnicodeForm(const OtString& source) : length_(ot95::TextAccess::Length(source)) {
    text_ = source.StrGet();
    if (source.GetCodeSetCode() == OT_CS_UNICODE) return;
    mapped_.reset(ot95::NewText(2 * length_ + 2));
    if (mapped_ == nullptr) {
      length_ = 0;
      return;
    }
    length_ = ot95::ConvertUnits(text_, source.GetCodeSetCode(), false, length_, mapped_.get(),
                                 OT_CS_UNICODE);
    text_ = mapped_.get();
  }

  std::size_t Length() const { return length_; }
  const char* Place(std::size_t at) const { return text_ + 2 * at; }
  std::uint16_t operator[](std::size_t at) const { return ot95::LoadWide(Place(at)); }

  /// Bytes that the first `count` characters need.
  std::size_t EncodedLength(std::size_t count) const {
    std::size_t bytes = 0;
    for (std::size_t i = 0; i < count; ++i) bytes += ::EncodedLength((*this)[i]);
    return bytes;
  }

 private:
  std::size_t length_;
  const char* text_;
  std::unique_ptr<char[]> mapped_;
};

/// Encodes as many whole characters as fit. @return their number.
std::size_t Encode(const UnicodeForm& source, char* out, std::size_t room, std::size_t& bytes) {
  std::size_t at = 0;
  bytes = 0;
  while (at < source.Length()) {
    if (source.Length() - at >= kBlock && room - bytes >= kBlock &&
        EncodeBlock(out + bytes, source.Place(at))) {
      at += kBlock;
      bytes += kBlock;
      continue;
    }
    // Up to the next block, by which the text may be plain again.
    for (std::size_t i = 0; i < kBlock && at < source.Length(); ++i, ++at) {
      const std::uint16_t unit = source[at];
      if (room - bytes < EncodedLength(unit)) return at;
      bytes += EncodeOne(out + bytes, unit);
    }
  }
  return at;
}

bool IsAscii(const char* text, std::size_t length) {
  std::size_t at = 0;
  for (; length - at >= kBlock; at += kBlock) {
    std::uint64_t block;
    std::memcpy(&block, text + at, sizeof block);
    if ((block & kHighBits) != 0) return false;
  }
  for (; at < length; ++at) {
    if ((text[at] & 0x80) != 0) return false;
  }
  return true;
}

/// Calls `take` with the place of every block of a text until it answers false. The text has at
/// least one block; the last may overlap the one before. @return whether all were taken.
template <std::size_t kSize, class Take>
inline bool ForBlocks(std::size_t length, Take take) {
  const std::size_t last = length - kSize;
  for (std::size_t at = 0; at < last; at += kSize) {
    if (!take(at)) return false;
  }
  return take(last);
}

/// Whether a block is ASCII without zeros.
template <std::size_t kSize>
inline bool IsPlain(const char* block) {
  using Word = std::conditional_t<kSize == 4, std::uint32_t, std::uint64_t>;
  Word marks = 0;
#pragma GCC unroll 4
  for (std::size_t at = 0; at < kSize; at += sizeof(Word)) {
    Word word;
    std::memcpy(&word, block + at, sizeof word);
    // Without a high bit, taking 1 away sets one under zeros only, or borrows from one.
    marks |= word | (word - static_cast<Word>(kOnes));
  }
  return (marks & static_cast<Word>(kHighBits)) == 0;
}

template <std::size_t kSize>
inline void WidenBlock(const char* block, char* units) {
  if constexpr (kSize < kBlock) {
    std::uint64_t word = 0;
    std::memcpy(&word, block, kSize);
    std::uint16_t wide[kBlock];
    Widen(&word, wide);
    std::memcpy(units, wide, 2 * kSize);
  } else {
#pragma GCC unroll 4
    for (std::size_t at = 0; at < kSize; at += kBlock) Widen(block + at, units + 2 * at);
  }
}

/// Widens a text of plain blocks, which needs no decoding, to where `target` answers: nowhere, or
/// exactly as many units. @return false for any other text.
template <std::size_t kSize, class Target>
[[gnu::always_inline]] inline bool WidenBlocks(const char* s, std::size_t size, Target&& target) {
  if (!ForBlocks<kSize>(size, [s](std::size_t at) { return IsPlain<kSize>(s + at); })) return false;
  char* const units = target();
  if (units == nullptr) return true;
  return ForBlocks<kSize>(size, [=](std::size_t at) {
    WidenBlock<kSize>(s + at, units + 2 * at);
    return true;
  });
}
template <class Target>
[[gnu::always_inline]] inline bool WidenPlain(const char* s, std::size_t size, Target&& target) {
  if (size >= 32) return WidenBlocks<32>(s, size, target);
  if (size >= 8) return WidenBlocks<8>(s, size, target);
  return size >= 4 && WidenBlocks<4>(s, size, target);
}

/// Memory for a text of `count` units, with the terminator; null after a failure.
char* MakeUnits(std::size_t count) {
  const std::size_t bytes = 2 * count + 2;
  ot95::CheckTextSize(bytes);
  char* const text = ot95::NewText(bytes);
  if (text != nullptr) ot95::StoreWide(text + bytes - 2, 0);
  return text;
}

/// Gives `target` a text from MakeUnits. It keeps its language.
void TakeUnits(OtString& target, char* text, std::size_t count) {
  ot95::TextAccess::Adopt(target, text, 2 * count + 2);
  ot95::TextAccess::SetLabels(target, OT_CS_UNICODE, target.GetLanguageCode());
}

/// Code sets up to this one hold ASCII at its own values.
constexpr Byte kLastAsciiCodeSet = 0x1a;
/// The same for OtMBSLength, which trusts fewer.
constexpr Byte kLastMeasuredCodeSet = 5;
/// Bytes of a text that are decoded at once where the units go elsewhere.
constexpr std::size_t kPieceBytes = 256;
/// Where OtMBS2OtString gives up.
constexpr std::size_t kMaxDecodedBytes = 32768;

std::size_t CountOf(long n) {
  return n > 0 ? static_cast<std::size_t>(n) : 0;
}

}  // namespace

int OtMultiByte2WChar(unsigned short* out, char* s, unsigned int n) {
  if (s == nullptr) return 0;
  if (n == 0) return -1;
  std::uint16_t unit = 0;
  const int length = DecodeOne(reinterpret_cast<const Byte*>(s), n, unit);
  if (length > 0 && out != nullptr) *out = unit;
  return length;
}

int OtWChar2MultiByte(char* out, unsigned short wc) {
  return out != nullptr ? static_cast<int>(EncodeOne(out, wc)) : 0;
}

int OtMultiByteStr2WCharStr(unsigned short* out, int outMax, char* s, int n) {
  if (s == nullptr) return 0;
  const std::size_t size = CountOf(n);
  const std::size_t room = out != nullptr ? CountOf(outMax) : 0;
  if (size <= room && WidenPlain(s, size, [out] { return reinterpret_cast<char*>(out); })) {
    return static_cast<int>(size);
  }
  if (size <= kShortText) {
    ShortUnits nearby;
    const std::size_t count =
        DecodeShort<AtZero::kGoOn>(reinterpret_cast<const Byte*>(s), size, nearby);
    if (count != 0) {
      if (room != 0) std::memcpy(out, nearby.data(), 2 * std::min(count, room));
      return static_cast<int>(count);
    }
  }
  // Blocks write beyond what they decode, which a caller's buffer may have other use for.
  std::array<std::uint16_t, kPieceBytes + kBlockUnits> piece;
  std::size_t bytes = 0;
  std::size_t units = 0;
  while (bytes < size) {
    const Decoded next =
        DecodeText<AtZero::kGoOn>(reinterpret_cast<const Byte*>(s) + bytes, size - bytes,
                                  std::min(size - bytes, kPieceBytes), piece.data(), piece.size());
    if (units < room) {
      std::memcpy(out + units, piece.data(), 2 * std::min(next.units, room - units));
    }
    if (next.bad) return -1;
    bytes += next.bytes;
    units += next.units;
  }
  return static_cast<int>(units);
}

long OtMultiByteString2OtString(const OtString& source, OtString& target) {
  return OtMBS2OtString(source.StrGet(), target, source.Len());
}

long OtMultiByteString2OtString(const char* s, OtString& target, long n) {
  return OtMBS2OtString(s, target, n);
}

long OtMBS2OtString(const char* s, OtString& target, long n) {
  const std::size_t size = s != nullptr ? CountOf(n) : 0;
  char* plain = nullptr;
  if (size < kMaxDecodedBytes &&
      WidenPlain(s, size, [&plain, size] { return plain = MakeUnits(size); })) {
    TakeUnits(target, plain, size);
    return static_cast<long>(size);
  }
  if (size <= kShortText) {
    ShortUnits nearby;
    const std::size_t count =
        DecodeShort<AtZero::kStop>(reinterpret_cast<const Byte*>(s), size, nearby);
    if (count != 0) {
      char* const text = MakeUnits(count);
      if (text != nullptr) std::memcpy(text, nearby.data(), 2 * count);
      TakeUnits(target, text, count);
      return static_cast<long>(size);
    }
  }
  const std::size_t limit = std::min(size, kMaxDecodedBytes);
  const std::size_t room =
      limit + kBlockUnits;  // so that the last units are decoded as a block, too
  std::array<std::uint16_t, 256> nearby;
  std::unique_ptr<std::uint16_t[]> large;
  std::uint16_t* units = nearby.data();
  if (room > nearby.size()) {
    large.reset(ot95::Noted(new (std::nothrow) std::uint16_t[room]));
    if (large == nullptr) return -1;
    units = large.get();
  }
  // The bytes may be the target's own: they are needed until all is decoded.
  const Decoded all =
      DecodeText<AtZero::kStop>(reinterpret_cast<const Byte*>(s), size, limit, units, room);
  char* const text = all.units != 0 ? MakeUnits(all.units) : nullptr;
  if (text != nullptr) std::memcpy(text, units, 2 * all.units);
  TakeUnits(target, text, all.units);
  if (all.bad || (s == nullptr && n > 0)) return -1;
  return all.bytes >= kMaxDecodedBytes ? -2 : static_cast<long>(all.bytes);
}

/// OtString2OtMBS of a text of ASCII, which tells how much room it would have needed.
static long CopyAscii(const char* text, std::size_t length, char* out, std::size_t room) {
  if (room != 0) std::memcpy(out, text, std::min(length, room));
  if (length > room) return -static_cast<long>(length);
  if (length < room) std::memset(out + length, 0, room - length);
  return static_cast<long>(length);
}

long OtString2OtMBS(const OtString& source, char* out, long outMax) {
  const std::size_t room = out != nullptr ? CountOf(outMax) : 0;
  if (source.GetCodeSetCode() <= kLastAsciiCodeSet) {
    const std::size_t length = ot95::TextAccess::Length(source);
    if (IsAscii(source.StrGet(), length)) return CopyAscii(source.StrGet(), length, out, room);
  }
  const UnicodeForm text(source);
  std::size_t bytes;
  const bool whole = Encode(text, out, room, bytes) == text.Length();
  if (whole && bytes < room) out[bytes] = 0;
  return whole ? static_cast<long>(bytes) : -static_cast<long>(bytes);
}

long OtString2MultiByteString(const OtString& source, char*& out, long& outLen) {
  const bool given = outLen > 0 && out != nullptr;
  if (given) {
    const long length = OtString2OtMBS(source, out, outLen);
    if (length > 0) return length;
  }
  const UnicodeForm text(source);
  const std::size_t total = text.EncodedLength(text.Length());
  if (!given) {
    out = ot95::Noted(new (std::nothrow) char[total + 1]);
    outLen = out != nullptr ? static_cast<long>(total) + 1 : 0;
    if (out == nullptr) return -1;
  }
  if (CountOf(outLen) <= total) {
    outLen = static_cast<long>(total);
    return -1;
  }
  std::size_t bytes;
  Encode(text, out, total, bytes);
  out[bytes] = 0;
  return static_cast<long>(bytes);
}

long OtMBSLength(const OtString& source, unsigned short maxChars) {
  if (maxChars == 0) return 0;
  if (source.GetCodeSetCode() <= kLastMeasuredCodeSet) {
    const std::size_t length = ot95::TextAccess::Length(source);
    if (IsAscii(source.StrGet(), length)) return static_cast<long>(length);
  }
  const UnicodeForm text(source);
  return static_cast<long>(text.EncodedLength(std::min<std::size_t>(maxChars, text.Length())));
}
