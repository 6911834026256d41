// SPDX-License-Identifier: MIT
#include "program/small_log.h"

#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>

#include "commands/command_line.h"

namespace vextrel_test {
namespace {

void Write(const std::string& path, std::string_view text, std::ios::openmode mode) {
  // UTF-8 on every platform.
  const std::filesystem::path name(std::u8string(path.begin(), path.end()));
  std::ofstream file(name, std::ios::binary | mode);
  file.write(text.data(), static_cast<std::streamsize>(text.size()));
}

}  // namespace

ScratchFile::ScratchFile(std::string_view text, const std::string& name) {
  static std::atomic<int> number{0};
  std::random_device random;
  folder_ = (std::filesystem::temp_directory_path() /
             ("vextrel-" + std::to_string(random()) + "-" + std::to_string(++number)))
                .generic_string();
  std::filesystem::create_directories(folder_);
  path_ = Beside(text, name);
}

ScratchFile::~ScratchFile() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

std::string ScratchFile::Beside(std::string_view text, const std::string& name) const {
  std::string path = folder_ + "/" + name;
  Write(path, text, std::ios::trunc);
  return path;
}

void ScratchFile::Append(std::string_view text) const {
  Write(path_, text, std::ios::app);
}

std::string LogLine(int milliseconds, std::string_view message, std::string_view priority,
                    std::string_view thread) {
  char front[64];
  std::snprintf(front, sizeof front, "2026-11-21 12:%02d:%02d.%03d [", milliseconds / 60'000,
                milliseconds / 1'000 % 60, milliseconds % 1'000);
  std::string line = std::string(front).append(thread).append("] ").append(priority);
  line.append(priority.size() < 5 ? 5 - priority.size() : 0, ' ');
  return line.append(" ").append(message).append("\n");
}

ProgramResult RunVextrel(const std::vector<std::string>& arguments) {
  vextrel::program::Output output;
  vextrel::program::Output errors;
  ProgramResult result;
  result.status = vextrel::program::RunProgram(arguments, output, errors);
  result.output = output.Text();
  result.errors = errors.Text();
  return result;
}

std::string SmallSession() {
  const auto queue = [](int time, std::string_view buffer) {
    return LogLine(time, "GC_ERR_SUCCESS=DSQueueBuffer(hDS=0x0000000000000D50, hB=0x" +
                             std::string(buffer) + ")");
  };
  const auto frame = [](int time, std::string_view firstByte) {
    return LogLine(time,
                   "GC_ERR_SUCCESS=EventGetData(hEvent=0x0000000000000E10, "
                   "0x000000000000F000->(Buffer=" +
                       std::string(firstByte) +
                       ",0x0b,0x00,0x00,0x00,0x00,0x00,0x00,0x00,0x00,0x00,0x00,0x00,0x00,"
                       "0x00,0x00), 0x000000000000F008->(iSize=16), iTimeout=500)");
  };
  const auto info = [](int time, std::string_view buffer, std::string_view command,
                       std::string_view type, std::string_view value) {
    return LogLine(time, "GC_ERR_SUCCESS=DSGetBufferInfo(hDS=0x0000000000000D50, hBuffer=0x" +
                             std::string(buffer) + ", iCommand=" + std::string(command) +
                             ", 0x000000000000F010->(iType=" + std::string(type) +
                             ") 0x000000000000F018->(Buffer=" + std::string(value) +
                             "), 0x000000000000F020->(iSize=8))");
  };
  constexpr std::string_view one = "0000000000000B01";
  constexpr std::string_view two = "0000000000000B02";
  return LogLine(0, "Loading GenTL Producer '/opt/camera.cti'") +
         LogLine(0, "GenTL producer file version: '1.2.3.4'") +
         LogLine(1, "GC_ERR_SUCCESS=GCInitLib(void)") +
         LogLine(1, "GC_ERR_SUCCESS=TLOpen(0x000000000000F000->(pHandle=0x0000000000000A10))") +
         LogLine(2,
                 "GC_ERR_SUCCESS=TLOpenInterface(hTL=0x0000000000000A10, "
                 "0x000000000000F028->(sInterfaceName=If, (0)), "
                 "0x000000000000F030->(hInterface=0000000000000A20))") +
         // Refused, and asked why.
         LogLine(3,
                 "GC_ERR_ACCESS_DENIED=IFOpenDevice(hInterface=0x0000000000000A20, "
                 "0x000000000000F038->(sDevName=Cam1), iOpenFlags=DEVICE_ACCESS_EXCLUSIVE, "
                 "0x000000000000F040->(hDev=0x0))") +
         LogLine(3,
                 "GC_ERR_SUCCESS=GCGetLastError(0x000000000000F048->(ErrorCode=somebody else "
                 "uses Cam1), 0x000000000000F050->(pErrorText=\x18), "
                 "0x0000000000000018->(iSize=0))") +
         // The handle is 00000001000C0DE0; its opening shows the low half.
         LogLine(4,
                 "GC_ERR_SUCCESS=IFOpenDevice(hInterface=0x0000000000000A20, "
                 "0x000000000000F038->(sDevName=Cam2), iOpenFlags=DEVICE_ACCESS_EXCLUSIVE, "
                 "0x000000000000F040->(hDev=0xc0de0))") +
         LogLine(
             5,
             "GC_ERR_SUCCESS=DevOpenDataStream(hDev=0x00000001000C0DE0, "
             "0x000000000000F058->(pID=Stream0), 0x000000000000F060->(hDS=0x0000000000000D50))") +
         LogLine(5,
                 "GC_ERR_SUCCESS=DSAnnounceBuffer(hDS=0x0000000000000D50, "
                 "pBuffer=0x000000000000F100, iSize=64, pPrivate=0x0000000000000000, "
                 "0x000000000000F068->(hBuffer=0x0000000000000B01))") +
         LogLine(5,
                 "GC_ERR_SUCCESS=DSAnnounceBuffer(hDS=0x0000000000000D50, "
                 "pBuffer=0x000000000000F200, iSize=64, pPrivate=0x0000000000000000, "
                 "0x000000000000F068->(hBuffer=0x0000000000000B02))") +
         LogLine(6,
                 "GC_ERR_SUCCESS=GCRegisterEvent(hEventSrc=0x0000000000000D50, "
                 "iEvent=EVENT_NEW_BUFFER, 0x000000000000F070->(hE=0x0000000000000E10))") +
         queue(7, one) + queue(7, two) +
         LogLine(10,
                 "GC_ERR_SUCCESS=DSStartAcquisition(hDS=0x0000000000000D50, "
                 "Flags=ACQ_START_FLAGS_DEFAULT, iNumFramesToAcquire=4294967295)") +
         // Frame 0: delivered at 110, queued again at 114. Held for 4 ms.
         frame(110, "0x01") + info(111, one, "BUFFER_INFO_FRAMEID", "INFO_DATATYPE_UINT64", "0") +
         info(111, one, "BUFFER_INFO_IS_INCOMPLETE", "INFO_DATATYPE_BOOL8", "0") +
         info(112, one, "(Unknown BUFFER_INFO_CMD: 27)", "INFO_DATATYPE_SIZET", "64") +
         queue(114, one) +
         // Frame 1: 100 ms later, held for 6 ms, with one frame id missing.
         frame(210, "0x02") + info(211, two, "BUFFER_INFO_FRAMEID", "INFO_DATATYPE_UINT64", "2") +
         info(211, two, "BUFFER_INFO_IS_INCOMPLETE", "INFO_DATATYPE_BOOL8", "1") + queue(216, two) +
         LogLine(710,
                 "GC_ERR_TIMEOUT=EventGetData(hEvent=0x0000000000000E10, "
                 "0x000000000000F000->(Buffer=), 0x000000000000F008->(iSize=0), "
                 "iTimeout=500)") +
         // Frame 2: 600 ms after frame 1, never queued again.
         frame(810, "0x01") +
         // The queue's depth: 2 from 10 to 110, 1 to 114, 2 to 210, 1 to 216, 2 to 810, 1 to 1010.
         LogLine(1010,
                 "GC_ERR_SUCCESS=DSStopAcquisition(hDS=0x0000000000000D50, "
                 "Flags=ACQ_STOP_FLAGS_DEFAULT)") +
         LogLine(1010,
                 "GC_ERR_SUCCESS=DSFlushQueue(hDS=0x0000000000000D50, "
                 "QueueType=ACQ_QUEUE_ALL_DISCARD)") +
         LogLine(1011,
                 "GC_ERR_SUCCESS=DSRevokeBuffer(hDS=0x0000000000000D50, "
                 "hBuffer=0x0000000000000B01, pBuffer=0x000000000000F078 "
                 "(0x000000000000F100), pPrivate=0x000000000000F080(NULL))") +
         LogLine(1012, "GC_ERR_SUCCESS=DSClose(hDS=0x0000000000000D50)") +
         LogLine(1012,
                 "Event with handle 0x0000000000000E10 on DataStream 0x0000000000000D50 was "
                 "not unregistered directly using GCUnregisterEvent()",
                 "WARN") +
         LogLine(1012,
                 "Buffer with handle 0x0000000000000B02 on DataStream 0x0000000000000D50 was "
                 "not revoked properly using DSRevokeBuffer()",
                 "ERROR") +
         LogLine(1013, "GC_ERR_SUCCESS=DevClose(hDev=0x00000001000C0DE0)") +
         LogLine(1013, "GC_ERR_SUCCESS=IFClose(hInterface=0x0000000000000A20)") +
         LogLine(1014, "GC_ERR_SUCCESS=TLClose(hTL=0x0000000000000A10)") +
         LogLine(1014, "GC_ERR_SUCCESS=GCCloseLib(void)");
}

std::string TimedCalls() {
  const std::string info =
      "GC_ERR_SUCCESS=GCGetInfo(iInfoCmd=TL_INFO_VENDOR, "
      "0x000000000000F000->(iType=INFO_DATATYPE_STRING), Buffer='V', "
      "0x000000000000F008->(iSize=2))";
  return LogLine(0, "Call 1 enters TLOpen(0x000000000000F000)", "DEBUG") +
         LogLine(1, "Call 1 leaves TLOpen after 1204.567 us", "DEBUG") +
         LogLine(1, "GC_ERR_SUCCESS=TLOpen(0x000000000000F000->(pHandle=0x0000000000000A10))") +
         LogLine(2, "Call 2 enters GCReadPort(0x0000000000000A10)", "DEBUG", "8") +
         LogLine(2, "Call 3 enters GCGetInfo(1)", "DEBUG") +
         LogLine(2, "Call 3 leaves GCGetInfo after 0.850 us", "DEBUG") + LogLine(2, info) +
         LogLine(2, "Call 4 enters GCGetInfo(1)", "DEBUG") +
         LogLine(3, "Call 4 leaves GCGetInfo after 900.000 us", "DEBUG") + LogLine(3, info);
}

}  // namespace vextrel_test
