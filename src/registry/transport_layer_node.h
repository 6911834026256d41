// SPDX-License-Identifier: MIT
// The root of the handle registry, and its only entry point.
//
// The registry is the tree of the handles that the consumer has opened: the transport layer, its
// interfaces, their devices, their data streams, their buffers, and the events registered on each.
// It reports misuse, and never refuses or changes a call. Every operation follows a forwarded call
// that succeeded. Handles are compared by value; lists are searched in the order of opening, and
// the first match wins.
//
// Not thread-safe, by design: the registry takes no lock. A consumer that races its open and close
// calls races in these lists.
#ifndef VEXTREL_REGISTRY_TRANSPORT_LAYER_NODE_H
#define VEXTREL_REGISTRY_TRANSPORT_LAYER_NODE_H

#include <cstddef>
#include <log4cpp/Category.hh>

#include "gentl/gentl.h"
#include "registry/event_list.h"
#include "registry/event_operations.h"
#include "registry/event_registration.h"
#include "registry/interface_node.h"
#include "registry/record_list.h"

namespace vextrel {

// Destroying the root forgets whatever is still open below it.
class TransportLayerNode : public EventOperations<TransportLayerNode> {
 public:
  // This record and all below it log to `category`, which log4cpp owns.
  TransportLayerNode(TL_HANDLE tlHandle, log4cpp::Category* category)
      : logger(category), handle(tlHandle) {}

  // Returns false, and reports it, on a duplicate. Kept: 54. The levels below return true.
  bool AddInterface(IF_HANDLE ifHandle);
  // Returns false, and reports it, if the interface isn't open.
  [[nodiscard]] bool RemoveInterface(IF_HANDLE ifHandle);
  // Reports each interface that is still open, and nothing below it.
  void ReportInterfaces() const;

  // Kept: 54. Always returns true; an unknown interface is reported.
  bool AddDevice(IF_HANDLE ifHandle, DEV_HANDLE devHandle);
  // Kept: 53. Records the stream only if its device is on the first interface, which ends the
  // search in any case. Returns false, and reports it, if there's no interface at all.
  bool AddDataStream(DEV_HANDLE devHandle, DS_HANDLE dsHandle);
  // The next four return false, and report it, if no interface accepts the call. Kept: 55. By then,
  // each level that the search passed over has written its own line.
  [[nodiscard]] bool RemoveDevice(DEV_HANDLE devHandle);
  [[nodiscard]] bool RemoveDataStream(DS_HANDLE dsHandle);
  bool AddBuffer(DS_HANDLE dsHandle, BUFFER_HANDLE bufferHandle);
  [[nodiscard]] bool RemoveBuffer(DS_HANDLE dsHandle, BUFFER_HANDLE bufferHandle);

  // Returns false, without a line, if the buffer isn't announced on any stream.
  bool SetBufferQueued(BUFFER_HANDLE bufferHandle, bool queued);
  // `data` is the `size` bytes that EventGetData delivered.
  void OnEventData(EVENT_HANDLE eventHandle, const void* data, std::size_t size) {
    for (InterfaceNode* interfaceNode : interfaces) {
      interfaceNode->OnEventData(eventHandle, data, size);
    }
  }
  void OnFlushQueue(DS_HANDLE dsHandle, ACQ_QUEUE_TYPE operation);

  // As on the levels below, but reports a source that no interface accepts.
  bool AddEvent(EVENTSRC_HANDLE source, EVENT_TYPE eventType, EVENT_HANDLE eventHandle);
  // Searches only the root's own list if `source` is the root, and only the interfaces if not.
  // Returns false, and reports it, if nothing is found.
  [[nodiscard]] bool RemoveEvent(EVENTSRC_HANDLE source, EVENT_TYPE eventType);

  // Reports and forgets the events on `source`. Returns true iff `root` isn't null and `source` is
  // found. For the close functions, which call this before they test the root.
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
