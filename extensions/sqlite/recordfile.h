#ifndef OT95_SQLITE_RECORDFILE_H
#define OT95_SQLITE_RECORDFILE_H

/// @file
/// Files of records, one behind another, each member checked before it is read.

#include <cstdint>
#include <string>
#include <vector>

#include "values.h"

namespace ot95::sqlite {

/// One member of a record: an array of values of one type.
struct Member {
  int type;  ///< With OT95_OLD_TABLE where the form says so.
  std::string name;
  std::size_t count;
};

struct Layout {
  std::vector<Member> members;
  unsigned form = OT95_FORM_NATIVE;
};

/// Reads TYPE[:NAME][xCOUNT],... A member without a name has its type's, with its place behind it
/// where that was taken. Throws Failure that names the place.
Layout ParseLayout(std::string_view list, std::string_view form);

class RecordFile {
 public:
  /// @param mostBytes of one member.
  RecordFile(const std::string& path, Layout layout, std::size_t mostBytes);
  ~RecordFile();
  RecordFile(const RecordFile&) = delete;
  RecordFile& operator=(const RecordFile&) = delete;

  /// Checks the next record. @return false at the end of the file. Throws Failure that says where
  /// and why a record can't be one.
  bool Next();
  /// Passes over records; those of a fixed size aren't read.
  void Skip(std::uint64_t records);

  std::uint64_t Record() const { return record_; }  ///< Of the last one, from 0.
  std::uint64_t Offset() const { return start_; }   ///< Where it begins.
  std::string Json() const;                         ///< An object with a value a member.

 private:
  bool Read();
  std::size_t Available() const { return end_ - next_; }
  void Jump(std::uint64_t records);
  void CheckMember(const Member& member);
  [[noreturn]] void Damaged(const Member& member, std::size_t good, const char* why) const;

  std::string path_;
  Layout layout_;
  std::size_t mostBytes_;
  bool isFixed_;
  int file_;
  std::uint64_t fileSize_ = 0;
  std::vector<unsigned char> buffer_;
  std::size_t begin_ = 0;           ///< Of the record in the buffer.
  std::size_t next_ = 0;            ///< Of what hasn't been checked.
  std::size_t end_ = 0;             ///< Of what has been read.
  std::uint64_t bufferOffset_ = 0;  ///< Of the buffer in the file.
  std::uint64_t start_ = 0;
  std::uint64_t record_ = 0;
  std::uint64_t known_ = 0;        ///< How many records have been passed.
  std::vector<std::size_t> ends_;  ///< Of members, from the beginning of the record.
};

}  // namespace ot95::sqlite

#endif
