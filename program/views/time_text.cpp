// SPDX-License-Identifier: MIT
#include "views/time_text.h"

#include <fmt/format.h>

#include <iterator>
#include <stdexcept>

namespace vextrel::program {
namespace {

constexpr std::int64_t kSecond = 1'000'000;
constexpr std::int64_t kDay = std::int64_t{24} * 60 * 60 * kSecond;

struct Day {
  std::int64_t year;
  std::int64_t month;
  std::int64_t day;
};

// The day with that many days after 1970-01-01, in the Gregorian calendar.
Day DayOf(std::int64_t days) noexcept {
  days += 719'468;
  const std::int64_t era = (days >= 0 ? days : days - 146'096) / 146'097;
  const std::int64_t dayOfEra = days - era * 146'097;
  const std::int64_t yearOfEra =
      (dayOfEra - dayOfEra / 1'460 + dayOfEra / 36'524 - dayOfEra / 146'096) / 365;
  const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const std::int64_t shifted = (5 * dayOfYear + 2) / 153;
  const std::int64_t month = shifted + (shifted < 10 ? 3 : -9);
  return {yearOfEra + era * 400 + (month <= 2 ? 1 : 0), month,
          dayOfYear - (153 * shifted + 2) / 5 + 1};
}

std::int64_t DaysBefore(std::int64_t time) noexcept {
  return (time - (time < 0 ? kDay - 1 : 0)) / kDay;
}

void AppendTwo(std::string& out, std::int64_t number) {
  out += static_cast<char>('0' + number / 10 % 10);
  out += static_cast<char>('0' + number % 10);
}

}  // namespace

void AppendTimeOfDay(std::string& out, std::int64_t time, TimeKind kind, std::int64_t resolution) {
  if (kind == TimeKind::SinceStart) {
    fmt::format_to(std::back_inserter(out), "{:.3f} s", static_cast<double>(time) / 1e6);
    return;
  }
  const std::int64_t ofDay = time - DaysBefore(time) * kDay;
  const std::int64_t seconds = ofDay / kSecond;
  AppendTwo(out, seconds / 3600);
  out += ':';
  AppendTwo(out, seconds / 60 % 60);
  out += ':';
  AppendTwo(out, seconds % 60);
  if (resolution < kSecond) {
    const std::int64_t milliseconds = ofDay % kSecond / 1000;
    out += '.';
    out += static_cast<char>('0' + milliseconds / 100);
    AppendTwo(out, milliseconds % 100);
  }
}

std::string TimeText(std::int64_t time, TimeKind kind, std::int64_t resolution) {
  std::string out;
  if (kind == TimeKind::Date) {
    const Day day = DayOf(DaysBefore(time));
    fmt::format_to(std::back_inserter(out), "{:04}-{:02}-{:02} ", day.year, day.month, day.day);
  }
  AppendTimeOfDay(out, time, kind, resolution);
  return out;
}

std::string Milliseconds(std::int64_t microseconds) {
  return fmt::format("{:.3f}", static_cast<double>(microseconds) / 1e3);
}

std::string MicrosecondsText(std::uint64_t nanoseconds) {
  return fmt::format("{}.{:03}", nanoseconds / 1'000, nanoseconds % 1'000);
}

std::string DurationText(std::uint64_t nanoseconds) {
  constexpr std::uint64_t millisecond = 1'000'000;
  constexpr std::uint64_t second = 1'000 * millisecond;
  if (nanoseconds < millisecond) {
    return MicrosecondsText(nanoseconds) + " us";
  }
  const bool isShort = nanoseconds < second;
  const std::uint64_t thousandths = nanoseconds / (isShort ? 1'000U : millisecond);
  return fmt::format("{}.{:03} {}", thousandths / 1'000, thousandths % 1'000, isShort ? "ms" : "s");
}

TimeLimit::TimeLimit(std::string_view text) {
  const auto fits = [&](std::string_view pattern, Kind kind) {
    Layout layout = Layout::OfPattern(pattern);
    RecordHead head;
    const std::string line = std::string(text) + "|";
    if (!layout.Match(line, head) || head.messageBegin != line.size()) {
      return false;
    }
    kind_ = kind;
    value_ = head.time;
    return true;
  };
  if (text.starts_with('+')) {
    std::size_t used = 0;
    try {
      value_ = static_cast<std::int64_t>(std::stod(std::string(text.substr(1)), &used) * 1e6);
    } catch (const std::exception&) {
      used = 0;
    }
    kind_ = Kind::SinceStart;
    if (used > 0 && used + 1 == text.size()) {
      return;
    }
  } else if (fits("%d{%Y-%m-%d %H:%M:%S.%l}|%m%n", Kind::Date) ||
             fits("%d{%Y-%m-%d %H:%M:%S}|%m%n", Kind::Date) ||
             fits("%d{%Y-%m-%d %H:%M}|%m%n", Kind::Date) ||
             fits("%d{%H:%M:%S.%l}|%m%n", Kind::TimeOfDay) ||
             fits("%d{%H:%M:%S}|%m%n", Kind::TimeOfDay) ||
             fits("%d{%H:%M}|%m%n", Kind::TimeOfDay)) {
    return;
  }
  throw std::invalid_argument("'" + std::string(text) +
                              "' is no time: write '2026-11-21 18:55:08.786', '18:55:08', or "
                              "'+1.5' for seconds after the log's first line");
}

int TimeLimit::Compare(std::int64_t time, std::int64_t first) const noexcept {
  if (kind_ == Kind::TimeOfDay) {
    time -= DaysBefore(time) * kDay;
  } else if (kind_ == Kind::SinceStart) {
    time -= first;
  }
  return time < value_ ? -1 : (time > value_ ? 1 : 0);
}

}  // namespace vextrel::program
