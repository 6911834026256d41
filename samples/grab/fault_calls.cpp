// SPDX-License-Identifier: MIT
#include "fault_calls.h"

#include <array>
#include <chrono>
#include <thread>
#include <utility>

namespace grab {

void WaitOnce(Session& session, std::uint64_t timeoutMs) {
  std::array<void*, 2> data{};
  std::size_t size = sizeof data;
  Call(session.gentl.EventGetData, session.newBuffer, data.data(), &size, timeoutMs);
}

bool TakeFrame(Session& session, std::uint64_t timeoutMs) {
  std::array<void*, 2> data{};
  std::size_t size = sizeof data;
  const GC_ERROR result =
      session.gentl.EventGetData.Try(session.newBuffer, data.data(), &size, timeoutMs);
  if (result == GC_ERR_SUCCESS) {
    Call(session.gentl.DSQueueBuffer, session.stream, data.front());
  }
  return result == GC_ERR_SUCCESS;
}

void QueueMore(Session& session, int count) {
  for (int i = 0; i < count; ++i) {
    session.AnnounceOwnBuffer(session.memory.front().size());
    session.gentl.DSQueueBuffer(session.stream, session.buffers.back());
  }
}

void RevokeAll(Session& session) {
  for (BUFFER_HANDLE buffer : std::exchange(session.buffers, {})) {
    session.gentl.DSRevokeBuffer(session.stream, buffer, nullptr, nullptr);
  }
}

void CloseStream(Session& session) {
  RevokeAll(session);
  session.gentl.GCUnregisterEvent(session.stream, EVENT_NEW_BUFFER);
  session.newBuffer = nullptr;
  session.gentl.DSClose(std::exchange(session.stream, nullptr));
}

void StartAgain(Session& session, const std::function<void()>& meanwhile) {
  session.gentl.DSStartAcquisition(session.stream, ACQ_START_FLAGS_DEFAULT, kForever);
  meanwhile();
  session.gentl.DSStopAcquisition(session.stream, ACQ_STOP_FLAGS_DEFAULT);
  session.gentl.DSFlushQueue(session.stream, ACQ_QUEUE_ALL_DISCARD);
}

void StopAndFlush(Session& session) {
  session.StopAcquisition();
  session.gentl.DSFlushQueue(session.stream, ACQ_QUEUE_ALL_DISCARD);
}

void OpenInterfaceAgain(Session& session) {
  session.Close();
  session.transportLayer = session.gentl.TLOpen.Open();
  static_cast<void>(session.FindInterfaces());
  session.OpenInterface(std::string(session.interfaceId));
}

void Sleep(int milliseconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

}  // namespace grab
