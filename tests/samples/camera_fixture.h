// SPDX-License-Identifier: MIT
#ifndef VEXTREL_TESTS_SAMPLES_CAMERA_FIXTURE_H
#define VEXTREL_TESTS_SAMPLES_CAMERA_FIXTURE_H

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "gentl/gentl_newer.h"
#include "producer.h"

namespace vextrel_test {

// As the loader spells it.
inline std::filesystem::path CameraPath() {
  return std::filesystem::path(SIMULATED_CAMERA).make_preferred();
}

inline constexpr uint64_t kForever = ~uint64_t{0};
inline constexpr uint64_t kLongEnough = 20000;  // Milliseconds, for what is sure to come.

// What the two editions of the camera answer differently.
#if defined(CAMERA_IS_EXTENDED)
inline constexpr GC_ERROR kBufferTooSmall = GC_ERR_BUFFER_TOO_SMALL;
inline constexpr GC_ERROR kBadIndex = GC_ERR_INVALID_INDEX;
#else
inline constexpr GC_ERROR kBufferTooSmall = GC_ERR_INVALID_BUFFER;
inline constexpr GC_ERROR kBadIndex = GC_ERR_INVALID_PARAMETER;
#endif

// An info call that lacks only its last three arguments.
using Query = std::function<GC_ERROR(INFO_DATATYPE*, void*, size_t*)>;

// Returns a maker of queries: it takes the command of an info function whose arguments before the
// command are these.
template <class Function, class... Arguments>
std::function<Query(int32_t)> Asking(Function function, Arguments... arguments) {
  return [=](int32_t command) -> Query {
    return [=](INFO_DATATYPE* type, void* buffer, size_t* size) {
      return function(arguments..., command, type, buffer, size);
    };
  };
}

// Expects this answer, this size from a query without a buffer, and a refusal of a short buffer.
inline void ExpectAnswer(const Query& query, INFO_DATATYPE type, const std::string& bytes) {
  INFO_DATATYPE told = -1;
  size_t size = 0xDEADBEEFDEADBEEFu;
  ASSERT_EQ(GC_ERR_SUCCESS, query(&told, nullptr, &size));
  EXPECT_EQ(type, told);
  ASSERT_EQ(bytes.size(), size);

  std::string buffer(size, '?');
  size_t tooSmall = size - 1;
  EXPECT_EQ(kBufferTooSmall, query(&told, buffer.data(), &tooSmall));
  EXPECT_EQ(size, tooSmall);
  EXPECT_EQ(std::string(size, '?'), buffer);

  std::string roomy(size + 8, '?');
  size = roomy.size();
  EXPECT_EQ(GC_ERR_SUCCESS, query(&told, roomy.data(), &size));
  EXPECT_EQ(type, told);
  EXPECT_EQ(bytes.size(), size);
  EXPECT_EQ(bytes + "????????", roomy);

  EXPECT_EQ(GC_ERR_SUCCESS, query(nullptr, buffer.data(), &size));
  EXPECT_EQ(bytes, buffer);
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, query(&told, buffer.data(), nullptr));
}

template <class T>
std::string BytesOf(T value) {
  return {reinterpret_cast<const char*>(&value), sizeof(value)};
}

inline void ExpectText(const Query& query, const std::string& text) {
  ExpectAnswer(query, INFO_DATATYPE_STRING, text + '\0');
}

template <class T>
void ExpectNumber(const Query& query, INFO_DATATYPE type, T value) {
  ExpectAnswer(query, type, BytesOf(value));
}

inline void ExpectRefusal(const Query& query, GC_ERROR error) {
  INFO_DATATYPE type = -1;
  char buffer[256];
  size_t size = sizeof(buffer);
  EXPECT_EQ(error, query(&type, buffer, &size));
}

// Returns the number that an info call answers with.
template <class T>
T NumberOf(const Query& query) {
  T value{};
  size_t size = sizeof(value);
  EXPECT_EQ(GC_ERR_SUCCESS, query(nullptr, &value, &size));
  EXPECT_EQ(sizeof(value), size);
  return value;
}

// Waits until another thread makes the condition true. Returns false if that takes too long.
inline bool Eventually(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kLongEnough);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) {
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

// The loaded module, initialized.
class CameraTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(gentl.module.IsLoaded());
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.GCInitLib());
  }

  void TearDown() override {
    if (gentl.module.IsLoaded()) {
      EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCCloseLib());
    }
  }

 public:
  const Producer gentl{CameraPath()};
};

