// Two stored arrays, and what stands for one: comparison, patterns, hashes.
#include "c/bridge.h"

namespace ot95::c {

namespace {

/// Compares as the type does. @param result of which the sign counts.
int Compare(const ot95_array* a, const ot95_array* b, unsigned options, long& result) {
  Stored first, second;
  unsigned short cmpOp = 0;
  if (const int status = OpenOptions(options, cmpOp)) return status;
  if (const int status = first.Open(a)) return status;
  if (const int status = second.Open(b)) return status;
  if (a->type != b->type || a->form != b->form || a->count != b->count) return OT95_ERR_ARGUMENT;
  int status = 0;
  result = first.manager().Cmp(first.id(), first.size(), first.bytes(), second.size(),
                               second.bytes(), cmpOp, first.count(), first.format(), status);
  return StatusOf(status);
}

}  // namespace

}  // namespace ot95::c

using namespace ot95::c;

int ot95_compare(const ot95_array* a, const ot95_array* b, unsigned options, int* sign) {
  return GuardedResult(sign, [&](int& made) {
    long result = 0;
    const int status = Compare(a, b, options, result);
    made = Sign(result);
    return status;
  });
}

int ot95_match(const ot95_array* array, const ot95_array* pattern, unsigned options, int* matches) {
  return GuardedResult(matches, [&](int& made) {
    long result = 0;
    const int status = Compare(array, pattern, options | OT95_WILDCARDS, result);
    made = result == 0;
    return status;
  });
}

int ot95_hash(const ot95_array* array, uint32_t* hash) {
  return GuardedResult(hash, [&](uint32_t& made) {
    Stored stored;
    if (const int status = stored.Open(array)) return status;
    int status = 0;
    made = static_cast<uint32_t>(stored.manager().Hash(stored.id(), stored.size(), stored.bytes(),
                                                       stored.count(), stored.format(), status));
    return StatusOf(status);
  });
}
