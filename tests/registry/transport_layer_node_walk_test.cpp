// How the root finds devices, data streams and buffers below its interfaces.
#include <memory>

#include "registry/transport_layer_node.h"
#include "registry_fixture.h"
#include "transport_layer_fixture.h"

namespace vextrel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using TransportLayerWalkTest = TransportLayerTest;

// --- Devices ------------------------------------------------------------------------------------

TEST_F(TransportLayerWalkTest, AddDeviceReachesTheNamedInterface) {
  AddThreeInterfaces();

  EXPECT_TRUE(root->AddDevice(iface2, device1));

  EXPECT_THAT(root->interfaces[0]->devices, IsEmpty());
  EXPECT_THAT(HandlesOf(root->interfaces[1]->devices), ElementsAre(device1));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(TransportLayerWalkTest, OpeningADeviceTwiceSucceedsWithTheInterfacesLine) {
  AddThreeInterfacesWithDevices();

  EXPECT_TRUE(root->AddDevice(iface2, device2));

  EXPECT_THAT(TakeLines(), ElementsAre(DeviceAlreadyAdded(device2, iface2)));
}

TEST_F(TransportLayerWalkTest, ADeviceOfAnUnknownInterfaceIsReportedAndStillSucceeds) {
  root->AddInterface(iface1);

  EXPECT_TRUE(root->AddDevice(iface2, device1));

  EXPECT_THAT(TakeLines(), ElementsAre(TlCannotAddDevice(device1, iface2, tl)));
  EXPECT_THAT(root->interfaces[0]->devices, IsEmpty());
}

TEST_F(TransportLayerWalkTest, RemoveDeviceAsksEachInterfaceUntilOneHasIt) {
  AddThreeInterfacesWithDevices();
  root->AddDevice(iface3, device2);
  const HeapWatch removed(&DeviceOf(1));

  EXPECT_TRUE(root->RemoveDevice(device2));

  EXPECT_THAT(TakeLines(), ElementsAre(DeviceNotDefined(device2, iface1)));
  EXPECT_TRUE(removed.IsFreed());
  EXPECT_THAT(HandlesOf(root->interfaces[2]->devices), ElementsAre(device3, device2));
}

TEST_F(TransportLayerWalkTest, RemovingAnUnknownDeviceWritesALinePerInterfaceThenItsOwn) {
  AddThreeInterfaces();

  EXPECT_FALSE(root->RemoveDevice(device1));

  EXPECT_THAT(TakeLines(),
              ElementsAre(DeviceNotDefined(device1, iface1), DeviceNotDefined(device1, iface2),
                          DeviceNotDefined(device1, iface3), TlCannotRemoveDevice(device1, tl)));
}

// --- Data streams -------------------------------------------------------------------------------

TEST_F(TransportLayerWalkTest, AStreamOfTheFirstInterfacesDeviceIsRecorded) {
  AddThreeInterfacesWithDevices();

  EXPECT_TRUE(root->AddDataStream(device1, stream1));

  EXPECT_THAT(HandlesOf(DeviceOf(0).dataStreams), ElementsAre(stream1));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(TransportLayerWalkTest, OpeningAStreamTwiceSucceedsWithTheDevicesLine) {
  AddThreeInterfacesWithDevices();
  EXPECT_TRUE(root->AddDataStream(device1, stream1));

  EXPECT_TRUE(root->AddDataStream(device1, stream1));

  EXPECT_THAT(TakeLines(), ElementsAre(DataStreamAlreadyAdded(stream1, device1)));
}

TEST_F(TransportLayerWalkTest, AStreamOfALaterInterfacesDeviceIsNotRecordedNorItsCloseFound) {
  root->AddInterface(iface1);
  root->AddInterface(iface2);
  root->AddDevice(iface1, device1);
  root->AddDevice(iface2, device2);

  EXPECT_TRUE(root->AddDataStream(device2, stream1));
  EXPECT_THAT(TakeLines(), ElementsAre(InterfaceCannotAddDataStream(stream1, device2, iface1)));
  EXPECT_THAT(DeviceOf(0).dataStreams, IsEmpty());
  EXPECT_THAT(DeviceOf(1).dataStreams, IsEmpty());

  EXPECT_FALSE(root->RemoveDataStream(stream1));
  EXPECT_THAT(TakeLines(), ElementsAre(DataStreamNotDefined(stream1, device1),
                                       InterfaceCannotRemoveDataStream(stream1, iface1),
                                       DataStreamNotDefined(stream1, device2),
                                       InterfaceCannotRemoveDataStream(stream1, iface2),
                                       TlCannotRemoveDataStream(stream1, tl)));
}

TEST_F(TransportLayerWalkTest, AStreamIsRecordedOnceItsInterfaceHasBecomeTheFirst) {
  AddThreeInterfacesWithDevices();
  EXPECT_TRUE(root->RemoveDevice(device1));
  EXPECT_TRUE(root->RemoveInterface(iface1));

  EXPECT_TRUE(root->AddDataStream(device2, stream1));

  EXPECT_THAT(TakeLines(), IsEmpty());
  EXPECT_THAT(HandlesOf(DeviceOf(0).dataStreams), ElementsAre(stream1));
}

TEST_F(TransportLayerWalkTest, AStreamWithoutAnyInterfaceIsReportedAndFails) {
  EXPECT_FALSE(root->AddDataStream(device1, stream1));

  EXPECT_THAT(TakeLines(), ElementsAre(TlCannotAddDataStream(stream1, device1, tl)));
}

TEST_F(TransportLayerWalkTest, RemoveDataStreamAsksEachInterfaceUntilOneHasIt) {
  AddThreeInterfacesWithDevices();
  const HeapWatch removed(&OpenStream(1, stream1));
  OpenStream(2, stream1);

  EXPECT_TRUE(root->RemoveDataStream(stream1));

  EXPECT_THAT(TakeLines(), ElementsAre(DataStreamNotDefined(stream1, device1),
                                       InterfaceCannotRemoveDataStream(stream1, iface1)));
  EXPECT_TRUE(removed.IsFreed());
  EXPECT_THAT(HandlesOf(DeviceOf(2).dataStreams), ElementsAre(stream1));
}

// --- Buffers ------------------------------------------------------------------------------------

TEST_F(TransportLayerWalkTest, AddBufferAsksEachInterfaceUntilOneHasTheStream) {
  AddThreeInterfacesWithDevices();
  DataStreamNode& named = OpenStream(1, stream1);
  DataStreamNode& later = OpenStream(2, stream1);

  EXPECT_TRUE(root->AddBuffer(stream1, buffer1));

  EXPECT_THAT(TakeLines(), ElementsAre(DeviceCannotAddBuffer(buffer1, stream1, device1),
                                       InterfaceCannotAddBuffer(buffer1, stream1, iface1)));
  EXPECT_THAT(HandlesOf(named.buffers), ElementsAre(buffer1));
  EXPECT_THAT(later.buffers, IsEmpty());
}

TEST_F(TransportLayerWalkTest, ADuplicateBufferEndsTheWalkAsASuccess) {
  AddThreeInterfacesWithDevices();
  OpenStream(0, stream1).AddBuffer(buffer1);
  DataStreamNode& later = OpenStream(1, stream1);

  EXPECT_TRUE(root->AddBuffer(stream1, buffer1));

  EXPECT_THAT(TakeLines(), ElementsAre(BufferAlreadyAdded(buffer1, stream1)));
  EXPECT_THAT(later.buffers, IsEmpty());
}

TEST_F(TransportLayerWalkTest, ABufferOnAnUnknownStreamWritesTheLinesOfAllLevels) {
  AddThreeInterfacesWithDevices();

  EXPECT_FALSE(root->AddBuffer(stream1, buffer1));

  EXPECT_THAT(TakeLines(), ElementsAre(DeviceCannotAddBuffer(buffer1, stream1, device1),
                                       InterfaceCannotAddBuffer(buffer1, stream1, iface1),
                                       DeviceCannotAddBuffer(buffer1, stream1, device2),
                                       InterfaceCannotAddBuffer(buffer1, stream1, iface2),
                                       DeviceCannotAddBuffer(buffer1, stream1, device3),
                                       InterfaceCannotAddBuffer(buffer1, stream1, iface3),
                                       TlCannotAddBuffer(buffer1, stream1, tl)));
}

TEST_F(TransportLayerWalkTest, RemoveBufferAsksEachInterfaceUntilOneHasIt) {
  AddThreeInterfacesWithDevices();
  DataStreamNode& named = OpenStream(1, stream1);
  named.AddBuffer(buffer1);
  const HeapWatch removed(named.buffers[0]);

  EXPECT_TRUE(root->RemoveBuffer(stream1, buffer1));

  EXPECT_THAT(TakeLines(), ElementsAre(DeviceCannotRemoveBuffer(buffer1, device1),
                                       InterfaceCannotRemoveBuffer(buffer1, iface1)));
  EXPECT_TRUE(removed.IsFreed());
  EXPECT_THAT(named.buffers, IsEmpty());
}

TEST_F(TransportLayerWalkTest, RevokingAnUnknownBufferWritesTheLinesOfAllLevels) {
  AddThreeInterfacesWithDevices();
  OpenStream(1, stream1);

  EXPECT_FALSE(root->RemoveBuffer(stream1, buffer1));

  EXPECT_THAT(
      TakeLines(),
      ElementsAre(DeviceCannotRemoveBuffer(buffer1, device1),
                  InterfaceCannotRemoveBuffer(buffer1, iface1), BufferNotDefined(buffer1, stream1),
                  InterfaceCannotRemoveBuffer(buffer1, iface2),
                  DeviceCannotRemoveBuffer(buffer1, device3),
                  InterfaceCannotRemoveBuffer(buffer1, iface3), TlCannotRemoveBuffer(buffer1, tl)));
}

TEST_F(TransportLayerWalkTest, WithoutAnyInterfaceTheRootsLineStandsAlone) {
  EXPECT_FALSE(root->RemoveDevice(device1));
  EXPECT_FALSE(root->RemoveDataStream(stream1));
  EXPECT_FALSE(root->AddBuffer(stream1, buffer1));
  EXPECT_FALSE(root->RemoveBuffer(stream1, buffer1));

  EXPECT_THAT(
      TakeLines(),
      ElementsAre(TlCannotRemoveDevice(device1, tl), TlCannotRemoveDataStream(stream1, tl),
                  TlCannotAddBuffer(buffer1, stream1, tl), TlCannotRemoveBuffer(buffer1, tl)));
}

// --- Queued marks -------------------------------------------------------------------------------

// Buffer 1 is queued on stream 1 of each device; 0xE1 is the latest event of the first and third.
class TransportLayerQueueTest : public TransportLayerTest {
 protected:
  TransportLayerQueueTest() {
    AddThreeInterfacesWithDevices();
    for (std::size_t i = 0; i < root->interfaces.size(); ++i) {
      DataStreamNode& dataStream = OpenStream(i, stream1);
      Register(dataStream, EVENT_NEW_BUFFER, Handle(i == 1 ? 0xE2 : 0xE1));
      dataStream.AddBuffer(buffer1);
      dataStream.buffers[0]->SetQueued(true);
    }
  }

  [[nodiscard]] std::vector<bool> Queued() {
    std::vector<bool> queued;
    for (std::size_t i = 0; i < root->interfaces.size(); ++i) {
      queued.push_back(DeviceOf(i).dataStreams[0]->buffers[0]->queued);
    }
    return queued;
  }
};

TEST_F(TransportLayerQueueTest, SetBufferQueuedStopsAtTheFirstInterfaceThatHasTheBuffer) {
  EXPECT_TRUE(root->SetBufferQueued(buffer1, false));
  EXPECT_THAT(Queued(), ElementsAre(false, true, true));

  EXPECT_TRUE(root->SetBufferQueued(buffer1, true));
  EXPECT_THAT(Queued(), ElementsAre(true, true, true));
}

TEST_F(TransportLayerQueueTest, SetBufferQueuedLooksThroughAllInterfaces) {
  DataStreamNode& last = *DeviceOf(2).dataStreams[0];
  last.AddBuffer(buffer2);

  EXPECT_TRUE(root->SetBufferQueued(buffer2, true));

  EXPECT_TRUE(last.buffers[1]->queued);
}

TEST_F(TransportLayerQueueTest, SetBufferQueuedOfAnUnknownBufferIsFalseAndSilent) {
  EXPECT_FALSE(root->SetBufferQueued(Handle(0xBAD), false));

  EXPECT_THAT(Queued(), ElementsAre(true, true, true));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(TransportLayerQueueTest, ADeliveryReachesEveryInterface) {
  root->OnEventData(Handle(0xE1), &buffer1, 8);

  EXPECT_THAT(Queued(), ElementsAre(false, true, false));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(TransportLayerQueueTest, DiscardingAllReachesEveryInterface) {
  DeviceOf(1).dataStreams[0]->handle = stream2;

  root->OnFlushQueue(stream1, ACQ_QUEUE_ALL_DISCARD);

  EXPECT_THAT(Queued(), ElementsAre(false, true, false));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(TransportLayerQueueTest, AnyOtherFlushChangesNothing) {
  root->OnFlushQueue(stream1, ACQ_QUEUE_INPUT_TO_OUTPUT);

  EXPECT_THAT(Queued(), ElementsAre(true, true, true));
}

}  // namespace
}  // namespace vextrel
