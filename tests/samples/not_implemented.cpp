// SPDX-License-Identifier: MIT
// The functions of GenTL 1.5 that the sparse producer lacks, exported but not implemented.
#include "gentl/gentl_newer.h"

GC_ERROR GC_CALLTYPE GCGetInfo(TL_INFO_CMD, INFO_DATATYPE*, void*, size_t*) {
  return GC_ERR_NOT_IMPLEMENTED;
}
GC_ERROR GC_CALLTYPE GCGetLastError(GC_ERROR*, char*, size_t*) {
  return GC_ERR_NOT_IMPLEMENTED;
}
GC_ERROR GC_CALLTYPE TLGetInfo(TL_HANDLE, TL_INFO_CMD, INFO_DATATYPE*, void*, size_t*) {
  return GC_ERR_NOT_IMPLEMENTED;
}
GC_ERROR GC_CALLTYPE TLGetInterfaceInfo(TL_HANDLE, const char*, INTERFACE_INFO_CMD, INFO_DATATYPE*,
                                        void*, size_t*) {
  return GC_ERR_NOT_IMPLEMENTED;
}
GC_ERROR GC_CALLTYPE IFGetInfo(IF_HANDLE, INTERFACE_INFO_CMD, INFO_DATATYPE*, void*, size_t*) {
  return GC_ERR_NOT_IMPLEMENTED;
}
GC_ERROR GC_CALLTYPE IFGetDeviceInfo(IF_HANDLE, const char*, DEVICE_INFO_CMD, INFO_DATATYPE*, void*,
                                     size_t*) {
  return GC_ERR_NOT_IMPLEMENTED;
}
GC_ERROR GC_CALLTYPE DevGetInfo(DEV_HANDLE, DEVICE_INFO_CMD, INFO_DATATYPE*, void*, size_t*) {
  return GC_ERR_NOT_IMPLEMENTED;
}
GC_ERROR GC_CALLTYPE DSAllocAndAnnounceBuffer(DS_HANDLE, size_t, void*, BUFFER_HANDLE*) {
  return GC_ERR_NOT_IMPLEMENTED;
}
GC_ERROR GC_CALLTYPE DSGetBufferID(DS_HANDLE, uint32_t, BUFFER_HANDLE*) {
  return GC_ERR_NOT_IMPLEMENTED;
}
GC_ERROR GC_CALLTYPE GCGetNumPortURLs(PORT_HANDLE, uint32_t*) {
  return GC_ERR_NOT_IMPLEMENTED;
}
GC_ERROR GC_CALLTYPE GCGetPortInfo(PORT_HANDLE, PORT_INFO_CMD, INFO_DATATYPE*, void*, size_t*) {
  return GC_ERR_NOT_IMPLEMENTED;
}
GC_ERROR GC_CALLTYPE GCGetPortURLInfo(PORT_HANDLE, uint32_t, URL_INFO_CMD, INFO_DATATYPE*, void*,
                                      size_t*) {
  return GC_ERR_NOT_IMPLEMENTED;
}
GC_ERROR GC_CALLTYPE GCReadPortStacked(PORT_HANDLE, PORT_REGISTER_STACK_ENTRY*, size_t*) {
  return GC_ERR_NOT_IMPLEMENTED;
}
GC_ERROR GC_CALLTYPE GCWritePortStacked(PORT_HANDLE, PORT_REGISTER_STACK_ENTRY*, size_t*) {
  return GC_ERR_NOT_IMPLEMENTED;
}
GC_ERROR GC_CALLTYPE EventGetDataInfo(EVENT_HANDLE, const void*, size_t, EVENT_DATA_INFO_CMD,
                                      INFO_DATATYPE*, void*, size_t*) {
  return GC_ERR_NOT_IMPLEMENTED;
}
GC_ERROR GC_CALLTYPE EventGetInfo(EVENT_HANDLE, EVENT_INFO_CMD, INFO_DATATYPE*, void*, size_t*) {
  return GC_ERR_NOT_IMPLEMENTED;
}
GC_ERROR GC_CALLTYPE EventFlush(EVENT_HANDLE) {
  return GC_ERR_NOT_IMPLEMENTED;
}
GC_ERROR GC_CALLTYPE EventKill(EVENT_HANDLE) {
  return GC_ERR_NOT_IMPLEMENTED;
}
GC_ERROR GC_CALLTYPE DSGetBufferChunkData(DS_HANDLE, BUFFER_HANDLE, SINGLE_CHUNK_DATA*, size_t*) {
  return GC_ERR_NOT_IMPLEMENTED;
}
GC_ERROR GC_CALLTYPE IFGetParentTL(IF_HANDLE, TL_HANDLE*) {
  return GC_ERR_NOT_IMPLEMENTED;
}
GC_ERROR GC_CALLTYPE DevGetParentIF(DEV_HANDLE, IF_HANDLE*) {
  return GC_ERR_NOT_IMPLEMENTED;
}
GC_ERROR GC_CALLTYPE DSGetParentDev(DS_HANDLE, DEV_HANDLE*) {
  return GC_ERR_NOT_IMPLEMENTED;
}
GC_ERROR GC_CALLTYPE DSGetNumBufferParts(DS_HANDLE, BUFFER_HANDLE, uint32_t*) {
  return GC_ERR_NOT_IMPLEMENTED;
}
GC_ERROR GC_CALLTYPE DSGetBufferPartInfo(DS_HANDLE, BUFFER_HANDLE, uint32_t, BUFFER_PART_INFO_CMD,
                                         INFO_DATATYPE*, void*, size_t*) {
  return GC_ERR_NOT_IMPLEMENTED;
}
