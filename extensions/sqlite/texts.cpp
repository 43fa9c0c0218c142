// Functions of texts in an order: keys, patterns, comparison, hashes, case. Where a blob stands for
// the text it is a stored value, and its type stands for the order.
#include "order.h"
#include "result.h"
#include "values.h"

namespace ot95::sqlite {

namespace {

void Key(sqlite3_context* context, int count, sqlite3_value** values) {
  Answer(context, [&] {
    if (IsNull(values[0])) return;
    Result key;
    if (IsBlob(values[0])) {
      const ValueArguments how = TakeValueArguments(count, values, 1);
      const ot95_array array = how.ArrayOf(values[0]);
      key.Take("ot_key", [&](ot95_buffer* out) { return ot95_sort_key(&array, how.options, out); });
    } else {
      const ot95_collation* order = OrderArgument(context, count, values, 1);
      const std::string_view text = TextOf(values[0]);
      key.Take("ot_key", [&](ot95_buffer* out) {
        return ot95_collation_key(order, text.data(), text.size(), out);
      });
    }
    key.GiveBlob(context);
  });
}

/// Puts two texts, or two stored values, to one question. @return its answer
template <class OfTexts, class OfValues>
int Ask(const char* name, sqlite3_context* context, int count, sqlite3_value** values,
        OfTexts&& ofTexts, OfValues&& ofValues) {
  int answer = 0;
  if (IsBlob(values[0]) && IsBlob(values[1])) {
    const ValueArguments how = TakeValueArguments(count, values, 2);
    const ot95_array a = how.ArrayOf(values[0]), b = how.ArrayOf(values[1]);
    Check(ofValues(&a, &b, how.options, &answer), name);
  } else {
    if (count > 3) throw Failure(std::string(name) + ": expected two stored values");
    const ot95_collation* order = OrderArgument(context, count, values, 2);
    const std::string_view a = TextOf(values[0]), b = TextOf(values[1]);
    Check(ofTexts(order, a.data(), a.size(), b.data(), b.size(), &answer), name);
  }
  return answer;
}

void Compare(sqlite3_context* context, int count, sqlite3_value** values) {
  Answer(context, [&] {
    if (IsNull(values[0]) || IsNull(values[1])) return;
    sqlite3_result_int(
        context, Ask("ot_compare", context, count, values, ot95_collation_compare, ot95_compare));
  });
}

void Match(sqlite3_context* context, int count, sqlite3_value** values) {
  Answer(context, [&] {
    if (IsNull(values[0]) || IsNull(values[1])) return;
    sqlite3_result_int(context,
                       Ask("ot_match", context, count, values, ot95_collation_match, ot95_match));
  });
}

void Hash(sqlite3_context* context, int count, sqlite3_value** values) {
  Answer(context, [&] {
    if (IsNull(values[0])) return;
    uint64_t hash = 0;
    if (IsBlob(values[0])) {
      const ot95_array array = TakeValueArguments(count, values, 1).ArrayOf(values[0]);
      uint32_t word = 0;
      Check(ot95_hash(&array, &word), "ot_hash");
      hash = word;
    } else {
      const ot95_collation* order = OrderArgument(context, count, values, 1);
      const std::string_view text = TextOf(values[0]);
      Check(ot95_collation_hash(order, text.data(), text.size(), 0, &hash), "ot_hash");
    }
    sqlite3_result_int64(context, static_cast<sqlite3_int64>(hash));
  });
}

using ChangeCase = int(const ot95_collation*, const char*, size_t, ot95_buffer*);

template <ChangeCase change>
void InCase(sqlite3_context* context, int count, sqlite3_value** values) {
  Answer(context, [&] {
    if (IsNull(values[0])) return;
    const ot95_collation* order = OrderArgument(context, count, values, 1);
    const std::string_view text = TextOf(values[0]);
    Result changed;
    changed.Take("ot_upper or ot_lower",
                 [&](ot95_buffer* out) { return change(order, text.data(), text.size(), out); });
    changed.GiveText(context);
  });
}

enum class End { kLow, kHigh };

/// An end of the range in which the keys of a pattern's texts lie. Where it has none the answer is
/// below, or above, all keys: NULL would hide every row.
template <End end>
void Range(sqlite3_context* context, int count, sqlite3_value** values) {
  Answer(context, [&] {
    constexpr std::size_t kRoom = 1024;  // of a longer end the beginning serves as well
    if (IsNull(values[0])) return;
    unsigned char bytes[2][kRoom];
    ot95_buffer lower = {bytes[0], kRoom, 0}, upper = {bytes[1], kRoom, 0};
    const ot95_collation* order = OrderArgument(context, count, values, 1);
    const std::string_view pattern = TextOf(values[0]);
    Check(ot95_collation_range(order, pattern.data(), pattern.size(), &lower, &upper),
          "ot_low or ot_high");
    const ot95_buffer& asked = end == End::kLow ? lower : upper;
    // No key begins so: behind its first byte of ff there is the number of a script.
    static constexpr unsigned char kAboveAll[] = {0xff, 0xff};
    if (asked.size == 0 && end == End::kHigh) {
      sqlite3_result_blob(context, kAboveAll, sizeof kAboveAll, SQLITE_STATIC);
    } else {
      sqlite3_result_blob64(context, asked.data, asked.size, SQLITE_TRANSIENT);
    }
  });
}

constexpr Function kFunctions[] = {
    {"ot_key", 1, 4, Key},
    {"ot_compare", 2, 5, Compare},
    {"ot_match", 2, 5, Match},
    {"ot_hash", 1, 3, Hash},
    {"ot_upper", 1, 2, InCase<ot95_collation_upper>},
    {"ot_lower", 1, 2, InCase<ot95_collation_lower>},
    {"ot_low", 1, 2, Range<End::kLow>},
    {"ot_high", 1, 2, Range<End::kHigh>},
};

}  // namespace

int RegisterTexts(sqlite3* db) {
  return RegisterFunctions(db, kFunctions, std::size(kFunctions));
}

}  // namespace ot95::sqlite
