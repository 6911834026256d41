// SPDX-License-Identifier: MIT
#include "launching/gentl_functions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "support/gentl_functions.h"

namespace vextrel_test {
namespace {

using namespace vextrel::program;  // NOLINT(google-build-using-namespace)
using testing::ElementsAre;
using testing::IsEmpty;

const GentlVersion& VersionOf(std::string_view function) {
  static const GentlVersion none;
  const auto& versions = GentlVersions();
  const auto found = std::ranges::find_if(versions, [&](const GentlVersion& version) {
    return std::ranges::count(version.functions, function) == 1;
  });
  return found == versions.end() ? none : *found;
}

TEST(GentlFunctions, HaveTheirVersions) {
  for (const std::string& name : OlderFunctionNames()) {
    const bool is11 = name == "GCGetNumPortURLs" || name == "GCGetPortURLInfo" ||
                      name == "GCReadPortStacked" || name == "GCWritePortStacked";
    EXPECT_EQ(VersionOf(name).name, is11 ? "1.1" : "1.0") << name;
  }
  for (const std::string& name : NewerFunctionNames()) {
    const std::string_view version = VersionOf(name).name;
    EXPECT_TRUE(version != "" && version != "1.0" && version != "1.1")
        << name << " has no version in program/launching/gentl_functions.cpp";
  }
}

TEST(GentlFunctions, AreThoseOfTheInterfaceOnceEach) {
  std::vector<std::string> all;
  for (const GentlVersion& version : GentlVersions()) {
    all.insert(all.end(), version.functions.begin(), version.functions.end());
  }
  EXPECT_THAT(all, testing::UnorderedElementsAreArray(AllFunctionNames()));
}

// What a version added doesn't change any more.
TEST(GentlFunctions, OfPublishedVersionsStayTheSame) {
  const auto& versions = GentlVersions();
  ASSERT_GE(versions.size(), 6U);
  EXPECT_EQ(versions[2].name, "1.3");
  EXPECT_THAT(versions[2].functions, ElementsAre("DSGetBufferChunkData"));
  EXPECT_EQ(versions[3].name, "1.4");
  EXPECT_THAT(versions[3].functions,
              ElementsAre("IFGetParentTL", "DevGetParentIF", "DSGetParentDev"));
  EXPECT_EQ(versions[4].name, "1.5");
  EXPECT_THAT(versions[4].functions, ElementsAre("DSGetNumBufferParts", "DSGetBufferPartInfo"));
  EXPECT_EQ(versions[5].name, "1.6");
  EXPECT_THAT(versions[5].functions,
              ElementsAre("DSAnnounceCompositeBuffer", "DSGetBufferInfoStacked",
                          "DSGetBufferPartInfoStacked", "DSGetNumFlows", "DSGetFlowInfo",
                          "DSGetNumBufferSegments", "DSGetBufferSegmentInfo"));
}

TEST(GentlFunctions, ThatAreLackingAreThoseThatArentExported) {
  const GentlVersion version = {"1.4", {"IFGetParentTL", "DevGetParentIF", "DSGetParentDev"}};
  EXPECT_THAT(Lacking(version, {"DSGetParentDev", "TLOpen"}),
              ElementsAre("IFGetParentTL", "DevGetParentIF"));
  EXPECT_THAT(Lacking(version, {"IFGetParentTL", "DevGetParentIF", "DSGetParentDev"}), IsEmpty());
}

TEST(GentlFunctions, AreNewerIfOnlyTheExtendedModuleHasThem) {
  EXPECT_EQ(FirstNewerFunction(OlderFunctionNames()), "");
  EXPECT_EQ(FirstNewerFunction({}), "");
  for (const std::string& name : NewerFunctionNames()) {
    EXPECT_EQ(FirstNewerFunction({"GCInitLib", name}), name);
  }
}

}  // namespace
}  // namespace vextrel_test
