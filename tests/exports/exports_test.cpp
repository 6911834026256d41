// What the module offers to its loader.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "support/gentl_functions.h"
#include "support/proxy.h"
#include "support/system.h"

namespace vextrel_test {
namespace {

TEST(Exports, EachOfThe51FunctionsIsFoundByItsNameAtAnAddressOfItsOwn) {
  const Module proxy(ProxyPath());
  ASSERT_TRUE(proxy.IsLoaded()) << ProxyPath();
  std::set<std::string> names;
  std::set<void*> addresses;
  ForEachFunction([&](const char* name, auto) {
    EXPECT_NE(proxy.FindAddress(name), nullptr) << name;
    names.insert(name);
    addresses.insert(proxy.FindAddress(name));
  });
  EXPECT_EQ(names.size(), 51U);
  EXPECT_EQ(addresses.size(), 51U);
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
