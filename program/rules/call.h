// SPDX-License-Identifier: MIT
// One call, as the rules see it.
#ifndef VEXTREL_PROGRAM_RULES_CALL_H
#define VEXTREL_PROGRAM_RULES_CALL_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "calllog/function_names.h"
#include "gentl/gentl_newer.h"
#include "model/session_model.h"
#include "rules/findings.h"

namespace vextrel::program {

// A place in FunctionNames() that there is.
[[nodiscard]] consteval std::uint8_t KnownFunction(std::string_view name) {
  if (FunctionIndex(name) == kFunctionNames.size()) {
    throw "no such function";
  }
  return static_cast<std::uint8_t>(FunctionIndex(name));
}

// Functions that rules ask for. Its values are places in FunctionNames(); the rest have no name
// here.
enum class Function : std::uint8_t {
  GCInitLib = KnownFunction("GCInitLib"),
  GCCloseLib = KnownFunction("GCCloseLib"),
  GCGetLastError = KnownFunction("GCGetLastError"),
  TLOpen = KnownFunction("TLOpen"),
  TLClose = KnownFunction("TLClose"),
  TLUpdateInterfaceList = KnownFunction("TLUpdateInterfaceList"),
  TLGetNumInterfaces = KnownFunction("TLGetNumInterfaces"),
  TLGetInterfaceID = KnownFunction("TLGetInterfaceID"),
  TLOpenInterface = KnownFunction("TLOpenInterface"),
  IFClose = KnownFunction("IFClose"),
  IFUpdateDeviceList = KnownFunction("IFUpdateDeviceList"),
  IFGetNumDevices = KnownFunction("IFGetNumDevices"),
  IFGetDeviceID = KnownFunction("IFGetDeviceID"),
  IFGetDeviceInfo = KnownFunction("IFGetDeviceInfo"),
  IFOpenDevice = KnownFunction("IFOpenDevice"),
  DevGetPort = KnownFunction("DevGetPort"),
  DevGetNumDataStreams = KnownFunction("DevGetNumDataStreams"),
  DevGetDataStreamID = KnownFunction("DevGetDataStreamID"),
  DevOpenDataStream = KnownFunction("DevOpenDataStream"),
  DevGetInfo = KnownFunction("DevGetInfo"),
  DevClose = KnownFunction("DevClose"),
  DSAnnounceBuffer = KnownFunction("DSAnnounceBuffer"),
  DSAllocAndAnnounceBuffer = KnownFunction("DSAllocAndAnnounceBuffer"),
  DSAnnounceCompositeBuffer = KnownFunction("DSAnnounceCompositeBuffer"),
  DSFlushQueue = KnownFunction("DSFlushQueue"),
  DSStartAcquisition = KnownFunction("DSStartAcquisition"),
  DSStopAcquisition = KnownFunction("DSStopAcquisition"),
  DSGetInfo = KnownFunction("DSGetInfo"),
  DSGetBufferID = KnownFunction("DSGetBufferID"),
  DSClose = KnownFunction("DSClose"),
  DSRevokeBuffer = KnownFunction("DSRevokeBuffer"),
  DSQueueBuffer = KnownFunction("DSQueueBuffer"),
  DSGetBufferInfo = KnownFunction("DSGetBufferInfo"),
  DSGetBufferInfoStacked = KnownFunction("DSGetBufferInfoStacked"),
  DSGetBufferPartInfo = KnownFunction("DSGetBufferPartInfo"),
  DSGetBufferChunkData = KnownFunction("DSGetBufferChunkData"),
  GCReadPort = KnownFunction("GCReadPort"),
  GCWritePort = KnownFunction("GCWritePort"),
  GCReadPortStacked = KnownFunction("GCReadPortStacked"),
  GCWritePortStacked = KnownFunction("GCWritePortStacked"),
  GCGetPortURL = KnownFunction("GCGetPortURL"),
  GCGetNumPortURLs = KnownFunction("GCGetNumPortURLs"),
  GCGetPortURLInfo = KnownFunction("GCGetPortURLInfo"),
  GCRegisterEvent = KnownFunction("GCRegisterEvent"),
  GCUnregisterEvent = KnownFunction("GCUnregisterEvent"),
  EventGetData = KnownFunction("EventGetData"),
  EventFlush = KnownFunction("EventFlush"),
  EventKill = KnownFunction("EventKill"),
};

// Of a function in FunctionNames().
[[nodiscard]] constexpr Function FunctionOf(std::size_t functionIndex) noexcept {
  return static_cast<Function>(functionIndex);
}

// A decimal number that is all of `text`.
[[nodiscard]] std::optional<std::uint64_t> DecimalIn(std::string_view text);

// True iff `id` is `ancestor`, or lies below it.
[[nodiscard]] bool IsAtOrBelow(const Handles& handles, HandleId id, HandleId ancestor);
// True iff `a` comes after `b` in the log.
[[nodiscard]] bool IsBehind(const LogPlace& a, const LogPlace& b) noexcept;

// How a handle ended.
struct Ending {
  LogPlace place;
  HandleId by = kNoHandle;  // itself or what it lies below
  std::uint32_t thread = 0;
};
// Nothing if it's open, or if the log doesn't show a closing call of its own or above it.
[[nodiscard]] std::optional<Ending> EndingOf(const Handles& handles, HandleId id);

// Refers to the record; valid as long as that.
class Call {
 public:
  Call(const SessionModel& model, const Record& record, const Message& message,
       const Context& context, Function function, const std::optional<LogPlace>& previousOfThread)
      : model_(&model),
        record_(&record),
        message_(&message),
        context_(&context),
        function_(function),
        previousOfThread_(previousOfThread) {}

