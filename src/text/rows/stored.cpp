/// The way through arrays of strings that comparison and hash share.

#include "text/rows/stored.h"

namespace ot95 {
namespace {

/// A key of a whole index page entry is at most this long; a longer text that is cut was not cut
/// as a key, so that there is no telling what it would have been.
constexpr std::uint64_t kLongestCut = 0xfe;

}  // namespace

unsigned char TargetCodeSet(unsigned char codeSet, unsigned char format) {
  if ((format & kStoreRaw) != 0 && codeSet != OT_CS_ORDER) return 0;
  if ((format & kStoreNative) != 0 && codeSet == 0) return OtLanguageContext::GetNativeCodeSet();
  return codeSet;
}

bool StringCursor::Unpack(StoredText& out) {
  out = {TextSpan::Terminated(nullptr, 0, 0), place_ != nullptr, false, false, 0};
  if (place_ == nullptr) return true;
  if (IsMemory()) {
    const OtString& string = *reinterpret_cast<const OtString*>(place_);
    const std::size_t width = CharWidth(string.GetCodeSetCode());
    out.text = TextSpan::Of(string);
    out.chars = string.MemLen() < width ? 0 : (string.MemLen() - width) / width;
    return true;
  }
  if (oldForm_) return UnpackOldForm(out);
  if (limited_ && left_ < 2) return false;
  const std::size_t length = LoadLength(place_, format_);
  if (!EntersOldForm(length)) return UnpackRecord(length, out);
  oldForm_ = true;
  oldFormCut_ = !Covers(length);
  oldLeft_ = length;
  oldAtHand_ = oldFormCut_ ? static_cast<std::size_t>(left_ - 2) : length;
  place_ += 2;
  return UnpackOldForm(out);
}

bool StringCursor::EntersOldForm(std::size_t length) const {
  if ((format_ & kStoreKey) != 0) return false;
  return Covers(length) ? IsOldForm(place_, length) : legacy_;
}

bool StringCursor::UnpackOldForm(StoredText& out) {
  const std::size_t stored = oldLeft_ == 0 ? 0 : oldLeft_ - 1;
  const std::size_t bytes = std::min(stored, oldAtHand_);
  out.text = TextSpan::Bounded(place_, bytes, 0, 0, false);
  out.truncated = oldFormCut_;
  out.unknowable = bytes < stored && bytes >= kLongestCut;
  out.chars = bytes;
  return true;
}

bool StringCursor::UnpackRecord(std::size_t length, StoredText& out) {
  if (limited_ && left_ < kHeaderSize) return false;
  const auto header = [this, length](std::size_t offset) {
    return offset < length + 2 ? static_cast<unsigned char>(place_[offset])
                               : static_cast<unsigned char>(0);
  };
  const std::size_t stored = length < kHeaderSize ? 0 : length - kHeaderSize;
  std::size_t bytes = stored;
  if (limited_) {
    out.unknowable = left_ - 2 < stored && left_ - 2 >= kLongestCut;
    bytes = static_cast<std::size_t>(std::min<std::uint64_t>(left_ - kHeaderSize, stored));
  }
  const unsigned char codeSet = header(2);
  out.text =
      TextSpan::Bounded(place_ + kHeaderSize, bytes, codeSet, header(3), IsReversed(format_));
  // A record that lacks its last byte alone still has all of its text.
  out.truncated = !Covers(length) && left_ != length + 1;
  out.chars = bytes / CharWidth(codeSet);
  return true;
}

bool StringCursor::Advance() {
  if (place_ == nullptr) return true;
  std::size_t passed = sizeof(OtString);
  if (oldForm_) {
    const char* end = std::find(place_, place_ + oldAtHand_, '\0');
    passed = std::min<std::size_t>(static_cast<std::size_t>(end - place_) + 1, oldAtHand_);
    place_ += passed;
    oldLeft_ -= passed;
    oldAtHand_ -= passed;
    return oldAtHand_ != 0;
  }
  if (!IsMemory()) passed = std::size_t{LoadLength(place_, format_)} + 2;
  place_ += limited_ ? std::min<std::uint64_t>(passed, left_) : passed;
  if (!limited_) return true;
  left_ = left_ > passed ? left_ - passed : 0;
  return left_ > kHeaderSize;
}

}  // namespace ot95
