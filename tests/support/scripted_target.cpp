// A producer that does what a test tells it.
#include "support/target_script.h"

namespace {

using vextrel_test::GenTLFunctions;
using vextrel_test::TargetScript;

TargetScript script;  // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

template <typename Function, typename... Arguments>
GC_ERROR Play(Function GenTLFunctions::*slot, Arguments... arguments) {
  script.calls.fetch_add(1);
  const auto function = script.functions.*slot;
  return function != nullptr ? function(arguments...) : script.result.load();
}

}  // namespace

vextrel_test::TargetScript* GetTargetScript() {
  return &script;
}

GC_ERROR GC_CALLTYPE GCGetInfo(TL_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer,
                               size_t* piSize) {
  return Play(&GenTLFunctions::GCGetInfo, iInfoCmd, piType, pBuffer, piSize);
}

GC_ERROR GC_CALLTYPE GCGetLastError(GC_ERROR* piErrorCode, char* sErrText, size_t* piSize) {
  return Play(&GenTLFunctions::GCGetLastError, piErrorCode, sErrText, piSize);
}

GC_ERROR GC_CALLTYPE GCInitLib(void) {
  return Play(&GenTLFunctions::GCInitLib);
}

GC_ERROR GC_CALLTYPE GCCloseLib(void) {
  return Play(&GenTLFunctions::GCCloseLib);
}

GC_ERROR GC_CALLTYPE TLOpen(TL_HANDLE* phTL) {
  return Play(&GenTLFunctions::TLOpen, phTL);
}

GC_ERROR GC_CALLTYPE TLClose(TL_HANDLE hTL) {
  return Play(&GenTLFunctions::TLClose, hTL);
}

GC_ERROR GC_CALLTYPE TLGetInfo(TL_HANDLE hTL, TL_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                               void* pBuffer, size_t* piSize) {
  return Play(&GenTLFunctions::TLGetInfo, hTL, iInfoCmd, piType, pBuffer, piSize);
}

GC_ERROR GC_CALLTYPE TLGetNumInterfaces(TL_HANDLE hTL, uint32_t* piNumIfaces) {
  return Play(&GenTLFunctions::TLGetNumInterfaces, hTL, piNumIfaces);
}

GC_ERROR GC_CALLTYPE TLGetInterfaceID(TL_HANDLE hTL, uint32_t iIndex, char* sID, size_t* piSize) {
  return Play(&GenTLFunctions::TLGetInterfaceID, hTL, iIndex, sID, piSize);
}

GC_ERROR GC_CALLTYPE TLGetInterfaceInfo(TL_HANDLE hTL, const char* sIfaceID,
                                        INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                                        void* pBuffer, size_t* piSize) {
  return Play(&GenTLFunctions::TLGetInterfaceInfo, hTL, sIfaceID, iInfoCmd, piType, pBuffer,
              piSize);
}

GC_ERROR GC_CALLTYPE TLOpenInterface(TL_HANDLE hTL, const char* sIfaceID, IF_HANDLE* phIface) {
  return Play(&GenTLFunctions::TLOpenInterface, hTL, sIfaceID, phIface);
}

GC_ERROR GC_CALLTYPE TLUpdateInterfaceList(TL_HANDLE hTL, bool8_t* pbChanged, uint64_t iTimeout) {
  return Play(&GenTLFunctions::TLUpdateInterfaceList, hTL, pbChanged, iTimeout);
}

GC_ERROR GC_CALLTYPE IFClose(IF_HANDLE hIface) {
  return Play(&GenTLFunctions::IFClose, hIface);
}

GC_ERROR GC_CALLTYPE IFGetInfo(IF_HANDLE hIface, INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                               void* pBuffer, size_t* piSize) {
  return Play(&GenTLFunctions::IFGetInfo, hIface, iInfoCmd, piType, pBuffer, piSize);
}

GC_ERROR GC_CALLTYPE IFGetNumDevices(IF_HANDLE hIface, uint32_t* piNumDevices) {
  return Play(&GenTLFunctions::IFGetNumDevices, hIface, piNumDevices);
}

GC_ERROR GC_CALLTYPE IFGetDeviceID(IF_HANDLE hIface, uint32_t iIndex, char* sIDeviceID,
                                   size_t* piSize) {
  return Play(&GenTLFunctions::IFGetDeviceID, hIface, iIndex, sIDeviceID, piSize);
}

GC_ERROR GC_CALLTYPE IFUpdateDeviceList(IF_HANDLE hIface, bool8_t* pbChanged, uint64_t iTimeout) {
  return Play(&GenTLFunctions::IFUpdateDeviceList, hIface, pbChanged, iTimeout);
}

