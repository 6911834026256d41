// SPDX-License-Identifier: MIT
// EVT, the waits: how an application waits for its frames.
#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <utility>

#include "rules/family.h"

namespace vextrel::program {
namespace {

constexpr Rule kWaitPoll{
    .id = "EVT-POLL",
    .severity = Severity::Warning,
    .sentence = "An application polls for events",
    .explanation =
        "A thread calls EventGetData with a time-out of 5 ms or less, 200 times a second "
        "or more, for a second or longer. That takes processor time, and the log grows "
        "by gigabytes.",
    .remedy = "Wait with a time-out of some hundred milliseconds. EventKill ends a wait early.",
    .section = "6.3.7.2",
    .harmless = "",
    .needs = "times"};

constexpr Rule kStorm{
    .id = "EVT-STORM",
    .severity = Severity::Warning,
    .sentence = "A running stream delivers nothing",
    .explanation =
        "Three or more waits for a frame timed out in a row, for half a second or longer "
        "and for ten times as long as a frame usually takes; or fewer, for a second or longer, "
        "and no frame came until the stream was stopped. The application doesn't hold all "
        "buffers, so it's likely the camera, its trigger, or the way from it.",
    .remedy =
        "Look whether the camera was started by AcquisitionStart, whether it waits for a "
        "trigger, and whether its packets arrive: a firewall, another network card, a packet "
        "size that's too large.",
    .section = "",
    .harmless =
        "A camera with a trigger delivers when it's triggered. An application that has stopped "
        "the camera may wait for what is left.",
    .needs = "times"};

constexpr Rule kWaitShort{
    .id = "EVT-SHORT",
    .severity = Severity::Info,
    .sentence = "Waits are shorter than the frames take",
    .explanation =
        "Waits for a frame time out again and again, and the frame comes with a later "
        "one: the time-out is below the usual interval of frames.",
    .remedy =
        "Wait at least twice as long as a frame takes, the exposure included, or take a "
        "time-out as what it is: no frame yet.",
    .section = "",
    .harmless = "An application may look after other things between its waits.",
    .needs = "times"};

constexpr const Rule* kWaitRules[] = {&kWaitPoll, &kStorm, &kWaitShort};

constexpr std::int64_t kWaitSecond = 1'000'000;
constexpr std::uint64_t kShortTimeout = 5;  // ms
constexpr std::uint64_t kPollsPerSecond = 200;
constexpr std::int64_t kLongSilence = 500'000;    // us
constexpr std::int64_t kLastSilence = 1'000'000;  // us
constexpr std::uint64_t kFewestTimeouts = 3;
constexpr double kWaitManyIntervals = 10;

class Waits : public RuleFamily {
 public:
  Waits(Findings& findings, const LogKnowledge& /*log*/) : findings_(findings) {
    const std::size_t shape = FindCallShape("EventGetData");
    timeoutPlace_ = CallShapes()[shape].Find("iTimeout");
  }

  [[nodiscard]] Interest Wants(Function function) const override {
    switch (function) {
      case Function::EventGetData:
      case Function::DSStartAcquisition:
      case Function::DSStopAcquisition:
      case Function::DSClose:
      case Function::GCReadPort:
      case Function::GCWritePort:
      case Function::GCReadPortStacked:
      case Function::GCWritePortStacked:
        return Interest::All;
      default:
        return Interest::None;
    }
  }

  void Before(const Call& call) override {
    switch (call.Which()) {
      case Function::DSStopAcquisition:
      case Function::DSClose:
        if (const HandleId id = call.HandleIn("hDS"); !call.Failed() && id != kNoHandle) {
          EndSilence(call.Model(), id, true);
          JudgeTimeouts(call.Model(), id);
          if (call.Which() == Function::DSClose) {
            streams_.erase(id);
          }
        }
        break;
      case Function::GCReadPort:
      case Function::GCWritePort:
      case Function::GCReadPortStacked:
      case Function::GCWritePortStacked:
        Access(call);
        break;
      default:
        break;
    }
  }

  void After(const Call& call) override {
    const HandleId id = call.Context().handles[0];
    if (id == kNoHandle) {
      return;
    }
    if (call.Which() == Function::DSStartAcquisition && !call.Failed()) {
      streams_[id] = {};
      streams_[id].framesAtStart = FramesOf(call.Model(), id);
      streams_[id].framesAtWrite = streams_[id].framesAtStart;
    } else if (call.Which() == Function::EventGetData) {
      if (call.Result() == GC_ERR_TIMEOUT && call.HasTime()) {
        Poll(call, id);
      }
      if (call.Context().isNewBufferEvent) {
        Wait(call, call.At(id).parent);
      }
    }
  }

