// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include "platform/platform.h"
#include "support/proxy.h"

namespace vextrel_test {
namespace {

using vextrel::platform::FindExport;
using vextrel::platform::LoadModule;
using vextrel::platform::ModuleFileVersion;
using vextrel::platform::ModuleHandle;
using vextrel::platform::ModuleLoad;
using vextrel::platform::UnloadModule;

// ERROR_MOD_NOT_FOUND and ERROR_BAD_EXE_FORMAT.
constexpr std::uint32_t kModuleNotFound = 126;
constexpr std::uint32_t kBadModuleFormat = 193;

class PlatformModule : public ProxyFiles {
 protected:
  static ModuleLoad Load(const std::filesystem::path& path) {
    return LoadModule(path.string().c_str());
  }
  // The error of a load that has to fail.
  static std::uint32_t LoadError(const std::filesystem::path& path) {
    const ModuleLoad load = Load(path);
    EXPECT_EQ(load.module, nullptr) << path;
    return load.error;
  }
};

TEST_F(PlatformModule, IsLoadedUntilItIsUnloaded) {
  ASSERT_FALSE(IsModuleLoaded(ScriptedTargetPath()));
  const ModuleLoad load = Load(ScriptedTargetPath());
  ASSERT_NE(load.module, nullptr);
  EXPECT_EQ(load.error, 0U);
  EXPECT_TRUE(IsModuleLoaded(ScriptedTargetPath()));
  UnloadModule(load.module);
  EXPECT_FALSE(IsModuleLoaded(ScriptedTargetPath()));
}

TEST_F(PlatformModule, StaysLoadedForEachReference) {
  const ModuleLoad first = Load(ScriptedTargetPath());
  const ModuleLoad second = Load(ScriptedTargetPath());
  ASSERT_NE(first.module, nullptr);
  EXPECT_EQ(first.module, second.module);
  UnloadModule(first.module);
  EXPECT_TRUE(IsModuleLoaded(ScriptedTargetPath()));
  UnloadModule(second.module);
  EXPECT_FALSE(IsModuleLoaded(ScriptedTargetPath()));
}

TEST_F(PlatformModule, IsNotFoundIfTheFileIsMissing) {
  EXPECT_EQ(LoadError(Folder() / "missing.cti"), kModuleNotFound);
  EXPECT_EQ(LoadError(Folder() / "no folder" / "missing.cti"), kModuleNotFound);
}

TEST_F(PlatformModule, HasABadFormatIfTheFileIsAText) {
  WriteFile(Folder() / "text.cti", "This is a text and no module at all.\n");
  EXPECT_EQ(LoadError(Folder() / "text.cti"), kBadModuleFormat);
}

TEST_F(PlatformModule, HasABadFormatIfTheFileIsAModuleCutShort) {
  const std::filesystem::path cut = Folder() / "cut.cti";
  std::filesystem::copy_file(ScriptedTargetPath(), cut);
  std::filesystem::resize_file(cut, 40);
  EXPECT_EQ(LoadError(cut), kBadModuleFormat);
}

TEST_F(PlatformModule, LoadsThoughAnEarlierLoadFailed) {
  EXPECT_EQ(LoadError(Folder() / "missing.cti"), kModuleNotFound);
  const ModuleLoad load = Load(ScriptedTargetPath());
  ASSERT_NE(load.module, nullptr);
  EXPECT_EQ(load.error, 0U);
  UnloadModule(load.module);
}

TEST_F(PlatformModule, FindsTheExportsThatItHas) {
  const ModuleLoad load = Load(ScriptedTargetPath());
  ASSERT_NE(load.module, nullptr);
  for (const std::string& name : FunctionNames()) {
    EXPECT_NE(FindExport(load.module, name.c_str()), nullptr) << name;
  }
  auto* getScript =
      reinterpret_cast<GetTargetScriptFunction*>(FindExport(load.module, "GetTargetScript"));
  ASSERT_NE(getScript, nullptr);
  EXPECT_NE(getScript(), nullptr);
  UnloadModule(load.module);
}

TEST_F(PlatformModule, FindsNoExportThatItLacks) {
  const ModuleLoad load = Load(ScriptedTargetWithout("GCGetInfo"));
  ASSERT_NE(load.module, nullptr);
  EXPECT_EQ(FindExport(load.module, "GCGetInfo"), nullptr);
  EXPECT_EQ(FindExport(load.module, "gcinitlib"), nullptr);
  EXPECT_EQ(FindExport(load.module, ""), nullptr);
  EXPECT_NE(FindExport(load.module, "GCInitLib"), nullptr);
  UnloadModule(load.module);
}

// On Linux, the loader looks a name up in the libraries that the module links, too; on Windows, the
// module passes it on to another one.
TEST_F(PlatformModule, FindsExportsOfAnotherModuleOnlyIfItPassesThemOnItself) {
  const std::filesystem::path path = ScriptedTargetPath().parent_path() / "odd_target.cti";
  const Module odd(path);
  ASSERT_NE(odd.FindAddress("TLOpen"), nullptr);
  EXPECT_EQ(FindExport(odd.Handle(), "TLOpen") != nullptr, kOnWindows);
  // A handle of another path is a handle of the same module.
  const std::filesystem::path detour = path.parent_path() / ".." / "targets" / path.filename();
  const Module again(detour);
  EXPECT_EQ(FindExport(again.Handle(), "EventFlush"), odd.FindAddress("EventFlush"));
  EXPECT_NE(FindExport(again.Handle(), "EventFlush"), nullptr);
}

TEST_F(PlatformModule, FindsTheExportsOfEachOfTwoCopies) {
  const std::filesystem::path copy = Folder() / "copy.cti";
  std::filesystem::copy_file(ScriptedTargetPath(), copy);
  const Module first(ScriptedTargetPath());
  const Module second(copy);
  EXPECT_EQ(FindExport(first.Handle(), "TLOpen"), first.FindAddress("TLOpen"));
  EXPECT_EQ(FindExport(second.Handle(), "TLOpen"), second.FindAddress("TLOpen"));
  EXPECT_NE(FindExport(first.Handle(), "TLOpen"), FindExport(second.Handle(), "TLOpen"));
}

TEST_F(PlatformModule, HasTheFileVersionOfItsResources) {
  const ModuleLoad load = Load(ProxyPath());
  ASSERT_NE(load.module, nullptr);
  constexpr std::uint64_t kProjectVersion = std::uint64_t{VEXTREL_VERSION_MAJOR} << 48U |
                                            std::uint64_t{VEXTREL_VERSION_MINOR} << 32U |
                                            std::uint64_t{VEXTREL_VERSION_PATCH} << 16U;
  EXPECT_EQ(ModuleFileVersion(load.module), kOnWindows ? kProjectVersion : 0);
  UnloadModule(load.module);
}

TEST_F(PlatformModule, HasNoFileVersionWithoutResources) {
  const ModuleLoad load = Load(ScriptedTargetPath());
  ASSERT_NE(load.module, nullptr);
  EXPECT_EQ(ModuleFileVersion(load.module), 0U);
  UnloadModule(load.module);
}

}  // namespace
}  // namespace vextrel_test
