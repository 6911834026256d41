// SPDX-License-Identifier: MIT
// EVT, the registrations: events are registered once, waited for, and let go.
#include <fmt/format.h>

#include <map>

#include "rules/family.h"

namespace vextrel::program {
namespace {

constexpr Rule kEventDup{
    .id = "EVT-DUP",
    .severity = Severity::Error,
    .sentence = "An event was registered twice, or unregistered when it wasn't registered",
    .explanation =
        "A module has one event of each type. GCRegisterEvent answered "
        "GC_ERR_RESOURCE_IN_USE, or GCUnregisterEvent was refused for a type that "
        "isn't registered on this module.",
    .remedy = "Register each type once for each module, and share the event's handle.",
    .section = "4.2.3.1",
    .harmless = "A second user of the same module may try.",
    .needs = ""};

constexpr Rule kKill{
    .id = "EVT-KILL",
    .severity = Severity::Warning,
    .sentence = "A kill met no wait, and ended a later one",
    .explanation =
        "EventKill was called while nobody waited for the event: the next wait, which "
        "certainly began later, was aborted instead of waiting.",
    .remedy =
        "Kill once for each thread that waits, and let the thread end when its wait is "
        "aborted.",
    .section = "4.2.3.2, 6.3.7.5",
    .harmless = "",
    .needs = ""};

constexpr Rule kInf{
    .id = "EVT-INF",
    .severity = Severity::Info,
    .sentence = "A wait without end had nothing to end it",
    .explanation =
        "EventGetData was called with an infinite time-out, and the event was gone "
        "without EventKill or GCUnregisterEvent.",
    .remedy = "Kill or unregister the event before its module is closed, or wait with a time-out.",
    .section = "6.3.7.2",
    .harmless = "",
    .needs = ""};

constexpr const Rule* kEventRules[] = {&kEventDup, &kKill, &kInf};

constexpr std::uint64_t kInfinite = 0xFFFFFFFF;

class Events : public RuleFamily {
 public:
  Events(Findings& findings, const LogKnowledge& log) : findings_(findings), log_(log) {}

  [[nodiscard]] Interest Wants(Function function) const override {
    switch (function) {
      case Function::GCUnregisterEvent:
      case Function::EventGetData:
      case Function::EventKill:
      case Function::DSClose:
      case Function::DevClose:
      case Function::IFClose:
      case Function::TLClose:
        return Interest::All;
      case Function::GCRegisterEvent:
        return Interest::Failures;
      default:
        return Interest::None;
    }
  }

  void Before(const Call& call) override {
    const HandleId id = call.Context().handles[0];
    if (id == kNoHandle) {
      return;
    }
    switch (call.Which()) {
      case Function::GCRegisterEvent:
        if (call.Result() == GC_ERR_RESOURCE_IN_USE && call.At(id).isOpen) {
          OnTwice(call, id);
        }
        break;
      case Function::GCUnregisterEvent:
        OnUnregister(call, id);
        break;
      case Function::EventKill:
        if (!call.Failed()) {
          KnownEvent& event = EventOf(call, id);
          event.killedAt = call.Place();
          event.killedBy = call.Thread();
          event.infiniteAt.reset();
        }
        break;
      case Function::EventGetData:
        OnWait(call, id);
        break;
      default:
        if (!call.Failed()) {
          OnClose(call, id);
        }
    }
  }

  void EndSession(const SessionModel& /*model*/, const Moment& /*moment*/,
                  bool /*isClosed*/) override {
    events_.clear();
  }

 private:
  struct KnownEvent {
    std::optional<LogPlace> killedAt;
    std::uint32_t killedBy = 0;
    std::optional<LogPlace> infiniteAt;
  };

  KnownEvent& EventOf(const Call& call, HandleId id) {
    ForgetClosed(events_, call.All(), 1000);
    return events_[id];
  }

  static std::string_view TypeIn(const Call& call) {
    std::string_view type = call.Text("iEvent");
    if (type.starts_with("EVENT_")) {
      type.remove_prefix(std::string_view("EVENT_").size());
    }
    return type;
  }

