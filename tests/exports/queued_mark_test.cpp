// SPDX-License-Identifier: MIT
// The queued mark of a buffer's record, which no line shows: here the exports are called in the
// test program itself, with a target of its own and a look at the registry.
#include <gtest/gtest.h>

#include <cstddef>

#include "gentl/gentl.h"
#include "lifecycle/proxy_state.h"
#include "registry/transport_layer_node.h"
#include "support/proxy.h"

namespace vextrel_test {
namespace {

using vextrel::proxyState;

GC_ERROR result = 0;

class QueuedMark : public ::testing::Test {
 protected:
  QueuedMark() {
    result = 0;
    dsTable.DSQueueBuffer = [](DS_HANDLE, BUFFER_HANDLE) { return result; };
    dsTable.DSFlushQueue = [](DS_HANDLE, ACQ_QUEUE_TYPE) { return result; };
    eventTable.EventGetData = [](EVENT_HANDLE, void*, std::size_t*, std::uint64_t) {
      return result;
    };
    proxyState.dsTable = &dsTable;
    proxyState.eventTable = &eventTable;
    proxyState.registryRoot = &root;
    root.AddInterface(Handle(0x2000));
    root.AddDevice(Handle(0x2000), Handle(0x3000));
    root.AddDataStream(Handle(0x3000), Handle(0x4000));
    root.AddDataStream(Handle(0x3000), Handle(0x4001));
    root.AddBuffer(Handle(0x4000), Handle(0x5000));
    root.AddBuffer(Handle(0x4000), Handle(0x5001));
    EXPECT_TRUE(root.AddEvent(Handle(0x4000), 1, Handle(0x6000)));
  }
  ~QueuedMark() override {
    proxyState.registryRoot = nullptr;
    proxyState.dsTable = nullptr;
    proxyState.eventTable = nullptr;
  }

  bool IsQueued(std::size_t index) {
    return root.interfaces[0]->devices[0]->dataStreams[0]->buffers[index]->queued;
  }
  GC_ERROR GetData(EVENT_HANDLE event, BUFFER_HANDLE delivered, std::size_t size) {
    BUFFER_HANDLE data[2] = {delivered, nullptr};
    return EventGetData(event, data, &size, 0);
  }

  vextrel::DSFunctionTable dsTable;
  vextrel::EventFunctionTable eventTable;
  vextrel::TransportLayerNode root{Handle(0x1000), &vextrel::CallLogger()};
};

TEST_F(QueuedMark, DSQueueBufferMarksTheBufferAlone) {
  EXPECT_FALSE(IsQueued(0));
  EXPECT_EQ(DSQueueBuffer(Handle(0x4000), Handle(0x5000)), 0);
  EXPECT_TRUE(IsQueued(0));
  EXPECT_FALSE(IsQueued(1));
}

TEST_F(QueuedMark, DSQueueBufferMarksTheBufferThoughTheStreamDoesNotOwnIt) {
  EXPECT_EQ(DSQueueBuffer(Handle(0x4001), Handle(0x5000)), 0);
  EXPECT_TRUE(IsQueued(0));
  EXPECT_EQ(DSQueueBuffer(nullptr, Handle(0x5001)), 0);
  EXPECT_TRUE(IsQueued(1));
}

TEST_F(QueuedMark, FailedDSQueueBufferMarksNothing) {
  result = -1001;
  EXPECT_EQ(DSQueueBuffer(Handle(0x4000), Handle(0x5000)), -1001);
  EXPECT_FALSE(IsQueued(0));
}

TEST_F(QueuedMark, DSFlushQueueClearsTheMarksWhenItDiscardsEverything) {
  for (const ACQ_QUEUE_TYPE other : {0, 1, 2, 3, 1000}) {
    SCOPED_TRACE(other);
    EXPECT_EQ(DSQueueBuffer(Handle(0x4000), Handle(0x5000)), 0);
    EXPECT_EQ(DSFlushQueue(Handle(0x4000), other), 0);
    EXPECT_TRUE(IsQueued(0));
  }
  EXPECT_EQ(DSFlushQueue(Handle(0x4001), 4), 0);
  EXPECT_TRUE(IsQueued(0));
  result = -1001;
  EXPECT_EQ(DSFlushQueue(Handle(0x4000), 4), -1001);
  EXPECT_TRUE(IsQueued(0));
  result = 0;
  EXPECT_EQ(DSFlushQueue(Handle(0x4000), 4), 0);
  EXPECT_FALSE(IsQueued(0));
}

TEST_F(QueuedMark, EventGetDataClearsTheMarkOfTheDeliveredBuffer) {
  EXPECT_EQ(DSQueueBuffer(Handle(0x4000), Handle(0x5000)), 0);
  EXPECT_EQ(DSQueueBuffer(Handle(0x4000), Handle(0x5001)), 0);
  EXPECT_EQ(GetData(Handle(0x6000), Handle(0x5000), 8), 0);
  EXPECT_FALSE(IsQueued(0));
  EXPECT_TRUE(IsQueued(1));
}

TEST_F(QueuedMark, EventGetDataOfAnotherSizeOrEventChangesNoMark) {
  EXPECT_EQ(DSQueueBuffer(Handle(0x4000), Handle(0x5000)), 0);
  EXPECT_EQ(GetData(Handle(0x6000), Handle(0x5000), 16), 0);
  EXPECT_TRUE(IsQueued(0));
  EXPECT_EQ(GetData(Handle(0x6001), Handle(0x5000), 8), 0);
  EXPECT_TRUE(IsQueued(0));
}

TEST_F(QueuedMark, EventGetDataOfASizeThatIs8InItsLow32BitsChangesNoMark) {
  std::size_t size = 0x100000008;
  EXPECT_EQ(DSQueueBuffer(Handle(0x4000), Handle(0x5000)), 0);
  EXPECT_EQ(EventGetData(Handle(0x6000), nullptr, &size, 0), 0);
  EXPECT_TRUE(IsQueued(0));
}

TEST_F(QueuedMark, EventGetDataThatTimesOutChangesNoMark) {
  EXPECT_EQ(DSQueueBuffer(Handle(0x4000), Handle(0x5000)), 0);
  result = -1011;
  EXPECT_EQ(GetData(Handle(0x6000), Handle(0x5000), 8), -1011);
  EXPECT_TRUE(IsQueued(0));
}

}  // namespace
}  // namespace vextrel_test
