// SPDX-License-Identifier: MIT
// The parts of a report for people.
#ifndef VEXTREL_PROGRAM_VIEWS_REPORT_TEXT_H
#define VEXTREL_PROGRAM_VIEWS_REPORT_TEXT_H

#include <fmt/format.h>

#include <iterator>
#include <string>
#include <string_view>
#include <utility>

#include "model/session_model.h"
#include "views/report.h"

namespace vextrel::program {

// What a part is written about, and to. Refers to all of it.
class ReportText {
 public:
  ReportText(const ReportedLog& log, const SessionModel& model, const ReportOptions& options,
             std::string& out)
      : log_(&log), model_(&model), options_(&options), out_(&out) {}

  [[nodiscard]] const ReportedLog& Log() const noexcept { return *log_; }
  [[nodiscard]] const SessionModel& Model() const noexcept { return *model_; }
  [[nodiscard]] const ReportOptions& Options() const noexcept { return *options_; }

  template <typename... Values>
  void Add(fmt::format_string<Values...> format, Values&&... values) const {
    fmt::format_to(std::back_inserter(*out_), format, std::forward<Values>(values)...);
  }

  // "line 30", or "app.log:30" if there are several files.
  [[nodiscard]] std::string PlaceText(const LogPlace& place) const;
  // As AppendSafe, and cut if it's long.
  [[nodiscard]] static std::string Safe(std::string_view text);

 private:
  const ReportedLog* log_;
  const SessionModel* model_;
  const ReportOptions* options_;
  std::string* out_;
};

// Each stream, or the first few.
void WriteStreams(const ReportText& text);
// What was never closed, and all there are if the options ask for them.
void WriteLeftOpen(const ReportText& text);
void WriteHandles(const ReportText& text);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_VIEWS_REPORT_TEXT_H
