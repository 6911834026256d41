// SPDX-License-Identifier: MIT
// T: how regular frames are. No more than warnings.
#include <fmt/format.h>

#include <algorithm>
#include <map>

#include "rules/family.h"

namespace vextrel::program {
namespace {

constexpr Rule kGap{
    .id = "T-GAP",
    .severity = Severity::Warning,
    .sentence = "Frames are missing",
    .explanation =
        "Ids of frames that were delivered one after the other have gaps, though the "
        "application didn't hold all buffers: the frames were likely lost on the way, or in the "
        "producer.",
    .remedy = "Look at the network or the bus, and whether the computer was busy at that time.",
    .section = "5.3.1",
    .harmless = "Ids of some cameras go up by more than one, or are shared by several streams.",
    .needs = "the application's asking for BUFFER_INFO_FRAMEID"};

constexpr Rule kStall{
    .id = "T-STALL",
    .severity = Severity::Warning,
    .sentence = "A frame came very late",
    .explanation =
        "Ten times as long passed as between two frames usually, and more than 200 ms, "
        "while the stream had buffers. The longest pause stands in the message.",
    .remedy =
        "Look at what the log shows right before: a slow call, an update of a list, a write "
        "to the device.",
    .section = "5.3.1",
    .harmless = "A camera with a trigger delivers when it's triggered.",
    .needs = "times"};

constexpr Rule kHold{
    .id = "T-HOLD",
    .severity = Severity::Warning,
    .sentence = "The application holds buffers longer than a frame takes",
    .explanation =
        "On average a buffer was held longer than the time between two frames: the "
        "application likely can't keep up, and lives on the buffers that it has in "
        "reserve.",
    .remedy =
        "Copy the frame and queue the buffer again at once, or process frames on several "
        "threads.",
    .section = "5.3.1",
    .harmless = "With many buffers and several threads this can be meant.",
    .needs = "times"};

constexpr Rule kSlow{
    .id = "T-SLOW",
    .severity = Severity::Warning,
    .sentence = "A call that should be fast took long",
    .explanation = "Queueing a buffer, stopping or closing took the producer 100 ms or more.",
    .remedy = "Don't call it where time is short; tell the producer's maker.",
    .section = "",
    .harmless = "Closing waits for the device.",
    .needs = "timing lines"};

constexpr Rule kCounters{
    .id = "T-COUNTERS",
    .severity = Severity::Warning,
    .sentence = "The producer's own counters tell of lost frames",
    .explanation =
        "STREAM_INFO_NUM_UNDERRUN isn't zero: frames came when the producer had no "
        "buffer to put them in. Or STREAM_INFO_NUM_DELIVERED is less than the number of "
        "frames that were delivered since the start.",
    .remedy = "Queue buffers sooner, or announce more.",
    .section = "6.4.4.1",
    .harmless = "Not every producer counts from each start.",
    .needs = "the application's asking for the counters"};

constexpr const Rule* kTimeRules[] = {&kGap, &kStall, &kHold, &kSlow, &kCounters};

constexpr std::int64_t kLate = 200'000;  // us
constexpr double kTimeManyIntervals = 10;
constexpr std::uint64_t kEnoughFrames = 10;
constexpr std::uint64_t kSlowest = 100'000'000;  // ns
constexpr std::uint64_t kRow = 3;                // time-outs that are another rule's

class Times : public RuleFamily {
 public:
  Times(Findings& findings, const LogKnowledge& log) : findings_(findings), log_(log) {}

  [[nodiscard]] Interest Wants(Function function) const override {
    switch (function) {
      case Function::EventGetData:
      case Function::DSGetBufferInfo:
      case Function::DSGetInfo:
      case Function::DSQueueBuffer:
      case Function::DSStartAcquisition:
      case Function::DSStopAcquisition:
      case Function::DSClose:
      case Function::DevClose:
      case Function::IFClose:
      case Function::TLClose:
        return Interest::All;
      default:
        return Interest::None;
    }
  }

