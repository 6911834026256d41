// SPDX-License-Identifier: MIT
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "support/resources.h"

namespace vextrel_test {

Resources UsedResources() {
  std::uint64_t pages = 0;
  std::uint64_t residentPages = 0;
  std::ifstream("/proc/self/statm") >> pages >> residentPages;
  const auto pageSize = static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
  const std::filesystem::directory_iterator descriptors("/proc/self/fd");
  return {residentPages * pageSize,
          static_cast<std::uint64_t>(std::distance(begin(descriptors), end(descriptors)))};
}

}  // namespace vextrel_test
