// SPDX-License-Identifier: MIT
#include "stream_faults.h"

#include <utility>

#include "fault_calls.h"
#include "gentl_1_5.h"

namespace grab {

// Takes a frame, asks something of it, and gives its buffer back; all in this order if it's right.
static void AskOfAFrame(Session& session, BUFFER_INFO_CMD command, bool right) {
  BUFFER_HANDLE buffer = session.WaitForBuffer(5000);
  if (!right) {
    session.gentl.DSQueueBuffer(session.stream, buffer);
  }
  static_cast<void>(session.gentl.DSGetBufferInfo.Number(session.stream, buffer, command));
  if (right) {
    session.gentl.DSQueueBuffer(session.stream, buffer);
  }
}

void KeepAllBuffers(Session& session, bool mended) {
  for (std::size_t i = 0; i < session.buffers.size(); ++i) {
    BUFFER_HANDLE buffer = session.WaitForBuffer(5000);
    if (mended) {
      session.gentl.DSQueueBuffer(session.stream, buffer);
    }
  }
  WaitOnce(session, 80);
}

void ReadQueuedBuffer(Session& session, bool mended) {
  AskOfAFrame(session, BUFFER_INFO_WIDTH, mended);
}

// A producer may refuse to take one of several parts for the image.
void AskForOneImage(Session& session, bool mended) {
  AskOfAFrame(session, BUFFER_INFO_PAYLOADTYPE, true);
  if (mended) {
    BUFFER_HANDLE buffer = session.WaitForBuffer(5000);
    GenTL15(session).PrintParts(buffer, {});
    session.gentl.DSQueueBuffer(session.stream, buffer);
  } else {
    AskOfAFrame(session, BUFFER_INFO_WIDTH, true);
  }
}

void StartTwice(Session& session, bool mended) {
  if (mended) {
    session.gentl.DSStopAcquisition(session.stream, ACQ_STOP_FLAGS_DEFAULT);
  }
  Call(session.gentl.DSStartAcquisition, session.stream, ACQ_START_FLAGS_DEFAULT, kForever);
  if (mended) {
    Sleep(20);
  }
}

void StopTwice(Session& session, bool mended) {
  if (mended) {
    session.gentl.DSQueueBuffer(session.stream, session.buffers.front());
    session.gentl.DSStartAcquisition(session.stream, ACQ_START_FLAGS_DEFAULT, kForever);
    Sleep(20);
  }
  Call(session.gentl.DSStopAcquisition, session.stream, ACQ_STOP_FLAGS_DEFAULT);
  session.gentl.DSFlushQueue(session.stream, ACQ_QUEUE_ALL_DISCARD);
}

void StopAtOnce(Session& session, bool mended) {
  // On a busy machine, it can take its time for once.
  const int cycles = mended ? 2 : 20;
  for (int i = 0; i < cycles; ++i) {
    session.gentl.DSQueueBuffer(session.stream, session.buffers.front());
    StartAgain(session, [&] { Sleep(mended ? 20 : 0); });
  }
}

void StartWrongly(Session& session, bool mended) {
  session.gentl.DSQueueBuffer(session.stream, session.buffers.front());
  const ACQ_START_FLAGS flags = mended ? ACQ_START_FLAGS_DEFAULT : ACQ_START_FLAGS_CUSTOM_ID - 1;
  Call(session.gentl.DSStartAcquisition, session.stream, flags, kForever);
  if (mended) {
    Sleep(20);
    session.gentl.DSStopAcquisition(session.stream, ACQ_STOP_FLAGS_DEFAULT);
  }
  session.gentl.DSFlushQueue(session.stream, ACQ_QUEUE_ALL_DISCARD);
}

void StartWithSmallBuffer(Session& session, bool mended) {
  session.AnnounceOwnBuffer(mended ? session.memory.front().size() : 16);
  session.gentl.DSQueueBuffer(session.stream, session.buffers.back());
  StartAgain(session, [&] { WaitOnce(session, 20); });
}

void QueueNothing(Session& session, bool mended) {
  if (mended) {
    session.gentl.DSQueueBuffer(session.stream, session.buffers.front());
  }
  StartAgain(session, [&] { WaitOnce(session, 120); });
}

void QueueLate(Session& session, bool mended) {
  const auto queue = [&] { session.gentl.DSQueueBuffer(session.stream, session.buffers.front()); };
  if (mended) {
    queue();
  }
  StartAgain(session, [&] {
    if (!mended) {
      queue();
    }
    WaitOnce(session, 20);
  });
}

void QueueTwice(Session& session, bool mended) {
  session.gentl.DSQueueBuffer(session.stream, session.buffers.front());
  if (mended) {
    session.gentl.DSFlushQueue(session.stream, ACQ_QUEUE_ALL_DISCARD);
  }
  Call(session.gentl.DSQueueBuffer, session.stream, session.buffers.front());
  session.gentl.DSFlushQueue(session.stream, ACQ_QUEUE_ALL_DISCARD);
}

void QueueRevoked(Session& session, bool mended) {
  BUFFER_HANDLE buffer = session.buffers.back();
  session.buffers.pop_back();
  session.gentl.DSRevokeBuffer(session.stream, buffer, nullptr, nullptr);
  if (mended) {
    session.AnnounceOwnBuffer(session.memory.front().size());
    buffer = session.buffers.back();
  }
  Call(session.gentl.DSQueueBuffer, session.stream, buffer);
  session.gentl.DSFlushQueue(session.stream, ACQ_QUEUE_ALL_DISCARD);
}

void RevokeQueued(Session& session, bool mended) {
  BUFFER_HANDLE buffer = session.buffers.back();
  session.gentl.DSQueueBuffer(session.stream, buffer);
  if (mended) {
    session.gentl.DSFlushQueue(session.stream, ACQ_QUEUE_ALL_DISCARD);
    session.buffers.pop_back();
  }
  Call(session.gentl.DSRevokeBuffer, session.stream, buffer, nullptr, nullptr);
  session.gentl.DSFlushQueue(session.stream, ACQ_QUEUE_ALL_DISCARD);
}

void AnnounceEverMore(Session& session, bool mended) {
  for (int cycle = 0; cycle < 3; ++cycle) {
    session.AnnounceOwnBuffer(session.memory.front().size());
    for (BUFFER_HANDLE buffer : session.buffers) {
      session.gentl.DSQueueBuffer(session.stream, buffer);
    }
    StartAgain(session, [&] { WaitOnce(session, 20); });
    if (mended) {
      session.gentl.DSRevokeBuffer(session.stream, session.buffers.back(), nullptr, nullptr);
      session.buffers.pop_back();
    }
  }
}

void MixBuffers(Session& session, bool mended) {
  const std::size_t size = session.memory.front().size();
  if (mended) {
    session.AnnounceOwnBuffer(size);
  } else {
    static_cast<void>(session.AnnounceProducersBuffer(size));
  }
}

void ShareMemory(Session& session, bool mended) {
  std::vector<std::uint8_t>& whole =
      mended ? session.memory.emplace_back(session.memory.front().size()) : session.memory.front();
  BUFFER_HANDLE buffer = nullptr;
  session.gentl.DSAnnounceBuffer(session.stream, whole.data() + whole.size() / 2, whole.size() / 2,
                                 &session, &buffer);
  session.buffers.push_back(buffer);
}

void LeaveBuffers(Session& session, bool mended) {
  if (!mended) {
    session.buffers.clear();
  }
}

// Frames are lost, but no buffer.
void FlushWhileRunning(Session& session, bool mended) {
  if (mended) {
    session.StopAcquisition();
  }
  static_cast<void>(session.gentl.EventFlush.IfOffered(session.newBuffer));
  if (mended) {
    session.gentl.DSFlushQueue(session.stream, ACQ_QUEUE_ALL_DISCARD);
  }
}

void KillWithoutWait(Session& session, bool mended) {
  if (session.gentl.EventKill.IfOffered(session.newBuffer) && !mended) {
    WaitOnce(session, 0);
  }
}

void RegisterTwice(Session& session, bool mended) {
  if (mended) {
    session.gentl.GCUnregisterEvent(session.stream, EVENT_NEW_BUFFER);
  }
  EVENT_HANDLE event = nullptr;
  Call(session.gentl.GCRegisterEvent, session.stream, EVENT_NEW_BUFFER, &event);
  if (mended) {
    session.newBuffer = event;
  }
}

void WaitUnregistered(Session& session, bool mended) {
  const auto registerAgain = [&] {
    session.gentl.GCRegisterEvent(session.stream, EVENT_NEW_BUFFER, &session.newBuffer);
  };
  session.gentl.GCUnregisterEvent(session.stream, EVENT_NEW_BUFFER);
  if (mended) {
    registerAgain();
  }
  WaitOnce(session, 0);
  if (!mended) {
    registerAgain();
  }
}

// Unregisters nothing, so a wait has no end but a frame or the closing of its stream.
void WaitForever(Session& session, bool mended) {
  WaitOnce(session, kForever);
  StopAndFlush(session);
  RevokeAll(session);
  session.newBuffer = nullptr;
  if (mended) {
    session.gentl.GCUnregisterEvent(session.stream, EVENT_NEW_BUFFER);
  }
  session.gentl.DSClose(std::exchange(session.stream, nullptr));
}

}  // namespace grab
