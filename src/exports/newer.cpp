// SPDX-License-Identifier: MIT
// The functions of GenTL 1.3 to 1.6, of the extended module alone. What the target answers is read
// only as far as newer_rendering.h allows.
#include "calllog/line_log.h"
#include "calllog/log_text.h"
#include "calllog/newer_rendering.h"
#include "calllog/newer_value_names.h"
#include "exports/forwarding.h"
#include "gentl/gentl_newer.h"
#include "lifecycle/newer_functions.h"

using namespace vextrel;  // NOLINT(google-build-using-namespace): these are C functions.

GC_ERROR GC_CALLTYPE DSGetBufferChunkData(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                          SINGLE_CHUNK_DATA* pChunkData, size_t* piNumChunks) {
  const std::size_t offered = OfferedSize(piNumChunks);
  const GC_ERROR result = Forward(&newerFunctions, &NewerFunctionTable::DSGetBufferChunkData,
                                  hDataStream, hBuffer, pChunkData, piNumChunks);
  Observe([&] {
    const std::string chunks = RenderChunks(result, pChunkData, offered, piNumChunks);
    LogCall(CallLogger(), line::kDSGetBufferChunkData, NewerGcErrorName(result), hDataStream,
            hBuffer, pChunkData, chunks, piNumChunks, RenderSizeAt(piNumChunks));
  });
  return result;
}

GC_ERROR GC_CALLTYPE IFGetParentTL(IF_HANDLE hIface, TL_HANDLE* phSystem) {
  const GC_ERROR result =
      Forward(&newerFunctions, &NewerFunctionTable::IFGetParentTL, hIface, phSystem);
  Observe([&] {
    LogCall(CallLogger(), line::kIFGetParentTL, NewerGcErrorName(result), hIface, phSystem,
            RenderHandleAt(phSystem));
  });
  return result;
}

GC_ERROR GC_CALLTYPE DevGetParentIF(DEV_HANDLE hDevice, IF_HANDLE* phIface) {
  const GC_ERROR result =
      Forward(&newerFunctions, &NewerFunctionTable::DevGetParentIF, hDevice, phIface);
  Observe([&] {
    LogCall(CallLogger(), line::kDevGetParentIF, NewerGcErrorName(result), hDevice, phIface,
            RenderHandleAt(phIface));
  });
  return result;
}

GC_ERROR GC_CALLTYPE DSGetParentDev(DS_HANDLE hDataStream, DEV_HANDLE* phDevice) {
  const GC_ERROR result =
      Forward(&newerFunctions, &NewerFunctionTable::DSGetParentDev, hDataStream, phDevice);
  Observe([&] {
    LogCall(CallLogger(), line::kDSGetParentDev, NewerGcErrorName(result), hDataStream, phDevice,
            RenderHandleAt(phDevice));
  });
  return result;
}

GC_ERROR GC_CALLTYPE DSGetNumBufferParts(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                         uint32_t* piNumParts) {
  const GC_ERROR result = Forward(&newerFunctions, &NewerFunctionTable::DSGetNumBufferParts,
                                  hDataStream, hBuffer, piNumParts);
  Observe([&] {
    LogCall(CallLogger(), line::kDSGetNumBufferParts, NewerGcErrorName(result), hDataStream,
            hBuffer, piNumParts, RenderNumberAt(piNumParts));
  });
  return result;
}

GC_ERROR GC_CALLTYPE DSGetBufferPartInfo(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                         uint32_t iPartIndex, BUFFER_PART_INFO_CMD iInfoCmd,
                                         INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
  const std::size_t offered = OfferedSize(piSize);
  const GC_ERROR result =
      Forward(&newerFunctions, &NewerFunctionTable::DSGetBufferPartInfo, hDataStream, hBuffer,
              iPartIndex, iInfoCmd, piType, pBuffer, piSize);
  Observe([&] {
    const std::string value = RenderPartAnswer(result, iInfoCmd, piType, pBuffer, offered, piSize);
    LogCall(CallLogger(), line::kDSGetBufferPartInfo, NewerGcErrorName(result), hDataStream,
            hBuffer, iPartIndex, BufferPartInfoCmdName(iInfoCmd), piType, RenderTypeAt(piType),
            pBuffer, value, piSize, RenderSizeAt(piSize));
  });
  return result;
}

GC_ERROR GC_CALLTYPE DSAnnounceCompositeBuffer(DS_HANDLE hDataStream, size_t iNumSegments,
                                               void** ppSegments, size_t* piSizes, void* pPrivate,
                                               BUFFER_HANDLE* phBuffer) {
  const GC_ERROR result =
      Forward(&newerFunctions, &NewerFunctionTable::DSAnnounceCompositeBuffer, hDataStream,
              iNumSegments, ppSegments, piSizes, pPrivate, phBuffer);
  Observe([&] {
    const std::string segments = RenderSegments(ppSegments, piSizes, iNumSegments);
    LogCall(CallLogger(), line::kDSAnnounceCompositeBuffer, NewerGcErrorName(result), hDataStream,
            iNumSegments, ppSegments, piSizes, segments, pPrivate, phBuffer,
            RenderHandleAt(phBuffer));
  });
  OnSuccess(result, [&] {
    if (phBuffer == nullptr) {
      ReportError(CallLogger(), report::kDSAnnounceCompositeBufferWithoutHandle);
    } else if (TransportLayerNode* root = OpenedRegistry()) {
      root->AddBuffer(hDataStream, *phBuffer);
    }
  });
  return result;
}

