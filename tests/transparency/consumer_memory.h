// SPDX-License-Identifier: MIT
// The memory that a consumer hands over in one call.
#ifndef VEXTREL_TESTS_TRANSPARENCY_CONSUMER_MEMORY_H
#define VEXTREL_TESTS_TRANSPARENCY_CONSUMER_MEMORY_H

#include <array>
#include <cstddef>
#include <cstdint>

namespace vextrel_test {

// One block that holds all buffers, variables and structures of a call, each between guards. It is
// full of printable characters, no two neighbours alike, so that whatever a call writes anywhere in
// it shows; zeros at its end stop whoever reads a text that has none.
class ConsumerMemory {
 public:
  static constexpr std::size_t kSize = 2048;
  static constexpr std::size_t kGuardSize = 32;
  using Bytes = std::array<std::uint8_t, kSize>;

  ConsumerMemory();
  // Arguments point into it.
  ConsumerMemory(const ConsumerMemory&) = delete;
  ConsumerMemory& operator=(const ConsumerMemory&) = delete;

  // Returns the next `size` bytes, aligned for anything.
  [[nodiscard]] std::uint8_t* Add(std::size_t size);

  [[nodiscard]] const Bytes& Content() const { return bytes_; }

 private:
  alignas(16) Bytes bytes_;
  std::size_t used_ = 0;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_TRANSPARENCY_CONSUMER_MEMORY_H
