// SPDX-License-Identifier: MIT
// The five lines at the end of a trace.
#ifndef VEXTREL_PROGRAM_COMMANDS_TRACE_SUMMARY_H
#define VEXTREL_PROGRAM_COMMANDS_TRACE_SUMMARY_H

#include <optional>
#include <string>

#include "commands/checked_log.h"
#include "commands/log_mark.h"
#include "reading/record_reader.h"

namespace vextrel::program {

struct TracedLog {
  ReadingOptions toRead;  // what the run wrote
  CheckedLog checked;
};

// What a run added to the log, and the files that it rolled to, since `mark`. Empty if there's no
// log, or no line of ours in that. `config` is a property file for its layout, or empty.
[[nodiscard]] std::optional<TracedLog> ReadTracedLog(const LogMark& mark,
                                                     const std::string& config);

// What the summary is of, and what follows it.
struct SummaryOptions {
  bool isOfMisuseOnly = false;  // there are no calls to be judged
  bool findingsFollow = false;
};

// How much it was, what failed, what the streams did, what was found, and where the log is.
[[nodiscard]] std::string TraceSummary(const CheckedLog& traced, const SummaryOptions& options);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_COMMANDS_TRACE_SUMMARY_H
