// SPDX-License-Identifier: MIT
// What the rules found: for people, as JSON, and as JUnit's XML.
#ifndef VEXTREL_PROGRAM_VIEWS_FINDINGS_VIEW_H
#define VEXTREL_PROGRAM_VIEWS_FINDINGS_VIEW_H

#include <array>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "model/session_model.h"
#include "rules/findings.h"
#include "views/output.h"
#include "views/report.h"

namespace vextrel::program {

// Which rules are looked at.
struct RuleFilter {
  // Ids, or the part in front of the "-" for all that share it. Nothing stands for all.
  std::vector<std::string> only;
  std::vector<std::string> ignore;

  [[nodiscard]] bool Has(const Rule& rule) const;
  // True iff it has any of the rules that weren't judged.
  [[nodiscard]] bool HasAnyOf(const Unknown& unknown) const;
};

// How many findings there are of each severity, by its number.
using SeverityCounts = std::array<std::uint64_t, 3>;
[[nodiscard]] SeverityCounts CountFindings(const Findings& findings, const RuleFilter& filter);

void WriteFindings(const ReportedLog& log, const SessionModel& model, const Findings& findings,
                   const RuleFilter& filter, Output& output);
// Of schema 1, see docs/reading-a-log.md.
[[nodiscard]] nlohmann::ordered_json FindingsAsJson(const ReportedLog& log,
                                                    const SessionModel& model,
                                                    const Findings& findings,
                                                    const RuleFilter& filter);
void WriteFindingsAsJson(const ReportedLog& log, const SessionModel& model,
                         const Findings& findings, const RuleFilter& filter, Output& output);
// One test case a rule. One with a finding of `failOn` or above fails.
void WriteFindingsAsJunit(const ReportedLog& log, const SessionModel& model,
                          const Findings& findings, const RuleFilter& filter, Severity failOn,
                          Output& output);

// "2 errors, 1 warning, 0 infos"
[[nodiscard]] std::string CountsText(const SeverityCounts& counts);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_VIEWS_FINDINGS_VIEW_H
