// Records as an old database or file holds them, one behind another, as rows of JSON: of a bytea,
// or of a large object, which is read piece by piece.
#include "postgres.h"

#include "common/jsonapi.h"
#include "funcapi.h"
#include "libpq/be-fsstubs.h"
#include "miscadmin.h"
#include "utils/builtins.h"
#include "utils/json.h"
#include "utils/jsonb.h"
#include "utils/memutils.h"

#include "ottext.h"
#include "stored.h"

PG_FUNCTION_INFO_V1(ot_records);
PG_FUNCTION_INFO_V1(ot_records_large);

#define OT_MOST_ELEMENTS 1000000
#define OT_PIECE 65536

/** One member of a record: an array of values whose stored forms stand one behind another. */
typedef struct Member {
  ot95_type type;
  char* name;
  size_t count;
} Member;

typedef struct Layout {
  Member* members;
  int count;
  unsigned form;
} Layout;

/** The bytes that are read, as far as they are at hand. */
typedef struct Window {
  const char* bytes;
  size_t size;
  uint64 offset; /**< Of `bytes` in the whole. */
  Oid source;    /**< Large object that has more bytes; invalid where all are at hand. */
  uint64 read;   /**< Bytes of it that have been read. */
  StringInfoData held;
} Window;

/* Layouts: TYPE[:NAME][xCOUNT],... */

/** Takes "x12" off the end of an item; 1 where there is none. */
static size_t TakeCount(char* item) {
  size_t digits = strlen(item);
  long long count;
  while (digits > 0 && item[digits - 1] >= '0' && item[digits - 1] <= '9') --digits;
  if (item[digits] == 0 || digits == 0 || item[digits - 1] != 'x') return 1;
  count = strtoll(item + digits, NULL, 10);
  if (count < 1 || count > OT_MOST_ELEMENTS) {
    ereport(ERROR, (errcode(ERRCODE_INVALID_PARAMETER_VALUE),
                    errmsg("layout: a member has 1 to %d elements, not %s", OT_MOST_ELEMENTS,
                           item + digits)));
  }
  item[digits - 1] = 0;
  return (size_t)count;
}

static bool HasName(const Layout* layout, const char* name) {
  for (int i = 0; i < layout->count; ++i) {
    if (strcmp(layout->members[i].name, name) == 0) return true;
  }
  return false;
}

/* A member without a name has its type's, with its place behind it where that was taken. */
static void AddMember(Layout* layout, char* item) {
  Member member = {.count = TakeCount(item)};
  char* colon = strchr(item, ':');
  if (colon != NULL) *colon = 0;
  member.type = OtDescribe(OtTypeNamed(item));
  member.name = colon != NULL ? colon + 1 : pstrdup(member.type.name);
  if (colon == NULL && HasName(layout, member.name)) {
    member.name = psprintf("%s#%d", member.name, layout->count + 1);
  }
  if (*member.name == 0 || HasName(layout, member.name)) {
    ereport(ERROR, (errcode(ERRCODE_INVALID_PARAMETER_VALUE),
                    errmsg("layout: a member needs a name of its own, not \"%s\"", member.name)));
  }
  if (member.type.memory_size == 0) {
    ereport(ERROR, (errcode(ERRCODE_INVALID_PARAMETER_VALUE),
                    errmsg("layout: values of type %s have no stored form", member.type.name)));
  }
  layout->members[layout->count++] = member;
}

static Layout ParseLayout(char* list, unsigned form) {
  Layout layout = {palloc((strlen(list) / 2 + 2) * sizeof(Member)), 0, form};
  for (char* item = list; item != NULL;) {
    char* comma = strchr(item, ',');
    if (comma != NULL) *comma = 0;
    AddMember(&layout, item);
    item = comma != NULL ? comma + 1 : NULL;
  }
  return layout;
}

/* Bytes. */

/** Reads more bytes behind those at hand. @return false where there are none. */
static bool Grow(Window* window) {
  const size_t piece = Max(OT_PIECE, window->size); /* so that a long member is read in few steps */
  bytea* got;
  if (!OidIsValid(window->source)) return false;
  got = DatumGetByteaPP(DirectFunctionCall3(be_lo_get_fragment, ObjectIdGetDatum(window->source),
                                            Int64GetDatum((int64)window->read),
                                            Int32GetDatum((int32)piece)));
  memmove(window->held.data, window->bytes, window->size);
  window->held.len = (int)window->size;
  appendBinaryStringInfo(&window->held, VARDATA_ANY(got), (int)VARSIZE_ANY_EXHDR(got));
  window->read += VARSIZE_ANY_EXHDR(got);
  window->bytes = window->held.data;
  window->size = (size_t)window->held.len;
  return VARSIZE_ANY_EXHDR(got) > 0;
}

static void Drop(Window* window, size_t size) {
  window->bytes += size;
  window->size -= size;
  window->offset += size;
}

static ot95_array MemberAt(const Window* window, const Layout* layout, const Member* member) {
  return (ot95_array){member->type.id, layout->form, window->bytes, window->size, member->count};
}

/* That the bytes end too early counts only where there are no more. */
static int VerifyMember(Window* window, const Layout* layout, const Member* member, size_t* end) {
  for (;;) {
    const ot95_array array = MemberAt(window, layout, member);
    const int status = ot95_verify(&array, end);
    CHECK_FOR_INTERRUPTS();
    if (status != OT95_ERR_ENDS || !Grow(window)) return status;
  }
}

/* JSON. */

