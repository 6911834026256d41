// SPDX-License-Identifier: MIT
// Buffers, their queues and the acquisition.
#include "camera_fixture.h"

namespace vextrel_test {
namespace {

TEST_F(OpenCameraTest, AnnouncesAndRevokesBuffers) {
  int mark = 0;
  char memory[100];
  BUFFER_HANDLE hOurs = nullptr;
  BUFFER_HANDLE hTheirs = nullptr;
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.DSAnnounceBuffer(hStream, nullptr, 9, &mark, &hOurs));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.DSAnnounceBuffer(hStream, memory, 0, &mark, &hOurs));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.DSAnnounceBuffer(hStream, memory, 9, &mark, nullptr));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.DSAllocAndAnnounceBuffer(hStream, 0, &mark, &hOurs));
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSAnnounceBuffer(hStream, memory, 100, &mark, &hOurs));
  EXPECT_EQ(GC_ERR_RESOURCE_IN_USE, gentl.DSAnnounceBuffer(hStream, memory, 9, &mark, &hTheirs));
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSAllocAndAnnounceBuffer(hStream, 50, &mark, &hTheirs));
  EXPECT_NE(hOurs, hTheirs);
  EXPECT_EQ(2u, NumberOf<size_t>(StreamInfo(STREAM_INFO_NUM_ANNOUNCED)));

  BUFFER_HANDLE hFound = nullptr;
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSGetBufferID(hStream, 0, &hFound));
  EXPECT_EQ(hOurs, hFound);
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSGetBufferID(hStream, 1, &hFound));
  EXPECT_EQ(hTheirs, hFound);
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.DSGetBufferID(hStream, 2, &hFound));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.DSGetBufferID(hStream, 0, nullptr));

  void* base = &mark;
  void* user = nullptr;
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSRevokeBuffer(hStream, hOurs, &base, &user));
  EXPECT_EQ(memory, base);
  EXPECT_EQ(&mark, user);
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, gentl.DSRevokeBuffer(hStream, hOurs, &base, &user));
  base = &mark;
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSRevokeBuffer(hStream, hTheirs, &base, nullptr));
  EXPECT_EQ(nullptr, base) << "that memory is gone";
  EXPECT_EQ(0u, NumberOf<size_t>(StreamInfo(STREAM_INFO_NUM_ANNOUNCED)));
}

TEST_F(OpenCameraTest, QueuesOwnBuffersOnce) {
  const BUFFER_HANDLE hBuffer = AnnounceBuffers(1).front();
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSQueueBuffer(hStream, hBuffer));
  EXPECT_TRUE(IsQueued(hBuffer));
  EXPECT_EQ(1u, Queued());
  EXPECT_EQ(GC_ERR_RESOURCE_IN_USE, gentl.DSQueueBuffer(hStream, hBuffer));
  EXPECT_EQ(GC_ERR_RESOURCE_IN_USE, gentl.DSRevokeBuffer(hStream, hBuffer, nullptr, nullptr));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, gentl.DSQueueBuffer(hStream, hStream));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, gentl.DSQueueBuffer(hStream, nullptr));

  DEV_HANDLE hOtherDevice = nullptr;
  DS_HANDLE hOtherStream = nullptr;
  ASSERT_EQ(GC_ERR_SUCCESS,
            gentl.IFOpenDevice(hIface0, "SimCam2", DEVICE_ACCESS_CONTROL, &hOtherDevice));
  ASSERT_EQ(GC_ERR_SUCCESS,
            gentl.DevOpenDataStream(hOtherDevice, "SimCam2-Stream0", &hOtherStream));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, gentl.DSQueueBuffer(hOtherStream, hBuffer));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, gentl.DSRevokeBuffer(hOtherStream, hBuffer, nullptr, nullptr));
}

