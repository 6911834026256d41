// SPDX-License-Identifier: MIT
// GCInitLib, seen from outside.
#include "lifecycle/library.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "lifecycle/library_fixture.h"

namespace vextrel_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using InitLib = LibraryFixture;

TEST_F(InitLib, WritesExactlyThreeLinesForATargetThatExportsEverything) {
  Prepare();
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(),
              ElementsAre(LoadingLine(ScriptedTargetPath()), kNoVersion, kInitSucceeded));
}

TEST_F(InitLib, WritesOneErrorLineMoreForATargetWithoutGCGetInfo) {
  const auto target = ScriptedTargetWithout("GCGetInfo");
  Prepare(target);
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(target), kNoVersion,
                                       "ERROR GCGetInfo not exported", kInitSucceeded));
}

TEST_F(InitLib, ForwardsOnceAndBindsEveryFunction) {
  const HeldTarget target;
  Prepare();
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_EQ(target.Script().calls, 1);
  static_cast<void>(TakeLines());
  EXPECT_EQ(OpenTransportLayer(), 0);
  EXPECT_EQ(target.Script().calls, 2);
  EXPECT_THAT(TakeLines(), ElementsAre(OpenLine("GC_ERR_SUCCESS")));
}

TEST_F(InitLib, ReportsAMissingVariableAndSucceeds) {
  UseLogFile();
  LoadProxy();
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(kProducerNotFound));
}

TEST_F(InitLib, LeavesTLOpenWithoutATableAfterAMissingVariable) {
  UseLogFile();
  LoadProxy();
  EXPECT_EQ(proxy.GCInitLib(), 0);
  static_cast<void>(TakeLines());
  EXPECT_EQ(OpenTransportLayer(), -1003);
  EXPECT_THAT(TakeLines(), ElementsAre(OpenLine("GC_ERR_NOT_IMPLEMENTED")));
}

TEST_F(InitLib, TakesAnEmptyVariableAsMissing) {
  UseLogFile();
  SetVariable(kProducerVariable, "");
  LoadProxy();
  SetLastErrorValue(5);
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(kProducerNotFound));
}

TEST_F(InitLib, LeavesABindingAloneWhenTheVariableIsMissingTheNextTime) {
  const HeldTarget target;
  Bind();
  SetVariable(kProducerVariable, nullptr);
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(kProducerNotFound));
  EXPECT_EQ(OpenTransportLayer(), 0);
  EXPECT_EQ(target.Script().calls, 2);
  SetVariable(kProducerVariable, ScriptedTargetPath().string().c_str());
  static_cast<void>(TakeLines());
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(ScriptedTargetPath()), kNoVersion,
                                       kInitializedAlready, kInitSucceeded));
}

TEST_F(InitLib, ReportsAMissingFileWithTheLoadersErrorAndSucceeds) {
  const std::string missing = (Folder() / "missing.cti").string();
  Prepare(missing);
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(missing), LoadErrorLine(126, missing)));
  EXPECT_EQ(OpenTransportLayer(), -1003);
}

TEST_F(InitLib, ReportsAMissingFileUnderItsExpandedPath) {
  SetVariable("VEXTREL_TEST_ROOT", Folder().string().c_str());
  Prepare("$(VEXTREL_TEST_ROOT)/missing.cti");
  EXPECT_EQ(proxy.GCInitLib(), 0);
  const std::string expanded = Folder().string() + "/missing.cti";
  EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(expanded), LoadErrorLine(126, expanded)));
}

TEST_F(InitLib, ReportsAFileThatIsNoModule) {
  const auto file = Folder() / "text.cti";
  WriteFile(file, std::string(5000, 'x'));
  Prepare(file);
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(file), LoadErrorLine(193, file.string())));
}

TEST_F(InitLib, ReportsAFolder) {
  const auto target = Folder() / "producers.cti";
  std::filesystem::create_directory(target);
  Prepare(target);
  EXPECT_EQ(proxy.GCInitLib(), 0);
  const std::vector<std::string> lines = TakeLines();
  ASSERT_EQ(lines.size(), 2);
  EXPECT_EQ(lines[0], LoadingLine(target));
  const int error = std::atoi(lines[1].substr(std::string("ERROR Error ").size()).c_str());
  EXPECT_GT(error, 0);
  EXPECT_EQ(lines[1], LoadErrorLine(error, target.string()));
}

