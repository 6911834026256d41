// SPDX-License-Identifier: MIT
// What all faults are made of.
#ifndef VEXTREL_SAMPLES_GRAB_FAULT_CALLS_H
#define VEXTREL_SAMPLES_GRAB_FAULT_CALLS_H

#include <array>
#include <cstdint>

#include "session.h"

namespace grab {

// What the producer answers is its business; here it's about the call.
template <typename F, typename... Arguments>
void Call(const F& function, Arguments... arguments) {
  function.Quietly(arguments...);
}

// Leaves the frame that comes where it is.
inline void WaitOnce(Session& session, std::uint64_t timeoutMs) {
  std::array<void*, 2> data{};
  std::size_t size = sizeof data;
  Call(session.gentl.EventGetData, session.newBuffer, data.data(), &size, timeoutMs);
}

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_FAULT_CALLS_H
