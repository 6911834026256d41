// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>

#include "model/distribution.h"
#include "reading/value_reading.h"
#include "views/call_text.h"
#include "views/findings_view.h"
#include "views/report.h"
#include "views/safe_text.h"
#include "views/time_text.h"

namespace vextrel::program {
namespace {

// What fits on one screen beside the rest.
constexpr std::size_t kFailures = 5;
constexpr std::size_t kFunctions = 8;
constexpr std::size_t kLeftOpen = 8;
constexpr std::size_t kSessions = 5;
constexpr std::size_t kDevices = 5;
constexpr std::size_t kStreams = 5;
constexpr std::size_t kNeverReturned = 5;
constexpr std::size_t kMostReportText = 100;

class TextReport {
 public:
  TextReport(const ReportedLog& log, const SessionModel& model, const ReportOptions& options,
             std::string& out)
      : log_(log), model_(model), options_(options), out_(out) {}

  void Write() {
    WriteHead();
    WriteNeverReturned();
    WriteFailures();
    WriteFunctions();
    for (std::size_t i = 0; i < model_.Streams().size(); ++i) {
      if (i == kStreams && !options_.handles) {
        Add("\n... {} more streams (--handles)\n", model_.Streams().size() - i);
        break;
      }
      WriteStream(model_.Streams()[i]);
    }
    if (options_.slowest) {
      WriteSlowest();
    }
    WriteLeftOpen();
    if (options_.handles) {
      WriteHandles();
    }
  }

 private:
  template <typename... Values>
  void Add(fmt::format_string<Values...> format, Values&&... values) {
    fmt::format_to(std::back_inserter(out_), format, std::forward<Values>(values)...);
  }

  [[nodiscard]] std::string PlaceText(const LogPlace& place) const {
    return log_.files.size() == 1 ? fmt::format("line {}", place.line)
                                  : fmt::format("{}:{}", Safe(log_.files[place.file]), place.line);
  }

  [[nodiscard]] static std::string Safe(std::string_view text) {
    std::string safe;
    AppendSafe(safe, text, kMostReportText);
    return safe;
  }

  [[nodiscard]] static std::string NameOf(GC_ERROR result) {
    std::string storage;
    return std::string(ResultName(result, storage));
  }

  void WriteHead() {
    Add("{}{}: {} calls on {} lines, {:.1f} MB\n", Safe(log_.files.back()),
        log_.files.size() == 1 ? "" : fmt::format(" and {} before it", log_.files.size() - 1),
        model_.Counts().Calls(), log_.lines, static_cast<double>(log_.bytes) / 1e6);
    if (model_.FirstTime().has_value()) {
      Add("  time        {} to {}, {:.3f} s; resolution {} ms\n",
          TimeText(*model_.FirstTime(), model_.Time(), model_.Resolution()),
          TimeText(*model_.LastTime(), model_.Time(), model_.Resolution()),
          static_cast<double>(*model_.LastTime() - *model_.FirstTime()) / 1e6,
          model_.Resolution() / 1000);
    } else {
      Add("  time        not in this layout\n");
    }
    for (std::size_t i = 0; i < model_.Sessions().size(); ++i) {
      if (i == kSessions && !options_.handles) {
        Add("  ... {} more sessions (--handles)\n", model_.Sessions().size() - i);
        break;
      }
      const Session& session = model_.Sessions()[i];
      Add("  session {:<4}{}", i + 1, PlaceText(session.begin));
      if (!session.producer.empty()) {
        Add(", producer '{}'", Safe(session.producer));
      }
      if (!session.producerVersion.empty() && session.producerVersion != "0.0.0.0") {
        Add(", version {}", Safe(session.producerVersion));
      }
      Add("{}\n", session.wasClosed ? "" : ", GCCloseLib not seen");
    }
    std::size_t devices = 0;
    for (HandleId id = 1; id <= model_.AllHandles().Last(); ++id) {
      const Handle& handle = model_.AllHandles().At(id);
      if (handle.kind == HandleKind::Device && ++devices <= kDevices) {
        Add("  device      {}{}\n", Safe(model_.AllHandles().FullName(id)),
            handle.openedAt.has_value() ? ", opened at " + PlaceText(*handle.openedAt) : "");
      }
    }
    if (devices > kDevices) {
      Add("  ... {} more devices (--handles)\n", devices - kDevices);
    }
    if (model_.Timings().Any()) {
      Add("  timing      durations in the target, resolution 1 us\n");
    }
    Add("  reports     {} of errors and misuse{}\n", model_.Reports(),
        model_.Reports() > 0 ? " (see 'vextrel show --reports')" : "");
    if (model_.NotExported() > 0) {
      Add("  lacking     {} functions that the producer does not export\n", model_.NotExported());
    }
    if (model_.OtherLines() > 0) {
      Add("  other       {} lines of other programs or categories\n", model_.OtherLines());
    }
    if (model_.Unreadable() > 0) {
      Add("  unreadable  {} records (they stand behind a '?' in 'vextrel show')\n",
          model_.Unreadable());
    }
  }

