// SPDX-License-Identifier: MIT
// The transport layer and its interfaces.
#include <new>

#include "calllog/info_rendering.h"
#include "calllog/line_log.h"
#include "calllog/log_text.h"
#include "calllog/value_names.h"
#include "exports/forwarding.h"
#include "gentl/gentl.h"

using namespace vextrel;  // NOLINT(google-build-using-namespace): these are C functions.

GC_ERROR GC_CALLTYPE TLOpen(TL_HANDLE* phTL) {
  const GC_ERROR result = Forward(proxyState.tlTable, &TLFunctionTable::TLOpen, phTL);
  Observe([&] { LogCall(CallLogger(), line::kTLOpen, GcErrorName(result), phTL, ValueAt(phTL)); });
  OnSuccess(result, [&] {
    // Kept: 50. A root that is already there is forgotten.
    proxyState.registryRoot = new (std::nothrow) TransportLayerNode(*phTL, &CallLogger());
  });
  return result;
}

GC_ERROR GC_CALLTYPE TLClose(TL_HANDLE hTL) {
  const GC_ERROR result = Forward(proxyState.tlTable, &TLFunctionTable::TLClose, hTL);
  Observe([&] { LogCall(CallLogger(), line::kTLClose, GcErrorName(result), hTL); });
  OnSuccess(result, [&] {
    ReleaseEvents(hTL);
    // Kept: 51. Whatever hTL is.
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
    LogCall(CallLogger(), line::kTLGetInfo, GcErrorName(result), hTL, command, piType, type,
            pBuffer, value, piSize, ValueAt(piSize));
  });
  return result;
}

GC_ERROR GC_CALLTYPE TLGetNumInterfaces(TL_HANDLE hTL, uint32_t* piNumIfaces) {
  const GC_ERROR result =
      Forward(proxyState.tlTable, &TLFunctionTable::TLGetNumInterfaces, hTL, piNumIfaces);
  Observe([&] {
    LogCall(CallLogger(), line::kTLGetNumInterfaces, GcErrorName(result), hTL, piNumIfaces,
            ValueAt(piNumIfaces));
  });
  return result;
}

GC_ERROR GC_CALLTYPE TLGetInterfaceID(TL_HANDLE hTL, uint32_t iIndex, char* sID, size_t* piSize) {
  const GC_ERROR result =
      Forward(proxyState.tlTable, &TLFunctionTable::TLGetInterfaceID, hTL, iIndex, sID, piSize);
  Observe([&] {
    LogCall(CallLogger(), line::kTLGetInterfaceID, GcErrorName(result), hTL, iIndex, sID,
            TextOrNull(sID), piSize, ValueAt(piSize));
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
    // Kept: 35. pBuffer is left out.
    LogCall(CallLogger(), line::kTLGetInterfaceInfo, GcErrorName(result), hTL, sIfaceID,
            TextOrNull(sIfaceID), command, piType, type, Misplaced(value), Misplaced(piSize),
            Misplaced(ValueAt(piSize)), kNoValue);
  });
  return result;
}

GC_ERROR GC_CALLTYPE TLOpenInterface(TL_HANDLE hTL, const char* sIfaceID, IF_HANDLE* phIface) {
  const GC_ERROR result =
      Forward(proxyState.tlTable, &TLFunctionTable::TLOpenInterface, hTL, sIfaceID, phIface);
  Observe([&] {
    LogCall(CallLogger(), line::kTLOpenInterface, GcErrorName(result), hTL, sIfaceID,
            TextOrNull(sIfaceID), phIface, ValueAt(phIface));
  });
  OnSuccess(result, [&] {
    if (phIface == nullptr) {
      ReportError(CallLogger(), report::kTLOpenInterfaceWithoutHandle);
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
      LogCall(CallLogger(), line::kTLUpdateInterfaceList, GcErrorName(result), hTL, pbChanged,
              ValueAt(pbChanged), iTimeout);
    } else {
      LogCall(CallLogger(), line::kTLUpdateInterfaceListWithoutOutput, GcErrorName(result), hTL,
              pbChanged, iTimeout);
    }
  });
  return result;
}

