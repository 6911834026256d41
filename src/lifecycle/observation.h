// SPDX-License-Identifier: MIT
// Observing a forwarded call without affecting it.
#ifndef VEXTREL_LIFECYCLE_OBSERVATION_H
#define VEXTREL_LIFECYCLE_OBSERVATION_H

#include <utility>

#include "platform/platform.h"

namespace vextrel {

// Runs `action` after a forwarded call. The consumer doesn't notice: the thread's last error stays
// as the target left it, and exceptions, such as that of a failed allocation, are swallowed.
// Thread-safe if `action` is.
template <typename Action>
void Observe(Action&& action) noexcept {
  const platform::LastErrorGuard guard;
  try {
    std::forward<Action>(action)();
  } catch (...) {  // NOLINT(bugprone-empty-catch): there is nobody to tell but the consumer.
  }
}

}  // namespace vextrel

#endif  // VEXTREL_LIFECYCLE_OBSERVATION_H
