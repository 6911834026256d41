// The 51 functions as one row of pointers: what a consumer calls, and what a scripted target plays.
#ifndef VEXTREL_TESTS_SUPPORT_GENTL_FUNCTIONS_H
#define VEXTREL_TESTS_SUPPORT_GENTL_FUNCTIONS_H

#include <cstddef>

#include "gentl/gentl.h"

namespace vextrel_test {

struct GenTLFunctions {
  decltype(&::GCGetInfo) GCGetInfo = nullptr;
  decltype(&::GCGetLastError) GCGetLastError = nullptr;
  decltype(&::GCInitLib) GCInitLib = nullptr;
  decltype(&::GCCloseLib) GCCloseLib = nullptr;
  decltype(&::TLOpen) TLOpen = nullptr;
  decltype(&::TLClose) TLClose = nullptr;
  decltype(&::TLGetInfo) TLGetInfo = nullptr;
  decltype(&::TLGetNumInterfaces) TLGetNumInterfaces = nullptr;
  decltype(&::TLGetInterfaceID) TLGetInterfaceID = nullptr;
  decltype(&::TLGetInterfaceInfo) TLGetInterfaceInfo = nullptr;
  decltype(&::TLOpenInterface) TLOpenInterface = nullptr;
  decltype(&::TLUpdateInterfaceList) TLUpdateInterfaceList = nullptr;
  decltype(&::IFClose) IFClose = nullptr;
  decltype(&::IFGetInfo) IFGetInfo = nullptr;
  decltype(&::IFGetNumDevices) IFGetNumDevices = nullptr;
  decltype(&::IFGetDeviceID) IFGetDeviceID = nullptr;
  decltype(&::IFUpdateDeviceList) IFUpdateDeviceList = nullptr;
  decltype(&::IFGetDeviceInfo) IFGetDeviceInfo = nullptr;
  decltype(&::IFOpenDevice) IFOpenDevice = nullptr;
  decltype(&::DevGetPort) DevGetPort = nullptr;
  decltype(&::DevGetNumDataStreams) DevGetNumDataStreams = nullptr;
  decltype(&::DevGetDataStreamID) DevGetDataStreamID = nullptr;
  decltype(&::DevOpenDataStream) DevOpenDataStream = nullptr;
  decltype(&::DevGetInfo) DevGetInfo = nullptr;
  decltype(&::DevClose) DevClose = nullptr;
  decltype(&::DSAnnounceBuffer) DSAnnounceBuffer = nullptr;
  decltype(&::DSAllocAndAnnounceBuffer) DSAllocAndAnnounceBuffer = nullptr;
  decltype(&::DSFlushQueue) DSFlushQueue = nullptr;
  decltype(&::DSStartAcquisition) DSStartAcquisition = nullptr;
  decltype(&::DSStopAcquisition) DSStopAcquisition = nullptr;
  decltype(&::DSGetInfo) DSGetInfo = nullptr;
  decltype(&::DSGetBufferID) DSGetBufferID = nullptr;
  decltype(&::DSClose) DSClose = nullptr;
  decltype(&::DSRevokeBuffer) DSRevokeBuffer = nullptr;
  decltype(&::DSQueueBuffer) DSQueueBuffer = nullptr;
  decltype(&::DSGetBufferInfo) DSGetBufferInfo = nullptr;
  decltype(&::GCReadPort) GCReadPort = nullptr;
  decltype(&::GCWritePort) GCWritePort = nullptr;
  decltype(&::GCGetPortURL) GCGetPortURL = nullptr;
  decltype(&::GCGetNumPortURLs) GCGetNumPortURLs = nullptr;
  decltype(&::GCGetPortInfo) GCGetPortInfo = nullptr;
  decltype(&::GCGetPortURLInfo) GCGetPortURLInfo = nullptr;
  decltype(&::GCReadPortStacked) GCReadPortStacked = nullptr;
  decltype(&::GCWritePortStacked) GCWritePortStacked = nullptr;
  decltype(&::GCRegisterEvent) GCRegisterEvent = nullptr;
  decltype(&::GCUnregisterEvent) GCUnregisterEvent = nullptr;
  decltype(&::EventGetData) EventGetData = nullptr;
  decltype(&::EventGetDataInfo) EventGetDataInfo = nullptr;
  decltype(&::EventGetInfo) EventGetInfo = nullptr;
  decltype(&::EventFlush) EventFlush = nullptr;
  decltype(&::EventKill) EventKill = nullptr;
};

inline constexpr std::size_t kFunctionCount = 51;
static_assert(sizeof(GenTLFunctions) == kFunctionCount * sizeof(void*));

// Calls visit(name, slot) for every function, in the order of the interface; `slot` points to the
// function's member of GenTLFunctions.
template <typename Visit>
void ForEachFunction(Visit visit) {
  visit("GCGetInfo", &GenTLFunctions::GCGetInfo);
  visit("GCGetLastError", &GenTLFunctions::GCGetLastError);
  visit("GCInitLib", &GenTLFunctions::GCInitLib);
  visit("GCCloseLib", &GenTLFunctions::GCCloseLib);
  visit("TLOpen", &GenTLFunctions::TLOpen);
  visit("TLClose", &GenTLFunctions::TLClose);
  visit("TLGetInfo", &GenTLFunctions::TLGetInfo);
  visit("TLGetNumInterfaces", &GenTLFunctions::TLGetNumInterfaces);
  visit("TLGetInterfaceID", &GenTLFunctions::TLGetInterfaceID);
  visit("TLGetInterfaceInfo", &GenTLFunctions::TLGetInterfaceInfo);
  visit("TLOpenInterface", &GenTLFunctions::TLOpenInterface);
  visit("TLUpdateInterfaceList", &GenTLFunctions::TLUpdateInterfaceList);
  visit("IFClose", &GenTLFunctions::IFClose);
  visit("IFGetInfo", &GenTLFunctions::IFGetInfo);
  visit("IFGetNumDevices", &GenTLFunctions::IFGetNumDevices);
  visit("IFGetDeviceID", &GenTLFunctions::IFGetDeviceID);
  visit("IFUpdateDeviceList", &GenTLFunctions::IFUpdateDeviceList);
  visit("IFGetDeviceInfo", &GenTLFunctions::IFGetDeviceInfo);
  visit("IFOpenDevice", &GenTLFunctions::IFOpenDevice);
  visit("DevGetPort", &GenTLFunctions::DevGetPort);
  visit("DevGetNumDataStreams", &GenTLFunctions::DevGetNumDataStreams);
  visit("DevGetDataStreamID", &GenTLFunctions::DevGetDataStreamID);
  visit("DevOpenDataStream", &GenTLFunctions::DevOpenDataStream);
  visit("DevGetInfo", &GenTLFunctions::DevGetInfo);
  visit("DevClose", &GenTLFunctions::DevClose);
  visit("DSAnnounceBuffer", &GenTLFunctions::DSAnnounceBuffer);
  visit("DSAllocAndAnnounceBuffer", &GenTLFunctions::DSAllocAndAnnounceBuffer);
  visit("DSFlushQueue", &GenTLFunctions::DSFlushQueue);
  visit("DSStartAcquisition", &GenTLFunctions::DSStartAcquisition);
  visit("DSStopAcquisition", &GenTLFunctions::DSStopAcquisition);
  visit("DSGetInfo", &GenTLFunctions::DSGetInfo);
  visit("DSGetBufferID", &GenTLFunctions::DSGetBufferID);
  visit("DSClose", &GenTLFunctions::DSClose);
  visit("DSRevokeBuffer", &GenTLFunctions::DSRevokeBuffer);
  visit("DSQueueBuffer", &GenTLFunctions::DSQueueBuffer);
  visit("DSGetBufferInfo", &GenTLFunctions::DSGetBufferInfo);
  visit("GCReadPort", &GenTLFunctions::GCReadPort);
  visit("GCWritePort", &GenTLFunctions::GCWritePort);
  visit("GCGetPortURL", &GenTLFunctions::GCGetPortURL);
  visit("GCGetNumPortURLs", &GenTLFunctions::GCGetNumPortURLs);
  visit("GCGetPortInfo", &GenTLFunctions::GCGetPortInfo);
  visit("GCGetPortURLInfo", &GenTLFunctions::GCGetPortURLInfo);
  visit("GCReadPortStacked", &GenTLFunctions::GCReadPortStacked);
  visit("GCWritePortStacked", &GenTLFunctions::GCWritePortStacked);
  visit("GCRegisterEvent", &GenTLFunctions::GCRegisterEvent);
  visit("GCUnregisterEvent", &GenTLFunctions::GCUnregisterEvent);
  visit("EventGetData", &GenTLFunctions::EventGetData);
  visit("EventGetDataInfo", &GenTLFunctions::EventGetDataInfo);
  visit("EventGetInfo", &GenTLFunctions::EventGetInfo);
  visit("EventFlush", &GenTLFunctions::EventFlush);
  visit("EventKill", &GenTLFunctions::EventKill);
}

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_SUPPORT_GENTL_FUNCTIONS_H
