// SPDX-License-Identifier: MIT
// A producer without anything optional: no info, no error texts, no event but the new buffer. Its
// first device always refuses to open, its registers are big-endian, and only the camera knows the
// size of a frame.
//
// The environment variable SPARSE_PRODUCER_FAULT selects a fault: GCInitLib fails ("init") or
// throws
// ("throw"), TLOpen gives no handle ("handle"), all devices refuse to open ("busy"), the
// description is not in the device ("url").
#include <array>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <stdexcept>
#include <string>
#include <string_view>

#include "gentl/gentl.h"

namespace {

constexpr std::string_view kDescription =
    "<RegisterDescription>\n"
    "<IntReg Name=\"Width\"><Address>256</Address><Length>2</Length>"
    "<Endianess>BigEndian</Endianess></IntReg>\n"
    "<IntReg Name=\"Height\"><Address>258</Address><Length>2</Length>"
    "<Endianess>BigEndian</Endianess></IntReg>\n"
    "<Integer Name=\"PayloadSize\"><pValue>PayloadSizeReg</pValue></Integer>\n"
    "<IntReg Name=\"PayloadSizeReg\"><Address>0x104</Address><Length>4</Length>"
    "<Endianess>BigEndian</Endianess></IntReg>\n"
    "</RegisterDescription>\n";
constexpr std::uint64_t kDescriptionAddress = 0xF000;
constexpr std::uint64_t kRegistersAddress = 0x100;
constexpr std::size_t kFrameSize = 6;

std::array<std::uint8_t, 8> registers = {0, 3, 0, 2, 0, 0, 0, kFrameSize};  // 3 x 2 pixels
std::deque<BUFFER_HANDLE> queue;

// Any address serves as a handle; a buffer's is that of its memory.
char library;

[[nodiscard]] void* AHandle() {
  return &library;
}

[[nodiscard]] bool HasFault(std::string_view fault) {
  const char* const value = std::getenv("SPARSE_PRODUCER_FAULT");
  return value != nullptr && value == fault;
}

[[nodiscard]] GC_ERROR GiveHandle(void** handle) {
  *handle = AHandle();
  return GC_ERR_SUCCESS;
}

[[nodiscard]] GC_ERROR GiveText(std::string_view text, char* buffer, std::size_t* size) {
  if (buffer != nullptr) {
    std::memcpy(buffer, text.data(), text.size());
    buffer[text.size()] = '\0';
  }
  *size = text.size() + 1;
  return GC_ERR_SUCCESS;
}

}  // namespace

