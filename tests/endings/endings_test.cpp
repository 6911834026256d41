// SPDX-License-Identifier: MIT
// The process ends while the library is bound: whatever was written before stays, nothing hangs,
// nothing crashes.
#include <algorithm>
#include <iterator>

#include "endings/endings_fixture.h"

namespace vextrel_test {
namespace {

using ::testing::ElementsAreArray;
using ::testing::Values;

constexpr std::uintptr_t kCalls = 100;

std::vector<std::string> AllCallLines(std::uintptr_t calls = kCalls) {
  std::vector<std::string> lines;
  for (std::uintptr_t number = 0; number < calls; ++number) {
    lines.push_back(ConsumerLine(number));
  }
  return lines;
}

std::vector<std::string> WholeLog(std::uintptr_t calls = kCalls) {
  std::vector<std::string> lines = StartLines();
  std::ranges::copy(AllCallLines(calls), std::back_inserter(lines));
  return lines;
}

// What the consumer does, and how that shows.
struct Way {
  const char* ending;
  const Ending& shown;
};
const Way kReturn = {"return", kDone};
const Way kExit = {"exit", kDone};
const Way kExitAtOnce = {"exit_at_once", kDone};
const Way kKill = {"kill", kKilledEnding};

std::string NameOf(const ::testing::TestParamInfo<const Way*>& info) {
  return info.param->ending;
}

class End : public EndingsFixture, public ::testing::WithParamInterface<const Way*> {};

TEST_P(End, WithoutClosingKeepsEveryLine) {
  EXPECT_EQ(Run(GetParam()->ending, "alone", kCalls), GetParam()->shown);
  EXPECT_THAT(WholeLines(own), ElementsAreArray(WholeLog()));
}

TEST_P(End, WithAThreadInsideACallKeepsEveryLine) {
  EXPECT_EQ(Run(GetParam()->ending, "blocked", kCalls), GetParam()->shown);
  EXPECT_THAT(WholeLines(own), ElementsAreArray(WholeLog()));
}

TEST_P(End, WithOtherThreadsLoggingKeepsEveryLine) {
  EXPECT_EQ(Run(GetParam()->ending, "busy", kCalls), GetParam()->shown);
  // The line that is being written when a process is killed need not be whole.
  std::vector<std::string> lines = WholeLines(own, GetParam() == &kKill);
  for (int thread = 0; thread < kBusyThreads; ++thread) {
    EXPECT_GE(std::erase(lines, BusyLine(thread)), kBusyCalls);
  }
  EXPECT_THAT(lines, ElementsAreArray(WholeLog()));
}

INSTANTIATE_TEST_SUITE_P(All, End, Values(&kReturn, &kExit, &kExitAtOnce, &kKill), NameOf);

using Endings = EndingsFixture;

TEST_F(Endings, UnloadingWithoutClosingKeepsEveryLine) {
  EXPECT_EQ(Run("unload", "alone", kCalls), kDone);
  EXPECT_THAT(WholeLines(own), ElementsAreArray(WholeLog()));
}

TEST_F(Endings, ClosingAndUnloadingKeepsEveryLine) {
  EXPECT_EQ(Run("close", "alone", kCalls), kDone);
  std::vector<std::string> expected = WholeLog();
  expected.emplace_back(kCloseLine);
  EXPECT_THAT(WholeLines(own), ElementsAreArray(expected));
}

// On Linux the library has shut its log down by then, and the line goes nowhere. Windows ends the
// program before its libraries.
TEST_F(Endings, ACallWhileTheProgramEndsDoesNoHarm) {
  EXPECT_EQ(Run("call_late", "alone", kCalls), kDone);
  EXPECT_THAT(WholeLines(own), ElementsAreArray(WholeLog(kOnWindows ? kCalls + 1 : kCalls)));
}

TEST_F(Endings, TwoConsumersLogToTheirOwnFilesAtTheSameTime) {
  constexpr std::uintptr_t manyCalls = 5000;
  const std::filesystem::path first = MakeFolder("first");
  const std::filesystem::path second = MakeFolder("second");
  const std::string calls = std::to_string(manyCalls);
  Process firstChild(ConsumerProgram(), {first.string(), "close", "another", calls});
  Process secondChild(ConsumerProgram(), {second.string(), "exit", "another", calls});
  const auto end = std::chrono::steady_clock::now() + kLimit;
  while (!exists(first / kReadyFile) || !exists(second / kReadyFile)) {
    ASSERT_LT(std::chrono::steady_clock::now(), end);
  }
  WriteFile(first / kGoFile, "");
  WriteFile(second / kGoFile, "");
  EXPECT_EQ(firstChild.WaitFor(kLimit), kDone);
  EXPECT_EQ(secondChild.WaitFor(kLimit), kDone);
  EXPECT_THAT(WholeLines(second), ElementsAreArray(WholeLog(manyCalls)));
  std::vector<std::string> closed = WholeLog(manyCalls);
  closed.emplace_back(kCloseLine);
  EXPECT_THAT(WholeLines(first), ElementsAreArray(closed));
}

}  // namespace
}  // namespace vextrel_test
