// SPDX-License-Identifier: MIT
// BUF, the queue: buffers go from the application to the producer and back.
#include <fmt/format.h>

#include <algorithm>
#include <map>

#include "rules/family.h"

namespace vextrel::program {
namespace {

constexpr Rule kStarve{
    .id = "BUF-STARVE",
    .severity = Severity::Error,
    .sentence = "A stream ran out of buffers",
    .explanation =
        "The application holds every buffer of a running stream, so no frame can be "
        "taken. It's an error if a wait for a frame then timed out, or if frames are "
        "missing afterward; a warning if the queue was only empty for longer than two "
        "frames and 50 ms.",
    .remedy =
        "Queue each buffer again with DSQueueBuffer as soon as its frame is used or copied, "
        "on every path. Announce more buffers if single frames take long.",
    .section = "5.3.1",
    .harmless = "The application may have all the frames it wants.",
    .needs = "the opening of the stream, and times"};

constexpr Rule kRequeue{
    .id = "BUF-REQUEUE",
    .severity = Severity::Error,
    .sentence = "A buffer was queued that the producer has already",
    .explanation =
        "DSQueueBuffer failed for a buffer that was queued before and wasn't delivered "
        "since.",
    .remedy = "Queue a buffer once before the start, and then once for each delivery.",
    .section = "6.3.5.9",
    .harmless = "",
    .needs = "the line that queued the buffer"};

constexpr Rule kReadQueued{
    .id = "BUF-READ-QUEUED",
    .severity = Severity::Error,
    .sentence = "The frame of a buffer was asked for that the producer has",
    .explanation =
        "Information on a frame was asked for between DSQueueBuffer and the delivery of "
        "the buffer. What the producer answers, if it doesn't refuse, is of an old "
        "frame or of half a new one; an accepted call is a warning.",
    .remedy = "Ask, and use or copy the data, before the buffer is queued again.",
    .section = "5.1.3, 5.2.6",
    .harmless = "",
    .needs = "the line that queued the buffer"};

constexpr Rule kRevoke{
    .id = "BUF-REVOKE",
    .severity = Severity::Error,
    .sentence = "A buffer was revoked that is still in use",
    .explanation =
        "DSRevokeBuffer was refused for a buffer that is queued, or whose stream is "
        "acquiring. If the buffer was out of every queue and the stream stopped, it's "
        "a warning: likely a fault of the producer.",
    .remedy =
        "Stop the acquisition, take all buffers out of the queues with DSFlushQueue and "
        "ACQ_QUEUE_ALL_DISCARD, then revoke.",
    .section = "6.3.5.10, 5.2.9",
    .harmless = "",
    .needs = "the line that queued the buffer"};

constexpr Rule kDrop{
    .id = "BUF-DROP",
    .severity = Severity::Info,
    .sentence = "Frames that were ready were thrown away",
    .explanation =
        "While the stream was acquiring, its queue or its event was flushed, or an "
        "event was fetched without a place to store it. Frames that were delivered by "
        "then are lost.",
    .remedy =
        "Fetch the frames, or start with ACQ_QUEUE_ALL_DISCARD only while the stream is "
        "stopped.",
    .section = "4.2.3.2, 6.3.7.2",
    .harmless = "Whoever wants the newest frame only does this on purpose.",
    .needs = ""};

constexpr const Rule* kQueueRules[] = {&kStarve, &kRequeue, &kReadQueued, &kRevoke, &kDrop};

constexpr std::int64_t kShortest = 50'000;  // us

// What tells of a buffer, not of the frame in it.
bool IsOfBuffer(std::string_view command) {
  return command == "BUFFER_INFO_BASE" || command == "BUFFER_INFO_SIZE" ||
         command == "BUFFER_INFO_USER_PTR" || command == "BUFFER_INFO_IS_QUEUED" ||
         command == "BUFFER_INFO_IS_ACQUIRING" || command == "BUFFER_INFO_TLTYPE";
}

class Queue : public RuleFamily {
 public:
  Queue(Findings& findings, const LogKnowledge& /*log*/) : findings_(findings) {}

  [[nodiscard]] Interest Wants(Function function) const override {
    switch (function) {
      case Function::DSQueueBuffer:
      case Function::DSGetBufferInfo:
      case Function::DSGetBufferPartInfo:
      case Function::DSGetBufferChunkData:
      case Function::DSRevokeBuffer:
      case Function::DSFlushQueue:
      case Function::DSStartAcquisition:
      case Function::DSStopAcquisition:
      case Function::DSClose:
      case Function::EventGetData:
      case Function::EventFlush:
        return Interest::All;
      default:
        return Interest::None;
    }
  }

