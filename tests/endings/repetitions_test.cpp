// SPDX-License-Identifier: MIT
// Loading and unloading, initialising and closing, again and again in one process.
#include <fstream>
#include <iostream>

#include "endings/endings_fixture.h"
#include "support/resources.h"

namespace vextrel_test {
namespace {

using ::testing::ElementsAreArray;

// Wine is slower, so the default is lower there.
std::uintptr_t Rounds() {
  return LongTests() || !kOnWindows ? 1000 : 100;
}

// How much the heap may vary, regardless of the number of rounds.
constexpr double kSlack = 128 * 1024;

struct Repetition {
  const char* name;
  bool loads;   // the module, in each round
  bool closes;  // the library
};

// What a round leaves behind on purpose: the seven tables of a library that is not closed, 464
// bytes of slots. The target stays loaded, too, but that once.
double TableBytes(const Repetition& repetition) {
  return repetition.closes ? 0 : 1024;
}

// What the C++ and thread runtimes linked into a Windows module keep when it is unloaded, even if
// it does nothing but throw and catch an exception.
constexpr double kRuntimeHandles = kOnWindows ? 4 : 0;
constexpr double kRuntimeBytes = kOnWindows ? 16 * 1024 : 0;

class Repeatedly : public EndingsFixture, public ::testing::WithParamInterface<Repetition> {};

TEST_P(Repeatedly, WritesEveryLineAndDoesNotGrow) {
  EXPECT_EQ(Run(GetParam().name, "-", Rounds()), kDone);

  std::vector<std::string> expected;
  for (std::uintptr_t round = 0; round < Rounds(); ++round) {
    for (const std::string& line : StartLines()) {
      expected.push_back(line);
    }
    expected.push_back(ConsumerLine(round));
    if (GetParam().closes) {
      expected.emplace_back(kCloseLine);
    }
  }
  EXPECT_THAT(WholeLines(own), ElementsAreArray(expected));

  Resources early;
  Resources late;
  std::ifstream(own / kResourcesFile) >> early.residentBytes >> late.residentBytes >>
      early.handles >> late.handles;
  ASSERT_GT(early.residentBytes, 0U);
  ASSERT_GT(early.handles, 0U);
  const double rounds = static_cast<double>(Rounds()) * 0.9;
  const double loads = GetParam().loads ? rounds : 0;
  const double moreHandles = static_cast<double>(late.handles) - static_cast<double>(early.handles);
  const double moreBytes =
      static_cast<double>(late.residentBytes) - static_cast<double>(early.residentBytes);
  std::cout << moreBytes / rounds << " bytes and " << moreHandles / rounds
            << " handles more a round\n";
  EXPECT_LE(moreHandles, kRuntimeHandles * loads);
  EXPECT_LE(moreBytes, kSlack + kRuntimeBytes * loads + TableBytes(GetParam()) * rounds);
}

INSTANTIATE_TEST_SUITE_P(All, Repeatedly,
                         ::testing::Values(Repetition{"load_repeatedly", true, true},
                                           Repetition{"unload_repeatedly", true, false},
                                           Repetition{"init_repeatedly", false, true}),
                         [](const auto& each) { return std::string(each.param.name); });

}  // namespace
}  // namespace vextrel_test