  void WriteNeverReturned() {
    const CallTimings& timings = model_.Timings();
    if (timings.NeverReturnedCount() == 0) {
      return;
    }
    Add("\nEntered the producer and never returned: {}\n", timings.NeverReturnedCount());
    std::size_t shown = 0;
    for (const EnteredCall& call : timings.NeverReturned()) {
      if (shown++ == kNeverReturned) {
        Add("  ... {} more (see the end of 'vextrel show')\n",
            timings.NeverReturnedCount() - kNeverReturned);
        break;
      }
      std::string text;
      AppendEntered(text, call, model_.AllHandles());
      Add("  {}, entered at {}{}{}\n", text, PlaceText(call.place),
          call.thread == 0 ? "" : fmt::format(" by T{}", call.thread),
          call.time.has_value() ? ", " + TimeText(*call.time, model_.Time(), model_.Resolution())
                                : "");
    }
  }

  // ", closed with DS1 at line 30" of a handle that has no closing of its own.
  [[nodiscard]] std::string ClosedWithText(const Handle& handle) const {
    if (handle.closedWith == kNoHandle) {
      return "";
    }
    const std::optional<LogPlace>& place = model_.AllHandles().At(handle.closedWith).closedAt;
    return ", closed with " + model_.AllHandles().Name(handle.closedWith) +
           (place.has_value() ? " at " + PlaceText(*place) : "");
  }

  void WriteFailures() {
    const std::vector<Failure>& failures = model_.Counts().Failures();
    if (failures.empty()) {
      Add("\nNo call failed.\n");
      return;
    }
    Add("\nFailed calls, the first one first\n");
    for (std::size_t i = 0; i < failures.size(); ++i) {
      if (i == kFailures && !options_.functions) {
        Add("  ... {} more kinds (--functions)\n", failures.size() - i);
        break;
      }
      const Failure& each = failures[i];
      Add("  {:<24} {} x {}, first at {}{}\n", FunctionNames()[each.function], each.count,
          NameOf(each.result), PlaceText(each.first),
          each.thread == 0 ? "" : fmt::format(" by T{}", each.thread));
      if (!each.text.empty()) {
        Add("      \"{}\"\n", Safe(each.text));
      }
    }
  }

  void WriteFunctions() {
    std::vector<std::size_t> order;
    const CallCounts& counts = model_.Counts();
    for (std::size_t i = 0; i < FunctionNames().size(); ++i) {
      if (counts.CallsOf(i) > 0) {
        order.push_back(i);
      }
    }
    std::stable_sort(order.begin(), order.end(), [&](std::size_t left, std::size_t right) {
      return counts.CallsOf(left) > counts.CallsOf(right);
    });
    const bool isTimed = model_.Timings().Any();
    Add("\n     calls    errors{}  function\n",
        isTimed ? "         p50         p99         max" : "");
    for (std::size_t i = 0; i < order.size(); ++i) {
      if (i == kFunctions && !options_.functions) {
        Add("{}  ... {} more (--functions)\n", std::string(isTimed ? 56 : 20, ' '),
            order.size() - i);
        break;
      }
      const std::uint64_t calls = counts.CallsOf(order[i]);
      Add("{:>10}{:>10}", calls, calls - counts.SuccessesOf(order[i]));
      const DurationCounts& durations = model_.Timings().DurationsOf(order[i]);
      if (isTimed && durations.Count() == 0) {
        Add("{:>36}", "");
      } else if (isTimed) {
        Add("{:>12}{:>12}{:>12}", DurationText(durations.Quantile(50)),
            DurationText(durations.Quantile(99)), DurationText(durations.Max()));
      }
      Add("  {}\n", FunctionNames()[order[i]]);
    }
  }

  void WriteDistribution(std::string_view name, const ValueCounts& values) {
    const std::optional<Distribution> known = Summarize(values);
    if (known.has_value()) {
      Add("  {:<12}mean {}, p50 {}, p95 {}, p99 {}, max {} ms", name, Resolved(known->mean),
          Resolved(known->p50), Resolved(known->p95), Resolved(known->p99), Resolved(known->max));
    } else {
      Add("  {:<12}not known", name);
    }
  }

