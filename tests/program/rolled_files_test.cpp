// SPDX-License-Identifier: MIT
#include "reading/rolled_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "program/small_log.h"

namespace vextrel_test {
namespace {

using testing::ElementsAre;
using vextrel::program::WithRolledFiles;

TEST(RolledFiles, ComeBeforeTheLogFromTheOldestOn) {
  const ScratchFile log("3");
  const std::string one = log.Beside("2", "app.log.1");
  const std::string two = log.Beside("1", "app.log.2");
  const std::string beyondAGap = log.Beside("0", "app.log.4");
  EXPECT_THAT(WithRolledFiles({log.Path()}), ElementsAre(two, one, log.Path()));
  EXPECT_THAT(WithRolledFiles({log.Path(), one, two}), ElementsAre(two, one, log.Path()));
}

TEST(RolledFiles, MayHaveNumbersOfSeveralDigits) {
  const ScratchFile log("3");
  const std::string one = log.Beside("2", "app.log.01");
  const std::string two = log.Beside("1", "app.log.02");
  EXPECT_THAT(WithRolledFiles({log.Path()}), ElementsAre(two, one, log.Path()));
}

TEST(RolledFiles, AreNotLookedForBesideStandardInput) {
  EXPECT_THAT(WithRolledFiles({"-", "a", "a"}), ElementsAre("-", "a"));
}

}  // namespace
}  // namespace vextrel_test
