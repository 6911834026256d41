#include "lifecycle/library.h"

#include <cstdint>

#include "calllog/line_log.h"
#include "calllog/logger_setup.h"
#include "calllog/value_names.h"
#include "gentl/gentl.h"
#include "lifecycle/environment.h"
#include "lifecycle/observation.h"
#include "lifecycle/proxy_state.h"

namespace vextrel {
namespace {

// Tables that an earlier GCInitLib left are overwritten and stay allocated, on purpose.
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
    LogError(logger, "Vextrel Environment variable GENICAM_GENTL64_VEXTREL_PRODUCER not found!");
    return GC_ERR_SUCCESS;  // On purpose, here and below: a consumer goes on without a producer.
  }
  proxyState.targetPath = ExpandEnvReference(producer, false);
  LogInfo(logger, "Loading GenTL Producer '%s'", proxyState.targetPath);
  const platform::ModuleLoad load = platform::LoadModule(proxyState.targetPath.c_str());
  proxyState.targetModule = load.module;
  if (load.module == nullptr) {
    LogError(logger, "Error %d when loading the GenTL producer dll: '%s'", load.error,
             proxyState.targetPath);
    return GC_ERR_SUCCESS;
  }
  if (platform::IsOwnModule(load.module)) {
    // The target would be called for ever: an easy mistake where both lie in one folder.
    LogError(logger, "The GenTL producer dll is Vextrel itself: '%s'", proxyState.targetPath);
    platform::UnloadModule(load.module);
    proxyState.targetModule = nullptr;
    return GC_ERR_SUCCESS;
  }
  LogInfo(logger, "GenTL producer file version: '%s'", GetProducerFileVersion(load.module));

  CreateTables();
  ResolveTables(load.module, logger);
  if (proxyState.initialized) {
    LogError(logger, "GCInitLib() has already been called!");
  }
  if (proxyState.libTable->GCInitLib != nullptr) {
    result = proxyState.libTable->GCInitLib();
  }
  Observe([&] { LogInfo(logger, "%s=GCInitLib(void)", GcErrorName(result)); });
  proxyState.initialized = true;
  return result;
}

GC_ERROR GC_CALLTYPE GCCloseLib(void) {
  GC_ERROR result = GC_ERR_NOT_IMPLEMENTED;
  if (!proxyState.initialized) {
    Observe([] { LogError(CallLogger(), "GCInitLib has not been called yet!"); });
  }
  if (proxyState.libTable != nullptr && proxyState.libTable->GCCloseLib != nullptr) {
    result = proxyState.libTable->GCCloseLib();
  }
  // Unloading the target is ours, too: it must not disturb what the target's call left behind.
  const platform::LastErrorGuard guard;
  Observe([&] { LogInfo(CallLogger(), "%s=GCCloseLib(void)", GcErrorName(result)); });
  if (proxyState.registryRoot != nullptr) {
    Observe([] {
      LogError(CallLogger(), "Transport Layer was not closed down properly using TLClose()");
    });
    TearDownRegistry();
  }
  proxyState.initialized = false;
  if (proxyState.targetModule != nullptr) {
    DeleteTables();
    platform::UnloadModule(proxyState.targetModule);
    proxyState.targetModule = nullptr;
  }
  return result;
}
