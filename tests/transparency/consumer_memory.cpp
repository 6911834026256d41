// SPDX-License-Identifier: MIT
#include "transparency/consumer_memory.h"

#include <algorithm>
#include <stdexcept>

namespace vextrel_test {

constexpr std::size_t kZerosAtTheEnd = 64;

ConsumerMemory::ConsumerMemory() {
  for (std::size_t i = 0; i < kSize; ++i) {
    bytes_[i] = static_cast<std::uint8_t>('!' + i * 37 % 94);
  }
  std::fill(bytes_.end() - kZerosAtTheEnd, bytes_.end(), std::uint8_t{0});
}

std::uint8_t* ConsumerMemory::Add(std::size_t size) {
  constexpr std::size_t alignment = 16;
  const std::size_t begin = used_ + kGuardSize;
  used_ = (begin + size + alignment - 1) / alignment * alignment;
  if (used_ + kGuardSize + kZerosAtTheEnd > kSize) {
    throw std::logic_error("a call has more memory than there is");
  }
  return bytes_.data() + begin;
}

}  // namespace vextrel_test
