// SPDX-License-Identifier: MIT
#include <windows.h>

#include <cstdlib>

#include "calllog/guarded_memory.h"

namespace vextrel_test {
namespace {

std::size_t PageSize() {
  SYSTEM_INFO info{};
  ::GetSystemInfo(&info);
  return info.dwPageSize;
}

}  // namespace

GuardedMemory::GuardedMemory(std::size_t size) : pageSize_(PageSize()) {
  size_ = (size + pageSize_ - 1) / pageSize_ * pageSize_;
  void* all = ::VirtualAlloc(nullptr, size_ + 2 * pageSize_, MEM_RESERVE, PAGE_NOACCESS);
  if (all == nullptr) {
    std::abort();
  }
  begin_ = static_cast<std::uint8_t*>(all) + pageSize_;
  if (::VirtualAlloc(begin_, size_, MEM_COMMIT, PAGE_READWRITE) == nullptr) {
    std::abort();
  }
}

GuardedMemory::~GuardedMemory() {
  ::VirtualFree(begin_ - pageSize_, 0, MEM_RELEASE);
}

}  // namespace vextrel_test
