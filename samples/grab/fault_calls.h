// SPDX-License-Identifier: MIT
// What faults are made of. A fault is a function of the session. Mended, it does the same without
// the mistake, and the two differ in nothing else.
#ifndef VEXTREL_SAMPLES_GRAB_FAULT_CALLS_H
#define VEXTREL_SAMPLES_GRAB_FAULT_CALLS_H

#include <cstdint>
#include <functional>

#include "session.h"

namespace grab {

inline constexpr std::uint64_t kForever = ~std::uint64_t{0};

// What the producer answers is its business; here it's about the call.
template <typename F, typename... Arguments>
void Call(const F& function, Arguments... arguments) {
  function.Quietly(arguments...);
}

// Leaves the frame that comes where it is.
void WaitOnce(Session& session, std::uint64_t timeoutMs);
// Takes a frame, if one comes in time, and returns whether it did.
bool TakeFrame(Session& session, std::uint64_t timeoutMs);
// Announces so many more buffers, and queues them.
void QueueMore(Session& session, int count);
void RevokeAll(Session& session);
// With all that belongs to it.
void CloseStream(Session& session);

// Starts the stream once more, but not the camera, so that no frame comes.
void StartAgain(Session& session, const std::function<void()>& meanwhile);
// What GrabFrames does when the frames are there.
void StopAndFlush(Session& session);
// Closes all, and opens the same interface again, without a list of devices.
void OpenInterfaceAgain(Session& session);

void Sleep(int milliseconds);

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_FAULT_CALLS_H
