// SPDX-License-Identifier: MIT
#include "registry/interface_node.h"

#include "calllog/line_log.h"
#include "calllog/log_text.h"
#include "calllog/value_names.h"

namespace vextrel {

bool InterfaceNode::AddDevice(DEV_HANDLE devHandle) {
  if (!AddRecord(devices, devHandle, logger)) {
    ReportError(*logger, report::kDeviceAddedTwice, devHandle, handle);
  }
  return true;
}

bool InterfaceNode::RemoveDevice(DEV_HANDLE devHandle) {
  const auto device = TakeRecord(devices, devHandle);
  if (device == nullptr) {
    ReportError(*logger, report::kDeviceNotDefined, devHandle, handle);
    return false;
  }
  device->ReportDataStreams();
  device->ReportEvents();
  return true;
}

void InterfaceNode::ReportDevices() const {
  for (const DeviceNode* device : devices) {
    ReportError(*logger, report::kDeviceLeftOpen, device->handle, handle);
  }
}

bool InterfaceNode::AddDataStream(DEV_HANDLE devHandle, DS_HANDLE dsHandle) {
  DeviceNode* device = FindRecord(devices, devHandle);
  if (device == nullptr) {
    ReportError(*logger, report::kDataStreamNotAddedOnInterface, dsHandle, devHandle, handle);
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
  ReportError(*logger, report::kDataStreamNotRemovedOnInterface, dsHandle, handle);
  return false;
}

bool InterfaceNode::AddBuffer(DS_HANDLE dsHandle, BUFFER_HANDLE bufferHandle) {
  if (OfferInOrder(devices,
                   [&](DeviceNode& device) { return device.AddBuffer(dsHandle, bufferHandle); })) {
    return true;
  }
  ReportError(*logger, report::kBufferNotAddedOnInterface, bufferHandle, dsHandle, handle);
  return false;
}

bool InterfaceNode::RemoveBuffer(DS_HANDLE dsHandle, BUFFER_HANDLE bufferHandle) {
  if (OfferInOrder(devices, [&](DeviceNode& device) {
        return device.RemoveBuffer(dsHandle, bufferHandle);
      })) {
    return true;
  }
  ReportError(*logger, report::kBufferNotRemovedOnInterface, bufferHandle, handle);
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
  ReportError(*logger, report::kEventAddedTwiceOnInterface, EventTypeName(eventType), handle);
}

void InterfaceNode::ReportEvent(const EventRegistration& registration) const {
  ReportWarn(*logger, report::kEventLeftOnInterface, EventTypeName(registration.eventType),
             registration.eventHandle, handle);
}

}  // namespace vextrel
