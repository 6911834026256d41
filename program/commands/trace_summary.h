// SPDX-License-Identifier: MIT
// The five lines at the end of a trace.
#ifndef VEXTREL_PROGRAM_COMMANDS_TRACE_SUMMARY_H
#define VEXTREL_PROGRAM_COMMANDS_TRACE_SUMMARY_H

#include <optional>
#include <string>

#include "model/session_model.h"
#include "views/report.h"

namespace vextrel::program {

struct TracedLog {
  ReportedLog log;
  SessionModel model;
};

// What the log at `path`, and the files that it rolled to, says. Empty if there's no log, or no
// line of ours in it. `config` is a property file for its layout, or empty.
[[nodiscard]] std::optional<TracedLog> ReadTracedLog(const std::string& path,
                                                     const std::string& config);

// How much it was, what failed, what the streams did, what was misused, and where the log is.
[[nodiscard]] std::string TraceSummary(const TracedLog& traced);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_COMMANDS_TRACE_SUMMARY_H