  void Before(const Call& call) override {
    switch (call.Which()) {
      case Function::DSQueueBuffer:
        CheckRequeue(call);
        break;
      case Function::DSGetBufferInfo:
      case Function::DSGetBufferPartInfo:
      case Function::DSGetBufferChunkData:
        CheckRead(call);
        break;
      case Function::DSRevokeBuffer:
        CheckRevoke(call);
        break;
      case Function::DSFlushQueue:
      case Function::EventFlush:
        CheckDrop(call);
        break;
      case Function::DSStopAcquisition:
      case Function::DSClose:
        EndStarving(call, call.HandleIn("hDS"), false);
        break;
      default:
        break;
    }
  }

  void After(const Call& call) override {
    switch (call.Which()) {
      case Function::DSQueueBuffer:
      case Function::DSFlushQueue:
        if (!call.Failed()) {
          EndStarving(call, call.HandleIn("hDS"), true);
        }
        if (const HandleId id = call.HandleIn("hB");
            !call.Failed() && id != kNoHandle && call.Which() == Function::DSQueueBuffer) {
          RememberQueued(call, id);
        }
        break;
      case Function::DSRevokeBuffer:
        if (!call.Failed()) {
          queuedAt_.erase(call.HandleIn("hBuffer"));
          deliveredAt_.erase(call.HandleIn("hBuffer"));
        }
        break;
      case Function::EventGetData:
        OnEvent(call);
        break;
      case Function::DSGetBufferInfo:
        OnInfo(call);
        break;
      default:
        break;
    }
  }

  void EndSession(const SessionModel& model, const Moment& moment, bool /*isClosed*/) override {
    for (auto& [id, starving] : starving_) {
      Conclude(model, id, starving, moment);
    }
    starving_.clear();
    queuedAt_.clear();
    deliveredAt_.clear();
  }

 private:
  struct Starving {
    Moment since;
    std::int64_t limit = kShortest;
    std::uint64_t timeouts = 0;
    std::uint64_t depthBefore = 0;
    std::optional<LogPlace> firstTimeout;
    bool isReported = false;
    std::vector<HandleId> holders;
  };

  // The state of a buffer is certain as long as the depth of its stream's queue is.
  static const Stream* CertainStream(const Call& call, HandleId dataStream) {
    if (dataStream == kNoHandle || call.At(dataStream).stream == SIZE_MAX) {
      return nullptr;
    }
    const Stream& stream = call.Model().Streams()[call.At(dataStream).stream];
    return stream.CurrentDepth().has_value() ? &stream : nullptr;
  }

  // A stream's buffer that is open and was announced on it.
  static HandleId OwnBuffer(const Call& call, std::string_view label) {
    const HandleId buffer = call.HandleIn(label);
    return buffer != kNoHandle && call.At(buffer).isOpen &&
                   call.At(buffer).parent == call.HandleIn("hDS")
               ? buffer
               : kNoHandle;
  }

  void CheckRequeue(const Call& call) {
    const HandleId buffer = OwnBuffer(call, "hB");
    if (buffer == kNoHandle || !call.Failed() || call.At(buffer).state != BufferState::Queued ||
        (CertainStream(call, call.HandleIn("hDS")) == nullptr &&
         call.Result() != GC_ERR_RESOURCE_IN_USE)) {
      return;
    }
    if (Finding* finding = findings_.Add(kRequeue, Severity::Error, KeyOf(buffer), call.Moment())) {
      finding->message =
          fmt::format("{} is queued, but the producer has it already, and answers {}.",
                      call.Named(buffer), call.ResultText());
      Name(call, buffer, *finding);
    }
  }

  void CheckRead(const Call& call) {
    const HandleId buffer = OwnBuffer(call, "hBuffer");
    if (buffer == kNoHandle || call.At(buffer).state != BufferState::Queued ||
        CertainStream(call, call.HandleIn("hDS")) == nullptr ||
        (call.Which() == Function::DSGetBufferInfo && IsOfBuffer(call.NameIn("iCommand")))) {
      return;
    }
    const Severity severity = call.Failed() ? Severity::Error : Severity::Warning;
    if (Finding* finding = findings_.Add(kReadQueued, severity, KeyOf(buffer), call.Moment())) {
      finding->message =
          fmt::format("{} asks for the frame of {}, which the producer has: {}.", call.Name(),
                      call.Named(buffer),
                      call.Failed() ? "it answers " + call.ResultText()
                                    : "the answer is likely of an old frame, or of half a new one");
      Name(call, buffer, *finding);
    }
  }

