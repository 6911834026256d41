/* The GenTL header as a C consumer uses it: it compiles as C11, and every function has the type
   that consumers and producers agree on. */
#include "gentl/gentl.h"

#define CHECK_TYPE(function, ...)                                                                  \
  _Static_assert(_Generic(&(function), GC_ERROR(GC_CALLTYPE*)(__VA_ARGS__) : 1, default : 0) == 1, \
                 #function)

CHECK_TYPE(GCGetInfo, TL_INFO_CMD, INFO_DATATYPE*, void*, size_t*);
CHECK_TYPE(GCGetLastError, GC_ERROR*, char*, size_t*);
CHECK_TYPE(GCInitLib, void);
CHECK_TYPE(GCCloseLib, void);
CHECK_TYPE(TLOpen, TL_HANDLE*);
CHECK_TYPE(TLClose, TL_HANDLE);
CHECK_TYPE(TLGetInfo, TL_HANDLE, TL_INFO_CMD, INFO_DATATYPE*, void*, size_t*);
CHECK_TYPE(TLGetNumInterfaces, TL_HANDLE, uint32_t*);
CHECK_TYPE(TLGetInterfaceID, TL_HANDLE, uint32_t, char*, size_t*);
CHECK_TYPE(TLGetInterfaceInfo, TL_HANDLE, const char*, INTERFACE_INFO_CMD, INFO_DATATYPE*, void*,
           size_t*);
CHECK_TYPE(TLOpenInterface, TL_HANDLE, const char*, IF_HANDLE*);
CHECK_TYPE(TLUpdateInterfaceList, TL_HANDLE, bool8_t*, uint64_t);
CHECK_TYPE(IFClose, IF_HANDLE);
CHECK_TYPE(IFGetInfo, IF_HANDLE, INTERFACE_INFO_CMD, INFO_DATATYPE*, void*, size_t*);
CHECK_TYPE(IFGetNumDevices, IF_HANDLE, uint32_t*);
CHECK_TYPE(IFGetDeviceID, IF_HANDLE, uint32_t, char*, size_t*);
CHECK_TYPE(IFUpdateDeviceList, IF_HANDLE, bool8_t*, uint64_t);
CHECK_TYPE(IFGetDeviceInfo, IF_HANDLE, const char*, DEVICE_INFO_CMD, INFO_DATATYPE*, void*,
           size_t*);
CHECK_TYPE(IFOpenDevice, IF_HANDLE, const char*, DEVICE_ACCESS_FLAGS, DEV_HANDLE*);
CHECK_TYPE(DevGetPort, DEV_HANDLE, PORT_HANDLE*);
CHECK_TYPE(DevGetNumDataStreams, DEV_HANDLE, uint32_t*);
CHECK_TYPE(DevGetDataStreamID, DEV_HANDLE, uint32_t, char*, size_t*);
CHECK_TYPE(DevOpenDataStream, DEV_HANDLE, const char*, DS_HANDLE*);
CHECK_TYPE(DevGetInfo, DEV_HANDLE, DEVICE_INFO_CMD, INFO_DATATYPE*, void*, size_t*);
CHECK_TYPE(DevClose, DEV_HANDLE);
CHECK_TYPE(DSAnnounceBuffer, DS_HANDLE, void*, size_t, void*, BUFFER_HANDLE*);
CHECK_TYPE(DSAllocAndAnnounceBuffer, DS_HANDLE, size_t, void*, BUFFER_HANDLE*);
CHECK_TYPE(DSFlushQueue, DS_HANDLE, ACQ_QUEUE_TYPE);
CHECK_TYPE(DSStartAcquisition, DS_HANDLE, ACQ_START_FLAGS, uint64_t);
CHECK_TYPE(DSStopAcquisition, DS_HANDLE, ACQ_STOP_FLAGS);
CHECK_TYPE(DSGetInfo, DS_HANDLE, STREAM_INFO_CMD, INFO_DATATYPE*, void*, size_t*);
CHECK_TYPE(DSGetBufferID, DS_HANDLE, uint32_t, BUFFER_HANDLE*);
CHECK_TYPE(DSClose, DS_HANDLE);
CHECK_TYPE(DSRevokeBuffer, DS_HANDLE, BUFFER_HANDLE, void**, void**);
CHECK_TYPE(DSQueueBuffer, DS_HANDLE, BUFFER_HANDLE);
CHECK_TYPE(DSGetBufferInfo, DS_HANDLE, BUFFER_HANDLE, BUFFER_INFO_CMD, INFO_DATATYPE*, void*,
           size_t*);
CHECK_TYPE(GCReadPort, PORT_HANDLE, uint64_t, void*, size_t*);
CHECK_TYPE(GCWritePort, PORT_HANDLE, uint64_t, const void*, size_t*);
CHECK_TYPE(GCGetPortURL, PORT_HANDLE, char*, size_t*);
CHECK_TYPE(GCGetNumPortURLs, PORT_HANDLE, uint32_t*);
CHECK_TYPE(GCGetPortInfo, PORT_HANDLE, PORT_INFO_CMD, INFO_DATATYPE*, void*, size_t*);
CHECK_TYPE(GCGetPortURLInfo, PORT_HANDLE, uint32_t, URL_INFO_CMD, INFO_DATATYPE*, void*, size_t*);
CHECK_TYPE(GCReadPortStacked, PORT_HANDLE, PORT_REGISTER_STACK_ENTRY*, size_t*);
CHECK_TYPE(GCWritePortStacked, PORT_HANDLE, PORT_REGISTER_STACK_ENTRY*, size_t*);
CHECK_TYPE(GCRegisterEvent, EVENTSRC_HANDLE, EVENT_TYPE, EVENT_HANDLE*);
CHECK_TYPE(GCUnregisterEvent, EVENTSRC_HANDLE, EVENT_TYPE);
CHECK_TYPE(EventGetData, EVENT_HANDLE, void*, size_t*, uint64_t);
CHECK_TYPE(EventGetDataInfo, EVENT_HANDLE, const void*, size_t, EVENT_DATA_INFO_CMD, INFO_DATATYPE*,
           void*, size_t*);
CHECK_TYPE(EventGetInfo, EVENT_HANDLE, EVENT_INFO_CMD, INFO_DATATYPE*, void*, size_t*);
CHECK_TYPE(EventFlush, EVENT_HANDLE);
CHECK_TYPE(EventKill, EVENT_HANDLE);

#define CHECK_ENUMERATION(type) \
  _Static_assert(sizeof(type) == 4 && (type)-1 < 0, #type " is 32 bits wide and signed")

CHECK_ENUMERATION(GC_ERROR);
CHECK_ENUMERATION(INFO_DATATYPE);
CHECK_ENUMERATION(TL_INFO_CMD);
CHECK_ENUMERATION(INTERFACE_INFO_CMD);
CHECK_ENUMERATION(DEVICE_INFO_CMD);
CHECK_ENUMERATION(DEVICE_ACCESS_FLAGS);
CHECK_ENUMERATION(DEVICE_ACCESS_STATUS);
CHECK_ENUMERATION(STREAM_INFO_CMD);
CHECK_ENUMERATION(BUFFER_INFO_CMD);
CHECK_ENUMERATION(ACQ_START_FLAGS);
CHECK_ENUMERATION(ACQ_STOP_FLAGS);
CHECK_ENUMERATION(ACQ_QUEUE_TYPE);
CHECK_ENUMERATION(URL_INFO_CMD);
CHECK_ENUMERATION(PORT_INFO_CMD);
CHECK_ENUMERATION(EVENT_TYPE);
CHECK_ENUMERATION(EVENT_INFO_CMD);
CHECK_ENUMERATION(EVENT_DATA_INFO_CMD);

#define CHECK_HANDLE(type) \
  _Static_assert(sizeof(type) == sizeof(void*), #type " is as wide as a pointer")

CHECK_HANDLE(TL_HANDLE);
CHECK_HANDLE(IF_HANDLE);
CHECK_HANDLE(DEV_HANDLE);
CHECK_HANDLE(DS_HANDLE);
CHECK_HANDLE(BUFFER_HANDLE);
CHECK_HANDLE(PORT_HANDLE);
CHECK_HANDLE(EVENTSRC_HANDLE);
CHECK_HANDLE(EVENT_HANDLE);

_Static_assert(sizeof(bool8_t) == 1, "8 bits");
_Static_assert(offsetof(PORT_REGISTER_STACK_ENTRY, Address) == 0, "first");
_Static_assert(offsetof(PORT_REGISTER_STACK_ENTRY, pBuffer) == 8, "second");
_Static_assert(offsetof(PORT_REGISTER_STACK_ENTRY, Size) == 16, "third");
_Static_assert(sizeof(PORT_REGISTER_STACK_ENTRY) == 24, "without padding");

int main(void) {
  return 0;
}
