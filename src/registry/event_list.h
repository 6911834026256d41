// SPDX-License-Identifier: MIT
// The events registered on one record of the handle registry.
//
// Not thread-safe: the registry takes no lock, see transport_layer_node.h.
#ifndef VEXTREL_REGISTRY_EVENT_LIST_H
#define VEXTREL_REGISTRY_EVENT_LIST_H

#include <log4cpp/Category.hh>
#include <vector>

#include "gentl/gentl.h"
#include "registry/event_registration.h"

namespace vextrel {

// Registrations in the order they were made, at most one of each type. Kept: 52. Emptying or
// destroying a list forgets its registrations and leaves them allocated; only Erase destroys one.
class EventList {
 public:
  // Returns the registration of that type, or null.
  [[nodiscard]] const EventRegistration* Find(EVENT_TYPE eventType) const;

  // REQUIRES: there is no registration of that type.
  void Append(EVENT_TYPE eventType, EVENT_HANDLE eventHandle, log4cpp::Category* logger);

  // Destroys the registration of that type. Returns false if there's none.
  [[nodiscard]] bool Erase(EVENT_TYPE eventType);

  // Forgets all registrations.
  void Clear() noexcept { registrations_.clear(); }

  [[nodiscard]] const std::vector<EventRegistration*>& Registrations() const noexcept {
    return registrations_;
  }

 private:
  std::vector<EventRegistration*> registrations_;
};

}  // namespace vextrel

#endif  // VEXTREL_REGISTRY_EVENT_LIST_H
