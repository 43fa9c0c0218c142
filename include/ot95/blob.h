#ifndef OT95_BLOB_H
#define OT95_BLOB_H

/// @file
/// OtBlob, a run of bytes of any content and of up to 2^31 - 1 bytes.
///
/// A blob owns its bytes alone: every copy copies them, and only Destroy moves them. The null blob
/// and the empty blob are two values. Positions and lengths are bytes; a negative one selects
/// nothing, and a sum beyond the greatest length leaves the blob as it was. A null blob stays null
/// and answers 0, if an operation doesn't say otherwise.
/// @code
///   char header[4] = {'P', 'I', 'C', 1};
///   OtBlob picture(header, 4);
///   picture.Append(pixels, pixelBytes);
///   picture.Cut(0, 4);                        // the pixels alone
/// @endcode

#include "ot95/base.h"

class OtBlob;

/// The bytes behind a blob. When memory is short the memory handler is called once, and the record
/// is left with length 0.
class OT95_EXPORT OtBlobData {
 public:
  unsigned char* bytes = nullptr;  ///< From `malloc`, or null; may be longer than `length`.
  OtLong length = 0;               ///< Bytes in use.

  OtBlobData() = default;
  explicit OtBlobData(long size);  ///< Bytes of any content.
  OtBlobData(const void* source, long size);
  explicit OtBlobData(const OtBlob& source);
  ~OtBlobData();
  OtBlobData(const OtBlobData&) = delete;
  OtBlobData& operator=(const OtBlobData&) = delete;

  /// Replaces the bytes, which may be a part of the old ones. Keeps a block that is too long by no
  /// more than 128 bytes.
  void SetTo(const void* source, long size);
  /// A shorter length keeps the block; a greater one moves it, with new bytes of any content.
  void Resize(unsigned long size);
};

/// Handle to an OtBlobData that it owns; without one it is null.
class OT95_EXPORT OtBlob {
 public:
  OtBlobData* data;

  OtBlob();                    ///< Empty, not null.
  explicit OtBlob(long size);  ///< Bytes of any content.
  OtBlob(const void* bytes, long length);
  OtBlob(const OtBlob& other);
  ~OtBlob();
  OtBlob& operator=(const OtBlob& other);

  bool operator==(const OtBlob& other) const;
  /// Three-way: bytes, then lengths, -1, 0 or 1; -2 or 2 when only this or the other is null.
  int operator!=(const OtBlob& other) const;

  OtBlob& operator+=(const OtBlob& other);
  void Append(const OtBlob& other);
  /// A null blob becomes a copy of the bytes.
  void Append(const void* bytes, long length);

  long Length() const { return data ? data->length : 0; }
  /// Keeps what fits; bytes beyond the old length can be anything. A null blob becomes that long.
  void Expand(long length);
  /// As Expand, but a shorter length keeps the block.
  void Resize(unsigned long length);
  /// The `length` bytes at `position`; null unless there are that many, or for none.
  void* Seek(long position, long length) const;
  /// A copy of a range, cut to what is there; empty when nothing is.
  OtBlob CopyFrom(long position, long length) const;
  /// Overwrites up to `length` bytes at `position` with the first bytes of `source`; never grows.
  void CopyTo(const OtBlob& source, long position, long length);
  /// Replaces the bytes, which may be a part of the old ones.
  void SetTo(const void* bytes, long length);
  /// Removes a range, cut to what is there.
  void Cut(long position, long length);
  /// First position of `pattern`, or 65535: also when this blob or the pattern is null. A blob of
  /// more than 65535 bytes can hold the pattern there too.
  long Search(const OtBlob& pattern) const;
  /// Takes over the bytes of `other`, which is left empty; a null `other` stays null and makes
  /// this null.
  void Destroy(OtBlob& other);

  bool IsNullValue() const { return data == nullptr; }
  /// Makes it null; returns 0.
  int SetNullValue();
};

static_assert(sizeof(OtBlob) == sizeof(void*), "the stride of blob arrays");

/// Comparer of the row OtBlob, by the contract of OtCompareFunc. Stored arrays are walked as they
/// always were: a step passes the next element's length word too, so later elements may not count.
OT95_EXPORT long BlobCompare(unsigned char format, unsigned long length1, void* value1,
                             unsigned long length2, void* value2, unsigned short cmpOp,
                             unsigned long count, int& status);

#endif
