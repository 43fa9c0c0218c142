// otobjid, otclassid, otref, otseal: identifiers of an object database as types. A value is its
// stored bytes, most significant first, of one size for all.
#include "postgres.h"

#include "libpq/pqformat.h"
#include "port/pg_bswap.h"
#include "utils/builtins.h"
#include "utils/sortsupport.h"

#include "ottext.h"
#include "stored.h"

/** What the functions of a type share. */
typedef struct Identity {
  const char* name; /**< In the library. */
  size_t size;      /**< Of a stored value. */
  int type;         /**< By number, once it has been asked for; -1 before. */
} Identity;

#define OT_KEY_ROOM 16 /* A sort key has 8 bytes at most. */

static ot95_array ArrayOf(Identity* identity, Datum value) {
  if (identity->type < 0) identity->type = OtTypeNamed(identity->name);
  return (ot95_array){identity->type, OT95_FORM_BIG_ENDIAN, DatumGetPointer(value), identity->size,
                      1};
}

pg_attribute_noreturn() static void Refuse(const Identity* identity, const char* text) {
  ereport(ERROR, (errcode(ERRCODE_INVALID_TEXT_REPRESENTATION),
                  errmsg("no %s: \"%s\"", identity->name, text)));
  pg_unreachable();
}

/* Texts that mean something else than they say are refused: what was read has to print the same. */
static Datum In(Identity* identity, const char* text) {
  const ot95_span span = {text, strlen(text)};
  ot95_buffer out = {palloc0(identity->size), identity->size, 0};
  const ot95_array array = ArrayOf(identity, PointerGetDatum(out.data));
  const int status = ot95_scan(array.type, &span, 1, NULL, OT95_FORM_BIG_ENDIAN, &out);
  if (status != OT95_OK || out.size != identity->size || strcmp(OtPrint(&array, 0), text) != 0) {
    Refuse(identity, text);
  }
  return PointerGetDatum(out.data);
}

static Datum Out(Identity* identity, Datum value) {
  const ot95_array array = ArrayOf(identity, value);
  return CStringGetDatum(OtPrint(&array, 0));
}

static Datum Checked(Identity* identity, const void* bytes, size_t size) {
  char* value = palloc(identity->size);
  ot95_array array;
  if (size != identity->size) {
    ereport(ERROR,
            (errcode(ERRCODE_INVALID_BINARY_REPRESENTATION),
             errmsg("a stored %s has %zu bytes, not %zu", identity->name, identity->size, size)));
  }
  memcpy(value, bytes, size);
  array = ArrayOf(identity, PointerGetDatum(value));
  OtCheck(ot95_verify(&array, NULL), identity->name);
  return PointerGetDatum(value);
}

static Datum Receive(Identity* identity, StringInfo message) {
  return Checked(identity, pq_getmsgbytes(message, (int)identity->size), identity->size);
}

static Datum Send(Identity* identity, Datum value) {
  StringInfoData message;
  pq_begintypsend(&message);
  pq_sendbytes(&message, DatumGetPointer(value), (int)identity->size);
  return PointerGetDatum(pq_endtypsend(&message));
}

static Datum OfBytes(Identity* identity, struct varlena* bytes) {
  return Checked(identity, VARDATA_ANY(bytes), VARSIZE_ANY_EXHDR(bytes));
}

static Datum ToBytes(Identity* identity, Datum value) {
  return PointerGetDatum(cstring_to_text_with_len(DatumGetPointer(value), (int)identity->size));
}

static int Compare(Identity* identity, Datum a, Datum b) {
  const ot95_array first = ArrayOf(identity, a), second = ArrayOf(identity, b);
  int sign;
  OtCheck(ot95_compare(&first, &second, 0, &sign), identity->name);
  return sign;
}

static uint64 Hash(Identity* identity, Datum value, uint64 seed) {
  const ot95_array array = ArrayOf(identity, value);
  uint64_t hash;
  OtCheck(ot95_hash64(&array, 0, seed, &hash), identity->name);
  return hash;
}

