// What the five levels of the handle registry share in dealing with events.
//
// Not thread-safe: the registry takes no lock, see transport_layer_node.h.
#ifndef VEXTREL_REGISTRY_EVENT_OPERATIONS_H
#define VEXTREL_REGISTRY_EVENT_OPERATIONS_H

#include "gentl/gentl.h"
#include "registry/event_registration.h"
#include "registry/record_list.h"

namespace vextrel {

// Base of every record. `Level` has the fields `logger`, `handle` and `events`, and says what makes
// it different:
//   Children()                  its child list
//   ReportDuplicateEvent(type)  the line for a type that is registered already
//   ReportEvent(registration)   the line for a registration that was left behind
// A level hides an operation that it does otherwise.
template <typename Level>
class EventOperations {
 public:
  // Registers the event on the record whose handle is `source`, here or below; false if there is
  // none or it refuses a duplicate. A refusal does not end the walk over the siblings.
  [[nodiscard]] bool AddEvent(EVENTSRC_HANDLE source, EVENT_TYPE eventType,
                              EVENT_HANDLE eventHandle) {
    if (source != level().handle) {
      return OfferInOrder(level().Children(), [&](auto& child) {
        return child.AddEvent(source, eventType, eventHandle);
      });
    }
    if (level().events.Find(eventType) != nullptr) {
      level().ReportDuplicateEvent(eventType);
      return false;
    }
    level().events.Append(eventType, eventHandle, level().logger);
    return true;
  }

  // Removes the first registration of that type, this record's own before its children's. No
  // handle plays a part, on purpose: the registration removed may be another record's.
  [[nodiscard]] bool RemoveEvent(EVENT_TYPE eventType) {
    return level().events.Erase(eventType) || OfferInOrder(level().Children(), [&](auto& child) {
             return child.RemoveEvent(eventType);
           });
  }

  // Reports and forgets the registrations of the record whose handle is `source`, here or below;
  // false, without a line, if there is none.
  [[nodiscard]] bool ReleaseEvents(EVENTSRC_HANDLE source) {
    return ReleaseOwnEvents(source) || OfferInOrder(level().Children(), [&](auto& child) {
             return child.ReleaseEvents(source);
           });
  }

  // One warning for each registration on this very record.
  void ReportEvents() const {
    for (const EventRegistration* registration : level().events.registrations()) {
      level().ReportEvent(*registration);
    }
  }

 protected:
  [[nodiscard]] bool ReleaseOwnEvents(EVENTSRC_HANDLE source) {
    if (source != level().handle) {
      return false;
    }
    ReportEvents();
    level().events.Clear();
    return true;
  }

 private:
  friend Level;
  EventOperations() = default;

  [[nodiscard]] Level& level() { return static_cast<Level&>(*this); }
  [[nodiscard]] const Level& level() const { return static_cast<const Level&>(*this); }
};

}  // namespace vextrel

#endif  // VEXTREL_REGISTRY_EVENT_OPERATIONS_H
