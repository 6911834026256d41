// SPDX-License-Identifier: MIT
// BUF-STARVE: a running stream has a buffer for the next frame.
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

constexpr const Rule* kStarveRules[] = {&kStarve};

constexpr std::int64_t kShortest = 50'000;  // us

class Starvation : public RuleFamily {
 public:
  Starvation(Findings& findings, const LogKnowledge& /*log*/) : findings_(findings) {}

  [[nodiscard]] Interest Wants(Function function) const override {
    switch (function) {
      case Function::DSQueueBuffer:
      case Function::DSGetBufferInfo:
      case Function::DSRevokeBuffer:
      case Function::DSFlushQueue:
      case Function::DSStopAcquisition:
      case Function::DSClose:
      case Function::EventGetData:
        return Interest::All;
      default:
        return Interest::None;
    }
  }

  void Before(const Call& call) override {
    if (call.Which() == Function::DSStopAcquisition || call.Which() == Function::DSClose) {
      EndStarving(call, call.HandleIn("hDS"), false);
    }
  }

  void After(const Call& call) override {
    switch (call.Which()) {
      case Function::DSQueueBuffer:
      case Function::DSFlushQueue:
        if (!call.Failed()) {
          EndStarving(call, call.HandleIn("hDS"), true);
          deliveredAt_.erase(call.HandleIn("hB"));
        }
        break;
      case Function::DSRevokeBuffer:
        if (!call.Failed()) {
          deliveredAt_.erase(call.HandleIn("hBuffer"));
        }
        break;
      case Function::EventGetData:
        if (call.Context().isNewBufferEvent) {
          OnEvent(call, call.At(call.Context().handles[0]).parent);
        }
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
    deliveredAt_.clear();
  }

 private:
  struct Starving {
    Moment since;
    std::int64_t limit = kShortest;
    std::uint64_t timeouts = 0;
    std::optional<LogPlace> firstTimeout;
    std::vector<HandleId> holders;
  };

  void OnEvent(const Call& call, HandleId dataStream) {
    if (call.Failed()) {
      const auto starving = starving_.find(dataStream);
      if (call.Result() == GC_ERR_TIMEOUT && starving != starving_.end()) {
        ++starving->second.timeouts;
        starving->second.firstTimeout = starving->second.firstTimeout.value_or(call.Place());
      }
      return;
    }
    if (call.Context().delivered == kNoHandle) {
      return;
    }
    ForgetClosed(deliveredAt_, call.All(), 10'000);
    deliveredAt_[call.Context().delivered] = call.Place();
    const Stream* stream = call.Model().FindStream(dataStream);
    if (stream != nullptr && stream->IsRunning() && call.HasTime() && stream->CurrentDepth() == 0 &&
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
    const Stream* stream = call.StreamIn();
    if (stream == nullptr || stream->Id() != lastStarvedStream_) {
      return;
    }
    const std::uint64_t missing = stream->MissingFrameIds().value_or(0) - missingBefore_;
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
      lastStarved_ = finding;
      lastStarvedStream_ = dataStream;
      missingBefore_ = call.Model().FindStream(dataStream)->MissingFrameIds().value_or(0);
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

  Findings& findings_;
  std::map<HandleId, Starving> starving_;
  std::unordered_map<HandleId, LogPlace> deliveredAt_;
  Finding* lastStarved_ = nullptr;
  HandleId lastStarvedStream_ = kNoHandle;
  std::uint64_t missingBefore_ = 0;
  std::size_t framesToLookAt_ = 0;
};

}  // namespace

FamilyEntry StarveFamily() {
  return {kStarveRules, MakeFamily<Starvation>};
}

}  // namespace vextrel::program
