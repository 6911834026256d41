// SPDX-License-Identifier: MIT
// GCCloseLib, seen from outside.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "lifecycle/library_fixture.h"

namespace vextrel_test {
namespace {

using model::Error;
using model::kTransportLayer;
using model::Warn;
using ::testing::ElementsAre;

class CloseLib : public LibraryFixture {
 protected:
  // A transport layer with two interfaces, the second with a device, and with an event on the
  // transport layer and on the first interface. The lines are taken off.
  void OpenEverything() {
    IF_HANDLE interfaceHandle = Handle(0x2000);
    DEV_HANDLE device = Handle(0x3000);
    EVENT_HANDLE event = Handle(0x4000);
    EXPECT_EQ(OpenTransportLayer(), 0);
    EXPECT_EQ(proxy.GCRegisterEvent(Handle(0x1000), EVENT_FEATURE_INVALIDATE, &event), 0);
    event = Handle(0x4001);
    EXPECT_EQ(proxy.GCRegisterEvent(Handle(0x1000), EVENT_ERROR, &event), 0);
    EXPECT_EQ(proxy.TLOpenInterface(Handle(0x1000), "first", &interfaceHandle), 0);
    EXPECT_EQ(proxy.GCRegisterEvent(Handle(0x2000), EVENT_ERROR, &event), 0);
    interfaceHandle = Handle(0x2001);
    EXPECT_EQ(proxy.TLOpenInterface(Handle(0x1000), "second", &interfaceHandle), 0);
    EXPECT_EQ(proxy.IFOpenDevice(Handle(0x2001), "device", DEVICE_ACCESS_CONTROL, &device), 0);
    static_cast<void>(TakeLines());
  }
};

TEST_F(CloseLib, ForwardsWritesOneLineAndUnloadsTheTarget) {
  Bind();
  EXPECT_TRUE(IsModuleLoaded(ScriptedTargetPath()));
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(kCloseSucceeded));
  EXPECT_FALSE(IsModuleLoaded(ScriptedTargetPath()));
}

TEST_F(CloseLib, ReturnsTheTargetsFailureAndUnloadsItNonetheless) {
  Bind();
  {
    const HeldTarget target;
    target.Script().result = GC_ERR_RESOURCE_IN_USE;
    EXPECT_EQ(proxy.GCCloseLib(), -1004);
    EXPECT_EQ(target.Script().calls, 1);
  }
  EXPECT_THAT(TakeLines(), ElementsAre("INFO GC_ERR_RESOURCE_IN_USE=GCCloseLib(void)"));
  EXPECT_FALSE(IsModuleLoaded(ScriptedTargetPath()));
}

TEST_F(CloseLib, IsNotImplementedIfTheTargetLacksItAndUnloadsIt) {
  const auto target = ScriptedTargetWithout("GCCloseLib");
  Bind(target);
  EXPECT_EQ(proxy.GCCloseLib(), -1003);
  EXPECT_THAT(TakeLines(), ElementsAre(kCloseNotImplemented));
  EXPECT_FALSE(IsModuleLoaded(target));
}

TEST_F(CloseLib, LeavesNothingBoundBehind) {
  Bind();
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  static_cast<void>(TakeLines());
  ForEachFunction([this](const char* name, auto slot) {
    if (std::string(name) != "GCInitLib") {
      EXPECT_EQ(CallWithZeros(proxy.*slot), -1003) << name;
    }
  });
}

TEST_F(CloseLib, ReportsThatItIsCalledASecondTime) {
  Bind();
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  static_cast<void>(TakeLines());
  EXPECT_EQ(proxy.GCCloseLib(), -1003);
  EXPECT_THAT(TakeLines(), ElementsAre(kNotInitialized, kCloseNotImplemented));
}

TEST_F(CloseLib, ReportsAMissingInitAfterAMissingVariable) {
  UseLogFile();
  LoadProxy();
  EXPECT_EQ(proxy.GCInitLib(), 0);
  static_cast<void>(TakeLines());
  EXPECT_EQ(proxy.GCCloseLib(), -1003);
  EXPECT_THAT(TakeLines(), ElementsAre(kNotInitialized, kCloseNotImplemented));
}

TEST_F(CloseLib, ReportsAMissingInitAfterAFailedLoad) {
  Prepare(Folder() / "missing.cti");
  EXPECT_EQ(proxy.GCInitLib(), 0);
  static_cast<void>(TakeLines());
  EXPECT_EQ(proxy.GCCloseLib(), -1003);
  EXPECT_THAT(TakeLines(), ElementsAre(kNotInitialized, kCloseNotImplemented));
}

TEST_F(CloseLib, ReleasesOneOfTheTwoReferencesThatTwoInitsHaveTaken) {
  Bind();
  EXPECT_EQ(proxy.GCInitLib(), 0);
  static_cast<void>(TakeLines());
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(kCloseSucceeded));
  ASSERT_TRUE(IsModuleLoaded(ScriptedTargetPath()));
  const Module another(ScriptedTargetPath());
  vextrel::platform::UnloadModule(another.Handle());
  EXPECT_TRUE(IsModuleLoaded(ScriptedTargetPath()));
  EXPECT_EQ(OpenTransportLayer(), -1003);
}

