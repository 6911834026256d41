// SPDX-License-Identifier: MIT
#include "page/page_json.h"

#include <algorithm>
#include <string_view>

#include "reading/value_reading.h"
#include "views/findings_view.h"
#include "views/report_parts.h"
#include "views/safe_text.h"
#include "views/time_text.h"

namespace vextrel::program {
namespace {

constexpr std::size_t kMostName = 80;  // bytes
constexpr std::size_t kMostSentence = 400;
constexpr std::size_t kMostFindingText = 700'000;  // of all findings, as JSON
constexpr std::size_t kMostRowText = 900'000;      // of all rows, as JSON
constexpr std::size_t kShortText = 40;             // of a row after that
constexpr std::size_t kMostFailures = 300;
constexpr std::size_t kMostThreads = 300;
constexpr std::size_t kMostNeverReturned = 100;
constexpr std::size_t kMostSessions = 200;

std::string Cut(std::string_view text, std::size_t limit) {
  std::string safe;
  AppendSafe(safe, text, limit);
  return safe;
}

// What the text needs in a page: markup's characters are escaped.
std::size_t SizeInPage(std::string_view text) {
  std::size_t size = text.size();
  for (const char each : text) {
    size += each == '<' || each == '>' || each == '&' ? 5 : (each == '"' || each == '\\' ? 1 : 0);
  }
  return size;
}

PageJson PlaceOf(const LogPlace& place) {
  return {place.file, place.line};
}

PageJson PlaceOf(const std::optional<LogPlace>& place) {
  return place.has_value() ? PlaceOf(*place) : PageJson(nullptr);
}

PageJson SinceFirst(const std::optional<std::int64_t>& time, const SessionModel& model) {
  return time.has_value() && model.FirstTime().has_value()
             ? PageJson(static_cast<double>(*time - *model.FirstTime()) / 1e3)
             : PageJson(nullptr);
}

PageJson SessionsOf(const SessionModel& model) {
  PageJson sessions = PageJson::array();
  for (const Session& each : model.Sessions()) {
    if (sessions.size() == kMostSessions) {
      break;
    }
    sessions.push_back({{"at", PlaceOf(each.begin)},
                        {"producer", Cut(each.producer, kMostSentence)},
                        {"version", Cut(each.producerVersion, kMostName)},
                        {"closed", each.wasClosed}});
  }
  return sessions;
}

PageJson FailuresOf(const SessionModel& model) {
  PageJson failures = PageJson::array();
  for (const Failure& each : model.Counts().Failures()) {
    if (failures.size() == kMostFailures) {
      break;
    }
    std::string storage;
    failures.push_back({{"function", each.function},
                        {"result", ResultName(each.result, storage)},
                        {"count", each.count},
                        {"first", PlaceOf(each.first)},
                        {"thread", each.thread},
                        {"text", Cut(each.text, kMostSentence / 2)}});
  }
  return failures;
}

PageJson FunctionNamesOf() {
  PageJson names = PageJson::array();
  for (const std::string_view name : FunctionNames()) {
    names.push_back({name, static_cast<int>(GroupOf(name))});
  }
  return names;
}

std::string_view KindName(TimeKind kind) {
  switch (kind) {
    case TimeKind::Date:
      return "date";
    case TimeKind::TimeOfDay:
      return "time of day";
    case TimeKind::SinceStart:
      return "since start";
    case TimeKind::None:
      break;
  }
  return "none";
}

}  // namespace

PageJson HeadAsJson(const ReportedLog& log, const SessionModel& model) {
  PageJson threads = PageJson::array();
  for (const std::string& each : model.Threads()) {
    if (threads.size() < kMostThreads) {
      threads.push_back(Cut(each, kMostName));
    }
  }
  PageJson neverReturned = NeverReturnedAsJson(log, model);
  if (neverReturned.size() > kMostNeverReturned) {
    neverReturned.erase(neverReturned.begin() + kMostNeverReturned, neverReturned.end());
  }
  return {{"version", VEXTREL_VERSION},
          {"log", LogAsJson(log, model)},
          {"layout", Cut(log.layout, kMostSentence)},
          {"timeKind", KindName(model.Time())},
          {"firstMs", model.FirstTime().has_value()
                          ? PageJson(static_cast<double>(*model.FirstTime()) / 1e3)
                          : PageJson(nullptr)},
          {"notExported", model.NotExported()},
          {"sessions", SessionsOf(model)},
          {"sessionCount", model.Sessions().size()},
          {"threads", threads},
          {"groups", kCallGroupNames},
          {"functionNames", FunctionNamesOf()},
          {"functions", FunctionsAsJson(model)},
          {"durations", DurationsAsJson(model)},
          {"failures", FailuresOf(model)},
          {"neverReturned", neverReturned},
          {"neverReturnedCount", model.Timings().NeverReturnedCount()}};
}

PageJson FindingsOfPage(const SessionModel& model, const Findings& findings) {
  PageJson all = PageJson::array();
  PageJson rules = PageJson::object();
  std::size_t size = 0;
  const auto text = [&size](std::string_view each) {
    std::string cut = Cut(each, kMostSentence);
    size += SizeInPage(cut);
    return cut;
  };
  for (const Finding& each : findings.All()) {
    if (size > kMostFindingText) {
      break;
    }
    PageJson related = PageJson::array();
    for (const Related& line : each.related) {
      related.push_back({line.place.file, line.place.line, text(line.what)});
    }
    const Rule& rule = *each.rule;
    rules[std::string(rule.id)] = {{"sentence", rule.sentence},
                                   {"explanation", rule.explanation},
                                   {"remedy", rule.remedy},
                                   {"harmless", rule.harmless},
                                   {"beyond", findings.Beyond(rule)}};
    all.push_back({{"rule", rule.id},
                   {"severity", SeverityName(each.severity)},
                   {"message", text(each.message)},
                   {"at", PlaceOf(each.place)},
                   {"last", PlaceOf(each.last)},
                   {"count", each.count},
                   {"ms", SinceFirst(each.time, model)},
                   {"thread", each.thread},
                   {"related", related}});
    constexpr std::size_t fields = 200;
    size += fields;
  }
  PageJson unknown = PageJson::array();
  for (const Unknown& each : findings.Unknowns()) {
    unknown.push_back({Cut(each.rules, kMostName), Cut(each.why, kMostSentence)});
  }
  const SeverityCounts counts = CountFindings(findings, {});
  return {{"all", all},
          {"more", findings.All().size() - all.size()},
          {"counts", counts},
          {"rules", rules},
          {"notJudged", unknown}};
}

PageJson RowsAsJson(const std::vector<ExcerptRow>& rows) {
  PageJson all = PageJson::array();
  std::size_t size = 0;
  std::uint64_t last = 0;
  for (const ExcerptRow& each : rows) {
    const std::string text = size < kMostRowText ? each.text : Cut(each.text, kShortText);
    size += SizeInPage(text);
    all.push_back({each.place.file, each.place.line, each.time, each.thread,
                   static_cast<int>(each.look), text, each.number == last + 1});
    last = each.number;
  }
  return all;
}

PageJson HandlesAsJson(const SessionModel& model, const std::vector<HandleLife>& lives) {
  PageJson all = PageJson::array();
  const Handles& handles = model.AllHandles();
  for (std::size_t i = 0; i < lives.size() && i < handles.Last(); ++i) {
    const auto id = static_cast<HandleId>(i + 1);
    const Handle& handle = handles.At(id);
    const HandleLife& life = lives[i];
    all.push_back(
        {{"name", handles.Name(id)},
         {"id", Cut(handle.id, kMostName)},
         {"value", ValueText(handle)},
         {"parent", handle.parent},
         {"begin", static_cast<double>(life.begin) / 1e3},
         {"end", life.end.has_value() ? PageJson(static_cast<double>(*life.end) / 1e3)
                                      : PageJson(nullptr)},
         {"opened", PlaceOf(handle.openedAt)},
         {"closed", PlaceOf(handle.closedAt)},
         {"with", handle.closedWith == kNoHandle ? PageJson(nullptr)
                                                 : PageJson(handles.Name(handle.closedWith))},
         // A port has no function that closes it.
         {"left", handle.kind != HandleKind::Port && handle.openedAt.has_value() &&
                      !handle.closedAt.has_value()}});
  }
  return {{"all", all}, {"count", handles.Last()}};
}

}  // namespace vextrel::program
