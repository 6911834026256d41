// SPDX-License-Identifier: MIT
// The proxy named as its own target, under various names.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "lifecycle/library_fixture.h"

namespace vextrel_test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;

constexpr char kSeparator = kOnWindows ? '\\' : '/';

class OwnTarget : public LibraryFixture {
 protected:
  ~OwnTarget() override { std::filesystem::current_path(ProgramFolder()); }

  // The path as it stands in the variable is the path as the lines show it.
  void ExpectRefused(const std::string& path) {
    Prepare(path);
    EXPECT_EQ(proxy.GCInitLib(), 0);
    EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(path), ItselfLine(path)));
    ExpectUnbound();
  }

  void ExpectUnbound() {
    EXPECT_EQ(OpenTransportLayer(), -1003);
    static_cast<void>(TakeLines());
    EXPECT_EQ(proxy.GCCloseLib(), -1003);
    EXPECT_THAT(TakeLines(), ElementsAre(kNotInitialized, kCloseNotImplemented));
    UnloadProxy();
    EXPECT_FALSE(IsModuleLoaded(ProxyPath())) << "it must not keep a reference to itself";
  }
};

TEST_F(OwnTarget, IsRefusedUnderItsOwnPath) {
  ExpectRefused(ProxyPath().string());
}

TEST_F(OwnTarget, IsRefusedUnderAPathWithSteps) {
  ExpectRefused(BuildFolder().string() + kSeparator + "tests" + kSeparator + ".." + kSeparator +
                "." + kSeparator + kModuleFile);
}

TEST_F(OwnTarget, IsRefusedUnderARelativePath) {
  std::filesystem::current_path(BuildFolder());
  ExpectRefused(std::string(".") + kSeparator + kModuleFile);
}

TEST_F(OwnTarget, IsRefusedUnderARelativePathThatLeadsUpwards) {
  std::filesystem::current_path(Folder());
  const std::string up = std::string("..") + kSeparator;
  ExpectRefused(up + up + up + kModuleFile);
}

TEST_F(OwnTarget, IsShownUnderItsExpandedPath) {
  SetVariable("VEXTREL_TEST_ROOT", BuildFolder().string().c_str());
  Prepare(std::string("$(VEXTREL_TEST_ROOT)") + kSeparator + kModuleFile);
  EXPECT_EQ(proxy.GCInitLib(), 0);
  const std::string expanded = BuildFolder().string() + kSeparator + kModuleFile;
  EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(expanded), ItselfLine(expanded)));
  ExpectUnbound();
  SetVariable("VEXTREL_TEST_ROOT", nullptr);
}

// A copy of the file is another module, which in turn finds itself named.
class CopyAsTarget : public OwnTarget {
 protected:
  [[nodiscard]] std::string Copy() const { return Folder().string() + kSeparator + "copy.cti"; }

  // Both write to the same log file, the other one in the middle.
  void ExpectRefusedByItself(const std::string& other) {
    Prepare(other);
    EXPECT_EQ(proxy.GCInitLib(), 0);
    const std::vector<std::string> lines = TakeLines();
    ASSERT_GE(lines.size(), 5U);
    EXPECT_EQ(lines.front(), LoadingLine(other));
    EXPECT_THAT(lines, Contains(LoadingLine(other)).Times(2));
    EXPECT_THAT(lines, Contains(ItselfLine(other)).Times(1));
    EXPECT_EQ(lines.back(), kInitSucceeded);
    EXPECT_EQ(OpenTransportLayer(), -1003);
    EXPECT_EQ(proxy.GCCloseLib(), -1003);
    UnloadProxy();
    EXPECT_FALSE(IsModuleLoaded(other));
  }
};

TEST_F(CopyAsTarget, IsLoadedAndRefusesItself) {
  std::filesystem::copy_file(ProxyPath(), Copy());
  ExpectRefusedByItself(Copy());
}

// So is the module of the other edition, which a folder with both offers.
TEST_F(CopyAsTarget, TheOtherEditionIsLoadedAndRefusesItself) {
  ExpectRefusedByItself((BuildFolder() / kOtherModuleFile).string());
}

// Linux identifies a module by its file, Windows by its name, so either the proxy or the copy
// refuses.
class LinkAsTarget : public CopyAsTarget {
 protected:
  void ExpectNoRecursion() {
    Prepare(Copy());
    EXPECT_EQ(proxy.GCInitLib(), 0);
    const std::vector<std::string> lines = TakeLines();
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines[0], LoadingLine(Copy()));
    EXPECT_THAT(lines, Contains(ItselfLine(Copy())).Times(1));
    EXPECT_EQ(OpenTransportLayer(), -1003);
    EXPECT_EQ(proxy.GCCloseLib(), -1003);
  }
};

TEST_F(LinkAsTarget, AHardLinkDoesNotLeadInCircles) {
  std::error_code error;
  std::filesystem::create_hard_link(ProxyPath(), Copy(), error);
  ASSERT_FALSE(error) << error.message();
  ExpectNoRecursion();
}

}  // namespace
}  // namespace vextrel_test
