// SPDX-License-Identifier: MIT
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>

#include "calllog/guarded_memory.h"

namespace vextrel_test {

GuardedMemory::GuardedMemory(std::size_t size)
    : pageSize_(static_cast<std::size_t>(::sysconf(_SC_PAGESIZE))) {
  size_ = (size + pageSize_ - 1) / pageSize_ * pageSize_;
  void* all = ::mmap(nullptr, size_ + 2 * pageSize_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (all == MAP_FAILED) {
    std::abort();
  }
  begin_ = static_cast<std::uint8_t*>(all) + pageSize_;
  if (::mprotect(begin_, size_, PROT_READ | PROT_WRITE) != 0) {
    std::abort();
  }
}

GuardedMemory::~GuardedMemory() {
  ::munmap(begin_ - pageSize_, size_ + 2 * pageSize_);
}

}  // namespace vextrel_test