TEST_F(CloseLib, FindsNothingBoundTheSecondTimeAfterTwoInits) {
  Bind();
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  static_cast<void>(TakeLines());
  EXPECT_EQ(proxy.GCCloseLib(), -1003);
  EXPECT_THAT(TakeLines(), ElementsAre(kNotInitialized, kCloseNotImplemented));
  EXPECT_TRUE(IsModuleLoaded(ScriptedTargetPath()));
}

TEST_F(CloseLib, LeavesExactlyOneReferenceAfterTwoInits) {
  Bind();
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  {
    const Module another(ScriptedTargetPath());
    vextrel::platform::UnloadModule(another.Handle());
  }
  EXPECT_FALSE(IsModuleLoaded(ScriptedTargetPath()));
}

// The first binding's tables and its reference outlive a GCInitLib that could not load: nothing
// knows the module any more.
TEST_F(CloseLib, KeepsTheTablesOfABindingWhoseReloadFailed) {
  const HeldTarget target;
  Bind();
  UseTarget(Folder() / "missing.cti");
  EXPECT_EQ(proxy.GCInitLib(), 0);
  static_cast<void>(TakeLines());
  EXPECT_EQ(OpenTransportLayer(), 0);
  EXPECT_EQ(proxy.TLClose(Handle(0x1000)), 0);
  static_cast<void>(TakeLines());

  target.Script().calls = 0;
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(kCloseSucceeded));
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(kNotInitialized, kCloseSucceeded));
  EXPECT_EQ(target.Script().calls, 2);
  EXPECT_EQ(OpenTransportLayer(), 0);
}

TEST_F(CloseLib, WritesItsLineBeforeItReportsAnOpenTransportLayer) {
  Bind();
  EXPECT_EQ(OpenTransportLayer(), 0);
  static_cast<void>(TakeLines());
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(kCloseSucceeded, kTransportLayerLeftOpen));
}

TEST_F(CloseLib, ReportsOpenInterfacesThenTheEventsOfTheTransportLayerAndNothingDeeper) {
  Bind();
  OpenEverything();
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  EXPECT_THAT(
      TakeLines(),
      ElementsAre(kCloseSucceeded, kTransportLayerLeftOpen,
                  Error(kTransportLayer.childLeftOpen, {0x2000, 0x1000}),
                  Error(kTransportLayer.childLeftOpen, {0x2001, 0x1000}),
                  Warn(kTransportLayer.eventLeft, {"EVENT_FEATURE_INVALIDATE", 0x4000, 0x1000}),
                  Warn(kTransportLayer.eventLeft, {"EVENT_ERROR", 0x4001, 0x1000})));
}

