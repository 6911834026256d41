// SPDX-License-Identifier: MIT
#include "model/call_timings.h"

#include <algorithm>

#include "reading/line_shapes.h"

namespace vextrel::program {
namespace {

// More calls than any process has in the target at once, and than wait for their own lines. Some
// logs have the one kind of line without the other.
constexpr std::size_t kMostEntered = 1024;
constexpr std::size_t kMostLeft = 256;

}  // namespace

CallTimings::CallTimings(bool threadsAreKnown)
    : threadsAreKnown_(threadsAreKnown), durations_(FunctionNames().size()) {}

void CallTimings::Lose(const EnteredCall& call) {
  ++neverReturnedCount_;
  if (neverReturned_.size() < kMostNeverReturned) {
    neverReturned_.push_back(call);
  }
}

void CallTimings::Enter(const EnteredCall& call) {
  any_ = true;
  const auto before = std::find_if(entered_.begin(), entered_.end(), [&](const EnteredCall& each) {
    return each.thread == call.thread && (threadsAreKnown_ || each.number == call.number);
  });
  if (before != entered_.end()) {
    Lose(*before);
    entered_.erase(before);
  } else if (entered_.size() == kMostEntered) {
    Lose(entered_.front());
    entered_.erase(entered_.begin());
  }
  entered_.push_back(call);
}

void CallTimings::Leave(const EnteredCall& leaving, std::uint64_t nanoseconds) {
  any_ = true;
  TimedCall call{leaving, nanoseconds};
  const auto entry = std::find_if(entered_.begin(), entered_.end(), [&](const EnteredCall& each) {
    return each.number == leaving.number && each.thread == leaving.thread &&
           each.function == leaving.function;
  });
  if (entry != entered_.end()) {
    call.entered = *entry;
    entered_.erase(entry);
  } else if (call.entered.time.has_value()) {
    *call.entered.time -= static_cast<std::int64_t>(nanoseconds / 1000);
  }
  durations_[leaving.function].Add(nanoseconds);
  NoteSlow(call);
  if (left_.size() == kMostLeft) {
    left_.erase(left_.begin());
  }
  left_.push_back(call);
}

void CallTimings::NoteSlow(const TimedCall& call) {
  if (slowest_.size() == kMostSlowest && call.nanoseconds <= slowest_.back().nanoseconds) {
    return;
  }
  const auto at = std::find_if(slowest_.begin(), slowest_.end(), [&](const TimedCall& each) {
    return each.nanoseconds < call.nanoseconds;
  });
  slowest_.insert(at, call);
  if (slowest_.size() > kMostSlowest) {
    slowest_.pop_back();
  }
}

const TimedCall* CallTimings::Claim(std::uint32_t thread, std::size_t function,
                                    std::optional<std::uint64_t> argument) {
  const auto found = std::find_if(left_.begin(), left_.end(), [&](const TimedCall& each) {
    const bool mayDiffer =
        !argument.has_value() || each.entered.argumentKind != EnteredCall::Argument::Pointer;
    return each.entered.thread == thread && each.entered.function == function &&
           (mayDiffer || each.entered.argument == *argument);
  });
  if (found == left_.end()) {
    return nullptr;
  }
  claimed_ = *found;
  if (threadsAreKnown_) {
    // What left before it on this thread has no line of its own.
    const auto end = found + 1;
    const auto rest = std::remove_if(left_.begin(), end, [thread](const TimedCall& each) {
      return each.entered.thread == thread;
    });
    left_.erase(rest, end);
  } else {
    left_.erase(found);
  }
  return &claimed_;
}

void CallTimings::Abandon() {
  for (const EnteredCall& call : entered_) {
    Lose(call);
  }
  entered_.clear();
  left_.clear();
}

}  // namespace vextrel::program
