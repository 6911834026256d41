// The text of one rendered value.
#ifndef VEXTREL_CALLLOG_RENDERED_TEXT_H
#define VEXTREL_CALLLOG_RENDERED_TEXT_H

#include <array>
#include <cstddef>
#include <initializer_list>
#include <memory>
#include <string_view>

namespace vextrel {

// An immutable text that ends with one NUL character, which counts in its size. Names, numbers and
// addresses, which every traced call renders, live in the object itself; only a longer text is
// allocated. May hold further NUL characters; as a C string it then shows what stands before the
// first.
//
// Immutable and without shared state: may be read from any thread.
class RenderedText {
 public:
  // The parts joined, and the NUL.
  RenderedText(std::initializer_list<std::string_view> parts);
  ~RenderedText() = default;
  RenderedText(const RenderedText&) = delete;
  RenderedText& operator=(const RenderedText&) = delete;

  // Everything, the final NUL included.
  [[nodiscard]] std::string_view view() const noexcept { return {c_str(), size_}; }
  [[nodiscard]] const char* c_str() const noexcept {
    return allocated_ != nullptr ? allocated_.get() : inline_.data();
  }

 private:
  static constexpr std::size_t kInlineSize = 64;

  std::size_t size_ = 1;
  std::unique_ptr<char[]> allocated_;
  std::array<char, kInlineSize> inline_;
};

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_RENDERED_TEXT_H
