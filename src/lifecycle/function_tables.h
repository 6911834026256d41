// SPDX-License-Identifier: MIT
// The target producer's entry points, looked up by name once per GCInitLib.
//
// Each table is a plain row of slots, one for each function of its group. A slot holds null if the
// target doesn't export its function. A table is filled once and only read after that, without a
// lock. The table doesn't own `module`, and nothing reads it (Kept: 14).
#ifndef VEXTREL_LIFECYCLE_FUNCTION_TABLES_H
#define VEXTREL_LIFECYCLE_FUNCTION_TABLES_H

#include <log4cpp/Category.hh>

#include "gentl/gentl.h"
#include "platform/platform.h"

namespace vextrel {

struct LibFunctionTable {
  decltype(&::GCGetInfo) GCGetInfo = nullptr;
  decltype(&::GCGetLastError) GCGetLastError = nullptr;
  decltype(&::GCInitLib) GCInitLib = nullptr;
  decltype(&::GCCloseLib) GCCloseLib = nullptr;
  platform::ModuleHandle module = nullptr;
};

struct TLFunctionTable {
  decltype(&::TLOpen) TLOpen = nullptr;
  decltype(&::TLClose) TLClose = nullptr;
  decltype(&::TLGetInfo) TLGetInfo = nullptr;
  decltype(&::TLGetNumInterfaces) TLGetNumInterfaces = nullptr;
  decltype(&::TLGetInterfaceID) TLGetInterfaceID = nullptr;
  decltype(&::TLGetInterfaceInfo) TLGetInterfaceInfo = nullptr;
  decltype(&::TLOpenInterface) TLOpenInterface = nullptr;
  decltype(&::TLUpdateInterfaceList) TLUpdateInterfaceList = nullptr;
  platform::ModuleHandle module = nullptr;
};

struct IFFunctionTable {
  decltype(&::IFClose) IFClose = nullptr;
  decltype(&::IFGetInfo) IFGetInfo = nullptr;
  decltype(&::IFGetNumDevices) IFGetNumDevices = nullptr;
  decltype(&::IFGetDeviceID) IFGetDeviceID = nullptr;
  decltype(&::IFUpdateDeviceList) IFUpdateDeviceList = nullptr;
  decltype(&::IFGetDeviceInfo) IFGetDeviceInfo = nullptr;
  decltype(&::IFOpenDevice) IFOpenDevice = nullptr;
  platform::ModuleHandle module = nullptr;
};

struct DevFunctionTable {
  decltype(&::DevGetPort) DevGetPort = nullptr;
  decltype(&::DevGetNumDataStreams) DevGetNumDataStreams = nullptr;
  decltype(&::DevGetDataStreamID) DevGetDataStreamID = nullptr;
  decltype(&::DevOpenDataStream) DevOpenDataStream = nullptr;
  decltype(&::DevGetInfo) DevGetInfo = nullptr;
  decltype(&::DevClose) DevClose = nullptr;
  platform::ModuleHandle module = nullptr;
};

struct DSFunctionTable {
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
  platform::ModuleHandle module = nullptr;
};

struct PortFunctionTable {
  decltype(&::GCReadPort) GCReadPort = nullptr;
  decltype(&::GCWritePort) GCWritePort = nullptr;
  decltype(&::GCGetPortURL) GCGetPortURL = nullptr;
  decltype(&::GCGetNumPortURLs) GCGetNumPortURLs = nullptr;
  decltype(&::GCGetPortInfo) GCGetPortInfo = nullptr;
  decltype(&::GCGetPortURLInfo) GCGetPortURLInfo = nullptr;
  decltype(&::GCReadPortStacked) GCReadPortStacked = nullptr;
  decltype(&::GCWritePortStacked) GCWritePortStacked = nullptr;
  platform::ModuleHandle module = nullptr;
};

struct EventFunctionTable {
  decltype(&::GCRegisterEvent) GCRegisterEvent = nullptr;
  decltype(&::GCUnregisterEvent) GCUnregisterEvent = nullptr;
  decltype(&::EventGetData) EventGetData = nullptr;
  decltype(&::EventGetDataInfo) EventGetDataInfo = nullptr;
  decltype(&::EventGetInfo) EventGetInfo = nullptr;
  decltype(&::EventFlush) EventFlush = nullptr;
  decltype(&::EventKill) EventKill = nullptr;
  platform::ModuleHandle module = nullptr;
};

// Each fills a table from the exports of `module`, and reports each missing function to `logger`.
void ResolveTable(LibFunctionTable& table, platform::ModuleHandle module,
                  log4cpp::Category& logger);
void ResolveTable(TLFunctionTable& table, platform::ModuleHandle module, log4cpp::Category& logger);
void ResolveTable(IFFunctionTable& table, platform::ModuleHandle module, log4cpp::Category& logger);
void ResolveTable(DevFunctionTable& table, platform::ModuleHandle module,
                  log4cpp::Category& logger);
void ResolveTable(DSFunctionTable& table, platform::ModuleHandle module, log4cpp::Category& logger);
void ResolveTable(PortFunctionTable& table, platform::ModuleHandle module,
                  log4cpp::Category& logger);
void ResolveTable(EventFunctionTable& table, platform::ModuleHandle module,
                  log4cpp::Category& logger);

}  // namespace vextrel

#endif  // VEXTREL_LIFECYCLE_FUNCTION_TABLES_H