TEST_F(InitLib, RefusesTheProxyItselfAsTheTarget) {
  Prepare(ProxyPath());
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(ProxyPath()), ItselfLine(ProxyPath().string())));
  EXPECT_EQ(OpenTransportLayer(), -1003);
  static_cast<void>(TakeLines());
  EXPECT_EQ(proxy.GCCloseLib(), -1003);
  EXPECT_THAT(TakeLines(), ElementsAre(kNotInitialized, kCloseNotImplemented));
  UnloadProxy();
  EXPECT_FALSE(IsModuleLoaded(ProxyPath())) << "it must not keep a reference to itself";
}

// The binding's tables outlive the refusal, as they outlive a load that fails; its module does not.
TEST_F(InitLib, RefusesTheProxyItselfWhileItIsBoundToAnotherTarget) {
  const HeldTarget target;
  Bind();
  UseTarget(ProxyPath());
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(ProxyPath()),
                                       "ERROR The GenTL producer dll is Vextrel itself: '" +
                                           ProxyPath().string() + "'"));
  EXPECT_EQ(OpenTransportLayer(), 0);
  EXPECT_EQ(proxy.TLClose(Handle(0x1000)), 0);
  static_cast<void>(TakeLines());
  target.Script().calls = 0;
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(kCloseSucceeded, kNotInitialized, kCloseSucceeded));
  EXPECT_EQ(target.Script().calls, 2);
  UnloadProxy();
  EXPECT_FALSE(IsModuleLoaded(ProxyPath()));
}

// A copy is another module to the loader, and refuses itself in its turn.
TEST_F(InitLib, DoesNotRecurseThroughACopyOfTheProxy) {
  const auto copy = Folder() / "copy.cti";
  std::filesystem::copy_file(ProxyPath(), copy);
  Prepare(copy);
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_EQ(OpenTransportLayer(), -1003);
  EXPECT_EQ(proxy.GCCloseLib(), -1003);
  EXPECT_FALSE(IsModuleLoaded(copy));
}

TEST_F(InitLib, StaysUnboundAfterAFailedLoad) {
  Prepare(Folder() / "missing.cti");
  EXPECT_EQ(proxy.GCInitLib(), 0);
  UseTarget(ScriptedTargetPath());
  static_cast<void>(TakeLines());
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(),
              ElementsAre(LoadingLine(ScriptedTargetPath()), kNoVersion, kInitSucceeded));
  EXPECT_EQ(OpenTransportLayer(), 0);
}

TEST_F(InitLib, ReturnsAndNamesTheTargetsFailure) {
  const HeldTarget target;
  Prepare();
  target.Script().result = GC_ERR_IO;
  EXPECT_EQ(proxy.GCInitLib(), -1010);
  EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(ScriptedTargetPath()), kNoVersion,
                                       "INFO GC_ERR_IO=GCInitLib(void)"));
}

TEST_F(InitLib, ShowsAResultThatHasNoName) {
  const HeldTarget target;
  Prepare();
  target.Script().result = -1016;
  EXPECT_EQ(proxy.GCInitLib(), -1016);
  EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(ScriptedTargetPath()), kNoVersion,
                                       "INFO (Unknown GC_ERROR: -1016)=GCInitLib(void)"));
}

TEST_F(InitLib, KeepsTheTargetBoundAndCountsAsCalledAfterTheTargetsFailure) {
  const HeldTarget target;
  Prepare();
  target.Script().result = GC_ERR_IO;
  EXPECT_EQ(proxy.GCInitLib(), -1010);
  target.Script().result = GC_ERR_SUCCESS;
  static_cast<void>(TakeLines());
  EXPECT_EQ(OpenTransportLayer(), 0);
  EXPECT_EQ(proxy.TLClose(Handle(0x1000)), 0);
  static_cast<void>(TakeLines());
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(kCloseSucceeded));
}

TEST_F(InitLib, CountsAsCalledWithoutTheTargetsGCInitLib) {
  const auto target = ScriptedTargetWithout("GCInitLib");
  Prepare(target);
  EXPECT_EQ(proxy.GCInitLib(), -1003);
  EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(target), kNoVersion,
                                       "ERROR GCInitLib not exported", kInitNotImplemented));
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(kCloseSucceeded));
}