  void CheckRevoke(const Call& call) {
    const HandleId buffer = OwnBuffer(call, "hBuffer");
    const Stream* stream = CertainStream(call, call.HandleIn("hDS"));
    if (buffer == kNoHandle || stream == nullptr || !call.Failed() ||
        call.Result() == GC_ERR_INVALID_HANDLE) {
      return;
    }
    const bool isQueued = call.At(buffer).state == BufferState::Queued;
    const bool isTheirs = !isQueued && !stream->IsRunning();
    Finding* finding = findings_.Add(kRevoke, isTheirs ? Severity::Warning : Severity::Error,
                                     KeyOf(stream->Id(), isTheirs), call.Moment());
    if (finding == nullptr) {
      return;
    }
    if (isTheirs) {
      finding->message = fmt::format(
          "Revoking {} is refused with {}, though it's in no queue and the stream is stopped: "
          "likely a fault of the producer.",
          call.Named(buffer), call.ResultText());
    } else {
      finding->message = fmt::format(
          "{} is revoked {}: the producer answers {}.", call.Named(buffer),
          isQueued ? "while it's queued, with no DSFlushQueue(ACQ_QUEUE_ALL_DISCARD) since then"
                   : "while the stream is acquiring",
          call.ResultText());
    }
    Name(call, buffer, *finding);
  }

  void CheckDrop(const Call& call) {
    HandleId dataStream = call.HandleIn("hDS");
    if (call.Which() == Function::EventFlush) {
      const HandleId event = call.HandleIn("hEvent");
      if (event == kNoHandle || call.At(event).id != "NEW_BUFFER") {
        return;
      }
      dataStream = call.At(event).parent;
    } else {
      const std::string_view type = call.Text("QueueType");
      if (type == "ACQ_QUEUE_INPUT_TO_OUTPUT" || type == "ACQ_QUEUE_UNQUEUED_TO_INPUT") {
        return;
      }
    }
    const Stream* stream = RunningStream(call, dataStream);
    if (!call.Failed() && stream != nullptr) {
      ReportDrop(call, *stream, "discards frames that may be ready");
    }
  }

  void ReportDrop(const Call& call, const Stream& stream, std::string_view what) {
    if (Finding* finding =
            findings_.Add(kDrop, Severity::Info, KeyOf(stream.Id(), call.Which()), call.Moment())) {
      finding->message =
          fmt::format("{} {} while {} is acquiring.", call.Name(), what, call.Named(stream.Id()));
      finding->handles.push_back(call.All().Name(stream.Id()));
    }
  }

  static const Stream* RunningStream(const Call& call, HandleId dataStream) {
    if (dataStream == kNoHandle || call.At(dataStream).stream == SIZE_MAX) {
      return nullptr;
    }
    const Stream& stream = call.Model().Streams()[call.At(dataStream).stream];
    return stream.IsRunning() ? &stream : nullptr;
  }

  void OnEvent(const Call& call) {
    if (!call.Context().isNewBufferEvent) {
      return;
    }
    const HandleId dataStream = call.At(call.Context().handles[0]).parent;
    const Stream* stream = RunningStream(call, dataStream);
    if (call.Failed()) {
      const auto starving = starving_.find(dataStream);
      if (call.Result() == GC_ERR_TIMEOUT && starving != starving_.end()) {
        ++starving->second.timeouts;
        starving->second.firstTimeout = starving->second.firstTimeout.value_or(call.Place());
      }
      return;
    }
    if (call.Context().delivered == kNoHandle) {
      if (stream != nullptr &&
          call.Message().values[1].text.find_first_not_of('0') == std::string_view::npos) {
        ReportDrop(call, *stream, "fetches a frame's event without a place to store it");
      }
      return;
    }
    deliveredAt_[call.Context().delivered] = call.Place();
    queuedAt_.erase(call.Context().delivered);
    if (stream != nullptr && call.HasTime() && stream->CurrentDepth() == 0 &&
        !starving_.contains(dataStream)) {
      StartStarving(call, *stream);
    }
  }

  void StartStarving(const Call& call, const Stream& stream) {
    Starving starving;
    starving.since = call.Moment();
    if (stream.Intervals().Count() > 0) {
      starving.limit =
          std::max(kShortest, static_cast<std::int64_t>(stream.Intervals().Mean() * 2));
    }
    for (const HandleId id : call.All().OpenOnes()) {
      if (call.At(id).kind == HandleKind::Buffer && call.At(id).parent == stream.Id() &&
          call.At(id).state == BufferState::Held) {
        starving.holders.push_back(id);
      }
    }
    // With nothing held, the frames came from buffers that the log doesn't show.
    if (!starving.holders.empty()) {
      starving_.emplace(stream.Id(), std::move(starving));
    }
  }

