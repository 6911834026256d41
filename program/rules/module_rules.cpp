// SPDX-License-Identifier: MIT
// MOD: modules are opened once, and closed before what they belong to.
#include <fmt/format.h>

#include <algorithm>

#include "rules/family.h"

namespace vextrel::program {
namespace {

constexpr Rule kInUse{
    .id = "MOD-INUSE",
    .severity = Severity::Error,
    .sentence = "Something was opened that this process has open already",
    .explanation =
        "An opening function answered GC_ERR_RESOURCE_IN_USE, and the log shows who "
        "holds it: a handle of the same id that was never closed. If the log shows no "
        "holder, it's likely held by another process, or by a second copy of the "
        "producer that this process loaded; that's a warning.",
    .remedy = "Close the handle that is named first, on the paths that follow an error, too.",
    .section = "3.2 to 3.5, 6.1.3",
    .harmless = "A device may be known under several ids.",
    .needs = ""};

constexpr Rule kModuleLeak{
    .id = "MOD-LEAK",
    .severity = Severity::Warning,
    .sentence = "Something was left open when the session ended",
    .explanation =
        "Modules, events or buffers are open when the library is closed, or when the "
        "log of the session ends. A device that was left open often can't be opened "
        "again until the camera's heartbeat runs out.",
    .remedy =
        "Close what is listed in the reverse order of its opening, before GCCloseLib and "
        "before the process ends, on the paths that follow an error, too.",
    .section = "3.2 to 3.5, 5.2.9, 6.3.7.6",
    .harmless =
        "The log was taken while the application ran. If it ends in the middle of a line, or of a "
        "call as timing lines tell, nothing is said.",
    .needs = ""};

constexpr Rule kModuleOrder{
    .id = "MOD-ORDER",
    .severity = Severity::Info,
    .sentence = "A module was closed with something open below it",
    .explanation =
        "Closing a module closes all that was opened through it. That's allowed, but "
        "handles that the application still has are worth nothing from then on.",
    .remedy =
        "Revoke buffers, unregister events and close what was opened through the module "
        "before the module itself.",
    .section = "6.1.3",
    .harmless = "Some applications rely on it.",
    .needs = ""};

constexpr Rule kCloseLive{
    .id = "MOD-CLOSE-LIVE",
    .severity = Severity::Error,
    .sentence = "A module was closed while a stream below it was acquiring",
    .explanation =
        "A device, an interface, the transport layer or the library was closed between "
        "DSStartAcquisition and DSStopAcquisition of a stream below it. Whoever waits "
        "for a frame of that stream uses a handle that is gone.",
    .remedy =
        "Stop the acquisition and end the threads that wait for frames before anything above "
        "the stream is closed. Don't refresh the list of devices by closing the system.",
    .section = "6.1.4, 4.2.3.1",
    .harmless = "An application may abort like this on purpose.",
    .needs = ""};

constexpr const Rule* kModuleRules[] = {&kInUse, &kModuleLeak, &kModuleOrder, &kCloseLive};

bool IsModule(HandleKind kind) {
  return kind != HandleKind::Port;
}

class Modules : public RuleFamily {
 public:
  Modules(Findings& findings, const LogKnowledge& log) : findings_(findings), log_(log) {}

  [[nodiscard]] Interest Wants(Function function) const override {
    switch (function) {
      case Function::TLOpen:
      case Function::TLOpenInterface:
      case Function::IFOpenDevice:
      case Function::DevOpenDataStream:
        return Interest::Failures;
      case Function::TLClose:
      case Function::IFClose:
      case Function::DevClose:
      case Function::DSClose:
      case Function::GCCloseLib:
        return Interest::All;
      default:
        return Interest::None;
    }
  }

  void Before(const Call& call) override {
    switch (call.Which()) {
      case Function::TLOpen:
        OnRefused(call, HandleKind::TransportLayer, kNoHandle, {});
        break;
      case Function::TLOpenInterface:
        OnRefused(call, HandleKind::Interface, call.HandleIn("hTL"), call.Text("sInterfaceName"));
        break;
      case Function::IFOpenDevice:
        OnRefused(call, HandleKind::Device, call.HandleIn("hInterface"), call.Text("sDevName"));
        break;
      case Function::DevOpenDataStream:
        OnRefused(call, HandleKind::DataStream, call.HandleIn("hDev"), call.Text("pID"));
        break;
      case Function::GCCloseLib:
        if (!call.Failed()) {
          static_cast<void>(ReportLive(call, kNoHandle));
        }
        break;
      default:
        if (!call.Failed() && call.Context().handles[0] != kNoHandle) {
          OnClose(call, call.Context().handles[0]);
        }
    }
  }

  void EndSession(const SessionModel& model, const Moment& moment, bool isClosed) override {
    const Handles& handles = model.AllHandles();
    for (const HandleId id : handles.OpenOnes()) {
      const Handle& handle = handles.At(id);
      const bool isTop = handle.parent == kNoHandle || !handles.At(handle.parent).isOpen ||
                         !handles.At(handle.parent).openedAt.has_value();
      if (isTop && handle.openedAt.has_value() && IsModule(handle.kind)) {
        if (!isClosed && EndsInTheMiddle(model, log_, kModuleLeak.id, findings_)) {
          return;
        }
        ReportLeak(model, id, moment, isClosed);
      }
    }
  }

