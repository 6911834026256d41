#include "lifecycle/function_tables.h"

#include "calllog/line_log.h"

namespace vextrel {
namespace {

// Looks functions up in one module.
class Resolver {
 public:
  Resolver(platform::ModuleHandle module, log4cpp::Category& logger)
      : module_(module), logger_(logger) {}

  // `reportedName` is what the line calls the function when it is missing.
  template <typename Function>
  void operator()(Function*& slot, const char* name, const char* reportedName) const {
    slot = reinterpret_cast<Function*>(platform::FindExport(module_, name));
    if (slot == nullptr) {
      LogError(logger_, "%s not exported", reportedName);
    }
  }
  template <typename Function>
  void operator()(Function*& slot, const char* name) const {
    (*this)(slot, name, name);
  }

 private:
  platform::ModuleHandle module_;
  log4cpp::Category& logger_;
};

}  // namespace

void ResolveTable(LibFunctionTable& table, platform::ModuleHandle module,
                  log4cpp::Category& logger) {
  table.module = module;
  const Resolver resolve(module, logger);
  resolve(table.GCGetInfo, "GCGetInfo");
  resolve(table.GCGetLastError, "GCGetLastError");
  resolve(table.GCInitLib, "GCInitLib");
  resolve(table.GCCloseLib, "GCCloseLib");
}

void ResolveTable(TLFunctionTable& table, platform::ModuleHandle module,
                  log4cpp::Category& logger) {
  table.module = module;
  const Resolver resolve(module, logger);
  resolve(table.TLOpen, "TLOpen");
  resolve(table.TLClose, "TLClose");
  resolve(table.TLGetInfo, "TLGetInfo");
  resolve(table.TLGetNumInterfaces, "TLGetNumInterfaces");
  resolve(table.TLGetInterfaceID, "TLGetInterfaceID");
  resolve(table.TLGetInterfaceInfo, "TLGetInterfaceInfo");
  resolve(table.TLOpenInterface, "TLOpenInterface");
  resolve(table.TLUpdateInterfaceList, "TLUpdateInterfaceList");
}

void ResolveTable(IFFunctionTable& table, platform::ModuleHandle module,
                  log4cpp::Category& logger) {
  table.module = module;
  const Resolver resolve(module, logger);
  resolve(table.IFClose, "IFClose");
  resolve(table.IFGetInfo, "IFGetInfo");
  resolve(table.IFGetNumDevices, "IFGetNumDevices");
  resolve(table.IFGetDeviceID, "IFGetDeviceID");
  resolve(table.IFUpdateDeviceList, "IFUpdateDeviceList");
  resolve(table.IFGetDeviceInfo, "IFGetDeviceInfo");
  resolve(table.IFOpenDevice, "IFOpenDevice");
}

void ResolveTable(DevFunctionTable& table, platform::ModuleHandle module,
                  log4cpp::Category& logger) {
  table.module = module;
  const Resolver resolve(module, logger);
  // Not in the order of the slots, and neither are the lines, on purpose.
  resolve(table.DevClose, "DevClose");
  resolve(table.DevGetInfo, "DevGetInfo");
  resolve(table.DevGetPort, "DevGetPort");
  resolve(table.DevGetNumDataStreams, "DevGetNumDataStreams");
  resolve(table.DevGetDataStreamID, "DevGetDataStreamID");
  resolve(table.DevOpenDataStream, "DevOpenDataStream");
}

void ResolveTable(DSFunctionTable& table, platform::ModuleHandle module,
                  log4cpp::Category& logger) {
  table.module = module;
  const Resolver resolve(module, logger);
  resolve(table.DSAnnounceBuffer, "DSAnnounceBuffer");
  resolve(table.DSAllocAndAnnounceBuffer, "DSAllocAndAnnounceBuffer");
  resolve(table.DSFlushQueue, "DSFlushQueue");
  resolve(table.DSStartAcquisition, "DSStartAcquisition");
  resolve(table.DSStopAcquisition, "DSStopAcquisition");
  resolve(table.DSGetInfo, "DSGetInfo");
  resolve(table.DSGetBufferID, "DSGetBufferID");
  resolve(table.DSClose, "DSClose");
  resolve(table.DSRevokeBuffer, "DSRevokeBuffer");
  resolve(table.DSQueueBuffer, "DSQueueBuffer");
  resolve(table.DSGetBufferInfo, "DSGetBufferInfo");
}

void ResolveTable(PortFunctionTable& table, platform::ModuleHandle module,
                  log4cpp::Category& logger) {
  table.module = module;
  const Resolver resolve(module, logger);
  resolve(table.GCReadPort, "GCReadPort");
  resolve(table.GCWritePort, "GCWritePort");
  resolve(table.GCGetPortURL, "GCGetPortURL");
  resolve(table.GCGetNumPortURLs, "GCGetNumPortURLs");
  resolve(table.GCGetPortInfo, "GCGetPortInfo");
  resolve(table.GCGetPortURLInfo, "GCGetPortURLInfo");
  resolve(table.GCReadPortStacked, "GCReadPortStacked");
  resolve(table.GCWritePortStacked, "GCWritePortStacked");
}

void ResolveTable(EventFunctionTable& table, platform::ModuleHandle module,
                  log4cpp::Category& logger) {
  table.module = module;
  const Resolver resolve(module, logger);
  resolve(table.GCRegisterEvent, "GCRegisterEvent");
  resolve(table.GCUnregisterEvent, "GCUnregisterEvent");
  // The line carries an extra letter, on purpose.
  resolve(table.EventGetData, "EventGetData", "GEventGetData");
  resolve(table.EventGetDataInfo, "EventGetDataInfo");
  resolve(table.EventGetInfo, "EventGetInfo");
  resolve(table.EventFlush, "EventFlush");
  resolve(table.EventKill, "EventKill");
}

}  // namespace vextrel
