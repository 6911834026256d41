// The root of the handle registry, and its only entry point.
//
// The registry is the tree of the handles that the proxy has seen opened: the transport layer, its
// interfaces, their devices, their data streams, their buffers, and the events registered on each.
// It reports misuse and never refuses or changes anything. Every operation is made after the
// forwarded call has succeeded. Handles are compared by value; lists are walked in the order of
// opening, and the first match wins.
//
// Not thread-safe, by design: the registry takes no lock and adds no serialisation of its own. A
// consumer that races its open and close calls races in these lists.
#ifndef VEXTREL_REGISTRY_TRANSPORT_LAYER_NODE_H
#define VEXTREL_REGISTRY_TRANSPORT_LAYER_NODE_H

#include <cstddef>
#include <log4cpp/Category.hh>

#include "gentl/gentl.h"
#include "registry/event_operations.h"
#include "registry/event_registration.h"
#include "registry/interface_node.h"
#include "registry/record_list.h"

namespace vextrel {

// Destroying the root forgets whatever is still open below it.
class TransportLayerNode : public EventOperations<TransportLayerNode> {
 public:
  // `category` is what this record and all below it log to; log4cpp owns it.
  TransportLayerNode(TL_HANDLE tlHandle, log4cpp::Category* category)
      : logger(category), handle(tlHandle) {}

  // False, with a line, on a duplicate, unlike the levels below.
  bool AddInterface(IF_HANDLE ifHandle);
  // False, with a line, if the interface is not open.
  [[nodiscard]] bool RemoveInterface(IF_HANDLE ifHandle);
  // One error for each interface that is still open; nothing below the interfaces.
  void ReportInterfaces() const;

  // Always true; an unknown interface is reported.
  bool AddDevice(IF_HANDLE ifHandle, DEV_HANDLE devHandle);
  // Records the stream only if its device is on the first interface, on purpose: that interface
  // ends the walk in any case. False, with a line, if there is no interface at all.
  bool AddDataStream(DEV_HANDLE devHandle, DS_HANDLE dsHandle);
  // The next four are false, with a line, if no interface accepts the call. Each level passed over
  // on the way has written its own line by then.
  [[nodiscard]] bool RemoveDevice(DEV_HANDLE devHandle);
  [[nodiscard]] bool RemoveDataStream(DS_HANDLE dsHandle);
  bool AddBuffer(DS_HANDLE dsHandle, BUFFER_HANDLE bufferHandle);
  [[nodiscard]] bool RemoveBuffer(DS_HANDLE dsHandle, BUFFER_HANDLE bufferHandle);

  // False, without a line, if the buffer is not announced on any stream.
  bool SetBufferQueued(BUFFER_HANDLE bufferHandle, bool queued);
  // `data` is what EventGetData delivered, `size` bytes of it.
  void OnEventData(EVENT_HANDLE eventHandle, const void* data, std::size_t size) {
    for (InterfaceNode* interfaceNode : interfaces) {
      interfaceNode->OnEventData(eventHandle, data, size);
    }
  }
  void OnFlushQueue(DS_HANDLE dsHandle, ACQ_QUEUE_TYPE operation);

  // As on the levels below, but a source that no interface accepts gets a line.
  bool AddEvent(EVENTSRC_HANDLE source, EVENT_TYPE eventType, EVENT_HANDLE eventHandle);
  // The root's own handle decides between its own list and the interfaces; false with a line.
  [[nodiscard]] bool RemoveEvent(EVENTSRC_HANDLE source, EVENT_TYPE eventType);

  // Reports and forgets the events on `source`; without a root does nothing and is false. For the
  // close functions, which ask before they test the root.
  static bool ReleaseEventsOn(TransportLayerNode* root, EVENTSRC_HANDLE source);

  [[nodiscard]] const RecordList<InterfaceNode>& Children() const { return interfaces; }
  void ReportDuplicateEvent(EVENT_TYPE eventType) const;
  void ReportEvent(const EventRegistration& registration) const;

  log4cpp::Category* logger;
  TL_HANDLE handle;
  RecordList<InterfaceNode> interfaces;
  EventList events;
};

}  // namespace vextrel

#endif  // VEXTREL_REGISTRY_TRANSPORT_LAYER_NODE_H