  // Of what is shorter than the layout can show, no more is known than that.
  [[nodiscard]] std::string Resolved(double milliseconds) const {
    const double resolution = static_cast<double>(model_.Resolution()) / 1e3;
    return milliseconds < resolution ? fmt::format("< {:g}", resolution)
                                     : fmt::format("{:.3f}", milliseconds);
  }

  static std::string CountOr(const std::optional<std::uint64_t>& count) {
    return count.has_value() ? std::to_string(*count) : "not asked for";
  }

  void WriteStream(const Stream& stream) {
    const Handles& handles = model_.AllHandles();
    const Handle& handle = handles.At(stream.Id());
    Add("\n{}{}: frames: {}, waits that timed out: {}; incomplete: {}; missing frame ids: {}{}\n",
        Safe(handles.FullName(stream.Id())),
        handle.parent == kNoHandle ? "" : " of " + handles.Name(handle.parent), stream.Frames(),
        stream.TimeOuts(), CountOr(stream.Incomplete()), CountOr(stream.MissingFrameIds()),
        stream.FirstGap().has_value() ? ", first at " + PlaceText(*stream.FirstGap()) : "");
    if (stream.FrameIdsStandStill()) {
      Add("  {:<12}all the same: the producer does not count frames\n", "frame ids");
    }
    if (stream.Frames() == 0) {
      return;
    }
    const bool hasTime = model_.Time() != TimeKind::None;
    if (hasTime) {
      WriteDistribution("interval", stream.Intervals());
      if (stream.LongestIntervalAt().has_value()) {
        Add(" at {}", PlaceText(*stream.LongestIntervalAt()));
        if (stream.Intervals().Mean() > 0) {
          Add("; {:.2f} frames/s", 1e6 / stream.Intervals().Mean());
        }
      }
      Add("\n");
      WriteDistribution("hold", stream.Holds());
      Add("\n");
    }
    const std::optional<Stream::Depth> depth = stream.QueueDepth();
    if (depth.has_value()) {
      Add("  {:<12}min {}", "queue depth", depth->min);
      if (depth->mean.has_value()) {
        Add(", mean {:.2f}, at zero for {} ms", *depth->mean, depth->timeAtZero / 1000);
      }
      Add(" of {} buffers announced\n", stream.Announced());
    } else {
      Add("  {:<12}not known\n", "queue depth");
    }
    if (hasTime) {
      WriteNeeds(stream);
    }
    if (options_.histogram) {
      WriteHistogram(stream.Intervals());
    }
  }

  void WriteNeeds(const Stream& stream) {
    const std::optional<Distribution> hold = Summarize(stream.Holds());
    const std::optional<Distribution> interval = Summarize(stream.Intervals());
    if (hold.has_value() && interval.has_value() && interval->mean > 0) {
      const double buffers = std::ceil(hold->p99 / interval->mean) + 1;
      Add("  {:<12}{:.0f} buffer{} for the p99 of the hold time\n", "needs", buffers,
          buffers == 1 ? "" : "s");
    }
    if (model_.StreamingCalls() > 0 && model_.Streams().size() == 1) {
      const auto frames = static_cast<double>(stream.Frames());
      Add("  {:<12}{:.1f} calls and {:.1f} kB of log\n", "per frame",
          static_cast<double>(model_.StreamingCalls()) / frames,
          static_cast<double>(model_.StreamingBytes()) / frames / 1e3);
    }
  }

  // The buckets' limits grow by a factor of two.
  void WriteHistogram(const ValueCounts& values) {
    if (values.Count() == 0) {
      return;
    }
    constexpr std::int64_t first = 1'000;
    constexpr double width = 50;
    std::vector<std::uint64_t> buckets;
    std::uint64_t most = 0;
    for (const auto& [value, count] : values.Sorted()) {
      std::size_t bucket = 0;
      for (std::int64_t limit = first; value >= limit; limit *= 2) {
        ++bucket;
      }
      buckets.resize(std::max(buckets.size(), bucket + 1));
      buckets[bucket] += count;
      most = std::max(most, buckets[bucket]);
    }
    const auto firstUsed =
        std::find_if(buckets.begin(), buckets.end(), [](std::uint64_t count) { return count > 0; });
    for (auto i = static_cast<std::size_t>(firstUsed - buckets.begin()); i < buckets.size(); ++i) {
      const auto stars = static_cast<std::size_t>(
          std::ceil(width * static_cast<double>(buckets[i]) / static_cast<double>(most)));
      Add("  {:>8} ms {:>10} {}\n", i == 0 ? "0 to 1" : fmt::format("from {}", 1U << (i - 1)),
          buckets[i], std::string(stars, '*'));
    }
  }

