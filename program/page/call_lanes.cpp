// SPDX-License-Identifier: MIT
#include "page/call_lanes.h"

#include <algorithm>
#include <tuple>

namespace vextrel::program {
namespace {

constexpr std::int64_t kNanoseconds = 1'000;  // of a microsecond

bool IsSlower(const LaneCall& left, const LaneCall& right) {
  return left.duration > right.duration;
}

bool IsBefore(const LaneCall& left, const LaneCall& right) {
  return std::tie(left.begin, left.place.file, left.place.line) <
         std::tie(right.begin, right.place.file, right.place.line);
}

bool IsSame(const LaneCall& left, const LaneCall& right) {
  return left.place.file == right.place.file && left.place.line == right.place.line;
}

}  // namespace

CallGroup GroupOf(std::string_view function) {
  const auto has = [function](std::string_view part) {
    return function.find(part) != std::string_view::npos;
  };
  if (has("Event")) {
    return CallGroup::Event;
  }
  if (has("Acquisition")) {
    return CallGroup::Acquire;
  }
  if (has("Open") || has("Close") || has("InitLib")) {
    return CallGroup::Open;
  }
  if (has("Port")) {
    return CallGroup::Port;
  }
  return has("Queue") || has("Announce") || has("Revoke") ? CallGroup::Buffer : CallGroup::Info;
}

void LaneCell::Merge(const LaneCell& later) {
  for (std::size_t i = 0; i < calls.size(); ++i) {
    calls[i] += later.calls[i];
  }
  failed += later.failed;
  spent += later.spent;
}

std::uint8_t CallLanes::LaneOf(std::uint32_t thread) {
  const std::size_t lane = std::min<std::size_t>(thread == 0 ? 0 : thread - 1, kMostLanes - 1);
  if (lanes_.size() <= lane) {
    lanes_.resize(lane + 1);
    lastLine_.resize(lane + 1, -1);
    ends_.resize(lane + 1, 0);
  }
  return static_cast<std::uint8_t>(lane);
}

void CallLanes::Take(const SessionModel& model, const Record& record, const Message& message,
                     const Context& context, std::int64_t time, bool isNear) {
  LaneCall call;
  call.lane = LaneOf(context.thread);
  call.function = message.shape->functionIndex;
  call.timedOut = message.result == GC_ERR_TIMEOUT;
  call.failed = message.Failed() && !call.timedOut;
  call.place = record.place;
  for (std::size_t i = 0; i < message.shape->places.size() && call.handle == kNoHandle; ++i) {
    call.handle = context.handles[i];
  }
  if (context.timing != nullptr) {
    // The layout shows the beginning in its own resolution; calls of a thread don't overlap.
    const std::int64_t entered = context.timing->entered.time.value_or(0) - *model.FirstTime();
    call.begin = std::max(entered * kNanoseconds, ends_[call.lane]);
    call.duration = static_cast<std::int64_t>(context.timing->nanoseconds);
    call.isTimed = true;
    ends_[call.lane] = call.begin + call.duration;
  } else {
    const std::int64_t last = lastLine_[call.lane];
    const bool isWait = message.shape->function == "EventGetData" && last >= 0;
    call.begin = (isWait ? last : time) * kNanoseconds;
    call.duration = isWait ? (time - last) * kNanoseconds : 0;
  }
  lastLine_[call.lane] = time;
  if (!keepsAll_) {
    Count(call, time);
    if (recent_.size() == 2 * kMostOfAStretch) {
      recent_.erase(recent_.begin(), recent_.begin() + kMostOfAStretch);
    }
    recent_.push_back(call);
  }
  Keep(call, isNear);
}

void CallLanes::Count(const LaneCall& call, std::int64_t time) {
  LaneCell& cell = lanes_[call.lane].At(time);
  ++cell.calls[static_cast<std::size_t>(GroupOf(FunctionNames()[call.function]))];
  cell.failed += call.failed ? 1 : 0;
  cell.spent += call.isTimed ? call.duration : 0;
  std::size_t cells = 0;
  for (const auto& lane : lanes_) {
    cells += lane.Cells().size();
  }
  // All lanes have stretches of the same length. A lane that came late catches up.
  const auto width = [](const auto& lane) { return lane.Width(); };
  std::int64_t most = 0;
  for (const auto& lane : lanes_) {
    most = std::max(most, width(lane));
  }
  if (cells > kMostCells) {
    most *= 2;
  }
  for (auto& lane : lanes_) {
    while (lane.Width() < most) {
      lane.Halve();
    }
  }
}

void CallLanes::Keep(const LaneCall& call, bool isNear) {
  if (keepsAll_) {
    kept_.push_back(call);
  } else if (isNear && near_ < kMostNear) {
    ++near_;
    kept_.push_back(call);
  } else if (call.failed) {
    if (failed_.size() == kMostFailed) {
      // Half of them will do: they stay spread over all of the log.
      std::size_t kept = 0;
      for (std::size_t i = 0; i < failed_.size(); i += 2) {
        failed_[kept++] = failed_[i];
      }
      failed_.resize(kept);
      failedStep_ *= 2;
    }
    if (failedCount_++ % failedStep_ == 0) {
      failed_.push_back(call);
    }
  } else if (slow_.size() < kMostSlow || IsSlower(call, slow_.front())) {
    if (slow_.size() == kMostSlow) {
      std::pop_heap(slow_.begin(), slow_.end(), IsSlower);
      slow_.pop_back();
    }
    slow_.push_back(call);
    std::push_heap(slow_.begin(), slow_.end(), IsSlower);
  }
}

void CallLanes::EndInterval(std::int64_t interval) {
  const auto isLonger = [](const Stretch& left, const Stretch& right) {
    return left.interval > right.interval;
  };
  const bool isFull = stretches_.size() == kMostStretches;
  if (keepsAll_ || (isFull && interval <= stretches_.front().interval)) {
    recent_.clear();
    return;
  }
  if (isFull) {
    std::pop_heap(stretches_.begin(), stretches_.end(), isLonger);
    stretches_.pop_back();
  }
  const auto count = static_cast<std::ptrdiff_t>(std::min(recent_.size(), kMostOfAStretch));
  stretches_.push_back({interval, {recent_.end() - count, recent_.end()}});
  std::push_heap(stretches_.begin(), stretches_.end(), isLonger);
  recent_.clear();
}

void CallLanes::Finish(const SessionModel& model, std::int64_t time) {
  kept_.insert(kept_.end(), slow_.begin(), slow_.end());
  kept_.insert(kept_.end(), failed_.begin(), failed_.end());
  for (const Stretch& stretch : stretches_) {
    kept_.insert(kept_.end(), stretch.calls.begin(), stretch.calls.end());
  }
  for (const EnteredCall& each : model.Timings().NeverReturned()) {
    LaneCall call;
    call.lane = LaneOf(each.thread);
    call.begin =
        std::max((each.time.value_or(*model.FirstTime()) - *model.FirstTime()) * kNanoseconds,
                 ends_[call.lane]);
    call.duration = std::max<std::int64_t>(time * kNanoseconds - call.begin, 0);
    call.isTimed = true;
    call.neverReturned = true;
    call.failed = true;
    call.function = static_cast<std::uint16_t>(each.function);
    call.handle = each.handle;
    call.place = each.place;
    kept_.push_back(call);
  }
  std::sort(kept_.begin(), kept_.end(), IsBefore);
  kept_.erase(std::unique(kept_.begin(), kept_.end(), IsSame), kept_.end());
}

}  // namespace vextrel::program
