// Records of a file, verified before they are loaded.
#include "recordreader.h"

#include <algorithm>

namespace ottm {

bool ByteWindow::Grow() {
  std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_),
            buffer_.begin() + static_cast<std::ptrdiff_t>(end_), buffer_.begin());
  end_ -= begin_;
  begin_ = 0;
  if (end_ == buffer_.size()) buffer_.resize(buffer_.size() * 2);
  const std::size_t bytes =
      in_.Read(reinterpret_cast<char*>(buffer_.data() + end_), buffer_.size() - end_);
  end_ += bytes;
  return bytes != 0;
}

void ByteWindow::Drop(unsigned long bytes) {
  begin_ += bytes;
  offset_ += bytes;
}

RecordReader::RecordReader(OtTypeMgr& manager, Layout layout, unsigned char format,
                           ot95::tools::InputFile& in, const char* textFormat)
    : manager_(manager),
      layout_(std::move(layout)),
      format_(format),
      window_(in),
      textFormat_(textFormat),
      values_(layout_.size()) {}

bool RecordReader::Skip() {
  return Walk(false);
}

bool RecordReader::Next() {
  return Walk(true);
}

bool RecordReader::Walk(bool load) {
  start_ = window_.Offset();
  if (damage_ || (window_.Available() == 0 && !window_.Grow())) return false;
  for (std::size_t i = 0; i < layout_.size(); ++i) {
    const Verdict verdict = VerifyMember(layout_[i]);
    if (verdict.status != 0) {
      damage_ = {records_, start_, window_.Offset() + verdict.consumed, layout_[i].name,
                 verdict.reason};
      return false;
    }
    if (load) LoadMember(i);
    window_.Drop(verdict.consumed);
  }
  ++records_;
  return true;
}

// That the bytes end too early counts only where the file ends there, too.
Verdict RecordReader::VerifyMember(const LayoutMember& member) {
  for (;;) {
    Verdict verdict = VerifyBytes(manager_, member.type, {window_.Data(), window_.Available()},
                                  FormToLoad(format_), member.count);
    if (verdict.status != OT_ERR_END_OF_DATA || !window_.Grow()) return verdict;
  }
}

void RecordReader::LoadMember(std::size_t index) {
  const LayoutMember& member = layout_[index];
  auto& values = values_[index];
  if (!values) values = std::make_unique<Values>(manager_, member.type, member.count);
  values->LoadVerified(window_.Data(), format_);
}

}  // namespace ottm
