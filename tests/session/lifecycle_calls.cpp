// SPDX-License-Identifier: MIT
// GCInitLib and GCCloseLib: binding to targets, also to none, twice and in the wrong order.
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "model/messages.h"
#include "session/calls.h"
#include "support/proxy.h"

namespace vextrel_test::session {
namespace {

// The order in which the entry points are looked up: that of the interface, but for two of a
// device.
std::vector<std::string> LookUpOrder() {
  std::vector<std::string> names;
  for (const std::string& name : FunctionNames()) {
    if (name == "DevGetPort") {
      names.insert(names.end(), {"DevClose", "DevGetInfo"});
    }
    if (name != "DevClose" && name != "DevGetInfo") {
      names.push_back(name);
    }
  }
  return names;
}

// ERROR_MOD_NOT_FOUND, on every platform.
constexpr std::int64_t kModuleNotFound = 126;

constexpr const char* kReferencedVariable = "VEXTREL_SESSION_TARGET";

void InitWithoutVariable(Session& session) {
  SetVariable(kProducerVariable, nullptr);
  session.log.Error(model::kNoProducerVariable);
  session.CallThrough(nullptr, GC_ERR_SUCCESS, &GenTLFunctions::GCInitLib);
}

void InitWithoutFile(Session& session) {
  const std::string path = (ScriptedTargetPath().parent_path() / "no_such_target.cti").string();
  SetVariable(kProducerVariable, path.c_str());
  session.isTargetLoaded = false;
  session.log.Info(model::kLoading, {path});
  session.log.Error(model::kLoadFailed, {kModuleNotFound, path});
  session.CallThrough(nullptr, GC_ERR_SUCCESS, &GenTLFunctions::GCInitLib);
}

void InitWithUnknownReference(Session& session) {
  SetVariable(kProducerVariable, "$(VEXTREL_SESSION_UNSET)/target.cti");
  SetVariable("VEXTREL_SESSION_UNSET", nullptr);
  std::string message;
  try {
    session.proxy.GCInitLib();
  } catch (const std::runtime_error& error) {
    message = error.what();
  }
  EXPECT_EQ(message, "Environment variable 'VEXTREL_SESSION_UNSET' not found");
}

void InitWith(Session& session, TargetFile& target, const std::string& variable) {
  SetVariable(kProducerVariable, variable.c_str());
  session.log.Info(model::kLoading, {target.path.string()});
  session.isTargetLoaded = true;
  session.log.Info(model::kFileVersion, {"0.0.0.0"});
  session.tables = &target;
  std::string missingNewer;
  for (const std::string& function : LookUpOrder()) {
    if (target.Has(function)) {
      continue;
    }
    if (IsNewer(function)) {
      missingNewer += (missingNewer.empty() ? "" : ", ") + function;
    } else {
      session.log.Error(NotExported(function).c_str());
    }
  }
  if (!missingNewer.empty()) {
    session.log.Info(kNewerNotExported, {missingNewer});
  }
  if (session.isInitialized) {
    session.log.Error(model::kInitializedTwice);
  }
  const GC_ERROR result = session.Call(&GenTLFunctions::GCInitLib);
  session.log.Info("%s=GCInitLib(void)", {model::kGcErrors.NameOf(result)});
  session.isInitialized = true;
}

void CallGCInitLib(Session& session) {
  const std::uint64_t choice = session.random.Below(100);
  if (choice < 4) {
    InitWithoutVariable(session);
  } else if (choice < 8) {
    InitWithoutFile(session);
  } else if (choice < 12) {
    InitWithUnknownReference(session);
  } else if (choice < 16) {
    TargetFile& target = session.targets.Empty();
    InitWith(session, target, target.path.string());
  } else if (choice < 50) {
    const std::vector<std::string> functions = LookUpOrder();
    const std::string& missing = functions[session.random.Below(functions.size())];
    TargetFile& target = session.targets.Without(missing);
    InitWith(session, target, target.path.string());
  } else if (choice < 60) {
    TargetFile& target = session.targets.Complete();
    const std::filesystem::path reference = std::string("$(") + kReferencedVariable + ").cti";
    SetVariable(kReferencedVariable, target.path.stem().string().c_str());
    InitWith(session, target, (target.path.parent_path() / reference).string());
  } else {
    TargetFile& target = session.targets.Complete();
    InitWith(session, target, target.path.string());
  }
}

void CallGCCloseLib(Session& session) {
  if (!session.isInitialized) {
    session.log.Error(model::kNotInitialized);
  }
  const GC_ERROR result = session.Call(&GenTLFunctions::GCCloseLib);
  session.log.Info("%s=GCCloseLib(void)", {model::kGcErrors.NameOf(result)});
  if (session.registry.IsOpen()) {
    session.log.Error(model::kTransportLayerLeftOpen);
    session.registry.Close();
  }
  session.isInitialized = false;
  if (session.isTargetLoaded) {
    session.tables = nullptr;
    session.isTargetLoaded = false;
  }
}

}  // namespace

const char* const kNewerNotExported = "Newer functions not exported: %s";

std::string NotExported(const std::string& function) {
  return (function == "EventGetData" ? "GEventGetData" : function) + " not exported";
}

std::vector<RandomCall> LifecycleCalls() {
  return {{"GCInitLib", &CallGCInitLib, 8}, {"GCCloseLib", &CallGCCloseLib, 1}};
}

}  // namespace vextrel_test::session
