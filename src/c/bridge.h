#ifndef OT95_SRC_C_BRIDGE_H
#define OT95_SRC_C_BRIDGE_H

/// @file
/// What all functions of the C interface share: the way in for stored arrays, which checks them,
/// and the way out through the caller's buffers.

#include <new>

#include "ot95/fault.h"
#include "ot95/text.h"
#include "ot95/typemgr.h"
#include "ot95c/ot95c.h"

namespace ot95::c {

/// Runs the body of an exported function: nothing that is thrown leaves it, and what was made while
/// memory was short doesn't count.
template <class Body>
int Guarded(Body&& body) noexcept {
  const unsigned long shortages = OtMemoryShortages();
  try {
    const int status = body();
    return OtMemoryShortages() == shortages ? status : OT95_ERR_MEMORY;
  } catch (const std::bad_alloc&) {
    return OT95_ERR_MEMORY;
  } catch (...) {
    return OT95_ERR_INTERNAL;
  }
}

/// The same of one whose result goes to a buffer.
template <class Body>
int GuardedFor(ot95_buffer* out, Body&& body) noexcept {
  if (out == nullptr) return OT95_ERR_ARGUMENT;
  const std::size_t size = out->size;
  const int status = Guarded(body);
  if (status == OT95_ERR_MEMORY) out->size = size;
  return status;
}

/// The same of one that `body` gives a place for its result, which counts where it succeeds.
template <class Result, class Body>
int GuardedResult(Result* result, Body&& body) noexcept {
  if (result == nullptr) return OT95_ERR_ARGUMENT;
  Result made{};
  const int status = Guarded([&] { return body(made); });
  if (status == OT95_OK) *result = made;
  return status;
}

/// The status here of one of the library's.
int StatusOf(int libraryStatus);

/// A type that has values.
struct Type {
  OtTypeMgr manager;
  char id = 0;
  const OtTypeDescriptor* row = nullptr;

  /// @param number with or without OT95_OLD_TABLE.
  int Open(int number);
  bool IsText() const;
  /// Whether disk sizes are the same for all values.
  bool IsFixed() const { return row->isFixed != 0; }
};

/// The rows of a table, and their number.
struct Table {
  OtTypeFactory rows;
  int count;

  /// Takes OT95_OLD_TABLE off a type's number. Of a number with other bits the table is empty.
  static Table Of(int& number);
};

/// A form of stored values, not of memory.
int OpenForm(unsigned form, unsigned char& format);

/// An array whose bytes have been checked.
class Stored {
 public:
  /// @param consumed as of VerifyStored.
  int Open(const ot95_array* array, unsigned long& consumed);
  int Open(const ot95_array* array);
  /// For what takes no length: an index key that was cut doesn't pass.
  int OpenWhole(const ot95_array* array);

  const Type& type() const { return type_; }
  OtTypeMgr& manager() { return type_.manager; }
  char id() const { return type_.id; }
  unsigned char format() const { return format_; }
  unsigned long count() const { return count_; }
  unsigned long size() const { return size_; }
  /// The library reads through pointers that could be written to.
  void* bytes() const { return const_cast<void*>(bytes_); }

 private:
  int OpenAs(const ot95_array* array, unsigned char formMask, unsigned long& consumed);

  Type type_;
  const void* bytes_ = nullptr;
  unsigned long size_ = 0;
  unsigned long count_ = 0;
  unsigned char format_ = 0;
};

/// An array in memory.
class Values {
 public:
  Values() = default;
  ~Values();
  Values(const Values&) = delete;
  Values& operator=(const Values&) = delete;

  /// Fresh values.
  int Make(const Type& type, unsigned long count);
  int Load(Stored& stored);
  /// Takes over what an operation of the manager made; null stands for a lack of memory.
  int Adopt(const Type& type, void* data, unsigned long count);

  Type& type() { return type_; }
  void* data() const { return data_; }
  unsigned long count() const { return count_; }
  void* Element(unsigned long index) const;
  bool IsNull(unsigned long index);
  int Store(unsigned char format, ot95_buffer* out);

 private:
  Type type_;
  void* data_ = nullptr;
  unsigned long count_ = 0;
};

/// Whether a result can be given to a buffer.
inline bool IsBuffer(const ot95_buffer* out) {
  return out != nullptr && (out->data != nullptr || out->room == 0);
}
/// Says how much a result takes. @return 0 if the buffer has the room.
int AskRoom(ot95_buffer* out, std::size_t size);
int Give(ot95_buffer* out, const void* bytes, std::size_t size);
/// Gives a text in UTF-8, unpaired surrogates as U+FFFD.
int GiveText(ot95_buffer* out, const OtString& text);
int GiveUnits(ot95_buffer* out, const std::uint16_t* units, std::size_t count);

/// The op word of the library for options of comparison.
int OpenOptions(unsigned options, unsigned short& cmpOp);

inline int Sign(long result) {
  return (result > 0) - (result < 0);
}

/// Copies a description as far as the caller's structure reaches.
template <class T>
int Describe(T* out, T description) {
  if (out == nullptr || out->struct_size < sizeof out->struct_size) return OT95_ERR_ARGUMENT;
  const std::size_t size = out->struct_size < sizeof(T) ? out->struct_size : sizeof(T);
  description.struct_size = size;
  __builtin_memcpy(out, &description, size);
  return OT95_OK;
}

}  // namespace ot95::c

#endif
