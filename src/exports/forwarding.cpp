// SPDX-License-Identifier: MIT
#include "exports/forwarding.h"

#include "calllog/line_log.h"
#include "calllog/log_text.h"

namespace vextrel {

TransportLayerNode* OpenedRegistry() {
  if (proxyState.registryRoot == nullptr) {
    ReportError(CallLogger(), report::kTransportLayerNotOpened);
  }
  return proxyState.registryRoot;
}

void ReleaseEvents(EVENTSRC_HANDLE source) noexcept {
  Observe([&] { TransportLayerNode::ReleaseEventsOn(proxyState.registryRoot, source); });
}

void ReportIllegalInterface() {
  ReportError(CallLogger(), report::kIllegalInterface);
}

}  // namespace vextrel
