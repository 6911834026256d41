#include <cstdint>

#include "session/calls.h"
#include "session/registry_check.h"

namespace vextrel_test::session {

void CallDevGetPort(Session& session) {
  void* hDevice = session.Handle(HandleKind::Device);
  PORT_HANDLE* phRemoteDevice = session.HandleOutput(HandleKind::Port);
  const GC_ERROR result = session.Call(&GenTLFunctions::DevGetPort, hDevice, phRemoteDevice);
  session.log.Info(
      "%s=DevGetPort(hDev=0x%p, 0x%p->(pPort=0x%p))",
      {Result(result), Value::At(hDevice), Value::At(phRemoteDevice), Value::At(*phRemoteDevice)});
}

void CallDevGetNumDataStreams(Session& session) {
  void* hDevice = session.Handle(HandleKind::Device);
  std::uint32_t* piNumDataStreams = session.CountOutput();
  const GC_ERROR result =
      session.Call(&GenTLFunctions::DevGetNumDataStreams, hDevice, piNumDataStreams);
  session.log.Info("%s=DevGetNumDataStreams(hDev=0x%p, 0x%p->(piNumChannel=%u))",
                   {Result(result), Value::At(hDevice), Value::At(piNumDataStreams),
                    Value::Number(*piNumDataStreams)});
}

void CallDevGetDataStreamID(Session& session) {
  void* hDevice = session.Handle(HandleKind::Device);
  const auto iIndex = static_cast<std::uint32_t>(session.random.Number());
  char* sDataStreamID = session.OutText();
  std::size_t* piSize = session.SizeOutput();
  const GC_ERROR result =
      session.Call(&GenTLFunctions::DevGetDataStreamID, hDevice, iIndex, sDataStreamID, piSize);
  session.log.Info(
      "%s=DevGetDataStreamID(hDev=0x%p, iIndex=%u, 0x%p->(pBuffer=%s), 0x%p->(iSize=0x%u))",
      {Result(result), Value::At(hDevice), Value::Number(iIndex), Value::At(sDataStreamID),
       Value::TextOrNull(sDataStreamID), Value::At(piSize), Value::Number(*piSize)});
}

void CallDevOpenDataStream(Session& session) {
  void* hDevice = session.Handle(HandleKind::Device);
  const char* sDataStreamID = session.InText();
  DS_HANDLE* phDataStream = session.HandleOutput(HandleKind::DataStream);
  const GC_ERROR result =
      session.Call(&GenTLFunctions::DevOpenDataStream, hDevice, sDataStreamID, phDataStream);
  session.log.Info(
      "%s=DevOpenDataStream(hDev=0x%p, 0x%p->(pID=%s), 0x%p->(hDS=0x%p))",
      {Result(result), Value::At(hDevice), Value::At(sDataStreamID),
       Value::TextOrNull(sDataStreamID), Value::At(phDataStream), Value::At(*phDataStream)});
  if (result != GC_ERR_SUCCESS) {
    return;
  }
  if (hDevice == nullptr) {
    session.log.Error(kNoDeviceForDataStream);
  } else if (HasRegistry(session)) {
    session.registry.AddDataStream(hDevice, *phDataStream);
  }
}

void CallDevGetInfo(Session& session) {
  void* hDevice = session.Handle(HandleKind::Device);
  const DEVICE_INFO_CMD iInfoCmd = session.random.Command(5);
  const InfoOutputs info = session.Info();
  const GC_ERROR result = session.Call(&GenTLFunctions::DevGetInfo, hDevice, iInfoCmd, info.piType,
                                       info.pBuffer, info.piSize);
  session.log.Info(
      "%s=DevGetInfo(hDev=0x%p, iID=%s, 0x%p->(iType=%s) 0x%p->(Buffer=%s), 0x%p->(iSize=%u))",
      {Result(result), Value::At(hDevice), Value::Text(NameOfDeviceInfoCmd(iInfoCmd)),
       Value::At(info.piType), info.Type(), Value::At(info.pBuffer), info.Rendered(),
       Value::At(info.piSize), Value::Number(*info.piSize)});
}

void CallDevClose(Session& session) {
  void* hDevice = session.Handle(HandleKind::Device);
  const GC_ERROR result = session.Call(&GenTLFunctions::DevClose, hDevice);
  session.log.Info("%s=DevClose(hDev=0x%p)", {Result(result), Value::At(hDevice)});
  if (result != GC_ERR_SUCCESS) {
    return;
  }
  if (hDevice == nullptr) {
    session.log.Error(kIllegalDevice);
    return;
  }
  session.registry.ReleaseEvents(hDevice);
  if (HasRegistry(session) && !session.registry.RemoveDevice(hDevice)) {
    session.log.Error(kDeviceNotOpened);
  }
}

}  // namespace vextrel_test::session
