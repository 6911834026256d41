// SPDX-License-Identifier: MIT
// Times and durations as people read them.
#ifndef VEXTREL_PROGRAM_VIEWS_TIME_TEXT_H
#define VEXTREL_PROGRAM_VIEWS_TIME_TEXT_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "reading/layout.h"

namespace vextrel::program {

// "2026-11-21 18:55:08.786", "18:55:08.786", or "1.250 s" since the start; only as many digits as
// the layout has. `time` is in microseconds.
[[nodiscard]] std::string TimeText(std::int64_t time, TimeKind kind, std::int64_t resolution);

// The same without its day.
void AppendTimeOfDay(std::string& out, std::int64_t time, TimeKind kind, std::int64_t resolution);

// Milliseconds with three decimals.
[[nodiscard]] std::string Milliseconds(std::int64_t microseconds);

// Microseconds with three decimals.
[[nodiscard]] std::string MicrosecondsText(std::uint64_t nanoseconds);

// "12.345 us", "1.204 ms" or "2.500 s".
[[nodiscard]] std::string DurationText(std::uint64_t nanoseconds);

// A time as people write it: "2026-11-21 18:55:08.786", "18:55:08", or seconds since the start of
// the log as "+1.5". Throws std::invalid_argument with a sentence if it's none of these.
class TimeLimit {
 public:
  explicit TimeLimit(std::string_view text);

  // Where `time` lies: negative before the limit, 0 at it, positive after it. `first` is the log's
  // first time.
  [[nodiscard]] int Compare(std::int64_t time, std::int64_t first) const noexcept;

 private:
  enum class Kind : std::uint8_t { Date, TimeOfDay, SinceStart };
  Kind kind_ = Kind::Date;
  std::int64_t value_ = 0;
};

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_VIEWS_TIME_TEXT_H
