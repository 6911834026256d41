// SPDX-License-Identifier: MIT
// What GCInitLib says of a target that lacks newer functions.
#include <gmock/gmock.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "lifecycle/library_fixture.h"

namespace vextrel_test {
namespace {

using ::testing::ElementsAre;
using ::testing::StartsWith;

// A target with the older functions alone, and one with every second of the newer.
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
  std::set<std::string> older;
  for (const std::string& name : OlderFunctionNames()) {
    older.insert(name);
  }
  EXPECT_EQ(ExportsOf(OlderTarget()), older);
  const std::vector<std::string> missing = MissingLines(older);
  ASSERT_EQ(missing.size(), 1U);
  EXPECT_THAT(missing[0], StartsWith("INFO Newer functions not exported: DSGetBufferChunkData, "
                                     "IFGetParentTL, DevGetParentIF, "));
  EXPECT_THAT(LinesOfInit(OlderTarget()),
              ElementsAre(LoadingLine(OlderTarget()), kNoVersion, missing[0], kInitSucceeded));
}

TEST_F(NewerFunctions, ThatAreMissingInPartAreToldInOneLine) {
  const std::set<std::string> exported = ExportsOf(SomeNewerTarget());
  const std::size_t newer = NewerFunctionNames().size();
  ASSERT_EQ(exported.size(), OlderFunctionNames().size() + (newer + 1) / 2);
  const std::vector<std::string> missing = MissingLines(exported);
  ASSERT_EQ(missing.size(), 1U);
  EXPECT_THAT(missing[0], StartsWith("INFO Newer functions not exported: IFGetParentTL, "
                                     "DSGetParentDev, "));
  EXPECT_THAT(LinesOfInit(SomeNewerTarget()),
              ElementsAre(LoadingLine(SomeNewerTarget()), kNoVersion, missing[0], kInitSucceeded));
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
  const std::vector<std::string> missing = MissingLines({});
  ASSERT_EQ(lines.size(), 2 + missing.size() + 1);
  EXPECT_TRUE(std::equal(missing.begin(), missing.end(), lines.begin() + 2));
  EXPECT_EQ(lines[lines.size() - 3], "ERROR EventKill not exported");
  EXPECT_THAT(lines[lines.size() - 2],
              StartsWith("INFO Newer functions not exported: DSGetBuffer"));
  EXPECT_EQ(lines.back(), kInitNotImplemented);
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
