// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include "views/findings_view.h"
#include "views/safe_text.h"

namespace vextrel::program {
namespace {

// Bytes that XML can't have stand as \x1b.
std::string Xml(std::string_view text) {
  std::string safe;
  AppendSafe(safe, text);
  std::string xml;
  for (const char each : safe) {
    switch (each) {
      case '&':
        xml += "&amp;";
        break;
      case '<':
        xml += "&lt;";
        break;
      case '>':
        xml += "&gt;";
        break;
      case '"':
        xml += "&quot;";
        break;
      default:
        xml += each;
    }
  }
  return xml;
}

std::string LineOf(const ReportedLog& log, const Finding& finding) {
  return fmt::format("{}:{}: {}: {}", log.files[finding.place.file], finding.place.line,
                     SeverityName(finding.severity), finding.message);
}

}  // namespace

void WriteFindingsAsJunit(const ReportedLog& log, const SessionModel& /*model*/,
                          const Findings& findings, const RuleFilter& filter, Severity failOn,
                          Output& output) {
  std::string cases;
  std::uint64_t tests = 0;
  std::uint64_t failures = 0;
  for (const Rule* rule : AllRules()) {
    if (!filter.Has(*rule)) {
      continue;
    }
    std::string failing;
    std::string others;
    for (const Finding& each : findings.All()) {
      if (each.rule == rule) {
        (each.severity >= failOn ? failing : others) += Xml(LineOf(log, each)) + "\n";
      }
    }
    ++tests;
    cases += fmt::format(R"(  <testcase classname="vextrel" name="{}")", rule->id);
    if (failing.empty() && others.empty()) {
      cases += "/>\n";
      continue;
    }
    cases += ">\n";
    if (!failing.empty()) {
      ++failures;
      cases +=
          fmt::format("    <failure message=\"{}\">{}</failure>\n", Xml(rule->sentence), failing);
    }
    if (!others.empty()) {
      cases += fmt::format("    <system-out>{}</system-out>\n", others);
    }
    cases += "  </testcase>\n";
  }
  output.Text() += fmt::format(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuite name=\"{}\" tests=\"{}\" "
      "failures=\"{}\">\n{}</testsuite>\n",
      Xml("vextrel check " + log.files.back()), tests, failures, cases);
  output.Flush();
}

}  // namespace vextrel::program
