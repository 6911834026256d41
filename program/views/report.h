// SPDX-License-Identifier: MIT
// What a log as a whole tells: for people, and as JSON.
#ifndef VEXTREL_PROGRAM_VIEWS_REPORT_H
#define VEXTREL_PROGRAM_VIEWS_REPORT_H

#include <cstdint>
#include <string>
#include <vector>

#include "model/session_model.h"
#include "rules/findings.h"
#include "views/output.h"

namespace vextrel::program {

// What was read.
struct ReportedLog {
  std::vector<std::string> files;
  std::string layout;
  std::uint64_t bytes = 0;
  std::uint64_t lines = 0;
};

// Details beyond the first screen.
struct ReportOptions {
  bool functions = false;  // every function, every result
  bool handles = false;    // every handle
  bool histogram = false;  // of the intervals
  bool slowest = false;    // the longest waits
};

void WriteReport(const ReportedLog& log, const SessionModel& model, const Findings& findings,
                 const ReportOptions& options, Output& output);

// Schema 1, see docs/reading-a-log.md.
void WriteReportAsJson(const ReportedLog& log, const SessionModel& model, const Findings& findings,
                       Output& output);

// The figures of two logs beside each other.
void WriteComparison(const ReportedLog& log, const SessionModel& model, const ReportedLog& otherLog,
                     const SessionModel& other, Output& output);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_VIEWS_REPORT_H