  void WriteSlowest() {
    if (!model_.Timings().Any()) {
      WriteGaps();
      return;
    }
    Add("\nSlowest calls, with what they spent in the producer\n");
    for (const TimedCall& each : model_.Timings().Slowest()) {
      std::string text;
      AppendEntered(text, each.entered, model_.AllHandles());
      Add("  {:>12}  {}, entered at {}\n", DurationText(each.nanoseconds), text,
          PlaceText(each.entered.place));
    }
  }

  void WriteGaps() {
    Add("\nLongest waits in front of a line on its own thread: what the call took at most\n");
    for (const Gap& each : model_.Gaps()) {
      Add("  {:>12} ms  {} at {}\n", Milliseconds(each.duration), FunctionNames()[each.function],
          PlaceText(each.place));
    }
  }

  [[nodiscard]] static bool IsLeftOpen(const Handle& handle) {
    // A port has no function that closes it.
    return handle.kind != HandleKind::Port && handle.openedAt.has_value() &&
           !handle.closedAt.has_value();
  }

  void WriteLeftOpen() {
    const Handles& handles = model_.AllHandles();
    std::size_t all = 0;
    std::size_t shown = 0;
    for (HandleId id = 1; id <= handles.Last(); ++id) {
      all += IsLeftOpen(handles.At(id)) ? 1 : 0;
    }
    if (all == 0) {
      Add("\nEverything that was opened was closed.\n");
      return;
    }
    Add("\nNever closed: {}\n", all);
    const std::size_t limit = options_.handles ? all : kLeftOpen;
    // A tree: each handle stands below its parent if that was left open, too.
    std::multimap<HandleId, HandleId> children;
    for (HandleId id = 1; id <= handles.Last(); ++id) {
      const HandleId parent = handles.At(id).parent;
      const bool isTop = parent == kNoHandle || !IsLeftOpen(handles.At(parent));
      if (IsLeftOpen(handles.At(id))) {
        children.emplace(isTop ? kNoHandle : parent, id);
      }
    }
    WriteTree(children, kNoHandle, 1, shown, limit);
    if (shown < all) {
      Add("  ... {} more (--handles)\n", all - shown);
    }
  }

  void WriteTree(const std::multimap<HandleId, HandleId>& children, HandleId parent,
                 std::size_t level, std::size_t& shown, std::size_t limit) {
    const Handles& handles = model_.AllHandles();
    const auto [begin, end] = children.equal_range(parent);
    for (auto child = begin; child != end && shown < limit; ++child) {
      ++shown;
      const Handle& handle = handles.At(child->second);
      Add("{}{}, opened at {}{}\n", std::string(2 * level, ' '),
          Safe(handles.FullName(child->second)), PlaceText(*handle.openedAt),
          ClosedWithText(handle));
      WriteTree(children, child->second, level + 1, shown, limit);
    }
  }

  void WriteHandles() {
    const Handles& handles = model_.AllHandles();
    Add("\nHandles\n");
    for (HandleId id = 1; id <= handles.Last(); ++id) {
      const Handle& handle = handles.At(id);
      std::string closed = ClosedWithText(handle);
      if (handle.closedAt.has_value()) {
        closed = ", closed at " + PlaceText(*handle.closedAt);
      }
      Add("  {}: 0x{:X}, opened {}{}\n", Safe(handles.FullName(id)), handle.value,
          handle.openedAt.has_value() ? "at " + PlaceText(*handle.openedAt)
                                      : "in no line of the log",
          closed.empty() ? ", never closed" : closed);
    }
  }

  const ReportedLog& log_;
  const SessionModel& model_;
  const ReportOptions& options_;
  std::string& out_;
};

// The gravest few; check has them all, with their evidence.
void AppendFindings(const ReportedLog& log, const Findings& findings, std::string& out) {
  constexpr std::size_t most = 5;
  out +=
      "\nFindings: " + CountsText(CountFindings(findings, {})) + "; 'vextrel check' proves them\n";
  std::size_t shown = 0;
  for (const Severity severity : {Severity::Error, Severity::Warning}) {
    for (const Finding& each : findings.All()) {
      if (each.severity == severity && shown < most) {
        ++shown;
        out += fmt::format("  {} {} at ", SeverityName(severity), each.rule->id);
        out += log.files.size() > 1 ? Utf8(log.files[each.place.file]) + ":" : "line ";
        out += fmt::format("{}: ", each.place.line);
        AppendSafe(out, each.message);
        out += '\n';
      }
    }
  }
}

}  // namespace

void WriteReport(const ReportedLog& log, const SessionModel& model, const Findings& findings,
                 const ReportOptions& options, Output& output) {
  TextReport(log, model, options, output.Text()).Write();
  AppendFindings(log, findings, output.Text());
  output.Flush();
}

}  // namespace vextrel::program
