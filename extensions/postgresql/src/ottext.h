#ifndef OT95_POSTGRESQL_OTTEXT_H
#define OT95_POSTGRESQL_OTTEXT_H

/**
 * @file
 * What the sources of the extension share: the value `ottext`, orders, and the way of a status of
 * the library into an error of the server. A file includes postgres.h before it.
 */

#include "fmgr.h"
#include "ot95c/ot95c.h"

/**
 * A language and options of comparison, as a column's type modifier says them: the number of the
 * language, and from bit 8 on the options. Operators don't see the column's type, so each value
 * carries its order. 0 is the order of a literal, which takes that of what it meets.
 */
typedef uint16 OtOrder;

#define OT_NO_ORDER ((OtOrder)0)
#define OT_NEUTRAL_ORDER ((OtOrder)1)
#define OT_OPTION_SHIFT 5 /* Options of the library begin with 0x20. */
#define OT_ORDER_BITS 13

static inline OtOrder OtOrderOfTypmod(int32 typmod) {
  return typmod < 0 ? OT_NO_ORDER : (OtOrder)typmod;
}

/* The bytes of a value behind the server's own header: language, options, text in UTF-8. */
#define OT_HEADER 2

/** A value that has been fetched from wherever it was. */
typedef struct OtView {
  OtOrder order;
  const char* text;
  size_t size;
  struct varlena* fetched; /**< What holds it; OtRelease gives a copy back. */
  Pointer stored;
} OtView;

/** Ends the statement for a value without a header. */
pg_attribute_noreturn() extern void OtRefuseSize(void);

static inline OtView OtViewOf(Datum value) {
  const Pointer stored = DatumGetPointer(value);
  /* Most values are where they can be read. */
  struct varlena* fetched =
      VARATT_IS_4B_U(stored) || (VARATT_IS_1B(stored) && !VARATT_IS_1B_E(stored))
          ? (struct varlena*)stored
          : PG_DETOAST_DATUM_PACKED(value);
  const unsigned char* bytes = (const unsigned char*)VARDATA_ANY(fetched);
  const size_t size = VARSIZE_ANY_EXHDR(fetched);
  if (unlikely(size < OT_HEADER)) OtRefuseSize();
  return (OtView){(OtOrder)(bytes[0] | bytes[1] << 8), (const char*)bytes + OT_HEADER,
                  size - OT_HEADER, fetched, stored};
}

static inline void OtRelease(const OtView* view) {
  if ((Pointer)view->fetched != view->stored) pfree(view->fetched);
}

/** A value of an order. The text has been checked, or comes from a value. */
extern struct varlena* OtMake(OtOrder order, const char* text, size_t size);
/** Refuses a text that the library couldn't compare. */
extern void OtCheckSize(const char* text, size_t size);

/** Ends the statement unless the status is OT95_OK. `what` says what was tried. */
extern void OtCheck(int status, const char* what);

/** The order that two values are compared by: an error where they have none, or two. */
extern OtOrder OtMeet(OtOrder a, OtOrder b);
/** As OtMeet, but two literals stay without an order. */
extern OtOrder OtJoin(OtOrder a, OtOrder b);
pg_attribute_noreturn() extern void OtRefuseWithoutOrder(void);
extern ot95_collation* OtCollations[1 << OT_ORDER_BITS]; /**< Those that were opened. */
extern const ot95_collation* OtOpenCollation(OtOrder order);
/** Kept as long as the process runs. */
static inline const ot95_collation* OtCollation(OtOrder order) {
  return likely(order < lengthof(OtCollations) && OtCollations[order] != NULL)
             ? OtCollations[order]
             : OtOpenCollation(order);
}
extern const char* OtTagOf(OtOrder order);
/** "ignore-case,ignore-accent", in memory of the current context; empty without options. */
extern char* OtOptionNames(unsigned options);
extern unsigned OtOptionsOf(OtOrder order);
/** Options by their names. `allowed` are those that may stand here. */
extern unsigned OtParseOptions(const char* names, unsigned allowed);

extern int OtCompareValues(Datum a, Datum b);

/** Bytes of a sort key, in its own room while that is enough. */
typedef struct OtKey {
  unsigned char* bytes;
  size_t size;
  unsigned char room[256];
} OtKey;

extern void OtKeyOf(OtOrder order, const OtView* view, OtKey* key);
extern void OtFreeKey(OtKey* key);
static inline int OtCompareBytes(const void* a, size_t aSize, const void* b, size_t bSize) {
  const int sign = memcmp(a, b, Min(aSize, bSize));
  return sign != 0 ? sign : (aSize > bSize) - (aSize < bSize);
}

/** The stretch of sort keys in which all that a pattern means lies, seen from one of its ends. */
typedef struct OtBound {
  int32 length; /**< The server's header. */
  OtOrder order;
  bool isUpper;   /**< Which end. */
  bool isLimited; /**< Whether the upper end is one. */
  int32 lowerSize;
  unsigned char bytes[FLEXIBLE_ARRAY_MEMBER]; /**< The lower end, the upper one. */
} OtBound;

static inline size_t OtUpperSize(const OtBound* bound) {
  return VARSIZE(bound) - offsetof(OtBound, bytes) - (size_t)bound->lowerSize;
}

extern OtBound* OtMakeBound(const OtView* pattern, bool isUpper);

/** The identifier of the type `ottext`; invalid where the extension isn't installed. */
extern Oid OtTypeOid(void);
/** Its schema. */
extern Oid OtSchemaOid(void);

/** Gives what meets a column in a call its order; null where there is nothing to give. */
struct SupportRequestSimplify;
extern struct Node* OtSimplify(struct SupportRequestSimplify* request);

extern void OtInstallPlanner(void);
extern void OtInstallVersions(void);

#endif
