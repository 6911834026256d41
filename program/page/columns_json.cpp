// SPDX-License-Identifier: MIT
// The parts of a page that are many numbers.
#include <algorithm>
#include <utility>

#include "model/distribution.h"
#include "page/page_json.h"
#include "views/report_parts.h"

namespace vextrel::program {
namespace {

constexpr double kMillisecond = 1e3;  // in microseconds
constexpr std::int64_t kTenth = 100;  // of a microsecond, in nanoseconds

// Equally wide bins of the intervals, and one at the end for the rare ones that are longer.
PageJson HistogramOf(const ValueCounts& values, std::int64_t resolution) {
  constexpr std::int64_t most = 60;
  constexpr double percentShown = 99.5;
  if (values.Count() == 0) {
    return nullptr;
  }
  const std::vector<std::pair<std::int64_t, std::uint64_t>> sorted = values.Sorted();
  const std::int64_t first = sorted.front().first;
  const std::int64_t last = Quantile(sorted, percentShown);
  const std::int64_t unit = std::max<std::int64_t>(resolution, 1);
  const std::int64_t width = std::max((last - first) / unit / most + 1, std::int64_t{1}) * unit;
  std::vector<std::uint64_t> bins(static_cast<std::size_t>((last - first) / width + 1));
  std::uint64_t longer = 0;
  for (const auto& [value, count] : sorted) {
    const auto bin = static_cast<std::size_t>((value - first) / width);
    (bin < bins.size() ? bins[bin] : longer) += count;
  }
  return {{"firstMs", static_cast<double>(first) / kMillisecond},
          {"widthMs", static_cast<double>(width) / kMillisecond},
          {"bins", bins},
          {"longer", longer}};
}

PageJson IntervalsOf(const TimeBuckets<IntervalCell>& intervals) {
  PageJson rows = PageJson::array();
  for (const auto& [ignored, cell] : intervals.Cells()) {
    rows.push_back({static_cast<double>(cell.longestTime) / kMillisecond,
                    static_cast<double>(cell.sum) / static_cast<double>(cell.count) / kMillisecond,
                    static_cast<double>(cell.longest) / kMillisecond, cell.count,
                    cell.longestAt.line});
  }
  return {{"widthMs", static_cast<double>(intervals.Width()) / kMillisecond}, {"rows", rows}};
}

PageJson DepthsOf(const TimeBuckets<DepthCell>& depths) {
  const auto known = [](bool isKnown, std::int64_t depth) {
    return isKnown ? PageJson(depth) : PageJson(nullptr);
  };
  PageJson rows = PageJson::array();
  for (const auto& [slot, cell] : depths.Cells()) {
    rows.push_back({static_cast<double>(slot * depths.Width()) / kMillisecond,
                    known(cell.least != INT64_MAX, cell.least),
                    known(cell.last != DepthCell::kUnknown, cell.last)});
  }
  return {{"widthMs", static_cast<double>(depths.Width()) / kMillisecond}, {"rows", rows}};
}

}  // namespace

PageJson CoursesAsJson(const SessionModel& model, const std::vector<StreamCourse>& courses) {
  const PageJson streams = StreamsAsJson(model);
  PageJson all = PageJson::array();
  for (const StreamCourse& course : courses) {
    if (course.stream >= streams.size()) {
      continue;
    }
    const Stream& stream = model.Streams()[course.stream];
    all.push_back({{"stream", streams[course.stream]},
                   {"announced", stream.Announced()},
                   {"histogram", HistogramOf(stream.Intervals(), model.Resolution())},
                   {"intervals", IntervalsOf(course.intervals)},
                   {"depths", DepthsOf(course.depths)}});
  }
  return {{"all", all}, {"count", streams.size()}};
}

PageJson CallsAsJson(const std::vector<LaneCall>& calls) {
  std::vector<std::int64_t> lane;
  std::vector<std::int64_t> begin;
  std::vector<std::int64_t> duration;
  std::vector<std::int64_t> function;
  std::vector<std::int64_t> look;  // bits: timed, failed, never returned, timed out
  std::vector<std::int64_t> handle;
  std::vector<std::int64_t> file;
  std::vector<std::int64_t> line;
  std::int64_t lastBegin = 0;
  std::int64_t lastLine = 0;
  const bool oneFile = std::all_of(calls.begin(), calls.end(),
                                   [](const LaneCall& each) { return each.place.file == 0; });
  for (const LaneCall& call : calls) {
    const std::int64_t at = call.begin / kTenth;
    const auto lineNumber = static_cast<std::int64_t>(call.place.line);
    lane.push_back(call.lane);
    begin.push_back(at - std::exchange(lastBegin, at));
    duration.push_back(call.duration / kTenth);
    function.push_back(call.function);
    look.push_back((call.isTimed ? 1 : 0) + (call.failed ? 2 : 0) + (call.neverReturned ? 4 : 0) +
                   (call.timedOut ? 8 : 0));
    handle.push_back(call.handle);
    line.push_back(lineNumber - std::exchange(lastLine, lineNumber));
    if (!oneFile) {
      file.push_back(call.place.file);
    }
  }
  return {{"lane", lane}, {"begin", begin},   {"duration", duration}, {"function", function},
          {"look", look}, {"handle", handle}, {"file", file},         {"line", line}};
}

PageJson LanesAsJson(const std::vector<TimeBuckets<LaneCell>>& lanes) {
  PageJson all = PageJson::array();
  for (const TimeBuckets<LaneCell>& lane : lanes) {
    std::vector<std::int64_t> slot;
    std::vector<std::int64_t> calls;
    std::vector<std::int64_t> group;  // that most calls belong to
    std::vector<std::int64_t> failed;
    std::vector<std::int64_t> spent;
    std::int64_t last = 0;
    for (const auto& [number, cell] : lane.Cells()) {
      const auto most = std::max_element(cell.calls.begin(), cell.calls.end());
      std::int64_t sum = 0;
      for (const std::uint32_t each : cell.calls) {
        sum += each;
      }
      slot.push_back(number - std::exchange(last, number));
      calls.push_back(sum);
      group.push_back(most - cell.calls.begin());
      failed.push_back(cell.failed);
      spent.push_back(cell.spent / 1'000'000);
    }
    all.push_back({{"slot", slot},
                   {"calls", calls},
                   {"group", group},
                   {"failed", failed},
                   {"spentMs", spent}});
  }
  return {
      {"widthMs", lanes.empty() ? 0.0 : static_cast<double>(lanes.front().Width()) / kMillisecond},
      {"all", all}};
}

}  // namespace vextrel::program
