// Orders: a language and options, as people write them, as a type modifier, as a collation.
#include "postgres.h"

#include "catalog/pg_type.h"
#include "lib/stringinfo.h"
#include "utils/array.h"
#include "utils/builtins.h"

#include "ottext.h"

PG_MODULE_MAGIC;

void _PG_init(void);

PG_FUNCTION_INFO_V1(ottext_typmod_in);
PG_FUNCTION_INFO_V1(ottext_typmod_out);
PG_FUNCTION_INFO_V1(ottext_order);

static const struct {
  unsigned option;
  const char* name;
} kOptions[] = {
    {OT95_IGNORE_CASE, "ignore-case"},       {OT95_IGNORE_ACCENT, "ignore-accent"},
    {OT95_IGNORE_SPACE, "ignore-space"},     {OT95_ORDER_ONLY, "order-only"},
    {OT95_IGNORE_SYMBOLS, "ignore-symbols"},
};

#define OT_ALL_OPTIONS                                                           \
  (OT95_IGNORE_CASE | OT95_IGNORE_ACCENT | OT95_IGNORE_SPACE | OT95_ORDER_ONLY | \
   OT95_IGNORE_SYMBOLS)

void _PG_init(void) {
  OtInstallPlanner();
  OtInstallVersions();
}

static int SqlState(int status) {
  switch (status) {
    case OT95_ERR_TEXT:
    case OT95_ERR_VALUE:
      return ERRCODE_INVALID_TEXT_REPRESENTATION;
    case OT95_ERR_ENDS:
    case OT95_ERR_DAMAGED:
      return ERRCODE_INVALID_BINARY_REPRESENTATION;
    case OT95_ERR_MEMORY:
      return ERRCODE_OUT_OF_MEMORY;
    case OT95_ERR_NOT_SUPPORTED:
      return ERRCODE_FEATURE_NOT_SUPPORTED;
    case OT95_ERR_INTERNAL:
      return ERRCODE_INTERNAL_ERROR;
    default:
      return ERRCODE_INVALID_PARAMETER_VALUE;
  }
}

void OtCheck(int status, const char* what) {
  if (status == OT95_OK) return;
  ereport(ERROR, (errcode(SqlState(status)), errmsg("%s: %s", what, ot95_strerror(status))));
}

unsigned OtOptionsOf(OtOrder order) {
  return (unsigned)(order >> 8) << OT_OPTION_SHIFT;
}

const char* OtTagOf(OtOrder order) {
  ot95_language language = {.struct_size = sizeof language};
  OtCheck(ot95_language_describe(order & 0xff, &language), "the language of an ottext");
  return language.tag;
}

ot95_collation* OtCollations[1 << OT_ORDER_BITS];

const ot95_collation* OtOpenCollation(OtOrder order) {
  if (order >= lengthof(OtCollations)) OtCheck(OT95_ERR_DAMAGED, "the order of an ottext");
  OtCheck(ot95_collation_open(OtTagOf(order), OtOptionsOf(order), &OtCollations[order]),
          "the order of an ottext");
  return OtCollations[order];
}

unsigned OtParseOptions(const char* names, unsigned allowed) {
  unsigned options = 0;
  while (*names != 0) {
    const size_t blanks = strspn(names, ", ");
    const size_t length = strcspn(names + blanks, ", ");
    size_t i = 0;
    names += blanks;
    if (length == 0) break;
    while (i < lengthof(kOptions) &&
           ((kOptions[i].option & allowed) == 0 || strlen(kOptions[i].name) != length ||
            strncmp(kOptions[i].name, names, length) != 0)) {
      ++i;
    }
    if (i == lengthof(kOptions)) {
      ereport(ERROR, (errcode(ERRCODE_INVALID_PARAMETER_VALUE),
                      errmsg("no option of comparison: \"%s\"", pnstrdup(names, length)),
                      errhint("There are %s, separated by commas.", OtOptionNames(allowed))));
    }
    options |= kOptions[i].option;
    names += length;
  }
  return options;
}

char* OtOptionNames(unsigned options) {
  StringInfoData names;
  initStringInfo(&names);
  for (size_t i = 0; i < lengthof(kOptions); ++i) {
    if ((options & kOptions[i].option) == 0) continue;
    if (names.len != 0) appendStringInfoChar(&names, ',');
    appendStringInfoString(&names, kOptions[i].name);
  }
  return names.data;
}

/** ('sv'), ('sv', 'ignore-case,ignore-accent'). */
Datum ottext_typmod_in(PG_FUNCTION_ARGS) {
  ArrayType* given = PG_GETARG_ARRAYTYPE_P(0);
  Datum* items;
  int count;
  unsigned language = 0, options = 0;
  deconstruct_array(given, CSTRINGOID, -2, false, TYPALIGN_CHAR, &items, NULL, &count);
  if (count < 1 || count > 2) {
    ereport(ERROR,
            (errcode(ERRCODE_INVALID_PARAMETER_VALUE),
             errmsg("ottext takes a language and options, as in ottext('sv', 'ignore-case')")));
  }
  if (ot95_language_by_tag(DatumGetCString(items[0]), &language) != OT95_OK) {
    ereport(ERROR, (errcode(ERRCODE_INVALID_PARAMETER_VALUE),
                    errmsg("no language for ottext: \"%s\"", DatumGetCString(items[0])),
                    errhint("The view ot_languages has the tags.")));
  }
  if (count == 2) options = OtParseOptions(DatumGetCString(items[1]), OT_ALL_OPTIONS);
  PG_RETURN_INT32((int32)(language | options >> OT_OPTION_SHIFT << 8));
}

static char* PrintOrder(OtOrder order) {
  const unsigned options = OtOptionsOf(order);
  if (options == 0) return psprintf("('%s')", OtTagOf(order));
  return psprintf("('%s','%s')", OtTagOf(order), OtOptionNames(options));
}

Datum ottext_typmod_out(PG_FUNCTION_ARGS) {
  const int32 typmod = PG_GETARG_INT32(0);
  PG_RETURN_CSTRING(typmod < 0 ? pstrdup("") : PrintOrder(OtOrderOfTypmod(typmod)));
}

/** What a value's order is; null for a literal. */
Datum ottext_order(PG_FUNCTION_ARGS) {
  OtView view = OtViewOf(PG_GETARG_DATUM(0));
  if (view.order == OT_NO_ORDER) PG_RETURN_NULL();
  PG_RETURN_TEXT_P(cstring_to_text(psprintf("ottext%s", PrintOrder(view.order))));
}

void OtRefuseWithoutOrder(void) {
  ereport(ERROR, (errcode(ERRCODE_INDETERMINATE_COLLATION),
                  errmsg("values of ottext that have no order can't be compared"),
                  errhint("Cast one of them, as in 'x'::ottext('sv'), or declare the column so.")));
  pg_unreachable();
}

OtOrder OtJoin(OtOrder a, OtOrder b) {
  if (a == b || b == OT_NO_ORDER) return a;
  if (a == OT_NO_ORDER) return b;
  ereport(ERROR, (errcode(ERRCODE_COLLATION_MISMATCH),
                  errmsg("an ottext%s meets an ottext%s", PrintOrder(a), PrintOrder(b)),
                  errhint("Cast one of them to the type of the other.")));
}

OtOrder OtMeet(OtOrder a, OtOrder b) {
  const OtOrder order = OtJoin(a, b);
  if (order == OT_NO_ORDER) OtRefuseWithoutOrder();
  return order;
}
