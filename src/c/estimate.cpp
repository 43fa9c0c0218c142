// What a query planner asks of a comparison.
#include <cstdlib>
#include <cstring>

#include "c/bridge.h"

namespace ot95::c {

namespace {

/// Keys that a call made.
struct Limits : OtIdxBounds {
  Limits() : OtIdxBounds() {}
  ~Limits() {
    std::free(lowerKey);
    std::free(upperKey);
  }
  Limits(const Limits&) = delete;
  Limits& operator=(const Limits&) = delete;
};

int OpenKey(const ot95_span& key, void*& bytes, unsigned char& length) {
  // A length of 0 would mean a whole element.
  if (key.data == nullptr || key.size == 0 || key.size > OT95_KEY_ROOM) return OT95_ERR_ARGUMENT;
  bytes = const_cast<char*>(key.data);
  length = static_cast<unsigned char>(key.size);
  return OT95_OK;
}

std::size_t TakeKey(const void* key, unsigned char length, unsigned char* to) {
  if (key == nullptr || length == 0) return 0;
  std::memcpy(to, key, length);
  return length;
}

int Estimate(const ot95_array* operand, unsigned relation, const ot95_span* low,
             const ot95_span* high, ot95_estimate_result& result) {
  constexpr unsigned relations = OT95_EQUAL | OT95_LESS | OT95_GREATER;
  Stored stored;
  OtIdxBounds ends;
  unsigned short cmpOp = 0;
  if ((relation & relations) == 0 || (low == nullptr) != (high == nullptr)) {
    return OT95_ERR_ARGUMENT;
  }
  if (const int status = OpenOptions(relation & ~relations, cmpOp)) return status;
  if (const int status = stored.OpenWhole(operand)) return status;
  if (low != nullptr) {
    if (const int status = OpenKey(*low, ends.lowerKey, ends.lowerKeyLength)) return status;
    if (const int status = OpenKey(*high, ends.upperKey, ends.upperKeyLength)) return status;
  }
  Limits limits;
  auto op = static_cast<unsigned short>((relation & relations) | cmpOp);
  const float share = stored.manager().EvalAndBound(stored.id(), low != nullptr ? &ends : nullptr,
                                                    op, stored.bytes(), stored.format(),
                                                    stored.count(), &limits, nullptr);
  result.share = share;
  result.stands_for_range = (op & OT_OP_WILDCARD) != 0;
  result.lower_size = TakeKey(limits.lowerKey, limits.lowerKeyLength, result.lower);
  result.upper_size = TakeKey(limits.upperKey, limits.upperKeyLength, result.upper);
  return OT95_OK;
}

}  // namespace

}  // namespace ot95::c

int ot95_estimate(const ot95_array* operand, unsigned relation, const ot95_span* low,
                  const ot95_span* high, ot95_estimate_result* out) {
  ot95_estimate_result result = {};
  if (out == nullptr) return OT95_ERR_ARGUMENT;
  const int status =
      ot95::c::Guarded([&] { return ot95::c::Estimate(operand, relation, low, high, result); });
  return status == OT95_OK ? ot95::c::Describe(out, result) : status;
}
