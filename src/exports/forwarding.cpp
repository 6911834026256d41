#include "exports/forwarding.h"

#include "calllog/line_log.h"

namespace vextrel {

TransportLayerNode* OpenedRegistry() {
  if (proxyState.registryRoot == nullptr) {
    LogError(CallLogger(), "The Transport Layer has not been successfully opened!");
  }
  return proxyState.registryRoot;
}

void ReportIllegalInterface() {
  LogError(CallLogger(), "Illegal Interface handle!");
}

}  // namespace vextrel
