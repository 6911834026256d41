// A data stream that is open on a device, with the buffers announced on it.
#ifndef VEXTREL_REGISTRY_DATA_STREAM_NODE_H
#define VEXTREL_REGISTRY_DATA_STREAM_NODE_H

#include <cstddef>
#include <log4cpp/Category.hh>

#include "gentl/gentl.h"
#include "registry/buffer_node.h"
#include "registry/event_operations.h"
#include "registry/event_registration.h"
#include "registry/record_list.h"

namespace vextrel {

// Not thread-safe: the registry takes no lock, see transport_layer_node.h.
class DataStreamNode : public EventOperations<DataStreamNode> {
 public:
  DataStreamNode(DS_HANDLE dsHandle, log4cpp::Category* category)
      : logger(category), handle(dsHandle) {}

  // Always true: a duplicate is reported here and counts as a success.
  bool AddBuffer(BUFFER_HANDLE bufferHandle);
  // False, with a line, if the buffer is not announced here.
  [[nodiscard]] bool RemoveBuffer(BUFFER_HANDLE bufferHandle);
  // One error for each buffer that is still announced; nothing of the buffers' own events.
  void ReportBuffers() const;

  // False, without a line, if the buffer is not announced here.
  bool SetBufferQueued(BUFFER_HANDLE bufferHandle, bool queued);
  // `data` is what EventGetData delivered, `size` bytes of it.
  void OnEventData(EVENT_HANDLE eventHandle, const void* data, std::size_t size);
  void OnFlushQueue(ACQ_QUEUE_TYPE operation);

  // Also remembers the event handle of what is registered on the stream itself.
  [[nodiscard]] bool AddEvent(EVENTSRC_HANDLE source, EVENT_TYPE eventType,
                              EVENT_HANDLE eventHandle);
  // The stream's own handle only: no descent to its buffers.
  [[nodiscard]] bool ReleaseEvents(EVENTSRC_HANDLE source) { return ReleaseOwnEvents(source); }

  [[nodiscard]] const RecordList<BufferNode>& Children() const { return buffers; }
  void ReportDuplicateEvent(EVENT_TYPE eventType) const;
  void ReportEvent(const EventRegistration& registration) const;

  log4cpp::Category* logger;
  DS_HANDLE handle;
  // Of the latest event registered on the stream, whatever its type; stays when that is gone.
  EVENT_HANDLE lastEventHandle = nullptr;
  RecordList<BufferNode> buffers;
  EventList events;
};

}  // namespace vextrel

#endif  // VEXTREL_REGISTRY_DATA_STREAM_NODE_H
