// SPDX-License-Identifier: MIT
// What GCInitLib and GCCloseLib leave in the library's state.
#include "lifecycle/proxy_state.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <stdexcept>
#include <string>

#include "lifecycle/library.h"
#include "lifecycle/state_fixture.h"
#include "registry/transport_layer_node.h"

namespace vextrel_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using vextrel::proxyState;
using vextrel::ProxyState;

// As it was before anything ran.
const ProxyState kStateAtLoad = proxyState;

std::array<const void*, 7> Tables() {
  return {proxyState.libTable, proxyState.tlTable,   proxyState.ifTable,   proxyState.devTable,
          proxyState.dsTable,  proxyState.portTable, proxyState.eventTable};
}

class ProxyStateTest : public StateFixture {
 protected:
  static void ExpectUnbound() {
    EXPECT_THAT(Tables(), Each(nullptr));
    EXPECT_EQ(proxyState.targetModule, nullptr);
    EXPECT_EQ(proxyState.registryRoot, nullptr);
    EXPECT_FALSE(proxyState.initialized);
  }
};

TEST_F(ProxyStateTest, IsZeroWhenTheLibraryIsLoaded) {
  EXPECT_EQ(kStateAtLoad.moduleInstance, nullptr);
  EXPECT_EQ(kStateAtLoad.detachModule, nullptr);
  EXPECT_EQ(kStateAtLoad.attachCount, 0);
  EXPECT_EQ(kStateAtLoad.libTable, nullptr);
  EXPECT_EQ(kStateAtLoad.tlTable, nullptr);
  EXPECT_EQ(kStateAtLoad.ifTable, nullptr);
  EXPECT_EQ(kStateAtLoad.devTable, nullptr);
  EXPECT_EQ(kStateAtLoad.dsTable, nullptr);
  EXPECT_EQ(kStateAtLoad.portTable, nullptr);
  EXPECT_EQ(kStateAtLoad.eventTable, nullptr);
  EXPECT_EQ(kStateAtLoad.logger, nullptr);
  EXPECT_EQ(kStateAtLoad.targetModule, nullptr);
  EXPECT_EQ(kStateAtLoad.registryRoot, nullptr);
  EXPECT_FALSE(kStateAtLoad.initialized);
  EXPECT_EQ(kStateAtLoad.targetPath, "");
  EXPECT_EQ(sizeof kStateAtLoad.attachCount, 4);
  EXPECT_EQ(sizeof kStateAtLoad.initialized, 1);
}

TEST_F(ProxyStateTest, HasOnlyTheLoggerAfterAMissingVariable) {
  EXPECT_EQ(::GCInitLib(), 0);
  EXPECT_THAT(Lines(), ElementsAre(kProducerNotFound));
  ExpectUnbound();
  EXPECT_EQ(proxyState.logger, &Category());
  EXPECT_EQ(proxyState.targetPath, "");
}

TEST_F(ProxyStateTest, HasOnlyTheLoggerAfterAnUnresolvablePath) {
  SetVariable(kProducerVariable, "$(VEXTREL_TEST_UNSET)");
  EXPECT_THROW(static_cast<void>(::GCInitLib()), std::runtime_error);
  EXPECT_THAT(Lines(), ::testing::IsEmpty());
  ExpectUnbound();
  EXPECT_EQ(proxyState.logger, &Category());
  EXPECT_EQ(proxyState.targetPath, "");
}

TEST_F(ProxyStateTest, HasThePathButNoModuleAfterAFailedLoad) {
  const std::string missing = (Folder() / "missing.cti").string();
  UseTarget(missing);
  EXPECT_EQ(::GCInitLib(), 0);
  ExpectUnbound();
  EXPECT_EQ(proxyState.logger, &Category());
  EXPECT_EQ(proxyState.targetPath, missing);
}

TEST_F(ProxyStateTest, HasEverythingAfterASuccessfulInit) {
  const HeldTarget target;
  UseTarget(ScriptedTargetPath());
  EXPECT_EQ(::GCInitLib(), 0);
  EXPECT_THAT(Tables(), Each(::testing::NotNull()));
  EXPECT_EQ(proxyState.targetModule, target.Handle());
  EXPECT_EQ(proxyState.logger, &Category());
  EXPECT_EQ(proxyState.targetPath, ScriptedTargetPath().string());
  EXPECT_TRUE(proxyState.initialized);
  EXPECT_EQ(proxyState.registryRoot, nullptr);
  EXPECT_EQ(proxyState.detachModule, nullptr);
  EXPECT_EQ(::GCCloseLib(), 0);
}

TEST_F(ProxyStateTest, IsInitializedWhateverTheTargetAnswers) {
  const HeldTarget target;
  target.Script().result = GC_ERR_IO;
  UseTarget(ScriptedTargetPath());
  EXPECT_EQ(::GCInitLib(), -1010);
  EXPECT_TRUE(proxyState.initialized);
  EXPECT_EQ(proxyState.targetModule, target.Handle());
  EXPECT_THAT(Tables(), Each(::testing::NotNull()));
  EXPECT_EQ(::GCCloseLib(), -1010);
}