TEST_F(CloseLib, ForwardsNothingButItselfForWhatWasLeftOpen) {
  const HeldTarget target;
  Bind();
  OpenEverything();
  target.Script().calls = 0;
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  EXPECT_EQ(target.Script().calls, 1);
}

TEST_F(CloseLib, ReportsAnOpenTransportLayerAlsoWhenTheTargetFails) {
  const HeldTarget target;
  Bind();
  EXPECT_EQ(OpenTransportLayer(), 0);
  static_cast<void>(TakeLines());
  target.Script().result = GC_ERR_ERROR;
  EXPECT_EQ(proxy.GCCloseLib(), -1001);
  EXPECT_THAT(TakeLines(),
              ElementsAre("INFO GC_ERR_ERROR=GCCloseLib(void)", kTransportLayerLeftOpen));
}

TEST_F(CloseLib, ReportsAnOpenTransportLayerOnce) {
  Bind();
  EXPECT_EQ(OpenTransportLayer(), 0);
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  static_cast<void>(TakeLines());
  EXPECT_EQ(proxy.GCCloseLib(), -1003);
  EXPECT_THAT(TakeLines(), ElementsAre(kNotInitialized, kCloseNotImplemented));
}

TEST_F(CloseLib, ReportsNothingAfterTLClose) {
  Bind();
  EXPECT_EQ(OpenTransportLayer(), 0);
  EXPECT_EQ(proxy.TLClose(Handle(0x1000)), 0);
  static_cast<void>(TakeLines());
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(kCloseSucceeded));
}

TEST_F(CloseLib, EndsTheRegistry) {
  Bind();
  OpenEverything();
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  EXPECT_EQ(proxy.GCInitLib(), 0);
  static_cast<void>(TakeLines());
  IF_HANDLE interfaceHandle = Handle(0x2000);
  EXPECT_EQ(proxy.TLOpenInterface(Handle(0x1000), "first", &interfaceHandle), 0);
  const std::vector<std::string> lines = TakeLines();
  ASSERT_EQ(lines.size(), 2);
  EXPECT_EQ(lines[1], Error(model::kNoTransportLayer));
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(kCloseSucceeded));
}

TEST_F(CloseLib, LeavesAnOpenTransportLayerToASecondInit) {
  Bind();
  EXPECT_EQ(OpenTransportLayer(), 0);
  EXPECT_EQ(proxy.GCInitLib(), 0);
  static_cast<void>(TakeLines());
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(kCloseSucceeded, kTransportLayerLeftOpen));
}

TEST_F(CloseLib, LetsTheNextInitBindToAnotherTarget) {
  const auto other = ScriptedTargetWithout("EventFlush");
  Bind();
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  static_cast<void>(TakeLines());
  UseTarget(other);
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(other), kNoVersion,
                                       "ERROR EventFlush not exported", kInitSucceeded));
  EXPECT_FALSE(IsModuleLoaded(ScriptedTargetPath()));
}

TEST_F(CloseLib, CallsTheTargetBeforeItWritesAnything) {
  const HeldTarget target;
  Bind();
  OpenEverything();
  const std::vector<std::string> before = LogLines();
  Watched::log_ = LogFile();
  target.Script().functions.GCCloseLib = Watched::Look;
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  EXPECT_EQ(Watched::lines_, before);
}

TEST_F(CloseLib, ReportsAMissingInitBeforeItCallsTheTarget) {
  const HeldTarget target;
  Bind();
  UseTarget(Folder() / "missing.cti");
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  Watched::log_ = LogFile();
  target.Script().functions.GCCloseLib = Watched::Look;
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  ASSERT_FALSE(Watched::lines_.empty());
  EXPECT_EQ(Watched::lines_.back(), kNotInitialized);
}

}  // namespace
}  // namespace vextrel_test
