// SPDX-License-Identifier: MIT
// BUF, the queue: buffers go from the application to the producer and back.
#include <fmt/format.h>

#include <algorithm>
#include <map>

#include "rules/family.h"

namespace vextrel::program {
namespace {

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

constexpr const Rule* kQueueRules[] = {&kRequeue, &kReadQueued, &kRevoke, &kDrop};

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
      default:
        break;
    }
  }

  void After(const Call& call) override {
    switch (call.Which()) {
      case Function::DSQueueBuffer:
        if (const HandleId id = call.HandleIn("hB"); !call.Failed() && id != kNoHandle) {
          RememberQueued(call, id);
        }
        break;
      case Function::DSFlushQueue:
        if (call.StreamIn() != nullptr) {
          flushes_[call.HandleIn("hDS")] = {call.Place(), std::string(call.Text("QueueType")),
                                            call.Failed() ? call.ResultText() : std::string()};
        }
        break;
      case Function::DSRevokeBuffer:
        if (!call.Failed()) {
          queuedAt_.erase(call.HandleIn("hBuffer"));
        }
        break;
      case Function::DSClose:
        if (!call.Failed()) {
          flushes_.erase(call.HandleIn("hDS"));
        }
        break;
      case Function::EventGetData:
        OnEvent(call);
        break;
      default:
        break;
    }
  }

  void EndSession(const SessionModel& /*model*/, const Moment& /*moment*/,
                  bool /*isClosed*/) override {
    queuedAt_.clear();
    flushes_.clear();
  }

 private:
  // The last one of a stream.
  struct QueueFlush {
    LogPlace place;
    std::string type;
    std::string failure;  // "" if it succeeded
  };

  // The state of a buffer is certain as long as the depth of its stream's queue is.
  static const Stream* CertainStream(const Call& call) {
    const Stream* stream = call.StreamIn();
    return stream != nullptr && stream->CurrentDepth().has_value() ? stream : nullptr;
  }

  // A stream's buffer that is open and was announced on it.
  static HandleId OwnBuffer(const Call& call, Label label) {
    const HandleId buffer = call.HandleIn(label);
    return buffer != kNoHandle && call.At(buffer).isOpen &&
                   call.At(buffer).parent == call.HandleIn("hDS")
               ? buffer
               : kNoHandle;
  }

  void CheckRequeue(const Call& call) {
    const HandleId buffer = OwnBuffer(call, "hB");
    if (buffer == kNoHandle || !call.Failed() || call.At(buffer).state != BufferState::Queued ||
        (CertainStream(call) == nullptr && call.Result() != GC_ERR_RESOURCE_IN_USE)) {
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
        CertainStream(call) == nullptr ||
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
    const Stream* stream = CertainStream(call);
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
      finding->message =
          fmt::format("{} is revoked {}: the producer answers {}.", call.Named(buffer),
                      isQueued ? "while it's queued, " + WhyQueued(call, buffer)
                               : "while the stream is acquiring",
                      call.ResultText());
    }
    Name(call, buffer, *finding);
    if (const auto flush = flushes_.find(stream->Id()); flush != flushes_.end()) {
      Relate(*finding, flush->second.place, fmt::format("DSFlushQueue({})", flush->second.type));
    }
  }

  // Why no flush has taken a queued buffer out of the queue.
  std::string WhyQueued(const Call& call, HandleId buffer) const {
    const auto flush = flushes_.find(call.HandleIn("hDS"));
    if (flush == flushes_.end()) {
      return "and there was no DSFlushQueue(ACQ_QUEUE_ALL_DISCARD) for its stream";
    }
    const QueueFlush& last = flush->second;
    const auto queued = queuedAt_.find(buffer);
    if (queued != queuedAt_.end() && IsBehind(queued->second, last.place)) {
      return fmt::format("since it was queued again after DSFlushQueue({})", last.type);
    }
    if (!last.failure.empty()) {
      return fmt::format("since DSFlushQueue({}) failed with {}", last.type, last.failure);
    }
    return fmt::format("and DSFlushQueue({}) {}", last.type,
                       last.type.ends_with("_TO_INPUT") ? "put it there" : "didn't take it out");
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
    const Stream* stream = call.Model().FindStream(dataStream);
    return stream != nullptr && stream->IsRunning() ? stream : nullptr;
  }

  void OnEvent(const Call& call) {
    if (!call.Context().isNewBufferEvent || call.Failed()) {
      return;
    }
    if (call.Context().delivered != kNoHandle) {
      queuedAt_.erase(call.Context().delivered);
      return;
    }
    const Stream* stream = RunningStream(call, call.At(call.Context().handles[0]).parent);
    if (stream != nullptr &&
        call.Message().values[1].text.find_first_not_of('0') == std::string_view::npos) {
      ReportDrop(call, *stream, "fetches a frame's event without a place to store it");
    }
  }

  void RememberQueued(const Call& call, HandleId id) {
    ForgetClosed(queuedAt_, call.All(), 10'000);
    queuedAt_[id] = call.Place();
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
  std::unordered_map<HandleId, LogPlace> queuedAt_;
  std::map<HandleId, QueueFlush> flushes_;
};

}  // namespace

FamilyEntry QueueFamily() {
  return {kQueueRules, MakeFamily<Queue>};
}

}  // namespace vextrel::program