  void Before(const Call& call) override {
    if (call.Which() == Function::DSGetBufferInfo) {
      const Stream* stream = call.StreamIn();
      missingBefore_ = stream == nullptr ? 0 : stream->MissingFrameIds().value_or(0);
      return;
    }
    if (call.Which() == Function::DSStopAcquisition && !call.Failed()) {
      CheckHold(call);
    }
    if (call.Which() != Function::EventGetData && call.Context().timing != nullptr &&
        call.Context().timing->nanoseconds >= kSlowest &&
        call.Which() != Function::DSStartAcquisition && call.Which() != Function::DSGetInfo) {
      ReportSlow(call);
    }
  }

  void After(const Call& call) override {
    switch (call.Which()) {
      case Function::EventGetData:
        if (call.Context().isNewBufferEvent) {
          OnEvent(call, call.At(call.Context().handles[0]).parent);
        }
        break;
      case Function::DSGetBufferInfo:
        if (!call.Failed()) {
          CheckGap(call);
        }
        break;
      case Function::DSGetInfo:
        if (!call.Failed()) {
          CheckCounters(call);
        }
        break;
      case Function::DSStartAcquisition:
        if (const Stream* stream = call.StreamIn(); stream != nullptr && !call.Failed()) {
          streams_[stream->Id()] = {};
          streams_[stream->Id()].framesAtStart = stream->Frames();
          streams_[stream->Id()].emptyAt = stream->Frames();
          streams_[stream->Id()].wasEmpty = stream->CurrentDepth() == 0;
        }
        break;
      default:
        break;
    }
  }

  void EndSession(const SessionModel& /*model*/, const Moment& /*moment*/,
                  bool /*isClosed*/) override {
    streams_.clear();
  }

 private:
  struct TimedStream {
    std::uint64_t framesAtStart = 0;
    std::optional<std::int64_t> lastFrame;
    std::uint64_t timeouts = 0;  // since then
    bool wasEmpty = false;       // the queue, at some time since the last frame
    std::uint64_t emptyAt = 0;   // the number of the frame
    std::int64_t longest = 0;
    std::uint64_t missing = 0;
  };

  void OnEvent(const Call& call, HandleId id) {
    const Stream* stream = call.Model().FindStream(id);
    if (stream == nullptr || !stream->IsRunning()) {
      return;
    }
    TimedStream& state = streams_[id];
    if (call.Failed()) {
      state.timeouts += call.Result() == GC_ERR_TIMEOUT ? 1 : 0;
      return;
    }
    const bool isEmpty = stream->CurrentDepth() == 0;
    if (state.lastFrame.has_value() && call.HasTime() && !state.wasEmpty && state.timeouts < kRow) {
      CheckStall(call, *stream, state);
    }
    state.lastFrame = call.Time();
    state.timeouts = 0;
    state.wasEmpty = isEmpty;
    state.emptyAt = isEmpty ? stream->Frames() : state.emptyAt;
  }

  void CheckStall(const Call& call, const Stream& stream, TimedStream& state) {
    const std::int64_t interval = call.Time() - *state.lastFrame;
    const std::uint64_t count = stream.Intervals().Count();
    if (interval < kLate || count <= kEnoughFrames) {
      return;
    }
    const double usual =
        (stream.Intervals().Mean() * static_cast<double>(count) - static_cast<double>(interval)) /
        static_cast<double>(count - 1);
    if (static_cast<double>(interval) < kTimeManyIntervals * usual) {
      return;
    }
    state.longest = std::max(state.longest, interval);
    if (Finding* finding =
            findings_.AddOrUpdate(kStall, Severity::Warning, KeyOf(stream.Id()), call.Moment())) {
      finding->handles = {call.All().Name(stream.Id())};
      finding->message = fmt::format(
          "A frame of {} came {} ms after the one before; {} ms are usual.",
          call.Named(stream.Id()), state.longest / 1000, static_cast<std::int64_t>(usual) / 1000);
    }
  }

