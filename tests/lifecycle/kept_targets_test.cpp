// SPDX-License-Identifier: MIT
// A target that keeps state over GCCloseLib, and whose thread outlives it: through the extended
// module it behaves as it does without.
#include "lifecycle/kept_targets.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cstdint>
#include <thread>

#include "lifecycle/library_fixture.h"

namespace vextrel_test {
namespace {

// See lingering_target.cpp.
std::filesystem::path LingeringTarget() {
  return TargetPath("lingering_target");
}

// How often the target was initialised since it was loaded, and how often its thread has run.
struct Life {
  std::uint64_t inits = 0;
  std::uint64_t runs = 0;
};

Life LifeOf(const GenTLFunctions& functions) {
  Life life;
  EXPECT_EQ(functions.DSStartAcquisition(&life, 0, 0), GC_ERR_SUCCESS);
  return life;
}

void AwaitRuns() {
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
}

// What a consumer that initialises the library three times sees of such a target.
void ExpectOneLife(const GenTLFunctions& functions) {
  ASSERT_EQ(functions.GCInitLib(), GC_ERR_SUCCESS);
  AwaitRuns();
  const Life first = LifeOf(functions);
  EXPECT_EQ(first.inits, 1U);
  EXPECT_GT(first.runs, 0U);
  std::uint64_t runs = first.runs;
  for (std::uint64_t inits = 2; inits <= 3; ++inits) {
    EXPECT_EQ(functions.GCCloseLib(), GC_ERR_SUCCESS);
    AwaitRuns();
    ASSERT_EQ(functions.GCInitLib(), GC_ERR_SUCCESS);
    const Life next = LifeOf(functions);
    EXPECT_EQ(next.inits, inits);
    EXPECT_GT(next.runs, runs) << "the thread has not run on";
    runs = next.runs;
  }
  // Ends the thread, which the target's unloading would crash.
  EXPECT_EQ(functions.EventKill(nullptr), GC_ERR_SUCCESS);
  EXPECT_EQ(functions.GCCloseLib(), GC_ERR_SUCCESS);
}

TEST(LingeringTarget, LivesOnWithoutVextrel) {
  {
    const Module target(LingeringTarget());
    ASSERT_TRUE(target.IsLoaded());
    ExpectOneLife(FunctionsOf(target));
  }
  EXPECT_FALSE(IsModuleLoaded(LingeringTarget()));
}

class KeptTargets : public LibraryFixture {};

TEST_F(KeptTargets, LiveOnAsWithoutVextrel) {
  Prepare(LingeringTarget());
  ExpectOneLife(proxy);
}

TEST_F(KeptTargets, AreUnloadedWithTheModule) {
  Prepare(LingeringTarget());
  ExpectOneLife(proxy);
  EXPECT_TRUE(IsModuleLoaded(LingeringTarget()));
  UnloadProxy();
  EXPECT_FALSE(IsModuleLoaded(LingeringTarget()));
  EXPECT_FALSE(IsModuleLoaded(ProxyPath()));
}

TEST_F(KeptTargets, AreAllThatTheModuleHasHad) {
  Prepare(ScriptedTargetPath());
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  UseTarget(EmptyTargetPath());
  EXPECT_EQ(proxy.GCInitLib(), GC_ERR_NOT_IMPLEMENTED);
  EXPECT_EQ(proxy.GCCloseLib(), GC_ERR_NOT_IMPLEMENTED);
  UseTarget(ScriptedTargetPath());
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  EXPECT_TRUE(IsModuleLoaded(ScriptedTargetPath()));
  EXPECT_TRUE(IsModuleLoaded(EmptyTargetPath()));
  UnloadProxy();
  EXPECT_FALSE(IsModuleLoaded(ScriptedTargetPath()));
  EXPECT_FALSE(IsModuleLoaded(EmptyTargetPath()));
}

// A module that refuses itself keeps no reference to itself.
TEST_F(KeptTargets, AreNotTheModuleItself) {
  Prepare(ProxyPath());
  EXPECT_EQ(proxy.GCInitLib(), 0);
  UnloadProxy();
  EXPECT_FALSE(IsModuleLoaded(ProxyPath()));
}

// The path leads elsewhere by the time that the target is to be kept.
TEST_F(KeptTargets, AreNotKeptIfTheirFileWasExchanged) {
  for (const std::filesystem::path& now : {ScriptedTargetPath(), TargetPath("not_there")}) {
    const auto target = vextrel::platform::LoadModule(LingeringTarget().string().c_str());
    ASSERT_NE(target.module, nullptr);
    vextrel::KeepTarget(target.module, now.string());
    EXPECT_FALSE(IsModuleLoaded(ScriptedTargetPath()));
    vextrel::platform::UnloadModule(target.module);
    EXPECT_FALSE(IsModuleLoaded(LingeringTarget()));
  }
}

}  // namespace
}  // namespace vextrel_test
