// SPDX-License-Identifier: MIT
#include "faults.h"

#include <algorithm>
#include <array>
#include <utility>

namespace grab {
namespace {

// What the producer answers is its business; here it's about the call.
template <typename F, typename... Arguments>
void Call(const F& function, Arguments... arguments) {
  function.Quietly(arguments...);
}

void WaitOnce(Session& session, std::uint64_t timeoutMs) {
  std::array<void*, 2> data{};
  std::size_t size = sizeof data;
  Call(session.gentl.EventGetData, session.newBuffer, data.data(), &size, timeoutMs);
}

void KeepAllBuffers(Session& session) {
  for (std::size_t i = 0; i < session.buffers.size(); ++i) {
    static_cast<void>(session.WaitForBuffer(5000));
  }
  WaitOnce(session, 80);
}

void QueueTwice(Session& session) {
  session.gentl.DSQueueBuffer(session.stream, session.buffers.front());
  Call(session.gentl.DSQueueBuffer, session.stream, session.buffers.front());
  session.gentl.DSFlushQueue(session.stream, ACQ_QUEUE_ALL_DISCARD);
}

void ReadQueuedBuffer(Session& session) {
  BUFFER_HANDLE buffer = session.WaitForBuffer(5000);
  session.gentl.DSQueueBuffer(session.stream, buffer);
  static_cast<void>(
      session.gentl.DSGetBufferInfo.Number(session.stream, buffer, BUFFER_INFO_WIDTH));
}

void StartTwice(Session& session) {
  Call(session.gentl.DSStartAcquisition, session.stream, ACQ_START_FLAGS_DEFAULT,
       ~std::uint64_t{0});
}

void CloseWhileRunning(Session& session) {
  session.acquiring = false;
  session.stream = nullptr;
  session.newBuffer = nullptr;
  session.buffers.clear();
  session.gentl.DevClose(std::exchange(session.device, nullptr));
}

void KillWithoutWait(Session& session) {
  if (session.gentl.EventKill.IfOffered(session.newBuffer)) {
    WaitOnce(session, 0);
  }
}

void StopTwice(Session& session) {
  Call(session.gentl.DSStopAcquisition, session.stream, ACQ_STOP_FLAGS_DEFAULT);
}

void RevokeQueued(Session& session) {
  session.gentl.DSQueueBuffer(session.stream, session.buffers.front());
  Call(session.gentl.DSRevokeBuffer, session.stream, session.buffers.front(), nullptr, nullptr);
  session.gentl.DSFlushQueue(session.stream, ACQ_QUEUE_ALL_DISCARD);
}

void RegisterTwice(Session& session) {
  EVENT_HANDLE event = nullptr;
  Call(session.gentl.GCRegisterEvent, session.stream, EVENT_NEW_BUFFER, &event);
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

constexpr Fault kFaults[] = {
    {"close-nothing", Fault::Time::Stopped, CloseNothing},
    {"close-twice", Fault::Time::Stopped, CloseTwice},
    {"close-while-running", Fault::Time::Running, CloseWhileRunning},
    {"index-behind-end", Fault::Time::Stopped, AskBehindTheEnd},
    {"keep-all-buffers", Fault::Time::Running, KeepAllBuffers},
    {"kill-without-wait", Fault::Time::Running, KillWithoutWait},
    {"leave-open", Fault::Time::Stopped, LeaveOpen},
    {"open-twice", Fault::Time::Stopped, OpenTwice},
    {"queue-twice", Fault::Time::Stopped, QueueTwice},
    {"read-queued", Fault::Time::Running, ReadQueuedBuffer},
    {"register-twice", Fault::Time::Stopped, RegisterTwice},
    {"revoke-queued", Fault::Time::Stopped, RevokeQueued},
    {"start-twice", Fault::Time::Running, StartTwice},
    {"stop-twice", Fault::Time::Stopped, StopTwice},
    {"unknown-handle", Fault::Time::Stopped, UseUnknownHandle},
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
