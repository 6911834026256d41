// SPDX-License-Identifier: MIT
// What the module offers to its loader.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "support/gentl_functions.h"
#include "support/proxy.h"
#include "support/system.h"

namespace vextrel_test {
namespace {

TEST(Exports, EveryFunctionIsFoundByItsNameAtAnAddressOfItsOwn) {
  const Module proxy(ProxyPath());
  ASSERT_TRUE(proxy.IsLoaded()) << ProxyPath();
  std::set<std::string> names;
  std::set<void*> addresses;
  ForEachFunction([&](const char* name, auto) {
    EXPECT_NE(proxy.FindAddress(name), nullptr) << name;
    names.insert(name);
    addresses.insert(proxy.FindAddress(name));
  });
  EXPECT_EQ(names.size(), kFunctionCount);
  EXPECT_EQ(addresses.size(), kFunctionCount);
}

// The function that the test is named after: the longest name that its own begins with.
std::string FunctionOf(const std::string& test) {
  std::string found;
  for (const std::string& name : FunctionNames()) {
    if (test.starts_with(name) && name.size() > found.size()) {
      found = name;
    }
  }
  return found;
}

TEST(Exports, EveryFunctionHasATestOfItsLine) {
  // These two are tested with the library's lifecycle.
  std::set<std::string> tested = {"GCInitLib", "GCCloseLib"};
  const auto& program = *::testing::UnitTest::GetInstance();
  for (int suite = 0; suite < program.total_test_suite_count(); ++suite) {
    const auto& tests = *program.GetTestSuite(suite);
    for (int test = 0; test < tests.total_test_count(); ++test) {
      tested.insert(FunctionOf(tests.GetTestInfo(test)->name()));
    }
  }
  for (const std::string& name : FunctionNames()) {
    EXPECT_TRUE(tested.contains(name)) << name << " has no test of its line";
  }
}

TEST(Exports, NothingElseOfTheInterfaceOrOfTheProxyItselfIsFound) {
  const Module proxy(ProxyPath());
  ASSERT_TRUE(proxy.IsLoaded()) << ProxyPath();
  for (const char* name : {"GEventGetData", "DevOpen", "DSGetNumBufferParts", "IFGetParent",
                           "GCGetPortInfoStacked", "DllMain", "GetTargetScript"}) {
    EXPECT_EQ(proxy.FindAddress(name), nullptr) << name;
  }
}

TEST(Exports, TheModuleIsUnloadedWithItsLastReference) {
  {
    const Module proxy(ProxyPath());
    ASSERT_TRUE(proxy.IsLoaded()) << ProxyPath();
    EXPECT_TRUE(IsModuleLoaded(ProxyPath()));
  }
  EXPECT_FALSE(IsModuleLoaded(ProxyPath()));
}

}  // namespace
}  // namespace vextrel_test
