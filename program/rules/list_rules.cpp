// SPDX-License-Identifier: MIT
// LIST: lists of interfaces and devices are brought up to date before they're used.
#include <fmt/format.h>

#include <map>
#include <optional>

#include "rules/family.h"

namespace vextrel::program {
namespace {

constexpr Rule kFirst{
    .id = "LIST-FIRST",
    .severity = Severity::Error,
    .sentence = "A list was read before it was made",
    .explanation =
        "Interfaces or devices are counted, or their ids asked for, before the first "
        "successful update of the list on this handle. Each opened handle starts with "
        "an empty list.",
    .remedy =
        "Call TLUpdateInterfaceList or IFUpdateDeviceList on that very handle first, and "
        "look at its result.",
    .section = "3.2, 3.3",
    .harmless =
        "A list may have been made through the module's own port; if it was written to, "
        "the finding is an info.",
    .needs = "the line that opens the handle"};

constexpr Rule kOpen{
    .id = "LIST-OPEN",
    .severity = Severity::Warning,
    .sentence = "An id isn't known, and the list was never made on this handle",
    .explanation =
        "Opening by id answered GC_ERR_INVALID_ID. Some producers know only ids of the "
        "list that was made on the same handle; a list from an earlier handle is gone.",
    .remedy = "Update the list on the handle that is used for opening, then open.",
    .section = "3.3",
    .harmless = "The id may really be wrong.",
    .needs = "the line that opens the handle"};

constexpr Rule kTimeout{
    .id = "LIST-TIMEOUT",
    .severity = Severity::Warning,
    .sentence = "An update of a list got too little time",
    .explanation =
        "The update timed out, and the list was used nevertheless: it's the old one. "
        "Or the time-out is below 100 ms, in which cameras in a network often don't "
        "answer. Or, as timing lines tell, the update took 90 % of its time-out or more, so "
        "that the answer just after it is missing.",
    .remedy = "Give the update a second or more, and look at its result.",
    .section = "6.3.2.8, 6.3.3.7",
    .harmless = "A local bus can answer fast, and some producers always wait as long as they may.",
    .needs = ""};

constexpr Rule kListRace{
    .id = "LIST-RACE",
    .severity = Severity::Warning,
    .sentence = "A list was updated by one thread while another was reading it",
    .explanation =
        "Between the count and an id that one thread asked for, another thread updated "
        "the list of the same handle. An index may then mean another device.",
    .remedy = "Hold one lock from the update to the last id that is read.",
    .section = "3.2, 3.3",
    .harmless = "",
    .needs = "thread ids"};

constexpr Rule kIndex{
    .id = "LIST-INDEX",
    .severity = Severity::Warning,
    .sentence = "An index is past the end of its list",
    .explanation =
        "The call failed, and its index isn't below the count that was asked for last, "
        "or the producer says GC_ERR_INVALID_INDEX.",
    .remedy = "Ask for the count again after each update, and count from 0.",
    .section = "6.3.2.3",
    .harmless = "",
    .needs = ""};

constexpr const Rule* kListRules[] = {&kFirst, &kOpen, &kTimeout, &kListRace, &kIndex};

constexpr std::uint64_t kListShort = 100;           // ms
constexpr std::uint64_t kListLongest = 86'400'000;  // ms

class Lists : public RuleFamily {
 public:
  Lists(Findings& findings, const LogKnowledge& /*log*/) : findings_(findings) {}

  [[nodiscard]] Interest Wants(Function function) const override {
    switch (function) {
      case Function::TLUpdateInterfaceList:
      case Function::IFUpdateDeviceList:
      case Function::TLGetNumInterfaces:
      case Function::IFGetNumDevices:
      case Function::DevGetNumDataStreams:
      case Function::TLGetInterfaceID:
      case Function::IFGetDeviceID:
      case Function::DevGetDataStreamID:
      case Function::DSGetBufferID:
      case Function::TLOpenInterface:
      case Function::IFOpenDevice:
      case Function::GCWritePort:
      case Function::GCWritePortStacked:
        return Interest::All;
      default:
        return Interest::None;
    }
  }