TEST_F(StreamingCameraTest, DeliversAMovingPicture) {
  ASSERT_EQ(GC_ERR_SUCCESS, Write<uint32_t>(0x100, 300));
  ASSERT_EQ(GC_ERR_SUCCESS, Write<uint32_t>(0x104, 3));
  std::vector<uint8_t> memory[3];
  for (auto& bytes : memory) {
    bytes.assign(900, 0xEE);
    BUFFER_HANDLE hBuffer = nullptr;
    ASSERT_EQ(GC_ERR_SUCCESS,
              gentl.DSAnnounceBuffer(hStream, bytes.data(), bytes.size(), &bytes, &hBuffer));
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSQueueBuffer(hStream, hBuffer));
  }
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSStartAcquisition(hStream, ACQ_START_FLAGS_DEFAULT, kForever));
  for (uint64_t n = 0; n < 20; ++n) {
    const std::string data = Take(hEvent, 16);
    ASSERT_EQ(16u, data.size());
    BUFFER_HANDLE hBuffer = nullptr;
    void* user = nullptr;
    std::memcpy(&hBuffer, data.data(), 8);
    std::memcpy(&user, data.data() + 8, 8);
    EXPECT_EQ(&memory[n % 3], user) << "buffers come back in the order of queueing";
    EXPECT_FALSE(IsQueued(hBuffer));

    const auto frame = NumberOf<uint64_t>(BufferInfo(hBuffer, BUFFER_INFO_FRAMEID));
    std::vector<uint8_t> picture;
    for (uint64_t y = 0; y < 3; ++y) {
      for (uint64_t x = 0; x < 300; ++x) {
        picture.push_back(static_cast<uint8_t>(x + y + frame));
      }
    }
    EXPECT_EQ(picture, memory[n % 3]);
    EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSQueueBuffer(hStream, hBuffer));
  }
  EXPECT_TRUE(Grabbing());
  EXPECT_EQ(GC_ERR_RESOURCE_IN_USE,
            gentl.DSStartAcquisition(hStream, ACQ_START_FLAGS_DEFAULT, kForever));
  EXPECT_GE(NumberOf<uint64_t>(StreamInfo(STREAM_INFO_NUM_STARTED)), 20u);
  EXPECT_EQ(20u, NumberOf<uint64_t>(StreamInfo(STREAM_INFO_NUM_DELIVERED)));
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSStopAcquisition(hStream, ACQ_STOP_FLAGS_DEFAULT));
  EXPECT_FALSE(Grabbing());
}

TEST_F(StreamingCameraTest, StopsAfterTheFramesAskedFor) {
  const auto buffers = AnnounceBuffers(8);
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSFlushQueue(hStream, ACQ_QUEUE_ALL_TO_INPUT));
  EXPECT_EQ(8u, Queued());
  for (int round = 0; round < 2; ++round) {
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSStartAcquisition(hStream, ACQ_START_FLAGS_DEFAULT, 3));
    EXPECT_TRUE(Eventually([this] { return !Grabbing(); }));
    EXPECT_EQ(3u, NumberOf<uint64_t>(StreamInfo(STREAM_INFO_NUM_STARTED)));
    for (int i = 0; i < 3; ++i) {
      TakeBuffer(hEvent);
    }
    char data[16];
    size_t size = sizeof(data);
    EXPECT_EQ(GC_ERR_TIMEOUT, gentl.EventGetData(hEvent, data, &size, 20));
    EXPECT_EQ(3u, NumberOf<uint64_t>(StreamInfo(STREAM_INFO_NUM_DELIVERED)));
  }
  EXPECT_EQ(2u, Queued());
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSStopAcquisition(hStream, ACQ_STOP_FLAGS_DEFAULT));
  EXPECT_EQ(GC_ERR_RESOURCE_IN_USE, gentl.DSStopAcquisition(hStream, ACQ_STOP_FLAGS_DEFAULT));
}

TEST_F(StreamingCameraTest, RefusesImpossibleStartsAndStops) {
  EXPECT_EQ(GC_ERR_RESOURCE_IN_USE, gentl.DSStopAcquisition(hStream, ACQ_STOP_FLAG_KILL));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.DSStartAcquisition(hStream, 0, 0));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER,
            gentl.DSStartAcquisition(hStream, ACQ_START_FLAGS_CUSTOM_ID, 1));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.DSStopAcquisition(hStream, ACQ_STOP_CUSTOM_ID));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.DSFlushQueue(hStream, ACQ_QUEUE_CUSTOM_ID));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, gentl.DSStartAcquisition(hDevice, 0, 1));
}

