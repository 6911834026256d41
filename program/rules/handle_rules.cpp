// SPDX-License-Identifier: MIT
// HND: handles are used while they're open, and as what they are.
#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "rules/family.h"

namespace vextrel::program {
namespace {

constexpr Rule kAfter{
    .id = "HND-AFTER",
    .severity = Severity::Error,
    .sentence = "A handle was used when it was closed already",
    .explanation =
        "The call was certainly made after the one that closed the handle: on the same "
        "thread, or on one that wrote another line in between. Closing twice counts, "
        "too. If the producer accepts the call all the same, that's a warning.",
    .remedy =
        "Forget a handle when it, or what it was opened through, is closed. End the threads "
        "that use it first.",
    .section = "6.1.3",
    .harmless =
        "A producer gives the value of a closed handle to the next one; such a handle is "
        "another one here. If the producer accepts the call, its opening may be missing "
        "in the log.",
    .needs = "the line that closes the handle"};

constexpr Rule kType{
    .id = "HND-TYPE",
    .severity = Severity::Error,
    .sentence = "A handle was used as another kind than it is",
    .explanation =
        "The call was refused, and the handle that it was given is open as another kind: a "
        "device's where a stream's is needed, for example.",
    .remedy =
        "Keep each kind of handle in a variable of its own type. DevGetPort gives the port "
        "of the remote device; only DevClose takes the device's own handle.",
    .section = "6.1.3, 6.3.4.1",
    .harmless = "",
    .needs = "the line that opens the handle"};

constexpr Rule kNull{
    .id = "HND-NULL",
    .severity = Severity::Error,
    .sentence = "No handle was given where one is needed",
    .explanation =
        "A handle's place holds 0 or -1. Mostly the call that should have given the "
        "handle failed, and its result wasn't looked at.",
    .remedy =
        "Look at the result of the call that opens it, and don't go on, nor close anything, "
        "if it failed.",
    .section = "6.1.5",
    .harmless = "",
    .needs = ""};

constexpr Rule kUnknownHandle{
    .id = "HND-UNKNOWN",
    .severity = Severity::Warning,
    .sentence = "A handle was used that nothing in the log opened",
    .explanation =
        "The producer answered GC_ERR_INVALID_HANDLE, and the log, which begins with "
        "the session, has no line that gave the handle out: likely a variable that was "
        "never set.",
    .remedy = "Follow the variable from the place where the application opens it.",
    .section = "6.1.3",
    .harmless = "",
    .needs = "the beginning of the session"};

constexpr Rule kProducer{
    .id = "HND-PRODUCER",
    .severity = Severity::Warning,
    .sentence = "The producer refuses a handle that is open",
    .explanation =
        "The answer is GC_ERR_INVALID_HANDLE, though every handle of the call was "
        "opened, is of the right kind, and wasn't closed in this log: likely a fault of "
        "the producer, or of the device that it lost.",
    .remedy =
        "Look for what happened to the device right before. If that's nothing, it's a case for the "
        "producer's maker; settings of the transport, like its transfer size, can cause it, too.",
    .section = "6.1.5",
    .harmless = "Another thread was closing the handle at that moment.",
    .needs = "the line that opens the handle"};

constexpr const Rule* kHandleRules[] = {&kAfter, &kType, &kNull, &kUnknownHandle, &kProducer};

constexpr std::uint64_t kAllOnes = ~std::uint64_t{0};
constexpr std::uint64_t kLowOnes = 0xFFFFFFFF;  // of a device, as its opening shows it

class HandleUse : public RuleFamily {
 public:
  HandleUse(Findings& findings, const LogKnowledge& log) : findings_(findings), log_(log) {}

  [[nodiscard]] Interest Wants(Function function) const override {
    return function == Function::GCInitLib || function == Function::GCGetLastError ? Interest::None
                                                                                   : Interest::All;
  }