static void AppendElement(StringInfo json, const Member* member, const ot95_array* array,
                          size_t index) {
  int isNull;
  char* printed;
  const char* format = member->type.format;
  OtCheck(ot95_is_null(array, index, &isNull), "a member of a record");
  if (isNull) {
    appendStringInfoString(json, "null");
    return;
  }
  printed = OtPrint(array, index);
  /* A text or a character may look like a number. */
  if (strcmp(format, "%s") != 0 && strcmp(format, "%c") != 0 &&
      IsValidJsonNumber(printed, (int)strlen(printed))) {
    appendStringInfoString(json, printed);
  } else {
    escape_json(json, printed);
  }
}

/* The library walks an array up to the element that is asked for. Where all are of a size this
   walks it here, a step each. */
static void AppendMember(StringInfo json, const Member* member, const ot95_array* array) {
  const bool isFixed = member->type.is_fixed != 0 && member->type.stored_size != 0;
  if (member->count == 1) {
    AppendElement(json, member, array, 0);
    return;
  }
  for (size_t i = 0; i < member->count; ++i) {
    ot95_array element = *array;
    CHECK_FOR_INTERRUPTS();
    appendStringInfoChar(json, i == 0 ? '[' : ',');
    if (isFixed) {
      element.bytes = (const char*)array->bytes + i * member->type.stored_size;
      element.size = member->type.stored_size;
      element.count = 1;
    }
    AppendElement(json, member, &element, isFixed ? 0 : i);
  }
  appendStringInfoChar(json, ']');
}

static void PutJson(ReturnSetInfo* result, StringInfo json) {
  bool isNull = false;
  Datum row = DirectFunctionCall1(jsonb_in, CStringGetDatum(json->data));
  tuplestore_putvalues(result->setResult, result->setDesc, &row, &isNull);
}

static void PutDamage(ReturnSetInfo* result, const Window* window, const Member* member,
                      uint64 record, uint64 start, int status, size_t end) {
  StringInfoData json;
  initStringInfo(&json);
  appendStringInfo(&json,
                   "{\"offset\":" UINT64_FORMAT ",\"damage\":{\"record\":" UINT64_FORMAT
                   ",\"offset\":" UINT64_FORMAT ",\"member\":",
                   start, record, window->offset + end);
  escape_json(&json, member->name);
  appendStringInfoString(&json, ",\"reason\":");
  escape_json(&json, status == OT95_ERR_ENDS ? "the bytes end too early"
                                             : psprintf("not a stored %s", member->type.name));
  appendStringInfoString(&json, "}}");
  PutJson(result, &json);
}

/** Puts a record out, or what is wrong with it. @return false behind the last one. */
static bool PutRecord(ReturnSetInfo* result, Window* window, const Layout* layout, uint64 record) {
  const uint64 start = window->offset;
  StringInfoData json;
  if (window->size == 0 && !Grow(window)) return false;
  initStringInfo(&json);
  appendStringInfo(&json, "{\"offset\":" UINT64_FORMAT ",\"values\":", start);
  for (int i = 0; i < layout->count; ++i) {
    const Member* member = &layout->members[i];
    ot95_array array;
    size_t end = 0;
    const int status = VerifyMember(window, layout, member, &end);
    if (status != OT95_OK) {
      if (status != OT95_ERR_ENDS && status != OT95_ERR_DAMAGED) OtCheck(status, member->name);
      PutDamage(result, window, member, record, start, status, end);
      return false;
    }
    array = MemberAt(window, layout, member);
    appendStringInfoChar(&json, i == 0 ? '{' : ',');
    escape_json(&json, member->name);
    appendStringInfoChar(&json, ':');
    AppendMember(&json, member, &array);
    Drop(window, end);
  }
  appendStringInfoString(&json, "}}");
  PutJson(result, &json);
  return true;
}

static void PutAll(FunctionCallInfo fcinfo, Window* window) {
  Layout layout = ParseLayout(text_to_cstring(PG_GETARG_TEXT_PP(1)),
                              OtFormNamed(text_to_cstring(PG_GETARG_TEXT_PP(2))));
  MemoryContext each =
      AllocSetContextCreate(CurrentMemoryContext, "a record", ALLOCSET_DEFAULT_SIZES);
  MemoryContext whole = MemoryContextSwitchTo(each);
  ReturnSetInfo* result = (ReturnSetInfo*)fcinfo->resultinfo;
  for (uint64 record = 0; PutRecord(result, window, &layout, record); ++record) {
    MemoryContextReset(each);
    CHECK_FOR_INTERRUPTS();
  }
  MemoryContextSwitchTo(whole);
  MemoryContextDelete(each);
}

/** (bytea, layout, form) */
Datum ot_records(PG_FUNCTION_ARGS) {
  bytea* bytes = PG_GETARG_BYTEA_PP(0);
  Window window = {.bytes = VARDATA_ANY(bytes), .size = VARSIZE_ANY_EXHDR(bytes)};
  InitMaterializedSRF(fcinfo, MAT_SRF_USE_EXPECTED_DESC);
  PutAll(fcinfo, &window);
  return (Datum)0;
}

/** (large object, layout, form) */
Datum ot_records_large(PG_FUNCTION_ARGS) {
  Window window = {.source = PG_GETARG_OID(0)};
  initStringInfo(&window.held);
  window.bytes = window.held.data;
  InitMaterializedSRF(fcinfo, MAT_SRF_USE_EXPECTED_DESC);
  PutAll(fcinfo, &window);
  return (Datum)0;
}
