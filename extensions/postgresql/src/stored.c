// Functions between the stored bytes of a value and texts, and what can be asked of the bytes
// alone.
#include "postgres.h"

#include "fmgr.h"
#include "funcapi.h"
#include "mb/pg_wchar.h"
#include "utils/builtins.h"

#include "native.h"
#include "ottext.h"
#include "stored.h"

PG_FUNCTION_INFO_V1(ot_decode);
PG_FUNCTION_INFO_V1(ot_encode);
PG_FUNCTION_INFO_V1(ot_compare);
PG_FUNCTION_INFO_V1(ot_match);
PG_FUNCTION_INFO_V1(ot_hash);
PG_FUNCTION_INFO_V1(ot_hash64);
PG_FUNCTION_INFO_V1(ot_sort_key);
PG_FUNCTION_INFO_V1(ot_translate);
PG_FUNCTION_INFO_V1(ot_convert);
PG_FUNCTION_INFO_V1(ot_verify);

#define OT_COMPARISON                                                            \
  (OT95_IGNORE_CASE | OT95_IGNORE_ACCENT | OT95_IGNORE_SPACE | OT95_ORDER_ONLY | \
   OT95_IGNORE_SYMBOLS)

int OtTypeNamed(const char* name) {
  int type;
  if (ot95_type_by_name(name, &type) != OT95_OK) {
    ereport(ERROR,
            (errcode(ERRCODE_UNDEFINED_OBJECT), errmsg("no type of stored values: \"%s\"", name),
             errhint("The view ot_types has their names.")));
  }
  return type;
}

unsigned OtFormNamed(const char* name) {
  char* end;
  unsigned long number;
  if (strcmp(name, "native") == 0) return OT95_FORM_NATIVE;
  if (strcmp(name, "big-endian") == 0) return OT95_FORM_BIG_ENDIAN;
  number = strtoul(name, &end, 0);
  if (*name < '0' || *name > '9' || *end != 0 || number > 0xff) {
    ereport(ERROR, (errcode(ERRCODE_INVALID_PARAMETER_VALUE), errmsg("no form: \"%s\"", name),
                    errhint("There are native, big-endian, and numbers from 0 to 255.")));
  }
  return (unsigned)number;
}

ot95_type OtDescribe(int type) {
  ot95_type description = {.struct_size = sizeof description};
  OtCheck(ot95_type_describe(type, &description), "a type");
  return description;
}

static ot95_array ArrayOf(struct varlena* bytes, int type, unsigned form) {
  return (ot95_array){type, form, VARDATA_ANY(bytes), VARSIZE_ANY_EXHDR(bytes), 1};
}

static char* TextArgument(FunctionCallInfo fcinfo, int argument) {
  return text_to_cstring(PG_GETARG_TEXT_PP(argument));
}

ot95_array OtArrayOf(FunctionCallInfo fcinfo, int first) {
  return ArrayOf(PG_GETARG_BYTEA_PP(first), OtTypeNamed(TextArgument(fcinfo, first + 1)),
                 OtFormNamed(TextArgument(fcinfo, first + 2)));
}

ot95_buffer OtTake(OtGive give, const void* what, const char* doing) {
  ot95_buffer out = {palloc(256), 255, 0};
  int status = give(what, &out);
  if (status == OT95_ERR_ROOM) {
    if (!AllocSizeIsValid(out.size + 1)) OtCheck(OT95_ERR_MEMORY, doing);
    out.room = out.size;
    out.data = repalloc(out.data, out.room + 1);
    status = give(what, &out);
  }
  OtCheck(status, doing);
  ((char*)out.data)[out.size] = 0;
  return out;
}

static bytea* BytesOf(ot95_buffer given) {
  return (bytea*)cstring_to_text_with_len(given.data, (int)given.size);
}

typedef struct Element {
  const ot95_array* array;
  size_t index;
} Element;

static int GivePrinted(const void* what, ot95_buffer* out) {
  const Element* element = what;
  return ot95_print(element->array, element->index, NULL, out);
}

char* OtPrint(const ot95_array* array, size_t index) {
  const Element element = {array, index};
  const ot95_buffer printed = OtTake(GivePrinted, &element, "printing a stored value");
  return pg_any_to_server(printed.data, (int)printed.size, PG_UTF8);
}

Datum ot_decode(PG_FUNCTION_ARGS) {
  const ot95_array array = OtArrayOf(fcinfo, 0);
  int isNull;
  OtCheck(ot95_is_null(&array, 0, &isNull), "decoding a stored value");
  if (isNull) PG_RETURN_NULL();
  PG_RETURN_TEXT_P(cstring_to_text(OtPrint(&array, 0)));
}

/* What is to be stored. */
typedef struct Source {
  int type;
  unsigned form;
  ot95_span text;
  ot95_scan_options options;
} Source;

static int GiveScanned(const void* what, ot95_buffer* out) {
  const Source* source = what;
  return ot95_scan(source->type, &source->text, 1, &source->options, source->form, out);
}

/* A type reads of a text what it finds, and says nothing where that isn't what the text says. */
static bool MeansItsText(const Source* source, const ot95_buffer* stored) {
  const ot95_array array = {source->type, source->form, stored->data, stored->size, 1};
  const char* printed = OtPrint(&array, 0);
  return strlen(printed) == source->text.size &&
         memcmp(printed, source->text.data, source->text.size) == 0;
}

static bool IsText(int type) {
  return OtDescribe(type).kind == OT95_KIND_TEXT;
}

static ot95_buffer Encode(const Source* source) {
  ot95_buffer small = {palloc(256), 255, 0};
  if (IsText(source->type)) return OtTake(GiveScanned, source, "encoding a text");
  if (GiveScanned(source, &small) == OT95_OK && MeansItsText(source, &small)) return small;
  return OtEncodeNative(source->type, source->form, pnstrdup(source->text.data, source->text.size));
}

