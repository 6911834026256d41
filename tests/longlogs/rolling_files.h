// SPDX-License-Identifier: MIT
// What a rolling log's files have to hold, worked out line by line.
#ifndef VEXTREL_TESTS_LONGLOGS_ROLLING_FILES_H
#define VEXTREL_TESTS_LONGLOGS_ROLLING_FILES_H

#include <cstddef>
#include <deque>
#include <map>
#include <string>
#include <vector>

#include "support/system.h"

namespace vextrel_test {

// A file that has reached its limit after a line becomes the first backup, and the oldest goes.
class RollingFiles {
 public:
  RollingFiles(std::size_t maxFileSize, std::size_t maxBackupIndex)
      : maxFileSize_(maxFileSize), maxBackupIndex_(maxBackupIndex) {}

  void Write(const std::string& line) {
    files_.front() += line + "\n";
    size_ += line.size() + kLineEnd;
    if (size_ >= maxFileSize_) {
      files_.emplace_front();
      size_ = 0;
      if (files_.size() > maxBackupIndex_ + 1) {
        files_.pop_back();
      }
    }
  }
  void Write(const std::vector<std::string>& lines) {
    for (const std::string& line : lines) {
      Write(line);
    }
  }

  // The names behind "trace.log" and what the files hold. Numbers are padded to the same width.
  [[nodiscard]] std::map<std::string, std::string> Contents() const {
    std::map<std::string, std::string> contents;
    const std::size_t width = std::to_string(maxBackupIndex_).size();
    for (std::size_t index = 0; index < files_.size(); ++index) {
      const std::string number = std::to_string(index);
      contents[index == 0 ? "" : "." + std::string(width - number.size(), '0') + number] =
          files_[index];
    }
    return contents;
  }

 private:
  static constexpr std::size_t kLineEnd = kOnWindows ? 2 : 1;

  std::size_t maxFileSize_;
  std::size_t maxBackupIndex_;
  std::deque<std::string> files_ = {""};
  std::size_t size_ = 0;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_LONGLOGS_ROLLING_FILES_H
