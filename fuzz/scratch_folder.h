// SPDX-License-Identifier: MIT
// The working folder of a fuzzer that writes files, an empty one where temporary files go.
#ifndef VEXTREL_FUZZ_SCRATCH_FOLDER_H
#define VEXTREL_FUZZ_SCRATCH_FOLDER_H

#include <unistd.h>

#include <filesystem>
#include <string>

namespace vextrel_fuzz {

class ScratchFolder {
 public:
  ScratchFolder()
      : path_(std::filesystem::temp_directory_path() /
              ("vextrel-fuzz-" + std::to_string(::getpid()))) {
    std::filesystem::create_directory(path_);
    std::filesystem::current_path(path_);
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::current_path("/", ignored);
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  void Empty() const {
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
      std::filesystem::remove_all(entry.path());
    }
  }

 private:
  std::filesystem::path path_;
};

}  // namespace vextrel_fuzz

#endif  // VEXTREL_FUZZ_SCRATCH_FOLDER_H
