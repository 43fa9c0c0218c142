#ifndef OT95_BENCH_SCRATCH_H
#define OT95_BENCH_SCRATCH_H

#include <stdlib.h>

#include <filesystem>
#include <string>

namespace bench {

/// A directory that goes with the object.
class Scratch {
 public:
  Scratch() {
    std::string name = (std::filesystem::temp_directory_path() / "ot95_bench.XXXXXX").string();
    path_ = mkdtemp(name.data());
  }
  ~Scratch() { std::filesystem::remove_all(path_); }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  std::string Path(const std::string& file = "") const { return path_ + "/" + file; }

 private:
  std::string path_;
};

}  // namespace bench

#endif
