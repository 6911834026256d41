// SPDX-License-Identifier: MIT
// How the frame intervals and the queues of the streams went over time.
#ifndef VEXTREL_PROGRAM_PAGE_STREAM_COURSES_H
#define VEXTREL_PROGRAM_PAGE_STREAM_COURSES_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "model/session_model.h"
#include "model/time_buckets.h"

namespace vextrel::program {

// Frames, in microseconds.
struct IntervalCell {
  std::uint64_t count = 0;
  std::int64_t sum = 0;
  std::int64_t longest = -1;
  std::int64_t longestTime = 0;  // of the frame that ended it
  LogPlace longestAt;

  void Add(std::int64_t time, std::int64_t interval, const LogPlace& place);
  void Merge(const IntervalCell& later);
};

// Buffers that the producer has.
struct DepthCell {
  static constexpr std::int64_t kUnknown = -1;

  std::int64_t least = INT64_MAX;  // that is known
  std::int64_t last = kUnknown;

  void Add(std::int64_t depth);
  void Merge(const DepthCell& later);
};

struct StreamCourse {
  std::size_t stream = 0;  // into the model's streams
  TimeBuckets<IntervalCell> intervals;
  TimeBuckets<DepthCell> depths;
  std::uint64_t frames = 0;  // so far
  std::optional<std::int64_t> depth;
};

class StreamCourses {
 public:
  static constexpr std::size_t kMostStreams = 8;
  static constexpr std::size_t kMostCells = 2000;  // of each kind, of a stream

  // Follows those streams of `told` that have most frames.
  explicit StreamCourses(const SessionModel& told);

  // To be called after each call. `time` is in microseconds since the log's first line, and
  // doesn't go back. Returns the interval that ended with this call, if it brought a frame.
  std::optional<std::int64_t> Take(const SessionModel& model, std::int64_t time,
                                   const LogPlace& place);

  // The stream with most frames comes first.
  [[nodiscard]] const std::vector<StreamCourse>& All() const noexcept { return courses_; }

 private:
  std::vector<StreamCourse> courses_;
};

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_PAGE_STREAM_COURSES_H
