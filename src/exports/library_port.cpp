// SPDX-License-Identifier: MIT
// The library's own information, and the ports.
#include "calllog/info_rendering.h"
#include "calllog/line_log.h"
#include "calllog/log_text.h"
#include "calllog/port_rendering.h"
#include "calllog/value_names.h"
#include "exports/forwarding.h"
#include "gentl/gentl.h"

using namespace vextrel;  // NOLINT(google-build-using-namespace): these are C functions.

GC_ERROR GC_CALLTYPE GCGetInfo(TL_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer,
                               size_t* piSize) {
  const GC_ERROR result =
      Forward(proxyState.libTable, &LibFunctionTable::GCGetInfo, iInfoCmd, piType, pBuffer, piSize);
  Observe([&] {
    const RenderedText value = RenderInfoValue(*piType, pBuffer, *piSize);
    const RenderedText type = InfoDatatypeName(*piType);
    const RenderedText command = TlInfoCmdName(iInfoCmd);
    LogCall(CallLogger(), line::kGCGetInfo, GcErrorName(result), command, piType, type, value,
            piSize, ValueAt(piSize));
  });
  return result;
}

GC_ERROR GC_CALLTYPE GCGetLastError(GC_ERROR* piErrorCode, char* sErrText, size_t* piSize) {
  const GC_ERROR result = Forward(proxyState.libTable, &LibFunctionTable::GCGetLastError,
                                  piErrorCode, sErrText, piSize);
  Observe([&] {
    const RenderedText code = GcErrorName(*piErrorCode);
    // Kept: 31. piErrorCode is left out.
    LogCall(CallLogger(), line::kGCGetLastError, GcErrorName(result), Misplaced(code), sErrText,
            TextOrNull(sErrText), Misplaced(piSize), Misplaced(ValueAt(piSize)), kNoValue);
  });
  return result;
}

GC_ERROR GC_CALLTYPE GCReadPort(PORT_HANDLE hPort, uint64_t iAddress, void* pBuffer,
                                size_t* piSize) {
  const GC_ERROR result = Forward(proxyState.portTable, &PortFunctionTable::GCReadPort, hPort,
                                  iAddress, pBuffer, piSize);
  Observe([&] {
    const ByteDump dump{pBuffer, *piSize};
    // Kept: 32. Shows the data twice.
    LogCall(CallLogger(), line::kGCReadPort, GcErrorName(result), hPort, iAddress, pBuffer,
            Misplaced(pBuffer), dump, piSize, ValueAt(piSize));
  });
  return result;
}

GC_ERROR GC_CALLTYPE GCWritePort(PORT_HANDLE hPort, uint64_t iAddress, const void* pBuffer,
                                 size_t* piSize) {
  const GC_ERROR result = Forward(proxyState.portTable, &PortFunctionTable::GCWritePort, hPort,
                                  iAddress, pBuffer, piSize);
  Observe([&] {
    const ByteDump dump{pBuffer, *piSize};
    LogCall(CallLogger(), line::kGCWritePort, GcErrorName(result), hPort, iAddress, pBuffer, dump,
            piSize, ValueAt(piSize));
  });
  return result;
}

GC_ERROR GC_CALLTYPE GCGetPortURL(PORT_HANDLE hPort, char* sURL, size_t* piSize) {
  const GC_ERROR result =
      Forward(proxyState.portTable, &PortFunctionTable::GCGetPortURL, hPort, sURL, piSize);
  Observe([&] {
    LogCall(CallLogger(), line::kGCGetPortURL, GcErrorName(result), hPort, sURL, TextOrNull(sURL),
            piSize, ValueAt(piSize));
  });
  return result;
}

GC_ERROR GC_CALLTYPE GCGetNumPortURLs(PORT_HANDLE hPort, uint32_t* piNumURLs) {
  const GC_ERROR result =
      Forward(proxyState.portTable, &PortFunctionTable::GCGetNumPortURLs, hPort, piNumURLs);
  Observe([&] {
    LogCall(CallLogger(), line::kGCGetNumPortURLs, GcErrorName(result), hPort, piNumURLs,
            ValueAt(piNumURLs));
  });
  return result;
}

GC_ERROR GC_CALLTYPE GCGetPortInfo(PORT_HANDLE hPort, PORT_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                                   void* pBuffer, size_t* piSize) {
  const GC_ERROR result = Forward(proxyState.portTable, &PortFunctionTable::GCGetPortInfo, hPort,
                                  iInfoCmd, piType, pBuffer, piSize);
  Observe([&] {
    const RenderedText value = RenderInfoValue(*piType, pBuffer, *piSize);
    const RenderedText type = InfoDatatypeName(*piType);
    const RenderedText command = PortInfoCmdName(iInfoCmd);
    LogCall(CallLogger(), line::kGCGetPortInfo, GcErrorName(result), hPort, command, piType, type,
            pBuffer, value, piSize, ValueAt(piSize));
  });
  return result;
}

GC_ERROR GC_CALLTYPE GCGetPortURLInfo(PORT_HANDLE hPort, uint32_t iURLIndex, URL_INFO_CMD iInfoCmd,
                                      INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
  const GC_ERROR result = Forward(proxyState.portTable, &PortFunctionTable::GCGetPortURLInfo, hPort,
                                  iURLIndex, iInfoCmd, piType, pBuffer, piSize);
  Observe([&] {
    const RenderedText value = RenderInfoValue(*piType, pBuffer, *piSize);
    const RenderedText type = InfoDatatypeName(*piType);
    const RenderedText command = UrlInfoCmdName(iInfoCmd);
    LogCall(CallLogger(), line::kGCGetPortURLInfo, GcErrorName(result), hPort, iURLIndex, command,
            piType, type, pBuffer, value, piSize, ValueAt(piSize));
  });
  return result;
}

// Kept: 33, 34. The lines of stacked accesses show the address of the entries' text.
GC_ERROR GC_CALLTYPE GCReadPortStacked(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY* pEntries,
                                       size_t* piNumEntries) {
  const GC_ERROR result = Forward(proxyState.portTable, &PortFunctionTable::GCReadPortStacked,
                                  hPort, pEntries, piNumEntries);
  Observe([&] {
    RoomForPortData room;  // NOLINT: clearing it would cost every call
    const RenderedText entries = RenderPortData(pEntries, *piNumEntries, room);
    LogCall(CallLogger(), line::kGCReadPortStacked, GcErrorName(result), hPort, Misplaced(entries),
            piNumEntries, Misplaced(ValueAt(piNumEntries)), kNoValue, kNoValue);
  });
  return result;
}

GC_ERROR GC_CALLTYPE GCWritePortStacked(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY* pEntries,
                                        size_t* piNumEntries) {
  const GC_ERROR result = Forward(proxyState.portTable, &PortFunctionTable::GCWritePortStacked,
                                  hPort, pEntries, piNumEntries);
  Observe([&] {
    RoomForPortData room;  // NOLINT: clearing it would cost every call
    const RenderedText entries = RenderPortData(pEntries, *piNumEntries, room);
    LogCall(CallLogger(), line::kGCWritePortStacked, GcErrorName(result), hPort, Misplaced(entries),
            piNumEntries, Misplaced(ValueAt(piNumEntries)), kNoValue, kNoValue);
  });
  return result;
}
