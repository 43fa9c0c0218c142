// Sort keys of blobs: whether there is one, then its bytes.
#include "blob/sortkey.h"

#include "blob/blob.h"
#include "ot95/blob.h"

namespace ot95 {

namespace {

void PutBlob(SortKeyWriter& out, const void* bytes, std::size_t length) {
  out.Put(kPresentKey);
  PutBytes(out, static_cast<const unsigned char*>(bytes), length);
}

int PutBlobsInMemory(const SortInput& input, SortKeyWriter& out) {
  return PutElements(input, sizeof(OtBlob), [&](const unsigned char* element, std::uint64_t) {
    const auto& blob = *reinterpret_cast<const OtBlob*>(element);
    if (blob.IsNullValue()) {
      out.Put(kNullKey);
    } else {
      PutBlob(out, blob.data->bytes, static_cast<std::size_t>(blob.data->length));
    }
    return 0;
  });
}

}  // namespace

// Comparison of stored arrays goes astray behind the first element: only single blobs have an
// order.
int SortKeyOfBlobs(const SortInput& input, SortKeyWriter& out) {
  if (input.count == 0) return 0;
  if (input.format == OT_FORMAT_MEMORY) return PutBlobsInMemory(input, out);
  if (input.count > 1) return OT_ERR_NOT_SUPPORTED;
  if (input.value == nullptr || (input.length != 0 && input.length < blobWord)) {
    return OT_ERR_END_OF_DATA;
  }
  BlobWalk walk(input.value, input.length, input.format);
  OtDWord length = 0;
  if (!walk.TakeLength(length)) return OT_ERR_END_OF_DATA;
  if (length == nullBlobLength) {
    out.Put(kNullKey);
    return 0;
  }
  if (walk.Left() < length) return OT_ERR_END_OF_DATA;
  if (walk.Left() > length) return OT_ERR_NOT_SUPPORTED;
  PutBlob(out, walk.Place(), length);
  return 0;
}

}  // namespace ot95
