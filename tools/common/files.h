#ifndef OT95_TOOLS_FILES_H
#define OT95_TOOLS_FILES_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ot95::tools {

/// A file to read, or standard input. What can't be read throws BadInput that names the file and
/// the reason: an error never counts as the end.
class InputFile {
 public:
  /// @param path "-" for standard input.
  explicit InputFile(const std::string& path);
  ~InputFile();
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  /// @return the bytes read, 0 at the end.
  std::size_t Read(char* buffer, std::size_t size);
  std::string ReadAll();
  /// 0 for what can't be measured, such as a pipe.
  std::uint64_t Size() const;
  const std::string& Name() const { return name_; }

  /// From now on nobody else can open standard input: it holds the program's own commands.
  void KeepForItself();

 private:
  std::string path_, name_;
  int descriptor_;
};

/// The lines of a file, without their newlines.
class LineReader {
 public:
  explicit LineReader(InputFile& file) : file_(file), buffer_(std::size_t{1} << 16) {}

  /// @return whether there was another line.
  bool Next(std::string& line);
  /// "FILE:LINE" of the last one.
  std::string Place() const { return file_.Name() + ":" + std::to_string(number_); }

 private:
  bool Fill();

  InputFile& file_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0, end_ = 0;
  std::size_t number_ = 0;
};

/// From now on a file that reaches the limit of its size is an error of writing, as a full disk is,
/// and not the end of the process.
void TellFileLimits();

/// Both throw BadInput when standard output takes no more.
void WriteOut(std::string_view text);
void FlushOut();

/// Why the last call of the system failed.
std::string LastError();

}  // namespace ot95::tools

#endif
