// SPDX-License-Identifier: MIT
// A log as a page for a browser: one file that asks for nothing else. Made in a second reading of
// the log, when it's known what was found.
#ifndef VEXTREL_PROGRAM_PAGE_LOG_PAGE_H
#define VEXTREL_PROGRAM_PAGE_LOG_PAGE_H

#include <cstdint>
#include <string>
#include <string_view>

#include "model/session_model.h"
#include "page/call_lanes.h"
#include "page/excerpts.h"
#include "page/handle_lives.h"
#include "page/stream_courses.h"
#include "rules/findings.h"
#include "views/report.h"

namespace vextrel::program {

// No page is bigger, whatever the log.
inline constexpr std::size_t kMostOfAPage = 5'000'000;

class LogPage {
 public:
  // What the first reading told. It must live as long as this.
  LogPage(const ReportedLog& log, const SessionModel& told, const Findings& findings);

  // To be called with each record of the second reading after `model`, which is that reading's
  // own.
  void Take(const SessionModel& model, const Record& record, const Message& message,
            const Context& context);

  // The page. Call it once, when the log ends and the model is finished.
  [[nodiscard]] std::string Finish(const SessionModel& model);

 private:
  const ReportedLog& log_;
  const SessionModel& told_;
  const Findings& findings_;
  std::int64_t now_ = 0;  // in microseconds since the first line
  CallLanes lanes_;
  StreamCourses courses_;
  HandleLives lives_;
  Excerpts excerpts_;
};

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_PAGE_LOG_PAGE_H
