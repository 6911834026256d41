// SPDX-License-Identifier: MIT
// Timing of calls into the target, in the extended module alone: a line when a call enters the
// target and one when it leaves, with the microseconds in between. A call that hangs, or that the
// process died in, is an entry without its other line.
//
// The lines go to the category "Vextrel.Timing" at DEBUG, which is silent unless the configuration
// lets DEBUG through. Silent, a call costs one test of a priority. Written, the consumer sees
// nothing of it: see Observe. Thread-safe but for StartTiming.
#ifndef VEXTREL_LIFECYCLE_TIMED_CALL_H
#define VEXTREL_LIFECYCLE_TIMED_CALL_H

#include <chrono>
#include <cstdint>
#include <log4cpp/Category.hh>
#include <type_traits>

#include "calllog/checked_format.h"
#include "gentl/gentl.h"

namespace vextrel {

// The name of a GenTL function as a type: written "..."_function.
template <FormatText name>
struct FunctionName {};
inline namespace literals {
template <FormatText name>
consteval FunctionName<name> operator""_function() {
  return {};
}
}  // namespace literals

// Where the lines go; null until StartTiming.
extern log4cpp::Category* timingLogger;

// Called by each GCInitLib. Not thread-safe.
void StartTiming();

[[nodiscard]] inline bool IsTimingWritten() noexcept {
  return timingLogger != nullptr && timingLogger->isDebugEnabled();
}

// One call's time in the target, from construction to destruction. Belongs to one thread.
//
// REQUIRES: IsTimingWritten(), and `function` lives as long as the object.
class CallTimer {
 public:
  explicit CallTimer(const char* function) noexcept;
  CallTimer(const char* function, const volatile void* firstArgument) noexcept;
  CallTimer(const char* function, std::int32_t firstArgument) noexcept;
  // Also when the target throws.
  ~CallTimer();
  CallTimer(const CallTimer&) = delete;
  CallTimer& operator=(const CallTimer&) = delete;

 private:
  const char* function_;
  std::uint64_t number_;
  std::chrono::steady_clock::time_point start_;
};

// What stands in a slot in place of the target's function: calls it, timed.
template <FormatText name, typename Function>
class TimedCall;
template <FormatText name, typename... Arguments>
class TimedCall<name, GC_ERROR GC_CALLTYPE(Arguments...)> {
 public:
  using Function = GC_ERROR GC_CALLTYPE(Arguments...);

  // A function that calls `target`, timed. There is one for each name: it calls the latest target.
  [[nodiscard]] static Function* Around(Function* target) noexcept {
    target_ = target;
    return &Call;
  }

 private:
  static GC_ERROR GC_CALLTYPE Call(Arguments... arguments) {
    if (!IsTimingWritten()) {
      return target_(arguments...);
    }
    return CallTimed(arguments...);
  }

  static GC_ERROR CallTimed(Arguments... arguments) {
    const CallTimer timer = TimerOf(arguments...);
    return target_(arguments...);
  }

  static CallTimer TimerOf() noexcept { return CallTimer(name.characters); }
  template <typename First, typename... Others>
  static CallTimer TimerOf(First first, Others... /*others*/) noexcept {
    return CallTimer(name.characters, first);
  }

  static inline Function* target_ = nullptr;
};

}  // namespace vextrel

#endif  // VEXTREL_LIFECYCLE_TIMED_CALL_H
