#ifndef OT95_BLOB_H
#define OT95_BLOB_H

/// @file
/// OtBlob, a run of bytes of any content and of up to 2^31 - 1 bytes.
///
///     OtBlob              OtBlobData            block from malloc
///     | data | ---------> | bytes | ----------> | ... length bytes ... | spare |
///      null: the          | length |
///      null blob
///
/// A blob owns its bytes alone: every copy copies them, and only Destroy moves them. The null blob
/// (no record) and the empty blob (a record of length 0) are two values, in memory and on disk.
/// @code
///   const char header[4] = {'P', 'I', 'C', 1};
///   const unsigned char pixels[] = {0xff, 0x80, 0x00};
///   OtBlob picture(header, 4);                // picture.Length() == 4
///   picture.Append(pixels, 3);                // picture.Length() == 7
///   long place = picture.Search(OtBlob("C\1", 2));   // place == 2
///   picture.Cut(0, 4);                        // picture == OtBlob(pixels, 3)
///   OtBlob moved;
///   moved.Destroy(picture);                   // picture.Length() == 0
/// @endcode
///
/// Positions and lengths are bytes, from 0 on. A negative one selects nothing, and a sum beyond the
/// greatest length leaves the blob as it was. A null blob stays null and answers 0, if an operation
/// doesn't say otherwise.
///
/// When memory is short the memory handler (OtSetMemoryHandler in fault.h) is called once, and the
/// operation goes on without the bytes: look at Length afterwards.
///
/// What the table of types doesn't do with a blob: it prints as its length ("[BLOB,len=5]"), scans
/// only as null, converts to an empty string, hashes by its length, and has no estimate (1.0).

#include "ot95/base.h"

class OtBlob;

/// The bytes behind a blob. One record belongs to one blob. When memory is short the memory handler
/// is called once, and the record is left with length 0.
class OT95_EXPORT OtBlobData {
 public:
  unsigned char* bytes = nullptr;  ///< From `malloc`, or null; may be longer than `length`.
  OtLong length = 0;               ///< Bytes in use, never negative.

  OtBlobData() = default;          ///< No bytes.
  explicit OtBlobData(long size);  ///< Bytes of any content; none for a negative size.
  /// A copy of `size` bytes; none for a negative size.
  OtBlobData(const void* source, long size);
  explicit OtBlobData(const OtBlob& source);  ///< A copy; of a null blob, no bytes.
  ~OtBlobData();
  OtBlobData(const OtBlobData&) = delete;
  OtBlobData& operator=(const OtBlobData&) = delete;

  /// Replaces the bytes, which may be a part of the old ones. Keeps a block that is too long by no
  /// more than 128 bytes.
  void SetTo(const void* source, long size);
  /// A shorter length keeps the block; a greater one moves it, with new bytes of any content.
  void Resize(unsigned long size);
};

/// Handle to an OtBlobData that it owns; without one it is null. It is one pointer wide, the stride
/// of blob arrays. One thread at a time may use it; two blobs never share bytes.
class OT95_EXPORT OtBlob {
 public:
  OtBlobData* data;  ///< Null for the null blob.

  OtBlob();                    ///< Empty, not null.
  explicit OtBlob(long size);  ///< Bytes of any content.
  /// A copy of `length` bytes.
  OtBlob(const void* bytes, long length);
  OtBlob(const OtBlob& other);  ///< A copy of the bytes; of a null blob, null.
  ~OtBlob();
  /// A copy of the bytes. The block is kept where it is long enough, by no more than 128 bytes.
  OtBlob& operator=(const OtBlob& other);

  /// Same bytes, or both null. An empty blob doesn't equal a null one.
  bool operator==(const OtBlob& other) const;
  /// Three-way comparison, not a truth value: by unsigned bytes, then by length, -1, 0 or 1; -2 or
  /// 2 when only this or the other is null. So null comes first, then empty.
  int operator!=(const OtBlob& other) const;

  // Appending an empty or null blob changes nothing. A blob may be appended to itself.
  OtBlob& operator+=(const OtBlob& other);
  void Append(const OtBlob& other);
  /// A null blob becomes a copy of the bytes. A length below 1 changes nothing.
  void Append(const void* bytes, long length);

  /// Bytes; 0 also for a null blob.
  long Length() const { return data ? data->length : 0; }
  /// Keeps what fits; bytes beyond the old length can be anything. A null blob becomes that long.
  void Expand(long length);
  /// As Expand, but a shorter length keeps the block.
  void Resize(unsigned long length);
  /// The `length` bytes at `position`, to read and to write; null unless there are that many, or
  /// for none. They stay until the blob is changed by anything but writing through this pointer.
  void* Seek(long position, long length) const;
  /// A copy of a range, cut to what is there; empty when nothing is.
  OtBlob CopyFrom(long position, long length) const;
  /// Overwrites up to `length` bytes of this blob at `position` with the first bytes of `source`;
  /// never grows, and takes no more than `source` has.
  void CopyTo(const OtBlob& source, long position, long length);
  /// Replaces the bytes, which may be a part of the old ones.
  void SetTo(const void* bytes, long length);
  /// Removes a range, cut to what is there. A blob that loses all its bytes is empty, not null.
  void Cut(long position, long length);
  /// First position of `pattern`, or 65535: also when this blob or the pattern is null. A blob of
  /// more than 65535 bytes can hold the pattern there too.
  long Search(const OtBlob& pattern) const;
  /// Takes over the bytes of `other`, which is left empty; a null `other` stays null and makes
  /// this null.
  void Destroy(OtBlob& other);

  bool IsNullValue() const { return data == nullptr; }
  /// Makes it null, freeing the bytes; returns 0.
  int SetNullValue();
};

static_assert(sizeof(OtBlob) == sizeof(void*), "the stride of blob arrays");

/// Comparer of the row OtBlob, by the contract of OtCompareFunc (typemgr.h): in memory form the
/// result of `operator!=`. Stored single blobs order alike. Stored arrays are walked as they always
/// were: a step passes the next element's length word too, so later elements may not count.
OT95_EXPORT long BlobCompare(unsigned char format, unsigned long length1, void* value1,
                             unsigned long length2, void* value2, unsigned short cmpOp,
                             unsigned long count, int& status);

#endif
