// SPDX-License-Identifier: MIT
#include "allocation/full_session.h"

#include <array>
#include <cstring>

#include "allocation/played_target.h"
#include "support/proxy.h"

namespace vextrel_test {
namespace {

const char* NameOf(GC_ERROR result) {
  switch (result) {
    case 0:
      return "GC_ERR_SUCCESS";
    case -1010:
      return "GC_ERR_IO";
    case -1011:
      return "GC_ERR_TIMEOUT";
    case -1013:
      return "GC_ERR_INVALID_BUFFER";
    case -1014:
      return "GC_ERR_NOT_AVAILABLE";
    default:
      return "?";
  }
}

constexpr std::uint64_t kForever = ~std::uint64_t{0};

}  // namespace

void FullSession::Note(GC_ERROR result, const char* name) {
  calls_.push_back(std::string(NameOf(result)) + "=" + name);
}

template <typename... Parameters, typename... Arguments>
void FullSession::Query(INFO_DATATYPE type, const char* name,
                        GC_ERROR(GC_CALLTYPE* function)(Parameters...), Arguments... arguments) {
  playedType = type;
  std::array<char, 128> buffer{};
  INFO_DATATYPE told = -1;
  std::size_t size = buffer.size();
  Call(kInfoResult, name, function, arguments..., &told, static_cast<void*>(buffer.data()), &size);
  EXPECT_EQ(told, type) << name;
  EXPECT_EQ(size, kSize) << name;
  if (type == INFO_DATATYPE_STRING) {
    EXPECT_EQ(buffer.data(), kText) << name;
  } else {
    EXPECT_EQ(std::memcmp(buffer.data(), &kNumber, sizeof kNumber), 0) << name;
  }
}

template <typename... Parameters, typename... Arguments>
void FullSession::QueryText(const char* name, GC_ERROR(GC_CALLTYPE* function)(Parameters...),
                            Arguments... arguments) {
  std::array<char, 128> buffer{};
  std::size_t size = buffer.size();
  Call(kTextResult, name, function, arguments..., buffer.data(), &size);
  EXPECT_EQ(buffer.data(), kText) << name;
  EXPECT_EQ(size, kSize) << name;
}

template <typename... Parameters, typename... Arguments>
void FullSession::QueryCount(const char* name, GC_ERROR(GC_CALLTYPE* function)(Parameters...),
                             Arguments... arguments) {
  std::uint32_t count = 0;
  Call(kCountResult, name, function, arguments..., &count);
  EXPECT_EQ(count, kCount) << name;
}

template <typename... Parameters, typename... Arguments>
void* FullSession::Open(std::uintptr_t handle, const char* name,
                        GC_ERROR(GC_CALLTYPE* function)(Parameters...), Arguments... arguments) {
  void* opened = nullptr;
  Call(GC_ERR_SUCCESS, name, function, arguments..., &opened);
  EXPECT_EQ(opened, Handle(handle)) << name;
  return Handle(handle);
}

void FullSession::Run() {
  OpenDevice();
  AskForInfo();
  AccessPort();
  Acquire();
  Close();
}

void FullSession::OpenDevice() {
  bool8_t changed = 0;
  Query(INFO_DATATYPE_STRING, "GCGetInfo", ::GCGetInfo, TL_INFO_ID);
  void* tl = Open(kTl, "TLOpen", ::TLOpen);
  Call(GC_ERR_TIMEOUT, "TLUpdateInterfaceList", ::TLUpdateInterfaceList, tl, &changed, kForever);
  EXPECT_EQ(changed, 1);
  Open(kEvent, "GCRegisterEvent", ::GCRegisterEvent, tl, EVENT_ERROR);
  void* interfaceHandle = Open(kInterface, "TLOpenInterface", ::TLOpenInterface, tl, kText.data());
  changed = 0;
  Call(GC_ERR_TIMEOUT, "IFUpdateDeviceList", ::IFUpdateDeviceList, interfaceHandle, &changed,
       kForever);
  EXPECT_EQ(changed, 1);
  void* device = Open(kDevice, "IFOpenDevice", ::IFOpenDevice, interfaceHandle, kText.data(),
                      DEVICE_ACCESS_EXCLUSIVE);
  Open(kPort, "DevGetPort", ::DevGetPort, device);
  Open(kEvent, "GCRegisterEvent", ::GCRegisterEvent, device, EVENT_FEATURE_INVALIDATE);
  Open(kStream, "DevOpenDataStream", ::DevOpenDataStream, device, kText.data());
}

void FullSession::AskForInfo() {
  GC_ERROR code = GC_ERR_SUCCESS;
  QueryText("GCGetLastError", ::GCGetLastError, &code);
  EXPECT_EQ(code, GC_ERR_IO);
  Query(INFO_DATATYPE_STRING, "TLGetInfo", ::TLGetInfo, Handle(kTl), TL_INFO_ID);
  QueryCount("TLGetNumInterfaces", ::TLGetNumInterfaces, Handle(kTl));
  QueryText("TLGetInterfaceID", ::TLGetInterfaceID, Handle(kTl), 0U);
  Query(INFO_DATATYPE_STRING, "TLGetInterfaceInfo", ::TLGetInterfaceInfo, Handle(kTl), kText.data(),
        INTERFACE_INFO_ID);
  Query(INFO_DATATYPE_STRING, "IFGetInfo", ::IFGetInfo, Handle(kInterface), INTERFACE_INFO_ID);
  QueryCount("IFGetNumDevices", ::IFGetNumDevices, Handle(kInterface));
  QueryText("IFGetDeviceID", ::IFGetDeviceID, Handle(kInterface), 0U);
  Query(INFO_DATATYPE_STRING, "IFGetDeviceInfo", ::IFGetDeviceInfo, Handle(kInterface),
        kText.data(), DEVICE_INFO_ID);
  QueryCount("DevGetNumDataStreams", ::DevGetNumDataStreams, Handle(kDevice));
  QueryText("DevGetDataStreamID", ::DevGetDataStreamID, Handle(kDevice), 0U);
  Query(INFO_DATATYPE_STRING, "DevGetInfo", ::DevGetInfo, Handle(kDevice), DEVICE_INFO_ID);
  Query(INFO_DATATYPE_SIZET, "DSGetInfo", ::DSGetInfo, Handle(kStream), STREAM_INFO_PAYLOAD_SIZE);
}

void FullSession::AccessPort() {
  std::array<char, 128> data{};
  std::size_t size = data.size();
  Call(kPortResult, "GCReadPort", ::GCReadPort, Handle(kPort), std::uint64_t{0x10},
       static_cast<void*>(data.data()), &size);
  EXPECT_EQ(data.data(), std::string(kText.size(), 'x'));
  EXPECT_EQ(size, kText.size());
  Call(kPortResult, "GCWritePort", ::GCWritePort, Handle(kPort), std::uint64_t{0x10},
       static_cast<const void*>(data.data()), &size);
  EXPECT_EQ(size, kSize);
  data = {};
  std::array<PORT_REGISTER_STACK_ENTRY, 2> entries = {
      {{0x10, data.data(), 40}, {0x20, data.data(), 40}}};
  std::size_t count = entries.size();
  Call(kPortResult, "GCReadPortStacked", ::GCReadPortStacked, Handle(kPort), entries.data(),
       &count);
  EXPECT_EQ(count, 1U);
  EXPECT_EQ(data.data(), std::string(40, 'x'));
  count = entries.size();
  Call(kPortResult, "GCWritePortStacked", ::GCWritePortStacked, Handle(kPort), entries.data(),
       &count);
  EXPECT_EQ(count, 1U);
  QueryText("GCGetPortURL", ::GCGetPortURL, Handle(kPort));
  QueryCount("GCGetNumPortURLs", ::GCGetNumPortURLs, Handle(kPort));
  Query(INFO_DATATYPE_STRING, "GCGetPortInfo", ::GCGetPortInfo, Handle(kPort), PORT_INFO_ID);
  Query(INFO_DATATYPE_STRING, "GCGetPortURLInfo", ::GCGetPortURLInfo, Handle(kPort), 0U,
        URL_INFO_URL);
}

void FullSession::Acquire() {
  void* stream = Handle(kStream);
  void* buffer = Open(kBuffer, "DSAnnounceBuffer", ::DSAnnounceBuffer, stream,
                      static_cast<void*>(nullptr), std::size_t{640}, static_cast<void*>(nullptr));
  void* allocated = Open(kAllocatedBuffer, "DSAllocAndAnnounceBuffer", ::DSAllocAndAnnounceBuffer,
                         stream, std::size_t{640}, static_cast<void*>(nullptr));
  Open(kBuffer, "DSGetBufferID", ::DSGetBufferID, stream, 0U);
  void* event = Open(kEvent, "GCRegisterEvent", ::GCRegisterEvent, stream, EVENT_NEW_BUFFER);
  Call(GC_ERR_SUCCESS, "DSQueueBuffer", ::DSQueueBuffer, stream, buffer);
  Call(GC_ERR_SUCCESS, "DSQueueBuffer", ::DSQueueBuffer, stream, allocated);
  Call(GC_ERR_SUCCESS, "DSStartAcquisition", ::DSStartAcquisition, stream, ACQ_START_FLAGS_DEFAULT,
       kForever);
  std::array<void*, 2> delivered{};
  std::size_t size = sizeof delivered;
  Call(GC_ERR_SUCCESS, "EventGetData", ::EventGetData, event, static_cast<void*>(delivered.data()),
       &size, kForever);
  EXPECT_EQ(delivered[0], buffer);
  EXPECT_EQ(size, sizeof delivered);
  for (INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN; type <= 15; ++type) {
    Query(type, "DSGetBufferInfo", ::DSGetBufferInfo, stream, buffer, BUFFER_INFO_SIZE);
  }
  Query(INFO_DATATYPE_PTR, "EventGetDataInfo", ::EventGetDataInfo, event,
        static_cast<const void*>(delivered.data()), size, EVENT_DATA_ID);
  Query(INFO_DATATYPE_INT32, "EventGetInfo", ::EventGetInfo, event, EVENT_EVENT_TYPE);
  Call(GC_ERR_SUCCESS, "EventKill", ::EventKill, event);
  Call(GC_ERR_SUCCESS, "EventFlush", ::EventFlush, event);
  Call(GC_ERR_SUCCESS, "DSStopAcquisition", ::DSStopAcquisition, stream, ACQ_STOP_FLAGS_DEFAULT);
  Call(GC_ERR_SUCCESS, "DSFlushQueue", ::DSFlushQueue, stream, ACQ_QUEUE_ALL_DISCARD);
  for (void* each : {buffer, allocated}) {
    void* memory = nullptr;
    void* user = &memory;
    Call(GC_ERR_SUCCESS, "DSRevokeBuffer", ::DSRevokeBuffer, stream, each, &memory, &user);
    EXPECT_EQ(memory, Handle(kNumber));
    EXPECT_EQ(user, nullptr);
  }
  Call(GC_ERR_SUCCESS, "GCUnregisterEvent", ::GCUnregisterEvent, stream, EVENT_NEW_BUFFER);
}

// With the device's event left registered and the library closed before the transport layer.
void FullSession::Close() {
  Call(GC_ERR_SUCCESS, "DSClose", ::DSClose, Handle(kStream));
  Call(GC_ERR_SUCCESS, "DevClose", ::DevClose, Handle(kDevice));
  Call(GC_ERR_SUCCESS, "IFClose", ::IFClose, Handle(kInterface));
  Call(GC_ERR_SUCCESS, "TLClose", ::TLClose, Handle(kTl));
  Open(kTl, "TLOpen", ::TLOpen);
  Open(kEvent, "GCRegisterEvent", ::GCRegisterEvent, Handle(kTl), EVENT_ERROR);
  Open(kInterface, "TLOpenInterface", ::TLOpenInterface, Handle(kTl), kText.data());
  Call(GC_ERR_SUCCESS, "GCCloseLib", ::GCCloseLib);
}

}  // namespace vextrel_test
