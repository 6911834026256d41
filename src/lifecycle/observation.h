// Watching a forwarded call without touching it.
#ifndef VEXTREL_LIFECYCLE_OBSERVATION_H
#define VEXTREL_LIFECYCLE_OBSERVATION_H

#include <utility>

#include "platform/platform.h"

namespace vextrel {

// Runs `action`, something of ours that follows a forwarded call. The consumer sees nothing of it:
// the thread's last error stays what the target left, and a failure inside, such as an allocation
// that fails, ends here. Whatever thread it runs on.
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
