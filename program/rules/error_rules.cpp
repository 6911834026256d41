// SPDX-License-Identifier: MIT
// ERR: failures that nobody looks at. Runs after the families that explain failures.
#include <fmt/format.h>

#include <unordered_map>

#include "rules/family.h"

namespace vextrel::program {
namespace {

constexpr Rule kIgnored{
    .id = "ERR-IGNORED",
    .severity = Severity::Warning,
    .sentence = "The same call fails again and again",
    .explanation =
        "A call of the same function with the same handle failed in the same way three "
        "times or more on one thread. The application never asked GCGetLastError in "
        "between, and no other rule explains it: likely the result isn't looked at.",
    .remedy = "Look at each call's result, and ask GCGetLastError on the same thread for the text.",
    .section = "6.1.5",
    .harmless = "An application may try again on purpose.",
    .needs = ""};

constexpr Rule kStale{
    .id = "ERR-STALE",
    .severity = Severity::Info,
    .sentence = "The last error is asked for on another thread",
    .explanation =
        "GCGetLastError was called on a thread on which nothing had failed, after a "
        "failure on another one. Each thread has a last error of its own.",
    .remedy = "Ask on the thread that made the call, before its next call.",
    .section = "6.3.1.3",
    .harmless = "",
    .needs = "thread ids"};

constexpr const Rule* kErrorRules[] = {&kIgnored, &kStale};

constexpr std::uint64_t kErrorOften = 3;

class Errors : public RuleFamily {
 public:
  Errors(Findings& findings, const LogKnowledge& log) : findings_(findings), log_(log) {}

  [[nodiscard]] Interest Wants(Function function) const override {
    switch (function) {
      case Function::GCGetLastError:
        return Interest::All;
      case Function::GCGetPortURL:
      case Function::GCGetNumPortURLs:
      case Function::GCGetPortURLInfo:
        return Interest::None;
      default:
        return Interest::Failures;
    }
  }

  void After(const Call& call) override {
    if (call.Which() == Function::GCGetLastError) {
      OnLastError(call);
      return;
    }
    if (call.Result() == GC_ERR_TIMEOUT || call.Result() == GC_ERR_ABORT) {
      return;
    }
    if (lastOf_.size() < kErrorMostThreads) {
      lastOf_[call.Thread()] = call.Place();
    }
    last_ = call.Place();
    lastThread_ = call.Thread();
    lastName_ = call.Name();
    const bool isQuestion =
        call.Result() == GC_ERR_NOT_IMPLEMENTED || call.Result() == GC_ERR_NOT_AVAILABLE ||
        call.Result() == GC_ERR_NO_DATA || call.Result() == GC_ERR_BUFFER_TOO_SMALL;
    if (isQuestion || findings_.Count() != log_.foundBeforeCall) {
      return;
    }
    if (failures_.size() > kErrorMostThreads) {
      failures_.clear();
    }
    const std::uint64_t key =
        KeyOf(KeyOf(call.Context().handles[0], call.Message().shape->functionIndex),
              static_cast<std::uint64_t>(static_cast<std::uint32_t>(call.Result())) << 32U |
                  call.Thread());
    Failing& failing = failures_[key];
    if (failing.count++ == 0) {
      failing.first = call.Moment();
    }
    if (failing.count < kErrorOften) {
      return;
    }
    if (Finding* finding = findings_.Add(kIgnored, Severity::Warning, key, failing.first)) {
      finding->count = failing.count;
      finding->message = fmt::format(
          "{} fails with {} again and again, and nobody asks why: likely its result isn't looked "
          "at.",
          call.Name(), call.ResultText());
      if (call.Context().handles[0] != kNoHandle) {
        finding->handles.push_back(call.All().Name(call.Context().handles[0]));
      }
    }
  }

 private:
  struct Failing {
    std::uint64_t count = 0;
    Moment first;
  };
  static constexpr std::size_t kErrorMostThreads = 1000;

  void OnLastError(const Call& call) {
    failures_.clear();
    if (call.Failed() || call.Thread() == 0) {
      return;
    }
    const bool isOwn = lastOf_.erase(call.Thread()) != 0;
    if (!isOwn && last_.has_value() && lastThread_ != call.Thread() &&
        lastOf_.contains(lastThread_)) {
      if (Finding* finding =
              findings_.Add(kStale, Severity::Info, KeyOf(call.Thread()), call.Moment())) {
        finding->message =
            fmt::format("Thread T{} asks for its last error, but the call that failed was T{}'s.",
                        call.Thread(), lastThread_);
        Relate(*finding, last_, lastName_ + " fails");
      }
    }
  }

  Findings& findings_;
  const LogKnowledge& log_;
  std::unordered_map<std::uint64_t, Failing> failures_;
  std::unordered_map<std::uint32_t, LogPlace> lastOf_;  // that nobody asked about, by thread
  std::optional<LogPlace> last_;
  std::uint32_t lastThread_ = 0;
  std::string lastName_;
};

}  // namespace

FamilyEntry ErrorFamily() {
  return {kErrorRules, MakeFamily<Errors>};
}

}  // namespace vextrel::program
