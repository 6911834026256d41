// SPDX-License-Identifier: MIT
#include "faults.h"

#include <algorithm>
#include <array>
#include <thread>
#include <utility>

#include "fault_calls.h"
#include "stream_faults.h"

namespace grab {
namespace {

void CloseWhileRunning(Session& session) {
  session.acquiring = false;
  session.stream = nullptr;
  session.newBuffer = nullptr;
  session.buffers.clear();
  session.gentl.DevClose(std::exchange(session.device, nullptr));
}

void OpenTwice(Session& session) {
  DEV_HANDLE device = nullptr;
  Call(session.gentl.IFOpenDevice, session.interfaceHandle, session.deviceId.c_str(),
       DEVICE_ACCESS_EXCLUSIVE, &device);
}

void CloseNothing(Session& session) {
  Call(session.gentl.DevClose, nullptr);
}

void UseWrongKind(Session& session) {
  Call(session.gentl.DSFlushQueue, session.device, ACQ_QUEUE_ALL_DISCARD);
}

void UseUnknownHandle(Session& session) {
  static int nothing = 0;
  Call(session.gentl.DSClose, &nothing);
}

void AskBehindTheEnd(Session& session) {
  std::uint32_t count = 0;
  session.gentl.IFGetNumDevices(session.interfaceHandle, &count);
  std::array<char, 64> id{};
  std::size_t size = id.size();
  Call(session.gentl.IFGetDeviceID, session.interfaceHandle, count, id.data(), &size);
}

// Forgets a handle that is open still, so that nobody closes it.
void LeaveOpen(Session& session) {
  session.newBuffer = nullptr;
  session.buffers.clear();
  session.stream = nullptr;
  session.device = nullptr;
  session.interfaceHandle = nullptr;
  session.transportLayer = nullptr;
}

void CloseTwice(Session& session) {
  DS_HANDLE stream = nullptr;
  for (BUFFER_HANDLE buffer : std::exchange(session.buffers, {})) {
    session.gentl.DSRevokeBuffer(session.stream, buffer, nullptr, nullptr);
  }
  session.gentl.GCUnregisterEvent(session.stream, EVENT_NEW_BUFFER);
  session.newBuffer = nullptr;
  stream = std::exchange(session.stream, nullptr);
  session.gentl.DSClose(stream);
  Call(session.gentl.DSClose, stream);
}

void AskOptional(Session& session) {
  for (int i = 0; i < 3; ++i) {
    static_cast<void>(session.gentl.DSGetInfo.Number(session.stream, STREAM_INFO_CUSTOM_ID));
  }
}

void AskTooSmall(Session& session) {
  for (int i = 0; i < 3; ++i) {
    INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
    std::array<char, 1> text{};
    std::size_t size = text.size();
    Call(session.gentl.TLGetInfo, session.transportLayer, TL_INFO_ID, &type, text.data(), &size);
  }
}

void LeaveSizeUnset(Session& session) {
  INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
  std::array<char, 64> text{};
  std::size_t size = 0xCDCDCDCD;  // as if it were that
  Call(session.gentl.TLGetInfo, session.transportLayer, TL_INFO_CUSTOM_ID, &type, text.data(),
       &size);
}

void IgnoreErrors(Session& session) {
  constexpr std::uint64_t nowhere = 0xFFFFFFFF0;
  PORT_HANDLE port = nullptr;
  session.gentl.DevGetPort(session.device, &port);
  for (int i = 0; i < 3; ++i) {
    std::array<char, 4> bytes{};
    std::size_t size = bytes.size();
    Call(session.gentl.GCReadPort, port, nowhere, bytes.data(), &size);
  }
}

void AskOnAnotherThread(Session& session) {
  DEV_HANDLE device = nullptr;
  Call(session.gentl.IFOpenDevice, session.interfaceHandle, "nobody", DEVICE_ACCESS_EXCLUSIVE,
       &device);
  std::thread([&] {
    GC_ERROR error = GC_ERR_SUCCESS;
    std::array<char, 256> text{};
    std::size_t size = text.size();
    Call(session.gentl.GCGetLastError, &error, text.data(), &size);
  }).join();
}

void UpdateBriefly(Session& session) {
  Call(session.gentl.IFUpdateDeviceList, session.interfaceHandle, nullptr, 50U);
}

void UpdateWhileReading(Session& session) {
  std::uint32_t count = 0;
  session.gentl.IFGetNumDevices(session.interfaceHandle, &count);
  std::thread([&] {
    Call(session.gentl.IFUpdateDeviceList, session.interfaceHandle, nullptr, 1000U);
  }).join();
  static_cast<void>(session.gentl.IFGetDeviceID.Id(session.interfaceHandle, 0U));
}

void CountUnlisted(Session& session) {
  session.Close();
  session.transportLayer = session.gentl.TLOpen.Open();
  std::uint32_t count = 0;
  Call(session.gentl.TLGetNumInterfaces, session.transportLayer, &count);
}

void WriteReadOnly(Session& session) {
  const std::string id = session.deviceId;
  const std::string interfaceId = session.interfaceId;
  session.Close();
  session.transportLayer = session.gentl.TLOpen.Open();
  static_cast<void>(session.FindInterfaces());
  session.OpenInterface(interfaceId);
  static_cast<void>(session.FindDevices());
  session.gentl.IFOpenDevice(session.interfaceHandle, id.c_str(), DEVICE_ACCESS_READONLY,
                             &session.device);
  session.OpenCamera();
  try {
    session.camera->Write("TLParamsLocked", 1);
  } catch (const Error&) {
    // It has to be refused.
  }
}

void InitTwice(Session& session) {
  Call(session.gentl.GCInitLib);
}

void UseClosedLibrary(Session& session) {
  session.Close();
  session.gentl.GCCloseLib();
  TL_HANDLE transportLayer = nullptr;
  Call(session.gentl.TLOpen, &transportLayer);
  session.gentl.GCInitLib();  // for whoever closes it now
}

constexpr Fault kFaults[] = {
    {"announce-ever-more", Fault::Time::Stopped, AnnounceEverMore},
    {"ask-on-other-thread", Fault::Time::Stopped, AskOnAnotherThread},
    {"ask-optional", Fault::Time::Stopped, AskOptional},
    {"ask-too-small", Fault::Time::Stopped, AskTooSmall},
    {"close-nothing", Fault::Time::Stopped, CloseNothing},
    {"close-twice", Fault::Time::Stopped, CloseTwice},
    {"close-while-running", Fault::Time::Running, CloseWhileRunning},
    {"count-unlisted", Fault::Time::Stopped, CountUnlisted},
    {"end-while-waiting", Fault::Time::Stopped, EndWhileWaiting},
    {"flush-while-running", Fault::Time::Running, FlushWhileRunning},
    {"ignore-errors", Fault::Time::Running, IgnoreErrors},
    {"index-behind-end", Fault::Time::Stopped, AskBehindTheEnd},
    {"init-twice", Fault::Time::Stopped, InitTwice},
    {"keep-all-buffers", Fault::Time::Running, KeepAllBuffers},
    {"kill-without-wait", Fault::Time::Running, KillWithoutWait},
    {"leave-buffers", Fault::Time::Stopped, LeaveBuffers},
    {"leave-open", Fault::Time::Stopped, LeaveOpen},
    {"leave-size-unset", Fault::Time::Stopped, LeaveSizeUnset},
    {"mix-buffers", Fault::Time::Stopped, MixBuffers},
    {"open-twice", Fault::Time::Stopped, OpenTwice},
    {"queue-late", Fault::Time::Stopped, QueueLate},
    {"queue-nothing", Fault::Time::Stopped, QueueNothing},
    {"queue-twice", Fault::Time::Stopped, QueueTwice},
    {"read-queued", Fault::Time::Running, ReadQueuedBuffer},
    {"register-twice", Fault::Time::Stopped, RegisterTwice},
    {"revoke-queued", Fault::Time::Stopped, RevokeQueued},
    {"share-memory", Fault::Time::Stopped, ShareMemory},
    {"start-twice", Fault::Time::Running, StartTwice},
    {"start-with-small-buffer", Fault::Time::Stopped, StartWithSmallBuffer},
    {"start-wrongly", Fault::Time::Stopped, StartWrongly},
    {"stop-twice", Fault::Time::Stopped, StopTwice},
    {"unknown-handle", Fault::Time::Stopped, UseUnknownHandle},
    {"update-briefly", Fault::Time::Stopped, UpdateBriefly},
    {"update-while-reading", Fault::Time::Stopped, UpdateWhileReading},
    {"use-closed-library", Fault::Time::Stopped, UseClosedLibrary},
    {"wait-briefly", Fault::Time::Running, WaitBriefly},
    {"wait-for-nothing", Fault::Time::Running, WaitForNothing},
    {"wait-under-lock", Fault::Time::Stopped, WaitUnderLock},
    {"write-read-only", Fault::Time::Stopped, WriteReadOnly},
    {"wrong-kind", Fault::Time::Stopped, UseWrongKind},
};

}  // namespace

std::span<const Fault> Faults() {
  return kFaults;
}

const Fault* FindFault(std::string_view name) {
  const auto* const fault = std::ranges::find(kFaults, name, &Fault::name);
  return fault == std::end(kFaults) ? nullptr : fault;
}

}  // namespace grab
