// The text of one rendered value.
#ifndef VEXTREL_CALLLOG_RENDERED_TEXT_H
#define VEXTREL_CALLLOG_RENDERED_TEXT_H

#include <array>
#include <cstddef>
#include <initializer_list>
#include <string_view>

#include "calllog/digits.h"

namespace vextrel {

// An immutable text that ends with one NUL character, which counts in its size. Names are not
// copied, and numbers and addresses live in the object itself: what every traced call renders is
// not allocated, only a longer text is. May hold further NUL characters; as a C string it then
// shows what stands before the first.
//
// Immutable and without shared state: may be read from any thread.
class RenderedText {
 public:
  // The parts joined, and the NUL.
  RenderedText(std::initializer_list<std::string_view> parts);
  // What write(char*) writes of a number: at most kMaxDigits characters. It returns where they end.
  template <typename Write>
  [[nodiscard]] static RenderedText Number(Write write) noexcept {
    return RenderedText(OfNumber(), write);
  }
  // What write(char*) writes: `length` characters, none of them NUL.
  template <typename Write>
  RenderedText(std::size_t length, Write write) : RenderedText(length) {
    write(MutableText());
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

  // Everything, the final NUL included.
  [[nodiscard]] std::string_view view() const noexcept { return {text_, size_}; }
  [[nodiscard]] const char* c_str() const noexcept { return text_; }
  // What it shows as a C string.
  [[nodiscard]] std::string_view shown() const noexcept { return {text_, shownSize_}; }

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
  // Room for a text of that length, which is not written yet, and the NUL behind it.
  explicit RenderedText(std::size_t length);
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
