// Blobs as values.

#include "ot95/blob.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

#include "kit/bytesearch.h"
#include "ot95/fault.h"

namespace {

constexpr std::int64_t longestBlob = std::numeric_limits<OtLong>::max();

// A wish for a size: none below 0.
long Floored(long size) {
  return std::max(size, 0L);
}

// A block of `size` bytes. When there is none the memory handler is told, and `size` becomes 0.
unsigned char* Allocate(long& size) {
  auto* block = size <= longestBlob
                    ? static_cast<unsigned char*>(std::malloc(static_cast<std::size_t>(size)))
                    : nullptr;
  if (!block && size > 0) {
    OtCallMemoryHandler(static_cast<unsigned long>(size));
    size = 0;
  }
  return block;
}

void CopyBytes(unsigned char* target, const void* source, long size) {
  if (size > 0) std::memcpy(target, source, static_cast<std::size_t>(size));
}

template <class... Arguments>
OtBlobData* NewData(Arguments... arguments) {
  return ot95::Noted(new (std::nothrow) OtBlobData(arguments...));
}

// How much of a range of `length` bytes at `position` there is among `size` bytes; 0 if none.
long Present(long size, long position, long length) {
  if (position < 0 || position > size || length < 1) return 0;
  return std::min(length, size - position);
}

}  // namespace

OtBlobData::OtBlobData(long size) {
  size = Floored(size);
  bytes = Allocate(size);
  length = static_cast<OtLong>(size);
}

OtBlobData::OtBlobData(const void* source, long size) {
  SetTo(source, size);
}

OtBlobData::OtBlobData(const OtBlob& source) {
  if (source.data) SetTo(source.data->bytes, source.data->length);
}

OtBlobData::~OtBlobData() {
  std::free(bytes);
  bytes = nullptr;
  length = 0;
}

void OtBlobData::SetTo(const void* source, long size) {
  if (size > longestBlob) return;
  size = source ? Floored(size) : 0;
  if (bytes && length >= size && length <= std::int64_t{size} + 128) {
    if (size > 0) std::memmove(bytes, source, static_cast<std::size_t>(size));
    length = static_cast<OtLong>(size);
    return;
  }
  // The source may lie in the old block, which is freed last.
  unsigned char* block = size > 0 ? Allocate(size) : nullptr;
  CopyBytes(block, source, size);
  std::free(bytes);
  bytes = block;
  length = static_cast<OtLong>(size);
}

void OtBlobData::Resize(unsigned long size) {
  if (size > static_cast<unsigned long>(longestBlob)) return;
  long wanted = static_cast<long>(size);
  if (wanted == 0) {
    std::free(bytes);
    bytes = nullptr;
  } else if (wanted > length) {
    unsigned char* block = Allocate(wanted);
    CopyBytes(block, bytes, std::min<long>(length, wanted));
    std::free(bytes);
    bytes = block;
  }
  length = static_cast<OtLong>(wanted);
}

OtBlob::OtBlob() : data(NewData()) {}

OtBlob::OtBlob(long size) : data(NewData(size)) {}

OtBlob::OtBlob(const void* bytes, long length) : data(NewData(bytes, length)) {}

OtBlob::OtBlob(const OtBlob& other)
    : data(other.data ? NewData(static_cast<const void*>(other.data->bytes), other.Length())
                      : nullptr) {}

OtBlob::~OtBlob() {
  SetNullValue();
}

int OtBlob::SetNullValue() {
  delete data;
  data = nullptr;
  return 0;
}

OtBlob& OtBlob::operator=(const OtBlob& other) {
  if (data == other.data) return *this;
  if (!other.data) {
    SetNullValue();
  } else {
    SetTo(other.data->bytes, other.data->length);
  }
  return *this;
}

bool OtBlob::operator==(const OtBlob& other) const {
  if (!data || !other.data) return data == other.data;
  return Length() == other.Length() && (*this != other) == 0;
}

int OtBlob::operator!=(const OtBlob& other) const {
  if (!data || !other.data) return 2 * ((data != nullptr) - (other.data != nullptr));
  const long shorter = std::min(Length(), other.Length());
  const int order =
      shorter > 0 ? std::memcmp(data->bytes, other.data->bytes, static_cast<std::size_t>(shorter))
                  : 0;
  if (order != 0) return order < 0 ? -1 : 1;
  return (Length() > other.Length()) - (Length() < other.Length());
}

OtBlob& OtBlob::operator+=(const OtBlob& other) {
  Append(other);
  return *this;
}

void OtBlob::Append(const OtBlob& other) {
  if (other.data) Append(other.data->bytes, other.data->length);
}

void OtBlob::Append(const void* bytes, long length) {
  if (length < 1 || !bytes) return;
  const long before = Length();
  const std::int64_t sum = std::int64_t{before} + length;
  if (sum > longestBlob) return;
  OtBlobData* joined = NewData(static_cast<long>(sum));
  if (joined && joined->length == sum) {
    CopyBytes(joined->bytes, data ? data->bytes : nullptr, before);
    CopyBytes(joined->bytes + before, bytes, length);
  }
  delete data;
  data = joined;
}

void OtBlob::Expand(long length) {
  if (length > longestBlob) return;
  OtBlobData* rebuilt = NewData(length);
  if (rebuilt && data) {
    CopyBytes(rebuilt->bytes, data->bytes, std::min(data->length, rebuilt->length));
  }
  delete data;
  data = rebuilt;
}

void OtBlob::Resize(unsigned long length) {
  if (data) {
    data->Resize(length);
  } else {
    data =
        NewData(length > static_cast<unsigned long>(longestBlob) ? 0L : static_cast<long>(length));
  }
}

void* OtBlob::Seek(long position, long length) const {
  if (length < 1 || Present(Length(), position, length) != length) return nullptr;
  return data->bytes + position;
}

OtBlob OtBlob::CopyFrom(long position, long length) const {
  const long present = Present(Length(), position, length);
  return present > 0 ? OtBlob(data->bytes + position, present) : OtBlob();
}

void OtBlob::CopyTo(const OtBlob& source, long position, long length) {
  const long present = Present(Length(), position, std::min(length, source.Length()));
  if (present > 0) {
    std::memmove(data->bytes + position, source.data->bytes, static_cast<std::size_t>(present));
  }
}

void OtBlob::SetTo(const void* bytes, long length) {
  if (data) {
    data->SetTo(bytes, length);
  } else if (length <= longestBlob) {
    data = NewData(bytes, length);
  }
}

void OtBlob::Cut(long position, long length) {
  const long present = Present(Length(), position, length);
  if (present < 1) return;
  const long left = Length() - present;
  OtBlobData* rest = left > 0 ? NewData(left) : NewData();
  if (rest && rest->length > 0) {
    CopyBytes(rest->bytes, data->bytes, position);
    CopyBytes(rest->bytes + position, data->bytes + position + present, left - position);
  }
  delete data;
  data = rest;
}

long OtBlob::Search(const OtBlob& pattern) const {
  constexpr long notFound = 65535;
  if (!data || !pattern.data) return notFound;
  const std::size_t place =
      ot95::FindBytes(data->bytes, static_cast<std::size_t>(data->length), pattern.data->bytes,
                      static_cast<std::size_t>(pattern.data->length));
  return place == ot95::noPlace ? notFound : static_cast<long>(place);
}

void OtBlob::Destroy(OtBlob& other) {
  if (this == &other) return;
  delete data;
  data = other.data;
  if (data) other.data = NewData(0L);
}
