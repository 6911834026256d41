#include <cstdint>

#include "session/calls.h"
#include "session/registry_check.h"

namespace vextrel_test::session {

void CallTLOpen(Session& session) {
  TL_HANDLE* phTL = session.HandleOutput(HandleKind::TransportLayer);
  const GC_ERROR result = session.Call(&GenTLFunctions::TLOpen, phTL);
  session.log.Info("%s=TLOpen(0x%p->(pHandle=0x%p))",
                   {Result(result), Value::At(phTL), Value::At(*phTL)});
  if (result == GC_ERR_SUCCESS) {
    session.registry.Open(*phTL);
  }
}

void CallTLClose(Session& session) {
  void* hTL = session.Handle(HandleKind::TransportLayer);
  const GC_ERROR result = session.Call(&GenTLFunctions::TLClose, hTL);
  session.log.Info("%s=TLClose(hTL=0x%p)", {Result(result), Value::At(hTL)});
  if (result == GC_ERR_SUCCESS) {
    session.registry.ReleaseEvents(hTL);
    if (session.registry.IsOpen()) {
      session.registry.Close();
    }
  }
}

void CallTLGetInfo(Session& session) {
  void* hTL = session.Handle(HandleKind::TransportLayer);
  const TL_INFO_CMD iInfoCmd = session.random.Command(7);
  const InfoOutputs info = session.Info();
  const GC_ERROR result = session.Call(&GenTLFunctions::TLGetInfo, hTL, iInfoCmd, info.piType,
                                       info.pBuffer, info.piSize);
  session.log.Info(
      "%s=TLGetInfo(hTL=%p, iInfoCmd=%s, 0x%p->(iType=%s), 0x%p->(Buffer=%s), 0x%p->(iSize=%u))",
      {Result(result), Value::At(hTL), Value::Text(NameOfTlInfoCmd(iInfoCmd)),
       Value::At(info.piType), info.Type(), Value::At(info.pBuffer), info.Rendered(),
       Value::At(info.piSize), Value::Number(*info.piSize)});
}

void CallTLGetNumInterfaces(Session& session) {
  void* hTL = session.Handle(HandleKind::TransportLayer);
  std::uint32_t* piNumIfaces = session.CountOutput();
  const GC_ERROR result = session.Call(&GenTLFunctions::TLGetNumInterfaces, hTL, piNumIfaces);
  session.log.Info(
      "%s=TLGetNumInterfaces(hTL=0x%p, 0x%p->(iNumInterfaces=0x%u))",
      {Result(result), Value::At(hTL), Value::At(piNumIfaces), Value::Number(*piNumIfaces)});
}

void CallTLGetInterfaceID(Session& session) {
  void* hTL = session.Handle(HandleKind::TransportLayer);
  const auto iIndex = static_cast<std::uint32_t>(session.random.Number());
  char* sID = session.OutText();
  std::size_t* piSize = session.SizeOutput();
  const GC_ERROR result = session.Call(&GenTLFunctions::TLGetInterfaceID, hTL, iIndex, sID, piSize);
  session.log.Info("%s=TLGetInterfaceID(hTL=0x%p, iIndex=%u, 0x%p->(Buffer=%s), 0x%p->(iSize=%u))",
                   {Result(result), Value::At(hTL), Value::Number(iIndex), Value::At(sID),
                    Value::TextOrNull(sID), Value::At(piSize), Value::Number(*piSize)});
}

void CallTLGetInterfaceInfo(Session& session) {
  void* hTL = session.Handle(HandleKind::TransportLayer);
  const char* sIfaceID = session.InText();
  const INTERFACE_INFO_CMD iInfoCmd = session.random.Command(2);
  const InfoOutputs info = session.Info(1);
  const GC_ERROR result = session.Call(&GenTLFunctions::TLGetInterfaceInfo, hTL, sIfaceID, iInfoCmd,
                                       info.piType, info.pBuffer, info.piSize);
  session.log.Info(
      "%s=TLGetInterfaceInfo(hTL=0x%p, 0x%p->(sInterfaceName=%s), iCmd=%s, 0x%p->(iType=%s), "
      "0x%p->(Buffer=%s), 0x%p->(iSize=%u))",
      {Result(result), Value::At(hTL), Value::At(sIfaceID), Value::TextOrNull(sIfaceID),
       Value::Text(NameOfInterfaceInfoCmd(iInfoCmd)), Value::At(info.piType), info.Type(),
       info.Rendered(), Value::At(info.piSize), Value::Number(*info.piSize)});
}

void CallTLOpenInterface(Session& session) {
  void* hTL = session.Handle(HandleKind::TransportLayer);
  const char* sIfaceID = session.InText();
  // Read unguarded for the line: never null.
  IF_HANDLE* phIface = session.HandleOutput(HandleKind::Interface);
  const GC_ERROR result = session.Call(&GenTLFunctions::TLOpenInterface, hTL, sIfaceID, phIface);
  session.log.Info("%s=TLOpenInterface(hTL=0x%p, 0x%p->(sInterfaceName=%s), 0x%p->(hInterface=%p))",
                   {Result(result), Value::At(hTL), Value::At(sIfaceID),
                    Value::TextOrNull(sIfaceID), Value::At(phIface), Value::At(*phIface)});
  if (result == GC_ERR_SUCCESS && HasRegistry(session)) {
    session.registry.AddInterface(*phIface);
  }
}

void CallTLUpdateInterfaceList(Session& session) {
  void* hTL = session.Handle(HandleKind::TransportLayer);
  bool8_t* pbChanged = RandomChangeFlag(session);
  const std::uint64_t iTimeout = session.random.Number();
  const GC_ERROR result =
      session.Call(&GenTLFunctions::TLUpdateInterfaceList, hTL, pbChanged, iTimeout);
  if (pbChanged != nullptr) {
    session.log.Info("%s=TLUpdateInterfaceList(hTL=0x%p, 0x%p->(bHasChanged=%d), iTimeout=%lu)",
                     {Result(result), Value::At(hTL), Value::At(pbChanged),
                      Value::Number(*pbChanged), Value::Number(iTimeout)});
  } else {
    session.log.Info(
        "%s=TLUpdateInterfaceList(hTL=0x%p, 0x%p, iTimeout=%lu)",
        {Result(result), Value::At(hTL), Value::At(pbChanged), Value::Number(iTimeout)});
  }
}

}  // namespace vextrel_test::session
