// SPDX-License-Identifier: MIT
#include "lifecycle/function_tables.h"

#include "lifecycle/resolver.h"

namespace vextrel {
void ResolveTable(LibFunctionTable& table, platform::ModuleHandle module,
                  log4cpp::Category& logger) {
  table.module = module;
  const Resolver resolve(module, logger);
  resolve(table.GCGetInfo, "GCGetInfo"_function);
  resolve(table.GCGetLastError, "GCGetLastError"_function);
  resolve(table.GCInitLib, "GCInitLib"_function);
  resolve(table.GCCloseLib, "GCCloseLib"_function);
}

void ResolveTable(TLFunctionTable& table, platform::ModuleHandle module,
                  log4cpp::Category& logger) {
  table.module = module;
  const Resolver resolve(module, logger);
  resolve(table.TLOpen, "TLOpen"_function);
  resolve(table.TLClose, "TLClose"_function);
  resolve(table.TLGetInfo, "TLGetInfo"_function);
  resolve(table.TLGetNumInterfaces, "TLGetNumInterfaces"_function);
  resolve(table.TLGetInterfaceID, "TLGetInterfaceID"_function);
  resolve(table.TLGetInterfaceInfo, "TLGetInterfaceInfo"_function);
  resolve(table.TLOpenInterface, "TLOpenInterface"_function);
  resolve(table.TLUpdateInterfaceList, "TLUpdateInterfaceList"_function);
}

void ResolveTable(IFFunctionTable& table, platform::ModuleHandle module,
                  log4cpp::Category& logger) {
  table.module = module;
  const Resolver resolve(module, logger);
  resolve(table.IFClose, "IFClose"_function);
  resolve(table.IFGetInfo, "IFGetInfo"_function);
  resolve(table.IFGetNumDevices, "IFGetNumDevices"_function);
  resolve(table.IFGetDeviceID, "IFGetDeviceID"_function);
  resolve(table.IFUpdateDeviceList, "IFUpdateDeviceList"_function);
  resolve(table.IFGetDeviceInfo, "IFGetDeviceInfo"_function);
  resolve(table.IFOpenDevice, "IFOpenDevice"_function);
}

void ResolveTable(DevFunctionTable& table, platform::ModuleHandle module,
                  log4cpp::Category& logger) {
  table.module = module;
  const Resolver resolve(module, logger);
  // Kept: 10. Not in the order of the slots.
  resolve(table.DevClose, "DevClose"_function);
  resolve(table.DevGetInfo, "DevGetInfo"_function);
  resolve(table.DevGetPort, "DevGetPort"_function);
  resolve(table.DevGetNumDataStreams, "DevGetNumDataStreams"_function);
  resolve(table.DevGetDataStreamID, "DevGetDataStreamID"_function);
  resolve(table.DevOpenDataStream, "DevOpenDataStream"_function);
}

void ResolveTable(DSFunctionTable& table, platform::ModuleHandle module,
                  log4cpp::Category& logger) {
  table.module = module;
  const Resolver resolve(module, logger);
  resolve(table.DSAnnounceBuffer, "DSAnnounceBuffer"_function);
  resolve(table.DSAllocAndAnnounceBuffer, "DSAllocAndAnnounceBuffer"_function);
  resolve(table.DSFlushQueue, "DSFlushQueue"_function);
  resolve(table.DSStartAcquisition, "DSStartAcquisition"_function);
  resolve(table.DSStopAcquisition, "DSStopAcquisition"_function);
  resolve(table.DSGetInfo, "DSGetInfo"_function);
  resolve(table.DSGetBufferID, "DSGetBufferID"_function);
  resolve(table.DSClose, "DSClose"_function);
  resolve(table.DSRevokeBuffer, "DSRevokeBuffer"_function);
  resolve(table.DSQueueBuffer, "DSQueueBuffer"_function);
  resolve(table.DSGetBufferInfo, "DSGetBufferInfo"_function);
}

void ResolveTable(PortFunctionTable& table, platform::ModuleHandle module,
                  log4cpp::Category& logger) {
  table.module = module;
  const Resolver resolve(module, logger);
  resolve(table.GCReadPort, "GCReadPort"_function);
  resolve(table.GCWritePort, "GCWritePort"_function);
  resolve(table.GCGetPortURL, "GCGetPortURL"_function);
  resolve(table.GCGetNumPortURLs, "GCGetNumPortURLs"_function);
  resolve(table.GCGetPortInfo, "GCGetPortInfo"_function);
  resolve(table.GCGetPortURLInfo, "GCGetPortURLInfo"_function);
  resolve(table.GCReadPortStacked, "GCReadPortStacked"_function);
  resolve(table.GCWritePortStacked, "GCWritePortStacked"_function);
}

void ResolveTable(EventFunctionTable& table, platform::ModuleHandle module,
                  log4cpp::Category& logger) {
  table.module = module;
  const Resolver resolve(module, logger);
  resolve(table.GCRegisterEvent, "GCRegisterEvent"_function);
  resolve(table.GCUnregisterEvent, "GCUnregisterEvent"_function);
  // Kept: 11.
  resolve(table.EventGetData, "EventGetData"_function, "GEventGetData");
  resolve(table.EventGetDataInfo, "EventGetDataInfo"_function);
  resolve(table.EventGetInfo, "EventGetInfo"_function);
  resolve(table.EventFlush, "EventFlush"_function);
  resolve(table.EventKill, "EventKill"_function);
}

}  // namespace vextrel
