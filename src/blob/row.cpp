// The row OtBlob. Stored: the bytes that follow, then for each blob its length and its bytes; a
// null blob has a length of all ones and no bytes.

#include <algorithm>
#include <charconv>
#include <cstring>

#include "blob/blob.h"
#include "blob/rows.h"
#include "kit/convert.h"
#include "kit/nulltext.h"
#include "kit/verify.h"
#include "kit/walks.h"
#include "ot95/blob.h"
#include "ot95/bytes.h"
#include "ot95/memfile.h"

namespace {

using namespace ot95;

unsigned long Store(void* disk, const void* memory, unsigned char format, unsigned long count) {
  auto* place = static_cast<unsigned char*>(disk) + blobWord;
  const OtBlob* blobs = static_cast<const OtBlob*>(memory);
  for (unsigned long i = 0; i < count; ++i) {
    const OtBlobData* data = blobs[i].data;
    const OtDWord length = data ? static_cast<OtDWord>(data->length) : nullBlobLength;
    StoreAs<OtDWord>(place, length, format);
    place += blobWord;
    if (data && data->length > 0) {
      std::memcpy(place, data->bytes, length);
      place += length;
    }
  }
  const auto size = static_cast<unsigned long>(place - static_cast<unsigned char*>(disk));
  StoreAs<OtDWord>(disk, static_cast<OtDWord>(size - blobWord), format);
  return size;
}

unsigned long Load(void* memory, const void* disk, unsigned char format, unsigned long count) {
  const OtDWord total = LoadAs<OtDWord>(disk, format);
  if (static_cast<OtLong>(total) < 0) return 0;
  const auto* place = static_cast<const unsigned char*>(disk) + blobWord;
  OtBlob* blobs = static_cast<OtBlob*>(memory);
  OtDWord left = total;
  for (unsigned long i = 0; i < count; ++i) {
    if (left < blobWord) return 0;
    const OtDWord length = LoadAs<OtDWord>(place, format);
    place += blobWord;
    left -= blobWord;
    if (length == nullBlobLength) {
      blobs[i].SetNullValue();
      continue;
    }
    if (length > left) return 0;
    blobs[i].SetTo(place, static_cast<long>(length));
    place += length;
    left -= length;
  }
  return std::uint64_t{total} + blobWord;
}

// An array of blobs never has the total of all ones; it counts as empty.
unsigned long StoredSize(const void* disk, unsigned char format) {
  const OtDWord total = LoadAs<OtDWord>(disk, format);
  return (total == nullBlobLength ? 0 : total) + blobWord;
}

unsigned long NullSizeGet(unsigned long) {
  return blobWord;
}

unsigned long SizeGet(const void* value, unsigned char sourceFormat, unsigned char,
                      unsigned long count) {
  if (!HasMemoryBit(sourceFormat)) return StoredSize(value, sourceFormat);
  const OtBlob* blobs = static_cast<const OtBlob*>(value);
  unsigned long size = blobWord;
  for (unsigned long i = 0; i < count; ++i) {
    size += blobWord + static_cast<unsigned long>(blobs[i].Length());
  }
  return size;
}

unsigned long SizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long) {
  unsigned long length = blobWord;
  const unsigned char* bytes = file->Seek(0, 1, &length, 0);
  return bytes && length >= blobWord ? StoredSize(bytes, format) : 0;
}

float EvalAndBound(OtIdxBounds*, unsigned short&, void*, unsigned char, unsigned long,
                   OtIdxBounds*) {
  return 1.0F;
}

// Only lengths count: a hash never touches the bytes.
unsigned long Hash(unsigned char format, unsigned long length, void* value, unsigned long count,
                   int& status) {
  status = 0;
  std::uint32_t hash = 0;
  if (format == OT_FORMAT_MEMORY) {
    const OtBlob* blobs = static_cast<const OtBlob*>(value);
    for (unsigned long i = 0; i < count; ++i) hash ^= static_cast<OtDWord>(blobs[i].Length());
    return FinishHash(hash);
  }
  if (count == 0) return 0;
  BlobWalk walk(value, length, format);
  OtDWord size;
  for (unsigned long i = 0; i < count && walk.TakeLength(size); ++i) {
    if (size == nullBlobLength) continue;
    const std::uint64_t present = std::min<std::uint64_t>(size, walk.Left());
    hash ^= static_cast<std::uint32_t>(present);
    walk.Skip(present);
  }
  return FinishHash(hash);
}

int IsNull(void* value) {
  return static_cast<const OtBlob*>(value)->IsNullValue();
}

int SetNull(void* value) {
  return static_cast<OtBlob*>(value)->SetNullValue();
}

constexpr const char* defaultFormat = "[BLOB,len=%L]";

// A string takes text in pieces of 16-bit lengths, of which the greatest has a meaning of its own.
void AppendPlain(OtString& target, const char* text, std::size_t length) {
  while (length > 0) {
    const std::size_t piece = std::min<std::size_t>(length, 0xfffe);
    target += OtString(text, static_cast<unsigned short>(piece));
    text += piece;
    length -= piece;
  }
}

void AppendLength(OtString& target, long length) {
  char digits[24];
  *std::to_chars(digits, digits + sizeof digits - 1, length).ptr = 0;
  target << static_cast<const char*>(digits);
}

OtString& PrintToString(OtString& target, void* value, const char* format, unsigned long) {
  const OtBlob& blob = *static_cast<const OtBlob*>(value);
  if (blob.IsNullValue()) return target = OtTypeMgr::GetNullPrintString();
  for (const char* at = format ? format : defaultFormat; *at != 0; ++at) {
    const std::size_t plain = std::strcspn(at, "%");
    if (plain > 0) {
      AppendPlain(target, at, plain);
      at += plain - 1;
      continue;
    }
    if (*++at == 0) break;
    if (*at == 'L') {
      AppendLength(target, blob.Length());
    } else {
      AppendPlain(target, at, 1);
    }
  }
  return target;
}

