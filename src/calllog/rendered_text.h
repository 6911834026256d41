// SPDX-License-Identifier: MIT
// The text of one rendered value.
#ifndef VEXTREL_CALLLOG_RENDERED_TEXT_H
#define VEXTREL_CALLLOG_RENDERED_TEXT_H

#include <array>
#include <cstddef>
#include <initializer_list>
#include <span>
#include <string_view>

#include "calllog/digits.h"

namespace vextrel {

// An immutable text that ends with one NUL character, which counts in its size (Kept: 30). Names
// are referred to, and short texts are stored in the object, so only longer texts are allocated.
// The text may contain further NUL characters; as a C string, it ends at the first.
//
// Thread-safe, because it's immutable.
class RenderedText {
 public:
  // Joins the parts, and appends the NUL.
  RenderedText(std::initializer_list<std::string_view> parts);
  // Holds what write(char*) writes: at most kMaxDigits characters, none of them NUL. It returns
  // their end.
  template <typename Write>
  [[nodiscard]] static RenderedText Number(Write write) noexcept {
    return RenderedText(OfNumber(), write);
  }
  // Holds what write(char*) writes: exactly `length` characters, none of them NUL.
  template <typename Write>
  RenderedText(std::size_t length, Write write) : RenderedText(length) {
    write(MutableText());
  }
  // What write(char*) writes: at most `limit` characters, none of them NUL, of which it returns the
  // end. It may overwrite anything up to `limit`. Writes to `room` if that is large enough, and
  // allocates otherwise. `room` must outlive the text.
  template <typename Write>
  [[nodiscard]] static RenderedText AtMost(std::size_t limit, std::span<char> room, Write write) {
    return RenderedText(OfLimit(), limit, room, write);
  }
  // A text that is never destroyed and has a NUL character behind its end, and none before.
  [[nodiscard]] static RenderedText Name(std::string_view name) noexcept {
    return {name.data(), name.size()};
  }
  ~RenderedText() {
    if (isAllocated_) {
      delete[] text_;
    }
  }
  RenderedText(const RenderedText&) = delete;
  RenderedText& operator=(const RenderedText&) = delete;

  // The whole text, including the final NUL.
  [[nodiscard]] std::string_view view() const noexcept { return {text_, size_}; }
  [[nodiscard]] const char* c_str() const noexcept { return text_; }
  // The text up to the first NUL.
  [[nodiscard]] std::string_view Shown() const noexcept { return {text_, shownSize_}; }

 private:
  static constexpr std::size_t kInlineSize = 64;

  RenderedText(const char* name, std::size_t length) noexcept  // NOLINT: inline_ is not used
      : text_(name), size_(length + 1), shownSize_(length) {}

  struct OfNumber {};
  template <typename Write>
  RenderedText(OfNumber /*tag*/, Write write) noexcept {  // NOLINT: inline_ is written here
    static_assert(kMaxDigits < kInlineSize);
    char* end = write(inline_.data());
    *end = '\0';
    text_ = inline_.data();
    shownSize_ = static_cast<std::size_t>(end - inline_.data());
    size_ = shownSize_ + 1;
  }
  struct OfLimit {};
  template <typename Write>
  RenderedText(OfLimit /*tag*/, std::size_t limit, std::span<char> room, Write write)
      : RenderedText(limit, room) {
    char* text = const_cast<char*>(text_);
    char* end = write(text);
    *end = '\0';
    shownSize_ = static_cast<std::size_t>(end - text);
    size_ = shownSize_ + 1;
  }
  // Room for a text of that length, which is not written yet, and the NUL behind it.
  explicit RenderedText(std::size_t length);
  RenderedText(std::size_t limit, std::span<char> room)  // NOLINT: inline_ is not used
      : text_(limit < room.size() ? room.data() : new char[limit + 1]),
        isAllocated_(limit >= room.size()) {}
  [[nodiscard]] char* MutableText() noexcept {
    return isAllocated_ ? const_cast<char*>(text_) : inline_.data();
  }

  const char* text_ = nullptr;
  std::size_t size_ = 1;
  std::size_t shownSize_ = 0;
  bool isAllocated_ = false;
  std::array<char, kInlineSize> inline_;
};

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_RENDERED_TEXT_H
