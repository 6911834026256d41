// SPDX-License-Identifier: MIT
// What the module offers to its loader.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "exports/tested_functions.h"
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
  for (const std::string& name : FunctionNames()) {
    void* const address = proxy.FindAddress(name.c_str());
    EXPECT_NE(address, nullptr) << name;
    names.insert(name);
    addresses.insert(address);
  }
  EXPECT_EQ(names.size(), kFunctionCount);
  EXPECT_EQ(addresses.size(), kFunctionCount);
}

TEST(Exports, EveryFunctionHasATestOfItsLine) {
  // These two are tested with the library's lifecycle.
  std::set<std::string> tested = {"GCInitLib", "GCCloseLib"};
  const auto& program = *::testing::UnitTest::GetInstance();
  for (int suite = 0; suite < program.total_test_suite_count(); ++suite) {
    tested.merge(FunctionsTestedBy(*program.GetTestSuite(suite)));
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
