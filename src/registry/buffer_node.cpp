// SPDX-License-Identifier: MIT
#include "registry/buffer_node.h"

#include "calllog/line_log.h"
#include "calllog/log_text.h"
#include "calllog/value_names.h"

namespace vextrel {

void BufferNode::ReportDuplicateEvent(EVENT_TYPE eventType) const {
  ReportError(*logger, report::kEventAddedTwiceOnBuffer, EventTypeName(eventType), handle);
}

void BufferNode::ReportEvent(const EventRegistration& registration) const {
  ReportWarn(*logger, report::kEventLeftOnBuffer, EventTypeName(registration.eventType),
             registration.eventHandle, handle);
}

}  // namespace vextrel
