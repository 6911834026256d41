// A device that is open on an interface, with the data streams open on it.
#ifndef VEXTREL_REGISTRY_DEVICE_NODE_H
#define VEXTREL_REGISTRY_DEVICE_NODE_H

#include <cstddef>
#include <log4cpp/Category.hh>

#include "gentl/gentl.h"
#include "registry/data_stream_node.h"
#include "registry/event_operations.h"
#include "registry/event_registration.h"
#include "registry/record_list.h"

namespace vextrel {

// Not thread-safe: the registry takes no lock, see transport_layer_node.h.
class DeviceNode : public EventOperations<DeviceNode> {
 public:
  DeviceNode(DEV_HANDLE devHandle, log4cpp::Category* category)
      : logger(category), handle(devHandle) {}

  // Always true: a duplicate is reported here and counts as a success.
  bool AddDataStream(DS_HANDLE dsHandle);
  // False, with a line, if the stream is not open here.
  [[nodiscard]] bool RemoveDataStream(DS_HANDLE dsHandle);
  // One error for each stream that is still open; nothing below the streams.
  void ReportDataStreams() const;

  // Both false, with a line, if the stream is not open here.
  [[nodiscard]] bool AddBuffer(DS_HANDLE dsHandle, BUFFER_HANDLE bufferHandle);
  [[nodiscard]] bool RemoveBuffer(DS_HANDLE dsHandle, BUFFER_HANDLE bufferHandle);

  bool SetBufferQueued(BUFFER_HANDLE bufferHandle, bool queued);
  void OnEventData(EVENT_HANDLE eventHandle, const void* data, std::size_t size) {
    for (DataStreamNode* dataStream : dataStreams) {
      dataStream->OnEventData(eventHandle, data, size);
    }
  }
  void OnFlushQueue(DS_HANDLE dsHandle, ACQ_QUEUE_TYPE operation);

  [[nodiscard]] const RecordList<DataStreamNode>& Children() const { return dataStreams; }
  void ReportDuplicateEvent(EVENT_TYPE eventType) const;
  void ReportEvent(const EventRegistration& registration) const;

  log4cpp::Category* logger;
  DEV_HANDLE handle;
  RecordList<DataStreamNode> dataStreams;
  EventList events;
};

}  // namespace vextrel

#endif  // VEXTREL_REGISTRY_DEVICE_NODE_H