  void EndSession(const SessionModel& model, const Moment& /*moment*/, bool /*isClosed*/) override {
    for (auto& [id, stream] : streams_) {
      EndSilence(model, id, true);
      JudgeTimeouts(model, id);
    }
    streams_.clear();
    polls_.clear();
    reach_.clear();
  }

 private:
  struct Poller {
    std::int64_t since = 0;
    std::uint64_t count = 0;
    std::uint64_t longest = 0;  // the time-out, in ms
    Moment first;
  };
  struct WaitingStream {
    std::uint64_t framesAtStart = 0;
    std::uint64_t framesAtWrite = 0;  // when the device was last told anything
    std::uint64_t row = 0;            // time-outs in a row
    Moment first;
    std::int64_t firstWaited = 0;  // what the first one waited before its line
    std::int64_t last = 0;
    bool isStarved = false;
    bool isAnswered = false;     // the device's port worked in the meantime
    std::uint64_t timeouts = 0;  // that a frame followed
    std::uint64_t longest = 0;   // in ms
    Moment firstTimeout;
  };

  struct Reach {
    bool wasGood = false;
    bool isLost = false;  // since the last good access
  };

  static std::uint64_t FramesOf(const SessionModel& model, HandleId id) {
    const Stream* stream = model.FindStream(id);
    return stream == nullptr ? 0 : stream->Frames();
  }

  void Access(const Call& call) {
    const HandleId device = call.DeviceOfPort();
    if (device == kNoHandle) {
      return;
    }
    ForgetClosed(reach_, call.All(), 1000);
    Reach& reach = reach_[device];
    reach.wasGood = reach.wasGood || !call.Failed();
    reach.isLost = reach.wasGood && call.Failed() && (reach.isLost || IsLoss(call.Result()));
    const bool isWrite =
        call.Which() == Function::GCWritePort || call.Which() == Function::GCWritePortStacked;
    for (auto& [id, state] : streams_) {
      if (call.At(id).parent != device) {
        continue;
      }
      if (state.row == 0) {
        state.framesAtWrite = isWrite ? FramesOf(call.Model(), id) : state.framesAtWrite;
      } else {
        state.isAnswered = state.isAnswered || !call.Failed();
      }
    }
  }

  void Poll(const Call& call, HandleId id) {
    const std::uint64_t timeout = call.Message().values[timeoutPlace_].number;
    if (timeout > kShortTimeout) {
      return;
    }
    if (polls_.size() > 1000) {
      polls_.clear();
    }
    Poller& poller = polls_[KeyOf(id, call.Thread())];
    const std::int64_t passed = call.Time() - poller.since;
    if (poller.count != 0 && passed >= 0 && passed < kWaitSecond) {
      ++poller.count;
      poller.longest = std::max(poller.longest, timeout);
      return;
    }
    if (passed < 2 * kWaitSecond && poller.count >= kPollsPerSecond) {
      Finding* finding =
          findings_.Add(kWaitPoll, Severity::Warning, KeyOf(id, call.Thread()), poller.first);
      if (finding != nullptr) {
        finding->message =
            fmt::format("{} is polled {} times in a second with a time-out of {} ms.",
                        call.Named(id), poller.count, poller.longest);
        finding->handles.push_back(call.All().Name(id));
      }
    }
    poller = {call.Time(), 1, timeout, call.Moment()};
  }

  void Wait(const Call& call, HandleId id) {
    const Stream* stream = call.Model().FindStream(id);
    if (stream == nullptr || !stream->IsRunning()) {
      return;
    }
    WaitingStream& state = streams_[id];
    if (!call.Failed()) {
      state.timeouts += state.row;
      EndSilence(call.Model(), id, false);
      return;
    }
    if (call.Result() != GC_ERR_TIMEOUT) {
      return;
    }
    const std::uint64_t timeout = call.Message().values[timeoutPlace_].number;
    if (state.row++ == 0) {
      state.first = call.Moment();
      state.firstWaited = static_cast<std::int64_t>(timeout) * 1000;
      state.isStarved = false;
      state.isAnswered = false;
    }
    if (timeout > kShortTimeout && state.longest == 0) {
      state.firstTimeout = call.Moment();
    }
    state.longest = std::max(state.longest, timeout);
    state.last = call.Time();
    // Without a queue there's nothing to deliver into.
    state.isStarved = state.isStarved || stream->CurrentDepth() == 0;
  }

