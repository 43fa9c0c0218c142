// Records of a file: read in pieces, checked member by member.
#include "recordfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace ot95::sqlite {

namespace {

constexpr std::size_t kPiece = 1 << 16;
constexpr std::size_t kMostElements = 1000000;

/// Takes "x12" off the end of an item.
std::size_t TakeCount(std::string& item, const std::string& place) {
  const std::size_t x = item.rfind('x');
  const bool isCount = x != std::string::npos && x + 1 < item.size() &&
                       item.find_first_not_of("0123456789", x + 1) == std::string::npos;
  if (!isCount) return 1;
  const std::string digits = item.substr(x + 1);
  item.erase(x);
  const std::size_t count = digits.size() > 7 ? 0 : std::stoul(digits);
  if (count == 0 || count > kMostElements) {
    throw Failure(place + ": expected a count of 1 to 1000000, found " + digits);
  }
  return count;
}

bool HasName(const Layout& layout, const std::string& name) {
  return std::any_of(layout.members.begin(), layout.members.end(),
                     [&](const Member& member) { return member.name == name; });
}

Member ParseMember(std::string item, const Layout& before, const Form& form) {
  const std::string place = "layout, member " + std::to_string(before.members.size() + 1);
  Member member = {0, "", TakeCount(item, place)};
  const std::size_t colon = item.find(':');
  try {
    member.type = ParseType(item.substr(0, colon)) | static_cast<int>(form.table);
  } catch (const Failure& failure) {
    throw Failure(place + ": " + failure.what());
  }
  member.name =
      colon != std::string::npos ? item.substr(colon + 1) : DescribeType(member.type).name;
  if (colon == std::string::npos && HasName(before, member.name)) {
    member.name += "#" + std::to_string(before.members.size() + 1);
  }
  if (member.name.empty() || HasName(before, member.name)) {
    throw Failure(place + ": expected a name of its own, found '" + member.name + "'");
  }
  // A type that is there in no bytes is none that a file can have.
  const ot95_array nothing = {member.type, form.form, nullptr, 0, 1};
  if (ot95_verify(&nothing, nullptr) != OT95_ERR_ENDS) {
    throw Failure(place + ": " + item.substr(0, colon) + " has no such stored form");
  }
  return member;
}

}  // namespace

Layout ParseLayout(std::string_view list, std::string_view formName) {
  const Form form = ParseForm(formName);
  Layout layout;
  layout.form = form.form;
  for (;;) {
    const std::size_t end = std::min(list.find(','), list.size());
    layout.members.push_back(ParseMember(std::string(list.substr(0, end)), layout, form));
    if (end == list.size()) return layout;
    list.remove_prefix(end + 1);
  }
}

// A pipe or a device could keep the statement waiting for ever.
RecordFile::RecordFile(const std::string& path, Layout layout, std::size_t mostBytes)
    : path_(path),
      layout_(std::move(layout)),
      mostBytes_(mostBytes),
      isFixed_(std::all_of(
          layout_.members.begin(), layout_.members.end(),
          [](const Member& member) { return DescribeType(member.type).is_fixed != 0; })),
      file_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
  struct stat found = {};
  if (file_ < 0) throw Failure(path + ": " + std::strerror(errno));
  if (fstat(file_, &found) != 0 || !S_ISREG(found.st_mode)) {
    close(file_);
    throw Failure(path + ": expected a file");
  }
  fileSize_ = static_cast<std::uint64_t>(found.st_size);
}

RecordFile::~RecordFile() {
  close(file_);
}

/// Reads on, with the record moved to the front of the buffer. @return false at the end of the file
bool RecordFile::Read() {
  if (begin_ > 0) {
    std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_),
              buffer_.begin() + static_cast<std::ptrdiff_t>(end_), buffer_.begin());
    bufferOffset_ += begin_;
    next_ -= begin_;
    end_ -= begin_;
    begin_ = 0;
  }
  if (end_ == buffer_.size()) buffer_.resize(std::max(kPiece, 2 * buffer_.size()));
  const ssize_t bytes = pread(file_, buffer_.data() + end_, buffer_.size() - end_,
                              static_cast<off_t>(bufferOffset_ + end_));
  if (bytes < 0) throw Failure(path_ + ": " + std::strerror(errno));
  end_ += static_cast<std::size_t>(bytes);
  return bytes != 0;
}

void RecordFile::Damaged(const Member& member, std::size_t good, const char* why) const {
  throw Failure(path_ + ": damaged at offset " + std::to_string(bufferOffset_ + next_ + good) +
                ", in " + member.name + " of record " + std::to_string(known_) + ": " + why);
}

// That the bytes end too early counts only where the file ends there, too.
void RecordFile::CheckMember(const Member& member) {
  for (;;) {
    const ot95_array array = {member.type, layout_.form, buffer_.data() + next_, Available(),
                              member.count};
    std::size_t good = 0;
    const int status = ot95_verify(&array, &good);
    if (status == OT95_ERR_ENDS && Available() > mostBytes_) Damaged(member, good, "too long");
    if (status == OT95_ERR_ENDS && Read()) continue;
    if (status != OT95_OK) Damaged(member, good, ot95_strerror(status));
    next_ += good;
    ends_.push_back(next_ - begin_);
    return;
  }
}

bool RecordFile::Next() {
  begin_ = next_;
  ends_.clear();
  if (Available() == 0 && !Read()) return false;
  start_ = bufferOffset_ + begin_;
  for (const Member& member : layout_.members) CheckMember(member);
  if (next_ == begin_) throw Failure(path_ + ": the layout's records take no bytes");
  record_ = known_++;
  return true;
}

void RecordFile::Jump(std::uint64_t records) {
  const std::uint64_t size = next_ - begin_;  // of every record
  const std::uint64_t here = bufferOffset_ + next_;
  const std::uint64_t left = (fileSize_ - std::min(fileSize_, here)) / size;
  const std::uint64_t passed = std::min(records, left);
  bufferOffset_ = here + passed * size;
  known_ += passed;
  begin_ = next_ = end_ = 0;
}

void RecordFile::Skip(std::uint64_t records) {
  for (; records > 0 && Next(); --records) {
    if (isFixed_) return Jump(records - 1);
  }
}

std::string RecordFile::Json() const {
  std::string json = "{";
  std::size_t begin = 0;
  for (std::size_t i = 0; i < layout_.members.size(); ++i) {
    const Member& member = layout_.members[i];
    const Elements elements({member.type, layout_.form, buffer_.data() + begin_ + begin,
                             ends_[i] - begin, member.count});
    if (i > 0) json += ',';
    AddQuoted(json, member.name);
    json += member.count == 1 ? ":" : ":[";
    for (std::size_t k = 0; k < member.count; ++k) {
      if (k > 0) json += ',';
      elements.AddJson(json, k);
    }
    if (member.count > 1) json += ']';
    begin = ends_[i];
  }
  return json + '}';
}

}  // namespace ot95::sqlite
