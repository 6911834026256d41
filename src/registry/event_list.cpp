// SPDX-License-Identifier: MIT
#include "registry/event_list.h"

#include <algorithm>
#include <memory>

namespace vextrel {

const EventRegistration* EventList::Find(EVENT_TYPE eventType) const {
  const auto found = std::ranges::find(registrations_, eventType, &EventRegistration::eventType);
  return found == registrations_.end() ? nullptr : *found;
}

void EventList::Append(EVENT_TYPE eventType, EVENT_HANDLE eventHandle, log4cpp::Category* logger) {
  auto registration =
      std::make_unique<EventRegistration>(EventRegistration{logger, eventHandle, eventType});
  registrations_.push_back(registration.get());
  registration.release();  // NOLINT(bugprone-unused-return-value): the list has it now.
}

bool EventList::Erase(EVENT_TYPE eventType) {
  const auto found = std::ranges::find(registrations_, eventType, &EventRegistration::eventType);
  if (found == registrations_.end()) {
    return false;
  }
  const std::unique_ptr<EventRegistration> erased(*found);
  registrations_.erase(found);
  return true;
}

}  // namespace vextrel
