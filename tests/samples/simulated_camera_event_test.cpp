// SPDX-License-Identifier: MIT
// Events: registration, waiting, killing, flushing and their data.
#include <atomic>

#include "camera_fixture.h"

namespace vextrel_test {
namespace {

TEST_F(OpenCameraTest, RegistersEventsOnce) {
  EVENT_HANDLE hEvent = nullptr;
  EVENT_HANDLE hOther = nullptr;
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.GCRegisterEvent(hStream, EVENT_NEW_BUFFER, &hEvent));
  EXPECT_EQ(GC_ERR_RESOURCE_IN_USE, gentl.GCRegisterEvent(hStream, EVENT_NEW_BUFFER, &hOther));
  EXPECT_EQ(GC_ERR_NOT_IMPLEMENTED, gentl.GCRegisterEvent(hDevice, EVENT_NEW_BUFFER, &hOther));
  EXPECT_EQ(GC_ERR_NOT_IMPLEMENTED, gentl.GCRegisterEvent(hPort, EVENT_CUSTOM_ID, &hOther));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.GCRegisterEvent(hStream, EVENT_ERROR, nullptr));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, gentl.GCRegisterEvent(hEvent, EVENT_ERROR, &hOther));
  EXPECT_EQ(GC_ERR_NOT_AVAILABLE, gentl.GCUnregisterEvent(hStream, EVENT_ERROR));
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCUnregisterEvent(hStream, EVENT_NEW_BUFFER));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, gentl.EventFlush(hEvent));
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCRegisterEvent(hStream, EVENT_NEW_BUFFER, &hEvent));

  for (void* source : {hTL, hIface, hDevice, hPort, hStream, AnnounceBuffers(1).front()}) {
    for (const EVENT_TYPE type : {EVENT_ERROR, EVENT_FEATURE_INVALIDATE, EVENT_FEATURE_CHANGE}) {
      EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCRegisterEvent(source, type, &hOther));
      EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCUnregisterEvent(source, type));
    }
  }
}

TEST_F(StreamingCameraTest, EventInfo) {
  const auto info = Asking(gentl.EventGetInfo, hEvent);
  AnnounceBuffers(2);
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSFlushQueue(hStream, ACQ_QUEUE_ALL_TO_INPUT));
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSFlushQueue(hStream, ACQ_QUEUE_INPUT_TO_OUTPUT));
  TakeBuffer(hEvent);
  ExpectNumber<int32_t>(info(EVENT_EVENT_TYPE), INFO_DATATYPE_INT32, EVENT_NEW_BUFFER);
  ExpectNumber<size_t>(info(EVENT_NUM_IN_QUEUE), INFO_DATATYPE_SIZET, 1);
  ExpectNumber<uint64_t>(info(EVENT_NUM_FIRED), INFO_DATATYPE_UINT64, 2);
  ExpectNumber<size_t>(info(EVENT_SIZE_MAX), INFO_DATATYPE_SIZET, 16);
  ExpectNumber<size_t>(info(EVENT_INFO_DATA_SIZE_MAX), INFO_DATATYPE_SIZET, 16);
  ExpectRefusal(info(EVENT_INFO_CUSTOM_ID), GC_ERR_NOT_IMPLEMENTED);
}

TEST_F(StreamingCameraTest, DeliversAsMuchAsFits) {
  int mark = 0;
  char memory[8];
  BUFFER_HANDLE hBuffer = nullptr;
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSAnnounceBuffer(hStream, memory, 8, &mark, &hBuffer));
  const auto makeEvent = [&] {
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSQueueBuffer(hStream, hBuffer));
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSFlushQueue(hStream, ACQ_QUEUE_INPUT_TO_OUTPUT));
  };
  makeEvent();
  char data[32];
  size_t size = 7;
  EXPECT_EQ(GC_ERR_INVALID_BUFFER, gentl.EventGetData(hEvent, data, &size, 0));
  EXPECT_EQ(16u, size);
  size = 0xDEADBEEFDEADBEEFu;
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.EventGetData(hEvent, nullptr, &size, kForever));
  EXPECT_EQ(16u, size);
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.EventGetData(hEvent, data, nullptr, 0));
  EXPECT_EQ(1u, AwaitingDelivery()) << "all that took nothing";

  for (const size_t room : {size_t{8}, size_t{15}}) {
    std::memset(data, '?', sizeof(data));
    size = room;
    EXPECT_EQ(GC_ERR_SUCCESS, gentl.EventGetData(hEvent, data, &size, 0));
    EXPECT_EQ(8u, size);
    EXPECT_EQ(BytesOf(hBuffer) + "????????", std::string(data, 16));
    makeEvent();
  }
  for (const size_t room : {size_t{16}, size_t{32}}) {
    std::memset(data, '?', sizeof(data));
    size = room;
    EXPECT_EQ(GC_ERR_SUCCESS, gentl.EventGetData(hEvent, data, &size, 0));
    EXPECT_EQ(16u, size);
    EXPECT_EQ(BytesOf(hBuffer) + BytesOf(&mark) + "????????", std::string(data, 24));
    makeEvent();
  }
}

