// SPDX-License-Identifier: MIT
// T-SERIAL: a wait of one thread doesn't keep the others from calling.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "rules/family.h"

namespace vextrel::program {
namespace {

constexpr Rule kSerial{
    .id = "T-SERIAL",
    .severity = Severity::Warning,
    .sentence = "Other threads call only when a wait is over",
    .explanation =
        "One thread is in EventGetData most of the time, and other threads access ports, but none "
        "of those accesses began during a wait of 50 ms or longer, and ten times or more, one "
        "came right after such a wait. Likely a lock of the application is held around the wait, "
        "like the interpreter's own in Python.",
    .remedy =
        "Release the lock before EventGetData, or wait with a short time-out. A wrapper of the "
        "functions has to release the interpreter's lock.",
    .section = "",
    .harmless = "The other thread may do its work on behalf of the one that waits.",
    .needs = "timing lines, times and thread ids"};

constexpr const Rule* kSerialRules[] = {&kSerial};

constexpr std::uint64_t kLongWait = 50'000'000;  // ns
constexpr std::uint64_t kEnoughWaits = 10;
constexpr double kMostBetween = 0.25;  // of the time is between the waits

class SerialThreads : public RuleFamily {
 public:
  SerialThreads(Findings& findings, const LogKnowledge& /*log*/) : findings_(findings) {}

  [[nodiscard]] Interest Wants(Function function) const override {
    return function == Function::EventGetData ? Interest::All : Interest::None;
  }

  void OnEnter(const SessionModel& /*model*/, const EnteredCall& call) override {
    const Function function = FunctionOf(call.function);
    if (call.thread == 0 || !call.time.has_value()) {
      return;
    }
    if (function == Function::EventGetData && waiters_.size() < kMostWaiters) {
      OnWait(call);
    } else if (IsAccess(function)) {
      OnAccess(call);
    }
  }

  void Before(const Call& call) override {
    const auto known = waiters_.find(call.Thread());
    if (known == waiters_.end() || call.Context().timing == nullptr) {
      return;
    }
    Waiter& waiter = known->second;
    waiter.endedAt = call.Time();
    waiter.isLong = call.Context().timing->nanoseconds >= kLongWait;
    waiter.waited += static_cast<double>(call.Context().timing->nanoseconds) / 1e3;
    waiter.isWaiting = false;
    if (waiter.isLong && waiter.wasEntered) {
      waiter.isFree = true;
    }
  }

  void EndSession(const SessionModel& model, const Moment& /*moment*/, bool /*isClosed*/) override {
    for (const auto& [thread, waiter] : waiters_) {
      const double between = WholeOf(waiter) - waiter.waited;
      if (!waiter.isFree && waiter.followed >= kEnoughWaits &&
          between <= kMostBetween * WholeOf(waiter)) {
        Report(model, thread, waiter);
      }
    }
    waiters_.clear();
  }

 private:
  struct Waiter {
    Moment since;
    HandleId event = kNoHandle;
    std::int64_t endedAt = 0;
    double waited = 0;  // us
    bool isWaiting = false;
    bool wasEntered = false;  // another thread called during this wait
    bool isLong = false;
    bool isFree = false;         // that happened in a long one
    std::uint64_t followed = 0;  // so often another thread called between two waits
    LogPlace lastFollowed;
  };
  static constexpr std::size_t kMostWaiters = 1000;

  // From the first wait's begin to the last one's end, in us.
  static double WholeOf(const Waiter& waiter) {
    return static_cast<double>(waiter.endedAt) -
           static_cast<double>(waiter.since.time.value_or(waiter.endedAt));
  }

  static bool IsAccess(Function function) {
    return function == Function::GCReadPort || function == Function::GCWritePort ||
           function == Function::GCReadPortStacked || function == Function::GCWritePortStacked;
  }

  void OnWait(const EnteredCall& call) {
    Waiter& waiter = waiters_[call.thread];
    if (!waiter.since.time.has_value()) {
      waiter.since = {call.place, call.time, call.thread};
    }
    waiter.event = call.handle;
    waiter.isWaiting = true;
    waiter.wasEntered = false;
    waiter.isLong = false;
  }

  void OnAccess(const EnteredCall& call) {
    for (auto& [thread, waiter] : waiters_) {
      if (thread == call.thread) {
        continue;
      }
      if (waiter.isWaiting) {
        waiter.wasEntered = true;
      } else if (waiter.isLong) {
        ++waiter.followed;
        waiter.lastFollowed = call.place;
        waiter.isLong = false;  // counts once
      }
    }
  }

  void Report(const SessionModel& model, std::uint32_t thread, const Waiter& waiter) {
    Finding* finding =
        findings_.Add(kSerial, Severity::Warning, KeyOf(waiter.event, thread), waiter.since);
    if (finding == nullptr) {
      return;
    }
    finding->message = fmt::format(
        "T{} waits {} % of the time, and other threads access ports only between its waits, {} "
        "times: likely one lock is held around EventGetData.",
        thread, std::lround(100 * waiter.waited / std::max(WholeOf(waiter), waiter.waited)),
        waiter.followed);
    if (waiter.event != kNoHandle) {
      finding->handles.push_back(model.AllHandles().Name(waiter.event));
    }
    Relate(*finding, waiter.lastFollowed, "the last access between two waits");
  }

  Findings& findings_;
  std::map<std::uint32_t, Waiter> waiters_;  // by thread
};

}  // namespace

FamilyEntry SerialFamily() {
  return {kSerialRules, MakeFamily<SerialThreads>};
}

}  // namespace vextrel::program
