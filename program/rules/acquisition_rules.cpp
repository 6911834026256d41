// SPDX-License-Identifier: MIT
// ACQ: acquisitions start and stop in pairs, and in the right order.
#include <fmt/format.h>

#include <algorithm>
#include <map>

#include "rules/family.h"

namespace vextrel::program {
namespace {

constexpr Rule kAcquisitionPair{
    .id = "ACQ-PAIR",
    .severity = Severity::Warning,
    .sentence = "DSStartAcquisition and DSStopAcquisition don't come in pairs",
    .explanation =
        "A running stream was started again, a stopped one stopped again, and the "
        "producer refused; or a running stream was closed, which stops it and is an "
        "info. A stream stays running when the number of frames is reached that it was "
        "started for.",
    .remedy = "Call DSStopAcquisition once for each successful DSStartAcquisition.",
    .section = "6.3.5.11, 6.3.5.12",
    .harmless = "",
    .needs = "the line that started the stream"};

constexpr Rule kStartFail{
    .id = "ACQ-START-FAIL",
    .severity = Severity::Error,
    .sentence = "A stream couldn't be started",
    .explanation =
        "DSStartAcquisition failed, and no other rule explains it. The first call that "
        "failed since the stream was opened or stopped, on the same thread, stands "
        "beside it: an application often shows its last error only.",
    .remedy =
        "Look at the call that failed first. Behind a failed start, take the buffers out of "
        "the queues, revoke them, and close the stream and the device.",
    .section = "6.1.5",
    .harmless = "",
    .needs = ""};

constexpr Rule kAcquisitionOrder{
    .id = "ACQ-ORDER",
    .severity = Severity::Info,
    .sentence = "A stream was started before it could deliver",
    .explanation =
        "The new-buffer event wasn't registered, or no buffer was queued, when the "
        "stream was started. It's allowed, but first frames may be lost.",
    .remedy = "Register the event and queue the buffers, then start the stream, then the camera.",
    .section = "5.2.3 to 5.2.5",
    .harmless = "The camera may be started much later.",
    .needs = "the opening of the stream"};

constexpr Rule kAcquisitionRace{
    .id = "ACQ-RACE",
    .severity = Severity::Info,
    .sentence = "An acquisition was stopped right after its start",
    .explanation =
        "Less than 10 ms lie between DSStartAcquisition and DSStopAcquisition. Some "
        "producers can't stop what hasn't come up yet.",
    .remedy = "Wait for the first frame, or leave the stream running.",
    .section = "5.2.5",
    .harmless = "Single frames may be taken like this.",
    .needs = "times"};

constexpr const Rule* kAcquisitionRules[] = {&kAcquisitionPair, &kStartFail, &kAcquisitionOrder,
                                             &kAcquisitionRace};

constexpr std::int64_t kRight = 10'000;  // us

class Acquisitions : public RuleFamily {
 public:
  Acquisitions(Findings& findings, const LogKnowledge& /*log*/) : findings_(findings) {}

  [[nodiscard]] Interest Wants(Function function) const override {
    switch (function) {
      case Function::DSStartAcquisition:
      case Function::DSStopAcquisition:
      case Function::DSClose:
      case Function::DSQueueBuffer:
      case Function::DSFlushQueue:
      case Function::DevOpenDataStream:
      case Function::EventGetData:
        return Interest::All;
      case Function::GCGetLastError:
      case Function::GCInitLib:
      case Function::GCCloseLib:
        return Interest::None;
      default:
        return Interest::Failures;
    }
  }

  void Before(const Call& call) override {
    switch (call.Which()) {
      case Function::EventGetData:
        if (!call.Failed()) {
          blocks_.erase(call.Thread());
        }
        return;
      case Function::DevOpenDataStream:
        if (!call.Failed()) {
          blocks_.erase(call.Thread());
        }
        break;
      case Function::DSStartAcquisition:
        OnStart(call);
        break;
      case Function::DSStopAcquisition:
        OnStop(call);
        break;
      case Function::DSClose:
        OnClose(call);
        break;
      default:
        break;
    }
    if (call.Failed()) {
      if (blocks_.size() < kAcquisitionMostThreads) {
        blocks_.try_emplace(
            call.Thread(),
            Failed{call.Place(), std::string(call.Name()) + " fails with " + call.ResultText()});
      }
    }
  }

