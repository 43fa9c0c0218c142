// Keys that compare as bytes, their ranges and hashes: of stored arrays, and of texts in UTF-8.
#include "text/collation/sortkey.h"
#include "c/collation.h"

namespace ot95::c {

namespace {

/// What has a key: bytes that have been checked.
struct Keyed {
  OtTypeMgr manager;
  char id;
  const void* bytes;
  unsigned long size;
  unsigned long count;
  unsigned char format;
  unsigned short cmpOp;

  static Keyed Of(Stored& stored, unsigned short cmpOp) {
    return {stored.manager(), stored.id(),     stored.bytes(), stored.size(),
            stored.count(),   stored.format(), cmpOp};
  }
  /// @param text becomes a record.
  static Keyed Of(const ot95_collation& collation, WideText& text) {
    constexpr char strings = 11;
    const unsigned long size = text.BecomeRecord(collation.language);
    return {OtTypeMgr(), strings, text.record(), size, 1, OT_FORMAT_NATIVE, collation.options};
  }
};

/// The beginning of a key that is longer than its room is written, too.
int GiveKey(const Keyed& of, ot95_buffer* out) {
  if (!IsBuffer(out)) return OT95_ERR_ARGUMENT;
  int status = 0;
  const unsigned long length = of.manager.SortKey(of.id, out->data, out->room, of.bytes, of.size,
                                                  of.cmpOp, of.count, of.format, status);
  if (status == OT_ERR_NOT_SUPPORTED && length == 0) return OT95_ERR_NOT_SUPPORTED;
  out->size = length;
  return length > out->room ? OT95_ERR_ROOM : StatusOf(status);
}

int MakeHash(const Keyed& of, std::uint64_t seed, std::uint64_t& hash) {
  int status = 0;
  hash = of.manager.Hash64(of.id, of.bytes, of.size, of.cmpOp, of.count, of.format, seed, status);
  return StatusOf(status);
}

/// @param op relation and options of the comparison with the operand, whose own options those of
///   the keys are.
int GiveRange(const Keyed& operand, unsigned short op, ot95_buffer* lower, ot95_buffer* upper) {
  if (!IsBuffer(lower) || !IsBuffer(upper)) return OT95_ERR_ARGUMENT;
  OtSortRange range;
  range.lower = lower->data;
  range.lowerRoom = lower->room;
  range.upper = upper->data;
  range.upperRoom = upper->room;
  const int status = operand.manager.SortRange(operand.id, range, op, operand.bytes, operand.size,
                                               operand.cmpOp, operand.count, operand.format);
  if (status != 0) return StatusOf(status);
  lower->size = range.lowerLength;
  upper->size = range.upperLength;
  return OT95_OK;
}

int Open(const ot95_array* array, unsigned options, Stored& stored, unsigned short& cmpOp) {
  if (const int status = OpenOptions(options, cmpOp)) return status;
  return stored.Open(array);
}

}  // namespace

}  // namespace ot95::c

using namespace ot95::c;

int ot95_sort_key(const ot95_array* array, unsigned options, ot95_buffer* out) {
  return GuardedFor(out, [&] {
    Stored stored;
    unsigned short cmpOp = 0;
    if (const int status = Open(array, options, stored, cmpOp)) return status;
    return GiveKey(Keyed::Of(stored, cmpOp), out);
  });
}

int ot95_hash64(const ot95_array* array, unsigned options, uint64_t seed, uint64_t* hash) {
  return GuardedResult(hash, [&](uint64_t& made) {
    Stored stored;
    unsigned short cmpOp = 0;
    if (const int status = Open(array, options, stored, cmpOp)) return status;
    return MakeHash(Keyed::Of(stored, cmpOp), seed, made);
  });
}

int ot95_sort_range(const ot95_array* operand, unsigned relation, unsigned key_options,
                    ot95_buffer* lower, ot95_buffer* upper) {
  return Guarded([&]() -> int {
    constexpr unsigned relations = OT95_EQUAL | OT95_LESS | OT95_GREATER;
    Stored stored;
    unsigned short cmpOp = 0, keyOp = 0;
    if ((relation & relations) == 0) return OT95_ERR_ARGUMENT;
    if (const int status = OpenOptions(key_options, keyOp)) return status;
    if (const int status = Open(operand, relation & ~relations, stored, cmpOp)) return status;
    const auto op = static_cast<unsigned short>((relation & relations) | cmpOp);
    return GiveRange(Keyed::Of(stored, keyOp), op, lower, upper);
  });
}

int ot95_collation_key(const ot95_collation* collation, const char* text, size_t size,
                       ot95_buffer* out) {
  return GuardedFor(out, [&]() -> int {
    WideText wide;
    if (collation == nullptr || !IsBuffer(out)) return OT95_ERR_ARGUMENT;
    if (const int status = wide.Take(text, size)) return status;
    ot95::SortKeyWriter key(out->data, out->room);
    ot95::PutTextKey(wide.Span(collation->language), collation->options, key);
    out->size = static_cast<size_t>(key.Size());
    return out->size > out->room ? OT95_ERR_ROOM : OT95_OK;
  });
}

int ot95_collation_range(const ot95_collation* collation, const char* pattern, size_t size,
                         ot95_buffer* lower, ot95_buffer* upper) {
  return Guarded([&]() -> int {
    WideText wide;
    if (collation == nullptr) return OT95_ERR_ARGUMENT;
    if (const int status = wide.Take(pattern, size)) return status;
    const auto op =
        static_cast<unsigned short>((collation->options & ~OT_CMP_NO_WILDCARDS) | OT_OP_EQUAL);
    return GiveRange(Keyed::Of(*collation, wide), op, lower, upper);
  });
}

int ot95_collation_hash(const ot95_collation* collation, const char* text, size_t size,
                        uint64_t seed, uint64_t* hash) {
  return GuardedResult(hash, [&](uint64_t& made) -> int {
    WideText wide;
    if (collation == nullptr) return OT95_ERR_ARGUMENT;
    if (const int status = wide.Take(text, size)) return status;
    ot95::Hash64State state(seed);
    ot95::SortKeyWriter key(state);
    ot95::PutTextKey(wide.Span(collation->language), collation->options, key);
    made = key.Finish();
    return OT95_OK;
  });
}
