// SPDX-License-Identifier: MIT
// Writing a line piece by piece.
//
// Not thread-safe. A writer doesn't check bounds: REQUIRES that the caller has measured the line.
#ifndef VEXTREL_CALLLOG_LINE_WRITER_H
#define VEXTREL_CALLLOG_LINE_WRITER_H

#include <array>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include "calllog/always_inline.h"
#include "calllog/byte_dump.h"
#include "calllog/digits.h"

namespace vextrel {

// Writes a line of at most kSize characters. Its only state is a pointer, which the compiler keeps
// in a register.
class ShortLineWriter {
 public:
  // Zeroing more room than this up front costs more than growing the string.
  static constexpr std::size_t kSize = 1024;

  // REQUIRES: `text` has room for the line.
  explicit ShortLineWriter(char* text) noexcept : end_(text) {}

  VEXTREL_ALWAYS_INLINE void Append(std::string_view text) noexcept {
    std::memcpy(end_, text.data(), text.size());
    end_ += text.size();
  }
  // `write(char*)` writes at most kMaxDigits characters and returns their end.
  template <typename Write>
  VEXTREL_ALWAYS_INLINE void AppendDigits(Write write) noexcept {
    end_ = write(end_);
  }
  VEXTREL_ALWAYS_INLINE void Append(const ByteDump& dump) noexcept { end_ = dump.Write(end_); }

  [[nodiscard]] char* end() const noexcept { return end_; }

 private:
  char* end_;
};

// Writes a line of any size.
class LongLineWriter {
 public:
  // REQUIRES: `size` is an upper bound of the line's size.
  explicit LongLineWriter(std::size_t size) { text_.reserve(size); }

  void Append(std::string_view text) { text_.append(text); }
  template <typename Write>
  void AppendDigits(Write write) {
    std::array<char, kMaxDigits> digits;  // NOLINT: written before it is read
    text_.append(digits.data(), write(digits.data()));
  }
  void Append(const ByteDump& dump) { dump.AppendTo(text_); }
  [[nodiscard]] std::string Take() { return std::move(text_); }

 private:
  std::string text_;
};

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_LINE_WRITER_H
