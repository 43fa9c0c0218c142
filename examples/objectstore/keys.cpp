// Index keys: how they are made, ordered and read.
#include "keys.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "scanlimits.h"
#include "value.h"

namespace otdb {
namespace {

constexpr unsigned char kKeyBit = 0x80;
constexpr std::size_t kTypes = 41;

// The store's callback has no argument for what it compares, so there is one for each type. It
// asks the row itself, as it is called at every step down a tree.
template <char type, unsigned char form>
int Compare(const MDB_val* key1, const MDB_val* key2) {
  const OtTypeDescriptor& row = *CurrentFactory[static_cast<int>(type)];
  const auto format = static_cast<unsigned char>(row.isFixed != 0 ? form : form | kKeyBit);
  int status = 0;
  const long sign = row.Compare(format, key1->mv_size, key1->mv_data, key2->mv_size, key2->mv_data,
                                OT_CMP_NO_WILDCARDS, 1, status);
  return (sign > 0) - (sign < 0);
}

template <unsigned char form, std::size_t... types>
constexpr std::array<MDB_cmp_func*, kTypes> Comparers(std::index_sequence<types...>) {
  return {Compare<static_cast<char>(types), form>...};
}

// A text's key is its length in two bytes, a mark, the script, and order words. The primary
// difference of a letter stands in some of its bits.
constexpr std::size_t kTextHead = 4;
constexpr std::size_t kWord = 2;
constexpr unsigned kLetter = 0x4000, kBeyondLetters = 0x8000, kPrimary = 0x407f;

unsigned PrimaryAt(View key, std::size_t at, unsigned char form) {
  const bool bigEndian = form == OT_FORMAT_BIG_ENDIAN;
  const unsigned high = key[at + !bigEndian], low = key[at + bigEndian];
  const unsigned order = high << 8 | low;
  return order >= kLetter && order < kBeyondLetters ? order & kPrimary : order;
}

}  // namespace

unsigned char KeyFormat(char type, unsigned char form) {
  return Types().IsFixed(type) ? form : static_cast<unsigned char>(form | kKeyBit);
}

std::optional<Head> HeadOf(const Member& member, View stored, unsigned char form) {
  if (stored.empty()) return {};  // of a damaged record
  unsigned char bytes[sizeof(std::uint64_t)] = {};
  int status = 0;
  Types().SortKey(member.type, bytes, sizeof bytes, stored.data(), stored.size(),
                  OT_CMP_NO_WILDCARDS, member.count, form, status);
  if (status != 0 && status != OT_ERR_END_OF_DATA) return {};
  Head head{0, status == 0};
  for (const unsigned char byte : bytes) head.number = head.number << 8 | byte;
  return head;
}

int CompareKeys(char type, View key1, View key2, const KeyKind& kind) {
  if (kind.byteOrder) {
    const int sign = std::memcmp(key1.data(), key2.data(), std::min(key1.size(), key2.size()));
    if (sign != 0 || key1.size() == key2.size()) return sign;
    return key1.size() < key2.size() ? -1 : 1;
  }
  int status = 0;
  const long sign = Types().Cmp(type, key1.size(), Place(key1), key2.size(), Place(key2),
                                OT_CMP_NO_WILDCARDS, 1, KeyFormat(type, kind.form), status);
  return (sign > 0) - (sign < 0);
}

bool IsBehind(char type, View key, View upper, const KeyKind& kind) {
  const int sign = CompareKeys(type, key, upper, kind);
  return kind.byteOrder ? sign >= 0 : sign > 0;
}

bool IsWhole(char type, View key, const KeyKind& kind) {
  if (kind.byteOrder || Types().IsFixed(type)) return true;
  int status = 0;
  Types().Cmp(type, key.size(), Place(key), key.size(), Place(key), OT_CMP_NO_WILDCARDS, 1,
              KeyFormat(type, kind.form), status);
  return status == 0 && key.size() < OtINDEX_MAX_KEYLEN;
}

std::size_t CommonStart(const Member& member, View key1, View key2, const KeyKind& kind) {
  const std::size_t length = std::min(key1.size(), key2.size());
  if (kind.byteOrder || !member.IsText()) {
    const auto end = key1.begin() + static_cast<std::ptrdiff_t>(length);
    return static_cast<std::size_t>(std::mismatch(key1.begin(), end, key2.begin()).first -
                                    key1.begin());
  }
  if (length < kTextHead || key1[kTextHead - 1] != key2[kTextHead - 1]) return 0;
  std::size_t common = 1;  // the script
  for (std::size_t at = kTextHead; at + kWord <= length; at += kWord, ++common) {
    if (PrimaryAt(key1, at, kind.form) != PrimaryAt(key2, at, kind.form)) break;
  }
  return common;
}

MDB_cmp_func* KeyComparer(char type, const KeyKind& kind) {
  if (kind.byteOrder) return nullptr;
  constexpr auto all = std::make_index_sequence<kTypes>();
  static constexpr auto native = Comparers<OT_FORMAT_NATIVE>(all);
  static constexpr auto bigEndian = Comparers<OT_FORMAT_BIG_ENDIAN>(all);
  return (kind.form == OT_FORMAT_NATIVE ? native : bigEndian)[static_cast<std::size_t>(type)];
}

namespace {

// The few values without a place in an order, none of which an import makes, are filed as null.
Bytes SortKeyOf(const Member& member, View stored, unsigned char form) {
  Bytes key(OtINDEX_MAX_KEYLEN);
  int status = 0;
  const unsigned long length = Types().SortKey(
      member.type, key.data(), static_cast<unsigned long>(key.size()), stored.data(),
      static_cast<unsigned long>(stored.size()), OT_CMP_NO_WILDCARDS, 1, form, status);
  key.resize(std::clamp<std::size_t>(length, 1, key.size()));
  return key;
}

}  // namespace

Bytes KeyOf(const Member& member, View stored, const KeyKind& kind) {
  if (kind.byteOrder) return SortKeyOf(member, stored, kind.form);
  Bytes key(OtINDEX_MAX_KEYLEN);
  const unsigned long length =
      Types().Translate(member.type, key.data(), kind.form | kKeyBit, key.size(), Place(stored),
                        kind.form, stored.size(), 1);
  key.resize(std::min<std::size_t>(length, key.size()));
  return key;
}

bool CanBeIndexed(const Member& member) {
  if (member.count != 1) return false;
  const Bytes stored = Value(member).Stored(OT_FORMAT_BIG_ENDIAN);
  unsigned short op = unsigned{OT_OP_EQUAL} | OT_CMP_NO_WILDCARDS;
  Limits limits;
  Types().EvalAndBound(member.type, nullptr, op, Place(stored), OT_FORMAT_BIG_ENDIAN, 1, &limits,
                       nullptr);
  return limits.Lower().has_value() && limits.Upper().has_value();
}

}  // namespace otdb
