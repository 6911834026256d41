// SPDX-License-Identifier: MIT
// What a page shows, as the JSON that its scripts read.
#ifndef VEXTREL_PROGRAM_PAGE_PAGE_JSON_H
#define VEXTREL_PROGRAM_PAGE_PAGE_JSON_H

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "model/session_model.h"
#include "page/call_lanes.h"
#include "page/excerpts.h"
#include "page/handle_lives.h"
#include "page/stream_courses.h"
#include "rules/findings.h"
#include "views/report.h"

namespace vextrel::program {

using PageJson = nlohmann::ordered_json;

// Texts of the log are cut where they would make a page too big.

// Texts and figures: the log, its functions, its failures, its threads.
[[nodiscard]] PageJson HeadAsJson(const ReportedLog& log, const SessionModel& model);
// {"all": [...], "more": how many aren't among them, "notJudged": [...]}
[[nodiscard]] PageJson FindingsOfPage(const SessionModel& model, const Findings& findings);
// [file, line, time, thread, look, text, whether it follows the row before] for each.
[[nodiscard]] PageJson RowsAsJson(const std::vector<ExcerptRow>& rows);
// {"all": [...], "count": how many there are}
[[nodiscard]] PageJson HandlesAsJson(const SessionModel& model,
                                     const std::vector<HandleLife>& lives);
// Each of the courses with its histogram, and with the figures of its stream.
[[nodiscard]] PageJson CoursesAsJson(const SessionModel& model,
                                     const std::vector<StreamCourse>& courses);

// Calls as columns: {"lane": [...], "begin": [...], ...}. Beginnings and lines are differences to
// the call before, the times are tenths of a microsecond.
[[nodiscard]] PageJson CallsAsJson(const std::vector<LaneCall>& calls);
// {"widthMs": ..., "lanes": [{"slot": [...], "calls": [...], ...}]}
[[nodiscard]] PageJson LanesAsJson(const std::vector<TimeBuckets<LaneCell>>& lanes);

// The data as text without markup, in no more than `room` bytes if it's possible: what is needed
// least is left out first, and named in "leftOut".
[[nodiscard]] std::string FitData(PageJson data, std::size_t room);
// JSON that can stand in a page's script element: what would be markup there is escaped.
[[nodiscard]] std::string WithoutMarkup(std::string_view json);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_PAGE_PAGE_JSON_H
