// SPDX-License-Identifier: MIT
// The memory that the arguments of one call point to.
#ifndef VEXTREL_TESTS_SESSION_MEMORY_H
#define VEXTREL_TESTS_SESSION_MEMORY_H

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vextrel_test::session {

// Each block is an allocation of its own that ends with its last byte, so that a sanitizer catches
// overreads.
class Memory {
 public:
  // Returns a block that holds `bytes`, starting `misalignment` bytes past an aligned address.
  unsigned char* Add(std::string_view bytes, std::size_t misalignment = 0);
  // Has the target write `bytes` when it is called. REQUIRES: `to` is inside a block.
  void WriteLater(void* to, std::string bytes);

  void WriteNow();
  // The bytes of all blocks.
  [[nodiscard]] std::string Snapshot() const;
  void Clear();

 private:
  struct Block {
    std::unique_ptr<unsigned char[]> bytes;
    std::size_t size;
  };
  struct Write {
    void* to;
    std::string bytes;
  };

  std::vector<Block> blocks_;
  std::vector<Write> writes_;
};

}  // namespace vextrel_test::session

#endif  // VEXTREL_TESTS_SESSION_MEMORY_H