  [[nodiscard]] Function Which() const noexcept { return function_; }
  [[nodiscard]] std::string_view Name() const noexcept { return message_->shape->function; }
  [[nodiscard]] GC_ERROR Result() const noexcept { return message_->result; }
  [[nodiscard]] bool Failed() const noexcept { return message_->result != GC_ERR_SUCCESS; }
  [[nodiscard]] std::string ResultText() const;
  [[nodiscard]] const SessionModel& Model() const noexcept { return *model_; }
  [[nodiscard]] const Handles& All() const noexcept { return model_->AllHandles(); }
  [[nodiscard]] const Handle& At(HandleId id) const { return model_->AllHandles().At(id); }
  [[nodiscard]] const vextrel::program::Message& Message() const noexcept { return *message_; }
  [[nodiscard]] const vextrel::program::Context& Context() const noexcept { return *context_; }
  [[nodiscard]] const LogPlace& Place() const noexcept { return record_->place; }
  [[nodiscard]] std::uint32_t Thread() const noexcept { return context_->thread; }
  [[nodiscard]] bool HasTime() const noexcept { return context_->hasTime; }
  [[nodiscard]] std::int64_t Time() const noexcept { return context_->time; }
  [[nodiscard]] vextrel::program::Moment Moment() const;

  // Of the place that is named hDS; null if there's none, or nothing is known of its stream.
  [[nodiscard]] const Stream* StreamIn() const { return model_->FindStream(HandleIn("hDS")); }

  // Of an access to a port: the open device that it's of, be it that of the camera or the
  // device's own. kNoHandle for the ports of other modules.
  [[nodiscard]] HandleId DeviceOfPort() const;

  // The place with this label, or kNoPlace.
  [[nodiscard]] std::size_t Find(Label label) const { return message_->shape->Find(label); }
  // Of the place with this label: kNoHandle, "" or 0 if there's none.
  [[nodiscard]] HandleId HandleIn(Label label) const;
  [[nodiscard]] std::string_view Text(Label label) const;
  [[nodiscard]] std::uint64_t Number(Label label) const;
  // A decimal number that stands as an info value. Nothing if it's none.
  [[nodiscard]] std::optional<std::uint64_t> Value(Label label) const {
    return DecimalIn(Text(label));
  }
  // `DEV1 "SimCam2"`
  [[nodiscard]] std::string Named(HandleId id) const { return All().FullName(id); }
  // The name of a command, the newest one that it has.
  [[nodiscard]] std::string_view NameIn(Label label) const;

  // Whether this call was certainly made after that line was written: its timing
  // line says so, its thread wrote another line in between, or it's the same thread.
  [[nodiscard]] bool StartedBehind(const LogPlace& place, std::uint32_t thread) const noexcept;

 private:
  const SessionModel* model_;
  const Record* record_;
  const vextrel::program::Message* message_;
  const vextrel::program::Context* context_;
  Function function_;
  std::optional<LogPlace> previousOfThread_;
};

// True iff a device that's gone answers so.
[[nodiscard]] bool IsLoss(GC_ERROR result) noexcept;

// True iff `call` is a wait that timed out, and 100 ms or more have passed since then, or were
// waited: that's long enough for what comes right after a start.
[[nodiscard]] bool TimedOutSince(const Call& call, const Moment& since);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_RULES_CALL_H
