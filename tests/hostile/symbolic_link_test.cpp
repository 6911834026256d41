// SPDX-License-Identifier: MIT
// The proxy named as its own target through symbolic links, which only Linux can be relied on for.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "lifecycle/library_fixture.h"

namespace vextrel_test {
namespace {

using ::testing::ElementsAre;
using SymbolicLink = LibraryFixture;

TEST_F(SymbolicLink, ToTheProxyIsRefusedAsItsTarget) {
  const auto link = Folder() / "camera.cti";
  const auto linkToLink = Folder() / "other_camera.cti";
  std::filesystem::create_symlink(ProxyPath(), link);
  std::filesystem::create_symlink(link, linkToLink);
  Prepare(linkToLink);
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(linkToLink),
                                       "ERROR The GenTL producer dll is Vextrel itself: '" +
                                           linkToLink.string() + "'"));
  EXPECT_EQ(OpenTransportLayer(), -1003);
  UnloadProxy();
  EXPECT_FALSE(IsModuleLoaded(ProxyPath())) << "it must not keep a reference to itself";
}

TEST_F(SymbolicLink, ToItselfIsAFileThatIsMissing) {
  const auto link = Folder() / "camera.cti";
  std::filesystem::create_symlink(link, link);
  Prepare(link);
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(link), LoadErrorLine(126, link.string())));
}

}  // namespace
}  // namespace vextrel_test