  // A frame that is asked about: was there a gap since the queue was empty?
  void OnInfo(const Call& call) {
    if (lastStarved_ == nullptr || call.Failed() ||
        call.Text("iCommand") != "BUFFER_INFO_FRAMEID") {
      return;
    }
    const HandleId dataStream = call.HandleIn("hDS");
    if (dataStream != lastStarvedStream_ || call.At(dataStream).stream == SIZE_MAX) {
      return;
    }
    const Stream& stream = call.Model().Streams()[call.At(dataStream).stream];
    const std::uint64_t missing = stream.MissingFrameIds().value_or(0) - missingBefore_;
    missingBefore_ += missing;
    if (missing != 0) {
      lastStarved_->severity = Severity::Error;
      Relate(*lastStarved_, call.Place(), fmt::format("{} frame ids are missing", missing));
    }
    if (--framesToLookAt_ == 0) {
      lastStarved_ = nullptr;
    }
  }

  // `isOver`: the producer has a buffer again. Otherwise the stream ends.
  void EndStarving(const Call& call, HandleId dataStream, bool isOver) {
    const auto known = starving_.find(dataStream);
    if (known == starving_.end() || call.Failed()) {
      return;
    }
    Finding* finding = Conclude(call.Model(), dataStream, known->second, call.Moment(), isOver);
    if (finding != nullptr && isOver) {
      const Stream& stream = call.Model().Streams()[call.At(dataStream).stream];
      lastStarved_ = finding;
      lastStarvedStream_ = dataStream;
      missingBefore_ = stream.MissingFrameIds().value_or(0);
      framesToLookAt_ = known->second.holders.size() + 1;
    }
    starving_.erase(known);
  }

  Finding* Conclude(const SessionModel& model, HandleId id, const Starving& starving,
                    const Moment& now, bool isOver = false) {
    const std::int64_t lasted = now.time.value_or(0) - starving.since.time.value_or(0);
    if (lasted <= starving.limit || (starving.timeouts == 0 && !isOver)) {
      return nullptr;
    }
    const Severity severity = starving.timeouts > 0 ? Severity::Error : Severity::Warning;
    Finding* finding = findings_.Add(kStarve, severity, KeyOf(id), starving.since);
    if (finding == nullptr) {
      return findings_.Find(kStarve, KeyOf(id));
    }
    const Handles& handles = model.AllHandles();
    finding->message = fmt::format(
        "{} ran out of buffers: the application holds {} for {} ms{}. Queue each again after use.",
        handles.FullName(id),
        starving.holders.size() == 1 ? "its only one"
                                     : fmt::format("all {}", starving.holders.size()),
        lasted / 1000,
        starving.timeouts == 0
            ? ", so frames were likely lost"
            : fmt::format(", and {} for a frame timed out",
                          starving.timeouts == 1 ? "a wait"
                                                 : std::to_string(starving.timeouts) + " waits"));
    finding->handles.push_back(handles.Name(id));
    for (const HandleId holder : starving.holders) {
      const auto at = deliveredAt_.find(holder);
      if (at != deliveredAt_.end() && finding->handles.size() < Findings::kMostRelated) {
        finding->handles.push_back(handles.Name(holder));
        Relate(*finding, at->second, handles.Name(holder) + " is held since");
      }
    }
    Relate(*finding, starving.firstTimeout, "the first wait that times out");
    return finding;
  }

  void RememberQueued(const Call& call, HandleId id) {
    if (queuedAt_.size() > 10'000) {
      std::erase_if(queuedAt_, [&](const auto& each) { return !call.At(each.first).isOpen; });
      std::erase_if(deliveredAt_, [&](const auto& each) { return !call.At(each.first).isOpen; });
    }
    queuedAt_[id] = call.Place();
    deliveredAt_.erase(id);
  }

  void Name(const Call& call, HandleId buffer, Finding& finding) {
    finding.handles.push_back(call.All().Name(buffer));
    finding.handles.push_back(call.All().Name(call.At(buffer).parent));
    const auto queued = queuedAt_.find(buffer);
    if (queued != queuedAt_.end()) {
      Relate(finding, queued->second, call.All().Name(buffer) + " is queued");
    }
  }

  Findings& findings_;
  std::map<HandleId, Starving> starving_;
  std::unordered_map<HandleId, LogPlace> queuedAt_;
  std::unordered_map<HandleId, LogPlace> deliveredAt_;
  Finding* lastStarved_ = nullptr;
  HandleId lastStarvedStream_ = kNoHandle;
  std::uint64_t missingBefore_ = 0;
  std::size_t framesToLookAt_ = 0;
};

}  // namespace

FamilyEntry QueueFamily() {
  return {kQueueRules, MakeFamily<Queue>};
}

}  // namespace vextrel::program
