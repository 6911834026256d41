// SPDX-License-Identifier: MIT
#include "lifecycle/dll_main.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>

#include "lifecycle/state_fixture.h"
#include "platform/platform.h"
#include "registry/transport_layer_node.h"

namespace vextrel_test {
namespace {

using model::Error;
using model::kTransportLayer;
using model::Warn;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vextrel::DllMain;
using vextrel::proxyState;

// Only a clean-up that never takes place in the module writes these two.
constexpr const char* kNotClosed = "ERROR GCInitLib() was not called correctly!";
constexpr const char* kTransportLayerNotClosed =
    "ERROR The Transport Layer was not closed down properly using TLClose()";

constexpr std::uint32_t kDetach = 0;
constexpr std::uint32_t kAttach = 1;
constexpr std::uint32_t kThreadAttach = 2;
constexpr std::uint32_t kThreadDetach = 3;

class DllMainTest : public StateFixture {
 protected:
  // A state as after GCInitLib and TLOpen, with two interfaces and an event.
  void Bind() {
    UseTarget(ScriptedTargetPath());
    ASSERT_EQ(::GCInitLib(), 0);
    linesBefore_ = Lines().size();
    proxyState.registryRoot = new vextrel::TransportLayerNode(Handle(0x1000), &Category());
    proxyState.registryRoot->AddInterface(Handle(0x2000));
    proxyState.registryRoot->AddInterface(Handle(0x2001));
    proxyState.registryRoot->AddEvent(Handle(0x1000), EVENT_NEW_BUFFER, Handle(0x4000));
  }

  [[nodiscard]] std::vector<std::string> LinesSinceBinding() const {
    std::vector<std::string> lines = Lines();
    lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(linesBefore_));
    return lines;
  }

  // Gives the clean-up a module of its own to release.
  static void SetDetachModule() {
    proxyState.detachModule =
        vextrel::platform::LoadModule(ScriptedTargetPath().string().c_str()).module;
    ASSERT_NE(proxyState.detachModule, nullptr);
  }

  // log4cpp's shut-down takes the appenders off every category.
  [[nodiscard]] static bool IsLoggingShutDown() {
    return vextrel::GetRootLogger().getAllAppenders().empty();
  }

  [[nodiscard]] static std::array<const void*, 7> Tables() {
    return {proxyState.libTable, proxyState.tlTable,   proxyState.ifTable,   proxyState.devTable,
            proxyState.dsTable,  proxyState.portTable, proxyState.eventTable};
  }

