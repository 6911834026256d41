// The library's own information, and the ports.
#include "calllog/info_rendering.h"
#include "calllog/line_log.h"
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
    LogInfo(CallLogger(),
            "%s=GCGetInfo(iInfoCmd=%s, 0x%p->(iType=%s), Buffer=%s, 0x%p->(iSize=%u))"_line,
            GcErrorName(result), command, piType, type, value, piSize, *piSize);
  });
  return result;
}

GC_ERROR GC_CALLTYPE GCGetLastError(GC_ERROR* piErrorCode, char* sErrText, size_t* piSize) {
  const GC_ERROR result = Forward(proxyState.libTable, &LibFunctionTable::GCGetLastError,
                                  piErrorCode, sErrText, piSize);
  Observe([&] {
    const RenderedText code = GcErrorName(*piErrorCode);
    // piErrorCode is left out on purpose: from the second conversion on each shows the next value.
    LogInfo(CallLogger(),
            "%s=GCGetLastError(0x%p->(ErrorCode=%s), 0x%p->(pErrorText=%s), 0x%p->(iSize=%u))"_line,
            GcErrorName(result), Misplaced(code), sErrText, TextOrNull(sErrText), Misplaced(piSize),
            Misplaced(*piSize), noValue);
  });
  return result;
}

GC_ERROR GC_CALLTYPE GCReadPort(PORT_HANDLE hPort, uint64_t iAddress, void* pBuffer,
                                size_t* piSize) {
  const GC_ERROR result = Forward(proxyState.portTable, &PortFunctionTable::GCReadPort, hPort,
                                  iAddress, pBuffer, piSize);
  Observe([&] {
    const ByteDump dump{pBuffer, *piSize};
    // The data twice, on purpose: as text up to the first zero byte, and dumped.
    LogInfo(
        CallLogger(),
        "%s=GCReadPort(hPort=0x%p, iAddress=0x%llx, 0x%p->(Buffer=%s,%s), 0x%p->(iSize=%lu)"_line,
        GcErrorName(result), hPort, iAddress, pBuffer, Misplaced(pBuffer), dump, piSize, *piSize);
  });
  return result;
}

GC_ERROR GC_CALLTYPE GCWritePort(PORT_HANDLE hPort, uint64_t iAddress, const void* pBuffer,
                                 size_t* piSize) {
  const GC_ERROR result = Forward(proxyState.portTable, &PortFunctionTable::GCWritePort, hPort,
                                  iAddress, pBuffer, piSize);
  Observe([&] {
    const ByteDump dump{pBuffer, *piSize};
    LogInfo(CallLogger(),
            "%s=GCWritePort(hPort=0x%p, iAddress=0x%llx, 0x%p->(Buffer=%s), 0x%p->(iSize=%u)"_line,
            GcErrorName(result), hPort, iAddress, pBuffer, dump, piSize, *piSize);
  });
  return result;
}

GC_ERROR GC_CALLTYPE GCGetPortURL(PORT_HANDLE hPort, char* sURL, size_t* piSize) {
  const GC_ERROR result =
      Forward(proxyState.portTable, &PortFunctionTable::GCGetPortURL, hPort, sURL, piSize);
  Observe([&] {
    LogInfo(CallLogger(), "%s=GCGetPortURL(hPort=0x%p, 0x%p->(URL=%s), 0x%p->(iSize=%u))"_line,
            GcErrorName(result), hPort, sURL, TextOrNull(sURL), piSize, *piSize);
  });
  return result;
}

GC_ERROR GC_CALLTYPE GCGetNumPortURLs(PORT_HANDLE hPort, uint32_t* piNumURLs) {
  const GC_ERROR result =
      Forward(proxyState.portTable, &PortFunctionTable::GCGetNumPortURLs, hPort, piNumURLs);
  Observe([&] {
    LogInfo(CallLogger(), "%s=GCGetNumPortURLs(hPort=0x%p, 0x%p->(iNumURLs=%u))"_line,
            GcErrorName(result), hPort, piNumURLs, *piNumURLs);
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
    LogInfo(
        CallLogger(),
        "%s=GCGetPortInfo(hPort=0x%p, iCmd=%s, 0x%p->(iType=%s) 0x%p->(Buffer=%s), 0x%p->(%u))"_line,
        GcErrorName(result), hPort, command, piType, type, pBuffer, value, piSize, *piSize);
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
    LogInfo(CallLogger(),
            "%s=GCGetPortURLInfo(hPort=0x%p, iURLIndex=%u, iCmd=%s, 0x%p->(iType=%s) "
            "0x%p->(Buffer=%s), 0x%p->(iSize=%u))"_line,
            GcErrorName(result), hPort, iURLIndex, command, piType, type, pBuffer, value, piSize,
            *piSize);
  });
  return result;
}

// The formats of the two stacked accesses are made for a single address, and the lists are shorter,
// on purpose: the entries show only as the address of their text, their count as the buffer.
GC_ERROR GC_CALLTYPE GCReadPortStacked(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY* pEntries,
                                       size_t* piNumEntries) {
  const GC_ERROR result = Forward(proxyState.portTable, &PortFunctionTable::GCReadPortStacked,
                                  hPort, pEntries, piNumEntries);
  Observe([&] {
    const std::string entries = RenderPortData(pEntries, *piNumEntries);
    LogInfo(
        CallLogger(),
        "%s=GCReadPortStacked(hPort=0x%p, iAddress=0x%llx, 0x%p->(Buffer=%s), 0x%p->(iSize=%u)"_line,
        GcErrorName(result), hPort, Misplaced(entries), piNumEntries, Misplaced(*piNumEntries),
        noValue, noValue);
  });
  return result;
}

GC_ERROR GC_CALLTYPE GCWritePortStacked(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY* pEntries,
                                        size_t* piNumEntries) {
  const GC_ERROR result = Forward(proxyState.portTable, &PortFunctionTable::GCWritePortStacked,
                                  hPort, pEntries, piNumEntries);
  Observe([&] {
    const std::string entries = RenderPortData(pEntries, *piNumEntries);
    LogInfo(CallLogger(),
            "%s=GCWritePortStacked(hPort=0x%p, iAddress=0x%llx, 0x%p->(Entries=%s), "
            "0x%p->(iNumEntries=%u)"_line,
            GcErrorName(result), hPort, Misplaced(entries), piNumEntries, Misplaced(*piNumEntries),
            noValue, noValue);
  });
  return result;
}
