// SPDX-License-Identifier: MIT
#include "support/system.h"

#include <cstdlib>
#include <string_view>

namespace vextrel_test {

bool LongTests() {
  const char* value = std::getenv("VEXTREL_LONG_TESTS");
  return value != nullptr && std::string_view(value) == "1";
}

}  // namespace vextrel_test
