// Files in memory: a buffer that grows, with a place to read and to write.

#include "ot95/memfile.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <utility>

namespace {

/// Closes a file descriptor at the end of its scope.
struct Descriptor {
  int number;
  ~Descriptor() {
    if (number >= 0) close(number);
  }
};

/// The size of an open file; 0 with `error` set when it isn't one that can be mapped.
unsigned long SizeOf(int descriptor, int& error) {
  struct stat about {};
  if (fstat(descriptor, &about) != 0) {
    error = errno;
  } else if (S_ISDIR(about.st_mode)) {
    error = EISDIR;
  } else if (!S_ISREG(about.st_mode)) {
    error = ENODEV;
  } else if (about.st_size > LONG_MAX) {
    error = EFBIG;  // An offset of Seek could not name its last byte.
  } else {
    return static_cast<unsigned long>(about.st_size);
  }
  return 0;
}

/// `base` plus a signed offset; false when that is below 0 or above `end`.
bool Place(unsigned long base, long offset, unsigned long end, unsigned long& place) {
  const auto distance = static_cast<unsigned long>(offset);
  if (offset < 0 ? 0 - distance > base : distance > ULONG_MAX - base) return false;
  place = base + distance;
  return place <= end;
}

}  // namespace

// The bytes are handed out without const, as the signature of Seek wants; nothing here writes them.
MemFile::MemFile(const void* block, unsigned long size) noexcept
    : length(block ? size : 0),
      bytes_(static_cast<unsigned char*>(const_cast<void*>(block))),
      size_(length) {}

MemFile MemFile::Map(const char* path, int& error) noexcept {
  MemFile file;
  error = path ? 0 : EINVAL;
  if (path == nullptr) return file;
  // Without waiting: opening a pipe would hang until somebody writes to it.
  const Descriptor opened{open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK)};
  if (opened.number < 0) {
    error = errno;
    return file;
  }
  const unsigned long size = SizeOf(opened.number, error);
  if (size == 0) return file;
  void* const bytes = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, opened.number, 0);
  if (bytes == MAP_FAILED) {
    error = errno;
    return file;
  }
  file.bytes_ = static_cast<unsigned char*>(bytes);
  file.length = file.size_ = size;
  file.mapped_ = true;
  return file;
}

MemFile::~MemFile() {
  Release();
}

MemFile::MemFile(MemFile&& other) noexcept {
  Take(other);
}

MemFile& MemFile::operator=(MemFile&& other) noexcept {
  if (this != &other) {
    Release();
    Take(other);
  }
  return *this;
}

void MemFile::Release() noexcept {
  if (mapped_) munmap(bytes_, size_);
}

void MemFile::Take(MemFile& other) noexcept {
  length = std::exchange(other.length, 0);
  position = std::exchange(other.position, 0);
  bytes_ = std::exchange(other.bytes_, nullptr);
  size_ = std::exchange(other.size_, 0);
  mapped_ = std::exchange(other.mapped_, false);
}

unsigned char* MemFile::Seek(long offset, unsigned short origin, unsigned long* wanted,
                             unsigned short) noexcept {
  unsigned long none = 0;
  unsigned long& count = wanted ? *wanted : none;
  const unsigned long end = std::min(length, size_);
  const unsigned long bases[] = {0, position, end};
  unsigned long place = 0;
  if (origin > FROM_END || !Place(bases[origin], offset, end, place)) {
    count = 0;
    return nullptr;
  }
  position = place;
  count = std::min(count, end - place);
  return place < end ? bytes_ + place : nullptr;
}
