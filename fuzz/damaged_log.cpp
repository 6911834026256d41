// SPDX-License-Identifier: MIT
// Real logs that were damaged: bytes changed, pieces cut out, doubled and moved.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "program_run.h"

namespace {

// A session with every kind of record: calls with dumps of several lines, texts, irregular lines,
// reports.
std::string WholeLog() {
  const std::string front = "2026-11-21 12:00:00.";
  const char* const messages[] = {
      "Loading GenTL Producer '/opt/camera.cti'",
      "GC_ERR_SUCCESS=GCInitLib(void)",
      "GC_ERR_SUCCESS=TLOpen(0x000000000000F000->(pHandle=0x0000000000000A10))",
      "GC_ERR_SUCCESS=TLOpenInterface(hTL=0x0000000000000A10, "
      "0x000000000000F028->(sInterfaceName=If0), "
      "0x000000000000F030->(hInterface=0000000000000A20))",
      "GC_ERR_SUCCESS=IFOpenDevice(hInterface=0x0000000000000A20, "
      "0x000000000000F038->(sDevName=Cam), "
      "iOpenFlags=DEVICE_ACCESS_EXCLUSIVE, 0x000000000000F040->(hDev=0xc0de0))",
      "GC_ERR_SUCCESS=DevGetPort(hDev=0x00000001000C0DE0, "
      "0x000000000000F048->(pPort=0x0000000000000A30))",
      "GC_ERR_SUCCESS=GCReadPort(hPort=0x0000000000000A30, iAddress=0x100, "
      "0x000000000000F050->(Buffer=ab,0x61,0x62,0x00,0x00,0x00,0x00,0x00,0x00,0x00,0x00,0x00,0x00,"
      "0x00,"
      "0x00,0x00,0x00,\n0x00), 0x000000000000F058->(iSize=17)",
      "GC_ERR_SUCCESS=DevOpenDataStream(hDev=0x00000001000C0DE0, "
      "0x000000000000F058->(pID=Stream0), "
      "0x000000000000F060->(hDS=0x0000000000000D50))",
      "GC_ERR_SUCCESS=DSAnnounceBuffer(hDS=0x0000000000000D50, pBuffer=0x000000000000F100, "
      "iSize=64, "
      "pPrivate=0x0000000000000000, 0x000000000000F068->(hBuffer=0x0000000000000B01))",
      "GC_ERR_SUCCESS=GCRegisterEvent(hEventSrc=0x0000000000000D50, iEvent=EVENT_NEW_BUFFER, "
      "0x000000000000F070->(hE=0x0000000000000E10))",
      "GC_ERR_SUCCESS=DSQueueBuffer(hDS=0x0000000000000D50, hB=0x0000000000000B01)",
      "GC_ERR_SUCCESS=DSStartAcquisition(hDS=0x0000000000000D50, Flags=ACQ_START_FLAGS_DEFAULT, "
      "iNumFramesToAcquire=4294967295)",
      "GC_ERR_SUCCESS=EventGetData(hEvent=0x0000000000000E10, 0x000000000000F000->(Buffer="
      "0x01,0x0b,0x00,0x00,0x00,0x00,0x00,0x00,0x00,0x00,0x00,0x00,0x00,0x00,0x00,0x00), "
      "0x000000000000F008->(iSize=16), iTimeout=500)",
      "GC_ERR_SUCCESS=DSGetBufferInfo(hDS=0x0000000000000D50, hBuffer=0x0000000000000B01, "
      "iCommand=BUFFER_INFO_FRAMEID, 0x000000000000F010->(iType=INFO_DATATYPE_UINT64) "
      "0x000000000000F018->(Buffer=7), 0x000000000000F020->(iSize=8))",
      "GC_ERR_TIMEOUT=EventGetData(hEvent=0x0000000000000E10, 0x000000000000F000->(Buffer=), "
      "0x000000000000F008->(iSize=0), iTimeout=500)",
      "GC_ERR_SUCCESS=GCGetLastError(0x000000000000F048->(ErrorCode=too late), "
      "0x000000000000F050->(pErrorText=\x09), 0x0000000000000009->(iSize=0))",
      "GC_ERR_SUCCESS=DSFlushQueue(hDS=0x0000000000000D50, QueueType=ACQ_QUEUE_ALL_DISCARD)",
      "GC_ERR_SUCCESS=DSClose(hDS=0x0000000000000D50)",
      "Buffer with handle 0x0000000000000B01 on DataStream 0x0000000000000D50 was not revoked "
      "properly "
      "using DSRevokeBuffer()",
      "GC_ERR_SUCCESS=GCCloseLib(void)",
  };
  std::string log;
  int time = 100;
  for (const char* message : messages) {
    log += front + std::to_string(time++) + " [7] INFO  " + message + "\n";
  }
  return log;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const std::string whole = WholeLog();
  FuzzedDataProvider data(bytes, size);
  std::string log = whole;
  while (data.remaining_bytes() > 0 && !log.empty() && log.size() < 4 * whole.size()) {
    const auto at = data.ConsumeIntegralInRange<std::size_t>(0, log.size() - 1);
    const auto length = data.ConsumeIntegralInRange<std::size_t>(0, 200);
    switch (data.ConsumeIntegralInRange<int>(0, 4)) {
      case 0:
        log[at] = data.ConsumeIntegral<char>();
        break;
      case 1:
        log.erase(at, length);
        break;
      case 2:
        log.insert(at, log.substr(at, length));
        break;
      case 3:
        log.insert(at, data.ConsumeRandomLengthString(8));
        break;
      default:
        log.resize(at);
    }
  }
  vextrel_fuzz::RunProgramOn(log);
  return 0;
}
