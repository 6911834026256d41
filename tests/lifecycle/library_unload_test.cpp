// SPDX-License-Identifier: MIT
// The module unloaded by a consumer that has not closed it, seen from outside.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "lifecycle/library_fixture.h"

namespace vextrel_test {
namespace {

using Unload = LibraryFixture;

TEST_F(Unload, WritesNothingAndLeavesTheTargetLoaded) {
  Bind();
  const std::vector<std::string> before = LogLines();
  UnloadProxy();
  EXPECT_FALSE(IsModuleLoaded(ProxyPath()));
  EXPECT_EQ(LogLines(), before);
  EXPECT_TRUE(IsModuleLoaded(ScriptedTargetPath()));
}

TEST_F(Unload, WritesNothingAboutAnOpenTransportLayer) {
  Bind();
  IF_HANDLE interfaceHandle = Handle(0x2000);
  EVENT_HANDLE event = Handle(0x4000);
  EXPECT_EQ(OpenTransportLayer(), 0);
  EXPECT_EQ(proxy.TLOpenInterface(Handle(0x1000), "first", &interfaceHandle), 0);
  EXPECT_EQ(proxy.GCRegisterEvent(Handle(0x1000), EVENT_ERROR, &event), 0);
  const std::vector<std::string> before = LogLines();
  UnloadProxy();
  EXPECT_FALSE(IsModuleLoaded(ProxyPath()));
  EXPECT_EQ(LogLines(), before);
}

TEST_F(Unload, ForwardsNothing) {
  const HeldTarget target;
  Bind();
  EXPECT_EQ(OpenTransportLayer(), 0);
  target.Script().calls = 0;
  UnloadProxy();
  EXPECT_EQ(target.Script().calls, 0);
}

TEST_F(Unload, WritesNothingAfterGCCloseLibEither) {
  Bind();
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  const std::vector<std::string> before = LogLines();
  UnloadProxy();
  EXPECT_EQ(LogLines(), before);
  EXPECT_FALSE(IsModuleLoaded(ScriptedTargetPath()));
}

TEST_F(Unload, IsPossibleBeforeAnyCall) {
  UseLogFile();
  LoadProxy();
  UnloadProxy();
  EXPECT_FALSE(IsModuleLoaded(ProxyPath()));
  EXPECT_FALSE(std::filesystem::exists(LogFile()));
}

TEST_F(Unload, LetsTheModuleBeginAnewWhenItIsLoadedAgain) {
  Bind();
  EXPECT_EQ(OpenTransportLayer(), 0);
  UnloadProxy();
  LoadProxy();
  static_cast<void>(TakeLines());
  EXPECT_EQ(OpenTransportLayer(), -1003);
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(), ::testing::ElementsAre(LoadingLine(ScriptedTargetPath()), kNoVersion,
                                                  kInitSucceeded));
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  EXPECT_THAT(TakeLines(), ::testing::ElementsAre(kCloseSucceeded));
}

// A consumer that neither closes nor unloads anything.
TEST_F(Unload, MayBeLeftToTheEndOfTheProcess) {
  EXPECT_EXIT(
      {
        const std::filesystem::path left = Folder();
        UseTarget(ScriptedTargetPath());
        LoadProxy();
        const bool bound = proxy.GCInitLib() == 0 && OpenTransportLayer() == 0;
        std::filesystem::remove_all(left);
        std::exit(bound ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace vextrel_test
