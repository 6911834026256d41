// SPDX-License-Identifier: MIT
// What GCInitLib says of a target that lacks functions of GenTL 1.3 to 1.6.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "lifecycle/library_fixture.h"

namespace vextrel_test {
namespace {

using ::testing::ElementsAre;
using ::testing::StartsWith;

// A target with the 51 older functions alone, and one with every second of the newer.
std::filesystem::path OlderTarget() {
  return TargetPath("older_target");
}
std::filesystem::path SomeNewerTarget() {
  return TargetPath("some_newer_target");
}

class NewerFunctions : public LibraryFixture {
 protected:
  // GCInitLib's lines.
  [[nodiscard]] std::vector<std::string> LinesOfInit(const std::filesystem::path& target,
                                                     GC_ERROR result = GC_ERR_SUCCESS) {
    Prepare(target);
    EXPECT_EQ(proxy.GCInitLib(), result);
    return TakeLines();
  }
};

TEST_F(NewerFunctions, ThatAreAllThereAreNotMentioned) {
  EXPECT_THAT(LinesOfInit(ScriptedTargetPath()),
              ElementsAre(LoadingLine(ScriptedTargetPath()), kNoVersion, kInitSucceeded));
}

TEST_F(NewerFunctions, ThatAreAllMissingAreToldInOneLine) {
  EXPECT_THAT(
      LinesOfInit(OlderTarget()),
      ElementsAre(LoadingLine(OlderTarget()), kNoVersion,
                  "INFO Newer functions not exported: DSGetBufferChunkData, IFGetParentTL, "
                  "DevGetParentIF, DSGetParentDev, DSGetNumBufferParts, DSGetBufferPartInfo, "
                  "DSAnnounceCompositeBuffer, DSGetBufferInfoStacked, DSGetBufferPartInfoStacked, "
                  "DSGetNumFlows, DSGetFlowInfo, DSGetNumBufferSegments, DSGetBufferSegmentInfo",
                  kInitSucceeded));
}

TEST_F(NewerFunctions, ThatAreMissingInPartAreToldInOneLine) {
  EXPECT_THAT(LinesOfInit(SomeNewerTarget()),
              ElementsAre(LoadingLine(SomeNewerTarget()), kNoVersion,
                          "INFO Newer functions not exported: IFGetParentTL, DSGetParentDev, "
                          "DSGetBufferPartInfo, DSGetBufferInfoStacked, DSGetNumFlows, "
                          "DSGetNumBufferSegments",
                          kInitSucceeded));
}

TEST_F(NewerFunctions, OfWhichOneIsMissingAreToldWithoutAComma) {
  const std::filesystem::path target = ScriptedTargetWithout("DSGetBufferSegmentInfo");
  EXPECT_THAT(
      LinesOfInit(target),
      ElementsAre(LoadingLine(target), kNoVersion,
                  "INFO Newer functions not exported: DSGetBufferSegmentInfo", kInitSucceeded));
}

TEST_F(NewerFunctions, AreToldBehindTheErrorsAboutTheOlder) {
  const std::vector<std::string> lines = LinesOfInit(EmptyTargetPath(), GC_ERR_NOT_IMPLEMENTED);
  ASSERT_EQ(lines.size(), 2U + 51U + 2U);
  EXPECT_EQ(lines[52], "ERROR EventKill not exported");
  EXPECT_THAT(lines[53], StartsWith("INFO Newer functions not exported: DSGetBuffer"));
  EXPECT_EQ(lines[54], kInitNotImplemented);
}

TEST_F(NewerFunctions, AreNotToldWhereInfoIsSilent) {
  UseTarget(OlderTarget());
  UseLogFile("WARN, file");
  LoadProxy();
  EXPECT_EQ(proxy.GCInitLib(), GC_ERR_SUCCESS);
  EXPECT_THAT(LogLines(), ElementsAre());
}

TEST_F(NewerFunctions, OfATargetThatLacksThemAreNotImplemented) {
  Bind(OlderTarget());
  ForEachFunction([this](const std::string& name, auto slot) {
    if (IsNewer(name)) {
      EXPECT_EQ(CallWithZeros(proxy.*slot), GC_ERR_NOT_IMPLEMENTED) << name;
      EXPECT_THAT(TakeLines(),
                  ElementsAre(StartsWith("INFO GC_ERR_NOT_IMPLEMENTED=" + name + "(")));
    }
  });
}

// The same module, bound to one target after the other.
TEST_F(NewerFunctions, AreThoseOfTheLatestTarget) {
  Bind();
  std::uint32_t count = 0;
  EXPECT_EQ(proxy.DSGetNumFlows(Handle(0x4000), &count), GC_ERR_SUCCESS);
  EXPECT_EQ(proxy.GCCloseLib(), GC_ERR_SUCCESS);
  EXPECT_EQ(proxy.DSGetNumFlows(Handle(0x4000), &count), GC_ERR_NOT_IMPLEMENTED);
  UseTarget(SomeNewerTarget());
  EXPECT_EQ(proxy.GCInitLib(), GC_ERR_SUCCESS);
  EXPECT_EQ(proxy.DSGetNumFlows(Handle(0x4000), &count), GC_ERR_NOT_IMPLEMENTED);
  EXPECT_EQ(proxy.DSGetNumBufferParts(Handle(0x4000), Handle(0x5000), &count), GC_ERR_SUCCESS);
}

}  // namespace
}  // namespace vextrel_test
