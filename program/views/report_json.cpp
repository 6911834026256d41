// SPDX-License-Identifier: MIT
#include "model/distribution.h"
#include "reading/value_reading.h"
#include "views/call_text.h"
#include "views/findings_view.h"
#include "views/report_parts.h"
#include "views/safe_text.h"
#include "views/time_text.h"

namespace vextrel::program {
namespace {

using Json = nlohmann::ordered_json;

Json PlaceOf(const std::optional<LogPlace>& place, const ReportedLog& log) {
  if (!place.has_value()) {
    return nullptr;
  }
  return {{"file", Utf8(log.files[place->file])}, {"line", place->line}};
}

Json TextOrNull(const std::string& text) {
  return text.empty() ? Json(nullptr) : Json(Utf8(text));
}

template <typename Value>
Json OrNull(const std::optional<Value>& value) {
  return value.has_value() ? Json(*value) : Json(nullptr);
}

Json DistributionOf(const ValueCounts& values) {
  const std::optional<Distribution> known = Summarize(values);
  if (!known.has_value()) {
    return {
        {"mean", nullptr}, {"p50", nullptr}, {"p95", nullptr}, {"p99", nullptr}, {"max", nullptr}};
  }
  return {{"mean", known->mean},
          {"p50", known->p50},
          {"p95", known->p95},
          {"p99", known->p99},
          {"max", known->max}};
}

Json ResultsOf(const SessionModel& model) {
  Json results = Json::object();
  for (const auto& [result, count] : model.Counts().Results()) {
    std::string storage;
    results[std::string(ResultName(result, storage))] = count;
  }
  return results;
}

Json HandlesOf(const ReportedLog& log, const SessionModel& model) {
  Json all = Json::array();
  const Handles& handles = model.AllHandles();
  for (HandleId id = 1; id <= handles.Last(); ++id) {
    const Handle& handle = handles.At(id);
    all.push_back(
        {{"name", handles.Name(id)},
         {"kind", KindName(handle.kind)},
         {"value", ValueText(handle)},
         {"id", TextOrNull(handle.id)},
         {"parent", handle.parent == kNoHandle ? Json(nullptr) : Json(handles.Name(handle.parent))},
         {"openedAt", PlaceOf(handle.openedAt, log)},
         {"closedAt", PlaceOf(handle.closedAt, log)},
         {"closedWith",
          handle.closedWith == kNoHandle ? Json(nullptr) : Json(handles.Name(handle.closedWith))}});
  }
  return all;
}

}  // namespace

nlohmann::ordered_json LogAsJson(const ReportedLog& log, const SessionModel& model) {
  Json files = Json::array();
  for (const std::string& file : log.files) {
    files.push_back(Utf8(file));
  }
  const auto time = [&model](std::optional<std::int64_t> value) {
    return value.has_value() ? Json(TimeText(*value, model.Time(), model.Resolution()))
                             : Json(nullptr);
  };
  return {{"files", files},
          {"bytes", log.bytes},
          {"lines", log.lines},
          {"calls", model.Counts().Calls()},
          {"reports", model.Reports()},
          {"unreadable", model.Unreadable()},
          {"otherLines", model.OtherLines()},
          {"first", time(model.FirstTime())},
          {"last", time(model.LastTime())},
          {"resolutionMs", model.Time() == TimeKind::None
                               ? Json(nullptr)
                               : Json(static_cast<double>(model.Resolution()) / 1e3)},
          {"timing", model.Timings().Any()}};
}

nlohmann::ordered_json FunctionsAsJson(const SessionModel& model) {
  Json functions = Json::array();
  const CallCounts& counts = model.Counts();
  for (std::size_t i = 0; i < FunctionNames().size(); ++i) {
    const std::uint64_t calls = counts.CallsOf(i);
    if (calls == 0) {
      continue;
    }
    Json results = Json::object();
    if (counts.SuccessesOf(i) != 0) {
      results["GC_ERR_SUCCESS"] = counts.SuccessesOf(i);
    }
    for (const Failure& each : counts.Failures()) {
      std::string storage;
      if (each.function == i) {
        results[std::string(ResultName(each.result, storage))] = each.count;
      }
    }
    functions.push_back({{"name", FunctionNames()[i]},
                         {"calls", calls},
                         {"errors", calls - counts.SuccessesOf(i)},
                         {"results", results}});
  }
  return functions;
}

std::string ValueText(const Handle& handle) {
  constexpr int digits = 16;
  constexpr int digitsOfHalf = 8;
  std::string text;
  for (int i = (handle.isHalf ? digitsOfHalf : digits) - 1; i >= 0; --i) {
    text += "0123456789ABCDEF"[handle.value >> (4U * static_cast<unsigned>(i)) & 0xFU];
  }
  // Of a device that was opened and never used, only the low half is known.
  return (handle.isHalf ? "0x........" : "0x") + text;
}

nlohmann::ordered_json StreamsAsJson(const SessionModel& model) {
  Json streams = Json::array();
  const Handles& handles = model.AllHandles();
  for (const Stream& stream : model.Streams()) {
    const Handle& handle = handles.At(stream.Id());
    const std::optional<Stream::Depth> depth = stream.QueueDepth();
    Json queue = {{"min", nullptr}, {"mean", nullptr}, {"msAtZero", nullptr}};
    if (depth.has_value()) {
      queue = {{"min", depth->min},
               {"mean", OrNull(depth->mean)},
               {"msAtZero", model.Time() == TimeKind::None
                                ? Json(nullptr)
                                : Json(static_cast<double>(depth->timeAtZero) / 1e3)}};
    }
    streams.push_back(
        {{"name", handles.Name(stream.Id())},
         {"device", handle.parent == kNoHandle ? Json(nullptr) : Json(handles.Name(handle.parent))},
         {"id", TextOrNull(handle.id)},
         {"frames", stream.Frames()},
         {"timeouts", stream.TimeOuts()},
         {"incomplete", OrNull(stream.Incomplete())},
         {"missingFrameIds", OrNull(stream.MissingFrameIds())},
         {"intervalMs", DistributionOf(stream.Intervals())},
         {"holdMs", DistributionOf(stream.Holds())},
         {"queueDepth", queue}});
  }
  return streams;
}

nlohmann::ordered_json DurationsAsJson(const SessionModel& model) {
  if (!model.Timings().Any()) {
    return nullptr;
  }
  const auto microseconds = [](std::uint64_t nanoseconds) {
    return static_cast<double>(nanoseconds) / 1e3;
  };
  Json durations = Json::array();
  for (std::size_t i = 0; i < FunctionNames().size(); ++i) {
    const DurationCounts& counts = model.Timings().DurationsOf(i);
    if (counts.Count() > 0) {
      durations.push_back({{"name", FunctionNames()[i]},
                           {"calls", counts.Count()},
                           {"meanUs", counts.Mean() / 1e3},
                           {"p50Us", microseconds(counts.Quantile(50))},
                           {"p95Us", microseconds(counts.Quantile(95))},
                           {"p99Us", microseconds(counts.Quantile(99))},
                           {"maxUs", microseconds(counts.Max())}});
    }
  }
  return durations;
}

nlohmann::ordered_json NeverReturnedAsJson(const ReportedLog& log, const SessionModel& model) {
  if (!model.Timings().Any()) {
    return nullptr;
  }
  Json calls = Json::array();
  for (const EnteredCall& call : model.Timings().NeverReturned()) {
    std::string text;
    AppendEntered(text, call, model.AllHandles());
    calls.push_back(
        {{"function", FunctionNames()[call.function]},
         {"number", call.number},
         {"call", text},
         {"handle",
          call.handle == kNoHandle ? Json(nullptr) : Json(model.AllHandles().Name(call.handle))},
         {"thread",
          call.thread == 0 ? Json(nullptr) : Json(Utf8(model.Threads()[call.thread - 1]))},
         {"session", call.session},
         {"time", call.time.has_value()
                      ? Json(TimeText(*call.time, model.Time(), model.Resolution()))
                      : Json(nullptr)},
         {"enteredAt", PlaceOf(call.place, log)}});
  }
  return calls;
}

void WriteReportAsJson(const ReportedLog& log, const SessionModel& model, const Findings& findings,
                       Output& output) {
  const Json report = {{"schema", 1},
                       {"log", LogAsJson(log, model)},
                       {"results", ResultsOf(model)},
                       {"functions", FunctionsAsJson(model)},
                       {"handles", HandlesOf(log, model)},
                       {"streams", StreamsAsJson(model)},
                       {"findings", FindingsAsJson(log, model, findings, {})},
                       {"durations", DurationsAsJson(model)},
                       {"neverReturned", NeverReturnedAsJson(log, model)}};
  output.Text() += report.dump(2);
  output.Text() += '\n';
  output.Flush();
}

}  // namespace vextrel::program
