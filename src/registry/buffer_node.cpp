#include "registry/buffer_node.h"

#include "calllog/line_log.h"
#include "calllog/value_names.h"

namespace vextrel {

void BufferNode::ReportDuplicateEvent(EVENT_TYPE eventType) const {
  LogError(*logger, "The event type %s has already been registered on buffer with handle 0x%p",
           EventTypeName(eventType), handle);
}

void BufferNode::ReportEvent(const EventRegistration& registration) const {
  LogWarn(*logger,
          "Event type %s with handle 0x%p on Buffer 0x%p was not unregistered directly using "
          "GCUnregisterEvent()",
          EventTypeName(registration.eventType), registration.eventHandle, handle);
}

}  // namespace vextrel
