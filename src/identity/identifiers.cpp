// Identifiers and references as values: arithmetic, comparison, assignment.

#include "identity/identifiers.h"

namespace {

using ot95::SerialNumber;

int Order(std::uint64_t a, std::uint64_t b) {
  return (a > b) - (a < b);
}

template <class T>
void SetSerialNumber(T& id, std::uint64_t number) {
  id.lowPart = static_cast<std::uint32_t>(number);
  id.highPart = static_cast<std::uint16_t>(number >> 32);
}

template <class To, class From>
To& TakeObject(To& to, const From& from) {
  to.blockId = from.blockId;
  to.lowPart = from.lowPart;
  to.highPart = from.highPart;
  return to;
}

template <class To, class From>
To& TakeClass(To& to, const From& from) {
  to.classNumber = from.classNumber;
  to.classVersion = from.classVersion;
  return to;
}

}  // namespace

void OtObjId::SetHighestValue() {
  blockId = 0;
  SetSerialNumber(*this, ~std::uint64_t{0});
}

OtObjId& OtObjId::operator++() {
  return *this += 1;
}

OtObjId& OtObjId::operator--() {
  return *this += -1;
}

OtObjId& OtObjId::operator+=(short delta) {
  SetSerialNumber(*this, SerialNumber(*this) + static_cast<std::uint64_t>(std::int64_t{delta}));
  return *this;
}

int OtObjId::operator==(const OtObjId& other) const {
  return SerialNumber(*this) == SerialNumber(other);
}

int OtObjId::operator!=(const OtObjId& other) const {
  return Order(SerialNumber(*this), SerialNumber(other));
}

int OtObjId::operator==(const OtDBOId& other) const {
  return SerialNumber(*this) == SerialNumber(other);
}

int OtObjId::operator!=(const OtDBOId& other) const {
  return Order(SerialNumber(*this), SerialNumber(other));
}

OtObjId& OtObjId::operator=(const OtDBOId& other) {
  return TakeObject(*this, other);
}

OtDBOId& OtDBOId::operator=(const OtObjId& other) {
  databaseId = 0;
  return TakeObject(*this, other);
}

int OtDBOId::operator==(const OtDBOId& other) const {
  return (*this != other) == 0;
}

int OtDBOId::operator==(const OtObjId& other) const {
  return (*this != other) == 0;
}

int OtDBOId::operator!=(const OtDBOId& other) const {
  if (databaseId != other.databaseId) return Order(databaseId, other.databaseId);
  return Order(SerialNumber(*this), SerialNumber(other));
}

int OtDBOId::operator!=(const OtObjId& other) const {
  if (databaseId > 0) return 1;
  return Order(SerialNumber(*this), SerialNumber(other));
}

int OtClassId::operator!=(const OtClassId& other) const {
  // One more than the number wraps the null, all ones, to the lowest place.
  return Order(ot95::ClassKey(*this) + 1, ot95::ClassKey(other) + 1);
}

OtRef& OtRef::operator=(const OtClassId& other) {
  return TakeClass(*this, other);
}

OtRef& OtRef::operator=(const OtObjId& other) {
  return TakeObject(*this, other);
}

OtRef& OtRef::operator=(const OtDBOId& other) {
  databaseId = other.databaseId;
  return TakeObject(*this, other);
}

OtRef& OtRef::operator=(const OtLocalRef& other) {
  databaseId = 0;
  TakeClass(*this, other);
  return TakeObject(*this, other);
}

OtRef& OtRef::operator=(unsigned short database) {
  databaseId = database;
  return *this;
}

int OtRef::operator==(const OtRef& other) const {
  return (*this != other) == 0;
}

int OtRef::operator!=(const OtRef& other) const {
  if (const int order = Order(SerialNumber(*this), SerialNumber(other))) return order;
  return Order(databaseId, other.databaseId);
}

unsigned short OtRef::IsInvalid() const {
  return SerialNumber(*this) == 0 || classNumber == 0 || databaseId == 0xffff;
}

unsigned short OtRef::IsInvalidOriginId() const {
  return SerialNumber(*this) == 0 || (databaseId != 0xffff && classNumber == 0);
}

OtLocalRef& OtLocalRef::operator=(const OtRef& other) {
  TakeClass(*this, other);
  return TakeObject(*this, other);
}

OtLocalRef& OtLocalRef::operator=(const OtClassId& other) {
  return TakeClass(*this, other);
}

OtLocalRef& OtLocalRef::operator=(const OtObjId& other) {
  return TakeObject(*this, other);
}

int OtLocalRef::operator==(const OtLocalRef& other) const {
  return (*this != other) == 0;
}

int OtLocalRef::operator!=(const OtLocalRef& other) const {
  return Order(SerialNumber(*this), SerialNumber(other));
}

int OtLocalRef::operator==(const OtRef& other) const {
  return (*this != other) == 0;
}

int OtLocalRef::operator!=(const OtRef& other) const {
  if (const int order = Order(SerialNumber(*this), SerialNumber(other))) return order;
  return other.databaseId == 0 ? 0 : -1;
}
