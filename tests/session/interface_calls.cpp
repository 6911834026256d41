#include <cstdint>

#include "session/calls.h"
#include "session/registry_check.h"

namespace vextrel_test::session {

void CallIFClose(Session& session) {
  void* hIface = session.Handle(HandleKind::Interface);
  const GC_ERROR result = session.Call(&GenTLFunctions::IFClose, hIface);
  session.log.Info("%s=IFClose(hInterface=0x%p)", {Result(result), Value::At(hIface)});
  if (result != GC_ERR_SUCCESS) {
    return;
  }
  if (hIface == nullptr) {
    session.log.Error(kIllegalInterface);
    return;
  }
  session.registry.ReleaseEvents(hIface);
  if (HasRegistry(session) && !session.registry.RemoveInterface(hIface)) {
    session.log.Error(kInterfaceNotOpened);
  }
}

void CallIFGetInfo(Session& session) {
  void* hIface = session.Handle(HandleKind::Interface);
  const INTERFACE_INFO_CMD iInfoCmd = session.random.Command(2);
  const InfoOutputs info = session.Info();
  const GC_ERROR result = session.Call(&GenTLFunctions::IFGetInfo, hIface, iInfoCmd, info.piType,
                                       info.pBuffer, info.piSize);
  session.log.Info(
      "%s=IFGetInfo(hInterface=0x%p, iID=%s, 0x%p->(iType=%s), 0x%p->(Buffer=%s), "
      "0x%p->(iSize=%u))",
      {Result(result), Value::At(hIface), Value::Text(NameOfInterfaceInfoCmd(iInfoCmd)),
       Value::At(info.piType), info.Type(), Value::At(info.pBuffer), info.Rendered(),
       Value::At(info.piSize), Value::Number(*info.piSize)});
}

void CallIFGetNumDevices(Session& session) {
  void* hIface = session.Handle(HandleKind::Interface);
  std::uint32_t* piNumDevices = session.CountOutput();
  const GC_ERROR result = session.Call(&GenTLFunctions::IFGetNumDevices, hIface, piNumDevices);
  session.log.Info(
      "%s=IFGetNumDevices(hInterface=0x%p, 0x%p->(iNumDevices=0x%u))",
      {Result(result), Value::At(hIface), Value::At(piNumDevices), Value::Number(*piNumDevices)});
}

void CallIFGetDeviceID(Session& session) {
  void* hIface = session.Handle(HandleKind::Interface);
  const auto iIndex = static_cast<std::uint32_t>(session.random.Number());
  char* sIDeviceID = session.OutText();
  std::size_t* piSize = session.SizeOutput();
  const GC_ERROR result =
      session.Call(&GenTLFunctions::IFGetDeviceID, hIface, iIndex, sIDeviceID, piSize);
  session.log.Info(
      "%s=IFGetDeviceID(hInterface=0x%p, iIndex=%u, 0x%p->(Buffer=%s), 0x%p->(iSize=%u))",
      {Result(result), Value::At(hIface), Value::Number(iIndex), Value::At(sIDeviceID),
       Value::TextOrNull(sIDeviceID), Value::At(piSize), Value::Number(*piSize)});
}

void CallIFUpdateDeviceList(Session& session) {
  void* hIface = session.Handle(HandleKind::Interface);
  bool8_t* pbChanged = RandomChangeFlag(session);
  const std::uint64_t iTimeout = session.random.Number();
  const GC_ERROR result =
      session.Call(&GenTLFunctions::IFUpdateDeviceList, hIface, pbChanged, iTimeout);
  if (pbChanged != nullptr) {
    session.log.Info("%s=IFUpdateDeviceList(hInterface=0x%p, 0x%p->(bHasChanged=%d), iTimeout=%lu)",
                     {Result(result), Value::At(hIface), Value::At(pbChanged),
                      Value::Number(*pbChanged), Value::Number(iTimeout)});
  } else {
    session.log.Info(
        "%s=IFUpdateDeviceList(hInterface=0x%p, 0x%p, iTimeout=%lu)",
        {Result(result), Value::At(hIface), Value::At(pbChanged), Value::Number(iTimeout)});
  }
}

void CallIFGetDeviceInfo(Session& session) {
  void* hIface = session.Handle(HandleKind::Interface);
  const char* sDeviceID = session.InText();
  const DEVICE_INFO_CMD iInfoCmd = session.random.Command(5);
  const InfoOutputs info = session.Info();
  const GC_ERROR result = session.Call(&GenTLFunctions::IFGetDeviceInfo, hIface, sDeviceID,
                                       iInfoCmd, info.piType, info.pBuffer, info.piSize);
  session.log.Info(
      "%s=IFGetDeviceInfo(hInterface=0x%p, psDeviceName=%s, iID=%s, 0x%p->(iType=%s), "
      "0x%p->(Buffer=%s), 0x%p->(iSize=%u))",
      {Result(result), Value::At(hIface), Value::TextOrNull(sDeviceID),
       Value::Text(NameOfDeviceInfoCmd(iInfoCmd)), Value::At(info.piType), info.Type(),
       Value::At(info.pBuffer), info.Rendered(), Value::At(info.piSize),
       Value::Number(*info.piSize)});
}

void CallIFOpenDevice(Session& session) {
  void* hIface = session.Handle(HandleKind::Interface);
  const char* sDeviceID = session.InText();
  const DEVICE_ACCESS_FLAGS iOpenFlags = session.random.Command(4);
  DEV_HANDLE* phDevice =
      session.random.OneIn(12) ? nullptr : session.HandleOutput(HandleKind::Device);
  const GC_ERROR result =
      session.Call(&GenTLFunctions::IFOpenDevice, hIface, sDeviceID, iOpenFlags, phDevice);
  if (phDevice != nullptr) {
    session.log.Info(
        "%s=IFOpenDevice(hInterface=0x%p, 0x%p->(sDevName=%s), iOpenFlags=%s, 0x%p->(hDev=0x%x))",
        {Result(result), Value::At(hIface), Value::At(sDeviceID), Value::TextOrNull(sDeviceID),
         Value::Text(NameOfDeviceAccessFlags(iOpenFlags)), Value::At(phDevice),
         Value::At(*phDevice)});
  } else {
    session.log.Info(
        "%s=IFOpenDevice(hInterface=0x%p, 0x%p->(sDevName=%s), iOpenFlags=%s, 0x%p)",
        {Result(result), Value::At(hIface), Value::At(sDeviceID), Value::TextOrNull(sDeviceID),
         Value::Text(NameOfDeviceAccessFlags(iOpenFlags)), Value::At(phDevice)});
  }
  if (result != GC_ERR_SUCCESS) {
    return;
  }
  if (phDevice == nullptr) {
    session.log.Error(kNoDeviceSlot);
  } else if (HasRegistry(session)) {
    session.registry.AddDevice(hIface, *phDevice);
  }
}

}  // namespace vextrel_test::session
