// Rendered texts and the memory they are rendered from, as the tests of the call log handle them.
#ifndef VEXTREL_TESTS_CALLLOG_RENDERED_H
#define VEXTREL_TESTS_CALLLOG_RENDERED_H

#include <array>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

#include "calllog/rendered_text.h"

namespace vextrel_test {

// Everything of it, the final NUL included.
[[nodiscard]] inline std::string Whole(const vextrel::RenderedText& text) {
  return std::string(text.view());
}

// The string that shows as `visible`: one longer, since it ends with a NUL.
[[nodiscard]] inline std::string WithNul(std::string_view visible) {
  return std::string(visible) + '\0';
}

// As many bytes as are read and written at once.
inline constexpr std::size_t kAlignments = 32;

// A copy of a value that lies `offset` bytes behind a 32-byte boundary.
template <typename Value>
class Shifted {
 public:
  Shifted(const Value& value, std::size_t offset) : address_(bytes_.data() + offset) {
    std::memcpy(address_, &value, sizeof value);
  }
  Shifted(const Shifted&) = delete;
  Shifted& operator=(const Shifted&) = delete;

  [[nodiscard]] const void* address() const { return address_; }

 private:
  alignas(kAlignments) std::array<unsigned char, sizeof(Value) + kAlignments> bytes_{};
  void* address_;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_CALLLOG_RENDERED_H
