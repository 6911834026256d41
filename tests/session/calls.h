// One random call for each of the 51 functions, with the lines that the log must get for it.
#ifndef VEXTREL_TESTS_SESSION_CALLS_H
#define VEXTREL_TESTS_SESSION_CALLS_H

#include "session/session.h"

namespace vextrel_test::session {

void CallGCInitLib(Session& session);
void CallGCCloseLib(Session& session);

void CallGCGetInfo(Session& session);
void CallGCGetLastError(Session& session);
void CallGCReadPort(Session& session);
void CallGCWritePort(Session& session);
void CallGCGetPortURL(Session& session);
void CallGCGetNumPortURLs(Session& session);
void CallGCGetPortInfo(Session& session);
void CallGCGetPortURLInfo(Session& session);
void CallGCReadPortStacked(Session& session);
void CallGCWritePortStacked(Session& session);

void CallTLOpen(Session& session);
void CallTLClose(Session& session);
void CallTLGetInfo(Session& session);
void CallTLGetNumInterfaces(Session& session);
void CallTLGetInterfaceID(Session& session);
void CallTLGetInterfaceInfo(Session& session);
void CallTLOpenInterface(Session& session);
void CallTLUpdateInterfaceList(Session& session);

void CallIFClose(Session& session);
void CallIFGetInfo(Session& session);
void CallIFGetNumDevices(Session& session);
void CallIFGetDeviceID(Session& session);
void CallIFUpdateDeviceList(Session& session);
void CallIFGetDeviceInfo(Session& session);
void CallIFOpenDevice(Session& session);

void CallDevGetPort(Session& session);
void CallDevGetNumDataStreams(Session& session);
void CallDevGetDataStreamID(Session& session);
void CallDevOpenDataStream(Session& session);
void CallDevGetInfo(Session& session);
void CallDevClose(Session& session);

void CallDSAnnounceBuffer(Session& session);
void CallDSAllocAndAnnounceBuffer(Session& session);
void CallDSFlushQueue(Session& session);
void CallDSStartAcquisition(Session& session);
void CallDSStopAcquisition(Session& session);
void CallDSGetInfo(Session& session);
void CallDSGetBufferID(Session& session);
void CallDSClose(Session& session);
void CallDSRevokeBuffer(Session& session);
void CallDSQueueBuffer(Session& session);
void CallDSGetBufferInfo(Session& session);

void CallGCRegisterEvent(Session& session);
void CallGCUnregisterEvent(Session& session);
void CallEventGetData(Session& session);
void CallEventGetDataInfo(Session& session);
void CallEventGetInfo(Session& session);
void CallEventFlush(Session& session);
void CallEventKill(Session& session);

}  // namespace vextrel_test::session

#endif  // VEXTREL_TESTS_SESSION_CALLS_H
