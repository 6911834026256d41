#include "registry/data_stream_node.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <memory>

#include "registry_fixture.h"

namespace vextrel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class DataStreamNodeTest : public RegistryTest {
 protected:
  void* const stream = Handle(0xD5);
  void* const buffer1 = Handle(0xB1);
  void* const buffer2 = Handle(0xB2);
  void* const buffer3 = Handle(0xB3);
  std::unique_ptr<DataStreamNode> node = std::make_unique<DataStreamNode>(stream, logger);

  void AddThreeBuffers() {
    node->AddBuffer(buffer1);
    node->AddBuffer(buffer2);
    node->AddBuffer(buffer3);
  }

  // A second record of a handle, which no operation makes.
  BufferNode& AppendRecord(void* handle) {
    auto record = std::make_unique<BufferNode>(handle, logger);
    node->buffers.push_back(record.get());
    return *record.release();
  }
};

// --- Buffers ------------------------------------------------------------------------------------

TEST_F(DataStreamNodeTest, IsEmptyAtFirst) {
  EXPECT_EQ(node->lastEventHandle, nullptr);
  EXPECT_THAT(node->buffers, IsEmpty());

  node->ReportBuffers();
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(DataStreamNodeTest, AddBufferKeepsTheOrderOfAnnouncement) {
  EXPECT_TRUE(node->AddBuffer(buffer2));
  EXPECT_TRUE(node->AddBuffer(buffer1));

  EXPECT_THAT(HandlesOf(node->buffers), ElementsAre(buffer2, buffer1));
  EXPECT_EQ(node->buffers[0]->logger, logger);
  EXPECT_FALSE(node->buffers[0]->queued);
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(DataStreamNodeTest, AnnouncingABufferTwiceIsReportedOnceAndStillSucceeds) {
  EXPECT_TRUE(node->AddBuffer(buffer1));
  const BufferNode* const first = node->buffers[0];

  EXPECT_TRUE(node->AddBuffer(buffer1));

  EXPECT_THAT(TakeLines(), ElementsAre(BufferAlreadyAdded(buffer1, stream)));
  EXPECT_THAT(node->buffers, ElementsAre(first));
}

TEST_F(DataStreamNodeTest, RemoveBufferDestroysTheRecordAndKeepsTheOthersInOrder) {
  AddThreeBuffers();
  const HeapWatch removed(node->buffers[1]);
  const HeapWatch kept(node->buffers[2]);

  EXPECT_TRUE(node->RemoveBuffer(buffer2));

  EXPECT_THAT(HandlesOf(node->buffers), ElementsAre(buffer1, buffer3));
  EXPECT_TRUE(removed.IsFreed());
  EXPECT_FALSE(kept.IsFreed());
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(DataStreamNodeTest, RemovingAnUnknownBufferIsReported) {
  node->AddBuffer(buffer1);

  EXPECT_FALSE(node->RemoveBuffer(buffer2));

  EXPECT_THAT(TakeLines(), ElementsAre(BufferNotDefined(buffer2, stream)));
  EXPECT_THAT(HandlesOf(node->buffers), ElementsAre(buffer1));
}

TEST_F(DataStreamNodeTest, RevokingABufferReportsItsEventFirstAndASecondRevokeFindsNothing) {
  node->AddBuffer(buffer1);
  Register(*node->buffers[0], EVENT_NEW_BUFFER, Handle(0xE1));
  const EventRegistration* const registration = node->buffers[0]->events.registrations()[0];
  const HeapWatch registrationWatch(registration);

  EXPECT_TRUE(node->RemoveBuffer(buffer1));
  EXPECT_THAT(TakeLines(),
              ElementsAre(LeftEvent<BufferNode>("EVENT_NEW_BUFFER", Handle(0xE1), buffer1)));
  EXPECT_THAT(node->buffers, IsEmpty());
  EXPECT_FALSE(registrationWatch.IsFreed());
  EXPECT_EQ(registration->eventHandle, Handle(0xE1));

  EXPECT_FALSE(node->RemoveBuffer(buffer1));
  EXPECT_THAT(TakeLines(), ElementsAre(BufferNotDefined(buffer1, stream)));
}

TEST_F(DataStreamNodeTest, RevokingABufferReportsEachOfItsEventsInOrder) {
  node->AddBuffer(buffer1);
  Register(*node->buffers[0], EVENT_NEW_BUFFER, Handle(0xE1));
  Register(*node->buffers[0], EVENT_ERROR, Handle(0xE2));

  EXPECT_TRUE(node->RemoveBuffer(buffer1));

  EXPECT_THAT(TakeLines(),
              ElementsAre(LeftEvent<BufferNode>("EVENT_NEW_BUFFER", Handle(0xE1), buffer1),
                          LeftEvent<BufferNode>("EVENT_ERROR", Handle(0xE2), buffer1)));
}

TEST_F(DataStreamNodeTest, TheFirstOfEqualBufferHandlesIsMeant) {
  AddThreeBuffers();
  const BufferNode& later = AppendRecord(buffer2);
  const HeapWatch first(node->buffers[1]);

  EXPECT_TRUE(node->SetBufferQueued(buffer2, true));
  EXPECT_TRUE(node->buffers[1]->queued);
  EXPECT_FALSE(later.queued);

  EXPECT_TRUE(node->RemoveBuffer(buffer2));
  EXPECT_TRUE(first.IsFreed());
  EXPECT_THAT(HandlesOf(node->buffers), ElementsAre(buffer1, buffer3, buffer2));
}

TEST_F(DataStreamNodeTest, ReportBuffersNamesEachInOrderAndNothingOfTheirEvents) {
  AddThreeBuffers();
  Register(*node->buffers[1], EVENT_NEW_BUFFER, Handle(0xE1));
  Register(*node, EVENT_ERROR, Handle(0xE2));

  node->ReportBuffers();

  EXPECT_THAT(TakeLines(),
              ElementsAre(BufferNotRevoked(buffer1, stream), BufferNotRevoked(buffer2, stream),
                          BufferNotRevoked(buffer3, stream)));
  EXPECT_THAT(HandlesOf(node->buffers), ElementsAre(buffer1, buffer2, buffer3));
}

TEST_F(DataStreamNodeTest, TheEndOfTheStreamForgetsItsBuffersAndEventsSilently) {
  AddThreeBuffers();
  Register(*node, EVENT_ERROR, Handle(0xE1));
  const BufferNode* const buffer = node->buffers[1];
  const HeapWatch bufferWatch(buffer);
  const EventRegistration* const registration = node->events.registrations()[0];
  const HeapWatch registrationWatch(registration);

  node.reset();

  EXPECT_FALSE(bufferWatch.IsFreed());
  EXPECT_EQ(buffer->handle, buffer2);
  EXPECT_FALSE(registrationWatch.IsFreed());
  EXPECT_EQ(registration->eventHandle, Handle(0xE1));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(DataStreamNodeTest, SetBufferQueuedMarksThatBufferAlone) {
  AddThreeBuffers();

  EXPECT_TRUE(node->SetBufferQueued(buffer2, true));
  EXPECT_FALSE(node->buffers[0]->queued);
  EXPECT_TRUE(node->buffers[1]->queued);
  EXPECT_FALSE(node->buffers[2]->queued);

  EXPECT_TRUE(node->SetBufferQueued(buffer2, false));
  EXPECT_FALSE(node->buffers[1]->queued);
}

TEST_F(DataStreamNodeTest, SetBufferQueuedOfAnUnknownBufferIsFalseAndSilent) {
  node->AddBuffer(buffer1);

  EXPECT_FALSE(node->SetBufferQueued(buffer2, true));

  EXPECT_FALSE(node->buffers[0]->queued);
  EXPECT_THAT(TakeLines(), IsEmpty());
}

// --- Events -------------------------------------------------------------------------------------

TEST_F(DataStreamNodeTest, LastEventHandleFollowsTheLatestRegistrationOfAnyType) {
  Register(*node, EVENT_NEW_BUFFER, Handle(0xE1));
  EXPECT_EQ(node->lastEventHandle, Handle(0xE1));
  Register(*node, EVENT_ERROR, Handle(0xE2));
  EXPECT_EQ(node->lastEventHandle, Handle(0xE2));
  Register(*node, 4711, nullptr);
  EXPECT_EQ(node->lastEventHandle, nullptr);
}

TEST_F(DataStreamNodeTest, LastEventHandleStaysWhenItsEventIsGone) {
  Register(*node, EVENT_NEW_BUFFER, Handle(0xE1));
  Register(*node, EVENT_ERROR, Handle(0xE2));

  EXPECT_TRUE(node->RemoveEvent(EVENT_ERROR));
  EXPECT_EQ(node->lastEventHandle, Handle(0xE2));

  EXPECT_TRUE(node->ReleaseEvents(stream));
  EXPECT_EQ(node->lastEventHandle, Handle(0xE2));

  Register(*node, EVENT_ERROR, Handle(0xE3));
  EXPECT_EQ(node->lastEventHandle, Handle(0xE3));
}

TEST_F(DataStreamNodeTest, LastEventHandleIgnoresARefusedDuplicate) {
  Register(*node, EVENT_NEW_BUFFER, Handle(0xE1));

  EXPECT_FALSE(node->AddEvent(stream, EVENT_NEW_BUFFER, Handle(0xE2)));

  EXPECT_EQ(node->lastEventHandle, Handle(0xE1));
  EXPECT_THAT(TakeLines(), ElementsAre(DuplicateEvent<DataStreamNode>("EVENT_NEW_BUFFER", stream)));
}

TEST_F(DataStreamNodeTest, LastEventHandleIgnoresWhatIsRegisteredOnABufferOrElsewhere) {
  AddThreeBuffers();
  Register(*node, EVENT_NEW_BUFFER, Handle(0xE1));

  EXPECT_TRUE(node->AddEvent(buffer2, EVENT_NEW_BUFFER, Handle(0xE2)));
  EXPECT_FALSE(node->AddEvent(Handle(0xBAD), EVENT_NEW_BUFFER, Handle(0xE3)));

  EXPECT_EQ(node->lastEventHandle, Handle(0xE1));
  EXPECT_THAT(EventHandlesOf(node->buffers[1]->events), ElementsAre(Handle(0xE2)));
}

TEST_F(DataStreamNodeTest, AnEventOnTheStreamsHandleNeverReachesABufferOfThatHandle) {
  node->AddBuffer(stream);
  Register(*node, EVENT_NEW_BUFFER, Handle(0xE1));

  EXPECT_FALSE(node->AddEvent(stream, EVENT_NEW_BUFFER, Handle(0xE2)));

  EXPECT_THAT(TypesOf(node->buffers[0]->events), IsEmpty());
}

TEST_F(DataStreamNodeTest, RemoveEventTriesTheStreamThenItsBuffersInOrder) {
  AddThreeBuffers();
  Register(*node->buffers[0], EVENT_ERROR, Handle(0xE1));
  Register(*node->buffers[2], EVENT_ERROR, Handle(0xE2));
  Register(*node, EVENT_ERROR, Handle(0xE3));

  EXPECT_TRUE(node->RemoveEvent(EVENT_ERROR));
  EXPECT_THAT(TypesOf(node->events), IsEmpty());
  EXPECT_TRUE(node->RemoveEvent(EVENT_ERROR));
  EXPECT_THAT(TypesOf(node->buffers[0]->events), IsEmpty());
  EXPECT_THAT(TypesOf(node->buffers[2]->events), ElementsAre(EVENT_ERROR));
  EXPECT_TRUE(node->RemoveEvent(EVENT_ERROR));
  EXPECT_FALSE(node->RemoveEvent(EVENT_ERROR));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(DataStreamNodeTest, ReleaseEventsActsOnTheStreamsOwnHandleOnly) {
  node->AddBuffer(buffer1);
  Register(*node->buffers[0], EVENT_ERROR, Handle(0xE1));

  EXPECT_FALSE(node->ReleaseEvents(buffer1));

  EXPECT_THAT(TypesOf(node->buffers[0]->events), ElementsAre(EVENT_ERROR));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

// --- Deliveries and flushes ---------------------------------------------------------------------

// All three buffers are queued; the stream's event is 0xE1.
class DataStreamQueueTest : public DataStreamNodeTest {
 protected:
  DataStreamQueueTest() {
    AddThreeBuffers();
    Register(*node, EVENT_NEW_BUFFER, Handle(0xE1));
    for (void* handle : HandlesOf(node->buffers)) {
      EXPECT_TRUE(node->SetBufferQueued(handle, true));
    }
  }

  [[nodiscard]] std::array<bool, 3> Queued() const {
    return {node->buffers[0]->queued, node->buffers[1]->queued, node->buffers[2]->queued};
  }

  const std::array<bool, 3> all{true, true, true};
  const std::array<bool, 3> allButTheSecond{true, false, true};
};

TEST_F(DataStreamQueueTest, ADeliveredBufferIsNoLongerQueued) {
  node->OnEventData(Handle(0xE1), &buffer2, 8);

  EXPECT_EQ(Queued(), allButTheSecond);
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(DataStreamQueueTest, ADeliveryOfAnyOtherSizeChangesNothing) {
  const std::array<void*, 2> data = {buffer2, buffer1};
  for (const std::uint64_t size :
       {std::uint64_t{0}, std::uint64_t{1}, std::uint64_t{4}, std::uint64_t{7}, std::uint64_t{9},
        std::uint64_t{15}, std::uint64_t{16}, std::uint64_t{24}, std::uint64_t{0x100000008},
        ~std::uint64_t{0}}) {
    SCOPED_TRACE(size);
    node->OnEventData(Handle(0xE1), data.data(), size);
    EXPECT_EQ(Queued(), all);
  }
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(DataStreamQueueTest, ADeliveryOfSize16ChangesNothing) {
  const std::array<void*, 2> data = {buffer2, nullptr};

  node->OnEventData(Handle(0xE1), data.data(), 16);

  EXPECT_EQ(Queued(), all);
}

TEST_F(DataStreamQueueTest, ADeliveryOfAnUnknownBufferChangesNothingAndWritesNothing) {
  void* const unknown = Handle(0xBAD);

  node->OnEventData(Handle(0xE1), &unknown, 8);

  EXPECT_EQ(Queued(), all);
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(DataStreamQueueTest, ADeliveryWithoutDataChangesNothing) {
  node->AddBuffer(nullptr);
  EXPECT_TRUE(node->SetBufferQueued(nullptr, true));

  node->OnEventData(Handle(0xE1), nullptr, 8);

  EXPECT_EQ(Queued(), all);
  EXPECT_TRUE(node->buffers[3]->queued);
}

TEST_F(DataStreamQueueTest, ADeliveryThroughAnotherEventChangesNothing) {
  node->OnEventData(Handle(0xE2), &buffer2, 8);
  node->OnEventData(nullptr, &buffer2, 8);
  node->OnEventData(stream, &buffer2, 8);

  EXPECT_EQ(Queued(), all);
}

TEST_F(DataStreamQueueTest, OnlyTheLatestEventDelivers) {
  Register(*node, EVENT_ERROR, Handle(0xE2));

  node->OnEventData(Handle(0xE1), &buffer2, 8);
  EXPECT_EQ(Queued(), all);

  node->OnEventData(Handle(0xE2), &buffer2, 8);
  EXPECT_EQ(Queued(), allButTheSecond);
}

TEST_F(DataStreamQueueTest, AnEventThatIsUnregisteredStillDelivers) {
  EXPECT_TRUE(node->RemoveEvent(EVENT_NEW_BUFFER));

  node->OnEventData(Handle(0xE1), &buffer2, 8);

  EXPECT_EQ(Queued(), allButTheSecond);
}

TEST_F(DataStreamQueueTest, ABuffersOwnEventDoesNotDeliver) {
  EXPECT_TRUE(node->AddEvent(buffer2, EVENT_NEW_BUFFER, Handle(0xE2)));

  node->OnEventData(Handle(0xE2), &buffer2, 8);

  EXPECT_EQ(Queued(), all);
}

TEST_F(DataStreamQueueTest, TheDataNeedNotBeAligned) {
  std::array<unsigned char, 16> data{};
  std::memcpy(data.data() + 3, &buffer2, 8);

  node->OnEventData(Handle(0xE1), data.data() + 3, 8);

  EXPECT_EQ(Queued(), allButTheSecond);
}

TEST_F(DataStreamNodeTest, WithoutAnyRegistrationANullEventDelivers) {
  node->AddBuffer(buffer1);
  EXPECT_TRUE(node->SetBufferQueued(buffer1, true));

  node->OnEventData(nullptr, &buffer1, 8);

  EXPECT_FALSE(node->buffers[0]->queued);
}

TEST_F(DataStreamQueueTest, DiscardingAllClearsEveryMark) {
  node->OnFlushQueue(4);

  EXPECT_EQ(Queued(), (std::array<bool, 3>{false, false, false}));
  EXPECT_THAT(HandlesOf(node->buffers), ElementsAre(buffer1, buffer2, buffer3));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(DataStreamQueueTest, AnyOtherFlushChangesNothing) {
  for (const ACQ_QUEUE_TYPE operation : {0, 1, 2, 3, 5, 1000, -1, 0x104}) {
    SCOPED_TRACE(operation);
    node->OnFlushQueue(operation);
    EXPECT_EQ(Queued(), all);
  }
  EXPECT_THAT(TakeLines(), IsEmpty());
}

}  // namespace
}  // namespace vextrel
