// SPDX-License-Identifier: MIT
#include "commands/log_mark.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <utility>

#include "images/file_bytes.h"
#include "reading/rolled_files.h"

namespace vextrel::program {

namespace fs = std::filesystem;

namespace {

// A few lines. If the layout has times, no other file has them at the same place.
constexpr std::uint64_t kMostOfTail = 4096;

// 0 for what isn't a file: a device has no end to be marked.
std::uint64_t SizeOfFile(const std::string& path) {
  std::error_code error;
  if (!fs::is_regular_file(PathOf(path), error)) {
    return 0;
  }
  const std::uintmax_t size = fs::file_size(PathOf(path), error);
  return error ? 0 : size;
}

// The bytes of the file in front of `end`.
std::string TailOf(const std::string& path, std::uint64_t end) {
  std::string tail(static_cast<std::size_t>(std::min(end, kMostOfTail)), '\0');
  std::ifstream file(PathOf(path), std::ios::binary);
  file.seekg(static_cast<std::streamoff>(end - tail.size()));
  file.read(tail.data(), static_cast<std::streamsize>(tail.size()));
  return file ? tail : std::string();
}

}  // namespace

LogMark::LogMark(std::string path) : path_(std::move(path)) {
  const std::vector<std::string> files = WithRolledFiles({path_});
  const auto youngest = std::find_if(files.rbegin(), files.rend(),
                                     [](const std::string& file) { return SizeOfFile(file) > 0; });
  if (youngest != files.rend()) {
    isInRolledFile_ = youngest != files.rbegin();
    size_ = SizeOfFile(*youngest);
    tail_ = TailOf(*youngest, size_);
  }
}

void LogMark::ShowWhatCameSince(ReadingOptions& options) const {
  options.files = WithRolledFiles({path_});
  options.skip = 0;
  const auto marked =
      std::find_if(options.files.rbegin(), options.files.rend(), [this](const std::string& file) {
        return size_ > 0 && SizeOfFile(file) >= size_ && TailOf(file, size_) == tail_;
      });
  if (marked == options.files.rend()) {
    return;
  }
  // Nothing was added to one that was rolled right away.
  const bool isWhole = SizeOfFile(*marked) == size_ && marked != options.files.rbegin();
  options.files.erase(options.files.begin(), isWhole ? marked.base() : std::prev(marked.base()));
  options.skip = isWhole ? 0 : size_;
}

}  // namespace vextrel::program
