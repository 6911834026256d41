// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "model/distribution.h"
#include "views/report_text.h"

namespace vextrel::program {
namespace {

constexpr std::size_t kStreams = 5;

class StreamText {
 public:
  explicit StreamText(const ReportText& text) : text_(text) {}

  void WriteStream(const Stream& stream) {
    const Handles& handles = text_.Model().AllHandles();
    const Handle& handle = handles.At(stream.Id());
    text_.Add(
        "\n{}{}: frames: {}, waits that timed out: {}; incomplete: {}; missing frame ids: {}{}\n",
        ReportText::Safe(handles.FullName(stream.Id())),
        handle.parent == kNoHandle ? "" : " of " + handles.Name(handle.parent), stream.Frames(),
        stream.TimeOuts(), CountOr(stream.Incomplete()), CountOr(stream.MissingFrameIds()),
        stream.FirstGap().has_value() ? ", first at " + text_.PlaceText(*stream.FirstGap()) : "");
    if (stream.FrameIdsStandStill()) {
      text_.Add("  {:<12}all the same: the producer does not count frames\n", "frame ids");
    }
    if (stream.Frames() == 0) {
      return;
    }
    const bool hasTime = text_.Model().Time() != TimeKind::None;
    if (hasTime) {
      WriteDistribution("interval", stream.Intervals());
      if (stream.LongestIntervalAt().has_value()) {
        text_.Add(" at {}", text_.PlaceText(*stream.LongestIntervalAt()));
        if (stream.Intervals().Mean() > 0) {
          text_.Add("; {:.2f} frames/s", 1e6 / stream.Intervals().Mean());
        }
      }
      text_.Add("\n");
      WriteDistribution("hold", stream.Holds());
      text_.Add("\n");
    }
    const std::optional<Stream::Depth> depth = stream.QueueDepth();
    if (depth.has_value()) {
      text_.Add("  {:<12}min {}", "queue depth", depth->min);
      if (depth->mean.has_value()) {
        text_.Add(", mean {:.2f}, at zero for {} ms", *depth->mean, depth->timeAtZero / 1000);
      }
      text_.Add(" of {} buffers announced\n", stream.Announced());
    } else {
      text_.Add("  {:<12}not known\n", "queue depth");
    }
    if (hasTime) {
      WriteNeeds(stream);
    }
    if (text_.Options().histogram) {
      WriteHistogram(stream.Intervals());
    }
  }

 private:
  void WriteDistribution(std::string_view name, const ValueCounts& values) {
    const std::optional<Distribution> known = Summarize(values);
    if (known.has_value()) {
      text_.Add("  {:<12}mean {}, p50 {}, p95 {}, p99 {}, max {} ms", name, Resolved(known->mean),
                Resolved(known->p50), Resolved(known->p95), Resolved(known->p99),
                Resolved(known->max));
    } else {
      text_.Add("  {:<12}not known", name);
    }
  }

  // Of what is shorter than the layout can show, no more is known than that.
  [[nodiscard]] std::string Resolved(double milliseconds) const {
    const double resolution = static_cast<double>(text_.Model().Resolution()) / 1e3;
    return milliseconds < resolution ? fmt::format("< {:g}", resolution)
                                     : fmt::format("{:.3f}", milliseconds);
  }

  static std::string CountOr(const std::optional<std::uint64_t>& count) {
    return count.has_value() ? std::to_string(*count) : "not asked for";
  }

  void WriteNeeds(const Stream& stream) {
    const std::optional<Distribution> hold = Summarize(stream.Holds());
    const std::optional<Distribution> interval = Summarize(stream.Intervals());
    if (hold.has_value() && interval.has_value() && interval->mean > 0) {
      const double buffers = std::ceil(hold->p99 / interval->mean) + 1;
      text_.Add("  {:<12}{:.0f} buffer{} for the p99 of the hold time\n", "needs", buffers,
                buffers == 1 ? "" : "s");
    }
    if (text_.Model().StreamingCalls() > 0 && text_.Model().Streams().size() == 1) {
      const auto frames = static_cast<double>(stream.Frames());
      text_.Add("  {:<12}{:.1f} calls and {:.1f} kB of log\n", "per frame",
                static_cast<double>(text_.Model().StreamingCalls()) / frames,
                static_cast<double>(text_.Model().StreamingBytes()) / frames / 1e3);
    }
  }

  // The buckets' limits grow by a factor of two.
  void WriteHistogram(const ValueCounts& values) {
    if (values.Count() == 0) {
      return;
    }
    constexpr std::int64_t first = 1'000;
    constexpr double width = 50;
    std::vector<std::uint64_t> buckets;
    std::uint64_t most = 0;
    for (const auto& [value, count] : values.Sorted()) {
      std::size_t bucket = 0;
      for (std::int64_t limit = first; value >= limit; limit *= 2) {
        ++bucket;
      }
      buckets.resize(std::max(buckets.size(), bucket + 1));
      buckets[bucket] += count;
      most = std::max(most, buckets[bucket]);
    }
    const auto firstUsed =
        std::find_if(buckets.begin(), buckets.end(), [](std::uint64_t count) { return count > 0; });
    for (auto i = static_cast<std::size_t>(firstUsed - buckets.begin()); i < buckets.size(); ++i) {
      const auto stars = static_cast<std::size_t>(
          std::ceil(width * static_cast<double>(buckets[i]) / static_cast<double>(most)));
      text_.Add("  {:>8} ms {:>10} {}\n", i == 0 ? "0 to 1" : fmt::format("from {}", 1U << (i - 1)),
                buckets[i], std::string(stars, '*'));
    }
  }

  const ReportText& text_;
};

}  // namespace

void WriteStreams(const ReportText& text) {
  const std::vector<Stream>& streams = text.Model().Streams();
  for (std::size_t i = 0; i < streams.size(); ++i) {
    if (i == kStreams && !text.Options().handles) {
      text.Add("\n... {} more streams (--handles)\n", streams.size() - i);
      break;
    }
    StreamText(text).WriteStream(streams[i]);
  }
}

}  // namespace vextrel::program