// Opens the transport layer, both interfaces, a device and its data stream.
class OpenCameraTest : public CameraTest {
 protected:
  void SetUp() override {
    CameraTest::SetUp();
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.TLOpen(&hTL));
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.TLUpdateInterfaceList(hTL, nullptr, kForever));
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.TLOpenInterface(hTL, "SimIface0", &hIface0));
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.TLOpenInterface(hTL, "SimIface1", &hIface));
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.IFUpdateDeviceList(hIface, nullptr, kForever));
    ASSERT_EQ(GC_ERR_SUCCESS,
              gentl.IFOpenDevice(hIface, "SimCam1", DEVICE_ACCESS_EXCLUSIVE, &hDevice));
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.DevGetPort(hDevice, &hPort));
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.DevOpenDataStream(hDevice, "SimCam1-Stream0", &hStream));
  }

  [[nodiscard]] Query StreamInfo(STREAM_INFO_CMD command) const {
    return Asking(gentl.DSGetInfo, hStream)(command);
  }

  [[nodiscard]] Query BufferInfo(BUFFER_HANDLE hBuffer, BUFFER_INFO_CMD command) const {
    return Asking(gentl.DSGetBufferInfo, hStream, hBuffer)(command);
  }

  [[nodiscard]] bool IsQueued(BUFFER_HANDLE hBuffer) const {
    return NumberOf<bool8_t>(BufferInfo(hBuffer, BUFFER_INFO_IS_QUEUED)) != 0;
  }
  [[nodiscard]] size_t Queued() const {
    return NumberOf<size_t>(StreamInfo(STREAM_INFO_NUM_QUEUED));
  }
  [[nodiscard]] size_t AwaitingDelivery() const {
    return NumberOf<size_t>(StreamInfo(STREAM_INFO_NUM_AWAIT_DELIVERY));
  }
  [[nodiscard]] bool Grabbing() const {
    return NumberOf<bool8_t>(StreamInfo(STREAM_INFO_IS_GRABBING)) != 0;
  }

  // Announces `count` buffers of the payload size in the producer's memory.
  std::vector<BUFFER_HANDLE> AnnounceBuffers(size_t count) {
    const auto payload = NumberOf<size_t>(StreamInfo(STREAM_INFO_PAYLOAD_SIZE));
    std::vector<BUFFER_HANDLE> buffers(count);
    for (BUFFER_HANDLE& buffer : buffers) {
      EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSAllocAndAnnounceBuffer(hStream, payload, nullptr, &buffer));
    }
    return buffers;
  }

  template <class T>
  GC_ERROR Write(uint64_t address, T value) {
    size_t size = sizeof(value);
    return gentl.GCWritePort(hPort, address, &value, &size);
  }

  template <class T>
  T Read(uint64_t address) {
    T value{};
    size_t size = sizeof(value);
    EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCReadPort(hPort, address, &value, &size));
    EXPECT_EQ(sizeof(value), size);
    return value;
  }

  // Waits for an event and returns its data.
  std::string Take(EVENT_HANDLE hEvent, size_t room = 512) {
    std::string data(room, '\0');
    size_t size = data.size();
    EXPECT_EQ(GC_ERR_SUCCESS, gentl.EventGetData(hEvent, data.data(), &size, kLongEnough));
    data.resize(size);
    return data;
  }

  // Waits for a new buffer.
  BUFFER_HANDLE TakeBuffer(EVENT_HANDLE hEvent) {
    const std::string data = Take(hEvent, 16);
    EXPECT_EQ(16u, data.size());
    BUFFER_HANDLE hBuffer = nullptr;
    std::memcpy(&hBuffer, data.data(), std::min(data.size(), sizeof(hBuffer)));
    return hBuffer;
  }

 public:
  TL_HANDLE hTL = nullptr;
  IF_HANDLE hIface0 = nullptr;
  IF_HANDLE hIface = nullptr;
  DEV_HANDLE hDevice = nullptr;
  PORT_HANDLE hPort = nullptr;
  DS_HANDLE hStream = nullptr;
};

// Registers the new-buffer event; frames come fast.
class StreamingCameraTest : public OpenCameraTest {
 protected:
  void SetUp() override {
    OpenCameraTest::SetUp();
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.GCRegisterEvent(hStream, EVENT_NEW_BUFFER, &hEvent));
  }

 public:
  EnvironmentSetting rate{"VEXTREL_CAMERA_RATE", "500"};
  EVENT_HANDLE hEvent = nullptr;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_SAMPLES_CAMERA_FIXTURE_H
