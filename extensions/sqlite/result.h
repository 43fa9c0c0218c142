#ifndef OT95_SQLITE_RESULT_H
#define OT95_SQLITE_RESULT_H

/// @file
/// Results of the library as results of functions.

#include <memory>

#include "sqlite.h"

namespace ot95::sqlite {

struct SqliteFree {
  void operator()(void* block) const { sqlite3_free(block); }
};

/// What a function of the library wrote, on the stack while it is short.
class Result {
 public:
  Result() = default;
  Result(const Result&) = delete;
  Result& operator=(const Result&) = delete;

  /// @param write takes an ot95_buffer, and is called again where the first one was too small.
  template <class Write>
  void Take(const std::string& where, Write&& write) {
    int status = write(&buffer_);
    if (status == OT95_ERR_ROOM) {
      heap_.reset(sqlite3_malloc64(buffer_.size + 1));
      if (heap_ == nullptr) throw std::bad_alloc();
      buffer_ = {heap_.get(), buffer_.size + 1, 0};
      status = write(&buffer_);
    }
    Check(status, where);
  }

  const char* data() const { return static_cast<const char*>(buffer_.data); }
  std::size_t size() const { return buffer_.size; }
  void GiveBlob(sqlite3_context* context) const {
    sqlite3_result_blob64(context, data(), size(), SQLITE_TRANSIENT);
  }
  void GiveText(sqlite3_context* context) const {
    sqlite3_result_text64(context, data(), size(), SQLITE_TRANSIENT, SQLITE_UTF8);
  }

 private:
  char inline_[512];
  ot95_buffer buffer_ = {inline_, sizeof inline_, 0};
  std::unique_ptr<void, SqliteFree> heap_;
};

}  // namespace ot95::sqlite

#endif
