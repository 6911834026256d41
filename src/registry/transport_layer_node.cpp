#include "registry/transport_layer_node.h"

#include "calllog/line_log.h"
#include "calllog/value_names.h"

namespace vextrel {

bool TransportLayerNode::AddInterface(IF_HANDLE ifHandle) {
  if (!AddRecord(interfaces, ifHandle, logger)) {
    LogError(*logger,
             "Interface object with the handle 0x%p has already been added on TL with handle 0x%p",
             ifHandle, handle);
    return false;
  }
  return true;
}

bool TransportLayerNode::RemoveInterface(IF_HANDLE ifHandle) {
  const auto interfaceNode = TakeRecord(interfaces, ifHandle);
  if (interfaceNode == nullptr) {
    LogError(*logger, "Interface object with the handle 0x%p is not defined on TL with handle 0x%p",
             ifHandle, handle);
    return false;
  }
  interfaceNode->ReportDevices();
  interfaceNode->ReportEvents();
  return true;
}

void TransportLayerNode::ReportInterfaces() const {
  for (const InterfaceNode* interfaceNode : interfaces) {
    LogError(*logger,
             "Interface with handle 0x%p on TL 0x%p was not closed properly using IFClose()",
             interfaceNode->handle, handle);
  }
}

bool TransportLayerNode::AddDevice(IF_HANDLE ifHandle, DEV_HANDLE devHandle) {
  InterfaceNode* interfaceNode = FindRecord(interfaces, ifHandle);
  if (interfaceNode == nullptr) {
    LogError(*logger,
             "Unable to add Device with handle 0x%p! Interface with handle 0x%p on TL 0x%p was not "
             "found!",
             devHandle, ifHandle, handle);
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
  LogError(*logger, "Unable to remove Device with handle 0x%p on any Interface on TL 0x%p!",
           devHandle, handle);
  return false;
}

bool TransportLayerNode::AddDataStream(DEV_HANDLE devHandle, DS_HANDLE dsHandle) {
  if (OfferInOrder(interfaces, [&](InterfaceNode& interfaceNode) {
        return interfaceNode.AddDataStream(devHandle, dsHandle);
      })) {
    return true;
  }
  LogError(*logger,
           "Unable to add DataStream with handle 0x%p! Device with handle 0x%p on TL 0x%p was not "
           "found!",
           dsHandle, devHandle, handle);
  return false;
}

bool TransportLayerNode::RemoveDataStream(DS_HANDLE dsHandle) {
  if (OfferInOrder(interfaces, [&](InterfaceNode& interfaceNode) {
        return interfaceNode.RemoveDataStream(dsHandle);
      })) {
    return true;
  }
  LogError(*logger, "Unable to remove DataStream with handle 0x%p on any Interface on TL 0x%p!",
           dsHandle, handle);
  return false;
}

bool TransportLayerNode::AddBuffer(DS_HANDLE dsHandle, BUFFER_HANDLE bufferHandle) {
  if (OfferInOrder(interfaces, [&](InterfaceNode& interfaceNode) {
        return interfaceNode.AddBuffer(dsHandle, bufferHandle);
      })) {
    return true;
  }
  LogError(*logger,
           "Unable to add Buffer with handle 0x%p! DataStream with handle 0x%p on TL 0x%p was not "
           "found!",
           bufferHandle, dsHandle, handle);
  return false;
}

bool TransportLayerNode::RemoveBuffer(DS_HANDLE dsHandle, BUFFER_HANDLE bufferHandle) {
  if (OfferInOrder(interfaces, [&](InterfaceNode& interfaceNode) {
        return interfaceNode.RemoveBuffer(dsHandle, bufferHandle);
      })) {
    return true;
  }
  LogError(*logger, "Unable to remove Buffer with handle 0x%p on any Interface on TL 0x%p!",
           bufferHandle, handle);
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
    LogError(*logger,
             "The Event type %s has not been registered since the handle 0x%p has not been found "
             "on any Interface",
             EventTypeName(eventType), source);
  }
  return false;
}

bool TransportLayerNode::RemoveEvent(EVENTSRC_HANDLE source, EVENT_TYPE eventType) {
  if (source == handle) {
    if (events.Erase(eventType)) {
      return true;
    }
    LogError(*logger,
             "Unable to remove Event type %s on TL 0x%p! Event was not added or already removed!",
             EventTypeName(eventType), source);
    return false;
  }
  if (OfferInOrder(interfaces, [&](InterfaceNode& interfaceNode) {
        return interfaceNode.RemoveEvent(eventType);
      })) {
    return true;
  }
  // "on TL" is followed by the event source that was named, which is not the TL, on purpose.
  LogError(*logger,
           "Unable to remove Event type %s on TL 0x%p! Event was not found on any Interface!",
           EventTypeName(eventType), source);
  return false;
}

bool TransportLayerNode::ReleaseEventsOn(TransportLayerNode* root, EVENTSRC_HANDLE source) {
  return root != nullptr && root->ReleaseEvents(source);
}

void TransportLayerNode::ReportDuplicateEvent(EVENT_TYPE eventType) const {
  LogError(*logger, "The Event type %s has already been registered on TL with handle 0x%p",
           EventTypeName(eventType), handle);
}

void TransportLayerNode::ReportEvent(const EventRegistration& registration) const {
  LogWarn(*logger,
          "Event type %s with handle 0x%p on Transport Layer 0x%p was not unregistered directly "
          "using GCUnregisterEvent()",
          EventTypeName(registration.eventType), registration.eventHandle, handle);
}

}  // namespace vextrel
