#ifndef OTTM_RECORDREADER_H
#define OTTM_RECORDREADER_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "bytes.h"
#include "files.h"
#include "layout.h"
#include "values.h"

namespace ottm {

/// The bytes of a file from some offset on, in a buffer that holds what one member needs.
class ByteWindow {
 public:
  explicit ByteWindow(ot95::tools::InputFile& in) : in_(in), buffer_(kFirstSize) {}

  unsigned char* Data() { return buffer_.data() + begin_; }
  unsigned long Available() const { return static_cast<unsigned long>(end_ - begin_); }
  std::uint64_t Offset() const { return offset_; }
  /// Reads on. @return false where the file has ended.
  bool Grow();
  void Drop(unsigned long bytes);

 private:
  static constexpr std::size_t kFirstSize = 1 << 16;

  ot95::tools::InputFile& in_;
  Bytes buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  std::uint64_t offset_ = 0;  ///< Of begin_ in the file.
};

/// Where and why a record can't be one.
struct Damage {
  std::uint64_t record;  ///< Counted from 0.
  std::uint64_t start;   ///< Offset of the record.
  std::uint64_t offset;  ///< How far its bytes are good.
  std::string member;
  std::string reason;
};

/// Walks the records of a file. Every member is verified before it is loaded.
class RecordReader {
 public:
  /// @param textFormat of the values that are printed; null for the types' own.
  RecordReader(OtTypeMgr& manager, Layout layout, unsigned char format, ot95::tools::InputFile& in,
               const char* textFormat);

  /// Moves behind the next record without loading it. @return false at the end or at a damaged one.
  bool Skip();
  /// Loads the next record. @return as Skip.
  bool Next();

  const Layout& Members() const { return layout_; }
  /// The values of a member, as loaded by Next.
  const Values& ValuesOf(std::size_t member) const { return *values_[member]; }
  const char* TextFormat() const { return textFormat_; }
  std::uint64_t Start() const { return start_; }             ///< Offset of the record.
  std::uint64_t Offset() const { return window_.Offset(); }  ///< Where it ends.
  const std::optional<Damage>& Found() const { return damage_; }

 private:
  bool Walk(bool load);
  Verdict VerifyMember(const LayoutMember& member);
  void LoadMember(std::size_t index);

  OtTypeMgr& manager_;
  Layout layout_;
  unsigned char format_;
  ByteWindow window_;
  const char* textFormat_;
  std::vector<std::unique_ptr<Values>> values_;  ///< Made when the first record was verified.
  std::uint64_t records_ = 0;
  std::uint64_t start_ = 0;
  std::optional<Damage> damage_;
};

}  // namespace ottm

#endif
