// SPDX-License-Identifier: MIT
#include "model/stream.h"

#include <algorithm>

namespace vextrel::program {
namespace {

// A jump of more is no gap: the number started again.
constexpr std::uint32_t kMostMissing = 1U << 20U;

}  // namespace

void Stream::Start(std::int64_t now, const LogPlace& place) {
  Advance(now);
  startedAt_ = place;
  isRunning_ = true;
  lastFrame_.reset();
  lastFrameId_.reset();
  if (depthIsKnown_) {
    minDepth_ = std::min(minDepth_.value_or(depth_), depth_);
  }
}

void Stream::Stop(std::int64_t now) {
  Advance(now);
  isRunning_ = false;
}

void Stream::Deliver(std::int64_t now, const LogPlace& place, bool wasQueued) {
  ++frames_;
  lastInterval_.reset();
  if (lastFrame_.has_value()) {
    const std::int64_t interval = std::max<std::int64_t>(now - *lastFrame_, 0);
    intervals_.Add(interval);
    lastInterval_ = interval;
    if (interval > longest_) {
      longest_ = interval;
      longestAt_ = place;
    }
  }
  lastFrame_ = now;
  if (wasQueued) {
    ChangeDepth(now, -1);
  }
}

void Stream::SeeFrameId(std::uint32_t frameId, const LogPlace& place) {
  missing_ = missing_.value_or(0);
  if (lastFrameId_.has_value() && frameId > *lastFrameId_ + 1 &&
      frameId - *lastFrameId_ - 1 <= kMostMissing) {
    *missing_ += frameId - *lastFrameId_ - 1;
    firstGap_ = firstGap_.value_or(place);
  }
  frameIdsDiffer_ = frameIdsDiffer_ || (lastFrameId_.has_value() && frameId != *lastFrameId_);
  ++frameIds_;
  lastFrameId_ = frameId;
}

void Stream::SeeIncomplete(bool isIncomplete) {
  incomplete_ = incomplete_.value_or(0) + (isIncomplete ? 1 : 0);
}

void Stream::Advance(std::int64_t now) {
  const std::int64_t passed = now - depthSince_;
  if (isRunning_ && depthIsKnown_ && passed > 0) {
    depthTime_ += static_cast<double>(depth_) * static_cast<double>(passed);
    knownTime_ += passed;
    timeAtZero_ += depth_ == 0 ? passed : 0;
  }
  depthSince_ = now;
}

void Stream::ChangeDepth(std::int64_t now, std::int64_t difference) {
  Advance(now);
  depth_ = std::max<std::int64_t>(depth_ + difference, 0);
  if (isRunning_ && depthIsKnown_) {
    minDepth_ = std::min(minDepth_.value_or(depth_), depth_);
  }
}

void Stream::SetDepth(std::int64_t now, std::int64_t depth) {
  Advance(now);
  depth_ = depth;
  depthIsKnown_ = true;
  if (isRunning_) {
    minDepth_ = std::min(minDepth_.value_or(depth_), depth_);
  }
}

void Stream::LoseDepth(std::int64_t now) {
  Advance(now);
  depthIsKnown_ = false;
}

std::optional<Stream::Depth> Stream::QueueDepth() const {
  if (!minDepth_.has_value()) {
    return std::nullopt;
  }
  Depth depth{*minDepth_, std::nullopt, timeAtZero_};
  if (knownTime_ > 0) {
    depth.mean = depthTime_ / static_cast<double>(knownTime_);
  }
  return depth;
}

}  // namespace vextrel::program
