// SPDX-License-Identifier: MIT
// What GenTL 1.3 to 1.6 added to the interface of gentl.h: functions, their structures, and values
// that gentl.h has no names for.
//
// Usable from C and C++. The conventions of gentl.h for arguments apply here, too.
#ifndef VEXTREL_GENTL_GENTL_NEWER_H
#define VEXTREL_GENTL_GENTL_NEWER_H

#include "gentl/gentl.h"

// NOLINTBEGIN(modernize-use-using, modernize-deprecated-headers): this header is read by C, too.

#ifdef __cplusplus
extern "C" {
#endif

// --- Values -------------------------------------------------------------------------------------

// Of GC_ERROR.
enum {
  GC_ERR_BUFFER_TOO_SMALL = -1016,
  GC_ERR_INVALID_INDEX = -1017,
  GC_ERR_PARSING_CHUNK_DATA = -1018,
  GC_ERR_INVALID_VALUE = -1019,
  GC_ERR_RESOURCE_EXHAUSTED = -1020,
  GC_ERR_OUT_OF_MEMORY = -1021,
  GC_ERR_BUSY = -1022,
  GC_ERR_AMBIGUOUS = -1023
};

// Of INFO_DATATYPE.
enum { INFO_DATATYPE_PTRDIFF = 14 };

// Of TL_INFO_CMD.
enum { TL_INFO_CHAR_ENCODING = 8, TL_INFO_GENTL_VER_MAJOR = 9, TL_INFO_GENTL_VER_MINOR = 10 };

// Of DEVICE_INFO_CMD.
enum {
  DEVICE_INFO_USER_DEFINED_NAME = 6,
  DEVICE_INFO_SERIAL_NUMBER = 7,
  DEVICE_INFO_VERSION = 8,
  DEVICE_INFO_TIMESTAMP_FREQUENCY = 9
};

// Of DEVICE_ACCESS_STATUS.
enum {
  DEVICE_ACCESS_STATUS_BUSY = 4,
  DEVICE_ACCESS_STATUS_OPEN_READWRITE = 5,
  DEVICE_ACCESS_STATUS_OPEN_READONLY = 6
};

// Of STREAM_INFO_CMD.
enum {
  STREAM_INFO_BUF_ALIGNMENT = 13,
  STREAM_INFO_FLOW_TABLE = 14,
  STREAM_INFO_GENDC_PREFETCH_DESCRIPTOR = 15
};

// Of BUFFER_INFO_CMD.
enum {
  BUFFER_INFO_PIXEL_ENDIANNESS = 26,
  BUFFER_INFO_DATA_SIZE = 27,
  BUFFER_INFO_TIMESTAMP_NS = 28,
  BUFFER_INFO_DATA_LARGER_THAN_BUFFER = 29,
  BUFFER_INFO_CONTAINS_CHUNKDATA = 30,
  BUFFER_INFO_IS_COMPOSITE = 31
};

// Of URL_INFO_CMD.
enum {
  URL_INFO_FILE_SHA1_HASH = 6,
  URL_INFO_FILE_REGISTER_ADDRESS = 7,
  URL_INFO_FILE_SIZE = 8,
  URL_INFO_SCHEME = 9,
  URL_INFO_FILENAME = 10
};

// Of EVENT_TYPE.
enum { EVENT_REMOTE_DEVICE = 4, EVENT_MODULE = 5 };

typedef int32_t PAYLOAD_TYPE;
enum { PAYLOAD_TYPE_IMAGE = 1, PAYLOAD_TYPE_MULTI_PART = 10, PAYLOAD_TYPE_GENDC = 11 };

typedef int32_t BUFFER_PART_INFO_CMD;
enum {
  BUFFER_PART_INFO_BASE = 0,
  BUFFER_PART_INFO_DATA_SIZE = 1,
  BUFFER_PART_INFO_DATA_TYPE = 2,
  BUFFER_PART_INFO_DATA_FORMAT = 3,
  BUFFER_PART_INFO_DATA_FORMAT_NAMESPACE = 4,
  BUFFER_PART_INFO_WIDTH = 5,
  BUFFER_PART_INFO_HEIGHT = 6,
  BUFFER_PART_INFO_XOFFSET = 7,
  BUFFER_PART_INFO_YOFFSET = 8,
  BUFFER_PART_INFO_XPADDING = 9,
  BUFFER_PART_INFO_SOURCE_ID = 10,
  BUFFER_PART_INFO_DELIVERED_IMAGEHEIGHT = 11,
  BUFFER_PART_INFO_REGION_ID = 12,
  BUFFER_PART_INFO_DATA_PURPOSE_ID = 13,
  BUFFER_PART_INFO_CUSTOM_ID = 1000
};

// What BUFFER_PART_INFO_DATA_TYPE answers.
typedef int32_t PARTDATATYPE_ID;
enum {
  PART_DATATYPE_UNKNOWN = 0,
  PART_DATATYPE_2D_IMAGE = 1,
  PART_DATATYPE_2D_PLANE_BIPLANAR = 2,
  PART_DATATYPE_2D_PLANE_TRIPLANAR = 3,
  PART_DATATYPE_2D_PLANE_QUADPLANAR = 4,
  PART_DATATYPE_3D_IMAGE = 5,
  PART_DATATYPE_3D_PLANE_BIPLANAR = 6,
  PART_DATATYPE_3D_PLANE_TRIPLANAR = 7,
  PART_DATATYPE_3D_PLANE_QUADPLANAR = 8,
  PART_DATATYPE_CONFIDENCE_MAP = 9,
  PART_DATATYPE_JPEG = 10,
  PART_DATATYPE_JPEG2000 = 11,
  PART_DATATYPE_CUSTOM_ID = 1000
};

typedef int32_t FLOW_INFO_CMD;
enum { FLOW_INFO_SIZE = 0, FLOW_INFO_CUSTOM_ID = 1000 };

typedef int32_t SEGMENT_INFO_CMD;
enum {
  SEGMENT_INFO_BASE = 0,
  SEGMENT_INFO_SIZE = 1,
  SEGMENT_INFO_IS_INCOMPLETE = 2,
  SEGMENT_INFO_SIZE_FILLED = 3,
  SEGMENT_INFO_DATA_SIZE = 4,
  SEGMENT_INFO_CUSTOM_ID = 1000
};

// --- Records ------------------------------------------------------------------------------------

#pragma pack(push, 1)

typedef struct SINGLE_CHUNK_DATA {
  uint64_t ChunkID;
  ptrdiff_t ChunkOffset;  // from the base of the buffer, in bytes
  size_t ChunkLength;     // in bytes
} SINGLE_CHUNK_DATA;

// One query of a stacked query, and its answer.
typedef struct DS_BUFFER_INFO_STACKED {
  BUFFER_INFO_CMD iInfoCmd;
  INFO_DATATYPE iType;
  void* pBuffer;
  size_t iSize;
  GC_ERROR iResult;
} DS_BUFFER_INFO_STACKED;

// The published headers have the result before the type; the standard's text and other headers have
// it after. Producers do either.
typedef struct DS_BUFFER_PART_INFO_STACKED {
  uint32_t iPartIndex;
  BUFFER_PART_INFO_CMD iInfoCmd;
  GC_ERROR iResult;     // or the type
  INFO_DATATYPE iType;  // or the result
  void* pBuffer;
  size_t iSize;
} DS_BUFFER_PART_INFO_STACKED;

#pragma pack(pop)

#if defined(__ELF__)
#pragma GCC visibility push(default)
#endif

// --- 1.3 ----------------------------------------------------------------------------------------

// *piNumChunks is the number of entries that pChunkData has room for on entry, and the number of
// chunks on return. A null pChunkData queries the number only.
GC_ERROR GC_CALLTYPE DSGetBufferChunkData(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                          SINGLE_CHUNK_DATA* pChunkData, size_t* piNumChunks);

// --- 1.4 ----------------------------------------------------------------------------------------

// These open nothing.
GC_ERROR GC_CALLTYPE IFGetParentTL(IF_HANDLE hIface, TL_HANDLE* phSystem);
GC_ERROR GC_CALLTYPE DevGetParentIF(DEV_HANDLE hDevice, IF_HANDLE* phIface);
GC_ERROR GC_CALLTYPE DSGetParentDev(DS_HANDLE hDataStream, DEV_HANDLE* phDevice);

// --- 1.5 ----------------------------------------------------------------------------------------

GC_ERROR GC_CALLTYPE DSGetNumBufferParts(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                         uint32_t* piNumParts);
GC_ERROR GC_CALLTYPE DSGetBufferPartInfo(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                         uint32_t iPartIndex, BUFFER_PART_INFO_CMD iInfoCmd,
                                         INFO_DATATYPE* piType, void* pBuffer, size_t* piSize);

// --- 1.6 ----------------------------------------------------------------------------------------

// ppSegments and piSizes hold iNumSegments addresses and sizes in bytes.
GC_ERROR GC_CALLTYPE DSAnnounceCompositeBuffer(DS_HANDLE hDataStream, size_t iNumSegments,
                                               void** ppSegments, size_t* piSizes, void* pPrivate,
                                               BUFFER_HANDLE* phBuffer);
GC_ERROR GC_CALLTYPE DSGetBufferInfoStacked(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                            DS_BUFFER_INFO_STACKED* pInfoStacked, size_t iNumInfos);
GC_ERROR GC_CALLTYPE DSGetBufferPartInfoStacked(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                                DS_BUFFER_PART_INFO_STACKED* pInfoStacked,
                                                size_t iNumInfos);
GC_ERROR GC_CALLTYPE DSGetNumFlows(DS_HANDLE hDataStream, uint32_t* piNumFlows);
GC_ERROR GC_CALLTYPE DSGetFlowInfo(DS_HANDLE hDataStream, uint32_t iFlowIndex,
                                   FLOW_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer,
                                   size_t* piSize);
GC_ERROR GC_CALLTYPE DSGetNumBufferSegments(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                            uint32_t* piNumSegments);
GC_ERROR GC_CALLTYPE DSGetBufferSegmentInfo(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                            uint32_t iSegmentIndex, SEGMENT_INFO_CMD iInfoCmd,
                                            INFO_DATATYPE* piType, void* pBuffer, size_t* piSize);

#if defined(__ELF__)
#pragma GCC visibility pop
#endif

// NOLINTEND(modernize-use-using, modernize-deprecated-headers)

#ifdef __cplusplus
}  // extern "C"

static_assert(sizeof(SINGLE_CHUNK_DATA) == 24);
static_assert(offsetof(DS_BUFFER_INFO_STACKED, pBuffer) == 8);
static_assert(offsetof(DS_BUFFER_INFO_STACKED, iResult) == 24);
static_assert(sizeof(DS_BUFFER_INFO_STACKED) == 28);
static_assert(offsetof(DS_BUFFER_PART_INFO_STACKED, pBuffer) == 16);
static_assert(sizeof(DS_BUFFER_PART_INFO_STACKED) == 32);
#endif

#endif  // VEXTREL_GENTL_GENTL_NEWER_H
