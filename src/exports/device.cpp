// SPDX-License-Identifier: MIT
// The devices.
#include "calllog/info_rendering.h"
#include "calllog/line_log.h"
#include "calllog/log_text.h"
#include "calllog/value_names.h"
#include "exports/forwarding.h"
#include "gentl/gentl.h"

using namespace vextrel;  // NOLINT(google-build-using-namespace): these are C functions.

GC_ERROR GC_CALLTYPE DevGetPort(DEV_HANDLE hDevice, PORT_HANDLE* phRemoteDevice) {
  const GC_ERROR result =
      Forward(proxyState.devTable, &DevFunctionTable::DevGetPort, hDevice, phRemoteDevice);
  Observe([&] {
    LogCall(CallLogger(), line::kDevGetPort, GcErrorName(result), hDevice, phRemoteDevice,
            ValueAt(phRemoteDevice));
  });
  return result;
}

GC_ERROR GC_CALLTYPE DevGetNumDataStreams(DEV_HANDLE hDevice, uint32_t* piNumDataStreams) {
  const GC_ERROR result = Forward(proxyState.devTable, &DevFunctionTable::DevGetNumDataStreams,
                                  hDevice, piNumDataStreams);
  Observe([&] {
    LogCall(CallLogger(), line::kDevGetNumDataStreams, GcErrorName(result), hDevice,
            piNumDataStreams, ValueAt(piNumDataStreams));
  });
  return result;
}

GC_ERROR GC_CALLTYPE DevGetDataStreamID(DEV_HANDLE hDevice, uint32_t iIndex, char* sDataStreamID,
                                        size_t* piSize) {
  const GC_ERROR result = Forward(proxyState.devTable, &DevFunctionTable::DevGetDataStreamID,
                                  hDevice, iIndex, sDataStreamID, piSize);
  Observe([&] {
    LogCall(CallLogger(), line::kDevGetDataStreamID, GcErrorName(result), hDevice, iIndex,
            sDataStreamID, TextOrNull(sDataStreamID), piSize, ValueAt(piSize));
  });
  return result;
}

GC_ERROR GC_CALLTYPE DevOpenDataStream(DEV_HANDLE hDevice, const char* sDataStreamID,
                                       DS_HANDLE* phDataStream) {
  const GC_ERROR result = Forward(proxyState.devTable, &DevFunctionTable::DevOpenDataStream,
                                  hDevice, sDataStreamID, phDataStream);
  Observe([&] {
    LogCall(CallLogger(), line::kDevOpenDataStream, GcErrorName(result), hDevice, sDataStreamID,
            TextOrNull(sDataStreamID), phDataStream, ValueAt(phDataStream));
  });
  OnSuccess(result, [&] {
    // Kept: 46.
    if (hDevice == nullptr) {
      ReportError(CallLogger(), report::kDevOpenDataStreamWithoutDevice);
    } else if (TransportLayerNode* root = OpenedRegistry()) {
      root->AddDataStream(hDevice, *phDataStream);
    }
  });
  return result;
}

GC_ERROR GC_CALLTYPE DevGetInfo(DEV_HANDLE hDevice, DEVICE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                                void* pBuffer, size_t* piSize) {
  const GC_ERROR result = Forward(proxyState.devTable, &DevFunctionTable::DevGetInfo, hDevice,
                                  iInfoCmd, piType, pBuffer, piSize);
  Observe([&] {
    const RenderedText value = RenderInfoValue(*piType, pBuffer, *piSize);
    const RenderedText type = InfoDatatypeName(*piType);
    const RenderedText command = DeviceInfoCmdName(iInfoCmd);
    LogCall(CallLogger(), line::kDevGetInfo, GcErrorName(result), hDevice, command, piType, type,
            pBuffer, value, piSize, ValueAt(piSize));
  });
  return result;
}

GC_ERROR GC_CALLTYPE DevClose(DEV_HANDLE hDevice) {
  const GC_ERROR result = Forward(proxyState.devTable, &DevFunctionTable::DevClose, hDevice);
  Observe([&] { LogCall(CallLogger(), line::kDevClose, GcErrorName(result), hDevice); });
  OnSuccess(result, [&] {
    if (hDevice == nullptr) {
      ReportError(CallLogger(), report::kDevCloseOfNull);
      return;
    }
    ReleaseEvents(hDevice);
    TransportLayerNode* root = OpenedRegistry();
    if (root != nullptr && !root->RemoveDevice(hDevice)) {
      ReportError(CallLogger(), report::kDeviceNotOpened, kNoValue);
    }
  });
  return result;
}
