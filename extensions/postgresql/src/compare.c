// The order of ottext: comparison operators, B-tree and hash support, sorting by abbreviated keys.
#include "postgres.h"

#include "port/pg_bswap.h"
#include "utils/builtins.h"
#include "utils/sortsupport.h"

#include "ottext.h"

PG_FUNCTION_INFO_V1(ottext_eq);
PG_FUNCTION_INFO_V1(ottext_ne);
PG_FUNCTION_INFO_V1(ottext_lt);
PG_FUNCTION_INFO_V1(ottext_le);
PG_FUNCTION_INFO_V1(ottext_gt);
PG_FUNCTION_INFO_V1(ottext_ge);
PG_FUNCTION_INFO_V1(ottext_cmp);
PG_FUNCTION_INFO_V1(ottext_sortsupport);
PG_FUNCTION_INFO_V1(ottext_hash);
PG_FUNCTION_INFO_V1(ottext_hash_extended);
PG_FUNCTION_INFO_V1(ottext_larger);
PG_FUNCTION_INFO_V1(ottext_smaller);

static int Compare(const OtView* a, const OtView* b) {
  const OtOrder order = likely(a->order == b->order && a->order != OT_NO_ORDER)
                            ? a->order
                            : OtMeet(a->order, b->order);
  int sign = 0, status;
  if (a->size == b->size && memcmp(a->text, b->text, a->size) == 0) return 0;
  status = ot95_collation_compare(OtCollation(order), a->text, a->size, b->text, b->size, &sign);
  if (unlikely(status != OT95_OK)) OtCheck(status, "comparison of ottext");
  return sign;
}

int OtCompareValues(Datum a, Datum b) {
  const OtView first = OtViewOf(a), second = OtViewOf(b);
  const int sign = Compare(&first, &second);
  OtRelease(&first);
  OtRelease(&second);
  return sign;
}

static int CompareArguments(FunctionCallInfo fcinfo) {
  return OtCompareValues(PG_GETARG_DATUM(0), PG_GETARG_DATUM(1));
}

Datum ottext_eq(PG_FUNCTION_ARGS) {
  PG_RETURN_BOOL(CompareArguments(fcinfo) == 0);
}

Datum ottext_ne(PG_FUNCTION_ARGS) {
  PG_RETURN_BOOL(CompareArguments(fcinfo) != 0);
}

Datum ottext_lt(PG_FUNCTION_ARGS) {
  PG_RETURN_BOOL(CompareArguments(fcinfo) < 0);
}

Datum ottext_le(PG_FUNCTION_ARGS) {
  PG_RETURN_BOOL(CompareArguments(fcinfo) <= 0);
}

Datum ottext_gt(PG_FUNCTION_ARGS) {
  PG_RETURN_BOOL(CompareArguments(fcinfo) > 0);
}

Datum ottext_ge(PG_FUNCTION_ARGS) {
  PG_RETURN_BOOL(CompareArguments(fcinfo) >= 0);
}

Datum ottext_cmp(PG_FUNCTION_ARGS) {
  PG_RETURN_INT32(CompareArguments(fcinfo));
}

Datum ottext_larger(PG_FUNCTION_ARGS) {
  PG_RETURN_DATUM(PG_GETARG_DATUM(CompareArguments(fcinfo) >= 0 ? 0 : 1));
}

Datum ottext_smaller(PG_FUNCTION_ARGS) {
  PG_RETURN_DATUM(PG_GETARG_DATUM(CompareArguments(fcinfo) <= 0 ? 0 : 1));
}

static uint64 Hash(Datum value, uint64 seed) {
  OtView view = OtViewOf(value);
  uint64 hash;
  if (view.order == OT_NO_ORDER) OtRefuseWithoutOrder();
  OtCheck(ot95_collation_hash(OtCollation(view.order), view.text, view.size, seed, &hash),
          "hash of an ottext");
  OtRelease(&view);
  return hash;
}

/* The server wants the low half of the long hash with seed 0 here. */
Datum ottext_hash(PG_FUNCTION_ARGS) {
  PG_RETURN_UINT32((uint32)Hash(PG_GETARG_DATUM(0), 0));
}

Datum ottext_hash_extended(PG_FUNCTION_ARGS) {
  PG_RETURN_UINT64(Hash(PG_GETARG_DATUM(0), (uint64)PG_GETARG_INT64(1)));
}

void OtKeyOf(OtOrder order, const OtView* view, OtKey* key) {
  ot95_buffer out = {key->room, sizeof key->room, 0};
  int status = ot95_collation_key(OtCollation(order), view->text, view->size, &out);
  key->bytes = key->room;
  if (status == OT95_ERR_ROOM) {
    out.room = out.size;
    out.data = key->bytes = palloc(out.room);
    status = ot95_collation_key(OtCollation(order), view->text, view->size, &out);
  }
  OtCheck(status, "sort key of an ottext");
  key->size = out.size;
}

void OtFreeKey(OtKey* key) {
  if (key->bytes != key->room) pfree(key->bytes);
}

/** What sorting knows of the values that it was given. */
typedef struct SortState {
  OtOrder order;
  bool isKnown;
} SortState;

/* The first bytes of the key. There is nothing to abort: making them costs no more than a
   comparison or two, and where all are the same nothing else is lost. */
static Datum Abbreviate(Datum original, SortSupport ssup) {
  SortState* state = ssup->ssup_extra;
  OtView view = OtViewOf(original);
  uint64 head = 0;
  if (state->isKnown) {
    state->order = OtMeet(state->order, view.order);
  } else {
    state->order = view.order;
    state->isKnown = true;
  }
  /* A literal stands here alone. */
  if (view.order != OT_NO_ORDER) {
    ot95_buffer out = {&head, sizeof head, 0};
    const int status = ot95_collation_key(OtCollation(view.order), view.text, view.size, &out);
    if (status != OT95_ERR_ROOM) OtCheck(status, "sort key of an ottext");
  }
  OtRelease(&view);
  return (Datum)pg_ntoh64(head);
}

static bool NeverAbort(int count, SortSupport ssup) {
  return false;
}

static int CompareFully(Datum a, Datum b, SortSupport ssup) {
  return OtCompareValues(a, b);
}

Datum ottext_sortsupport(PG_FUNCTION_ARGS) {
  SortSupport ssup = (SortSupport)PG_GETARG_POINTER(0);
  ssup->comparator = CompareFully;
#if SIZEOF_DATUM == 8
  if (ssup->abbreviate) {
    ssup->ssup_extra = MemoryContextAllocZero(ssup->ssup_cxt, sizeof(SortState));
    ssup->abbrev_full_comparator = CompareFully;
    ssup->abbrev_converter = Abbreviate;
    ssup->abbrev_abort = NeverAbort;
    ssup->comparator = ssup_datum_unsigned_cmp;
  }
#endif
  PG_RETURN_VOID();
}
