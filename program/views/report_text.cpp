// SPDX-License-Identifier: MIT
#include "views/report_text.h"

#include <algorithm>

#include "reading/value_reading.h"
#include "views/call_text.h"
#include "views/findings_view.h"
#include "views/safe_text.h"
#include "views/time_text.h"

namespace vextrel::program {
namespace {

// What fits on one screen beside the rest.
constexpr std::size_t kFailures = 5;
constexpr std::size_t kFunctions = 8;
constexpr std::size_t kSessions = 5;
constexpr std::size_t kDevices = 5;
constexpr std::size_t kNeverReturned = 5;
constexpr std::size_t kMostReportText = 100;

class CallsText {
 public:
  explicit CallsText(const ReportText& text) : text_(text) {}

  void WriteHead() {
    text_.Add("{}{}: {} calls on {} lines, {:.1f} MB\n", ReportText::Safe(text_.Log().files.back()),
              text_.Log().files.size() == 1
                  ? ""
                  : fmt::format(" and {} before it", text_.Log().files.size() - 1),
              text_.Model().Counts().Calls(), text_.Log().lines,
              static_cast<double>(text_.Log().bytes) / 1e6);
    if (text_.Model().FirstTime().has_value()) {
      text_.Add(
          "  time        {} to {}, {:.3f} s; resolution {} ms\n",
          TimeText(*text_.Model().FirstTime(), text_.Model().Time(), text_.Model().Resolution()),
          TimeText(*text_.Model().LastTime(), text_.Model().Time(), text_.Model().Resolution()),
          static_cast<double>(*text_.Model().LastTime() - *text_.Model().FirstTime()) / 1e6,
          text_.Model().Resolution() / 1000);
    } else {
      text_.Add("  time        not in this layout\n");
    }
    for (std::size_t i = 0; i < text_.Model().Sessions().size(); ++i) {
      if (i == kSessions && !text_.Options().handles) {
        text_.Add("  ... {} more sessions (--handles)\n", text_.Model().Sessions().size() - i);
        break;
      }
      const Session& session = text_.Model().Sessions()[i];
      text_.Add("  session {:<4}{}", i + 1, text_.PlaceText(session.begin));
      if (!session.producer.empty()) {
        text_.Add(", producer '{}'", ReportText::Safe(session.producer));
      }
      if (!session.producerVersion.empty() && session.producerVersion != "0.0.0.0") {
        text_.Add(", version {}", ReportText::Safe(session.producerVersion));
      }
      text_.Add("{}\n", session.wasClosed ? "" : ", GCCloseLib not seen");
    }
    std::size_t devices = 0;
    for (HandleId id = 1; id <= text_.Model().AllHandles().Last(); ++id) {
      const Handle& handle = text_.Model().AllHandles().At(id);
      if (handle.kind == HandleKind::Device && ++devices <= kDevices) {
        text_.Add(
            "  device      {}{}\n", ReportText::Safe(text_.Model().AllHandles().FullName(id)),
            handle.openedAt.has_value() ? ", opened at " + text_.PlaceText(*handle.openedAt) : "");
      }
    }
    if (devices > kDevices) {
      text_.Add("  ... {} more devices (--handles)\n", devices - kDevices);
    }
    if (text_.Model().Timings().Any()) {
      text_.Add("  timing      durations in the target, resolution 1 us\n");
    }
    text_.Add("  reports     {} of errors and misuse{}\n", text_.Model().Reports(),
              text_.Model().Reports() > 0 ? " (see 'vextrel show --reports')" : "");
    if (text_.Model().NotExported() > 0) {
      text_.Add("  lacking     {} functions that the producer does not export\n",
                text_.Model().NotExported());
    }
    if (text_.Model().OtherLines() > 0) {
      text_.Add("  other       {} lines of other programs or categories\n",
                text_.Model().OtherLines());
    }
    if (text_.Model().Unreadable() > 0) {
      text_.Add("  unreadable  {} records (they stand behind a '?' in 'vextrel show')\n",
                text_.Model().Unreadable());
    }
  }

  void WriteNeverReturned() {
    const CallTimings& timings = text_.Model().Timings();
    if (timings.NeverReturnedCount() == 0) {
      return;
    }
    text_.Add("\nEntered the producer and never returned: {}\n", timings.NeverReturnedCount());
    std::size_t shown = 0;
    for (const EnteredCall& call : timings.NeverReturned()) {
      if (shown++ == kNeverReturned) {
        text_.Add("  ... {} more (see the end of 'vextrel show')\n",
                  timings.NeverReturnedCount() - kNeverReturned);
        break;
      }
      std::string text;
      AppendEntered(text, call, text_.Model().AllHandles());
      text_.Add("  {}, entered at {}{}{}\n", text, text_.PlaceText(call.place),
                call.thread == 0 ? "" : fmt::format(" by T{}", call.thread),
                call.time.has_value()
                    ? ", " + TimeText(*call.time, text_.Model().Time(), text_.Model().Resolution())
                    : "");
    }
  }

