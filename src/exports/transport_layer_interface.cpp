// The transport layer and its interfaces.
#include <new>

#include "calllog/info_rendering.h"
#include "calllog/line_log.h"
#include "calllog/value_names.h"
#include "exports/forwarding.h"
#include "gentl/gentl.h"

using namespace vextrel;  // NOLINT(google-build-using-namespace): these are C functions.

GC_ERROR GC_CALLTYPE TLOpen(TL_HANDLE* phTL) {
  const GC_ERROR result = Forward(proxyState.tlTable, &TLFunctionTable::TLOpen, phTL);
  Observe([&] {
    LogInfo(CallLogger(), "%s=TLOpen(0x%p->(pHandle=0x%p))"_line, GcErrorName(result), phTL, *phTL);
  });
  OnSuccess(result, [&] {
    // A root that is already there is forgotten without a word, on purpose.
    proxyState.registryRoot = new (std::nothrow) TransportLayerNode(*phTL, &CallLogger());
  });
  return result;
}

GC_ERROR GC_CALLTYPE TLClose(TL_HANDLE hTL) {
  const GC_ERROR result = Forward(proxyState.tlTable, &TLFunctionTable::TLClose, hTL);
  Observe([&] { LogInfo(CallLogger(), "%s=TLClose(hTL=0x%p)"_line, GcErrorName(result), hTL); });
  OnSuccess(result, [&] {
    TransportLayerNode::ReleaseEventsOn(proxyState.registryRoot, hTL);
    // Whatever hTL is: any TLClose ends the registry.
    if (proxyState.registryRoot != nullptr) {
      TearDownRegistry();
    }
  });
  return result;
}

GC_ERROR GC_CALLTYPE TLGetInfo(TL_HANDLE hTL, TL_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                               void* pBuffer, size_t* piSize) {
  const GC_ERROR result = Forward(proxyState.tlTable, &TLFunctionTable::TLGetInfo, hTL, iInfoCmd,
                                  piType, pBuffer, piSize);
  Observe([&] {
    const RenderedText value = RenderInfoValue(*piType, pBuffer, *piSize);
    const RenderedText type = InfoDatatypeName(*piType);
    const RenderedText command = TlInfoCmdName(iInfoCmd);
    LogInfo(CallLogger(),
            "%s=TLGetInfo(hTL=%p, iInfoCmd=%s, 0x%p->(iType=%s), 0x%p->(Buffer=%s), "
            "0x%p->(iSize=%u))"_line,
            GcErrorName(result), hTL, command, piType, type, pBuffer, value, piSize, *piSize);
  });
  return result;
}

GC_ERROR GC_CALLTYPE TLGetNumInterfaces(TL_HANDLE hTL, uint32_t* piNumIfaces) {
  const GC_ERROR result =
      Forward(proxyState.tlTable, &TLFunctionTable::TLGetNumInterfaces, hTL, piNumIfaces);
  Observe([&] {
    LogInfo(CallLogger(), "%s=TLGetNumInterfaces(hTL=0x%p, 0x%p->(iNumInterfaces=0x%u))"_line,
            GcErrorName(result), hTL, piNumIfaces, *piNumIfaces);
  });
  return result;
}

GC_ERROR GC_CALLTYPE TLGetInterfaceID(TL_HANDLE hTL, uint32_t iIndex, char* sID, size_t* piSize) {
  const GC_ERROR result =
      Forward(proxyState.tlTable, &TLFunctionTable::TLGetInterfaceID, hTL, iIndex, sID, piSize);
  Observe([&] {
    LogInfo(CallLogger(),
            "%s=TLGetInterfaceID(hTL=0x%p, iIndex=%u, 0x%p->(Buffer=%s), 0x%p->(iSize=%u))"_line,
            GcErrorName(result), hTL, iIndex, sID, TextOrNull(sID), piSize, *piSize);
  });
  return result;
}

GC_ERROR GC_CALLTYPE TLGetInterfaceInfo(TL_HANDLE hTL, const char* sIfaceID,
                                        INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                                        void* pBuffer, size_t* piSize) {
  const GC_ERROR result = Forward(proxyState.tlTable, &TLFunctionTable::TLGetInterfaceInfo, hTL,
                                  sIfaceID, iInfoCmd, piType, pBuffer, piSize);
  Observe([&] {
    const RenderedText value = RenderInfoValue(*piType, pBuffer, *piSize);
    const RenderedText type = InfoDatatypeName(*piType);
    const RenderedText command = InterfaceInfoCmdName(iInfoCmd);
    // pBuffer is left out on purpose: from there on each conversion shows the next value.
    LogInfo(CallLogger(),
            "%s=TLGetInterfaceInfo(hTL=0x%p, 0x%p->(sInterfaceName=%s), iCmd=%s, 0x%p->(iType=%s), "
            "0x%p->(Buffer=%s), 0x%p->(iSize=%u))"_line,
            GcErrorName(result), hTL, sIfaceID, TextOrNull(sIfaceID), command, piType, type,
            Misplaced(value), Misplaced(piSize), Misplaced(*piSize), noValue);
  });
  return result;
}

