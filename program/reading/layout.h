// SPDX-License-Identifier: MIT
// Layouts of log4cpp, read backward: what stands in front of a record's message, and behind it.
#ifndef VEXTREL_PROGRAM_READING_LAYOUT_H
#define VEXTREL_PROGRAM_READING_LAYOUT_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vextrel::program {

enum class Priority : std::uint8_t {
  Fatal,
  Alert,
  Critical,
  Error,
  Warn,
  Notice,
  Info,
  Debug,
  NotSet,
  Unknown
};

// What a layout's record says beside its message. Texts refer to the record.
struct RecordHead {
  std::int64_t time =
      0;  // in microseconds, from 1970 in the log's own time zone, midnight or the start
  std::string_view thread;
  std::string_view category;
  Priority priority = Priority::Unknown;  // Unknown if the layout doesn't show it
  std::size_t messageBegin = 0;
};

enum class TimeKind : std::uint8_t { None, Date, TimeOfDay, SinceStart };

class Layout {
 public:
  // A PatternLayout's ConversionPattern, as in the property file. Throws std::invalid_argument with
  // a sentence if it can't be read backward.
  [[nodiscard]] static Layout OfPattern(std::string_view pattern);
  [[nodiscard]] static Layout Simple();
  // No line breaks, and nothing but the message.
  [[nodiscard]] static Layout PassThrough();

  // Returns true iff a record starts at the beginning of `text`, and says what stands in front of
  // its message.
  bool Match(std::string_view text, RecordHead& head);
  // Takes what stands behind the message off a whole record without its line break, and adds to
  // `head` what that says.
  [[nodiscard]] std::string_view WithoutTail(std::string_view message, RecordHead& head);

  [[nodiscard]] const std::string& Name() const noexcept { return name_; }
  [[nodiscard]] bool IsGlued() const noexcept { return isGlued_; }
  [[nodiscard]] TimeKind Time() const noexcept { return time_; }
  // In microseconds; 0 without a time.
  [[nodiscard]] std::int64_t Resolution() const noexcept { return resolution_; }
  [[nodiscard]] bool ShowsThread() const noexcept { return showsThread_; }
  // True iff nothing stands in front of the message.
  [[nodiscard]] bool IsBare() const noexcept { return front_.empty(); }

 private:
  enum class Field : std::uint8_t {
    Literal,
    Date,
    Priority,
    Thread,
    Milliseconds,
    Seconds,
    Number,
    Category,
    Text
  };
  struct Part {
    Field field = Field::Literal;
    std::string text;  // of a literal
    std::size_t minWidth = 0;
    std::size_t maxWidth = 0;
    bool alignLeft = false;
    std::size_t date = 0;  // into dates_
  };
  // A date: strftime's conversions, and log4cpp's %l for milliseconds.
  struct Date {
    std::vector<std::pair<char, std::string>> steps;  // a conversion, or '\0' and a literal
    // If every field has a fixed width: a date that has the same first characters as the one before
    // is the same up to its seconds.
    std::size_t fixedSize = 0;
    std::size_t secondsAt = 0;
    std::size_t millisecondsAt = 0;  // 0 if there are none
    std::string lastText;
    std::int64_t lastMinute = 0;
  };

  void AddDate(Part& part, std::string_view format);
  void AddConversion(char conversion, Part part, std::string_view postfix, bool behindMessage);
  bool MatchPart(const std::vector<Part>& parts, std::size_t index, std::string_view text,
                 std::size_t& at, RecordHead& head);
  bool MatchDate(Date& date, std::string_view text, std::size_t& at, std::int64_t& time) const;
  static bool MatchDateSteps(const Date& date, std::string_view text, std::size_t& at,
                             std::int64_t& time);

  std::string name_;
  std::vector<Part> front_;
  std::vector<Part> tail_;
  std::vector<Date> dates_;
  bool isGlued_ = false;
  bool showsThread_ = false;
  TimeKind time_ = TimeKind::None;
  std::int64_t resolution_ = 0;
};

// The name that log4cpp gives to a priority.
[[nodiscard]] std::string_view PriorityName(Priority priority) noexcept;

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_READING_LAYOUT_H