/** (text, type, form, language, code set) */
Datum ot_encode(PG_FUNCTION_ARGS) {
  char* given = TextArgument(fcinfo, 0);
  const char* utf8 = pg_server_to_any(given, (int)strlen(given), PG_UTF8);
  Source source = {.type = OtTypeNamed(TextArgument(fcinfo, 1)),
                   .form = OtFormNamed(TextArgument(fcinfo, 2)),
                   .text = {utf8, strlen(utf8)},
                   .options = {.struct_size = sizeof source.options}};
  OtCheck(ot95_language_by_tag(TextArgument(fcinfo, 3), &source.options.language),
          "the language of a text");
  OtCheck(ot95_code_set_by_name(TextArgument(fcinfo, 4), &source.options.code_set),
          "the code set of a text");
  PG_RETURN_BYTEA_P(BytesOf(Encode(&source)));
}

/** Two values of one type in one form: (a, b, type, form). */
static void TwoArrays(FunctionCallInfo fcinfo, ot95_array* a, ot95_array* b) {
  *b = OtArrayOf(fcinfo, 1);
  *a = ArrayOf(PG_GETARG_BYTEA_PP(0), b->type, b->form);
}

Datum ot_compare(PG_FUNCTION_ARGS) {
  ot95_array a, b;
  int sign;
  TwoArrays(fcinfo, &a, &b);
  OtCheck(ot95_compare(&a, &b, OtParseOptions(TextArgument(fcinfo, 4), OT_COMPARISON), &sign),
          "comparison of stored values");
  PG_RETURN_INT32(sign);
}

Datum ot_match(PG_FUNCTION_ARGS) {
  ot95_array value, pattern;
  int matches;
  TwoArrays(fcinfo, &value, &pattern);
  OtCheck(ot95_match(&value, &pattern, OtParseOptions(TextArgument(fcinfo, 4), OT_COMPARISON),
                     &matches),
          "match of a stored value");
  PG_RETURN_BOOL(matches != 0);
}

Datum ot_hash(PG_FUNCTION_ARGS) {
  const ot95_array array = OtArrayOf(fcinfo, 0);
  uint32_t hash;
  OtCheck(ot95_hash(&array, &hash), "hash of a stored value");
  PG_RETURN_INT64((int64)hash);
}

Datum ot_hash64(PG_FUNCTION_ARGS) {
  const ot95_array array = OtArrayOf(fcinfo, 0);
  uint64_t hash;
  OtCheck(ot95_hash64(&array, OtParseOptions(TextArgument(fcinfo, 3), OT_COMPARISON),
                      (uint64_t)PG_GETARG_INT64(4), &hash),
          "hash of a stored value");
  PG_RETURN_INT64((int64)hash);
}

/* A stored value, and what is asked of it. */
typedef struct Question {
  ot95_array array;
  unsigned number; /* options, a form, a type */
  int type;
} Question;

static int GiveSortKey(const void* what, ot95_buffer* out) {
  const Question* question = what;
  return ot95_sort_key(&question->array, question->number, out);
}

Datum ot_sort_key(PG_FUNCTION_ARGS) {
  const Question question = {OtArrayOf(fcinfo, 0),
                             OtParseOptions(TextArgument(fcinfo, 3), OT_COMPARISON), 0};
  PG_RETURN_BYTEA_P(BytesOf(OtTake(GiveSortKey, &question, "sort key of a stored value")));
}

static int GiveTranslated(const void* what, ot95_buffer* out) {
  const Question* question = what;
  return ot95_translate(&question->array, question->number, out);
}

Datum ot_translate(PG_FUNCTION_ARGS) {
  const Question question = {OtArrayOf(fcinfo, 0), OtFormNamed(TextArgument(fcinfo, 3)), 0};
  PG_RETURN_BYTEA_P(BytesOf(OtTake(GiveTranslated, &question, "translation of a stored value")));
}

static int GiveConverted(const void* what, ot95_buffer* out) {
  const Question* question = what;
  return ot95_convert(&question->array, question->type, question->array.form, out);
}

/** (bytes, type, form, other type) */
Datum ot_convert(PG_FUNCTION_ARGS) {
  const Question question = {OtArrayOf(fcinfo, 0), 0, OtTypeNamed(TextArgument(fcinfo, 3))};
  PG_RETURN_BYTEA_P(BytesOf(OtTake(GiveConverted, &question, "conversion of a stored value")));
}

/** Whether bytes begin with a stored array, where it ends or how far it is good, and why it isn't.
 */
Datum ot_verify(PG_FUNCTION_ARGS) {
  ot95_array array = OtArrayOf(fcinfo, 0);
  TupleDesc columns;
  size_t end = 0;
  bool nulls[3] = {false};
  Datum values[3];
  const int32 count = PG_GETARG_INT32(3);
  int status;
  if (count < 1) OtCheck(OT95_ERR_ARGUMENT, "number of stored values");
  array.count = (size_t)count;
  status = ot95_verify(&array, &end);
  if (status != OT95_ERR_ENDS && status != OT95_ERR_DAMAGED) OtCheck(status, "verification");
  if (get_call_result_type(fcinfo, NULL, &columns) != TYPEFUNC_COMPOSITE) {
    elog(ERROR, "ot_verify returns a row");
  }
  values[0] = BoolGetDatum(status == OT95_OK);
  values[1] = Int64GetDatum((int64)end);
  nulls[2] = status == OT95_OK;
  values[2] = CStringGetTextDatum(ot95_strerror(status));
  PG_RETURN_DATUM(HeapTupleGetDatum(heap_form_tuple(BlessTupleDesc(columns), values, nulls)));
}
