// SPDX-License-Identifier: MIT
// Helpers for rendered texts and the memory they are rendered from.
#ifndef VEXTREL_TESTS_CALLLOG_RENDERED_H
#define VEXTREL_TESTS_CALLLOG_RENDERED_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <numeric>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "calllog/rendered_text.h"

namespace vextrel_test {

// The whole text, the final NUL included.
[[nodiscard]] inline std::string Whole(const vextrel::RenderedText& text) {
  return std::string(text.view());
}

// `visible` and the NUL that a rendered text ends with.
[[nodiscard]] inline std::string WithNul(std::string_view visible) {
  return std::string(visible) + '\0';
}

using Bytes = std::vector<std::uint8_t>;

// 0, 1, 2 and so on.
[[nodiscard]] inline Bytes CountedBytes(std::size_t count) {
  Bytes bytes(count);
  std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
  return bytes;
}

// The same in every run.
[[nodiscard]] inline Bytes RandomBytes(std::size_t count) {
  std::mt19937 random(static_cast<std::mt19937::result_type>(count + 1));
  Bytes bytes(count);
  std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<std::uint8_t>(random()); });
  return bytes;
}

// The widest access that the renderers make, in bytes.
inline constexpr std::size_t kAlignments = 32;

// A copy of a value that lies `offset` bytes past a 32-byte boundary.
template <typename Value>
class Shifted {
 public:
  Shifted(const Value& value, std::size_t offset) : address_(bytes_.data() + offset) {
    std::memcpy(address_, &value, sizeof value);
  }
  Shifted(const Shifted&) = delete;
  Shifted& operator=(const Shifted&) = delete;

  [[nodiscard]] const void* Address() const { return address_; }

 private:
  alignas(kAlignments) std::array<unsigned char, sizeof(Value) + kAlignments> bytes_{};
  void* address_;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_CALLLOG_RENDERED_H
