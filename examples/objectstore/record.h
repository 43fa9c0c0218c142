#ifndef OTDB_RECORD_H
#define OTDB_RECORD_H

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "bytes.h"
#include "schema.h"
#include "value.h"

namespace otdb {

/// An object as it is stored: its members' stored forms one behind another. The bytes are verified
/// as far as they are asked for, and none is read beyond them.
class Record {
 public:
  Record(const Class& type, View bytes, unsigned char form)
      : class_(&type), bytes_(bytes), form_(form) {}

  /// The stored form of a member; an empty view when the record is damaged in or before it.
  View MemberAt(std::size_t member) const;
  /// Whether all members are there, and nothing else.
  bool IsSound() const;
  View All() const { return bytes_; }

 private:
  const Class* class_;
  View bytes_;
  unsigned char form_;
  mutable std::vector<std::size_t> ends_;  ///< Of the members that were walked over.
};

/// The members of a class in memory, to fill and to print records.
class Object {
 public:
  Object(const Class& type, unsigned char form);

  Value& MemberAt(std::size_t member) { return *values_[member]; }
  Bytes Stored() const;
  /// Throws BadInput when the record is damaged.
  void Load(const Record& record);
  /// The members by name; numbers as numbers, nulls as null.
  nlohmann::ordered_json ToJson() const;
  /// The texts of all elements of all members.
  std::vector<std::string> Texts() const;

 private:
  const Class& class_;
  unsigned char form_;
  std::vector<std::unique_ptr<Value>> values_;
};

/// The names of what Texts gives: members, with the element's number where there are several.
std::vector<std::string> ColumnsOf(const Class& type);

}  // namespace otdb

#endif
