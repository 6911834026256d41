#include "registry/device_node.h"

#include <memory>

#include "registry_fixture.h"

namespace vextrel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class DeviceNodeTest : public RegistryTest {
 protected:
  void* const device = Handle(0xDE);
  void* const stream1 = Handle(0xD51);
  void* const stream2 = Handle(0xD52);
  void* const stream3 = Handle(0xD53);
  void* const buffer1 = Handle(0xB1);
  void* const buffer2 = Handle(0xB2);
  std::unique_ptr<DeviceNode> node = std::make_unique<DeviceNode>(device, logger);

  void AddThreeStreams() {
    node->AddDataStream(stream1);
    node->AddDataStream(stream2);
    node->AddDataStream(stream3);
  }

  // A second record of a handle, which no operation makes.
  DataStreamNode& AppendRecord(void* handle) {
    auto record = std::make_unique<DataStreamNode>(handle, logger);
    node->dataStreams.push_back(record.get());
    return *record.release();
  }
};

// --- Data streams -------------------------------------------------------------------------------

TEST_F(DeviceNodeTest, IsEmptyAtFirst) {
  EXPECT_THAT(node->dataStreams, IsEmpty());

  node->ReportDataStreams();
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(DeviceNodeTest, AddDataStreamKeepsTheOrderOfOpening) {
  EXPECT_TRUE(node->AddDataStream(stream2));
  EXPECT_TRUE(node->AddDataStream(stream1));

  EXPECT_THAT(HandlesOf(node->dataStreams), ElementsAre(stream2, stream1));
  EXPECT_EQ(node->dataStreams[0]->logger, logger);
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(DeviceNodeTest, OpeningAStreamTwiceIsReportedOnceAndStillSucceeds) {
  EXPECT_TRUE(node->AddDataStream(stream1));
  const DataStreamNode* const first = node->dataStreams[0];

  EXPECT_TRUE(node->AddDataStream(stream1));

  EXPECT_THAT(TakeLines(), ElementsAre(DataStreamAlreadyAdded(stream1, device)));
  EXPECT_THAT(node->dataStreams, ElementsAre(first));
}

TEST_F(DeviceNodeTest, RemoveDataStreamDestroysTheRecordAndKeepsTheOthersInOrder) {
  AddThreeStreams();
  const HeapWatch removed(node->dataStreams[1]);
  const HeapWatch kept(node->dataStreams[0]);

  EXPECT_TRUE(node->RemoveDataStream(stream2));

  EXPECT_THAT(HandlesOf(node->dataStreams), ElementsAre(stream1, stream3));
  EXPECT_TRUE(removed.IsFreed());
  EXPECT_FALSE(kept.IsFreed());
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(DeviceNodeTest, RemovingAnUnknownStreamIsReported) {
  node->AddDataStream(stream1);

  EXPECT_FALSE(node->RemoveDataStream(stream2));

  EXPECT_THAT(TakeLines(), ElementsAre(DataStreamNotDefined(stream2, device)));
  EXPECT_THAT(HandlesOf(node->dataStreams), ElementsAre(stream1));
}

TEST_F(DeviceNodeTest, RemovingAStreamReportsItsTwoBuffersThenItsEvent) {
  node->AddDataStream(stream1);
  Register(*node->dataStreams[0], EVENT_NEW_BUFFER, Handle(0xE1));
  EXPECT_TRUE(node->AddBuffer(stream1, buffer1));
  EXPECT_TRUE(node->AddBuffer(stream1, buffer2));

  EXPECT_TRUE(node->RemoveDataStream(stream1));

  EXPECT_THAT(TakeLines(),
              ElementsAre(BufferNotRevoked(buffer1, stream1), BufferNotRevoked(buffer2, stream1),
                          LeftEvent<DataStreamNode>("EVENT_NEW_BUFFER", Handle(0xE1), stream1)));
}

TEST_F(DeviceNodeTest, RemovingAStreamReportsNothingOfItsBuffersEvents) {
  node->AddDataStream(stream1);
  EXPECT_TRUE(node->AddBuffer(stream1, buffer1));
  EXPECT_TRUE(node->AddEvent(buffer1, EVENT_NEW_BUFFER, Handle(0xE1)));

  EXPECT_TRUE(node->RemoveDataStream(stream1));

  EXPECT_THAT(TakeLines(), ElementsAre(BufferNotRevoked(buffer1, stream1)));
}

TEST_F(DeviceNodeTest, RemovingAStreamForgetsItsBuffersAndEventsAndLeavesThemAllocated) {
  node->AddDataStream(stream1);
  EXPECT_TRUE(node->AddBuffer(stream1, buffer1));
  Register(*node->dataStreams[0], EVENT_NEW_BUFFER, Handle(0xE1));
  const HeapWatch streamWatch(node->dataStreams[0]);
  const BufferNode* const buffer = node->dataStreams[0]->buffers[0];
  const HeapWatch bufferWatch(buffer);
  const EventRegistration* const registration = node->dataStreams[0]->events.registrations()[0];
  const HeapWatch registrationWatch(registration);

  EXPECT_TRUE(node->RemoveDataStream(stream1));

  EXPECT_TRUE(streamWatch.IsFreed());
  EXPECT_FALSE(bufferWatch.IsFreed());
  EXPECT_EQ(buffer->handle, buffer1);
  EXPECT_FALSE(registrationWatch.IsFreed());
  EXPECT_EQ(registration->eventHandle, Handle(0xE1));
}

TEST_F(DeviceNodeTest, ReportDataStreamsNamesEachInOrderAndNothingBelow) {
  AddThreeStreams();
  EXPECT_TRUE(node->AddBuffer(stream2, buffer1));
  Register(*node->dataStreams[1], EVENT_NEW_BUFFER, Handle(0xE1));
  Register(*node, EVENT_ERROR, Handle(0xE2));

  node->ReportDataStreams();

  EXPECT_THAT(TakeLines(), ElementsAre(DataStreamNotClosed(stream1, device),
                                       DataStreamNotClosed(stream2, device),
                                       DataStreamNotClosed(stream3, device)));
  EXPECT_THAT(HandlesOf(node->dataStreams), ElementsAre(stream1, stream2, stream3));
}

TEST_F(DeviceNodeTest, TheEndOfTheDeviceForgetsItsStreamsAndEventsSilently) {
  AddThreeStreams();
  Register(*node, EVENT_ERROR, Handle(0xE1));
  const DataStreamNode* const dataStream = node->dataStreams[1];
  const HeapWatch streamWatch(dataStream);
  const HeapWatch registrationWatch(node->events.registrations()[0]);

  node.reset();

  EXPECT_FALSE(streamWatch.IsFreed());
  EXPECT_EQ(dataStream->handle, stream2);
  EXPECT_FALSE(registrationWatch.IsFreed());
  EXPECT_THAT(TakeLines(), IsEmpty());
}

// --- Buffers ------------------------------------------------------------------------------------

TEST_F(DeviceNodeTest, AddBufferReachesTheNamedStream) {
  AddThreeStreams();

  EXPECT_TRUE(node->AddBuffer(stream2, buffer1));

  EXPECT_THAT(node->dataStreams[0]->buffers, IsEmpty());
  EXPECT_THAT(HandlesOf(node->dataStreams[1]->buffers), ElementsAre(buffer1));
  EXPECT_THAT(node->dataStreams[2]->buffers, IsEmpty());
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(DeviceNodeTest, AnnouncingABufferTwiceSucceedsWithTheStreamsLine) {
  AddThreeStreams();
  EXPECT_TRUE(node->AddBuffer(stream2, buffer1));

  EXPECT_TRUE(node->AddBuffer(stream2, buffer1));

  EXPECT_THAT(TakeLines(), ElementsAre(BufferAlreadyAdded(buffer1, stream2)));
}

TEST_F(DeviceNodeTest, ABufferMayBeAnnouncedOnTwoStreams) {
  AddThreeStreams();
  EXPECT_TRUE(node->AddBuffer(stream1, buffer1));
  EXPECT_TRUE(node->AddBuffer(stream2, buffer1));

  EXPECT_THAT(TakeLines(), IsEmpty());
  EXPECT_THAT(HandlesOf(node->dataStreams[1]->buffers), ElementsAre(buffer1));
}

TEST_F(DeviceNodeTest, AnnouncingABufferOnAnUnknownStreamIsReportedAndFails) {
  node->AddDataStream(stream1);

  EXPECT_FALSE(node->AddBuffer(stream2, buffer1));

  EXPECT_THAT(TakeLines(), ElementsAre(DeviceCannotAddBuffer(buffer1, stream2, device)));
  EXPECT_THAT(node->dataStreams[0]->buffers, IsEmpty());
}

TEST_F(DeviceNodeTest, RemoveBufferReachesTheNamedStreamAndDestroysTheRecord) {
  AddThreeStreams();
  EXPECT_TRUE(node->AddBuffer(stream1, buffer1));
  EXPECT_TRUE(node->AddBuffer(stream2, buffer1));
  const HeapWatch onTheFirst(node->dataStreams[0]->buffers[0]);
  const HeapWatch onTheSecond(node->dataStreams[1]->buffers[0]);

  EXPECT_TRUE(node->RemoveBuffer(stream2, buffer1));

  EXPECT_FALSE(onTheFirst.IsFreed());
  EXPECT_TRUE(onTheSecond.IsFreed());
  EXPECT_THAT(node->dataStreams[1]->buffers, IsEmpty());
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(DeviceNodeTest, RemovingABufferLooksAtTheNamedStreamOnly) {
  AddThreeStreams();
  EXPECT_TRUE(node->AddBuffer(stream1, buffer1));

  EXPECT_FALSE(node->RemoveBuffer(stream2, buffer1));
  EXPECT_THAT(TakeLines(), ElementsAre(BufferNotDefined(buffer1, stream2)));

  EXPECT_FALSE(node->RemoveBuffer(Handle(0xBAD), buffer1));
  EXPECT_THAT(TakeLines(), ElementsAre(DeviceCannotRemoveBuffer(buffer1, device)));

  EXPECT_THAT(HandlesOf(node->dataStreams[0]->buffers), ElementsAre(buffer1));
}

TEST_F(DeviceNodeTest, TheFirstOfEqualStreamHandlesIsMeant) {
  AddThreeStreams();
  const DataStreamNode& later = AppendRecord(stream2);
  const HeapWatch first(node->dataStreams[1]);
  EXPECT_TRUE(node->AddBuffer(stream2, buffer1));
  EXPECT_TRUE(node->AddBuffer(stream2, buffer2));

  EXPECT_THAT(HandlesOf(node->dataStreams[1]->buffers), ElementsAre(buffer1, buffer2));
  EXPECT_THAT(later.buffers, IsEmpty());

  EXPECT_TRUE(node->RemoveBuffer(stream2, buffer1));
  EXPECT_TRUE(node->RemoveBuffer(stream2, buffer2));
  EXPECT_TRUE(node->RemoveDataStream(stream2));

  EXPECT_TRUE(first.IsFreed());
  EXPECT_THAT(HandlesOf(node->dataStreams), ElementsAre(stream1, stream3, stream2));
}

// --- Queued marks -------------------------------------------------------------------------------

// Buffer 1 is queued on each of the three streams, and 0xE1 is the latest event of the first two.
class DeviceQueueTest : public DeviceNodeTest {
 protected:
  DeviceQueueTest() {
    AddThreeStreams();
    Register(*node->dataStreams[0], EVENT_NEW_BUFFER, Handle(0xE1));
    Register(*node->dataStreams[1], EVENT_NEW_BUFFER, Handle(0xE1));
    Register(*node->dataStreams[2], EVENT_NEW_BUFFER, Handle(0xE2));
    for (DataStreamNode* dataStream : node->dataStreams) {
      dataStream->AddBuffer(buffer1);
      dataStream->buffers[0]->SetQueued(true);
    }
  }

  [[nodiscard]] std::vector<bool> Queued() const {
    std::vector<bool> queued;
    for (const DataStreamNode* dataStream : node->dataStreams) {
      queued.push_back(dataStream->buffers[0]->queued);
    }
    return queued;
  }
};

TEST_F(DeviceQueueTest, SetBufferQueuedStopsAtTheFirstStreamThatHasTheBuffer) {
  EXPECT_TRUE(node->SetBufferQueued(buffer1, false));

  EXPECT_THAT(Queued(), ElementsAre(false, true, true));
}

TEST_F(DeviceQueueTest, SetBufferQueuedLooksThroughAllStreams) {
  node->dataStreams[2]->AddBuffer(buffer2);

  EXPECT_TRUE(node->SetBufferQueued(buffer2, true));

  EXPECT_TRUE(node->dataStreams[2]->buffers[1]->queued);
}

TEST_F(DeviceQueueTest, SetBufferQueuedOfAnUnknownBufferIsFalseAndSilent) {
  EXPECT_FALSE(node->SetBufferQueued(buffer2, false));

  EXPECT_THAT(Queued(), ElementsAre(true, true, true));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(DeviceQueueTest, ADeliveryReachesEveryStream) {
  node->OnEventData(Handle(0xE1), &buffer1, 8);

  EXPECT_THAT(Queued(), ElementsAre(false, false, true));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(DeviceQueueTest, ADeliveryKeepsItsDataAndSize) {
  void* const unknown = Handle(0xBAD);
  node->OnEventData(Handle(0xE1), &unknown, 8);
  node->OnEventData(Handle(0xE1), nullptr, 8);
  node->OnEventData(Handle(0xE1), &buffer1, 7);

  EXPECT_THAT(Queued(), ElementsAre(true, true, true));
}

TEST_F(DeviceQueueTest, DiscardingAllAffectsOnlyTheFirstStreamThatMatches) {
  DataStreamNode& later = AppendRecord(stream2);
  later.AddBuffer(buffer1);
  later.buffers[0]->SetQueued(true);

  node->OnFlushQueue(stream2, ACQ_QUEUE_ALL_DISCARD);

  EXPECT_THAT(Queued(), ElementsAre(true, false, true, true));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(DeviceQueueTest, AnyOtherFlushChangesNothing) {
  node->OnFlushQueue(stream2, ACQ_QUEUE_OUTPUT_DISCARD);

  EXPECT_THAT(Queued(), ElementsAre(true, true, true));
}

TEST_F(DeviceQueueTest, FlushingAnUnknownStreamDoesNothing) {
  node->OnFlushQueue(Handle(0xBAD), ACQ_QUEUE_ALL_DISCARD);

  EXPECT_THAT(Queued(), ElementsAre(true, true, true));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

// --- Events -------------------------------------------------------------------------------------

TEST_F(DeviceNodeTest, AddEventDescendsToTheStreamsInOrder) {
  AddThreeStreams();

  EXPECT_TRUE(node->AddEvent(stream2, EVENT_NEW_BUFFER, Handle(0xE1)));

  EXPECT_THAT(TypesOf(node->events), IsEmpty());
  EXPECT_THAT(TypesOf(node->dataStreams[1]->events), ElementsAre(EVENT_NEW_BUFFER));
  EXPECT_EQ(node->dataStreams[1]->lastEventHandle, Handle(0xE1));
}

TEST_F(DeviceNodeTest, RemoveEventTriesTheDeviceThenItsStreamsInOrder) {
  AddThreeStreams();
  Register(*node->dataStreams[1], EVENT_ERROR, Handle(0xE1));
  Register(*node->dataStreams[2], EVENT_ERROR, Handle(0xE2));
  Register(*node, EVENT_ERROR, Handle(0xE3));

  EXPECT_TRUE(node->RemoveEvent(EVENT_ERROR));
  EXPECT_THAT(TypesOf(node->events), IsEmpty());
  EXPECT_TRUE(node->RemoveEvent(EVENT_ERROR));
  EXPECT_THAT(TypesOf(node->dataStreams[1]->events), IsEmpty());
  EXPECT_TRUE(node->RemoveEvent(EVENT_ERROR));
  EXPECT_FALSE(node->RemoveEvent(EVENT_ERROR));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(DeviceNodeTest, ReleaseEventsFindsAStream) {
  AddThreeStreams();
  Register(*node, EVENT_ERROR, Handle(0xE1));
  Register(*node->dataStreams[1], EVENT_ERROR, Handle(0xE2));

  EXPECT_TRUE(node->ReleaseEvents(stream2));

  EXPECT_THAT(TakeLines(),
              ElementsAre(LeftEvent<DataStreamNode>("EVENT_ERROR", Handle(0xE2), stream2)));
  EXPECT_THAT(TypesOf(node->events), ElementsAre(EVENT_ERROR));
}

}  // namespace
}  // namespace vextrel
