// The root's own records; transport_layer_node_walk_test.cpp has the walks over its interfaces.
#include "registry/transport_layer_node.h"

#include <memory>

#include "registry_fixture.h"
#include "transport_layer_fixture.h"

namespace vextrel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using TransportLayerNodeTest = TransportLayerTest;

// --- Interfaces ---------------------------------------------------------------------------------

TEST_F(TransportLayerNodeTest, IsEmptyAtFirst) {
  EXPECT_THAT(root->interfaces, IsEmpty());

  root->ReportInterfaces();
  root->ReportEvents();
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(TransportLayerNodeTest, AddInterfaceKeepsTheOrderOfOpening) {
  EXPECT_TRUE(root->AddInterface(iface2));
  EXPECT_TRUE(root->AddInterface(iface1));

  EXPECT_THAT(HandlesOf(root->interfaces), ElementsAre(iface2, iface1));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(TransportLayerNodeTest, OpeningAnInterfaceTwiceIsReportedOnceAndFails) {
  EXPECT_TRUE(root->AddInterface(iface1));
  const InterfaceNode* const first = root->interfaces[0];

  EXPECT_FALSE(root->AddInterface(iface1));

  EXPECT_THAT(TakeLines(), ElementsAre(InterfaceAlreadyAdded(iface1, tl)));
  EXPECT_THAT(root->interfaces, ElementsAre(first));
}

TEST_F(TransportLayerNodeTest, EveryRecordBelowLogsWhereTheRootLogs) {
  AddThreeInterfacesWithDevices();
  EXPECT_TRUE(root->AddDataStream(device1, stream1));
  EXPECT_TRUE(root->AddBuffer(stream1, buffer1));

  EXPECT_EQ(root->interfaces[0]->logger, logger);
  EXPECT_EQ(DeviceOf(0).logger, logger);
  EXPECT_EQ(DeviceOf(0).dataStreams[0]->logger, logger);
  EXPECT_EQ(DeviceOf(0).dataStreams[0]->buffers[0]->logger, logger);
}

TEST_F(TransportLayerNodeTest, RemoveInterfaceDestroysTheRecordAndKeepsTheOthersInOrder) {
  AddThreeInterfaces();
  const HeapWatch removed(root->interfaces[1]);
  const HeapWatch kept(root->interfaces[0]);

  EXPECT_TRUE(root->RemoveInterface(iface2));

  EXPECT_THAT(HandlesOf(root->interfaces), ElementsAre(iface1, iface3));
  EXPECT_TRUE(removed.IsFreed());
  EXPECT_FALSE(kept.IsFreed());
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(TransportLayerNodeTest, RemovingAnUnknownInterfaceIsReported) {
  root->AddInterface(iface1);

  EXPECT_FALSE(root->RemoveInterface(iface2));

  EXPECT_THAT(TakeLines(), ElementsAre(InterfaceNotDefined(iface2, tl)));
  EXPECT_THAT(HandlesOf(root->interfaces), ElementsAre(iface1));
}

TEST_F(TransportLayerNodeTest, RemovingAnInterfaceReportsItsDevicesThenItsEvents) {
  root->AddInterface(iface1);
  EXPECT_TRUE(root->AddEvent(iface1, EVENT_ERROR, Handle(0xE1)));
  EXPECT_TRUE(root->AddEvent(iface1, EVENT_FEATURE_DEVEVENT, Handle(0xE2)));
  root->AddDevice(iface1, device1);
  root->AddDevice(iface1, device2);

  EXPECT_TRUE(root->RemoveInterface(iface1));

  EXPECT_THAT(
      TakeLines(),
      ElementsAre(DeviceNotClosed(device1, iface1), DeviceNotClosed(device2, iface1),
                  LeftEvent<InterfaceNode>("EVENT_ERROR", Handle(0xE1), iface1),
                  LeftEvent<InterfaceNode>("EVENT_FEATURE_DEVEVENT", Handle(0xE2), iface1)));
}

TEST_F(TransportLayerNodeTest, RemovingAnInterfaceReportsNothingBelowItsDevices) {
  root->AddInterface(iface1);
  root->AddDevice(iface1, device1);
  EXPECT_TRUE(root->AddDataStream(device1, stream1));
  EXPECT_TRUE(root->AddEvent(device1, EVENT_ERROR, Handle(0xE1)));

  EXPECT_TRUE(root->RemoveInterface(iface1));

  EXPECT_THAT(TakeLines(), ElementsAre(DeviceNotClosed(device1, iface1)));
}

TEST_F(TransportLayerNodeTest, RemovingAnInterfaceForgetsItsDevicesAndAllBelowThem) {
  root->AddInterface(iface1);
  root->AddDevice(iface1, device1);
  DataStreamNode& dataStream = OpenStream(0, stream1);
  dataStream.AddBuffer(buffer1);
  const DeviceNode& device = DeviceOf(0);
  const HeapWatch interfaceWatch(root->interfaces[0]);
  const HeapWatch deviceWatch(&device);
  const HeapWatch streamWatch(&dataStream);
  const HeapWatch bufferWatch(dataStream.buffers[0]);

  EXPECT_TRUE(root->RemoveInterface(iface1));

  EXPECT_TRUE(interfaceWatch.IsFreed());
  EXPECT_FALSE(deviceWatch.IsFreed());
  EXPECT_FALSE(streamWatch.IsFreed());
  EXPECT_FALSE(bufferWatch.IsFreed());
  EXPECT_EQ(device.handle, device1);
  EXPECT_THAT(HandlesOf(device.dataStreams), ElementsAre(stream1));
}

TEST_F(TransportLayerNodeTest, ReportInterfacesNamesEachInOrderAndNothingDeeper) {
  AddThreeInterfacesWithDevices();
  EXPECT_TRUE(root->AddEvent(iface2, EVENT_ERROR, Handle(0xE1)));
  EXPECT_TRUE(root->AddEvent(tl, EVENT_ERROR, Handle(0xE2)));

  root->ReportInterfaces();

  EXPECT_THAT(TakeLines(),
              ElementsAre(InterfaceNotClosed(iface1, tl), InterfaceNotClosed(iface2, tl),
                          InterfaceNotClosed(iface3, tl)));
  EXPECT_THAT(HandlesOf(root->interfaces), ElementsAre(iface1, iface2, iface3));
}

TEST_F(TransportLayerNodeTest, TheEndOfTheRootForgetsItsInterfacesAndEventsSilently) {
  AddThreeInterfaces();
  Register(*root, EVENT_ERROR, Handle(0xE1));
  const InterfaceNode* const iface = root->interfaces[1];
  const HeapWatch rootWatch(root.get());
  const HeapWatch interfaceWatch(iface);
  const EventRegistration* const registration = root->events.registrations()[0];
  const HeapWatch registrationWatch(registration);

  root.reset();

  EXPECT_TRUE(rootWatch.IsFreed());
  EXPECT_FALSE(interfaceWatch.IsFreed());
  EXPECT_EQ(iface->handle, iface2);
  EXPECT_FALSE(registrationWatch.IsFreed());
  EXPECT_EQ(registration->eventHandle, Handle(0xE1));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(TransportLayerNodeTest, TheFirstOfEqualInterfaceHandlesIsMeant) {
  AddThreeInterfaces();
  const InterfaceNode& later = AppendRecord(iface2);
  const HeapWatch first(root->interfaces[1]);

  EXPECT_TRUE(root->AddDevice(iface2, device1));
  EXPECT_THAT(HandlesOf(root->interfaces[1]->devices), ElementsAre(device1));
  EXPECT_THAT(later.devices, IsEmpty());

  EXPECT_TRUE(root->RemoveInterface(iface2));
  EXPECT_TRUE(first.IsFreed());
  EXPECT_THAT(HandlesOf(root->interfaces), ElementsAre(iface1, iface3, iface2));
}

// --- The end of the transport layer -------------------------------------------------------------

TEST_F(TransportLayerNodeTest, ClosingWithOneInterfaceOpenReportsItOnceAndNothingOfItsDevices) {
  root->AddInterface(iface1);
  root->AddDevice(iface1, device1);
  EXPECT_TRUE(root->AddEvent(device1, EVENT_ERROR, Handle(0xE1)));

  EXPECT_TRUE(TransportLayerNode::ReleaseEventsOn(root.get(), tl));
  root->ReportInterfaces();
  root->ReportEvents();
  root.reset();

  EXPECT_THAT(TakeLines(), ElementsAre(InterfaceNotClosed(iface1, tl)));
}

TEST_F(TransportLayerNodeTest, ClosingReportsTheRootsEventsOnceBeforeTheInterfaces) {
  root->AddInterface(iface1);
  EXPECT_TRUE(root->AddEvent(tl, EVENT_FEATURE_INVALIDATE, Handle(0xE1)));

  EXPECT_TRUE(TransportLayerNode::ReleaseEventsOn(root.get(), tl));
  root->ReportInterfaces();
  root->ReportEvents();

  EXPECT_THAT(TakeLines(), ElementsAre(LeftEvent<TransportLayerNode>("EVENT_FEATURE_INVALIDATE",
                                                                     Handle(0xE1), tl),
                                       InterfaceNotClosed(iface1, tl)));
}

TEST_F(TransportLayerNodeTest, ClosingAnotherHandleReportsTheRootsEventsAfterTheInterfaces) {
  root->AddInterface(iface1);
  EXPECT_TRUE(root->AddEvent(tl, EVENT_FEATURE_INVALIDATE, Handle(0xE1)));

  EXPECT_FALSE(TransportLayerNode::ReleaseEventsOn(root.get(), Handle(0xBAD)));
  root->ReportInterfaces();
  root->ReportEvents();

  EXPECT_THAT(TakeLines(), ElementsAre(InterfaceNotClosed(iface1, tl),
                                       LeftEvent<TransportLayerNode>("EVENT_FEATURE_INVALIDATE",
                                                                     Handle(0xE1), tl)));
}

}  // namespace
}  // namespace vextrel
