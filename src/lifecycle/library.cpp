// SPDX-License-Identifier: MIT
#include "lifecycle/library.h"

#include <cstdint>

#include "calllog/line_log.h"
#include "calllog/log_text.h"
#include "calllog/logger_setup.h"
#include "calllog/value_names.h"
#include "environment/environment.h"
#include "gentl/gentl.h"
#include "lifecycle/edition.h"
#include "lifecycle/kept_targets.h"
#include "lifecycle/newer_functions.h"
#include "lifecycle/observation.h"
#include "lifecycle/proxy_state.h"
#include "lifecycle/timed_call.h"

namespace vextrel {
namespace {

// Kept: 4. Tables that an earlier GCInitLib left are overwritten and stay allocated.
void CreateTables() {
  proxyState.libTable = new LibFunctionTable;
  proxyState.tlTable = new TLFunctionTable;
  proxyState.ifTable = new IFFunctionTable;
  proxyState.devTable = new DevFunctionTable;
  proxyState.dsTable = new DSFunctionTable;
  proxyState.portTable = new PortFunctionTable;
  proxyState.eventTable = new EventFunctionTable;
}

void ResolveTables(platform::ModuleHandle module, log4cpp::Category& logger) {
  ResolveTable(*proxyState.libTable, module, logger);
  ResolveTable(*proxyState.tlTable, module, logger);
  ResolveTable(*proxyState.ifTable, module, logger);
  ResolveTable(*proxyState.devTable, module, logger);
  ResolveTable(*proxyState.dsTable, module, logger);
  ResolveTable(*proxyState.portTable, module, logger);
  ResolveTable(*proxyState.eventTable, module, logger);
  if constexpr (kIsExtended) {
    ResolveNewerFunctions(module, logger);
  }
}

}  // namespace

std::string GetProducerFileVersion(platform::ModuleHandle module) {
  const std::uint64_t version = platform::ModuleFileVersion(module);
  std::string text;
  for (unsigned shift = 64; shift > 0;) {
    shift -= 16;
    text += std::to_string((version >> shift) & 0xFFFFU);
    if (shift > 0) {
      text += '.';
    }
  }
  return text;
}

}  // namespace vextrel

using namespace vextrel;  // NOLINT(google-build-using-namespace): these two are C functions.

GC_ERROR GC_CALLTYPE GCInitLib(void) {
  GC_ERROR result = GC_ERR_NOT_IMPLEMENTED;
  ConfigureLogging();
  log4cpp::Category& logger = GetLogger("Vextrel");
  proxyState.logger = &logger;

  const std::string producer = ReadEnvironmentVariable("GENICAM_GENTL64_VEXTREL_PRODUCER");
  if (producer.empty()) {
    ReportError(logger, report::kProducerVariableNotFound);
    return GC_ERR_SUCCESS;  // Kept: 1. Here and below.
  }
  proxyState.targetPath = ExpandEnvReference(producer, false);
  ReportInfo(logger, report::kLoadingProducer, proxyState.targetPath);
  const platform::ModuleLoad load = platform::LoadModule(proxyState.targetPath.c_str());
  proxyState.targetModule = load.module;
  if (load.module == nullptr) {
    ReportError(logger, report::kProducerNotLoaded, load.error, proxyState.targetPath);
    return GC_ERR_SUCCESS;
  }
  if (platform::IsOwnModule(load.module)) {
    // Kept: 2. It would call itself forever. An easy mistake if both are in one folder.
    ReportError(logger, report::kProducerIsVextrel, proxyState.targetPath);
    platform::UnloadModule(load.module);
    proxyState.targetModule = nullptr;
    return GC_ERR_SUCCESS;
  }
  ReportInfo(logger, report::kProducerFileVersion, GetProducerFileVersion(load.module));

  CreateTables();
  if constexpr (kIsExtended) {
    StartTiming();
    KeepTarget(load.module, proxyState.targetPath);
  }
  ResolveTables(load.module, logger);
  if (proxyState.initialized) {
    ReportError(logger, report::kInitializedTwice);
  }
  if (proxyState.libTable->GCInitLib != nullptr) {
    result = proxyState.libTable->GCInitLib();
  }
  Observe([&] { LogCall(logger, line::kGCInitLib, GcErrorName(result)); });
  proxyState.initialized = true;
  return result;
}

GC_ERROR GC_CALLTYPE GCCloseLib(void) {
  GC_ERROR result = GC_ERR_NOT_IMPLEMENTED;
  if (!proxyState.initialized) {
    Observe([] { ReportError(CallLogger(), report::kNotInitialized); });
  }
  if (proxyState.libTable != nullptr && proxyState.libTable->GCCloseLib != nullptr) {
    result = proxyState.libTable->GCCloseLib();
  }
  // Unloading the target mustn't change the last error that the target's call left, either.
  const platform::LastErrorGuard guard;
  Observe([&] { LogCall(CallLogger(), line::kGCCloseLib, GcErrorName(result)); });
  if (proxyState.registryRoot != nullptr) {
    Observe([] { ReportError(CallLogger(), report::kTransportLayerLeftOpen); });
    TearDownRegistry();
  }
  proxyState.initialized = false;
  // Kept: 6. Whatever the result is.
  if (proxyState.targetModule != nullptr) {
    DeleteTables();
    platform::UnloadModule(proxyState.targetModule);
    proxyState.targetModule = nullptr;
  }
  return result;
}