  // `isLast`: it wasn't a frame that ended it.
  void EndSilence(const SessionModel& model, HandleId id, bool isLast) {
    const auto known = streams_.find(id);
    if (known == streams_.end() || known->second.row == 0) {
      return;
    }
    WaitingStream& state = known->second;
    const std::uint64_t row = std::exchange(state.row, 0);
    const Stream* stream = model.FindStream(id);
    const std::int64_t lasted =
        state.last - state.first.time.value_or(state.last) + state.firstWaited;
    const double usual =
        stream != nullptr && stream->Intervals().Count() > 2 ? Typical(*stream) : 0;
    const Handles& handles = model.AllHandles();
    const std::uint64_t frames = FramesOf(model, id);
    const bool wasSilent = frames == state.framesAtStart;
    const bool mayBeStopped = !wasSilent && state.framesAtWrite == frames;
    const bool isLong = row >= kFewestTimeouts ? lasted >= kLongSilence
                                               : isLast && !mayBeStopped && lasted >= kLastSilence;
    // Lost devices are another rule's.
    const auto reach = reach_.find(handles.At(id).parent);
    const bool isLost = reach != reach_.end() && reach->second.isLost && !state.isAnswered &&
                        lasted >= kLastSilence;
    if (!isLong || state.isStarved || isLost || !state.first.time.has_value() ||
        static_cast<double>(lasted) < kWaitManyIntervals * usual) {
      return;
    }
    Finding* finding = findings_.Add(kStorm, Severity::Warning, KeyOf(id), state.first);
    if (finding == nullptr) {
      return;
    }
    finding->message = fmt::format(
        "{} is acquiring, but {} {} ms{}", handles.FullName(id),
        row == 1 ? "a wait for a frame times out after"
                 : fmt::format("{} waits for a frame time out in a row, for", row),
        lasted / 1000,
        wasSilent ? ", and there was no frame since the start: likely the camera wasn't started, "
                    "waits for a trigger, or its data doesn't arrive."
                  : ": likely the camera stopped, or its data doesn't arrive any more.");
    finding->handles.push_back(handles.Name(id));
    if (stream != nullptr) {
      Relate(*finding, stream->StartedAt(), "DSStartAcquisition");
    }
  }

  // The mean without the few longest: a pause must not make itself usual.
  static double Typical(const Stream& stream) {
    return static_cast<double>(Quantile(stream.Intervals().Sorted(), 50));
  }

  void JudgeTimeouts(const SessionModel& model, HandleId id) {
    const auto known = streams_.find(id);
    const Stream* stream = model.FindStream(id);
    if (known == streams_.end() || stream == nullptr) {
      return;
    }
    WaitingStream& state = known->second;
    const std::uint64_t frames = stream->Frames() - state.framesAtStart;
    const std::uint64_t timeouts = std::exchange(state.timeouts, 0);
    if (timeouts < kFewestTimeouts || timeouts * 2 < frames || state.longest <= kShortTimeout ||
        stream->Intervals().Count() < 2) {
      return;
    }
    const double usual = Typical(*stream);
    if (static_cast<double>(state.longest) * 1000 >= usual) {
      return;
    }
    if (Finding* finding =
            findings_.Add(kWaitShort, Severity::Info, KeyOf(id), state.firstTimeout)) {
      finding->count = timeouts;
      finding->message = fmt::format(
          "Waits for a frame of {} end after {} ms, and a frame takes {} ms usually.",
          model.AllHandles().FullName(id), state.longest, static_cast<std::int64_t>(usual) / 1000);
      finding->handles.push_back(model.AllHandles().Name(id));
    }
  }

  Findings& findings_;
  std::size_t timeoutPlace_;
  std::map<std::uint64_t, Poller> polls_;
  std::map<HandleId, WaitingStream> streams_;
  std::map<HandleId, Reach> reach_;  // of devices
};

}  // namespace

FamilyEntry WaitFamily() {
  return {kWaitRules, MakeFamily<Waits>};
}

}  // namespace vextrel::program
