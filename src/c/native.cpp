// Values of C in stored arrays: numbers, fields of dates and identifiers, runs of bytes.
#include "c/native.h"

#include <array>
#include <bit>
#include <cstring>
#include <iterator>
#include <utility>

#include "c/bridge.h"
#include "c/moments.h"
#include "ot95/blob.h"
#include "ot95/boolean.h"
#include "ot95/identity.h"
#include "ot95/int64.h"
#include "ot95/odmg.h"
#include "ot95/store.h"
#include "ot95/temporal.h"

namespace ot95::c {

namespace {

// ---------------------------------------------------------------------------------------------
// From the fields of C to a value, as far as it can hold them, and back. Nulls are seen to before.

template <class T>
bool Put(const ot95_value& value, T& to) {
  if constexpr (std::is_integral_v<T>) {
    return Narrow(value.as.integer, to);
  } else if constexpr (requires { PutMoment(value.as.moment, to); }) {
    return PutMoment(value.as.moment, to);
  } else {
    to = static_cast<T>(value.as.real);
    return true;
  }
}
template <class T>
void Get(const T& from, ot95_value& value) {
  if constexpr (std::is_integral_v<T>) {
    value.as.integer = from;
  } else if constexpr (requires { GetMoment(from, value.as.moment); }) {
    GetMoment(from, value.as.moment);
  } else {
    value.as.real = from;
  }
}

bool Put(const ot95_value& value, OtInt64& to) {
  to.low = static_cast<std::uint32_t>(value.as.integer);
  to.high = static_cast<std::int32_t>(value.as.integer >> 32);
  return true;
}
void Get(const OtInt64& from, ot95_value& value) {
  value.as.integer =
      static_cast<std::int64_t>(static_cast<std::uint64_t>(from.high) << 32 | from.low);
}

bool Put(const ot95_value& value, OtBoolean& to) {
  to = OtBoolean(value.as.integer != 0);
  return value.as.integer == 0 || value.as.integer == 1;
}
void Get(const OtBoolean& from, ot95_value& value) {
  value.as.integer = from.value;
}

bool Put(const ot95_value& value, OtSeal& to) {
  const std::int64_t number = value.as.integer;
  to.sealHigh = static_cast<std::uint16_t>(number >> 32);
  to.sealMiddle = static_cast<std::uint16_t>(number >> 16);
  to.sealLow = static_cast<std::uint16_t>(number);
  return number >= 0 && number >> 48 == 0;
}
void Get(const OtSeal& from, ot95_value& value) {
  value.as.integer =
      std::int64_t{from.sealHigh} << 32 | std::int64_t{from.sealMiddle} << 16 | from.sealLow;
}

bool Put(const ot95_value& value, d_Interval& to) {
  return Put(value, to.seconds);
}
void Get(const d_Interval& from, ot95_value& value) {
  value.as.real = from.seconds;
}

template <class T>
bool PutSerial(const ot95_identity& identity, T& to) {
  to.blockId = identity.block;
  to.lowPart = identity.low;
  return Narrow(identity.high, to.highPart);
}
template <class T>
void GetSerial(const T& from, ot95_identity& identity) {
  identity.block = from.blockId;
  identity.low = from.lowPart;
  identity.high = from.highPart;
}
template <class T>
bool PutClass(const ot95_identity& identity, T& to) {
  return Narrow(identity.class_number, to.classNumber) &&
         Narrow(identity.class_version, to.classVersion);
}

bool Put(const ot95_value& value, OtObjId& to) {
  return PutSerial(value.as.identity, to);
}
void Get(const OtObjId& from, ot95_value& value) {
  GetSerial(from, value.as.identity);
}
bool Put(const ot95_value& value, OtClassId& to) {
  return PutClass(value.as.identity, to);
}
void Get(const OtClassId& from, ot95_value& value) {
  value.as.identity.class_number = from.classNumber;
  value.as.identity.class_version = from.classVersion;
}
bool Put(const ot95_value& value, OtRef& to) {
  return PutSerial(value.as.identity, to) && PutClass(value.as.identity, to) &&
         Narrow(value.as.identity.database, to.databaseId);
}
void Get(const OtRef& from, ot95_value& value) {
  GetSerial(from, value.as.identity);
  value.as.identity.database = from.databaseId;
  value.as.identity.class_number = from.classNumber;
}

// ---------------------------------------------------------------------------------------------
// One stored element of a fixed size

using Bytes = unsigned char;

struct Element {
  Type& type;
  unsigned char format;
};

template <class T>
T Blank() {
  return std::bit_cast<T>(std::array<Bytes, sizeof(T)>{});
}

template <class T>
bool PutElement(const Element& element, const ot95_value& value, Bytes* to) {
  T memory = Blank<T>();
  OtTypeMgr& manager = element.type.manager;
  if (value.is_null != 0) {
    const OtSetNullFunc setNull = element.type.row->SetNull;
    if (setNull == nullptr) return false;
    setNull(&memory);
  } else if (!Put(value, memory)) {
    return false;
  }
  manager.Store(element.type.id, to, &memory, element.format, 1);
  return true;
}

template <class T>
void GetElement(const Element& element, const Bytes* from, ot95_value& value) {
  T memory = Blank<T>();
  element.type.row->Load(&memory, from, element.format, 1);
  const OtIsNullFunc isNull = element.type.row->IsNull;
  value.is_null = isNull != nullptr && isNull(&memory) != 0;
  if (value.is_null == 0) Get(memory, value);
}

// A nullable number is a flag byte and the number as its plain type stores it.
template <class T, char plainId>
bool PutNullable(const Element& element, const ot95_value& value, Bytes* to) {
  T memory = Blank<T>();
  if (value.is_null == 0 && !Put(value, memory)) return false;
  to[0] = value.is_null != 0;
  element.type.manager.Store(plainId, to + 1, &memory, element.format, 1);
  return true;
}

template <class T, char plainId>
void GetNullable(const Element& element, const Bytes* from, ot95_value& value) {
  T memory = Blank<T>();
  CurrentFactory[static_cast<int>(plainId)]->Load(&memory, from + 1, element.format, 1);
  value.is_null = from[0] == 1;
  if (value.is_null == 0) Get(memory, value);
}

struct Native {
  unsigned kind;
  bool (*put)(const Element& element, const ot95_value& value, Bytes* to);
  void (*get)(const Element& element, const Bytes* from, ot95_value& value);
};

template <class T>
constexpr Native Integer = {OT95_KIND_INTEGER, PutElement<T>, GetElement<T>};
template <class T>
constexpr Native Real = {OT95_KIND_REAL, PutElement<T>, GetElement<T>};
template <class T>
constexpr Native Moment = {OT95_KIND_MOMENT, PutElement<T>, GetElement<T>};
template <class T>
constexpr Native Identity = {OT95_KIND_IDENTITY, PutElement<T>, GetElement<T>};
template <class T, char plainId>
constexpr Native Nullable = {std::is_floating_point_v<T> ? OT95_KIND_REAL : OT95_KIND_INTEGER,
                             PutNullable<T, plainId>, GetNullable<T, plainId>};
constexpr Native kText = {OT95_KIND_TEXT, nullptr, nullptr};
constexpr Native kBlob = {OT95_KIND_BYTES, nullptr, nullptr};
constexpr Native kNone = {OT95_KIND_NONE, nullptr, nullptr};

// By identifier.
constexpr Native kNatives[] = {Integer<signed char>,
                               Integer<std::int16_t>,
                               Integer<OtLong>,
                               Real<double>,
                               Real<float>,
                               Integer<std::uint16_t>,
                               Integer<OtDWord>,
                               Integer<std::int32_t>,
                               Integer<std::uint32_t>,
                               Integer<std::int32_t>,
                               Integer<std::uint8_t>,
                               kText,
                               Moment<OtDate>,
                               Moment<OtTime>,
                               Integer<BlockId>,
                               Identity<OtObjId>,
                               Identity<OtClassId>,
                               Identity<OtRef>,
                               kBlob,
                               Moment<OtDateTime>,
                               kText,
                               kText,
                               Moment<d_Date>,
                               Moment<d_Time>,
                               Moment<d_Timestamp>,
                               Real<d_Interval>,
                               Integer<OtInt64>,
                               Integer<OtBoolean>,
                               Nullable<signed char, 0>,
                               Nullable<std::uint8_t, 10>,
                               Nullable<std::int16_t, 1>,
                               Nullable<std::uint16_t, 5>,
                               Nullable<std::int32_t, 7>,
                               Nullable<std::uint32_t, 8>,
                               Nullable<OtLong, 2>,
                               Nullable<OtDWord, 6>,
                               Nullable<float, 4>,
                               Nullable<double, 3>,
                               Nullable<OtInt64, 26>,
                               Integer<OtSeal>,
                               kNone};

// ---------------------------------------------------------------------------------------------
// Blobs: the bytes that follow, then for each its length and its bytes; all ones for a null

constexpr OtDWord kNullLength = 0xffffffff;
constexpr std::uint64_t kMostBytes = 0x7fffffff;

int EncodeBlobs(const ot95_value* values, std::size_t count, unsigned char format,
                ot95_buffer* out) {
  std::uint64_t total = 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (values[i].kind != OT95_KIND_BYTES) return OT95_ERR_ARGUMENT;
    const ot95_span& bytes = values[i].as.bytes;
    total += sizeof(OtDWord);
    if (values[i].is_null != 0) continue;
    if (bytes.data == nullptr && bytes.size != 0) return OT95_ERR_ARGUMENT;
    if (bytes.size > kMostBytes) return OT95_ERR_VALUE;
    total += bytes.size;
    if (total > kMostBytes) return OT95_ERR_VALUE;
  }
  if (const int status = AskRoom(out, static_cast<std::size_t>(total) + sizeof(OtDWord))) {
    return status;
  }
  auto* to = static_cast<Bytes*>(out->data);
  const auto putWord = [&](OtDWord word) { to += LongStore(to, &word, format, 1); };
  putWord(static_cast<OtDWord>(total));
  for (std::size_t i = 0; i < count; ++i) {
    const ot95_span& bytes = values[i].as.bytes;
    const bool isNull = values[i].is_null != 0;
    putWord(isNull ? kNullLength : static_cast<OtDWord>(bytes.size));
    if (isNull || bytes.size == 0) continue;
    std::memcpy(to, bytes.data, bytes.size);
    to += bytes.size;
  }
  return OT95_OK;
}

void DecodeBlobs(const Stored& stored, ot95_value* values) {
  const auto* from = static_cast<const Bytes*>(stored.bytes()) + sizeof(OtDWord);
  for (unsigned long i = 0; i < stored.count(); ++i) {
    OtDWord length = 0;
    from += LongStore(&length, from, stored.format(), 1);
    values[i].is_null = length == kNullLength;
    if (values[i].is_null != 0) continue;
    values[i].as.bytes = {reinterpret_cast<const char*>(from), length};
    from += length;
  }
}

// ---------------------------------------------------------------------------------------------
// Arrays

int EncodeFixed(Type& type, const ot95_value* values, std::size_t count, unsigned char format,
                ot95_buffer* out) {
  const std::size_t width = type.row->SizeGet(nullptr, OT_FORMAT_MEMORY, format, 1);
  std::size_t size;
  if (__builtin_mul_overflow(width, count, &size)) return OT95_ERR_ARGUMENT;
  if (const int status = AskRoom(out, size)) return status;
  const Element element{type, format};
  const Native& native = kNatives[static_cast<int>(type.id)];
  auto* to = static_cast<Bytes*>(out->data);
  for (std::size_t i = 0; i < count; ++i, to += width) {
    if (values[i].kind != native.kind) return OT95_ERR_ARGUMENT;
    if (!native.put(element, values[i], to)) return OT95_ERR_VALUE;
  }
  return OT95_OK;
}

void DecodeFixed(Stored& stored, ot95_value* values) {
  Type type = stored.type();
  const Element element{type, stored.format()};
  const auto get = kNatives[static_cast<int>(type.id)].get;
  const auto* from = static_cast<const Bytes*>(stored.bytes());
  const std::size_t width = stored.size() / stored.count();
  for (unsigned long i = 0; i < stored.count(); ++i, from += width) {
    get(element, from, values[i]);
  }
}

int Encode(int number, const ot95_value* values, std::size_t count, unsigned form,
           ot95_buffer* out) {
  Type type;
  unsigned char format = 0;
  if (values == nullptr || count == 0) return OT95_ERR_ARGUMENT;
  if (const int status = OpenForm(form, format)) return status;
  if (const int status = type.Open(number)) return status;
  const unsigned kind = KindOf(type.id);
  if (kind == OT95_KIND_TEXT) return OT95_ERR_NOT_SUPPORTED;
  return kind == OT95_KIND_BYTES ? EncodeBlobs(values, count, format, out)
                                 : EncodeFixed(type, values, count, format, out);
}

int Decode(const ot95_array* array, ot95_value* values) {
  Stored stored;
  if (values == nullptr) return OT95_ERR_ARGUMENT;
  if (const int status = stored.OpenWhole(array)) return status;
  const unsigned kind = KindOf(stored.id());
  if (kind == OT95_KIND_TEXT) return OT95_ERR_NOT_SUPPORTED;
  std::memset(values, 0, stored.count() * sizeof *values);
  for (unsigned long i = 0; i < stored.count(); ++i) values[i].kind = kind;
  if (kind == OT95_KIND_BYTES) {
    DecodeBlobs(stored, values);
  } else {
    DecodeFixed(stored, values);
  }
  return OT95_OK;
}

}  // namespace

unsigned KindOf(char id) {
  return kNatives[static_cast<int>(id)].kind;
}

}  // namespace ot95::c

int ot95_encode(int type, const ot95_value* values, size_t count, unsigned form, ot95_buffer* out) {
  return ot95::c::GuardedFor(out, [&] { return ot95::c::Encode(type, values, count, form, out); });
}

int ot95_decode(const ot95_array* array, ot95_value* values) {
  return ot95::c::Guarded([&] { return ot95::c::Decode(array, values); });
}
