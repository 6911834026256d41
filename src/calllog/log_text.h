// SPDX-License-Identifier: MIT
// The text of the call log: every line that Vextrel writes, exactly once and under a name. This is
// also the log's reference for its readers.
//
// The log is an interface: people and scripts read it. Whatever writes a log or reads one back is
// built from this file, so neither can change without the other.
//
// A call's line is `RESULT=Function(arguments)`. An input is `label=value`. An output is
// `0xPOINTER->(label=value)`: where it is, and what it holds after the call. "Kept" refers to the
// numbered list in docs/design.md.
//   %p             sixteen upper-case hexadecimal digits
//   %u %lu %x %d   32 bits: a 64-bit value shows its low half
//   %llx %llu      64 bits
//   %s             a value's name (value_names.h), an info value (info_rendering.h), a byte dump
//                  (byte_dump.h), or text; "NULL" for text that isn't there
// In seven lines (Kept: 31 to 37), a value appears in a place that isn't meant for it; the comment
// on each line says what it really shows. A conversion that gets no value shows 0, and a null
// pointer under a %s that isn't meant for it shows "(null)". Widths, prefixes, commas, parentheses,
// and labels are irregular in other lines, too (Kept: 38 to 42).
#ifndef VEXTREL_CALLLOG_LOG_TEXT_H
#define VEXTREL_CALLLOG_LOG_TEXT_H

#include <array>
#include <string_view>

#include "calllog/checked_format.h"