  void After(const Call& call) override {
    if (emptyStarts_.empty()) {
      return;
    }
    switch (call.Which()) {
      case Function::DSQueueBuffer:
      case Function::DSFlushQueue:
        if (const Stream* stream = call.StreamIn();
            stream != nullptr && stream->CurrentDepth().value_or(1) > 0) {
          EndEmptyStart(call.Model(), stream->Id());
        }
        break;
      case Function::DSStopAcquisition:
      case Function::DSClose:
        if (!call.Failed()) {
          EndEmptyStart(call.Model(), call.HandleIn("hDS"));
        }
        break;
      case Function::EventGetData:
        if (call.Context().isNewBufferEvent) {
          OnWait(call, call.At(call.Context().handles[0]).parent);
        }
        break;
      default:
        break;
    }
  }

  void EndSession(const SessionModel& model, const Moment& /*moment*/, bool /*isClosed*/) override {
    while (!emptyStarts_.empty()) {
      EndEmptyStart(model, emptyStarts_.begin()->first);
    }
    blocks_.clear();
    startedAt_.clear();
  }

 private:
  struct Failed {
    LogPlace place;
    std::string what;
  };
  struct EmptyStart {
    vextrel::program::Moment start;
    bool hasEvent = false;
  };
  static constexpr std::size_t kAcquisitionMostThreads = 1000;

  // Of an open handle, or null.
  static const Stream* StreamIn(const Call& call) {
    const HandleId id = call.HandleIn("hDS");
    return id != kNoHandle && call.At(id).isOpen ? call.StreamIn() : nullptr;
  }

  void OnStart(const Call& call) {
    const Stream* stream = StreamIn(call);
    if (stream == nullptr) {
      return;
    }
    if (!call.Failed()) {
      blocks_.erase(call.Thread());
      if (startedAt_.size() < kAcquisitionMostThreads) {
        startedAt_[stream->Id()] = call.Time();
      }
      CheckOrder(call, *stream);
      return;
    }
    if (stream->IsRunning()) {
      if (call.Result() == GC_ERR_RESOURCE_IN_USE) {
        ReportPair(call, *stream, Severity::Warning, "is started again, though it's running");
      }
      return;
    }
    if (call.Result() == GC_ERR_BUFFER_TOO_SMALL || call.Result() == GC_ERR_INVALID_BUFFER ||
        call.Result() == GC_ERR_INVALID_HANDLE || call.Result() == GC_ERR_NOT_INITIALIZED) {
      return;
    }
    Finding* finding =
        findings_.Add(kStartFail, Severity::Error, KeyOf(stream->Id()), call.Moment());
    if (finding == nullptr) {
      return;
    }
    finding->message =
        fmt::format("{} couldn't be started: {}.", call.Named(stream->Id()), call.ResultText());
    finding->handles.push_back(call.All().Name(stream->Id()));
    if (const auto first = blocks_.find(call.Thread()); first != blocks_.end()) {
      finding->message += " Another call had failed before.";
      Relate(*finding, first->second.place, first->second.what);
    }
  }

  void CheckOrder(const Call& call, const Stream& stream) {
    if (!call.At(stream.Id()).openedAt.has_value()) {
      return;
    }
    const auto& open = call.All().OpenOnes();
    const bool hasEvent = std::any_of(open.begin(), open.end(), [&](HandleId id) {
      return call.At(id).kind == HandleKind::Event && call.At(id).parent == stream.Id() &&
             call.At(id).id == "NEW_BUFFER";
    });
    if (stream.CurrentDepth().value_or(1) == 0) {
      if (emptyStarts_.size() < kAcquisitionMostThreads) {
        emptyStarts_.insert_or_assign(stream.Id(), EmptyStart{call.Moment(), hasEvent});
      }
    } else if (!hasEvent) {
      ReportOrder(call.Model(), stream.Id(), call.Moment(), "no event registered for new buffers");
    }
  }