TEST_F(ProxyStateTest, IsInitializedWithoutTheTargetsGCInitLib) {
  UseTarget(EmptyTargetPath());
  EXPECT_EQ(::GCInitLib(), -1003);
  EXPECT_TRUE(proxyState.initialized);
  EXPECT_THAT(Tables(), Each(::testing::NotNull()));
  EXPECT_EQ(::GCCloseLib(), -1003);
}

TEST_F(ProxyStateTest, KeepsTheFormerTablesAllocatedWhenASecondInitReplacesThem) {
  UseTarget(ScriptedTargetPath());
  EXPECT_EQ(::GCInitLib(), 0);
  const ProxyState former = proxyState;
  const auto formerTables = Tables();
  EXPECT_EQ(::GCInitLib(), 0);
  for (std::size_t i = 0; i < formerTables.size(); ++i) {
    EXPECT_NE(Tables()[i], formerTables[i]);
  }
  EXPECT_EQ(former.libTable->module, proxyState.targetModule);
  EXPECT_EQ(former.eventTable->module, proxyState.targetModule);
  EXPECT_EQ(::GCCloseLib(), 0);
  delete former.libTable;
  delete former.tlTable;
  delete former.ifTable;
  delete former.devTable;
  delete former.dsTable;
  delete former.portTable;
  delete former.eventTable;
}

TEST_F(ProxyStateTest, LosesTheModuleButNotTheTablesWhenASecondInitFailsToLoad) {
  const HeldTarget target;
  UseTarget(ScriptedTargetPath());
  EXPECT_EQ(::GCInitLib(), 0);
  const auto tables = Tables();
  const std::string missing = (Folder() / "missing.cti").string();
  UseTarget(missing);
  EXPECT_EQ(::GCInitLib(), 0);
  EXPECT_EQ(Tables(), tables);
  EXPECT_EQ(proxyState.targetModule, nullptr);
  EXPECT_EQ(proxyState.targetPath, missing);
  EXPECT_TRUE(proxyState.initialized);

  EXPECT_EQ(::GCCloseLib(), 0);
  EXPECT_EQ(Tables(), tables);
  EXPECT_FALSE(proxyState.initialized);
}

TEST_F(ProxyStateTest, KeepsTheLoggerAndThePathAfterGCCloseLib) {
  UseTarget(ScriptedTargetPath());
  EXPECT_EQ(::GCInitLib(), 0);
  EXPECT_EQ(::GCCloseLib(), 0);
  ExpectUnbound();
  EXPECT_EQ(proxyState.logger, &Category());
  EXPECT_EQ(proxyState.targetPath, ScriptedTargetPath().string());
}

TEST_F(ProxyStateTest, HasNoRegistryAfterGCCloseLib) {
  UseTarget(ScriptedTargetPath());
  EXPECT_EQ(::GCInitLib(), 0);
  TL_HANDLE transportLayer = Handle(0x1000);
  EXPECT_EQ(::TLOpen(&transportLayer), 0);
  EXPECT_NE(proxyState.registryRoot, nullptr);
  EXPECT_EQ(::GCCloseLib(), 0);
  ExpectUnbound();
}

TEST_F(ProxyStateTest, IsUntouchedByGCCloseLibBeforeAnyInit) {
  EXPECT_EQ(::GCCloseLib(), -1003);
  ExpectUnbound();
  EXPECT_EQ(proxyState.targetPath, "");
}

TEST_F(ProxyStateTest, LetsGCCloseLibReportARegistryThatHasNoLogger) {
  proxyState.registryRoot = new vextrel::TransportLayerNode(Handle(0x1000), &Category());
  EXPECT_EQ(::GCCloseLib(), -1003);
  EXPECT_EQ(proxyState.registryRoot, nullptr);
}

TEST_F(ProxyStateTest, LeavesTheFieldsOfDllMainToDllMain) {
  UseTarget(ScriptedTargetPath());
  EXPECT_EQ(::GCInitLib(), 0);
  EXPECT_EQ(proxyState.attachCount, 0);
  EXPECT_EQ(proxyState.moduleInstance, nullptr);
  EXPECT_EQ(::GCCloseLib(), 0);
}

struct Version {
  const char* target;
  const char* text;
};

class GetProducerFileVersionTest : public ::testing::TestWithParam<Version> {};

TEST_P(GetProducerFileVersionTest, JoinsFourNumbersWithDots) {
  const Module target(ScriptedTargetPath().parent_path() / GetParam().target);
  ASSERT_TRUE(target.IsLoaded());
  EXPECT_EQ(vextrel::GetProducerFileVersion(target.Handle()),
            kOnWindows ? GetParam().text : "0.0.0.0");
}

// Only Windows modules carry a version.
INSTANTIATE_TEST_SUITE_P(All, GetProducerFileVersionTest,
                         ::testing::Values(Version{"scripted_target.cti", "0.0.0.0"},
                                           Version{"versioned_target.cti", "1.2.3.4"},
                                           Version{"highly_versioned_target.cti",
                                                   "65535.0.256.32768"}));

}  // namespace
}  // namespace vextrel_test
