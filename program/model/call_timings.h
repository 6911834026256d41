// SPDX-License-Identifier: MIT
// What timing lines tell: when each call entered the target, how long it was there, and which ones
// never came back.
//
// A call's own line is written when it has returned. On its thread, its two timing lines stand in
// front of that.
#ifndef VEXTREL_PROGRAM_MODEL_CALL_TIMINGS_H
#define VEXTREL_PROGRAM_MODEL_CALL_TIMINGS_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "model/duration_counts.h"
#include "model/handles.h"
#include "reading/record_reader.h"

namespace vextrel::program {

// A call that has entered the target.
struct EnteredCall {
  enum class Argument : std::uint8_t { None, Pointer, Number };

  std::uint64_t number = 0;   // the call's own within its process, from 1, in the order of entering
  std::size_t function = 0;   // into FunctionNames()
  std::uint32_t thread = 0;   // from 1; 0 if the layout doesn't show it
  std::uint32_t session = 0;  // from 1
  LogPlace place;             // of the line that says so
  std::optional<std::int64_t> time;  // in microseconds, as fine as the layout shows it
  Argument argumentKind = Argument::None;
  std::uint64_t argument = 0;   // the first one
  HandleId handle = kNoHandle;  // if the first argument is one that is known
};

// A call that has left the target.
struct TimedCall {
  // If the log starts after the call's entry, it has the place of the other line and the time that
  // follows from the duration.
  EnteredCall entered;
  std::uint64_t nanoseconds = 0;
};

class CallTimings {
 public:
  // Kept whole; of the rest, only the number is known.
  static constexpr std::size_t kMostNeverReturned = 1000;
  static constexpr std::size_t kMostSlowest = 10;

  // `threadsAreKnown` tells whether the layout shows them: a thread is in one call at a time.
  explicit CallTimings(bool threadsAreKnown);

  void Enter(const EnteredCall& call);
  // `leaving` is the call as its second line tells it.
  void Leave(const EnteredCall& leaving, std::uint64_t nanoseconds);
  // The call whose own line comes now: the first one of this function that has left on this thread
  // and hasn't had its line. Null if there's none; valid until the next call of any function here.
  // `argument` is the first one, if it's a handle.
  [[nodiscard]] const TimedCall* Claim(std::uint32_t thread, std::size_t function,
                                       std::optional<std::uint64_t> argument);
  // The process has ended, or the log: what is in the target doesn't return.
  void Abandon();

  [[nodiscard]] bool Any() const noexcept { return any_; }
  // Those that are in the target now, in the order of their lines.
  [[nodiscard]] const std::vector<EnteredCall>& InTarget() const noexcept { return entered_; }
  // In the order in which that became known.
  [[nodiscard]] const std::vector<EnteredCall>& NeverReturned() const noexcept {
    return neverReturned_;
  }
  [[nodiscard]] std::uint64_t NeverReturnedCount() const noexcept { return neverReturnedCount_; }
  [[nodiscard]] const DurationCounts& DurationsOf(std::size_t function) const {
    return durations_[function];
  }
  // From the slowest on.
  [[nodiscard]] const std::vector<TimedCall>& Slowest() const noexcept { return slowest_; }

 private:
  void Lose(const EnteredCall& call);
  void NoteSlow(const TimedCall& call);

  bool threadsAreKnown_;
  bool any_ = false;
  std::vector<EnteredCall> entered_;
  std::vector<TimedCall> left_;  // whose own lines are to come
  TimedCall claimed_;
  std::vector<EnteredCall> neverReturned_;
  std::uint64_t neverReturnedCount_ = 0;
  std::vector<DurationCounts> durations_;  // by function
  std::vector<TimedCall> slowest_;
};

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_MODEL_CALL_TIMINGS_H