GC_ERROR GC_CALLTYPE TLOpenInterface(TL_HANDLE hTL, const char* sIfaceID, IF_HANDLE* phIface) {
  const GC_ERROR result =
      Forward(proxyState.tlTable, &TLFunctionTable::TLOpenInterface, hTL, sIfaceID, phIface);
  Observe([&] {
    LogInfo(CallLogger(),
            "%s=TLOpenInterface(hTL=0x%p, 0x%p->(sInterfaceName=%s), 0x%p->(hInterface=%p))"_line,
            GcErrorName(result), hTL, sIfaceID, TextOrNull(sIfaceID), phIface, *phIface);
  });
  OnSuccess(result, [&] {
    if (phIface == nullptr) {
      LogError(CallLogger(), "TLOpenInterface returned a NULL handle to the interface!");
    } else if (TransportLayerNode* root = OpenedRegistry()) {
      root->AddInterface(*phIface);
    }
  });
  return result;
}

GC_ERROR GC_CALLTYPE TLUpdateInterfaceList(TL_HANDLE hTL, bool8_t* pbChanged, uint64_t iTimeout) {
  const GC_ERROR result = Forward(proxyState.tlTable, &TLFunctionTable::TLUpdateInterfaceList, hTL,
                                  pbChanged, iTimeout);
  Observe([&] {
    if (pbChanged != nullptr) {
      LogInfo(CallLogger(),
              "%s=TLUpdateInterfaceList(hTL=0x%p, 0x%p->(bHasChanged=%d), iTimeout=%lu)"_line,
              GcErrorName(result), hTL, pbChanged, *pbChanged, iTimeout);
    } else {
      LogInfo(CallLogger(), "%s=TLUpdateInterfaceList(hTL=0x%p, 0x%p, iTimeout=%lu)"_line,
              GcErrorName(result), hTL, pbChanged, iTimeout);
    }
  });
  return result;
}

GC_ERROR GC_CALLTYPE IFClose(IF_HANDLE hIface) {
  const GC_ERROR result = Forward(proxyState.ifTable, &IFFunctionTable::IFClose, hIface);
  Observe([&] {
    LogInfo(CallLogger(), "%s=IFClose(hInterface=0x%p)"_line, GcErrorName(result), hIface);
  });
  OnSuccess(result, [&] {
    if (hIface == nullptr) {
      ReportIllegalInterface();
      return;
    }
    TransportLayerNode::ReleaseEventsOn(proxyState.registryRoot, hIface);
    TransportLayerNode* root = OpenedRegistry();
    if (root != nullptr && !root->RemoveInterface(hIface)) {
      LogError(CallLogger(),
               "The interface with handle 0x%p was not previously opened correctly using "
               "TLOpenInterface()!",
               noValue);
    }
  });
  return result;
}

GC_ERROR GC_CALLTYPE IFGetInfo(IF_HANDLE hIface, INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                               void* pBuffer, size_t* piSize) {
  const GC_ERROR result = Forward(proxyState.ifTable, &IFFunctionTable::IFGetInfo, hIface, iInfoCmd,
                                  piType, pBuffer, piSize);
  Observe([&] {
    const RenderedText value = RenderInfoValue(*piType, pBuffer, *piSize);
    const RenderedText type = InfoDatatypeName(*piType);
    const RenderedText command = InterfaceInfoCmdName(iInfoCmd);
    LogInfo(CallLogger(),
            "%s=IFGetInfo(hInterface=0x%p, iID=%s, 0x%p->(iType=%s), 0x%p->(Buffer=%s), "
            "0x%p->(iSize=%u))"_line,
            GcErrorName(result), hIface, command, piType, type, pBuffer, value, piSize, *piSize);
  });
  return result;
}

GC_ERROR GC_CALLTYPE IFGetNumDevices(IF_HANDLE hIface, uint32_t* piNumDevices) {
  const GC_ERROR result =
      Forward(proxyState.ifTable, &IFFunctionTable::IFGetNumDevices, hIface, piNumDevices);
  Observe([&] {
    LogInfo(CallLogger(), "%s=IFGetNumDevices(hInterface=0x%p, 0x%p->(iNumDevices=0x%u))"_line,
            GcErrorName(result), hIface, piNumDevices, *piNumDevices);
  });
  return result;
}