  void Before(const Call& call) override {
    const HandleId id = call.Context().handles[0];
    if (id == kNoHandle || !call.At(id).isOpen) {
      return;
    }
    switch (call.Which()) {
      case Function::TLUpdateInterfaceList:
      case Function::IFUpdateDeviceList:
        OnUpdate(call, id);
        break;
      case Function::TLGetNumInterfaces:
      case Function::IFGetNumDevices:
        OnCount(call, id,
                call.Which() == Function::IFGetNumDevices ? call.Number("iNumDevices")
                                                          : call.Number("iNumInterfaces"));
        CheckMade(call, id);
        break;
      case Function::DevGetNumDataStreams:
        OnCount(call, id, call.Number("piNumChannel"));
        break;
      case Function::TLGetInterfaceID:
      case Function::IFGetDeviceID:
        CheckMade(call, id);
        CheckRace(call, id);
        CheckIndex(call, id);
        break;
      case Function::DevGetDataStreamID:
      case Function::DSGetBufferID:
        CheckIndex(call, id);
        break;
      case Function::GCWritePort:
      case Function::GCWritePortStacked:
        if (const HandleKind kind = call.At(id).kind;
            kind == HandleKind::TransportLayer || kind == HandleKind::Interface) {
          lists_[id].isWritten = true;
        }
        break;
      default:
        CheckId(call, id);
    }
  }

  void EndSession(const SessionModel& /*model*/, const Moment& /*moment*/,
                  bool /*isClosed*/) override {
    lists_.clear();
  }

 private:
  struct List {
    std::optional<LogPlace> madeAt;
    std::optional<LogPlace> timedOutAt;  // since it was made
    std::optional<LogPlace> updatedAt;   // last, however it ended
    std::uint32_t updatedBy = 0;
    bool isWritten = false;
    std::optional<std::uint64_t> count;
    LogPlace countedAt;
    std::uint32_t countedBy = 0;
  };

  List& ListOf(const Call& call, HandleId id) {
    ForgetClosed(lists_, call.All(), 1000);
    return lists_[id];
  }

  void OnUpdate(const Call& call, HandleId id) {
    List& list = ListOf(call, id);
    list.updatedAt = call.Place();
    list.updatedBy = call.Thread();
    if (!call.Failed()) {
      list.madeAt = call.Place();
      list.timedOutAt.reset();
    } else if (call.Result() == GC_ERR_TIMEOUT) {
      list.timedOutAt = call.Place();
    }
    if (call.Number("iTimeout") < kListShort) {
      if (Finding* finding =
              findings_.Add(kTimeout, Severity::Warning, KeyOf(id, call.Which()), call.Moment())) {
        finding->message =
            fmt::format("{} of {} gets {} ms: likely too little for a device that answers slowly.",
                        call.Name(), call.Named(id), call.Number("iTimeout"));
        finding->handles.push_back(call.All().Name(id));
      }
    } else if (call.Context().timing != nullptr && !call.Failed()) {
      CheckDuration(call, id, *call.Context().timing);
    }
  }

  void CheckDuration(const Call& call, HandleId id, const TimedCall& timing) {
    const std::uint64_t timeout = call.Number("iTimeout");
    const std::uint64_t took = timing.nanoseconds / 1'000'000;
    // One without end looks like a very large number.
    if (timeout > kListLongest || took * 10 < timeout * 9) {
      return;
    }
    if (Finding* finding =
            findings_.Add(kTimeout, Severity::Warning, KeyOf(id, call.Which()), call.Moment())) {
      finding->message = fmt::format(
          "{} of {} took {} of its {} ms: likely a device that answers slowly is missing.",
          call.Name(), call.Named(id), took, timeout);
      finding->handles.push_back(call.All().Name(id));
      Relate(*finding, timing.entered.place, "it enters the producer");
    }
  }

  void OnCount(const Call& call, HandleId id, std::uint64_t count) {
    if (!call.Failed()) {
      List& list = ListOf(call, id);
      list.count = count;
      list.countedAt = call.Place();
      list.countedBy = call.Thread();
    }
  }

