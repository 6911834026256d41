// SPDX-License-Identifier: MIT
// The GenTL C interface as Vextrel traces it: types, constants and the 51 functions.
//
// Usable from C and C++. All enumerations are 32-bit signed integers, all handles are opaque
// pointers compared by value, all text is 8-bit and NUL-terminated. Unless a function says
// otherwise, a size argument is the buffer's size in bytes on entry and the size used or needed on
// return, and a null buffer queries the size only.
#ifndef VEXTREL_GENTL_GENTL_H
#define VEXTREL_GENTL_GENTL_H

// NOLINTBEGIN(modernize-use-using, modernize-deprecated-headers): this header is read by C, too.

#include <stddef.h>
#include <stdint.h>

#if defined(_WIN32)
#define GC_CALLTYPE __stdcall
#else
#define GC_CALLTYPE
#endif

#ifdef __cplusplus
extern "C" {
#endif

// --- Handles ------------------------------------------------------------------------------------

typedef void* TL_HANDLE;
typedef void* IF_HANDLE;
typedef void* DEV_HANDLE;
typedef void* DS_HANDLE;
typedef void* BUFFER_HANDLE;
typedef void* PORT_HANDLE;
typedef void* EVENTSRC_HANDLE;
typedef void* EVENT_HANDLE;

typedef uint8_t bool8_t;

// --- Results ------------------------------------------------------------------------------------

typedef int32_t GC_ERROR;
enum {
  GC_ERR_SUCCESS = 0,
  GC_ERR_ERROR = -1001,
  GC_ERR_NOT_INITIALIZED = -1002,
  GC_ERR_NOT_IMPLEMENTED = -1003,
  GC_ERR_RESOURCE_IN_USE = -1004,
  GC_ERR_ACCESS_DENIED = -1005,
  GC_ERR_INVALID_HANDLE = -1006,
  GC_ERR_INVALID_ID = -1007,
  GC_ERR_NO_DATA = -1008,
  GC_ERR_INVALID_PARAMETER = -1009,
  GC_ERR_IO = -1010,
  GC_ERR_TIMEOUT = -1011,
  GC_ERR_ABORT = -1012,
  GC_ERR_INVALID_BUFFER = -1013,
  GC_ERR_NOT_AVAILABLE = -1014,
  GC_ERR_INVALID_ADDRESS = -1015,
  GC_ERR_CUSTOM_ID = -10000
};

// --- Enumerations -------------------------------------------------------------------------------

typedef int32_t INFO_DATATYPE;
enum {
  INFO_DATATYPE_UNKNOWN = 0,
  INFO_DATATYPE_STRING = 1,
  INFO_DATATYPE_STRINGLIST = 2,
  INFO_DATATYPE_INT16 = 3,
  INFO_DATATYPE_UINT16 = 4,
  INFO_DATATYPE_INT32 = 5,
  INFO_DATATYPE_UINT32 = 6,
  INFO_DATATYPE_INT64 = 7,
  INFO_DATATYPE_UINT64 = 8,
  INFO_DATATYPE_FLOAT64 = 9,
  INFO_DATATYPE_PTR = 10,
  INFO_DATATYPE_BOOL8 = 11,
  INFO_DATATYPE_SIZET = 12,
  INFO_DATATYPE_BUFFER = 13
};

typedef int32_t TL_INFO_CMD;
enum {
  TL_INFO_ID = 0,
  TL_INFO_VENDOR = 1,
  TL_INFO_MODEL = 2,
  TL_INFO_VERSION = 3,
  TL_INFO_TLTYPE = 4,
  TL_INFO_NAME = 5,
  TL_INFO_PATHNAME = 6,
  TL_INFO_DISPLAYNAME = 7,
  TL_INFO_CUSTOM_ID = 1000
};

typedef int32_t INTERFACE_INFO_CMD;
enum {
  INTERFACE_INFO_ID = 0,
  INTERFACE_INFO_DISPLAYNAME = 1,
  INTERFACE_INFO_TLTYPE = 2,
  INTERFACE_INFO_CUSTOM_ID = 1000
};

typedef int32_t DEVICE_INFO_CMD;
enum {
  DEVICE_INFO_ID = 0,
  DEVICE_INFO_VENDOR = 1,
  DEVICE_INFO_MODEL = 2,
  DEVICE_INFO_TLTYPE = 3,
  DEVICE_INFO_DISPLAYNAME = 4,
  DEVICE_INFO_ACCESS_STATUS = 5,
  DEVICE_INFO_CUSTOM_ID = 1000
};

typedef int32_t DEVICE_ACCESS_FLAGS;
enum {
  DEVICE_ACCESS_UNKNOWN = 0,
  DEVICE_ACCESS_NONE = 1,
  DEVICE_ACCESS_READONLY = 2,
  DEVICE_ACCESS_CONTROL = 3,
  DEVICE_ACCESS_EXCLUSIVE = 4
};

typedef int32_t DEVICE_ACCESS_STATUS;
enum {
  DEVICE_ACCESS_STATUS_UNKNOWN = 0,
  DEVICE_ACCESS_STATUS_READWRITE = 1,
  DEVICE_ACCESS_STATUS_READONLY = 2,
  DEVICE_ACCESS_STATUS_NOACCESS = 3,
  DEVICE_ACCESS_STATUS_CUSTOM_ID = 1000
};

typedef int32_t STREAM_INFO_CMD;
enum {
  STREAM_INFO_ID = 0,
  STREAM_INFO_NUM_DELIVERED = 1,
  STREAM_INFO_NUM_UNDERRUN = 2,
  STREAM_INFO_NUM_ANNOUNCED = 3,
  STREAM_INFO_NUM_QUEUED = 4,
  STREAM_INFO_NUM_AWAIT_DELIVERY = 5,
  STREAM_INFO_NUM_STARTED = 6,
  STREAM_INFO_PAYLOAD_SIZE = 7,
  STREAM_INFO_IS_GRABBING = 8,
  STREAM_INFO_DEFINES_PAYLOADSIZE = 9,
  STREAM_INFO_TLTYPE = 10,
  STREAM_INFO_NUM_CHUNKS_MAX = 11,
  STREAM_INFO_NUM_ANNOUNCE_MIN = 12,
  STREAM_INFO_CUSTOM_ID = 1000
};

typedef int32_t BUFFER_INFO_CMD;
enum {
  BUFFER_INFO_BASE = 0,
  BUFFER_INFO_SIZE = 1,
  BUFFER_INFO_USER_PTR = 2,
  BUFFER_INFO_TIMESTAMP = 3,
  BUFFER_INFO_NEW_DATA = 4,
  BUFFER_INFO_IS_QUEUED = 5,
  BUFFER_INFO_IS_ACQUIRING = 6,
  BUFFER_INFO_IS_INCOMPLETE = 7,
  BUFFER_INFO_TLTYPE = 8,
  BUFFER_INFO_SIZE_FILLED = 9,
  BUFFER_INFO_WIDTH = 10,
  BUFFER_INFO_HEIGHT = 11,
  BUFFER_INFO_XOFFSET = 12,
  BUFFER_INFO_YOFFSET = 13,
  BUFFER_INFO_XPADDING = 14,
  BUFFER_INFO_YPADDING = 15,
  BUFFER_INFO_FRAMEID = 16,
  BUFFER_INFO_IMAGEPRESENT = 17,
  BUFFER_INFO_IMAGEOFFSET = 18,
  BUFFER_INFO_PAYLOADTYPE = 19,
  BUFFER_INFO_PIXELFORMAT = 20,
  BUFFER_INFO_PIXELFORMAT_NAMESPACE = 21,
  BUFFER_INFO_DELIVERED_IMAGEHEIGHT = 22,
  BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE = 23,
  BUFFER_INFO_CHUNKLAYOUTID = 24,
  BUFFER_INFO_FILENAME = 25,
  BUFFER_INFO_CUSTOM_ID = 1000
};

typedef int32_t ACQ_START_FLAGS;
enum { ACQ_START_FLAGS_DEFAULT = 0, ACQ_START_FLAGS_CUSTOM_ID = 1000 };

typedef int32_t ACQ_STOP_FLAGS;
enum { ACQ_STOP_FLAGS_DEFAULT = 0, ACQ_STOP_FLAG_KILL = 1, ACQ_STOP_CUSTOM_ID = 1000 };

typedef int32_t ACQ_QUEUE_TYPE;
enum {
  ACQ_QUEUE_INPUT_TO_OUTPUT = 0,
  ACQ_QUEUE_OUTPUT_DISCARD = 1,
  ACQ_QUEUE_ALL_TO_INPUT = 2,
  ACQ_QUEUE_UNQUEUED_TO_INPUT = 3,
  ACQ_QUEUE_ALL_DISCARD = 4,
  ACQ_QUEUE_CUSTOM_ID = 1000
};

typedef int32_t URL_INFO_CMD;
enum {
  URL_INFO_URL = 0,
  URL_INFO_SCHEMA_VER_MAJOR = 1,
  URL_INFO_SCHEMA_VER_MINOR = 2,
  URL_INFO_FILE_VER_MAJOR = 3,
  URL_INFO_FILE_VER_MINOR = 4,
  URL_INFO_FILE_VER_SUBMINOR = 5,
  URL_INFO_CUSTOM_ID = 1000
};

typedef int32_t PORT_INFO_CMD;
enum {
  PORT_INFO_ID = 0,
  PORT_INFO_VENDOR = 1,
  PORT_INFO_MODEL = 2,
  PORT_INFO_TLTYPE = 3,
  PORT_INFO_MODULE = 4,
  PORT_INFO_LITTLE_ENDIAN = 5,
  PORT_INFO_BIG_ENDIAN = 6,
  PORT_INFO_ACCESS_READ = 7,
  PORT_INFO_ACCESS_WRITE = 8,
  PORT_INFO_ACCESS_NA = 9,
  PORT_INFO_ACCESS_NI = 10,
  PORT_INFO_VERSION = 11,
  PORT_INFO_PORTNAME = 12,
  PORT_INFO_CUSTOM_ID = 1000
};

typedef int32_t EVENT_TYPE;
enum {
  EVENT_ERROR = 0,
  EVENT_NEW_BUFFER = 1,
  EVENT_FEATURE_INVALIDATE = 2,
  EVENT_FEATURE_CHANGE = 3,
  EVENT_FEATURE_DEVEVENT = 4,
  EVENT_CUSTOM_ID = 1000
};

typedef int32_t EVENT_INFO_CMD;
enum {
  EVENT_EVENT_TYPE = 0,
  EVENT_NUM_IN_QUEUE = 1,
  EVENT_NUM_FIRED = 2,
  EVENT_SIZE_MAX = 3,
  EVENT_INFO_DATA_SIZE_MAX = 4,
  EVENT_INFO_CUSTOM_ID = 1000
};

typedef int32_t EVENT_DATA_INFO_CMD;
enum { EVENT_DATA_ID = 0, EVENT_DATA_VALUE = 1, EVENT_DATA_NUMID = 2, EVENT_DATA_CUSTOM_ID = 1000 };

// --- Records ------------------------------------------------------------------------------------

// One register access of a stacked port call.
typedef struct PORT_REGISTER_STACK_ENTRY {
  uint64_t Address;  // register address
  void* pBuffer;     // data to write, or room for the data read
  size_t Size;       // number of bytes
} PORT_REGISTER_STACK_ENTRY;

// Exported even by a module that is compiled with hidden visibility.
#if defined(__ELF__)
#pragma GCC visibility push(default)
#endif

// --- Library ------------------------------------------------------------------------------------

GC_ERROR GC_CALLTYPE GCGetInfo(TL_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer,
                               size_t* piSize);
GC_ERROR GC_CALLTYPE GCGetLastError(GC_ERROR* piErrorCode, char* sErrText, size_t* piSize);
GC_ERROR GC_CALLTYPE GCInitLib(void);
GC_ERROR GC_CALLTYPE GCCloseLib(void);

// --- Transport layer ----------------------------------------------------------------------------

GC_ERROR GC_CALLTYPE TLOpen(TL_HANDLE* phTL);
GC_ERROR GC_CALLTYPE TLClose(TL_HANDLE hTL);
GC_ERROR GC_CALLTYPE TLGetInfo(TL_HANDLE hTL, TL_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                               void* pBuffer, size_t* piSize);
GC_ERROR GC_CALLTYPE TLGetNumInterfaces(TL_HANDLE hTL, uint32_t* piNumIfaces);
GC_ERROR GC_CALLTYPE TLGetInterfaceID(TL_HANDLE hTL, uint32_t iIndex, char* sID, size_t* piSize);
GC_ERROR GC_CALLTYPE TLGetInterfaceInfo(TL_HANDLE hTL, const char* sIfaceID,
                                        INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                                        void* pBuffer, size_t* piSize);
GC_ERROR GC_CALLTYPE TLOpenInterface(TL_HANDLE hTL, const char* sIfaceID, IF_HANDLE* phIface);
// iTimeout in milliseconds; pbChanged may be null.
GC_ERROR GC_CALLTYPE TLUpdateInterfaceList(TL_HANDLE hTL, bool8_t* pbChanged, uint64_t iTimeout);

// --- Interface ----------------------------------------------------------------------------------

GC_ERROR GC_CALLTYPE IFClose(IF_HANDLE hIface);
GC_ERROR GC_CALLTYPE IFGetInfo(IF_HANDLE hIface, INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                               void* pBuffer, size_t* piSize);
GC_ERROR GC_CALLTYPE IFGetNumDevices(IF_HANDLE hIface, uint32_t* piNumDevices);
GC_ERROR GC_CALLTYPE IFGetDeviceID(IF_HANDLE hIface, uint32_t iIndex, char* sIDeviceID,
                                   size_t* piSize);
// iTimeout in milliseconds; pbChanged may be null.
GC_ERROR GC_CALLTYPE IFUpdateDeviceList(IF_HANDLE hIface, bool8_t* pbChanged, uint64_t iTimeout);
GC_ERROR GC_CALLTYPE IFGetDeviceInfo(IF_HANDLE hIface, const char* sDeviceID,
                                     DEVICE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer,
                                     size_t* piSize);
GC_ERROR GC_CALLTYPE IFOpenDevice(IF_HANDLE hIface, const char* sDeviceID,
                                  DEVICE_ACCESS_FLAGS iOpenFlags, DEV_HANDLE* phDevice);

// --- Device -------------------------------------------------------------------------------------

GC_ERROR GC_CALLTYPE DevGetPort(DEV_HANDLE hDevice, PORT_HANDLE* phRemoteDevice);
GC_ERROR GC_CALLTYPE DevGetNumDataStreams(DEV_HANDLE hDevice, uint32_t* piNumDataStreams);
GC_ERROR GC_CALLTYPE DevGetDataStreamID(DEV_HANDLE hDevice, uint32_t iIndex, char* sDataStreamID,
                                        size_t* piSize);
GC_ERROR GC_CALLTYPE DevOpenDataStream(DEV_HANDLE hDevice, const char* sDataStreamID,
                                       DS_HANDLE* phDataStream);
GC_ERROR GC_CALLTYPE DevGetInfo(DEV_HANDLE hDevice, DEVICE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                                void* pBuffer, size_t* piSize);
GC_ERROR GC_CALLTYPE DevClose(DEV_HANDLE hDevice);

// --- Data stream --------------------------------------------------------------------------------

GC_ERROR GC_CALLTYPE DSAnnounceBuffer(DS_HANDLE hDataStream, void* pBuffer, size_t iSize,
                                      void* pPrivate, BUFFER_HANDLE* phBuffer);
GC_ERROR GC_CALLTYPE DSAllocAndAnnounceBuffer(DS_HANDLE hDataStream, size_t iSize, void* pPrivate,
                                              BUFFER_HANDLE* phBuffer);
GC_ERROR GC_CALLTYPE DSFlushQueue(DS_HANDLE hDataStream, ACQ_QUEUE_TYPE iOperation);
GC_ERROR GC_CALLTYPE DSStartAcquisition(DS_HANDLE hDataStream, ACQ_START_FLAGS iStartFlags,
                                        uint64_t iNumToAcquire);
GC_ERROR GC_CALLTYPE DSStopAcquisition(DS_HANDLE hDataStream, ACQ_STOP_FLAGS iStopFlags);
GC_ERROR GC_CALLTYPE DSGetInfo(DS_HANDLE hDataStream, STREAM_INFO_CMD iInfoCmd,
                               INFO_DATATYPE* piType, void* pBuffer, size_t* piSize);
GC_ERROR GC_CALLTYPE DSGetBufferID(DS_HANDLE hDataStream, uint32_t iIndex, BUFFER_HANDLE* phBuffer);
GC_ERROR GC_CALLTYPE DSClose(DS_HANDLE hDataStream);
// ppBuffer and ppPrivate may be null.
GC_ERROR GC_CALLTYPE DSRevokeBuffer(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, void** ppBuffer,
                                    void** ppPrivate);
GC_ERROR GC_CALLTYPE DSQueueBuffer(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer);
GC_ERROR GC_CALLTYPE DSGetBufferInfo(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                     BUFFER_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer,
                                     size_t* piSize);

// --- Port ---------------------------------------------------------------------------------------

GC_ERROR GC_CALLTYPE GCReadPort(PORT_HANDLE hPort, uint64_t iAddress, void* pBuffer,
                                size_t* piSize);
GC_ERROR GC_CALLTYPE GCWritePort(PORT_HANDLE hPort, uint64_t iAddress, const void* pBuffer,
                                 size_t* piSize);
GC_ERROR GC_CALLTYPE GCGetPortURL(PORT_HANDLE hPort, char* sURL, size_t* piSize);
GC_ERROR GC_CALLTYPE GCGetNumPortURLs(PORT_HANDLE hPort, uint32_t* piNumURLs);
GC_ERROR GC_CALLTYPE GCGetPortInfo(PORT_HANDLE hPort, PORT_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                                   void* pBuffer, size_t* piSize);
GC_ERROR GC_CALLTYPE GCGetPortURLInfo(PORT_HANDLE hPort, uint32_t iURLIndex, URL_INFO_CMD iInfoCmd,
                                      INFO_DATATYPE* piType, void* pBuffer, size_t* piSize);
// *piNumEntries is the number of entries on entry, and the number completed on return.
GC_ERROR GC_CALLTYPE GCReadPortStacked(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY* pEntries,
                                       size_t* piNumEntries);
GC_ERROR GC_CALLTYPE GCWritePortStacked(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY* pEntries,
                                        size_t* piNumEntries);

// --- Events -------------------------------------------------------------------------------------

GC_ERROR GC_CALLTYPE GCRegisterEvent(EVENTSRC_HANDLE hEventSrc, EVENT_TYPE iEventID,
                                     EVENT_HANDLE* phEvent);
GC_ERROR GC_CALLTYPE GCUnregisterEvent(EVENTSRC_HANDLE hEventSrc, EVENT_TYPE iEventID);
// iTimeout in milliseconds; all bits set waits forever.
GC_ERROR GC_CALLTYPE EventGetData(EVENT_HANDLE hEvent, void* pBuffer, size_t* piSize,
                                  uint64_t iTimeout);
GC_ERROR GC_CALLTYPE EventGetDataInfo(EVENT_HANDLE hEvent, const void* pInBuffer, size_t iInSize,
                                      EVENT_DATA_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                                      void* pOutBuffer, size_t* piOutSize);
GC_ERROR GC_CALLTYPE EventGetInfo(EVENT_HANDLE hEvent, EVENT_INFO_CMD iInfoCmd,
                                  INFO_DATATYPE* piType, void* pBuffer, size_t* piSize);
GC_ERROR GC_CALLTYPE EventFlush(EVENT_HANDLE hEvent);
GC_ERROR GC_CALLTYPE EventKill(EVENT_HANDLE hEvent);

#if defined(__ELF__)
#pragma GCC visibility pop
#endif

// NOLINTEND(modernize-use-using, modernize-deprecated-headers)

#ifdef __cplusplus
}  // extern "C"

static_assert(sizeof(void*) == 8, "Vextrel traces 64-bit producers only");
static_assert(offsetof(PORT_REGISTER_STACK_ENTRY, Address) == 0);
static_assert(offsetof(PORT_REGISTER_STACK_ENTRY, pBuffer) == 8);
static_assert(offsetof(PORT_REGISTER_STACK_ENTRY, Size) == 16);
static_assert(sizeof(PORT_REGISTER_STACK_ENTRY) == 24);
#else
_Static_assert(sizeof(PORT_REGISTER_STACK_ENTRY) == 24, "three 64-bit fields without padding");
#endif

#endif  // VEXTREL_GENTL_GENTL_H
