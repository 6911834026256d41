// SPDX-License-Identifier: MIT
#include <windows.h>
// After windows.h, whose types it uses.
#include <psapi.h>

#include <cstdint>

#include "support/resources.h"

namespace vextrel_test {

namespace {

// The system's own count is always 0 under Wine. Handles are multiples of four, and a freed value
// is used again before a new one, so the first few thousand are enough.
std::uint64_t CountHandles() {
  constexpr std::uintptr_t kEnd = 4 * 4096;
  std::uint64_t count = 0;
  for (std::uintptr_t value = 4; value < kEnd; value += 4) {
    DWORD flags = 0;
    count += ::GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) != 0 ? 1U : 0U;
  }
  return count;
}

}  // namespace

Resources UsedResources() {
  PROCESS_MEMORY_COUNTERS memory{};
  ::GetProcessMemoryInfo(::GetCurrentProcess(), &memory, sizeof memory);
  return {memory.WorkingSetSize, CountHandles()};
}

}  // namespace vextrel_test
