// What the library knows, as rows: its types, its languages, its versions.
#include "postgres.h"

#include "funcapi.h"
#include "utils/builtins.h"

#include "ottext.h"
#include "stored.h"

PG_FUNCTION_INFO_V1(ot_type_rows);
PG_FUNCTION_INFO_V1(ot_language_rows);
PG_FUNCTION_INFO_V1(ot_version);

static void Put(FunctionCallInfo fcinfo, Datum* values) {
  ReturnSetInfo* result = (ReturnSetInfo*)fcinfo->resultinfo;
  bool nulls[16] = {false};
  tuplestore_putvalues(result->setResult, result->setDesc, values, nulls);
}

Datum ot_type_rows(PG_FUNCTION_ARGS) {
  static const char* const kinds[] = {"none",     "integer", "real", "moment",
                                      "identity", "bytes",   "text"};
  size_t count = 0;
  InitMaterializedSRF(fcinfo, 0);
  OtCheck(ot95_type_count(&count), "the table of types");
  for (int id = 0; id < (int)count; ++id) {
    const ot95_type type = OtDescribe(id);
    Datum values[] = {Int32GetDatum(id),
                      CStringGetTextDatum(type.name),
                      CStringGetTextDatum(type.kind < lengthof(kinds) ? kinds[type.kind] : "none"),
                      Int32GetDatum((int32)type.memory_size),
                      Int32GetDatum((int32)type.stored_size),
                      BoolGetDatum(type.is_fixed != 0),
                      BoolGetDatum(type.is_nullable != 0),
                      Int32GetDatum((int32)type.null_size),
                      CStringGetTextDatum(type.format)};
    Put(fcinfo, values);
  }
  return (Datum)0;
}

Datum ot_language_rows(PG_FUNCTION_ARGS) {
  InitMaterializedSRF(fcinfo, 0);
  for (unsigned number = 1; number <= 0xff; ++number) {
    ot95_language language = {.struct_size = sizeof language};
    uint64_t version;
    Datum values[4];
    if (ot95_language_describe(number, &language) != OT95_OK) continue;
    OtCheck(ot95_order_version(number, &version), "version of an order");
    values[0] = Int32GetDatum((int32)number);
    values[1] = CStringGetTextDatum(language.tag);
    values[2] = CStringGetTextDatum(language.name);
    values[3] = CStringGetTextDatum(psprintf("%016llx", (unsigned long long)version));
    Put(fcinfo, values);
  }
  return (Datum)0;
}

Datum ot_version(PG_FUNCTION_ARGS) {
  ot95_versions v = {.struct_size = sizeof v};
  OtCheck(ot95_version(&v), "versions of the library");
  PG_RETURN_TEXT_P(cstring_to_text(psprintf(
      "%u.%u.%u.%u.%u, Unicode %s, CLDR %s, collation %u, sort keys %u", v.library[0], v.library[1],
      v.library[2], v.library[3], v.library[4], v.unicode, v.cldr, v.collation, v.sort_key)));
}
