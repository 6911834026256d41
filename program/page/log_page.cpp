// SPDX-License-Identifier: MIT
#include "page/log_page.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "page/page_json.h"
#include "page/parts.h"

namespace vextrel::program {
namespace {

// Puts the parts where their marks are. What is put in isn't searched.
std::string Fill(std::string_view frame,
                 const std::vector<std::pair<std::string_view, std::string_view>>& parts) {
  std::string page;
  for (const auto& [mark, part] : parts) {
    const std::size_t at = frame.find(mark);
    page += frame.substr(0, at);
    page += part;
    frame.remove_prefix(at + mark.size());
  }
  page += frame;
  return page;
}

}  // namespace

LogPage::LogPage(const ReportedLog& log, const SessionModel& told, const Findings& findings)
    : log_(log),
      told_(told),
      findings_(findings),
      lanes_(told.Counts().Calls()),
      courses_(told),
      excerpts_(findings) {}

void LogPage::Take(const SessionModel& model, const Record& record, const Message& message,
                   const Context& context) {
  excerpts_.Take(model, record, message, context);
  if (record.kind != RecordKind::Whole) {
    return;
  }
  if (context.hasTime) {
    // Neighboring lines step back now and then.
    now_ = std::max(now_, context.time - *model.FirstTime());
  }
  lives_.Take(model, message, context, now_);
  if (message.IsCall() && context.hasTime) {
    lanes_.Take(model, record, message, context, now_, excerpts_.IsNear());
    if (const auto interval = courses_.Take(model, now_, record.place); interval.has_value()) {
      lanes_.EndInterval(*interval);
    }
  }
}

std::string LogPage::Finish(const SessionModel& model) {
  if (model.FirstTime().has_value()) {
    lanes_.Finish(model, now_);
  }
  PageJson data = HeadAsJson(log_, told_);
  data["endMs"] = static_cast<double>(now_) / 1e3;
  data["findings"] = FindingsOfPage(told_, findings_);
  data["rows"] = RowsAsJson(excerpts_.Rows());
  data["handles"] = HandlesAsJson(told_, lives_.All());
  data["streams"] = CoursesAsJson(told_, courses_.All());
  data["keepsAll"] = lanes_.KeepsAll();
  data["calls"] = CallsAsJson(lanes_.Kept());
  data["lanes"] = LanesAsJson(lanes_.Lanes());
  std::size_t others = kPageFrame.size();
  std::vector<std::pair<std::string_view, std::string_view>> parts = {
      {"/*plot style*/", kPlotStyle},
      {"/*style*/", kPageStyle},
      {"/*data*/", ""},
      {"/*plot script*/", kPlotScript},
      {"/*common script*/", kCommonScript},
      {"/*timeline script*/", kTimelineScript},
      {"/*time script*/", kTimeScript},
      {"/*script*/", kPageScript}};
  for (const auto& [mark, part] : parts) {
    others += part.size();
  }
  const std::string text = FitData(std::move(data), kMostOfAPage - others);
  parts[2].second = text;
  return Fill(kPageFrame, parts);
}

}  // namespace vextrel::program