/* All of a sort key fits into the eight bytes. */
static Datum Abbreviate(Datum original, SortSupport ssup) {
  const ot95_array array = ArrayOf(ssup->ssup_extra, original);
  unsigned char bytes[OT_KEY_ROOM] = {0};
  ot95_buffer out = {bytes, sizeof bytes, 0};
  uint64 head;
  OtCheck(ot95_sort_key(&array, 0, &out), "sort key of an identifier");
  memcpy(&head, bytes, sizeof head);
  return (Datum)pg_ntoh64(head);
}

static bool NeverAbort(int count, SortSupport ssup) {
  return false;
}

static int CompareFully(Datum a, Datum b, SortSupport ssup) {
  return Compare(ssup->ssup_extra, a, b);
}

static void Prepare(Identity* identity, SortSupport ssup) {
  ssup->ssup_extra = identity;
  ssup->comparator = CompareFully;
#if SIZEOF_DATUM == 8
  if (ssup->abbreviate) {
    ssup->abbrev_full_comparator = CompareFully;
    ssup->abbrev_converter = Abbreviate;
    ssup->abbrev_abort = NeverAbort;
    ssup->comparator = ssup_datum_unsigned_cmp;
  }
#endif
}

#define OT_FUNCTION(name, body)  \
  PG_FUNCTION_INFO_V1(name);     \
  Datum name(PG_FUNCTION_ARGS) { \
    body;                        \
  }

#define OT_ARGUMENT(n) PG_GETARG_DATUM(n)

#define OT_COMPARISON(type, name, relation) \
  OT_FUNCTION(type##_##name,                \
              PG_RETURN_BOOL(Compare(&type##Facts, OT_ARGUMENT(0), OT_ARGUMENT(1)) relation 0))

#define OT_IDENTITY(type, libraryName, bytes)                                                     \
  static Identity type##Facts = {libraryName, bytes, -1};                                         \
  OT_FUNCTION(type##_in, PG_RETURN_DATUM(In(&type##Facts, PG_GETARG_CSTRING(0))))                 \
  OT_FUNCTION(type##_out, PG_RETURN_DATUM(Out(&type##Facts, OT_ARGUMENT(0))))                     \
  OT_FUNCTION(type##_recv,                                                                        \
              PG_RETURN_DATUM(Receive(&type##Facts, (StringInfo)PG_GETARG_POINTER(0))))           \
  OT_FUNCTION(type##_send, PG_RETURN_DATUM(Send(&type##Facts, OT_ARGUMENT(0))))                   \
  OT_FUNCTION(type##_of_bytea, PG_RETURN_DATUM(OfBytes(&type##Facts, PG_GETARG_BYTEA_PP(0))))     \
  OT_FUNCTION(type##_to_bytea, PG_RETURN_DATUM(ToBytes(&type##Facts, OT_ARGUMENT(0))))            \
  OT_COMPARISON(type, eq, ==)                                                                     \
  OT_COMPARISON(type, ne, !=)                                                                     \
  OT_COMPARISON(type, lt, <)                                                                      \
  OT_COMPARISON(type, le, <=)                                                                     \
  OT_COMPARISON(type, gt, >)                                                                      \
  OT_COMPARISON(type, ge, >=)                                                                     \
  OT_FUNCTION(type##_cmp, PG_RETURN_INT32(Compare(&type##Facts, OT_ARGUMENT(0), OT_ARGUMENT(1)))) \
  OT_FUNCTION(type##_hash, PG_RETURN_UINT32((uint32)Hash(&type##Facts, OT_ARGUMENT(0), 0)))       \
  OT_FUNCTION(type##_hash_extended,                                                               \
              PG_RETURN_UINT64(Hash(&type##Facts, OT_ARGUMENT(0), (uint64)PG_GETARG_INT64(1))))   \
  OT_FUNCTION(type##_sortsupport, Prepare(&type##Facts, (SortSupport)PG_GETARG_POINTER(0));       \
              PG_RETURN_VOID())

OT_IDENTITY(otobjid, "OtObjId", 10)
OT_IDENTITY(otclassid, "OtClassId", 4)
OT_IDENTITY(otref, "OtRef", 14)
OT_IDENTITY(otseal, "OtSeal", 6)
