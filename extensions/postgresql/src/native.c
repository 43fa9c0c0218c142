// Stored values as values of the server's own types, and back from their texts.
#include "postgres.h"

#include <math.h>

#include "utils/builtins.h"
#include "utils/date.h"
#include "utils/datetime.h"
#include "utils/timestamp.h"

#include "native.h"
#include "ottext.h"
#include "stored.h"

PG_FUNCTION_INFO_V1(ot_integer);
PG_FUNCTION_INFO_V1(ot_real);
PG_FUNCTION_INFO_V1(ot_date);
PG_FUNCTION_INFO_V1(ot_time);
PG_FUNCTION_INFO_V1(ot_timestamp);
PG_FUNCTION_INFO_V1(ot_bytes);

#define OT_MICROSECONDS_IN_HUNDREDTH 10000

/** What a moment of a type consists of. */
typedef struct Parts {
  const char* type;
  bool hasDay, hasClock, hasHundredths;
} Parts;

static const Parts kMoments[] = {
    {"OtDate", true, false, false},    {"d_Date", true, false, false},
    {"OtTime", false, true, false},    {"d_Time", false, true, true},
    {"OtDateTime", true, true, false}, {"d_Timestamp", true, true, true},
};

static const Parts* PartsOf(const char* type) {
  for (size_t i = 0; i < lengthof(kMoments); ++i) {
    if (strcmp(kMoments[i].type, type) == 0) return &kMoments[i];
  }
  return NULL;
}

pg_attribute_noreturn() static void RefuseType(const ot95_type* type, const char* wanted) {
  ereport(ERROR,
          (errcode(ERRCODE_DATATYPE_MISMATCH), errmsg("a stored %s is no %s", type->name, wanted)));
  pg_unreachable();
}

pg_attribute_noreturn() static void RefuseValue(const char* type, const char* value) {
  ereport(ERROR, (errcode(ERRCODE_DATETIME_FIELD_OVERFLOW),
                  errmsg("%s has no place for \"%s\"", type, value)));
  pg_unreachable();
}

/** The first element of the array that arguments name. @return false for a null. */
static bool Decode(FunctionCallInfo fcinfo, unsigned kind, const char* wanted, ot95_type* type,
                   ot95_value* value) {
  const ot95_array array = OtArrayOf(fcinfo, 0);
  *type = OtDescribe(array.type);
  if (type->kind != kind) RefuseType(type, wanted);
  OtCheck(ot95_decode(&array, value), "decoding a stored value");
  return value->is_null == 0;
}

Datum ot_integer(PG_FUNCTION_ARGS) {
  ot95_type type;
  ot95_value value;
  if (!Decode(fcinfo, OT95_KIND_INTEGER, "whole number", &type, &value)) PG_RETURN_NULL();
  PG_RETURN_INT64(value.as.integer);
}

Datum ot_real(PG_FUNCTION_ARGS) {
  ot95_type type;
  ot95_value value;
  if (!Decode(fcinfo, OT95_KIND_REAL, "real number", &type, &value)) PG_RETURN_NULL();
  PG_RETURN_FLOAT8(value.as.real);
}

Datum ot_bytes(PG_FUNCTION_ARGS) {
  ot95_type type;
  ot95_value value;
  if (!Decode(fcinfo, OT95_KIND_BYTES, "run of bytes", &type, &value)) PG_RETURN_NULL();
  PG_RETURN_TEXT_P(cstring_to_text_with_len(value.as.bytes.data, (int)value.as.bytes.size));
}

static const Parts* DecodeMoment(FunctionCallInfo fcinfo, const char* wanted, ot95_moment* moment) {
  ot95_type type;
  ot95_value value;
  const Parts* parts;
  if (!Decode(fcinfo, OT95_KIND_MOMENT, wanted, &type, &value)) return NULL;
  parts = PartsOf(type.name);
  if (parts == NULL) RefuseType(&type, wanted);
  *moment = value.as.moment;
  return parts;
}

static DateADT DateOf(const ot95_moment* moment) {
  struct pg_tm tm = {.tm_year = moment->year, .tm_mon = moment->month, .tm_mday = moment->day};
  if (ValidateDate(DTK_M(YEAR) | DTK_M(MONTH) | DTK_M(DAY), true, false, false, &tm) != 0 ||
      !IS_VALID_JULIAN(tm.tm_year, tm.tm_mon, tm.tm_mday)) {
    ereport(ERROR,
            (errcode(ERRCODE_DATETIME_FIELD_OVERFLOW),
             errmsg("no day of the calendar: %d-%d-%d", moment->year, moment->month, moment->day)));
  }
  return date2j(moment->year, moment->month, moment->day) - POSTGRES_EPOCH_JDATE;
}

static TimeADT TimeOf(const ot95_moment* moment) {
  if (moment->hour < 0 || moment->hour > 23 || moment->minute < 0 || moment->minute > 59 ||
      moment->second < 0 || moment->second > 59 || moment->hundredth < 0 ||
      moment->hundredth > 99) {
    ereport(ERROR, (errcode(ERRCODE_DATETIME_FIELD_OVERFLOW),
                    errmsg("no time of a day: %d:%d:%d.%d", moment->hour, moment->minute,
                           moment->second, moment->hundredth)));
  }
  return ((moment->hour * INT64CONST(60) + moment->minute) * 60 + moment->second) * USECS_PER_SEC +
         moment->hundredth * OT_MICROSECONDS_IN_HUNDREDTH;
}

