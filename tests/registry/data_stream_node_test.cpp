// SPDX-License-Identifier: MIT
#include "registry/data_stream_node.h"

#include <array>
#include <cstdint>
#include <limits>

#include "registry/registry_fixture.h"

namespace vextrel_test {
namespace {

using model::Error;
using model::kBuffer;
using model::kDataStream;
using model::Warn;

class DataStreamNodeTest : public RegistryTest {
 protected:
  vextrel::DataStreamNode stream{stream1, logger};
};

TEST_F(DataStreamNodeTest, AnnouncingABufferTwiceIsReportedOnceAndStillSucceeds) {
  EXPECT_TRUE(stream.AddBuffer(buffer1));
  EXPECT_THAT(TakeLines(), IsEmpty());
  EXPECT_TRUE(stream.AddBuffer(buffer1));

  EXPECT_THAT(TakeLines(), ElementsAre(Error(kDataStream.childAddedTwice, {buffer1, stream1})));
  EXPECT_THAT(HandlesOf(stream.buffers), ElementsAre(buffer1));
}

TEST_F(DataStreamNodeTest, RevokingABufferReportsItsEventFirstAndASecondRevokeFindsNothing) {
  Register(Announce(stream, buffer1), EVENT_NEW_BUFFER, event1);

  EXPECT_TRUE(stream.RemoveBuffer(buffer1));
  EXPECT_THAT(TakeLines(),
              ElementsAre(Warn(kBuffer.eventLeft, {"EVENT_NEW_BUFFER", event1, buffer1})));
  EXPECT_THAT(stream.buffers, IsEmpty());

  EXPECT_FALSE(stream.RemoveBuffer(buffer1));
  EXPECT_THAT(TakeLines(), ElementsAre(Error(kDataStream.childNotDefined, {buffer1, stream1})));
}

TEST_F(DataStreamNodeTest, ReportBuffersNamesThreeInTheOrderOfAnnouncementAndNoneOfTheirEvents) {
  stream.ReportBuffers();
  EXPECT_THAT(TakeLines(), IsEmpty());
  for (void* handle : {buffer2, buffer1, buffer3}) {
    Register(Announce(stream, handle), EVENT_NEW_BUFFER, event1);
  }

  stream.ReportBuffers();

  EXPECT_THAT(TakeLines(), ElementsAre(Error(kDataStream.childLeftOpen, {buffer2, stream1}),
                                       Error(kDataStream.childLeftOpen, {buffer1, stream1}),
                                       Error(kDataStream.childLeftOpen, {buffer3, stream1})));
  EXPECT_THAT(HandlesOf(stream.buffers), ElementsAre(buffer2, buffer1, buffer3));
}

TEST_F(DataStreamNodeTest, LastEventHandleFollowsTheLatestRegistrationAndStaysWhenItIsGone) {
  EXPECT_EQ(stream.lastEventHandle, nullptr);
  Register(stream, EVENT_NEW_BUFFER, event1);
  Register(stream, EVENT_ERROR, event2);
  EXPECT_EQ(stream.lastEventHandle, event2);

  EXPECT_TRUE(stream.RemoveEvent(EVENT_ERROR));
  EXPECT_EQ(stream.lastEventHandle, event2);
  EXPECT_TRUE(stream.ReleaseEvents(stream1));
  EXPECT_EQ(stream.lastEventHandle, event2);
}

TEST_F(DataStreamNodeTest, LastEventHandleIgnoresRefusalsAndWhatIsRegisteredOnABuffer) {
  Register(stream, EVENT_NEW_BUFFER, event1);
  Announce(stream, buffer1);

  EXPECT_FALSE(stream.AddEvent(stream1, EVENT_NEW_BUFFER, event2));
  EXPECT_TRUE(stream.AddEvent(buffer1, EVENT_NEW_BUFFER, event2));
  EXPECT_FALSE(stream.AddEvent(unknown, EVENT_NEW_BUFFER, event3));

  EXPECT_EQ(stream.lastEventHandle, event1);
}

TEST_F(DataStreamNodeTest, ReleaseEventsActsOnItsOwnHandleOnly) {
  Register(Announce(stream, buffer1), EVENT_ERROR, event1);

  EXPECT_FALSE(stream.ReleaseEvents(buffer1));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(DataStreamNodeTest, SetBufferQueuedOfAnUnknownBufferIsFalseAndSilent) {
  EXPECT_FALSE(stream.SetBufferQueued(buffer1, true));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

// Buffer 1 is queued, and the stream's event is event 1.
class DataStreamQueueTest : public DataStreamNodeTest {
 protected:
  DataStreamQueueTest() {
    EXPECT_TRUE(stream.SetBufferQueued(Announce(stream, buffer1).handle, true));
    Register(stream, EVENT_NEW_BUFFER, event1);
  }
  ~DataStreamQueueTest() override { EXPECT_THAT(TakeLines(), IsEmpty()); }

  [[nodiscard]] bool IsQueuedAfter(void* event, const void* data, std::uint64_t size) {
    stream.buffers[0]->SetQueued(true);
    stream.OnEventData(event, data, size);
    return stream.buffers[0]->queued;
  }
};

TEST_F(DataStreamQueueTest, ADeliveryOfOneHandleUnmarksItsBuffer) {
  EXPECT_FALSE(IsQueuedAfter(event1, &buffer1, 8));
  EXPECT_TRUE(IsQueuedAfter(event2, &buffer1, 8));
  EXPECT_TRUE(IsQueuedAfter(event1, nullptr, 8));
}

TEST_F(DataStreamQueueTest, ADeliveryOfSize16OrAnyOtherSizeChangesNothing) {
  const std::array<void*, 2> data = {buffer1, nullptr};
  for (const std::uint64_t size :
       {std::uint64_t{16}, std::uint64_t{0}, std::uint64_t{7}, std::uint64_t{9},
        std::uint64_t{0x100000008}, std::numeric_limits<std::uint64_t>::max()}) {
    EXPECT_TRUE(IsQueuedAfter(event1, data.data(), size)) << size;
  }
}

TEST_F(DataStreamQueueTest, ADeliveryOfABufferThatIsNotOnTheStreamChangesNothing) {
  EXPECT_TRUE(IsQueuedAfter(event1, &unknown, 8));
}

TEST_F(DataStreamQueueTest, OnlyDiscardingAllUnmarks) {
  for (const ACQ_QUEUE_TYPE operation : {0, 1, 2, 3, 5, 1000, -1, 0x104}) {
    stream.OnFlushQueue(operation);
    EXPECT_TRUE(stream.buffers[0]->queued) << operation;
  }
  stream.OnFlushQueue(4);
  EXPECT_FALSE(stream.buffers[0]->queued);
}

}  // namespace
}  // namespace vextrel_test
