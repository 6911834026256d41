// SPDX-License-Identifier: MIT
// EVT-CLOSE-WAIT: nothing is closed while somebody waits for its events.
#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <vector>

#include "rules/family.h"

namespace vextrel::program {
namespace {

constexpr Rule kCloseWait{
    .id = "EVT-CLOSE-WAIT",
    .severity = Severity::Error,
    .sentence = "Closing hung while another thread waited for an event",
    .explanation =
        "A stop, an unregistering or a closing entered the producer while another thread was "
        "in EventGetData of an event that it ends, and took a second or longer, or "
        "never returned. A producer should end the wait with GC_ERR_ABORT; some wait for it "
        "instead.",
    .remedy =
        "End the wait with EventKill, join the thread that waits, and only then stop, unregister "
        "and close.",
    .section = "6.3.7.7",
    .harmless = "Closing may take long for another reason.",
    .needs = "timing lines"};

constexpr const Rule* kCloseWaitRules[] = {&kCloseWait};

constexpr std::uint64_t kHangs = 1'000'000'000;  // ns

class CloseWaits : public RuleFamily {
 public:
  CloseWaits(Findings& findings, const LogKnowledge& /*log*/) : findings_(findings) {}

  [[nodiscard]] Interest Wants(Function function) const override {
    return IsEnding(function) ? Interest::All : Interest::None;
  }

  void OnEnter(const SessionModel& model, const EnteredCall& call) override {
    const Function function = FunctionOf(call.function);
    if (!IsEnding(function) || endings_.size() == kMostEndings ||
        (call.handle == kNoHandle && function != Function::GCCloseLib)) {
      return;
    }
    std::vector<EnteredCall> waits;
    for (const EnteredCall& each : model.Timings().InTarget()) {
      if (FunctionOf(each.function) == Function::EventGetData && each.thread != call.thread &&
          each.handle != kNoHandle && Ends(model.AllHandles(), call, function, each.handle)) {
        waits.push_back(each);
      }
    }
    if (!waits.empty()) {
      endings_.insert_or_assign(call.number, std::move(waits));
    }
  }

  void Before(const Call& call) override {
    const TimedCall* timing = call.Context().timing;
    const auto known = timing == nullptr ? endings_.end() : endings_.find(timing->entered.number);
    if (known == endings_.end()) {
      return;
    }
    if (timing->nanoseconds >= kHangs) {
      Report(call.Model(), timing->entered, known->second, call.Moment(),
             fmt::format("took {} ms", timing->nanoseconds / 1'000'000));
    }
    endings_.erase(known);
  }

  void EndSession(const SessionModel& model, const Moment& /*moment*/, bool isClosed) override {
    const std::vector<EnteredCall>& inTarget = model.Timings().InTarget();
    for (const EnteredCall& call : inTarget) {
      const auto known = isClosed ? endings_.end() : endings_.find(call.number);
      // A wait that ended isn't what kept the call.
      const bool isKept =
          known != endings_.end() &&
          std::any_of(inTarget.begin(), inTarget.end(), [&](const EnteredCall& each) {
            return each.number == known->second.front().number;
          });
      if (isKept) {
        Report(model, call, known->second, {call.place, call.time, call.thread}, "never returned");
      }
    }
    endings_.clear();
  }

 private:
  static constexpr std::size_t kMostEndings = 1000;

  static bool IsEnding(Function function) {
    switch (function) {
      case Function::DSStopAcquisition:
      case Function::GCUnregisterEvent:
      case Function::DSClose:
      case Function::DevClose:
      case Function::IFClose:
      case Function::TLClose:
      case Function::GCCloseLib:
        return true;
      default:
        return false;
    }
  }

  // Whether the call ends waits for this event.
  static bool Ends(const Handles& handles, const EnteredCall& call, Function function,
                   HandleId event) {
    if (function == Function::GCCloseLib) {
      return true;
    }
    return function == Function::GCUnregisterEvent || function == Function::DSStopAcquisition
               ? handles.At(event).parent == call.handle
               : IsAtOrBelow(handles, event, call.handle);
  }

  void Report(const SessionModel& model, const EnteredCall& call,
              const std::vector<EnteredCall>& waits, const Moment& moment, std::string_view how) {
    Finding* finding = findings_.Add(kCloseWait, Severity::Error,
                                     KeyOf(call.handle, FunctionOf(call.function)), moment);
    if (finding == nullptr) {
      return;
    }
    const Handles& handles = model.AllHandles();
    finding->message =
        fmt::format("{}{} {} while T{} was waiting for {}.", FunctionNames()[call.function],
                    call.handle == kNoHandle ? "" : " of " + handles.FullName(call.handle), how,
                    waits.front().thread, handles.FullName(waits.front().handle));
    if (call.handle != kNoHandle) {
      finding->handles.push_back(handles.Name(call.handle));
    }
    Relate(*finding, call.place, "it enters the producer");
    for (const EnteredCall& each : waits) {
      finding->handles.push_back(handles.Name(each.handle));
      Relate(*finding, each.place, fmt::format("the wait of T{} begins", each.thread));
    }
  }

  Findings& findings_;
  std::map<std::uint64_t, std::vector<EnteredCall>> endings_;  // by the call's number
};

}  // namespace

FamilyEntry CloseWaitFamily() {
  return {kCloseWaitRules, MakeFamily<CloseWaits>};
}

}  // namespace vextrel::program