GC_ERROR GC_CALLTYPE IFGetDeviceID(IF_HANDLE hIface, uint32_t iIndex, char* sIDeviceID,
                                   size_t* piSize) {
  const GC_ERROR result = Forward(proxyState.ifTable, &IFFunctionTable::IFGetDeviceID, hIface,
                                  iIndex, sIDeviceID, piSize);
  Observe([&] {
    LogInfo(
        CallLogger(),
        "%s=IFGetDeviceID(hInterface=0x%p, iIndex=%u, 0x%p->(Buffer=%s), 0x%p->(iSize=%u))"_line,
        GcErrorName(result), hIface, iIndex, sIDeviceID, TextOrNull(sIDeviceID), piSize, *piSize);
  });
  return result;
}

GC_ERROR GC_CALLTYPE IFUpdateDeviceList(IF_HANDLE hIface, bool8_t* pbChanged, uint64_t iTimeout) {
  const GC_ERROR result = Forward(proxyState.ifTable, &IFFunctionTable::IFUpdateDeviceList, hIface,
                                  pbChanged, iTimeout);
  Observe([&] {
    if (pbChanged != nullptr) {
      LogInfo(CallLogger(),
              "%s=IFUpdateDeviceList(hInterface=0x%p, 0x%p->(bHasChanged=%d), iTimeout=%lu)"_line,
              GcErrorName(result), hIface, pbChanged, *pbChanged, iTimeout);
    } else {
      LogInfo(CallLogger(), "%s=IFUpdateDeviceList(hInterface=0x%p, 0x%p, iTimeout=%lu)"_line,
              GcErrorName(result), hIface, pbChanged, iTimeout);
    }
  });
  return result;
}

GC_ERROR GC_CALLTYPE IFGetDeviceInfo(IF_HANDLE hIface, const char* sDeviceID,
                                     DEVICE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer,
                                     size_t* piSize) {
  const GC_ERROR result = Forward(proxyState.ifTable, &IFFunctionTable::IFGetDeviceInfo, hIface,
                                  sDeviceID, iInfoCmd, piType, pBuffer, piSize);
  Observe([&] {
    const RenderedText value = RenderInfoValue(*piType, pBuffer, *piSize);
    const RenderedText type = InfoDatatypeName(*piType);
    const RenderedText command = DeviceInfoCmdName(iInfoCmd);
    LogInfo(CallLogger(),
            "%s=IFGetDeviceInfo(hInterface=0x%p, psDeviceName=%s, iID=%s, 0x%p->(iType=%s), "
            "0x%p->(Buffer=%s), 0x%p->(iSize=%u))"_line,
            GcErrorName(result), hIface, TextOrNull(sDeviceID), command, piType, type, pBuffer,
            value, piSize, *piSize);
  });
  return result;
}

GC_ERROR GC_CALLTYPE IFOpenDevice(IF_HANDLE hIface, const char* sDeviceID,
                                  DEVICE_ACCESS_FLAGS iOpenFlags, DEV_HANDLE* phDevice) {
  const GC_ERROR result = Forward(proxyState.ifTable, &IFFunctionTable::IFOpenDevice, hIface,
                                  sDeviceID, iOpenFlags, phDevice);
  Observe([&] {
    const RenderedText flags = DeviceAccessFlagsName(iOpenFlags);
    if (phDevice != nullptr) {
      // %x shows the low half of the handle only, on purpose.
      LogInfo(CallLogger(),
              "%s=IFOpenDevice(hInterface=0x%p, 0x%p->(sDevName=%s), iOpenFlags=%s, "
              "0x%p->(hDev=0x%x))"_line,
              GcErrorName(result), hIface, sDeviceID, TextOrNull(sDeviceID), flags, phDevice,
              Misplaced(*phDevice));
    } else {
      LogInfo(CallLogger(),
              "%s=IFOpenDevice(hInterface=0x%p, 0x%p->(sDevName=%s), iOpenFlags=%s, 0x%p)"_line,
              GcErrorName(result), hIface, sDeviceID, TextOrNull(sDeviceID), flags, phDevice);
    }
  });
  OnSuccess(result, [&] {
    if (phDevice == nullptr) {
      LogError(CallLogger(), "IFOpenDevice returned a NULL handle to the device!");
    } else if (TransportLayerNode* root = OpenedRegistry()) {
      root->AddDevice(hIface, *phDevice);
    }
  });
  return result;
}
