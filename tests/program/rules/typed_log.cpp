// SPDX-License-Identifier: MIT
#include "program/rules/typed_log.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "program/small_log.h"

namespace vextrel_test {

std::string InitLib() {
  return "GCInitLib(void)";
}
std::string CloseLib() {
  return "GCCloseLib(void)";
}
std::string LastError(std::string_view text) {
  return fmt::format(
      "GCGetLastError(0x000000000000F048->(ErrorCode={}), 0x000000000000F050->(pErrorText=\x18), "
      "0x0000000000000018->(iSize=0))",
      text);
}
std::string OpenTL(std::uint64_t handle) {
  return fmt::format("TLOpen(0x000000000000F000->(pHandle=0x{:016X}))", handle);
}
std::string OpenIF(std::uint64_t tl, std::string_view id, std::uint64_t handle) {
  return fmt::format(
      "TLOpenInterface(hTL=0x{:016X}, 0x000000000000F028->(sInterfaceName={}), "
      "0x000000000000F030->(hInterface={:016X}))",
      tl, id, handle);
}
std::string OpenDev(std::uint64_t interface, std::string_view id, std::string_view flags,
                    std::uint64_t handle) {
  return fmt::format(
      "IFOpenDevice(hInterface=0x{:016X}, 0x000000000000F038->(sDevName={}), "
      "iOpenFlags=DEVICE_ACCESS_{}, 0x000000000000F040->(hDev=0x{:x}))",
      interface, id, flags, handle & 0xFFFFFFFF);
}
std::string OpenDS(std::uint64_t device, std::string_view id, std::uint64_t handle) {
  return fmt::format(
      "DevOpenDataStream(hDev=0x{:016X}, 0x000000000000F058->(pID={}), "
      "0x000000000000F060->(hDS=0x{:016X}))",
      device, id, handle);
}
std::string GetPort(std::uint64_t device, std::uint64_t handle) {
  return fmt::format("DevGetPort(hDev=0x{:016X}, 0x000000000000F060->(pPort=0x{:016X}))", device,
                     handle);
}
std::string Close(std::string_view function, std::uint64_t handle) {
  const std::string_view label = function == "TLClose"    ? "hTL"
                                 : function == "IFClose"  ? "hInterface"
                                 : function == "DevClose" ? "hDev"
                                                          : "hDS";
  return fmt::format("{}({}=0x{:016X})", function, label, handle);
}
std::string Update(std::string_view function, std::uint64_t handle, unsigned timeout) {
  return fmt::format("{}({}=0x{:016X}, 0x000000000000F068->(bHasChanged=1), iTimeout={})", function,
                     function == "TLUpdateInterfaceList" ? "hTL" : "hInterface", handle, timeout);
}
std::string NumInterfaces(std::uint64_t tl, unsigned count) {
  return fmt::format("TLGetNumInterfaces(hTL=0x{:016X}, 0x000000000000F068->(iNumInterfaces=0x{}))",
                     tl, count);
}
std::string NumDevices(std::uint64_t interface, unsigned count) {
  return fmt::format(
      "IFGetNumDevices(hInterface=0x{:016X}, 0x000000000000F068->(iNumDevices=0x{}))", interface,
      count);
}
std::string DeviceId(std::uint64_t interface, unsigned index, std::string_view id) {
  return fmt::format(
      "IFGetDeviceID(hInterface=0x{:016X}, iIndex={}, 0x000000000000F068->(Buffer={}), "
      "0x000000000000F070->(iSize=8))",
      interface, index, id);
}
std::string DeviceInfo(std::uint64_t interface, std::string_view id, std::string_view command,
                       std::string_view value) {
  return fmt::format(
      "IFGetDeviceInfo(hInterface=0x{:016X}, psDeviceName={}, iID=DEVICE_INFO_{}, "
      "0x000000000000F068->(iType=INFO_DATATYPE_INT32), 0x000000000000F070->(Buffer={}), "
      "0x000000000000F078->(iSize=4))",
      interface, id, command, value);
}
std::string Announce(std::uint64_t stream, std::uint64_t memory, unsigned size,
                     std::uint64_t handle) {
  return fmt::format(
      "DSAnnounceBuffer(hDS=0x{:016X}, pBuffer=0x{:016X}, iSize={}, pPrivate=0x0000000000000000, "
      "0x000000000000F068->(hBuffer=0x{:016X}))",
      stream, memory, size, handle);
}
std::string Alloc(std::uint64_t stream, unsigned size, std::uint64_t handle) {
  return fmt::format(
      "DSAllocAndAnnounceBuffer(hDS=0x{:016X}, iSize={}, pPrivate=0x0000000000000000, "
      "0x000000000000F068->(hBuffer=0x{:016X}))",
      stream, size, handle);
}
std::string Revoke(std::uint64_t stream, std::uint64_t buffer) {
  return fmt::format(
      "DSRevokeBuffer(hDS=0x{:016X}, hBuffer=0x{:016X}, pBuffer=NULL, pPrivate=NULL)", stream,
      buffer);
}
std::string Queue(std::uint64_t stream, std::uint64_t buffer) {
  return fmt::format("DSQueueBuffer(hDS=0x{:016X}, hB=0x{:016X})", stream, buffer);
}
std::string Flush(std::uint64_t stream, std::string_view type) {
  return fmt::format("DSFlushQueue(hDS=0x{:016X}, QueueType=ACQ_QUEUE_{})", stream, type);
}
std::string Start(std::uint64_t stream) {
  return fmt::format(
      "DSStartAcquisition(hDS=0x{:016X}, Flags=ACQ_START_FLAGS_DEFAULT, "
      "iNumFramesToAcquire=4294967295)",
      stream);
}
std::string Stop(std::uint64_t stream) {
  return fmt::format("DSStopAcquisition(hDS=0x{:016X}, Flags=ACQ_STOP_FLAGS_DEFAULT)", stream);
}
std::string StreamInfo(std::uint64_t stream, std::string_view command, std::string_view value) {
  return fmt::format(
      "DSGetInfo(hDS=0x{:016X}, iCmd=STREAM_INFO_{}, "
      "0x000000000000F010->(iType=INFO_DATATYPE_SIZET) 0x000000000000F018->(Buffer={}), "
      "0x000000000000F020->(iSize=8))",
      stream, command, value);
}
std::string BufferInfo(std::uint64_t stream, std::uint64_t buffer, std::string_view command,
                       std::string_view value, std::string_view type) {
  return fmt::format(
      "DSGetBufferInfo(hDS=0x{:016X}, hBuffer=0x{:016X}, iCommand={}{}, "
      "0x000000000000F010->(iType={}) 0x000000000000F018->(Buffer={}), "
      "0x000000000000F020->(iSize=8))",
      stream, buffer, command.starts_with('(') ? "" : "BUFFER_INFO_", command, type, value);
}
std::string PortAccess(std::string_view function, std::uint64_t port, std::uint64_t address) {
  return fmt::format(
      "{}(hPort=0x{:016X}, iAddress=0x{:x}, 0x000000000000F018->(Buffer={}), "
      "0x000000000000F020->(iSize=4)",
      function, port, address,
      function == "GCReadPort" ? "xy,0x01,0x00,0x00,0x00" : "0x01,0x00,0x00,0x00");
}
std::string Register(std::uint64_t source, std::string_view type, std::uint64_t handle) {
  return fmt::format(
      "GCRegisterEvent(hEventSrc=0x{:016X}, iEvent=EVENT_{}, "
      "0x000000000000F070->(hE=0x{:016X}))",
      source, type, handle);
}
std::string Unregister(std::uint64_t source, std::string_view type) {
  return fmt::format("GCUnregisterEvent(hEventSrc=0x{:016X}, iEvent=EVENT_{})", source, type);
}
std::string Wait(std::uint64_t event, std::uint64_t buffer, unsigned timeout) {
  std::string data;
  for (unsigned i = 0; buffer != 0 && i < 16; ++i) {
    data += fmt::format("{}0x{:02x}", i == 0 ? "" : ",", i < 8 ? buffer >> 8 * i & 0xFF : 0);
  }
  return fmt::format(
      "EventGetData(hEvent=0x{:016X}, 0x000000000000F000->(Buffer={}), "
      "0x000000000000F008->(iSize={}), iTimeout={})",
      event, data, buffer == 0 ? 0 : 16, timeout);
}
std::string EventCall(std::string_view function, std::uint64_t event) {
  return fmt::format("{}(hEvent=0x{:016X})", function, event);
}

TypedLog& TypedLog::Line(std::string_view message, std::string_view priority) {
  text_ += LogLine(now_, message, priority, thread_);
  ++lines_;
  return *this;
}

TypedLog& TypedLog::Ok(std::string_view call) {
  return Line("GC_ERR_SUCCESS=" + std::string(call));
}

TypedLog& TypedLog::Fails(std::string_view result, std::string_view call) {
  const bool isUnknown = result.starts_with('-');
  return Line(isUnknown ? fmt::format("(Unknown GC_ERROR: {})={}", result, call)
                        : fmt::format("GC_ERR_{}={}", result, call));
}

TypedLog& TypedLog::Pass(int milliseconds) {
  now_ += milliseconds;
  return *this;
}

TypedLog& TypedLog::On(std::string_view thread) {
  thread_ = thread;
  return *this;
}

TypedLog& TypedLog::Here() {
  here_ = lines_ + 1;
  return *this;
}

TypedLog& TypedLog::Because() {
  because_.push_back(lines_ + 1);
  return *this;
}

TypedLog& TypedLog::Cut() {
  text_.pop_back();
  return *this;
}

TypedLog& TypedLog::Timed(std::string_view call, std::string_view microseconds) {
  return Enters(call).Returns("SUCCESS", call, microseconds);
}

TypedLog& TypedLog::Enters(std::string_view call) {
  const std::size_t hex = call.find("=0x");
  const int number = entered_[thread_] = ++calls_;
  return Line(fmt::format("Call {} enters {}({})", number, call.substr(0, call.find('(')),
                          hex == std::string_view::npos ? "" : call.substr(hex + 1, 18)),
              "DEBUG");
}

TypedLog& TypedLog::Returns(std::string_view result, std::string_view call,
                            std::string_view microseconds) {
  return Line(fmt::format("Call {} leaves {} after {} us", entered_[thread_],
                          call.substr(0, call.find('(')), microseconds),
              "DEBUG")
      .Fails(result, call);
}

TypedLog& TypedLog::OpenDevice() {
  isDeviceOpen_ = true;
  return Ok(InitLib())
      .Ok(OpenTL(kTL))
      .Ok(Update("TLUpdateInterfaceList", kTL))
      .Ok(OpenIF(kTL, "If0", kIF))
      .Ok(Update("IFUpdateDeviceList", kIF))
      .Ok(OpenDev(kIF, "Cam0", "EXCLUSIVE", kDev))
      .Ok(GetPort(kDev, kPort));
}

TypedLog& TypedLog::OpenStream(int buffers) {
  OpenDevice();
  isStreamOpen_ = true;
  buffers_ = buffers;
  Ok(OpenDS(kDev, "Stream0", kDS)).Ok(Register(kDS, "NEW_BUFFER", kEvent));
  for (int i = 0; i < buffers; ++i) {
    const auto offset = static_cast<std::uint64_t>(i);
    Ok(Announce(kDS, 0x10000 + 0x100 * offset, 0x100, kBuffer + offset));
  }
  return *this;
}

TypedLog& TypedLog::QueueAll() {
  for (int i = 0; i < buffers_; ++i) {
    Ok(Queue(kDS, kBuffer + static_cast<std::uint64_t>(i)));
  }
  return *this;
}

TypedLog& TypedLog::StartStream(int buffers) {
  isRunning_ = true;
  return OpenStream(buffers).QueueAll().Ok(Start(kDS)).Pass(100);
}

TypedLog& TypedLog::Frame(int buffer, int hold) {
  const std::uint64_t handle = kBuffer + static_cast<std::uint64_t>(buffer);
  return Ok(Wait(kEvent, handle)).Pass(hold).Ok(Queue(kDS, handle));
}

TypedLog& TypedLog::Frames(int count, int interval) {
  for (int i = 0; i < count; ++i) {
    Frame(i % buffers_).Pass(interval - 1);
  }
  return *this;
}

TypedLog& TypedLog::FrameSaying(int buffer, std::string_view command, std::string_view value,
                                std::string_view type) {
  const std::uint64_t handle = kBuffer + static_cast<std::uint64_t>(buffer);
  return Ok(Wait(kEvent, handle))
      .Ok(BufferInfo(kDS, handle, command, value, type))
      .Ok(Queue(kDS, handle));
}

TypedLog& TypedLog::StopStream() {
  isRunning_ = false;
  return Pass(20).Ok(Stop(kDS)).Ok(Flush(kDS, "ALL_DISCARD"));
}

TypedLog& TypedLog::CloseStream() {
  isStreamOpen_ = false;
  for (int i = 0; i < buffers_; ++i) {
    Ok(Revoke(kDS, kBuffer + static_cast<std::uint64_t>(i)));
  }
  return Ok(Unregister(kDS, "NEW_BUFFER")).Ok(Close("DSClose", kDS));
}

TypedLog& TypedLog::CloseDevice() {
  isDeviceOpen_ = false;
  return Ok(Close("DevClose", kDev))
      .Ok(Close("IFClose", kIF))
      .Ok(Close("TLClose", kTL))
      .Ok(CloseLib());
}

TypedLog& TypedLog::CloseAll() {
  if (isRunning_) {
    StopStream();
  }
  if (isStreamOpen_) {
    CloseStream();
  }
  if (isDeviceOpen_) {
    CloseDevice();
  }
  return *this;
}

std::string CheckedAsJson(const TypedLog& log) {
  const ScratchFile file(log.Text());
  const ProgramResult result = RunVextrel({"check", "--json", file.Path()});
  EXPECT_LE(result.status, 1) << result.errors;
  return result.output;
}

void ExpectFindings(const std::vector<RuleCase>& cases) {
  for (const RuleCase& each : cases) {
    SCOPED_TRACE(each.name);
    TypedLog log;
    each.type(log);
    const std::string output = CheckedAsJson(log);
    const nlohmann::json report = nlohmann::json::parse(output);
    std::string found;
    for (const nlohmann::json& finding : report["findings"]) {
      found += (found.empty() ? "" : ", ") + finding["rule"].get<std::string>() + " " +
               finding["severity"].get<std::string>();
    }
    EXPECT_EQ(found, each.expected) << output;
    if (*each.says != '\0' && !report["findings"].empty()) {
      EXPECT_THAT(report["findings"][0]["message"].get<std::string>(),
                  testing::HasSubstr(each.says));
    }
    if (log.HereLine() != 0 && !report["findings"].empty()) {
      const nlohmann::json& finding = report["findings"][0];
      EXPECT_EQ(finding["line"], log.HereLine()) << finding.dump(2);
      for (const int line : log.BecauseLines()) {
        const auto& related = finding["related"];
        EXPECT_TRUE(std::any_of(related.begin(), related.end(),
                                [line](const auto& item) { return item["line"] == line; }))
            << line << " " << finding.dump(2);
      }
    }
  }
}

}  // namespace vextrel_test
