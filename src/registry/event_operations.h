// SPDX-License-Identifier: MIT
// The event operations that the five levels of the handle registry share.
//
// Not thread-safe: the registry takes no lock, see transport_layer_node.h.
#ifndef VEXTREL_REGISTRY_EVENT_OPERATIONS_H
#define VEXTREL_REGISTRY_EVENT_OPERATIONS_H

#include "gentl/gentl.h"
#include "registry/event_list.h"
#include "registry/event_registration.h"
#include "registry/record_list.h"

namespace vextrel {

// Base of every record. `Level` has the fields `logger`, `handle` and `events`, and these members:
//   Children()                  its child list
//   ReportDuplicateEvent(type)  reports a type that is registered already
//   ReportEvent(registration)   reports a registration that was left behind
// A level hides an operation that it performs differently.
template <typename Level>
class EventOperations {
 public:
  // Registers the event on the record whose handle is `source`, here or below. Returns false if
  // there's no such record or it refuses a duplicate. A refusal doesn't end the search (Kept: 57).
  [[nodiscard]] bool AddEvent(EVENTSRC_HANDLE source, EVENT_TYPE eventType,
                              EVENT_HANDLE eventHandle) {
    if (source != Self().handle) {
      return OfferInOrder(Self().Children(), [&](auto& child) {
        return child.AddEvent(source, eventType, eventHandle);
      });
    }
    if (Self().events.Find(eventType) != nullptr) {
      Self().ReportDuplicateEvent(eventType);
      return false;
    }
    Self().events.Append(eventType, eventHandle, Self().logger);
    return true;
  }

  // Removes the first registration of that type, this record's own before its children's. Returns
  // false if there is none. Kept: 56. Its record may be another than the one that the consumer
  // named.
  [[nodiscard]] bool RemoveEvent(EVENT_TYPE eventType) {
    return Self().events.Erase(eventType) || OfferInOrder(Self().Children(), [&](auto& child) {
             return child.RemoveEvent(eventType);
           });
  }

  // Reports and forgets the registrations of the record whose handle is `source`, here or below.
  // Returns false, without a line, if there is no such record.
  [[nodiscard]] bool ReleaseEvents(EVENTSRC_HANDLE source) {
    return ReleaseOwnEvents(source) || OfferInOrder(Self().Children(), [&](auto& child) {
             return child.ReleaseEvents(source);
           });
  }

  // Writes a warning for each registration on this record.
  void ReportEvents() const {
    for (const EventRegistration* registration : Self().events.Registrations()) {
      Self().ReportEvent(*registration);
    }
  }

 protected:
  [[nodiscard]] bool ReleaseOwnEvents(EVENTSRC_HANDLE source) {
    if (source != Self().handle) {
      return false;
    }
    ReportEvents();
    Self().events.Clear();
    return true;
  }

 private:
  friend Level;
  EventOperations() = default;

  [[nodiscard]] Level& Self() { return static_cast<Level&>(*this); }
  [[nodiscard]] const Level& Self() const { return static_cast<const Level&>(*this); }
};

}  // namespace vextrel

#endif  // VEXTREL_REGISTRY_EVENT_OPERATIONS_H
