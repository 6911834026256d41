// The pattern that every exported function follows, in this order: forward the call, render its
// values, log one line, take the registry's step, return the target's result.
//
// May run on any number of consumer threads at the same time; takes no lock. Output pointers are
// read unguarded after the call, null or not, unless a function says otherwise: that is the
// contract of the log.
#ifndef VEXTREL_EXPORTS_FORWARDING_H
#define VEXTREL_EXPORTS_FORWARDING_H

#include <utility>

#include "gentl/gentl.h"
#include "lifecycle/observation.h"
#include "lifecycle/proxy_state.h"
#include "registry/transport_layer_node.h"

namespace vextrel {

// The target's result, or GC_ERR_NOT_IMPLEMENTED if it has no such function or there is no target.
// What the target throws goes through to the consumer.
template <typename Table, typename Function, typename... Arguments>
[[nodiscard]] GC_ERROR Forward(const Table* table, Function Table::*slot, Arguments... arguments) {
  if (table == nullptr || table->*slot == nullptr) {
    return GC_ERR_NOT_IMPLEMENTED;
  }
  return (table->*slot)(arguments...);
}

// Runs a registry step, if the forwarded call succeeded.
template <typename Step>
void OnSuccess(GC_ERROR result, Step&& step) noexcept {
  if (result == GC_ERR_SUCCESS) {
    Observe(std::forward<Step>(step));
  }
}

// The registry's root; null, with a line, while no transport layer is open.
[[nodiscard]] TransportLayerNode* OpenedRegistry();

// The line for a null handle, which closing an interface and unregistering an event share.
void ReportIllegalInterface();

}  // namespace vextrel

#endif  // VEXTREL_EXPORTS_FORWARDING_H
