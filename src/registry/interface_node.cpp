#include "registry/interface_node.h"

#include "calllog/line_log.h"
#include "calllog/value_names.h"

namespace vextrel {

bool InterfaceNode::AddDevice(DEV_HANDLE devHandle) {
  if (!AddRecord(devices, devHandle, logger)) {
    LogError(*logger,
             "Device object with the handle 0x%p has already been added on Interface with handle "
             "0x%p",
             devHandle, handle);
  }
  return true;
}

bool InterfaceNode::RemoveDevice(DEV_HANDLE devHandle) {
  const auto device = TakeRecord(devices, devHandle);
  if (device == nullptr) {
    LogError(*logger,
             "Device object with the handle 0x%p is not defined on Interface with handle 0x%p",
             devHandle, handle);
    return false;
  }
  device->ReportDataStreams();
  device->ReportEvents();
  return true;
}

void InterfaceNode::ReportDevices() const {
  for (const DeviceNode* device : devices) {
    LogError(*logger,
             "Device with handle 0x%p on interface 0x%p was not closed properly using DevClose()",
             device->handle, handle);
  }
}

bool InterfaceNode::AddDataStream(DEV_HANDLE devHandle, DS_HANDLE dsHandle) {
  DeviceNode* device = FindRecord(devices, devHandle);
  if (device == nullptr) {
    LogError(*logger,
             "Unable to add DataStream with handle 0x%p! Device with handle 0x%p on Interface "
             "0x%p was not found!",
             dsHandle, devHandle, handle);
    return true;
  }
  device->AddDataStream(dsHandle);
  return true;
}

bool InterfaceNode::RemoveDataStream(DS_HANDLE dsHandle) {
  if (OfferInOrder(devices,
                   [&](DeviceNode& device) { return device.RemoveDataStream(dsHandle); })) {
    return true;
  }
  LogError(*logger, "Unable to remove DataStream with handle 0x%p on any Device on Interface 0x%p!",
           dsHandle, handle);
  return false;
}

bool InterfaceNode::AddBuffer(DS_HANDLE dsHandle, BUFFER_HANDLE bufferHandle) {
  if (OfferInOrder(devices,
                   [&](DeviceNode& device) { return device.AddBuffer(dsHandle, bufferHandle); })) {
    return true;
  }
  LogError(*logger,
           "Unable to add Buffer with handle 0x%p! DataStream with handle 0x%p on Interface 0x%p "
           "was not found!",
           bufferHandle, dsHandle, handle);
  return false;
}

bool InterfaceNode::RemoveBuffer(DS_HANDLE dsHandle, BUFFER_HANDLE bufferHandle) {
  if (OfferInOrder(devices, [&](DeviceNode& device) {
        return device.RemoveBuffer(dsHandle, bufferHandle);
      })) {
    return true;
  }
  LogError(*logger, "Unable to remove Buffer with handle 0x%p on any Device on Interface 0x%p!",
           bufferHandle, handle);
  return false;
}

bool InterfaceNode::SetBufferQueued(BUFFER_HANDLE bufferHandle, bool queued) {
  return OfferInOrder(
      devices, [&](DeviceNode& device) { return device.SetBufferQueued(bufferHandle, queued); });
}

void InterfaceNode::OnFlushQueue(DS_HANDLE dsHandle, ACQ_QUEUE_TYPE operation) {
  for (DeviceNode* device : devices) {
    device->OnFlushQueue(dsHandle, operation);
  }
}

void InterfaceNode::ReportDuplicateEvent(EVENT_TYPE eventType) const {
  LogError(*logger, "The Event type %s has already been registered on Interface with handle 0x%p",
           EventTypeName(eventType), handle);
}

void InterfaceNode::ReportEvent(const EventRegistration& registration) const {
  LogWarn(*logger,
          "Event type %s with handle 0x%p on interface 0x%p was not unregistered directly using "
          "GCUnregisterEvent()",
          EventTypeName(registration.eventType), registration.eventHandle, handle);
}

}  // namespace vextrel
