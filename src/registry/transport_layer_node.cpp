// SPDX-License-Identifier: MIT
#include "registry/transport_layer_node.h"

#include "calllog/line_log.h"
#include "calllog/log_text.h"
#include "calllog/value_names.h"

namespace vextrel {

bool TransportLayerNode::AddInterface(IF_HANDLE ifHandle) {
  if (!AddRecord(interfaces, ifHandle, logger)) {
    ReportError(*logger, report::kInterfaceAddedTwice, ifHandle, handle);
    return false;
  }
  return true;
}

bool TransportLayerNode::RemoveInterface(IF_HANDLE ifHandle) {
  const auto interfaceNode = TakeRecord(interfaces, ifHandle);
  if (interfaceNode == nullptr) {
    ReportError(*logger, report::kInterfaceNotDefined, ifHandle, handle);
    return false;
  }
  interfaceNode->ReportDevices();
  interfaceNode->ReportEvents();
  return true;
}

void TransportLayerNode::ReportInterfaces() const {
  for (const InterfaceNode* interfaceNode : interfaces) {
    ReportError(*logger, report::kInterfaceLeftOpen, interfaceNode->handle, handle);
  }
}

bool TransportLayerNode::AddDevice(IF_HANDLE ifHandle, DEV_HANDLE devHandle) {
  InterfaceNode* interfaceNode = FindRecord(interfaces, ifHandle);
  if (interfaceNode == nullptr) {
    ReportError(*logger, report::kDeviceNotAdded, devHandle, ifHandle, handle);
    return true;
  }
  interfaceNode->AddDevice(devHandle);
  return true;
}

bool TransportLayerNode::RemoveDevice(DEV_HANDLE devHandle) {
  if (OfferInOrder(interfaces, [&](InterfaceNode& interfaceNode) {
        return interfaceNode.RemoveDevice(devHandle);
      })) {
    return true;
  }
  ReportError(*logger, report::kDeviceNotRemoved, devHandle, handle);
  return false;
}

bool TransportLayerNode::AddDataStream(DEV_HANDLE devHandle, DS_HANDLE dsHandle) {
  if (OfferInOrder(interfaces, [&](InterfaceNode& interfaceNode) {
        return interfaceNode.AddDataStream(devHandle, dsHandle);
      })) {
    return true;
  }
  ReportError(*logger, report::kDataStreamNotAdded, dsHandle, devHandle, handle);
  return false;
}

bool TransportLayerNode::RemoveDataStream(DS_HANDLE dsHandle) {
  if (OfferInOrder(interfaces, [&](InterfaceNode& interfaceNode) {
        return interfaceNode.RemoveDataStream(dsHandle);
      })) {
    return true;
  }
  ReportError(*logger, report::kDataStreamNotRemoved, dsHandle, handle);
  return false;
}

bool TransportLayerNode::AddBuffer(DS_HANDLE dsHandle, BUFFER_HANDLE bufferHandle) {
  if (OfferInOrder(interfaces, [&](InterfaceNode& interfaceNode) {
        return interfaceNode.AddBuffer(dsHandle, bufferHandle);
      })) {
    return true;
  }
  ReportError(*logger, report::kBufferNotAdded, bufferHandle, dsHandle, handle);
  return false;
}

bool TransportLayerNode::RemoveBuffer(DS_HANDLE dsHandle, BUFFER_HANDLE bufferHandle) {
  if (OfferInOrder(interfaces, [&](InterfaceNode& interfaceNode) {
        return interfaceNode.RemoveBuffer(dsHandle, bufferHandle);
      })) {
    return true;
  }
  ReportError(*logger, report::kBufferNotRemoved, bufferHandle, handle);
  return false;
}

bool TransportLayerNode::SetBufferQueued(BUFFER_HANDLE bufferHandle, bool queued) {
  return OfferInOrder(interfaces, [&](InterfaceNode& interfaceNode) {
    return interfaceNode.SetBufferQueued(bufferHandle, queued);
  });
}

void TransportLayerNode::OnFlushQueue(DS_HANDLE dsHandle, ACQ_QUEUE_TYPE operation) {
  for (InterfaceNode* interfaceNode : interfaces) {
    interfaceNode->OnFlushQueue(dsHandle, operation);
  }
}

bool TransportLayerNode::AddEvent(EVENTSRC_HANDLE source, EVENT_TYPE eventType,
                                  EVENT_HANDLE eventHandle) {
  if (EventOperations::AddEvent(source, eventType, eventHandle)) {
    return true;
  }
  if (source != handle) {
    ReportError(*logger, report::kEventSourceNotFound, EventTypeName(eventType), source);
  }
  return false;
}

bool TransportLayerNode::RemoveEvent(EVENTSRC_HANDLE source, EVENT_TYPE eventType) {
  if (source == handle) {
    if (events.Erase(eventType)) {
      return true;
    }
    ReportError(*logger, report::kEventNotRemovedOnTransportLayer, EventTypeName(eventType),
                source);
    return false;
  }
  if (OfferInOrder(interfaces, [&](InterfaceNode& interfaceNode) {
        return interfaceNode.RemoveEvent(eventType);
      })) {
    return true;
  }
  // Kept: 59.
  ReportError(*logger, report::kEventNotRemoved, EventTypeName(eventType), source);
  return false;
}

bool TransportLayerNode::ReleaseEventsOn(TransportLayerNode* root, EVENTSRC_HANDLE source) {
  return root != nullptr && root->ReleaseEvents(source);
}

void TransportLayerNode::ReportDuplicateEvent(EVENT_TYPE eventType) const {
  ReportError(*logger, report::kEventAddedTwiceOnTransportLayer, EventTypeName(eventType), handle);
}

void TransportLayerNode::ReportEvent(const EventRegistration& registration) const {
  ReportWarn(*logger, report::kEventLeftOnTransportLayer, EventTypeName(registration.eventType),
             registration.eventHandle, handle);
}

}  // namespace vextrel
