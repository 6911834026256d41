#include <cstdint>

#include "session/calls.h"
#include "session/reference_rendering.h"
#include "session/registry_check.h"

namespace vextrel_test::session {

void CallDSAnnounceBuffer(Session& session) {
  void* hDataStream = session.Handle(HandleKind::DataStream);
  void* pBuffer = session.AnyHandle();
  const std::size_t iSize = session.random.Number();
  void* pPrivate = session.AnyHandle();
  // Read unguarded for the line: never null.
  BUFFER_HANDLE* phBuffer = session.HandleOutput(HandleKind::Buffer);
  const GC_ERROR result = session.Call(&GenTLFunctions::DSAnnounceBuffer, hDataStream, pBuffer,
                                       iSize, pPrivate, phBuffer);
  session.log.Info(
      "%s=DSAnnounceBuffer(hDS=0x%p, pBuffer=0x%p, iSize=%u, pPrivate=0x%p, "
      "0x%p->(hBuffer=0x%p))",
      {Result(result), Value::At(hDataStream), Value::At(pBuffer), Value::Number(iSize),
       Value::At(pPrivate), Value::At(phBuffer), Value::At(*phBuffer)});
  if (result == GC_ERR_SUCCESS && HasRegistry(session)) {
    session.registry.AddBuffer(hDataStream, *phBuffer);
  }
}

void CallDSAllocAndAnnounceBuffer(Session& session) {
  void* hDataStream = session.Handle(HandleKind::DataStream);
  const std::size_t iSize = session.random.Number();
  void* pPrivate = session.AnyHandle();
  BUFFER_HANDLE* phBuffer = session.HandleOutput(HandleKind::Buffer);
  const GC_ERROR result = session.Call(&GenTLFunctions::DSAllocAndAnnounceBuffer, hDataStream,
                                       iSize, pPrivate, phBuffer);
  session.log.Info(
      "%s=DSAllocAndAnnounceBuffer(hDS=0x%p, iSize=%u, pPrivate=0x%p, 0x%p->(hBuffer=0x%p))",
      {Result(result), Value::At(hDataStream), Value::Number(iSize), Value::At(pPrivate),
       Value::At(phBuffer), Value::At(*phBuffer)});
  if (result == GC_ERR_SUCCESS && HasRegistry(session)) {
    session.registry.AddBuffer(hDataStream, *phBuffer);
  }
}

void CallDSFlushQueue(Session& session) {
  void* hDataStream = session.Handle(HandleKind::DataStream);
  const ACQ_QUEUE_TYPE iOperation = session.random.Command(4);
  const GC_ERROR result = session.Call(&GenTLFunctions::DSFlushQueue, hDataStream, iOperation);
  session.log.Info(
      "%s=DSFlushQueue(hDS=0x%p, QueueType=%s)",
      {Result(result), Value::At(hDataStream), Value::Text(NameOfAcqQueueType(iOperation))});
  if (result == GC_ERR_SUCCESS) {
    static_cast<void>(HasRegistry(session));
  }
}

void CallDSStartAcquisition(Session& session) {
  void* hDataStream = session.Handle(HandleKind::DataStream);
  const ACQ_START_FLAGS iStartFlags = session.random.Command(0);
  const std::uint64_t iNumToAcquire = session.random.Number();
  const GC_ERROR result =
      session.Call(&GenTLFunctions::DSStartAcquisition, hDataStream, iStartFlags, iNumToAcquire);
  session.log.Info("%s=DSStartAcquisition(hDS=0x%p, Flags=%s, iNumFramesToAcquire=%lu)",
                   {Result(result), Value::At(hDataStream),
                    Value::Text(NameOfAcqStartFlags(iStartFlags)), Value::Number(iNumToAcquire)});
}

void CallDSStopAcquisition(Session& session) {
  void* hDataStream = session.Handle(HandleKind::DataStream);
  const ACQ_STOP_FLAGS iStopFlags = session.random.Command(1);
  const GC_ERROR result = session.Call(&GenTLFunctions::DSStopAcquisition, hDataStream, iStopFlags);
  session.log.Info(
      "%s=DSStopAcquisition(hDS=0x%p, Flags=%s)",
      {Result(result), Value::At(hDataStream), Value::Text(NameOfAcqStopFlags(iStopFlags))});
}

void CallDSGetInfo(Session& session) {
  void* hDataStream = session.Handle(HandleKind::DataStream);
  const STREAM_INFO_CMD iInfoCmd = session.random.Command(12);
  const InfoOutputs info = session.Info();
  const GC_ERROR result = session.Call(&GenTLFunctions::DSGetInfo, hDataStream, iInfoCmd,
                                       info.piType, info.pBuffer, info.piSize);
  session.log.Info(
      "%s=DSGetInfo(hDS=0x%p, iCmd=%s, 0x%p->(iType=%s) 0x%p->(Buffer=%s), 0x%p->(iSize=%u))",
      {Result(result), Value::At(hDataStream), Value::Text(NameOfStreamInfoCmd(iInfoCmd)),
       Value::At(info.piType), info.Type(), Value::At(info.pBuffer), info.Rendered(),
       Value::At(info.piSize), Value::Number(*info.piSize)});
}

void CallDSGetBufferID(Session& session) {
  void* hDataStream = session.Handle(HandleKind::DataStream);
  const auto iIndex = static_cast<std::uint32_t>(session.random.Number());
  BUFFER_HANDLE* phBuffer = session.HandleOutput(HandleKind::Buffer);
  const GC_ERROR result =
      session.Call(&GenTLFunctions::DSGetBufferID, hDataStream, iIndex, phBuffer);
  session.log.Info("%s=DSGetBufferID(hDS=0x%p, iIndex=%u, 0x%p->(hBuffer=0x%p))",
                   {Result(result), Value::At(hDataStream), Value::Number(iIndex),
                    Value::At(phBuffer), Value::At(*phBuffer)});
}

void CallDSClose(Session& session) {
  void* hDataStream = session.Handle(HandleKind::DataStream);
  const GC_ERROR result = session.Call(&GenTLFunctions::DSClose, hDataStream);
  session.log.Info("%s=DSClose(hDS=0x%p)", {Result(result), Value::At(hDataStream)});
  if (result != GC_ERR_SUCCESS) {
    return;
  }
  if (hDataStream == nullptr) {
    session.log.Error(kIllegalDataStream);
    return;
  }
  session.registry.ReleaseEvents(hDataStream);
  if (HasRegistry(session) && !session.registry.RemoveDataStream(hDataStream)) {
    session.log.Error(kDataStreamNotOpened);
  }
}

void CallDSRevokeBuffer(Session& session) {
  void* hDataStream = session.Handle(HandleKind::DataStream);
  void* hBuffer = session.Handle(HandleKind::Buffer);
  void** ppBuffer = session.random.OneIn(3) ? nullptr : session.HandleOutput(HandleKind::Port);
  void** ppPrivate = session.random.OneIn(3) ? nullptr : session.HandleOutput(HandleKind::Port);
  const GC_ERROR result =
      session.Call(&GenTLFunctions::DSRevokeBuffer, hDataStream, hBuffer, ppBuffer, ppPrivate);
  session.log.Info("%s=DSRevokeBuffer(hDS=0x%p, hBuffer=0x%p, pBuffer=%s, pPrivate=%s)",
                   {Result(result), Value::At(hDataStream), Value::At(hBuffer),
                    Value::Text(RenderSlot(ppBuffer)), Value::Text(RenderSlot(ppPrivate))});
  if (result != GC_ERR_SUCCESS) {
    return;
  }
  if (hBuffer == nullptr) {
    session.log.Error(kIllegalBuffer);
  } else if (HasRegistry(session) && !session.registry.RemoveBuffer(hDataStream, hBuffer)) {
    session.log.Error(kBufferNotAnnounced);
  }
}

void CallDSQueueBuffer(Session& session) {
  void* hDataStream = session.Handle(HandleKind::DataStream);
  void* hBuffer = session.Handle(HandleKind::Buffer);
  const GC_ERROR result = session.Call(&GenTLFunctions::DSQueueBuffer, hDataStream, hBuffer);
  session.log.Info("%s=DSQueueBuffer(hDS=0x%p, hB=0x%p)",
                   {Result(result), Value::At(hDataStream), Value::At(hBuffer)});
  if (result == GC_ERR_SUCCESS) {
    static_cast<void>(HasRegistry(session));
  }
}

void CallDSGetBufferInfo(Session& session) {
  void* hDataStream = session.Handle(HandleKind::DataStream);
  void* hBuffer = session.Handle(HandleKind::Buffer);
  const BUFFER_INFO_CMD iInfoCmd = session.random.Command(25);
  const InfoOutputs info = session.Info();
  INFO_DATATYPE* piType = session.random.OneIn(6) ? nullptr : info.piType;
  const GC_ERROR result = session.Call(&GenTLFunctions::DSGetBufferInfo, hDataStream, hBuffer,
                                       iInfoCmd, piType, info.pBuffer, info.piSize);
  const bool hasType = piType != nullptr;
  session.log.Info(
      "%s=DSGetBufferInfo(hDS=0x%p, hBuffer=0x%p, iCommand=%s, 0x%p->(iType=%s) 0x%p->(Buffer=%s), "
      "0x%p->(iSize=%u))",
      {Result(result), Value::At(hDataStream), Value::At(hBuffer),
       Value::Text(NameOfBufferInfoCmd(iInfoCmd)), Value::At(piType),
       hasType ? info.Type() : Value::Text("NULL"), Value::At(info.pBuffer),
       hasType ? info.Rendered() : Value::Text(RenderInfo(0, info.pBuffer)), Value::At(info.piSize),
       Value::Number(*info.piSize)});
}

}  // namespace vextrel_test::session
