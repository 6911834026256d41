// SPDX-License-Identifier: MIT
// The pattern that every forwarder follows, in this order: forward the call, render its values, log
// one line, update the registry, return the target's result.
//
// Thread-safe without a lock, except that the registry isn't (transport_layer_node.h). Kept: 43.
// After the call, whatever its result, what has to be rendered is read through the consumer's
// pointers, and an output that only the line shows is read if the line is written. A forwarder
// tests a pointer for null only where it says so.
#ifndef VEXTREL_EXPORTS_FORWARDING_H
#define VEXTREL_EXPORTS_FORWARDING_H

#include <utility>

#include "gentl/gentl.h"
#include "lifecycle/observation.h"
#include "lifecycle/proxy_state.h"
#include "registry/transport_layer_node.h"

namespace vextrel {

// Calls the target's function and returns its result, or GC_ERR_NOT_IMPLEMENTED if there's no
// target or it lacks the function. The target's exceptions reach the consumer.
template <typename Table, typename Function, typename... Arguments>
[[nodiscard]] GC_ERROR Forward(const Table* table, Function Table::*slot, Arguments... arguments) {
  if (table == nullptr || table->*slot == nullptr) {
    return GC_ERR_NOT_IMPLEMENTED;
  }
  return (table->*slot)(arguments...);
}

// Runs the registry step `step` iff the forwarded call succeeded.
template <typename Step>
void OnSuccess(GC_ERROR result, Step&& step) noexcept {
  if (result == GC_ERR_SUCCESS) {
    Observe(std::forward<Step>(step));
  }
}

// Returns the registry's root. Reports and returns null if no transport layer is open.
[[nodiscard]] TransportLayerNode* OpenedRegistry();

// Reports and forgets the events left on `source`, if there's a root. Swallows exceptions, because
// the caller must remove the record of `source` in any case.
void ReleaseEvents(EVENTSRC_HANDLE source) noexcept;

// Reports a null handle that IFClose or GCUnregisterEvent got.
void ReportIllegalInterface();

}  // namespace vextrel

#endif  // VEXTREL_EXPORTS_FORWARDING_H