  void WriteFailures() {
    const std::vector<Failure>& failures = text_.Model().Counts().Failures();
    if (failures.empty()) {
      text_.Add("\nNo call failed.\n");
      return;
    }
    text_.Add("\nFailed calls, the first one first\n");
    for (std::size_t i = 0; i < failures.size(); ++i) {
      if (i == kFailures && !text_.Options().functions) {
        text_.Add("  ... {} more kinds (--functions)\n", failures.size() - i);
        break;
      }
      const Failure& each = failures[i];
      text_.Add("  {:<24} {} x {}, first at {}{}\n", FunctionNames()[each.function], each.count,
                NameOf(each.result), text_.PlaceText(each.first),
                each.thread == 0 ? "" : fmt::format(" by T{}", each.thread));
      if (!each.text.empty()) {
        text_.Add("      \"{}\"\n", ReportText::Safe(each.text));
      }
    }
  }

  void WriteFunctions() {
    std::vector<std::size_t> order;
    const CallCounts& counts = text_.Model().Counts();
    for (std::size_t i = 0; i < FunctionNames().size(); ++i) {
      if (counts.CallsOf(i) > 0) {
        order.push_back(i);
      }
    }
    std::stable_sort(order.begin(), order.end(), [&](std::size_t left, std::size_t right) {
      return counts.CallsOf(left) > counts.CallsOf(right);
    });
    const bool isTimed = text_.Model().Timings().Any();
    text_.Add("\n     calls    errors{}  function\n",
              isTimed ? "         p50         p99         max" : "");
    for (std::size_t i = 0; i < order.size(); ++i) {
      if (i == kFunctions && !text_.Options().functions) {
        text_.Add("{}  ... {} more (--functions)\n", std::string(isTimed ? 56 : 20, ' '),
                  order.size() - i);
        break;
      }
      const std::uint64_t calls = counts.CallsOf(order[i]);
      text_.Add("{:>10}{:>10}", calls, calls - counts.SuccessesOf(order[i]));
      const DurationCounts& durations = text_.Model().Timings().DurationsOf(order[i]);
      if (isTimed && durations.Count() == 0) {
        text_.Add("{:>36}", "");
      } else if (isTimed) {
        text_.Add("{:>12}{:>12}{:>12}", DurationText(durations.Quantile(50)),
                  DurationText(durations.Quantile(99)), DurationText(durations.Max()));
      }
      text_.Add("  {}\n", FunctionNames()[order[i]]);
    }
  }

  void WriteSlowest() {
    if (!text_.Model().Timings().Any()) {
      WriteGaps();
      return;
    }
    text_.Add("\nSlowest calls, with what they spent in the producer\n");
    for (const TimedCall& each : text_.Model().Timings().Slowest()) {
      std::string text;
      AppendEntered(text, each.entered, text_.Model().AllHandles());
      text_.Add("  {:>12}  {}, entered at {}\n", DurationText(each.nanoseconds), text,
                text_.PlaceText(each.entered.place));
    }
  }

 private:
  void WriteGaps() {
    text_.Add("\nLongest waits in front of a line on its own thread: what the call took at most\n");
    for (const Gap& each : text_.Model().Gaps()) {
      text_.Add("  {:>12} ms  {} at {}\n", Milliseconds(each.duration),
                FunctionNames()[each.function], text_.PlaceText(each.place));
    }
  }

  [[nodiscard]] static std::string NameOf(GC_ERROR result) {
    std::string storage;
    return std::string(ResultName(result, storage));
  }

  const ReportText& text_;
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

std::string ReportText::PlaceText(const LogPlace& place) const {
  return log_->files.size() == 1 ? fmt::format("line {}", place.line)
                                 : fmt::format("{}:{}", Safe(log_->files[place.file]), place.line);
}

std::string ReportText::Safe(std::string_view text) {
  std::string safe;
  AppendSafe(safe, text, kMostReportText);
  return safe;
}

void WriteReport(const ReportedLog& log, const SessionModel& model, const Findings& findings,
                 const ReportOptions& options, Output& output) {
  const ReportText text(log, model, options, output.Text());
  CallsText calls(text);
  calls.WriteHead();
  calls.WriteNeverReturned();
  calls.WriteFailures();
  calls.WriteFunctions();
  WriteStreams(text);
  if (options.slowest) {
    calls.WriteSlowest();
  }
  WriteLeftOpen(text);
  if (options.handles) {
    WriteHandles(text);
  }
  AppendFindings(log, findings, output.Text());
  output.Flush();
}

}  // namespace vextrel::program
