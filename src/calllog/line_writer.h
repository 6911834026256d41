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

#include "calllog/digits.h"
#include "calllog/port_rendering.h"

// For the few functions whose cost is that of a call for each part of a line.
#if defined(__GNUC__)
#define VEXTREL_ALWAYS_INLINE [[gnu::always_inline]] inline
#else
#define VEXTREL_ALWAYS_INLINE inline
#endif

namespace vextrel {

// Writes a line of at most kSize characters; nothing is allocated but the finished line.
class ShortLineWriter {
 public:
  static constexpr std::size_t kSize = 1024;

  ShortLineWriter() noexcept {}  // NOLINT: the text is written before it is read
  ShortLineWriter(const ShortLineWriter&) = delete;
  ShortLineWriter& operator=(const ShortLineWriter&) = delete;

  VEXTREL_ALWAYS_INLINE void AppendLiteral(std::string_view text) noexcept { Append(text); }
  VEXTREL_ALWAYS_INLINE void Append(std::string_view text) noexcept {
    std::memcpy(end_, text.data(), text.size());
    end_ += text.size();
  }
  void Append(const Digits& digits) noexcept {
    // Its whole room, which is one size for all, is cheaper to copy than as much as is used.
    std::memcpy(end_, digits.view().data(), Digits::kRoom);
    end_ += digits.view().size();
  }
  void AppendPointer(std::uint64_t bits) noexcept {
    WriteHex16(bits, 'A', end_);
    end_ += kHex16Size;
  }
  void Append(const ByteDump& dump) noexcept { end_ = dump.Write(end_); }
  [[nodiscard]] std::string Take() const {
    std::string line(text_.data(), static_cast<std::size_t>(end_ - text_.data()));
    return line;
  }

 private:
  std::array<char, kSize + Digits::kRoom> text_;
  char* end_ = text_.data();
};

// Writes a line of any length.
class LongLineWriter {
 public:
  // `size` is what the line will have at most.
  explicit LongLineWriter(std::size_t size) { text_.reserve(size); }

  void AppendLiteral(std::string_view text) { text_.append(text); }
  void Append(std::string_view text) { text_.append(text); }
  void Append(const Digits& digits) { text_.append(digits.view()); }
  void AppendPointer(std::uint64_t bits) { Append(Digits::UpperHex16(bits)); }
  void Append(const ByteDump& dump) { dump.AppendTo(text_); }
  [[nodiscard]] std::string Take() { return std::move(text_); }

 private:
  std::string text_;
};

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_LINE_WRITER_H