TEST_F(InitLib, ReportsASecondCallAndForwardsIt) {
  const HeldTarget target;
  Prepare();
  EXPECT_EQ(proxy.GCInitLib(), 0);
  static_cast<void>(TakeLines());
  target.Script().result = GC_ERR_RESOURCE_IN_USE;
  EXPECT_EQ(proxy.GCInitLib(), -1004);
  EXPECT_THAT(TakeLines(),
              ElementsAre(LoadingLine(ScriptedTargetPath()), kNoVersion, kInitializedAlready,
                          "INFO GC_ERR_RESOURCE_IN_USE=GCInitLib(void)"));
  EXPECT_EQ(target.Script().calls, 2);
}

TEST_F(InitLib, ReportsASecondCallBehindTheMissingExports) {
  const auto target = ScriptedTargetWithout("EventKill");
  Bind(target);
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(),
              ElementsAre(LoadingLine(target), kNoVersion, "ERROR EventKill not exported",
                          kInitializedAlready, kInitSucceeded));
}

TEST_F(InitLib, ASecondCallBindsToTheTargetThatIsNamedThen) {
  Bind();
  const auto other = ScriptedTargetWithout("TLOpen");
  UseTarget(other);
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(other), kNoVersion, "ERROR TLOpen not exported",
                                       kInitializedAlready, kInitSucceeded));
  EXPECT_EQ(OpenTransportLayer(), -1003);
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  EXPECT_FALSE(IsModuleLoaded(other));
  EXPECT_TRUE(IsModuleLoaded(ScriptedTargetPath()));
}

TEST_F(InitLib, CallsTheTargetBehindTheReportAndBeforeItsLine) {
  const HeldTarget target;
  Bind();
  Watched::log_ = LogFile();
  target.Script().functions.GCInitLib = Watched::Look;
  EXPECT_EQ(proxy.GCInitLib(), 0);
  const std::vector<std::string> lines = LogLines();
  ASSERT_EQ(Watched::lines_.size(), lines.size() - 1);
  EXPECT_EQ(Watched::lines_.back(), kInitializedAlready);
  EXPECT_EQ(lines.back(), kInitSucceeded);
}

TEST_F(InitLib, ShowsPercentSignsOfAPathAsTheyAre) {
  const std::string missing = (Folder() / "100%s%n%p.cti").string();
  Prepare(missing);
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(missing), LoadErrorLine(126, missing)));
}

TEST_F(InitLib, MayBePairedWithGCCloseLibDozensOfTimes) {
  const HeldTarget target;
  Prepare();
  for (int round = 1; round <= 24; ++round) {
    SCOPED_TRACE(round);
    EXPECT_EQ(proxy.GCInitLib(), 0);
    EXPECT_EQ(OpenTransportLayer(), 0);
    EXPECT_EQ(proxy.TLClose(Handle(0x1000)), 0);
    EXPECT_EQ(proxy.GCCloseLib(), 0);
    EXPECT_EQ(target.Script().calls, 4 * round);
    EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(ScriptedTargetPath()), kNoVersion,
                                         kInitSucceeded, OpenLine("GC_ERR_SUCCESS"),
                                         "INFO GC_ERR_SUCCESS=TLClose(hTL=0x0000000000001000)",
                                         kCloseSucceeded));
  }
}

TEST_F(InitLib, IsNotNeededForACallNotToCrash) {
  UseLogFile();
  LoadProxy();
  ForEachFunction([this](const char* name, auto slot) {
    if (std::string(name) != "GCInitLib") {
      EXPECT_EQ(CallWithZeros(proxy.*slot), -1003) << name;
    }
  });
  EXPECT_THAT(LogLines(), IsEmpty());
}

TEST_F(InitLib, WorksAfterCallsThatCameTooEarly) {
  Prepare();
  EXPECT_EQ(OpenTransportLayer(), -1003);
  EXPECT_EQ(proxy.GCCloseLib(), -1003);
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(),
              ElementsAre(LoadingLine(ScriptedTargetPath()), kNoVersion, kInitSucceeded));
}

}  // namespace
}  // namespace vextrel_test
