// SPDX-License-Identifier: MIT
// The record of a buffer that is announced on a data stream.
#ifndef VEXTREL_REGISTRY_BUFFER_NODE_H
#define VEXTREL_REGISTRY_BUFFER_NODE_H

#include <log4cpp/Category.hh>

#include "gentl/gentl.h"
#include "registry/event_list.h"
#include "registry/event_operations.h"
#include "registry/event_registration.h"
#include "registry/record_list.h"

namespace vextrel {

// Not thread-safe: the registry takes no lock, see transport_layer_node.h.
class BufferNode : public EventOperations<BufferNode> {
 public:
  BufferNode(BUFFER_HANDLE bufferHandle, log4cpp::Category* category)
      : logger(category), handle(bufferHandle) {}

  // Marks the buffer as waiting in the stream's queue, or not.
  void SetQueued(bool isQueued) noexcept { queued = isQueued; }

  // A buffer has no children.
  [[nodiscard]] static RecordList<BufferNode> Children() { return {}; }
  void ReportDuplicateEvent(EVENT_TYPE eventType) const;
  void ReportEvent(const EventRegistration& registration) const;

  log4cpp::Category* logger;
  BUFFER_HANDLE handle;
  bool queued = false;  // Kept: 14. Nothing reads it.
  EventList events;
};

}  // namespace vextrel

#endif  // VEXTREL_REGISTRY_BUFFER_NODE_H
