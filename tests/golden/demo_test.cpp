// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <sstream>
#include <string>
#include <string_view>

#include "traced_run.h"

namespace vextrel_test {
namespace {

[[nodiscard]] bool BeginsWithLevel(std::string_view line) {
  constexpr std::string_view levels[] = {"INFO ", "WARN ", "ERROR "};
  return std::ranges::any_of(levels,
                             [&](std::string_view level) { return line.starts_with(level); });
}

TEST(DemoTest, TheFirstRunWritesAtLeastAHundredLines) {
  const TracedRun run = Trace("demo", {"--frames", "10"}, nullptr);
  EXPECT_EQ(run.outcome.exitCode, 0) << run.outcome.err;
  std::size_t count = 0;
  std::istringstream lines(run.log);
  for (std::string line; std::getline(lines, line);) {
    count += BeginsWithLevel(line) ? 1 : 0;
  }
  EXPECT_GE(count, 100U);
}

}  // namespace
}  // namespace vextrel_test
