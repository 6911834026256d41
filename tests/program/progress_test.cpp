// SPDX-License-Identifier: MIT
#include "commands/progress.h"

#include <gtest/gtest.h>

namespace vextrel_test {
namespace {

using namespace vextrel::program;

constexpr std::uint64_t kMebibyte = 1U << 20U;

TEST(Progress, IsShownInStepsAndTakenBack) {
  Output terminal;
  {
    Progress progress(512 * kMebibyte, terminal);
    progress.Update(63 * kMebibyte);
    EXPECT_EQ(terminal.Text(), "");
    progress.Update(65 * kMebibyte);
    progress.Update(128 * kMebibyte);
    progress.Update(129 * kMebibyte);
    EXPECT_EQ(terminal.Text(), "\r65 of 512 MB\r129 of 512 MB");
  }
  EXPECT_TRUE(terminal.Text().ends_with(" \r"));
}

TEST(Progress, SaysNothingOfASmallOrUnknownSize) {
  for (const std::uint64_t total : {std::uint64_t{0}, 255 * kMebibyte}) {
    Output terminal;
    { Progress(total, terminal).Update(1000 * kMebibyte); }
    EXPECT_EQ(terminal.Text(), "");
  }
}

}  // namespace
}  // namespace vextrel_test