 private:
  std::size_t linesBefore_ = 0;
};

TEST_F(DllMainTest, ReturnsTrueWhateverTheReason) {
  for (const std::uint32_t reason : {1U, 2U, 3U, 0U, 4U, 0xFFFFFFFFU}) {
    EXPECT_EQ(DllMain(nullptr, reason, nullptr), 1) << reason;
  }
}

TEST_F(DllMainTest, StoresTheInstanceOnEveryCall) {
  std::uintptr_t instance = 0x1000;
  for (const std::uint32_t reason : {1U, 2U, 3U, 0U, 4U}) {
    instance += 0x1000;
    DllMain(Handle(instance), reason, Handle(0x7777));
    EXPECT_EQ(proxyState.moduleInstance, Handle(instance)) << reason;
  }
}

TEST_F(DllMainTest, CountsTheFirstAttachOnly) {
  DllMain(nullptr, kAttach, nullptr);
  EXPECT_EQ(proxyState.attachCount, 1);
  DllMain(nullptr, kAttach, nullptr);
  EXPECT_EQ(proxyState.attachCount, 1);
}

TEST_F(DllMainTest, CountsEveryDetach) {
  DllMain(nullptr, kAttach, nullptr);
  DllMain(nullptr, kDetach, nullptr);
  EXPECT_EQ(proxyState.attachCount, 0);
  DllMain(nullptr, kDetach, nullptr);
  EXPECT_EQ(proxyState.attachCount, -1);
  DllMain(nullptr, kAttach, nullptr);
  EXPECT_EQ(proxyState.attachCount, -1);
}

TEST_F(DllMainTest, ChangesNothingButTheInstanceAtAttach) {
  Bind();
  const auto state = proxyState;
  DllMain(Handle(0x5000), kAttach, nullptr);
  EXPECT_EQ(proxyState.targetModule, state.targetModule);
  EXPECT_EQ(proxyState.registryRoot, state.registryRoot);
  EXPECT_EQ(proxyState.libTable, state.libTable);
  EXPECT_TRUE(proxyState.initialized);
  EXPECT_FALSE(IsLoggingShutDown());
  EXPECT_THAT(LinesSinceBinding(), IsEmpty());
}

TEST_F(DllMainTest, DoesNothingForThreads) {
  Bind();
  DllMain(nullptr, kAttach, nullptr);
  SetDetachModule();
  for (const std::uint32_t reason : {kThreadAttach, kThreadDetach}) {
    SCOPED_TRACE(reason);
    DllMain(nullptr, reason, nullptr);
    EXPECT_EQ(proxyState.attachCount, 1);
    EXPECT_NE(proxyState.detachModule, nullptr);
    EXPECT_NE(proxyState.registryRoot, nullptr);
    EXPECT_THAT(Tables(), Each(::testing::NotNull()));
    EXPECT_FALSE(IsLoggingShutDown());
    EXPECT_THAT(LinesSinceBinding(), IsEmpty());
  }
}

TEST_F(DllMainTest, OnlyShutsTheLoggerDownAtDetach) {
  Bind();
  const auto state = proxyState;
  const auto tables = Tables();
  DllMain(nullptr, kAttach, nullptr);
  DllMain(nullptr, kDetach, nullptr);
  EXPECT_TRUE(IsLoggingShutDown());
  EXPECT_THAT(LinesSinceBinding(), IsEmpty());
  EXPECT_EQ(Tables(), tables);
  EXPECT_EQ(proxyState.targetModule, state.targetModule);
  EXPECT_EQ(proxyState.registryRoot, state.registryRoot);
  EXPECT_EQ(proxyState.registryRoot->interfaces.size(), 2);
  EXPECT_EQ(proxyState.logger, state.logger);
  EXPECT_EQ(proxyState.targetPath, ScriptedTargetPath().string());
  EXPECT_TRUE(proxyState.initialized);
  EXPECT_TRUE(IsModuleLoaded(ScriptedTargetPath()));
}

TEST_F(DllMainTest, LeavesTheLoggingAloneAtDetachWithoutALogger) {
  vextrel::ConfigureLogging();
  DllMain(nullptr, kAttach, nullptr);
  DllMain(nullptr, kDetach, nullptr);
  EXPECT_FALSE(IsLoggingShutDown());
}

TEST_F(DllMainTest, LeavesEverythingAloneAtADetachThatHadNoAttach) {
  Bind();
  SetDetachModule();
  DllMain(nullptr, kDetach, nullptr);
  EXPECT_EQ(proxyState.attachCount, -1);
  EXPECT_NE(proxyState.detachModule, nullptr);
  EXPECT_NE(proxyState.registryRoot, nullptr);
  EXPECT_FALSE(IsLoggingShutDown());
  EXPECT_THAT(LinesSinceBinding(), IsEmpty());
}

TEST_F(DllMainTest, CleansUpAtDetachIfItHasAModuleForThat) {
  Bind();
  DllMain(nullptr, kAttach, nullptr);
  SetDetachModule();
  DllMain(nullptr, kDetach, nullptr);
  EXPECT_THAT(LinesSinceBinding(),
              ElementsAre(kNotClosed, kTransportLayerNotClosed,
                          Error(kTransportLayer.childLeftOpen, {0x2000, 0x1000}),
                          Error(kTransportLayer.childLeftOpen, {0x2001, 0x1000}),
                          Warn(kTransportLayer.eventLeft, {"EVENT_NEW_BUFFER", 0x4000, 0x1000})));
  EXPECT_EQ(proxyState.registryRoot, nullptr);
  EXPECT_THAT(Tables(), Each(nullptr));
  EXPECT_EQ(proxyState.detachModule, nullptr);
  EXPECT_TRUE(IsLoggingShutDown());
}

TEST_F(DllMainTest, LeavesTheTargetToItsOwnReferenceWhenItCleansUp) {
  Bind();
  const auto target = proxyState.targetModule;
  DllMain(nullptr, kAttach, nullptr);
  SetDetachModule();
  DllMain(nullptr, kDetach, nullptr);
  EXPECT_EQ(proxyState.targetModule, target);
  EXPECT_TRUE(proxyState.initialized);
  EXPECT_TRUE(IsModuleLoaded(ScriptedTargetPath()));
  vextrel::platform::UnloadModule(target);
  EXPECT_FALSE(IsModuleLoaded(ScriptedTargetPath()));
}

TEST_F(DllMainTest, CleansUpWithoutALineForAnInitThatDidNotHappen) {
  Bind();
  proxyState.initialized = false;
  DllMain(nullptr, kAttach, nullptr);
  SetDetachModule();
  DllMain(nullptr, kDetach, nullptr);
  const auto lines = LinesSinceBinding();
  ASSERT_EQ(lines.size(), 4);
  EXPECT_EQ(lines[0], kTransportLayerNotClosed);
}

TEST_F(DllMainTest, CleansUpWithoutALineForARegistryThatIsNotThere) {
  Bind();
  delete std::exchange(proxyState.registryRoot, nullptr);
  DllMain(nullptr, kAttach, nullptr);
  SetDetachModule();
  DllMain(nullptr, kDetach, nullptr);
  EXPECT_THAT(LinesSinceBinding(), ElementsAre(kNotClosed));
  EXPECT_THAT(Tables(), Each(nullptr));
}

TEST_F(DllMainTest, CleansUpWithTheRegistrysOwnLinesOnlyIfThereIsNoLogger) {
  Bind();
  proxyState.logger = nullptr;
  DllMain(nullptr, kAttach, nullptr);
  SetDetachModule();
  DllMain(nullptr, kDetach, nullptr);
  const auto lines = LinesSinceBinding();
  ASSERT_EQ(lines.size(), 3);
  EXPECT_EQ(lines[0], Error(kTransportLayer.childLeftOpen, {0x2000, 0x1000}));
  EXPECT_EQ(proxyState.registryRoot, nullptr);
  EXPECT_THAT(Tables(), Each(nullptr));
  EXPECT_EQ(proxyState.detachModule, nullptr);
  EXPECT_FALSE(IsLoggingShutDown());
}

TEST_F(DllMainTest, CleansUpWhenThereIsNothingButTheModule) {
  DllMain(nullptr, kAttach, nullptr);
  SetDetachModule();
  DllMain(nullptr, kDetach, nullptr);
  EXPECT_EQ(proxyState.detachModule, nullptr);
  EXPECT_FALSE(IsModuleLoaded(ScriptedTargetPath()));
  EXPECT_THAT(Lines(), IsEmpty());
}

}  // namespace
}  // namespace vextrel_test
