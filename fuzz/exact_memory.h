// SPDX-License-Identifier: MIT
// Memory of exactly the size that may be read: the address sanitizer reports one byte more.
#ifndef VEXTREL_FUZZ_EXACT_MEMORY_H
#define VEXTREL_FUZZ_EXACT_MEMORY_H

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

namespace vextrel_fuzz {

// A copy of the bytes that ends where its block ends and begins `shift` bytes after its start,
// so that it lies aligned or not.
class ExactMemory {
 public:
  ExactMemory(std::string_view bytes, std::size_t shift)
      : block_(std::make_unique<char[]>(bytes.size() + shift)), begin_(block_.get() + shift) {
    if (!bytes.empty()) {
      std::memcpy(begin_, bytes.data(), bytes.size());
    }
  }

  [[nodiscard]] char* data() const { return begin_; }

 private:
  std::unique_ptr<char[]> block_;
  char* begin_;
};

}  // namespace vextrel_fuzz

#endif  // VEXTREL_FUZZ_EXACT_MEMORY_H