TEST_F(StreamingCameraTest, NewBufferDataInfo) {
  int mark = 0;
  char memory[8];
  BUFFER_HANDLE hBuffer = nullptr;
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSAnnounceBuffer(hStream, memory, 8, &mark, &hBuffer));
  const std::string data = BytesOf(hBuffer) + BytesOf(&mark);
  const auto info = [&](size_t length, EVENT_DATA_INFO_CMD command) {
    return Asking(gentl.EventGetDataInfo, hEvent, data.data(), length)(command);
  };
  ExpectNumber<void*>(info(16, EVENT_DATA_ID), INFO_DATATYPE_PTR, hBuffer);
  ExpectNumber<void*>(info(16, EVENT_DATA_VALUE), INFO_DATATYPE_PTR, &mark);
  ExpectNumber<void*>(info(8, EVENT_DATA_ID), INFO_DATATYPE_PTR, hBuffer);
  ExpectRefusal(info(8, EVENT_DATA_VALUE), GC_ERR_INVALID_PARAMETER);
  ExpectRefusal(info(7, EVENT_DATA_ID), GC_ERR_INVALID_PARAMETER);
  ExpectRefusal(info(16, EVENT_DATA_NUMID), GC_ERR_NOT_AVAILABLE);
  ExpectRefusal(info(16, EVENT_DATA_CUSTOM_ID), GC_ERR_NOT_IMPLEMENTED);
  size_t size = 0;
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER,
            gentl.EventGetDataInfo(hEvent, nullptr, 16, EVENT_DATA_ID, nullptr, nullptr, &size));
}

TEST_F(StreamingCameraTest, WaitsNoLongerThanAsked) {
  char data[16];
  size_t size = sizeof(data);
  EXPECT_EQ(GC_ERR_TIMEOUT, gentl.EventGetData(hEvent, data, &size, 0));
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(GC_ERR_TIMEOUT, gentl.EventGetData(hEvent, data, &size, 100));
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(90));
}

// A thread that waits for an event, for ever.
class Waiter {
 public:
  Waiter(const Producer& gentl, EVENT_HANDLE hEvent)
      : thread_([this, &gentl, hEvent] {
          char data[512];
          size_t size = sizeof(data);
          result_ = gentl.EventGetData(hEvent, data, &size, kForever);
        }) {
    // Most likely it waits by then; the results must not depend on it.
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  GC_ERROR Result() {
    thread_.join();
    return result_;
  }

 private:
  std::atomic<GC_ERROR> result_ = 1;
  std::thread thread_;
};

TEST_F(StreamingCameraTest, KillEndsOneWait) {
  Waiter first(gentl, hEvent);
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.EventKill(hEvent));
  EXPECT_EQ(GC_ERR_ABORT, first.Result());

  EXPECT_EQ(GC_ERR_SUCCESS, gentl.EventKill(hEvent));
  char data[16];
  size_t size = sizeof(data);
  EXPECT_EQ(GC_ERR_ABORT, gentl.EventGetData(hEvent, data, &size, kForever))
      << "nobody waited, so it ends the next wait";
  EXPECT_EQ(GC_ERR_TIMEOUT, gentl.EventGetData(hEvent, data, &size, 0));

  AnnounceBuffers(1);
  Waiter second(gentl, hEvent);
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSFlushQueue(hStream, ACQ_QUEUE_ALL_TO_INPUT));
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSStartAcquisition(hStream, 0, 1));
  EXPECT_EQ(GC_ERR_SUCCESS, second.Result()) << "events come as before";
}

TEST_F(StreamingCameraTest, ClosingEndsWaits) {
  Waiter first(gentl, hEvent);
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCUnregisterEvent(hStream, EVENT_NEW_BUFFER));
  EXPECT_EQ(GC_ERR_ABORT, first.Result());

  ASSERT_EQ(GC_ERR_SUCCESS, gentl.GCRegisterEvent(hStream, EVENT_NEW_BUFFER, &hEvent));
  Waiter second(gentl, hEvent);
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSClose(hStream));
  EXPECT_EQ(GC_ERR_ABORT, second.Result());
}

TEST_F(StreamingCameraTest, FlushDiscardsEvents) {
  const auto buffers = AnnounceBuffers(2);
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSFlushQueue(hStream, ACQ_QUEUE_ALL_TO_INPUT));
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSFlushQueue(hStream, ACQ_QUEUE_INPUT_TO_OUTPUT));
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.EventFlush(hEvent));
  EXPECT_EQ(0u, AwaitingDelivery());
  EXPECT_FALSE(IsQueued(buffers[0]));
  char data[16];
  size_t size = sizeof(data);
  EXPECT_EQ(GC_ERR_TIMEOUT, gentl.EventGetData(hEvent, data, &size, 0));
}

