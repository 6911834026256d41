// SPDX-License-Identifier: MIT
// What the tests of the handle registry share.
#ifndef VEXTREL_TESTS_REGISTRY_REGISTRY_FIXTURE_H
#define VEXTREL_TESTS_REGISTRY_REGISTRY_FIXTURE_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "gentl/gentl.h"
#include "model/log.h"
#include "model/messages.h"
#include "registry/heap_watch.h"
#include "registry/line_recorder.h"
#include "registry/transport_layer_node.h"

namespace vextrel_test {

using testing::ElementsAre;
using testing::IsEmpty;

// Handles are only compared, so any value will do.
inline void* Handle(std::uintptr_t value) {
  return reinterpret_cast<void*>(value);
}

// A category of the tests' own, whose lines are kept. What the registry forgets stays allocated,
// which a leak detector does not mind meanwhile.
class RecordedLines : public testing::Test {
 protected:
  RecordedLines();
  ~RecordedLines() override;

  // Returns the lines since the last call, oldest first.
  [[nodiscard]] std::vector<std::string> TakeLines() { return recorder.TakeLines(); }

  LineRecorder recorder;
  log4cpp::Category* const logger;
};

// A root, and names for the handles below it.
class RegistryTest : public RecordedLines {
 protected:
  void* const tl = Handle(0x71);
  void* const iface1 = Handle(0x1F1);
  void* const iface2 = Handle(0x1F2);
  void* const device1 = Handle(0xDE1);
  void* const device2 = Handle(0xDE2);
  void* const stream1 = Handle(0xD51);
  void* const stream2 = Handle(0xD52);
  void* const buffer1 = Handle(0xB1);
  void* const buffer2 = Handle(0xB2);
  void* const buffer3 = Handle(0xB3);
  void* const event1 = Handle(0xFEDCBA98765432E1);
  void* const event2 = Handle(0xE2);
  void* const event3 = Handle(0xE3);
  void* const unknown = Handle(0xBAD);

  // Each adds a child and returns its record.
  vextrel::InterfaceNode& Open(void* ifHandle) {
    root->AddInterface(ifHandle);
    return *root->interfaces.back();
  }
  static vextrel::DeviceNode& Open(vextrel::InterfaceNode& iface, void* devHandle) {
    iface.AddDevice(devHandle);
    return *iface.devices.back();
  }
  static vextrel::DataStreamNode& Open(vextrel::DeviceNode& device, void* dsHandle) {
    device.AddDataStream(dsHandle);
    return *device.dataStreams.back();
  }
  static vextrel::BufferNode& Announce(vextrel::DataStreamNode& stream, void* bufferHandle) {
    stream.AddBuffer(bufferHandle);
    return *stream.buffers.back();
  }

  std::unique_ptr<vextrel::TransportLayerNode> root =
      std::make_unique<vextrel::TransportLayerNode>(tl, logger);
};

// The elements' handles, in the list's order.
template <typename Records>
[[nodiscard]] std::vector<void*> HandlesOf(const Records& records) {
  std::vector<void*> handles;
  for (const auto* record : records) {
    handles.push_back(record->handle);
  }
  return handles;
}

// The registered types, in the list's order.
[[nodiscard]] std::vector<EVENT_TYPE> TypesOf(const vextrel::EventList& events);
// The registered events' handles, in the list's order.
[[nodiscard]] std::vector<void*> EventHandlesOf(const vextrel::EventList& events);

// Registers an event on this very record.
template <typename Node>
void Register(Node& node, EVENT_TYPE eventType, EVENT_HANDLE eventHandle) {
  ASSERT_TRUE(node.AddEvent(node.handle, eventType, eventHandle));
}

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_REGISTRY_REGISTRY_FIXTURE_H
