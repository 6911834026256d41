# SPDX-License-Identifier: MIT
# Fails unless MODULE exports these functions and no other name and, on Windows, needs the DLLs of
# the system only.
#   cmake -D MODULE=... [-D EXTENDED=ON] [-D NM=... | -D OBJDUMP=...] -P check_module.cmake
set(expected
  GCGetInfo GCGetLastError GCInitLib GCCloseLib
  TLOpen TLClose TLGetInfo TLGetNumInterfaces TLGetInterfaceID TLGetInterfaceInfo TLOpenInterface
  TLUpdateInterfaceList
  IFClose IFGetInfo IFGetNumDevices IFGetDeviceID IFUpdateDeviceList IFGetDeviceInfo IFOpenDevice
  DevGetPort DevGetNumDataStreams DevGetDataStreamID DevOpenDataStream DevGetInfo DevClose
  DSAnnounceBuffer DSAllocAndAnnounceBuffer DSFlushQueue DSStartAcquisition DSStopAcquisition
  DSGetInfo DSGetBufferID DSClose DSRevokeBuffer DSQueueBuffer DSGetBufferInfo
  GCReadPort GCWritePort GCGetPortURL GCGetNumPortURLs GCGetPortInfo GCGetPortURLInfo
  GCReadPortStacked GCWritePortStacked
  GCRegisterEvent GCUnregisterEvent EventGetData EventGetDataInfo EventGetInfo EventFlush EventKill)
set(expected_count 51)
if(EXTENDED)
  list(APPEND expected
    DSGetBufferChunkData IFGetParentTL DevGetParentIF DSGetParentDev
    DSGetNumBufferParts DSGetBufferPartInfo
    DSAnnounceCompositeBuffer DSGetBufferInfoStacked DSGetBufferPartInfoStacked
    DSGetNumFlows DSGetFlowInfo DSGetNumBufferSegments DSGetBufferSegmentInfo)
  set(expected_count 64)
endif()
list(LENGTH expected count)
if(NOT count EQUAL expected_count)
  message(FATAL_ERROR "${count} names are expected instead of ${expected_count}.")
endif()

set(exported "")
if(OBJDUMP)
  execute_process(COMMAND "${OBJDUMP}" -p "${MODULE}" OUTPUT_VARIABLE dump
    COMMAND_ERROR_IS_FATAL ANY)
  string(FIND "${dump}" "[Ordinal/Name Pointer] Table" begin)
  if(begin EQUAL -1)
    message(FATAL_ERROR "${MODULE} has no export table.")
  endif()
  string(SUBSTRING "${dump}" ${begin} -1 table)
  string(REGEX REPLACE "\n[ \t\r]*\n.*" "" table "${table}")
  string(REGEX MATCHALL "\n[ \t]*\\[ *[0-9]+\\][^\n]*" rows "${table}")
  foreach(row IN LISTS rows)
    string(STRIP "${row}" row)
    string(REGEX REPLACE ".*[] \t]" "" name "${row}")
    list(APPEND exported "${name}")
  endforeach()

  string(REGEX MATCHALL "DLL Name: [^\n\r]+" lines "${dump}")
  foreach(line IN LISTS lines)
    string(REPLACE "DLL Name: " "" dll "${line}")
    string(STRIP "${dll}" dll)
    string(TOLOWER "${dll}" dll)
    if(NOT dll MATCHES "^(advapi32|kernel32|msvcrt|version|ws2_32)\\.dll$")
      message(FATAL_ERROR "${MODULE} needs ${dll}.")
    endif()
  endforeach()
  if(NOT lines)
    message(FATAL_ERROR "${MODULE} has no import table.")
  endif()
else()
  execute_process(COMMAND "${NM}" -D --defined-only "${MODULE}" OUTPUT_VARIABLE dump
    COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "[^\n]+" rows "${dump}")
  foreach(row IN LISTS rows)
    string(REGEX REPLACE ".* " "" name "${row}")
    list(APPEND exported "${name}")
  endforeach()
endif()

set(missing ${expected})
list(REMOVE_ITEM missing ${exported})
set(unexpected ${exported})
list(REMOVE_ITEM unexpected ${expected})
if(missing OR unexpected)
  message(FATAL_ERROR "Not exported: ${missing}\nExported, but not expected: ${unexpected}")
endif()
