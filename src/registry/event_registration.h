// SPDX-License-Identifier: MIT
// One event registered on a record of the handle registry.
#ifndef VEXTREL_REGISTRY_EVENT_REGISTRATION_H
#define VEXTREL_REGISTRY_EVENT_REGISTRATION_H

#include <log4cpp/Category.hh>

#include "gentl/gentl.h"

namespace vextrel {

struct EventRegistration {
  log4cpp::Category* logger;
  EVENT_HANDLE eventHandle;
  EVENT_TYPE eventType;
};

}  // namespace vextrel

#endif  // VEXTREL_REGISTRY_EVENT_REGISTRATION_H
