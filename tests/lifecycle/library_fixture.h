// SPDX-License-Identifier: MIT
// What the tests of GCInitLib and GCCloseLib share: a proxy with a log file that is not initialised
// yet, and the lines that the two functions write.
#ifndef VEXTREL_TESTS_LIFECYCLE_LIBRARY_FIXTURE_H
#define VEXTREL_TESTS_LIFECYCLE_LIBRARY_FIXTURE_H

#include <gmock/gmock.h>

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "gentl/gentl.h"
#include "model/log.h"
#include "model/messages.h"
#include "platform/platform.h"
#include "support/gentl_functions.h"
#include "support/proxy.h"
#include "support/system.h"

namespace vextrel_test {

inline const std::string kNotInitialized = model::Error(model::kNotInitialized);
inline const std::string kInitializedAlready = model::Error(model::kInitializedTwice);
inline const std::string kProducerNotFound = model::Error(model::kNoProducerVariable);
inline const std::string kTransportLayerLeftOpen = model::Error(model::kTransportLayerLeftOpen);
inline constexpr const char* kInitSucceeded = "INFO GC_ERR_SUCCESS=GCInitLib(void)";
inline constexpr const char* kInitNotImplemented = "INFO GC_ERR_NOT_IMPLEMENTED=GCInitLib(void)";
inline constexpr const char* kCloseSucceeded = "INFO GC_ERR_SUCCESS=GCCloseLib(void)";
inline constexpr const char* kCloseNotImplemented = "INFO GC_ERR_NOT_IMPLEMENTED=GCCloseLib(void)";
inline constexpr const char* kNoVersion = "INFO GenTL producer file version: '0.0.0.0'";

// Of the target with that path, which is shown byte by byte.
[[nodiscard]] inline std::string LoadingLine(const std::string& target) {
  return model::Line("INFO", model::kLoading, {target}).Text();
}
[[nodiscard]] inline std::string LoadingLine(const std::filesystem::path& target) {
  return LoadingLine(target.string());
}
[[nodiscard]] inline std::string LoadErrorLine(int error, const std::string& target) {
  return model::Error(model::kLoadFailed, {error, target});
}
[[nodiscard]] inline std::string ItselfLine(const std::string& target) {
  return "ERROR The GenTL producer dll is Vextrel itself: '" + target + "'";
}

// The lines about functions that a target with these exports lacks: one for each of the older, and
// one for all of the newer together.
[[nodiscard]] inline std::vector<std::string> MissingLines(const std::set<std::string>& exported) {
  std::vector<std::string> lines;
  std::string newer;
  for (const std::string& name : FunctionNames()) {
    if (exported.contains(name)) {
      continue;
    }
    if (IsNewer(name)) {
      newer += (newer.empty() ? "" : ", ") + name;
    } else {
      lines.push_back("ERROR " + NameInMissingLine(name) + " not exported");
    }
  }
  if (!newer.empty()) {
    lines.push_back("INFO Newer functions not exported: " + newer);
  }
  return lines;
}

// The functions that a target exports, by the file itself.
[[nodiscard]] inline std::set<std::string> ExportsOf(const std::filesystem::path& target) {
  const Module exports(target);
  std::set<std::string> exported;
  for (const std::string& name : FunctionNames()) {
    if (exports.FindAddress(name.c_str()) != nullptr) {
      exported.insert(name);
    }
  }
  return exported;
}

// Gives a module's references back to the loader, those that the proxy has left on purpose.
inline void GiveBack(const std::filesystem::path& module) {
  while (IsModuleLoaded(module)) {
    const Module another(module);
    vextrel::platform::UnloadModule(another.Handle());
  }
}

// What the log held while a function of the target ran.
struct Watched {
  static inline std::filesystem::path log_;
  static inline std::vector<std::string> lines_;
  static GC_ERROR Look() {
    lines_ = SplitLines(ReadFile(log_));
    return GC_ERR_SUCCESS;
  }
};

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

  // TLOpen with a handle to write to, and the line that it writes with that result.
  [[nodiscard]] GC_ERROR OpenTransportLayer() { return proxy.TLOpen(&transportLayer_); }
  [[nodiscard]] std::string OpenLine(const std::string& result) const {
    return "INFO " + result + "=TLOpen(0x" + Hex16(&transportLayer_) + "->(pHandle=0x" +
           Hex16(transportLayer_) + "))";
  }

 private:
  TL_HANDLE transportLayer_ = Handle(0x1000);
  std::filesystem::path target_ = ScriptedTargetPath();
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_LIFECYCLE_LIBRARY_FIXTURE_H
