// The manager: finds the row of an identifier and calls its member.
#include <cstdint>
#include <cstring>
#include <utility>

#include "kit/statics.h"
#include "ot95/typemgr.h"
#include "table/rows.h"

namespace {

constexpr char kEndOfTypes = 41;  // The first identifier without a row.
constexpr char kEndOfGap = 100;   // From here on every identifier means the row "illegal".
constexpr unsigned kIllegal = 40;

// Calls a member with `arguments`; a missing row or member answers `missing`.
template <class Result, class... Parameters, class... Arguments>
[[gnu::always_inline]] inline Result Call(const OtTypeDescriptor* row,
                                          Result (*OtTypeDescriptor::*member)(Parameters...),
                                          Result missing, Arguments&&... arguments) {
  if (row == nullptr || row->*member == nullptr) return missing;
  return (row->*member)(std::forward<Arguments>(arguments)...);
}

// A member itself, or its null.
template <class Member>
Member Get(const OtTypeDescriptor* row, Member OtTypeDescriptor::*member) {
  return row != nullptr ? row->*member : Member();
}

// Rows take what they only read as `void*`: so their interface has always been.
template <class T>
T* Writable(const T* value) {
  return const_cast<T*>(value);
}

// Replaces a member unless the replacement is null; answers what it was.
template <class Member>
Member Exchange(OtTypeDescriptor* row, Member OtTypeDescriptor::*member, Member replacement) {
  if (row == nullptr) return Member();
  return replacement != nullptr ? std::exchange(row->*member, replacement) : row->*member;
}

}  // namespace

OtTypeMgr::OtTypeMgr(unsigned long version) {
  SetFactory(version);
}

void OtTypeMgr::SetFactory(unsigned long version) {
  const bool old = version < 4 || version == 11;
  factory_ = old ? LegacyFactory : CurrentFactory;
  version_ = static_cast<unsigned short>(version > 11 ? 4 : version == 11 ? 3 : version);
}

// Outside the table there is no row: between it and 100, below 0, and behind the old table's end.
OtTypeDescriptor* OtTypeMgr::Row(char id) const {
  const auto identifier = static_cast<signed char>(id);
  const unsigned index =
      identifier >= kEndOfGap ? kIllegal : static_cast<unsigned>(identifier);  // < 0: huge
  if (index >= ot95::kLegacyRows && (index >= ot95::kCurrentRows || factory_ != CurrentFactory)) {
    return nullptr;
  }
  return factory_[index];
}

int OtTypeMgr::IsValidType(char id) const {
  const auto identifier = static_cast<signed char>(id);
  return identifier < kEndOfTypes || identifier >= kEndOfGap;
}

void* OtTypeMgr::Create(char id, unsigned long count) const {
  return Call(Row(id), &OtTypeDescriptor::Create, static_cast<void*>(nullptr), count);
}

void* OtTypeMgr::Delete(char id, void* value, unsigned long count) const {
  return Call(Row(id), &OtTypeDescriptor::Delete, static_cast<void*>(nullptr), value, count);
}

void* OtTypeMgr::DefaultValue(char id, unsigned long count, int nullable) const {
  return Call(Row(id), &OtTypeDescriptor::DefaultValue, static_cast<void*>(nullptr), count,
              nullable);
}

unsigned long OtTypeMgr::Store(char id, void* disk, const void* memory, unsigned char format,
                               unsigned long count) const {
  return Call(Row(id), &OtTypeDescriptor::Store, 0UL, disk, memory, format, count);
}

unsigned long OtTypeMgr::Load(char id, void* memory, const void* disk, unsigned char format,
                              unsigned long count) const {
  return Call(Row(id), &OtTypeDescriptor::Load, 0UL, memory, disk, format, count);
}

unsigned long OtTypeMgr::DiskLenGet(char id, const void* value, unsigned char diskFormat,
                                    unsigned long count, unsigned char sourceFormat) const {
  return Call(Row(id), &OtTypeDescriptor::SizeGet, 0UL, value, sourceFormat, diskFormat, count);
}

unsigned long OtTypeMgr::DiskLenGetFromMemFile(char id, MemFile* file, unsigned char format,
                                               unsigned long count) const {
  return Call(Row(id), &OtTypeDescriptor::SizeGetFromMemFile, 0UL, file, format, count);
}

float OtTypeMgr::EvalAndBound(char id, const OtIdxBounds* bounds, unsigned short& op,
                              const void* value, unsigned char format, unsigned long count,
                              OtIdxBounds* limits, OtEvalData*) const {
  return Call(Row(id), &OtTypeDescriptor::EvalAndBound, 0.0F, Writable(bounds), op, Writable(value),
              format, count, limits);
}

unsigned long OtTypeMgr::Hash(char id, unsigned long length, const void* value, unsigned long count,
                              unsigned char format, int& status) const {
  return Call(Row(id), &OtTypeDescriptor::Hash, 0UL, format, length, Writable(value), count,
              status);
}

unsigned long OtTypeMgr::Translate(char id, void* target, unsigned char targetFormat,
                                   unsigned long targetLength, const void* source,
                                   unsigned char sourceFormat, unsigned long sourceLength,
                                   unsigned long count) const {
  return Call(Row(id), &OtTypeDescriptor::Translate, 0UL, target, targetFormat, targetLength,
              Writable(source), sourceFormat, sourceLength, count);
}

