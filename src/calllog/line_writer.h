// Writing the parts of a line one behind the other.
//
// A writer belongs to one thread. Neither checks its room: whoever makes it has measured the line.
#ifndef VEXTREL_CALLLOG_LINE_WRITER_H
#define VEXTREL_CALLLOG_LINE_WRITER_H

#include <array>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include "calllog/always_inline.h"
#include "calllog/digits.h"
#include "calllog/port_rendering.h"

namespace vextrel {

// Writes a line of at most kSize characters. Small enough to live in registers.
class ShortLineWriter {
 public:
  // Beyond that, clearing the room first costs more than growing into it.
  static constexpr std::size_t kSize = 1024;

  // Writes to where `text` points, which has room for the line.
  explicit ShortLineWriter(char* text) noexcept : end_(text) {}

  VEXTREL_ALWAYS_INLINE void Append(std::string_view text) noexcept {
    std::memcpy(end_, text.data(), text.size());
    end_ += text.size();
  }
  // What write(char*) writes, at most kMaxDigits characters; it returns where they end.
  template <typename Write>
  VEXTREL_ALWAYS_INLINE void AppendDigits(Write write) noexcept {
    end_ = write(end_);
  }
  VEXTREL_ALWAYS_INLINE void Append(const ByteDump& dump) noexcept { end_ = dump.Write(end_); }

  // Where the line ends.
  [[nodiscard]] char* end() const noexcept { return end_; }

 private:
  char* end_;
};

// Writes a line of any length.
class LongLineWriter {
 public:
  // `size` is what the line will have at most.
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