TEST_F(StreamingCameraTest, UnregisteringWhileFramesFlowLosesNoBuffer) {
  AnnounceBuffers(3);
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSStartAcquisition(hStream, 0, kForever));
  for (int round = 0; round < 30; ++round) {
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSFlushQueue(hStream, ACQ_QUEUE_ALL_TO_INPUT));
    TakeBuffer(hEvent);
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.GCUnregisterEvent(hStream, EVENT_NEW_BUFFER));
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.GCRegisterEvent(hStream, EVENT_NEW_BUFFER, &hEvent));
  }
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSStopAcquisition(hStream, 0));
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSFlushQueue(hStream, ACQ_QUEUE_ALL_TO_INPUT));
  EXPECT_EQ(3u, Queued());
}

TEST_F(OpenCameraTest, TellsOfChangedFeatures) {
  struct Source {
    void* handle;
    EVENT_HANDLE hChange = nullptr;
    EVENT_HANDLE hInvalidate = nullptr;
  };
  for (Source source : {Source{hPort}, Source{hDevice}}) {
    ASSERT_EQ(GC_ERR_SUCCESS,
              gentl.GCRegisterEvent(source.handle, EVENT_FEATURE_CHANGE, &source.hChange));
    ASSERT_EQ(GC_ERR_SUCCESS,
              gentl.GCRegisterEvent(source.handle, EVENT_FEATURE_INVALIDATE, &source.hInvalidate));
    ASSERT_EQ(GC_ERR_SUCCESS, Write<uint32_t>(0x100, 320));

    const std::string change = Take(source.hChange);
    EXPECT_EQ(std::string("Width\0"
                          "320\0",
                          10),
              change);
    const auto info = Asking(gentl.EventGetDataInfo, source.hChange, change.data(), change.size());
    ExpectText(info(EVENT_DATA_ID), "Width");
    ExpectText(info(EVENT_DATA_VALUE), "320");
    EXPECT_EQ(std::string("PayloadSize\0\0", 13), Take(source.hInvalidate));

    ASSERT_EQ(GC_ERR_SUCCESS, Write(0x118, 25.0));
    size_t size = 3;
    char data[3];
    EXPECT_EQ(GC_ERR_INVALID_BUFFER, gentl.EventGetData(source.hChange, data, &size, 0));
    const std::string rate = Take(source.hChange);
    EXPECT_EQ(rate.size(), size);
    EXPECT_EQ(0u, rate.find(std::string("AcquisitionFrameRate\0"
                                        "25",
                                        23)));

    size = 3;
    INFO_DATATYPE type = -1;
    EXPECT_EQ(GC_ERR_INVALID_PARAMETER,
              gentl.EventGetDataInfo(source.hChange, "abc", 3, EVENT_DATA_ID, &type, data, &size));
  }
}

// Three threads queue, wait and ask while the acquisition is started and stopped.
TEST_F(StreamingCameraTest, StandsManyThreads) {
  ASSERT_EQ(GC_ERR_SUCCESS, Write(0x118, 5000.0));
  const auto buffers = AnnounceBuffers(6);
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSFlushQueue(hStream, ACQ_QUEUE_ALL_TO_INPUT));
  std::atomic<int> frames = 0;
  std::atomic<bool> done = false;
  std::thread consumer([&] {
    for (;;) {
      BUFFER_HANDLE hBuffer = nullptr;
      size_t size = sizeof(hBuffer);
      const GC_ERROR result = gentl.EventGetData(hEvent, &hBuffer, &size, kForever);
      if (result == GC_ERR_ABORT) {
        return;
      }
      EXPECT_EQ(GC_ERR_SUCCESS, result);
      EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSQueueBuffer(hStream, hBuffer));
      ++frames;
    }
  });
  std::thread observer([&] {
    while (!done) {
      EXPECT_LE(Queued(), buffers.size());
      EXPECT_LE(AwaitingDelivery(), buffers.size());
      NumberOf<bool8_t>(BufferInfo(buffers.front(), BUFFER_INFO_NEW_DATA));
      Read<uint64_t>(0x110);
    }
  });
  for (int round = 0; round < 20; ++round) {
    const int before = frames;
    EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSStartAcquisition(hStream, 0, kForever));
    EXPECT_TRUE(Eventually([&] { return frames > before + 3; }));
    EXPECT_EQ(GC_ERR_SUCCESS,
              gentl.DSStopAcquisition(
                  hStream, round % 2 == 0 ? ACQ_STOP_FLAGS_DEFAULT : ACQ_STOP_FLAG_KILL));
  }
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.EventKill(hEvent));
  consumer.join();
  done = true;
  observer.join();
}

}  // namespace
}  // namespace vextrel_test
