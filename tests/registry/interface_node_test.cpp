// SPDX-License-Identifier: MIT
#include "registry/interface_node.h"

#include "registry/registry_fixture.h"

namespace vextrel_test {
namespace {

using model::Error;
using model::kDataStream;
using model::kDevice;
using model::kInterface;
using model::Warn;

// With two devices.
class InterfaceNodeTest : public RegistryTest {
 protected:
  vextrel::InterfaceNode iface{iface1, logger};
  vextrel::DeviceNode& first = Open(iface, device1);
  vextrel::DeviceNode& second = Open(iface, device2);
};

TEST_F(InterfaceNodeTest, OpeningADeviceTwiceIsReportedOnceAndStillSucceeds) {
  EXPECT_TRUE(iface.AddDevice(Handle(0xDE3)));
  EXPECT_THAT(TakeLines(), IsEmpty());
  EXPECT_TRUE(iface.AddDevice(device1));

  EXPECT_THAT(TakeLines(), ElementsAre(Error(kInterface.childAddedTwice, {device1, iface1})));
  EXPECT_THAT(HandlesOf(iface.devices), ElementsAre(device1, device2, Handle(0xDE3)));
}

TEST_F(InterfaceNodeTest, RemovingADeviceReportsItsOpenStreamsThenItsEvents) {
  Register(first, EVENT_ERROR, event1);
  Register(first, EVENT_FEATURE_CHANGE, event2);
  Register(Open(first, stream1), EVENT_NEW_BUFFER, event3);
  Announce(Open(first, stream2), buffer1);

  EXPECT_TRUE(iface.RemoveDevice(device1));

  EXPECT_THAT(TakeLines(),
              ElementsAre(Error(kDevice.childLeftOpen, {stream1, device1}),
                          Error(kDevice.childLeftOpen, {stream2, device1}),
                          Warn(kDevice.eventLeft, {"EVENT_ERROR", event1, device1}),
                          Warn(kDevice.eventLeft, {"EVENT_FEATURE_CHANGE", event2, device1})));
}

TEST_F(InterfaceNodeTest, RemovingAnUnknownDeviceIsReportedAndFails) {
  EXPECT_FALSE(iface.RemoveDevice(unknown));
  EXPECT_THAT(TakeLines(), ElementsAre(Error(kInterface.childNotDefined, {unknown, iface1})));
}

TEST_F(InterfaceNodeTest, ReportDevicesNamesEachInOrderAndNothingDeeper) {
  Open(first, stream1);
  Register(second, EVENT_ERROR, event1);

  iface.ReportDevices();

  EXPECT_THAT(TakeLines(), ElementsAre(Error(kInterface.childLeftOpen, {device1, iface1}),
                                       Error(kInterface.childLeftOpen, {device2, iface1})));
}

TEST_F(InterfaceNodeTest, AStreamOfAnUnknownDeviceIsReportedAndStillSucceeds) {
  EXPECT_TRUE(iface.AddDataStream(unknown, stream1));
  EXPECT_THAT(TakeLines(),
              ElementsAre(Error(kInterface.dataStreamNotAdded, {stream1, unknown, iface1})));
  EXPECT_TRUE(iface.AddDataStream(device2, stream1));
  EXPECT_THAT(HandlesOf(second.dataStreams), ElementsAre(stream1));
}

TEST_F(InterfaceNodeTest, RemovingAStreamAsksEachDeviceUntilOneHasIt) {
  Open(second, stream1);

  EXPECT_TRUE(iface.RemoveDataStream(stream1));
  EXPECT_THAT(TakeLines(), ElementsAre(Error(kDevice.childNotDefined, {stream1, device1})));

  EXPECT_FALSE(iface.RemoveDataStream(stream1));
  EXPECT_THAT(TakeLines(), ElementsAre(Error(kDevice.childNotDefined, {stream1, device1}),
                                       Error(kDevice.childNotDefined, {stream1, device2}),
                                       Error(kInterface.dataStreamNotRemoved, {stream1, iface1})));
}

TEST_F(InterfaceNodeTest, ABufferOnAStreamOfTheSecondDeviceWritesALineForTheFirstThenSucceeds) {
  Open(second, stream1);

  EXPECT_TRUE(iface.AddBuffer(stream1, buffer1));
  EXPECT_THAT(TakeLines(), ElementsAre(Error(kDevice.bufferNotAdded, {buffer1, stream1, device1})));
  // And a duplicate ends the walk as a success.
  EXPECT_TRUE(iface.AddBuffer(stream1, buffer1));
  EXPECT_THAT(TakeLines(), ElementsAre(Error(kDevice.bufferNotAdded, {buffer1, stream1, device1}),
                                       Error(kDataStream.childAddedTwice, {buffer1, stream1})));

  EXPECT_FALSE(iface.AddBuffer(unknown, buffer1));
  EXPECT_THAT(TakeLines(),
              ElementsAre(Error(kDevice.bufferNotAdded, {buffer1, unknown, device1}),
                          Error(kDevice.bufferNotAdded, {buffer1, unknown, device2}),
                          Error(kInterface.bufferNotAdded, {buffer1, unknown, iface1})));
}

TEST_F(InterfaceNodeTest, RevokingABufferOfAnUnknownStreamWritesALinePerDeviceThenItsOwn) {
  EXPECT_FALSE(iface.RemoveBuffer(stream1, buffer1));
  EXPECT_THAT(TakeLines(), ElementsAre(Error(kDevice.bufferNotRemoved, {buffer1, device1}),
                                       Error(kDevice.bufferNotRemoved, {buffer1, device2}),
                                       Error(kInterface.bufferNotRemoved, {buffer1, iface1})));

  // A stream that lacks the buffer does not end the walk.
  Open(first, stream1);
  EXPECT_FALSE(iface.RemoveBuffer(stream1, buffer1));
  EXPECT_THAT(TakeLines(), ElementsAre(Error(kDataStream.childNotDefined, {buffer1, stream1}),
                                       Error(kDevice.bufferNotRemoved, {buffer1, device2}),
                                       Error(kInterface.bufferNotRemoved, {buffer1, iface1})));
}

TEST_F(InterfaceNodeTest, SetBufferQueuedIsFalseAndSilentForAnUnknownBuffer) {
  EXPECT_FALSE(iface.SetBufferQueued(buffer1, true));
  Announce(Open(second, stream1), buffer1);
  EXPECT_TRUE(iface.SetBufferQueued(buffer1, true));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

}  // namespace
}  // namespace vextrel_test