Datum ot_date(PG_FUNCTION_ARGS) {
  ot95_moment moment;
  const Parts* parts = DecodeMoment(fcinfo, "date", &moment);
  if (parts == NULL) PG_RETURN_NULL();
  if (!parts->hasDay)
    ereport(ERROR, (errcode(ERRCODE_DATATYPE_MISMATCH), errmsg("%s has no date", parts->type)));
  PG_RETURN_DATEADT(DateOf(&moment));
}

Datum ot_time(PG_FUNCTION_ARGS) {
  ot95_moment moment;
  const Parts* parts = DecodeMoment(fcinfo, "time", &moment);
  if (parts == NULL) PG_RETURN_NULL();
  if (!parts->hasClock)
    ereport(ERROR, (errcode(ERRCODE_DATATYPE_MISMATCH), errmsg("%s has no time", parts->type)));
  PG_RETURN_TIMEADT(TimeOf(&moment));
}

Datum ot_timestamp(PG_FUNCTION_ARGS) {
  ot95_moment moment;
  const Parts* parts = DecodeMoment(fcinfo, "date and time", &moment);
  if (parts == NULL) PG_RETURN_NULL();
  if (!parts->hasDay)
    ereport(ERROR, (errcode(ERRCODE_DATATYPE_MISMATCH), errmsg("%s has no date", parts->type)));
  PG_RETURN_TIMESTAMP(DateOf(&moment) * USECS_PER_DAY + TimeOf(&moment));
}

/** The fields of what the server reads of a text. */
static void ReadMoment(const Parts* parts, char* text, ot95_moment* moment) {
  struct pg_tm tm = {0};
  fsec_t fraction = 0;
  const Datum none = ObjectIdGetDatum(InvalidOid), anyPrecision = Int32GetDatum(-1);
  if (parts->hasDay) {
    const Timestamp at = DatumGetTimestamp(
        DirectFunctionCall3(timestamp_in, CStringGetDatum(text), none, anyPrecision));
    if (TIMESTAMP_NOT_FINITE(at) || timestamp2tm(at, NULL, &tm, &fraction, NULL, NULL) != 0) {
      RefuseValue(parts->type, text);
    }
  } else {
    const TimeADT at =
        DatumGetTimeADT(DirectFunctionCall3(time_in, CStringGetDatum(text), none, anyPrecision));
    time2tm(at, &tm, &fraction);
  }
  if (!parts->hasClock && (tm.tm_hour != 0 || tm.tm_min != 0 || tm.tm_sec != 0 || fraction != 0)) {
    RefuseValue(parts->type, text);
  }
  if (fraction % OT_MICROSECONDS_IN_HUNDREDTH != 0 || (!parts->hasHundredths && fraction != 0)) {
    RefuseValue(parts->type, text);
  }
  *moment = (ot95_moment){tm.tm_year,
                          tm.tm_mon,
                          tm.tm_mday,
                          tm.tm_hour,
                          tm.tm_min,
                          tm.tm_sec,
                          fraction / OT_MICROSECONDS_IN_HUNDREDTH,
                          0,
                          0};
}

static void ReadValue(const ot95_type* type, char* text, ot95_value* value) {
  const Parts* parts = PartsOf(type->name);
  bytea* bytes;
  switch (type->kind) {
    case OT95_KIND_INTEGER:
      value->as.integer = strcmp(type->name, "OtBoolean") == 0
                              ? DatumGetBool(DirectFunctionCall1(boolin, CStringGetDatum(text)))
                              : DatumGetInt64(DirectFunctionCall1(int8in, CStringGetDatum(text)));
      return;
    case OT95_KIND_REAL:
      value->as.real = DatumGetFloat8(DirectFunctionCall1(float8in, CStringGetDatum(text)));
      return;
    case OT95_KIND_MOMENT:
      if (parts == NULL) RefuseType(type, "moment");
      ReadMoment(parts, text, &value->as.moment);
      return;
    case OT95_KIND_BYTES:
      bytes = DatumGetByteaPP(DirectFunctionCall1(byteain, CStringGetDatum(text)));
      value->as.bytes = (ot95_span){VARDATA_ANY(bytes), VARSIZE_ANY_EXHDR(bytes)};
      return;
    default:
      ereport(ERROR, (errcode(ERRCODE_INVALID_TEXT_REPRESENTATION),
                      errmsg("no %s: \"%s\"", type->name, text),
                      errhint("Its values are written as %s.", type->format)));
  }
}

typedef struct Encoding {
  int type;
  unsigned form;
  const ot95_value* value;
} Encoding;

static int GiveEncoded(const void* what, ot95_buffer* out) {
  const Encoding* encoding = what;
  return ot95_encode(encoding->type, encoding->value, 1, encoding->form, out);
}

ot95_buffer OtEncodeNative(int type, unsigned form, char* text) {
  const ot95_type description = OtDescribe(type);
  ot95_value value = {.kind = description.kind};
  const Encoding encoding = {type, form, &value};
  value.is_null = strcmp(text, "{NULL}") == 0;
  if (value.is_null == 0) ReadValue(&description, text, &value);
  return OtTake(GiveEncoded, &encoding, psprintf("encoding \"%s\" as %s", text, description.name));
}
