// SPDX-License-Identifier: MIT
// END and LOG: how the log ends, what can't be read, and what misleads in it.
#include <fmt/format.h>

#include <algorithm>
#include <unordered_map>

#include "calllog/log_text.h"
#include "reading/line_shapes.h"
#include "rules/family.h"

namespace vextrel::program {
namespace {

constexpr Rule kInFlight{
    .id = "END-INFLIGHT",
    .severity = Severity::Error,
    .sentence = "A call never returned",
    .explanation =
        "A call entered the producer, and the log ends without its return: it hung, or "
        "the process ended in it. A wait in EventGetData is an info, since an application is "
        "there most of the time; beside another call that didn't return, it stands with that "
        "finding.",
    .remedy =
        "Look at the stack of that thread in the producer, and at what the other threads did "
        "at that time. A close that hangs often waits for another thread's wait.",
    .section = "",
    .harmless = "The log was taken while the application ran.",
    .needs = "timing lines"};

constexpr Rule kCut{
    .id = "LOG-CUT",
    .severity = Severity::Info,
    .sentence = "The log ends in the middle of a line",
    .explanation =
        "The last line has no end: the process ended while it was written, or the disk "
        "was full, or the application still runs.",
    .remedy = "Keep in mind that what came last is missing.",
    .section = "",
    .harmless = "",
    .needs = "",
    .needsOneProcess = false};

constexpr Rule kTime{
    .id = "LOG-TIME",
    .severity = Severity::Info,
    .sentence = "The time goes back by more than a second",
    .explanation =
        "The clock was set, or logs of several runs were put together in another order. "
        "Rules that measure times may err around that line.",
    .remedy = "Give the files of a log in the order of time.",
    .section = "",
    .harmless = "",
    .needs = "times",
    .needsOneProcess = false};

constexpr Rule kUnreadable{
    .id = "LOG-UNREADABLE",
    .severity = Severity::Info,
    .sentence = "Lines can't be read",
    .explanation =
        "Some lines are no call and no report: another program writes to the same file, "
        "the layout isn't the one that was found, or a line was cut.",
    .remedy = "Give the log a file of its own, and the layout with --pattern if it was changed.",
    .section = "",
    .harmless = "",
    .needs = "",
    .needsOneProcess = false};

constexpr Rule kReport{
    .id = "LOG-REPORT",
    .severity = Severity::Info,
    .sentence = "A report in the log says something else than what happened",
    .explanation =
        "Vextrel reports what it sees call by call, and that isn't always what went "
        "wrong: it looks for streams on the first interface only, it looks for a buffer on "
        "one device after the other and reports each that doesn't have it, it may take an event "
        "for another one, a device counts as not closed if the producer refused to "
        "close it, and a library that couldn't be loaded counts as not initialized.",
    .remedy = "Trust the finding, not the report.",
    .section = "",
    .harmless = "",
    .needs = ""};

constexpr const Rule* kLogRules[] = {&kInFlight, &kCut, &kTime, &kUnreadable, &kReport};

constexpr std::int64_t kLogSecond = 1'000'000;

class Log : public RuleFamily {
 public:
  Log(Findings& findings, const LogKnowledge& /*log*/) : findings_(findings) {}

  [[nodiscard]] Interest Wants(Function function) const override {
    switch (function) {
      case Function::DevClose:
      case Function::GCInitLib:
        return Interest::All;
      default:
        return Interest::None;
    }
  }

  [[nodiscard]] bool WantsAny() const override { return true; }

  void Before(const Call& call) override {
    if (call.Which() == Function::GCInitLib) {
      notLoadedAt_.reset();  // it has a line only if there's a producer
      return;
    }
    const HandleId id = call.HandleIn("hDev");
    if (call.Failed() && id != kNoHandle && call.At(id).isOpen && refused_.size() < 1000) {
      refused_.insert_or_assign(id, std::pair(call.Place(), call.ResultText()));
    }
  }

