// SPDX-License-Identifier: MIT
// BUF-INCOMPLETE: frames arrive whole.
#include <fmt/format.h>

#include <algorithm>
#include <map>

#include "reading/entries.h"
#include "rules/family.h"

namespace vextrel::program {
namespace {

constexpr Rule kIncomplete{
    .id = "BUF-INCOMPLETE",
    .severity = Severity::Warning,
    .sentence = "Frames were delivered incomplete",
    .explanation =
        "BUFFER_INFO_IS_INCOMPLETE was 1 for a delivered frame, or its "
        "BUFFER_INFO_SIZE_FILLED is less than its BUFFER_INFO_DATA_SIZE: data was lost on "
        "the way, mostly packets in a network. Nothing is said of streams whose "
        "application doesn't ask.",
    .remedy =
        "Look at the packet size, the packet delay, the network card's receive buffers and "
        "the bandwidth of all cameras together.",
    .section = "6.4.4.4",
    .harmless = "",
    .needs = "the application's asking for BUFFER_INFO_IS_INCOMPLETE, or for both sizes"};

constexpr const Rule* kIncompleteRules[] = {&kIncomplete};

class IncompleteFrames : public RuleFamily {
 public:
  IncompleteFrames(Findings& findings, const LogKnowledge& /*log*/) : findings_(findings) {}

  [[nodiscard]] Interest Wants(Function function) const override {
    switch (function) {
      case Function::DSGetBufferInfo:
      case Function::DSGetBufferInfoStacked:
      case Function::EventGetData:
        return Interest::All;
      default:
        return Interest::None;
    }
  }

  void After(const Call& call) override {
    if (call.Failed()) {
      return;
    }
    if (call.Which() == Function::EventGetData) {
      ForgetClosed(frames_, call.All(), kMostFrames);
      if (call.Context().delivered != kNoHandle && frames_.size() <= kMostFrames) {
        frames_[call.Context().delivered] = {};
      }
      return;
    }
    const HandleId id = call.HandleIn("hDS");
    const auto frame = frames_.find(call.HandleIn("hBuffer"));
    if (id == kNoHandle || frame == frames_.end() ||
        call.At(frame->first).state != BufferState::Held) {
      return;
    }
    if (call.Which() == Function::DSGetBufferInfo) {
      if (!IsAboutSizes(call.Text("iCommand"))) {
        return;
      }
      OnInfo(call, id, frame->second, call.NameIn("iCommand"), call.Value("Buffer"));
    } else if (ReadEntries(call.Text("Infos"), entries_)) {
      for (const Entry& entry : entries_.shown) {
        OnInfo(call, id, frame->second, entry.Find("iCmd"), DecimalIn(entry.Find("Buffer")));
      }
    }
  }

  void EndSession(const SessionModel& /*model*/, const Moment& /*moment*/,
                  bool /*isClosed*/) override {
    frames_.clear();
    streams_.clear();
  }

 private:
  // What the application knows of a frame that it holds.
  struct HeldFrame {
    std::optional<std::uint64_t> filled;
    std::optional<std::uint64_t> size;
    bool isComplete = false;
    bool isIncomplete = false;
  };
  struct Row {
    std::uint64_t now = 0;
    std::uint64_t longest = 0;
  };

  static constexpr std::size_t kMostFrames = 20'000;

  // A newer command has a number in the log.
  static bool IsAboutSizes(std::string_view command) {
    return command.starts_with('(') || command == "BUFFER_INFO_IS_INCOMPLETE" ||
           command == "BUFFER_INFO_SIZE_FILLED";
  }

  // There's no value if only its size was asked for, or if it's refused.
  void OnInfo(const Call& call, HandleId id, HeldFrame& frame, std::string_view command,
              const std::optional<std::uint64_t>& value) {
    if (!value.has_value()) {
      return;
    }
    if (command == "BUFFER_INFO_IS_INCOMPLETE") {
      Judge(call, id, frame, *value != 0);
    } else if (command == "BUFFER_INFO_SIZE_FILLED" || command == "BUFFER_INFO_DATA_SIZE") {
      (command == "BUFFER_INFO_SIZE_FILLED" ? frame.filled : frame.size) = value;
      if (frame.filled.has_value() && frame.size.has_value() && *frame.filled < *frame.size) {
        Judge(call, id, frame, true);
      }
    }
  }

  // Each frame counts once, and what says that it's incomplete counts more.
  void Judge(const Call& call, HandleId id, HeldFrame& frame, bool isIncomplete) {
    Row& row = streams_[id];
    if (!isIncomplete) {
      if (!frame.isIncomplete && !std::exchange(frame.isComplete, true)) {
        row.now = 0;
      }
      return;
    }
    if (std::exchange(frame.isIncomplete, true)) {
      return;
    }
    row.longest = std::max(row.longest, ++row.now);
    if (Finding* finding =
            findings_.AddOrUpdate(kIncomplete, Severity::Warning, KeyOf(id), call.Moment())) {
      finding->handles = {call.All().Name(id)};
      if (finding->count == 1 && frame.filled.has_value() && frame.size.has_value()) {
        Relate(*finding, call.Place(),
               fmt::format("it has {} of {} bytes", *frame.filled, *frame.size));
      }
      finding->message =
          fmt::format("{} frame{} of {} came incomplete{}: likely data is lost on the way.",
                      finding->count, finding->count == 1 ? "" : "s", call.Named(id),
                      row.longest == 1 ? "" : fmt::format(", up to {} in a row", row.longest));
    }
  }

  Findings& findings_;
  std::map<HandleId, HeldFrame> frames_;
  std::map<HandleId, Row> streams_;
  Entries entries_;  // of the call, kept for its memory
};

}  // namespace

FamilyEntry IncompleteFamily() {
  return {kIncompleteRules, MakeFamily<IncompleteFrames>};
}

}  // namespace vextrel::program
