// SPDX-License-Identifier: MIT
#include "registry/transport_layer_node.h"

#include "registry/registry_fixture.h"

namespace vextrel_test {
namespace {

using model::Error;
using model::kDataStream;
using model::kDevice;
using model::kInterface;
using model::kTransportLayer;
using model::Warn;
using vextrel::TransportLayerNode;

class TransportLayerNodeTest : public RegistryTest {
 protected:
  // What TLClose does.
  void Close(void* handle) {
    static_cast<void>(TransportLayerNode::ReleaseEventsOn(root.get(), handle));
    root->ReportInterfaces();
    root->ReportEvents();
    root.reset();
  }
};

TEST_F(TransportLayerNodeTest, OpeningAnInterfaceTwiceIsReportedOnceAndFails) {
  EXPECT_TRUE(root->AddInterface(iface1));
  EXPECT_FALSE(root->AddInterface(iface1));

  EXPECT_THAT(TakeLines(), ElementsAre(Error(kTransportLayer.childAddedTwice, {iface1, tl})));
  EXPECT_THAT(HandlesOf(root->interfaces), ElementsAre(iface1));
}

TEST_F(TransportLayerNodeTest, RemovingAnInterfaceReportsItsDevicesThenItsEvents) {
  vextrel::InterfaceNode& iface = Open(iface1);
  Register(iface, EVENT_FEATURE_DEVEVENT, event1);
  Register(Open(iface, device1), EVENT_ERROR, event2);
  Open(Open(iface, device2), stream1);

  EXPECT_TRUE(root->RemoveInterface(iface1));
  EXPECT_THAT(TakeLines(),
              ElementsAre(Error(kInterface.childLeftOpen, {device1, iface1}),
                          Error(kInterface.childLeftOpen, {device2, iface1}),
                          Warn(kInterface.eventLeft, {"EVENT_FEATURE_DEVEVENT", event1, iface1})));

  EXPECT_FALSE(root->RemoveInterface(iface1));
  EXPECT_THAT(TakeLines(), ElementsAre(Error(kTransportLayer.childNotDefined, {iface1, tl})));
}

TEST_F(TransportLayerNodeTest, ADeviceOfAnUnknownInterfaceIsReportedAndStillSucceeds) {
  EXPECT_TRUE(root->AddDevice(iface1, device1));
  EXPECT_THAT(TakeLines(),
              ElementsAre(Error(kTransportLayer.deviceNotAdded, {device1, iface1, tl})));
}

TEST_F(TransportLayerNodeTest, AStreamOfASecondInterfacesDeviceIsNotRecordedNorItsCloseFound) {
  Open(Open(iface1), device1);
  vextrel::DeviceNode& second = Open(Open(iface2), device2);

  EXPECT_TRUE(root->AddDataStream(device2, stream1));
  EXPECT_THAT(TakeLines(),
              ElementsAre(Error(kInterface.dataStreamNotAdded, {stream1, device2, iface1})));
  EXPECT_THAT(second.dataStreams, IsEmpty());

  EXPECT_FALSE(root->RemoveDataStream(stream1));
  EXPECT_THAT(TakeLines(), ElementsAre(Error(kDevice.childNotDefined, {stream1, device1}),
                                       Error(kInterface.dataStreamNotRemoved, {stream1, iface1}),
                                       Error(kDevice.childNotDefined, {stream1, device2}),
                                       Error(kInterface.dataStreamNotRemoved, {stream1, iface2}),
                                       Error(kTransportLayer.dataStreamNotRemoved, {stream1, tl})));
}

TEST_F(TransportLayerNodeTest, WithoutAnyInterfaceTheRootsLineStandsAlone) {
  EXPECT_FALSE(root->RemoveDevice(device1));
  EXPECT_FALSE(root->AddDataStream(device1, stream1));
  EXPECT_FALSE(root->RemoveDataStream(stream1));
  EXPECT_FALSE(root->AddBuffer(stream1, buffer1));
  EXPECT_FALSE(root->RemoveBuffer(stream1, buffer1));

  EXPECT_THAT(TakeLines(),
              ElementsAre(Error(kTransportLayer.deviceNotRemoved, {device1, tl}),
                          Error(kTransportLayer.dataStreamNotAdded, {stream1, device1, tl}),
                          Error(kTransportLayer.dataStreamNotRemoved, {stream1, tl}),
                          Error(kTransportLayer.bufferNotAdded, {buffer1, stream1, tl}),
                          Error(kTransportLayer.bufferNotRemoved, {buffer1, tl})));
}

TEST_F(TransportLayerNodeTest, ClosingWithOneInterfaceOpenReportsItOnceAndNothingOfItsDevices) {
  Register(Open(Open(iface1), device1), EVENT_ERROR, event1);

  Close(tl);

  EXPECT_THAT(TakeLines(), ElementsAre(Error(kTransportLayer.childLeftOpen, {iface1, tl})));
}

TEST_F(TransportLayerNodeTest, ClosingReportsTheRootsEventsOnceBeforeTheInterfaces) {
  Open(iface1);
  Register(*root, EVENT_ERROR, event1);

  Close(tl);

  EXPECT_THAT(TakeLines(), ElementsAre(Warn(kTransportLayer.eventLeft, {"EVENT_ERROR", event1, tl}),
                                       Error(kTransportLayer.childLeftOpen, {iface1, tl})));
}

TEST_F(TransportLayerNodeTest, ClosingAnotherHandleReportsTheRootsEventsAfterTheInterfaces) {
  Open(iface1);
  Register(*root, EVENT_ERROR, event1);

  Close(unknown);

  EXPECT_THAT(TakeLines(),
              ElementsAre(Error(kTransportLayer.childLeftOpen, {iface1, tl}),
                          Warn(kTransportLayer.eventLeft, {"EVENT_ERROR", event1, tl})));
}

TEST_F(TransportLayerNodeTest, TheEndOfTheRootForgetsWhatIsBelowItSilently) {
  vextrel::InterfaceNode& iface = Open(iface1);
  Register(*root, EVENT_ERROR, event1);
  const HeapWatch rootWatch(root.get());
  const HeapWatch interfaceWatch(&iface);
  const HeapWatch registrationWatch(root->events.Registrations()[0]);

  root.reset();

  EXPECT_TRUE(rootWatch.IsFreed());
  EXPECT_FALSE(interfaceWatch.IsFreed());
  EXPECT_FALSE(registrationWatch.IsFreed());
  EXPECT_THAT(TakeLines(), IsEmpty());
}

}  // namespace
}  // namespace vextrel_test