  void Before(const Call& call) override {
    if (call.Which() == Function::GCCloseLib || call.Result() == GC_ERR_NOT_INITIALIZED) {
      return;
    }
    const std::vector<Place>& places = call.Message().shape->places;
    bool isAlive = call.Failed();
    for (std::size_t i = 0; i < places.size(); ++i) {
      const Place& place = places[i];
      if (place.meaning != Meaning::Handle || place.isOutput) {
        continue;
      }
      const HandleId id = call.Context().handles[i];
      const std::uint64_t value = call.Message().values[i].number;
      if (const HandleId other = call.Context().misplaced[i]; other != kNoHandle) {
        ReportType(call, place, other);
        return;
      }
      if (id == kNoHandle || value == kAllOnes) {
        ReportNull(call, place, value);
        return;
      }
      const Handle& handle = call.At(id);
      if (!handle.isOpen) {
        CheckClosed(call, id);
        return;
      }
      isAlive = isAlive && handle.openedAt.has_value();
      if (!handle.openedAt.has_value() && call.Result() == GC_ERR_INVALID_HANDLE &&
          CheckUnknown(call, place, id, value)) {
        return;
      }
    }
    if (isAlive && call.Result() == GC_ERR_INVALID_HANDLE && !IsForeign(call)) {
      ReportProducer(call);
    }
  }

  void After(const Call& call) override {
    if (!call.Failed() && call.Which() == Function::GCCloseLib) {
      closedLibrary_.resize(call.Model().Sessions().size());
      closedLibrary_.back() = call.Place();
      return;
    }
    const std::vector<Place>& places = call.Message().shape->places;
    for (std::size_t i = 1; i < places.size(); ++i) {
      const bool isHandle =
          places[i].meaning == Meaning::Handle || places[i].meaning == Meaning::HandleLowHalf;
      if (isHandle && places[i].isOutput && places[i].kind != HandleKind::Any) {
        OnOutput(call, places[i].kind, call.Message().values[i - 1].text,
                 call.Message().values[i].number);
      }
    }
  }

 private:
  // A variable that a call should have put a handle into.
  struct Output {
    std::string address;
    std::uint64_t value = 0;
    LogPlace place;
    std::string what;
  };
  static constexpr std::size_t kMostOutputs = 100;

  static bool IsNull(std::uint64_t value) {
    return value == 0 || value == kAllOnes || value == kLowOnes;
  }

  // Remembers what has no handle in it, until a call puts one there.
  void OnOutput(const Call& call, HandleKind kind, std::string_view address, std::uint64_t value) {
    std::vector<Output>& outputs = emptyOutputs_[static_cast<std::size_t>(kind)];
    std::erase_if(outputs, [&](const Output& each) { return each.address == address; });
    if (!IsNull(value)) {
      return;
    }
    if (outputs.size() == kMostOutputs) {
      outputs.erase(outputs.begin());
    }
    outputs.push_back({std::string(address), value, call.Place(),
                       call.Failed() ? fmt::format("{} fails with {}, and leaves no handle",
                                                   call.Name(), call.ResultText())
                                     : fmt::format("{} gives no handle", call.Name())});
  }

  void ReportNull(const Call& call, const Place& place, std::uint64_t value) {
    const Severity severity = call.Failed() ? Severity::Error : Severity::Warning;
    Finding* finding = findings_.Add(kNull, severity,
                                     KeyOf(static_cast<HandleId>(place.label.size()), call.Which()),
                                     call.Moment());
    if (finding == nullptr) {
      return;
    }
    finding->message =
        fmt::format("{} is called without a handle in {}.", call.Name(), place.label);
    if (place.kind == HandleKind::Any) {
      return;
    }
    const std::vector<Output>& outputs = emptyOutputs_[static_cast<std::size_t>(place.kind)];
    const auto source = std::find_if(outputs.rbegin(), outputs.rend(), [value](const Output& each) {
      return (each.value == 0) == (value == 0);
    });
    if (source != outputs.rend()) {
      Relate(*finding, source->place, source->what);
    }
  }

  void ReportType(const Call& call, const Place& place, HandleId other) {
    if (Finding* finding =
            findings_.Add(kType, Severity::Error, KeyOf(other, call.Which()), call.Moment())) {
      finding->message =
          fmt::format("{} gets {} as its {}: that's {}, not {}.", call.Name(), call.Named(other),
                      place.label, KindText(call.At(other).kind), KindText(place.kind));
      finding->handles.push_back(call.All().Name(other));
      Relate(*finding, call.At(other).openedAt, call.All().Name(other) + " is opened");
    }
  }

