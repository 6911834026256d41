// SPDX-License-Identifier: MIT
#include "stream_faults.h"

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <mutex>
#include <thread>

#include "fault_calls.h"

namespace grab {

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

// Frames are lost, but no buffer.
void FlushWhileRunning(Session& session) {
  static_cast<void>(session.gentl.EventFlush.IfOffered(session.newBuffer));
}

// Takes a frame, if one comes in time, and returns whether it did.
static bool TakeFrame(Session& session, std::uint64_t timeoutMs) {
  std::array<void*, 2> data{};
  std::size_t size = sizeof data;
  const GC_ERROR result =
      session.gentl.EventGetData.Try(session.newBuffer, data.data(), &size, timeoutMs);
  if (result == GC_ERR_SUCCESS) {
    Call(session.gentl.DSQueueBuffer, session.stream, data.front());
  }
  return result == GC_ERR_SUCCESS;
}

// The camera stands still and the stream doesn't.
void WaitForNothing(Session& session) {
  session.camera->Execute("AcquisitionStop");
  // Frames on their way come first.
  for (int timeouts = 0; timeouts < 3;) {
    timeouts += TakeFrame(session, 190) ? 0 : 1;
  }
}

// For less than a frame takes, if the camera makes fewer than a hundred a second.
void WaitBriefly(Session& session) {
  for (int frames = 0; frames < 8;) {
    frames += TakeFrame(session, 10) ? 1 : 0;
  }
}

// No frame comes, and another thread gets its turn between two waits only.
void WaitUnderLock(Session& session) {
  constexpr int turns = 11;
  std::mutex lock;
  std::condition_variable isNext;
  bool isReading = false;
  const auto takeTurns = [&](bool reads, const std::function<void()>& turn) {
    for (int i = 0; i < turns; ++i) {
      std::unique_lock held(lock);
      isNext.wait(held, [&] { return isReading == reads; });
      turn();
      isReading = !reads;
      isNext.notify_one();
    }
  };
  std::thread waiting([&] { takeTurns(false, [&] { WaitOnce(session, 60); }); });
  takeTurns(true, [&] { static_cast<void>(session.camera->Read("Width")); });
  waiting.join();
}

// Like a process that is ended from outside.
void EndWhileWaiting(Session& session) {
  std::cout.flush();
  std::thread([&] { WaitOnce(session, 60'000); }).detach();
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  std::_Exit(0);
}

// Starts the stream once more, but not the camera, so that no frame comes.
static void StartAgain(Session& session, const std::function<void()>& meanwhile) {
  session.gentl.DSStartAcquisition(session.stream, ACQ_START_FLAGS_DEFAULT, ~std::uint64_t{0});
  meanwhile();
  session.gentl.DSStopAcquisition(session.stream, ACQ_STOP_FLAGS_DEFAULT);
  session.gentl.DSFlushQueue(session.stream, ACQ_QUEUE_ALL_DISCARD);
}

void QueueNothing(Session& session) {
  StartAgain(session, [&] { WaitOnce(session, 120); });
}

void QueueLate(Session& session) {
  StartAgain(session, [&] {
    session.gentl.DSQueueBuffer(session.stream, session.buffers.front());
    WaitOnce(session, 20);
  });
}

void AnnounceEverMore(Session& session) {
  for (int cycle = 0; cycle < 3; ++cycle) {
    session.AnnounceOwnBuffer(session.memory.front().size());
    for (BUFFER_HANDLE buffer : session.buffers) {
      session.gentl.DSQueueBuffer(session.stream, buffer);
    }
    StartAgain(session, [&] { WaitOnce(session, 20); });
  }
}

void StartWithSmallBuffer(Session& session) {
  session.AnnounceOwnBuffer(16);
  session.gentl.DSQueueBuffer(session.stream, session.buffers.back());
  StartAgain(session, [&] { WaitOnce(session, 20); });
}

void StartWrongly(Session& session) {
  session.gentl.DSQueueBuffer(session.stream, session.buffers.front());
  Call(session.gentl.DSStartAcquisition, session.stream,
       static_cast<ACQ_START_FLAGS>(ACQ_START_FLAGS_CUSTOM_ID - 1), ~std::uint64_t{0});
  session.gentl.DSFlushQueue(session.stream, ACQ_QUEUE_ALL_DISCARD);
}

void MixBuffers(Session& session) {
  static_cast<void>(session.AnnounceProducersBuffer(session.memory.front().size()));
}

void ShareMemory(Session& session) {
  std::vector<std::uint8_t>& shared = session.memory.front();
  BUFFER_HANDLE buffer = nullptr;
  session.gentl.DSAnnounceBuffer(session.stream, shared.data() + shared.size() / 2,
                                 shared.size() / 2, &session, &buffer);
  session.buffers.push_back(buffer);
}

void LeaveBuffers(Session& session) {
  session.buffers.clear();
}

}  // namespace grab
