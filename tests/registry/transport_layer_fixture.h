// What the tests of the registry's root share.
#ifndef VEXTREL_TESTS_REGISTRY_TRANSPORT_LAYER_FIXTURE_H
#define VEXTREL_TESTS_REGISTRY_TRANSPORT_LAYER_FIXTURE_H

#include <memory>

#include "registry/transport_layer_node.h"
#include "registry_fixture.h"

// Device n is opened on interface n. A stream goes to a device through OpenStream: the root itself
// would look at the first interface only.
class TransportLayerTest : public RegistryTest {
 protected:
  void* const tl = Handle(0x71);
  void* const iface1 = Handle(0x1F1);
  void* const iface2 = Handle(0x1F2);
  void* const iface3 = Handle(0x1F3);
  void* const device1 = Handle(0xDE1);
  void* const device2 = Handle(0xDE2);
  void* const device3 = Handle(0xDE3);
  void* const stream1 = Handle(0xD51);
  void* const stream2 = Handle(0xD52);
  void* const buffer1 = Handle(0xB1);
  void* const buffer2 = Handle(0xB2);
  std::unique_ptr<vextrel::TransportLayerNode> root =
      std::make_unique<vextrel::TransportLayerNode>(tl, logger);

  void AddThreeInterfaces() {
    root->AddInterface(iface1);
    root->AddInterface(iface2);
    root->AddInterface(iface3);
  }

  void AddThreeInterfacesWithDevices() {
    AddThreeInterfaces();
    root->AddDevice(iface1, device1);
    root->AddDevice(iface2, device2);
    root->AddDevice(iface3, device3);
  }

  // The device of interface `index`, from 0.
  vextrel::DeviceNode& DeviceOf(std::size_t index) { return *root->interfaces[index]->devices[0]; }

  vextrel::DataStreamNode& OpenStream(std::size_t index, void* dataStream) {
    DeviceOf(index).AddDataStream(dataStream);
    return *DeviceOf(index).dataStreams.back();
  }

  // A second record of a handle, which no operation makes.
  vextrel::InterfaceNode& AppendRecord(void* handle) {
    auto record = std::make_unique<vextrel::InterfaceNode>(handle, logger);
    root->interfaces.push_back(record.get());
    return *record.release();
  }
};

#endif  // VEXTREL_TESTS_REGISTRY_TRANSPORT_LAYER_FIXTURE_H
