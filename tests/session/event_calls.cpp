#include <cstdint>
#include <string>

#include "session/calls.h"
#include "session/port_data.h"
#include "session/registry_check.h"

namespace vextrel_test::session {
namespace {

// Of every level, so that each of them gets events.
void* RandomEventSource(Session& session) {
  return session.Handle(
      session.random.Pick({HandleKind::TransportLayer, HandleKind::Interface, HandleKind::Device,
                           HandleKind::DataStream, HandleKind::Buffer, HandleKind::Buffer}));
}

// Few enough to meet again.
EVENT_TYPE RandomEventType(Session& session) {
  return session.random.OneIn(8) ? session.random.Command(4)
                                 : static_cast<EVENT_TYPE>(session.random.Below(3));
}

}  // namespace

void CallGCRegisterEvent(Session& session) {
  void* hEventSrc = RandomEventSource(session);
  const EVENT_TYPE iEventID = RandomEventType(session);
  // Read unguarded for the line: never null.
  EVENT_HANDLE* phEvent = session.HandleOutput(HandleKind::Event);
  const GC_ERROR result =
      session.Call(&GenTLFunctions::GCRegisterEvent, hEventSrc, iEventID, phEvent);
  session.log.Info("%s=GCRegisterEvent(hEventSrc=0x%p, iEvent=%s, 0x%p->(hE=0x%p))",
                   {Result(result), Value::At(hEventSrc), Value::Text(NameOfEventType(iEventID)),
                    Value::At(phEvent), Value::At(*phEvent)});
  if (result == GC_ERR_SUCCESS && HasRegistry(session)) {
    session.registry.AddEvent(hEventSrc, iEventID, *phEvent);
  }
}

void CallGCUnregisterEvent(Session& session) {
  void* hEventSrc = RandomEventSource(session);
  const EVENT_TYPE iEventID = RandomEventType(session);
  const GC_ERROR result = session.Call(&GenTLFunctions::GCUnregisterEvent, hEventSrc, iEventID);
  session.log.Info("%s=GCUnregisterEvent(hEventSrc=0x%p, iEvent=%s)",
                   {Result(result), Value::At(hEventSrc), Value::Text(NameOfEventType(iEventID))});
  if (result != GC_ERR_SUCCESS) {
    return;
  }
  if (hEventSrc == nullptr) {
    session.log.Error(kIllegalInterface);
  } else if (HasRegistry(session) && !session.registry.RemoveEvent(hEventSrc, iEventID)) {
    session.log.Error(kEventNotRegistered, {Value::Signed(iEventID)});
  }
}

void CallEventGetData(Session& session) {
  void* hEvent = session.Handle(HandleKind::Event);
  const PortData data = RandomEventData(session);
  const std::uint64_t iTimeout = session.random.Number();
  const GC_ERROR result =
      session.Call(&GenTLFunctions::EventGetData, hEvent, data.pBuffer, data.piSize, iTimeout);
  session.log.Info(
      "%s=EventGetData(hEvent=0x%p, 0x%p->(Buffer=%s), 0x%p->(iSize=%u), iTimeout=%lu)",
      {Result(result), Value::At(hEvent), Value::At(data.pBuffer), data.Dump(),
       Value::At(data.piSize), Value::Number(*data.piSize), Value::Number(iTimeout)});
  if (result == GC_ERR_SUCCESS) {
    static_cast<void>(HasRegistry(session));
  }
}

void CallEventGetDataInfo(Session& session) {
  void* hEvent = session.Handle(HandleKind::Event);
  const void* pInBuffer = session.AnyHandle();
  const std::size_t iInSize = session.random.Number();
  const EVENT_DATA_INFO_CMD iInfoCmd = session.random.Command(2);
  const InfoOutputs info = session.Info(1);
  const GC_ERROR result = session.Call(&GenTLFunctions::EventGetDataInfo, hEvent, pInBuffer,
                                       iInSize, iInfoCmd, info.piType, info.pBuffer, info.piSize);
  session.log.Info(
      "%s=EventGetDataInfo(hEvent=0x%p, pInBuffer=0x%p, iEventBufferSize=%u, iID=%s, "
      "0x%p->(iType=%s) 0x%p->(Buffer=%s), 0x%p->(iSize=%u))",
      {Result(result), Value::At(hEvent), Value::At(pInBuffer),
       Value::Text(NameOfEventDataInfoCmd(iInfoCmd)), Value::At(info.piType), info.Type(),
       Value::At(info.pBuffer), info.Rendered(), Value::At(info.piSize),
       Value::Number(*info.piSize)});
}

void CallEventGetInfo(Session& session) {
  void* hEvent = session.Handle(HandleKind::Event);
  const EVENT_INFO_CMD iInfoCmd = session.random.Command(4);
  const InfoOutputs info = session.Info();
  const GC_ERROR result = session.Call(&GenTLFunctions::EventGetInfo, hEvent, iInfoCmd, info.piType,
                                       info.pBuffer, info.piSize);
  session.log.Info(
      "%s=EventGetInfo(hEvent=0x%p, iID=%s, 0x%p->(iType=%s) 0x%p->(Buffer=%s), "
      "0x%p->(iSize=%u))",
      {Result(result), Value::At(hEvent), Value::Text(NameOfEventInfoCmd(iInfoCmd)),
       Value::At(info.piType), info.Type(), Value::At(info.pBuffer), info.Rendered(),
       Value::At(info.piSize), Value::Number(*info.piSize)});
}

void CallEventFlush(Session& session) {
  void* hEvent = session.Handle(HandleKind::Event);
  const GC_ERROR result = session.Call(&GenTLFunctions::EventFlush, hEvent);
  session.log.Info("%s=EventFlush(hEvent=0x%p)", {Result(result), Value::At(hEvent)});
}

void CallEventKill(Session& session) {
  void* hEvent = session.Handle(HandleKind::Event);
  const GC_ERROR result = session.Call(&GenTLFunctions::EventKill, hEvent);
  session.log.Info("%s=EventKill(hEvent=0x%p)", {Result(result), Value::At(hEvent)});
}

}  // namespace vextrel_test::session
