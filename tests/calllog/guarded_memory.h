// SPDX-License-Identifier: MIT
// Memory between two pages that nobody may touch: reading one byte too many ends the test.
#ifndef VEXTREL_TESTS_CALLLOG_GUARDED_MEMORY_H
#define VEXTREL_TESTS_CALLLOG_GUARDED_MEMORY_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace vextrel_test {

class GuardedMemory {
 public:
  // Room for at least `size` bytes, rounded up to whole pages.
  explicit GuardedMemory(std::size_t size);
  ~GuardedMemory();
  GuardedMemory(const GuardedMemory&) = delete;
  GuardedMemory& operator=(const GuardedMemory&) = delete;

  // Copies the bytes so that the page after them is out of bounds.
  [[nodiscard]] const void* PutAtEnd(std::span<const std::uint8_t> bytes) {
    return Put(begin_ + size_ - bytes.size(), bytes);
  }
  // Copies the bytes so that the page before them is out of bounds.
  [[nodiscard]] const void* PutAtBegin(std::span<const std::uint8_t> bytes) {
    return Put(begin_, bytes);
  }

  // Returns an address that can't be read.
  [[nodiscard]] const void* Forbidden() const { return begin_ + size_; }

 private:
  static const void* Put(std::uint8_t* at, std::span<const std::uint8_t> bytes) {
    if (!bytes.empty()) {
      std::memcpy(at, bytes.data(), bytes.size());
    }
    return at;
  }

  std::uint8_t* begin_ = nullptr;
  std::size_t size_ = 0;
  std::size_t pageSize_ = 0;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_CALLLOG_GUARDED_MEMORY_H
