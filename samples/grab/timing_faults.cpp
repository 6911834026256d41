// SPDX-License-Identifier: MIT
#include "timing_faults.h"

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <deque>
#include <functional>
#include <iostream>
#include <mutex>
#include <thread>

#include "fault_calls.h"
#include "gentl/gentl_newer.h"

namespace grab {

// So many times, then a short break, and so on for a little longer than a second. Mended, it soon
// has something else to do.
static void Repeat(int times, bool mended, const std::function<void()>& action) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point end = Clock::now() + std::chrono::milliseconds(mended ? 200 : 1050);
  while (Clock::now() < end) {
    for (int i = 0; i < times; ++i) {
      action();
    }
    Sleep(50);
  }
  action();
}

void PollEvent(Session& session, bool mended) {
  Repeat(100, mended, [&] { WaitOnce(session, 0); });
}

void PollRegister(Session& session, bool mended) {
  Repeat(25, mended, [&] { static_cast<void>(session.camera->Read("Width")); });
}

// For less than a frame takes, if the camera makes a few of them a second.
void WaitBriefly(Session& session, bool mended) {
  for (int frames = 0; frames < 5;) {
    frames += TakeFrame(session, mended ? 500 : 10) ? 1 : 0;
  }
}

// The camera stands still and the stream doesn't.
void WaitForNothing(Session& session, bool mended) {
  if (!mended) {
    session.camera->Execute("AcquisitionStop");
  }
  // Frames on their way come first.
  for (int left = 3; left > 0;) {
    left -= TakeFrame(session, 190) == mended ? 1 : 0;
  }
}

// Gives each buffer back when four more frames have come.
void HoldBuffers(Session& session, bool mended) {
  const std::size_t most = mended ? 0 : 4;
  QueueMore(session, 12);
  std::deque<BUFFER_HANDLE> held;
  for (int i = 0; i < 12; ++i) {
    held.push_back(session.WaitForBuffer(5000));
    if (held.size() > most) {
      session.gentl.DSQueueBuffer(session.stream, held.front());
      held.pop_front();
    }
  }
}

// Is busy with the first frames, so that all that come after them are old, for want of time but
// not of buffers.
void LagBehind(Session& session, bool mended) {
  QueueMore(session, 64);
  const int busy = mended ? 0 : 7;
  const int frames = mended ? 12 : 30;
  for (int i = 0; i < frames; ++i) {
    BUFFER_HANDLE buffer = session.WaitForBuffer(5000);
    static_cast<void>(
        session.gentl.DSGetBufferInfo.Number(session.stream, buffer, BUFFER_INFO_TIMESTAMP_NS));
    session.gentl.DSQueueBuffer(session.stream, buffer);
    Sleep(i < busy ? 90 : 0);
  }
}

// Takes no frame for so long that the producer runs out of buffers, unless it gets more.
void AskCounters(Session& session, bool mended) {
  QueueMore(session, mended ? 60 : 0);
  Sleep(150);
  static_cast<void>(session.gentl.DSGetInfo.Number(session.stream, STREAM_INFO_NUM_UNDERRUN));
}

// No frame comes, and another thread gets its turn between two waits only. Mended, it needn't wait
// for its turn.
void WaitUnderLock(Session& session, bool mended) {
  constexpr int turns = 11;
  std::mutex lock;
  std::condition_variable isNext;
  bool isReading = false;
  const auto takeTurns = [&](bool reads, const std::function<void()>& turn) {
    for (int i = 0; i < turns; ++i) {
      std::unique_lock held(lock);
      isNext.wait(held, [&] { return mended || isReading == reads; });
      if (mended) {
        held.unlock();
        turn();
        continue;
      }
      turn();
      isReading = !reads;
      isNext.notify_one();
    }
  };
  std::thread waiting([&] { takeTurns(false, [&] { WaitOnce(session, 60); }); });
  takeTurns(true, [&] {
    static_cast<void>(session.camera->Read("Width"));
    Sleep(mended ? 35 : 0);
  });
  waiting.join();
}

// The producer may wait for the wait.
void StopWhileWaiting(Session& session, bool mended) {
  session.camera->Execute("AcquisitionStop");
  std::thread waiting([&] {
    while (TakeFrame(session, 1300)) {
      // That frame was on its way.
    }
  });
  Sleep(100);
  if (mended) {
    static_cast<void>(session.gentl.EventKill.IfOffered(session.newBuffer));
    waiting.join();
  }
  StopAndFlush(session);
  if (!mended) {
    waiting.join();
  }
}

// Like a process that is ended from outside.
void EndWhileWaiting(Session& session, bool mended) {
  std::cout.flush();
  std::thread waiting([&] { WaitOnce(session, 60'000); });
  Sleep(100);
  if (!mended) {
    std::_Exit(0);
  }
  static_cast<void>(session.gentl.EventKill.IfOffered(session.newBuffer));
  waiting.join();
}

}  // namespace grab
