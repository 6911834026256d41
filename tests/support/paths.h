// SPDX-License-Identifier: MIT
// Where the build has put the products and the scripted targets.
#ifndef VEXTREL_TESTS_SUPPORT_PATHS_H
#define VEXTREL_TESTS_SUPPORT_PATHS_H

#include <filesystem>
#include <string>
#include <string_view>

#include "support/system.h"

namespace vextrel_test {

[[nodiscard]] inline std::filesystem::path BuildFolder() {
  return ProgramFolder().parent_path();
}
// The module that the tests are about, and what the names of its scripted targets begin with: these
// export what the module does. The other edition is the module that the tests aren't about.
#if defined(VEXTREL_EXTENDED)
inline constexpr const char* kModuleFile = "vextrel_extended.cti";
inline constexpr const char* kOtherModuleFile = "vextrel.cti";
inline constexpr const char* kScriptedTarget = "scripted_target_extended";
#else
inline constexpr const char* kModuleFile = "vextrel.cti";
inline constexpr const char* kOtherModuleFile = "vextrel_extended.cti";
inline constexpr const char* kScriptedTarget = "scripted_target";
#endif
[[nodiscard]] inline std::filesystem::path ProxyPath() {
  return BuildFolder() / kModuleFile;
}
[[nodiscard]] inline std::filesystem::path TargetPath(const std::string& name) {
  return ProgramFolder() / "targets" / (name + ".cti");
}
// A producer whose every call does what a test tells it, see target_script.h.
[[nodiscard]] inline std::filesystem::path ScriptedTargetPath() {
  return TargetPath(kScriptedTarget);
}
// The same, without the export of that name.
[[nodiscard]] inline std::filesystem::path ScriptedTargetWithout(std::string_view name) {
  return TargetPath(std::string(kScriptedTarget) + "_without_" + std::string(name));
}
// A module that exports no function of the interface.
[[nodiscard]] inline std::filesystem::path EmptyTargetPath() {
  return TargetPath(std::string(kScriptedTarget) + "_empty");
}

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_SUPPORT_PATHS_H