GC_ERROR GC_CALLTYPE DSGetBufferInfoStacked(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                            DS_BUFFER_INFO_STACKED* pInfoStacked,
                                            size_t iNumInfos) {
  const OfferedBuffers offered(pInfoStacked, iNumInfos);
  const GC_ERROR result = Forward(&newerFunctions, &NewerFunctionTable::DSGetBufferInfoStacked,
                                  hDataStream, hBuffer, pInfoStacked, iNumInfos);
  Observe([&] {
    const std::string infos = RenderInfos(pInfoStacked, iNumInfos, offered);
    LogCall(CallLogger(), line::kDSGetBufferInfoStacked, NewerGcErrorName(result), hDataStream,
            hBuffer, pInfoStacked, infos, iNumInfos);
  });
  return result;
}

GC_ERROR GC_CALLTYPE DSGetBufferPartInfoStacked(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                                DS_BUFFER_PART_INFO_STACKED* pInfoStacked,
                                                size_t iNumInfos) {
  const OfferedBuffers offered(pInfoStacked, iNumInfos);
  const GC_ERROR result = Forward(&newerFunctions, &NewerFunctionTable::DSGetBufferPartInfoStacked,
                                  hDataStream, hBuffer, pInfoStacked, iNumInfos);
  Observe([&] {
    const std::string infos = RenderPartInfos(pInfoStacked, iNumInfos, offered);
    LogCall(CallLogger(), line::kDSGetBufferPartInfoStacked, NewerGcErrorName(result), hDataStream,
            hBuffer, pInfoStacked, infos, iNumInfos);
  });
  return result;
}

GC_ERROR GC_CALLTYPE DSGetNumFlows(DS_HANDLE hDataStream, uint32_t* piNumFlows) {
  const GC_ERROR result =
      Forward(&newerFunctions, &NewerFunctionTable::DSGetNumFlows, hDataStream, piNumFlows);
  Observe([&] {
    LogCall(CallLogger(), line::kDSGetNumFlows, NewerGcErrorName(result), hDataStream, piNumFlows,
            RenderNumberAt(piNumFlows));
  });
  return result;
}

GC_ERROR GC_CALLTYPE DSGetFlowInfo(DS_HANDLE hDataStream, uint32_t iFlowIndex,
                                   FLOW_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer,
                                   size_t* piSize) {
  const std::size_t offered = OfferedSize(piSize);
  const GC_ERROR result = Forward(&newerFunctions, &NewerFunctionTable::DSGetFlowInfo, hDataStream,
                                  iFlowIndex, iInfoCmd, piType, pBuffer, piSize);
  Observe([&] {
    const std::string value = RenderAnswer(result, piType, pBuffer, offered, piSize);
    LogCall(CallLogger(), line::kDSGetFlowInfo, NewerGcErrorName(result), hDataStream, iFlowIndex,
            FlowInfoCmdName(iInfoCmd), piType, RenderTypeAt(piType), pBuffer, value, piSize,
            RenderSizeAt(piSize));
  });
  return result;
}

GC_ERROR GC_CALLTYPE DSGetNumBufferSegments(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                            uint32_t* piNumSegments) {
  const GC_ERROR result = Forward(&newerFunctions, &NewerFunctionTable::DSGetNumBufferSegments,
                                  hDataStream, hBuffer, piNumSegments);
  Observe([&] {
    LogCall(CallLogger(), line::kDSGetNumBufferSegments, NewerGcErrorName(result), hDataStream,
            hBuffer, piNumSegments, RenderNumberAt(piNumSegments));
  });
  return result;
}

GC_ERROR GC_CALLTYPE DSGetBufferSegmentInfo(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                            uint32_t iSegmentIndex, SEGMENT_INFO_CMD iInfoCmd,
                                            INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
  const std::size_t offered = OfferedSize(piSize);
  const GC_ERROR result =
      Forward(&newerFunctions, &NewerFunctionTable::DSGetBufferSegmentInfo, hDataStream, hBuffer,
              iSegmentIndex, iInfoCmd, piType, pBuffer, piSize);
  Observe([&] {
    const std::string value = RenderAnswer(result, piType, pBuffer, offered, piSize);
    LogCall(CallLogger(), line::kDSGetBufferSegmentInfo, NewerGcErrorName(result), hDataStream,
            hBuffer, iSegmentIndex, SegmentInfoCmdName(iInfoCmd), piType, RenderTypeAt(piType),
            pBuffer, value, piSize, RenderSizeAt(piSize));
  });
  return result;
}
