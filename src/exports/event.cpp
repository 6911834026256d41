// The events.
#include "calllog/info_rendering.h"
#include "calllog/line_log.h"
#include "calllog/port_rendering.h"
#include "calllog/value_names.h"
#include "exports/forwarding.h"
#include "gentl/gentl.h"

using namespace vextrel;  // NOLINT(google-build-using-namespace): these are C functions.

GC_ERROR GC_CALLTYPE GCRegisterEvent(EVENTSRC_HANDLE hEventSrc, EVENT_TYPE iEventID,
                                     EVENT_HANDLE* phEvent) {
  const GC_ERROR result = Forward(proxyState.eventTable, &EventFunctionTable::GCRegisterEvent,
                                  hEventSrc, iEventID, phEvent);
  Observe([&] {
    const RenderedText event = EventTypeName(iEventID);
    LogInfo(CallLogger(), "%s=GCRegisterEvent(hEventSrc=0x%p, iEvent=%s, 0x%p->(hE=0x%p))"_line,
            GcErrorName(result), hEventSrc, event, phEvent, *phEvent);
  });
  OnSuccess(result, [&] {
    if (phEvent == nullptr) {
      // "interface" whatever the event source is, on purpose.
      LogError(CallLogger(), "GCRegisterEvent returned a NULL handle to the interface!");
    } else if (TransportLayerNode* root = OpenedRegistry()) {
      root->AddEvent(hEventSrc, iEventID, *phEvent);
    }
  });
  return result;
}

GC_ERROR GC_CALLTYPE GCUnregisterEvent(EVENTSRC_HANDLE hEventSrc, EVENT_TYPE iEventID) {
  const GC_ERROR result =
      Forward(proxyState.eventTable, &EventFunctionTable::GCUnregisterEvent, hEventSrc, iEventID);
  Observe([&] {
    const RenderedText event = EventTypeName(iEventID);
    LogInfo(CallLogger(), "%s=GCUnregisterEvent(hEventSrc=0x%p, iEvent=%s)"_line,
            GcErrorName(result), hEventSrc, event);
  });
  OnSuccess(result, [&] {
    if (hEventSrc == nullptr) {
      ReportIllegalInterface();
      return;
    }
    TransportLayerNode* root = OpenedRegistry();
    if (root != nullptr && !root->RemoveEvent(hEventSrc, iEventID)) {
      LogError(CallLogger(),
               "The event %d on handle 0x%p was not previously registered correctly using "
               "GCRegisterEvent()!",
               iEventID, noValue);
    }
  });
  return result;
}

GC_ERROR GC_CALLTYPE EventGetData(EVENT_HANDLE hEvent, void* pBuffer, size_t* piSize,
                                  uint64_t iTimeout) {
  const GC_ERROR result = Forward(proxyState.eventTable, &EventFunctionTable::EventGetData, hEvent,
                                  pBuffer, piSize, iTimeout);
  Observe([&] {
    const ByteDump dump{pBuffer, *piSize};
    LogInfo(CallLogger(),
            "%s=EventGetData(hEvent=0x%p, 0x%p->(Buffer=%s), 0x%p->(iSize=%u), iTimeout=%lu)"_line,
            GcErrorName(result), hEvent, pBuffer, dump, piSize, *piSize, iTimeout);
  });
  OnSuccess(result, [&] {
    if (TransportLayerNode* root = OpenedRegistry()) {
      root->OnEventData(hEvent, pBuffer, *piSize);
    }
  });
  return result;
}

GC_ERROR GC_CALLTYPE EventGetDataInfo(EVENT_HANDLE hEvent, const void* pInBuffer, size_t iInSize,
                                      EVENT_DATA_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                                      void* pOutBuffer, size_t* piOutSize) {
  const GC_ERROR result =
      Forward(proxyState.eventTable, &EventFunctionTable::EventGetDataInfo, hEvent, pInBuffer,
              iInSize, iInfoCmd, piType, pOutBuffer, piOutSize);
  Observe([&] {
    const RenderedText value = RenderInfoValue(*piType, pOutBuffer, *piOutSize);
    const RenderedText type = InfoDatatypeName(*piType);
    const RenderedText command = EventDataInfoCmdName(iInfoCmd);
    // iInSize is left out on purpose: from there on each conversion shows the next value.
    LogInfo(CallLogger(),
            "%s=EventGetDataInfo(hEvent=0x%p, pInBuffer=0x%p, iEventBufferSize=%u, iID=%s, "
            "0x%p->(iType=%s) 0x%p->(Buffer=%s), 0x%p->(iSize=%u))"_line,
            GcErrorName(result), hEvent, pInBuffer, Misplaced(command), Misplaced(piType),
            Misplaced(type), Misplaced(pOutBuffer), Misplaced(value), Misplaced(piOutSize),
            Misplaced(*piOutSize), noValue);
  });
  return result;
}

GC_ERROR GC_CALLTYPE EventGetInfo(EVENT_HANDLE hEvent, EVENT_INFO_CMD iInfoCmd,
                                  INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
  const GC_ERROR result = Forward(proxyState.eventTable, &EventFunctionTable::EventGetInfo, hEvent,
                                  iInfoCmd, piType, pBuffer, piSize);
  Observe([&] {
    const RenderedText value = RenderInfoValue(*piType, pBuffer, *piSize);
    const RenderedText type = InfoDatatypeName(*piType);
    const RenderedText command = EventInfoCmdName(iInfoCmd);
    LogInfo(CallLogger(),
            "%s=EventGetInfo(hEvent=0x%p, iID=%s, 0x%p->(iType=%s) 0x%p->(Buffer=%s), "
            "0x%p->(iSize=%u))"_line,
            GcErrorName(result), hEvent, command, piType, type, pBuffer, value, piSize, *piSize);
  });
  return result;
}

GC_ERROR GC_CALLTYPE EventFlush(EVENT_HANDLE hEvent) {
  const GC_ERROR result = Forward(proxyState.eventTable, &EventFunctionTable::EventFlush, hEvent);
  Observe([&] {
    LogInfo(CallLogger(), "%s=EventFlush(hEvent=0x%p)"_line, GcErrorName(result), hEvent);
  });
  return result;
}

GC_ERROR GC_CALLTYPE EventKill(EVENT_HANDLE hEvent) {
  const GC_ERROR result = Forward(proxyState.eventTable, &EventFunctionTable::EventKill, hEvent);
  Observe([&] {
    LogInfo(CallLogger(), "%s=EventKill(hEvent=0x%p)"_line, GcErrorName(result), hEvent);
  });
  return result;
}
