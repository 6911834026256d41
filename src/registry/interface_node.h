// SPDX-License-Identifier: MIT
// The record of an interface that is open on the transport layer, and of the devices open on it.
#ifndef VEXTREL_REGISTRY_INTERFACE_NODE_H
#define VEXTREL_REGISTRY_INTERFACE_NODE_H

#include <cstddef>
#include <log4cpp/Category.hh>

#include "gentl/gentl.h"
#include "registry/device_node.h"
#include "registry/event_list.h"
#include "registry/event_operations.h"
#include "registry/event_registration.h"
#include "registry/record_list.h"

namespace vextrel {

// Not thread-safe: the registry takes no lock, see transport_layer_node.h.
class InterfaceNode : public EventOperations<InterfaceNode> {
 public:
  InterfaceNode(IF_HANDLE ifHandle, log4cpp::Category* category)
      : logger(category), handle(ifHandle) {}

  // Always returns true: a duplicate is reported and counts as success (Kept: 54).
  bool AddDevice(DEV_HANDLE devHandle);
  // Returns false, and reports it, if the device isn't open here.
  [[nodiscard]] bool RemoveDevice(DEV_HANDLE devHandle);
  // Reports each device that is still open, and nothing below it.
  void ReportDevices() const;

  // Kept: 53. Always returns true, which ends the transport layer's search, even if the device
  // isn't open here; that is reported.
  [[nodiscard]] bool AddDataStream(DEV_HANDLE devHandle, DS_HANDLE dsHandle);
  // The next three return false, and report it, if no device here has the stream.
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
