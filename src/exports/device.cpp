// The devices.
#include "calllog/info_rendering.h"
#include "calllog/line_log.h"
#include "calllog/value_names.h"
#include "exports/forwarding.h"
#include "gentl/gentl.h"

using namespace vextrel;  // NOLINT(google-build-using-namespace): these are C functions.

GC_ERROR GC_CALLTYPE DevGetPort(DEV_HANDLE hDevice, PORT_HANDLE* phRemoteDevice) {
  const GC_ERROR result =
      Forward(proxyState.devTable, &DevFunctionTable::DevGetPort, hDevice, phRemoteDevice);
  Observe([&] {
    LogInfo(CallLogger(), "%s=DevGetPort(hDev=0x%p, 0x%p->(pPort=0x%p))"_line, GcErrorName(result),
            hDevice, phRemoteDevice, *phRemoteDevice);
  });
  return result;
}

GC_ERROR GC_CALLTYPE DevGetNumDataStreams(DEV_HANDLE hDevice, uint32_t* piNumDataStreams) {
  const GC_ERROR result = Forward(proxyState.devTable, &DevFunctionTable::DevGetNumDataStreams,
                                  hDevice, piNumDataStreams);
  Observe([&] {
    LogInfo(CallLogger(), "%s=DevGetNumDataStreams(hDev=0x%p, 0x%p->(piNumChannel=%u))"_line,
            GcErrorName(result), hDevice, piNumDataStreams, *piNumDataStreams);
  });
  return result;
}

GC_ERROR GC_CALLTYPE DevGetDataStreamID(DEV_HANDLE hDevice, uint32_t iIndex, char* sDataStreamID,
                                        size_t* piSize) {
  const GC_ERROR result = Forward(proxyState.devTable, &DevFunctionTable::DevGetDataStreamID,
                                  hDevice, iIndex, sDataStreamID, piSize);
  Observe([&] {
    LogInfo(
        CallLogger(),
        "%s=DevGetDataStreamID(hDev=0x%p, iIndex=%u, 0x%p->(pBuffer=%s), 0x%p->(iSize=0x%u))"_line,
        GcErrorName(result), hDevice, iIndex, sDataStreamID, TextOrNull(sDataStreamID), piSize,
        *piSize);
  });
  return result;
}

GC_ERROR GC_CALLTYPE DevOpenDataStream(DEV_HANDLE hDevice, const char* sDataStreamID,
                                       DS_HANDLE* phDataStream) {
  const GC_ERROR result = Forward(proxyState.devTable, &DevFunctionTable::DevOpenDataStream,
                                  hDevice, sDataStreamID, phDataStream);
  Observe([&] {
    LogInfo(CallLogger(), "%s=DevOpenDataStream(hDev=0x%p, 0x%p->(pID=%s), 0x%p->(hDS=0x%p))"_line,
            GcErrorName(result), hDevice, sDataStreamID, TextOrNull(sDataStreamID), phDataStream,
            *phDataStream);
  });
  OnSuccess(result, [&] {
    // The device that was passed in is tested, not the stream that came back, on purpose.
    if (hDevice == nullptr) {
      LogError(CallLogger(), "DevOpenDataStream returned a NULL handle to the datastream!");
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
    LogInfo(CallLogger(),
            "%s=DevGetInfo(hDev=0x%p, iID=%s, 0x%p->(iType=%s) 0x%p->(Buffer=%s), "
            "0x%p->(iSize=%u))"_line,
            GcErrorName(result), hDevice, command, piType, type, pBuffer, value, piSize, *piSize);
  });
  return result;
}

GC_ERROR GC_CALLTYPE DevClose(DEV_HANDLE hDevice) {
  const GC_ERROR result = Forward(proxyState.devTable, &DevFunctionTable::DevClose, hDevice);
  Observe(
      [&] { LogInfo(CallLogger(), "%s=DevClose(hDev=0x%p)"_line, GcErrorName(result), hDevice); });
  OnSuccess(result, [&] {
    if (hDevice == nullptr) {
      LogError(CallLogger(), "Illegal Device handle!");
      return;
    }
    TransportLayerNode::ReleaseEventsOn(proxyState.registryRoot, hDevice);
    TransportLayerNode* root = OpenedRegistry();
    if (root != nullptr && !root->RemoveDevice(hDevice)) {
      LogError(CallLogger(),
               "The device with handle 0x%p was not previously opened correctly using DevOpen()!",
               noValue);
    }
  });
  return result;
}