GC_ERROR GC_CALLTYPE IFGetDeviceInfo(IF_HANDLE hIface, const char* sDeviceID,
                                     DEVICE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer,
                                     size_t* piSize) {
  return Play(&GenTLFunctions::IFGetDeviceInfo, hIface, sDeviceID, iInfoCmd, piType, pBuffer,
              piSize);
}

GC_ERROR GC_CALLTYPE IFOpenDevice(IF_HANDLE hIface, const char* sDeviceID,
                                  DEVICE_ACCESS_FLAGS iOpenFlags, DEV_HANDLE* phDevice) {
  return Play(&GenTLFunctions::IFOpenDevice, hIface, sDeviceID, iOpenFlags, phDevice);
}

GC_ERROR GC_CALLTYPE DevGetPort(DEV_HANDLE hDevice, PORT_HANDLE* phRemoteDevice) {
  return Play(&GenTLFunctions::DevGetPort, hDevice, phRemoteDevice);
}

GC_ERROR GC_CALLTYPE DevGetNumDataStreams(DEV_HANDLE hDevice, uint32_t* piNumDataStreams) {
  return Play(&GenTLFunctions::DevGetNumDataStreams, hDevice, piNumDataStreams);
}

GC_ERROR GC_CALLTYPE DevGetDataStreamID(DEV_HANDLE hDevice, uint32_t iIndex, char* sDataStreamID,
                                        size_t* piSize) {
  return Play(&GenTLFunctions::DevGetDataStreamID, hDevice, iIndex, sDataStreamID, piSize);
}

GC_ERROR GC_CALLTYPE DevOpenDataStream(DEV_HANDLE hDevice, const char* sDataStreamID,
                                       DS_HANDLE* phDataStream) {
  return Play(&GenTLFunctions::DevOpenDataStream, hDevice, sDataStreamID, phDataStream);
}

GC_ERROR GC_CALLTYPE DevGetInfo(DEV_HANDLE hDevice, DEVICE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                                void* pBuffer, size_t* piSize) {
  return Play(&GenTLFunctions::DevGetInfo, hDevice, iInfoCmd, piType, pBuffer, piSize);
}

GC_ERROR GC_CALLTYPE DevClose(DEV_HANDLE hDevice) {
  return Play(&GenTLFunctions::DevClose, hDevice);
}

GC_ERROR GC_CALLTYPE DSAnnounceBuffer(DS_HANDLE hDataStream, void* pBuffer, size_t iSize,
                                      void* pPrivate, BUFFER_HANDLE* phBuffer) {
  return Play(&GenTLFunctions::DSAnnounceBuffer, hDataStream, pBuffer, iSize, pPrivate, phBuffer);
}

GC_ERROR GC_CALLTYPE DSAllocAndAnnounceBuffer(DS_HANDLE hDataStream, size_t iSize, void* pPrivate,
                                              BUFFER_HANDLE* phBuffer) {
  return Play(&GenTLFunctions::DSAllocAndAnnounceBuffer, hDataStream, iSize, pPrivate, phBuffer);
}

GC_ERROR GC_CALLTYPE DSFlushQueue(DS_HANDLE hDataStream, ACQ_QUEUE_TYPE iOperation) {
  return Play(&GenTLFunctions::DSFlushQueue, hDataStream, iOperation);
}

GC_ERROR GC_CALLTYPE DSStartAcquisition(DS_HANDLE hDataStream, ACQ_START_FLAGS iStartFlags,
                                        uint64_t iNumToAcquire) {
  return Play(&GenTLFunctions::DSStartAcquisition, hDataStream, iStartFlags, iNumToAcquire);
}

GC_ERROR GC_CALLTYPE DSStopAcquisition(DS_HANDLE hDataStream, ACQ_STOP_FLAGS iStopFlags) {
  return Play(&GenTLFunctions::DSStopAcquisition, hDataStream, iStopFlags);
}

GC_ERROR GC_CALLTYPE DSGetInfo(DS_HANDLE hDataStream, STREAM_INFO_CMD iInfoCmd,
                               INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
  return Play(&GenTLFunctions::DSGetInfo, hDataStream, iInfoCmd, piType, pBuffer, piSize);
}

GC_ERROR GC_CALLTYPE DSGetBufferID(DS_HANDLE hDataStream, uint32_t iIndex,
                                   BUFFER_HANDLE* phBuffer) {
  return Play(&GenTLFunctions::DSGetBufferID, hDataStream, iIndex, phBuffer);
}

GC_ERROR GC_CALLTYPE DSClose(DS_HANDLE hDataStream) {
  return Play(&GenTLFunctions::DSClose, hDataStream);
}

GC_ERROR GC_CALLTYPE DSRevokeBuffer(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, void** ppBuffer,
                                    void** ppPrivate) {
  return Play(&GenTLFunctions::DSRevokeBuffer, hDataStream, hBuffer, ppBuffer, ppPrivate);
}

