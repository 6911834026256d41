// SPDX-License-Identifier: MIT
#include "registry/device_node.h"

#include <memory>

#include "registry/registry_fixture.h"

namespace vextrel_test {
namespace {

using model::Error;
using model::kDataStream;
using model::kDevice;
using model::Warn;

class DeviceNodeTest : public RegistryTest {
 protected:
  vextrel::DeviceNode device{device1, logger};
};

TEST_F(DeviceNodeTest, OpeningAStreamTwiceIsReportedOnceAndStillSucceeds) {
  EXPECT_TRUE(device.AddDataStream(stream1));
  EXPECT_THAT(TakeLines(), IsEmpty());
  EXPECT_TRUE(device.AddDataStream(stream1));

  EXPECT_THAT(TakeLines(), ElementsAre(Error(kDevice.childAddedTwice, {stream1, device1})));
  EXPECT_THAT(HandlesOf(device.dataStreams), ElementsAre(stream1));
}

TEST_F(DeviceNodeTest, RemovingAStreamReportsItsTwoBuffersThenItsEvent) {
  vextrel::DataStreamNode& stream = Open(device, stream1);
  Register(stream, EVENT_NEW_BUFFER, event1);
  Register(Announce(stream, buffer1), EVENT_ERROR, event2);
  Announce(stream, buffer2);

  EXPECT_TRUE(device.RemoveDataStream(stream1));

  EXPECT_THAT(TakeLines(), ElementsAre(Error(kDataStream.childLeftOpen, {buffer1, stream1}),
                                       Error(kDataStream.childLeftOpen, {buffer2, stream1}),
                                       Warn(kDataStream.eventLeft, {event1, stream1})));
}

TEST_F(DeviceNodeTest, RemovingAnUnknownStreamIsReportedAndFails) {
  EXPECT_FALSE(device.RemoveDataStream(stream1));
  EXPECT_THAT(TakeLines(), ElementsAre(Error(kDevice.childNotDefined, {stream1, device1})));
}

TEST_F(DeviceNodeTest, ReportDataStreamsNamesEachInOrderAndNothingBelow) {
  device.ReportDataStreams();
  EXPECT_THAT(TakeLines(), IsEmpty());
  Announce(Open(device, stream2), buffer1);
  Register(Open(device, stream1), EVENT_NEW_BUFFER, event1);

  device.ReportDataStreams();

  EXPECT_THAT(TakeLines(), ElementsAre(Error(kDevice.childLeftOpen, {stream2, device1}),
                                       Error(kDevice.childLeftOpen, {stream1, device1})));
}

TEST_F(DeviceNodeTest, AnnouncingABufferOnAnUnknownStreamIsReportedAndFails) {
  Open(device, stream1);

  EXPECT_FALSE(device.AddBuffer(stream2, buffer1));
  EXPECT_THAT(TakeLines(), ElementsAre(Error(kDevice.bufferNotAdded, {buffer1, stream2, device1})));
  EXPECT_TRUE(device.AddBuffer(stream1, buffer1));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(DeviceNodeTest, RevokingABufferLooksAtTheNamedStreamOnly) {
  Announce(Open(device, stream1), buffer1);
  Open(device, stream2);

  EXPECT_FALSE(device.RemoveBuffer(stream2, buffer1));
  EXPECT_THAT(TakeLines(), ElementsAre(Error(kDataStream.childNotDefined, {buffer1, stream2})));
  EXPECT_FALSE(device.RemoveBuffer(unknown, buffer1));
  EXPECT_THAT(TakeLines(), ElementsAre(Error(kDevice.bufferNotRemoved, {buffer1, device1})));
  EXPECT_TRUE(device.RemoveBuffer(stream1, buffer1));
}

TEST_F(DeviceNodeTest, DiscardingAllAffectsOnlyTheFirstStreamThatMatches) {
  Announce(Open(device, stream1), buffer1).SetQueued(true);
  Announce(Open(device, stream2), buffer1).SetQueued(true);
  // A second record of a handle, which no operation makes.
  auto later = std::make_unique<vextrel::DataStreamNode>(stream2, logger);
  Announce(*later, buffer1).SetQueued(true);
  device.dataStreams.push_back(later.get());

  device.OnFlushQueue(stream2, ACQ_QUEUE_ALL_DISCARD);
  device.OnFlushQueue(unknown, ACQ_QUEUE_ALL_DISCARD);

  EXPECT_TRUE(device.dataStreams[0]->buffers[0]->queued);
  EXPECT_FALSE(device.dataStreams[1]->buffers[0]->queued);
  EXPECT_TRUE(later->buffers[0]->queued);
  EXPECT_THAT(TakeLines(), IsEmpty());
}

}  // namespace
}  // namespace vextrel_test
