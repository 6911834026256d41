// The data streams and their buffers.
#include "calllog/info_rendering.h"
#include "calllog/line_log.h"
#include "calllog/value_names.h"
#include "exports/forwarding.h"
#include "gentl/gentl.h"

using namespace vextrel;  // NOLINT(google-build-using-namespace): these are C functions.

GC_ERROR GC_CALLTYPE DSAnnounceBuffer(DS_HANDLE hDataStream, void* pBuffer, size_t iSize,
                                      void* pPrivate, BUFFER_HANDLE* phBuffer) {
  const GC_ERROR result = Forward(proxyState.dsTable, &DSFunctionTable::DSAnnounceBuffer,
                                  hDataStream, pBuffer, iSize, pPrivate, phBuffer);
  Observe([&] {
    LogInfo(CallLogger(),
            "%s=DSAnnounceBuffer(hDS=0x%p, pBuffer=0x%p, iSize=%u, pPrivate=0x%p, "
            "0x%p->(hBuffer=0x%p))"_line,
            GcErrorName(result), hDataStream, pBuffer, iSize, pPrivate, phBuffer, *phBuffer);
  });
  OnSuccess(result, [&] {
    if (phBuffer == nullptr) {
      LogError(CallLogger(), "DSAnnounceBuffer returned a NULL handle to the buffer!");
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
    LogInfo(
        CallLogger(),
        "%s=DSAllocAndAnnounceBuffer(hDS=0x%p, iSize=%u, pPrivate=0x%p, 0x%p->(hBuffer=0x%p))"_line,
        GcErrorName(result), hDataStream, iSize, pPrivate, phBuffer, *phBuffer);
  });
  OnSuccess(result, [&] {
    if (phBuffer == nullptr) {
      LogError(CallLogger(), "DSAllocAndAnnounceBuffer returned a NULL handle to the buffer!");
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
    LogInfo(CallLogger(), "%s=DSFlushQueue(hDS=0x%p, QueueType=%s)"_line, GcErrorName(result),
            hDataStream, queueType);
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
    LogInfo(CallLogger(), "%s=DSStartAcquisition(hDS=0x%p, Flags=%s, iNumFramesToAcquire=%lu)"_line,
            GcErrorName(result), hDataStream, flags, iNumToAcquire);
  });
  return result;
}

GC_ERROR GC_CALLTYPE DSStopAcquisition(DS_HANDLE hDataStream, ACQ_STOP_FLAGS iStopFlags) {
  const GC_ERROR result =
      Forward(proxyState.dsTable, &DSFunctionTable::DSStopAcquisition, hDataStream, iStopFlags);
  Observe([&] {
    const RenderedText flags = AcqStopFlagsName(iStopFlags);
    LogInfo(CallLogger(), "%s=DSStopAcquisition(hDS=0x%p, Flags=%s)"_line, GcErrorName(result),
            hDataStream, flags);
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
    LogInfo(
        CallLogger(),
        "%s=DSGetInfo(hDS=0x%p, iCmd=%s, 0x%p->(iType=%s) 0x%p->(Buffer=%s), 0x%p->(iSize=%u))"_line,
        GcErrorName(result), hDataStream, command, piType, type, pBuffer, value, piSize, *piSize);
  });
  return result;
}

GC_ERROR GC_CALLTYPE DSGetBufferID(DS_HANDLE hDataStream, uint32_t iIndex,
                                   BUFFER_HANDLE* phBuffer) {
  const GC_ERROR result =
      Forward(proxyState.dsTable, &DSFunctionTable::DSGetBufferID, hDataStream, iIndex, phBuffer);
  Observe([&] {
    LogInfo(CallLogger(), "%s=DSGetBufferID(hDS=0x%p, iIndex=%u, 0x%p->(hBuffer=0x%p))"_line,
            GcErrorName(result), hDataStream, iIndex, phBuffer, *phBuffer);
  });
  return result;
}

GC_ERROR GC_CALLTYPE DSClose(DS_HANDLE hDataStream) {
  const GC_ERROR result = Forward(proxyState.dsTable, &DSFunctionTable::DSClose, hDataStream);
  Observe([&] {
    LogInfo(CallLogger(), "%s=DSClose(hDS=0x%p)"_line, GcErrorName(result), hDataStream);
  });
  OnSuccess(result, [&] {
    if (hDataStream == nullptr) {
      // "Device" although it is a stream, on purpose.
      LogError(CallLogger(), "Illegal Device handle in DSClose()!");
      return;
    }
    TransportLayerNode::ReleaseEventsOn(proxyState.registryRoot, hDataStream);
    TransportLayerNode* root = OpenedRegistry();
    if (root != nullptr && !root->RemoveDataStream(hDataStream)) {
      LogError(CallLogger(),
               "The DataStream with handle 0x%p was not previously opened correctly using "
               "DevOpenDataStream()!",
               noValue);
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
    LogInfo(CallLogger(), "%s=DSRevokeBuffer(hDS=0x%p, hBuffer=0x%p, pBuffer=%s, pPrivate=%s)"_line,
            GcErrorName(result), hDataStream, hBuffer, memory, userPointer);
  });
  OnSuccess(result, [&] {
    if (hBuffer == nullptr) {
      LogError(CallLogger(), "Illegal Buffer handle!");
      return;
    }
    TransportLayerNode* root = OpenedRegistry();
    if (root != nullptr && !root->RemoveBuffer(hDataStream, hBuffer)) {
      LogError(CallLogger(),
               "The buffer with handle 0x%p was not previously announced correctly using "
               "DSAllocAndAnnounceBuffer() or DSAnnounceBuffer()!",
               noValue);
    }
  });
  return result;
}

GC_ERROR GC_CALLTYPE DSQueueBuffer(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer) {
  const GC_ERROR result =
      Forward(proxyState.dsTable, &DSFunctionTable::DSQueueBuffer, hDataStream, hBuffer);
  Observe([&] {
    LogInfo(CallLogger(), "%s=DSQueueBuffer(hDS=0x%p, hB=0x%p)"_line, GcErrorName(result),
            hDataStream, hBuffer);
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
    // The only function that tests piType.
    const RenderedText value =
        RenderInfoValue(piType != nullptr ? *piType : INFO_DATATYPE_UNKNOWN, pBuffer, *piSize);
    const RenderedText type =
        piType != nullptr ? InfoDatatypeName(*piType) : RenderedText::Name("NULL");
    const RenderedText command = BufferInfoCmdName(iInfoCmd);
    LogInfo(CallLogger(),
            "%s=DSGetBufferInfo(hDS=0x%p, hBuffer=0x%p, iCommand=%s, 0x%p->(iType=%s) "
            "0x%p->(Buffer=%s), 0x%p->(iSize=%u))"_line,
            GcErrorName(result), hDataStream, hBuffer, command, piType, type, pBuffer, value,
            piSize, *piSize);
  });
  return result;
}