  static HandleId Registered(const Call& call, HandleId source) {
    for (const HandleId id : call.All().OpenOnes()) {
      const Handle& handle = call.At(id);
      if (handle.kind == HandleKind::Event && handle.parent == source &&
          handle.id == TypeIn(call)) {
        return id;
      }
    }
    return kNoHandle;
  }

  void OnTwice(const Call& call, HandleId source) {
    const HandleId event = Registered(call, source);
    Finding* finding =
        findings_.Add(kEventDup, event != kNoHandle ? Severity::Error : Severity::Warning,
                      KeyOf(source, call.Which()), call.Moment());
    if (finding == nullptr) {
      return;
    }
    finding->message =
        fmt::format("{} of {} is registered again{}.", call.NameIn("iEvent"), call.Named(source),
                    event != kNoHandle ? "" : ", and likely somebody else has it registered");
    finding->handles.push_back(call.All().Name(source));
    if (event != kNoHandle) {
      finding->handles.push_back(call.All().Name(event));
      Relate(*finding, call.At(event).openedAt, call.All().Name(event) + " is registered");
    }
  }

  void OnUnregister(const Call& call, HandleId source) {
    const HandleId event = Registered(call, source);
    if (!call.Failed()) {
      if (event != kNoHandle) {
        events_.erase(event);
      }
      return;
    }
    const bool isKnown = call.At(source).openedAt.has_value() && call.At(source).isOpen;
    if (event != kNoHandle || !isKnown || !log_.beginsWithLibrary) {
      return;
    }
    if (Finding* finding =
            findings_.Add(kEventDup, Severity::Error, KeyOf(source, call.Which()), call.Moment())) {
      finding->message = fmt::format("{} of {} is unregistered, but it isn't registered.",
                                     call.NameIn("iEvent"), call.Named(source));
      finding->handles.push_back(call.All().Name(source));
    }
  }

  void OnWait(const Call& call, HandleId id) {
    if (call.Number("iTimeout") == kInfinite) {
      KnownEvent& event = EventOf(call, id);
      event.infiniteAt = event.infiniteAt.value_or(call.Place());
    }
    if (!call.Failed() || call.Result() != GC_ERR_ABORT) {
      return;
    }
    const auto known = events_.find(id);
    if (known == events_.end() || !known->second.killedAt.has_value()) {
      return;
    }
    const LogPlace killedAt = *known->second.killedAt;
    const bool isLater = call.StartedBehind(killedAt, known->second.killedBy);
    known->second.killedAt.reset();
    if (!isLater) {
      return;
    }
    if (Finding* finding = findings_.Add(kKill, Severity::Warning, KeyOf(id), call.Moment())) {
      finding->message =
          fmt::format("A wait for {} is aborted by an EventKill that came before the wait began.",
                      call.Named(id));
      finding->handles.push_back(call.All().Name(id));
      Relate(*finding, killedAt, "EventKill");
    }
  }

  void OnClose(const Call& call, HandleId closed) {
    for (auto each = events_.begin(); each != events_.end();) {
      if (!IsAtOrBelow(call.All(), each->first, closed)) {
        ++each;
        continue;
      }
      if (each->second.infiniteAt.has_value() && call.At(each->first).isOpen) {
        if (Finding* finding =
                findings_.Add(kInf, Severity::Info, KeyOf(each->first), call.Moment())) {
          finding->message = fmt::format(
              "{} closes {} with {}, which was waited for without a time-out: a wait that is in "
              "the producer then may never return.",
              call.Name(), call.Named(closed), call.Named(each->first));
          finding->handles = {call.All().Name(closed), call.All().Name(each->first)};
          Relate(*finding, each->second.infiniteAt, "the first wait without end");
        }
      }
      each = events_.erase(each);
    }
  }

  Findings& findings_;
  const LogKnowledge& log_;
  std::map<HandleId, KnownEvent> events_;
};

}  // namespace

FamilyEntry EventFamily() {
  return {kEventRules, MakeFamily<Events>};
}

}  // namespace vextrel::program
