// SPDX-License-Identifier: MIT
#include "allocation/played_target.h"

#include <cstring>

#include "support/proxy.h"

namespace vextrel_test {

INFO_DATATYPE playedType = INFO_DATATYPE_STRING;

namespace {

GC_ERROR AnswerInfo(INFO_DATATYPE* type, void* buffer, size_t* size) {
  *type = playedType;
  if (playedType == INFO_DATATYPE_STRING) {
    std::memcpy(buffer, kText.data(), kText.size() + 1);
  } else {
    std::memcpy(buffer, &kNumber, sizeof kNumber);
  }
  *size = kSize;
  return kInfoResult;
}

GC_ERROR AnswerText(char* text, size_t* size) {
  std::memcpy(text, kText.data(), kText.size() + 1);
  *size = kSize;
  return kTextResult;
}

GC_ERROR AnswerCount(uint32_t* count) {
  *count = kCount;
  return kCountResult;
}

template <std::uintptr_t handle>
GC_ERROR AnswerHandle(void** opened) {
  *opened = Handle(handle);
  return GC_ERR_SUCCESS;
}

void PlayQueries(GenTLFunctions& play) {
  play.GCGetInfo = [](TL_INFO_CMD, INFO_DATATYPE* type, void* buffer, size_t* size) {
    return AnswerInfo(type, buffer, size);
  };
  play.GCGetLastError = [](GC_ERROR* code, char* text, size_t* size) {
    *code = GC_ERR_IO;
    return AnswerText(text, size);
  };
  play.TLGetInfo = [](TL_HANDLE, TL_INFO_CMD, INFO_DATATYPE* type, void* buffer, size_t* size) {
    return AnswerInfo(type, buffer, size);
  };
  play.TLGetNumInterfaces = [](TL_HANDLE, uint32_t* count) { return AnswerCount(count); };
  play.TLGetInterfaceID = [](TL_HANDLE, uint32_t, char* text, size_t* size) {
    return AnswerText(text, size);
  };
  play.TLGetInterfaceInfo = [](TL_HANDLE, const char*, INTERFACE_INFO_CMD, INFO_DATATYPE* type,
                               void* buffer,
                               size_t* size) { return AnswerInfo(type, buffer, size); };
  play.TLUpdateInterfaceList = [](TL_HANDLE, bool8_t* changed, uint64_t) -> GC_ERROR {
    *changed = 1;
    return GC_ERR_TIMEOUT;
  };
  play.IFGetInfo = [](IF_HANDLE, INTERFACE_INFO_CMD, INFO_DATATYPE* type, void* buffer,
                      size_t* size) { return AnswerInfo(type, buffer, size); };
  play.IFGetNumDevices = [](IF_HANDLE, uint32_t* count) { return AnswerCount(count); };
  play.IFGetDeviceID = [](IF_HANDLE, uint32_t, char* text, size_t* size) {
    return AnswerText(text, size);
  };
  play.IFUpdateDeviceList = [](IF_HANDLE, bool8_t* changed, uint64_t) -> GC_ERROR {
    *changed = 1;
    return GC_ERR_TIMEOUT;
  };
  play.IFGetDeviceInfo = [](IF_HANDLE, const char*, DEVICE_INFO_CMD, INFO_DATATYPE* type,
                            void* buffer, size_t* size) { return AnswerInfo(type, buffer, size); };
  play.DevGetNumDataStreams = [](DEV_HANDLE, uint32_t* count) { return AnswerCount(count); };
  play.DevGetDataStreamID = [](DEV_HANDLE, uint32_t, char* text, size_t* size) {
    return AnswerText(text, size);
  };
  play.DevGetInfo = [](DEV_HANDLE, DEVICE_INFO_CMD, INFO_DATATYPE* type, void* buffer,
                       size_t* size) { return AnswerInfo(type, buffer, size); };
  play.DSGetInfo = [](DS_HANDLE, STREAM_INFO_CMD, INFO_DATATYPE* type, void* buffer, size_t* size) {
    return AnswerInfo(type, buffer, size);
  };
  play.DSGetBufferInfo = [](DS_HANDLE, BUFFER_HANDLE, BUFFER_INFO_CMD, INFO_DATATYPE* type,
                            void* buffer, size_t* size) { return AnswerInfo(type, buffer, size); };
  play.GCGetPortURL = [](PORT_HANDLE, char* text, size_t* size) { return AnswerText(text, size); };
  play.GCGetNumPortURLs = [](PORT_HANDLE, uint32_t* count) { return AnswerCount(count); };
  play.GCGetPortInfo = [](PORT_HANDLE, PORT_INFO_CMD, INFO_DATATYPE* type, void* buffer,
                          size_t* size) { return AnswerInfo(type, buffer, size); };
  play.GCGetPortURLInfo = [](PORT_HANDLE, uint32_t, URL_INFO_CMD, INFO_DATATYPE* type, void* buffer,
                             size_t* size) { return AnswerInfo(type, buffer, size); };
  play.EventGetInfo = [](EVENT_HANDLE, EVENT_INFO_CMD, INFO_DATATYPE* type, void* buffer,
                         size_t* size) { return AnswerInfo(type, buffer, size); };
  play.EventGetDataInfo = [](EVENT_HANDLE, const void*, size_t, EVENT_DATA_INFO_CMD,
                             INFO_DATATYPE* type, void* buffer,
                             size_t* size) { return AnswerInfo(type, buffer, size); };
}

void PlayPorts(GenTLFunctions& play) {
  play.GCReadPort = [](PORT_HANDLE, uint64_t, void* buffer, size_t* size) {
    std::memset(buffer, 'x', kText.size());
    *size = kText.size();
    return kPortResult;
  };
  play.GCWritePort = [](PORT_HANDLE, uint64_t, const void*, size_t* size) {
    *size = kSize;
    return kPortResult;
  };
  play.GCReadPortStacked = [](PORT_HANDLE, PORT_REGISTER_STACK_ENTRY* entries, size_t* count) {
    std::memset(entries->pBuffer, 'x', entries->Size);
    *count = 1;
    return kPortResult;
  };
  play.GCWritePortStacked = [](PORT_HANDLE, PORT_REGISTER_STACK_ENTRY*, size_t* count) {
    *count = 1;
    return kPortResult;
  };
}

void PlayHandles(GenTLFunctions& play) {
  play.TLOpen = [](TL_HANDLE* opened) { return AnswerHandle<kTl>(opened); };
  play.TLOpenInterface = [](TL_HANDLE, const char*, IF_HANDLE* opened) {
    return AnswerHandle<kInterface>(opened);
  };
  play.IFOpenDevice = [](IF_HANDLE, const char*, DEVICE_ACCESS_FLAGS, DEV_HANDLE* opened) {
    return AnswerHandle<kDevice>(opened);
  };
  play.DevGetPort = [](DEV_HANDLE, PORT_HANDLE* opened) { return AnswerHandle<kPort>(opened); };
  play.DevOpenDataStream = [](DEV_HANDLE, const char*, DS_HANDLE* opened) {
    return AnswerHandle<kStream>(opened);
  };
  play.DSAnnounceBuffer = [](DS_HANDLE, void*, size_t, void*, BUFFER_HANDLE* opened) {
    return AnswerHandle<kBuffer>(opened);
  };
  play.DSAllocAndAnnounceBuffer = [](DS_HANDLE, size_t, void*, BUFFER_HANDLE* opened) {
    return AnswerHandle<kAllocatedBuffer>(opened);
  };
  play.DSGetBufferID = [](DS_HANDLE, uint32_t, BUFFER_HANDLE* opened) {
    return AnswerHandle<kBuffer>(opened);
  };
  play.DSRevokeBuffer = [](DS_HANDLE, BUFFER_HANDLE, void** memory, void** user) {
    *memory = Handle(kNumber);
    *user = nullptr;
    return GC_ERROR{GC_ERR_SUCCESS};
  };
  play.GCRegisterEvent = [](EVENTSRC_HANDLE, EVENT_TYPE, EVENT_HANDLE* opened) {
    return AnswerHandle<kEvent>(opened);
  };
  play.EventGetData = [](EVENT_HANDLE, void* buffer, size_t* size, uint64_t) {
    const void* const delivered[2] = {Handle(kBuffer), nullptr};
    std::memcpy(buffer, delivered, sizeof delivered);
    *size = sizeof delivered;
    return GC_ERROR{GC_ERR_SUCCESS};
  };
}

}  // namespace

// The functions without an output succeed by themselves.
void PlayEverything(TargetScript& script) {
  script.functions = {};
  script.result = GC_ERR_SUCCESS;
  PlayQueries(script.functions);
  PlayPorts(script.functions);
  PlayHandles(script.functions);
}

}  // namespace vextrel_test
