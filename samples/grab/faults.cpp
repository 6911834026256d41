// SPDX-License-Identifier: MIT
#include "faults.h"

#include <algorithm>

#include "device_faults.h"
#include "module_faults.h"
#include "stream_faults.h"
#include "timing_faults.h"

namespace grab {
namespace {

constexpr Fault kFaults[] = {
    {"announce-ever-more", Fault::Time::Stopped, AnnounceEverMore},
    {"ask-counters", Fault::Time::Running, AskCounters},
    {"ask-for-one-image", Fault::Time::Running, AskForOneImage},
    {"ask-on-other-thread", Fault::Time::Stopped, AskOnAnotherThread},
    {"ask-optional", Fault::Time::Stopped, AskOptional},
    {"ask-too-small", Fault::Time::Stopped, AskTooSmall},
    {"ask-unplugged", Fault::Time::Running, AskUnplugged},
    {"close-nothing", Fault::Time::Stopped, CloseNothing},
    {"close-twice", Fault::Time::Stopped, CloseTwice},
    {"close-while-running", Fault::Time::Running, CloseWhileRunning},
    {"count-unlisted", Fault::Time::Stopped, CountUnlisted},
    {"end-while-waiting", Fault::Time::Stopped, EndWhileWaiting},
    {"flush-while-running", Fault::Time::Running, FlushWhileRunning},
    {"hold-buffers", Fault::Time::Running, HoldBuffers},
    {"ignore-errors", Fault::Time::Running, IgnoreErrors},
    {"index-behind-end", Fault::Time::Stopped, AskBehindTheEnd},
    {"init-twice", Fault::Time::Stopped, InitTwice},
    {"keep-all-buffers", Fault::Time::Running, KeepAllBuffers},
    {"kill-without-wait", Fault::Time::Running, KillWithoutWait},
    {"lag-behind", Fault::Time::Running, LagBehind},
    {"leave-buffers", Fault::Time::Stopped, LeaveBuffers},
    {"leave-open", Fault::Time::Stopped, LeaveOpen},
    {"leave-size-unset", Fault::Time::Stopped, LeaveSizeUnset},
    {"mix-buffers", Fault::Time::Stopped, MixBuffers},
    {"open-twice", Fault::Time::Stopped, OpenTwice},
    {"open-unlisted", Fault::Time::Stopped, OpenUnlisted},
    {"poll-event", Fault::Time::Stopped, PollEvent},
    {"poll-register", Fault::Time::Stopped, PollRegister},
    {"queue-foreign", Fault::Time::Stopped, QueueForeign},
    {"queue-late", Fault::Time::Stopped, QueueLate},
    {"queue-nothing", Fault::Time::Stopped, QueueNothing},
    {"queue-revoked", Fault::Time::Stopped, QueueRevoked},
    {"queue-twice", Fault::Time::Stopped, QueueTwice},
    {"read-closed", Fault::Time::Stopped, ReadClosed},
    {"read-queued", Fault::Time::Running, ReadQueuedBuffer},
    {"register-twice", Fault::Time::Stopped, RegisterTwice},
    {"revoke-queued", Fault::Time::Stopped, RevokeQueued},
    {"share-memory", Fault::Time::Stopped, ShareMemory},
    {"start-twice", Fault::Time::Running, StartTwice},
    {"start-with-small-buffer", Fault::Time::Stopped, StartWithSmallBuffer},
    {"start-wrongly", Fault::Time::Stopped, StartWrongly},
    {"stop-at-once", Fault::Time::Stopped, StopAtOnce},
    {"stop-twice", Fault::Time::Stopped, StopTwice},
    {"stop-while-waiting", Fault::Time::Running, StopWhileWaiting},
    {"unknown-handle", Fault::Time::Stopped, UseUnknownHandle},
    {"update-briefly", Fault::Time::Stopped, UpdateBriefly},
    {"update-while-reading", Fault::Time::Stopped, UpdateWhileReading},
    {"use-closed-library", Fault::Time::Stopped, UseClosedLibrary},
    {"use-second-interface", Fault::Time::Stopped, UseSecondInterface},
    {"wait-briefly", Fault::Time::Running, WaitBriefly},
    {"wait-for-nothing", Fault::Time::Running, WaitForNothing},
    {"wait-forever", Fault::Time::Running, WaitForever},
    {"wait-under-lock", Fault::Time::Stopped, WaitUnderLock},
    {"wait-unregistered", Fault::Time::Stopped, WaitUnregistered},
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