  void OnReport(const SessionModel& model, const Record& record, const Message& message,
                const Context& context, Finding* call) override {
    const std::string_view text = message.shape->text;
    const Moment moment{record.place,
                        context.hasTime ? std::optional<std::int64_t>(context.time) : std::nullopt,
                        context.thread};
    if (text == FormatOf(report::kProducerNotLoaded) ||
        text == FormatOf(report::kProducerIsVextrel) ||
        text == FormatOf(report::kProducerVariableNotFound)) {
      notLoadedAt_ = record.place;
      return;
    }
    if (text == FormatOf(report::kNotInitialized) && notLoadedAt_.has_value()) {
      if (Finding* finding = findings_.Add(kReport, Severity::Info, KeyOf(0, 1), moment)) {
        finding->message =
            "\"GCInitLib has not been called yet\": it was called, but the producer couldn't be "
            "loaded.";
        Relate(*finding, notLoadedAt_, "the producer can't be loaded");
      }
      return;
    }
    if (PriorityOfReport(message.line) == Priority::Info || IsNotExported(message.line) ||
        Correct(model, message, context, moment)) {
      return;
    }
    // What follows a call that a rule has found is more of its evidence.
    if (call != nullptr && (lastReported_ != call || call->count != lastCount_)) {
      lastReported_ = call;
      lastCount_ = call->count;
      if (call->count == 1) {
        Relate(*call, record.place, "Vextrel reports it, too");
      }
    }
  }

  void OnOther(const Record& record, const Message& /*message*/, const Context& context) override {
    const Moment moment{record.place,
                        context.hasTime ? std::optional<std::int64_t>(context.time) : std::nullopt,
                        context.thread};
    if (!record.isCut) {
      if (Finding* finding = findings_.Add(kUnreadable, Severity::Info, 0, moment)) {
        finding->message = "Lines are no call and no report.";
      }
    }
  }

  void OnAny(const Record& record, const Context& context) override {
    isCut_ = record.isCut;
    cut_ = {record.place,
            context.hasTime ? std::optional<std::int64_t>(context.time) : std::nullopt,
            context.thread};
    if (context.hasTime && context.sinceLast < -kLogSecond) {
      if (Finding* finding = findings_.Add(kTime, Severity::Info, 0, cut_)) {
        finding->message =
            fmt::format("The time goes back by {} s.", -context.sinceLast / kLogSecond);
      }
    }
  }

  void EndSession(const SessionModel& model, const Moment& /*moment*/, bool isClosed) override {
    refused_.clear();
    if (isClosed) {
      return;
    }
    const std::vector<EnteredCall>& inTarget = model.Timings().InTarget();
    const bool onlyWaits = std::all_of(inTarget.begin(), inTarget.end(), IsWait);
    for (const EnteredCall& call : inTarget) {
      if (onlyWaits || !IsWait(call)) {
        ReportInFlight(model, call);
      }
    }
  }

  void Finish(const SessionModel& /*model*/) override {
    if (!isCut_) {
      return;
    }
    if (Finding* finding = findings_.Add(kCut, Severity::Info, 0, cut_)) {
      finding->message = "The last line has no end.";
    }
  }

 private:
  static bool IsWait(const EnteredCall& call) {
    return FunctionOf(call.function) == Function::EventGetData;
  }

  void ReportInFlight(const SessionModel& model, const EnteredCall& call) {
    Finding* finding =
        findings_.Add(kInFlight, IsWait(call) ? Severity::Info : Severity::Error,
                      KeyOf(call.number, call.session), {call.place, call.time, call.thread});
    if (finding == nullptr) {
      return;
    }
    const Handles& handles = model.AllHandles();
    finding->message = fmt::format(
        "{}{} {}.", FunctionNames()[call.function],
        call.handle == kNoHandle ? "" : " of " + handles.FullName(call.handle),
        IsWait(call)
            ? "was still waiting when the log ended"
            : "entered the producer and never returned: it hangs, or the process ended in it");
    if (call.handle != kNoHandle) {
      finding->handles.push_back(handles.Name(call.handle));
    }
    for (const EnteredCall& other : model.Timings().InTarget()) {
      if (other.number != call.number) {
        Relate(*finding, other.place,
               fmt::format("{} of T{} didn't return, either", FunctionNames()[other.function],
                           other.thread));
      }
    }
  }