 private:
  void OnRefused(const Call& call, HandleKind kind, HandleId parent, std::string_view name) {
    if (call.Result() != GC_ERR_RESOURCE_IN_USE) {
      return;
    }
    const auto& open = call.All().OpenOnes();
    const auto holder = std::find_if(open.begin(), open.end(), [&](HandleId id) {
      const Handle& handle = call.At(id);
      return handle.kind == kind && handle.openedAt.has_value() &&
             (kind == HandleKind::TransportLayer ||
              (handle.id == name && (kind != HandleKind::DataStream || handle.parent == parent)));
    });
    if (holder != open.end()) {
      if (Finding* finding =
              findings_.Add(kInUse, Severity::Error, KeyOf(*holder), call.Moment())) {
        finding->message = fmt::format("{} is refused: {} is open already, and wasn't closed.",
                                       call.Name(), call.Named(*holder));
        finding->handles.push_back(call.All().Name(*holder));
        Relate(*finding, call.At(*holder).openedAt, call.All().Name(*holder) + " is opened");
      }
      return;
    }
    // Of a device, that's another rule's.
    if (kind != HandleKind::Device) {
      if (Finding* finding = findings_.Add(kInUse, Severity::Warning, KeyOf(parent, call.Which()),
                                           call.Moment())) {
        finding->message = fmt::format(
            "{} is refused, and nothing in this log holds it: it's likely held by another process, "
            "or by a second copy of the producer in this one.",
            call.Name());
      }
    }
  }

  void OnClose(const Call& call, HandleId id) {
    const bool isStream = call.Which() == Function::DSClose;
    if ((!isStream && ReportLive(call, id)) || !call.At(id).isOpen) {
      return;
    }
    std::vector<HandleId> below;
    for (const HandleId each : call.All().OpenOnes()) {
      if (each != id && IsAtOrBelow(call.All(), each, id) && IsModule(call.At(each).kind) &&
          call.At(each).openedAt.has_value()) {
        below.push_back(each);
      }
    }
    if (below.empty()) {
      return;
    }
    if (Finding* finding = findings_.Add(kModuleOrder, Severity::Info, KeyOf(id), call.Moment())) {
      finding->message = fmt::format("{} closes {} with {} below it, which {} closed with it.",
                                     call.Name(), call.Named(id),
                                     below.size() == 1 ? call.Named(below[0]) : Count(below.size()),
                                     below.size() == 1 ? "is" : "are");
      finding->handles.push_back(call.All().Name(id));
      List(call.All(), below, *finding);
    }
  }

  // Of all streams below `id`; of all there are if it's kNoHandle.
  bool ReportLive(const Call& call, HandleId id) {
    for (const Stream& stream : call.Model().Streams()) {
      if (!stream.IsRunning() || !call.At(stream.Id()).isOpen ||
          (id != kNoHandle && !IsAtOrBelow(call.All(), stream.Id(), id))) {
        continue;
      }
      if (Finding* finding = findings_.Add(kCloseLive, Severity::Error,
                                           KeyOf(stream.Id(), call.Which()), call.Moment())) {
        finding->message =
            fmt::format("{} closes {} while {} is acquiring.", call.Name(),
                        id == kNoHandle ? "the library" : call.Named(id), call.Named(stream.Id()));
        if (id != kNoHandle) {
          finding->handles.push_back(call.All().Name(id));
        }
        finding->handles.push_back(call.All().Name(stream.Id()));
        Relate(*finding, stream.StartedAt(), "DSStartAcquisition");
      }
      return true;
    }
    return false;
  }

  void ReportLeak(const SessionModel& model, HandleId top, const Moment& moment, bool isClosed) {
    const Handles& handles = model.AllHandles();
    std::vector<HandleId> below;
    for (const HandleId each : handles.OpenOnes()) {
      if (each != top && IsAtOrBelow(handles, each, top) && IsModule(handles.At(each).kind)) {
        below.push_back(each);
      }
    }
    Finding* finding = findings_.Add(kModuleLeak, Severity::Warning, KeyOf(top), moment);
    if (finding == nullptr) {
      return;
    }
    finding->message = fmt::format(
        "{} is still open when {}{}.", handles.FullName(top),
        isClosed ? "the library is closed" : "the session ends",
        below.empty() ? std::string()
                      : ", and so " + std::string(below.size() == 1 ? "is " : "are ") +
                            (below.size() == 1 ? handles.FullName(below[0]) : Count(below.size())) +
                            " below it");
    finding->handles.push_back(handles.Name(top));
    Relate(*finding, handles.At(top).openedAt, handles.FullName(top) + " is opened");
    List(handles, below, *finding);
  }

  static std::string Count(std::size_t count) { return std::to_string(count) + " handles"; }

  static void List(const Handles& handles, const std::vector<HandleId>& ids, Finding& finding) {
    for (const HandleId id : ids) {
      if (finding.handles.size() < Findings::kMostRelated) {
        finding.handles.push_back(handles.Name(id));
      }
      const bool isBuffer = handles.At(id).kind == HandleKind::Buffer;
      const bool isEvent = handles.At(id).kind == HandleKind::Event;
      Relate(finding, handles.At(id).openedAt,
             handles.FullName(id) +
                 (isBuffer ? " is announced" : (isEvent ? " is registered" : " is opened")));
    }
  }

  Findings& findings_;
  const LogKnowledge& log_;
};

}  // namespace

FamilyEntry ModuleFamily() {
  return {kModuleRules, MakeFamily<Modules>};
}

}  // namespace vextrel::program
