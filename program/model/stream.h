// SPDX-License-Identifier: MIT
// What a data stream did: its frames, its queue, and what they tell.
#ifndef VEXTREL_PROGRAM_MODEL_STREAM_H
#define VEXTREL_PROGRAM_MODEL_STREAM_H

#include <cstdint>
#include <optional>

#include "model/handles.h"
#include "model/value_counts.h"
#include "reading/record_reader.h"

namespace vextrel::program {

// Times are in microseconds.
class Stream {
 public:
  explicit Stream(HandleId handle, bool opened) : handle_(handle), depthIsKnown_(opened) {}

  void Start(std::int64_t now, const LogPlace& place);
  void Stop(std::int64_t now);
  // A frame was delivered; `wasQueued` tells whether its buffer was.
  void Deliver(std::int64_t now, const LogPlace& place, bool wasQueued);
  void Hold(std::int64_t duration) { holds_.Add(duration); }
  void TimeOut() { ++timeouts_; }
  void SeeFrameId(std::uint32_t frameId, const LogPlace& place);
  void SeeIncomplete(bool isIncomplete);

  // The number of buffers that the producer has changes.
  void ChangeDepth(std::int64_t now, std::int64_t difference);
  void SetDepth(std::int64_t now, std::int64_t depth);
  // From here on nobody can tell how many the producer has, until SetDepth.
  void LoseDepth(std::int64_t now);
  void Announce() { ++announced_; }

  [[nodiscard]] HandleId Id() const noexcept { return handle_; }
  [[nodiscard]] bool IsRunning() const noexcept { return isRunning_; }
  // Where it was started last.
  [[nodiscard]] const std::optional<LogPlace>& StartedAt() const noexcept { return startedAt_; }
  [[nodiscard]] std::uint64_t Frames() const noexcept { return frames_; }
  [[nodiscard]] std::uint64_t TimeOuts() const noexcept { return timeouts_; }
  [[nodiscard]] std::uint64_t Announced() const noexcept { return announced_; }
  // Nothing unless the application asked.
  [[nodiscard]] const std::optional<std::uint64_t>& Incomplete() const noexcept {
    return incomplete_;
  }
  [[nodiscard]] const std::optional<std::uint64_t>& MissingFrameIds() const noexcept {
    return missing_;
  }
  // True iff every frame had the same id: the producer doesn't count.
  [[nodiscard]] bool FrameIdsStandStill() const noexcept {
    return frameIds_ > 1 && !frameIdsDiffer_;
  }
  [[nodiscard]] const std::optional<LogPlace>& FirstGap() const noexcept { return firstGap_; }
  [[nodiscard]] const ValueCounts& Intervals() const noexcept { return intervals_; }
  // Between the latest frame and the one before it; nothing for the first one after a start.
  [[nodiscard]] const std::optional<std::int64_t>& LastInterval() const noexcept {
    return lastInterval_;
  }
  [[nodiscard]] const std::optional<LogPlace>& LongestIntervalAt() const noexcept {
    return longestAt_;
  }
  [[nodiscard]] const ValueCounts& Holds() const noexcept { return holds_; }

  // Of the time from each start to its stop in which the depth is known.
  struct Depth {
    std::int64_t min;
    std::optional<double> mean;  // nothing if no time passed
    std::int64_t timeAtZero;
  };
  [[nodiscard]] std::optional<Depth> QueueDepth() const;
  // As it is now.
  [[nodiscard]] std::optional<std::int64_t> CurrentDepth() const {
    return depthIsKnown_ ? std::optional<std::int64_t>(depth_) : std::nullopt;
  }

 private:
  void Advance(std::int64_t now);

  HandleId handle_;
  bool isRunning_ = false;
  std::optional<LogPlace> startedAt_;
  std::uint64_t frames_ = 0;
  std::uint64_t timeouts_ = 0;
  std::uint64_t announced_ = 0;
  std::optional<std::uint64_t> incomplete_;
  std::optional<std::uint64_t> missing_;
  std::optional<LogPlace> firstGap_;
  std::optional<std::uint32_t> lastFrameId_;
  std::uint64_t frameIds_ = 0;
  bool frameIdsDiffer_ = false;
  std::optional<std::int64_t> lastFrame_;
  std::optional<std::int64_t> lastInterval_;
  ValueCounts intervals_;
  ValueCounts holds_;
  std::int64_t longest_ = -1;
  std::optional<LogPlace> longestAt_;

  bool depthIsKnown_;
  std::int64_t depth_ = 0;
  std::int64_t depthSince_ = 0;
  std::optional<std::int64_t> minDepth_;
  double depthTime_ = 0;  // depth times duration
  std::int64_t knownTime_ = 0;
  std::int64_t timeAtZero_ = 0;
};

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_MODEL_STREAM_H
