#ifndef OTDB_SCHEMA_H
#define OTDB_SCHEMA_H

#include <string>
#include <vector>

#include "ot95/base.h"

namespace otdb {

/// A member of a class: an array of values of one type.
struct Member {
  std::string name;
  char type = 0;
  unsigned long count = 1;
  unsigned char codeSet = 253;  ///< Of texts; Unicode.
  unsigned char language = 1;   ///< Of texts; neutral.
  std::string format;           ///< Of its text; empty for the type's own.
  bool indexed = false;

  const char* Format() const { return format.empty() ? nullptr : format.c_str(); }
  /// Whether the type's values are texts: those print whole.
  bool IsText() const;
};

struct Class {
  std::string name;
  std::vector<Member> members;

  /// Throws BadInput for a name that no member has.
  std::size_t MemberNamed(const std::string& name) const;
};

/// What a store holds. It comes from a JSON file, and is kept in the store as such.
struct Schema {
  unsigned char form = OT_FORMAT_BIG_ENDIAN;  ///< Of everything stored.
  /// Whether the indexes hold sort keys, and of which layout: 0 where the types' own comparison
  /// orders them.
  unsigned sortKeyVersion = 0;
  /// Of the store. Objects and facts of the first have no checksums.
  unsigned version = kNewestVersion;
  std::vector<Class> classes;

  static constexpr unsigned kFirstVersion = 1, kNewestVersion = 2;

  /// Throws BadInput that names what is wrong.
  /// @param version where the text doesn't tell.
  static Schema FromJson(const std::string& text, unsigned version = kNewestVersion);
  std::string ToJson() const;

  const Class& ClassNamed(const std::string& name) const;
};

}  // namespace otdb

#endif
