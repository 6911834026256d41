// The events that are registered on one record of the handle registry.
//
// Not thread-safe: the registry takes no lock, see transport_layer_node.h.
#ifndef VEXTREL_REGISTRY_EVENT_REGISTRATION_H
#define VEXTREL_REGISTRY_EVENT_REGISTRATION_H

#include <log4cpp/Category.hh>
#include <vector>

#include "gentl/gentl.h"

namespace vextrel {

// One registered event.
struct EventRegistration {
  log4cpp::Category* logger;
  EVENT_HANDLE eventHandle;
  EVENT_TYPE eventType;
};

// The registrations of one record, in the order in which they were made; at most one of a type.
// Emptying or destroying the list forgets the registrations and leaves them allocated, on purpose;
// only Erase destroys one.
class EventList {
 public:
  // The registration of that type, or null. The event handle plays no part.
  [[nodiscard]] const EventRegistration* Find(EVENT_TYPE eventType) const;

  // Adds a registration; the caller has seen that there is none of that type.
  void Append(EVENT_TYPE eventType, EVENT_HANDLE eventHandle, log4cpp::Category* logger);

  // Destroys the registration of that type; false if there is none.
  [[nodiscard]] bool Erase(EVENT_TYPE eventType);

  // Forgets all registrations.
  void Clear() noexcept { registrations_.clear(); }

  [[nodiscard]] const std::vector<EventRegistration*>& registrations() const noexcept {
    return registrations_;
  }

 private:
  std::vector<EventRegistration*> registrations_;
};

}  // namespace vextrel

#endif  // VEXTREL_REGISTRY_EVENT_REGISTRATION_H