TEST_F(StreamingCameraTest, KillsTheAcquisition) {
  AnnounceBuffers(4);
  for (int round = 0; round < 10; ++round) {
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSFlushQueue(hStream, ACQ_QUEUE_ALL_TO_INPUT));
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSStartAcquisition(hStream, 0, kForever));
    TakeBuffer(hEvent);
    EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSStopAcquisition(hStream, ACQ_STOP_FLAG_KILL));
    EXPECT_FALSE(Grabbing());
    EXPECT_EQ(3u, Queued() + AwaitingDelivery()) << "no buffer is left half-way";
  }
}

TEST_F(StreamingCameraTest, CountsFramesWithoutABuffer) {
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSStartAcquisition(hStream, 0, kForever));
  EXPECT_TRUE(
      Eventually([this] { return NumberOf<uint64_t>(StreamInfo(STREAM_INFO_NUM_UNDERRUN)) >= 3; }));
  EXPECT_EQ(0u, NumberOf<uint64_t>(StreamInfo(STREAM_INFO_NUM_STARTED)));
  const BUFFER_HANDLE hBuffer = AnnounceBuffers(1).front();
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSQueueBuffer(hStream, hBuffer));
  EXPECT_EQ(hBuffer, TakeBuffer(hEvent));
  EXPECT_GE(NumberOf<uint64_t>(BufferInfo(hBuffer, BUFFER_INFO_FRAMEID)), 3u);
}

TEST_F(StreamingCameraTest, MarksFramesThatDoNotFit) {
  EVENT_HANDLE hError = nullptr;
  EVENT_HANDLE hDeviceError = nullptr;
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.GCRegisterEvent(hStream, EVENT_ERROR, &hError));
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.GCRegisterEvent(hDevice, EVENT_ERROR, &hDeviceError));
  uint8_t memory[1000];
  std::memset(memory, 0xEE, sizeof(memory));
  BUFFER_HANDLE hBuffer = nullptr;
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSAnnounceBuffer(hStream, memory, 999, nullptr, &hBuffer));
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSQueueBuffer(hStream, hBuffer));
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSStartAcquisition(hStream, 0, 1));
  EXPECT_EQ(hBuffer, TakeBuffer(hEvent));
  EXPECT_EQ(0xEE, memory[999]);
  EXPECT_EQ(1, NumberOf<bool8_t>(BufferInfo(hBuffer, BUFFER_INFO_IS_INCOMPLETE)));
  EXPECT_EQ(1, NumberOf<bool8_t>(BufferInfo(hBuffer, BUFFER_INFO_DATA_LARGER_THAN_BUFFER)));
  EXPECT_EQ(999u, NumberOf<size_t>(BufferInfo(hBuffer, BUFFER_INFO_SIZE_FILLED)));
  EXPECT_EQ(1u, NumberOf<size_t>(BufferInfo(hBuffer, BUFFER_INFO_DELIVERED_IMAGEHEIGHT)));

  for (const EVENT_HANDLE handle : {hError, hDeviceError}) {
    const std::string data = Take(handle);
    const auto info = Asking(gentl.EventGetDataInfo, handle, data.data(), data.size());
    ExpectNumber<int32_t>(info(EVENT_DATA_ID), INFO_DATATYPE_INT32, GC_ERR_INVALID_BUFFER);
    ExpectText(info(EVENT_DATA_VALUE), "the buffer is smaller than the frame");
  }
}

TEST_F(StreamingCameraTest, TheCameraHoldsFramesBack) {
  const BUFFER_HANDLE hBuffer = AnnounceBuffers(1).front();
  ASSERT_EQ(GC_ERR_SUCCESS, Write<uint32_t>(0x124, 1));
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSQueueBuffer(hStream, hBuffer));
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSStartAcquisition(hStream, 0, kForever));
  char data[16];
  size_t size = sizeof(data);
  EXPECT_EQ(GC_ERR_TIMEOUT, gentl.EventGetData(hEvent, data, &size, 50));
  ASSERT_EQ(GC_ERR_SUCCESS, Write<uint32_t>(0x120, 1));
  EXPECT_EQ(hBuffer, TakeBuffer(hEvent));
}

