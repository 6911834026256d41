// SPDX-License-Identifier: MIT
// The data streams and their buffers.
#include "calllog/info_rendering.h"
#include "calllog/line_log.h"
#include "calllog/log_text.h"
#include "calllog/value_names.h"
#include "exports/forwarding.h"
#include "gentl/gentl.h"

using namespace vextrel;  // NOLINT(google-build-using-namespace): these are C functions.

GC_ERROR GC_CALLTYPE DSAnnounceBuffer(DS_HANDLE hDataStream, void* pBuffer, size_t iSize,
                                      void* pPrivate, BUFFER_HANDLE* phBuffer) {
  const GC_ERROR result = Forward(proxyState.dsTable, &DSFunctionTable::DSAnnounceBuffer,
                                  hDataStream, pBuffer, iSize, pPrivate, phBuffer);
  Observe([&] {
    LogCall(CallLogger(), line::kDSAnnounceBuffer, GcErrorName(result), hDataStream, pBuffer, iSize,
            pPrivate, phBuffer, ValueAt(phBuffer));
  });
  OnSuccess(result, [&] {
    if (phBuffer == nullptr) {
      ReportError(CallLogger(), report::kDSAnnounceBufferWithoutHandle);
    } else if (TransportLayerNode* root = OpenedRegistry()) {
      root->AddBuffer(hDataStream, *phBuffer);
    }
  });
  return result;
}

GC_ERROR GC_CALLTYPE DSAllocAndAnnounceBuffer(DS_HANDLE hDataStream, size_t iSize, void* pPrivate,
                                              BUFFER_HANDLE* phBuffer) {
  const GC_ERROR result = Forward(proxyState.dsTable, &DSFunctionTable::DSAllocAndAnnounceBuffer,
                                  hDataStream, iSize, pPrivate, phBuffer);
  Observe([&] {
    LogCall(CallLogger(), line::kDSAllocAndAnnounceBuffer, GcErrorName(result), hDataStream, iSize,
            pPrivate, phBuffer, ValueAt(phBuffer));
  });
  OnSuccess(result, [&] {
    if (phBuffer == nullptr) {
      ReportError(CallLogger(), report::kDSAllocAndAnnounceBufferWithoutHandle);
    } else if (TransportLayerNode* root = OpenedRegistry()) {
      root->AddBuffer(hDataStream, *phBuffer);
    }
  });
  return result;
}

GC_ERROR GC_CALLTYPE DSFlushQueue(DS_HANDLE hDataStream, ACQ_QUEUE_TYPE iOperation) {
  const GC_ERROR result =
      Forward(proxyState.dsTable, &DSFunctionTable::DSFlushQueue, hDataStream, iOperation);
  Observe([&] {
    const RenderedText queueType = AcqQueueTypeName(iOperation);
    LogCall(CallLogger(), line::kDSFlushQueue, GcErrorName(result), hDataStream, queueType);
  });
  OnSuccess(result, [&] {
    if (TransportLayerNode* root = OpenedRegistry()) {
      root->OnFlushQueue(hDataStream, iOperation);
    }
  });
  return result;
}

GC_ERROR GC_CALLTYPE DSStartAcquisition(DS_HANDLE hDataStream, ACQ_START_FLAGS iStartFlags,
                                        uint64_t iNumToAcquire) {
  const GC_ERROR result = Forward(proxyState.dsTable, &DSFunctionTable::DSStartAcquisition,
                                  hDataStream, iStartFlags, iNumToAcquire);
  Observe([&] {
    const RenderedText flags = AcqStartFlagsName(iStartFlags);
    LogCall(CallLogger(), line::kDSStartAcquisition, GcErrorName(result), hDataStream, flags,
            iNumToAcquire);
  });
  return result;
}

GC_ERROR GC_CALLTYPE DSStopAcquisition(DS_HANDLE hDataStream, ACQ_STOP_FLAGS iStopFlags) {
  const GC_ERROR result =
      Forward(proxyState.dsTable, &DSFunctionTable::DSStopAcquisition, hDataStream, iStopFlags);
  Observe([&] {
    const RenderedText flags = AcqStopFlagsName(iStopFlags);
    LogCall(CallLogger(), line::kDSStopAcquisition, GcErrorName(result), hDataStream, flags);
  });
  return result;
}

