// SPDX-License-Identifier: MIT
#include "page/stream_courses.h"

namespace vextrel::program {

void IntervalCell::Add(std::int64_t time, std::int64_t interval, const LogPlace& place) {
  Merge({1, interval, interval, time, place});
}

void IntervalCell::Merge(const IntervalCell& later) {
  count += later.count;
  sum += later.sum;
  if (later.longest > longest) {
    longest = later.longest;
    longestTime = later.longestTime;
    longestAt = later.longestAt;
  }
}

void DepthCell::Add(std::int64_t depth) {
  if (depth != kUnknown) {
    least = std::min(least, depth);
  }
  last = depth;
}

void DepthCell::Merge(const DepthCell& later) {
  least = std::min(least, later.least);
  last = later.last;
}

StreamCourses::StreamCourses(const SessionModel& told) {
  for (std::size_t i = 0; i < told.Streams().size(); ++i) {
    courses_.emplace_back().stream = i;
  }
  std::stable_sort(courses_.begin(), courses_.end(),
                   [&told](const StreamCourse& left, const StreamCourse& right) {
                     return told.Streams()[left.stream].Frames() >
                            told.Streams()[right.stream].Frames();
                   });
  courses_.resize(std::min(courses_.size(), kMostStreams));
}

std::optional<std::int64_t> StreamCourses::Take(const SessionModel& model, std::int64_t time,
                                                const LogPlace& place) {
  std::optional<std::int64_t> interval;
  for (StreamCourse& each : courses_) {
    if (each.stream >= model.Streams().size()) {
      continue;
    }
    const Stream& stream = model.Streams()[each.stream];
    if (stream.Frames() != each.frames) {
      each.frames = stream.Frames();
      if (stream.LastInterval().has_value()) {
        each.intervals.At(time).Add(time, *stream.LastInterval(), place);
        each.intervals.Fit(kMostCells);
        interval = stream.LastInterval();
      }
    }
    if (stream.CurrentDepth() != each.depth) {
      each.depth = stream.CurrentDepth();
      each.depths.At(time).Add(each.depth.value_or(DepthCell::kUnknown));
      each.depths.Fit(kMostCells);
    }
  }
  return interval;
}

}  // namespace vextrel::program