namespace vextrel {

// One line for each call, at INFO.
namespace line {

// The library.

inline constexpr auto kGCGetInfo =
    "%s=GCGetInfo(iInfoCmd=%s, 0x%p->(iType=%s), Buffer=%s, 0x%p->(iSize=%u))"_line;
// Kept: 31. piErrorCode isn't passed, so each later value moves up a place. What the line shows:
// `0x%p->(ErrorCode=` the address of the error code's name, `ErrorCode=%s` the error text,
// `0x%p->(pErrorText=` the address of the error text or of "NULL", `pErrorText=%s` the characters
// at piSize, `0x%p->(iSize=` the size, `iSize=%u` 0.
inline constexpr auto kGCGetLastError =
    "%s=GCGetLastError(0x%p->(ErrorCode=%s), 0x%p->(pErrorText=%s), 0x%p->(iSize=%u))"_line;
inline constexpr auto kGCInitLib = "%s=GCInitLib(void)"_line;
inline constexpr auto kGCCloseLib = "%s=GCCloseLib(void)"_line;

// The transport layer.

inline constexpr auto kTLOpen = "%s=TLOpen(0x%p->(pHandle=0x%p))"_line;
inline constexpr auto kTLClose = "%s=TLClose(hTL=0x%p)"_line;
// The handle has no 0x.
inline constexpr auto kTLGetInfo =
    "%s=TLGetInfo(hTL=%p, iInfoCmd=%s, 0x%p->(iType=%s), 0x%p->(Buffer=%s), 0x%p->(iSize=%u))"_line;
// The count is decimal behind its 0x.
inline constexpr auto kTLGetNumInterfaces =
    "%s=TLGetNumInterfaces(hTL=0x%p, 0x%p->(iNumInterfaces=0x%u))"_line;
inline constexpr auto kTLGetInterfaceID =
    "%s=TLGetInterfaceID(hTL=0x%p, iIndex=%u, 0x%p->(Buffer=%s), 0x%p->(iSize=%u))"_line;
// Kept: 35. pBuffer isn't passed, so each later value moves up a place. What the line shows:
// `0x%p->(Buffer=` the address of the rendered value, `Buffer=%s` the bytes at piSize,
// `0x%p->(iSize=` the size, `iSize=%u` 0.
inline constexpr auto kTLGetInterfaceInfo =
    "%s=TLGetInterfaceInfo(hTL=0x%p, 0x%p->(sInterfaceName=%s), iCmd=%s, 0x%p->(iType=%s), "
    "0x%p->(Buffer=%s), 0x%p->(iSize=%u))"_line;
// The interface's handle has no 0x.
inline constexpr auto kTLOpenInterface =
    "%s=TLOpenInterface(hTL=0x%p, 0x%p->(sInterfaceName=%s), 0x%p->(hInterface=%p))"_line;
inline constexpr auto kTLUpdateInterfaceList =
    "%s=TLUpdateInterfaceList(hTL=0x%p, 0x%p->(bHasChanged=%d), iTimeout=%lu)"_line;
// If the output pointer is null.
inline constexpr auto kTLUpdateInterfaceListWithoutOutput =
    "%s=TLUpdateInterfaceList(hTL=0x%p, 0x%p, iTimeout=%lu)"_line;

// Interfaces.

inline constexpr auto kIFClose = "%s=IFClose(hInterface=0x%p)"_line;
inline constexpr auto kIFGetInfo =
    "%s=IFGetInfo(hInterface=0x%p, iID=%s, 0x%p->(iType=%s), 0x%p->(Buffer=%s), "
    "0x%p->(iSize=%u))"_line;
// The count is decimal behind its 0x.
inline constexpr auto kIFGetNumDevices =
    "%s=IFGetNumDevices(hInterface=0x%p, 0x%p->(iNumDevices=0x%u))"_line;
inline constexpr auto kIFGetDeviceID =
    "%s=IFGetDeviceID(hInterface=0x%p, iIndex=%u, 0x%p->(Buffer=%s), 0x%p->(iSize=%u))"_line;
inline constexpr auto kIFUpdateDeviceList =
    "%s=IFUpdateDeviceList(hInterface=0x%p, 0x%p->(bHasChanged=%d), iTimeout=%lu)"_line;
// If the output pointer is null.
inline constexpr auto kIFUpdateDeviceListWithoutOutput =
    "%s=IFUpdateDeviceList(hInterface=0x%p, 0x%p, iTimeout=%lu)"_line;
inline constexpr auto kIFGetDeviceInfo =
    "%s=IFGetDeviceInfo(hInterface=0x%p, psDeviceName=%s, iID=%s, 0x%p->(iType=%s), "
    "0x%p->(Buffer=%s), 0x%p->(iSize=%u))"_line;
// Kept: 37. `hDev=0x%x` shows the low 32 bits of the handle.
inline constexpr auto kIFOpenDevice =
    "%s=IFOpenDevice(hInterface=0x%p, 0x%p->(sDevName=%s), iOpenFlags=%s, 0x%p->(hDev=0x%x))"_line;
// If the output pointer is null.
inline constexpr auto kIFOpenDeviceWithoutOutput =
    "%s=IFOpenDevice(hInterface=0x%p, 0x%p->(sDevName=%s), iOpenFlags=%s, 0x%p)"_line;

// Devices.

inline constexpr auto kDevGetPort = "%s=DevGetPort(hDev=0x%p, 0x%p->(pPort=0x%p))"_line;
inline constexpr auto kDevGetNumDataStreams =
    "%s=DevGetNumDataStreams(hDev=0x%p, 0x%p->(piNumChannel=%u))"_line;
// The size is decimal behind its 0x.
inline constexpr auto kDevGetDataStreamID =
    "%s=DevGetDataStreamID(hDev=0x%p, iIndex=%u, 0x%p->(pBuffer=%s), 0x%p->(iSize=0x%u))"_line;
inline constexpr auto kDevOpenDataStream =
    "%s=DevOpenDataStream(hDev=0x%p, 0x%p->(pID=%s), 0x%p->(hDS=0x%p))"_line;
inline constexpr auto kDevGetInfo =
    "%s=DevGetInfo(hDev=0x%p, iID=%s, 0x%p->(iType=%s) 0x%p->(Buffer=%s), 0x%p->(iSize=%u))"_line;
inline constexpr auto kDevClose = "%s=DevClose(hDev=0x%p)"_line;

// Data streams and buffers.

inline constexpr auto kDSAnnounceBuffer =
    "%s=DSAnnounceBuffer(hDS=0x%p, pBuffer=0x%p, iSize=%u, pPrivate=0x%p, 0x%p->(hBuffer=0x%p))"_line;
inline constexpr auto kDSAllocAndAnnounceBuffer =
    "%s=DSAllocAndAnnounceBuffer(hDS=0x%p, iSize=%u, pPrivate=0x%p, 0x%p->(hBuffer=0x%p))"_line;
inline constexpr auto kDSFlushQueue = "%s=DSFlushQueue(hDS=0x%p, QueueType=%s)"_line;
// iNumToAcquire shows its low 32 bits, so no limit shows as 4294967295.
inline constexpr auto kDSStartAcquisition =
    "%s=DSStartAcquisition(hDS=0x%p, Flags=%s, iNumFramesToAcquire=%lu)"_line;
inline constexpr auto kDSStopAcquisition = "%s=DSStopAcquisition(hDS=0x%p, Flags=%s)"_line;
inline constexpr auto kDSGetInfo =
    "%s=DSGetInfo(hDS=0x%p, iCmd=%s, 0x%p->(iType=%s) 0x%p->(Buffer=%s), 0x%p->(iSize=%u))"_line;
inline constexpr auto kDSGetBufferID =
    "%s=DSGetBufferID(hDS=0x%p, iIndex=%u, 0x%p->(hBuffer=0x%p))"_line;
inline constexpr auto kDSClose = "%s=DSClose(hDS=0x%p)"_line;
// The two pointers are `0xSLOT (0xSTORED)`, `0xSLOT(NULL)` or `NULL`.
inline constexpr auto kDSRevokeBuffer =
    "%s=DSRevokeBuffer(hDS=0x%p, hBuffer=0x%p, pBuffer=%s, pPrivate=%s)"_line;
inline constexpr auto kDSQueueBuffer = "%s=DSQueueBuffer(hDS=0x%p, hB=0x%p)"_line;
inline constexpr auto kDSGetBufferInfo =
    "%s=DSGetBufferInfo(hDS=0x%p, hBuffer=0x%p, iCommand=%s, 0x%p->(iType=%s) "
    "0x%p->(Buffer=%s), 0x%p->(iSize=%u))"_line;

// Ports.

// Kept: 32. Shows the data twice: `Buffer=%s` as text up to the first zero byte in memory, the
// second `%s` as a dump. No closing parenthesis.
inline constexpr auto kGCReadPort =
    "%s=GCReadPort(hPort=0x%p, iAddress=0x%llx, 0x%p->(Buffer=%s,%s), 0x%p->(iSize=%lu)"_line;
// No closing parenthesis.
inline constexpr auto kGCWritePort =
    "%s=GCWritePort(hPort=0x%p, iAddress=0x%llx, 0x%p->(Buffer=%s), 0x%p->(iSize=%u)"_line;
inline constexpr auto kGCGetPortURL =
    "%s=GCGetPortURL(hPort=0x%p, 0x%p->(URL=%s), 0x%p->(iSize=%u))"_line;
inline constexpr auto kGCGetNumPortURLs =
    "%s=GCGetNumPortURLs(hPort=0x%p, 0x%p->(iNumURLs=%u))"_line;
// The size has no label.
inline constexpr auto kGCGetPortInfo =
    "%s=GCGetPortInfo(hPort=0x%p, iCmd=%s, 0x%p->(iType=%s) 0x%p->(Buffer=%s), 0x%p->(%u))"_line;
inline constexpr auto kGCGetPortURLInfo =
    "%s=GCGetPortURLInfo(hPort=0x%p, iURLIndex=%u, iCmd=%s, 0x%p->(iType=%s) 0x%p->(Buffer=%s),"
    " 0x%p->(iSize=%u))"_line;
// Kept: 33. The format is that of a single access, with fewer values. What the line shows:
// `iAddress=0x%llx` the address of the entries' rendered text, `0x%p->(Buffer=` piNumEntries,
// `Buffer=%s` the number of entries in decimal, `0x%p->(iSize=` and `iSize=%u` 0. No closing
// parenthesis.
inline constexpr auto kGCReadPortStacked =
    "%s=GCReadPortStacked(hPort=0x%p, iAddress=0x%llx, 0x%p->(Buffer=%s), 0x%p->(iSize=%u)"_line;
// Kept: 34. Like GCReadPortStacked: `iAddress=0x%llx` the address of the entries' rendered text,
// `0x%p->(Entries=` piNumEntries, `Entries=%s` the number of entries in decimal,
// `0x%p->(iNumEntries=` and `iNumEntries=%u` 0. No closing parenthesis.
inline constexpr auto kGCWritePortStacked =
    "%s=GCWritePortStacked(hPort=0x%p, iAddress=0x%llx, 0x%p->(Entries=%s), "
    "0x%p->(iNumEntries=%u)"_line;

// Events.

inline constexpr auto kGCRegisterEvent =
    "%s=GCRegisterEvent(hEventSrc=0x%p, iEvent=%s, 0x%p->(hE=0x%p))"_line;
inline constexpr auto kGCUnregisterEvent = "%s=GCUnregisterEvent(hEventSrc=0x%p, iEvent=%s)"_line;
// `Buffer=%s` is a dump, whatever the event. For EVENT_NEW_BUFFER, its first eight bytes are the
// buffer's handle, low byte first. iTimeout shows its low 32 bits.
inline constexpr auto kEventGetData =
    "%s=EventGetData(hEvent=0x%p, 0x%p->(Buffer=%s), 0x%p->(iSize=%u), iTimeout=%lu)"_line;
// Kept: 36. iInSize isn't passed, so each later value moves up a place. What the line shows:
// `iEventBufferSize=%u` the low half of the address of the command's name, `iID=%s` the bytes at
// piType, `0x%p->(iType=` the address of the type's name, `iType=%s` the bytes at pOutBuffer,
// `0x%p->(Buffer=` the address of the rendered value, `Buffer=%s` the bytes at piOutSize,
// `0x%p->(iSize=` the size, `iSize=%u` 0.
inline constexpr auto kEventGetDataInfo =
    "%s=EventGetDataInfo(hEvent=0x%p, pInBuffer=0x%p, iEventBufferSize=%u, iID=%s, "
    "0x%p->(iType=%s) 0x%p->(Buffer=%s), 0x%p->(iSize=%u))"_line;
inline constexpr auto kEventGetInfo =
    "%s=EventGetInfo(hEvent=0x%p, iID=%s, 0x%p->(iType=%s) 0x%p->(Buffer=%s), 0x%p->(iSize=%u))"_line;
inline constexpr auto kEventFlush = "%s=EventFlush(hEvent=0x%p)"_line;
inline constexpr auto kEventKill = "%s=EventKill(hEvent=0x%p)"_line;

// Of GenTL 1.3 to 1.6, in the extended module alone. Values stand in their places and are shown
// whole, with the names of GenTL 1.6. A null output shows as NULL, and so does an info value that
// the target didn't deliver. The texts behind Chunks=, Segments= and Infos= are made in
// newer_rendering.h.

inline constexpr auto kDSGetBufferChunkData =
    "%s=DSGetBufferChunkData(hDS=0x%p, hBuffer=0x%p, 0x%p->(Chunks=%s), 0x%p->(iNumChunks=%s))"_line;
inline constexpr auto kIFGetParentTL = "%s=IFGetParentTL(hInterface=0x%p, 0x%p->(hTL=%s))"_line;
inline constexpr auto kDevGetParentIF = "%s=DevGetParentIF(hDev=0x%p, 0x%p->(hInterface=%s))"_line;
inline constexpr auto kDSGetParentDev = "%s=DSGetParentDev(hDS=0x%p, 0x%p->(hDev=%s))"_line;
inline constexpr auto kDSGetNumBufferParts =
    "%s=DSGetNumBufferParts(hDS=0x%p, hBuffer=0x%p, 0x%p->(iNumParts=%s))"_line;
inline constexpr auto kDSGetBufferPartInfo =
    "%s=DSGetBufferPartInfo(hDS=0x%p, hBuffer=0x%p, iPartIndex=%u, iCmd=%s, 0x%p->(iType=%s), "
    "0x%p->(Buffer=%s), 0x%p->(iSize=%s))"_line;
inline constexpr auto kDSAnnounceCompositeBuffer =
    "%s=DSAnnounceCompositeBuffer(hDS=0x%p, iNumSegments=%llu, ppSegments=0x%p, piSizes=0x%p, "
    "Segments=%s, pPrivate=0x%p, 0x%p->(hBuffer=%s))"_line;
inline constexpr auto kDSGetBufferInfoStacked =
    "%s=DSGetBufferInfoStacked(hDS=0x%p, hBuffer=0x%p, 0x%p->(Infos=%s), iNumInfos=%llu)"_line;
inline constexpr auto kDSGetBufferPartInfoStacked =
    "%s=DSGetBufferPartInfoStacked(hDS=0x%p, hBuffer=0x%p, 0x%p->(Infos=%s), iNumInfos=%llu)"_line;
inline constexpr auto kDSGetNumFlows = "%s=DSGetNumFlows(hDS=0x%p, 0x%p->(iNumFlows=%s))"_line;
inline constexpr auto kDSGetFlowInfo =
    "%s=DSGetFlowInfo(hDS=0x%p, iFlowIndex=%u, iCmd=%s, 0x%p->(iType=%s), 0x%p->(Buffer=%s), "
    "0x%p->(iSize=%s))"_line;
inline constexpr auto kDSGetNumBufferSegments =
    "%s=DSGetNumBufferSegments(hDS=0x%p, hBuffer=0x%p, 0x%p->(iNumSegments=%s))"_line;
inline constexpr auto kDSGetBufferSegmentInfo =
    "%s=DSGetBufferSegmentInfo(hDS=0x%p, hBuffer=0x%p, iSegmentIndex=%u, iCmd=%s, "
    "0x%p->(iType=%s), 0x%p->(Buffer=%s), 0x%p->(iSize=%s))"_line;

}  // namespace line

// Two lines for each forwarded call, at DEBUG and to the category "Vextrel.Timing", from the
// extended module alone. The number is the call's own within the process, counted from 1. A call
// that has entered and not left is in the target still, or was when the process ended.
namespace timing {

// Depending on the function's first argument: a handle or another pointer, a number, or none.
inline constexpr auto kEntersWithPointer = "Call %llu enters %s(0x%p)"_line;
inline constexpr auto kEntersWithNumber = "Call %llu enters %s(%d)"_line;
inline constexpr auto kEnters = "Call %llu enters %s()"_line;
// How long the target took, in microseconds with three decimals.
inline constexpr auto kLeaves = "Call %llu leaves %s after %s us"_line;

}  // namespace timing

// What Vextrel reports of itself and of misuse: at ERROR unless something else is said.
namespace report {

// Setting up logging. These go to the root category.

inline constexpr auto kConfigVariableNotFound =
    "Vextrel Environment variable GENICAM_GENTL64_VEXTREL_LOG_CONFIG not found!"_line;
inline constexpr auto kConfigFileNotOpened = "Cannot open logger parameter file '%s'"_line;
// INFO.
inline constexpr auto kLoadingConfigFile = "Loading logger parameter file '%s'"_line;
inline constexpr auto kConfigurationFailed =
    "Loading logger configuration failed. error = '%s'"_line;

// Loading and binding the target.

inline constexpr auto kProducerVariableNotFound =
    "Vextrel Environment variable GENICAM_GENTL64_VEXTREL_PRODUCER not found!"_line;
// INFO.
inline constexpr auto kLoadingProducer = "Loading GenTL Producer '%s'"_line;
// The number is a Windows error number, on Linux, too.
inline constexpr auto kProducerNotLoaded =
    "Error %d when loading the GenTL producer dll: '%s'"_line;
inline constexpr auto kProducerIsVextrel = "The GenTL producer dll is Vextrel itself: '%s'"_line;
// INFO. 0.0.0.0 for a module without a version, and always on Linux.
inline constexpr auto kProducerFileVersion = "GenTL producer file version: '%s'"_line;
// For each function that the target lacks.
inline constexpr auto kNotExported = "%s not exported"_line;
// INFO, from the extended module alone: once, with the names of all that are missing.
inline constexpr auto kNewerNotExported = "Newer functions not exported: %s"_line;

// Initializing and closing out of order.

inline constexpr auto kInitializedTwice = "GCInitLib() has already been called!"_line;
// Also after a GCInitLib that found no target (Kept: 5).
inline constexpr auto kNotInitialized = "GCInitLib has not been called yet!"_line;
inline constexpr auto kDetachedWhileInitialized = "GCInitLib() was not called correctly!"_line;
// From GCCloseLib.
inline constexpr auto kTransportLayerLeftOpen =
    "Transport Layer was not closed down properly using TLClose()"_line;
// At process detach. Kept: 13.
inline constexpr auto kTransportLayerLeftOpenAtDetach =
    "The Transport Layer was not closed down properly using TLClose()"_line;

// A successful call that leaves the registry nothing to record. Kept: 45. "Returned a NULL handle"
// means that the output pointer was null.

inline constexpr auto kTransportLayerNotOpened =
    "The Transport Layer has not been successfully opened!"_line;
inline constexpr auto kTLOpenInterfaceWithoutHandle =
    "TLOpenInterface returned a NULL handle to the interface!"_line;
inline constexpr auto kIFOpenDeviceWithoutHandle =
    "IFOpenDevice returned a NULL handle to the device!"_line;
// Kept: 46.
inline constexpr auto kDevOpenDataStreamWithoutDevice =
    "DevOpenDataStream returned a NULL handle to the datastream!"_line;
inline constexpr auto kDSAnnounceBufferWithoutHandle =
    "DSAnnounceBuffer returned a NULL handle to the buffer!"_line;
inline constexpr auto kDSAllocAndAnnounceBufferWithoutHandle =
    "DSAllocAndAnnounceBuffer returned a NULL handle to the buffer!"_line;
inline constexpr auto kDSAnnounceCompositeBufferWithoutHandle =
    "DSAnnounceCompositeBuffer returned a NULL handle to the buffer!"_line;
// Kept: 48.
inline constexpr auto kGCRegisterEventWithoutHandle =
    "GCRegisterEvent returned a NULL handle to the interface!"_line;
// From IFClose and GCUnregisterEvent. Kept: 48.
inline constexpr auto kIllegalInterface = "Illegal Interface handle!"_line;
inline constexpr auto kDevCloseOfNull = "Illegal Device handle!"_line;
// Kept: 47.
inline constexpr auto kDSCloseOfNull = "Illegal Device handle in DSClose()!"_line;
inline constexpr auto kDSRevokeBufferOfNull = "Illegal Buffer handle!"_line;

// Closing, revoking, or unregistering something that wasn't open. Kept: 44. The handle gets no
// value and shows as zeros; the line before names it.

inline constexpr auto kInterfaceNotOpened =
    "The interface with handle 0x%p was not previously opened correctly using "
    "TLOpenInterface()!"_line;
// Kept: 49.
inline constexpr auto kDeviceNotOpened =
    "The device with handle 0x%p was not previously opened correctly using DevOpen()!"_line;
inline constexpr auto kDataStreamNotOpened =
    "The DataStream with handle 0x%p was not previously opened correctly using "
    "DevOpenDataStream()!"_line;
inline constexpr auto kBufferNotAnnounced =
    "The buffer with handle 0x%p was not previously announced correctly using "
    "DSAllocAndAnnounceBuffer() or DSAnnounceBuffer()!"_line;
inline constexpr auto kEventNotRegistered =
    "The event %d on handle 0x%p was not previously registered correctly using "
    "GCRegisterEvent()!"_line;

// The registry: something is opened or registered twice. Kept: 65. The levels differ in wording,
// here and below.

inline constexpr auto kInterfaceAddedTwice =
    "Interface object with the handle 0x%p has already been added on TL with handle 0x%p"_line;
inline constexpr auto kDeviceAddedTwice =
    "Device object with the handle 0x%p has already been added on Interface with handle 0x%p"_line;
inline constexpr auto kDataStreamAddedTwice =
    "DataStream object with the handle 0x%p has already been added on Device with handle 0x%p"_line;
inline constexpr auto kBufferAddedTwice =
    "Buffer object with the handle 0x%p has already been added on DataStream with handle 0x%p"_line;
inline constexpr auto kEventAddedTwiceOnTransportLayer =
    "The Event type %s has already been registered on TL with handle 0x%p"_line;
inline constexpr auto kEventAddedTwiceOnInterface =
    "The Event type %s has already been registered on Interface with handle 0x%p"_line;
inline constexpr auto kEventAddedTwiceOnDevice =
    "The event type %s has already been registered on device with handle 0x%p"_line;
inline constexpr auto kEventAddedTwiceOnDataStream =
    "The event type %s has already been registered on datastream with handle 0x%p"_line;
inline constexpr auto kEventAddedTwiceOnBuffer =
    "The event type %s has already been registered on buffer with handle 0x%p"_line;

// The registry: something is opened, announced, or registered on an unknown parent.

inline constexpr auto kDeviceNotAdded =
    "Unable to add Device with handle 0x%p! Interface with handle 0x%p on TL 0x%p was not "
    "found!"_line;
inline constexpr auto kDataStreamNotAdded =
    "Unable to add DataStream with handle 0x%p! Device with handle 0x%p on TL 0x%p was not "
    "found!"_line;
inline constexpr auto kDataStreamNotAddedOnInterface =
    "Unable to add DataStream with handle 0x%p! Device with handle 0x%p on Interface 0x%p was "
    "not found!"_line;
inline constexpr auto kBufferNotAdded =
    "Unable to add Buffer with handle 0x%p! DataStream with handle 0x%p on TL 0x%p was not "
    "found!"_line;
inline constexpr auto kBufferNotAddedOnInterface =
    "Unable to add Buffer with handle 0x%p! DataStream with handle 0x%p on Interface 0x%p was "
    "not found!"_line;
inline constexpr auto kBufferNotAddedOnDevice =
    "Unable to add Buffer with handle 0x%p! DataStream with handle 0x%p on Device 0x%p was not "
    "found!"_line;
inline constexpr auto kEventSourceNotFound =
    "The Event type %s has not been registered since the handle 0x%p has not been found on any "
    "Interface"_line;

// The registry: something unknown is closed, revoked, or unregistered. Kept: 55. Each level that
// the search passes over writes its own line.

inline constexpr auto kInterfaceNotDefined =
    "Interface object with the handle 0x%p is not defined on TL with handle 0x%p"_line;
inline constexpr auto kDeviceNotDefined =
    "Device object with the handle 0x%p is not defined on Interface with handle 0x%p"_line;
inline constexpr auto kDataStreamNotDefined =
    "DataStream object with the handle 0x%p is not defined on Device with handle 0x%p"_line;
inline constexpr auto kBufferNotDefined =
    "Buffer object with the handle 0x%p is not defined on DataStream with handle 0x%p"_line;
inline constexpr auto kDeviceNotRemoved =
    "Unable to remove Device with handle 0x%p on any Interface on TL 0x%p!"_line;
inline constexpr auto kDataStreamNotRemoved =
    "Unable to remove DataStream with handle 0x%p on any Interface on TL 0x%p!"_line;
inline constexpr auto kDataStreamNotRemovedOnInterface =
    "Unable to remove DataStream with handle 0x%p on any Device on Interface 0x%p!"_line;
inline constexpr auto kBufferNotRemoved =
    "Unable to remove Buffer with handle 0x%p on any Interface on TL 0x%p!"_line;
inline constexpr auto kBufferNotRemovedOnInterface =
    "Unable to remove Buffer with handle 0x%p on any Device on Interface 0x%p!"_line;
// Kept: 60.
inline constexpr auto kBufferNotRemovedOnDevice =
    "Unable to remove Buffer with handle 0x%p on any DataStream on Device 0x%p!"_line;
inline constexpr auto kEventNotRemovedOnTransportLayer =
    "Unable to remove Event type %s on TL 0x%p! Event was not added or already removed!"_line;
// Kept: 59.
inline constexpr auto kEventNotRemoved =
    "Unable to remove Event type %s on TL 0x%p! Event was not found on any Interface!"_line;

// The registry: something is left open or announced when its parent is closed. Kept: 64.

inline constexpr auto kInterfaceLeftOpen =
    "Interface with handle 0x%p on TL 0x%p was not closed properly using IFClose()"_line;
inline constexpr auto kDeviceLeftOpen =
    "Device with handle 0x%p on interface 0x%p was not closed properly using DevClose()"_line;
inline constexpr auto kDataStreamLeftOpen =
    "DataStream with handle 0x%p on Device 0x%p was not closed properly using DSClose()"_line;
inline constexpr auto kBufferLeftAnnounced =
    "Buffer with handle 0x%p on DataStream 0x%p was not revoked properly using DSRevokeBuffer()"_line;

// The registry: an event is left registered when its source is closed. WARN.

inline constexpr auto kEventLeftOnTransportLayer =
    "Event type %s with handle 0x%p on Transport Layer 0x%p was not unregistered directly "
    "using GCUnregisterEvent()"_line;
inline constexpr auto kEventLeftOnInterface =
    "Event type %s with handle 0x%p on interface 0x%p was not unregistered directly using "
    "GCUnregisterEvent()"_line;
inline constexpr auto kEventLeftOnDevice =
    "Event type %s with handle 0x%p on device 0x%p was not unregistered directly using "
    "GCUnregisterEvent()"_line;
// Kept: 58.
inline constexpr auto kEventLeftOnDataStream =
    "Event with handle 0x%p on DataStream 0x%p was not unregistered directly using "
    "GCUnregisterEvent()"_line;
inline constexpr auto kEventLeftOnBuffer =
    "Event type %s with handle 0x%p on Buffer 0x%p was not unregistered directly using "
    "GCUnregisterEvent()"_line;

}  // namespace report

// Every one of them, for what reads a log back.
inline constexpr std::array kCallLines = TextsOf(
    line::kGCGetInfo, line::kGCGetLastError, line::kGCInitLib, line::kGCCloseLib, line::kTLOpen,
    line::kTLClose, line::kTLGetInfo, line::kTLGetNumInterfaces, line::kTLGetInterfaceID,
    line::kTLGetInterfaceInfo, line::kTLOpenInterface, line::kTLUpdateInterfaceList,
    line::kTLUpdateInterfaceListWithoutOutput, line::kIFClose, line::kIFGetInfo,
    line::kIFGetNumDevices, line::kIFGetDeviceID, line::kIFUpdateDeviceList,
    line::kIFUpdateDeviceListWithoutOutput, line::kIFGetDeviceInfo, line::kIFOpenDevice,
    line::kIFOpenDeviceWithoutOutput, line::kDevGetPort, line::kDevGetNumDataStreams,
    line::kDevGetDataStreamID, line::kDevOpenDataStream, line::kDevGetInfo, line::kDevClose,
    line::kDSAnnounceBuffer, line::kDSAllocAndAnnounceBuffer, line::kDSFlushQueue,
    line::kDSStartAcquisition, line::kDSStopAcquisition, line::kDSGetInfo, line::kDSGetBufferID,
    line::kDSClose, line::kDSRevokeBuffer, line::kDSQueueBuffer, line::kDSGetBufferInfo,
    line::kGCReadPort, line::kGCWritePort, line::kGCGetPortURL, line::kGCGetNumPortURLs,
    line::kGCGetPortInfo, line::kGCGetPortURLInfo, line::kGCReadPortStacked,
    line::kGCWritePortStacked, line::kGCRegisterEvent, line::kGCUnregisterEvent,
    line::kEventGetData, line::kEventGetDataInfo, line::kEventGetInfo, line::kEventFlush,
    line::kEventKill, line::kDSGetBufferChunkData, line::kIFGetParentTL, line::kDevGetParentIF,
    line::kDSGetParentDev, line::kDSGetNumBufferParts, line::kDSGetBufferPartInfo,
    line::kDSAnnounceCompositeBuffer, line::kDSGetBufferInfoStacked,
    line::kDSGetBufferPartInfoStacked, line::kDSGetNumFlows, line::kDSGetFlowInfo,
    line::kDSGetNumBufferSegments, line::kDSGetBufferSegmentInfo);
inline constexpr std::array kReports = TextsOf(
    report::kConfigVariableNotFound, report::kConfigFileNotOpened, report::kLoadingConfigFile,
    report::kConfigurationFailed, report::kProducerVariableNotFound, report::kLoadingProducer,
    report::kProducerNotLoaded, report::kProducerIsVextrel, report::kProducerFileVersion,
    report::kNotExported, report::kNewerNotExported, report::kInitializedTwice,
    report::kNotInitialized, report::kDetachedWhileInitialized, report::kTransportLayerLeftOpen,
    report::kTransportLayerLeftOpenAtDetach, report::kTransportLayerNotOpened,
    report::kTLOpenInterfaceWithoutHandle, report::kIFOpenDeviceWithoutHandle,
    report::kDevOpenDataStreamWithoutDevice, report::kDSAnnounceBufferWithoutHandle,
    report::kDSAllocAndAnnounceBufferWithoutHandle, report::kDSAnnounceCompositeBufferWithoutHandle,
    report::kGCRegisterEventWithoutHandle, report::kIllegalInterface, report::kDevCloseOfNull,
    report::kDSCloseOfNull, report::kDSRevokeBufferOfNull, report::kInterfaceNotOpened,
    report::kDeviceNotOpened, report::kDataStreamNotOpened, report::kBufferNotAnnounced,
    report::kEventNotRegistered, report::kInterfaceAddedTwice, report::kDeviceAddedTwice,
    report::kDataStreamAddedTwice, report::kBufferAddedTwice,
    report::kEventAddedTwiceOnTransportLayer, report::kEventAddedTwiceOnInterface,
    report::kEventAddedTwiceOnDevice, report::kEventAddedTwiceOnDataStream,
    report::kEventAddedTwiceOnBuffer, report::kDeviceNotAdded, report::kDataStreamNotAdded,
    report::kDataStreamNotAddedOnInterface, report::kBufferNotAdded,
    report::kBufferNotAddedOnInterface, report::kBufferNotAddedOnDevice,
    report::kEventSourceNotFound, report::kInterfaceNotDefined, report::kDeviceNotDefined,
    report::kDataStreamNotDefined, report::kBufferNotDefined, report::kDeviceNotRemoved,
    report::kDataStreamNotRemoved, report::kDataStreamNotRemovedOnInterface,
    report::kBufferNotRemoved, report::kBufferNotRemovedOnInterface,
    report::kBufferNotRemovedOnDevice, report::kEventNotRemovedOnTransportLayer,
    report::kEventNotRemoved, report::kInterfaceLeftOpen, report::kDeviceLeftOpen,
    report::kDataStreamLeftOpen, report::kBufferLeftAnnounced, report::kEventLeftOnTransportLayer,
    report::kEventLeftOnInterface, report::kEventLeftOnDevice, report::kEventLeftOnDataStream,
    report::kEventLeftOnBuffer);
inline constexpr std::array kTimingLines = TextsOf(
    timing::kEntersWithPointer, timing::kEntersWithNumber, timing::kEnters, timing::kLeaves);

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_LOG_TEXT_H