GC_ERROR GC_CALLTYPE IFClose(IF_HANDLE hIface) {
  const GC_ERROR result = Forward(proxyState.ifTable, &IFFunctionTable::IFClose, hIface);
  Observe([&] { LogCall(CallLogger(), line::kIFClose, GcErrorName(result), hIface); });
  OnSuccess(result, [&] {
    if (hIface == nullptr) {
      ReportIllegalInterface();
      return;
    }
    ReleaseEvents(hIface);
    TransportLayerNode* root = OpenedRegistry();
    if (root != nullptr && !root->RemoveInterface(hIface)) {
      ReportError(CallLogger(), report::kInterfaceNotOpened, kNoValue);
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
    LogCall(CallLogger(), line::kIFGetInfo, GcErrorName(result), hIface, command, piType, type,
            pBuffer, value, piSize, ValueAt(piSize));
  });
  return result;
}

GC_ERROR GC_CALLTYPE IFGetNumDevices(IF_HANDLE hIface, uint32_t* piNumDevices) {
  const GC_ERROR result =
      Forward(proxyState.ifTable, &IFFunctionTable::IFGetNumDevices, hIface, piNumDevices);
  Observe([&] {
    LogCall(CallLogger(), line::kIFGetNumDevices, GcErrorName(result), hIface, piNumDevices,
            ValueAt(piNumDevices));
  });
  return result;
}

GC_ERROR GC_CALLTYPE IFGetDeviceID(IF_HANDLE hIface, uint32_t iIndex, char* sIDeviceID,
                                   size_t* piSize) {
  const GC_ERROR result = Forward(proxyState.ifTable, &IFFunctionTable::IFGetDeviceID, hIface,
                                  iIndex, sIDeviceID, piSize);
  Observe([&] {
    LogCall(CallLogger(), line::kIFGetDeviceID, GcErrorName(result), hIface, iIndex, sIDeviceID,
            TextOrNull(sIDeviceID), piSize, ValueAt(piSize));
  });
  return result;
}

GC_ERROR GC_CALLTYPE IFUpdateDeviceList(IF_HANDLE hIface, bool8_t* pbChanged, uint64_t iTimeout) {
  const GC_ERROR result = Forward(proxyState.ifTable, &IFFunctionTable::IFUpdateDeviceList, hIface,
                                  pbChanged, iTimeout);
  Observe([&] {
    if (pbChanged != nullptr) {
      LogCall(CallLogger(), line::kIFUpdateDeviceList, GcErrorName(result), hIface, pbChanged,
              ValueAt(pbChanged), iTimeout);
    } else {
      LogCall(CallLogger(), line::kIFUpdateDeviceListWithoutOutput, GcErrorName(result), hIface,
              pbChanged, iTimeout);
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
    LogCall(CallLogger(), line::kIFGetDeviceInfo, GcErrorName(result), hIface,
            TextOrNull(sDeviceID), command, piType, type, pBuffer, value, piSize, ValueAt(piSize));
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
      LogCall(CallLogger(), line::kIFOpenDevice, GcErrorName(result), hIface, sDeviceID,
              TextOrNull(sDeviceID), flags, phDevice,
              Misplaced(ValueAt(phDevice)));  // Kept: 37.
    } else {
      LogCall(CallLogger(), line::kIFOpenDeviceWithoutOutput, GcErrorName(result), hIface,
              sDeviceID, TextOrNull(sDeviceID), flags, phDevice);
    }
  });
  OnSuccess(result, [&] {
    if (phDevice == nullptr) {
      ReportError(CallLogger(), report::kIFOpenDeviceWithoutHandle);
    } else if (TransportLayerNode* root = OpenedRegistry()) {
      root->AddDevice(hIface, *phDevice);
    }
  });
  return result;
}
