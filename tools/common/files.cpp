// Files and standard streams of the programs: every error of reading and writing is told.
#include "files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "bad_input.h"
#include "message.h"

namespace ot95::tools {
namespace {

constexpr const char* kStandardInput = "-";
bool isStandardInputKept = false;

[[noreturn]] void Fail(const std::string& name) {
  throw BadInput(name + ": expected a file that can be read (" + LastError() + ")");
}

void Require(bool taken) {
  if (!taken) throw BadInput("standard output takes no more (" + LastError() + ")");
}

}  // namespace

std::string LastError() {
  return std::strerror(errno);
}

InputFile::InputFile(const std::string& path)
    : path_(path), name_(path == kStandardInput ? "standard input" : Escaped(path)) {
  if (path != kStandardInput) {
    descriptor_ = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_LARGEFILE);
    if (descriptor_ < 0) Fail(name_);
    return;
  }
  if (isStandardInputKept) {
    throw BadInput(name_ + ": expected a file, for it holds the lines of the batch");
  }
  descriptor_ = STDIN_FILENO;
}

InputFile::~InputFile() {
  if (descriptor_ != STDIN_FILENO) close(descriptor_);
}

std::size_t InputFile::Read(char* buffer, std::size_t size) {
  for (;;) {
    const ssize_t bytes = read(descriptor_, buffer, size);
    if (bytes >= 0) return static_cast<std::size_t>(bytes);
    if (errno != EINTR) Fail(name_);
  }
}

std::string InputFile::ReadAll() {
  constexpr std::size_t block = std::size_t{1} << 16;
  std::string all;
  for (;;) {
    const std::size_t size = all.size();
    all.resize(size + block);
    const std::size_t bytes = Read(all.data() + size, block);
    all.resize(size + bytes);
    if (bytes == 0) return all;
  }
}

std::uint64_t InputFile::Size() const {
  std::error_code error;
  const auto size = std::filesystem::file_size(path_, error);
  return error ? 0 : size;
}

void InputFile::KeepForItself() {
  isStandardInputKept = isStandardInputKept || descriptor_ == STDIN_FILENO;
}

bool LineReader::Fill() {
  begin_ = 0;
  end_ = file_.Read(buffer_.data(), buffer_.size());
  return end_ != 0;
}

bool LineReader::Next(std::string& line) {
  line.clear();
  if (begin_ == end_ && !Fill()) return false;
  ++number_;
  for (;;) {
    const std::string_view rest(buffer_.data() + begin_, end_ - begin_);
    const std::size_t newline = rest.find('\n');
    line += rest.substr(0, newline);
    if (newline != std::string_view::npos) {
      begin_ += newline + 1;
      return true;
    }
    if (!Fill()) return true;
  }
}

void TellFileLimits() {
  std::signal(SIGXFSZ, SIG_IGN);
}

void WriteOut(std::string_view text) {
  Require(std::fwrite(text.data(), 1, text.size(), stdout) == text.size());
}

void FlushOut() {
  Require(std::fflush(stdout) == 0);
}

}  // namespace ot95::tools