  void CheckGap(const Call& call) {
    const Stream* stream = call.StreamIn();
    if (stream == nullptr) {
      return;
    }
    const std::uint64_t missing = stream->MissingFrameIds().value_or(0) - missingBefore_;
    if (missing == 0) {
      return;
    }
    TimedStream& state = streams_[stream->Id()];
    // Behind an empty queue that's no wonder, and another rule's.
    if (state.emptyAt != 0 && stream->Frames() - state.emptyAt <= stream->Announced()) {
      return;
    }
    state.missing += missing;
    if (Finding* finding =
            findings_.AddOrUpdate(kGap, Severity::Warning, KeyOf(stream->Id()), call.Moment())) {
      finding->handles = {call.All().Name(stream->Id())};
      finding->message = fmt::format(
          "{} frame ids of {} are missing, though the application didn't hold all buffers: "
          "likely the frames were lost on the way.",
          state.missing, call.Named(stream->Id()));
    }
  }

  void CheckHold(const Call& call) {
    const Stream* stream = call.StreamIn();
    if (stream == nullptr || stream->Holds().Count() < kEnoughFrames ||
        stream->Intervals().Count() < kEnoughFrames || !call.HasTime()) {
      return;
    }
    const double hold = stream->Holds().Mean();
    const double interval = stream->Intervals().Mean();
    if (hold <= interval || hold <= 2.0 * static_cast<double>(call.Model().Resolution())) {
      return;
    }
    if (Finding* finding =
            findings_.Add(kHold, Severity::Warning, KeyOf(stream->Id()), call.Moment())) {
      finding->message = fmt::format(
          "Buffers of {} are held for {:.1f} ms on average, and frames come each {:.1f} ms: it "
          "needs {} buffers or more.",
          call.Named(stream->Id()), hold / 1000, interval / 1000,
          static_cast<std::int64_t>(hold / interval) + 2);
      finding->handles.push_back(call.All().Name(stream->Id()));
    }
  }

  void ReportSlow(const Call& call) {
    // A wait that kept it says more.
    if (findings_.Count() != log_.foundBeforeCall &&
        findings_.Last()->rule->id == "EVT-CLOSE-WAIT") {
      return;
    }
    if (Finding* finding =
            findings_.Add(kSlow, Severity::Warning, KeyOf(call.Context().handles[0], call.Which()),
                          call.Moment())) {
      finding->message = fmt::format("{} took the producer {} ms.", call.Name(),
                                     call.Context().timing->nanoseconds / 1'000'000);
      if (call.Context().handles[0] != kNoHandle) {
        finding->handles.push_back(call.All().Name(call.Context().handles[0]));
      }
      Relate(*finding, call.Context().timing->entered.place, "it enters the producer");
    }
  }

  void CheckCounters(const Call& call) {
    const std::string_view command = call.Text("iCmd");
    const Stream* stream = call.StreamIn();
    const std::optional<std::uint64_t> value = call.Value("Buffer");
    if (stream == nullptr || !value.has_value()) {
      return;
    }
    const auto known = streams_.find(stream->Id());
    std::string what;
    if (command == "STREAM_INFO_NUM_UNDERRUN" && *value != 0) {
      what = fmt::format("{} lost {} frames for want of a buffer, as its producer says.",
                         call.Named(stream->Id()), *value);
    } else if (command == "STREAM_INFO_NUM_DELIVERED" && known != streams_.end() &&
               *value < stream->Frames() - known->second.framesAtStart) {
      what = fmt::format("{} delivered {} frames as its producer says, and {} as the log shows.",
                         call.Named(stream->Id()), *value,
                         stream->Frames() - known->second.framesAtStart);
    } else {
      return;
    }
    if (Finding* finding = findings_.Add(kCounters, Severity::Warning,
                                         KeyOf(stream->Id(), command.size()), call.Moment())) {
      finding->message = what;
      finding->handles.push_back(call.All().Name(stream->Id()));
    }
  }

  Findings& findings_;
  const LogKnowledge& log_;
  std::map<HandleId, TimedStream> streams_;
  std::uint64_t missingBefore_ = 0;
};

}  // namespace

FamilyEntry TimeFamily() {
  return {kTimeRules, MakeFamily<Times>};
}

}  // namespace vextrel::program
