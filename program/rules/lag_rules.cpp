// SPDX-License-Identifier: MIT
// T-LAG: frames reach the application soon after the camera took them.
#include <fmt/format.h>

#include <algorithm>
#include <map>

#include "rules/family.h"

namespace vextrel::program {
namespace {

constexpr Rule kLag{
    .id = "T-LAG",
    .severity = Severity::Warning,
    .sentence = "Frames reach the application later and later",
    .explanation =
        "By the frames' own time stamps, ten frames or more in a row were delivered 200 ms and "
        "three frames later than the earliest ones of the last seconds. They wait in the buffers "
        "since the application takes them slower than the camera does.",
    .remedy =
        "Do less with each frame, or throw the old ones away with DSFlushQueue and "
        "ACQ_QUEUE_OUTPUT_DISCARD when only the newest one counts. Fewer buffers make the delay "
        "shorter, and lose frames instead.",
    .section = "5.3.1",
    .harmless = "When frames are recorded, late ones are as good.",
    .needs =
        "times, and the application's asking for BUFFER_INFO_TIMESTAMP_NS, or for "
        "BUFFER_INFO_TIMESTAMP and DEVICE_INFO_TIMESTAMP_FREQUENCY"};

constexpr const Rule* kLagRules[] = {&kLag};

constexpr std::int64_t kLateAtLeast = 200'000;  // us
constexpr double kLateIntervals = 3;
constexpr std::uint64_t kLateInARow = 10;
// The clocks of a camera and a computer run apart: earlier ones don't tell what is late.
constexpr std::int64_t kWindow = 10'000'000;  // us
constexpr double kHalfOfTicks = 2147483648.0;

class Lags : public RuleFamily {
 public:
  Lags(Findings& findings, const LogKnowledge& /*log*/) : findings_(findings) {}

  [[nodiscard]] Interest Wants(Function function) const override {
    switch (function) {
      case Function::DevGetInfo:
      case Function::DSStartAcquisition:
      case Function::DSGetBufferInfo:
        return Interest::All;
      default:
        return Interest::None;
    }
  }

  void After(const Call& call) override {
    if (call.Failed() || !call.HasTime()) {
      return;
    }
    switch (call.Which()) {
      case Function::DevGetInfo:
        if (call.NameIn("iID") == "DEVICE_INFO_TIMESTAMP_FREQUENCY" &&
            call.Value("Buffer").value_or(0) != 0) {
          frequencies_[call.HandleIn("hDev")] = static_cast<double>(*call.Value("Buffer"));
        }
        break;
      case Function::DSStartAcquisition:
        streams_.erase(call.HandleIn("hDS"));
        break;
      default:
        OnInfo(call);
    }
  }

  void EndSession(const SessionModel& /*model*/, const Moment& /*moment*/,
                  bool /*isClosed*/) override {
    streams_.clear();
    frequencies_.clear();
  }

 private:
  struct Stamps {
    bool areNanoseconds = false;
    bool hasLast = false;
    std::uint32_t last = 0;     // the stamp as the log shows it: its low 32 bits
    std::int64_t lastHost = 0;  // when that frame was delivered, in us
    double device = 0;          // us since the first one
    std::int64_t windowSince = 0;
    double earliest = 0;  // delivery minus stamp: the smallest one in this window,
    double before = 0;    // and in the one before
    std::uint64_t row = 0;
    Moment first;
    double longest = 0;
  };

  void OnInfo(const Call& call) {
    const std::string_view command = call.NameIn("iCommand");
    const bool isNanoseconds = command == "BUFFER_INFO_TIMESTAMP_NS";
    if (!isNanoseconds && command != "BUFFER_INFO_TIMESTAMP") {
      return;
    }
    const Stream* stream = call.StreamIn();
    const HandleId buffer = call.HandleIn("hBuffer");
    const std::optional<std::uint64_t> value = call.Value("Buffer");
    if (stream == nullptr || !stream->IsRunning() || buffer == kNoHandle || !value.has_value() ||
        call.At(buffer).state != BufferState::Held) {
      return;
    }
    const auto frequency = frequencies_.find(call.At(stream->Id()).parent);
    Stamps& stamps = streams_[stream->Id()];
    if (isNanoseconds && !stamps.areNanoseconds) {
      stamps = {};
      stamps.areNanoseconds = true;
    }
    if (isNanoseconds != stamps.areNanoseconds ||
        (!isNanoseconds && frequency == frequencies_.end())) {
      return;
    }
    const double ticks = isNanoseconds ? 1000.0 : frequency->second / 1e6;  // in a us
    Judge(call, *stream, stamps, static_cast<std::uint32_t>(*value), ticks);
  }

  void Judge(const Call& call, const Stream& stream, Stamps& stamps, std::uint32_t value,
             double ticks) {
    const std::int64_t host = call.At(call.HandleIn("hBuffer")).deliveredAt;
    if (stamps.hasLast && value == stamps.last) {
      return;
    }
    const std::uint32_t passed = value - std::exchange(stamps.last, value);
    const std::int64_t hostPassed = host - std::exchange(stamps.lastHost, host);
    // Of a longer time, or of a clock that was set back, the low bits tell nothing.
    const bool isClear = std::exchange(stamps.hasLast, true) &&
                         static_cast<double>(passed) < kHalfOfTicks &&
                         static_cast<double>(hostPassed) * ticks < kHalfOfTicks;
    stamps.device += isClear ? static_cast<double>(passed) / ticks : 0;
    const double apart = static_cast<double>(host) - stamps.device;
    if (!isClear) {
      stamps.windowSince = host;
      stamps.earliest = stamps.before = apart;
      stamps.row = 0;
      return;
    }
    if (host - stamps.windowSince >= kWindow) {
      stamps.windowSince = host;
      stamps.before = std::exchange(stamps.earliest, apart);
    }
    stamps.earliest = std::min(stamps.earliest, apart);
    const double late = apart - std::min(stamps.earliest, stamps.before);
    const double usual = stream.Intervals().Count() == 0 ? 0 : stream.Intervals().Mean();
    const double limit = std::max({static_cast<double>(kLateAtLeast), kLateIntervals * usual,
                                   2.0 * static_cast<double>(call.Model().Resolution())});
    if (late < limit) {
      stamps.row = 0;
      return;
    }
    if (stamps.row++ == 0) {
      stamps.first = call.Moment();
    }
    if (stamps.row >= kLateInARow) {
      stamps.longest = std::max(stamps.longest, late);
      Report(call, stream, stamps);
    }
  }

  void Report(const Call& call, const Stream& stream, const Stamps& stamps) {
    if (stamps.row == kLateInARow) {
      Finding* added = findings_.Add(kLag, Severity::Warning, KeyOf(stream.Id()), stamps.first);
      if (added != nullptr) {
        added->handles.push_back(call.All().Name(stream.Id()));
      }
    }
    if (Finding* finding = findings_.Find(kLag, KeyOf(stream.Id()))) {
      finding->message = fmt::format(
          "Frames of {} reach the application up to {} ms later than the earliest ones, by their "
          "own time stamps: likely it takes them slower than the camera does.",
          call.Named(stream.Id()), static_cast<std::int64_t>(stamps.longest) / 1000);
    }
  }

  Findings& findings_;
  std::map<HandleId, Stamps> streams_;
  std::map<HandleId, double> frequencies_;  // of a device, in Hz
};

}  // namespace

FamilyEntry LagFamily() {
  return {kLagRules, MakeFamily<Lags>};
}

}  // namespace vextrel::program
