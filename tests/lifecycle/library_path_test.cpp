// SPDX-License-Identifier: MIT
// The target's path and version, seen from outside.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "lifecycle/library_fixture.h"

namespace vextrel_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kRoot = "VEXTREL_TEST_ROOT";
constexpr char kSeparator = kOnWindows ? '\\' : '/';

class TargetPath : public LibraryFixture {
 protected:
  TargetPath() { SetVariable(kRoot, nullptr); }
  ~TargetPath() override { SetVariable(kRoot, nullptr); }

  // A copy of the scripted target. The name is what the loader gets, byte by byte.
  void CopyTarget(const std::string& name) const {
    std::ifstream from(ScriptedTargetPath(), std::ios::binary);
    std::ofstream to(Folder().string() + kSeparator + name, std::ios::binary);
    to << from.rdbuf();
    ASSERT_TRUE(to.good()) << name;
  }

  // The path of a copy of the target, brought to that length by steps that lead nowhere.
  [[nodiscard]] std::string PathOfLength(std::size_t length) const {
    std::string path = Folder().string() + kSeparator;
    std::string name = "target.cti";
    if ((length - path.size() - name.size()) % 2 != 0) {
      name = "targets.cti";
    }
    CopyTarget(name);
    while (path.size() + name.size() < length) {
      path += '.';
      path += kSeparator;
    }
    return path + name;
  }

  // What GCInitLib must do with the path: bind to the target if the system's loader takes such a
  // path, or else say which path it was, all of it.
  void ExpectTakenWhole(const std::string& path) {
    const bool loads = Module(path).IsLoaded();
    EXPECT_TRUE(loads || kOnWindows);
    EXPECT_EQ(proxy.GCInitLib(), 0);
    const auto lines = TakeLines();
    if (loads) {
      EXPECT_THAT(lines, ElementsAre(LoadingLine(path), kNoVersion, kInitSucceeded));
      EXPECT_EQ(OpenTransportLayer(), 0);
    } else {
      ASSERT_EQ(lines.size(), 2);
      EXPECT_EQ(lines[0], LoadingLine(path));
      EXPECT_THAT(lines[1], ::testing::StartsWith("ERROR Error "));
      EXPECT_THAT(lines[1],
                  ::testing::EndsWith(" when loading the GenTL producer dll: '" + path + "'"));
    }
  }

  void PrepareWith(const std::string& variable) {
    UseLogFile();
    SetVariable(kProducerVariable, variable.c_str());
    LoadProxy();
  }
};

TEST_F(TargetPath, MayHoldAReference) {
  CopyTarget("target.cti");
  SetVariable(kRoot, Folder().string().c_str());
  PrepareWith(std::string("$(VEXTREL_TEST_ROOT)") + kSeparator + "target.cti");
  EXPECT_EQ(proxy.GCInitLib(), 0);
  const std::string expanded = Folder().string() + kSeparator + "target.cti";
  EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(expanded), kNoVersion, kInitSucceeded));
}

TEST_F(TargetPath, MayBeAReferenceAlone) {
  SetVariable(kRoot, ScriptedTargetPath().string().c_str());
  PrepareWith("$(VEXTREL_TEST_ROOT)");
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(),
              ElementsAre(LoadingLine(ScriptedTargetPath()), kNoVersion, kInitSucceeded));
}

TEST_F(TargetPath, HasOnlyItsFirstReferenceExpanded) {
  const std::string missing = Folder().string() + kSeparator + "$(VEXTREL_TEST_ROOT).cti";
  SetVariable(kRoot, Folder().string().c_str());
  PrepareWith(std::string("$(VEXTREL_TEST_ROOT)") + kSeparator + "$(VEXTREL_TEST_ROOT).cti");
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(missing), LoadErrorLine(126, missing)));
}

TEST_F(TargetPath, KeepsAReferenceThatIsNotClosed) {
  CopyTarget("$(target.cti");
  const std::string path = Folder().string() + kSeparator + "$(target.cti";
  PrepareWith(path);
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(path), kNoVersion, kInitSucceeded));
}

TEST_F(TargetPath, MayHoldBlanks) {
  std::filesystem::create_directory(Folder() / "my producers");
  const std::string name = std::string("my producers") + kSeparator + " a  camera.cti";
  CopyTarget(name);
  const std::string path = Folder().string() + kSeparator + name;
  PrepareWith(path);
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(path), kNoVersion, kInitSucceeded));
}

TEST_F(TargetPath, MayHoldNonAsciiLetters) {
  CopyTarget("K\xC3\xA4mer\xC3\xA1.cti");
  const std::string path = Folder().string() + kSeparator + "K\xC3\xA4mer\xC3\xA1.cti";
  PrepareWith(path);
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(path), kNoVersion, kInitSucceeded));
}

TEST_F(TargetPath, MayComeFromAVariableOf256CharactersAndMore) {
  CopyTarget("target.cti");
  for (const std::size_t length : {255U, 256U, 257U, 300U}) {
    SCOPED_TRACE(length);
    std::string root = Folder().string();
    while (root.size() + 2 <= length) {
      root += kSeparator;
      root += '.';
    }
    if (root.size() < length) {
      root += kSeparator;
    }
    ASSERT_EQ(root.size(), length);
    SetVariable(kRoot, root.c_str());
    PrepareWith(std::string("$(VEXTREL_TEST_ROOT)") + kSeparator + "target.cti");
    ExpectTakenWhole(root + kSeparator + "target.cti");
    proxy.GCCloseLib();
    UnloadProxy();
    static_cast<void>(TakeLines());
  }
}