GC_ERROR GC_CALLTYPE DSGetInfo(DS_HANDLE hDataStream, STREAM_INFO_CMD iInfoCmd,
                               INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
  const GC_ERROR result = Forward(proxyState.dsTable, &DSFunctionTable::DSGetInfo, hDataStream,
                                  iInfoCmd, piType, pBuffer, piSize);
  Observe([&] {
    const RenderedText value = RenderInfoValue(*piType, pBuffer, *piSize);
    const RenderedText type = InfoDatatypeName(*piType);
    const RenderedText command = StreamInfoCmdName(iInfoCmd);
    LogCall(CallLogger(), line::kDSGetInfo, GcErrorName(result), hDataStream, command, piType, type,
            pBuffer, value, piSize, ValueAt(piSize));
  });
  return result;
}

GC_ERROR GC_CALLTYPE DSGetBufferID(DS_HANDLE hDataStream, uint32_t iIndex,
                                   BUFFER_HANDLE* phBuffer) {
  const GC_ERROR result =
      Forward(proxyState.dsTable, &DSFunctionTable::DSGetBufferID, hDataStream, iIndex, phBuffer);
  Observe([&] {
    LogCall(CallLogger(), line::kDSGetBufferID, GcErrorName(result), hDataStream, iIndex, phBuffer,
            ValueAt(phBuffer));
  });
  return result;
}

GC_ERROR GC_CALLTYPE DSClose(DS_HANDLE hDataStream) {
  const GC_ERROR result = Forward(proxyState.dsTable, &DSFunctionTable::DSClose, hDataStream);
  Observe([&] { LogCall(CallLogger(), line::kDSClose, GcErrorName(result), hDataStream); });
  OnSuccess(result, [&] {
    if (hDataStream == nullptr) {
      // Kept: 47.
      ReportError(CallLogger(), report::kDSCloseOfNull);
      return;
    }
    ReleaseEvents(hDataStream);
    TransportLayerNode* root = OpenedRegistry();
    if (root != nullptr && !root->RemoveDataStream(hDataStream)) {
      ReportError(CallLogger(), report::kDataStreamNotOpened, kNoValue);
    }
  });
  return result;
}

GC_ERROR GC_CALLTYPE DSRevokeBuffer(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, void** ppBuffer,
                                    void** ppPrivate) {
  const GC_ERROR result = Forward(proxyState.dsTable, &DSFunctionTable::DSRevokeBuffer, hDataStream,
                                  hBuffer, ppBuffer, ppPrivate);
  Observe([&] {
    const RenderedText userPointer = RenderPointerSlot(ppPrivate);
    const RenderedText memory = RenderPointerSlot(ppBuffer);
    LogCall(CallLogger(), line::kDSRevokeBuffer, GcErrorName(result), hDataStream, hBuffer, memory,
            userPointer);
  });
  OnSuccess(result, [&] {
    if (hBuffer == nullptr) {
      ReportError(CallLogger(), report::kDSRevokeBufferOfNull);
      return;
    }
    TransportLayerNode* root = OpenedRegistry();
    if (root != nullptr && !root->RemoveBuffer(hDataStream, hBuffer)) {
      ReportError(CallLogger(), report::kBufferNotAnnounced, kNoValue);
    }
  });
  return result;
}

GC_ERROR GC_CALLTYPE DSQueueBuffer(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer) {
  const GC_ERROR result =
      Forward(proxyState.dsTable, &DSFunctionTable::DSQueueBuffer, hDataStream, hBuffer);
  Observe([&] {
    LogCall(CallLogger(), line::kDSQueueBuffer, GcErrorName(result), hDataStream, hBuffer);
  });
  OnSuccess(result, [&] {
    if (TransportLayerNode* root = OpenedRegistry()) {
      root->SetBufferQueued(hBuffer, true);
    }
  });
  return result;
}

GC_ERROR GC_CALLTYPE DSGetBufferInfo(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                     BUFFER_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer,
                                     size_t* piSize) {
  const GC_ERROR result = Forward(proxyState.dsTable, &DSFunctionTable::DSGetBufferInfo,
                                  hDataStream, hBuffer, iInfoCmd, piType, pBuffer, piSize);
  Observe([&] {
    // Kept: 43. No other function tests piType.
    const RenderedText value =
        RenderInfoValue(piType != nullptr ? *piType : INFO_DATATYPE_UNKNOWN, pBuffer, *piSize);
    const RenderedText type =
        piType != nullptr ? InfoDatatypeName(*piType) : RenderedText::Name("NULL");
    const RenderedText command = BufferInfoCmdName(iInfoCmd);
    LogCall(CallLogger(), line::kDSGetBufferInfo, GcErrorName(result), hDataStream, hBuffer,
            command, piType, type, pBuffer, value, piSize, ValueAt(piSize));
  });
  return result;
}
