// SPDX-License-Identifier: MIT
#include "threads/line_checker.h"

#include <gtest/gtest.h>

namespace vextrel_test {
namespace {

// Two threads, a and b, with two lines each.
class LineCheckerTest : public ::testing::Test {
 protected:
  bool Accept(const char* id, const char* message) {
    return checker.Accept("2024-02-29 23:59:58.007 [" + std::string(id) + "] INFO  " + message);
  }

  LineChecker checker{2, 2, [](std::size_t thread, std::uint32_t number) {
                        return std::string(thread == 0 ? "a" : "b") + std::to_string(number);
                      }};
};

TEST_F(LineCheckerTest, TakesTheLinesOfThreadsInAnyMixture) {
  EXPECT_TRUE(Accept("71", "b0"));
  EXPECT_TRUE(Accept("70", "a0"));
  EXPECT_TRUE(Accept("70", "a1"));
  EXPECT_FALSE(checker.IsComplete());
  EXPECT_TRUE(Accept("71", "b1"));
  EXPECT_TRUE(checker.IsComplete());
}

TEST_F(LineCheckerTest, MissesALine) {
  EXPECT_TRUE(Accept("70", "a0"));
  EXPECT_FALSE(Accept("71", "b1"));
}

TEST_F(LineCheckerTest, SeesALineThatComesTwice) {
  EXPECT_TRUE(Accept("70", "a0"));
  EXPECT_FALSE(Accept("70", "a0"));
}

TEST_F(LineCheckerTest, SeesLinesAfterTheEnd) {
  EXPECT_TRUE(Accept("70", "a0"));
  EXPECT_TRUE(Accept("70", "a1"));
  EXPECT_FALSE(Accept("70", "a1"));
  EXPECT_FALSE(Accept("70", ""));
}

TEST_F(LineCheckerTest, SeesALineThatIsNotWhole) {
  EXPECT_FALSE(Accept("70", "a"));
  EXPECT_FALSE(Accept("70", "a0b0"));
  EXPECT_FALSE(checker.Accept("02-29 23:59:58.007 [70] INFO  a0"));
  EXPECT_FALSE(checker.Accept("2024-02-29 23:59:58.007 [70] a0"));
  EXPECT_FALSE(checker.Accept(""));
}

TEST_F(LineCheckerTest, SeesALineUnderAnotherThreadsName) {
  EXPECT_TRUE(Accept("70", "a0"));
  EXPECT_FALSE(Accept("71", "a1"));
}

}  // namespace
}  // namespace vextrel_test
