// The C interface with bytes that nobody stored: every answer is a status, and nothing beyond the
// lengths that were given is read or written.
//
// An input: type, form, count, options (2 bytes), room, length of the first array; then the first
// array and, to the end, the second.
#include <vector>

#include "fuzzing.h"
#include "ot95c/ot95c.h"

using namespace fuzzing;

namespace {

/// A place of exactly the room that was asked for.
class Buffer : public ot95_buffer {
 public:
  explicit Buffer(std::size_t bytes) : ot95_buffer(), block_(bytes) {
    data = block_.Data();
    room = bytes;
  }

 private:
  Block block_;
};

ot95_array ArrayOf(const Block& block, int type, unsigned form, std::size_t count) {
  return {type, form, block.Data(), block.Length(), count};
}

void Read(const ot95_array& array, std::size_t room) {
  std::size_t end = 0;
  const int verified = ot95_verify(&array, &end);
  Require(end <= array.size);
  std::vector<ot95_value> values(array.count);
  const int decoded = ot95_decode(&array, values.data());
  Require(verified == OT95_OK || decoded != OT95_OK);
  Buffer text(room), other(room), key(room), lower(room), upper(room);
  ot95_print(&array, 0, nullptr, &text);
  ot95_translate(&array, array.form == 1 ? 2 : 1, &other);
  ot95_convert(&array, 11, 1, &other);
  std::uint32_t hash = 0;
  ot95_hash(&array, &hash);
  ot95_sort_key(&array, 0, &key);
  ot95_sort_range(&array, OT95_EQUAL, 0, &lower, &upper);
  if (decoded == OT95_OK) {
    Buffer again(room);
    ot95_encode(array.type, values.data(), array.count, array.form & 3U, &again);
  }
}

void Pair(const ot95_array& a, const ot95_array& b, unsigned options) {
  int there = 0, back = 0;
  if (ot95_compare(&a, &b, options, &there) == OT95_OK) Require(there >= -1 && there <= 1);
  ot95_compare(&b, &a, options, &back);
  int matches = 0;
  ot95_match(&a, &b, options, &matches);
  ot95_estimate_result share = {};
  share.struct_size = sizeof share;
  ot95_estimate(&a, OT95_EQUAL | OT95_LESS | (options & 0x2e0U), nullptr, nullptr, &share);
}

/// Spans need be neither UTF-8 nor terminated.
void Texts(View a, View b, unsigned options, std::size_t room) {
  const Block left(a), right(b);
  const auto* x = static_cast<const char*>(left.Data());
  const auto* y = static_cast<const char*>(right.Data());
  ot95_collation* collation = nullptr;
  constexpr const char* kTags[] = {"", "sv", "cs", "hu", "de-phonebook", "ja", "zh", "th"};
  const char* tag = kTags[a.empty() ? 0 : a[0] % std::size(kTags)];
  if (ot95_collation_open(tag, options & 0x3e0U, &collation) != OT95_OK) return;
  int there = 0, back = 0;
  const int status = ot95_collation_compare(collation, x, a.size(), y, b.size(), &there);
  ot95_collation_compare(collation, y, b.size(), x, a.size(), &back);
  if (status == OT95_OK) Require(there == -back);
  int matches = 0;
  ot95_collation_match(collation, x, a.size(), y, b.size(), &matches);
  Buffer key(room), lower(room), upper(room);
  ot95_collation_key(collation, x, a.size(), &key);
  ot95_collation_range(collation, y, b.size(), &lower, &upper);
  ot95_collation_upper(collation, x, a.size(), &lower);
  ot95_collation_lower(collation, x, a.size(), &upper);
  std::uint64_t one = 0, two = 0;
  ot95_collation_hash(collation, x, a.size(), 1, &one);
  ot95_collation_hash(collation, y, b.size(), 1, &two);
  if (status == OT95_OK && there == 0 && (options & OT95_ORDER_ONLY) == 0) Require(one == two);
  ot95_free(collation);
}

}  // namespace

extern "C" OT95_EXPORT int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Start();
  Input in({data, size});
  const int type = in.Byte() % 44 - 1;
  const unsigned form = in.Byte();
  const std::size_t count = in.Byte() % 6U;
  const unsigned options = in.Word();
  const std::size_t room = in.Byte();
  const std::size_t length = in.Byte();
  const View first = in.Take(length);
  const View second = in.Rest();
  const Block left(first), right(second);
  const ot95_array a = ArrayOf(left, type, form, count);
  const ot95_array b = ArrayOf(right, type, form, count);
  Read(a, room);
  Pair(a, b, options);
  Texts(first, second, options, room);
  return 0;
}