GC_ERROR GC_CALLTYPE DSQueueBuffer(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer) {
  return Play(&GenTLFunctions::DSQueueBuffer, hDataStream, hBuffer);
}

GC_ERROR GC_CALLTYPE DSGetBufferInfo(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                     BUFFER_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer,
                                     size_t* piSize) {
  return Play(&GenTLFunctions::DSGetBufferInfo, hDataStream, hBuffer, iInfoCmd, piType, pBuffer,
              piSize);
}

GC_ERROR GC_CALLTYPE GCReadPort(PORT_HANDLE hPort, uint64_t iAddress, void* pBuffer,
                                size_t* piSize) {
  return Play(&GenTLFunctions::GCReadPort, hPort, iAddress, pBuffer, piSize);
}

GC_ERROR GC_CALLTYPE GCWritePort(PORT_HANDLE hPort, uint64_t iAddress, const void* pBuffer,
                                 size_t* piSize) {
  return Play(&GenTLFunctions::GCWritePort, hPort, iAddress, pBuffer, piSize);
}

GC_ERROR GC_CALLTYPE GCGetPortURL(PORT_HANDLE hPort, char* sURL, size_t* piSize) {
  return Play(&GenTLFunctions::GCGetPortURL, hPort, sURL, piSize);
}

GC_ERROR GC_CALLTYPE GCGetNumPortURLs(PORT_HANDLE hPort, uint32_t* piNumURLs) {
  return Play(&GenTLFunctions::GCGetNumPortURLs, hPort, piNumURLs);
}

GC_ERROR GC_CALLTYPE GCGetPortInfo(PORT_HANDLE hPort, PORT_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                                   void* pBuffer, size_t* piSize) {
  return Play(&GenTLFunctions::GCGetPortInfo, hPort, iInfoCmd, piType, pBuffer, piSize);
}

GC_ERROR GC_CALLTYPE GCGetPortURLInfo(PORT_HANDLE hPort, uint32_t iURLIndex, URL_INFO_CMD iInfoCmd,
                                      INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
  return Play(&GenTLFunctions::GCGetPortURLInfo, hPort, iURLIndex, iInfoCmd, piType, pBuffer,
              piSize);
}

GC_ERROR GC_CALLTYPE GCReadPortStacked(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY* pEntries,
                                       size_t* piNumEntries) {
  return Play(&GenTLFunctions::GCReadPortStacked, hPort, pEntries, piNumEntries);
}

GC_ERROR GC_CALLTYPE GCWritePortStacked(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY* pEntries,
                                        size_t* piNumEntries) {
  return Play(&GenTLFunctions::GCWritePortStacked, hPort, pEntries, piNumEntries);
}

GC_ERROR GC_CALLTYPE GCRegisterEvent(EVENTSRC_HANDLE hEventSrc, EVENT_TYPE iEventID,
                                     EVENT_HANDLE* phEvent) {
  return Play(&GenTLFunctions::GCRegisterEvent, hEventSrc, iEventID, phEvent);
}

GC_ERROR GC_CALLTYPE GCUnregisterEvent(EVENTSRC_HANDLE hEventSrc, EVENT_TYPE iEventID) {
  return Play(&GenTLFunctions::GCUnregisterEvent, hEventSrc, iEventID);
}

GC_ERROR GC_CALLTYPE EventGetData(EVENT_HANDLE hEvent, void* pBuffer, size_t* piSize,
                                  uint64_t iTimeout) {
  return Play(&GenTLFunctions::EventGetData, hEvent, pBuffer, piSize, iTimeout);
}

GC_ERROR GC_CALLTYPE EventGetDataInfo(EVENT_HANDLE hEvent, const void* pInBuffer, size_t iInSize,
                                      EVENT_DATA_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                                      void* pOutBuffer, size_t* piOutSize) {
  return Play(&GenTLFunctions::EventGetDataInfo, hEvent, pInBuffer, iInSize, iInfoCmd, piType,
              pOutBuffer, piOutSize);
}

GC_ERROR GC_CALLTYPE EventGetInfo(EVENT_HANDLE hEvent, EVENT_INFO_CMD iInfoCmd,
                                  INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
  return Play(&GenTLFunctions::EventGetInfo, hEvent, iInfoCmd, piType, pBuffer, piSize);
}

GC_ERROR GC_CALLTYPE EventFlush(EVENT_HANDLE hEvent) {
  return Play(&GenTLFunctions::EventFlush, hEvent);
}

GC_ERROR GC_CALLTYPE EventKill(EVENT_HANDLE hEvent) {
  return Play(&GenTLFunctions::EventKill, hEvent);
}