int OtTypeMgr::IsNullValue(char id, const void* value) const {
  return Call(Row(id), &OtTypeDescriptor::IsNull, 0, Writable(value));
}

long OtTypeMgr::Cmp(char id, const void* value1, const void* value2, unsigned short cmpOp,
                    unsigned long count, unsigned char format) const {
  int status = 0;
  return Cmp(id, 0, value1, 0, value2, cmpOp, count, format, status);
}

long OtTypeMgr::Cmp(char id, unsigned long length1, const void* value1, unsigned long length2,
                    const void* value2, unsigned short cmpOp, unsigned long count,
                    unsigned char format, int& status) const {
  return Call(Row(id), &OtTypeDescriptor::Compare, 0L, format, length1, Writable(value1), length2,
              Writable(value2), cmpOp, count, status);
}

OtConstructFunc OtTypeMgr::ConstructorPtrGet(char id) const {
  return Get(Row(id), &OtTypeDescriptor::Construct);
}

OtDestructFunc OtTypeMgr::DestructorPtrGet(char id) const {
  return Get(Row(id), &OtTypeDescriptor::Destruct);
}

OtAssignFunc OtTypeMgr::AssignmentPtrGet(char id) const {
  return Get(Row(id), &OtTypeDescriptor::Assign);
}

OtAssignFunc OtTypeMgr::CopyPtrGet(char id) const {
  return Get(Row(id), &OtTypeDescriptor::Copy);
}

OtLoadFunc OtTypeMgr::LoadPtrGet(char id) const {
  return Get(Row(id), &OtTypeDescriptor::Load);
}

OtStoreFunc OtTypeMgr::StorePtrGet(char id) const {
  return Get(Row(id), &OtTypeDescriptor::Store);
}

OtIsNullFunc OtTypeMgr::IsNullPtrGet(char id) const {
  return Get(Row(id), &OtTypeDescriptor::IsNull);
}

OtSetNullFunc OtTypeMgr::SetNullPtrGet(char id) const {
  return Get(Row(id), &OtTypeDescriptor::SetNull);
}

OtCompareFunc OtTypeMgr::CmpFuncPtrGet(char id) const {
  return Get(Row(id), &OtTypeDescriptor::Compare);
}

int (*OtTypeMgr::ComparePtrGet(char) const)(void*, void*) {
  return nullptr;
}

char* OtTypeMgr::NameGet(char id, char* buffer) const {
  const char* name = Get(Row(id), &OtTypeDescriptor::name);
  // The row's own text isn't for writing, though the interface can't say so.
  if (name == nullptr || buffer == nullptr) return const_cast<char*>(name);
  return static_cast<char*>(std::memcpy(buffer, name, std::strlen(name) + 1));
}

int OtTypeMgr::Name2OtTypeId(const char* name, char& id) const {
  for (id = 0; IsValidType(id) != 0; ++id) {
    const char* own = Get(Row(id), &OtTypeDescriptor::name);
    if (name != nullptr && own != nullptr && std::strcmp(name, own) == 0) return 0;
  }
  return 1;
}

unsigned short OtTypeMgr::MemLenGet(char id, unsigned long count) const {
  return static_cast<unsigned short>(Get(Row(id), &OtTypeDescriptor::memoryLength) * count);
}

unsigned short OtTypeMgr::IsFixed(char id) const {
  return Get(Row(id), &OtTypeDescriptor::isFixed);
}

unsigned short OtTypeMgr::SupportsNullValue(char id) const {
  return SetNullPtrGet(id) != nullptr;
}

int OtTypeMgr::DiskIsNullValue(char, const void*) const {
  return OT_ERR_NOT_SUPPORTED;
}

void* OtTypeMgr::GetArrayElement(char id, void* value, unsigned long index,
                                 unsigned long count) const {
  const OtTypeDescriptor* row = Row(id);
  if (row == nullptr || (count != 0 && index >= count)) return nullptr;
  return reinterpret_cast<void*>(reinterpret_cast<std::uintptr_t>(value) +
                                 std::uintptr_t{index} * row->memoryLength);
}

const void* OtTypeMgr::GetArrayElement(char id, const void* value, unsigned long index,
                                       unsigned long count) const {
  return GetArrayElement(id, Writable(value), index, count);
}

const OtString& OtTypeMgr::GetNullPrintString() {
  return ot95::nullPrintString;
}

void OtTypeMgr::SetNullPrintString(const OtString& text) {
  ot95::nullPrintString = text;
}

const char* OtTypeMgr::ExchangeFormat(char id, const char* format) {
  return Exchange(Row(id), &OtTypeDescriptor::format, format);
}

OtCompareFunc OtTypeMgr::ExchangeOtTypeCmpFunc(char id, OtCompareFunc function) {
  return Exchange(Row(id), &OtTypeDescriptor::Compare, function);
}

OtPrintFunc OtTypeMgr::ExchangePrintToOtStringFunc(char id, OtPrintFunc function) {
  return Exchange(Row(id), &OtTypeDescriptor::PrintToString, function);
}

OtScanFunc OtTypeMgr::ExchangeScanFromOtStringFunc(char id, OtScanFunc function) {
  return Exchange(Row(id), &OtTypeDescriptor::ScanFromString, function);
}
