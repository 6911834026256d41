// SPDX-License-Identifier: MIT
// The parts of a report as JSON: what docs/reading-a-log.md describes as schema 1.
#ifndef VEXTREL_PROGRAM_VIEWS_REPORT_PARTS_H
#define VEXTREL_PROGRAM_VIEWS_REPORT_PARTS_H

#include <nlohmann/json.hpp>
#include <string>

#include "model/session_model.h"
#include "views/report.h"

namespace vextrel::program {

[[nodiscard]] nlohmann::ordered_json LogAsJson(const ReportedLog& log, const SessionModel& model);
[[nodiscard]] nlohmann::ordered_json FunctionsAsJson(const SessionModel& model);
[[nodiscard]] nlohmann::ordered_json StreamsAsJson(const SessionModel& model);
// Null without timing lines, and so are the calls that never returned.
[[nodiscard]] nlohmann::ordered_json DurationsAsJson(const SessionModel& model);
[[nodiscard]] nlohmann::ordered_json NeverReturnedAsJson(const ReportedLog& log,
                                                         const SessionModel& model);

// "0x00000001000C0DE0", or "0x........000C0DE0" if only the low half is known.
[[nodiscard]] std::string ValueText(const Handle& handle);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_VIEWS_REPORT_PARTS_H
