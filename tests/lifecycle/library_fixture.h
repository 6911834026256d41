// What the tests of GCInitLib and GCCloseLib share: a proxy with a log file that is not initialised
// yet, and the lines that the two functions write.
#ifndef VEXTREL_TESTS_LIFECYCLE_LIBRARY_FIXTURE_H
#define VEXTREL_TESTS_LIFECYCLE_LIBRARY_FIXTURE_H

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <string>
#include <type_traits>
#include <vector>

#include "gentl/gentl.h"
#include "platform/platform.h"
#include "support/proxy.h"
#include "support/system.h"
#include "support/target_script.h"

namespace vextrel_test {

inline constexpr const char* kNotInitialized = "ERROR GCInitLib has not been called yet!";
inline constexpr const char* kInitializedAlready = "ERROR GCInitLib() has already been called!";
inline constexpr const char* kProducerNotFound =
    "ERROR Vextrel Environment variable GENICAM_GENTL64_VEXTREL_PRODUCER not found!";
inline constexpr const char* kTransportLayerLeftOpen =
    "ERROR Transport Layer was not closed down properly using TLClose()";
inline constexpr const char* kInitSucceeded = "INFO GC_ERR_SUCCESS=GCInitLib(void)";
inline constexpr const char* kCloseSucceeded = "INFO GC_ERR_SUCCESS=GCCloseLib(void)";
inline constexpr const char* kCloseNotImplemented = "INFO GC_ERR_NOT_IMPLEMENTED=GCCloseLib(void)";
inline constexpr const char* kNoVersion = "INFO GenTL producer file version: '0.0.0.0'";

[[nodiscard]] inline std::string LoadingLine(const std::string& target) {
  return "INFO Loading GenTL Producer '" + target + "'";
}
[[nodiscard]] inline std::string LoadingLine(const std::filesystem::path& target) {
  return LoadingLine(target.string());
}

// The error line of a target that could not be loaded.
[[nodiscard]] inline std::string LoadErrorLine(int error, const std::string& target) {
  return "ERROR Error " + std::to_string(error) + " when loading the GenTL producer dll: '" +
         target + "'";
}

// Gives a module's references back to the loader, those that the proxy has left on purpose.
inline void GiveBack(const std::filesystem::path& module) {
  while (IsModuleLoaded(module)) {
    const Module another(module);
    vextrel::platform::UnloadModule(another.handle());
  }
}

// A scripted target that the test holds beside the proxy, with nothing scripted yet.
class HeldTarget {
 public:
  explicit HeldTarget(const std::filesystem::path& path = ScriptedTargetPath())
      : module_(path), script_(module_.Find<GetTargetScriptFunction>("GetTargetScript")()) {
    Clear();
  }
  ~HeldTarget() { Clear(); }
  HeldTarget(const HeldTarget&) = delete;
  HeldTarget& operator=(const HeldTarget&) = delete;

  [[nodiscard]] TargetScript& script() const { return *script_; }
  [[nodiscard]] void* handle() const { return module_.handle(); }

 private:
  void Clear() const {
    script_->functions = {};
    script_->result = GC_ERR_SUCCESS;
    script_->calls = 0;
  }

  Module module_;
  TargetScript* script_;
};

// Calls a function with what any of the 51 takes: zeros, and the address of zeroed memory.
template <typename... Arguments>
[[nodiscard]] GC_ERROR CallWithZeros(GC_ERROR(GC_CALLTYPE* function)(Arguments...)) {
  alignas(std::max_align_t) std::array<char, 256> memory{};
  [[maybe_unused]] const auto argument =
      [&memory]<typename Argument>(std::type_identity<Argument>) -> Argument {
    if constexpr (std::is_pointer_v<Argument>) {
      return reinterpret_cast<Argument>(memory.data());
    } else {
      return 0;
    }
  };
  return function(argument(std::type_identity<Arguments>{})...);
}

class LibraryFixture : public ProxyFiles {
 protected:
  ~LibraryFixture() override {
    if (proxy.GCCloseLib != nullptr) {
      proxy.GCCloseLib();
    }
    UnloadProxy();
    GiveBack(ScriptedTargetPath());
    GiveBack(target_);
  }

  // The log file's variable, the target's, and the proxy loaded.
  void Prepare(const std::filesystem::path& target = ScriptedTargetPath()) {
    target_ = target;
    UseLogFile();
    UseTarget(target);
    LoadProxy();
  }

  // The same, initialised, and the lines of that taken off.
  void Bind(const std::filesystem::path& target = ScriptedTargetPath()) {
    Prepare(target);
    ASSERT_EQ(proxy.GCInitLib(), GC_ERR_SUCCESS);
    static_cast<void>(TakeLines());
  }

  // The lines written since the last call.
  [[nodiscard]] std::vector<std::string> TakeLines() {
    std::vector<std::string> lines = LogLines();
    const std::size_t before = std::min(taken_, lines.size());
    taken_ = lines.size();
    lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(before));
    return lines;
  }

  // TLOpen with a handle to write to, and the line that it writes with that result.
  [[nodiscard]] GC_ERROR OpenTransportLayer() { return proxy.TLOpen(&transportLayer_); }
  [[nodiscard]] std::string OpenLine(const std::string& result) const {
    return "INFO " + result + "=TLOpen(0x" + Hex16(&transportLayer_) + "->(pHandle=0x" +
           Hex16(transportLayer_) + "))";
  }

 private:
  TL_HANDLE transportLayer_ = Handle(0x1000);
  std::filesystem::path target_ = ScriptedTargetPath();
  std::size_t taken_ = 0;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_LIFECYCLE_LIBRARY_FIXTURE_H