  // Returns true iff the report misleads, and that was said.
  bool Correct(const SessionModel& model, const Message& message, const Context& context,
               const Moment& moment) {
    const std::string_view text = message.shape->text;
    const Handles& handles = model.AllHandles();
    // The first handle that a report names, if it's known.
    HandleId id = kNoHandle;
    for (std::size_t i = 0; i < message.shape->places.size() && id == kNoHandle; ++i) {
      id = context.handles[i];
    }
    if (id == kNoHandle) {
      return false;
    }
    const bool isNotOnDevice = text == FormatOf(report::kBufferNotAddedOnDevice);
    const bool isNotAdded = text == FormatOf(report::kDataStreamNotAdded) ||
                            text == FormatOf(report::kDataStreamNotAddedOnInterface) ||
                            text == FormatOf(report::kBufferNotAdded) ||
                            text == FormatOf(report::kBufferNotAddedOnInterface) || isNotOnDevice ||
                            text == FormatOf(report::kEventSourceNotFound);
    if (isNotAdded && handles.At(id).isOpen && handles.At(id).openedAt.has_value()) {
      // A buffer of a stream that isn't on the first interface isn't found on any device, either.
      const bool isElsewhere = !isNotOnDevice || findings_.Find(kReport, KeyOf(0, 2)) != nullptr;
      Finding* finding =
          findings_.Add(kReport, Severity::Info, KeyOf(0, isElsewhere ? 2 : 5), moment);
      if (finding != nullptr) {
        finding->message = fmt::format(
            "{} is open, and nothing is wrong with it: Vextrel looks for it on {}.",
            handles.FullName(id),
            isElsewhere ? "the first interface only"
                        : "one device after the other, and reports each that doesn't have it");
        finding->handles.push_back(handles.Name(id));
        Relate(*finding, handles.At(id).openedAt, handles.Name(id) + " is opened");
      }
      return true;
    }
    if (text == FormatOf(report::kDeviceLeftOpen) && refused_.contains(id)) {
      const auto& [place, result] = refused_.at(id);
      if (Finding* finding = findings_.Add(kReport, Severity::Info, KeyOf(id, 3), moment)) {
        finding->message =
            fmt::format("The application did close {}, but the producer answered {}.",
                        handles.FullName(id), result);
        finding->handles.push_back(handles.Name(id));
        Relate(*finding, place, "DevClose");
      }
      return true;
    }
    return CorrectEvent(model, message, moment);
  }

  bool CorrectEvent(const SessionModel& model, const Message& message, const Moment& moment) {
    const std::string_view text = message.shape->text;
    const bool isLeft = text == FormatOf(report::kEventLeftOnTransportLayer) ||
                        text == FormatOf(report::kEventLeftOnInterface) ||
                        text == FormatOf(report::kEventLeftOnDevice) ||
                        text == FormatOf(report::kEventLeftOnDataStream);
    if (!isLeft) {
      return false;
    }
    const std::size_t place = text == FormatOf(report::kEventLeftOnDataStream) ? 0 : 1;
    const HandleId id =
        model.AllHandles().FindLatest(HandleKind::Event, message.values[place].number);
    if (id == kNoHandle || !model.AllHandles().At(id).closedAt.has_value()) {
      return false;
    }
    if (Finding* finding = findings_.Add(kReport, Severity::Info, KeyOf(id, 4), moment)) {
      finding->message = fmt::format(
          "{} was unregistered: Vextrel took it for an event of the same type of another module.",
          model.AllHandles().FullName(id));
      finding->handles.push_back(model.AllHandles().Name(id));
      Relate(*finding, model.AllHandles().At(id).closedAt, "GCUnregisterEvent");
    }
    return true;
  }

  Findings& findings_;
  std::unordered_map<HandleId, std::pair<LogPlace, std::string>> refused_;
  std::optional<LogPlace> notLoadedAt_;
  Finding* lastReported_ = nullptr;
  std::uint64_t lastCount_ = 0;
  bool isCut_ = false;
  Moment cut_;
};

}  // namespace

FamilyEntry LogFamily() {
  return {kLogRules, MakeFamily<Log>};
}

}  // namespace vextrel::program
