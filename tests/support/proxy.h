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

#include "support/gentl_functions.h"
#include "support/system.h"
#include "support/target_script.h"

namespace vextrel_test {

// Where the build has put the products and the targets.
[[nodiscard]] std::filesystem::path BuildFolder();
[[nodiscard]] std::filesystem::path ProxyPath();
// A producer whose every call does what a test tells it, see target_script.h.
[[nodiscard]] std::filesystem::path ScriptedTargetPath();
// The same, but without the export of that name.
[[nodiscard]] std::filesystem::path ScriptedTargetWithout(std::string_view name);
// A module with none of the 51 exports.
[[nodiscard]] std::filesystem::path EmptyTargetPath();

// "0x" is not part of what %p shows: sixteen upper-case digits.
[[nodiscard]] std::string Hex16(std::uint64_t value);
[[nodiscard]] std::string Hex16(const volatile void* address);

// A handle of that value.
[[nodiscard]] inline void* Handle(std::uintptr_t value) {
  return reinterpret_cast<void*>(value);
}

// Names of the variables.
inline constexpr const char* kProducerVariable = "GENICAM_GENTL64_VEXTREL_PRODUCER";
inline constexpr const char* kLogConfigVariable = "GENICAM_GENTL64_VEXTREL_LOG_CONFIG";

void WriteFile(const std::filesystem::path& path, std::string_view content);
// As text: line ends are "\n" on both platforms.
[[nodiscard]] std::string ReadFile(const std::filesystem::path& path);
[[nodiscard]] std::vector<std::string> SplitLines(std::string_view text);

// Every test gets an empty folder of its own and unset variables; nothing is loaded yet.
class ProxyFiles : public ::testing::Test {
 protected:
  ProxyFiles();
  ~ProxyFiles() override;

  // A configuration that logs everything to LogFile() as "PRIORITY message", and the variable that
  // names it. `rootCategory` as log4cpp reads it.
  void UseLogFile(const std::string& rootCategory = "DEBUG, file");
  void UseTarget(const std::filesystem::path& path);

  [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }
  [[nodiscard]] std::filesystem::path LogFile() const { return folder_ / "trace.log"; }
  // The whole log file as lines; a byte dump that is divided stands on several.
  [[nodiscard]] std::vector<std::string> LogLines() const;

  // Loads the proxy; `proxy` holds its functions from then on.
  void LoadProxy();
  // Gives the module back to the loader, which unloads it.
  void UnloadProxy();

  GenTLFunctions proxy;

 private:
  std::filesystem::path folder_;
  std::unique_ptr<Module> module_;
};

// Loaded, logging to a file, initialised and bound to the scripted target, with the start-up lines
// taken off; `script` is what the target plays.
class BoundProxy : public ProxyFiles {
 protected:
  explicit BoundProxy(const std::filesystem::path& target = ScriptedTargetPath());
  ~BoundProxy() override;

  // The lines written since the last call. One string a line of the log file.
  [[nodiscard]] std::vector<std::string> TakeLines();

  // Opens a transport layer through the proxy: TLOpen succeeds and yields that handle. The target
  // plays the script's own TLOpen again afterwards. Its line is taken off.
  void OpenTransportLayer(std::uintptr_t handle = 0x1000);

  TargetScript& script;

 private:
  explicit BoundProxy(std::unique_ptr<Module> target);

  std::unique_ptr<Module> target_;
  std::size_t taken_ = 0;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_SUPPORT_PROXY_H