  void CheckMade(const Call& call, HandleId id) {
    List& list = ListOf(call, id);
    if (list.timedOutAt.has_value()) {
      if (Finding* finding = findings_.Add(kTimeout, Severity::Warning, KeyOf(id), call.Moment())) {
        finding->message =
            fmt::format("{} reads the list of {}, whose last update timed out: it's the old list.",
                        call.Name(), call.Named(id));
        finding->handles.push_back(call.All().Name(id));
        Relate(*finding, list.timedOutAt, "the update times out");
      }
      return;
    }
    if (list.madeAt.has_value() || !call.At(id).openedAt.has_value()) {
      return;
    }
    if (Finding* finding = findings_.Add(kFirst, list.isWritten ? Severity::Info : Severity::Error,
                                         KeyOf(id), call.Moment())) {
      finding->message =
          fmt::format("{} reads the list of {}, which was never {}.", call.Name(), call.Named(id),
                      list.updatedAt.has_value() ? "updated successfully" : "made");
      finding->handles.push_back(call.All().Name(id));
      Relate(*finding, list.updatedAt, "the update fails");
      Relate(*finding, call.At(id).openedAt, call.All().Name(id) + " is opened");
    }
  }

  void CheckRace(const Call& call, HandleId id) {
    const List& list = ListOf(call, id);
    if (call.Thread() == 0 || list.countedBy != call.Thread() || list.updatedBy == call.Thread() ||
        list.updatedBy == 0 || !list.updatedAt.has_value() ||
        !IsBehind(*list.updatedAt, list.countedAt)) {
      return;
    }
    if (Finding* finding = findings_.Add(kListRace, Severity::Warning, KeyOf(id), call.Moment())) {
      finding->message = fmt::format(
          "{} reads the list of {} while thread T{} updates it: the index may mean another entry.",
          call.Name(), call.Named(id), list.updatedBy);
      finding->handles.push_back(call.All().Name(id));
      Relate(*finding, list.countedAt, fmt::format("T{} counts the entries", call.Thread()));
      Relate(*finding, list.updatedAt, fmt::format("T{} updates the list", list.updatedBy));
    }
  }

  void CheckIndex(const Call& call, HandleId id) {
    if (!call.Failed()) {
      return;
    }
    const List& list = ListOf(call, id);
    const std::uint64_t index = call.Number("iIndex");
    const bool isBehind = list.count.has_value() && index >= *list.count;
    if (!isBehind && call.Result() != GC_ERR_INVALID_INDEX) {
      return;
    }
    if (Finding* finding =
            findings_.Add(kIndex, Severity::Warning, KeyOf(id, call.Which()), call.Moment())) {
      finding->message = fmt::format("{} asks {} for entry {}", call.Name(), call.Named(id), index);
      if (list.count.has_value()) {
        finding->message += fmt::format(", but there are {}", *list.count);
        Relate(*finding, list.countedAt, "the entries are counted");
      }
      finding->message += '.';
      finding->handles.push_back(call.All().Name(id));
    }
  }

  void CheckId(const Call& call, HandleId id) {
    const List& list = ListOf(call, id);
    if (call.Result() != GC_ERR_INVALID_ID || list.madeAt.has_value() ||
        !call.At(id).openedAt.has_value()) {
      return;
    }
    if (Finding* finding = findings_.Add(kOpen, Severity::Warning, KeyOf(id), call.Moment())) {
      finding->message = fmt::format(
          "{} doesn't know the id '{}', and the list of {} was never made: likely the id is from a "
          "list of an earlier handle.",
          call.Name(),
          call.Which() == Function::IFOpenDevice ? call.Text("sDevName")
                                                 : call.Text("sInterfaceName"),
          call.Named(id));
      finding->handles.push_back(call.All().Name(id));
      Relate(*finding, call.At(id).openedAt, call.All().Name(id) + " is opened");
    }
  }

  Findings& findings_;
  std::map<HandleId, List> lists_;
};

}  // namespace

FamilyEntry ListFamily() {
  return {kListRules, MakeFamily<Lists>};
}

}  // namespace vextrel::program
