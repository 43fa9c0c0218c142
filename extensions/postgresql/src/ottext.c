// ottext as a value: in and out, casts, and what it does as a text.
#include "postgres.h"

#include "catalog/pg_type.h"
#include "libpq/pqformat.h"
#include "mb/pg_wchar.h"
#include "utils/builtins.h"

#include "ottext.h"

PG_FUNCTION_INFO_V1(ottext_in);
PG_FUNCTION_INFO_V1(ottext_out);
PG_FUNCTION_INFO_V1(ottext_recv);
PG_FUNCTION_INFO_V1(ottext_send);
PG_FUNCTION_INFO_V1(ottext_of_text);
PG_FUNCTION_INFO_V1(ottext_to_text);
PG_FUNCTION_INFO_V1(ottext_coerce);
PG_FUNCTION_INFO_V1(ottext_concat);
PG_FUNCTION_INFO_V1(ottext_concat_text);
PG_FUNCTION_INFO_V1(text_concat_ottext);
PG_FUNCTION_INFO_V1(ottext_upper);
PG_FUNCTION_INFO_V1(ottext_lower);
PG_FUNCTION_INFO_V1(ottext_length);
PG_FUNCTION_INFO_V1(ottext_substring);
PG_FUNCTION_INFO_V1(ottext_position);

#define OT_MOST_UNITS 32765 /* Of 16 bits, in a text that the library takes. */

void OtRefuseSize(void) {
  OtCheck(OT95_ERR_ENDS, "an ottext");
  pg_unreachable();
}

struct varlena* OtMake(OtOrder order, const char* text, size_t size) {
  struct varlena* made = palloc(VARHDRSZ + OT_HEADER + size);
  char* bytes = VARDATA(made);
  SET_VARSIZE(made, VARHDRSZ + OT_HEADER + size);
  bytes[0] = (char)(order & 0xff);
  bytes[1] = (char)(order >> 8);
  memcpy(bytes + OT_HEADER, text, size);
  return made;
}

void OtCheckSize(const char* text, size_t size) {
  size_t units = 0;
  if (size <= OT_MOST_UNITS) return;
  for (size_t i = 0; i < size; ++i) {
    const unsigned char byte = (unsigned char)text[i];
    units += (byte & 0xc0) != 0x80;
    units += byte >= 0xf0;
  }
  if (units <= OT_MOST_UNITS) return;
  ereport(ERROR,
          (errcode(ERRCODE_STRING_DATA_RIGHT_TRUNCATION), errmsg("value too long for type ottext"),
           errdetail("A value has at most %d units of UTF-16; this one has %zu.", OT_MOST_UNITS,
                     units)));
}

/* A value of a text that comes from elsewhere. */
static struct varlena* TakeText(OtOrder order, const char* text, size_t size) {
  if (GetDatabaseEncoding() != PG_UTF8) {
    ereport(ERROR, (errcode(ERRCODE_FEATURE_NOT_SUPPORTED),
                    errmsg("ottext needs a database whose encoding is UTF8")));
  }
  OtCheckSize(text, size);
  return OtMake(order, text, size);
}

Datum ottext_in(PG_FUNCTION_ARGS) {
  const char* text = PG_GETARG_CSTRING(0);
  PG_RETURN_POINTER(TakeText(OtOrderOfTypmod(PG_GETARG_INT32(2)), text, strlen(text)));
}

Datum ottext_out(PG_FUNCTION_ARGS) {
  OtView view = OtViewOf(PG_GETARG_DATUM(0));
  PG_RETURN_CSTRING(pnstrdup(view.text, view.size));
}

Datum ottext_recv(PG_FUNCTION_ARGS) {
  StringInfo message = (StringInfo)PG_GETARG_POINTER(0);
  int size;
  const char* text = pq_getmsgtext(message, message->len - message->cursor, &size);
  PG_RETURN_POINTER(TakeText(OtOrderOfTypmod(PG_GETARG_INT32(2)), text, (size_t)size));
}

Datum ottext_send(PG_FUNCTION_ARGS) {
  OtView view = OtViewOf(PG_GETARG_DATUM(0));
  StringInfoData message;
  pq_begintypsend(&message);
  pq_sendtext(&message, view.text, (int)view.size);
  PG_RETURN_BYTEA_P(pq_endtypsend(&message));
}

Datum ottext_of_text(PG_FUNCTION_ARGS) {
  text* given = PG_GETARG_TEXT_PP(0);
  PG_RETURN_POINTER(TakeText(OT_NO_ORDER, VARDATA_ANY(given), VARSIZE_ANY_EXHDR(given)));
}

Datum ottext_to_text(PG_FUNCTION_ARGS) {
  OtView view = OtViewOf(PG_GETARG_DATUM(0));
  PG_RETURN_TEXT_P(cstring_to_text_with_len(view.text, (int)view.size));
}

