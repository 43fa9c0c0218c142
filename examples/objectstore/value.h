#ifndef OTDB_VALUE_H
#define OTDB_VALUE_H

#include <memory>
#include <string>

#include "bytes.h"
#include "scanner.h"
#include "schema.h"

namespace otdb {

/// A member's array in memory, of which the program knows the type's identifier and no more.
class Value {
 public:
  /// Default values; null ones where the type has a null.
  explicit Value(const Member& member);
  ~Value();
  Value(const Value&) = delete;
  Value& operator=(const Value&) = delete;

  /// Back to default values.
  void Reset();
  /// Makes one element null. @return whether the type has a null.
  bool SetNull(unsigned long element);
  /// Reads one element from UTF-8; an empty text is null where the type isn't a text.
  /// Throws BadInput for what isn't a value of the type.
  void Scan(unsigned long element, const std::string& utf8);
  bool IsNull(unsigned long element) const;
  /// One element as UTF-8; the null text for a null.
  std::string Print(unsigned long element) const;

  Bytes Stored(unsigned char form) const;
  /// Adds the stored form of all elements behind a record.
  void AppendTo(Bytes& record, unsigned char form) const;
  /// Takes the elements from bytes that were verified.
  void Load(View stored, unsigned char form);

  const Member& Of() const { return member_; }

 private:
  void* Element(unsigned long element) const;

  const Member& member_;
  void* data_;
  std::unique_ptr<ot95::tools::Scanner> scanner_;  ///< Made for the first scan.
};

}  // namespace otdb

#endif
