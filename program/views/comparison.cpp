// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include <iterator>
#include <optional>

#include "model/distribution.h"
#include "views/report.h"
#include "views/safe_text.h"

namespace vextrel::program {
namespace {

class Table {
 public:
  explicit Table(std::string& out) : out_(out) {}

  void Add(std::string_view name, std::optional<double> left, std::optional<double> right,
           int decimals = 0) {
    fmt::format_to(std::back_inserter(out_), "  {:<26}{:>14}{:>14}{:>10}\n", name,
                   Text(left, decimals), Text(right, decimals),
                   left.has_value() && right.has_value() && *left != 0
                       ? fmt::format("{:.2f}", *right / *left)
                       : std::string("-"));
  }

 private:
  static std::string Text(std::optional<double> value, int decimals) {
    return value.has_value() ? fmt::format("{:.{}f}", *value, decimals) : "-";
  }

  std::string& out_;
};

std::optional<double> AsNumber(const std::optional<std::uint64_t>& count) {
  return count.has_value() ? std::optional<double>(static_cast<double>(*count)) : std::nullopt;
}

void AddDistributions(Table& table, const std::string& name, const ValueCounts& left,
                      const ValueCounts& right) {
  const std::optional<Distribution> first = Summarize(left);
  const std::optional<Distribution> second = Summarize(right);
  const auto add = [&](std::string_view which, double Distribution::*figure) {
    table.Add(fmt::format("{} {} ms", name, which),
              first.has_value() ? std::optional<double>((*first).*figure) : std::nullopt,
              second.has_value() ? std::optional<double>((*second).*figure) : std::nullopt, 3);
  };
  add("mean", &Distribution::mean);
  add("p50", &Distribution::p50);
  add("p95", &Distribution::p95);
  add("p99", &Distribution::p99);
  add("max", &Distribution::max);
}

std::uint64_t ErrorsOf(const CallCounts& counts) {
  std::uint64_t errors = 0;
  for (const Failure& each : counts.Failures()) {
    errors += each.count;
  }
  return errors;
}

}  // namespace

void WriteComparison(const ReportedLog& log, const SessionModel& model, const ReportedLog& otherLog,
                     const SessionModel& other, Output& output) {
  std::string& out = output.Text();
  out += "A: ";
  AppendSafe(out, log.files.back());
  out += "\nB: ";
  AppendSafe(out, otherLog.files.back());
  fmt::format_to(std::back_inserter(out), "\n\n  {:<26}{:>14}{:>14}{:>10}\n", "", "A", "B", "B/A");
  Table table(out);
  const auto count = [](std::uint64_t number) {
    return std::optional<double>(static_cast<double>(number));
  };
  table.Add("calls", count(model.Counts().Calls()), count(other.Counts().Calls()));
  table.Add("failed calls", count(ErrorsOf(model.Counts())), count(ErrorsOf(other.Counts())));
  table.Add("reports", count(model.Reports()), count(other.Reports()));
  for (std::size_t i = 0; i < std::min(model.Streams().size(), other.Streams().size()); ++i) {
    const Stream& left = model.Streams()[i];
    const Stream& right = other.Streams()[i];
    out += "\n" + model.AllHandles().Name(left.Id()) + " and " +
           other.AllHandles().Name(right.Id()) + "\n";
    table.Add("frames", count(left.Frames()), count(right.Frames()));
    table.Add("time-outs", count(left.TimeOuts()), count(right.TimeOuts()));
    table.Add("incomplete", AsNumber(left.Incomplete()), AsNumber(right.Incomplete()));
    table.Add("missing frame ids", AsNumber(left.MissingFrameIds()),
              AsNumber(right.MissingFrameIds()));
    AddDistributions(table, "interval", left.Intervals(), right.Intervals());
    AddDistributions(table, "hold", left.Holds(), right.Holds());
    const auto leftDepth = left.QueueDepth();
    const auto rightDepth = right.QueueDepth();
    table.Add("queue depth mean", leftDepth.has_value() ? leftDepth->mean : std::nullopt,
              rightDepth.has_value() ? rightDepth->mean : std::nullopt, 2);
  }
  output.Flush();
}

}  // namespace vextrel::program
