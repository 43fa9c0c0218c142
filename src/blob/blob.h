#ifndef OT95_SRC_BLOB_BLOB_H
#define OT95_SRC_BLOB_BLOB_H

// What the row of blobs needs to know of their records.

#include <algorithm>
#include <cstdint>

#include "ot95/base.h"
#include "ot95/bytes.h"

namespace ot95 {

constexpr unsigned blobWord = 4;                ///< Bytes of a stored length.
constexpr OtDWord nullBlobLength = 0xffffffff;  ///< Stored in place of the length of a null blob.

/// Walks the elements of a stored array of blobs, never beyond the bytes that were given.
class BlobWalk {
 public:
  /// Stands behind the total. A `length` of 0 means as many bytes as the array itself says.
  BlobWalk(const void* disk, unsigned long length, unsigned char format)
      : place_(static_cast<const unsigned char*>(disk)), left_(length), format_(format) {
    if (!disk) {
      left_ = 0;
    } else if (length == 0) {
      const OtDWord total = LoadAs<OtDWord>(disk, format);
      left_ = std::uint64_t{blobWord} + (total == nullBlobLength ? 0 : total);
    }
    Skip(blobWord);
  }

  const unsigned char* Place() const { return place_; }
  std::uint64_t Left() const { return left_; }
  bool HasLength() const { return left_ >= blobWord; }
  /// Takes the length word here; false if there is none.
  bool TakeLength(OtDWord& length) {
    if (!HasLength()) return false;
    length = LoadAs<OtDWord>(place_, format_);
    Skip(blobWord);
    return true;
  }
  /// Moves on, at most to the end.
  void Skip(std::uint64_t bytes) {
    bytes = std::min(bytes, left_);
    place_ += bytes;
    left_ -= bytes;
  }

 private:
  const unsigned char* place_;
  std::uint64_t left_;
  unsigned char format_;
};

}  // namespace ot95

#endif