class LongTargetPath : public TargetPath, public ::testing::WithParamInterface<std::size_t> {};

TEST_P(LongTargetPath, IsTakenWhole) {
  const std::string path = PathOfLength(GetParam());
  ASSERT_EQ(path.size(), GetParam());
  PrepareWith(path);
  ExpectTakenWhole(path);
}

TEST_P(LongTargetPath, IsShownWholeIfThereIsNoSuchFile) {
  std::string path = Folder().string() + kSeparator;
  while (path.size() < GetParam()) {
    path += static_cast<char>('a' + path.size() % 23);
  }
  PrepareWith(path);
  EXPECT_EQ(proxy.GCInitLib(), 0);
  const auto lines = TakeLines();
  ASSERT_EQ(lines.size(), 2);
  EXPECT_EQ(lines[0], LoadingLine(path));
  EXPECT_THAT(lines[1], ::testing::StartsWith("ERROR Error "));
  EXPECT_THAT(lines[1],
              ::testing::EndsWith(" when loading the GenTL producer dll: '" + path + "'"));
}

INSTANTIATE_TEST_SUITE_P(AroundTheBuffer, LongTargetPath,
                         ::testing::Values(254, 255, 256, 300, 1022, 1023, 1024, 1025, 1100, 3000),
                         ::testing::PrintToStringParamName());

class UnresolvablePath : public TargetPath {
 protected:
  // The message of the exception that leaves GCInitLib.
  [[nodiscard]] std::string FailureOfInit() const {
    try {
      ADD_FAILURE() << "returned " << proxy.GCInitLib();
    } catch (const std::runtime_error& failure) {
      return failure.what();
    }
    return {};
  }
};

TEST_F(UnresolvablePath, LeavesGCInitLibAsARuntimeErrorAndIsNotLogged) {
  PrepareWith("$(VEXTREL_TEST_ROOT)/camera.cti");
  EXPECT_EQ(FailureOfInit(), "Environment variable 'VEXTREL_TEST_ROOT' not found");
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(UnresolvablePath, MayReferToAnEmptyName) {
  PrepareWith("$()/camera.cti");
  EXPECT_EQ(FailureOfInit(), "Environment variable '' not found");
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(UnresolvablePath, LeavesTheLibraryUnbound) {
  PrepareWith("$(VEXTREL_TEST_ROOT)/camera.cti");
  EXPECT_EQ(FailureOfInit(), "Environment variable 'VEXTREL_TEST_ROOT' not found");
  EXPECT_EQ(OpenTransportLayer(), -1003);
  EXPECT_THAT(TakeLines(), ElementsAre(OpenLine("GC_ERR_NOT_IMPLEMENTED")));
  EXPECT_EQ(proxy.GCCloseLib(), -1003);
  EXPECT_THAT(TakeLines(), ElementsAre(kNotInitialized, kCloseNotImplemented));
}

TEST_F(UnresolvablePath, LeavesABindingAlone) {
  const HeldTarget target;
  Bind();
  SetVariable(kProducerVariable, "$(VEXTREL_TEST_ROOT)/camera.cti");
  EXPECT_EQ(FailureOfInit(), "Environment variable 'VEXTREL_TEST_ROOT' not found");
  EXPECT_THAT(TakeLines(), IsEmpty());
  EXPECT_EQ(OpenTransportLayer(), 0);
  EXPECT_EQ(proxy.TLClose(Handle(0x1000)), 0);
  static_cast<void>(TakeLines());
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(kCloseSucceeded));
}

TEST_F(UnresolvablePath, DoesNotKeepTheNextInitFromWorking) {
  PrepareWith("$(VEXTREL_TEST_ROOT)");
  EXPECT_EQ(FailureOfInit(), "Environment variable 'VEXTREL_TEST_ROOT' not found");
  SetVariable(kRoot, ScriptedTargetPath().string().c_str());
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(),
              ElementsAre(LoadingLine(ScriptedTargetPath()), kNoVersion, kInitSucceeded));
}

class TargetVersion : public LibraryFixture,
                      public ::testing::WithParamInterface<std::pair<const char*, const char*>> {};

TEST_P(TargetVersion, IsShownInALineOfItsOwn) {
  const auto target = ScriptedTargetPath().parent_path() / GetParam().first;
  const std::string version = kOnWindows ? GetParam().second : "0.0.0.0";
  Prepare(target);
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(target),
                                       model::Line("INFO", model::kFileVersion, {version}).Text(),
                                       kInitSucceeded));
}

// Only Windows modules carry a version.
INSTANTIATE_TEST_SUITE_P(All, TargetVersion,
                         ::testing::Values(std::pair{"scripted_target.cti", "0.0.0.0"},
                                           std::pair{"versioned_target.cti", "1.2.3.4"},
                                           std::pair{"highly_versioned_target.cti",
                                                     "65535.0.256.32768"}));

}  // namespace
}  // namespace vextrel_test
