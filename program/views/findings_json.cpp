// SPDX-License-Identifier: MIT
#include "views/findings_view.h"
#include "views/safe_text.h"
#include "views/time_text.h"

namespace vextrel::program {
namespace {

using Json = nlohmann::ordered_json;

Json RelatedOf(const ReportedLog& log, const Finding& finding) {
  Json related = Json::array();
  for (const Related& each : finding.related) {
    related.push_back({{"file", Utf8(log.files[each.place.file])},
                       {"line", each.place.line},
                       {"what", Utf8(each.what)}});
  }
  return related;
}

Json FindingOf(const ReportedLog& log, const SessionModel& model, const Finding& finding) {
  Json handles = Json::array();
  for (const std::string& each : finding.handles) {
    handles.push_back(each);
  }
  return {{"rule", finding.rule->id},
          {"severity", SeverityName(finding.severity)},
          {"message", Utf8(finding.message)},
          {"file", Utf8(log.files[finding.place.file])},
          {"line", finding.place.line},
          {"time", finding.time.has_value()
                       ? Json(TimeText(*finding.time, model.Time(), model.Resolution()))
                       : Json(nullptr)},
          {"thread", finding.thread != 0 && finding.thread <= model.Threads().size()
                         ? Json(Utf8(model.Threads()[finding.thread - 1]))
                         : Json(nullptr)},
          {"handles", handles},
          {"count", finding.count},
          {"related", RelatedOf(log, finding)}};
}

}  // namespace

Json FindingsAsJson(const ReportedLog& log, const SessionModel& model, const Findings& findings,
                    const RuleFilter& filter) {
  Json all = Json::array();
  for (const Finding& each : findings.All()) {
    if (filter.Has(*each.rule)) {
      all.push_back(FindingOf(log, model, each));
    }
  }
  return all;
}

void WriteFindingsAsJson(const ReportedLog& log, const SessionModel& model,
                         const Findings& findings, const RuleFilter& filter, Output& output) {
  const SeverityCounts counts = CountFindings(findings, filter);
  Json unknown = Json::array();
  for (const Unknown& each : findings.Unknowns()) {
    if (!filter.HasAnyOf(each)) {
      continue;
    }
    unknown.push_back({{"rules", Utf8(each.rules)}, {"why", Utf8(each.why)}});
  }
  const Json all = {
      {"schema", 1},         {"findings", FindingsAsJson(log, model, findings, filter)},
      {"errors", counts[2]}, {"warnings", counts[1]},
      {"infos", counts[0]},  {"notJudged", unknown}};
  output.Text() += all.dump(2);
  output.Text() += '\n';
  output.Flush();
}

}  // namespace vextrel::program
