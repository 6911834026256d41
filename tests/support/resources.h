// SPDX-License-Identifier: MIT
// What a process holds, for tests that check that it doesn't grow.
#ifndef VEXTREL_TESTS_SUPPORT_RESOURCES_H
#define VEXTREL_TESTS_SUPPORT_RESOURCES_H

#include <cstdint>

namespace vextrel_test {

struct Resources {
  std::uint64_t residentBytes = 0;
  std::uint64_t handles = 0;  // file descriptors on Linux
};

// Those of the calling process.
[[nodiscard]] Resources UsedResources();

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_SUPPORT_RESOURCES_H