TEST_F(StreamingCameraTest, FlushesQueues) {
  const auto buffers = AnnounceBuffers(3);
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSQueueBuffer(hStream, buffers[0]));
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSQueueBuffer(hStream, buffers[1]));

  EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSFlushQueue(hStream, ACQ_QUEUE_INPUT_TO_OUTPUT));
  EXPECT_EQ(0u, Queued());
  EXPECT_EQ(2u, AwaitingDelivery());
  EXPECT_EQ(buffers[0], TakeBuffer(hEvent));
  EXPECT_EQ(0, NumberOf<bool8_t>(BufferInfo(buffers[0], BUFFER_INFO_NEW_DATA)));
  EXPECT_TRUE(IsQueued(buffers[1]));

  EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSFlushQueue(hStream, ACQ_QUEUE_UNQUEUED_TO_INPUT));
  EXPECT_EQ(2u, Queued());
  EXPECT_EQ(1u, AwaitingDelivery());

  EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSFlushQueue(hStream, ACQ_QUEUE_OUTPUT_DISCARD));
  EXPECT_EQ(2u, Queued());
  EXPECT_EQ(0u, AwaitingDelivery());
  EXPECT_FALSE(IsQueued(buffers[1]));

  EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSFlushQueue(hStream, ACQ_QUEUE_INPUT_TO_OUTPUT));
  EXPECT_EQ(2u, AwaitingDelivery());
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSFlushQueue(hStream, ACQ_QUEUE_ALL_TO_INPUT));
  EXPECT_EQ(3u, Queued());
  EXPECT_EQ(0u, AwaitingDelivery());

  EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSFlushQueue(hStream, ACQ_QUEUE_ALL_DISCARD));
  EXPECT_EQ(0u, Queued());
  for (const BUFFER_HANDLE hBuffer : buffers) {
    EXPECT_FALSE(IsQueued(hBuffer));
    EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSRevokeBuffer(hStream, hBuffer, nullptr, nullptr));
  }
}

TEST_F(StreamingCameraTest, ClosesEverythingWhileFramesFlow) {
  AnnounceBuffers(3);
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSFlushQueue(hStream, ACQ_QUEUE_ALL_TO_INPUT));
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSStartAcquisition(hStream, 0, kForever));
  TakeBuffer(hEvent);
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.TLClose(hTL));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, gentl.DSStopAcquisition(hStream, 0));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, gentl.EventKill(hEvent));
}

TEST(SimulatedCameraSettings, SizeAndRate) {
  struct Case {
    const char* width;
    const char* height;
    const char* rate;
    uint32_t expectedWidth, expectedHeight;
    double expectedRate;
  };
  const Case cases[] = {{"16", "9", "12.5", 16, 9, 12.5},
                        {"0", "100000", "0", 1, 8192, 0.1},
                        {"wide", "", "1e9", 640, 480, 10000},
                        {"64", "64", "inf", 64, 64, 30}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.width);
    const EnvironmentSetting width("VEXTREL_CAMERA_WIDTH", c.width);
    const EnvironmentSetting height("VEXTREL_CAMERA_HEIGHT", c.height);
    const EnvironmentSetting rate("VEXTREL_CAMERA_RATE", c.rate);
    const Producer gentl(CameraPath());
    ASSERT_TRUE(gentl.module.IsLoaded());
    TL_HANDLE hTL = nullptr;
    IF_HANDLE hIface = nullptr;
    DEV_HANDLE hDevice = nullptr;
    PORT_HANDLE hPort = nullptr;
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.GCInitLib());
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.TLOpen(&hTL));
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.TLOpenInterface(hTL, "SimIface1", &hIface));
    ASSERT_EQ(GC_ERR_SUCCESS,
              gentl.IFOpenDevice(hIface, "SimCam1", DEVICE_ACCESS_CONTROL, &hDevice));
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.DevGetPort(hDevice, &hPort));
    uint32_t side = 0;
    double number = 0;
    size_t size = sizeof(side);
    EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCReadPort(hPort, 0x100, &side, &size));
    EXPECT_EQ(c.expectedWidth, side);
    EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCReadPort(hPort, 0x104, &side, &size));
    EXPECT_EQ(c.expectedHeight, side);
    size = sizeof(number);
    EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCReadPort(hPort, 0x118, &number, &size));
    EXPECT_EQ(c.expectedRate, number);
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.GCCloseLib());
  }
}

}  // namespace
}  // namespace vextrel_test
