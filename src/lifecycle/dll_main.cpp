#include "calllog/line_log.h"
#include "calllog/logger_setup.h"
#include "lifecycle/proxy_state.h"
#include "platform/module_entry.h"
#include "platform/platform.h"

namespace vextrel {
namespace {

void CleanUpAtDetach() {
  log4cpp::Category* logger = proxyState.logger;
  if (proxyState.initialized && logger != nullptr) {
    LogError(*logger, "GCInitLib() was not called correctly!");
  }
  if (proxyState.registryRoot != nullptr) {
    if (logger != nullptr) {
      // Begins with "The", unlike the line of GCCloseLib, on purpose.
      LogError(*logger, "The Transport Layer was not closed down properly using TLClose()");
    }
    TearDownRegistry();
  }
  DeleteTables();
  platform::UnloadModule(proxyState.detachModule);
  proxyState.detachModule = nullptr;
}

}  // namespace

std::int32_t DllMain(void* moduleInstance, std::uint32_t reason, void* /*reserved*/) {
  proxyState.moduleInstance = moduleInstance;
  if (reason == kReasonProcessAttach) {
    if (proxyState.attachCount == 0) {
      proxyState.attachCount = 1;
    }
  } else if (reason == kReasonProcessDetach) {
    --proxyState.attachCount;
    if (proxyState.attachCount == 0) {
      // Nothing ever sets detachModule, on purpose: a library that is unloaded without GCCloseLib
      // leaves the target loaded and the registry alone.
      if (proxyState.detachModule != nullptr) {
        CleanUpAtDetach();
      }
      if (proxyState.logger != nullptr) {
        ShutdownLogging();
      }
    }
  }
  return 1;
}

}  // namespace vextrel