// A blob's bytes have no text form: only the null can be read.
void* ScanFromString(void* value, OtString& text, const char*, unsigned long) {
  if (value && BeginsWithNullText(NarrowText(text))) SetNull(value);
  return value;
}

void Write(OtString& text, const OtBlob& blob) {
  if (blob.IsNullValue()) text.SetNullValue();
}

void Read(OtBlob& blob, const OtString* text) {
  if (!text) blob.SetNullValue();
}

constexpr auto Create = CreateCounted<OtBlob>;
constexpr auto ConvertFrom = ConvertFromTexts<OtBlob, CreateCounted<OtBlob>, Read>;

}  // namespace

namespace ot95 {

constinit OtTypeDescriptor rowOtBlob = {
    .name = "OtBlob",
    .Create = Create,
    .Delete = DeleteCounted<OtBlob>,
    .Store = Store,
    .Load = Load,
    .NullSizeGet = NullSizeGet,
    .SizeGet = SizeGet,
    .SizeGetFromMemFile = SizeGetFromMemFile,
    .Compare = BlobCompare,
    .EvalAndBound = EvalAndBound,
    .Hash = Hash,
    .ConvertTo = ConvertToTexts<OtBlob, Write>,
    .ConvertFrom = ConvertFrom,
    .Construct = ConstructValues<OtBlob>,
    .Destruct = DestroyValues<OtBlob>,
    .Assign = AssignValues<OtBlob>,
    .Copy = CopyValues<OtBlob>,
    .Translate = TranslateFixed<Load, Store, AssignValues<OtBlob>, sizeof(OtBlob)>,
    .IsNull = IsNull,
    .SetNull = SetNull,
    .format = defaultFormat,
    .PrintToString = PrintToString,
    .ScanFromString = ScanFromString,
    .memoryLength = sizeof(OtBlob),
    .isFixed = 0,
    .DefaultValue = DefaultOrNull<OtBlob, CreateCounted<OtBlob>, SetNull, ConvertFrom>};

int VerifyBlobs(const StoredBytes& stored, unsigned long& consumed) {
  if (stored.available < blobWord) return OT_ERR_END_OF_DATA;
  const OtDWord total = LoadAs<OtDWord>(stored.bytes, stored.format);
  if (static_cast<OtLong>(total) < 0) return OT_ERR_BAD_ARGUMENT;
  consumed = blobWord;
  OtDWord left = total;
  for (unsigned long i = 0; i < stored.count; ++i) {
    if (left < blobWord) return OT_ERR_BAD_ARGUMENT;
    if (stored.available - consumed < blobWord) return OT_ERR_END_OF_DATA;
    const OtDWord word = LoadAs<OtDWord>(stored.bytes + consumed, stored.format);
    const OtDWord length = word == nullBlobLength ? 0 : word;
    left -= blobWord;
    if (length > left) return OT_ERR_BAD_ARGUMENT;
    if (stored.available - consumed - blobWord < length) return OT_ERR_END_OF_DATA;
    consumed += blobWord + length;
    left -= length;
  }
  return left == 0 ? 0 : OT_ERR_BAD_ARGUMENT;
}

}  // namespace ot95

namespace {

// Both lengths have the word added, so that the comparison may take in the word behind an element
// and a step goes four bytes too far. Stored indexes of blob arrays are in this order; for single
// blobs what is left cuts the comparison to the bytes.
long CompareElements(BlobWalk& walk1, OtDWord length1, BlobWalk& walk2, OtDWord length2) {
  if (length1 == nullBlobLength || length2 == nullBlobLength) {
    return 2L * (length1 != nullBlobLength) - 2L * (length2 != nullBlobLength);
  }
  const std::uint64_t size1 = std::uint64_t{length1} + blobWord;
  const std::uint64_t size2 = std::uint64_t{length2} + blobWord;
  const std::uint64_t common = std::min({size1, size2, walk1.Left(), walk2.Left()});
  const int order =
      common > 0 ? std::memcmp(walk1.Place(), walk2.Place(), static_cast<std::size_t>(common)) : 0;
  walk1.Skip(size1);
  walk2.Skip(size2);
  if (order != 0) return order < 0 ? -1 : 1;
  return ThreeWay(size1, size2);
}

long CompareStored(BlobWalk walk1, BlobWalk walk2, unsigned long count) {
  OtDWord length1, length2;
  long result = 0;
  while (count-- > 0 && result == 0 && walk1.HasLength() && walk2.HasLength()) {
    walk1.TakeLength(length1);
    walk2.TakeLength(length2);
    result = CompareElements(walk1, length1, walk2, length2);
  }
  return result;
}

}  // namespace

long BlobCompare(unsigned char format, unsigned long length1, void* value1, unsigned long length2,
                 void* value2, unsigned short, unsigned long count, int& status) {
  status = 0;
  if (count == 0) return 0;
  if (format != OT_FORMAT_MEMORY) {
    return CompareStored(BlobWalk(value1, length1, format), BlobWalk(value2, length2, format),
                         count);
  }
  const OtBlob* blobs1 = static_cast<const OtBlob*>(value1);
  const OtBlob* blobs2 = static_cast<const OtBlob*>(value2);
  long result = 0;
  for (unsigned long i = 0; i < count && result == 0; ++i) result = blobs1[i] != blobs2[i];
  return result;
}
