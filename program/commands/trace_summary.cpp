// SPDX-License-Identifier: MIT
#include "commands/trace_summary.h"

#include <fmt/format.h>

#include <stdexcept>

#include "reading/byte_file.h"
#include "reading/property_file.h"
#include "reading/value_reading.h"
#include "views/counted.h"
#include "views/findings_view.h"
#include "views/safe_text.h"

namespace vextrel::program {
namespace {

constexpr std::size_t kMostText = 200;

std::string Safe(std::string_view text) {
  std::string safe;
  AppendSafe(safe, text, kMostText);
  return safe;
}

// What the application didn't ask for isn't known.
std::optional<std::uint64_t> Sum(const std::optional<std::uint64_t>& one,
                                 const std::optional<std::uint64_t>& other) {
  return one && other ? *one + *other : one ? one : other;
}

std::string CountOr(const std::optional<std::uint64_t>& count) {
  return count ? std::to_string(*count) : "not asked for";
}

std::string LengthLine(const SessionModel& model) {
  std::string line = Counted(model.Counts().Calls(), "call");
  if (model.FirstTime().has_value()) {
    line += fmt::format(" in {:.3f} s",
                        static_cast<double>(*model.LastTime() - *model.FirstTime()) / 1e6);
  }
  for (const Session& session : model.Sessions()) {
    if (!session.producer.empty()) {
      line += fmt::format(", of the producer '{}'", Safe(session.producer));
      if (!session.producerVersion.empty() && session.producerVersion != "0.0.0.0") {
        line += ", version " + Safe(session.producerVersion);
      }
      break;
    }
  }
  return line;
}

std::string FailureLine(const SessionModel& model) {
  const std::vector<Failure>& failures = model.Counts().Failures();
  if (failures.empty()) {
    return "no call failed";
  }
  std::uint64_t count = 0;
  for (const Failure& failure : failures) {
    count += failure.count;
  }
  const Failure& first = failures.front();
  std::string storage;
  return fmt::format("{} failed, {}{} with {}", Counted(count, "call"),
                     count == 1 ? "" : "the first one ", FunctionNames()[first.function],
                     ResultName(first.result, storage));
}

std::string StreamLine(const SessionModel& model) {
  std::uint64_t frames = 0;
  std::uint64_t timeOuts = 0;
  std::optional<std::uint64_t> missing;
  std::optional<std::uint64_t> incomplete;
  for (const Stream& stream : model.Streams()) {
    frames += stream.Frames();
    timeOuts += stream.TimeOuts();
    missing = Sum(missing, stream.MissingFrameIds());
    incomplete = Sum(incomplete, stream.Incomplete());
  }
  if (model.Streams().empty()) {
    return "no stream was opened";
  }
  std::string line = Counted(frames, "frame") + " on " + Counted(model.Streams().size(), "stream");
  const ValueCounts& intervals = model.Streams().front().Intervals();
  if (model.Streams().size() == 1 && model.Time() != TimeKind::None && frames > 1 &&
      intervals.Mean() > 0) {
    line += fmt::format(", {:.2f} a second", 1e6 / intervals.Mean());
  }
  return line + fmt::format("; missing: {}, incomplete: {}, {}", CountOr(missing),
                            CountOr(incomplete), Counted(timeOuts, "time-out"));
}

// Of findings, as 'vextrel check' counts them, and of what Vextrel itself reported.
std::string FindingsLine(const CheckedLog& traced, const SummaryOptions& options) {
  const std::uint64_t reports = traced.Model().Reports();
  if (options.isOfMisuseOnly) {
    return reports == 0 ? "no report of an error or misuse"
                        : Counted(reports, "report") + " of errors and misuse";
  }
  std::string line = "findings: " + CountsText(CountFindings(traced.Found(), {}));
  if (reports > 0) {
    line += fmt::format("; reports of Vextrel itself: {}", reports);
  }
  return line;
}

}  // namespace

std::optional<TracedLog> ReadTracedLog(const LogMark& mark, const std::string& config) {
  try {
    ReadingOptions toRead;
    mark.ShowWhatCameSince(toRead);
    if (!FileExists(toRead.files.back())) {
      return std::nullopt;
    }
    if (!config.empty()) {
      toRead.layout = LayoutOfPropertyFile(config);
    }
    return TracedLog{toRead, CheckedLog(toRead)};
  } catch (const std::runtime_error&) {
    return std::nullopt;
  }
}

std::string TraceSummary(const CheckedLog& traced, const SummaryOptions& options) {
  const SessionModel& model = traced.Model();
  const bool hasHint =
      !options.findingsFollow && (model.Reports() > 0 || !traced.Found().All().empty());
  return fmt::format("vextrel: {}\n  {}\n  {}\n  {}\n  log: {} ({:.1f} MB{})\n", LengthLine(model),
                     FailureLine(model), StreamLine(model), FindingsLine(traced, options),
                     Safe(traced.Log().files.back()), static_cast<double>(traced.Log().bytes) / 1e6,
                     hasHint ? "; 'vextrel check' says what went wrong" : "");
}

}  // namespace vextrel::program
