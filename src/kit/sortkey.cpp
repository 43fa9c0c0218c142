// The frame of sort keys: room, cut, and the 64-bit hash over a key (SipHash, seeded).

#include "kit/sortkey.h"

#include <bit>
#include <cstring>

namespace ot95 {

namespace {

std::uint64_t LoadLittle(const unsigned char* bytes, std::size_t length) {
  std::uint64_t word = 0;
  for (std::size_t i = 0; i < length; ++i) word |= std::uint64_t{bytes[i]} << 8 * i;
  return word;
}

}  // namespace

Hash64State::Hash64State(std::uint64_t seed) {
  constexpr std::uint64_t fixedHalf = 0x9ae16a3b2f90404f;
  v0_ = seed ^ 0x736f6d6570736575;
  v1_ = fixedHalf ^ 0x646f72616e646f6d;
  v2_ = seed ^ 0x6c7967656e657261;
  v3_ = fixedHalf ^ 0x7465646279746573;
}

inline void Hash64State::Round() {
  v0_ += v1_;
  v1_ = std::rotl(v1_, 13) ^ v0_;
  v0_ = std::rotl(v0_, 32);
  v2_ += v3_;
  v3_ = std::rotl(v3_, 16) ^ v2_;
  v0_ += v3_;
  v3_ = std::rotl(v3_, 21) ^ v0_;
  v2_ += v1_;
  v1_ = std::rotl(v1_, 17) ^ v2_;
  v2_ = std::rotl(v2_, 32);
}

inline void Hash64State::Absorb(std::uint64_t word) {
  v3_ ^= word;
  Round();
  v0_ ^= word;
}

void Hash64State::AbsorbWords(const unsigned char* bytes, std::size_t length) {
  for (std::size_t at = 0; at < length; at += 8) Absorb(LoadLittle(bytes + at, 8));
  length_ += length;
}

std::uint64_t Hash64State::Finish(const unsigned char* bytes, std::size_t length) {
  const std::size_t whole = length & ~std::size_t{7};
  AbsorbWords(bytes, whole);
  const std::size_t rest = length - whole;
  Absorb((length_ + rest) << 56 | LoadLittle(bytes + whole, rest));
  v2_ ^= 0xff;
  Round();
  Round();
  Round();
  return v0_ ^ v1_ ^ v2_ ^ v3_;
}

// The bytes for which there is no room go to a block that nobody reads.
void SortKeyWriter::Renew() {
  before_ += static_cast<std::uint64_t>(place_ - begin_);
  if (hash_ != nullptr) hash_->AbsorbWords(begin_, static_cast<std::size_t>(place_ - begin_));
  begin_ = place_ = block_;
  end_ = block_ + sizeof block_;
}

void PutBytes(SortKeyWriter& out, const unsigned char* bytes, std::size_t length) {
  for (std::size_t i = 0; i < length; ++i) {
    out.Put(bytes[i]);
    if (bytes[i] == 0) out.Put(1);
  }
  out.Put(0);
  out.Put(0);
}

unsigned long MakeSortKey(SortKeyFunc keyFunc, const SortInput& input, void* target,
                          unsigned long room, int& status) {
  status = OT_ERR_BAD_ARGUMENT;
  if (keyFunc == nullptr) return 0;
  SortKeyWriter out(target, room);
  status = keyFunc(input, out);
  if (!HasSortKey(status)) return 0;
  const std::uint64_t size = out.Size();
  if (status == kUnorderedKey) status = OT_ERR_NOT_SUPPORTED;
  if (status == 0 && size > room) status = OT_ERR_END_OF_DATA;
  return static_cast<unsigned long>(size);
}

}  // namespace ot95
