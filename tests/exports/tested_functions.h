// SPDX-License-Identifier: MIT
// Which functions have tests of their own.
#ifndef VEXTREL_TESTS_EXPORTS_TESTED_FUNCTIONS_H
#define VEXTREL_TESTS_EXPORTS_TESTED_FUNCTIONS_H

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "support/gentl_functions.h"

namespace vextrel_test {

// The function that the test is named after: the longest name that its own begins with, or none.
[[nodiscard]] inline std::string FunctionOfTest(const std::string& test) {
  std::string found;
  for (const std::string& name : AllFunctionNames()) {
    if (test.starts_with(name) && name.size() > found.size()) {
      found = name;
    }
  }
  return found;
}

[[nodiscard]] inline std::set<std::string> FunctionsTestedBy(const ::testing::TestSuite& suite) {
  std::set<std::string> tested;
  for (int test = 0; test < suite.total_test_count(); ++test) {
    tested.insert(FunctionOfTest(suite.GetTestInfo(test)->name()));
  }
  return tested;
}

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_EXPORTS_TESTED_FUNCTIONS_H
