// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include <algorithm>

#include "views/counted.h"
#include "views/findings_view.h"
#include "views/safe_text.h"
#include "views/time_text.h"

namespace vextrel::program {
namespace {

void AppendPlace(std::string& out, const ReportedLog& log, const LogPlace& place) {
  AppendSafe(out, log.files[place.file]);
  out += fmt::format(":{}", place.line);
}

void AppendFinding(std::string& out, const ReportedLog& log, const SessionModel& model,
                   const Finding& finding) {
  AppendPlace(out, log, finding.place);
  out += fmt::format(": {} {}: ", SeverityName(finding.severity), finding.rule->id);
  AppendSafe(out, finding.message);
  out += "\n   ";
  if (finding.time.has_value()) {
    out += " at " + TimeText(*finding.time, model.Time(), model.Resolution());
  }
  if (finding.thread != 0) {
    out += fmt::format(" by T{}", finding.thread);
  }
  if (finding.count > 1) {
    out += fmt::format(", {} times, the last time at ", finding.count);
    if (finding.last.file == finding.place.file) {
      out += fmt::format("line {}", finding.last.line);
    } else {
      AppendPlace(out, log, finding.last);
    }
  }
  if (out.back() == ' ') {
    out.resize(out.size() - 4);
  } else {
    out += '\n';
  }
  for (const Related& each : finding.related) {
    out += "    ";
    AppendPlace(out, log, each.place);
    out += ": ";
    AppendSafe(out, each.what);
    out += '\n';
  }
  out += fmt::format(
      "    fix: {}{}\n", finding.rule->remedy,
      finding.rule->section.empty() ? "" : fmt::format(" (GenTL {})", finding.rule->section));
}

bool Names(const std::vector<std::string>& list, const Rule& rule) {
  return std::any_of(list.begin(), list.end(), [&rule](std::string_view each) {
    return each == rule.id ||
           (rule.id.starts_with(each) && rule.id.size() > each.size() &&
            rule.id[each.size()] == '-' && each.find('-') == std::string_view::npos);
  });
}

}  // namespace

bool RuleFilter::Has(const Rule& rule) const {
  return (only.empty() || Names(only, rule)) && !Names(ignore, rule);
}

bool RuleFilter::HasAnyOf(const Unknown& unknown) const {
  return unknown.which.empty() || std::any_of(unknown.which.begin(), unknown.which.end(),
                                              [this](const Rule* rule) { return Has(*rule); });
}

SeverityCounts CountFindings(const Findings& findings, const RuleFilter& filter) {
  SeverityCounts counts{};
  for (const Finding& each : findings.All()) {
    if (filter.Has(*each.rule)) {
      ++counts[static_cast<std::size_t>(each.severity)];
    }
  }
  return counts;
}

std::string CountsText(const SeverityCounts& counts) {
  return fmt::format("{}, {}, {}", Counted(counts[2], "error"), Counted(counts[1], "warning"),
                     Counted(counts[0], "info"));
}

void WriteFindings(const ReportedLog& log, const SessionModel& model, const Findings& findings,
                   const RuleFilter& filter, Output& output) {
  std::string& out = output.Text();
  for (const Finding& each : findings.All()) {
    if (filter.Has(*each.rule)) {
      AppendFinding(out, log, model, each);
      out += '\n';
    }
  }
  for (const Rule* rule : AllRules()) {
    const std::uint64_t beyond = findings.Beyond(*rule);
    if (beyond != 0 && filter.Has(*rule)) {
      out += fmt::format("{}: {} more like these\n", rule->id, beyond);
    }
  }
  for (const Unknown& each : findings.Unknowns()) {
    if (!filter.HasAnyOf(each)) {
      continue;
    }
    out += "not judged: ";
    AppendSafe(out, each.rules);
    out += ": ";
    AppendSafe(out, each.why);
    out += '\n';
  }
  out += CountsText(CountFindings(findings, filter)) + '\n';
  output.Flush();
}

}  // namespace vextrel::program
