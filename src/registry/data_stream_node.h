// SPDX-License-Identifier: MIT
// The record of a data stream that is open on a device, and of the buffers announced on it.
#ifndef VEXTREL_REGISTRY_DATA_STREAM_NODE_H
#define VEXTREL_REGISTRY_DATA_STREAM_NODE_H

#include <cstddef>
#include <log4cpp/Category.hh>

#include "gentl/gentl.h"
#include "registry/buffer_node.h"
#include "registry/event_list.h"
#include "registry/event_operations.h"
#include "registry/event_registration.h"
#include "registry/record_list.h"

namespace vextrel {

// Not thread-safe: the registry takes no lock, see transport_layer_node.h.
class DataStreamNode : public EventOperations<DataStreamNode> {
 public:
  DataStreamNode(DS_HANDLE dsHandle, log4cpp::Category* category)
      : logger(category), handle(dsHandle) {}

  // Always returns true: a duplicate is reported and counts as success (Kept: 54).
  bool AddBuffer(BUFFER_HANDLE bufferHandle);
  // Returns false, and reports it, if the buffer isn't announced here.
  [[nodiscard]] bool RemoveBuffer(BUFFER_HANDLE bufferHandle);
  // Reports each buffer that is still announced, but not the buffers' own events.
  void ReportBuffers() const;

  // Returns false, without a line, if the buffer isn't announced here.
  bool SetBufferQueued(BUFFER_HANDLE bufferHandle, bool queued);
  // `data` is the `size` bytes that EventGetData delivered.
  void OnEventData(EVENT_HANDLE eventHandle, const void* data, std::size_t size);
  void OnFlushQueue(ACQ_QUEUE_TYPE operation);

  // Also stores the event handle in `lastEventHandle` if `source` is the stream itself.
  [[nodiscard]] bool AddEvent(EVENTSRC_HANDLE source, EVENT_TYPE eventType,
                              EVENT_HANDLE eventHandle);
  // Kept: 61. Doesn't look at the buffers.
  [[nodiscard]] bool ReleaseEvents(EVENTSRC_HANDLE source) { return ReleaseOwnEvents(source); }

  [[nodiscard]] const RecordList<BufferNode>& Children() const { return buffers; }
  void ReportDuplicateEvent(EVENT_TYPE eventType) const;
  void ReportEvent(const EventRegistration& registration) const;

  log4cpp::Category* logger;
  DS_HANDLE handle;
  // Kept: 63. That of the latest registration on the stream, whatever its type; stays when the
  // event is unregistered.
  EVENT_HANDLE lastEventHandle = nullptr;
  RecordList<BufferNode> buffers;
  EventList events;
};

}  // namespace vextrel

#endif  // VEXTREL_REGISTRY_DATA_STREAM_NODE_H
