// SPDX-License-Identifier: MIT
// The events.
#include "calllog/info_rendering.h"
#include "calllog/line_log.h"
#include "calllog/log_text.h"
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
    LogCall(CallLogger(), line::kGCRegisterEvent, GcErrorName(result), hEventSrc, event, phEvent,
            ValueAt(phEvent));
  });
  OnSuccess(result, [&] {
    if (phEvent == nullptr) {
      // Kept: 48.
      ReportError(CallLogger(), report::kGCRegisterEventWithoutHandle);
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
    LogCall(CallLogger(), line::kGCUnregisterEvent, GcErrorName(result), hEventSrc, event);
  });
  OnSuccess(result, [&] {
    if (hEventSrc == nullptr) {
      ReportIllegalInterface();
      return;
    }
    TransportLayerNode* root = OpenedRegistry();
    if (root != nullptr && !root->RemoveEvent(hEventSrc, iEventID)) {
      ReportError(CallLogger(), report::kEventNotRegistered, iEventID, kNoValue);
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
    LogCall(CallLogger(), line::kEventGetData, GcErrorName(result), hEvent, pBuffer, dump, piSize,
            ValueAt(piSize), iTimeout);
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
    // Kept: 36. iInSize is left out.
    LogCall(CallLogger(), line::kEventGetDataInfo, GcErrorName(result), hEvent, pInBuffer,
            Misplaced(command), Misplaced(piType), Misplaced(type), Misplaced(pOutBuffer),
            Misplaced(value), Misplaced(piOutSize), Misplaced(ValueAt(piOutSize)), kNoValue);
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
    LogCall(CallLogger(), line::kEventGetInfo, GcErrorName(result), hEvent, command, piType, type,
            pBuffer, value, piSize, ValueAt(piSize));
  });
  return result;
}

GC_ERROR GC_CALLTYPE EventFlush(EVENT_HANDLE hEvent) {
  const GC_ERROR result = Forward(proxyState.eventTable, &EventFunctionTable::EventFlush, hEvent);
  Observe([&] { LogCall(CallLogger(), line::kEventFlush, GcErrorName(result), hEvent); });
  return result;
}

GC_ERROR GC_CALLTYPE EventKill(EVENT_HANDLE hEvent) {
  const GC_ERROR result = Forward(proxyState.eventTable, &EventFunctionTable::EventKill, hEvent);
  Observe([&] { LogCall(CallLogger(), line::kEventKill, GcErrorName(result), hEvent); });
  return result;
}
