// SPDX-License-Identifier: MIT
// A call that never returns, found in the log of a process that has ended: it entered, and did not
// leave.
#include <map>
#include <string>

#include "endings/endings_fixture.h"

namespace vextrel_test {
namespace {

using ::testing::ElementsAre;
using ::testing::Pair;

constexpr std::uintptr_t kCallsBefore = 20;

// The calls that have entered and not left: the number of each, and what it entered.
std::map<unsigned long, std::string> UnfinishedCalls(const std::vector<std::string>& lines) {
  const std::string begin = "DEBUG Call ";
  std::map<unsigned long, std::string> unfinished;
  for (const std::string& line : lines) {
    if (!line.starts_with(begin)) {
      continue;
    }
    std::size_t digits = 0;
    const unsigned long number = std::stoul(line.substr(begin.size()), &digits);
    const std::string rest = line.substr(begin.size() + digits);
    const std::string enters = " enters ";
    if (rest.starts_with(enters)) {
      unfinished[number] = rest.substr(enters.size());
    } else {
      EXPECT_EQ(unfinished.erase(number), 1U) << line;
    }
  }
  return unfinished;
}

class HangingCall : public EndingsFixture, public ::testing::WithParamInterface<const char*> {
 protected:
  HangingCall() {
    WriteFile(own / kConfigFile, LogConfig{.file = own / "trace.log",
                                           .rootCategory = std::string("INFO, file") + kWithTiming}
                                     .Text());
  }
  [[nodiscard]] static const Ending& Shown() {
    return std::string(GetParam()) == "kill" ? kKilledEnding : kDone;
  }
};

// GCInitLib is the first call, the one that hangs the second.
TEST_P(HangingCall, IsTheOneThatHasNotLeft) {
  EXPECT_EQ(Run(GetParam(), "blocked", kCallsBefore), Shown());
  const std::vector<std::string> lines = WholeLines(own);
  EXPECT_THAT(UnfinishedCalls(lines), ElementsAre(Pair(2U, "EventGetData(0x0000000000000000)")));
  EXPECT_THAT(lines,
              ::testing::Contains(::testing::StartsWith(
                  "DEBUG Call " + std::to_string(kCallsBefore + 2) + " leaves EventFlush after ")));
}

TEST_P(HangingCall, IsNotSeenWhereAllReturn) {
  EXPECT_EQ(Run(GetParam(), "alone", kCallsBefore), Shown());
  EXPECT_THAT(UnfinishedCalls(WholeLines(own)), ElementsAre());
}

INSTANTIATE_TEST_SUITE_P(All, HangingCall,
                         ::testing::Values("return", "exit", "exit_at_once", "kill", "call_late"),
                         [](const auto& each) { return std::string(each.param); });

}  // namespace
}  // namespace vextrel_test
