// SPDX-License-Identifier: MIT
#include "lifecycle/dll_main.h"

#include "calllog/line_log.h"
#include "calllog/log_text.h"
#include "calllog/logger_setup.h"
#include "lifecycle/edition.h"
#include "lifecycle/kept_targets.h"
#include "lifecycle/proxy_state.h"
#include "platform/platform.h"

namespace vextrel {
namespace {

void CleanUpAtDetach() {
  log4cpp::Category* logger = proxyState.logger;
  if (proxyState.initialized && logger != nullptr) {
    ReportError(*logger, report::kDetachedWhileInitialized);
  }
  if (proxyState.registryRoot != nullptr) {
    if (logger != nullptr) {
      // Kept: 13.
      ReportError(*logger, report::kTransportLayerLeftOpenAtDetach);
    }
    TearDownRegistry();
  }
  DeleteTables();
  platform::UnloadModule(proxyState.detachModule);
  proxyState.detachModule = nullptr;
}

}  // namespace

std::int32_t DllMain(void* moduleInstance, std::uint32_t reason, [[maybe_unused]] void* reserved) {
  proxyState.moduleInstance = moduleInstance;
  if (reason == kModuleLoaded) {
    if (proxyState.attachCount == 0) {
      proxyState.attachCount = 1;
    }
  } else if (reason == kModuleUnloaded) {
    --proxyState.attachCount;
    if (proxyState.attachCount == 0) {
      // Kept: 12. Never true: unloading without GCCloseLib leaves target and registry alone.
      if (proxyState.detachModule != nullptr) {
        CleanUpAtDetach();
      }
      if (proxyState.logger != nullptr) {
        ShutdownLogging();
      }
      if constexpr (kIsExtended) {
        if (reserved == nullptr) {
          ReleaseKeptTargets();
        }
      }
    }
  }
  return 1;
}

}  // namespace vextrel
