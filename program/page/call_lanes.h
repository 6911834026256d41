// SPDX-License-Identifier: MIT
// The calls over time, a lane for each thread: all of them one by one if they aren't too many.
// Otherwise only those that matter, in front of the counts of all.
#ifndef VEXTREL_PROGRAM_PAGE_CALL_LANES_H
#define VEXTREL_PROGRAM_PAGE_CALL_LANES_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "model/session_model.h"
#include "model/time_buckets.h"

namespace vextrel::program {

// What functions are for. In the order of kCallGroupNames.
enum class CallGroup : std::uint8_t { Event, Buffer, Info, Port, Open, Acquire };
inline constexpr std::array<std::string_view, 6> kCallGroupNames = {
    "events", "buffers", "questions", "ports", "opening and closing", "starting and stopping"};
[[nodiscard]] CallGroup GroupOf(std::string_view function);

// One call. Times are in nanoseconds since the log's first line.
struct LaneCall {
  std::int64_t begin = 0;
  std::int64_t duration = 0;
  // Of a log without timing lines: a wait took no longer than `duration`, and how long another call
  // took isn't known.
  bool isTimed = false;
  bool neverReturned = false;
  bool failed = false;  // a wait that timed out didn't
  bool timedOut = false;
  std::uint8_t lane = 0;
  std::uint16_t function = 0;  // into FunctionNames()
  HandleId handle = kNoHandle;
  LogPlace place;
};

// All calls of a lane and a stretch.
struct LaneCell {
  std::array<std::uint32_t, kCallGroupNames.size()> calls{};  // by group
  std::uint32_t failed = 0;
  std::int64_t spent = 0;  // in nanoseconds; of timed calls

  void Merge(const LaneCell& later);
};

class CallLanes {
 public:
  static constexpr std::size_t kMostLanes = 24;  // the last one is for all further threads
  static constexpr std::size_t kMostCalls = 32'000;
  static constexpr std::size_t kMostFailed = 6'000;
  static constexpr std::size_t kMostSlow = 4'000;
  static constexpr std::size_t kMostNear = 10'000;
  static constexpr std::size_t kMostStretches = 60;  // of calls before late frames
  static constexpr std::size_t kMostOfAStretch = 200;
  static constexpr std::size_t kMostCells = 20'000;  // of all lanes

  // `calls` is how many there are in the log.
  explicit CallLanes(std::uint64_t calls) : keepsAll_(calls <= kMostCalls) {}

  // To be called with each call after the model. `time` is in microseconds since the log's first
  // line and doesn't go back; `isNear` tells whether a finding is near.
  void Take(const SessionModel& model, const Record& record, const Message& message,
            const Context& context, std::int64_t time, bool isNear);
  // The latest call brought a frame, this long after the one before: what was called in between
  // may tell why. In microseconds.
  void EndInterval(std::int64_t interval);
  // Adds the calls that never returned, and sorts: call it when the log ends, at `time`.
  void Finish(const SessionModel& model, std::int64_t time);

  [[nodiscard]] bool KeepsAll() const noexcept { return keepsAll_; }
  // After Finish: those that were kept, from the first beginning to the last.
  [[nodiscard]] const std::vector<LaneCall>& Kept() const noexcept { return kept_; }
  // Of each lane, in the order of threads. Without cells if all calls were kept.
  [[nodiscard]] const std::vector<TimeBuckets<LaneCell>>& Lanes() const noexcept { return lanes_; }

 private:
  [[nodiscard]] std::uint8_t LaneOf(std::uint32_t thread);
  void Count(const LaneCall& call, std::int64_t time);
  void Keep(const LaneCall& call, bool isNear);

  // The calls of an interval, the latest ones if they are many.
  struct Stretch {
    std::int64_t interval = 0;
    std::vector<LaneCall> calls;
  };

  bool keepsAll_;
  std::vector<LaneCall> kept_;
  std::vector<LaneCall> slow_;      // a heap, the fastest one first
  std::vector<LaneCall> recent_;    // since the latest frame
  std::vector<Stretch> stretches_;  // a heap, the shortest one first
  std::vector<LaneCall> failed_;    // each `failedStep_`-th one
  std::uint64_t failedStep_ = 1;
  std::uint64_t failedCount_ = 0;
  std::size_t near_ = 0;
  std::vector<TimeBuckets<LaneCell>> lanes_;
  std::vector<std::int64_t> lastLine_;  // by lane
  std::vector<std::int64_t> ends_;      // of each lane's latest call, in nanoseconds
};

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_PAGE_CALL_LANES_H
