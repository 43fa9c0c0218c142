// otbound: an end of the stretch of sort keys in which all lies that a pattern means. The planner
// makes such values where a wildcard is to be found through a B-tree; a table needs none.
#include "postgres.h"

#include "utils/builtins.h"

#include "ottext.h"

PG_FUNCTION_INFO_V1(otbound_in);
PG_FUNCTION_INFO_V1(otbound_out);
PG_FUNCTION_INFO_V1(ottext_lower_bound);
PG_FUNCTION_INFO_V1(ottext_upper_bound);
PG_FUNCTION_INFO_V1(ottext_cmp_bound);
PG_FUNCTION_INFO_V1(ottext_ge_bound);
PG_FUNCTION_INFO_V1(ottext_lt_bound);

#define OT_BOUND_ROOM 1024 /* A longer end is cut; the stretch still holds. */

OtBound* OtMakeBound(const OtView* pattern, bool isUpper) {
  unsigned char lowerBytes[OT_BOUND_ROOM], upperBytes[OT_BOUND_ROOM];
  ot95_buffer lower = {lowerBytes, sizeof lowerBytes, 0},
              upper = {upperBytes, sizeof upperBytes, 0};
  OtBound* bound;
  if (pattern->order == OT_NO_ORDER) OtRefuseWithoutOrder();
  OtCheck(ot95_collation_range(OtCollation(pattern->order), pattern->text, pattern->size, &lower,
                               &upper),
          "range of a pattern");
  bound = palloc0(offsetof(OtBound, bytes) + lower.size + upper.size);
  SET_VARSIZE(bound, offsetof(OtBound, bytes) + lower.size + upper.size);
  bound->order = pattern->order;
  bound->isUpper = isUpper;
  bound->isLimited = upper.size != 0;
  bound->lowerSize = (int32)lower.size;
  memcpy(bound->bytes, lowerBytes, lower.size);
  memcpy(bound->bytes + lower.size, upperBytes, upper.size);
  return bound;
}

Datum otbound_in(PG_FUNCTION_ARGS) {
  ereport(ERROR, (errcode(ERRCODE_FEATURE_NOT_SUPPORTED),
                  errmsg("a value of type otbound can't be given as text")));
}

Datum otbound_out(PG_FUNCTION_ARGS) {
  const OtBound* bound = (const OtBound*)PG_DETOAST_DATUM(PG_GETARG_DATUM(0));
  const size_t size = bound->isUpper ? OtUpperSize(bound) : (size_t)bound->lowerSize;
  const unsigned char* bytes = bound->bytes + (bound->isUpper ? bound->lowerSize : 0);
  char* printed = palloc(2 * size + 1);
  for (size_t i = 0; i < size; ++i) sprintf(printed + 2 * i, "%02x", bytes[i]);
  printed[2 * size] = 0;
  PG_RETURN_CSTRING(printed);
}

static Datum Bound(Datum pattern, bool isUpper) {
  OtView view = OtViewOf(pattern);
  return PointerGetDatum(OtMakeBound(&view, isUpper));
}

Datum ottext_lower_bound(PG_FUNCTION_ARGS) {
  return Bound(PG_GETARG_DATUM(0), false);
}

Datum ottext_upper_bound(PG_FUNCTION_ARGS) {
  return Bound(PG_GETARG_DATUM(0), true);
}

static int Compare(Datum value, Datum end) {
  OtView view = OtViewOf(value);
  const OtBound* bound = (const OtBound*)PG_DETOAST_DATUM(end);
  OtKey key;
  int sign;
  if (bound->isUpper && !bound->isLimited) return -1;
  OtKeyOf(OtMeet(view.order, bound->order), &view, &key);
  sign =
      bound->isUpper
          ? OtCompareBytes(key.bytes, key.size, bound->bytes + bound->lowerSize, OtUpperSize(bound))
          : OtCompareBytes(key.bytes, key.size, bound->bytes, (size_t)bound->lowerSize);
  OtFreeKey(&key);
  OtRelease(&view);
  return sign;
}

Datum ottext_cmp_bound(PG_FUNCTION_ARGS) {
  PG_RETURN_INT32(Compare(PG_GETARG_DATUM(0), PG_GETARG_DATUM(1)));
}

Datum ottext_ge_bound(PG_FUNCTION_ARGS) {
  PG_RETURN_BOOL(Compare(PG_GETARG_DATUM(0), PG_GETARG_DATUM(1)) >= 0);
}

Datum ottext_lt_bound(PG_FUNCTION_ARGS) {
  PG_RETURN_BOOL(Compare(PG_GETARG_DATUM(0), PG_GETARG_DATUM(1)) < 0);
}
