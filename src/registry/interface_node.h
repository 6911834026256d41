// An interface that is open on the transport layer, with the devices open on it.
#ifndef VEXTREL_REGISTRY_INTERFACE_NODE_H
#define VEXTREL_REGISTRY_INTERFACE_NODE_H

#include <cstddef>
#include <log4cpp/Category.hh>

#include "gentl/gentl.h"
#include "registry/device_node.h"
#include "registry/event_operations.h"
#include "registry/event_registration.h"
#include "registry/record_list.h"

namespace vextrel {

// Not thread-safe: the registry takes no lock, see transport_layer_node.h.
class InterfaceNode : public EventOperations<InterfaceNode> {
 public:
  InterfaceNode(IF_HANDLE ifHandle, log4cpp::Category* category)
      : logger(category), handle(ifHandle) {}

  // Always true: a duplicate is reported here and counts as a success.
  bool AddDevice(DEV_HANDLE devHandle);
  // False, with a line, if the device is not open here.
  [[nodiscard]] bool RemoveDevice(DEV_HANDLE devHandle);
  // One error for each device that is still open; nothing below the devices.
  void ReportDevices() const;

  // Always true, even if the device is not open here, which is reported: the transport layer
  // deliberately asks no further interface then.
  [[nodiscard]] bool AddDataStream(DEV_HANDLE devHandle, DS_HANDLE dsHandle);
  // The next three are false, with a line, if no device here has the stream.
  [[nodiscard]] bool RemoveDataStream(DS_HANDLE dsHandle);
  [[nodiscard]] bool AddBuffer(DS_HANDLE dsHandle, BUFFER_HANDLE bufferHandle);
  [[nodiscard]] bool RemoveBuffer(DS_HANDLE dsHandle, BUFFER_HANDLE bufferHandle);

  bool SetBufferQueued(BUFFER_HANDLE bufferHandle, bool queued);
  void OnEventData(EVENT_HANDLE eventHandle, const void* data, std::size_t size) {
    for (DeviceNode* device : devices) {
      device->OnEventData(eventHandle, data, size);
    }
  }
  void OnFlushQueue(DS_HANDLE dsHandle, ACQ_QUEUE_TYPE operation);

  [[nodiscard]] const RecordList<DeviceNode>& Children() const { return devices; }
  void ReportDuplicateEvent(EVENT_TYPE eventType) const;
  void ReportEvent(const EventRegistration& registration) const;

  log4cpp::Category* logger;
  IF_HANDLE handle;
  RecordList<DeviceNode> devices;
  EventList events;
};

}  // namespace vextrel

#endif  // VEXTREL_REGISTRY_INTERFACE_NODE_H