/** Gives a value the order of a column. */
Datum ottext_coerce(PG_FUNCTION_ARGS) {
  const OtOrder order = OtOrderOfTypmod(PG_GETARG_INT32(1));
  OtView view = OtViewOf(PG_GETARG_DATUM(0));
  if (order == OT_NO_ORDER || order == view.order) PG_RETURN_DATUM(PG_GETARG_DATUM(0));
  PG_RETURN_POINTER(OtMake(order, view.text, view.size));
}

static Datum Concat(OtOrder order, const char* a, size_t aSize, const char* b, size_t bSize) {
  struct varlena* made = palloc(VARHDRSZ + OT_HEADER + aSize + bSize);
  char* bytes = VARDATA(made);
  SET_VARSIZE(made, VARHDRSZ + OT_HEADER + aSize + bSize);
  bytes[0] = (char)(order & 0xff);
  bytes[1] = (char)(order >> 8);
  memcpy(bytes + OT_HEADER, a, aSize);
  memcpy(bytes + OT_HEADER + aSize, b, bSize);
  OtCheckSize(bytes + OT_HEADER, aSize + bSize);
  return PointerGetDatum(made);
}

Datum ottext_concat(PG_FUNCTION_ARGS) {
  OtView a = OtViewOf(PG_GETARG_DATUM(0)), b = OtViewOf(PG_GETARG_DATUM(1));
  return Concat(OtJoin(a.order, b.order), a.text, a.size, b.text, b.size);
}

Datum ottext_concat_text(PG_FUNCTION_ARGS) {
  OtView a = OtViewOf(PG_GETARG_DATUM(0));
  text* b = PG_GETARG_TEXT_PP(1);
  return Concat(a.order, a.text, a.size, VARDATA_ANY(b), VARSIZE_ANY_EXHDR(b));
}

Datum text_concat_ottext(PG_FUNCTION_ARGS) {
  text* a = PG_GETARG_TEXT_PP(0);
  OtView b = OtViewOf(PG_GETARG_DATUM(1));
  return Concat(b.order, VARDATA_ANY(a), VARSIZE_ANY_EXHDR(a), b.text, b.size);
}

typedef int (*CaseFunction)(const ot95_collation*, const char*, size_t, ot95_buffer*);

/* A capital can be twice as many characters as the small letter, each of up to three bytes. */
static Datum ChangeCase(Datum value, CaseFunction change) {
  OtView view = OtViewOf(value);
  const OtOrder order = view.order != OT_NO_ORDER ? view.order : OT_NEUTRAL_ORDER;
  ot95_buffer out = {.room = 2 * view.size + 8};
  int status;
  out.data = palloc(out.room);
  status = change(OtCollation(order), view.text, view.size, &out);
  if (status == OT95_ERR_ROOM) {
    out.room = out.size;
    out.data = repalloc(out.data, out.room);
    status = change(OtCollation(order), view.text, view.size, &out);
  }
  OtCheck(status, "case of an ottext");
  OtCheckSize(out.data, out.size);
  return PointerGetDatum(OtMake(view.order, out.data, out.size));
}

Datum ottext_upper(PG_FUNCTION_ARGS) {
  return ChangeCase(PG_GETARG_DATUM(0), ot95_collation_upper);
}

Datum ottext_lower(PG_FUNCTION_ARGS) {
  return ChangeCase(PG_GETARG_DATUM(0), ot95_collation_lower);
}

Datum ottext_length(PG_FUNCTION_ARGS) {
  OtView view = OtViewOf(PG_GETARG_DATUM(0));
  PG_RETURN_INT32(pg_mbstrlen_with_len(view.text, (int)view.size));
}

/* As the server's function of the name counts. */
Datum ottext_substring(PG_FUNCTION_ARGS) {
  OtView view = OtViewOf(PG_GETARG_DATUM(0));
  const Datum whole = PointerGetDatum(cstring_to_text_with_len(view.text, (int)view.size));
  const Datum part =
      PG_NARGS() == 3
          ? DirectFunctionCall3(text_substr, whole, PG_GETARG_DATUM(1), PG_GETARG_DATUM(2))
          : DirectFunctionCall2(text_substr_no_len, whole, PG_GETARG_DATUM(1));
  text* cut = DatumGetTextPP(part);
  PG_RETURN_POINTER(OtMake(view.order, VARDATA_ANY(cut), VARSIZE_ANY_EXHDR(cut)));
}

/** The character where a text is found that equals the second one under the order, from 1; 0. */
Datum ottext_position(PG_FUNCTION_ARGS) {
  OtView view = OtViewOf(PG_GETARG_DATUM(0)), wanted = OtViewOf(PG_GETARG_DATUM(1));
  const OtOrder order = OtMeet(view.order, wanted.order);
  size_t place = 0;
  int found = 0;
  if (wanted.size == 0) PG_RETURN_INT32(1);
  OtCheck(ot95_collation_find(OtCollation(order), view.text, view.size, wanted.text, wanted.size,
                              &found, &place),
          "position in an ottext");
  PG_RETURN_INT32(found ? pg_mbstrlen_with_len(view.text, (int)place) + 1 : 0);
}