  void ReportOrder(const SessionModel& model, HandleId id, const Moment& start,
                   std::string_view without) {
    if (Finding* finding = findings_.Add(kAcquisitionOrder, Severity::Info, KeyOf(id), start)) {
      finding->message =
          fmt::format("{} is started with {}.", model.AllHandles().FullName(id), without);
      finding->handles.push_back(model.AllHandles().Name(id));
    }
  }

  // A wait for a frame that nothing can bring is another rule's.
  void OnWait(const Call& call, HandleId id) {
    const auto known = emptyStarts_.find(id);
    if (known == emptyStarts_.end()) {
      return;
    }
    if (!call.Failed()) {
      EndEmptyStart(call.Model(), id);
    } else if (TimedOutSince(call, known->second.start)) {
      emptyStarts_.erase(known);
    }
  }

  // The queue was empty at the start, and isn't any more, or it doesn't matter any more.
  void EndEmptyStart(const SessionModel& model, HandleId id) {
    const auto known = emptyStarts_.find(id);
    if (known != emptyStarts_.end()) {
      ReportOrder(model, id, known->second.start,
                  known->second.hasEvent ? "no buffer in its queue"
                                         : "no event for new buffers, and no buffer in its queue");
      emptyStarts_.erase(known);
    }
  }

  void OnStop(const Call& call) {
    const Stream* stream = StreamIn(call);
    if (stream == nullptr) {
      return;
    }
    if (call.Failed()) {
      const bool wasSeen = call.At(stream->Id()).openedAt.has_value();
      if (!stream->IsRunning() && wasSeen && call.Result() == GC_ERR_RESOURCE_IN_USE) {
        ReportPair(call, *stream, Severity::Warning, "is stopped, though it isn't running");
      }
      return;
    }
    blocks_.erase(call.Thread());
    const auto started = startedAt_.find(stream->Id());
    if (stream->IsRunning() && started != startedAt_.end() && call.HasTime() &&
        call.Time() - started->second < kRight && call.Time() >= started->second &&
        call.Model().Resolution() <= kRight) {
      if (Finding* finding =
              findings_.Add(kAcquisitionRace, Severity::Info, KeyOf(stream->Id()), call.Moment())) {
        finding->message =
            fmt::format("{} is stopped {} ms after its start.", call.Named(stream->Id()),
                        (call.Time() - started->second) / 1000);
        finding->handles.push_back(call.All().Name(stream->Id()));
        Relate(*finding, stream->StartedAt(), "DSStartAcquisition");
      }
    }
  }

  void OnClose(const Call& call) {
    const Stream* stream = StreamIn(call);
    if (stream != nullptr && !call.Failed() && stream->IsRunning()) {
      ReportPair(call, *stream, Severity::Info, "is closed while it's running");
    }
  }

  void ReportPair(const Call& call, const Stream& stream, Severity severity,
                  std::string_view what) {
    if (Finding* finding = findings_.Add(kAcquisitionPair, severity,
                                         KeyOf(stream.Id(), call.Which()), call.Moment())) {
      finding->message = fmt::format("{} {}.", call.Named(stream.Id()), what);
      finding->handles.push_back(call.All().Name(stream.Id()));
      Relate(*finding, stream.StartedAt(), "it was started last");
    }
  }

  Findings& findings_;
  std::map<std::uint32_t, Failed> blocks_;  // what failed first, by thread
  std::map<HandleId, std::int64_t> startedAt_;
  std::map<HandleId, EmptyStart> emptyStarts_;
};

}  // namespace

FamilyEntry AcquisitionFamily() {
  return {kAcquisitionRules, MakeFamily<Acquisitions>};
}

}  // namespace vextrel::program
