// SPDX-License-Identifier: MIT
// The record of a device that is open on an interface, and of the data streams open on it.
#ifndef VEXTREL_REGISTRY_DEVICE_NODE_H
#define VEXTREL_REGISTRY_DEVICE_NODE_H

#include <cstddef>
#include <log4cpp/Category.hh>

#include "gentl/gentl.h"
#include "registry/data_stream_node.h"
#include "registry/event_list.h"
#include "registry/event_operations.h"
#include "registry/event_registration.h"
#include "registry/record_list.h"

namespace vextrel {

// Not thread-safe: the registry takes no lock, see transport_layer_node.h.
class DeviceNode : public EventOperations<DeviceNode> {
 public:
  DeviceNode(DEV_HANDLE devHandle, log4cpp::Category* category)
      : logger(category), handle(devHandle) {}

  // Always returns true: a duplicate is reported and counts as success (Kept: 54).
  bool AddDataStream(DS_HANDLE dsHandle);
  // Returns false, and reports it, if the stream isn't open here.
  [[nodiscard]] bool RemoveDataStream(DS_HANDLE dsHandle);
  // Reports each stream that is still open, and nothing below it.
  void ReportDataStreams() const;

  // Both return false, and report it, if the stream isn't open here.
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
