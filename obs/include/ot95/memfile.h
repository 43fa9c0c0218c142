#ifndef OT95_MEMFILE_H
#define OT95_MEMFILE_H

/// @file
/// A read position over bytes that stand in memory: a block of the caller's, or a mapped file.
///
/// @code
///   const unsigned char block[6] = {0, 100, 0, 250, 1, 143};
///   MemFile file(block, sizeof block);
///   unsigned long length = 4;                                   // wanted
///   const unsigned char* head = file.Seek(2, MemFile::FROM_START, &length, 0);  // head[1] == 250
///   length = 8;
///   file.Seek(0, MemFile::FROM_POSITION, &length, 0);           // length == 4
///
///   int error = 0;
///   MemFile missing = MemFile::Map("no such file", error);      // error != 0
/// @endcode

#include "ot95/base.h"

/// Bytes with a position. It moves and isn't copied; a mapped file is unmapped with its last owner.
/// One thread at a time may use it.
class OT95_EXPORT MemFile {
 public:
  /// Where Seek counts from.
  enum : unsigned short { FROM_START = 0, FROM_POSITION = 1, FROM_END = 2 };

  /// No bytes at all.
  MemFile() noexcept = default;

  /// The `size` bytes at `block`, which stays the caller's and must outlive their use here. A null
  /// block has no bytes, whatever `size` says.
  MemFile(const void* block, unsigned long size) noexcept;

  /// Maps the regular file at `path` for reading. `error` receives 0, or the system's error number
  /// (`errno`); the result then has no bytes. An empty file succeeds and has none either. Another
  /// program that shortens the file while it is mapped takes the bytes away under the reader.
  static MemFile Map(const char* path, int& error) noexcept;

  ~MemFile();
  MemFile(MemFile&& other) noexcept;
  MemFile& operator=(MemFile&& other) noexcept;
  MemFile(const MemFile&) = delete;
  MemFile& operator=(const MemFile&) = delete;

  /// Moves the position to `offset` bytes from `origin` (0 the start, 1 the current position, 2 the
  /// end) and hands out the bytes that stand there. Handing out does not move the position:
  /// `Seek(0, 1, &length, 0)` again gives the same bytes.
  ///
  /// @param length In: bytes wanted. Out: bytes available there, at most what was wanted. Null
  ///               wants none.
  /// @param flag   Reserved; it has no effect.
  /// @return The bytes, for reading only; null with `*length` 0 when there are none. The end itself
  ///         is a place to move to, without bytes. A place before the start or behind the end, or
  ///         another origin, leaves the position where it was.
  unsigned char* Seek(long offset, unsigned short origin, unsigned long* length,
                      unsigned short flag) noexcept;

  unsigned long length = 0;    ///< Bytes in all. Lowering it ends the bytes sooner.
  unsigned long position = 0;  ///< Offset of the next byte. Behind the end nothing can be read.

 private:
  void Release() noexcept;
  void Take(MemFile& other) noexcept;

  unsigned char* bytes_ = nullptr;
  unsigned long size_ = 0;  // What really stands at bytes_, however `length` is set.
  bool mapped_ = false;
};

#endif
