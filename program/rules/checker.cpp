// SPDX-License-Identifier: MIT
#include "rules/checker.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vextrel::program {

Checker::Checker(SessionModel& model) : model_(model) {
  for (const FamilyEntry& entry : Families()) {
    families_.push_back(entry.make(findings_, log_));
    if (families_.back()->WantsAny()) {
      any_.push_back(families_.back().get());
    }
  }
  const std::size_t functions = FunctionNames().size();
  all_.resize(functions);
  failures_.resize(functions);
  for (std::size_t i = 0; i < functions; ++i) {
    for (const std::unique_ptr<RuleFamily>& family : families_) {
      const Interest interest = family->Wants(FunctionOf(i));
      if (interest == Interest::All) {
        all_[i].push_back(family.get());
      }
      if (interest != Interest::None) {
        failures_[i].push_back(family.get());
      }
    }
  }
  model.SetObserver(this);
}

Checker::Thread& Checker::ThreadOf(const Context& context) {
  if (context.thread >= threads_.size()) {
    threads_.resize(context.thread + 1);
  }
  return threads_[context.thread];
}

Call Checker::CallOf(const Record& record, const Message& message, const Context& context) {
  return {model_,
          record,
          message,
          context,
          FunctionOf(message.shape->functionIndex),
          ThreadOf(context).lastPlace};
}

void Checker::BeforeCall(const Record& record, const Message& message, const Context& context) {
  log_.foundBeforeCall = findings_.Count();
  const Call call = CallOf(record, message, context);
  if (!log_.anyCall) {
    log_.anyCall = true;
    log_.beginsWithLibrary = log_.beginsWithLibrary || call.Which() == Function::GCInitLib;
  }
  if (model_.Sessions().size() > 1 && !isMixed_ && !message.Failed()) {
    NoteMixing(message, context);
  }
  if (call.Which() == Function::GCCloseLib && !message.Failed()) {
    for (const std::unique_ptr<RuleFamily>& family : families_) {
      family->EndSession(model_, call.Moment(), true);
    }
  }
  const auto& interested = message.Failed() ? failures_ : all_;
  for (RuleFamily* family : interested[message.shape->functionIndex]) {
    family->Before(call);
  }
}

void Checker::Take(const Record& record, const Message& message, const Context& context) {
  log_.isCut = record.isCut;
  for (RuleFamily* family : any_) {
    family->OnAny(record, context);
  }
  if (message.IsCall()) {
    TakeCall(record, message, context);
  } else if (message.kind == MessageKind::Report) {
    log_.beginsWithLibrary =
        log_.beginsWithLibrary || (!log_.anyCall && !model_.Sessions().front().producer.empty());
    for (const std::unique_ptr<RuleFamily>& family : families_) {
      family->OnReport(model_, record, message, context, ThreadOf(context).lastFinding);
    }
  } else if (message.kind == MessageKind::Enters && record.kind == RecordKind::Whole) {
    for (const std::unique_ptr<RuleFamily>& family : families_) {
      family->OnEnter(model_, model_.Timings().InTarget().back());
    }
  } else if (message.kind == MessageKind::Other) {
    for (const std::unique_ptr<RuleFamily>& family : families_) {
      family->OnOther(record, message, context);
    }
  }
  if (context.session > model_.Sessions().size()) {
    return;  // it belongs to what begins next
  }
  last_ = {record.place, context.hasTime ? std::optional<std::int64_t>(context.time) : std::nullopt,
           context.thread};
}

void Checker::TakeCall(const Record& record, const Message& message, const Context& context) {
  const Call call = CallOf(record, message, context);
  const auto& interested = message.Failed() ? failures_ : all_;
  for (RuleFamily* family : interested[message.shape->functionIndex]) {
    family->After(call);
  }
  Thread& thread = ThreadOf(context);
  if (call.Which() == Function::GCGetLastError) {
    ExplainFinding(record, message, thread);
  } else {
    thread.lastFinding = findings_.Count() == log_.foundBeforeCall ? nullptr : findings_.Last();
  }
  thread.lastPlace = record.place;
}

void Checker::ExplainFinding(const Record& record, const Message& message, Thread& thread) {
  const std::size_t place = message.shape->Find("ErrorText");
  if (thread.lastFinding == nullptr || thread.lastFinding->count != 1 || place == kNoPlace ||
      message.Failed() || message.values[place].text == "NULL") {
    return;
  }
  Relate(*thread.lastFinding, record.place,
         "the producer says: " + std::string(message.values[place].text));
  thread.lastFinding = nullptr;
}

// A handle of a session that nothing closed works on in the next one: that's another process.
void Checker::NoteMixing(const Message& message, const Context& context) {
  const std::vector<Place>& places = message.shape->places;
  for (std::size_t i = 0; i < places.size(); ++i) {
    const HandleId id = places[i].isOutput ? kNoHandle : context.handles[i];
    if (id == kNoHandle) {
      continue;
    }
    const Handle& handle = model_.AllHandles().At(id);
    const bool isOfBefore = handle.session != 0 && handle.session < model_.Sessions().size();
    if (isOfBefore && !handle.isOpen && !handle.closedAt.has_value() &&
        !model_.Sessions()[handle.session - 1].wasClosed) {
      isMixed_ = true;
      return;
    }
  }
}

void Checker::BeforeSessionEnds() {
  if (!log_.anyCall || model_.Sessions().back().wasClosed) {
    return;
  }
  for (const std::unique_ptr<RuleFamily>& family : families_) {
    family->EndSession(model_, last_, false);
  }
}

void Checker::Finish() {
  model_.SetObserver(nullptr);
  for (const std::unique_ptr<RuleFamily>& family : families_) {
    family->Finish(model_);
  }
  NoteWhatIsMissing();
  if (log_.anyCall && !log_.beginsWithLibrary) {
    findings_.AddUnknown(
        "what was opened, listed or queued before",
        "the log doesn't begin with GCInitLib, so nothing is said of handles whose opening it "
        "doesn't show");
  }
  if (isMixed_) {
    DropWhatNeedsOneProcess();
  }
  findings_.Sort();
}

void Checker::NoteWhatIsMissing() {
  if (!log_.anyCall) {
    findings_.AddUnknown("all rules that look at calls",
                         "no call returned in this log; a configuration like "
                         "misuse-only.properties leaves only what "
                         "Vextrel reported");
    return;
  }
  struct Lack {
    std::string_view what;
    bool isLacking;
    const char* why;
  };
  const Lack lacks[] = {
      {"timing lines", !model_.Timings().Any(),
       "the log has no timing lines, which 'vextrel trace --timing' writes"},
      {"times", model_.Time() == TimeKind::None, "the log's layout shows no time"},
      {"thread ids", model_.Threads().empty(), "the log's layout shows no thread ids"},
  };
  for (const Lack& lack : lacks) {
    std::string rules;
    std::vector<const Rule*> unjudged;
    for (const Rule* rule : AllRules()) {
      if (lack.isLacking && rule->needs.find(lack.what) != std::string_view::npos) {
        unjudged.push_back(rule);
        rules += (rules.empty() ? "" : ", ") + std::string(rule->id);
      }
    }
    if (!unjudged.empty()) {
      findings_.AddUnknown(std::move(rules), lack.why, std::move(unjudged));
    }
  }
}

void Checker::DropWhatNeedsOneProcess() {
  findings_.Drop([](const Finding& finding) { return finding.rule->needsOneProcess; });
  findings_.AddUnknown("all rules that follow handles from call to call",
                       "several processes wrote this log at the same time, and their handles "
                       "can't be told apart: give each a log of its own");
}

}  // namespace vextrel::program
