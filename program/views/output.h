// SPDX-License-Identifier: MIT
// Where a command writes to.
#ifndef VEXTREL_PROGRAM_VIEWS_OUTPUT_H
#define VEXTREL_PROGRAM_VIEWS_OUTPUT_H

#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>

namespace vextrel::program {

// Collects text and writes it to a file in large pieces, or keeps it if there's no file. Throws
// std::runtime_error if the file takes no more.
class Output {
 public:
  explicit Output(std::FILE* file = nullptr) : file_(file) {}

  // Text that is appended here is written by the next call of Commit() at the latest.
  [[nodiscard]] std::string& Text() noexcept { return text_; }
  void Commit() {
    if (text_.size() >= kEnough) {
      Flush();
    }
  }
  void Flush() {
    if (file_ == nullptr) {
      return;
    }
    const bool written = std::fwrite(text_.data(), 1, text_.size(), file_) == text_.size() &&
                         std::fflush(file_) == 0;
    text_.clear();
    if (!written) {
      throw std::runtime_error("the output can't be written: is the disk full?");
    }
  }

 private:
  static constexpr std::size_t kEnough = 1U << 16U;

  std::FILE* file_;
  std::string text_;
};

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_VIEWS_OUTPUT_H
