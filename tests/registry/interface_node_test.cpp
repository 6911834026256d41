#include "registry/interface_node.h"

#include <memory>

#include "registry_fixture.h"

namespace vextrel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class InterfaceNodeTest : public RegistryTest {
 protected:
  void* const iface = Handle(0x1F);
  void* const device1 = Handle(0xDE1);
  void* const device2 = Handle(0xDE2);
  void* const device3 = Handle(0xDE3);
  void* const stream1 = Handle(0xD51);
  void* const stream2 = Handle(0xD52);
  void* const buffer1 = Handle(0xB1);
  std::unique_ptr<InterfaceNode> node = std::make_unique<InterfaceNode>(iface, logger);

  void AddThreeDevices() {
    node->AddDevice(device1);
    node->AddDevice(device2);
    node->AddDevice(device3);
  }

  // A second record of a handle, which no operation makes.
  DeviceNode& AppendRecord(void* handle) {
    auto record = std::make_unique<DeviceNode>(handle, logger);
    node->devices.push_back(record.get());
    return *record.release();
  }
};

// --- Devices ------------------------------------------------------------------------------------

TEST_F(InterfaceNodeTest, IsEmptyAtFirst) {
  EXPECT_THAT(node->devices, IsEmpty());

  node->ReportDevices();
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(InterfaceNodeTest, AddDeviceKeepsTheOrderOfOpening) {
  EXPECT_TRUE(node->AddDevice(device2));
  EXPECT_TRUE(node->AddDevice(device1));

  EXPECT_THAT(HandlesOf(node->devices), ElementsAre(device2, device1));
  EXPECT_EQ(node->devices[0]->logger, logger);
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(InterfaceNodeTest, OpeningADeviceTwiceIsReportedOnceAndStillSucceeds) {
  EXPECT_TRUE(node->AddDevice(device1));
  const DeviceNode* const first = node->devices[0];

  EXPECT_TRUE(node->AddDevice(device1));

  EXPECT_THAT(TakeLines(), ElementsAre(DeviceAlreadyAdded(device1, iface)));
  EXPECT_THAT(node->devices, ElementsAre(first));
}

TEST_F(InterfaceNodeTest, RemoveDeviceDestroysTheRecordAndKeepsTheOthersInOrder) {
  AddThreeDevices();
  const HeapWatch removed(node->devices[1]);
  const HeapWatch kept(node->devices[0]);

  EXPECT_TRUE(node->RemoveDevice(device2));

  EXPECT_THAT(HandlesOf(node->devices), ElementsAre(device1, device3));
  EXPECT_TRUE(removed.IsFreed());
  EXPECT_FALSE(kept.IsFreed());
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(InterfaceNodeTest, RemovingAnUnknownDeviceIsReported) {
  node->AddDevice(device1);

  EXPECT_FALSE(node->RemoveDevice(device2));

  EXPECT_THAT(TakeLines(), ElementsAre(DeviceNotDefined(device2, iface)));
  EXPECT_THAT(HandlesOf(node->devices), ElementsAre(device1));
}

TEST_F(InterfaceNodeTest, RemovingADeviceReportsItsStreamsThenItsEvents) {
  node->AddDevice(device1);
  Register(*node->devices[0], EVENT_ERROR, Handle(0xE1));
  Register(*node->devices[0], EVENT_FEATURE_CHANGE, Handle(0xE2));
  EXPECT_TRUE(node->AddDataStream(device1, stream1));
  EXPECT_TRUE(node->AddDataStream(device1, stream2));

  EXPECT_TRUE(node->RemoveDevice(device1));

  EXPECT_THAT(
      TakeLines(),
      ElementsAre(DataStreamNotClosed(stream1, device1), DataStreamNotClosed(stream2, device1),
                  LeftEvent<DeviceNode>("EVENT_ERROR", Handle(0xE1), device1),
                  LeftEvent<DeviceNode>("EVENT_FEATURE_CHANGE", Handle(0xE2), device1)));
}

TEST_F(InterfaceNodeTest, RemovingADeviceReportsNothingBelowItsStreams) {
  node->AddDevice(device1);
  EXPECT_TRUE(node->AddDataStream(device1, stream1));
  EXPECT_TRUE(node->AddBuffer(stream1, buffer1));
  EXPECT_TRUE(node->AddEvent(stream1, EVENT_NEW_BUFFER, Handle(0xE1)));
  EXPECT_TRUE(node->AddEvent(buffer1, EVENT_NEW_BUFFER, Handle(0xE2)));

  EXPECT_TRUE(node->RemoveDevice(device1));

  EXPECT_THAT(TakeLines(), ElementsAre(DataStreamNotClosed(stream1, device1)));
}

TEST_F(InterfaceNodeTest, RemovingADeviceForgetsItsStreamsWithTheirBuffers) {
  node->AddDevice(device1);
  EXPECT_TRUE(node->AddDataStream(device1, stream1));
  EXPECT_TRUE(node->AddBuffer(stream1, buffer1));
  const HeapWatch deviceWatch(node->devices[0]);
  const DataStreamNode* const dataStream = node->devices[0]->dataStreams[0];
  const HeapWatch streamWatch(dataStream);
  const HeapWatch bufferWatch(dataStream->buffers[0]);

  EXPECT_TRUE(node->RemoveDevice(device1));

  EXPECT_TRUE(deviceWatch.IsFreed());
  EXPECT_FALSE(streamWatch.IsFreed());
  EXPECT_FALSE(bufferWatch.IsFreed());
  EXPECT_EQ(dataStream->handle, stream1);
  EXPECT_THAT(HandlesOf(dataStream->buffers), ElementsAre(buffer1));
}

TEST_F(InterfaceNodeTest, ReportDevicesNamesEachInOrderAndNothingDeeper) {
  AddThreeDevices();
  EXPECT_TRUE(node->AddDataStream(device2, stream1));
  Register(*node->devices[1], EVENT_ERROR, Handle(0xE1));
  Register(*node, EVENT_ERROR, Handle(0xE2));

  node->ReportDevices();

  EXPECT_THAT(TakeLines(),
              ElementsAre(DeviceNotClosed(device1, iface), DeviceNotClosed(device2, iface),
                          DeviceNotClosed(device3, iface)));
  EXPECT_THAT(HandlesOf(node->devices), ElementsAre(device1, device2, device3));
}

TEST_F(InterfaceNodeTest, TheEndOfTheInterfaceForgetsItsDevicesAndEventsSilently) {
  AddThreeDevices();
  Register(*node, EVENT_ERROR, Handle(0xE1));
  const DeviceNode* const device = node->devices[1];
  const HeapWatch deviceWatch(device);
  const HeapWatch registrationWatch(node->events.registrations()[0]);

  node.reset();

  EXPECT_FALSE(deviceWatch.IsFreed());
  EXPECT_EQ(device->handle, device2);
  EXPECT_FALSE(registrationWatch.IsFreed());
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(InterfaceNodeTest, TheFirstOfEqualDeviceHandlesIsMeant) {
  AddThreeDevices();
  const DeviceNode& later = AppendRecord(device2);
  const HeapWatch first(node->devices[1]);

  EXPECT_TRUE(node->AddDataStream(device2, stream1));
  EXPECT_THAT(HandlesOf(node->devices[1]->dataStreams), ElementsAre(stream1));
  EXPECT_THAT(later.dataStreams, IsEmpty());

  EXPECT_TRUE(node->RemoveDevice(device2));
  EXPECT_TRUE(first.IsFreed());
  EXPECT_THAT(HandlesOf(node->devices), ElementsAre(device1, device3, device2));
}

// --- Data streams -------------------------------------------------------------------------------

TEST_F(InterfaceNodeTest, AddDataStreamReachesTheNamedDevice) {
  AddThreeDevices();

  EXPECT_TRUE(node->AddDataStream(device2, stream1));

  EXPECT_THAT(node->devices[0]->dataStreams, IsEmpty());
  EXPECT_THAT(HandlesOf(node->devices[1]->dataStreams), ElementsAre(stream1));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(InterfaceNodeTest, OpeningAStreamTwiceSucceedsWithTheDevicesLine) {
  AddThreeDevices();
  EXPECT_TRUE(node->AddDataStream(device2, stream1));

  EXPECT_TRUE(node->AddDataStream(device2, stream1));

  EXPECT_THAT(TakeLines(), ElementsAre(DataStreamAlreadyAdded(stream1, device2)));
}

TEST_F(InterfaceNodeTest, AStreamOfAnUnknownDeviceIsReportedAndStillSucceeds) {
  node->AddDevice(device1);

  EXPECT_TRUE(node->AddDataStream(device2, stream1));

  EXPECT_THAT(TakeLines(), ElementsAre(InterfaceCannotAddDataStream(stream1, device2, iface)));
  EXPECT_THAT(node->devices[0]->dataStreams, IsEmpty());
}

TEST_F(InterfaceNodeTest, RemoveDataStreamAsksEachDeviceUntilOneHasIt) {
  AddThreeDevices();
  EXPECT_TRUE(node->AddDataStream(device2, stream1));
  EXPECT_TRUE(node->AddDataStream(device3, stream1));
  const HeapWatch removed(node->devices[1]->dataStreams[0]);

  EXPECT_TRUE(node->RemoveDataStream(stream1));

  EXPECT_THAT(TakeLines(), ElementsAre(DataStreamNotDefined(stream1, device1)));
  EXPECT_TRUE(removed.IsFreed());
  EXPECT_THAT(HandlesOf(node->devices[2]->dataStreams), ElementsAre(stream1));
}

TEST_F(InterfaceNodeTest, RemovingAnUnknownStreamWritesALinePerDeviceThenItsOwn) {
  AddThreeDevices();

  EXPECT_FALSE(node->RemoveDataStream(stream1));

  EXPECT_THAT(TakeLines(), ElementsAre(DataStreamNotDefined(stream1, device1),
                                       DataStreamNotDefined(stream1, device2),
                                       DataStreamNotDefined(stream1, device3),
                                       InterfaceCannotRemoveDataStream(stream1, iface)));
}

// --- Buffers ------------------------------------------------------------------------------------

TEST_F(InterfaceNodeTest, ABufferOnAStreamOfTheSecondDeviceWritesALineForTheFirstThenSucceeds) {
  AddThreeDevices();
  EXPECT_TRUE(node->AddDataStream(device2, stream1));

  EXPECT_TRUE(node->AddBuffer(stream1, buffer1));

  EXPECT_THAT(TakeLines(), ElementsAre(DeviceCannotAddBuffer(buffer1, stream1, device1)));
  EXPECT_THAT(HandlesOf(node->devices[1]->dataStreams[0]->buffers), ElementsAre(buffer1));
}

TEST_F(InterfaceNodeTest, ADuplicateBufferEndsTheWalkAsASuccess) {
  AddThreeDevices();
  EXPECT_TRUE(node->AddDataStream(device1, stream1));
  EXPECT_TRUE(node->AddDataStream(device2, stream1));
  EXPECT_TRUE(node->AddBuffer(stream1, buffer1));

  EXPECT_TRUE(node->AddBuffer(stream1, buffer1));

  EXPECT_THAT(TakeLines(), ElementsAre(BufferAlreadyAdded(buffer1, stream1)));
  EXPECT_THAT(node->devices[1]->dataStreams[0]->buffers, IsEmpty());
}

TEST_F(InterfaceNodeTest, ABufferOnAnUnknownStreamWritesALinePerDeviceThenItsOwn) {
  AddThreeDevices();

  EXPECT_FALSE(node->AddBuffer(stream1, buffer1));

  EXPECT_THAT(TakeLines(), ElementsAre(DeviceCannotAddBuffer(buffer1, stream1, device1),
                                       DeviceCannotAddBuffer(buffer1, stream1, device2),
                                       DeviceCannotAddBuffer(buffer1, stream1, device3),
                                       InterfaceCannotAddBuffer(buffer1, stream1, iface)));
}

TEST_F(InterfaceNodeTest, RemoveBufferAsksEachDeviceUntilOneHasIt) {
  AddThreeDevices();
  EXPECT_TRUE(node->AddDataStream(device2, stream1));
  node->devices[1]->dataStreams[0]->AddBuffer(buffer1);
  const HeapWatch removed(node->devices[1]->dataStreams[0]->buffers[0]);

  EXPECT_TRUE(node->RemoveBuffer(stream1, buffer1));

  EXPECT_THAT(TakeLines(), ElementsAre(DeviceCannotRemoveBuffer(buffer1, device1)));
  EXPECT_TRUE(removed.IsFreed());
}

TEST_F(InterfaceNodeTest, RevokingABufferOfAnUnknownStreamWritesALinePerDeviceThenItsOwn) {
  AddThreeDevices();

  EXPECT_FALSE(node->RemoveBuffer(stream1, buffer1));

  EXPECT_THAT(TakeLines(), ElementsAre(DeviceCannotRemoveBuffer(buffer1, device1),
                                       DeviceCannotRemoveBuffer(buffer1, device2),
                                       DeviceCannotRemoveBuffer(buffer1, device3),
                                       InterfaceCannotRemoveBuffer(buffer1, iface)));
}

TEST_F(InterfaceNodeTest, RevokingAnUnknownBufferOfAKnownStreamGoesOnToTheOtherDevices) {
  AddThreeDevices();
  EXPECT_TRUE(node->AddDataStream(device2, stream1));

  EXPECT_FALSE(node->RemoveBuffer(stream1, buffer1));

  EXPECT_THAT(TakeLines(), ElementsAre(DeviceCannotRemoveBuffer(buffer1, device1),
                                       BufferNotDefined(buffer1, stream1),
                                       DeviceCannotRemoveBuffer(buffer1, device3),
                                       InterfaceCannotRemoveBuffer(buffer1, iface)));
}

// --- Queued marks -------------------------------------------------------------------------------

// Buffer 1 is queued on stream 1 of each device; 0xE1 is the latest event of the first and third.
class InterfaceQueueTest : public InterfaceNodeTest {
 protected:
  InterfaceQueueTest() {
    AddThreeDevices();
    for (DeviceNode* device : node->devices) {
      device->AddDataStream(stream1);
      DataStreamNode& dataStream = *device->dataStreams[0];
      Register(dataStream, EVENT_NEW_BUFFER, device->handle == device2 ? nullptr : Handle(0xE1));
      dataStream.AddBuffer(buffer1);
      dataStream.buffers[0]->SetQueued(true);
    }
  }

  [[nodiscard]] std::vector<bool> Queued() const {
    std::vector<bool> queued;
    for (const DeviceNode* device : node->devices) {
      queued.push_back(device->dataStreams[0]->buffers[0]->queued);
    }
    return queued;
  }
};

TEST_F(InterfaceQueueTest, SetBufferQueuedStopsAtTheFirstDeviceThatHasTheBuffer) {
  EXPECT_TRUE(node->SetBufferQueued(buffer1, false));
  EXPECT_THAT(Queued(), ElementsAre(false, true, true));

  EXPECT_FALSE(node->SetBufferQueued(Handle(0xBAD), false));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(InterfaceQueueTest, ADeliveryReachesEveryDevice) {
  node->OnEventData(Handle(0xE1), &buffer1, 8);

  EXPECT_THAT(Queued(), ElementsAre(false, true, false));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(InterfaceQueueTest, DiscardingAllReachesEveryDevice) {
  node->devices[1]->dataStreams[0]->handle = stream2;

  node->OnFlushQueue(stream1, ACQ_QUEUE_ALL_DISCARD);

  EXPECT_THAT(Queued(), ElementsAre(false, true, false));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(InterfaceQueueTest, AnyOtherFlushChangesNothing) {
  node->OnFlushQueue(stream1, ACQ_QUEUE_ALL_TO_INPUT);

  EXPECT_THAT(Queued(), ElementsAre(true, true, true));
}

// --- Events -------------------------------------------------------------------------------------

TEST_F(InterfaceNodeTest, AddEventDescendsToTheDevicesInOrder) {
  AddThreeDevices();

  EXPECT_TRUE(node->AddEvent(device2, EVENT_ERROR, Handle(0xE1)));

  EXPECT_THAT(TypesOf(node->events), IsEmpty());
  EXPECT_THAT(TypesOf(node->devices[1]->events), ElementsAre(EVENT_ERROR));
}

TEST_F(InterfaceNodeTest, RemoveEventTriesTheInterfaceThenItsDevicesInOrder) {
  AddThreeDevices();
  Register(*node->devices[1], EVENT_ERROR, Handle(0xE1));
  Register(*node->devices[2], EVENT_ERROR, Handle(0xE2));
  Register(*node, EVENT_ERROR, Handle(0xE3));

  EXPECT_TRUE(node->RemoveEvent(EVENT_ERROR));
  EXPECT_THAT(TypesOf(node->events), IsEmpty());
  EXPECT_TRUE(node->RemoveEvent(EVENT_ERROR));
  EXPECT_THAT(TypesOf(node->devices[1]->events), IsEmpty());
  EXPECT_TRUE(node->RemoveEvent(EVENT_ERROR));
  EXPECT_FALSE(node->RemoveEvent(EVENT_ERROR));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(InterfaceNodeTest, ReleaseEventsFindsADevice) {
  AddThreeDevices();
  Register(*node, EVENT_ERROR, Handle(0xE1));
  Register(*node->devices[1], EVENT_ERROR, Handle(0xE2));

  EXPECT_TRUE(node->ReleaseEvents(device2));

  EXPECT_THAT(TakeLines(),
              ElementsAre(LeftEvent<DeviceNode>("EVENT_ERROR", Handle(0xE2), device2)));
  EXPECT_THAT(TypesOf(node->events), ElementsAre(EVENT_ERROR));
}

}  // namespace
}  // namespace vextrel