  void CheckClosed(const Call& call, HandleId id) {
    std::optional<Ending> ending = EndingOf(call.All(), id);
    const std::uint32_t session = call.At(id).session;
    if (!ending.has_value() && session != 0 && session <= closedLibrary_.size() &&
        closedLibrary_[session - 1].has_value()) {
      ending = Ending{*closedLibrary_[session - 1], kNoHandle, 0};
    }
    if (!ending.has_value() || !call.StartedBehind(ending->place, ending->thread)) {
      return;
    }
    Finding* finding = findings_.Add(kAfter, call.Failed() ? Severity::Error : Severity::Warning,
                                     KeyOf(id, call.Which()), call.Moment());
    if (finding == nullptr) {
      return;
    }
    std::string how = "it was closed already";
    if (ending->by == kNoHandle) {
      how = "the library was closed since it was opened";
    } else if (ending->by != id) {
      how = "it was closed with " + call.Named(ending->by);
    } else if (call.At(id).kind == HandleKind::Buffer) {
      how = "it was revoked already";
    } else if (call.At(id).kind == HandleKind::Event) {
      how = "it was unregistered already";
    }
    finding->message = fmt::format("{} uses {}, but {}{}.", call.Name(), call.Named(id), how,
                                   call.Failed() ? ""
                                                 : "; the producer accepts it, so likely the "
                                                   "log lacks its opening");
    finding->handles.push_back(call.All().Name(id));
    Relate(*finding, ending->place,
           ending->by == kNoHandle ? std::string("GCCloseLib")
                                   : call.All().Name(ending->by) + " is closed");
    Relate(*finding, call.At(id).openedAt, call.All().Name(id) + " is opened");
  }

  // Returns true iff that explains the call.
  bool CheckUnknown(const Call& call, const Place& place, HandleId id, std::uint64_t value) {
    if (!log_.beginsWithLibrary) {
      return true;
    }
    if (Finding* finding = findings_.Add(kUnknownHandle, Severity::Warning, KeyOf(id, call.Which()),
                                         call.Moment())) {
      finding->message =
          fmt::format("{} uses 0x{:016X} as its {}, which nothing in this log opened.", call.Name(),
                      value, place.label);
      finding->handles.push_back(call.All().Name(id));
    }
    return true;
  }

  // A buffer of another stream is another rule's.
  static bool IsForeign(const Call& call) {
    const HandleId stream = call.HandleIn("hDS");
    HandleId buffer = call.HandleIn("hBuffer");
    buffer = buffer == kNoHandle ? call.HandleIn("hB") : buffer;
    return stream != kNoHandle && buffer != kNoHandle && call.At(buffer).parent != stream;
  }

  void ReportProducer(const Call& call) {
    const HandleId id = call.Context().handles[0];
    if (id == kNoHandle) {
      return;
    }
    Finding* finding =
        findings_.Add(kProducer, Severity::Warning, KeyOf(id, call.Which()), call.Moment());
    if (finding == nullptr) {
      return;
    }
    std::string open;
    const std::vector<Place>& places = call.Message().shape->places;
    for (std::size_t i = 0; i < places.size(); ++i) {
      const HandleId each = places[i].isOutput ? kNoHandle : call.Context().handles[i];
      if (each != kNoHandle) {
        finding->handles.push_back(call.All().Name(each));
        open += (open.empty() ? "" : " and ") + call.Named(each);
        Relate(*finding, call.At(each).openedAt, call.Named(each) + " is opened");
      }
    }
    finding->message = fmt::format(
        "{} answers GC_ERR_INVALID_HANDLE, though {} {} open: likely a fault of the producer.",
        call.Name(), open, finding->handles.size() == 1 ? "is" : "are");
  }

  Findings& findings_;
  const LogKnowledge& log_;
  std::array<std::vector<Output>, kHandleKinds> emptyOutputs_;
  std::vector<std::optional<LogPlace>> closedLibrary_;  // by session
};

}  // namespace

FamilyEntry HandleFamily() {
  return {kHandleRules, MakeFamily<HandleUse>};
}

}  // namespace vextrel::program
