// SPDX-License-Identifier: MIT
// The proxy as a consumer sees it: the real module, loaded afresh for every test, with a real log
// file and a scripted target behind it.
#ifndef VEXTREL_TESTS_SUPPORT_PROXY_H
#define VEXTREL_TESTS_SUPPORT_PROXY_H

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "support/files.h"
#include "support/gentl_functions.h"
#include "support/held_target.h"
#include "support/paths.h"
#include "support/system.h"
#include "support/target_script.h"

namespace vextrel_test {

// Sixteen upper-case digits, as %p shows them; "0x" is not part of them.
[[nodiscard]] std::string Hex16(std::uint64_t value);
[[nodiscard]] std::string Hex16(const volatile void* address);

// A handle of that value.
[[nodiscard]] inline void* Handle(std::uintptr_t value) {
  return reinterpret_cast<void*>(value);
}

// Names of the variables.
inline constexpr const char* kProducerVariable = "GENICAM_GENTL64_VEXTREL_PRODUCER";
inline constexpr const char* kLogConfigVariable = "GENICAM_GENTL64_VEXTREL_LOG_CONFIG";

// Of the extended module: lets the timing of calls through, added to a root category.
inline constexpr const char* kWithTiming = "\ncategory.Vextrel.Timing=DEBUG";

// A root category that lets every line through but the timing of calls.
#if defined(VEXTREL_EXTENDED)
inline constexpr const char* kEverything = "INFO, file";
#else
inline constexpr const char* kEverything = "DEBUG, file";
#endif

// The lines that GCInitLib writes when it binds the scripted target.
[[nodiscard]] std::vector<std::string> StartLines();

// Every test gets an empty folder of its own and unset variables; nothing is loaded yet.
class ProxyFiles : public ::testing::Test {
 protected:
  ProxyFiles();
  ~ProxyFiles() override;

  // Writes the configuration and sets the variable that names it.
  void UseLog(const LogConfig& config) const;
  // Logs everything to LogFile() as "PRIORITY message". `rootCategory` is what log4cpp reads.
  void UseLogFile(const std::string& rootCategory = kEverything) const {
    UseLog({.file = LogFile(), .rootCategory = rootCategory});
  }
  static void UseTarget(const std::filesystem::path& path);

  [[nodiscard]] const std::filesystem::path& Folder() const { return folder_; }
  [[nodiscard]] std::filesystem::path LogFile() const { return folder_ / "trace.log"; }
  // The whole log file as lines; a byte dump of several lines counts as several.
  [[nodiscard]] std::vector<std::string> LogLines() const;
  // Those written since the last call.
  [[nodiscard]] std::vector<std::string> TakeLines();

  // Loads the proxy and fills `proxy` with its functions.
  void LoadProxy();
  // Returns the module to the loader, which unloads it.
  void UnloadProxy();

  GenTLFunctions proxy;

 private:
  std::filesystem::path folder_;
  std::unique_ptr<Module> module_;
  std::streamoff taken_ = 0;  // how much of the log was taken, in bytes
};

// Loaded, logging to a file, initialized and bound to the scripted target, with the start-up lines
// taken; `script` is what the target plays.
class BoundProxy : public ProxyFiles {
 private:
  HeldTarget target_;

 protected:
  TargetScript& script;

  explicit BoundProxy(const std::filesystem::path& target = ScriptedTargetPath());
  ~BoundProxy() override;

  // Opens a transport layer through the proxy: TLOpen succeeds and yields that handle. Takes its
  // line.
  void OpenTransportLayer(std::uintptr_t handle = 0x1000);
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_SUPPORT_PROXY_H
