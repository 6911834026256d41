// The proxy named as its own target, by whatever name.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "lifecycle/library_fixture.h"

namespace vextrel_test {
namespace {

using ::testing::ElementsAre;

constexpr char kSeparator = kOnWindows ? '\\' : '/';

std::string ItselfLine(const std::string& target) {
  return "ERROR The GenTL producer dll is Vextrel itself: '" + target + "'";
}

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
                "." + kSeparator + "vextrel.cti");
}

TEST_F(OwnTarget, IsRefusedUnderARelativePath) {
  std::filesystem::current_path(BuildFolder());
  ExpectRefused(std::string(".") + kSeparator + "vextrel.cti");
}

TEST_F(OwnTarget, IsRefusedUnderARelativePathThatLeadsUpwards) {
  std::filesystem::current_path(folder());
  const std::string up = std::string("..") + kSeparator;
  ExpectRefused(up + up + up + "vextrel.cti");
}

TEST_F(OwnTarget, IsShownUnderItsExpandedPath) {
  SetVariable("VEXTREL_TEST_ROOT", BuildFolder().string().c_str());
  Prepare(std::string("$(VEXTREL_TEST_ROOT)") + kSeparator + "vextrel.cti");
  EXPECT_EQ(proxy.GCInitLib(), 0);
  const std::string expanded = BuildFolder().string() + kSeparator + "vextrel.cti";
  EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(expanded), ItselfLine(expanded)));
  ExpectUnbound();
  SetVariable("VEXTREL_TEST_ROOT", nullptr);
}

// Another file of the same content is another module, which finds itself named in its turn.
class CopyAsTarget : public OwnTarget {
 protected:
  [[nodiscard]] std::string Copy() const { return folder().string() + kSeparator + "copy.cti"; }

  // Both write to the same log file: what the copy writes stands where the target would.
  void ExpectRefusedByTheCopy() {
    EXPECT_EQ(proxy.GCInitLib(), 0);
    const std::vector<std::string> lines = TakeLines();
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_EQ(lines[0], LoadingLine(Copy()));
    EXPECT_EQ(lines[2], LoadingLine(Copy()));
    EXPECT_EQ(lines[3], ItselfLine(Copy()));
    EXPECT_EQ(lines[4], kInitSucceeded);
    EXPECT_EQ(OpenTransportLayer(), -1003);
    EXPECT_EQ(proxy.GCCloseLib(), -1003);
    EXPECT_FALSE(IsModuleLoaded(Copy()));
  }
};

TEST_F(CopyAsTarget, IsLoadedAndRefusesItself) {
  std::filesystem::copy_file(ProxyPath(), Copy());
  Prepare(Copy());
  ExpectRefusedByTheCopy();
}

// Linux knows a file by what it is, Windows by how it is called: one refuses, or the other does.
class LinkAsTarget : public CopyAsTarget {
 protected:
  void ExpectNoRecursion() {
    Prepare(Copy());
    EXPECT_EQ(proxy.GCInitLib(), 0);
    const std::vector<std::string> lines = TakeLines();
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines[0], LoadingLine(Copy()));
    EXPECT_THAT(lines, ::testing::Contains(ItselfLine(Copy())).Times(1));
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