extern "C" {

GC_ERROR GC_CALLTYPE GCInitLib(void) {
  if (HasFault("throw")) {
    throw std::runtime_error("no camera bus");
  }
  return HasFault("init") ? GC_ERR_RESOURCE_IN_USE : GC_ERR_SUCCESS;
}
GC_ERROR GC_CALLTYPE GCCloseLib(void) {
  return GC_ERR_SUCCESS;
}

GC_ERROR GC_CALLTYPE TLOpen(TL_HANDLE* phTL) {
  return HasFault("handle") ? GC_ERR_SUCCESS : GiveHandle(phTL);
}
GC_ERROR GC_CALLTYPE TLClose(TL_HANDLE) {
  return GC_ERR_SUCCESS;
}
GC_ERROR GC_CALLTYPE TLUpdateInterfaceList(TL_HANDLE, bool8_t*, uint64_t) {
  return GC_ERR_SUCCESS;
}
GC_ERROR GC_CALLTYPE TLGetNumInterfaces(TL_HANDLE, uint32_t* piNumIfaces) {
  *piNumIfaces = 1;
  return GC_ERR_SUCCESS;
}
GC_ERROR GC_CALLTYPE TLGetInterfaceID(TL_HANDLE, uint32_t, char* sID, size_t* piSize) {
  return GiveText("plug", sID, piSize);
}
GC_ERROR GC_CALLTYPE TLOpenInterface(TL_HANDLE, const char*, IF_HANDLE* phIface) {
  return GiveHandle(phIface);
}

GC_ERROR GC_CALLTYPE IFClose(IF_HANDLE) {
  return GC_ERR_SUCCESS;
}
GC_ERROR GC_CALLTYPE IFUpdateDeviceList(IF_HANDLE, bool8_t*, uint64_t) {
  return GC_ERR_SUCCESS;
}
GC_ERROR GC_CALLTYPE IFGetNumDevices(IF_HANDLE, uint32_t* piNumDevices) {
  *piNumDevices = 2;
  return GC_ERR_SUCCESS;
}
GC_ERROR GC_CALLTYPE IFGetDeviceID(IF_HANDLE, uint32_t iIndex, char* sIDeviceID, size_t* piSize) {
  return GiveText(iIndex == 0 ? "busy" : "free", sIDeviceID, piSize);
}
GC_ERROR GC_CALLTYPE IFOpenDevice(IF_HANDLE, const char* sDeviceID, DEVICE_ACCESS_FLAGS,
                                  DEV_HANDLE* phDevice) {
  const bool opens = std::string_view(sDeviceID) == "free" && !HasFault("busy");
  return opens ? GiveHandle(phDevice) : GC_ERR_ACCESS_DENIED;
}

GC_ERROR GC_CALLTYPE DevClose(DEV_HANDLE) {
  return GC_ERR_SUCCESS;
}
GC_ERROR GC_CALLTYPE DevGetPort(DEV_HANDLE, PORT_HANDLE* phRemoteDevice) {
  return GiveHandle(phRemoteDevice);
}
GC_ERROR GC_CALLTYPE DevGetNumDataStreams(DEV_HANDLE, uint32_t* piNumDataStreams) {
  *piNumDataStreams = 1;
  return GC_ERR_SUCCESS;
}
GC_ERROR GC_CALLTYPE DevGetDataStreamID(DEV_HANDLE, uint32_t, char* sDataStreamID, size_t* piSize) {
  return GiveText("stream", sDataStreamID, piSize);
}
GC_ERROR GC_CALLTYPE DevOpenDataStream(DEV_HANDLE, const char*, DS_HANDLE* phDataStream) {
  return GiveHandle(phDataStream);
}

GC_ERROR GC_CALLTYPE GCGetPortURL(PORT_HANDLE, char* sURL, size_t* piSize) {
  if (HasFault("url")) {
    return GiveText("file:///sparse.xml", sURL, piSize);
  }
  constexpr std::string_view kDigits = "0123456789abcdef";
  static_assert(kDescription.size() > 0xFF && kDescription.size() <= 0xFFF);
  std::array<char, 3> size{};
  size[0] = kDigits[kDescription.size() / 0x100];
  size[1] = kDigits[kDescription.size() / 0x10 % 0x10];
  size[2] = kDigits[kDescription.size() % 0x10];
  return GiveText(
      "Local:///sparse.xml;F000;" + std::string(size.data(), size.size()) + "?SchemaVersion=1.1.0",
      sURL, piSize);
}
GC_ERROR GC_CALLTYPE GCReadPort(PORT_HANDLE, uint64_t iAddress, void* pBuffer, size_t* piSize) {
  if (iAddress == kDescriptionAddress && *piSize == kDescription.size()) {
    std::memcpy(pBuffer, kDescription.data(), *piSize);
    return GC_ERR_SUCCESS;
  }
  if (iAddress < kRegistersAddress || iAddress - kRegistersAddress + *piSize > registers.size()) {
    return GC_ERR_INVALID_ADDRESS;
  }
  std::memcpy(pBuffer, registers.data() + (iAddress - kRegistersAddress), *piSize);
  return GC_ERR_SUCCESS;
}
// Accepts only the value that is there already.
GC_ERROR GC_CALLTYPE GCWritePort(PORT_HANDLE, uint64_t iAddress, const void* pBuffer,
                                 size_t* piSize) {
  if (iAddress < kRegistersAddress || iAddress - kRegistersAddress + *piSize > registers.size()) {
    return GC_ERR_INVALID_ADDRESS;
  }
  const auto* const place = registers.data() + (iAddress - kRegistersAddress);
  return std::memcmp(place, pBuffer, *piSize) == 0 ? GC_ERR_SUCCESS : GC_ERR_ACCESS_DENIED;
}

GC_ERROR GC_CALLTYPE DSClose(DS_HANDLE) {
  return GC_ERR_SUCCESS;
}
GC_ERROR GC_CALLTYPE DSGetInfo(DS_HANDLE, STREAM_INFO_CMD, INFO_DATATYPE*, void*, size_t*) {
  return GC_ERR_NOT_IMPLEMENTED;
}
GC_ERROR GC_CALLTYPE DSAnnounceBuffer(DS_HANDLE, void* pBuffer, size_t iSize, void*,
                                      BUFFER_HANDLE* phBuffer) {
  *phBuffer = pBuffer;
  return iSize == kFrameSize ? GC_ERR_SUCCESS : GC_ERR_INVALID_PARAMETER;
}
GC_ERROR GC_CALLTYPE DSQueueBuffer(DS_HANDLE, BUFFER_HANDLE hBuffer) {
  queue.push_back(hBuffer);
  return GC_ERR_SUCCESS;
}
GC_ERROR GC_CALLTYPE DSGetBufferInfo(DS_HANDLE, BUFFER_HANDLE hBuffer, BUFFER_INFO_CMD iInfoCmd,
                                     INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
  if (iInfoCmd != BUFFER_INFO_BASE) {
    return GC_ERR_NOT_AVAILABLE;
  }
  *piType = INFO_DATATYPE_PTR;
  std::memcpy(pBuffer, &hBuffer, sizeof hBuffer);
  *piSize = sizeof hBuffer;
  return GC_ERR_SUCCESS;
}
GC_ERROR GC_CALLTYPE DSFlushQueue(DS_HANDLE, ACQ_QUEUE_TYPE) {
  queue.clear();
  return GC_ERR_SUCCESS;
}
GC_ERROR GC_CALLTYPE DSRevokeBuffer(DS_HANDLE, BUFFER_HANDLE, void**, void**) {
  return GC_ERR_SUCCESS;
}
GC_ERROR GC_CALLTYPE DSStartAcquisition(DS_HANDLE, ACQ_START_FLAGS, uint64_t) {
  return GC_ERR_SUCCESS;
}
GC_ERROR GC_CALLTYPE DSStopAcquisition(DS_HANDLE, ACQ_STOP_FLAGS) {
  return GC_ERR_SUCCESS;
}

GC_ERROR GC_CALLTYPE GCRegisterEvent(EVENTSRC_HANDLE, EVENT_TYPE iEventID, EVENT_HANDLE* phEvent) {
  return iEventID == EVENT_NEW_BUFFER ? GiveHandle(phEvent) : GC_ERR_NOT_IMPLEMENTED;
}
GC_ERROR GC_CALLTYPE GCUnregisterEvent(EVENTSRC_HANDLE, EVENT_TYPE) {
  return GC_ERR_SUCCESS;
}
GC_ERROR GC_CALLTYPE EventGetData(EVENT_HANDLE, void* pBuffer, size_t* piSize, uint64_t) {
  if (queue.empty()) {
    return GC_ERR_TIMEOUT;
  }
  std::memcpy(pBuffer, &queue.front(), sizeof(BUFFER_HANDLE));
  *piSize = sizeof(BUFFER_HANDLE);
  queue.pop_front();
  return GC_ERR_SUCCESS;
}

}  // extern "C"
